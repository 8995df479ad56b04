// Mobility: how many squares a piece can go to, empty ones and those of enemy men, from the
// occupancy and the attack sets.
#pragma once

#include <array>

#include "board/geometry.h"
#include "eval/occupancy.h"
#include "eval/slider_attacks.h"

namespace torvy {

namespace detail {

constexpr std::array<SquareSet, 64> makeKnightTargets() {
  std::array<SquareSet, 64> targets{};
  for (int s = 0; s < 64; ++s)
    for (int d : knightDeltas) {
      const int t = toSquare88(Square64(s)) + d;
      if (onBoard(t)) targets[s] |= SquareSet(1) << toSquare64(Square88(t));
    }
  return targets;
}
inline constexpr std::array<SquareSet, 64> knightTargetTable = makeKnightTargets();

}  // namespace detail

// The targets are the empty squares and those of enemy men, computed once for all the men of a
// colour.
inline SquareSet targetsOf(const Occupancy& occupancy, Color us) { return ~occupancy.men(us); }

inline int knightSquares(Square88 square, SquareSet targets) {
  return countSquares(detail::knightTargetTable[toSquare64(square)] & targets);
}

inline int bishopSquares(Square88 square, SquareSet all, SquareSet targets) {
  return countSquares(bishopAttacks(toSquare64(square), all) & targets);
}

inline int rookSquares(Square88 square, SquareSet all, SquareSet targets) {
  return countSquares(rookAttacks(toSquare64(square), all) & targets);
}

inline int queenSquares(Square88 square, SquareSet all, SquareSet targets) {
  const int s = toSquare64(square);
  return countSquares((bishopAttacks(s, all) | rookAttacks(s, all)) & targets);
}

}  // namespace torvy
