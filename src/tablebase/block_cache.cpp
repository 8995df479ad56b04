#include "tablebase/block_cache.h"

#include <new>

namespace torvy {

void BlockCache::allocate(std::uint64_t maxBlocks, std::size_t blockBytes) {
  release();
  if (maxBlocks == 0) return;
  memory_.reset(new (std::nothrow) std::uint8_t[maxBlocks * blockBytes]);
  blocks_.reset(new (std::nothrow) CacheBlock[maxBlocks]);
  if (memory_ == nullptr || blocks_ == nullptr) {
    release();
    return;
  }
  for (std::uint64_t i = 0; i < maxBlocks; ++i) blocks_[i].buffer = memory_.get() + i * blockBytes;
  maxBlocks_ = maxBlocks;
  enabled_ = true;
}

void BlockCache::release() {
  memory_.reset();
  blocks_.reset();
  enabled_ = false;
  maxBlocks_ = 0;
  usedBlocks_ = 0;
  top_ = bottom_ = nullptr;
  statistics = {};
}

void BlockCache::flush() {
  for (std::uint64_t i = 0; i < maxBlocks_; ++i) {
    blocks_[i].markEmpty();
    blocks_[i].older = blocks_[i].newer = nullptr;
  }
  usedBlocks_ = 0;
  top_ = bottom_ = nullptr;
  statistics = {};
}

CacheBlock* BlockCache::find(std::uint32_t endgame, std::uint32_t side, std::uint32_t offset) {
  for (CacheBlock* block = top_; block != nullptr; block = block->older) {
    ++statistics.comparisons;
    if (block->endgame == endgame && block->side == side && block->offset == offset) {
      moveToTop(block);
      return block;
    }
  }
  return nullptr;
}

CacheBlock* BlockCache::takeSlot() {
  CacheBlock* slot = nullptr;
  if (usedBlocks_ == 0) {
    if (maxBlocks_ == 0) return nullptr;
    slot = top_ = bottom_ = &blocks_[0];
    usedBlocks_ = 1;
  } else if (top_->empty() || maxBlocks_ == 1) {
    slot = top_;
  } else if (usedBlocks_ < maxBlocks_) {
    slot = &blocks_[usedBlocks_++];
    slot->older = top_;
    top_->newer = slot;
    top_ = slot;
  } else {
    slot = bottom_;
    moveToTop(slot);
  }
  slot->markEmpty();
  return slot;
}

void BlockCache::moveToTop(CacheBlock* block) {
  if (block == top_) return;
  // Unlink; a block below the top always has a newer neighbour.
  block->newer->older = block->older;
  if (block->older != nullptr)
    block->older->newer = block->newer;
  else
    bottom_ = block->newer;
  block->older = top_;
  block->newer = nullptr;
  top_->newer = block;
  top_ = block;
}

}  // namespace torvy
