#include "frontend/line_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace torvy {
namespace {

// Every line that readLine gives for this input, read with a buffer of the given size.
std::vector<std::string> readAll(std::string input, std::size_t size = 1024) {
  std::FILE* stream = fmemopen(input.data(), input.size(), "r");
  std::vector<char> buffer(size);
  std::vector<std::string> lines;
  while (readLine(buffer.data(), size, stream)) lines.emplace_back(buffer.data());
  std::fclose(stream);
  return lines;
}

using Lines = std::vector<std::string>;

TEST(ReadLine, StripsOneLineFeedOneCarriageReturnThenBlanks) {
  EXPECT_EQ(readAll("go\n"), Lines{"go"});
  EXPECT_EQ(readAll("go\r\n"), Lines{"go"});
  EXPECT_EQ(readAll("go  \r\n"), Lines{"go"});
  EXPECT_EQ(readAll("go\r\r\n"), Lines{"go\r"});
  EXPECT_EQ(readAll("go\r \n"), Lines{"go\r"});
  EXPECT_EQ(readAll("   \n\n\r\n"), (Lines{"", "", ""}));
}

TEST(ReadLine, KeepsTabsAndLeadingBlanks) {
  EXPECT_EQ(readAll("ping\t1\t\n"), Lines{"ping\t1\t"});
  EXPECT_EQ(readAll("  ping 1\n"), Lines{"  ping 1"});
}

TEST(ReadLine, LastLineWithoutLineFeedAndEndOfInput) {
  EXPECT_EQ(readAll("new\nquit"), (Lines{"new", "quit"}));
  EXPECT_EQ(readAll(""), Lines{});
}

TEST(ReadLine, LongLinesArriveInPieces) {
  const std::string longLine(1500, 'x');
  EXPECT_EQ(readAll(longLine + "\nping 1\n"), (Lines{std::string(1023, 'x'), std::string(477, 'x'), "ping 1"}));
  // A line that just fills the buffer leaves its line feed behind as an empty line.
  EXPECT_EQ(readAll(std::string(1023, 'y') + "\n"), (Lines{std::string(1023, 'y'), ""}));
  EXPECT_EQ(readAll("abcdef\n", 4), (Lines{"abc", "def", ""}));
}

TEST(Split, KeepsEveryPieceIncludingEmptyOnes) {
  EXPECT_EQ(split("", ' '), Lines{""});
  EXPECT_EQ(split("40 5 0", ' '), (Lines{"40", "5", "0"}));
  EXPECT_EQ(split("40  5", ' '), (Lines{"40", "", "5"}));
  EXPECT_EQ(split(" a ", ' '), (Lines{"", "a", ""}));
  EXPECT_EQ(split("a\tb", ' '), Lines{"a\tb"});
}

TEST(Split, OtherSeparators) {
  EXPECT_EQ(split("5:30", ':'), (Lines{"5", "30"}));
  EXPECT_EQ(split("1:2:3", ':'), (Lines{"1", "2", "3"}));
  EXPECT_EQ(split("Hash=64=x", '='), (Lines{"Hash", "64", "x"}));
  EXPECT_EQ(split(":", ':'), (Lines{"", ""}));
}

}  // namespace
}  // namespace torvy
