// Self-play referee: plays two engine processes against each other over the xboard protocol or UCI,
// checks every move on our own board, keeps the real clocks and ends each game itself, since the
// engine only offers draws and never claims them.
//
//   referee [--engine PATH] [--engine2 PATH] [--cores N] [--games N] [--concurrency N]
//           [--time SECONDS] [--inc SECONDS] [--openings FILE] [--dir DIR] [--transcripts DIR]
//           [--grace SECONDS] [--protocol xboard|uci] [--protocol2 xboard|uci]
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "board/attacks.h"
#include "board/draw_rules.h"
#include "board/fen.h"
#include "board/move_text.h"
#include "board/movegen.h"

namespace torvy {
namespace {

using SteadyClock = std::chrono::steady_clock;
using Millis = std::int64_t;

Millis millisBetween(SteadyClock::time_point from, SteadyClock::time_point to) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(to - from).count();
}

// The engine's record holds 1023 moves; a game that gets this far is called a draw first.
constexpr int MaxGamePlies = 1000;
constexpr Millis HandshakeLimitMs = 30000;
constexpr Millis QuitLimitMs = 2000;

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

// ---------------------------------------------------------------------------------------------
// One engine as a child process, spoken to line by line through pipes.

class EngineProcess {
 public:
  enum class Read { Line, Timeout, Closed };

  EngineProcess(const Options& options, int index) : options_(options), index_(index) {}
  ~EngineProcess() { quit(); }
  EngineProcess(const EngineProcess&) = delete;
  EngineProcess& operator=(const EngineProcess&) = delete;

  char label() const { return char('A' + index_); }
  bool speaksUci() const { return options_.uci[index_]; }
  bool alive() const { return pid_ > 0 && output_ >= 0; }

  bool start();
  void send(const std::string& line);
  Read readLine(std::string& line, SteadyClock::time_point deadline);
  // Reads until a line that begins with the prefix; false if the engine died or the time ran out.
  bool awaitLine(const std::string& prefix, SteadyClock::time_point deadline);
  void quit();
  void kill();
  // How the process ended, for the report of a crash.
  std::string endDescription();

  void beginTranscript(SteadyClock::time_point origin) {
    transcript_.clear();
    origin_ = origin;
  }
  const std::vector<std::string>& transcript() const { return transcript_; }

 private:
  void note(const char* direction, const std::string& text);
  void closePipes();
  // Collects the exit status, waiting at most this long before the process is killed.
  void reap(Millis patienceMs);

  const Options& options_;
  int index_;
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  int status_ = 0;
  bool reaped_ = true;
  std::string pending_;
  std::vector<std::string> transcript_;
  SteadyClock::time_point origin_ = SteadyClock::now();
};

bool EngineProcess::start() {
  int toChild[2];
  int fromChild[2];
  // Close-on-exec, so that engines started by other game slots never hold our pipe ends open.
  if (pipe2(toChild, O_CLOEXEC) != 0) return false;
  if (pipe2(fromChild, O_CLOEXEC) != 0) {
    close(toChild[0]);
    close(toChild[1]);
    return false;
  }
  const std::string& path = options_.engines[index_];
  std::vector<char*> argv{const_cast<char*>(path.c_str())};
  for (const std::string& arg : options_.engineArgs) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) {
    for (int fd : {toChild[0], toChild[1], fromChild[0], fromChild[1]}) close(fd);
    return false;
  }
  if (child == 0) {
    dup2(toChild[0], STDIN_FILENO);
    dup2(fromChild[1], STDOUT_FILENO);
    dup2(fromChild[1], STDERR_FILENO);
    if (chdir(options_.workDir.c_str()) != 0) _exit(126);
    const sched_param normal{};
    sched_setscheduler(0, SCHED_OTHER, &normal);  // the referee's priority is not the engine's
    execv(path.c_str(), argv.data());
    _exit(127);
  }
  close(toChild[0]);
  close(fromChild[1]);
  pid_ = child;
  input_ = toChild[1];
  output_ = fromChild[0];
  reaped_ = false;
  pending_.clear();
  return true;
}

void EngineProcess::note(const char* direction, const std::string& text) {
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%9.3f %c%s ", double(millisBetween(origin_, SteadyClock::now())) / 1000.0,
                label(), direction);
  transcript_.push_back(stamp + text);
}

void EngineProcess::send(const std::string& line) {
  note(">", line);
  if (input_ < 0) return;
  const std::string text = line + '\n';
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t n = write(input_, text.data() + written, text.size() - written);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;  // a dead engine shows itself at the next read
    written += std::size_t(n);
  }
}

EngineProcess::Read EngineProcess::readLine(std::string& line, SteadyClock::time_point deadline) {
  for (;;) {
    const std::size_t newline = pending_.find('\n');
    if (newline != std::string::npos) {
      line = pending_.substr(0, newline);
      pending_.erase(0, newline + 1);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      note("<", line);
      return Read::Line;
    }
    if (output_ < 0) return Read::Closed;
    const Millis left = millisBetween(SteadyClock::now(), deadline);
    if (left <= 0) return Read::Timeout;
    pollfd watched{output_, POLLIN, 0};
    if (poll(&watched, 1, int(std::min<Millis>(left, 1000))) <= 0) continue;
    char chunk[4096];
    const ssize_t n = read(output_, chunk, sizeof chunk);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      closePipes();
      reap(QuitLimitMs);
      continue;
    }
    pending_.append(chunk, std::size_t(n));
  }
}

bool EngineProcess::awaitLine(const std::string& prefix, SteadyClock::time_point deadline) {
  std::string line;
  while (readLine(line, deadline) == Read::Line)
    if (line.compare(0, prefix.size(), prefix) == 0) return true;
  return false;
}

void EngineProcess::closePipes() {
  if (input_ >= 0) close(input_);
  if (output_ >= 0) close(output_);
  input_ = output_ = -1;
}

void EngineProcess::reap(Millis patienceMs) {
  if (reaped_) return;
  const auto deadline = SteadyClock::now() + std::chrono::milliseconds(patienceMs);
  while (waitpid(pid_, &status_, WNOHANG) == 0) {
    if (SteadyClock::now() >= deadline) {
      ::kill(pid_, SIGKILL);
      waitpid(pid_, &status_, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  reaped_ = true;
}

void EngineProcess::quit() {
  if (reaped_) return;
  send("quit");
  closePipes();
  reap(QuitLimitMs);
}

void EngineProcess::kill() {
  if (reaped_) return;
  ::kill(pid_, SIGKILL);
  closePipes();
  reap(QuitLimitMs);
}

std::string EngineProcess::endDescription() {
  if (!reaped_) return "still running";
  if (WIFSIGNALED(status_)) return "killed by signal " + std::to_string(WTERMSIG(status_));
  if (WIFEXITED(status_)) return "exited with code " + std::to_string(WEXITSTATUS(status_));
  return "ended";
}

// ---------------------------------------------------------------------------------------------
// Openings: lines of coordinate moves, a name behind "#".

struct Opening {
  std::string name;
  std::vector<std::string> moves;
};

void makeOnBoard(Board_0x88& board, Move move, UndoRecord& undo) {
  if (board.sideToMove == White)
    board.makeMove<White>(move, undo);
  else
    board.makeMove<Black>(move, undo);
}

bool loadOpenings(const std::string& path, std::vector<Opening>& openings) {
  std::ifstream file(path);
  if (!file) {
    std::cerr << "referee: cannot read openings file " << path << std::endl;
    return false;
  }
  auto board = std::make_unique<Board_0x88>();
  std::string text;
  for (int lineNumber = 1; std::getline(file, text); ++lineNumber) {
    const std::size_t hash = text.find('#');
    Opening opening;
    if (hash != std::string::npos) opening.name = text.substr(hash + 1 + (text[hash + 1] == ' ' ? 1 : 0));
    std::istringstream words(text.substr(0, hash));
    setStartPosition(*board);
    UndoRecord undo;
    for (std::string word; words >> word;) {
      Move move = NoMove;
      if (!parseCoordinateMove(*board, word.c_str(), move)) {
        std::cerr << "referee: " << path << ':' << lineNumber << ": illegal move " << word << std::endl;
        return false;
      }
      makeOnBoard(*board, move, undo);
      opening.moves.push_back(moveToText(move));
    }
    if (!opening.moves.empty()) openings.push_back(std::move(opening));
  }
  if (openings.empty()) std::cerr << "referee: no openings in " << path << std::endl;
  return !openings.empty();
}

// ---------------------------------------------------------------------------------------------
// The figures kept for each engine over all games.

// The engine promises never to spend more than its own announced maxTime plus 5% and 2 centiseconds.
struct TimeUse {
  int moves = 0;
  int overruns = 0;
  double worstRatio = 0;
  Millis worstExcessMs = 0;  // over the allowance; 0 while none was broken
  std::string worstWhere;

  static Millis allowanceMs(int maxTimeCs) { return Millis(std::max(maxTimeCs, 0) * 10 * 105 / 100 + 20); }

  // True if this move broke the allowance.
  bool record(Millis usedMs, int maxTimeCs, const std::string& where) {
    ++moves;
    if (maxTimeCs > 0) {
      const double ratio = double(usedMs) / (maxTimeCs * 10.0);
      if (ratio > worstRatio) {
        worstRatio = ratio;
        worstWhere = where;
      }
    }
    const Millis excess = usedMs - allowanceMs(maxTimeCs);
    if (excess <= 0) return false;
    ++overruns;
    worstExcessMs = std::max(worstExcessMs, excess);
    return true;
  }

  void add(const TimeUse& other) {
    moves += other.moves;
    overruns += other.overruns;
    if (other.worstRatio > worstRatio) {
      worstRatio = other.worstRatio;
      worstWhere = other.worstWhere;
    }
    worstExcessMs = std::max(worstExcessMs, other.worstExcessMs);
  }
};

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

// ---------------------------------------------------------------------------------------------
// One game.

enum class Ending { Mate, Stalemate, Repetition, FiftyMoves, Material, Length, Illegal, Time, Crash };

const char* endingName(Ending ending) {
  switch (ending) {
    case Ending::Mate: return "checkmate";
    case Ending::Stalemate: return "stalemate";
    case Ending::Repetition: return "threefold repetition";
    case Ending::FiftyMoves: return "fifty-move rule";
    case Ending::Material: return "insufficient material";
    case Ending::Length: return "game too long";
    case Ending::Illegal: return "illegal move";
    case Ending::Time: return "loss on time";
    case Ending::Crash: return "crash";
  }
  return "?";
}

struct GameResult {
  Color winner = NoColor;
  Ending ending = Ending::Length;
  std::string detail;
  std::vector<std::string> moves;
  TimeUse time[2];  // by engine index
  TimeUse searchTime[2];
  bool noteworthy = false;  // an overrun or a fault: its transcript is kept
};

// The side to move has no move, or the board's draw test ends the game.
bool gameOver(Board_0x88& board, int plies, GameResult& result) {
  MoveList moves;
  generateLegalMoves(board, moves);
  if (moves.count == 0) {
    CheckInfo check;
    const bool inCheck = board.sideToMove == White ? findCheck<White>(board, check) : findCheck<Black>(board, check);
    result.ending = inCheck ? Ending::Mate : Ending::Stalemate;
    result.winner = inCheck ? Color(board.sideToMove ^ 1) : NoColor;
    return true;
  }
  DrawCode code = NoDrawCode;
  if (drawStatus(board, code) && code != NoDrawCode) {
    result.ending = code == FiftyMoveDraw ? Ending::FiftyMoves
                    : code == RepetitionDraw ? Ending::Repetition
                                             : Ending::Material;
    return true;
  }
  if (plies >= MaxGamePlies) {
    result.ending = Ending::Length;
    return true;
  }
  return false;
}

std::string centiseconds(Millis ms) { return std::to_string(std::max<Millis>(ms, 0) / 10); }

// Torvy's comment lines come as info strings over UCI, and its move as "bestmove": read as
// their xboard forms, so that both protocols are checked alike. The ponder move is dropped.
std::string uciLineAsXboard(const std::string& line) {
  const std::string info = "info string ";
  const std::string best = "bestmove ";
  if (line.compare(0, info.size(), info) == 0) return "# " + line.substr(info.size());
  if (line.compare(0, best.size(), best) == 0) return "move " + line.substr(best.size(), line.find(' ', best.size()) - best.size());
  return line;
}

// "level" takes whole seconds: the session time and increment rounded down.
std::string levelCommand(const Options& options) {
  const Millis seconds = std::max<Millis>(options.baseMs / 1000, 1);
  char text[64];
  std::snprintf(text, sizeof text, "level 0 %lld:%02lld %lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60), static_cast<long long>(options.incrementMs / 1000));
  return text;
}

class Game {
 public:
  Game(const Options& options, EngineProcess* engines[2], int whiteEngine, const Opening& opening, int number)
      : options_(options), whiteEngine_(whiteEngine), opening_(opening), number_(number), board_(std::make_unique<Board_0x88>()) {
    engines_[0] = engines[0];
    engines_[1] = engines[1];
  }

  GameResult play();

 private:
  EngineProcess& engineFor(Color side) { return *engines_[side == White ? whiteEngine_ : 1 - whiteEngine_]; }
  int engineIndex(Color side) const { return side == White ? whiteEngine_ : 1 - whiteEngine_; }
  // A fresh game on the engine in force mode with the opening played; false if it won't answer.
  bool prepare(EngineProcess& engine);
  // Asks the side to move for its move and checks it; false when the game ended through a fault.
  bool playOneMove(GameResult& result, bool started[2], std::string& lastMove);
  void fault(GameResult& result, Color side, Ending ending, const std::string& detail);

  const Options& options_;
  EngineProcess* engines_[2];
  int whiteEngine_;
  const Opening& opening_;
  int number_;
  std::unique_ptr<Board_0x88> board_;
  UndoRecord undo_[HistorySize];
  int plies_ = 0;
  Millis clockMs_[2] = {};
  int pingCount_ = 0;
};

void Game::fault(GameResult& result, Color side, Ending ending, const std::string& detail) {
  result.winner = Color(side ^ 1);
  result.ending = ending;
  result.detail = detail;
  result.noteworthy = true;
}

bool Game::prepare(EngineProcess& engine) {
  const bool fresh = !engine.alive();
  if (fresh && !engine.start()) return false;
  const auto limit = SteadyClock::now() + std::chrono::milliseconds(HandshakeLimitMs);
  if (engine.speaksUci()) {
    // The game is sent whole with every move, the opening included.
    if (fresh) engine.send("uci");
    if (fresh && !engine.awaitLine("uciok", limit)) return false;
    engine.send("ucinewgame");
    engine.send("isready");
    return engine.awaitLine("readyok", limit);
  }
  engine.send("xboard");
  engine.send("new");
  engine.send("force");
  engine.send("post");
  engine.send(levelCommand(options_));
  for (const std::string& move : opening_.moves) engine.send("usermove " + move);
  const std::string ping = std::to_string(++pingCount_);
  engine.send("ping " + ping);
  return engine.awaitLine("pong " + ping, SteadyClock::now() + std::chrono::milliseconds(HandshakeLimitMs));
}

bool Game::playOneMove(GameResult& result, bool started[2], std::string& lastMove) {
  const Color side = board_->sideToMove;
  const int index = engineIndex(side);
  EngineProcess& engine = engineFor(side);
  if (engine.speaksUci()) {
    std::string position = "position startpos";
    if (!result.moves.empty()) position += " moves";
    for (const std::string& move : result.moves) position += " " + move;
    engine.send(position);
    const std::string increment = std::to_string(options_.incrementMs);
    engine.send("go wtime " + std::to_string(std::max<Millis>(clockMs_[White], 0)) + " btime " +
                std::to_string(std::max<Millis>(clockMs_[Black], 0)) + " winc " + increment + " binc " + increment);
  } else {
    engine.send("time " + centiseconds(clockMs_[side]));
    engine.send("otim " + centiseconds(clockMs_[side ^ 1]));
    if (!lastMove.empty()) engine.send("usermove " + lastMove);
    if (!started[side]) engine.send("go");
    started[side] = true;
  }

  const auto asked = SteadyClock::now();
  const auto deadline = asked + std::chrono::milliseconds(std::max<Millis>(clockMs_[side], 0) + options_.graceMs);
  int maxTimeCs = 0;
  int searchCs = -1;
  std::string line;
  std::string moveText;
  while (moveText.empty()) {
    switch (engine.readLine(line, deadline)) {
      case EngineProcess::Read::Closed:
        fault(result, side, Ending::Crash, std::string("engine ") + engine.label() + " " + engine.endDescription());
        return false;
      case EngineProcess::Read::Timeout:
        engine.kill();
        fault(result, side, Ending::Crash, std::string("engine ") + engine.label() + " gave no move, killed");
        return false;
      case EngineProcess::Read::Line: break;
    }
    if (engine.speaksUci()) line = uciLineAsXboard(line);
    for (const char* announcement : {"# set maxTime = ", "# out of book: corrected maxTime = "}) {
      const std::string prefix = announcement;
      if (line.compare(0, prefix.size(), prefix) == 0) maxTimeCs = std::atoi(line.c_str() + prefix.size());
    }
    const std::size_t searchTimeAt = line.find(", time = ");
    if (line.compare(0, 16, "# total nodes = ") == 0 && searchTimeAt != std::string::npos)
      searchCs = std::atoi(line.c_str() + searchTimeAt + 9);
    if (line.compare(0, 6, "Error ") == 0) {
      fault(result, side, Ending::Crash, std::string("engine ") + engine.label() + " refused: " + line);
      return false;
    }
    if (line.compare(0, 5, "move ") == 0) moveText = line.substr(5);
  }
  const Millis usedMs = millisBetween(asked, SteadyClock::now());
  const std::string where = "game " + std::to_string(number_) + " ply " + std::to_string(plies_ + 1) + " (" +
                            std::to_string(usedMs) + " ms of maxTime " + std::to_string(maxTimeCs) + " cs)";
  if (result.time[index].record(usedMs, maxTimeCs, where)) result.noteworthy = true;
  if (searchCs >= 0 && result.searchTime[index].record(Millis(searchCs) * 10, maxTimeCs, where))
    result.noteworthy = true;

  clockMs_[side] -= usedMs;
  if (clockMs_[side] < 0) {
    fault(result, side, Ending::Time, std::string("engine ") + engine.label() + " over by " +
                                          std::to_string(-clockMs_[side]) + " ms");
    return false;
  }
  Move move = NoMove;
  if ((moveText.size() != 4 && moveText.size() != 5) || !parseCoordinateMove(*board_, moveText.c_str(), move)) {
    fault(result, side, Ending::Illegal, std::string("engine ") + engine.label() + " played " + moveText);
    return false;
  }
  clockMs_[side] += options_.incrementMs;
  makeOnBoard(*board_, move, undo_[plies_++]);
  lastMove = moveToText(move);
  result.moves.push_back(lastMove);
  return true;
}

GameResult Game::play() {
  GameResult result;
  const auto origin = SteadyClock::now();
  for (EngineProcess* engine : engines_) engine->beginTranscript(origin);
  for (Color side : {White, Black}) {
    if (!prepare(engineFor(side))) {
      engineFor(side).kill();
      fault(result, side, Ending::Crash, std::string("engine ") + engineFor(side).label() + " did not start a game");
      return result;
    }
  }
  setStartPosition(*board_);
  for (const std::string& text : opening_.moves) {
    Move move = NoMove;
    parseCoordinateMove(*board_, text.c_str(), move);
    makeOnBoard(*board_, move, undo_[plies_++]);
    result.moves.push_back(text);
    // The draw test counts repetitions from what it found at earlier positions, so it sees them all.
    DrawCode code = NoDrawCode;
    drawStatus(*board_, code);
  }
  clockMs_[White] = clockMs_[Black] = options_.baseMs;
  bool started[2] = {false, false};
  std::string lastMove;
  while (!gameOver(*board_, plies_, result))
    if (!playOneMove(result, started, lastMove)) break;
  return result;
}

// ---------------------------------------------------------------------------------------------
// The match: game slots in parallel, each with its own pair of engines.

// Wall-clock figures mean little on a machine that is busy with other work, so the report says how busy it was.
std::string loadAverage() {
  std::ifstream file("/proc/loadavg");
  std::string one, five;
  file >> one >> five;
  return one + " " + five;
}

class Match {
 public:
  Match(const Options& options, std::vector<Opening> openings) : options_(options), openings_(std::move(openings)) {
    totalGames_ = options.games > 0 ? options.games : int(openings_.size()) * 2;
  }

  void run();
  // Prints the per-engine lines and the summary; true when nothing went wrong.
  bool report(std::ostream& out) const;

 private:
  void slot();
  void finish(int number, int whiteEngine, const Opening& opening, const GameResult& result, EngineProcess* engines[2]);
  void keepTranscript(int number, const GameResult& result, EngineProcess* engines[2]) const;

  const Options& options_;
  std::vector<Opening> openings_;
  int totalGames_ = 0;
  std::atomic<int> nextGame_{0};
  mutable std::mutex mutex_;
  EngineTally tally_[2];
  int finished_ = 0;
  int overLength_ = 0;
  std::string loadAtStart_ = loadAverage();
};

void Match::run() {
  std::vector<std::thread> slots;
  for (int i = 0; i < std::max(options_.concurrency, 1); ++i) slots.emplace_back([this] { slot(); });
  for (std::thread& t : slots) t.join();
}

void Match::slot() {
  EngineProcess first(options_, 0);
  EngineProcess second(options_, 1);
  EngineProcess* engines[2] = {&first, &second};
  for (int number = nextGame_++; number < totalGames_; number = nextGame_++) {
    // Each opening twice in a row, engine A White in the first game and Black in the second.
    const Opening& opening = openings_[std::size_t(number / 2) % openings_.size()];
    const int whiteEngine = number % 2;
    Game game(options_, engines, whiteEngine, opening, number + 1);
    const GameResult result = game.play();
    finish(number + 1, whiteEngine, opening, result, engines);
  }
}

void Match::finish(int number, int whiteEngine, const Opening& opening, const GameResult& result,
                   EngineProcess* engines[2]) {
  std::lock_guard lock(mutex_);
  for (int index = 0; index < 2; ++index) {
    EngineTally& t = tally_[index];
    const Color colour = index == whiteEngine ? White : Black;
    t.time.add(result.time[index]);
    t.searchTime.add(result.searchTime[index]);
    if (result.winner == NoColor) {
      ++t.draws;
      continue;
    }
    if (result.winner == colour) {
      ++t.wins;
      continue;
    }
    ++t.losses;
    if (result.ending == Ending::Illegal) ++t.illegal;
    if (result.ending == Ending::Time) ++t.timeouts;
    if (result.ending == Ending::Crash) ++t.crashes;
  }
  if (result.ending == Ending::Length) ++overLength_;
  ++finished_;
  const char* score = result.winner == White ? "1-0" : result.winner == Black ? "0-1" : "1/2-1/2";
  std::cout << "game " << number << "/" << totalGames_ << " [" << opening.name << "] " << char('A' + whiteEngine)
            << "-" << char('B' - whiteEngine) << ": " << score << " " << endingName(result.ending)
            << (result.detail.empty() ? "" : " (" + result.detail + ")") << ", " << result.moves.size() << " plies"
            << std::endl;
  if (result.noteworthy) keepTranscript(number, result, engines);
}

void Match::keepTranscript(int number, const GameResult& result, EngineProcess* engines[2]) const {
  if (options_.transcriptDir.empty()) return;
  const std::string path = options_.transcriptDir + "/game-" + std::to_string(number) + ".txt";
  std::ofstream file(path);
  file << "result: " << endingName(result.ending) << " " << result.detail << "\nmoves:";
  for (const std::string& move : result.moves) file << ' ' << move;
  file << '\n';
  for (int index = 0; index < 2; ++index) {
    for (const std::string& line : engines[index]->transcript()) file << line << '\n';
  }
  std::cout << "  transcript: " << path << std::endl;
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

bool Match::report(std::ostream& out) const {
  std::lock_guard lock(mutex_);
  int illegal = 0, timeouts = 0, crashes = 0;
  TimeUse time, searchTime;
  for (int index = 0; index < 2; ++index) {
    const EngineTally& t = tally_[index];
    out << "engine " << char('A' + index) << " (" << options_.engines[index] << "): wins=" << t.wins
        << " draws=" << t.draws << " losses=" << t.losses << " illegal=" << t.illegal << " timeouts=" << t.timeouts
        << " crashes=" << t.crashes << " moves=" << t.time.moves << "\n  move time against maxTime: "
        << describe(t.time) << "\n  search time against maxTime: " << describe(t.searchTime) << std::endl;
    illegal += t.illegal;
    timeouts += t.timeouts;
    crashes += t.crashes;
    time.add(t.time);
    searchTime.add(t.searchTime);
  }
  out << "load average (1 and 5 minutes): at start " << loadAtStart_ << ", at end " << loadAverage() << std::endl;
  out << "games=" << finished_ << " wins=" << tally_[0].wins << " draws=" << tally_[0].draws
      << " losses=" << tally_[0].losses << " illegal=" << illegal << " timeouts=" << timeouts
      << " crashes=" << crashes << " worstTimeOverrun=" << formatRatio(time.worstRatio)
      << " overruns=" << time.overruns << " searchOverruns=" << searchTime.overruns << " tooLong=" << overLength_
      << std::endl;
  return illegal == 0 && timeouts == 0 && crashes == 0 && time.overruns == 0;
}

// ---------------------------------------------------------------------------------------------

// The referee is the clock. Were it to wait for a processor behind the searches it times, its
// late reading of a move would be charged to the engine; on two cores with two games at a time
// that wait reached 60 ms. At real-time priority it reads each move as it arrives; it needs
// microseconds for a move. Its threads inherit the priority, the engines it starts drop it.
void takeClockPriority() {
  sched_param param{};
  param.sched_priority = 1;
  if (sched_setscheduler(0, SCHED_FIFO, &param) != 0)
    std::cerr << "referee: no real-time priority (" << std::strerror(errno)
              << "), so move times include the referee's own waits for a processor" << std::endl;
}

// The engine built beside this tool: build/tools/referee next to build/torvy.
std::string defaultEngine() {
  std::error_code error;
  const auto self = std::filesystem::canonical("/proc/self/exe", error);
  return error ? "torvy" : (self.parent_path().parent_path() / "torvy").string();
}

Millis secondsToMillis(const char* text) { return Millis(std::atof(text) * 1000.0 + 0.5); }

bool parseOptions(int argc, char** argv, Options& options) {
  options.engines[0] = defaultEngine();
  bool secondGiven = false;
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    if (i + 1 >= argc) {
      std::cerr << "referee: " << name << " needs a value" << std::endl;
      return false;
    }
    const char* value = argv[++i];
    if (name == "--engine") options.engines[0] = value;
    else if (name == "--engine2") options.engines[1] = value, secondGiven = true;
    else if (name == "--cores") options.engineArgs = {"-cores", value};
    else if (name == "--games") options.games = std::atoi(value);
    else if (name == "--concurrency") options.concurrency = std::atoi(value);
    else if (name == "--time") options.baseMs = secondsToMillis(value);
    else if (name == "--inc") options.incrementMs = secondsToMillis(value);
    else if (name == "--grace") options.graceMs = secondsToMillis(value);
    else if (name == "--openings") options.openingsPath = value;
    else if (name == "--dir") options.workDir = value;
    else if (name == "--transcripts") options.transcriptDir = value;
    else if (name == "--protocol" || name == "--protocol2") {
      const std::string protocol = value;
      if (protocol != "uci" && protocol != "xboard") {
        std::cerr << "referee: " << name << " is xboard or uci" << std::endl;
        return false;
      }
      options.uci[name == "--protocol" ? 0 : 1] = protocol == "uci";
    }
    else {
      std::cerr << "referee: unknown option " << name << std::endl;
      return false;
    }
  }
  if (!secondGiven) options.engines[1] = options.engines[0];
  return true;
}

}  // namespace
}  // namespace torvy

int main(int argc, char** argv) {
  using namespace torvy;
  Options options;
  if (!parseOptions(argc, argv, options)) return 2;
  std::vector<Opening> openings;
  if (!loadOpenings(options.openingsPath, openings)) return 2;
  if (!options.transcriptDir.empty()) std::filesystem::create_directories(options.transcriptDir);
  signal(SIGPIPE, SIG_IGN);  // an engine that dies while we write to it is reported, not fatal
  takeClockPriority();

  Match match(options, std::move(openings));
  match.run();
  return match.report(std::cout) ? 0 : 1;
}
