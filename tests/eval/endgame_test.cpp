#include "eval/endgame.h"

#include <gtest/gtest.h>

#include "data_table.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

class EndgameTest : public EvalFixture {};

TEST_F(EndgameTest, FourManDrawScale) {
  for (const testing::DataRow& row : testing::dataTable("draw_scales.txt"))
    EXPECT_EQ(drawScale(setUp(row[0].c_str())), std::stoi(row[1])) << row[0];
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
