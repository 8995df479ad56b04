#include "board/slider_attacks.h"

namespace torvy {

namespace detail {

std::array<Bitboard, SliderTableSize> sliderAttackTable;

}  // namespace detail

namespace {

template <const auto& Deltas>
void fill(const detail::Magics& magics) {
  for (int s = 0; s < 64; ++s) {
    const detail::Magic& m = magics[toSquare88(Square64(s))];
    // Every subset of the mask in turn: subtracting the mask carries through its gaps.
    Bitboard blockers = 0;
    do {
      m.attacks[blockers * m.factor >> m.shift] = detail::walkAttacks<Deltas>(s, blockers);
      blockers = (blockers - m.mask) & m.mask;
    } while (blockers != 0);
  }
}

// Filled before main: move generation reads it from the first position on, and nothing that
// runs before main asks for an attack set.
const bool filled = [] {
  fill<bishopDeltas>(detail::bishopMagics);
  fill<rookDeltas>(detail::rookMagics);
  return true;
}();

}  // namespace

}  // namespace torvy
