// Square sets of the pawn terms, by colour and Square64; squares of ranks 1 and 8 have none.
#pragma once

#include <array>
#include <cstdint>

#include "board/bitboards.h"
#include "board/types.h"

namespace torvy {

using PawnMaskTable = std::array<std::array<Bitboard, 64>, 2>;

namespace detail {

// Ranks are counted from the colour's own side: 1 is its second rank, 6 its seventh.
enum class PawnMask { Support, ForwardFile, Passed };

template <PawnMask Kind>
constexpr PawnMaskTable makePawnMasks() {
  PawnMaskTable table{};
  for (Color c : {White, Black})
    for (int s = 8; s < 56; ++s) {
      const int file = s & 7;
      const int relative = c == White ? s >> 3 : 7 - (s >> 3);
      Bitboard set = 0;
      for (int r = 1; r <= 6; ++r) {
        const int rank = c == White ? r : 7 - r;
        const bool behindOrLevel = r <= relative;
        for (int f = file - 1; f <= file + 1; ++f) {
          if (f < 0 || f > 7) continue;
          const bool sameFile = f == file;
          if constexpr (Kind == PawnMask::Support) {
            if (!sameFile && behindOrLevel) set |= bitOf(f, rank);
          } else if constexpr (Kind == PawnMask::ForwardFile) {
            if (sameFile && !behindOrLevel) set |= bitOf(f, rank);
          } else {
            if (!behindOrLevel) set |= bitOf(f, rank);
          }
        }
      }
      table[c][s] = set;
    }
  return table;
}

}  // namespace detail

// The adjacent files from the square's rank back to the own second rank.
inline constexpr PawnMaskTable supportMask = detail::makePawnMasks<detail::PawnMask::Support>();
// The squares strictly ahead on the same file, up to the own seventh rank.
inline constexpr PawnMaskTable forwardFile = detail::makePawnMasks<detail::PawnMask::ForwardFile>();
// The forward file and the same ranks on the adjacent files: no enemy pawn there means passed.
inline constexpr PawnMaskTable passedMask = detail::makePawnMasks<detail::PawnMask::Passed>();

}  // namespace torvy
