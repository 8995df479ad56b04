#include "eval/eval_report.h"

#include <cstdio>

#include "eval/evaluate.h"
#include "eval/packed_score.h"

namespace torvy {

namespace {

constexpr const char* rowLabels[std::size_t(EvalTerm::Count)] = {
    "Material",    "PST",    "Passed pawns", "Weak pawns",   "Pawn structure",    "Knights",      "Bishops",
    "Rooks",       "Queens", "King safety",  "King tropism", "M: King edge dist", "M: King dist", "M: KBNK safe corner",
    "Side to move"};

constexpr const char* RuleLine = "==============================================================================";

template <class... Args>
void printLine(std::ostream& out, const char* format, Args... args) {
  char line[160];
  std::snprintf(line, sizeof line, format, args...);
  out << line << std::endl;
}

}  // namespace

void EvalReport::print(std::ostream& out, int whiteScore) const {
  out << RuleLine << std::endl;
  out << "Evaluation part                    w-MG w-EG (wTot)   b-MG b-EG (bTot)   Total" << std::endl;
  out << RuleLine << std::endl;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const Row& row = rows_[i];
    printLine(out, "%-32s   %4d %4d (%4d)   %4d %4d (%4d)   %4d", rowLabels[i], row.white.mg, row.white.eg,
              taper(row.white, phase_), row.black.mg, row.black.eg, taper(row.black, phase_),
              taper(row.white.mg - row.black.mg, row.white.eg - row.black.eg, phase_));
  }
  out << RuleLine << std::endl;
  printLine(out, "Phase = %3d          Scaling factor = %3.2f          Total evaluation = %6d", phase_, scale_ / 100.0,
            whiteScore);
  out << RuleLine << std::endl;
}

int evaluationReport(const Board_0x88& board, PawnHashTable& pawnHash, std::ostream& out) {
  EvalReport report;
  const int score = evaluateWith(board, pawnHash, -32000, 32000, report);
  report.print(out, board.sideToMove == Black ? -score : score);
  return score;
}

}  // namespace torvy
