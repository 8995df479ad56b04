// Position keys: one random number per piece on square, castling right, en passant file and side.
#pragma once

#include <cstdint>

#include "board/types.h"

namespace torvy {

using Key = std::uint64_t;

struct KeyTables {
  Key pieceKeys[2][6][64];  // Color, PieceType less 1, Square64
  Key castlingKeys[16];     // only the single-right entries 1, 2, 4, 8 are filled
  Key enPassantKeys[8];     // by file
  Key sideKey;
};

// Filled once by initKeys on the main thread before any search thread exists.
extern KeyTables keys;

// Six calls of rand, sliced 11+11+11+11+11+9 bits into one 64-bit number.
Key random64();

// Seeds rand with a fixed number and fills the tables, once.
void initKeys();

inline Key pieceKey(Color c, PieceType t, Square88 s) { return keys.pieceKeys[c][t - 1][toSquare64(s)]; }

}  // namespace torvy
