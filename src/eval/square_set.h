// Sets of squares as 64-bit words, bit = Square64.
#pragma once

#include <bit>
#include <cstdint>

namespace torvy {

using SquareSet = std::uint64_t;

constexpr SquareSet bitOf(int file, int rank) { return SquareSet(1) << (rank * 8 + file); }

// One instruction where the build targets processors with a population count (the default).
constexpr int countSquares(SquareSet set) { return std::popcount(set); }

}  // namespace torvy
