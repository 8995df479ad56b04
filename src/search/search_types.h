// The vocabulary of scores, lines and counters that every part of the search speaks.
#pragma once

#include <atomic>
#include <cstdint>

#include "board/types.h"

namespace torvy {

constexpr int MateScore = 32000;
constexpr int MateThreshold = 20000;
constexpr int DrawScore = 0;
constexpr int StoppedScore = 40000;  // no score: what a stopped node returns

constexpr std::uint32_t MaxPvLength = 63;

struct PvLine {
  Move moves[MaxPvLength];
  std::uint16_t count = 0;

  void clear() { count = 0; }
  Move first() const { return count > 0 ? moves[0] : NoMove; }
  // This move followed by as much of the child's line as fits.
  void setFrom(Move m, const PvLine& child) {
    moves[0] = m;
    const std::uint16_t copied = std::uint16_t(child.count < MaxPvLength - 1 ? child.count : MaxPvLength - 1);
    for (std::uint16_t i = 0; i < copied; ++i) moves[i + 1] = child.moves[i];
    count = std::uint16_t(copied + 1);
  }
  // The line behind its first move.
  void setToRestOf(const PvLine& parent) {
    count = parent.count > 0 ? std::uint16_t(parent.count - 1) : 0;
    for (std::uint16_t i = 0; i < count; ++i) moves[i] = parent.moves[i + 1];
  }
};

// Written by the thread that owns it and read by thread 0 for the clock check, so each counter
// is a relaxed atomic that only its owner increments.
class Counter {
 public:
  void add(std::uint64_t n = 1) { value_.store(value_.load(std::memory_order_relaxed) + n, std::memory_order_relaxed); }
  std::uint64_t get() const { return value_.load(std::memory_order_relaxed); }
  void reset() { value_.store(0, std::memory_order_relaxed); }

 private:
  std::atomic<std::uint64_t> value_{0};
};

struct SearchStats {
  Counter nodes;
  Counter qsNodes;
  Counter cutoffs;
  Counter cutoffsOn1stMove;
  Counter qsCutoffs;
  Counter qsCutoffsOn1stMove;
  Counter ttHits;
  Counter pawnHashHits;
  Counter tbHits;

  void reset() {
    for (Counter* c : {&nodes, &qsNodes, &cutoffs, &cutoffsOn1stMove, &qsCutoffs, &qsCutoffsOn1stMove, &ttHits,
                       &pawnHashHits, &tbHits})
      c->reset();
  }
};

}  // namespace torvy
