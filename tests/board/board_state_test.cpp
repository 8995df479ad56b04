#include <cstdlib>
#include <cstring>
#include <random>

#include "board/draw_rules.h"
#include "board_helpers.h"
#include "data_table.h"

namespace torvy {
namespace {

using testing::boardFrom;
using testing::expectSamePosition;

void expectInvariants(const Board_0x88& board) {
  std::uint8_t counts[2][8] = {};
  for (int s = 0; s < 120; ++s) {
    if (!onBoard(s) || board.pieceOn[s] == NoPiece) continue;
    const Color c = board.colorOn[s];
    ASSERT_EQ(board.pieceList[c][board.slotOn[s]], s);
    ++counts[c][board.pieceOn[s]];
    ++counts[c][TotalCountIndex];
  }
  for (Color c : {White, Black}) {
    for (Square88 s : board.pieceList[c])
      if (s != NoSquare) {
        ASSERT_EQ(board.colorOn[s], c);
      }
    for (int t = Pawn; t <= TotalCountIndex; ++t) ASSERT_EQ(board.pieceCount[c][t], counts[c][t]) << int(t);
    ScorePair sum;
    for (Square88 s : board.pieceList[c])
      if (s != NoSquare) sum += pieceSquareOf(c, board.pieceOn[s], s);
    ASSERT_EQ(board.psq[c], sum);
  }
  ASSERT_EQ(board.key(), board.computeKey());
  ASSERT_EQ(board.pawnKey(), board.computePawnKey());
}

// Gives the piece-square table random values for the life of a test, so that the
// incremental sums are checked against something other than zeros.
class RandomPieceSquare {
 public:
  RandomPieceSquare() {
    std::memcpy(saved_, pieceSquare, sizeof saved_);
    std::mt19937 random(7);
    for (auto& colour : pieceSquare)
      for (auto& piece : colour)
        for (ScorePair& p : piece)
          p = ScorePair{std::int16_t(random() % 200 - 100), std::int16_t(random() % 200 - 100)};
  }
  ~RandomPieceSquare() { std::memcpy(pieceSquare, saved_, sizeof saved_); }

 private:
  ScorePair saved_[2][6][64];
};

const char* const variedPositions[] = {
    StartFen,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "rnbqkb1r/ppppp1pp/7n/4Pp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
};

TEST(BoardState, EveryMakeUnmakePairRestoresEveryFieldAndKeysFollowTheMoves) {
  RandomPieceSquare tables;
  std::mt19937 random(42);
  for (const char* fen : variedPositions) {
    auto board = boardFrom(fen);
    for (int ply = 0; ply < 200; ++ply) {
      expectInvariants(*board);
      MoveList list;
      generateLegalMoves(*board, list);
      if (list.count == 0) break;
      board->lightKeys[board->lightIndex] = board->key();  // the light pair keys its own stack
      auto before = std::make_unique<Board_0x88>();
      *before = *board;
      for (std::uint32_t i = 0; i < list.count; ++i) {
        forSideToMove(*board, [&]<Color Us>() {
          UndoRecord undo;
          board->makeMove<Us>(list[i], undo);
          expectInvariants(*board);
          board->unmakeMove<Us>(list[i], undo);
          expectSamePosition(*board, *before);
          board->makeMoveLight<Us>(list[i], undo);
          EXPECT_EQ(board->lightKeys[board->lightIndex], board->computeKey());
          board->unmakeMoveLight<Us>(list[i], undo);
          expectSamePosition(*board, *before);
          board->makeMoveTest<Us>(list[i], undo);
          board->unmakeMoveTest<Us>(list[i], undo);
          expectSamePosition(*board, *before);
        });
      }
      UndoRecord undo;
      board->makeNullMove(undo);
      EXPECT_EQ(board->halfmoveClock, 0);
      EXPECT_EQ(board->epSquare, NoSquare);
      EXPECT_EQ(board->key(), board->computeKey());
      board->unmakeNullMove(undo);
      expectSamePosition(*board, *before);
      const Move chosen = list[random() % list.count];
      forSideToMove(*board, [&]<Color Us>() { board->makeMove<Us>(chosen, undo); });
      if (board->historyIndex > 1000) break;
    }
  }
}

// Rows of data/moves_to_fen.txt: a position, moves, and the FEN of the position they lead to.
TEST(BoardState, MovesLeadToThePositionOfTheirFen) {
  for (const testing::DataRow& row : testing::dataTable("moves_to_fen.txt")) {
    SCOPED_TRACE(row[2]);
    auto played = boardFrom(row[0].c_str());
    std::istringstream moves(row[1]);
    for (std::string move; moves >> move;) testing::play(*played, {move.c_str()});
    auto expected = boardFrom(row[2].c_str());
    EXPECT_EQ(0, std::memcmp(played->pieceOn, expected->pieceOn, sizeof played->pieceOn));
    EXPECT_EQ(played->castlingRights, expected->castlingRights);
    EXPECT_EQ(played->epSquare, expected->epSquare);
    EXPECT_EQ(played->halfmoveClock, expected->halfmoveClock);
    EXPECT_EQ(played->key(), expected->key());
    EXPECT_EQ(played->pawnKey(), expected->pawnKey());
  }
}

}  // namespace
}  // namespace torvy
