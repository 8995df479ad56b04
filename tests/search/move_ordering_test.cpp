// The order in which the selector hands out moves, and the test that tells a losing capture.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../board/board_helpers.h"
#include "data_table.h"
#include "eval/evaluate.h"
#include "search/capture_safety.h"
#include "search/move_selector.h"

namespace torvy::testing {
namespace {

std::vector<std::string> drainScored(MoveSelector& selector) {
  std::vector<std::string> texts;
  for (Move m = selector.next<White>(); !isNoMove(m); m = selector.next<White>()) texts.push_back(moveToText(m));
  return texts;
}

std::size_t place(const std::vector<std::string>& texts, const std::string& move) {
  return std::size_t(std::find(texts.begin(), texts.end(), move) - texts.begin());
}

TEST(MoveOrdering, HashMoveOnceThenGoodCapturesThenKillersWithLosingCapturesAmongQuietMoves) {
  initEvaluation();
  // Knight takes rook (a pawn defends it, but the classes favour the knight), knight takes a
  // loose pawn, queen takes the pawn-defended rook: a losing capture.
  auto board = boardFrom("4k3/8/4p3/1p1r4/8/2N5/8/3QK3 w - - 0 1");
  board->history[board->historyIndex].killer1 = legalMove(*board, "c3e4");
  MoveSelector selector;
  selector.init<White>(SelectNormal, *board, CheckInfo{}, NoMove);
  selector.hashMove = legalMove(*board, "e1f2");
  const auto texts = drainScored(selector);
  EXPECT_EQ(texts.size(), legalMoveTexts(*board).size());
  ASSERT_GE(texts.size(), 5u);
  EXPECT_EQ(texts[0], "e1f2");
  EXPECT_EQ(std::count(texts.begin(), texts.end(), "e1f2"), 1);
  EXPECT_EQ(texts[1], "c3d5") << "the bigger victim first";
  EXPECT_EQ(texts[2], "c3b5");
  EXPECT_EQ(texts[3], "c3e4") << "the killer right behind the good captures";
  EXPECT_GT(place(texts, "d1d5"), 3u);

  // Quiescence orders its captures by victim and attacker alone.
  selector.init<White>(SelectCaptures, *board, CheckInfo{}, NoMove);
  EXPECT_EQ(drainScored(selector), (std::vector<std::string>{"c3d5", "d1d5", "c3b5"}));
}

TEST(MoveOrdering, UnfitHashAndPvMovesAreNeverGiven) {
  initEvaluation();
  auto board = boardFrom(StartFen);
  MoveSelector selector;
  selector.init<White>(SelectNormal, *board, CheckInfo{}, makeNormalMove(sq::a1, sq::a8));
  selector.hashMove = makeNormalMove(sq::d1, sq::d8);
  ::testing::internal::CaptureStdout();
  const auto texts = drainScored(selector);
  const std::string printed = ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(texts.size(), 20u);
  EXPECT_EQ(place(texts, "a1a8"), texts.size());
  EXPECT_EQ(printed.rfind("# hash collision:  d1d8", 0), 0u) << printed;
}

// A capture of a lower class loses when a pawn defends the victim, or a knight does against a
// queen or a rook that takes a pawn. Other defenders are not looked at; a king never loses.
TEST(CaptureSafety, LowerClassDefendersMakeACaptureLose) {
  for (const DataRow& row : dataTable("losing_captures.txt")) {
    const Move capture = makeNormalMove(squareNamed(row[1]), squareNamed(row[1].substr(2)));
    int gain = 0;
    EXPECT_EQ(isLosingCapture<White>(*boardFrom(row[0].c_str()), capture, gain), row[2] == "loses") << row[0];
  }
}

// A capture gains its victim's value, a promotion the new piece's less a pawn's, whatever it takes.
TEST(CaptureSafety, GainsOfCapturesAndPromotions) {
  auto board = boardFrom("1r2k3/P7/8/2p5/3P4/8/8/4K3 w - - 0 1");
  int gain = 0;
  EXPECT_FALSE(isLosingCapture<White>(*board, makeNormalMove(sq::d4, sq::c5), gain));
  EXPECT_EQ(gain, 125);
  EXPECT_FALSE(isLosingCapture<White>(*board, makePromotion(sq::a7, sq::a8, Queen), gain));
  EXPECT_EQ(gain, 1000);
  EXPECT_FALSE(isLosingCapture<White>(*board, makePromotion(sq::a7, sq::b8, Knight), gain));
  EXPECT_EQ(gain, 275);
}

}  // namespace
}  // namespace torvy::testing
