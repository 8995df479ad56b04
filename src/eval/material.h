// The material summary of a position, from the board's counters.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace torvy {

// Four bits per field of a colour's signature; bits 28-31 count its men other than the king.
namespace signature {
constexpr int PawnShift = 0;
constexpr int KnightShift = 4;
constexpr int BishopShift = 8;
constexpr int RookShift = 12;
constexpr int QueenShift = 16;
constexpr int MinorShift = 20;
constexpr int MajorShift = 24;
constexpr int MenShift = 28;

constexpr unsigned field(std::uint32_t sig, int shift) { return (sig >> shift) & 15; }
}  // namespace signature

struct MaterialInfo {
  std::uint32_t signature[2];
  std::int16_t materialMg;  // White minus Black
  std::int16_t materialEg;
  std::uint8_t phase;
  std::uint8_t canWin[2];

  unsigned pawns(Color c) const { return signature::field(signature[c], signature::PawnShift); }
  unsigned menBesideKing(Color c) const { return signature[c] >> signature::MenShift; }
};

// From a cache of the thread's recent materials, built from the counts on a miss.
MaterialInfo computeMaterial(const Board_0x88& board);

}  // namespace torvy
