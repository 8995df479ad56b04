// A middle game and end game pair packed in one word, and the blend of the two halves by phase.
#pragma once

#include <cstdint>

#include "board/types.h"

namespace torvy {

// End game half in the high 16 bits, middle game half in the low 16 bits.
using PackedScore = std::uint32_t;

constexpr int MaxPhase = 24;

constexpr PackedScore pack(ScorePair p) { return (PackedScore(std::uint16_t(p.eg)) << 16) | std::uint16_t(p.mg); }
constexpr ScorePair unpack(PackedScore s) {
  return ScorePair{std::int16_t(std::uint16_t(s)), std::int16_t(std::uint16_t(s >> 16))};
}
constexpr ScorePair operator+(ScorePair a, ScorePair b) { return a += b; }
constexpr ScorePair operator-(ScorePair a, ScorePair b) { return a -= b; }
constexpr ScorePair scaled(ScorePair p, int factor) {
  return ScorePair{std::int16_t(p.mg * factor), std::int16_t(p.eg * factor)};
}

// A running sum in full integers; packing cuts each half to 16 bits, as 16-bit sums would be.
struct ScoreSum {
  int mg = 0;
  int eg = 0;

  constexpr ScoreSum& operator+=(ScorePair p) {
    mg += p.mg;
    eg += p.eg;
    return *this;
  }
  constexpr PackedScore packed() const { return pack(ScorePair{std::int16_t(mg), std::int16_t(eg)}); }
};

// C++ division truncates towards zero, which is the rounding every blend wants.
constexpr int taper(int mg, int eg, int phase) { return (mg * phase + eg * (MaxPhase - phase)) / MaxPhase; }
constexpr int taper(ScorePair p, int phase) { return taper(p.mg, p.eg, phase); }

}  // namespace torvy
