// Self-play referee: plays two engine processes against each other over the xboard protocol or UCI,
// checks every move on our own board, keeps the real clocks and ends each game itself, since the
// engine only offers draws and never claims them.
//
//   referee [--engine PATH] [--engine2 PATH] [--cores N] [--games N] [--concurrency N]
//           [--time SECONDS] [--inc SECONDS] [--openings FILE] [--dir DIR] [--transcripts DIR]
//           [--grace SECONDS] [--protocol xboard|uci] [--protocol2 xboard|uci]
#include <sched.h>
#include <signal.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "match.h"

namespace torvy {
namespace {

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
    if (name == "--engine")
      options.engines[0] = value;
    else if (name == "--engine2")
      options.engines[1] = value, secondGiven = true;
    else if (name == "--cores")
      options.engineArgs = {"-cores", value};
    else if (name == "--games")
      options.games = std::atoi(value);
    else if (name == "--concurrency")
      options.concurrency = std::atoi(value);
    else if (name == "--time")
      options.baseMs = secondsToMillis(value);
    else if (name == "--inc")
      options.incrementMs = secondsToMillis(value);
    else if (name == "--grace")
      options.graceMs = secondsToMillis(value);
    else if (name == "--openings")
      options.openingsPath = value;
    else if (name == "--dir")
      options.workDir = value;
    else if (name == "--transcripts")
      options.transcriptDir = value;
    else if (name == "--protocol" || name == "--protocol2") {
      const std::string protocol = value;
      if (protocol != "uci" && protocol != "xboard") {
        std::cerr << "referee: " << name << " is xboard or uci" << std::endl;
        return false;
      }
      options.uci[name == "--protocol" ? 0 : 1] = protocol == "uci";
    } else {
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

  Match match(options, std::move(openings), std::cout);
  match.run();
  return match.report(std::cout) ? 0 : 1;
}
