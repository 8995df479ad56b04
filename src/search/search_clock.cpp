#include "search/search_clock.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

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
  moveTime = 0;
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

std::uint32_t SearchClock::remainingMovesAt(std::uint32_t gamePly) const {
  const std::uint32_t fullMove = fullMoveNumber(gamePly);
  if (movesPerSession == 0) return 32;
  return sessionsUpTo(fullMove) * movesPerSession - fullMove + 1;
}

void SearchClock::computeMaxTime(std::uint32_t gamePly, std::ostream& out) {
  if (moveTime > 0) {
    maxTime = moveTime.load();
    out << "# set maxTime = " << maxTime << std::endl;
    return;
  }
  const std::uint32_t fullMove = fullMoveNumber(gamePly);
  const std::uint32_t sessions = sessionsUpTo(fullMove);
  const std::uint32_t remainingMoves = remainingMovesAt(gamePly);
  const std::uint32_t total = increment * fullMove + sessions * timePerSession;
  const std::int32_t used = elapsed();
  const std::uint32_t remaining = total - std::uint32_t(used);
  const std::int32_t available = std::int32_t((remainingMoves - 1) * increment + remaining);
  const std::int32_t max = std::int32_t(available * 0.9 / remainingMoves);
  out << "# movesPerSession=" << movesPerSession << " timePerSession=" << timePerSession << " increment=" << increment
      << '\n'
      << "# ply=" << gamePly << " fullMoveNumber=" << fullMove << " remainingMoves=" << remainingMoves
      << " nSessions=" << sessions << '\n'
      << "# total=" << total << " elapsed=" << used << " remaining=" << std::int32_t(remaining)
      << " available=" << available << " max=" << max << '\n'
      << "# set maxTime = " << max << std::endl;
  maxTime = max;
}

void SearchClock::correctMaxTimeOutOfBook(std::uint32_t gamePly, bool& outOfBook, std::ostream& out) {
  if (outOfBook) return;
  // A fixed budget is kept to; the first search out of book gets its extra time on a later move.
  if (moveTime > 0) return;
  if (movesPerSession == 0 || remainingMovesAt(gamePly) >= 10) {
    maxTime = std::int32_t(std::min(maxTime * 1.5, double(INT32_MAX)));
    out << "# out of book: corrected maxTime = " << maxTime << std::endl;
  }
  outOfBook = true;
}

}  // namespace torvy
