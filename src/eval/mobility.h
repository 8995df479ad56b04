// Mobility: how many squares a piece can go to, empty ones and those of enemy men, from the
// occupancy and the attack sets.
#pragma once

#include <array>

#include "board/geometry.h"
#include "board/slider_attacks.h"
#include "eval/occupancy.h"

namespace torvy {

namespace detail {

// By 0x88 square, as the slider tables are.
constexpr std::array<Bitboard, 128> makeKnightTargets() {
  std::array<Bitboard, 128> targets{};
  for (int s = 0; s < 128; ++s)
    for (int d : knightDeltas)
      if (onBoard(s) && onBoard(s + d)) targets[s] |= Bitboard(1) << toSquare64(Square88(s + d));
  return targets;
}
inline constexpr std::array<Bitboard, 128> knightTargetTable = makeKnightTargets();

}  // namespace detail

// The targets are the empty squares and those of enemy men, computed once for all the men of a
// colour.
inline Bitboard targetsOf(const Occupancy& occupancy, Color us) { return ~occupancy.men(us); }

inline int knightSquares(Square88 square, Bitboard targets) {
  return countSquares(detail::knightTargetTable[square] & targets);
}

inline int bishopSquares(Square88 square, Bitboard all, Bitboard targets) {
  return countSquares(bishopAttacks(square, all) & targets);
}

inline int rookSquares(Square88 square, Bitboard all, Bitboard targets) {
  return countSquares(rookAttacks(square, all) & targets);
}

inline int queenSquares(Square88 square, Bitboard all, Bitboard targets) {
  return countSquares((bishopAttacks(square, all) | rookAttacks(square, all)) & targets);
}

}  // namespace torvy
