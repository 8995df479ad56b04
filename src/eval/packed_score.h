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

// Both halves in one word for sums, the end game half 65536 times the middle game half's
// weight: sums and products by counts then cost one operation for the pair. Unsigned, so
// wrapping is defined; each half of a sum comes out cut to 16 bits, as 16-bit sums would be.
using PackedSum = std::uint32_t;

constexpr PackedSum packedWeight(ScorePair p) { return PackedSum(p.mg) + (PackedSum(p.eg) << 16); }

// Splits a packed sum into its halves, each cut to 16 bits.
constexpr ScorePair unpackSum(PackedSum sum) {
  const std::int16_t mg = std::int16_t(std::uint16_t(sum));
  return ScorePair{mg, std::int16_t(std::uint16_t((sum - PackedSum(std::int32_t(mg))) >> 16))};
}

// C++ division truncates towards zero, which is the rounding every blend wants.
constexpr int taper(int mg, int eg, int phase) { return (mg * phase + eg * (MaxPhase - phase)) / MaxPhase; }
constexpr int taper(ScorePair p, int phase) { return taper(p.mg, p.eg, phase); }

}  // namespace torvy
