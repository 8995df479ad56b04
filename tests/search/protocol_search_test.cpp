#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>

#include "frontend/engine_process.h"

namespace torvy {
namespace {

using testing::runEngine;
using testing::runEngineScripted;
using Lines = std::vector<std::string>;

bool startsWith(const std::string& line, const std::string& prefix) { return line.rfind(prefix, 0) == 0; }

long countStarting(const Lines& lines, const std::string& prefix) {
  return std::count_if(lines.begin(), lines.end(), [&](const std::string& l) { return startsWith(l, prefix); });
}

// The index of the first line at or after `from` that begins with prefix, or the size.
std::size_t find(const Lines& lines, const std::string& prefix, std::size_t from = 0) {
  for (std::size_t i = from; i < lines.size(); ++i)
    if (startsWith(lines[i], prefix)) return i;
  return lines.size();
}

TEST(ProtocolSearch, ShortGameOnAClock) {
  // The first search must end before the user's move arrives, which would stop it.
  const auto run = runEngineScripted({{"xboard\nnew\nlevel 40 5 0\nsd 4\ngo\n", 0, "move "}, {"usermove e7e5\n"}});
  ASSERT_FALSE(run.timedOut);
  const Lines& out = run.lines;
  const std::size_t budget = find(out, "# movesPerSession=40 timePerSession=30000 increment=0");
  ASSERT_LT(budget, out.size());
  EXPECT_EQ(out[budget + 1], "# ply=0 fullMoveNumber=1 remainingMoves=40 nSessions=1");
  EXPECT_EQ(out[budget + 2], "# total=30000 elapsed=0 remaining=30000 available=30000 max=675");
  EXPECT_EQ(out[budget + 3], "# set maxTime = 675");
  EXPECT_EQ(out[budget + 4], "# out of book: corrected maxTime = 1012");
  const std::size_t firstMove = find(out, "move ", budget);
  ASSERT_LT(firstMove, out.size());
  EXPECT_TRUE(startsWith(out[firstMove - 1], "# making engine move: "));
  EXPECT_EQ(out[firstMove].substr(5), out[firstMove - 1].substr(22));
  const std::size_t userMove = find(out, "# making user move: e7e5", firstMove);
  ASSERT_LT(userMove, out.size());
  EXPECT_EQ(find(out, "# ply=2 fullMoveNumber=2 remainingMoves=39 nSessions=1", userMove) < out.size(), true);
  EXPECT_LT(find(out, "move ", userMove), out.size()) << "the engine answers the user move";
  EXPECT_EQ(countStarting(out, "# out of book: "), 1) << "the correction comes once a game";
}

TEST(ProtocolSearch, ThinkingLinesShowDepthScoreTimeNodesAndLine) {
  const auto run = runEngine("xboard\nsd 3\ngo\n");
  const Lines& out = run.lines;
  const std::size_t first = find(out, "1 ");
  ASSERT_LT(first, out.size());
  int depth = 0, score = 0, time = 0;
  unsigned long long nodes = 0;
  char move[8] = {};
  ASSERT_EQ(std::sscanf(out[first].c_str(), "%d %d %d %llu %7s", &depth, &score, &time, &nodes, move), 5);
  EXPECT_EQ(depth, 1);
  EXPECT_GT(nodes, 0u);
  EXPECT_LT(find(out, "# total nodes = "), out.size());
  const auto quiet = runEngine("xboard\nnopost\nsd 3\ngo\n");
  EXPECT_EQ(countStarting(quiet.lines, "1 "), 0);
  EXPECT_EQ(countStarting(quiet.lines, "# total nodes = "), 0);
  EXPECT_EQ(countStarting(quiet.lines, "move "), 1);
}

TEST(ProtocolSearch, MateAndForcedMoveEndTheSearchAtOnce) {
  const auto mate = runEngine("xboard\nsetboard 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1\nlevel 40 60 0\ngo\n");
  EXPECT_LT(find(mate.lines, "# forced mate in 1 plies: a1a8"), mate.lines.size());
  EXPECT_LT(find(mate.lines, "move a1a8"), mate.lines.size());
  EXPECT_LT(find(mate.lines, "1-0 {White wins by checkmate}"), mate.lines.size());
  const auto forced = runEngine("xboard\nsetboard 7k/8/8/8/8/8/6q1/7K w - - 0 1\nlevel 40 60 0\ngo\n");
  EXPECT_LT(find(forced.lines, "# forced move: h1g2"), forced.lines.size());
  EXPECT_LT(find(forced.lines, "1/2-1/2 {Draw by insufficient material}"), forced.lines.size());
}

TEST(ProtocolSearch, StoppedSearchGivesNoMove) {
  const auto run = runEngineScripted({{"xboard\nlevel 40 600 0\ngo\n", 0, "1 "}, {"force\n"}});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(countStarting(run.lines, "move "), 0);
  EXPECT_GT(countStarting(run.lines, "1 "), 0) << "the search had begun";
}

TEST(ProtocolSearch, AnalysisRestartsAfterEachChangeAndEndsWithTheInput) {
  const auto run = runEngineScripted(
      {{"xboard\nanalyze\n", 0, "1 "}, {"usermove e2e4\n", 0, "1 "}, {"undo\n", 0, "1 "}, {"exit\n"}});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(countStarting(run.lines, "move "), 0);
  EXPECT_GE(countStarting(run.lines, "1 "), 3) << "a search on each of the three positions";
  const auto endOfInput = runEngineScripted({{"xboard\nanalyze\n", 0, "1 "}});
  EXPECT_FALSE(endOfInput.timedOut);
  EXPECT_EQ(endOfInput.exitCode, 0);
}

TEST(ProtocolSearch, TwoCoresPlayTheSameWay) {
  const auto run = runEngine("xboard\nsd 5\ngo\n", {"-cores", "2"});
  EXPECT_LT(find(run.lines, "# will now use 2 cores"), run.lines.size());
  EXPECT_EQ(countStarting(run.lines, "move "), 1);
  EXPECT_EQ(countStarting(run.lines, "6 "), 0) << "only the first thread prints, and it stops at depth 5";
}

}  // namespace
}  // namespace torvy

namespace torvy {
namespace {

// Needs Debian's gaviotatb tables; without them the root has nothing to resolve.
TEST(ProtocolSearch, RootResolvedByTablebasesAnswersAtDepthZero) {
  const char* tables = "/usr/share/gaviotatb/gtb4/krk.gtb.cp4";
  if (std::FILE* file = std::fopen(tables, "rb"))
    std::fclose(file);
  else
    GTEST_SKIP() << "no Gaviota tables at " << tables;
  const std::string setup = "xboard\negtpath gaviota /usr/share/gaviotatb/gtb4\nsetboard k7/8/2K5/8/8/8/8/7R w - - 0 1\n";
  const auto analysis = runEngine(setup + "analyze\n");
  // Depth 0, mate in 3 plies, any time, no nodes searched.
  const std::regex rootLine("0 31997 [0-9]+ 0 .*");
  auto hasRootLine = [&](const Lines& lines) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& l) { return std::regex_match(l, rootLine); });
  };
  EXPECT_TRUE(hasRootLine(analysis.lines));
  EXPECT_EQ(countStarting(analysis.lines, "move "), 0) << "an analysis gives no move";
  EXPECT_EQ(countStarting(analysis.lines, "1 "), 0) << "no iteration runs";
  const auto game = runEngine(setup + "level 40 5 0\ngo\n");
  EXPECT_TRUE(hasRootLine(game.lines));
  EXPECT_EQ(countStarting(game.lines, "move "), 1);
}

}  // namespace
}  // namespace torvy
