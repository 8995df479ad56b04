#include "tablebase/tablebase_state.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "board/board_helpers.h"
#include "data_table.h"
#include "tablebase/dtm_value.h"
#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

// The real 3-man tables show White's short mates; data/stored_bytes.txt has Black's and the long
// distances. Then the score of a side that is mated, and the code that has no score.
TEST(TablebaseValueTest, StoredBytesDecodeAndBecomeScoresForTheSideToMove) {
  for (const testing::DataRow& row : testing::dataTable("stored_bytes.txt")) {
    const DtmValue value = StoredByteValues[row[1] == "white" ? White : Black][std::stoi(row[0])];
    EXPECT_EQ(dtmCode(value), row[2] == "white mates" ? ResultWhiteMates : ResultBlackMates) << row[0] << " " << row[1];
    EXPECT_EQ(dtmPlies(value), unsigned(std::stoi(row[3]))) << row[0] << " " << row[1];
  }
  int value = 0;
  EXPECT_TRUE(tablebaseScore(White, ResultBlackMates, 9, value));
  EXPECT_EQ(value, -31991);
  EXPECT_FALSE(tablebaseScore(Black, ResultForbidden, 0, value));
}

// A square as the probe numbers it.
std::uint32_t tableSquare(Square88 s) { return toSquare64(s); }

using testing::boardFrom;

TEST(TablebaseValueTest, ProbeRecordListsTheMenAndRecodesCastlingAndEnPassant) {
  const TablebaseProbe probe = probeRecordOf(*boardFrom("4k3/8/8/3pP3/8/8/8/R3K2R w KQ d6 0 1"), White);
  EXPECT_EQ(probe.epSquare, tableSquare(sq::d6));
  EXPECT_EQ(probe.castling, ProbeWhiteKingSide | ProbeWhiteQueenSide);
  EXPECT_EQ(std::multiset(probe.whiteSquares.begin(), probe.whiteSquares.begin() + 5),
            (std::multiset{tableSquare(sq::a1), tableSquare(sq::e1), tableSquare(sq::h1), tableSquare(sq::e5),
                           NoTableSquare}));
  EXPECT_EQ(probe.whitePieces[4], 0);
  EXPECT_EQ(probe.blackSquares[2], NoTableSquare);
  EXPECT_EQ(probeRecordOf(*boardFrom("r3k2r/8/8/8/8/8/8/4K3 b k - 0 1"), Black).castling, ProbeBlackKingSide);
  EXPECT_EQ(probeRecordOf(*boardFrom("r3k2r/8/8/8/8/8/8/4K3 b q - 0 1"), Black).castling, ProbeBlackQueenSide);
}

class TablebaseStateTest : public testing::InstalledTablesTest {
 protected:
  void TearDown() override { state.setup("none", "", 0); }

  std::string tables = testing::installedTableFolder(4).string();
  TablebaseState state;
};

// Only "gaviota" sets the tables up; the folders are searched in order, and each set-up starts
// with an empty cache.
TEST_F(TablebaseStateTest, AnswersOnlyOnceSetUpForGaviota) {
  const auto queenBoard = boardFrom("k7/8/1K6/8/8/8/8/6Q1 w - - 0 1");
  const Board_0x88& queenMates = *queenBoard;
  int value = 7;
  EXPECT_FALSE(state.probeHard<White>(queenMates, value));
  state.setup("nalimov", tables, 16);
  EXPECT_FALSE(state.initialised);
  EXPECT_TRUE(state.paths.empty());
  EXPECT_FALSE(state.probeHard<White>(queenMates, value));
  EXPECT_EQ(value, 7);

  state.setup("gaviota", "/nowhere;" + tables, 1);
  ASSERT_TRUE(state.initialised);
  EXPECT_EQ(state.paths, (PathList{"/nowhere", tables}));
  EXPECT_FALSE(state.probeSoft<White>(queenMates, value));
  EXPECT_TRUE(state.probeHard<White>(queenMates, value));
  EXPECT_EQ(value, 31999);
  EXPECT_TRUE(state.probeSoft<White>(queenMates, value));
  EXPECT_TRUE(state.probeHard<Black>(*boardFrom("6q1/8/8/8/8/1k6/8/K7 b - - 0 1"), value)) << "colours swapped";
  EXPECT_EQ(value, 31999);
  state.setup("gaviota", "/nowhere;" + tables, 1);
  EXPECT_FALSE(state.probeSoft<White>(queenMates, value)) << "setting the same path again empties the cache";
}

}  // namespace
}  // namespace torvy
