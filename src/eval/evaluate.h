// The static evaluation: a tapered score of packed middle game and end game halves, for the
// side to move.
#pragma once

#include "board/board.h"
#include "eval/eval_term.h"
#include "eval/pawn_hash.h"

namespace torvy {

// Fills the evaluation's tables, once, on the main thread before any search thread exists;
// boards sum the piece-square values from then on.
void initEvaluation();
// Fills pieceSquare, once however often it is called.
void initPieceSquareTables();

// The score for the side to move. Outside the window (alpha, beta) it may return a bound that
// lies 200 beyond the base score, without looking at pawns and pieces.
int evaluate(const Board_0x88& board, PawnHashTable& pawnHash, int alpha, int beta);

// The one computation behind evaluate and the report; Book is told every term on the way.
template <class Book>
int evaluateWith(const Board_0x88& board, PawnHashTable& pawnHash, int alpha, int beta, Book& book);

}  // namespace torvy
