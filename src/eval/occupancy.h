// Where the men stand, as square sets, read from the board's piece lists.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "board/bitboards.h"
#include "board/board.h"

namespace torvy {

namespace detail {

// The bit of each 0x88 square, and none for any square off the board, which an empty slot of
// a piece list holds: each slot costs one load and one OR, with no test.
constexpr std::array<Bitboard, 256> makeSlotBits() {
  std::array<Bitboard, 256> bits{};
  for (int s = 0; s < 256; ++s)
    if (onBoard(s)) bits[s] = Bitboard(1) << toSquare64(Square88(s));
  return bits;
}
inline constexpr std::array<Bitboard, 256> slotBits = makeSlotBits();

// One OR per slot; as a loop, the compiler turned it into a slower vector gather.
template <std::size_t... Slot>
[[gnu::always_inline]] inline Bitboard menIn(const Square88* list, std::index_sequence<Slot...>) {
  return (slotBits[list[Slot]] | ...);
}

}  // namespace detail

struct Occupancy {
  Bitboard all;
  Bitboard black;
  // Whether a colour's pawn slots may hold a piece, promoted there; always so for a colour with
  // pawns when the pawns were not given.
  bool piecesInPawnSlots[2];

  Bitboard men(Color c) const { return c == Black ? black : all & ~black; }

  // Pawns already known, from the pawn hash, spare reading their slots: only when the count
  // says that a piece stands among them are those slots read. Without pawns, all are.
  static Occupancy of(const Board_0x88& board, Bitboard whitePawns = 0, Bitboard blackPawns = 0) {
    Occupancy occupancy{0, 0, {false, false}};
    occupancy.black = occupancy.menOf(board, Black, blackPawns);
    occupancy.all = occupancy.menOf(board, White, whitePawns) | occupancy.black;
    return occupancy;
  }

 private:
  Bitboard menOf(const Board_0x88& board, Color c, Bitboard pawns) {
    Bitboard men = pawns | detail::menIn(board.pieceList[c], std::make_index_sequence<SharedSlotsBegin>());
    piecesInPawnSlots[c] = countSquares(men) != board.totalCount(c);
    if (piecesInPawnSlots[c])
      men |= detail::menIn(board.pieceList[c] + SharedSlotsBegin,
                           std::make_index_sequence<SlotCount - SharedSlotsBegin>());
    return men;
  }
};

}  // namespace torvy
