// Mobility: how many squares a piece can go to, empty ones and those of enemy men, from the
// occupancy. Each ray is a set of squares with its far end, so the nearest blocker is one bit
// scan and no loop exit depends on where the pieces stand.
#pragma once

#include <array>
#include <bit>
#include <iterator>
#include <utility>

#include "board/geometry.h"
#include "eval/occupancy.h"

namespace torvy {

namespace detail {

// The squares of a ray from each square, and its far end; an empty ray ends on its start.
struct Ray {
  SquareSet squares;
  SquareSet end;
};
template <int Delta>
constexpr std::array<Ray, 64> makeRays() {
  std::array<Ray, 64> rays{};
  for (int s = 0; s < 64; ++s) {
    int last = s;
    for (Square88 t = toSquare88(Square64(s)) + Delta; onBoard(t); t += Delta) {
      last = toSquare64(t);
      rays[s].squares |= SquareSet(1) << last;
    }
    rays[s].end = SquareSet(1) << last;
  }
  return rays;
}
template <int Delta>
inline constexpr std::array<Ray, 64> rayTable = makeRays<Delta>();

// Empty squares along the ray, and the enemy man that ends it: the nearest blocker, or the
// far end, counts unless it holds a man of the mover's own colour.
template <int Delta>
inline int rayMobility(int s, SquareSet all, SquareSet ownOthers) {
  const Ray& ray = rayTable<Delta>[s];
  const SquareSet blockers = (ray.squares & all) | ray.end;
  // The far end is always among the blockers, so the scan needs none of the zero tests that
  // std::countr_zero and std::countl_zero carry.
  const int first = Delta > 0 ? __builtin_ctzll(blockers) : 63 ^ __builtin_clzll(blockers);
  const int steps = Delta == 1 || Delta == -1 ? first - s : (first >> 3) - (s >> 3);
  return (Delta > 0 ? steps : -steps) - int(ownOthers >> first & 1);
}

template <const auto& Deltas, std::size_t... I>
inline int sliderSquares(Square88 square, const Occupancy& occupancy, Color us, std::index_sequence<I...>) {
  const int s = toSquare64(square);
  const SquareSet ownOthers = occupancy.men(us) & ~(SquareSet(1) << s);
  return (rayMobility<Deltas[I]>(s, occupancy.all, ownOthers) + ...);
}

constexpr std::array<SquareSet, 64> makeKnightTargets() {
  std::array<SquareSet, 64> targets{};
  for (int s = 0; s < 64; ++s)
    for (int d : knightDeltas) {
      const Square88 t = toSquare88(Square64(s)) + d;
      if (onBoard(t)) targets[s] |= SquareSet(1) << toSquare64(t);
    }
  return targets;
}
inline constexpr std::array<SquareSet, 64> knightTargetTable = makeKnightTargets();

}  // namespace detail

// Squares a bishop, rook or queen, given its steps, can go to.
template <const auto& Deltas>
inline int sliderSquares(Square88 square, const Occupancy& occupancy, Color us) {
  return detail::sliderSquares<Deltas>(square, occupancy, us, std::make_index_sequence<std::size(Deltas)>());
}

// Squares a knight can go to.
inline int knightSquares(Square88 square, const Occupancy& occupancy, Color us) {
  return countSquares(detail::knightTargetTable[toSquare64(square)] & ~occupancy.men(us));
}

}  // namespace torvy
