// The Polyglot key of a position: the key that book files are sorted and searched by.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace torvy {

constexpr Square64 NoBookSquare = Square64(64);

// The position as the book format sees it.
struct BookPosition {
  struct Piece {
    Square64 square;
    std::uint8_t kind;  // 2 * (PieceType - 1), plus 1 for White
  };
  Piece pieces[32];
  std::uint32_t pieceCount = 0;
  bool whiteKingSide = false;
  bool whiteQueenSide = false;
  bool blackKingSide = false;
  bool blackQueenSide = false;
  Square64 epSquare = NoBookSquare;
  bool blackToMove = false;
};

constexpr std::uint8_t polyglotKind(PieceType t, Color c) { return std::uint8_t(2 * (t - 1) + (c == White ? 1 : 0)); }

// The board keeps an en passant square only when a pawn of the side to move stands beside
// the pawn that made the double step, which is exactly when the format counts it.
BookPosition makeBookPosition(const Board_0x88& board);

Key polyglotKey(const BookPosition& position);
Key polyglotKey(const Board_0x88& board);

}  // namespace torvy
