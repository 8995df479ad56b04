// One engine in the referee's games, driven over xboard or UCI, with a transcript of what was said.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine_process.h"

namespace torvy {

struct EngineSetup {
  std::string path;
  std::vector<std::string> args;
  std::string directory;
  bool uci = false;  // driven over UCI rather than xboard
};

// What the engine said between being asked for a move and giving one.
struct Reply {
  enum class Kind { Move, Refused, Closed, Hung };
  Kind kind = Kind::Hung;
  std::string text;   // the move, or the line that refused
  int maxTimeCs = 0;  // the budget it announced, 0 if none
  int searchCs = -1;  // the search time it reported, -1 if none
  Millis usedMs = 0;  // from the question to the answer
};

// Takes one line of output into the reply; true once the line ends it, with a move or a refusal.
bool readReplyLine(std::string_view line, bool uci, Reply& reply);

class EnginePlayer {
 public:
  EnginePlayer(EngineSetup setup, char label) : setup_(std::move(setup)), label_(label) {}
  ~EnginePlayer() { quit(); }
  EnginePlayer(const EnginePlayer&) = delete;
  EnginePlayer& operator=(const EnginePlayer&) = delete;

  char label() const { return label_; }

  // A fresh game on the engine, started if need be, with the opening played; false if it won't answer.
  bool newGame(const std::vector<std::string>& opening, Millis baseMs, Millis incrementMs);
  // Tells the engine the clocks and the moves it has not seen, and reads until its move.
  Reply askMove(const std::vector<std::string>& moves, bool white, Millis whiteMs, Millis blackMs, Millis incrementMs,
                SteadyClock::time_point deadline);
  void quit();
  void kill() { process_.kill(); }
  std::string endDescription() const { return process_.endDescription(); }

  void beginTranscript(SteadyClock::time_point origin) {
    transcript_.clear();
    origin_ = origin;
  }
  const std::vector<std::string>& transcript() const { return transcript_; }

 private:
  void send(const std::string& line);
  void note(const char* direction, const std::string& text);
  // Reads until a line that begins with the prefix; false if the engine died or the time ran out.
  bool awaitLine(std::string_view prefix, SteadyClock::time_point deadline);

  EngineSetup setup_;
  char label_;
  EngineProcess process_;
  std::size_t movesKnown_ = 0;  // of the game's moves, those the engine has been told or played
  bool searching_ = false;      // xboard: told "go" this game, it answers each move with its own
  int pingCount_ = 0;
  std::vector<std::string> transcript_;
  SteadyClock::time_point origin_ = SteadyClock::now();
};

}  // namespace torvy
