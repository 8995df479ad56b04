// The rows in which the evaluation report books each term, and the book that keeps nothing.
#pragma once

#include "board/types.h"

namespace torvy {

enum class EvalTerm {
  Material,
  PieceSquare,
  PassedPawns,
  WeakPawns,
  PawnStructure,
  Knights,
  Bishops,
  Rooks,
  Queens,
  KingSafety,
  KingTropism,
  KingEdgeDistance,
  KingDistance,
  KbnkSafeCorner,
  SideToMove,
  Count
};

// The evaluation runs with this book; the report runs the same code with one that keeps rows.
struct NoBook {
  static constexpr void add(EvalTerm, Color, ScorePair) {}
  static constexpr void setPhaseAndScale(int, int) {}
};

}  // namespace torvy
