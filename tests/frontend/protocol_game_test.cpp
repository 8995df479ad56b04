// Game control through the protocol: user moves, set-up, take-backs and the end of a game.
#include <gtest/gtest.h>

#include <algorithm>

#include "frontend/transcript.h"

namespace torvy::testing {
namespace {

bool hasLine(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

bool anyLineStartsWith(const Lines& lines, const std::string& prefix) {
  return std::any_of(lines.begin(), lines.end(), [&](const std::string& l) { return l.rfind(prefix, 0) == 0; });
}

const Lines afterE2E4 =
    boardPicture({"rnbqkbnr", "pppppppp", "........", "........", "....P...", "........", "PPPP.PPP", "RNBQKBNR"});

const std::string promotionSetup = "setboard k7/4P3/8/8/8/8/8/4K3 w - - 0 1\n";
const Lines promotionBoard =
    boardPicture({"k.......", "....P...", "........", "........", "........", "........", "........", "....K..."});
const Lines promotedBoard =
    boardPicture({"k...Q...", "........", "........", "........", "........", "........", "........", "....K..."});

Lines refused(const std::string& command) { return {"# command \"" + command + "\" returned an error code "}; }

// A promotion needs its piece letter, in either case.
TEST(ProtocolUserMove, AcceptsLegalMovesAndRefusesBadText) {
  const Lines expected = joined({
      {"Error (illegal argument to 'usermove' command): e2"}, refused("usermove e2"),
      {"Error (illegal move): e2e4x"}, refused("usermove e2e4x"),
      {"Error (illegal move): e2e5"}, refused("usermove e2e5"),
      {"# making user move: e2e4"}, afterE2E4,
      promotionBoard,
      {"Error (illegal move): e7e8"}, refused("usermove e7e8"),
      {"# making user move: E7E8Q"}, promotedBoard,
  });
  EXPECT_EQ(xboardSession("force\nusermove e2\nusermove e2e4x\nusermove e2e5\nusermove e2e4\n" + promotionSetup +
                          "usermove e7e8\nusermove E7E8Q\n"),
            expected);
}

// "undo" takes back one move and "remove" two; neither reaches behind the start of the record.
TEST(ProtocolTakeBack, UndoAndRemoveStopAtTheStartOfTheRecord) {
  const Lines afterE7E5 =
      boardPicture({"rnbqkbnr", "pppp.ppp", "........", "....p...", "....P...", "........", "PPPP.PPP", "RNBQKBNR"});
  const Lines expected = joined({
      refused("undo"),
      {"# making user move: e2e4"}, afterE2E4,
      refused("remove"),
      startBoard(),  // undo
      refused("undo"),
      {"# making user move: e2e4"}, afterE2E4,
      {"# making user move: e7e5"}, afterE7E5,
      startBoard(),  // remove
      refused("undo"),
  });
  EXPECT_EQ(xboardSession("force\nundo\nusermove e2e4\nremove\nundo\nundo\nusermove e2e4\nusermove e7e5\nremove\nundo\n"),
            expected);
}

TEST(ProtocolTakeBack, NeverReachesBehindASetUpPosition) {
  const Lines lines = xboardSession("usermove e2e4\n" + promotionSetup + "undo\nusermove e1d1\nundo\nundo\n");
  const Lines tail(lines.end() - 10, lines.end());
  EXPECT_EQ(tail, joined({promotionBoard, refused("undo")}));
  EXPECT_EQ(std::count(lines.begin(), lines.end(), refused("undo")[0]), 2);
}

// Bad text keeps the previous position and its moves; four fields are enough, seven too many.
TEST(ProtocolSetBoard, RefusesBadTextAndKeepsThePreviousPosition) {
  const std::string bad = "setboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1";
  const std::string tooLong = "setboard k7/4P3/8/8/8/8/8/4K3 w - - 0 1 x";
  const Lines expected = joined({
      {"# making user move: e2e4"}, afterE2E4,
      refused(bad), afterE2E4,
      startBoard(),  // the move before the failed set-up can still be taken back
      promotionBoard,
      {"Error (too many arguments, expected at most 6): " + tooLong}, refused(tooLong),
  });
  EXPECT_EQ(xboardSession("force\nusermove e2e4\n" + bad + "\nundo\nsetboard k7/4P3/8/8/8/8/8/4K3 w - -\n" + tooLong + "\n"),
            expected);
}

TEST(ProtocolGameEnd, CheckmateEndsTheGameUntilUndo) {
  const Lines lines = xboardSession("force\nusermove f2f3\nusermove e7e5\nusermove g2g4\nusermove d8h4\n"
                                    "usermove a2a3\nundo\nusermove d8e7\n");
  const Lines mated =
      boardPicture({"rnb.kbnr", "pppp.ppp", "........", "....p...", "......Pq", ".....P..", "PPPPP..P", "RNBQKBNR"});
  const Lines expected = joined({
      {"# making user move: d8h4"},
      mated,
      {"0-1 {Black wins by checkmate}"},
      {"Error (cannot make a move at end of game)"}, refused("usermove a2a3"),
  });
  const auto found = std::search(lines.begin(), lines.end(), expected.begin(), expected.end());
  ASSERT_NE(found, lines.end());
  EXPECT_TRUE(hasLine(lines, "# making user move: d8e7"));
}

TEST(ProtocolGameEnd, WhiteMatesAndStalemateAndBareKings) {
  EXPECT_TRUE(hasLine(xboardSession("setboard k7/8/1K6/8/8/8/8/7R w - - 0 1\nusermove h1h8\n"),
                      "1-0 {White wins by checkmate}"));
  const Lines stalemate = xboardSession("setboard k7/2Q5/8/1K6/8/8/8/8 w - - 0 1\nusermove b5b6\nusermove a8a7\n");
  ASSERT_GE(stalemate.size(), 12u);
  EXPECT_EQ(stalemate[9], "# making user move: b5b6");
  EXPECT_EQ(stalemate[19], "1/2-1/2 {Stalemate}");
  EXPECT_EQ(stalemate[20], "Error (cannot make a move at end of game)");
  EXPECT_TRUE(hasLine(xboardSession("setboard k7/8/8/8/8/8/1q6/K7 w - - 0 1\nusermove a1b2\n"),
                      "1/2-1/2 {Draw by insufficient material}"));
}

TEST(ProtocolGameEnd, ThirdRepetitionByUserMovesGoesOn) {
  const std::string shuffle = "usermove g1f3\nusermove g8f6\nusermove f3g1\nusermove f6g8\n";
  const Lines lines = xboardSession("force\n" + shuffle + shuffle + shuffle + "usermove e2e4\n");
  EXPECT_FALSE(anyLineStartsWith(lines, "1/2-1/2"));
  EXPECT_FALSE(anyLineStartsWith(lines, "offer draw"));
  EXPECT_TRUE(hasLine(lines, "# making user move: e2e4"));
}

TEST(ProtocolNewGame, RecreatesTheTablesAndStartsOver) {
  const Lines expected = joined({{"# making user move: e2e4"}, afterE2E4, newTableLines(), startBoard(),
                                 refused("undo")});
  EXPECT_EQ(xboardSession("force\nusermove e2e4\nnew\nundo\n"), expected);
}

}  // namespace
}  // namespace torvy::testing
