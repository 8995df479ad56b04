// The built-in suite passes here, and its report keeps the shape people and scripts read.
#include <gtest/gtest.h>

#include <regex>

#include "../board/board_helpers.h"
#include "diagnostics/self_test.h"

namespace torvy::testing {
namespace {

TEST(SelfTest, AllRowsPassAndTheReportKeepsItsShape) {
  Board_0x88 board;
  PerftTable table;
  std::ostringstream out;
  const SelfTestResult result = runSelfTest(board, table, 64, out);
  EXPECT_EQ(result.passed, 18u);
  EXPECT_EQ(result.failed, 0u);

  const std::vector<std::string> lines = linesOf(out.str());
  ASSERT_EQ(lines.size(), 1u + 18u + 2u);
  EXPECT_EQ(lines.front(), "# new size of Perft hash: 64 MB");
  // The table's own numbers, in which 7 and 13 are missing.
  const std::string counts = "n=\\d+, t=\\d+, lps=\\d+, nps=\\d+";
  const int numbers[] = {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 14, 15, 16, 17, 18, 19, 20};
  for (int i = 0; i < 18; ++i) {
    const std::regex passed("# Self-test no. " + std::to_string(numbers[i]) + " passed: " + counts);
    EXPECT_TRUE(std::regex_match(lines[1 + i], passed)) << lines[1 + i];
  }
  EXPECT_EQ(lines[lines.size() - 2], "18 tests passed, 0 tests failed, 0 tests skipped, total 18 tests run:");
  EXPECT_TRUE(std::regex_match(lines.back(), std::regex(counts))) << lines.back();
}

}  // namespace
}  // namespace torvy::testing
