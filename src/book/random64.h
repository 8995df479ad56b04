// Random64, the fixed random table of the Polyglot book format: every book file's keys are
// built from it, so it is a constant of the format and unrelated to the engine's own keys.
#pragma once

#include <array>
#include <cstddef>

#include "board/keys.h"

namespace torvy {

constexpr std::size_t Random64Size = 781;

// Index layout: 64 * kind + square for pieces, then the four castling rights,
// the eight en passant files and the side to move.
constexpr std::size_t Random64Castling = 768;
constexpr std::size_t Random64EnPassant = 772;
constexpr std::size_t Random64WhiteToMove = 780;

extern const std::array<Key, Random64Size> Random64;

}  // namespace torvy
