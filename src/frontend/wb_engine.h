// The xboard front end: the start-up, the command loop and the state of the game being played.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <ostream>
#include <string_view>

#include "frontend/command_table.h"
#include "program_version.h"
#include "search/chess_player.h"
#include "search/engine_interface.h"
#include "search/search_clock.h"

namespace torvy {

constexpr const char* ProgramName = "Torvy";

// Why the engine won't search or evaluate a position.
constexpr const char* MissingKingError = "Error (illegal position): a king is missing";
constexpr const char* KingCapturableError = "Error (illegal position): the side not to move is in check";
constexpr const char* RecordFullError = "Error (no room for another move in the game record)";

class WBEngine final : public EngineInterface {
 public:
  WBEngine(std::ostream& out, std::FILE* in);

  // Banner, command line, a new game, then commands until "quit" or the end of input; returns 0.
  int run(int argc, char** argv);

  // Runs one line; false when the command refused it, after its own "Error (" line if any.
  bool dispatch(std::string_view line);

  // Called by the search with the move it chose.
  void makeEngineMove(Move move) override;
  void printThinking(unsigned depth, int score, std::int32_t time, std::uint64_t nodes, const PvLine& line) override;

  // Before the player, which prints through it.
  Console console;
  SearchClock clock;
  ChessPlayer player;
  std::atomic<std::uint32_t> engineColor{NoColor};  // "auto" runs beside a search
  bool gameOver = false;
  bool forceMode = false;
  bool boardChanged = true;
  bool xboardMode = false;
  bool analyzeMode = false;
  std::atomic<bool> autoMode{false};
  bool quit = false;
  bool firstLine = true;  // "uci" there hands the rest of the process to the UCI front end

 private:
  friend struct CommandTable;

  // Once, at the end of construction: what it prints comes before the banner.
  void readConfiguration();
  void printBanner();
  void readCommandLine(int argc, char** argv);
  void readCommand();
  void finishInput();
  void runUci();
  // After every command line, once no search runs: end of game, then whether the engine is to move.
  void decideNextStep();
  // An ended game stays ended, with the engine on neither side, until a command reopens it.
  void testGameEnd();
  // Whether the engine can search the game's position and make its move; if not, an error
  // line says why.
  bool canSearch();
  void standAside();
  void showBoard();
  Color sideToMove() const { return player.board.sideToMove; }

  bool handleQuit(const Arguments&);
  bool handleXboard(const Arguments&);
  bool handleProtover(const Arguments&);
  bool handleNew(const Arguments&);
  bool handleForce(const Arguments&);
  bool handlePing(const Arguments& args);
  bool handleUsermove(const Arguments& args);
  bool handleGo(const Arguments&);
  bool handlePlayother(const Arguments&);
  bool handleAnalyze(const Arguments&);
  bool handleExit(const Arguments&);
  bool handleAuto(const Arguments&);
  bool handleSetboard(const Arguments& args);
  bool handleLevel(const Arguments& args);
  bool handleSd(const Arguments& args);
  bool handleTime(const Arguments& args);
  bool handleUndo(const Arguments&);
  bool handleRemove(const Arguments&);
  bool handlePost(const Arguments&);
  bool handleNopost(const Arguments&);
  bool handleCores(const Arguments& args);
  bool handleEgtpath(const Arguments& args);
  bool handleOption(const Arguments& args);
  bool handleBook(const Arguments&);
  bool handleNobook(const Arguments&);
  bool handlePerft(const Arguments& args);
  bool handleDivide(const Arguments& args);
  bool handleSelftest(const Arguments&);
  bool handleEval(const Arguments&);
  bool handleTune(const Arguments&);
  bool handleRandpos(const Arguments&);
  bool handleRandgame(const Arguments&);
  bool handleNorandgame(const Arguments&);
  bool handleRandgames(const Arguments& args);

  bool takeBack(std::uint32_t plies);

  std::ostream& out() { return console.stream(); }

  // Held by the first search thread while it publishes its move, and by the commands that read
  // or change the game beside a search ("eval", "time", "auto"): they see the game before the
  // move or after it, never half made.
  std::mutex gameMutex;

  std::FILE* in;
};

}  // namespace torvy
