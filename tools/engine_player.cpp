#include "engine_player.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace torvy {
namespace {

constexpr Millis HandshakeLimitMs = 30000;
constexpr Millis QuitLimitMs = 2000;

// The lines of Torvy's output the referee reads, in their xboard forms.
constexpr std::string_view MaxTimeSet = "# set maxTime = ";
constexpr std::string_view MaxTimeCorrected = "# out of book: corrected maxTime = ";
constexpr std::string_view SearchSummary = "# total nodes = ";
constexpr std::string_view SearchTimeField = ", time = ";
constexpr std::string_view Refusal = "Error ";
constexpr std::string_view MoveLine = "move ";
// Over UCI its comment lines come as info strings, its move as "bestmove" with a ponder move behind.
constexpr std::string_view UciComment = "info string ";
constexpr std::string_view UciMove = "bestmove ";

// The number the text begins with, 0 if none.
int leadingNumber(std::string_view text) {
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string asXboard(std::string_view line) {
  if (line.starts_with(UciComment)) return "# " + std::string(line.substr(UciComment.size()));
  if (line.starts_with(UciMove)) {
    const std::string_view move = line.substr(UciMove.size());
    return std::string(MoveLine) + std::string(move.substr(0, move.find(' ')));
  }
  return std::string(line);
}

// "level" takes whole seconds: the session time and increment rounded down.
std::string levelCommand(Millis baseMs, Millis incrementMs) {
  const Millis seconds = std::max<Millis>(baseMs / 1000, 1);
  char text[64];
  std::snprintf(text, sizeof text, "level 0 %lld:%02lld %lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60), static_cast<long long>(incrementMs / 1000));
  return text;
}

std::string centiseconds(Millis ms) { return std::to_string(std::max<Millis>(ms, 0) / 10); }

}  // namespace

bool readReplyLine(std::string_view original, bool uci, Reply& reply) {
  const std::string line = uci ? asXboard(original) : std::string(original);
  for (std::string_view announcement : {MaxTimeSet, MaxTimeCorrected})
    if (line.starts_with(announcement))
      reply.maxTimeCs = leadingNumber(std::string_view(line).substr(announcement.size()));
  const std::size_t searchTimeAt = line.find(SearchTimeField);
  if (line.starts_with(SearchSummary) && searchTimeAt != std::string::npos)
    reply.searchCs = leadingNumber(std::string_view(line).substr(searchTimeAt + SearchTimeField.size()));
  if (line.starts_with(Refusal)) {
    reply.kind = Reply::Kind::Refused;
    reply.text = line;
    return true;
  }
  if (line.starts_with(MoveLine)) {
    reply.kind = Reply::Kind::Move;
    reply.text = line.substr(MoveLine.size());
    return true;
  }
  return false;
}

void EnginePlayer::note(const char* direction, const std::string& text) {
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%9.3f %c%s ", double(millisBetween(origin_, SteadyClock::now())) / 1000.0, label_,
                direction);
  transcript_.push_back(stamp + text);
}

void EnginePlayer::send(const std::string& line) {
  note(">", line);
  process_.writeLine(line);  // a dead engine shows itself at the next read
}

bool EnginePlayer::awaitLine(std::string_view prefix, SteadyClock::time_point deadline) {
  std::string line;
  while (process_.readLine(line, deadline) == EngineProcess::Read::Data) {
    note("<", line);
    if (line.starts_with(prefix)) return true;
  }
  return false;
}

bool EnginePlayer::newGame(const std::vector<std::string>& opening, Millis baseMs, Millis incrementMs) {
  const bool fresh = !process_.outputOpen();
  if (fresh && !process_.start(setup_.path, setup_.args, setup_.directory, true)) return false;
  movesKnown_ = opening.size();
  searching_ = false;
  const auto limit = SteadyClock::now() + std::chrono::milliseconds(HandshakeLimitMs);
  if (setup_.uci) {
    // The game is sent whole with every move, the opening included.
    if (fresh) send("uci");
    if (fresh && !awaitLine("uciok", limit)) return false;
    send("ucinewgame");
    send("isready");
    return awaitLine("readyok", limit);
  }
  send("xboard");
  send("new");
  send("force");
  send("post");
  send(levelCommand(baseMs, incrementMs));
  for (const std::string& move : opening) send("usermove " + move);
  const std::string pong = "pong " + std::to_string(++pingCount_);
  send("ping " + std::to_string(pingCount_));
  return awaitLine(pong, limit);
}

Reply EnginePlayer::askMove(const std::vector<std::string>& moves, bool white, Millis whiteMs, Millis blackMs,
                            Millis incrementMs, SteadyClock::time_point deadline) {
  if (setup_.uci) {
    std::string position = "position startpos";
    if (!moves.empty()) position += " moves";
    for (const std::string& move : moves) position += " " + move;
    send(position);
    const std::string increment = std::to_string(incrementMs);
    send("go wtime " + std::to_string(std::max<Millis>(whiteMs, 0)) + " btime " +
         std::to_string(std::max<Millis>(blackMs, 0)) + " winc " + increment + " binc " + increment);
  } else {
    send("time " + centiseconds(white ? whiteMs : blackMs));
    send("otim " + centiseconds(white ? blackMs : whiteMs));
    for (std::size_t i = movesKnown_; i < moves.size(); ++i) send("usermove " + moves[i]);
    if (!searching_) send("go");
    searching_ = true;
  }
  movesKnown_ = moves.size() + 1;

  const auto asked = SteadyClock::now();
  Reply reply;
  std::string line;
  for (;;) {
    switch (process_.readLine(line, deadline)) {
      case EngineProcess::Read::Closed:
        process_.wait(QuitLimitMs);
        reply.kind = Reply::Kind::Closed;
        return reply;
      case EngineProcess::Read::Timeout:
        process_.kill();
        reply.kind = Reply::Kind::Hung;
        return reply;
      case EngineProcess::Read::Data: break;
    }
    note("<", line);
    if (readReplyLine(line, setup_.uci, reply)) break;
  }
  reply.usedMs = millisBetween(asked, SteadyClock::now());
  return reply;
}

void EnginePlayer::quit() {
  if (process_.outputOpen()) send("quit");
  process_.wait(QuitLimitMs);
}

}  // namespace torvy
