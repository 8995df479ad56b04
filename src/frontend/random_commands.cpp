// Random moves instead of thinking, and the random games statistics.
#include <cstdlib>

#include "frontend/wb_engine.h"

namespace torvy {

bool WBEngine::handleRandgame(const Arguments&) {
  player.randGame = true;
  return true;
}

bool WBEngine::handleNorandgame(const Arguments&) {
  player.randGame = false;
  return true;
}

bool WBEngine::handleRandgames(const Arguments& args) {
  const int count = std::atoi(args[0].c_str());
  if (count < 1) return false;
  player.playRandomGames(std::uint64_t(count));
  return true;
}

}  // namespace torvy
