// The match: openings played with colours reversed, game slots in parallel each with its own pair
// of engines, and the tally of the results.
#pragma once

#include <atomic>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "engine_player.h"
#include "game.h"

namespace torvy {

struct Options {
  std::string engines[2];
  bool uci[2] = {false, false};  // the engine is driven over UCI rather than xboard
  std::vector<std::string> engineArgs;
  std::string openingsPath = "tools/openings.txt";
  std::string workDir = ".";
  std::string transcriptDir;
  int games = 0;  // 0: each opening once with either colour
  int concurrency = 1;
  Millis baseMs = 5000;
  Millis incrementMs = 50;
  Millis graceMs = 5000;  // past the clock, a side that still hasn't moved counts as hung
};

// Lines of coordinate moves, a name behind "#".
struct Opening {
  std::string name;
  std::vector<std::string> moves;
};

bool loadOpenings(const std::string& path, std::vector<Opening>& openings);

struct EngineTally {
  int wins = 0;
  int draws = 0;
  int losses = 0;
  int illegal = 0;
  int timeouts = 0;
  int crashes = 0;
  TimeUse time;        // from our clock: what the side's clock was charged
  TimeUse searchTime;  // from the engine's own statistics: the search alone, without the pipes
};

// The figures kept for each engine (A, B) over all games.
struct Tally {
  EngineTally engines[2];
  int games = 0;
  int tooLong = 0;

  void count(const GameResult& result, int whiteEngine);
  // No illegal move, loss on time, crash or overrun.
  bool clean() const;
};

class Match {
 public:
  // Each finished game is announced on the log.
  Match(const Options& options, std::vector<Opening> openings, std::ostream& log);

  void run();
  // Prints the per-engine lines and the summary; true when nothing went wrong.
  bool report(std::ostream& out) const;

 private:
  void slot();
  GameResult play(EnginePlayer* players[2], int whiteEngine, const Opening& opening, int number) const;
  void finish(int number, int whiteEngine, const Opening& opening, const GameResult& result, EnginePlayer* players[2]);
  void keepTranscript(int number, const GameResult& result, EnginePlayer* players[2]) const;

  const Options& options_;
  std::vector<Opening> openings_;
  std::ostream& log_;
  int totalGames_ = 0;
  std::atomic<int> nextGame_{0};
  mutable std::mutex mutex_;
  Tally tally_;
  std::string loadAtStart_;
};

}  // namespace torvy
