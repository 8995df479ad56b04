// Standard output shared by the command loop and the search threads. Each thread writes into
// a stream of its own, and whole lines pass on to the sink one block at a time, so lines from
// two threads never tear or merge.
#pragma once

#include <mutex>
#include <ostream>
#include <string_view>

namespace torvy {

class Console {
 public:
  explicit Console(std::ostream& sink);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // The calling thread's stream onto this console. What it holds passes on at a flush
  // (std::endl) and whenever its buffer fills, up to the last complete line.
  std::ostream& stream();

  // Writes text that is already whole lines, under the same lock as every console.
  void write(std::string_view text);

  // From now on a comment line ("# ...") is written with this prefix in place of its mark, and
  // one with no text is dropped: a protocol without comment lines still sees them.
  void replaceCommentMark(std::string_view prefix);

 private:
  void writeLine(std::string_view line);

  std::ostream& sink;
  std::string_view commentPrefix;  // empty: comments pass as they are
};

// For reports made deep inside the search or the book, which know no console: one whole
// line to standard output, under the lock that the consoles share.
void printLine(std::string_view line);

}  // namespace torvy
