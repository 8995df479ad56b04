// The generation-order form of the selector that perft walks the tree with; perft counts and
// divide's move order cover its plain stages, which know no PV move.
#include <gtest/gtest.h>

#include "../board/board_helpers.h"
#include "search/move_selector.h"

namespace torvy::testing {
namespace {

TEST(MoveSelectorAsGenerated, APvMoveThatIsTheOnlyLegalMoveComesOutOnce) {
  // A single legal move (a8b8) that is also the PV move: the generated stage skips it.
  auto board = boardFrom("k7/8/PK6/8/8/8/8/8 b - - 0 1");
  const auto legal = legalMoveTexts(*board);
  ASSERT_EQ(legal.size(), 1u);
  MoveSelector selector;
  selector.initFull<Black>(SelectInCheck, *board, legalMove(*board, legal[0].c_str()));
  std::vector<std::string> texts;
  for (Move m = selector.nextAsGenerated<Black>(); !isNoMove(m); m = selector.nextAsGenerated<Black>())
    texts.push_back(moveToText(m));
  EXPECT_EQ(texts, legal);
  EXPECT_EQ(selector.nextAsGenerated<Black>(), NoMove) << "behind the last stage it stays empty";
}

}  // namespace
}  // namespace torvy::testing
