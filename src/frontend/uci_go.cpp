// "go": the UCI clock fed into the engine's own budget arithmetic, then the search.
#include <algorithm>
#include <charconv>

#include "board/movegen.h"
#include "frontend/line_reader.h"
#include "frontend/uci_engine.h"

namespace torvy {

namespace {

// Bounds that keep the budget arithmetic inside 32 bits, far beyond any real time control.
constexpr std::int64_t MaxClockCentiseconds = 10'000'000;
constexpr std::int64_t MaxMovesToGo = 200;
constexpr std::int64_t MaxDepth = 1000;

struct GoLimits {
  std::int64_t time[2] = {-1, -1};  // milliseconds left for White and Black; -1 when not sent
  std::int64_t increment[2] = {0, 0};
  std::int64_t movesToGo = 0;
  std::int64_t moveTime = 0;
  std::int64_t depth = 0;
  bool holdMove = false;  // "infinite" or "ponder": the move waits for "stop"
};

// The parameters that take a number, and where it goes.
struct NumberParameter {
  std::string_view name;
  std::int64_t GoLimits::*field;
};

constexpr NumberParameter NumberParameters[] = {
    {"movestogo", &GoLimits::movesToGo}, {"movetime", &GoLimits::moveTime}, {"depth", &GoLimits::depth}};

struct ClockParameter {
  std::string_view name;
  std::int64_t (GoLimits::*field)[2];
  Color side;
};

constexpr ClockParameter ClockParameters[] = {
    {"wtime", &GoLimits::time, White},
    {"btime", &GoLimits::time, Black},
    {"winc", &GoLimits::increment, White},
    {"binc", &GoLimits::increment, Black},
};

bool readNumber(const std::string& text, std::int64_t& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}

std::int64_t* numberField(GoLimits& limits, std::string_view name) {
  for (const NumberParameter& parameter : NumberParameters)
    if (parameter.name == name) return &(limits.*parameter.field);
  for (const ClockParameter& parameter : ClockParameters)
    if (parameter.name == name) return &(limits.*parameter.field)[parameter.side];
  return nullptr;
}

std::uint32_t centiseconds(std::int64_t millis) {
  return std::uint32_t(std::clamp<std::int64_t>(millis / MillisPerCentisecond, 0, MaxClockCentiseconds));
}

}  // namespace

bool UciEngine::setLimits(const std::vector<std::string>& words) {
  GoLimits limits;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (word == "infinite" || word == "ponder") {
      limits.holdMove = true;
    } else if (std::int64_t* field = numberField(limits, word)) {
      if (i + 1 < words.size() && readNumber(words[i + 1], *field))
        ++i;
      else
        out() << UciInfoString << "no number after " << word << ", ignored" << std::endl;
    } else if (!word.empty()) {
      // "nodes", "mate" and "searchmoves" with their arguments.
      out() << UciInfoString << "ignored: " << word.substr(0, MaxEchoedLength) << std::endl;
    }
  }
  const Color us = player.board.sideToMove;
  clock.moveTime = 0;
  clock.depthLimited = limits.depth > 0;
  clock.maxDepth = std::uint32_t(std::clamp<std::int64_t>(limits.depth, 0, MaxDepth));
  clock.timeLimited = !limits.holdMove && (limits.moveTime > 0 || limits.time[us] >= 0);
  if (!clock.timeLimited) return !limits.holdMove;
  if (limits.moveTime > 0) {
    clock.moveTime = std::int32_t(std::max<std::uint32_t>(centiseconds(limits.moveTime), 1));
    return true;
  }
  // The budget arithmetic counts full moves from the start of a session: a session that began
  // with this move and holds movestogo moves leaves exactly those to share the time. Without
  // movestogo the rest of the game is one session.
  const std::uint32_t fullMove = fullMoveNumber(player.gamePly);
  const std::int64_t movesToGo = std::min(limits.movesToGo, MaxMovesToGo);
  clock.movesPerSession = movesToGo > 0 ? std::uint32_t(movesToGo) + fullMove - 1 : 0;
  clock.increment = centiseconds(limits.increment[us]);
  clock.setRemainingTime(std::int32_t(centiseconds(limits.time[us])), player.gamePly);
  return true;
}

void UciEngine::handleGo(std::string_view arguments) {
  const bool givesMoveAtOnce = setLimits(split(arguments, ' '));
  MoveList moves;
  generateLegalMoves(player.board, moves);
  if (moves.count == 0) return printBestMove(NoMove, NoMove);
  {
    const std::lock_guard lock(resultMutex);
    holdingResult = !givesMoveAtOnce;
  }
  player.ponderMove = NoMove;  // a book move has none; the search sets its own
  player.startSearch();
}

}  // namespace torvy
