#include "tablebase/tablebase_cache.h"

#include <gtest/gtest.h>

#include <string>

#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

using testing::Bytes;

constexpr std::uint64_t MB = 1 << 20;
constexpr int WhiteToMove = 0;
constexpr int BlackToMove = 1;

// The stored byte of each position in the hand-made tables, different per side and block.
std::uint8_t storedByte(int side, std::uint32_t index) { return std::uint8_t((index * 5 + side * 77) % 250); }

DtmValue expected(int side, std::uint32_t index) { return StoredByteValues[side][storedByte(side, index)]; }

// One probe and whether it finds a value: a hard probe may read from disk, a soft one only
// looks in the cache.
struct Probe {
  bool hard;
  int side;
  std::uint32_t index;
  bool found;
  const char* endgame = "kqk";
};
constexpr bool Hard = true;
constexpr bool Soft = false;

// A kqk table in the stored scheme (its blocks read back as written), and a krk table whose
// second block is damaged: empty.
class TablebaseCacheTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::vector<Bytes> blocks = testing::tableBlocks("kqk", CompressionScheme::Stored, storedByte);
    testing::writeTable(scratch.path(), "kqk", CompressionScheme::Stored, blocks);
    testing::writeTable(scratch.path(), "krk", CompressionScheme::Stored, {blocks[0], {}, blocks[2], blocks[3]});
    files.open({scratch.path()}, CompressionScheme::Stored, 8, false);
  }

  void run(std::initializer_list<Probe> probes) {
    for (const Probe& p : probes) {
      SCOPED_TRACE(::testing::Message() << (p.hard ? "hard " : "soft ") << p.endgame << " side " << p.side << " index "
                                        << p.index);
      DtmValue word = 0;
      ASSERT_EQ(cache.getDtm(findEndgame(p.endgame), p.side, p.index, p.hard, word), p.found);
      EXPECT_EQ(word, p.found ? expected(p.side, p.index) : 0);
    }
  }

  testing::ScratchFolder scratch;
  TablebaseFiles files;
  TablebaseCache cache{files};
};

TEST_F(TablebaseCacheTest, SplitsItsMemoryBetweenTheTwoCaches) {
  cache.initCache(16 * MB, 96);
  EXPECT_EQ(cache.wdlCache().maxBlocks(), 3072u);
  EXPECT_EQ(cache.dtmCache().maxBlocks(), 128u);
  cache.initCache(4 * MB, 200);
  EXPECT_EQ(cache.wdlCache().maxBlocks(), 1024u) << "the fraction stops at 128 of 128";

  cache.initCache(0, 96);
  EXPECT_EQ(cache.dtmCache().maxBlocks(), 1u) << "a compressed table needs one block to decode into";
  EXPECT_FALSE(cache.wdlCache().enabled());
  run({{Hard, WhiteToMove, 5, true}});
}

TEST_F(TablebaseCacheTest, SoftProbesHitOnlyWhatHardProbesRead) {
  cache.initCache(MB, 0);
  run({{Soft, WhiteToMove, 100, false},
       {Hard, WhiteToMove, 100, true},
       {Soft, WhiteToMove, 16383, true},
       {Soft, WhiteToMove, 16384, false},  // the next block
       {Soft, BlackToMove, 100, false},
       {Hard, BlackToMove, 29567, true},
       {Soft, BlackToMove, 16384, true}});
  EXPECT_EQ(cache.diskStatistics().bytesRead, 16385u + 13185u) << "two blocks read";

  cache.flushCache();
  run({{Soft, WhiteToMove, 100, false}});
}

TEST_F(TablebaseCacheTest, EvictsTheLeastRecentlyUsedBlock) {
  cache.initCache(0, 0);
  for (std::uint32_t index : {0u, 20000u, 1u, 20001u}) run({{Hard, WhiteToMove, index, true}});
  EXPECT_EQ(cache.dtmCache().usedBlocks(), 1u) << "a single block is replaced by each other block";
  run({{Soft, WhiteToMove, 16384, true}, {Soft, WhiteToMove, 0, false}});

  cache.initCache(3 * TablebaseCache::DtmBlockBytes, 0);
  run({{Hard, WhiteToMove, 0, true},
       {Hard, WhiteToMove, 16384, true},
       {Hard, BlackToMove, 0, true},
       {Soft, WhiteToMove, 7, true},  // the oldest is used again
       {Hard, BlackToMove, 16384, true},
       {Soft, WhiteToMove, 16390, false},  // now the oldest, so replaced
       {Soft, WhiteToMove, 8, true},
       {Soft, BlackToMove, 8, true}});
  EXPECT_EQ(cache.dtmCache().top()->side, std::uint32_t(BlackToMove));
  EXPECT_EQ(cache.dtmCache().bottom()->offset, 16384u);
}

TEST_F(TablebaseCacheTest, FailedReadsLeaveNoBlockAndDisturbNothing) {
  cache.initCache(2 * TablebaseCache::DtmBlockBytes, 0);
  run({{Hard, WhiteToMove, 3, true, "krk"},
       {Hard, WhiteToMove, 16384 + 3, false, "krk"},  // the damaged block
       {Hard, WhiteToMove, 29568, false},             // past maxIndex
       {Hard, WhiteToMove, 0, false, "kbk"}});        // no file
  EXPECT_TRUE(cache.dtmCache().top()->empty()) << "the failed slot is taken again next";
  run({{Soft, WhiteToMove, 3, true, "krk"},
       {Soft, WhiteToMove, 16384 + 3, false, "krk"},
       {Hard, BlackToMove, 3, true}});
  EXPECT_EQ(cache.dtmCache().usedBlocks(), 2u);
  run({{Soft, WhiteToMove, 3, true, "krk"}});
}

}  // namespace
}  // namespace torvy
