// The commands that set the time control, the engine's remaining time and the depth limit.
#include <cstdlib>

#include "frontend/line_reader.h"
#include "frontend/wb_engine.h"

namespace torvy {

// "level MOVES MINUTES[:SECONDS] INCREMENT"; the increment is whole seconds.
bool WBEngine::handleLevel(const Arguments& args) {
  const Arguments base = split(args[1], ':');
  if (base.size() > 2) return false;
  const int minutes = std::atoi(base[0].c_str());
  const int seconds = base.size() == 2 ? std::atoi(base[1].c_str()) : 0;
  clock.movesPerSession = std::uint32_t(std::atoi(args[0].c_str()));
  // Unsigned arithmetic: absurd values wrap instead of overflowing.
  clock.timePerSession = (std::uint32_t(minutes) * 60 + std::uint32_t(seconds)) * 100;
  clock.increment = std::uint32_t(std::atoi(args[2].c_str())) * 100;
  return true;
}

bool WBEngine::handleTime(const Arguments& args) {
  const std::lock_guard lock(gameMutex);
  clock.setRemainingTime(std::atoi(args[0].c_str()), player.gamePly);
  return true;
}

bool WBEngine::handleSd(const Arguments& args) {
  const int depth = std::atoi(args[0].c_str());
  if (depth < 0) return false;
  clock.maxDepth = std::uint32_t(depth);
  clock.depthLimited = true;
  return true;
}

}  // namespace torvy
