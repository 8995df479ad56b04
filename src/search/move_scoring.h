// The order scores of generated moves: good captures and promotions by victim, promoted piece
// and cheapest attacker, then killers, then quiet moves by their piece-square gain, with the
// losing captures among the quiet moves.
#pragma once

#include "board/board.h"
#include "board/piece_square.h"
#include "search/capture_safety.h"

namespace torvy {

constexpr int orderValue[7] = {0, 1, 2, 2, 3, 4, 5};
constexpr int GoodCaptureBonus = 1000;
constexpr int LosingCapturePenalty = 50;
constexpr int KillerBonus = 150;

// Victim and promoted piece first, then the cheapest attacker; en passant is a pawn victim.
inline int captureOrderBase(const Board_0x88& board, Move m) {
  const int attacker = orderValue[board.pieceOn[fromSquare(m)]];
  if (moveKind(m) == EnPassantMove) return 64 - attacker;
  const int promoted = moveKind(m) == PromotionMove ? orderValue[promotionPiece(m)] : 0;
  return (promoted + orderValue[board.pieceOn[toSquare(m)]] * 8) * 8 - attacker;
}

inline bool isKiller(const Board_0x88& board, Move m) {
  const std::uint32_t h = board.historyIndex;
  const HistoryRecord& here = board.history[h];
  if (sameMove(m, here.killer1) || sameMove(m, here.killer2)) return true;
  if (h > HistorySize - 3) return false;
  const HistoryRecord& next = board.history[h + 2];  // this side's next node
  return sameMove(m, next.killer1) || sameMove(m, next.killer2);
}

template <Color Us>
inline int allMovesScore(const Board_0x88& board, Move m) {
  const int base = captureOrderBase(board, m);
  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  const bool captureOrPromotion =
      moveKind(m) == EnPassantMove || moveKind(m) == PromotionMove || board.pieceOn[to] != NoPiece;
  if (captureOrPromotion) {
    int gain = 0;
    return isLosingCapture<Us>(board, m, gain) ? base - LosingCapturePenalty : base + GoodCaptureBonus;
  }
  if (isKiller(board, m)) return base + KillerBonus;
  const PieceType mover = board.pieceOn[from];
  return base + pieceSquareOf(Us, mover, to).mg - pieceSquareOf(Us, mover, from).mg;
}

template <Color Us, bool CapturesOnly>
inline void scoreMoves(const Board_0x88& board, MoveList& list) {
  for (std::uint32_t i = 0; i < list.count; ++i) {
    const Move m = list[i];
    list.entries[i].setScore(CapturesOnly ? captureOrderBase(board, m) : allMovesScore<Us>(board, m));
  }
}

}  // namespace torvy
