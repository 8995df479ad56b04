// The two process-wide caches of decoded blocks: distance-to-mate words, and the same results at
// two bits per position for the win/draw/loss probes. Every read of a table goes through here.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "tablebase/block_cache.h"
#include "tablebase/block_decoder.h"
#include "tablebase/dtm_value.h"
#include "tablebase/tablebase_files.h"

namespace torvy {

struct DiskStatistics {
  std::uint64_t blocksRead = 0;
  std::uint64_t failedReads = 0;
  std::uint64_t bytesRead = 0;
};

class TablebaseCache {
 public:
  static constexpr std::size_t DtmBlockBytes = ValuesPerBlock * sizeof(DtmValue);
  static constexpr std::size_t WdlBlockBytes = ValuesPerBlock / 4;
  static constexpr unsigned WdlFractionScale = 128;

  explicit TablebaseCache(TablebaseFiles& files);

  // Splits bytes in 128ths: wdlFraction of them for the win/draw/loss cache, the rest for the
  // distance-to-mate cache, which keeps at least one block when the tables are compressed.
  void initCache(std::uint64_t bytes, unsigned wdlFraction);
  void closeCache();
  void flushCache();
  void resetCacheStatistics();

  // The word of a position, from the cache or, when hard, read from its table.
  bool getDtm(int endgame, int side, std::uint32_t index, bool hard, DtmValue& word);
  bool lookupDtm(int endgame, int side, std::uint32_t index, DtmValue& word);
  // The result code alone, from the win/draw/loss cache or through getDtm, which then fills it.
  bool getWdl(int endgame, int side, std::uint32_t index, bool hard, unsigned& code);

  const BlockCache& dtmCache() const { return dtm_; }
  const BlockCache& wdlCache() const { return wdl_; }
  const DiskStatistics& diskStatistics() const { return disk_; }

 private:
  bool readBlock(CacheBlock& slot, int endgame, int side, std::uint32_t base);
  void fillWdl(const CacheBlock& dtmBlock);

  TablebaseFiles& files_;
  BlockCache dtm_;
  BlockCache wdl_;
  DiskStatistics disk_;
  // A block on its way from the file through the decoder into a slot.
  std::unique_ptr<std::array<std::uint8_t, BlockBufferSize>> compressed_;
  std::unique_ptr<std::array<std::uint8_t, BlockBufferSize>> decoded_;
};

}  // namespace torvy
