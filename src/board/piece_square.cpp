#include "board/piece_square.h"

namespace torvy {

ScorePair pieceSquare[2][6][64];

}  // namespace torvy
