// The evaluation report of the game's position.
#include "eval/eval_report.h"
#include "frontend/wb_engine.h"

namespace torvy {

// The king terms need both kings.
bool WBEngine::handleEval(const Arguments&) {
  const std::lock_guard lock(gameMutex);
  if (player.kingMissing()) {
    out() << MissingKingError << std::endl;
    return false;
  }
  evaluationReport(player.board, player.pawnHash, out());
  return true;
}

}  // namespace torvy
