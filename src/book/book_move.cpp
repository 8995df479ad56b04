#include "book/book_move.h"

#include "board/attacks.h"

namespace torvy {

namespace {

struct BookCastling {
  Color color;
  Square88 kingFrom;
  Square88 kingTo;
  Square88 rookCorner;
  unsigned code;
};

constexpr BookCastling bookCastlings[4] = {
    {White, sq::e1, sq::g1, sq::h1, 0},
    {White, sq::e1, sq::c1, sq::a1, 1},
    {Black, sq::e8, sq::g8, sq::h8, 2},
    {Black, sq::e8, sq::c8, sq::a8, 3},
};

const BookCastling* findCastling(const Board_0x88& board, Square88 from, Square88 to) {
  for (const BookCastling& c : bookCastlings) {
    if (from != c.kingFrom || (to != c.kingTo && to != c.rookCorner)) continue;
    if (detail::holds(board, from, c.color, King) && detail::holds(board, c.rookCorner, c.color, Rook)) return &c;
  }
  return nullptr;
}

}  // namespace

Move decodeBookMove(const Board_0x88& board, std::uint16_t bookMove) {
  const Square88 from = bookMoveFrom(bookMove);
  const Square88 to = bookMoveTo(bookMove);
  const unsigned promotion = bookMovePromotion(bookMove);
  if (promotion > 4) return NoMove;
  if (promotion != 0) return makePromotion(from, to, PieceType(Knight + promotion - 1));
  if (const BookCastling* c = findCastling(board, from, to)) return makeCastling(from, c->kingTo, c->code);

  const bool isPawn = board.pieceOn[from] == Pawn;
  if (isPawn && to == board.epSquare) return makeEnPassant(from, to);
  const Color mover = board.colorOn[from];
  const bool doubleStep = isPawn && relativeRank(mover, from) == 1 && relativeRank(mover, to) == 3;
  return makeNormalMove(from, to, doubleStep);
}

}  // namespace torvy
