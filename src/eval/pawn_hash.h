// The pawn hash: what depends on the pawns alone, kept per pawn configuration.
#pragma once

#include <atomic>
#include <cstdint>

#include "eval/packed_score.h"
#include "search/hash_table.h"

namespace torvy {

// What one pawn configuration leaves behind.
struct PawnHashData {
  std::uint64_t pawns[2];
  PackedScore structure;  // White minus Black
  std::uint8_t openFiles;
  std::uint8_t halfOpenFiles;
  std::uint8_t passedColours;  // bit c: colour c has a passed pawn
};

// 32 bytes, read and written by all search threads without a lock. Each word is a relaxed
// atomic, and the key is stored mixed with the data words, so that an entry torn by two
// writers reads as a miss rather than as a wrong structure.
struct PawnHashEntry {
  std::atomic<std::uint64_t> key{0};
  std::atomic<std::uint64_t> whitePawns{0};
  std::atomic<std::uint64_t> blackPawns{0};
  std::atomic<std::uint64_t> packedScores{0};  // structure pair, openFiles, halfOpenFiles, passedColours

  bool isEmpty() const { return key.load(std::memory_order_relaxed) == 0; }
  // Four plain stores: a loop over the words was not unrolled, and clearing the table between
  // positions cost ten times as much.
  void clear() {
    key.store(0, std::memory_order_relaxed);
    whitePawns.store(0, std::memory_order_relaxed);
    blackPawns.store(0, std::memory_order_relaxed);
    packedScores.store(0, std::memory_order_relaxed);
  }

  bool load(Key pawnKey, PawnHashData& data) const {
    const std::uint64_t white = whitePawns.load(std::memory_order_relaxed);
    const std::uint64_t black = blackPawns.load(std::memory_order_relaxed);
    const std::uint64_t scores = packedScores.load(std::memory_order_relaxed);
    if ((key.load(std::memory_order_relaxed) ^ white ^ black ^ scores) != pawnKey) return false;
    data.pawns[White] = white;
    data.pawns[Black] = black;
    data.structure = PackedScore(scores);
    data.openFiles = std::uint8_t(scores >> 32);
    data.halfOpenFiles = std::uint8_t(scores >> 40);
    data.passedColours = std::uint8_t(scores >> 48);
    return true;
  }

  void store(Key pawnKey, const PawnHashData& data) {
    const std::uint64_t scores = data.structure | std::uint64_t(data.openFiles) << 32 |
                                 std::uint64_t(data.halfOpenFiles) << 40 | std::uint64_t(data.passedColours) << 48;
    whitePawns.store(data.pawns[White], std::memory_order_relaxed);
    blackPawns.store(data.pawns[Black], std::memory_order_relaxed);
    packedScores.store(scores, std::memory_order_relaxed);
    key.store(pawnKey ^ data.pawns[White] ^ data.pawns[Black] ^ scores, std::memory_order_relaxed);
  }
};

static_assert(sizeof(PawnHashEntry) == 32, "two entries to a cache line");

class PawnHashTable : public HashTable<PawnHashEntry, 1> {
 public:
  // Shared by all threads, which add their hits in batches: a write to the shared line at every
  // hit made the cores fight over it. So the count lags by less than a batch per thread, and
  // a thread that has counted for one table should flush before it counts for another.
  alignas(64) std::atomic<std::uint64_t> hits{0};

  void countHit() {
    if (++pendingHits_ == HitBatch) flushHits();
  }
  // Adds the calling thread's pending hits to the shared counter.
  void flushHits() {
    hits.fetch_add(pendingHits_, std::memory_order_relaxed);
    pendingHits_ = 0;
  }

 private:
  static constexpr std::uint64_t HitBatch = 1024;
  static inline thread_local std::uint64_t pendingHits_ = 0;
};

}  // namespace torvy
