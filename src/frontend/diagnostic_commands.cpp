// Perft, divide and the self-test, run on the game board between searches.
#include <cstdlib>

#include "diagnostics/perft.h"
#include "diagnostics/self_test.h"
#include "frontend/wb_engine.h"

namespace torvy {

bool WBEngine::handlePerft(const Arguments& args) {
  const int depth = std::atoi(args[0].c_str());
  if (depth < 1) return false;
  runPerft(player.board, player.perftHash, player.perftHashSizeMB, clock, depth, out());
  return true;
}

bool WBEngine::handleDivide(const Arguments& args) {
  const int depth = std::atoi(args[0].c_str());
  if (depth < 1) return false;
  runDivide(player.board, player.perftHash, player.perftHashSizeMB, clock, depth, out());
  return true;
}

// The suite sets up positions of its own on the game board, so a new game follows it.
bool WBEngine::handleSelftest(const Arguments& args) {
  runSelfTest(player.board, player.perftHash, player.perftHashSizeMB, out());
  return handleNew(args);
}

}  // namespace torvy
