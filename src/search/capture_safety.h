// The short test that stands in for an exchange evaluator: does a cheap defender stand behind
// the victim? It also gives the material gain of the move for delta pruning.
#pragma once

#include "board/attacks.h"

namespace torvy {

constexpr int captureGain[7] = {0, 125, 400, 400, 600, 1125, 0};
// A king's class is 0: it takes only what is safe, since moves are legal.
constexpr int exchangeClass[7] = {0, 1, 3, 3, 4, 5, 0};

template <Color Us>
inline bool isLosingCapture(const Board_0x88& board, Move m, int& gain) {
  constexpr Color Them = opposite(Us);
  switch (moveKind(m)) {
    case PromotionMove: gain = captureGain[promotionPiece(m)] - 125; return false;
    case EnPassantMove: gain = 125; return false;
    case CastlingMove: return false;
    default: break;
  }
  const Square88 to = toSquare(m);
  const PieceType attacker = board.pieceOn[fromSquare(m)];
  const PieceType victim = board.pieceOn[to];
  gain = captureGain[victim];
  if (exchangeClass[victim] >= exchangeClass[attacker]) return false;
  // Them's pawns capture toward Us: they stand one rank further from Them's side.
  for (int d : pawnCaptureDeltas[Us])
    if (detail::holds(board, to + d, Them, Pawn)) return true;
  const bool knightsCount = (victim == Pawn && (attacker == Rook || attacker == Queen)) || attacker == Queen;
  if (!knightsCount) return false;
  for (int d : knightDeltas)
    if (detail::holds(board, to + d, Them, Knight)) return true;
  return false;
}

}  // namespace torvy
