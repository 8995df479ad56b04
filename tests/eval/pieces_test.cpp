#include "eval/pieces.h"

#include <gtest/gtest.h>

#include "board/geometry.h"
#include "eval/mobility.h"
#include "eval/packed_score.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

using PiecesTest = EvalFixture;

TEST_F(PiecesTest, QueenFileTermOnlyOnOpenFiles) {
  struct QueenCase {
    const char* fen;
    Square88 queen;
    ScorePair fileTerm;
  };
  const QueenCase cases[] = {
      {"4k3/pppp1ppp/8/8/8/8/PPPP1PPP/3KQ3 w - - 0 1", sq::e1, {16, 111}},
      {"3k4/pppp1ppp/8/8/8/8/PPPP1PPP/3KQ3 w - - 0 1", sq::e1, {7, 39}},
      {"4k3/pppp1ppp/8/8/8/8/PPPP1PPP/Q3K3 w - - 0 1", sq::a1, {0, 0}},
      // Half-open: no term at all.
      {"4k3/pppppppp/8/8/8/8/PPPP1PPP/3KQ3 w - - 0 1", sq::e1, {0, 0}},
  };
  for (const QueenCase& c : cases) {
    const ScorePair queens = terms(c.fen).term(EvalTerm::Queens, White);
    EXPECT_EQ(queens - unpack(queenMobility(board, c.queen, White)), c.fileTerm) << c.fen;
  }
}

// The mobility is defined by walking the 0x88 board; the square sets must count the same.
TEST_F(PiecesTest, MobilityAgreesWithWalksOnTheBoard) {
  auto walk = [](const Board_0x88& b, Square88 s, const int* deltas, int count, bool slides) {
    int m = 0;
    for (int i = 0; i < count; ++i) {
      int t = s + deltas[i];
      for (; slides && onBoard(t) && b.pieceOn[t] == NoPiece; t += deltas[i]) ++m;
      if (onBoard(t) && b.colorOn[t] != b.colorOn[s]) ++m;
    }
    return m;
  };
  int pieces = 0;
  playRandomGames(10, 3, [&](Board_0x88& b) {
    const Occupancy occupancy = Occupancy::of(b);
    for (Color c : {White, Black})
      for (Square88 s : b.pieceList[c]) {
        if (!onBoard(s)) continue;
        ++pieces;
        switch (b.pieceOn[s]) {
          case Knight: EXPECT_EQ(knightSquares(s, targetsOf(occupancy, c)), walk(b, s, knightDeltas, 8, false)); break;
          case Bishop:
            EXPECT_EQ(bishopSquares(s, occupancy.all, targetsOf(occupancy, c)), walk(b, s, bishopDeltas, 4, true));
            break;
          case Rook:
            EXPECT_EQ(rookSquares(s, occupancy.all, targetsOf(occupancy, c)), walk(b, s, rookDeltas, 4, true));
            break;
          case Queen:
            EXPECT_EQ(queenSquares(s, occupancy.all, targetsOf(occupancy, c)), walk(b, s, kingDeltas, 8, true));
            break;
          default: break;
        }
      }
  });
  EXPECT_GT(pieces, 10000);
}

}  // namespace
}  // namespace torvy
