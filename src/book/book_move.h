// Book moves: the 16-bit move of a book entry turned into the engine's Move on a board.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace torvy {

// Fields of a book move: to file bits 0-2, to rank 3-5, from file 6-8, from rank 9-11,
// promotion 12-14 (0 none, 1 knight, 2 bishop, 3 rook, 4 queen).
constexpr Square88 bookMoveTo(std::uint16_t m) { return makeSquare(m & 7, (m >> 3) & 7); }
constexpr Square88 bookMoveFrom(std::uint16_t m) { return makeSquare((m >> 6) & 7, (m >> 9) & 7); }
constexpr unsigned bookMovePromotion(std::uint16_t m) { return (m >> 12) & 7; }

constexpr std::uint16_t makeBookMove(Square88 from, Square88 to, unsigned promotion = 0) {
  return std::uint16_t(fileOf(to) | rankOf(to) << 3 | fileOf(from) << 6 | rankOf(from) << 9 | promotion << 12);
}

// Castling comes as the king taking its own rook (e1h1) or as the king's move (e1g1).
// The result is not checked for legality; a promotion field above 4 gives NoMove.
Move decodeBookMove(const Board_0x88& board, std::uint16_t bookMove);

}  // namespace torvy
