// The start-up, the command line and the dispatcher, seen through the engine's standard output.
#include <gtest/gtest.h>

#include "frontend/transcript.h"

namespace torvy::testing {
namespace {

// Warnings about the command line come right after the banner; a prompt follows every input
// line until "xboard".
TEST(ProtocolStartUp, CommandLineWarningsAndPrompts) {
  const EngineOutput run = runEngine("ping 1\n\nxboard\nping 2\nping 3\n", {"-cores", "0", "-threads", "-cores"});
  EXPECT_EQ(run.exitCode, 0);
  const Lines warnings{
      "# warning: found bad argument \"0\" for command line option \"-cores\", must be a positive number",
      "# warning: found unknown command line option \"-threads\"",
      "# warning: missing argument for command line option \"-cores\"",
  };
  EXPECT_EQ(run.lines, joined({banner(),
                               warnings,
                               newTableLines(),
                               startBoard(),
                               {"# Your move: pong 1", "# Your move: # Your move: ", "pong 2", "pong 3"}}));
}

// Empty, unknown, miscased and tabbed lines are silent, and so are the commands that only set
// something; trailing blanks and a carriage return are stripped; "quit" ends the loop.
TEST(ProtocolDispatch, SilentCommandsStrippedLinesAndQuit) {
  EXPECT_EQ(xboardSession("\nfoo\nfoo bar\nping\t1\nPING 1\n e2e4\ne2e4\npost\nnopost\nbook\nnobook\ntune a\n"
                          "tune a b\nrandpos\nlevel 40 5:30 2\ntime 100\nsd 0\n"
                          "ping 5   \r\nping 6\r\nquit \r\nping 7\n"),
            (Lines{"pong 5", "pong 6"}));
}

// The input ends without a line feed after the last command, which still counts.
TEST(ProtocolDispatch, ArgumentCountsAndValuesAreChecked) {
  const Lines expected = joined({
      {"Error (too many arguments, expected at most 0): quit now"},
      refused("quit now"),
      {"Error (missing arguments, expected at least 3): level 40 5"},
      refused("level 40 5"),
      {"Error (missing arguments, expected at least 3): level"},
      refused("level"),
      {"Error (too many arguments, expected at most 3): level 40  5 0"},
      refused("level 40  5 0"),
      {"Error (missing arguments, expected at least 1): ping"},
      refused("ping"),
      refused("sd -1"),
      refused("level 40 1:2:3 0"),
      refused("perft 0"),
      refused("divide x"),
      {"pong 0"},
  });
  EXPECT_EQ(xboardSession("quit now\nlevel 40 5\nlevel\nlevel 40  5 0\nlevel 40 5 0\nping\nsd -1\nlevel 40 1:2:3 0\n"
                          "perft 0\ndivide x\nping x"),
            expected);
}

}  // namespace
}  // namespace torvy::testing
