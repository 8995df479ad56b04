// King safety: the own pawns in front of a king, and open files at and beside its file.
#pragma once

#include <cstdint>

#include "eval/packed_score.h"
#include "eval/pawn_masks.h"
#include "eval/pawns.h"

namespace torvy {

// Six bits: near row lower file, king's file, higher file, then the same for the far row.
// A square off the board, and the whole own eighth rank, count as holding a pawn.
unsigned shelterPattern(SquareSet ownPawns, Square88 kingSquare, Color color);

// Shelter holes and open files round the king of Us.
template <Color Us, class Book>
PackedScore kingSafety(const PawnInfo& info, Square88 kingSquare, std::uint32_t enemySignature, Book& book);

}  // namespace torvy
