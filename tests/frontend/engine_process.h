// Runs the built engine as a child process on a given standard input and collects its output lines.
#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "scratch_folder.h"

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

inline std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
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
  int input[2];
  int output[2];
  if (pipe(input) != 0 || pipe(output) != 0) return result;
  signal(SIGPIPE, SIG_IGN);  // an engine that ends early must not take the test with it
  // Chosen before the fork: a folder made in the child would be neither shared nor removed.
  const std::string folder = directory.empty() ? detail::quietDirectory() : directory;
  // TORVY_ENGINE runs the same tests on another build of the engine, such as an installed one.
  const char* const engine = std::getenv("TORVY_ENGINE") ? std::getenv("TORVY_ENGINE") : TORVY_BINARY;
  const pid_t child = fork();
  if (child < 0) return result;
  if (child == 0) {
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    for (int fd : {input[0], input[1], output[0], output[1]}) close(fd);
    if (chdir(folder.c_str()) != 0) _exit(126);
    std::vector<char*> argv{const_cast<char*>(engine)};
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    execv(engine, argv.data());
    _exit(127);
  }
  close(input[0]);
  close(output[1]);

  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + limit;
  std::string text;
  bool ended = false;
  // Collects output until done() holds, the time is up or the output ends.
  auto readUntil = [&](Clock::time_point until, auto done) {
    while (!ended && !done()) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(std::min(until, deadline) - Clock::now());
      if (left.count() <= 0) {
        result.timedOut = Clock::now() >= deadline;
        return;
      }
      pollfd watched{output[0], POLLIN, 0};
      if (poll(&watched, 1, int(left.count())) <= 0) continue;
      char chunk[4096];
      const ssize_t got = read(output[0], chunk, sizeof chunk);
      if (got <= 0) ended = true;
      else text.append(chunk, std::size_t(got));
    }
  };
  for (const ScriptStep& step : steps) {
    const std::size_t before = text.size();
    if (ended || result.timedOut || write(input[1], step.text.data(), step.text.size()) < 0) break;
    if (!step.awaitLine.empty()) readUntil(deadline, [&] { return detail::hasLine(text, step.awaitLine, before); });
    readUntil(Clock::now() + std::chrono::milliseconds(step.pauseMs), [] { return false; });
  }
  close(input[1]);
  if (!result.timedOut) readUntil(deadline, [] { return false; });
  if (result.timedOut) kill(child, SIGKILL);
  close(output[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  result.lines = detail::splitLines(text);
  return result;
}

inline EngineOutput runEngine(const std::string& input, const std::vector<std::string>& args = {},
                              std::chrono::seconds limit = std::chrono::seconds(120),
                              const std::string& directory = {}) {
  return runEngineScripted({{input, 0}}, args, limit, directory);
}

}  // namespace torvy::testing
