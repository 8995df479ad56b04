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

  // A store whose score bounds are the mate limits unless the upper one is given.
  void store(int alpha, int beta, int ply, int depth, int score, Move move = NoMove, int upper = MateScore) {
    storeTT(board, table, -MateScore, upper, alpha, beta, ply, depth, score, move);
  }

  int probeScore(int alpha, int beta, int ply, int depth, bool expectCutoff = true) {
    int score = 0;
    bool found = false;
    probedMove = NoMove;
    EXPECT_EQ(probeTT(board, table, alpha, beta, ply, depth, score, probedMove, found), expectCutoff);
    EXPECT_TRUE(found);
    return score;
  }

  TranspositionTable table;
  Board_0x88 board;
  Move probedMove = NoMove;
};

// Mate scores are stored as distances from the node, so a probe at another ply shifts them.
TEST_F(TranspositionTableTest, MateScoresAreKeptRelativeToTheNode) {
  store(-MateScore, MateScore, 3, 5, 31995);
  EXPECT_EQ(TTData::unpack(table.cluster(board.key())->data.load()).score, 31998);
  EXPECT_EQ(probeScore(-MateScore, MateScore, 7, 5), 31991);
  store(-MateScore, MateScore, 3, 5, 20000);
  EXPECT_EQ(probeScore(-MateScore, MateScore, 9, 5), 20000) << "20000 itself is no mate score";
  store(-MateScore, MateScore, 3, 5, -20001);
  EXPECT_EQ(probeScore(-MateScore, MateScore, 3, 5), -20001);
}

// A fail high stores a lower bound, a fail low an upper bound, and a score at a limit is exact.
// An entry too shallow for a cutoff still gives its move, and a store without a move clears it.
TEST_F(TranspositionTableTest, BoundsAndDepthDecideTheCutoff) {
  store(10, 20, 0, 4, 20);
  EXPECT_EQ(probeScore(0, 20, 0, 4), 20);
  probeScore(0, 21, 0, 4, false);
  store(10, 20, 0, 4, 10);
  EXPECT_EQ(probeScore(10, 30, 0, 4), 10);
  probeScore(9, 30, 0, 4, false);
  store(10, 20, 0, 4, 25, NoMove, 25);
  EXPECT_EQ(probeScore(-100, 0, 0, 4), 25);

  const Move move = makeNormalMove(sq::e2, sq::e4, true);
  store(-10, 10, 0, 3, 0, move);
  probeScore(-10, 10, 0, 4, false);
  EXPECT_EQ(probedMove, move);
  store(-10, 10, 0, 1, 0);
  probeScore(-10, 10, 0, 1);
  EXPECT_EQ(probedMove, NoMove);
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
  store(-1, 1, 0, 2, 0);
  EXPECT_EQ(TTData::unpack(cluster[2].data.load()).depth, 2) << "own key first, even when deeper";
  EXPECT_TRUE(cluster[1].isEmpty());

  fill(1, key ^ 2, 5, 0);
  fill(2, key ^ 3, 5, 7);
  fill(3, key ^ 4, 6, 0);
  store(-1, 1, 0, 2, 0);
  EXPECT_EQ(cluster[2].key.load(), key) << "of equal depths the later root goes first";
}

void fill(TranspositionTable& table) {
  for (std::uint32_t i = 0; i < table.entryCount; ++i) table.at(i).key.store(i + 1);
}

bool allEmpty(TranspositionTable& table) {
  for (std::uint32_t i = 0; i < table.entryCount; ++i)
    if (!table.at(i).isEmpty()) return false;
  return true;
}

// A table made again keeps nothing of the one before, whether its memory is reused (same size)
// or not, and whether the old one was released first (as "new" does) or not (as "hash" does).
TEST(TranspositionTableMemory, ATableMadeAgainIsEmpty) {
  std::ostringstream sink;
  TranspositionTable table;
  table.resize(1, "TT hash", sink);
  fill(table);
  table.release();
  EXPECT_FALSE(table.exists());
  table.resize(1, "TT hash", sink);
  EXPECT_EQ(table.entryCount, 65536u);
  EXPECT_TRUE(allEmpty(table));

  fill(table);
  table.resize(1, "TT hash", sink);
  EXPECT_TRUE(allEmpty(table));

  fill(table);
  table.release();
  table.resize(2, "TT hash", sink);
  EXPECT_EQ(table.entryCount, 131072u);
  EXPECT_EQ(table.indexMask, 131072u / 4 - 1);
  EXPECT_TRUE(allEmpty(table));
}

}  // namespace
}  // namespace torvy
