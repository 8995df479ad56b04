// Searches as a front end sees them: the time budget, thinking lines, engine moves and results,
// analysis, and a root that the tablebases resolve.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <string>

#include "frontend/transcript.h"

namespace torvy::testing {
namespace {

// Each step waits for the engine's move. On two cores only the first thread prints, and it stops
// at depth 4; after "nopost" no thinking lines come. The move that reaches the fiftieth move is
// preceded by the draw offer, and the engine's mate by no offer but followed by the result.
TEST(ProtocolSearch, ShortGameOnAClock) {
  const auto run = runEngineScripted({{"xboard\nnew\nlevel 40 5 0\ntime 30000\nsd 4\ngo\n", 0, "move "},
                                      {"time 29000\nnopost\nusermove e7e5\n", 0, "move "},
                                      {"setboard k7/8/8/8/8/8/8/KR6 w - - 99 80\ngo\n", 0, "move "},
                                      {"setboard 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1\ngo\n", 0, "1-0 "}},
                                     {"-cores", "2"});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const Lines& out = run.lines;
  const std::size_t budget = findLine(out, "# movesPerSession=40 timePerSession=30000 increment=0");
  ASSERT_LT(budget + 4, out.size());
  // The clock starts at "go" and may pass a centisecond before the budget reads it.
  const Lines budgetLines(out.begin() + std::ptrdiff_t(budget) + 1, out.begin() + std::ptrdiff_t(budget) + 5);
  const int tick = startsWith(budgetLines[1], "# total=30000 elapsed=1 ") ? 1 : 0;
  const auto less = [&](int n) { return std::to_string(n - tick); };
  const Lines expected{"# ply=0 fullMoveNumber=1 remainingMoves=40 nSessions=1",
                       "# total=30000 elapsed=" + std::to_string(tick) + " remaining=" + less(30000) +
                           " available=" + less(30000) + " max=" + less(675),
                       "# set maxTime = " + less(675), "# out of book: corrected maxTime = " + less(1012)};
  EXPECT_EQ(budgetLines, expected);

  const std::size_t thinking = findLine(out, "1 ", budget);
  ASSERT_LT(thinking, out.size());
  int depth = 0, score = 0, time = 0;
  unsigned long long nodes = 0;
  char move[8] = {};
  ASSERT_EQ(std::sscanf(out[thinking].c_str(), "%d %d %d %llu %7s", &depth, &score, &time, &nodes, move), 5);
  EXPECT_EQ(depth, 1);
  EXPECT_GT(nodes, 0u);
  EXPECT_EQ(countStarting(out, "5 "), 0);
  const std::size_t firstMove = findLine(out, "move ", thinking);
  ASSERT_LT(firstMove, out.size());
  EXPECT_EQ("# making engine move: " + out[firstMove].substr(5), out[firstMove - 1]);
  EXPECT_LT(findLine(out, "# total nodes = ", thinking), firstMove);

  const std::size_t userMove = findLine(out, "# making user move: e7e5", firstMove);
  const std::size_t secondMove = findLine(out, "move ", userMove);
  ASSERT_LT(secondMove, out.size());
  // The time on the clock replaces the time used; the clock has run a little since.
  const std::size_t secondBudget = findLine(out, "# ply=2 fullMoveNumber=2 remainingMoves=39 nSessions=1", userMove);
  ASSERT_LT(secondBudget + 1, secondMove);
  int elapsed = 0;
  ASSERT_EQ(std::sscanf(out[secondBudget + 1].c_str(), "# total=30000 elapsed=%d", &elapsed), 1);
  EXPECT_GE(elapsed, 1000);
  EXPECT_LT(elapsed, 1100);
  EXPECT_EQ(findLine(out, "1 ", userMove), out.size());
  EXPECT_EQ(findLine(out, "# total nodes = ", userMove), out.size());
  EXPECT_EQ(countStarting(out, "# out of book: "), 1) << "the correction comes once a game";

  const std::size_t offer = findLine(out, "offer draw", secondMove);
  ASSERT_LT(offer + 2, out.size());
  EXPECT_TRUE(startsWith(out[offer + 1], "# making engine move: "));
  EXPECT_EQ(countStarting(out, "offer draw"), 1);
  EXPECT_LT(findLine(out, "move a1a8", offer), out.size());
  EXPECT_EQ(out.back(), "1-0 {White wins by checkmate}");
}

// A front end that pings while the engine plays both sides: the search thread's lines and the
// command loop's answers must never tear or merge, and every pong comes, in order.
TEST(ProtocolSearch, OutputLinesStayWholeWhileCommandsArriveDuringSearches) {
  constexpr int Pings = 3000;
  const std::regex wholeLine(
      "#.*|pong [0-9]+|feature .*|Error \\(.*|offer draw|move [a-h][1-8][a-h][1-8][qrbn]?|"
      "[0-9]+ -?[0-9]+ [0-9]+ [0-9]+( [a-h][1-8][a-h][1-8][qrbn]?)*|(1-0|0-1|1/2-1/2) \\{.*\\}|");
  for (const std::string cores : {"1", "2"}) {
    SCOPED_TRACE(cores + " cores");
    // Two pings at a time with a short pause, so that they meet the searches rather than all
    // arriving before the first move; twice on the way a move is awaited, so that they meet
    // more than one search however slowly the engine runs.
    std::vector<ScriptStep> steps{{"xboard\nprotover 2\nnew\npost\nsd 2\nauto\n"}};
    for (int i = 1; i <= Pings; i += 2) {
      const bool awaitMove = i == Pings / 3 + 1 || i == 2 * Pings / 3 + 1;
      steps.push_back(
          {"ping " + std::to_string(i) + "\nping " + std::to_string(i + 1) + "\n", 1, awaitMove ? "move " : ""});
    }
    const auto run = runEngineScripted(steps, {"-cores", cores});
    ASSERT_FALSE(run.timedOut);
    int pong = 0;
    for (const std::string& line : run.lines) {
      EXPECT_TRUE(std::regex_match(line, wholeLine) && line.find("pong", 1) == std::string::npos) << line;
      if (startsWith(line, "pong ")) {
        EXPECT_EQ(line, "pong " + std::to_string(++pong));
      }
    }
    EXPECT_EQ(pong, Pings);
    EXPECT_GT(countStarting(run.lines, "move "), 1);
  }
}

// In analysis, even from force mode, "usermove", "undo" and "new" each start the analysis
// again; a refused "setboard" and a position whose side to move could take the king stop it.
// It ends cleanly with "exit" or with the input, and gives no move.
TEST(ProtocolSearch, AnalysisRestartsAfterEachChangeAndEndsWithTheInput) {
  const auto run = runEngineScripted({{"xboard\nforce\nanalyze\n", 0, "1 "},
                                      {"usermove e2e4\n", 0, "1 "},
                                      {"undo\n", 0, "1 "},
                                      {"setboard 8/8/8 w - - 0 1\n", 0, "# command "},
                                      {"setboard 7k/8/8/8/8/8/1p6/K6Q w - - 0 1\n", 0, "Error (illegal position)"},
                                      {"new\n", 0, "1 "},
                                      {"exit\n"}});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(countStarting(run.lines, "move "), 0);
  EXPECT_GE(countStarting(run.lines, "1 "), 4) << "a search after each change";
  const auto endOfInput = runEngineScripted({{"xboard\nanalyze\n", 0, "1 "}});
  EXPECT_FALSE(endOfInput.timedOut);
  EXPECT_EQ(endOfInput.exitCode, 0);
}

// A resize under a running search stops it first; the loop then starts it again on the new
// table, which shows as a second thinking line of depth 1. No stopped search gives a move.
TEST(ProtocolOption, ResizeDuringASearchRestartsTheSearch) {
  const auto run = runEngineScripted({{"xboard\nlevel 40 600 0\ngo\n", 0, "1 "},
                                      {"option ttHashSizeMB=8\negtpath gaviota /nonexistent\n", 0, "1 "},
                                      {"force\n"}});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const std::size_t resized = findLine(run.lines, "# new size of TT hash: 8 MB");
  ASSERT_LT(resized, run.lines.size());
  EXPECT_EQ(run.lines[resized - 1], "# setting option: ttHashSizeMB=8");
  EXPECT_LT(findLine(run.lines, "# initializing TB: type=gaviota path=/nonexistent", resized), run.lines.size());
  EXPECT_LT(findLine(run.lines, "1 ", resized), run.lines.size());
  EXPECT_EQ(countStarting(run.lines, "move "), 0);
}

// Needs Debian's gaviotatb tables. The root line has depth 0, mate in 3 plies, any time and no
// nodes; no iteration runs, and of two threads only the first prints.
TEST(ProtocolSearch, RootResolvedByTablebasesAnswersAtDepthZero) {
  const char* tables = "/usr/share/gaviotatb/gtb4/krk.gtb.cp4";
  if (std::FILE* file = std::fopen(tables, "rb"))
    std::fclose(file);
  else
    GTEST_SKIP() << "no Gaviota tables at " << tables;
  const std::string setup =
      "xboard\negtpath gaviota /usr/share/gaviotatb/gtb4\nsetboard k7/8/2K5/8/8/8/8/7R w - - 0 1\n";
  const std::regex rootLine("0 31997 [0-9]+ 0 .*");
  for (const std::string commands : {"analyze\n", "level 40 5 0\ngo\n"}) {
    SCOPED_TRACE(commands);
    const Lines lines = runEngine(setup + commands, {"-cores", "2"}).lines;
    const auto isRootLine = [&](const std::string& l) { return std::regex_match(l, rootLine); };
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), isRootLine), 1);
    EXPECT_EQ(countStarting(lines, "# total nodes = "), 1);
    EXPECT_EQ(countStarting(lines, "1 "), 0);
    EXPECT_EQ(countStarting(lines, "move "), commands == "analyze\n" ? 0 : 1);
  }
}

}  // namespace
}  // namespace torvy::testing
