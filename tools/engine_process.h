// A program run as a child process and spoken to through pipes: lines written to its standard
// input, its output read with a deadline, and its end collected. The referee runs its engines
// with it, the protocol tests the engine under test.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvy {

using SteadyClock = std::chrono::steady_clock;
using Millis = std::int64_t;

inline Millis millisBetween(SteadyClock::time_point from, SteadyClock::time_point to) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(to - from).count();
}

class EngineProcess {
 public:
  enum class Read { Data, Timeout, Closed };

  EngineProcess() = default;
  ~EngineProcess() { kill(); }
  EngineProcess(const EngineProcess&) = delete;
  EngineProcess& operator=(const EngineProcess&) = delete;

  // Runs program with these arguments in directory; its standard error goes to our own, or
  // into its output when errorsToOutput.
  bool start(const std::string& program, const std::vector<std::string>& args, const std::string& directory,
             bool errorsToOutput);
  // True from the start until its output ends.
  bool outputOpen() const { return output_ >= 0; }

  // False once the program no longer reads.
  bool write(std::string_view text);
  bool writeLine(std::string_view line) { return write(std::string(line) + '\n'); }
  // The program meets the end of its input.
  void closeInput();

  // Appends whatever output is ready, waiting for some until the deadline.
  Read readSome(std::string& text, SteadyClock::time_point deadline);
  // One whole line, without its line end.
  Read readLine(std::string& line, SteadyClock::time_point deadline);

  // Closes the pipes and collects the exit status, killing the program if it has not ended
  // within the patience given.
  void wait(Millis patienceMs);
  void kill();
  // The exit code of a program that exited rather than being killed.
  std::optional<int> exitCode() const;
  // How the program ended, for the report of a crash.
  std::string endDescription() const;

 private:
  void closePipes();
  // Waits until the deadline for output and adds it to what is pending.
  Read fill(SteadyClock::time_point deadline);

  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  int status_ = 0;
  bool reaped_ = true;
  std::string pending_;  // read but not yet handed out as a line
};

}  // namespace torvy
