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

TEST(ProtocolUserMove, AcceptsLegalMovesAndRefusesBadText) {
  const Lines expected = joined({
      {"Error (illegal argument to 'usermove' command): e2", "# command \"usermove e2\" returned an error code "},
      {"Error (illegal move): e2e4x", "# command \"usermove e2e4x\" returned an error code "},
      {"Error (illegal move): e2e5", "# command \"usermove e2e5\" returned an error code "},
      {"# making user move: e2e4"},
      afterE2E4,
  });
  EXPECT_EQ(xboardSession("force\nusermove e2\nusermove e2e4x\nusermove e2e5\nusermove e2e4\n"), expected);
}

TEST(ProtocolUserMove, PromotionNeedsItsPieceLetterInEitherCase) {
  const Lines refused = {"Error (illegal move): e7e8", "# command \"usermove e7e8\" returned an error code "};
  EXPECT_EQ(xboardSession(promotionSetup + "usermove e7e8\nusermove e7e8q\n"),
            joined({promotionBoard, refused, {"# making user move: e7e8q"}, promotedBoard}));
  EXPECT_EQ(xboardSession(promotionSetup + "usermove E7E8Q\n"),
            joined({promotionBoard, {"# making user move: E7E8Q"}, promotedBoard}));
}

TEST(ProtocolTakeBack, UndoAndRemoveStopAtTheStartOfTheRecord) {
  const Lines undoRefused{"# command \"undo\" returned an error code "};
  const Lines removeRefused{"# command \"remove\" returned an error code "};
  const Lines expected = joined({
      undoRefused,
      {"# making user move: e2e4"},
      afterE2E4,
      removeRefused,
      startBoard(),  // undo
      undoRefused,
  });
  EXPECT_EQ(xboardSession("force\nundo\nusermove e2e4\nremove\nundo\nundo\n"), expected);
}

TEST(ProtocolTakeBack, RemoveTakesBackTwoMoves) {
  const Lines lines = xboardSession("force\nusermove e2e4\nusermove e7e5\nremove\nundo\n");
  ASSERT_GE(lines.size(), 10u);
  const Lines last(lines.end() - 10, lines.end());
  EXPECT_EQ(last, joined({startBoard(), {"# command \"undo\" returned an error code "}}));
}

TEST(ProtocolTakeBack, NeverReachesBehindASetUpPosition) {
  const Lines lines = xboardSession("usermove e2e4\n" + promotionSetup + "undo\nusermove e1d1\nundo\nundo\n");
  const Lines tail(lines.end() - 10, lines.end());
  EXPECT_EQ(tail, joined({promotionBoard, {"# command \"undo\" returned an error code "}}));
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "# command \"undo\" returned an error code "), 2);
}

TEST(ProtocolSetBoard, BadTextKeepsThePreviousPosition) {
  const Lines expected = joined({
      {"# making user move: e2e4"},
      afterE2E4,
      {"# command \"setboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1\" returned an error code "},
      afterE2E4,
      startBoard(),  // the move before the failed set-up can still be taken back
  });
  EXPECT_EQ(xboardSession("force\nusermove e2e4\nsetboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1\nundo\n"),
            expected);
}

TEST(ProtocolSetBoard, FourFieldsAreEnoughAndSevenTooMany) {
  EXPECT_EQ(xboardSession(promotionSetup.substr(0, promotionSetup.size() - 5) + "\n"), promotionBoard);
  const Lines expected{
      "Error (too many arguments, expected at most 6): setboard k7/4P3/8/8/8/8/8/4K3 w - - 0 1 x",
      "# command \"setboard k7/4P3/8/8/8/8/8/4K3 w - - 0 1 x\" returned an error code ",
  };
  EXPECT_EQ(xboardSession("setboard k7/4P3/8/8/8/8/8/4K3 w - - 0 1 x\n"), expected);
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
      {"Error (cannot make a move at end of game)", "# command \"usermove a2a3\" returned an error code "},
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
                                 {"# command \"undo\" returned an error code "}});
  EXPECT_EQ(xboardSession("force\nusermove e2e4\nnew\nundo\n"), expected);
}

}  // namespace
}  // namespace torvy::testing
