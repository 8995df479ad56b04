// Runs the built engine as a child process on a given standard input and collects its output lines.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace torvy::testing {

struct EngineOutput {
  std::vector<std::string> lines;  // a last line without a newline (a prompt) is kept too
  int exitCode = -1;
  bool timedOut = false;
};

namespace detail {

// An empty folder of our own, so that no configuration or book file nearby changes the engine.
inline const std::string& quietDirectory() {
  static const std::string path = [] {
    char name[] = "/tmp/torvy-test-XXXXXX";
    return std::string(mkdtemp(name) ? name : "/");
  }();
  return path;
}

inline std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

}  // namespace detail

// The input comes from a file, so the engine meets the end of input after the last line; a child
// still running after the time limit is killed rather than left to hang the test.
inline EngineOutput runEngine(const std::string& input, const std::vector<std::string>& args = {},
                              std::chrono::seconds limit = std::chrono::seconds(120)) {
  EngineOutput result;
  std::FILE* inputFile = std::tmpfile();
  if (inputFile == nullptr) return result;
  std::fwrite(input.data(), 1, input.size(), inputFile);
  std::fflush(inputFile);
  std::rewind(inputFile);

  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) {
    std::fclose(inputFile);
    return result;
  }
  const pid_t child = fork();
  if (child < 0) {
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    std::fclose(inputFile);
    return result;
  }
  if (child == 0) {
    dup2(fileno(inputFile), STDIN_FILENO);
    dup2(pipeEnds[1], STDOUT_FILENO);
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    if (chdir(detail::quietDirectory().c_str()) != 0) _exit(126);
    std::vector<char*> argv{const_cast<char*>(TORVY_BINARY)};
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    execv(TORVY_BINARY, argv.data());
    _exit(127);
  }
  close(pipeEnds[1]);
  std::fclose(inputFile);

  std::string output;
  const auto deadline = std::chrono::steady_clock::now() + limit;
  char chunk[4096];
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd watched{pipeEnds[0], POLLIN, 0};
    if (left.count() <= 0 || poll(&watched, 1, int(left.count())) == 0) {
      result.timedOut = true;
      kill(child, SIGKILL);
      break;
    }
    const ssize_t got = read(pipeEnds[0], chunk, sizeof chunk);
    if (got <= 0) break;
    output.append(chunk, std::size_t(got));
  }
  close(pipeEnds[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  result.lines = detail::splitLines(output);
  return result;
}

}  // namespace torvy::testing
