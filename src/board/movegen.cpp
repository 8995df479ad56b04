#include "board/movegen.h"

namespace torvy {

void generateLegalMoves(Board_0x88& board, MoveList& list) {
  list.clear();
  forSideToMove(board, [&]<Color Us>() { generateLegalMovesFor<Us>(board, list); });
}

}  // namespace torvy
