#include "frontend/line_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace torvy {
namespace {

using Lines = std::vector<std::string>;

// Every line that readLine gives for this input, read with a buffer of the given size.
Lines readAll(std::string input, std::size_t size = 1024) {
  std::FILE* stream = fmemopen(input.data(), input.size(), "r");
  std::vector<char> buffer(size);
  Lines lines;
  while (readLine(buffer.data(), size, stream)) lines.emplace_back(buffer.data());
  std::fclose(stream);
  return lines;
}

// One line feed, then one carriage return, then blanks are stripped (the protocol tests see
// the common cases); tabs and leading blanks stay; a long line arrives in pieces.
TEST(ReadLine, StripsTheEndOfEachLineAndSplitsLongOnes) {
  struct Case {
    std::string input;
    Lines lines;
    std::size_t size = 1024;
  };
  const Case cases[] = {
      {"go\n", {"go"}},
      {"go\r\r\n", {"go\r"}},
      {"go\r \n", {"go\r"}},
      {"   \n\n\r\n", {"", "", ""}},
      {"ping\t1\t\n", {"ping\t1\t"}},
      {"  ping 1\n", {"  ping 1"}},
      {"", {}},
      {std::string(1500, 'x') + "\nping 1\n", {std::string(1023, 'x'), std::string(477, 'x'), "ping 1"}},
      // A line that just fills the buffer leaves its line feed behind as an empty line.
      {std::string(1023, 'y') + "\n", {std::string(1023, 'y'), ""}},
      {"abcdef\n", {"abc", "def", ""}, 4},
  };
  for (const Case& c : cases) EXPECT_EQ(readAll(c.input, c.size), c.lines) << '"' << c.input.substr(0, 20) << '"';
}

// Empty pieces count, at either end too; only the separator cuts.
TEST(Split, KeepsEveryPieceIncludingEmptyOnes) {
  EXPECT_EQ(split("", ' '), Lines{""});
  EXPECT_EQ(split(" a\tb ", ' '), (Lines{"", "a\tb", ""}));
}

}  // namespace
}  // namespace torvy
