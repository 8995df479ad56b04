// The engine's clock and search limits; all times in centiseconds.
#pragma once

#include <atomic>
#include <cstdint>
#include <ostream>

namespace torvy {

constexpr std::uint32_t fullMoveNumber(std::uint32_t gamePly) { return gamePly / 2 + 1; }

// "level", "time" and "post" write these fields while a search reads them, so each is an
// atomic of its own; a search started before such a command keeps its maxTime.
struct SearchClock {
  std::atomic<bool> running{false};
  std::atomic<std::int32_t> accumulated{0};  // used so far in the game; "time" replaces it
  std::atomic<std::int32_t> startStamp{0};
  std::atomic<std::int32_t> searchStart{0};  // elapsed() when the current search began
  std::atomic<std::int32_t> maxTime{0};      // the budget of this move
  std::atomic<std::uint32_t> movesPerSession{40};
  std::atomic<std::uint32_t> timePerSession{30000};
  std::atomic<std::uint32_t> increment{0};
  std::atomic<bool> timeLimited{true};
  std::atomic<bool> depthLimited{false};
  std::atomic<std::uint32_t> maxDepth{0};
  // A budget fixed per move (UCI "movetime"); 0 leaves it to the time control.
  std::atomic<std::int32_t> moveTime{0};

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
  // The moves still to play in this session, the one to be made now included; 32 when the
  // session is the whole game.
  std::uint32_t remainingMovesAt(std::uint32_t gamePly) const;

  // An equal share of what is left of the session for this move, with 10 percent held back;
  // prints the budget lines.
  void computeMaxTime(std::uint32_t gamePly, std::ostream& out);
  // Half as much again for the first search after the book, unless the session nears its end.
  void correctMaxTimeOutOfBook(std::uint32_t gamePly, bool& outOfBook, std::ostream& out);
};

}  // namespace torvy
