#include "eval/pieces.h"

#include <gtest/gtest.h>

#include "board/geometry.h"
#include "eval/mobility.h"
#include "eval/packed_score.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

using PiecesTest = EvalFixture;

TEST_F(PiecesTest, RookMobilityAndFiles) {
  const TermCase cases[] = {
      // Shut in by its own pawn and king on a closed file: the m = 0 line alone.
      {"7k/7p/8/8/8/8/7P/6KR w - - 0 1", {-15, -30}},
      // 14 free squares (-28 / 182), the one open file (68 / 42), the enemy king beside it (54 / -21).
      {"4k3/ppp1pppp/8/8/3R4/8/PPP1PPPP/4K3 w - - 0 1", {94, 203}},
      // Two open files: 88 / 20, whichever of them the rook stands on.
      {"4k3/ppp2ppp/8/8/3R4/8/PPP2PPP/4K3 w - - 0 1", {114, 181}},
      // Half-open file, two open and three half-open files: 53 / 10 on top of seven squares.
      {"6k1/pp4pp/8/8/8/4P3/PP3P1P/4R2K w - - 0 1", {39, 101}},
      // a-file rook: the beside line for a king on b8, and no wrap to a king on h8.
      {"1k6/1ppppppp/8/8/8/8/1PPPPPPP/R6K w - - 0 1", {96, 190}},
      {"7k/1ppppppp/8/8/8/8/1PPPPPPP/R6K w - - 0 1", {42, 211}},
  };
  for (const TermCase& c : cases) expectWhiteTerm(EvalTerm::Rooks, c);
}

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

TEST_F(PiecesTest, EnemyMenEndRaysAndCount) {
  const TermCase knights[] = {
      {"7k/8/8/8/8/8/2P5/N6K w - - 0 1", {4, 8}},   // b3 only
      {"7k/8/8/8/8/8/2p5/N6K w - - 0 1", {8, 16}},  // b3 and the pawn on c2
      {"7k/8/8/8/8/1P6/2P5/N6K w - - 0 1", {-13, -55}},
  };
  for (const TermCase& c : knights) expectWhiteTerm(EvalTerm::Knights, c);
  const TermCase bishops[] = {
      {"7k/8/8/8/8/8/1P6/B6K w - - 0 1", {-10, -20}},
      {"7k/8/8/8/8/8/1p6/B6K w - - 0 1", {10, 6}},
      {"7k/8/8/8/8/2p5/8/B6K w - - 0 1", {20, 12}},
  };
  for (const TermCase& c : bishops) expectWhiteTerm(EvalTerm::Bishops, c);
}

TEST_F(PiecesTest, PawnTropismEndsAtTheKingsRank) {
  // A pawn beyond the enemy king's rank no longer counts; one level with it does.
  EXPECT_EQ(terms("8/8/8/8/8/1P6/k7/7K w - - 0 1").term(EvalTerm::KingTropism, White), (ScorePair{0, 0}));
  EXPECT_EQ(terms("8/8/8/8/8/8/kP6/7K w - - 0 1").term(EvalTerm::KingTropism, White), (ScorePair{10, -4}));
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
