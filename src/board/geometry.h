// Fixed steps and rays of the 0x88 board, in the order every walk visits them.
#pragma once

#include <array>

#include "board/types.h"

namespace torvy {

constexpr int bishopDeltas[4] = {15, 17, -15, -17};
constexpr int rookDeltas[4] = {-1, 16, 1, -16};
constexpr int knightDeltas[8] = {14, 31, 33, 18, -14, -31, -33, -18};
constexpr int kingDeltas[8] = {-1, 16, 1, -16, 15, 17, -15, -17};
constexpr int pawnForward[2] = {16, -16};
// A pawn's two capture steps, in order.
constexpr int pawnCaptureDeltas[2][2] = {{15, 17}, {-15, -17}};

// Index 0 is no direction; 1 to 4 point up the board, 5 to 8 down.
constexpr int rayDeltas[9] = {0, 15, 16, 17, 1, -15, -16, -17, -1};
constexpr int raySliderClass[9] = {0, 1, 2, 1, 2, 1, 2, 1, 2};
constexpr int DiagonalSlider = 1;
constexpr int StraightSlider = 2;

constexpr std::array<std::uint8_t, 120> makeRayIndexByDifference() {
  std::array<std::uint8_t, 120> table{};
  for (int k = 1; k <= 7; ++k) {
    table[15 * k] = 1;
    table[16 * k] = 2;
    table[17 * k] = 3;
    table[k] = 4;
  }
  return table;
}
constexpr std::array<std::uint8_t, 120> rayIndexByDifference = makeRayIndexByDifference();

// By the difference b - a of two squares, a the one looked from, offset so that NoSquare as b
// still has an entry: bit i (1 to 8) when b lies along rayDeltas[i] from a, and bit 0 when b is
// a or one of its neighbours. One load tells whether a piece can reach a square at all.
constexpr int LineDifferenceOffset = 119;
constexpr std::uint16_t NearBit = 1;
constexpr std::uint16_t StraightRayBits = 1 << 2 | 1 << 4 | 1 << 6 | 1 << 8;
constexpr std::uint16_t DiagonalRayBits = 1 << 1 | 1 << 3 | 1 << 5 | 1 << 7;
constexpr std::array<std::uint16_t, 256 + LineDifferenceOffset> makeLineBitsByDifference() {
  std::array<std::uint16_t, 256 + LineDifferenceOffset> table{};
  for (int a = 0; a < 128; ++a) {
    if (!onBoard(a)) continue;
    for (int i = 1; i <= 8; ++i)
      for (int b = a + rayDeltas[i]; onBoard(b); b += rayDeltas[i])
        table[b - a + LineDifferenceOffset] |= std::uint16_t(1 << i);
    for (int d : kingDeltas)
      if (onBoard(a + d)) table[d + LineDifferenceOffset] |= NearBit;
  }
  table[LineDifferenceOffset] |= NearBit;
  return table;
}
constexpr std::array<std::uint16_t, 256 + LineDifferenceOffset> lineBitsByDifference = makeLineBitsByDifference();

inline std::uint16_t lineBits(Square88 from, Square88 to) {
  return lineBitsByDifference[int(to) - int(from) + LineDifferenceOffset];
}

// The index into rayDeltas of the step from a toward b, 0 if they share no line.
constexpr int rayDirection(Square88 a, Square88 b) {
  int difference = int(b) - int(a);
  int index = rayIndexByDifference[difference < 0 ? -difference : difference];
  if (index == 0) return 0;
  return difference > 0 ? index : index + 4;
}

}  // namespace torvy
