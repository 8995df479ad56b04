// Square64 bit sets beside the 0x88 arrays: the rays and steps from each square, and the nearest
// occupied square along a ray found with one bit scan instead of a walk over the empty ones.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "board/geometry.h"

namespace torvy {

using Bitboard = std::uint64_t;

inline Bitboard squareBit(Square88 s) { return Bitboard(1) << toSquare64(s); }
constexpr Bitboard bitOf(int file, int rank) { return Bitboard(1) << (rank * 8 + file); }

// One instruction where the build targets processors with a population count (the default).
constexpr int countSquares(Bitboard set) { return std::popcount(set); }

// By the direction index of rayDeltas: the squares along that ray, the square itself left out.
constexpr int DirectionCount = 9;
constexpr std::array<std::array<Bitboard, 64>, DirectionCount> makeRayMasks() {
  std::array<std::array<Bitboard, 64>, DirectionCount> masks{};
  for (int dir = 1; dir < DirectionCount; ++dir)
    for (int s = 0; s < 128; ++s) {
      if (!onBoard(s)) continue;
      for (int t = s + rayDeltas[dir]; onBoard(t); t += rayDeltas[dir])
        masks[dir][toSquare64(Square88(s))] |= Bitboard(1) << toSquare64(Square88(t));
    }
  return masks;
}
inline constexpr std::array<std::array<Bitboard, 64>, DirectionCount> rayMasks = makeRayMasks();

// By direction index, the step of rayDeltas on Square64 numbers.
constexpr int square64Steps[DirectionCount] = {0, 7, 8, 9, 1, -7, -8, -9, -1};

// Directions 1 to 4 step up the board, so their nearest square has the lowest bit; 5 to 8 step
// down, the highest.
constexpr bool stepsUp(int dir) { return dir <= 4; }

// The nearest occupied square from s along direction dir, or NoSquare past the edge.
inline Square88 nearestOccupied(Bitboard occupied, Square88 s, int dir) {
  const Bitboard hit = rayMasks[dir][toSquare64(s)] & occupied;
  if (hit == 0) return NoSquare;
  return toSquare88(Square64(stepsUp(dir) ? std::countr_zero(hit) : 63 - std::countl_zero(hit)));
}

// The squares strictly between a and b along direction dir from a, b lying on that ray.
inline Bitboard squaresBetween(Square88 a, Square88 b, int dir) {
  return rayMasks[dir][toSquare64(a)] & ~rayMasks[dir][toSquare64(b)] & ~squareBit(b);
}

// By colour, piece and Square64, the squares the piece could take on from there on an empty
// board: a piece whose squares hold no enemy has no capture to look for.
constexpr std::array<std::array<std::array<Bitboard, 64>, 7>, 2> makeCaptureReach() {
  std::array<std::array<std::array<Bitboard, 64>, 7>, 2> reach{};
  auto steps = [](int s, const int* deltas, int n) {
    Bitboard b = 0;
    for (int i = 0; i < n; ++i)
      if (onBoard(s + deltas[i])) b |= Bitboard(1) << toSquare64(Square88(s + deltas[i]));
    return b;
  };
  for (int s = 0; s < 128; ++s) {
    if (!onBoard(s)) continue;
    const Square64 s64 = toSquare64(Square88(s));
    Bitboard straight = 0, diagonal = 0;
    for (int dir = 1; dir < DirectionCount; ++dir)
      (raySliderClass[dir] == StraightSlider ? straight : diagonal) |= rayMasks[dir][s64];
    for (int c = White; c <= Black; ++c) {
      reach[c][Pawn][s64] = steps(s, pawnCaptureDeltas[c], 2);
      reach[c][Knight][s64] = steps(s, knightDeltas, 8);
      reach[c][Bishop][s64] = diagonal;
      reach[c][Rook][s64] = straight;
      reach[c][Queen][s64] = straight | diagonal;
      reach[c][King][s64] = steps(s, kingDeltas, 8);
    }
  }
  return reach;
}
inline constexpr std::array<std::array<std::array<Bitboard, 64>, 7>, 2> captureReach = makeCaptureReach();

// The direction indices of the walks in geometry.h, in the same order as their deltas.
constexpr int rookDirections[4] = {8, 2, 4, 6};
constexpr int bishopDirections[4] = {1, 3, 5, 7};

constexpr bool directionsMatch(const int (&dirs)[4], const int (&deltas)[4]) {
  for (int i = 0; i < 4; ++i)
    if (rayDeltas[dirs[i]] != deltas[i]) return false;
  return true;
}
static_assert(directionsMatch(rookDirections, rookDeltas) && directionsMatch(bishopDirections, bishopDeltas));

// The opposite direction: 1 to 4 pair with 5 to 8.
constexpr int reverseDirection(int dir) { return dir <= 4 ? dir + 4 : dir - 4; }

}  // namespace torvy
