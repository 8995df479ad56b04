#include "engine_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

namespace torvy {

bool EngineProcess::start(const std::string& program, const std::vector<std::string>& args,
                          const std::string& directory, bool errorsToOutput) {
  kill();  // one program at a time
  int toChild[2];
  int fromChild[2];
  // Close-on-exec, so that programs started by other threads never hold our pipe ends open.
  if (pipe2(toChild, O_CLOEXEC) != 0) return false;
  if (pipe2(fromChild, O_CLOEXEC) != 0) {
    close(toChild[0]);
    close(toChild[1]);
    return false;
  }
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) {
    for (int fd : {toChild[0], toChild[1], fromChild[0], fromChild[1]}) close(fd);
    return false;
  }
  if (child == 0) {
    dup2(toChild[0], STDIN_FILENO);
    dup2(fromChild[1], STDOUT_FILENO);
    if (errorsToOutput) dup2(fromChild[1], STDERR_FILENO);
    if (chdir(directory.c_str()) != 0) _exit(126);
    const sched_param normal{};
    sched_setscheduler(0, SCHED_OTHER, &normal);  // a real-time parent's priority is not the program's
    execv(program.c_str(), argv.data());
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

bool EngineProcess::write(std::string_view text) {
  while (!text.empty()) {
    if (input_ < 0) return false;
    const ssize_t n = ::write(input_, text.data(), text.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    text.remove_prefix(std::size_t(n));
  }
  return true;
}

void EngineProcess::closeInput() {
  if (input_ >= 0) close(input_);
  input_ = -1;
}

EngineProcess::Read EngineProcess::fill(SteadyClock::time_point deadline) {
  for (;;) {
    if (output_ < 0) return Read::Closed;
    const Millis left = millisBetween(SteadyClock::now(), deadline);
    if (left <= 0) return Read::Timeout;
    pollfd watched{output_, POLLIN, 0};
    if (poll(&watched, 1, int(std::min<Millis>(left, 1000))) <= 0) continue;
    char chunk[4096];
    const ssize_t n = read(output_, chunk, sizeof chunk);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      close(output_);
      output_ = -1;
      continue;
    }
    pending_.append(chunk, std::size_t(n));
    return Read::Data;
  }
}

EngineProcess::Read EngineProcess::readSome(std::string& text, SteadyClock::time_point deadline) {
  const Read read = pending_.empty() ? fill(deadline) : Read::Data;
  text += pending_;
  pending_.clear();
  return read;
}

EngineProcess::Read EngineProcess::readLine(std::string& line, SteadyClock::time_point deadline) {
  for (;;) {
    const std::size_t newline = pending_.find('\n');
    if (newline != std::string::npos) {
      line = pending_.substr(0, newline);
      pending_.erase(0, newline + 1);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      return Read::Data;
    }
    if (const Read read = fill(deadline); read != Read::Data) return read;
  }
}

void EngineProcess::closePipes() {
  closeInput();
  if (output_ >= 0) close(output_);
  output_ = -1;
}

void EngineProcess::wait(Millis patienceMs) {
  closePipes();
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

void EngineProcess::kill() {
  if (!reaped_) ::kill(pid_, SIGKILL);
  wait(0);
}

std::optional<int> EngineProcess::exitCode() const {
  if (reaped_ && pid_ > 0 && WIFEXITED(status_)) return WEXITSTATUS(status_);
  return std::nullopt;
}

std::string EngineProcess::endDescription() const {
  if (!reaped_) return "still running";
  if (WIFSIGNALED(status_)) return "killed by signal " + std::to_string(WTERMSIG(status_));
  if (WIFEXITED(status_)) return "exited with code " + std::to_string(WEXITSTATUS(status_));
  return "ended";
}

}  // namespace torvy
