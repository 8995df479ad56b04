#include "eval/material.h"

#include <gtest/gtest.h>

#include "eval_fixture.h"

namespace torvy {
namespace {

class MaterialTest : public EvalFixture {
 protected:
  MaterialInfo materialOf(const char* fen) { return computeMaterial(setUp(fen)); }
};

TEST_F(MaterialTest, BalanceSignatureAndPhase) {
  const MaterialInfo start = materialOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1");
  EXPECT_EQ(start.materialMg, 0);
  EXPECT_EQ(start.materialEg, 0);
  EXPECT_EQ(start.phase, 24u);
  EXPECT_EQ(start.signature[White], 0xF3412228u);
  EXPECT_EQ(start.signature[Black], start.signature[White]);
  EXPECT_EQ(board.psq[White], board.psq[Black]);
  // A third rook in place of a pawn: 25 phase points, held at 24.
  EXPECT_EQ(materialOf("rnbqkbnr/pppppppp/8/8/8/8/RPPPPPPP/RNBQKBNR w - - 0 1").phase, 24u);
}

TEST_F(MaterialTest, BishopPairAndPawnCountAdjustment) {
  struct Case {
    const char* fen;
    int mg, eg;
  };
  const Case cases[] = {
      // Six own pawns: each knight gains 7 / 6.
      {"4k3/pppppp2/8/8/8/8/PPPPPP2/1N2K1N1 w - - 0 1", 2 * 424 + 14, 2 * 376 + 12},
      // No own pawns: a rook gains 75 / 60.
      {"8/8/8/8/3k4/8/8/K6R w - - 0 1", 621 + 75, 594 + 60},
      // Three bishops get one pair bonus.
      {"4k3/8/8/8/8/8/8/1BB1KB2 w - - 0 1", 3 * 402 + 42, 3 * 403 + 69},
      {"1bb1kb2/8/8/8/8/8/8/4K3 w - - 0 1", -(3 * 402 + 42), -(3 * 403 + 69)},
  };
  for (const Case& c : cases) {
    const MaterialInfo m = materialOf(c.fen);
    EXPECT_EQ(m.materialMg, c.mg) << c.fen;
    EXPECT_EQ(m.materialEg, c.eg) << c.fen;
  }
}

TEST_F(MaterialTest, CanWin) {
  struct Case {
    const char* fen;
    bool white;
  };
  const Case cases[] = {
      {"4k3/8/8/8/8/8/8/1N2K1N1 w - - 0 1", false}, {"4k3/8/8/8/8/8/8/1N2KB2 w - - 0 1", true},
      {"4k3/8/8/8/8/8/8/4KB2 w - - 0 1", false},    {"4k3/8/8/8/8/8/8/NN2K1N1 w - - 0 1", true},
      {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", true},     {"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", true},
  };
  for (const Case& c : cases) EXPECT_EQ(materialOf(c.fen).canWin[White], c.white) << c.fen;
}

}  // namespace
}  // namespace torvy
