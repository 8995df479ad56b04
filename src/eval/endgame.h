// Endgame terms: the scale of drawish four-man endings, and the evaluation without pawns,
// which drives the weaker king to the rim and the stronger one towards it.
#pragma once

#include "board/board.h"
#include "eval/eval_term.h"
#include "eval/material.h"

namespace torvy {

// In per cent: 100 unless exactly four men stand on the board and they make a drawish ending.
int drawScale(const Board_0x88& board);

// The score for the side to move when neither colour has a pawn.
template <class Book>
int evaluatePawnless(const Board_0x88& board, const MaterialInfo& material, Book& book);

}  // namespace torvy
