// The real 3-man tables against the rules of chess, checked with the engine's own moves: every
// position's value is what its best move leads to, one ply further away.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "board/board_helpers.h"
#include "tablebase/table_fixtures.h"
#include "tablebase/tablebase_state.h"

namespace torvy {
namespace {

constexpr int Mated = -32000;

// The value of a position for the side to move, from the value of a reply for the opponent.
int throughReply(int reply) {
  if (reply < 0) return -reply - 1;  // the opponent is mated: we mate one ply later
  if (reply > 0) return -reply + 1;  // the opponent mates: we are mated one ply later
  return 0;
}

// What the moves of the position say its value must be: mated or stalemated without moves, else
// the best reply's value; ok is false when a reply has no value.
template <Color Us>
int valueByMoves(const TablebaseState& tables, Board_0x88& board, bool& ok) {
  MoveList moves;
  generateLegalMoves(board, moves);
  ok = true;
  if (moves.count == 0) {
    CheckInfo check;
    return findCheck<Us>(board, check) ? Mated : 0;
  }
  int best = Mated - 1;
  for (std::uint32_t i = 0; i < moves.count && ok; ++i) {
    UndoRecord undo;
    board.makeMove<Us>(moves[i], undo);
    int reply = 0;
    ok = tables.probeHard<opposite(Us)>(board, reply);
    best = std::max(best, throughReply(reply));
    board.unmakeMove<Us>(moves[i], undo);
  }
  return best;
}

class TablebaseRulesTest : public testing::InstalledTablesTest {
 protected:
  void SetUp() override {
    testing::InstalledTablesTest::SetUp();
    if (IsSkipped()) return;
    tables.setup("gaviota", testing::installedTableFolder(4).string(), 16);
    ASSERT_TRUE(tables.initialised);
  }
  void TearDown() override { tables.setup("none", "", 0); }

  // Every legal placement of the two kings and White's man, both sides to move.
  void checkEndgame(PieceType man) {
    auto board = std::make_unique<Board_0x88>();
    int checked = 0;
    for (int wk = 0; wk < 64; ++wk)
      for (int bk = 0; bk < 64; ++bk)
        for (int sq = 0; sq < 64; ++sq) {
          if (wk == bk || wk == sq || bk == sq || (man == Pawn && (sq < 8 || sq >= 56))) continue;
          for (Color side : {White, Black}) {
            board->clear();
            board->addPiece(toSquare88(Square64(wk)), King, White);
            board->addPiece(toSquare88(Square64(bk)), King, Black);
            board->addPiece(toSquare88(Square64(sq)), man, White);
            board->sideToMove = side;
            forSideToMove(*board, [&]<Color Us>() {
              // With the opponent in check it is no position of a game; the tables call it forbidden.
              CheckInfo check;
              if (isKingAttacked<opposite(Us)>(*board, check)) return;
              int stored = 0;
              bool replied = false;
              const bool probed = tables.probeHard<Us>(*board, stored);
              const int derived = valueByMoves<Us>(tables, *board, replied);
              ASSERT_TRUE(probed && replied) << "no value for wk " << wk << " bk " << bk << " man " << sq;
              ASSERT_EQ(stored, derived) << "wk " << wk << " bk " << bk << " man " << sq << " side " << int(side);
              ++checked;
            });
            if (HasFatalFailure()) return;
          }
        }
    EXPECT_GT(checked, 300000);
  }

  TablebaseState tables;
};

TEST_F(TablebaseRulesTest, KingAndQueen) { checkEndgame(Queen); }
TEST_F(TablebaseRulesTest, KingAndRook) { checkEndgame(Rook); }
TEST_F(TablebaseRulesTest, KingAndBishop) { checkEndgame(Bishop); }
TEST_F(TablebaseRulesTest, KingAndKnight) { checkEndgame(Knight); }
TEST_F(TablebaseRulesTest, KingAndPawn) { checkEndgame(Pawn); }

}  // namespace
}  // namespace torvy
