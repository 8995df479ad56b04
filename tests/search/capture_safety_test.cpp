#include <gtest/gtest.h>

#include "board/fen.h"
#include "search/capture_safety.h"

namespace torvy {
namespace {

// The capture from `from` to `to` by White in the given position.
bool losing(const char* fen, Square88 from, Square88 to, int* gainOut = nullptr) {
  Board_0x88 board;
  EXPECT_TRUE(setFromFen(board, fen)) << fen;
  int gain = 0;
  const bool result = isLosingCapture<White>(board, makeNormalMove(from, to), gain);
  if (gainOut) *gainOut = gain;
  return result;
}

constexpr Square88 d5 = 0x43;

TEST(CaptureSafety, PawnAndKnightDefenders) {
  int gain = 0;
  EXPECT_FALSE(losing("4k3/8/2p5/3p4/4P3/8/8/4K3 w - - 0 1", 0x34, d5, &gain)) << "pawn takes pawn";
  EXPECT_EQ(gain, 125);
  EXPECT_TRUE(losing("4k3/8/2p5/3p4/8/4N3/8/4K3 w - - 0 1", 0x24, d5)) << "knight takes a pawn-defended pawn";
  EXPECT_FALSE(losing("4k3/8/8/3p4/1n6/4N3/8/4K3 w - - 0 1", 0x24, d5)) << "only a knight defends";
  EXPECT_TRUE(losing("4k3/8/8/3p4/1n6/8/8/3RK3 w - - 0 1", 0x03, d5)) << "rook takes a knight-defended pawn";
}

TEST(CaptureSafety, QueenAndEqualClasses) {
  EXPECT_TRUE(losing("4k3/8/2p5/3r4/8/8/8/3QK3 w - - 0 1", 0x03, d5));
  EXPECT_TRUE(losing("4k3/8/8/3r4/1n6/8/8/3QK3 w - - 0 1", 0x03, d5));
  EXPECT_FALSE(losing("3rk3/8/8/3r4/8/8/8/3QK3 w - - 0 1", 0x03, d5)) << "a rook defender is not looked at";
  EXPECT_FALSE(losing("4k3/8/2p5/3n4/8/8/B7/4K3 w - - 0 1", 0x10, d5)) << "bishop takes knight: equal classes";
  EXPECT_FALSE(losing("4k3/8/8/3b4/1n6/8/8/3RK3 w - - 0 1", 0x03, d5)) << "rook takes bishop, knight defends";
  EXPECT_TRUE(losing("4k3/8/2p5/3b4/8/8/8/3RK3 w - - 0 1", 0x03, d5));
  EXPECT_FALSE(losing("4k3/8/2p5/3p4/3K4/8/8/8 w - - 0 1", 0x33, d5)) << "a king never loses";
}

TEST(CaptureSafety, SpecialMovesAndGains) {
  Board_0x88 board;
  ASSERT_TRUE(setFromFen(board, "1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1"));
  int gain = 0;
  EXPECT_FALSE(isLosingCapture<White>(board, makePromotion(0x60, 0x70, Queen), gain));
  EXPECT_EQ(gain, 1000);
  EXPECT_FALSE(isLosingCapture<White>(board, makePromotion(0x60, 0x71, Knight), gain));
  EXPECT_EQ(gain, 275) << "the gain of a promotion ignores the victim";
}

}  // namespace
}  // namespace torvy
