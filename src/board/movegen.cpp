#include "board/movegen.h"

namespace torvy {

void generateLegalMoves(Board_0x88& board, MoveList& list) {
  list.clear();
  if (board.sideToMove == White)
    generateLegalMovesFor<White>(board, list);
  else
    generateLegalMovesFor<Black>(board, list);
}

}  // namespace torvy
