#include <cstdlib>
#include <set>

#include "board/board_helpers.h"
#include "book/book.h"
#include "book/book_key.h"
#include "book_helpers.h"
#include "data_table.h"

namespace torvy {
namespace {

using testing::bookMove;
using testing::StartKey;

TEST(BookMove, DecodesToTheMoveOfThePosition) {
  for (const testing::DataRow& row : testing::dataTable("book_moves.txt")) {
    SCOPED_TRACE(row[1] + " field " + row[2] + " in " + row[0]);
    auto board = testing::boardFrom(row[0].c_str());
    const Move expected = row[3] == "none" ? NoMove : testing::legalMove(*board, row[3].c_str());
    EXPECT_EQ(decodeBookMove(*board, bookMove(row[1].c_str(), unsigned(std::stoi(row[2])))), expected);
  }
}

struct LookupResult {
  bool found;
  Move move;
  std::string output;
};

LookupResult lookup(Book& book) {
  auto board = testing::boardFrom(StartFen);
  Move move = NoMove;
  ::testing::internal::CaptureStdout();
  const bool found = lookupBookMove(book, *board, move);
  return {found, move, ::testing::internal::GetCapturedStdout()};
}

Move startMove(const char* text) { return testing::legalMove(*testing::boardFrom(StartFen), text); }

class BookLookup : public ::testing::Test {
 protected:
  // A book of the given entries, in a file of the given name.
  std::unique_ptr<Book> bookOf(const std::vector<BookEntry>& entries, const std::string& name = "book.bin") {
    folder.write(name, testing::encodeBook(entries));
    return std::make_unique<Book>(folder.file(name).c_str());
  }

  testing::ScratchFolder folder;
};

// Weight 0 never wins against a positive weight, whichever side of it it lies, and wins alone.
TEST_F(BookLookup, WeightsDecideTheChoice) {
  std::srand(7);
  EXPECT_EQ(lookup(*bookOf({{StartKey, bookMove("e2e4"), 0, 0}})).move, startMove("e2e4")) << "a lone weight 0";
  auto mixed = bookOf(
      {{StartKey, bookMove("d2d4"), 0, 0}, {StartKey, bookMove("e2e4"), 10, 0}, {StartKey, bookMove("c2c4"), 0, 0}});
  for (int i = 0; i < 50; ++i) ASSERT_EQ(lookup(*mixed).move, startMove("e2e4"));

  const BookEntry entries[] = {{StartKey, 1, 1, 0}, {StartKey, 2, 0, 0}, {StartKey, 3, 3, 0}};
  int picked[4] = {};
  for (int i = 0; i < 4000; ++i) ++picked[chooseBookEntry(entries, 3).move];
  EXPECT_EQ(picked[2], 0);
  EXPECT_NEAR(picked[1], 1000, 150);
  EXPECT_NEAR(picked[3], 3000, 150);
}

// 300 entries of one key: the search meets index 150 first, and collection takes 150 down
// to 0, then 151 up to 255. Only the entry at 150 and the one with weight can be chosen.
TEST_F(BookLookup, AtMost256EntriesOfOneKeyAreCollected) {
  for (auto [weighted, expected] : {std::pair{255, "d2d4"}, {256, "e2e4"}}) {
    std::vector<BookEntry> entries(300, BookEntry{StartKey, bookMove("a2a3"), 0, 0});
    entries[150].move = bookMove("e2e4");
    entries[weighted] = {StartKey, bookMove("d2d4"), 1, 0};
    EXPECT_EQ(lookup(*bookOf(entries)).move, startMove(expected)) << "weight at " << weighted;
  }
}

// The key's entries straddle the boundary of two 4 KB blocks (indices 255 to 259), and the
// search meets them at 256: collection must reach into both blocks.
TEST_F(BookLookup, EntriesAcrossABlockBoundary) {
  std::vector<BookEntry> entries;
  for (Key k = 255; k >= 1; --k) entries.push_back({StartKey - k, bookMove("h2h4"), 5, 0});
  for (int i = 0; i < 5; ++i) entries.push_back({StartKey, bookMove("a2a3"), 0, 0});
  for (Key k = 1; k <= 260; ++k) entries.push_back({StartKey + k, bookMove("h2h3"), 5, 0});
  entries[255] = {StartKey, bookMove("d2d4"), 1, 0};
  entries[259] = {StartKey, bookMove("g1f3"), 1, 0};
  auto book = bookOf(entries);
  std::srand(5);
  std::set<Move> seen;
  for (int i = 0; i < 40; ++i) seen.insert(lookup(*book).move);
  EXPECT_EQ(seen, (std::set<Move>{startMove("d2d4"), startMove("g1f3")}));
}

// Keys below or above all entries, an illegal move or a promotion field above 4, a missing
// file, a trailing partial entry and a file cut short after its size was taken find nothing,
// quietly.
TEST_F(BookLookup, DamagedMissingOrUnmatchedBooksGiveNothingQuietly) {
  std::vector<BookEntry> many(64, BookEntry{StartKey + 1, bookMove("e2e4"), 1, 0});
  many.front().key = StartKey;
  const std::vector<BookEntry> books[] = {
      {{StartKey + 1, bookMove("e2e4"), 1, 0}, {~Key(0), bookMove("e2e4"), 1, 0}},
      {{0, bookMove("e2e4"), 1, 0}, {StartKey - 1, bookMove("e2e4"), 1, 0}},
      {{StartKey, bookMove("e2e5"), 1, 0}},
      {{StartKey, bookMove("e2e4", 6), 1, 0}},
      many,
  };
  std::vector<std::unique_ptr<Book>> lookups;
  for (const auto& entries : books) lookups.push_back(bookOf(entries, std::to_string(lookups.size())));
  folder.write(std::to_string(lookups.size() - 1), "");
  lookups.push_back(std::make_unique<Book>("/nonexistent/book.bin"));
  testing::Bytes partial =
      testing::encodeBook({{StartKey - 1, bookMove("e2e4"), 1, 0}, {StartKey, bookMove("d2d4"), 1, 0}});
  partial.resize(BookEntrySize + 12);
  folder.write("partial.bin", partial);
  lookups.push_back(std::make_unique<Book>(folder.file("partial.bin").c_str()));
  EXPECT_EQ(lookups.back()->entries, 1u) << "a partial entry is not counted";
  for (const auto& book : lookups) {
    const LookupResult result = lookup(*book);
    EXPECT_FALSE(result.found) << book->path;
    EXPECT_EQ(result.output, "") << book->path;
  }
}

TEST_F(BookLookup, ReadErrorDuringTheSearchIsReported) {
  // A folder opens for reading on this system, but every read from it fails.
  Book book(std::filesystem::temp_directory_path().c_str());
  ASSERT_GT(book.entries, 0u);
  const LookupResult result = lookup(book);
  EXPECT_FALSE(result.found);
  EXPECT_EQ(result.output, "ERROR: Is a directory\n");
}

TEST_F(BookLookup, PathsAreCutTo255CharactersAndMeasuredAgainWhenSet) {
  const std::string longPath(400, 'x');
  Book book(longPath.c_str());
  EXPECT_EQ(std::string(book.path), longPath.substr(0, 255));
  EXPECT_EQ(book.entries, 0u);
  book.setPath(bookOf({{StartKey, bookMove("e2e4"), 1, 0}})->path);
  EXPECT_TRUE(lookup(book).found);
  EXPECT_EQ(book.file, nullptr) << "the file stays open only during a lookup";
}

}  // namespace
}  // namespace torvy
