// The book that the "eval" command keeps: each term in a row, by colour and half, with the
// phase and scale, printed as a table under the same computation that evaluate runs.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>

#include "board/board.h"
#include "eval/eval_term.h"
#include "eval/pawn_hash.h"

namespace torvy {

class EvalReport {
 public:
  void add(EvalTerm term, Color c, ScorePair value) {
    Row& row = rows_[std::size_t(term)];
    (c == White ? row.white : row.black) += value;
  }
  void setPhaseAndScale(int phase, int scale) {
    phase_ = phase;
    scale_ = scale;
  }

  ScorePair term(EvalTerm term, Color c) const {
    const Row& row = rows_[std::size_t(term)];
    return c == White ? row.white : row.black;
  }

  // The rows, then phase, scale and the total, positive when White stands better.
  void print(std::ostream& out, int whiteScore) const;

 private:
  struct Row {
    ScorePair white;
    ScorePair black;
  };
  std::array<Row, std::size_t(EvalTerm::Count)> rows_{};
  int phase_ = 0;
  int scale_ = 100;
};

// Prints the terms of the position's evaluation and returns the score for the side to move,
// which is what evaluate gives with the full window.
int evaluationReport(const Board_0x88& board, PawnHashTable& pawnHash, std::ostream& out);

}  // namespace torvy
