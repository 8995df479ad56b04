// The engine's clock and search limits; all times in centiseconds.
#pragma once

#include <cstdint>
#include <ostream>

namespace torvy {

constexpr std::uint32_t fullMoveNumber(std::uint32_t gamePly) { return gamePly / 2 + 1; }

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

  // The sessions of the time control begun by this full move; 1 when one session is the game.
  std::uint32_t sessionsUpTo(std::uint32_t fullMove) const;
  // The front end's count of our remaining time replaces the clock's own count of used time.
  void setRemainingTime(std::int32_t remaining, std::uint32_t gamePly);
};

}  // namespace torvy
