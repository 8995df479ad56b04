// Slots of decoded table blocks, kept in the order of their last use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace torvy {

struct CacheBlock {
  static constexpr std::uint32_t Empty = 0xFFFFFFFF;  // in all three fields of an empty slot

  std::uint32_t endgame = Empty;
  std::uint32_t side = Empty;
  std::uint32_t offset = Empty;    // index of the block's first position
  std::uint8_t* buffer = nullptr;  // this slot's part of the cache's memory
  CacheBlock* older = nullptr;
  CacheBlock* newer = nullptr;

  bool empty() const { return endgame == Empty; }
  void markEmpty() { endgame = side = offset = Empty; }
};

struct CacheStatistics {
  std::uint64_t hard = 0;
  std::uint64_t soft = 0;
  std::uint64_t hardMisses = 0;
  std::uint64_t softMisses = 0;
  std::uint64_t hits = 0;
  std::uint64_t comparisons = 0;
};

class BlockCache {
 public:
  // Replaces the memory by maxBlocks slots of blockBytes each; 0 slots or a failed allocation
  // leave the cache disabled.
  void allocate(std::uint64_t maxBlocks, std::size_t blockBytes);
  void release();
  // Marks every slot empty and keeps the memory.
  void flush();

  bool enabled() const { return enabled_; }
  std::uint64_t maxBlocks() const { return maxBlocks_; }
  std::uint64_t usedBlocks() const { return usedBlocks_; }
  const CacheBlock* top() const { return top_; }
  const CacheBlock* bottom() const { return bottom_; }

  // The block that holds these positions, moved to the front; null if none does.
  CacheBlock* find(std::uint32_t endgame, std::uint32_t side, std::uint32_t offset);
  // A slot to fill, moved to the front and marked empty: a fresh one while there are any, then
  // the least recently used; an empty front slot is taken again.
  CacheBlock* takeSlot();

  CacheStatistics statistics;

 private:
  void moveToTop(CacheBlock* block);

  bool enabled_ = false;
  std::uint64_t maxBlocks_ = 0;
  std::uint64_t usedBlocks_ = 0;
  std::unique_ptr<std::uint8_t[]> memory_;
  std::unique_ptr<CacheBlock[]> blocks_;
  CacheBlock* top_ = nullptr;
  CacheBlock* bottom_ = nullptr;
};

}  // namespace torvy
