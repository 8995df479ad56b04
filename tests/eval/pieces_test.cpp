#include "eval/pieces.h"

#include <gtest/gtest.h>

#include "board/geometry.h"
#include "eval/mobility.h"
#include "eval/packed_score.h"

#include "data_table.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

using PiecesTest = EvalFixture;

// Rows of data/queen_files.txt.
TEST_F(PiecesTest, QueenFileTermOnlyOnOpenFiles) {
  for (const testing::DataRow& row : testing::dataTable("queen_files.txt")) {
    const ScorePair queens = terms(row[0].c_str()).term(EvalTerm::Queens, White);
    const ScorePair file = queens - unpack(queenMobility(board, testing::squareNamed(row[1]), White));
    EXPECT_EQ(std::to_string(file.mg) + " " + std::to_string(file.eg), row[2]) << row[0];
  }
}

// The mobility is defined by walking the 0x88 board; the square sets must count the same.
TEST_F(PiecesTest, MobilityAgreesWithWalksOnTheBoard) {
  auto walk = [](const Board_0x88& b, Square88 s, const int* deltas, int count, bool slides) {
    int m = 0;
    for (int i = 0; i < count; ++i) {
      Square88 t = s + deltas[i];
      for (; slides && onBoard(t) && b.pieceOn[t] == NoPiece; t += deltas[i]) ++m;
      if (onBoard(t) && b.colorOn[t] != b.colorOn[s]) ++m;
    }
    return m;
  };
  int pieces = 0;
  playRandomGames(10, 3, [&](Board_0x88& b) {
    const Occupancy occupancy = Occupancy::of(b);
    for (Color c : {White, Black})
      for (Square88 s : b.pieceList[c]) {
        if (!onBoard(s)) continue;
        ++pieces;
        switch (b.pieceOn[s]) {
          case Knight: EXPECT_EQ(knightSquares(s, targetsOf(occupancy, c)), walk(b, s, knightDeltas, 8, false)); break;
          case Bishop:
            EXPECT_EQ(bishopSquares(s, occupancy.all, targetsOf(occupancy, c)), walk(b, s, bishopDeltas, 4, true));
            break;
          case Rook:
            EXPECT_EQ(rookSquares(s, occupancy.all, targetsOf(occupancy, c)), walk(b, s, rookDeltas, 4, true));
            break;
          case Queen:
            EXPECT_EQ(queenSquares(s, occupancy.all, targetsOf(occupancy, c)), walk(b, s, kingDeltas, 8, true));
            break;
          default: break;
        }
      }
  });
  EXPECT_GT(pieces, 10000);
}

}  // namespace
}  // namespace torvy
