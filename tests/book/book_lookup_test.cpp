#include <cstdlib>
#include <set>

#include "board/board_helpers.h"
#include "book/book.h"
#include "book/book_key.h"
#include "book_helpers.h"

namespace torvy {
namespace {

using testing::boardFrom;
using testing::bookMove;
using testing::encodeBook;
using testing::legalMove;
using testing::TempFile;

constexpr Key StartKey = 0x463B96181691FC9C;

struct LookupResult {
  bool found;
  Move move;
  std::string output;
};

LookupResult lookup(Book& book, const char* fen = StartFen) {
  auto board = boardFrom(fen);
  Move move = NoMove;
  ::testing::internal::CaptureStdout();
  const bool found = lookupBookMove(book, *board, move);
  return {found, move, ::testing::internal::GetCapturedStdout()};
}

Move startMove(const char* text) { return legalMove(*boardFrom(StartFen), text); }

// A book file of the given entries and the Book that reads it.
struct TestBook {
  TestBook(const std::string& name, const std::vector<BookEntry>& entries)
      : file(name, encodeBook(entries)), book(file.path().c_str()) {}
  TempFile file;
  Book book;
};

TEST(BookLookup, WeightsDecideTheChoice) {
  std::srand(7);
  // A lone entry of weight 0 is played.
  TestBook single("single.bin", {{StartKey, bookMove("e2e4"), 0, 0}});
  EXPECT_EQ(lookup(single.book).move, startMove("e2e4"));

  // Weight 0 never wins against a positive weight, whichever side of it it lies.
  TestBook mixed(
      "mixed.bin",
      {{StartKey, bookMove("d2d4"), 0, 0}, {StartKey, bookMove("e2e4"), 10, 0}, {StartKey, bookMove("c2c4"), 0, 0}});
  for (int i = 0; i < 50; ++i) ASSERT_EQ(lookup(mixed.book).move, startMove("e2e4"));
}

TEST(BookLookup, ChoiceFollowsTheWeights) {
  std::srand(11);
  const BookEntry entries[] = {{StartKey, 1, 1, 0}, {StartKey, 2, 0, 0}, {StartKey, 3, 3, 0}};
  int picked[4] = {};
  for (int i = 0; i < 4000; ++i) ++picked[chooseBookEntry(entries, 3).move];
  EXPECT_EQ(picked[2], 0);
  EXPECT_NEAR(picked[1], 1000, 150);
  EXPECT_NEAR(picked[3], 3000, 150);

  const BookEntry allZero[] = {{StartKey, 5, 0, 0}, {StartKey, 6, 0, 0}};
  EXPECT_EQ(chooseBookEntry(allZero, 2).move, 5);
}

// 300 entries of one key: the search meets index 150 first, and collection takes 150 down
// to 0, then 151 up to 255. Only the entry at 150 and the one with weight can be chosen.
TEST(BookLookup, AtMost256EntriesOfOneKeyAreCollected) {
  auto bookWithWeightAt = [](std::size_t weighted) {
    std::vector<BookEntry> entries(300, BookEntry{StartKey, bookMove("a2a3"), 0, 0});
    entries[150].move = bookMove("e2e4");
    entries[weighted] = {StartKey, bookMove("d2d4"), 1, 0};
    return entries;
  };
  TestBook collected("collected.bin", bookWithWeightAt(255));
  EXPECT_EQ(lookup(collected.book).move, startMove("d2d4"));
  TestBook beyond("beyond.bin", bookWithWeightAt(256));
  EXPECT_EQ(lookup(beyond.book).move, startMove("e2e4"));
}

// The key's entries straddle the boundary of two 4 KB blocks (indices 255 to 259), and the
// search meets them at 256: collection must reach into both blocks.
TEST(BookLookup, EntriesAcrossABlockBoundary) {
  std::vector<BookEntry> entries;
  for (Key k = 255; k >= 1; --k) entries.push_back({StartKey - k, bookMove("h2h4"), 5, 0});
  for (int i = 0; i < 5; ++i) entries.push_back({StartKey, bookMove("a2a3"), 0, 0});
  for (Key k = 1; k <= 260; ++k) entries.push_back({StartKey + k, bookMove("h2h3"), 5, 0});
  entries[255] = {StartKey, bookMove("d2d4"), 1, 0};
  entries[259] = {StartKey, bookMove("g1f3"), 1, 0};
  TestBook boundary("boundary.bin", entries);
  std::srand(5);
  std::set<Move> seen;
  for (int i = 0; i < 40; ++i) seen.insert(lookup(boundary.book).move);
  EXPECT_EQ(seen, (std::set<Move>{startMove("d2d4"), startMove("g1f3")}));
}

TEST(BookLookup, KeysOutsideTheFileFindNothing) {
  TestBook above("above.bin", {{StartKey + 1, bookMove("e2e4"), 1, 0}, {~Key(0), bookMove("e2e4"), 1, 0}});
  EXPECT_FALSE(lookup(above.book).found);
  TestBook below("below.bin", {{0, bookMove("e2e4"), 1, 0}, {StartKey - 1, bookMove("e2e4"), 1, 0}});
  EXPECT_FALSE(lookup(below.book).found);
}

TEST(BookLookup, CastlingEntryBecomesTheCastlingMove) {
  const char* fen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQkq - 0 1";
  const Key key = polyglotKey(*boardFrom(fen));
  TestBook castling("castling.bin", {{key, bookMove("e1h1"), 1, 0}});
  EXPECT_EQ(lookup(castling.book, fen).move, WhiteCastleKingSide);
  castling.file.write(encodeBook({{key, bookMove("e1a1"), 1, 0}}));
  EXPECT_EQ(lookup(castling.book, fen).move, WhiteCastleQueenSide);
}

TEST(BookLookup, DamagedOrMissingBooksGiveNothingQuietly) {
  Book missing("/nonexistent/book.bin");
  EXPECT_EQ(missing.entries, 0u);
  const LookupResult none = lookup(missing);
  EXPECT_FALSE(none.found);
  EXPECT_EQ(none.output, "");

  // An illegal move or a promotion field above 4 is no book move.
  TestBook illegal("illegal.bin", {{StartKey, bookMove("e2e5"), 1, 0}});
  EXPECT_FALSE(lookup(illegal.book).found);
  illegal.file.write(encodeBook({{StartKey, bookMove("e2e4", 6), 1, 0}}));
  EXPECT_FALSE(lookup(illegal.book).found);

  // A trailing partial entry is not counted, and a key inside it is not found.
  std::vector<unsigned char> bytes =
      encodeBook({{StartKey - 1, bookMove("e2e4"), 1, 0}, {StartKey, bookMove("d2d4"), 1, 0}});
  bytes.resize(BookEntrySize + 12);
  TempFile partial("partial.bin", bytes);
  Book partialBook(partial.path().c_str());
  EXPECT_EQ(partialBook.entries, 1u);
  EXPECT_FALSE(lookup(partialBook).found);

  // A file cut short after its size was taken: reads past its end fail without a message.
  std::vector<BookEntry> many(64, BookEntry{StartKey + 1, bookMove("e2e4"), 1, 0});
  many.front().key = StartKey;
  TestBook shrinking("shrinking.bin", many);
  shrinking.file.write({});
  const LookupResult cut = lookup(shrinking.book);
  EXPECT_FALSE(cut.found);
  EXPECT_EQ(cut.output, "");
}

TEST(BookLookup, ReadErrorDuringTheSearchIsReported) {
  // A folder opens for reading on this system, but every read from it fails.
  Book folder(std::filesystem::temp_directory_path().c_str());
  ASSERT_GT(folder.entries, 0u);
  const LookupResult result = lookup(folder);
  EXPECT_FALSE(result.found);
  EXPECT_EQ(result.output, "ERROR: Is a directory\n");
}

TEST(BookLookup, PathsAreCutTo255Characters) {
  const std::string longPath(400, 'x');
  const std::unique_ptr<Book> book = createBook(longPath.c_str());
  EXPECT_EQ(std::string(book->path), longPath.substr(0, 255));
  EXPECT_EQ(book->entries, 0u);

  TempFile file("renamed.bin", encodeBook({{StartKey, bookMove("e2e4"), 1, 0}}));
  book->setPath(file.path().c_str());
  EXPECT_EQ(book->entries, 1u);
  EXPECT_TRUE(lookup(*book).found);
  EXPECT_EQ(book->file, nullptr);
}

}  // namespace
}  // namespace torvy
