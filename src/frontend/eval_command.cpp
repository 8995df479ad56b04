// The evaluation report of the game's position.
#include "eval/eval_report.h"
#include "frontend/wb_engine.h"

namespace torvy {

bool WBEngine::handleEval(const Arguments&) {
  const std::lock_guard lock(gameMutex);
  evaluationReport(player.board, player.pawnHash, out());
  return true;
}

}  // namespace torvy
