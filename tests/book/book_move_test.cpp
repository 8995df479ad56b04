#include "book/book_move.h"

#include "board/board_helpers.h"
#include "book_helpers.h"

namespace torvy {
namespace {

using testing::boardFrom;
using testing::bookMove;
using testing::legalMove;

constexpr const char* CastlingFen = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";

TEST(BookMove, CastlingInBothForms) {
  auto board = boardFrom(CastlingFen);
  struct Case {
    Square88 from, to;
    Move expected;
  };
  const Case cases[] = {
      {sq::e1, sq::h1, WhiteCastleKingSide},  {sq::e1, sq::g1, WhiteCastleKingSide},
      {sq::e1, sq::a1, WhiteCastleQueenSide}, {sq::e1, sq::c1, WhiteCastleQueenSide},
      {sq::e8, sq::h8, BlackCastleKingSide},  {sq::e8, sq::g8, BlackCastleKingSide},
      {sq::e8, sq::a8, BlackCastleQueenSide}, {sq::e8, sq::c8, BlackCastleQueenSide},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(decodeBookMove(*board, makeBookMove(c.from, c.to)), c.expected)
        << moveToText(makeNormalMove(c.from, c.to));
  }
}

TEST(BookMove, CastlingNeedsKingAndRookInPlace) {
  // No rook on h1: e1g1 is an ordinary king move; a king that is not on e1 never castles.
  auto noRook = boardFrom("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
  EXPECT_EQ(decodeBookMove(*noRook, bookMove("e1g1")), makeNormalMove(sq::e1, sq::g1));
  auto rookTakesRook = boardFrom("3k4/8/8/8/8/8/8/4RK1R w - - 0 1");
  EXPECT_EQ(decodeBookMove(*rookTakesRook, bookMove("e1h1")), makeNormalMove(sq::e1, sq::h1));
  // A rook of the wrong colour in the corner is a capture, not castling.
  auto enemyRook = boardFrom("4k3/8/8/8/8/8/8/4K2r w - - 0 1");
  EXPECT_EQ(decodeBookMove(*enemyRook, bookMove("e1h1")), makeNormalMove(sq::e1, sq::h1));
}

TEST(BookMove, PawnMoves) {
  auto start = boardFrom(StartFen);
  EXPECT_EQ(decodeBookMove(*start, bookMove("e2e4")), legalMove(*start, "e2e4"));
  EXPECT_EQ(decodeBookMove(*start, bookMove("e2e3")), legalMove(*start, "e2e3"));

  auto ep = boardFrom("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3");
  EXPECT_EQ(decodeBookMove(*ep, bookMove("e5f6")), legalMove(*ep, "e5f6"));

  auto black = boardFrom("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
  EXPECT_EQ(decodeBookMove(*black, bookMove("d7d5")), legalMove(*black, "d7d5"));
}

TEST(BookMove, Promotions) {
  auto board = boardFrom("1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
  const char* texts[] = {"a7a8n", "a7a8b", "a7a8r", "a7a8q"};
  for (unsigned field = 1; field <= 4; ++field) {
    EXPECT_EQ(decodeBookMove(*board, bookMove("a7a8", field)), legalMove(*board, texts[field - 1]));
  }
  EXPECT_EQ(decodeBookMove(*board, bookMove("a7b8", 4)), legalMove(*board, "a7b8q"));
  for (unsigned damaged = 5; damaged <= 7; ++damaged) {
    EXPECT_EQ(decodeBookMove(*board, bookMove("a7a8", damaged)), NoMove);
  }
}

}  // namespace
}  // namespace torvy
