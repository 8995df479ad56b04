#include "board/attacks.h"

namespace torvy {

namespace {

struct CastlingPath {
  Move move;
  CastlingRights right;
  Square88 king, rook, crossed;
};
constexpr CastlingPath castlingPaths[4] = {
    {WhiteCastleKingSide, WhiteKingSide, sq::e1, sq::h1, sq::f1},
    {WhiteCastleQueenSide, WhiteQueenSide, sq::e1, sq::a1, sq::d1},
    {BlackCastleKingSide, BlackKingSide, sq::e8, sq::h8, sq::f8},
    {BlackCastleQueenSide, BlackQueenSide, sq::e8, sq::a8, sq::d8},
};

template <Color Us>
bool isPseudoLegalCastling(const Board_0x88& board, Move m) {
  const CastlingPath& path = castlingPaths[moveDetail(m)];
  if (m != path.move || !(board.castlingRights & path.right)) return false;
  if (!detail::holds(board, path.king, Us, King) || !detail::holds(board, path.rook, Us, Rook)) return false;
  const int step = path.rook > path.king ? 1 : -1;
  for (Square88 s = path.king + step; s != path.rook; s += step)
    if (board.pieceOn[s] != NoPiece) return false;
  // Castling out of check is refused here too, since a hash move in check is tested
  // only for the king's target square.
  CheckInfo info;
  return !isAttacked<opposite(Us)>(board, path.crossed, info) && !isKingAttacked<Us>(board, info);
}

}  // namespace

template <Color Us>
bool isPseudoLegal(const Board_0x88& board, Move m) {
  constexpr Color Them = opposite(Us);
  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  if (from == to || board.colorOn[from] != Us || board.colorOn[to] == Us) return false;
  const bool pawnOnFrom = board.pieceOn[from] == Pawn;
  switch (moveKind(m)) {
    case PromotionMove: return pawnOnFrom && relativeRank(Us, from) == 6 && relativeRank(Us, to) == 7;
    case EnPassantMove:
      return to == board.epSquare && pawnOnFrom && board.pieceOn[to] == NoPiece &&
             detail::holds(board, to - pawnForward[Us], Them, Pawn);
    case CastlingMove: return isPseudoLegalCastling<Us>(board, m);
    default:
      if (moveDetail(m) != 1) return true;
      return pawnOnFrom && relativeRank(Us, from) == 1 && board.pieceOn[from + pawnForward[Us]] == NoPiece &&
             board.pieceOn[from + 2 * pawnForward[Us]] == NoPiece;
  }
}

namespace {

bool isStep(const int (&deltas)[8], int difference) {
  for (int d : deltas)
    if (d == difference) return true;
  return false;
}

template <Color Us>
bool pawnStepFits(const Board_0x88& board, int difference, Square88 to) {
  if (difference == pawnForward[Us]) return board.pieceOn[to] == NoPiece;
  const bool diagonal = difference == pawnCaptureDeltas[Us][0] || difference == pawnCaptureDeltas[Us][1];
  return diagonal && board.colorOn[to] == opposite(Us);
}

}  // namespace

template <Color Us>
bool movesLikeItsPiece(const Board_0x88& board, Move m) {
  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  const int difference = int(to) - int(from);
  switch (moveKind(m)) {
    case CastlingMove: return true;
    case EnPassantMove: return difference == pawnCaptureDeltas[Us][0] || difference == pawnCaptureDeltas[Us][1];
    case PromotionMove: return pawnStepFits<Us>(board, difference, to);
    default: break;
  }
  if (moveDetail(m) > 1) return false;
  const PieceType piece = board.pieceOn[from];
  if (piece == Pawn) {
    if (moveDetail(m) == 1) return difference == 2 * pawnForward[Us];
    return relativeRank(Us, to) != 7 && pawnStepFits<Us>(board, difference, to);
  }
  if (moveDetail(m) == 1) return false;
  if (piece == Knight) return isStep(knightDeltas, difference);
  if (piece == King) return isStep(kingDeltas, difference);
  const int direction = rayDirection(from, to);
  if (direction == 0 || !detail::isSliderOf(piece, raySliderClass[direction])) return false;
  Square88 s = from + rayDeltas[direction];
  while (s != to && board.pieceOn[s] == NoPiece) s += rayDeltas[direction];
  return s == to;
}

template bool isPseudoLegal<White>(const Board_0x88&, Move);
template bool isPseudoLegal<Black>(const Board_0x88&, Move);
template bool movesLikeItsPiece<White>(const Board_0x88&, Move);
template bool movesLikeItsPiece<Black>(const Board_0x88&, Move);

}  // namespace torvy
