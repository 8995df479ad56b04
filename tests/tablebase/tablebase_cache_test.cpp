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

// A kqk table in the stored scheme (its blocks read back as written) in a scratch folder.
class TablebaseCacheTest : public ::testing::Test {
 protected:
  static constexpr CompressionScheme Scheme = CompressionScheme::Stored;

  void SetUp() override {
    const std::vector<Bytes> blocks = testing::storedBlocks("kqk", storedByte);
    testing::writeStoredTable(scratch.path(), "kqk", blocks);
    // krk exists but its second block is damaged: empty.
    testing::writeStoredTable(scratch.path(), "krk", {blocks[0], {}, blocks[2], blocks[3]});
    files.open({scratch.path()}, Scheme, 8, false);
  }

  static DtmValue expected(int side, std::uint32_t index) { return StoredByteValues[side][storedByte(side, index)]; }

  // A hard probe may read from disk, a soft one only looks in the cache.
  bool probe(int endgame, int side, std::uint32_t index, bool hard) {
    DtmValue word = 0;
    const bool found = cache.getDtm(endgame, side, index, hard, word);
    EXPECT_TRUE(!found || word == expected(side, index)) << "index " << index;
    return found;
  }
  bool hardProbe(int endgame, int side, std::uint32_t index) { return probe(endgame, side, index, true); }
  bool softProbe(int endgame, int side, std::uint32_t index) { return probe(endgame, side, index, false); }

  const int kqk = findEndgame("kqk");
  const int krk = findEndgame("krk");
  testing::ScratchFolder scratch;
  TablebaseFiles files;
  TablebaseCache cache{files};
};

TEST_F(TablebaseCacheTest, SplitsItsMemoryBetweenTheTwoCaches) {
  cache.initCache(16 * MB, 96);
  EXPECT_EQ(cache.wdlCache().maxBlocks(), 3072u);
  EXPECT_EQ(cache.dtmCache().maxBlocks(), 128u);

  cache.initCache(0, 96);
  EXPECT_TRUE(cache.dtmCache().enabled());
  EXPECT_EQ(cache.dtmCache().maxBlocks(), 1u) << "a compressed table needs one block to decode into";
  EXPECT_FALSE(cache.wdlCache().enabled());
  EXPECT_TRUE(hardProbe(kqk, WhiteToMove, 5));

  cache.initCache(4 * MB, 200);
  EXPECT_EQ(cache.wdlCache().maxBlocks(), 1024u) << "the fraction stops at 128 of 128";

  files.open({scratch.path()}, CompressionScheme::Uncompressed, 8, false);
  cache.initCache(0, 96);
  EXPECT_FALSE(cache.dtmCache().enabled());
  DtmValue word = 0;
  EXPECT_FALSE(cache.getDtm(kqk, WhiteToMove, 5, true, word));
  EXPECT_EQ(cache.diskStatistics().failedReads, 1u);
}

TEST_F(TablebaseCacheTest, SoftProbesHitOnlyWhatHardProbesRead) {
  cache.initCache(MB, 0);
  EXPECT_FALSE(softProbe(kqk, WhiteToMove, 100));
  EXPECT_EQ(cache.dtmCache().usedBlocks(), 0u);
  EXPECT_EQ(cache.diskStatistics().blocksRead, 0u);

  EXPECT_TRUE(hardProbe(kqk, WhiteToMove, 100));
  EXPECT_TRUE(softProbe(kqk, WhiteToMove, 16383));
  EXPECT_FALSE(softProbe(kqk, WhiteToMove, 16384)) << "the next block";
  EXPECT_FALSE(softProbe(kqk, BlackToMove, 100)) << "the other side to move";
  EXPECT_TRUE(hardProbe(kqk, BlackToMove, 29567));
  EXPECT_TRUE(softProbe(kqk, BlackToMove, 16384));

  EXPECT_EQ(cache.dtmCache().statistics.hits, 2u);
  EXPECT_EQ(cache.diskStatistics().blocksRead, 2u);
  EXPECT_EQ(cache.diskStatistics().bytesRead, 16385u + 13185u);

  cache.flushCache();
  EXPECT_FALSE(softProbe(kqk, WhiteToMove, 100));
  EXPECT_EQ(cache.dtmCache().statistics.soft, 1u);
}

TEST_F(TablebaseCacheTest, ASingleBlockIsReplacedByEachOtherBlock) {
  cache.initCache(0, 0);
  for (std::uint32_t index : {0u, 20000u, 1u, 20001u}) {
    EXPECT_TRUE(hardProbe(kqk, WhiteToMove, index));
    EXPECT_EQ(cache.dtmCache().usedBlocks(), 1u);
  }
  EXPECT_EQ(cache.diskStatistics().blocksRead, 4u);
  EXPECT_TRUE(softProbe(kqk, WhiteToMove, 16384));
  EXPECT_FALSE(softProbe(kqk, WhiteToMove, 0));
}

TEST_F(TablebaseCacheTest, EvictsTheLeastRecentlyUsedBlock) {
  cache.initCache(3 * TablebaseCache::DtmBlockBytes, 0);
  ASSERT_EQ(cache.dtmCache().maxBlocks(), 3u);
  EXPECT_TRUE(hardProbe(kqk, WhiteToMove, 0));
  EXPECT_TRUE(hardProbe(kqk, WhiteToMove, 16384));
  EXPECT_TRUE(hardProbe(kqk, BlackToMove, 0));
  EXPECT_TRUE(softProbe(kqk, WhiteToMove, 7));  // the oldest is used again
  EXPECT_TRUE(hardProbe(kqk, BlackToMove, 16384));
  EXPECT_FALSE(softProbe(kqk, WhiteToMove, 16390)) << "now the oldest, so replaced";
  EXPECT_TRUE(softProbe(kqk, WhiteToMove, 8));
  EXPECT_TRUE(softProbe(kqk, BlackToMove, 8));
  EXPECT_EQ(cache.dtmCache().top()->side, std::uint32_t(BlackToMove));
  EXPECT_EQ(cache.dtmCache().bottom()->offset, 16384u);
}

TEST_F(TablebaseCacheTest, FailedReadsLeaveNoBlockAndDisturbNothing) {
  cache.initCache(2 * TablebaseCache::DtmBlockBytes, 0);
  EXPECT_TRUE(hardProbe(krk, WhiteToMove, 3));
  EXPECT_FALSE(hardProbe(krk, WhiteToMove, 16384 + 3)) << "the damaged block";
  EXPECT_FALSE(hardProbe(kqk, WhiteToMove, 29568)) << "past maxIndex";
  EXPECT_FALSE(hardProbe(findEndgame("kbk"), WhiteToMove, 0)) << "no file";
  EXPECT_EQ(cache.diskStatistics().failedReads, 3u);
  EXPECT_EQ(cache.dtmCache().usedBlocks(), 2u);
  EXPECT_TRUE(cache.dtmCache().top()->empty()) << "the failed slot is taken again next";
  EXPECT_TRUE(softProbe(krk, WhiteToMove, 3));
  EXPECT_FALSE(softProbe(krk, WhiteToMove, 16384 + 3));
  EXPECT_TRUE(hardProbe(kqk, BlackToMove, 3));
  EXPECT_EQ(cache.dtmCache().usedBlocks(), 2u);
  EXPECT_TRUE(softProbe(krk, WhiteToMove, 3));
}

TEST_F(TablebaseCacheTest, WinDrawLossCacheIsFilledFromTheDistanceBlock) {
  cache.initCache(MB, 64);
  unsigned code = 9;
  EXPECT_FALSE(cache.getWdl(kqk, WhiteToMove, 77, false, code));
  EXPECT_TRUE(cache.getWdl(kqk, WhiteToMove, 77, true, code));
  EXPECT_EQ(code, dtmCode(expected(WhiteToMove, 77)) & 3);
  EXPECT_EQ(cache.wdlCache().usedBlocks(), 1u);

  cache.flushCache();  // empties both; refill the win/draw/loss block alone
  EXPECT_TRUE(cache.getWdl(kqk, BlackToMove, 16384, true, code));
  DtmValue word = 0;
  for (std::uint32_t index = 16384; index < 29568; ++index) {
    ASSERT_TRUE(cache.getWdl(kqk, BlackToMove, index, false, code));
    ASSERT_EQ(code, dtmCode(expected(BlackToMove, index)) & 3) << index;
  }
  EXPECT_EQ(cache.wdlCache().statistics.hits, 29568u - 16384u);
  EXPECT_TRUE(cache.lookupDtm(kqk, BlackToMove, 16384, word));
}

}  // namespace
}  // namespace torvy
