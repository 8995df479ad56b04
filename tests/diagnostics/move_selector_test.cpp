// The generation-order form of the selector that perft walks the tree with.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../board/board_helpers.h"
#include "search/move_selector.h"

namespace torvy::testing {
namespace {

template <Color Us>
std::vector<std::string> drain(MoveSelector& selector) {
  std::vector<std::string> texts;
  for (Move m = selector.nextAsGenerated<Us>(); !isNoMove(m); m = selector.nextAsGenerated<Us>())
    texts.push_back(moveToText(m));
  return texts;
}

TEST(MoveSelectorAsGenerated, SelectAllGivesTheLegalMovesInGenerationOrderThenNone) {
  for (const char* fen : {StartFen, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1",
                          "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1"}) {
    auto board = boardFrom(fen);
    forSide(board->sideToMove, [&](auto us) {
      MoveSelector selector;
      selector.initFull<us()>(SelectAll, *board, NoMove);
      EXPECT_EQ(drain<us()>(selector), legalMoveTexts(*board)) << fen;
      EXPECT_EQ(selector.nextAsGenerated<us()>(), NoMove) << "behind the last stage it stays empty";
    });
  }
}

TEST(MoveSelectorAsGenerated, InCheckGivesExactlyTheEvasions) {
  // The queen on e2 checks along the file; the knight can take her, the king can step aside.
  auto board = boardFrom("4k3/8/8/8/8/8/4q3/3NK2N w - - 0 1");
  CheckInfo check;
  ASSERT_TRUE(findCheck<White>(*board, check));
  MoveSelector selector;
  selector.init<White>(SelectInCheck, *board, check, NoMove);
  EXPECT_EQ(drain<White>(selector), legalMoveTexts(*board));
}

TEST(MoveSelectorAsGenerated, APvMoveThatIsTheOnlyLegalMoveComesOutOnce) {
  // A single legal move (a8b8) that is also the PV move: the generated stage skips it.
  auto board = boardFrom("k7/8/PK6/8/8/8/8/8 b - - 0 1");
  const auto legal = legalMoveTexts(*board);
  ASSERT_EQ(legal.size(), 1u);
  MoveSelector selector;
  selector.initFull<Black>(SelectInCheck, *board, legalMove(*board, legal[0].c_str()));
  EXPECT_EQ(drain<Black>(selector), legal);
}

}  // namespace
}  // namespace torvy::testing
