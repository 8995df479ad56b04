#include "tablebase/tablebase_state.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "board/board_helpers.h"
#include "tablebase/dtm_value.h"
#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

// The real 3-man tables show White's short mates; these are Black's, the long distances, the
// score of a side that is mated, and the code that has no score.
TEST(TablebaseValueTest, StoredBytesDecodeAndBecomeScoresForTheSideToMove) {
  struct Byte {
    std::uint8_t byte;
    Color side;
    unsigned code;
    unsigned plies;
  };
  for (const Byte& b : {Byte{4 * 5 + 2, White, ResultBlackMates, 10}, Byte{4 * 5 + 2, Black, ResultBlackMates, 11},
                        // Past 126 plies the unused combinations take over, and 252 breaks the rule once.
                        Byte{4, White, ResultWhiteMates, 129}, Byte{7, Black, ResultWhiteMates, 128},
                        Byte{252, White, ResultWhiteMates, 253}, Byte{252, Black, ResultWhiteMates, 254}}) {
    EXPECT_EQ(dtmCode(StoredByteValues[b.side][b.byte]), b.code) << int(b.byte) << " side " << int(b.side);
    EXPECT_EQ(dtmPlies(StoredByteValues[b.side][b.byte]), b.plies) << int(b.byte) << " side " << int(b.side);
  }
  int value = 0;
  EXPECT_TRUE(tablebaseScore(White, ResultBlackMates, 9, value));
  EXPECT_EQ(value, -31991);
  EXPECT_FALSE(tablebaseScore(Black, ResultForbidden, 0, value));
}

using testing::boardFrom;

TEST(TablebaseValueTest, ProbeRecordListsTheMenAndRecodesCastlingAndEnPassant) {
  const TablebaseProbe probe = probeRecordOf(*boardFrom("4k3/8/8/3pP3/8/8/8/R3K2R w KQ d6 0 1"), White);
  EXPECT_EQ(probe.epSquare, 43u);
  EXPECT_EQ(probe.castling, ProbeWhiteKingSide | ProbeWhiteQueenSide);
  EXPECT_EQ(std::multiset(probe.whiteSquares.begin(), probe.whiteSquares.begin() + 5),
            (std::multiset<std::uint32_t>{0, 4, 7, 36, NoTableSquare}));
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
