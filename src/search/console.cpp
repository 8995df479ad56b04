#include "search/console.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <streambuf>

namespace torvy {

namespace {

// One lock for all consoles: in the engine they all end in standard output.
std::mutex outputMutex;

// Longer than any line the engine prints, so a line is only split if it is longer still.
constexpr std::size_t LineBufferCapacity = 4096;

class LineBuffer final : public std::streambuf {
 public:
  LineBuffer() { setp(text.data(), text.data() + text.size()); }
  ~LineBuffer() override { sync(); }

  Console* console = nullptr;

 protected:
  int_type overflow(int_type c) override {
    passCompleteLines();
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    *pptr() = traits_type::to_char_type(c);
    pbump(1);
    return c;
  }

  int sync() override {
    if (console != nullptr && pptr() > pbase()) console->write({pbase(), std::size_t(pptr() - pbase())});
    setp(text.data(), text.data() + text.size());
    return 0;
  }

 private:
  // A full buffer passes on up to its last line end; a single line longer than the whole
  // buffer passes on in pieces.
  void passCompleteLines() {
    const std::string_view held{pbase(), std::size_t(pptr() - pbase())};
    const std::size_t end = held.rfind('\n');
    if (end == std::string_view::npos) {
      sync();
      return;
    }
    if (console != nullptr) console->write(held.substr(0, end + 1));
    const std::string_view rest = held.substr(end + 1);
    std::copy(rest.begin(), rest.end(), text.begin());
    setp(text.data(), text.data() + text.size());
    pbump(int(rest.size()));
  }

  std::array<char, LineBufferCapacity> text;
};

struct ThreadStream {
  LineBuffer buffer;
  std::ostream stream{&buffer};
};

// Lives as long as its thread: the search threads end before the console they write to.
thread_local ThreadStream threadStream;

}  // namespace

Console::Console(std::ostream& sink) : sink(sink) {}

Console::~Console() {
  if (threadStream.buffer.console != this) return;
  threadStream.stream.flush();
  threadStream.buffer.console = nullptr;
}

std::ostream& Console::stream() {
  if (threadStream.buffer.console != this) {
    threadStream.stream.flush();
    threadStream.buffer.console = this;
  }
  return threadStream.stream;
}

void Console::write(std::string_view text) {
  const std::lock_guard lock(outputMutex);
  if (commentPrefix.empty()) {
    sink.write(text.data(), std::streamsize(text.size()));
  } else {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size() - 1);
      writeLine(text.substr(0, end + 1));
      text.remove_prefix(end + 1);
    }
  }
  sink.flush();
}

void Console::writeLine(std::string_view line) {
  if (!line.starts_with('#')) {
    sink.write(line.data(), std::streamsize(line.size()));
    return;
  }
  line.remove_prefix(1);
  if (line.starts_with(' ')) line.remove_prefix(1);
  if (line.empty() || line == "\n") return;
  sink << commentPrefix;
  sink.write(line.data(), std::streamsize(line.size()));
}

void Console::replaceCommentMark(std::string_view prefix) {
  const std::lock_guard lock(outputMutex);
  commentPrefix = prefix;
}

void printLine(std::string_view line) {
  const std::lock_guard lock(outputMutex);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

}  // namespace torvy
