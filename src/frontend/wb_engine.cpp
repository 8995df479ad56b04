#include "frontend/wb_engine.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <utility>

#include "board/fen.h"
#include "board/move_text.h"
#include "frontend/configuration.h"
#include "frontend/line_reader.h"
#include "frontend/uci_engine.h"

namespace torvy {

WBEngine::WBEngine(std::ostream& output, std::FILE* input) : console(output), player(clock, console), in(input) {
  player.engine = this;
  readConfiguration();
}

void WBEngine::readConfiguration() { readConfigurationFile(ConfigurationFileName, player, out()); }

int WBEngine::run(int argc, char** argv) {
  printBanner();
  readCommandLine(argc, argv);
  std::setbuf(in, nullptr);
  player.newGame();
  boardChanged = true;
  while (!quit) {
    if (boardChanged) showBoard();
    if (!xboardMode) out() << "# Your move: " << std::flush;
    readCommand();
    if (quit) break;
    // While a search runs only the commands themselves act on it.
    if (player.isIdle()) decideNextStep();
  }
  return 0;
}

void WBEngine::printBanner() {
  out() << "# " << ProgramName << ' ' << ProgramVersion << '\n'
        << "# a chess engine for xboard front ends, written in C++20\n"
        << "# \n"
        << "feature done=0" << std::endl;
}

void WBEngine::readCommandLine(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "-cores") != 0) {
      out() << "# warning: found unknown command line option \"" << argv[i] << '"' << std::endl;
      continue;
    }
    if (++i == argc) {
      out() << "# warning: missing argument for command line option \"-cores\"" << std::endl;
      return;
    }
    const int cores = std::atoi(argv[i]);
    if (cores < 1)
      out() << "# warning: found bad argument \"" << cores
            << "\" for command line option \"-cores\", must be a positive number" << std::endl;
    else
      player.setCores(std::uint32_t(cores));
  }
}

void WBEngine::readCommand() {
  char line[LineBufferSize];
  if (!readLine(line, sizeof line, in)) return finishInput();
  if (std::exchange(firstLine, false) && line == UciCommand) return runUci();
  if (!dispatch(line)) out() << "# command \"" << line << "\" returned an error code " << std::endl;
}

void WBEngine::runUci() {
  out() << std::endl;  // ends the prompt line
  UciEngine(console, clock, player, in).run();
  quit = true;
}

void WBEngine::finishInput() {
  // A search with a clock ends by itself and still publishes its move; an analysis never
  // would, so it is stopped.
  if (!clock.timeLimited) player.stopSearch();
  while (!player.isIdle()) std::this_thread::yield();
  quit = true;
}

bool WBEngine::dispatch(std::string_view line) {
  if (line.empty()) return true;
  const std::size_t blank = line.find(' ');
  const bool hasArguments = blank != std::string_view::npos;
  const CommandRow* row = findCommand(line.substr(0, blank));
  if (row == nullptr) return true;
  const Arguments args = split(hasArguments ? line.substr(blank + 1) : std::string_view(), ' ');
  if (hasArguments ? args.size() < row->minArgs : row->minArgs > 0) {
    out() << "Error (missing arguments, expected at least " << row->minArgs << "): " << line << std::endl;
    return false;
  }
  if (hasArguments && args.size() > row->maxArgs) {
    out() << "Error (too many arguments, expected at most " << row->maxArgs << "): " << line << std::endl;
    return false;
  }
  if (row->needsPosition && !player.hasPosition) {
    out() << "Error (no position since a refused setboard): " << line << std::endl;
    return false;
  }
  if (row->stopsSearch) player.stopSearch();
  return (this->*row->handler)(args);
}

void WBEngine::decideNextStep() {
  if (!player.hasPosition) return;
  testGameEnd();
  if (sideToMove() != engineColor) return;
  // Said once: the engine then stands aside until a command hands it the move again.
  if (canSearch())
    player.startSearch();
  else
    standAside();
}

void WBEngine::testGameEnd() {
  if (!gameOver) gameOver = player.checkGameEnd();
  if (gameOver) standAside();
}

// A search needs both kings and a side to move that can't take a king; its move needs room in
// the record.
bool WBEngine::canSearch() {
  const char* refusal = player.kingMissing()      ? MissingKingError
                        : player.kingCapturable() ? KingCapturableError
                        : player.recordFull()     ? RecordFullError
                                                  : nullptr;
  if (refusal != nullptr) out() << refusal << std::endl;
  return refusal == nullptr;
}

void WBEngine::standAside() {
  engineColor = NoColor;
  forceMode = true;
}

void WBEngine::showBoard() {
  boardChanged = false;
  printBoard(player.board, out());
}

// Runs on the first search thread. The board is printed here rather than flagged for the
// command loop, which may be reading the flag at this moment.
void WBEngine::makeEngineMove(Move move) {
  const std::lock_guard lock(gameMutex);
  if (player.shouldOfferDraw(move)) out() << "offer draw" << std::endl;
  const std::string text = moveToText(move);
  out() << "# making engine move: " << text << std::endl;
  player.commitMove(move);
  out() << "move " << text << std::endl;
  if (!isNoMove(player.ponderMove)) out() << "# ponder move: " << moveToText(player.ponderMove) << std::endl;
  printBoard(player.board, out());
  testGameEnd();
  out().flush();
  if (autoMode) engineColor = sideToMove();
}

void WBEngine::printThinking(unsigned depth, int score, std::int32_t time, std::uint64_t nodes, const PvLine& line) {
  out() << depth << ' ' << score << ' ' << time << ' ' << nodes;
  for (std::uint16_t i = 0; i < line.count; ++i) out() << ' ' << moveToText(line.moves[i]);
  out() << std::endl;
}

}  // namespace torvy
