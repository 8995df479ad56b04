// One game as the referee sees it, without the engines: each move checked on our own board, the
// clocks charged, and the game ended by the rules, since the engine only offers draws and never
// claims them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "board/board.h"
#include "engine_process.h"

namespace torvy {

// The engine's record holds 1023 moves; a game that gets this far is called a draw first.
constexpr int MaxGamePlies = 1000;

enum class Ending { Mate, Stalemate, Repetition, FiftyMoves, Material, Length, Illegal, Time, Crash };

const char* endingName(Ending ending);

// The engine promises never to spend more than its own announced maxTime plus 5% and 2 centiseconds.
struct TimeUse {
  int moves = 0;
  int overruns = 0;
  double worstRatio = 0;
  Millis worstExcessMs = 0;  // over the allowance; 0 while none was broken
  std::string worstWhere;

  static Millis allowanceMs(int maxTimeCs) { return Millis(std::max(maxTimeCs, 0) * 10 * 105 / 100 + 20); }
  // True if this move broke the allowance.
  bool record(Millis usedMs, int maxTimeCs, const std::string& where);
  void add(const TimeUse& other);
};

struct GameResult {
  Color winner = NoColor;
  Ending ending = Ending::Length;
  std::string detail;
  std::vector<std::string> moves;
  TimeUse time[2];  // by engine index
  TimeUse searchTime[2];
  bool noteworthy = false;  // an overrun or a fault: its transcript is kept
};

class GameBoard {
 public:
  GameBoard(Millis baseMs, Millis incrementMs);
  ~GameBoard();

  // Plays a move with no clock charged, as the opening's are; false if it is illegal.
  bool place(std::string_view moveText);
  // Charges the side to move the time it took and plays its move: a loss on time, or an
  // illegal move, is the fault that ends the game.
  std::optional<Ending> play(std::string_view moveText, Millis usedMs);
  // Mate, stalemate, a draw by the rules or a game too long; the winner too after a mate.
  std::optional<Ending> end(Color& winner);

  Color sideToMove() const;
  Millis clockMs(Color side) const { return clockMs_[side == White ? 0 : 1]; }
  const std::vector<std::string>& moves() const { return moves_; }

 private:
  std::unique_ptr<Board_0x88> board_;
  std::unique_ptr<UndoRecord[]> undo_;
  std::vector<std::string> moves_;
  Millis clockMs_[2];
  Millis incrementMs_;
};

}  // namespace torvy
