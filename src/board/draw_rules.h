// The board's draw test and the small questions the search asks about a move.
#pragma once

#include "board/board.h"

namespace torvy {

enum DrawCode : int {
  NoDrawCode = 0,  // with a true result: the position occurred once before
  FiftyMoveDraw = 3,
  InsufficientMaterialDraw = 4,
  RepetitionDraw = 5,  // the position occurred at least twice before
};

// True if the position counts as drawn in the search; writes repetitionCount on a repetition.
bool drawStatus(Board_0x88& board, DrawCode& code);

// Both read the board before the move is made.
bool isQuietMove(const Board_0x88& board, Move m);
bool isPawnToSeventh(const Board_0x88& board, Move m);

void updateKillers(Board_0x88& board, Move m);

}  // namespace torvy
