// The UCI front end, which the xboard one hands over to when the first input line is "uci". It
// drives the same player, clock and console; the GUI owns the game and sends it whole with every
// "position", so the engine only searches and answers "bestmove".
#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "search/chess_player.h"
#include "search/engine_interface.h"
#include "search/search_clock.h"

namespace torvy {

constexpr std::string_view UciCommand = "uci";
constexpr std::string_view UciAuthor = "the Torvy developers";
// Written in place of the mark of the engine's comment lines.
constexpr std::string_view UciInfoString = "info string ";
// UCI counts time in milliseconds, the engine's clock in centiseconds.
constexpr std::int64_t MillisPerCentisecond = 10;
// Refused input is named in the answer, cut to this length.
constexpr std::size_t MaxEchoedLength = 64;

class UciEngine final : public EngineInterface {
 public:
  UciEngine(Console& console, SearchClock& clock, ChessPlayer& player, std::FILE* in);
  ~UciEngine();
  UciEngine(const UciEngine&) = delete;
  UciEngine& operator=(const UciEngine&) = delete;

  // Answers the "uci" that chose this mode, then commands until "quit" or the end of input.
  void run();

  void makeEngineMove(Move move) override;
  void printThinking(unsigned depth, int score, std::int32_t time, std::uint64_t nodes, const PvLine& line) override;

 private:
  using Handler = void (UciEngine::*)(std::string_view arguments);
  struct Command {
    std::string_view name;
    Handler handler;
    bool stopsSearch;
  };
  static const Command Commands[];

  void dispatch(std::string_view line);
  void finishInput();

  void handleUci(std::string_view);
  void handleIsready(std::string_view);
  void handleSetoption(std::string_view arguments);
  void handleUcinewgame(std::string_view);
  void handlePosition(std::string_view arguments);
  void handleGo(std::string_view arguments);
  void handleStop(std::string_view);
  void handleQuit(std::string_view);
  void handleBench(std::string_view arguments);
  void handleIgnored(std::string_view);

  void printOptions();
  void setOption(std::string_view name, std::string_view value);

  // Replays the last position that was taken, which is always good.
  void restoreHeldPosition();
  // Sets the clock from "go"'s parameters; false when the search should hold its move until
  // "stop" ("infinite", "ponder").
  bool setLimits(const std::vector<std::string>& words);

  // Ends a running search, whose move is then printed, and prints a move held back.
  void stopSearch();
  void printBestMove(Move move, Move ponder);

  std::ostream& out() { return console.stream(); }

  Console& console;
  SearchClock& clock;
  ChessPlayer& player;
  std::FILE* in;
  bool quit = false;

  // The position as last taken: a set-up and the legal moves after it.
  std::string heldFen;
  std::vector<Move> heldMoves;

  // Between the search's thread 0 and the command loop: a move that waits for "stop".
  std::mutex resultMutex;
  bool holdingResult = false;
  bool resultWaiting = false;
  Move waitingMove = NoMove;
  Move waitingPonder = NoMove;
};

}  // namespace torvy
