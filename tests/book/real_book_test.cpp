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

class RealBook : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = testing::realBookPath();
    if (!std::filesystem::exists(path_))
      GTEST_SKIP() << "no real book at " << path_ << "; run scripts/fetch-book-fixture.sh fixtures";
  }

  // Every entry of the file, by key, read independently of the lookup code.
  std::multimap<Key, BookEntry> readAll() const {
    std::ifstream in(path_, std::ios::binary);
    std::multimap<Key, BookEntry> all;
    BookEntryBytes bytes;
    while (in.read(reinterpret_cast<char*>(bytes), BookEntrySize)) {
      const BookEntry entry = decodeBookEntry(bytes);
      all.emplace(entry.key, entry);
    }
    return all;
  }

  std::filesystem::path path_;
};

// Random walks through the book: in every position reached, every entry stored for it must
// decode to exactly one of the legal moves, castling and double steps included.
TEST_F(RealBook, EveryEntryOnBookLinesIsALegalMove) {
  const std::multimap<Key, BookEntry> all = readAll();
  Book book(path_.c_str());
  int positions = 0;
  int castlings = 0;
  std::set<std::string> firstMoves;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::srand(seed);
    auto board = testing::boardFrom(StartFen);
    Move move = NoMove;
    for (int ply = 0; ply < 30 && lookupBookMove(book, *board, move); ++ply) {
      if (ply == 0) firstMoves.insert(moveToText(move));
      ++positions;
      MoveList legal;
      generateLegalMoves(*board, legal);
      const auto [first, last] = all.equal_range(polyglotKey(*board));
      ASSERT_NE(first, last);
      for (auto it = first; it != last; ++it) {
        const Move decoded = decodeBookMove(*board, it->second.move);
        castlings += moveKind(decoded) == CastlingMove;
        bool isLegal = false;
        for (std::uint32_t i = 0; i < legal.count; ++i) isLegal |= legal[i] == decoded;
        ASSERT_TRUE(isLegal) << "book move " << std::hex << it->second.move << " after seed " << std::dec << seed
                             << ", ply " << ply;
      }
      UndoRecord undo;
      testing::forSide(board->sideToMove, [&](auto us) { board->makeMove<us()>(move, undo); });
    }
  }
  EXPECT_GT(positions, 200);
  EXPECT_GT(castlings, 0);
  EXPECT_TRUE(firstMoves.count("e2e4") && firstMoves.count("d2d4")) << firstMoves.size() << " first moves";
}

}  // namespace
}  // namespace torvy
