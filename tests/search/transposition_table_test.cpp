#include <gtest/gtest.h>

#include <sstream>

#include "board/fen.h"
#include "search/transposition_table.h"

namespace torvy {
namespace {

class TranspositionTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::ostringstream sink;
    table.resize(1, "TT hash", sink);
    setStartPosition(board);
  }

  int probeScore(int alpha, int beta, int ply, int depth, bool expectCutoff = true) {
    int score = 0;
    Move move = NoMove;
    bool found = false;
    EXPECT_EQ(probeTT(board, table, alpha, beta, ply, depth, score, move, found), expectCutoff);
    EXPECT_TRUE(found);
    return score;
  }

  TranspositionTable table;
  Board_0x88 board;
};

TEST_F(TranspositionTableTest, OneMegabyteHoldsSixtyFiveThousandEntries) {
  EXPECT_EQ(table.entryCount, 65536u);
  EXPECT_EQ(table.indexMask, 65536u / 4 - 1);
}

TEST_F(TranspositionTableTest, MateScoresAreKeptRelativeToTheNode) {
  storeTT(board, table, -MateScore, MateScore, -MateScore, MateScore, 3, 5, 31995, NoMove);
  EXPECT_EQ(TTData::unpack(table.cluster(board.key())->data.load()).score, 31998);
  EXPECT_EQ(probeScore(-MateScore, MateScore, 7, 5), 31991);
  storeTT(board, table, -MateScore, MateScore, -MateScore, MateScore, 3, 5, 20000, NoMove);
  EXPECT_EQ(probeScore(-MateScore, MateScore, 9, 5), 20000) << "20000 itself is no mate score";
  storeTT(board, table, -MateScore, MateScore, -MateScore, MateScore, 3, 5, -20001, NoMove);
  EXPECT_EQ(probeScore(-MateScore, MateScore, 3, 5), -20001);
}

TEST_F(TranspositionTableTest, BoundsDecideTheCutoff) {
  storeTT(board, table, -MateScore, MateScore, 10, 20, 0, 4, 20, NoMove);  // fails high: lower bound
  EXPECT_EQ(probeScore(0, 20, 0, 4), 20);
  probeScore(0, 21, 0, 4, false);
  storeTT(board, table, -MateScore, MateScore, 10, 20, 0, 4, 10, NoMove);  // fails low: upper bound
  EXPECT_EQ(probeScore(10, 30, 0, 4), 10);
  probeScore(9, 30, 0, 4, false);
  storeTT(board, table, -MateScore, 25, 10, 20, 0, 4, 25, NoMove);  // at the mate limit: exact
  EXPECT_EQ(probeScore(-100, 0, 0, 4), 25);
}

TEST_F(TranspositionTableTest, ShallowEntryGivesItsMoveButNoCutoff) {
  const Move move = makeNormalMove(0x14, 0x34, true);
  storeTT(board, table, -MateScore, MateScore, -10, 10, 0, 3, 0, move);
  int score = 0;
  Move found = NoMove;
  bool hit = false;
  EXPECT_FALSE(probeTT(board, table, -10, 10, 0, 4, score, found, hit));
  EXPECT_TRUE(hit);
  EXPECT_EQ(found, move);
  storeTT(board, table, -MateScore, MateScore, -10, 10, 0, 1, 0, NoMove);
  found = NoMove;
  probeTT(board, table, -10, 10, 0, 1, score, found, hit);
  EXPECT_EQ(found, NoMove) << "a store without a move overwrites the old move";
}

TEST_F(TranspositionTableTest, ReplacementPrefersOwnKeyThenFreeThenShallowAndOld) {
  TTEntry* cluster = table.cluster(board.key());
  const Key key = board.key();
  auto fill = [&](int slot, Key k, int depth, int age) {
    cluster[slot].key.store(k);
    TTData data;
    data.depth = std::uint8_t(depth);
    data.age = std::uint8_t(age);
    data.bound = BoundExact;
    cluster[slot].data.store(data.pack());
  };
  fill(0, key ^ 1, 9, 0);
  fill(2, key, 9, 0);
  storeTT(board, table, -MateScore, MateScore, -1, 1, 0, 2, 0, NoMove);
  EXPECT_EQ(TTData::unpack(cluster[2].data.load()).depth, 2) << "own key first, even when deeper";
  EXPECT_TRUE(cluster[1].isEmpty());

  fill(1, key ^ 2, 5, 0);
  fill(2, key ^ 3, 5, 7);
  fill(3, key ^ 4, 6, 0);
  storeTT(board, table, -MateScore, MateScore, -1, 1, 0, 2, 0, NoMove);
  EXPECT_EQ(cluster[2].key.load(), key) << "of equal depths the later root goes first";
}

}  // namespace
}  // namespace torvy
