// One 16-byte entry of the transposition table.
#pragma once

#include <atomic>
#include <cstdint>

#include "board/types.h"
#include "search/hash_table.h"

namespace torvy {

enum TTBound : std::uint16_t { NoBound = 0, BoundExact = 1, BoundLower = 2, BoundUpper = 3 };

// Two relaxed atomic words, so that threads share the table without a lock and without a
// data race; a reader may still see the key of one store with the data of another.
struct TTEntry {
  std::atomic<std::uint64_t> key{0};
  std::atomic<std::uint64_t> data{0};  // move, score, bound, depth, age

  bool isEmpty() const { return key.load(std::memory_order_relaxed) == 0; }
  void clear() {
    key.store(0, std::memory_order_relaxed);
    data.store(0, std::memory_order_relaxed);
  }
};

using TranspositionTable = HashTable<TTEntry, 4>;

}  // namespace torvy
