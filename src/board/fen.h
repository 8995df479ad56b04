// Positions between text and board: FEN set-up, the start position and the board picture.
#pragma once

#include <ostream>

#include "board/board.h"

namespace torvy {

constexpr const char* StartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// False leaves the board cleared and partly filled, unusable until the next good set-up.
bool setFromFen(Board_0x88& board, const char* text);
void setStartPosition(Board_0x88& board);

// Eight comment lines of piece letters, rank 8 first, then "#" alone.
void printBoard(const Board_0x88& board, std::ostream& out);

}  // namespace torvy
