// Distance-to-mate words: the plies to mate above a 3-bit result code, and the decoding of the
// bytes that the tables store.
#pragma once

#include <array>
#include <cstdint>

namespace torvy {

using DtmValue = std::uint16_t;

constexpr unsigned ResultDraw = 0;
constexpr unsigned ResultWhiteMates = 1;
constexpr unsigned ResultBlackMates = 2;
constexpr unsigned ResultForbidden = 3;

constexpr DtmValue dtmValue(unsigned plies, unsigned code) { return DtmValue(plies * 8 + code); }
constexpr unsigned dtmCode(DtmValue value) { return value & 7; }
constexpr unsigned dtmPlies(DtmValue value) { return value >> 3; }

// A stored byte holds the result in its two low bits and half the distance above them; distances
// past 126 plies fold into the otherwise unused combinations.
constexpr DtmValue decodeStoredByte(std::uint8_t byte, int side) {
  const unsigned r = byte & 3;
  const unsigned n = byte >> 2;
  const bool whiteToMove = side == 0;
  if (byte == 0) return dtmValue(0, ResultDraw);
  if (byte == 3) return dtmValue(0, ResultForbidden);
  switch (r) {
    case 1: return dtmValue(whiteToMove ? 2 * n + 1 : 2 * n, ResultWhiteMates);
    case 2: return dtmValue(whiteToMove ? 2 * n : 2 * n + 1, ResultBlackMates);
    case 0:
      if (!whiteToMove && byte == 252) return dtmValue(254, ResultWhiteMates);
      return dtmValue(2 * n + 127, whiteToMove ? ResultWhiteMates : ResultBlackMates);
    default: return dtmValue(2 * n + 126, whiteToMove ? ResultBlackMates : ResultWhiteMates);
  }
}

inline constexpr std::array<std::array<DtmValue, 256>, 2> StoredByteValues = [] {
  std::array<std::array<DtmValue, 256>, 2> table{};
  for (int side = 0; side < 2; ++side)
    for (int byte = 0; byte < 256; ++byte) table[side][byte] = decodeStoredByte(std::uint8_t(byte), side);
  return table;
}();

}  // namespace torvy
