#include "search/search_clock.h"

#include <chrono>

namespace torvy {

std::int32_t SearchClock::now() {
  using namespace std::chrono;
  static const steady_clock::time_point origin = steady_clock::now();
  return std::int32_t(duration_cast<milliseconds>(steady_clock::now() - origin).count() / 10);
}

std::int32_t SearchClock::elapsed() const { return accumulated + (running ? now() - startStamp : 0); }

void SearchClock::startClock() {
  searchStart = elapsed();
  if (!running) {
    running = true;
    startStamp = now();
  }
}

void SearchClock::stopClock() {
  if (!running) return;
  running = false;
  accumulated += now() - startStamp;
}

void SearchClock::resetForNewGame() {
  stopClock();
  running = false;
  accumulated = 0;
  startStamp = 0;
  timeLimited = true;
  depthLimited = false;
  movesPerSession = 40;
  timePerSession = 30000;
  increment = 0;
}

std::uint32_t SearchClock::sessionsUpTo(std::uint32_t fullMove) const {
  return movesPerSession == 0 ? 1 : (fullMove + movesPerSession - 1) / movesPerSession;
}

void SearchClock::setRemainingTime(std::int32_t remaining, std::uint32_t gamePly) {
  const std::uint32_t fullMove = fullMoveNumber(gamePly);
  const std::int64_t allotted =
      std::int64_t(sessionsUpTo(fullMove)) * timePerSession + std::int64_t(fullMove) * increment;
  accumulated = std::int32_t(allotted - remaining);
}

}  // namespace torvy
