// Where the men stand, as square sets, read from the board's piece lists.
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "board/board.h"
#include "eval/square_set.h"

namespace torvy {

namespace detail {

// The bit of each 0x88 square, and none for any square off the board, which an empty slot of
// a piece list holds: each slot costs one load and one OR, with no test.
constexpr std::array<SquareSet, 256> makeSlotBits() {
  std::array<SquareSet, 256> bits{};
  for (int s = 0; s < 256; ++s)
    if (onBoard(s)) bits[s] = SquareSet(1) << toSquare64(Square88(s));
  return bits;
}
inline constexpr std::array<SquareSet, 256> slotBits = makeSlotBits();

// One OR per slot; as a loop, the compiler turned it into a slower vector gather.
template <std::size_t... Slot>
[[gnu::always_inline]] inline SquareSet menIn(const Square88* list, std::index_sequence<Slot...>) {
  return (slotBits[list[Slot]] | ...);
}

}  // namespace detail

struct Occupancy {
  SquareSet all;
  SquareSet black;

  SquareSet men(Color c) const { return c == Black ? black : all & ~black; }

  // Two lists of 16 slots are a quarter of the 128 bytes of the colour array.
  static Occupancy of(const Board_0x88& board) {
    constexpr auto slots = std::make_index_sequence<std::extent_v<decltype(Board_0x88::pieceList), 1>>();
    const SquareSet black = detail::menIn(board.pieceList[Black], slots);
    return {detail::menIn(board.pieceList[White], slots) | black, black};
  }
};

}  // namespace torvy
