#include "eval/occupancy.h"

#include <gtest/gtest.h>

#include "eval_fixture.h"

namespace torvy {
namespace {

using OccupancyTest = EvalFixture;

// The sets must hold the men of the colour array, whether the pawns come known, as in the
// evaluation, which then reads the pawns' slots only for a promoted piece there, or not; and
// with the pawns known, the occupancy must tell exactly which colours have such a piece.
TEST_F(OccupancyTest, MatchesTheColourArrayWithAndWithoutKnownPawns) {
  int promotedAmongPawns = 0;
  playRandomGames(10, 11, [&](Board_0x88& b) {
    Bitboard all = 0, black = 0, pawns[2] = {0, 0};
    for (int s = 0; s < 64; ++s) {
      const Square88 square = toSquare88(Square64(s));
      const Color c = b.colorOn[square];
      if (c == NoColor) continue;
      all |= Bitboard(1) << s;
      if (c == Black) black |= Bitboard(1) << s;
      if (b.pieceOn[square] == Pawn) pawns[c] |= Bitboard(1) << s;
    }
    const Occupancy known = Occupancy::of(b, pawns[White], pawns[Black]);
    for (const Occupancy& o : {Occupancy::of(b), known}) {
      ASSERT_EQ(o.all, all);
      ASSERT_EQ(o.black, black);
    }
    for (Color c : {White, Black}) {
      bool promoted = false;
      for (int slot = SharedSlotsBegin; slot < SlotCount; ++slot) {
        const Square88 s = b.pieceList[c][slot];
        promoted |= onBoard(s) && b.pieceOn[s] != Pawn;
      }
      ASSERT_EQ(known.piecesInPawnSlots[c], promoted);
      promotedAmongPawns += promoted;
    }
  });
  EXPECT_GT(promotedAmongPawns, 0);
}

}  // namespace
}  // namespace torvy
