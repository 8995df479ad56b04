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

// The killers of this node and of this side's next node, read once per list: as far as the
// compiler knows the list's stores could overwrite the history index, so per move they were
// read again each time.
struct KillerSet {
  Move moves[4];

  explicit KillerSet(const Board_0x88& board) {
    const std::uint32_t h = board.historyIndex;
    moves[0] = board.history[h].killer1;
    moves[1] = board.history[h].killer2;
    // Near the end of the history the next node's killers aren't asked; repeats change nothing.
    const HistoryRecord& next = h > HistorySize - 3 ? board.history[h] : board.history[h + 2];
    moves[2] = next.killer1;
    moves[3] = next.killer2;
  }
  bool contains(Move m) const {
    return sameMove(m, moves[0]) || sameMove(m, moves[1]) || sameMove(m, moves[2]) || sameMove(m, moves[3]);
  }
};

template <Color Us>
inline int allMovesScore(const Board_0x88& board, const KillerSet& killers, Move m) {
  const int base = captureOrderBase(board, m);
  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  const bool captureOrPromotion =
      moveKind(m) == EnPassantMove || moveKind(m) == PromotionMove || board.pieceOn[to] != NoPiece;
  if (captureOrPromotion) {
    int gain = 0;
    return isLosingCapture<Us>(board, m, gain) ? base - LosingCapturePenalty : base + GoodCaptureBonus;
  }
  if (killers.contains(m)) return base + KillerBonus;
  const PieceType mover = board.pieceOn[from];
  return base + pieceSquareOf(Us, mover, to).mg - pieceSquareOf(Us, mover, from).mg;
}

template <Color Us, bool CapturesOnly>
inline void scoreMoves(const Board_0x88& board, MoveList& list) {
  if constexpr (CapturesOnly) {
    for (std::uint32_t i = 0; i < list.count; ++i) list.entries[i].setScore(captureOrderBase(board, list[i]));
  } else {
    const KillerSet killers(board);
    for (std::uint32_t i = 0; i < list.count; ++i) list.entries[i].setScore(allMovesScore<Us>(board, killers, list[i]));
  }
}

}  // namespace torvy
