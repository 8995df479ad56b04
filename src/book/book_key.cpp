#include "book/book_key.h"

#include "book/random64.h"

namespace torvy {

BookPosition makeBookPosition(const Board_0x88& board) {
  BookPosition position;
  for (Color c : {White, Black}) {
    for (Square88 s : board.pieceList[c]) {
      if (!onBoard(s)) continue;
      position.pieces[position.pieceCount++] = {toSquare64(s), polyglotKind(board.pieceOn[s], c)};
    }
  }
  position.whiteKingSide = board.castlingRights & WhiteKingSide;
  position.whiteQueenSide = board.castlingRights & WhiteQueenSide;
  position.blackKingSide = board.castlingRights & BlackKingSide;
  position.blackQueenSide = board.castlingRights & BlackQueenSide;
  position.epSquare = board.epSquare == NoSquare ? NoBookSquare : toSquare64(board.epSquare);
  position.blackToMove = board.sideToMove == Black;
  return position;
}

Key polyglotKey(const BookPosition& position) {
  Key key = 0;
  for (std::uint32_t i = 0; i < position.pieceCount; ++i)
    key ^= Random64[64 * position.pieces[i].kind + position.pieces[i].square];
  const bool rights[4] = {position.whiteKingSide, position.whiteQueenSide, position.blackKingSide,
                          position.blackQueenSide};
  for (int i = 0; i < 4; ++i)
    if (rights[i]) key ^= Random64[Random64Castling + i];
  if (position.epSquare != NoBookSquare) key ^= Random64[Random64EnPassant + fileOf(position.epSquare)];
  // The format marks White to move, not Black.
  if (!position.blackToMove) key ^= Random64[Random64WhiteToMove];
  return key;
}

Key polyglotKey(const Board_0x88& board) { return polyglotKey(makeBookPosition(board)); }

}  // namespace torvy
