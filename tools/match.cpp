#include "match.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

namespace torvy {
namespace {

// Wall-clock figures mean little on a machine that is busy with other work, so the report says how busy it was.
std::string loadAverage() {
  std::ifstream file("/proc/loadavg");
  std::string one, five;
  file >> one >> five;
  return one + " " + five;
}

std::string formatRatio(double ratio) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", ratio);
  return text;
}

std::string describe(const TimeUse& use) {
  return "worstRatio=" + formatRatio(use.worstRatio) + (use.worstWhere.empty() ? "" : " at " + use.worstWhere) +
         " overruns=" + std::to_string(use.overruns) + " worstExcessMs=" + std::to_string(use.worstExcessMs);
}

void fault(GameResult& result, Color side, Ending ending, const std::string& detail) {
  result.winner = opposite(side);
  result.ending = ending;
  result.detail = detail;
  result.noteworthy = true;
}

}  // namespace

bool loadOpenings(const std::string& path, std::vector<Opening>& openings) {
  std::ifstream file(path);
  if (!file) {
    std::cerr << "referee: cannot read openings file " << path << std::endl;
    return false;
  }
  std::string text;
  for (int lineNumber = 1; std::getline(file, text); ++lineNumber) {
    const std::size_t hash = text.find('#');
    Opening opening;
    if (hash != std::string::npos) opening.name = text.substr(hash + 1 + (text[hash + 1] == ' ' ? 1 : 0));
    std::istringstream words(text.substr(0, hash));
    GameBoard board(0, 0);
    for (std::string word; words >> word;) {
      if (!board.place(word)) {
        std::cerr << "referee: " << path << ':' << lineNumber << ": illegal move " << word << std::endl;
        return false;
      }
    }
    opening.moves = board.moves();
    if (!opening.moves.empty()) openings.push_back(std::move(opening));
  }
  if (openings.empty()) std::cerr << "referee: no openings in " << path << std::endl;
  return !openings.empty();
}

void Tally::count(const GameResult& result, int whiteEngine) {
  for (int index = 0; index < 2; ++index) {
    EngineTally& t = engines[index];
    t.time.add(result.time[index]);
    t.searchTime.add(result.searchTime[index]);
    if (result.winner == NoColor) {
      ++t.draws;
      continue;
    }
    if (result.winner == (index == whiteEngine ? White : Black)) {
      ++t.wins;
      continue;
    }
    ++t.losses;
    if (result.ending == Ending::Illegal) ++t.illegal;
    if (result.ending == Ending::Time) ++t.timeouts;
    if (result.ending == Ending::Crash) ++t.crashes;
  }
  if (result.ending == Ending::Length) ++tooLong;
  ++games;
}

bool Tally::clean() const {
  for (const EngineTally& t : engines)
    if (t.illegal || t.timeouts || t.crashes || t.time.overruns) return false;
  return true;
}

Match::Match(const Options& options, std::vector<Opening> openings, std::ostream& log)
    : options_(options), openings_(std::move(openings)), log_(log), loadAtStart_(loadAverage()) {
  totalGames_ = options.games > 0 ? options.games : int(openings_.size()) * 2;
}

void Match::run() {
  std::vector<std::thread> slots;
  for (int i = 0; i < std::max(options_.concurrency, 1); ++i) slots.emplace_back([this] { slot(); });
  for (std::thread& t : slots) t.join();
}

void Match::slot() {
  EnginePlayer first({options_.engines[0], options_.engineArgs, options_.workDir, options_.uci[0]}, 'A');
  EnginePlayer second({options_.engines[1], options_.engineArgs, options_.workDir, options_.uci[1]}, 'B');
  EnginePlayer* players[2] = {&first, &second};
  for (int number = nextGame_++; number < totalGames_; number = nextGame_++) {
    // Each opening twice in a row, engine A White in the first game and Black in the second.
    const Opening& opening = openings_[std::size_t(number / 2) % openings_.size()];
    const int whiteEngine = number % 2;
    const GameResult result = play(players, whiteEngine, opening, number + 1);
    finish(number + 1, whiteEngine, opening, result, players);
  }
}

GameResult Match::play(EnginePlayer* players[2], int whiteEngine, const Opening& opening, int number) const {
  auto indexOf = [&](Color side) { return side == White ? whiteEngine : 1 - whiteEngine; };
  auto engine = [&](Color side) { return std::string("engine ") + players[indexOf(side)]->label(); };
  GameResult result;
  const auto origin = SteadyClock::now();
  for (int index = 0; index < 2; ++index) players[index]->beginTranscript(origin);
  for (Color side : {White, Black}) {
    EnginePlayer& player = *players[indexOf(side)];
    if (!player.newGame(opening.moves, options_.baseMs, options_.incrementMs)) {
      player.kill();
      fault(result, side, Ending::Crash, engine(side) + " did not start a game");
      return result;
    }
  }
  GameBoard board(options_.baseMs, options_.incrementMs);
  for (const std::string& move : opening.moves) board.place(move);

  for (;;) {
    if (const auto ending = board.end(result.winner)) {
      result.ending = *ending;
      break;
    }
    const Color side = board.sideToMove();
    const int index = indexOf(side);
    EnginePlayer& player = *players[index];
    const auto deadline =
        SteadyClock::now() + std::chrono::milliseconds(std::max<Millis>(board.clockMs(side), 0) + options_.graceMs);
    const Reply reply = player.askMove(board.moves(), side == White, board.clockMs(White), board.clockMs(Black),
                                       options_.incrementMs, deadline);
    if (reply.kind == Reply::Kind::Closed) {
      fault(result, side, Ending::Crash, engine(side) + " " + player.endDescription());
      break;
    }
    if (reply.kind == Reply::Kind::Hung) {
      fault(result, side, Ending::Crash, engine(side) + " gave no move, killed");
      break;
    }
    if (reply.kind == Reply::Kind::Refused) {
      fault(result, side, Ending::Crash, engine(side) + " refused: " + reply.text);
      break;
    }
    const std::string where = "game " + std::to_string(number) + " ply " + std::to_string(board.moves().size() + 1) +
                              " (" + std::to_string(reply.usedMs) + " ms of maxTime " +
                              std::to_string(reply.maxTimeCs) + " cs)";
    if (result.time[index].record(reply.usedMs, reply.maxTimeCs, where)) result.noteworthy = true;
    if (reply.searchCs >= 0 && result.searchTime[index].record(Millis(reply.searchCs) * 10, reply.maxTimeCs, where))
      result.noteworthy = true;
    if (const auto faultEnding = board.play(reply.text, reply.usedMs)) {
      fault(result, side, *faultEnding,
            engine(side) + (*faultEnding == Ending::Time ? " over by " + std::to_string(-board.clockMs(side)) + " ms"
                                                         : " played " + reply.text));
      break;
    }
  }
  result.moves = board.moves();
  return result;
}

void Match::finish(int number, int whiteEngine, const Opening& opening, const GameResult& result,
                   EnginePlayer* players[2]) {
  std::lock_guard lock(mutex_);
  tally_.count(result, whiteEngine);
  const char* score = result.winner == White ? "1-0" : result.winner == Black ? "0-1" : "1/2-1/2";
  log_ << "game " << number << "/" << totalGames_ << " [" << opening.name << "] " << char('A' + whiteEngine) << "-"
       << char('B' - whiteEngine) << ": " << score << " " << endingName(result.ending)
       << (result.detail.empty() ? "" : " (" + result.detail + ")") << ", " << result.moves.size() << " plies"
       << std::endl;
  if (result.noteworthy) keepTranscript(number, result, players);
}

void Match::keepTranscript(int number, const GameResult& result, EnginePlayer* players[2]) const {
  if (options_.transcriptDir.empty()) return;
  const std::string path = options_.transcriptDir + "/game-" + std::to_string(number) + ".txt";
  std::ofstream file(path);
  file << "result: " << endingName(result.ending) << " " << result.detail << "\nmoves:";
  for (const std::string& move : result.moves) file << ' ' << move;
  file << '\n';
  for (int index = 0; index < 2; ++index) {
    for (const std::string& line : players[index]->transcript()) file << line << '\n';
  }
  log_ << "  transcript: " << path << std::endl;
}

bool Match::report(std::ostream& out) const {
  std::lock_guard lock(mutex_);
  int illegal = 0, timeouts = 0, crashes = 0;
  TimeUse time, searchTime;
  for (int index = 0; index < 2; ++index) {
    const EngineTally& t = tally_.engines[index];
    out << "engine " << char('A' + index) << " (" << options_.engines[index] << "): wins=" << t.wins
        << " draws=" << t.draws << " losses=" << t.losses << " illegal=" << t.illegal << " timeouts=" << t.timeouts
        << " crashes=" << t.crashes << " moves=" << t.time.moves
        << "\n  move time against maxTime: " << describe(t.time)
        << "\n  search time against maxTime: " << describe(t.searchTime) << std::endl;
    illegal += t.illegal;
    timeouts += t.timeouts;
    crashes += t.crashes;
    time.add(t.time);
    searchTime.add(t.searchTime);
  }
  const EngineTally& a = tally_.engines[0];
  out << "load average (1 and 5 minutes): at start " << loadAtStart_ << ", at end " << loadAverage() << std::endl;
  out << "games=" << tally_.games << " wins=" << a.wins << " draws=" << a.draws << " losses=" << a.losses
      << " illegal=" << illegal << " timeouts=" << timeouts << " crashes=" << crashes
      << " worstTimeOverrun=" << formatRatio(time.worstRatio) << " overruns=" << time.overruns
      << " searchOverruns=" << searchTime.overruns << " tooLong=" << tally_.tooLong << std::endl;
  return tally_.clean();
}

}  // namespace torvy
