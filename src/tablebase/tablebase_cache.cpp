#include "tablebase/tablebase_cache.h"

#include <algorithm>
#include <cstring>

namespace torvy {
namespace {

constexpr std::uint32_t blockBase(std::uint32_t index) { return index / ValuesPerBlock * ValuesPerBlock; }

DtmValue wordAt(const CacheBlock& block, std::uint32_t position) {
  DtmValue word;
  std::memcpy(&word, block.buffer + position * sizeof(DtmValue), sizeof word);
  return word;
}

unsigned codeAt(const CacheBlock& block, std::uint32_t position) {
  return (block.buffer[position / 4] >> (2 * (position % 4))) & 3;
}

}  // namespace

TablebaseCache::TablebaseCache(TablebaseFiles& files)
    : files_(files),
      compressed_(std::make_unique<std::array<std::uint8_t, BlockBufferSize>>()),
      decoded_(std::make_unique<std::array<std::uint8_t, BlockBufferSize>>()) {}

void TablebaseCache::initCache(std::uint64_t bytes, unsigned wdlFraction) {
  const std::uint64_t fraction = std::min(wdlFraction, WdlFractionScale);
  const std::uint64_t share = bytes >> 7;
  std::uint64_t dtmBlocks = ((WdlFractionScale - fraction) * share) / DtmBlockBytes;
  if (dtmBlocks == 0 && isCompressed(files_.scheme())) dtmBlocks = 1;
  dtm_.allocate(dtmBlocks, DtmBlockBytes);
  wdl_.allocate((fraction * share) / WdlBlockBytes, WdlBlockBytes);
  disk_ = {};
}

void TablebaseCache::closeCache() {
  dtm_.release();
  wdl_.release();
  disk_ = {};
}

void TablebaseCache::flushCache() {
  dtm_.flush();
  wdl_.flush();
  disk_ = {};
}

void TablebaseCache::resetCacheStatistics() {
  dtm_.statistics = {};
  wdl_.statistics = {};
  disk_ = {};
}

bool TablebaseCache::lookupDtm(int endgame, int side, std::uint32_t index, DtmValue& word) {
  const std::uint32_t base = blockBase(index);
  const CacheBlock* block = dtm_.find(std::uint32_t(endgame), std::uint32_t(side), base);
  if (block == nullptr) return false;
  word = wordAt(*block, index - base);
  return true;
}

bool TablebaseCache::getDtm(int endgame, int side, std::uint32_t index, bool hard, DtmValue& word) {
  CacheStatistics& statistics = dtm_.statistics;
  ++(hard ? statistics.hard : statistics.soft);
  if (dtm_.enabled() && lookupDtm(endgame, side, index, word)) {
    ++statistics.hits;
    return true;
  }
  ++(hard ? statistics.hardMisses : statistics.softMisses);
  if (!hard) return false;

  if (index >= Endgames[endgame].maxIndex || !dtm_.enabled()) {
    ++disk_.failedReads;
    return false;
  }
  CacheBlock* slot = dtm_.takeSlot();
  const std::uint32_t base = blockBase(index);
  if (!readBlock(*slot, endgame, side, base)) {
    ++disk_.failedReads;
    return false;
  }
  slot->endgame = std::uint32_t(endgame);
  slot->side = std::uint32_t(side);
  slot->offset = base;
  ++disk_.blocksRead;
  return lookupDtm(endgame, side, index, word);
}

// Leaves the slot empty on any failure, so that no half-filled block can be found later.
bool TablebaseCache::readBlock(CacheBlock& slot, int endgame, int side, std::uint32_t base) {
  if (!files_.prepare(endgame)) return false;
  const std::uint32_t maxIndex = Endgames[endgame].maxIndex;
  const std::uint32_t count = valuesInBlock(base, maxIndex);
  std::size_t size = count;
  if (isCompressed(files_.scheme())) {
    if (!files_.readBlock(endgame, blockNumber(side, base, maxIndex), *compressed_, size)) return false;
    const BlockInput payload(compressed_->data() + 1, size - 1);
    if (!decodeBlock(files_.scheme(), payload, count, *decoded_)) return false;
  } else if (!files_.readRaw(endgame, std::uint64_t(side) * maxIndex + base, count, *decoded_)) {
    return false;
  }
  const auto& values = StoredByteValues[side];
  for (std::uint32_t i = 0; i < count; ++i) {
    const DtmValue word = values[(*decoded_)[i]];
    std::memcpy(slot.buffer + i * sizeof(DtmValue), &word, sizeof word);
  }
  disk_.bytesRead += size;
  return true;
}

bool TablebaseCache::getWdl(int endgame, int side, std::uint32_t index, bool hard, unsigned& code) {
  CacheStatistics& statistics = wdl_.statistics;
  ++(hard ? statistics.hard : statistics.soft);
  const std::uint32_t base = blockBase(index);
  if (wdl_.enabled()) {
    if (const CacheBlock* block = wdl_.find(std::uint32_t(endgame), std::uint32_t(side), base)) {
      ++statistics.hits;
      code = codeAt(*block, index - base);
      return true;
    }
  }
  ++(hard ? statistics.hardMisses : statistics.softMisses);
  DtmValue word;
  if (!getDtm(endgame, side, index, hard, word)) return false;
  if (wdl_.enabled() && dtm_.top() != nullptr && dtm_.top()->offset == base &&
      dtm_.top()->endgame == std::uint32_t(endgame) && dtm_.top()->side == std::uint32_t(side))
    fillWdl(*dtm_.top());
  code = word & 3;
  return true;
}

void TablebaseCache::fillWdl(const CacheBlock& dtmBlock) {
  CacheBlock* slot = wdl_.takeSlot();
  std::fill_n(slot->buffer, WdlBlockBytes, 0);
  const std::uint32_t count = valuesInBlock(dtmBlock.offset, Endgames[dtmBlock.endgame].maxIndex);
  for (std::uint32_t i = 0; i < count; ++i)
    slot->buffer[i / 4] |= std::uint8_t((wordAt(dtmBlock, i) & 3) << (2 * (i % 4)));
  slot->endgame = dtmBlock.endgame;
  slot->side = dtmBlock.side;
  slot->offset = dtmBlock.offset;
}

}  // namespace torvy
