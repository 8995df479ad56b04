#include "board/draw_rules.h"
#include "board_helpers.h"

namespace torvy {
namespace {

using testing::boardFrom;

DrawCode codeOf(Board_0x88& board, bool expectedDrawn) {
  DrawCode code = NoDrawCode;
  EXPECT_EQ(drawStatus(board, code), expectedDrawn);
  return code;
}

TEST(DrawRules, FiftyMovesAndMaterial) {
  EXPECT_EQ(codeOf(*boardFrom("4k3/8/8/8/8/8/4P3/4K3 w - - 100 80"), true), FiftyMoveDraw);
  codeOf(*boardFrom("4k3/8/8/8/8/8/4P3/4K3 w - - 99 80"), false);
  for (const char* fen :
       {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/3BK3 w - - 0 1", "3nk3/8/8/8/8/8/8/4K3 w - - 0 1"})
    EXPECT_EQ(codeOf(*boardFrom(fen), true), InsufficientMaterialDraw) << fen;
  // Two knights or two bishops of one side, or a minor piece each, are enough to go on.
  for (const char* fen :
       {"3nk3/8/8/8/8/8/8/3NK3 w - - 0 1", "2bbk3/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/2NNK3 w - - 0 1"})
    codeOf(*boardFrom(fen), false);
}

// The second occurrence counts as drawn, the third is a repetition. The scan ends at a null
// move, and stays inside the stack when the clock counts moves from before the set-up.
TEST(DrawRules, RepetitionsCountUpAndStopAtIrreversibleMoves) {
  auto board = boardFrom(StartFen);
  testing::play(*board, {"g1f3", "g8f6", "f3g1"});
  codeOf(*board, false);
  testing::play(*board, {"f6g8"});
  EXPECT_EQ(codeOf(*board, true), NoDrawCode);
  testing::play(*board, {"g1f3", "g8f6", "f3g1", "f6g8"});
  EXPECT_EQ(codeOf(*board, true), RepetitionDraw);

  auto nullMoves = boardFrom(StartFen);
  testing::play(*nullMoves, {"g1f3", "g8f6", "f3g1"});
  UndoRecord undo;
  nullMoves->makeNullMove(undo);
  testing::play(*nullMoves, {"g1f3"});
  nullMoves->makeNullMove(undo);
  codeOf(*nullMoves, false);

  auto setUp = boardFrom("4k3/8/8/8/8/8/8/R3K3 w - - 40 60");
  codeOf(*setUp, false);
  testing::play(*setUp, {"a1a2", "e8f8", "a2a1"});
  codeOf(*setUp, false);
}

// A new killer pushes the first one down, even when it is the same move; a capture is no killer.
TEST(DrawRules, MoveQuestionsAndKillers) {
  auto board = boardFrom("r3k3/1P6/8/8/8/8/8/R3K2R w K - 0 1");
  const Move quiet = makeNormalMove(sq::a1, sq::a2);
  EXPECT_TRUE(isQuietMove(*board, quiet));
  EXPECT_TRUE(isQuietMove(*board, WhiteCastleKingSide));
  EXPECT_FALSE(isQuietMove(*board, makeNormalMove(sq::a1, sq::a8)));
  EXPECT_FALSE(isQuietMove(*board, makePromotion(sq::b7, sq::b8, Queen)));
  EXPECT_TRUE(isPawnToSeventh(*boardFrom("4k3/8/1P6/8/8/8/8/4K3 w - - 0 1"), makeNormalMove(sq::b6, sq::b7)));
  updateKillers(*board, quiet);
  updateKillers(*board, makeNormalMove(sq::a1, sq::a8));
  updateKillers(*board, quiet);
  EXPECT_EQ(board->history[0].killer1, quiet);
  EXPECT_EQ(board->history[0].killer2, quiet);
}

}  // namespace
}  // namespace torvy
