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

TEST(BookLookup, WeightsDecideTheChoice) {
  std::srand(7);
  // A lone entry of weight 0 is played.
  TempFile single("single.bin", encodeBook({{StartKey, bookMove("e2e4"), 0, 0}}));
  Book singleBook(single.path().c_str());
  EXPECT_EQ(lookup(singleBook).move, startMove("e2e4"));

  // Weight 0 never wins against a positive weight, whichever side of it it lies.
  TempFile mixed("mixed.bin", encodeBook({{StartKey, bookMove("d2d4"), 0, 0},
                                          {StartKey, bookMove("e2e4"), 10, 0},
                                          {StartKey, bookMove("c2c4"), 0, 0}}));
  Book mixedBook(mixed.path().c_str());
  for (int i = 0; i < 50; ++i) {
    const LookupResult result = lookup(mixedBook);
    ASSERT_TRUE(result.found);
    ASSERT_EQ(result.move, startMove("e2e4"));
  }
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
    return encodeBook(entries);
  };
  TempFile collected("collected.bin", bookWithWeightAt(255));
  Book collectedBook(collected.path().c_str());
  EXPECT_EQ(lookup(collectedBook).move, startMove("d2d4"));

  TempFile beyond("beyond.bin", bookWithWeightAt(256));
  Book beyondBook(beyond.path().c_str());
  EXPECT_EQ(lookup(beyondBook).move, startMove("e2e4"));
}

TEST(BookLookup, FindsTheKeyAmongOthers) {
  // Many other keys on both sides, so the search needs several probes to reach the key.
  std::vector<BookEntry> entries;
  for (Key k = 1; k <= 40; ++k) entries.push_back({StartKey - k * 1000, bookMove("h2h4"), 5, 0});
  std::reverse(entries.begin(), entries.end());
  entries.push_back({StartKey, bookMove("g1f3"), 1, 0});
  for (Key k = 1; k <= 70; ++k) entries.push_back({StartKey + k, bookMove("h2h3"), 5, 0});
  TempFile file("among.bin", encodeBook(entries));
  Book book(file.path().c_str());
  EXPECT_EQ(book.entries, 111u);
  const LookupResult result = lookup(book);
  EXPECT_TRUE(result.found);
  EXPECT_EQ(result.move, startMove("g1f3"));
  EXPECT_EQ(result.output, "");
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
  TempFile file("boundary.bin", encodeBook(entries));
  Book book(file.path().c_str());
  std::srand(5);
  std::set<Move> seen;
  for (int i = 0; i < 40; ++i) seen.insert(lookup(book).move);
  EXPECT_EQ(seen, (std::set<Move>{startMove("d2d4"), startMove("g1f3")}));
}

TEST(BookLookup, KeysOutsideTheFileFindNothing) {
  TempFile above("above.bin", encodeBook({{StartKey + 1, bookMove("e2e4"), 1, 0}, {~Key(0), bookMove("e2e4"), 1, 0}}));
  Book aboveBook(above.path().c_str());
  EXPECT_FALSE(lookup(aboveBook).found);

  TempFile below("below.bin", encodeBook({{0, bookMove("e2e4"), 1, 0}, {StartKey - 1, bookMove("e2e4"), 1, 0}}));
  Book belowBook(below.path().c_str());
  EXPECT_FALSE(lookup(belowBook).found);
}

TEST(BookLookup, CastlingEntryBecomesTheCastlingMove) {
  const char* fen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQkq - 0 1";
  const Key key = polyglotKey(*boardFrom(fen));
  TempFile file("castling.bin", encodeBook({{key, bookMove("e1h1"), 1, 0}}));
  Book book(file.path().c_str());
  EXPECT_EQ(lookup(book, fen).move, WhiteCastleKingSide);
  file.write(encodeBook({{key, bookMove("e1a1"), 1, 0}}));
  EXPECT_EQ(lookup(book, fen).move, WhiteCastleQueenSide);
}

TEST(BookLookup, DamagedOrMissingBooksGiveNothingQuietly) {
  Book missing("/nonexistent/book.bin");
  EXPECT_EQ(missing.entries, 0u);
  const LookupResult none = lookup(missing);
  EXPECT_FALSE(none.found);
  EXPECT_EQ(none.output, "");

  // An illegal move or a promotion field above 4 is no book move.
  TempFile illegal("illegal.bin", encodeBook({{StartKey, bookMove("e2e5"), 1, 0}}));
  Book illegalBook(illegal.path().c_str());
  EXPECT_FALSE(lookup(illegalBook).found);
  illegal.write(encodeBook({{StartKey, bookMove("e2e4", 6), 1, 0}}));
  EXPECT_FALSE(lookup(illegalBook).found);

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
  TempFile shrinking("shrinking.bin", encodeBook(many));
  Book shrinkingBook(shrinking.path().c_str());
  shrinking.write({});
  const LookupResult cut = lookup(shrinkingBook);
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
  Book book(longPath.c_str());
  EXPECT_EQ(std::string(book.path), longPath.substr(0, 255));
  EXPECT_EQ(book.entries, 0u);

  TempFile file("renamed.bin", encodeBook({{StartKey, bookMove("e2e4"), 1, 0}}));
  book.setPath(file.path().c_str());
  EXPECT_EQ(book.entries, 1u);
  EXPECT_TRUE(lookup(book).found);
}

TEST(BookLookup, CreateBookMeasuresTheFile) {
  TempFile file("created.bin", encodeBook({{StartKey, bookMove("e2e4"), 1, 0}, {StartKey, bookMove("d2d4"), 1, 0}}));
  const std::unique_ptr<Book> book = createBook(file.path().c_str());
  EXPECT_EQ(book->entries, 2u);
  EXPECT_EQ(book->file, nullptr);
  EXPECT_TRUE(lookup(*book).found);
  EXPECT_EQ(book->file, nullptr);
}

}  // namespace
}  // namespace torvy
