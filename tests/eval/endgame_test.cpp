#include "eval/endgame.h"

#include <gtest/gtest.h>

#include <utility>

#include "eval_fixture.h"

namespace torvy {
namespace {

class EndgameTest : public EvalFixture {};

TEST_F(EndgameTest, FourManDrawScale) {
  const std::pair<const char*, int> cases[] = {
      // a-pawn with a dark bishop can't cover a8: a draw with the king next to the corner, half otherwise.
      {"8/1k6/8/P7/8/8/8/2B1K3 w - - 0 1", 0},
      {"8/8/2k5/P7/8/8/8/2B1K3 w - - 0 1", 50},
      {"8/1k6/8/P7/8/8/8/3BK3 w - - 0 1", 100},
      {"8/1k6/8/1P6/8/8/8/2B1K3 w - - 0 1", 100},
      {"2b1k3/8/8/8/p7/8/1K6/8 w - - 0 1", 0},
      // Queen against a rook or bishop pawn on the seventh with its king beside it.
      {"Q7/8/8/8/8/8/7p/4K1k1 w - - 0 1", 25},
      {"3K4/2P5/8/8/8/8/8/q6k w - - 0 1", 25},
      {"K7/P7/8/8/8/8/8/q6k w - - 0 1", 25},
      {"8/1K6/P7/8/8/8/8/q6k w - - 0 1", 100},
      {"3K4/1P6/8/8/8/8/8/q6k w - - 0 1", 100},
      {"2K5/3P4/8/8/8/8/8/q6k w - - 0 1", 100},
      {"8/2P1K3/8/8/8/8/8/q6k w - - 0 1", 100},
      {"8/8/8/8/8/8/5p2/Q3K1k1 w - - 0 1", 25},
      // Rook against a minor piece, in either colour.
      {"8/5k2/8/8/3R4/2K5/5b2/8 w - - 0 1", 25},
      {"8/5k2/8/8/3r4/2K5/5N2/8 w - - 0 1", 12},
      {"8/5k2/8/8/3R4/2K5/5p2/8 w - - 0 1", 100},
      {"8/5k2/8/8/3R4/2K5/5bp1/8 w - - 0 1", 100},
  };
  for (const auto& [fen, scale] : cases) EXPECT_EQ(drawScale(setUp(fen)), scale) << fen;
  EXPECT_EQ(score("8/1k6/8/P7/8/8/8/2B1K3 w - - 0 1"), 0);
}

// The weak king is safe in the corners that the bishop cannot reach: a1 and h8 for a light
// bishop, a8 and h1 for a dark one. The white king stands as far from a1 as from a8, so only the
// corner term tells a black king on a8 from one on a1.
TEST_F(EndgameTest, BishopAndKnightDriveTheKingAwayFromItsSafeCorners) {
  EXPECT_EQ(score("k7/8/8/8/4K3/8/8/3B2N1 w - - 0 1") - score("8/8/8/8/4K3/8/8/k2B2N1 w - - 0 1"), 112);
  EXPECT_EQ(score("k7/8/8/8/4K3/8/8/2B3N1 w - - 0 1") - score("8/8/8/8/4K3/8/8/k1B3N1 w - - 0 1"), -112);
}

TEST_F(EndgameTest, MarginOfTheStrongSide) {
  // Kings on e4 and a1: the weak side gets 3 * 64 on e4 or nothing on a1, the strong (7 - 4) * 2.
  setUp("8/8/8/8/4K3/8/8/k7 w - - 0 1");
  NoBook none;
  MaterialInfo material = computeMaterial(board);
  material.materialMg = material.materialEg = 190;
  EXPECT_EQ(evaluatePawnless(board, material, none), 190 + 192 - 6);
  material.materialMg = material.materialEg = 191;
  EXPECT_EQ(evaluatePawnless(board, material, none), 191 + 6);
  // Level material counts White as the weak side, for either side to move.
  material.materialMg = material.materialEg = 0;
  EXPECT_EQ(evaluatePawnless(board, material, none), 192 - 6);
  board.sideToMove = Black;
  EXPECT_EQ(evaluatePawnless(board, material, none), 6 - 192);
}

}  // namespace
}  // namespace torvy
