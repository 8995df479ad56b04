#include "eval/pawns.h"

#include <gtest/gtest.h>

#include "eval_fixture.h"

namespace torvy {
namespace {

using PawnsTest = EvalFixture;

TEST_F(PawnsTest, IsolatedDoubledAndBackwardPawns) {
  const TermCase cases[] = {
      // e4 behind d5 with no support: the stretch is e5, attacked from f6, occupied from e5, or both.
      {"7k/8/5p2/3P4/4P3/8/8/K7 w - - 0 1", {-24, -13}},
      {"7k/8/8/3Pp3/4P3/8/8/K7 w - - 0 1", {12, -5}},
      {"7k/8/5p2/3Pp3/4P3/8/8/K7 w - - 0 1", {-12, -18}},
      // Three pawns on one file alone: one isolated and one doubled penalty.
      {"7k/8/8/4P3/4P3/4P3/8/K7 w - - 0 1", {-37, -43}},
      // An a-pawn beside a b-pawn is not isolated; an h-pawn looks at the g-file only.
      {"7k/8/8/8/8/8/PP6/K7 w - - 0 1", {0, 0}},
      {"7k/8/8/8/8/8/P6P/K7 w - - 0 1", {-62, -26}},
      {"7k/8/8/8/8/8/6PP/K7 w - - 0 1", {0, 0}},
      // A pawn on its sixth rank is never backward, whatever blocks it.
      {"7k/3Pp3/4P3/8/8/8/8/K7 w - - 0 1", {0, 0}},
  };
  for (const TermCase& c : cases) expectWhiteTerm(EvalTerm::WeakPawns, c);
}

TEST_F(PawnsTest, PassedPawns) {
  const TermCase cases[] = {
      // Blocked further up the file: n = 2 + 1, a quarter of passedBonus[3].
      {"4n2k/8/4P3/8/8/8/8/K7 w - - 0 1", {5, 21}},
      // Doubled on an open file: both passed, the rear one counts the front one.
      {"7k/8/8/4P3/4P3/8/8/K7 w - - 0 1", {28, 120}},
      // A single enemy rook and a king too far: passedBonus[2] plus unstoppableBonus[2].
      {"7k/8/1P6/8/8/8/8/K6r w - - 0 1", {219, 472}},
      {"7k/8/1P6/8/8/8/7p/K6r w - - 0 1", {219, 472}},
      // Not in a pure pawn ending, not against two pieces, not when the distance equals n.
      {"7k/8/1P6/8/8/8/7p/K7 w - - 0 1", {76, 133}},
      {"6nk/8/1P6/8/8/8/8/K6r w - - 0 1", {76, 133}},
      {"3k4/8/1P6/8/8/8/8/K6r w - - 0 1", {76, 133}},
      // On its second rank the double step counts: n = 5.
      {"7k/8/8/8/8/8/P7/K6r b - - 0 1", {-30, 83}},
  };
  for (const TermCase& c : cases) expectWhiteTerm(EvalTerm::PassedPawns, c);
}

TEST_F(PawnsTest, HashHitGivesTheSameInfoAndCountsOnce) {
  const char* fen = "r1bq1rk1/pp2bppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R1BQ1RK1 w - - 0 1";
  setUp(fen);
  NoBook none;
  // Hits reach the shared count in batches; flushing first drops what earlier tests left pending.
  pawnHash.flushHits();
  pawnHash.hits = 0;
  PawnInfo miss;
  const PackedScore first = evaluatePawns(miss, board, pawnHash, none);
  pawnHash.flushHits();
  EXPECT_EQ(pawnHash.hits, 0u);
  PawnInfo hit;
  EXPECT_EQ(evaluatePawns(hit, board, pawnHash, none), first);
  pawnHash.flushHits();
  EXPECT_EQ(pawnHash.hits, 1u);
  // Only the c-file is open, and every other file holds pawns of both colours.
  EXPECT_EQ(miss.openFiles, 1u << 2);
  EXPECT_EQ(miss.halfOpenFiles, 0u);
}

// The passed sets are made from the enemy pawns' spans; they must be what passedMask defines.
TEST_F(PawnsTest, PassedSetsFollowThePassedMasks) {
  NoBook none;
  int passers = 0;
  playRandomGames(10, 9, [&](Board_0x88& b) {
    PawnInfo info;
    evaluatePawns(info, b, pawnHash, none);
    for (Color c : {White, Black}) {
      SquareSet expected = 0;
      for (int s = 0; s < 64; ++s)
        if ((info.pawns[c] >> s & 1) && (passedMask[c][s] & info.pawns[opposite(c)]) == 0)
          expected |= SquareSet(1) << s;
      EXPECT_EQ(info.passed[c], expected);
      passers += countSquares(expected);
    }
  });
  EXPECT_GT(passers, 1000);
}

}  // namespace
}  // namespace torvy
