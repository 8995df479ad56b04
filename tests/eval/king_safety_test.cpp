#include "eval/king_safety.h"

#include <gtest/gtest.h>

namespace torvy {
namespace {

constexpr SquareSet pawnsOn(std::initializer_list<Square88> squares) {
  SquareSet set = 0;
  for (Square88 s : squares) set |= SquareSet(1) << toSquare64(s);
  return set;
}

constexpr Square88 at(int file, int rank) { return makeSquare(file, rank); }

TEST(KingSafetyTest, ShelterPatterns) {
  struct Case {
    SquareSet pawns;
    Square88 king;
    Color color;
    unsigned pattern;
  };
  const Case cases[] = {
      {pawnsOn({at(5, 1), at(6, 1), at(7, 1)}), sq::g1, White, 0b000111},
      {pawnsOn({at(6, 1), at(7, 1)}), sq::g1, White, 0b000110},
      {pawnsOn({at(5, 2), at(6, 2)}), sq::g1, White, 0b011000},
      // Off the board counts as a pawn: the lower file of an a-file king, the higher of an h-file king.
      {0, sq::a1, White, 0b001001},
      {0, sq::h1, White, 0b100100},
      // On rank 6 the far row is the edge; from rank 7 on, everything is covered.
      {pawnsOn({at(5, 6)}), at(4, 5), White, 0b111100},
      {0, at(4, 6), White, 63},
      {0, sq::e8, White, 63},
      {0, at(4, 1), Black, 63},
      {0, sq::e1, Black, 63},
      // Black looks towards rank 1; the files keep their order.
      {pawnsOn({at(5, 6), at(6, 6), at(7, 5)}), sq::g8, Black, 0b100011},
  };
  for (const Case& c : cases) EXPECT_EQ(shelterPattern(c.pawns, c.king, c.color), c.pattern) << int(c.king);
}

}  // namespace
}  // namespace torvy
