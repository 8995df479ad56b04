// The pawn hash: what depends on the pawns alone, kept per pawn configuration.
#pragma once

#include <atomic>
#include <cstdint>

#include "search/hash_table.h"

namespace torvy {

// 32 bytes, read and written by all search threads without a lock: each word is a relaxed
// atomic, so an entry may be torn but never races.
struct PawnHashEntry {
  std::atomic<std::uint64_t> key{0};
  std::atomic<std::uint64_t> whitePawns{0};
  std::atomic<std::uint64_t> blackPawns{0};
  std::atomic<std::uint64_t> packedScores{0};  // structureMg, structureEg, openFiles, halfOpenFiles

  bool isEmpty() const { return key.load(std::memory_order_relaxed) == 0; }
  void clear() {
    for (auto* word : {&key, &whitePawns, &blackPawns, &packedScores}) word->store(0, std::memory_order_relaxed);
  }
};

class PawnHashTable : public HashTable<PawnHashEntry, 1> {
 public:
  std::atomic<std::uint64_t> hits{0};
};

}  // namespace torvy
