#include "tablebase/tablebase_state.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "board/fen.h"
#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

TEST(TablebaseScoreTest, MatesBecomeMateScoresForTheSideToMove) {
  struct Case {
    Color side;
    unsigned code, plies;
    bool ok;
    int value;
  };
  for (const Case& c : {Case{White, ResultWhiteMates, 9, true, 31991}, Case{Black, ResultWhiteMates, 9, true, -31991},
                        Case{Black, ResultBlackMates, 0, true, 32000}, Case{White, ResultDraw, 0, true, 0},
                        Case{White, ResultForbidden, 0, false, 0}, Case{White, 7, 0, false, 0}}) {
    int value = 0;
    EXPECT_EQ(tablebaseScore(c.side, c.code, c.plies, value), c.ok) << c.code;
    EXPECT_EQ(value, c.value) << c.code << " for " << int(c.side);
  }
}

Board_0x88 boardOf(const char* fen) {
  Board_0x88 board;
  EXPECT_TRUE(setFromFen(board, fen)) << fen;
  return board;
}

TEST(ProbeRecordTest, ListsTheMenAndRecodesCastlingAndEnPassant) {
  const Board_0x88 board = boardOf("4k3/8/8/3pP3/8/8/8/R3K2R w KQ d6 0 1");
  const TablebaseProbe probe = probeRecordOf(board, White);
  EXPECT_EQ(probe.sideToMove, 0u);
  EXPECT_EQ(probe.epSquare, 43u);
  EXPECT_EQ(probe.castling, ProbeWhiteKingSide | ProbeWhiteQueenSide);
  EXPECT_EQ(probe.whitePieces[0], King);
  EXPECT_EQ(probe.whiteSquares[0], 4u);
  EXPECT_EQ(probe.whiteSquares[4], NoTableSquare);
  EXPECT_EQ(probe.whitePieces[4], 0);
  EXPECT_EQ(probe.blackSquares[2], NoTableSquare);
  std::multiset<std::uint32_t> whiteMen(probe.whiteSquares.begin(), probe.whiteSquares.begin() + 4);
  EXPECT_EQ(whiteMen, (std::multiset<std::uint32_t>{0, 4, 7, 36}));

  EXPECT_EQ(probeRecordOf(boardOf("4k2r/8/8/8/8/8/8/4K3 b k - 0 1"), Black).castling, ProbeBlackKingSide);
  EXPECT_EQ(probeRecordOf(boardOf("r3k3/8/8/8/8/8/8/4K3 b q - 0 1"), Black).castling, ProbeBlackQueenSide);
  EXPECT_EQ(probeRecordOf(boardOf("4k3/8/8/8/8/8/8/4K3 w - - 0 1"), White).epSquare, NoTableSquare);
}

constexpr const char* QueenMatesInOne = "k7/8/1K6/8/8/8/8/6Q1 w - - 0 1";
constexpr const char* QueenMatesInOneAsBlack = "6q1/8/8/8/8/1k6/8/K7 b - - 0 1";

class TablebaseStateTest : public testing::InstalledTablesTest {
 protected:
  void TearDown() override { state.setup("none", "", 0); }

  std::string tables = testing::installedTableFolder(4).string();
  TablebaseState state;
};

TEST_F(TablebaseStateTest, AnswersOnlyOnceSetUpForGaviota) {
  int value = 7;
  EXPECT_FALSE(state.probeHard<White>(boardOf(QueenMatesInOne), value));
  state.setup("nalimov", tables, 16);
  EXPECT_FALSE(state.initialised);
  EXPECT_TRUE(state.paths.empty());
  EXPECT_FALSE(state.probeHard<White>(boardOf(QueenMatesInOne), value));
  EXPECT_EQ(value, 7);
  state.setup("gaviota", tables, 0);
  ASSERT_TRUE(state.initialised);
  EXPECT_TRUE(state.probeHard<White>(boardOf(QueenMatesInOne), value));
  EXPECT_EQ(value, 31999);
  EXPECT_TRUE(state.probeHard<Black>(boardOf(QueenMatesInOneAsBlack), value)) << "Black's queen: colours swapped";
  EXPECT_EQ(value, 31999);
}

TEST_F(TablebaseStateTest, SearchesTheFoldersInOrderAndStartsEmptyEachTime) {
  state.setup("gaviota", "/nowhere;" + tables, 1);
  EXPECT_EQ(state.paths, (PathList{"/nowhere", tables}));
  const Board_0x88 board = boardOf(QueenMatesInOne);
  int value = 0;
  EXPECT_FALSE(state.probeSoft<White>(board, value));
  EXPECT_TRUE(state.probeHard<White>(board, value));
  EXPECT_TRUE(state.probeSoft<White>(board, value));
  state.setup("gaviota", "/nowhere;" + tables, 1);
  EXPECT_FALSE(state.probeSoft<White>(board, value)) << "setting the same path again empties the cache";
  EXPECT_TRUE(state.probeHard<White>(board, value));
}

}  // namespace
}  // namespace torvy
