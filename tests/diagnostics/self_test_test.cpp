// The built-in suite passes here, and its report keeps the shape people and scripts read.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "diagnostics/self_test.h"
#include "perft_helpers.h"

namespace torvy::testing {
namespace {

TEST(SelfTest, AllRowsPassAndTheReportKeepsItsShape) {
  Board_0x88 board;
  PerftTable table;
  std::ostringstream out;
  const SelfTestResult result = runSelfTest(board, table, 64, out);
  EXPECT_EQ(result.passed, 18u);
  EXPECT_EQ(result.failed, 0u);

  std::vector<std::string> lines;
  std::istringstream in(out.str());
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_EQ(lines.size(), 1u + 18u + 2u);
  EXPECT_EQ(lines.front(), "# new size of Perft hash: 64 MB");

  // The table's own numbers: 7 and 13 are never printed.
  const std::string rowStart = "# Self-test no. ";
  const int numbers[] = {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 14, 15, 16, 17, 18, 19, 20};
  for (int i = 0; i < 18; ++i) {
    const std::string& line = lines[1 + i];
    EXPECT_TRUE(matchesShape(line, rowStart + "{n} passed: n={n}, t={n}, lps={n}, nps={n}")) << line;
    EXPECT_EQ(line.substr(rowStart.size(), line.find(' ', rowStart.size()) - rowStart.size()),
              std::to_string(numbers[i]));
  }
  EXPECT_EQ(lines[lines.size() - 2], "18 tests passed, 0 tests failed, 0 tests skipped, total 18 tests run:");
  EXPECT_TRUE(matchesShape(lines.back(), "n={n}, t={n}, lps={n}, nps={n}")) << lines.back();
}

}  // namespace
}  // namespace torvy::testing
