// Moves in coordinate text: e2e4, e7e8q, and castling as the king's move.
#pragma once

#include <string>

#include "board/board.h"

namespace torvy {

constexpr int MoveTextSize = 6;

// Four or five characters and a terminating zero; the move 0 reads a1a1.
void moveToText(Move m, char (&buffer)[MoveTextSize]);
std::string moveToText(Move m);

// True and the move if the text (letters in either case) names a legal move here.
bool parseCoordinateMove(Board_0x88& board, const char* text, Move& out);

}  // namespace torvy
