#include "frontend/uci_engine.h"

#include <thread>

#include "board/fen.h"
#include "board/move_text.h"
#include "diagnostics/bench.h"
#include "frontend/line_reader.h"
#include "frontend/wb_engine.h"

namespace torvy {

namespace {

// The move of a position without one.
constexpr std::string_view NoMoveText = "0000";

// Moves to mate from a mate score, negative when the engine gets mated.
int movesToMate(int score) { return score > 0 ? (MateScore - score + 1) / 2 : -(MateScore + score) / 2; }

}  // namespace

// Searched in order; a command that replaces what a search uses, or starts one, stops the
// running search first, so that its move is given before anything changes.
const UciEngine::Command UciEngine::Commands[] = {
    {"uci", &UciEngine::handleUci, false},
    {"isready", &UciEngine::handleIsready, false},
    {"setoption", &UciEngine::handleSetoption, true},
    {"ucinewgame", &UciEngine::handleUcinewgame, true},
    {"position", &UciEngine::handlePosition, true},
    {"go", &UciEngine::handleGo, true},
    {"stop", &UciEngine::handleStop, true},
    // The engine ponders like an analysis, so a hit ends it with the move found so far.
    {"ponderhit", &UciEngine::handleStop, true},
    {"quit", &UciEngine::handleQuit, true},
    {BenchCommand, &UciEngine::handleBench, true},
    // Sent by GUIs, of no use here.
    {"debug", &UciEngine::handleIgnored, false},
    {"register", &UciEngine::handleIgnored, false},
};

UciEngine::UciEngine(Console& console, SearchClock& clock, ChessPlayer& player, std::FILE* in)
    : console(console), clock(clock), player(player), in(in), heldFen(StartFen) {
  player.engine = this;
  player.alwaysGivesMove = true;
  console.replaceCommentMark(UciInfoString);
}

UciEngine::~UciEngine() { stopSearch(); }

void UciEngine::run() {
  restoreHeldPosition();
  handleUci({});
  std::string line;
  while (!quit && readWholeLine(line, in)) dispatch(line);
  if (!quit) finishInput();
  stopSearch();
}

// As in xboard mode, a search with a limit of its own still gives its move at the end of input.
void UciEngine::finishInput() {
  {
    const std::lock_guard lock(resultMutex);
    if (holdingResult || !(clock.timeLimited || clock.depthLimited)) return;
  }
  while (!player.isIdle()) std::this_thread::yield();
}

void UciEngine::dispatch(std::string_view line) {
  while (line.starts_with(' ')) line.remove_prefix(1);
  if (line.empty()) return;
  const std::size_t blank = line.find(' ');
  const std::string_view name = line.substr(0, blank);
  const std::string_view arguments = blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1);
  for (const Command& command : Commands) {
    if (command.name != name) continue;
    if (command.stopsSearch) stopSearch();
    return (this->*command.handler)(arguments);
  }
  out() << UciInfoString << "unknown command: " << name.substr(0, MaxEchoedLength) << std::endl;
}

void UciEngine::handleUci(std::string_view) {
  out() << "id name " << ProgramName << ' ' << ProgramVersion << '\n' << "id author " << UciAuthor << '\n';
  printOptions();
  out() << "uciok" << std::endl;
}

// Answered at once, also beside a search: the tables were made when their options were set.
void UciEngine::handleIsready(std::string_view) { out() << "readyok" << std::endl; }

void UciEngine::handleUcinewgame(std::string_view) {
  player.newGame();
  clock.resetForNewGame();
  restoreHeldPosition();
}

void UciEngine::handleStop(std::string_view) {}

void UciEngine::handleQuit(std::string_view) { quit = true; }

void UciEngine::handleBench(std::string_view arguments) { runBenchCommand(out(), arguments); }

void UciEngine::handleIgnored(std::string_view) {}

void UciEngine::stopSearch() {
  {
    const std::lock_guard lock(resultMutex);
    holdingResult = false;
  }
  player.stopSearch();
  const std::lock_guard lock(resultMutex);
  if (!resultWaiting) return;
  resultWaiting = false;
  printBestMove(waitingMove, waitingPonder);
}

// Runs on the first search thread; an unlimited search keeps its move until "stop".
void UciEngine::makeEngineMove(Move move) {
  const std::lock_guard lock(resultMutex);
  if (holdingResult) {
    resultWaiting = true;
    waitingMove = move;
    waitingPonder = player.ponderMove;
    return;
  }
  printBestMove(move, player.ponderMove);
}

void UciEngine::printBestMove(Move move, Move ponder) {
  out() << "bestmove " << (isNoMove(move) ? std::string(NoMoveText) : moveToText(move));
  if (!isNoMove(move) && !isNoMove(ponder)) out() << " ponder " << moveToText(ponder);
  out() << std::endl;
}

void UciEngine::printThinking(unsigned depth, int score, std::int32_t time, std::uint64_t nodes, const PvLine& line) {
  const std::int64_t millis = std::int64_t(time) * MillisPerCentisecond;
  out() << "info depth " << depth << " score ";
  if (score > MateThreshold || score < -MateThreshold)
    out() << "mate " << movesToMate(score);
  else
    out() << "cp " << score;
  out() << " time " << millis << " nodes " << nodes << " nps "
        << (millis > 0 ? nodes * 1000 / std::uint64_t(millis) : 0) << " pv";
  for (std::uint16_t i = 0; i < line.count; ++i) out() << ' ' << moveToText(line.moves[i]);
  out() << std::endl;
}

}  // namespace torvy
