// The start-up, the command line and the dispatcher, then game control: user moves, set-up,
// take-backs and the end of a game.
#include <gtest/gtest.h>

#include <iterator>

#include "frontend/transcript.h"

namespace torvy::testing {
namespace {

const Lines afterE2E4 =
    boardPicture({"rnbqkbnr", "pppppppp", "........", "........", "....P...", "........", "PPPP.PPP", "RNBQKBNR"});

// A promotion needs its piece letter, in either case. "undo" takes back one move and "remove"
// two; neither reaches behind the start of the record.
TEST(ProtocolGame, UserMovesAndTakeBacks) {
  const Lines afterE7E5 =
      boardPicture({"rnbqkbnr", "pppp.ppp", "........", "....p...", "....P...", "........", "PPPP.PPP", "RNBQKBNR"});
  const Lines expected = joined({
      refused("undo"),
      {"Error (illegal argument to 'usermove' command): e2"},
      refused("usermove e2"),
      {"Error (illegal move): e2e4x"},
      refused("usermove e2e4x"),
      {"Error (illegal move): e2e5"},
      refused("usermove e2e5"),
      {"# making user move: e2e4"},
      afterE2E4,
      refused("remove"),
      startBoard(),  // undo
      {"# making user move: e2e4"},
      afterE2E4,
      {"# making user move: e7e5"},
      afterE7E5,
      startBoard(),  // remove
      refused("undo"),
  });
  EXPECT_EQ(xboardSession("force\nundo\nusermove e2\nusermove e2e4x\nusermove e2e5\nusermove e2e4\nremove\nundo\n"
                          "usermove e2e4\nusermove e7e5\nremove\nundo\n"),
            expected);
}

// Bad text leaves no position until "new" or a good set-up; four fields are enough, seven too
// many. A set-up position is the limit of take-backs.
TEST(ProtocolGame, SetUpPositionsAndNew) {
  const std::string bad = "setboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1";
  const std::string tooLong = "setboard k7/4P3/8/8/8/8/8/4K3 w - - 0 1 x";
  const Lines promotionBoard =
      boardPicture({"k.......", "....P...", "........", "........", "........", "........", "........", "....K..."});
  const Lines promotedBoard =
      boardPicture({"k...Q...", "........", "........", "........", "........", "........", "........", "....K..."});
  const std::string noPosition = "Error (no position since a refused setboard): ";
  const Lines expected = joined({
      {"# making user move: e2e4"},
      afterE2E4,
      refused(bad),
      {noPosition + "undo"},
      refused("undo"),
      {noPosition + "go"},
      refused("go"),
      promotionBoard,
      {"Error (too many arguments, expected at most 6): " + tooLong},
      refused(tooLong),
      refused("undo"),
      {"Error (illegal move): e7e8"},
      refused("usermove e7e8"),
      {"# making user move: E7E8Q"},
      promotedBoard,
      promotionBoard,  // undo
      refused("undo"),
      newTableLines(),
      startBoard(),
      refused("undo"),
  });
  EXPECT_EQ(xboardSession("force\nusermove e2e4\n" + bad + "\nundo\ngo\nsetboard k7/4P3/8/8/8/8/8/4K3 w - -\n" +
                          tooLong + "\nundo\nusermove e7e8\nusermove E7E8Q\nundo\nundo\nnew\nundo\n"),
            expected);
}

// Checkmate, stalemate and bare kings end a game until "undo" or a set-up; the fifty-move rule
// and a third repetition by user moves are no end. The lines that are not comments are the results and the refusals.
TEST(ProtocolGame, GameEnds) {
  const std::string shuffle = "usermove g1f3\nusermove g8f6\nusermove f3g1\nusermove f6g8\n";
  const Lines lines = xboardSession(
      "force\nusermove f2f3\nusermove e7e5\nusermove g2g4\nusermove d8h4\nusermove a2a3\nundo\nusermove d8e7\n"
      "setboard k7/8/1K6/8/8/8/8/7R w - - 0 1\nusermove h1h8\n"
      "setboard k7/2Q5/8/1K6/8/8/8/8 w - - 0 1\nusermove b5b6\nusermove a8a7\n"
      "setboard k7/8/8/8/8/8/1q6/K7 w - - 0 1\nusermove a1b2\n"
      "setboard k7/8/8/8/8/8/8/KR6 b - - 100 80\n"
      "setboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n" +
      shuffle + shuffle + shuffle + "usermove e2e4\n");
  Lines results;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(results),
               [](const std::string& line) { return !startsWith(line, "#"); });
  EXPECT_EQ(results, (Lines{"0-1 {Black wins by checkmate}", "Error (cannot make a move at end of game)",
                            "1-0 {White wins by checkmate}", "1/2-1/2 {Stalemate}",
                            "Error (cannot make a move at end of game)", "1/2-1/2 {Draw by insufficient material}"}));
  EXPECT_EQ(countStarting(lines, "# making user move: "), 21) << "every move but the two refused";
}

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
