// The piece-square table that the board sums incrementally; its values belong to the evaluation.
#pragma once

#include "board/types.h"

namespace torvy {

// Color, PieceType less 1, Square64.
extern ScorePair pieceSquare[2][6][64];

inline ScorePair pieceSquareOf(Color c, PieceType t, Square88 s) { return pieceSquare[c][t - 1][toSquare64(s)]; }

}  // namespace torvy
