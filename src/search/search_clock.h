// The engine's clock and search limits; all times in centiseconds.
#pragma once

#include <cstdint>
#include <ostream>

namespace torvy {

struct SearchClock {
  bool running = false;
  std::int32_t accumulated = 0;  // used so far in the game; "time" replaces it
  std::int32_t startStamp = 0;
  std::int32_t searchStart = 0;  // elapsed() when the current search began
  std::int32_t maxTime = 0;      // the budget of this move
  std::uint32_t movesPerSession = 40;
  std::uint32_t timePerSession = 30000;
  std::uint32_t increment = 0;
  bool timeLimited = true;
  bool depthLimited = false;
  std::uint32_t maxDepth = 0;

  // Centiseconds on a steady clock; only differences are ever used.
  static std::int32_t now();
  std::int32_t elapsed() const;
  void startClock();
  void stopClock();
  // Back to the values of a new game; maxDepth stays.
  void resetForNewGame();
};

}  // namespace torvy
