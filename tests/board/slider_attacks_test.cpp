#include "board/slider_attacks.h"

#include <gtest/gtest.h>

#include <random>

namespace torvy {
namespace {

// Each set of blockers must find its own attack set, whatever stands off the mask: a factor that
// sent two sets with different attacks to one index would hand back the other's.
template <const auto& Deltas>
void expectEveryBlockerSetFindsItsWalk(const detail::Magics& magics) {
  std::mt19937_64 random(5);
  for (int s = 0; s < 64; ++s) {
    const detail::Magic& m = magics[toSquare88(Square64(s))];
    Bitboard blockers = 0;
    do {
      const Bitboard all = blockers | (random() & ~m.mask);
      ASSERT_EQ(detail::lookUp(m, all), detail::walkAttacks<Deltas>(s, all)) << "square " << s;
      blockers = (blockers - m.mask) & m.mask;
    } while (blockers != 0);
  }
}

TEST(SliderAttacksTest, EveryBlockerSetFindsItsWalk) {
  expectEveryBlockerSetFindsItsWalk<bishopDeltas>(detail::bishopMagics);
  expectEveryBlockerSetFindsItsWalk<rookDeltas>(detail::rookMagics);
}

}  // namespace
}  // namespace torvy
