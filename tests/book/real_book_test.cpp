// Runs against pychess_book.bin, a real Polyglot book.
#include <fstream>
#include <map>
#include <set>

#include "board/board_helpers.h"
#include "book/book.h"
#include "book/book_key.h"
#include "book_helpers.h"

namespace torvy {
namespace {

// Random walks through the book: in every position reached, every entry stored for it must
// decode to exactly one of the legal moves, castling and double steps included. The entries
// are read independently of the lookup code.
TEST(RealBook, EveryEntryOnBookLinesIsALegalMove) {
  const std::filesystem::path path = testing::realBookPath();
  if (!std::filesystem::exists(path))
    GTEST_SKIP() << "no real book at " << path << "; run scripts/fetch-book-fixture.sh fixtures";
  std::multimap<Key, std::uint16_t> all;
  std::ifstream in(path, std::ios::binary);
  for (BookEntryBytes bytes; in.read(reinterpret_cast<char*>(bytes), BookEntrySize);) {
    const BookEntry entry = decodeBookEntry(bytes);
    all.emplace(entry.key, entry.move);
  }

  Book book(path.c_str());
  int positions = 0;
  int castlings = 0;
  std::set<std::string> firstMoves;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::srand(seed);
    auto board = testing::boardFrom(StartFen);
    Move move = NoMove;
    for (int ply = 0; ply < 30 && lookupBookMove(book, *board, move); ++ply) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << ", ply " << ply);
      if (ply == 0) firstMoves.insert(moveToText(move));
      ++positions;
      MoveList legal;
      generateLegalMoves(*board, legal);
      const auto [first, last] = all.equal_range(polyglotKey(*board));
      ASSERT_NE(first, last);
      for (auto it = first; it != last; ++it) {
        const Move decoded = decodeBookMove(*board, it->second);
        castlings += moveKind(decoded) == CastlingMove;
        int matches = 0;
        for (std::uint32_t i = 0; i < legal.count; ++i) matches += legal[i] == decoded;
        EXPECT_EQ(matches, 1) << "book move " << std::hex << it->second;
      }
      UndoRecord undo;
      forSideToMove(*board, [&]<Color Us>() { board->makeMove<Us>(move, undo); });
    }
  }
  EXPECT_GT(positions, 200);
  EXPECT_GT(castlings, 0);
  EXPECT_TRUE(firstMoves.count("e2e4") && firstMoves.count("d2d4")) << firstMoves.size() << " first moves";
}

}  // namespace
}  // namespace torvy
