// A table of fixed-size entries, a power of two of them, addressed by the low bits of a key.
#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <ostream>
#include <type_traits>

#include "board/keys.h"

namespace torvy {

// Entry must be value-initialisable to "empty" and answer isEmpty() and clear(). ClusterSize entries
// that follow each other share one index; 1 means no clusters.
template <class Entry, std::uint32_t ClusterSize>
class HashTable {
 public:
  static constexpr std::uint32_t MaxSizeMB = 4096;
  static constexpr std::uint32_t FillSample = 65536;

  bool exists() const { return entries_ != nullptr; }

  // Replaces the table with an empty one of the largest power-of-two size that fits.
  void resize(std::uint32_t sizeMB, const char* name, std::ostream& out) {
    const std::uint64_t bytes = std::uint64_t(std::min(sizeMB, MaxSizeMB)) * 1048576;
    std::uint64_t count = ClusterSize;
    while (count * 2 * sizeof(Entry) <= bytes) count *= 2;
    out << "# new size of " << name << ": " << count * sizeof(Entry) / 1048576 << " MB" << std::endl;
    if (entries_) release();
    if (spareCount_ == count) {
      entries_ = std::move(spare_);
      std::uninitialized_value_construct_n(entries_.get(), count);
    } else {
      spare_.reset();
      entries_.reset(allocateEntries(count));
    }
    spareCount_ = 0;
    entryCount = std::uint32_t(count);
    indexMask = entryCount / ClusterSize - 1;
  }

  // The table no longer exists, but its memory is kept for the next one of the same size:
  // "new" releases and recreates the tables every game, and giving back and mapping again
  // hundreds of megabytes stalled both processors of a virtual machine for up to 30 ms.
  void release() {
    spare_ = std::move(entries_);
    spareCount_ = entryCount;
    entryCount = 0;
    indexMask = 0;
  }

  // Only between searches. Built afresh rather than cleared entry by entry: the constructors'
  // plain stores become one fill of memory, where the entries' atomic stores go one by one.
  void clear() { std::uninitialized_value_construct_n(entries_.get(), entryCount); }

  Entry* cluster(Key key) { return &entries_[(std::uint32_t(key) & indexMask) * ClusterSize]; }
  const Entry* cluster(Key key) const { return &entries_[(std::uint32_t(key) & indexMask) * ClusterSize]; }
  Entry& at(std::uint32_t index) { return entries_[index]; }
  // Asks for the cluster's cache line ahead of its probe, so that the wait overlaps other work.
  void prefetch(Key key) const { __builtin_prefetch(cluster(key)); }

  // The share of used entries among the first 65536, always divided by 65536.
  double fillPercent() const {
    const std::uint32_t sample = std::min(entryCount, FillSample);
    std::uint32_t used = 0;
    for (std::uint32_t i = 0; i < sample; ++i)
      if (!entries_[i].isEmpty()) ++used;
    return used * 100.0 / FillSample;
  }

  std::uint32_t indexMask = 0;
  std::uint32_t entryCount = 0;

 private:
  static_assert(std::is_trivially_destructible_v<Entry>, "entries are released without destructors");
  struct FreeEntries {
    void operator()(Entry* entries) const { std::free(entries); }
  };

  // Large tables ask for 2 MB pages: creating a table touches every page, and with small
  // pages the faults alone took a third of a second for 64 MB; random probes gain as well.
  static Entry* allocateEntries(std::uint64_t count) {
    constexpr std::uint64_t LargePage = 2 * 1048576;
    const std::uint64_t bytes = count * sizeof(Entry);
    const std::uint64_t alignment = bytes >= LargePage ? LargePage : 64;
    const std::uint64_t rounded = (bytes + alignment - 1) / alignment * alignment;
    void* memory = std::aligned_alloc(alignment, rounded);
    if (memory == nullptr) throw std::bad_alloc();
    if (alignment == LargePage) madvise(memory, rounded, MADV_HUGEPAGE);
    Entry* entries = static_cast<Entry*>(memory);
    std::uninitialized_value_construct_n(entries, count);
    return entries;
  }

  std::unique_ptr<Entry[], FreeEntries> entries_;
  std::unique_ptr<Entry[], FreeEntries> spare_;
  std::uint64_t spareCount_ = 0;
};

}  // namespace torvy
