// Where the men stand, as square sets, read from the board's colour array a rank at a time.
#pragma once

#include <cstdint>
#include <cstring>

#include "board/board.h"
#include "eval/square_set.h"

namespace torvy {

namespace detail {

// Bit 0 of each of the eight bytes of a row to bits 0 to 7 of the result.
constexpr std::uint64_t ByteLowBits = 0x0101010101010101;
constexpr unsigned gatherRow(std::uint64_t lowBits) { return unsigned(lowBits * 0x0102040810204080 >> 56); }

static_assert([] {
  for (unsigned pattern = 0; pattern < 256; ++pattern) {
    std::uint64_t bytes = 0;
    for (int k = 0; k < 8; ++k) bytes |= std::uint64_t(pattern >> k & 1) << (8 * k);
    if (gatherRow(bytes) != pattern) return false;
  }
  return true;
}());

}  // namespace detail

struct Occupancy {
  SquareSet all;
  SquareSet black;

  SquareSet men(Color c) const { return c == Black ? black : all & ~black; }

  // NoColor has bit 1 set, Black bit 0, White neither.
  static Occupancy of(const Board_0x88& board) {
    static_assert(White == 0 && Black == 1 && NoColor == 2);
    Occupancy occupancy{0, 0};
    for (int rank = 0; rank < 8; ++rank) {
      std::uint64_t row;
      std::memcpy(&row, &board.colorOn[rank * 16], sizeof row);
      occupancy.all |= SquareSet(detail::gatherRow(~row >> 1 & detail::ByteLowBits)) << (rank * 8);
      occupancy.black |= SquareSet(detail::gatherRow(row & detail::ByteLowBits)) << (rank * 8);
    }
    return occupancy;
  }
};

}  // namespace torvy
