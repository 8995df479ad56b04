// The start-up, the command line and the dispatcher, seen through the engine's standard output.
#include <gtest/gtest.h>

#include "frontend/transcript.h"

namespace torvy::testing {
namespace {

TEST(ProtocolStartUp, PromptFollowsEveryLineUntilXboard) {
  const EngineOutput run = runEngine("ping 1\n\nxboard\nping 2\nping 3\n");
  EXPECT_EQ(run.exitCode, 0);
  const Lines expected = joined({banner(), newTableLines(), startBoard(),
                                 {"# Your move: pong 1", "# Your move: # Your move: ", "pong 2", "pong 3"}});
  EXPECT_EQ(run.lines, expected);
}

TEST(ProtocolStartUp, CommandLineWarnings) {
  const EngineOutput bad = runEngine("", {"-cores", "0", "-threads", "-cores"});
  const Lines warnings{
      "# warning: found bad argument \"0\" for command line option \"-cores\", must be a positive number",
      "# warning: found unknown command line option \"-threads\"",
      "# warning: missing argument for command line option \"-cores\"",
  };
  EXPECT_EQ(bad.lines, joined({banner(), warnings, newTableLines(), startBoard(), {"# Your move: "}}));

  const EngineOutput good = runEngine("", {"-cores", "1"});
  ASSERT_GT(good.lines.size(), 4u);
  EXPECT_EQ(good.lines[4].rfind("# will now use 1 cores (requested=1, current=0, max=", 0), 0u) << good.lines[4];
}

// Empty, unknown, miscased and tabbed lines are silent, and so are the commands that only set
// something; trailing blanks and a carriage return are stripped; "quit" ends the loop.
TEST(ProtocolDispatch, SilentCommandsStrippedLinesAndQuit) {
  EXPECT_EQ(xboardSession("\nfoo\nfoo bar\nping\t1\nPING 1\n e2e4\ne2e4\npost\nnopost\nbook\nnobook\ntune a\n"
                          "tune a b\nrandpos\nlevel 40 5:30 2\ntime 100\nsd 0\nping 5   \r\nping 6\r\nquit \r\nping 7\n"),
            (Lines{"pong 5", "pong 6"}));
}

// The input ends without a line feed after the last command, which still counts.
TEST(ProtocolDispatch, ArgumentCountsAndValuesAreChecked) {
  const Lines expected{
      "Error (too many arguments, expected at most 0): quit now",
      "# command \"quit now\" returned an error code ",
      "Error (missing arguments, expected at least 3): level 40 5",
      "# command \"level 40 5\" returned an error code ",
      "Error (missing arguments, expected at least 3): level",
      "# command \"level\" returned an error code ",
      "Error (too many arguments, expected at most 3): level 40  5 0",
      "# command \"level 40  5 0\" returned an error code ",
      "Error (missing arguments, expected at least 1): ping",
      "# command \"ping\" returned an error code ",
      "# command \"sd -1\" returned an error code ",
      "# command \"level 40 1:2:3 0\" returned an error code ",
      "pong 0",
  };
  EXPECT_EQ(xboardSession("quit now\nlevel 40 5\nlevel\nlevel 40  5 0\nlevel 40 5 0\nping\nsd -1\nlevel 40 1:2:3 0\nping x"),
            expected);
}

TEST(ProtocolPerft, PerftReportsLeavesAndRefusesDepthBelowOne) {
  const Lines lines = xboardSession("perft 1\nperft 0\ndivide x\n");
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ(lines.front(), "# new size of Perft hash: 64 MB");
  EXPECT_NE(std::find(lines.begin(), lines.end(), "# Total leaves: 20"), lines.end());
  const Lines refusals(lines.end() - 2, lines.end());
  EXPECT_EQ(refusals, (Lines{"# command \"perft 0\" returned an error code ",
                             "# command \"divide x\" returned an error code "}));
}

}  // namespace
}  // namespace torvy::testing
