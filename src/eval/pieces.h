// Piece terms: mobility of knights, bishops, rooks and queens, the files of rooks and queens,
// and the tropism of every man, in one pass over the men of a colour.
#pragma once

#include "board/board.h"
#include "eval/eval_term.h"
#include "eval/occupancy.h"
#include "eval/packed_score.h"
#include "eval/pawns.h"

namespace torvy {

template <Color Us, class Book>
PackedScore pieceTerms(const Board_0x88& board, const PawnInfo& info, const Occupancy& occupancy, Book& book);

PackedScore queenMobility(const Board_0x88& board, Square88 square, Color color);

}  // namespace torvy
