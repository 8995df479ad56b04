// Game control through the protocol: user moves, set-up, take-backs and the end of a game.
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

}  // namespace
}  // namespace torvy::testing
