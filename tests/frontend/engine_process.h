// Runs the built engine as a child process on a given standard input and collects its output lines.
#pragma once

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "frontend/line_reader.h"
#include "scratch_folder.h"
#include "tools/engine_process.h"

namespace torvy::testing {

struct EngineOutput {
  std::vector<std::string> lines;  // a last line without a newline (a prompt) is kept too
  int exitCode = -1;
  bool timedOut = false;
};

// A piece of input and what to wait for after writing it, so that the engine can act on it
// (start or finish a search) before the next piece arrives: a line of output that begins with
// awaitLine, if one is named, then a pause. Waiting for output keeps the script in step with
// the engine however slowly it runs (under the sanitizers, or on a busy machine).
struct ScriptStep {
  std::string text;
  int pauseMs = 0;
  std::string awaitLine = {};
};

namespace detail {

// An empty folder of our own, so that no configuration or book file nearby changes the engine;
// one for the whole test program, removed when it ends.
inline std::string quietDirectory() {
  static const ScratchFolder folder;
  return folder.path();
}

// True once a whole line that begins with prefix starts at or after offset.
inline bool hasLine(const std::string& text, const std::string& prefix, std::size_t offset) {
  for (std::size_t at = text.find(prefix, offset); at != std::string::npos; at = text.find(prefix, at + 1))
    if ((at == 0 || text[at - 1] == '\n') && text.find('\n', at) != std::string::npos) return true;
  return false;
}

}  // namespace detail

// The input comes through a pipe that is closed after the last step, so the engine meets the
// end of input there; a child still running after the time limit is killed rather than left to
// hang the test. The engine runs in the given folder, or in an empty one of its own.
inline EngineOutput runEngineScripted(const std::vector<ScriptStep>& steps, const std::vector<std::string>& args = {},
                                      std::chrono::seconds limit = std::chrono::seconds(120),
                                      const std::string& directory = {}) {
  EngineOutput result;
  signal(SIGPIPE, SIG_IGN);  // an engine that ends early must not take the test with it
  // TORVY_ENGINE runs the same tests on another build of the engine, such as an installed one.
  const char* const engine = std::getenv("TORVY_ENGINE") ? std::getenv("TORVY_ENGINE") : TORVY_BINARY;
  EngineProcess process;
  if (!process.start(engine, args, directory.empty() ? detail::quietDirectory() : directory, false)) return result;

  const auto deadline = SteadyClock::now() + limit;
  std::string text;
  // Collects output until done() holds, the time is up or the output ends.
  auto readUntil = [&](SteadyClock::time_point until, auto done) {
    while (!done()) {
      const EngineProcess::Read read = process.readSome(text, std::min(until, deadline));
      if (read == EngineProcess::Read::Closed) return;
      if (read == EngineProcess::Read::Timeout) {
        result.timedOut = SteadyClock::now() >= deadline;
        return;
      }
    }
  };
  for (const ScriptStep& step : steps) {
    const std::size_t before = text.size();
    if (!process.outputOpen() || result.timedOut || !process.write(step.text)) break;
    if (!step.awaitLine.empty()) readUntil(deadline, [&] { return detail::hasLine(text, step.awaitLine, before); });
    readUntil(SteadyClock::now() + std::chrono::milliseconds(step.pauseMs), [] { return false; });
  }
  process.closeInput();
  if (!result.timedOut) readUntil(deadline, [] { return false; });
  if (result.timedOut) process.kill();
  // An engine whose output has ended is given the rest of the time to exit.
  process.wait(std::max<Millis>(millisBetween(SteadyClock::now(), deadline), 0));
  result.exitCode = process.exitCode().value_or(-1);
  result.lines = split(text, '\n');
  if (result.lines.back().empty()) result.lines.pop_back();  // what the last newline ended
  return result;
}

inline EngineOutput runEngine(const std::string& input, const std::vector<std::string>& args = {},
                              std::chrono::seconds limit = std::chrono::seconds(120),
                              const std::string& directory = {}) {
  return runEngineScripted({{input, 0}}, args, limit, directory);
}

}  // namespace torvy::testing
