// King safety: the own pawns in front of a king, and open files at and beside its file.
#pragma once

#include <cstdint>

#include "eval/packed_score.h"
#include "eval/pawn_masks.h"
#include "eval/pawns.h"

namespace torvy {

// Six bits: near row lower file, king's file, higher file, then the same for the far row.
// A square off the board, and the whole own eighth rank, count as holding a pawn.
constexpr unsigned shelterPattern(SquareSet ownPawns, Square88 kingSquare, Color color) {
  const int file = fileOf(kingSquare);
  const unsigned offBoard = (file == 0 ? 1u : 0u) | (file == 7 ? 4u : 0u);
  unsigned pattern = 0;
  for (int row = 0; row < 2; ++row) {
    const int relative = relativeRank(color, kingSquare) + 1 + row;
    unsigned covered = 7;
    if (relative < 7) {
      // Bit 0 is file - 1; what the shift brings in from beyond the rim is overwritten.
      const int rank = color == White ? relative : 7 - relative;
      covered = (unsigned((ownPawns << 1) >> (rank * 8 + file)) & 7) | offBoard;
    }
    pattern |= covered << (row * 3);
  }
  return pattern;
}

// Shelter holes and open files round the king of Us.
template <Color Us, class Book>
PackedScore kingSafety(const PawnInfo& info, Square88 kingSquare, std::uint32_t enemySignature, Book& book);

}  // namespace torvy
