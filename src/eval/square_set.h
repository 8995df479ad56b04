// Sets of squares as 64-bit words, bit = Square64.
#pragma once

#include <cstdint>

namespace torvy {

using SquareSet = std::uint64_t;

constexpr SquareSet bitOf(int file, int rank) { return SquareSet(1) << (rank * 8 + file); }

// Branch-free, and no library call where the processor has no population count.
constexpr int countSquares(SquareSet set) {
  set -= (set >> 1) & 0x5555555555555555;
  set = (set & 0x3333333333333333) + ((set >> 2) & 0x3333333333333333);
  set = (set + (set >> 4)) & 0x0F0F0F0F0F0F0F0F;
  return int((set * 0x0101010101010101) >> 56);
}

}  // namespace torvy
