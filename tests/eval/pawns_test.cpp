#include "eval/pawns.h"

#include <gtest/gtest.h>

#include "eval_fixture.h"

namespace torvy {
namespace {

using PawnsTest = EvalFixture;

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
      Bitboard expected = 0;
      for (int s = 0; s < 64; ++s)
        if ((info.pawns[c] >> s & 1) && (passedMask[c][s] & info.pawns[opposite(c)]) == 0) expected |= Bitboard(1) << s;
      EXPECT_EQ(info.passed[c], expected);
      passers += countSquares(expected);
    }
  });
  EXPECT_GT(passers, 1000);
}

}  // namespace
}  // namespace torvy
