#include "eval/king_safety.h"

#include <gtest/gtest.h>

namespace torvy {
namespace {

constexpr Bitboard pawnsOn(std::initializer_list<Square88> squares) {
  Bitboard set = 0;
  for (Square88 s : squares) set |= Bitboard(1) << toSquare64(s);
  return set;
}

TEST(KingSafetyTest, ShelterPatterns) {
  struct Case {
    Bitboard pawns;
    Square88 king;
    Color color;
    unsigned pattern;
  };
  const Case cases[] = {
      {pawnsOn({sq::f2, sq::g2, sq::h2}), sq::g1, White, 0b000111},
      {pawnsOn({sq::g2, sq::h2}), sq::g1, White, 0b000110},
      {pawnsOn({sq::f3, sq::g3}), sq::g1, White, 0b011000},
      // Off the board counts as a pawn: the lower file of an a-file king, the higher of an h-file king.
      {0, sq::a1, White, 0b001001},
      {0, sq::h1, White, 0b100100},
      // On rank 6 the far row is the edge; from rank 7 on, everything is covered.
      {pawnsOn({sq::f7}), sq::e6, White, 0b111100},
      {0, sq::e7, White, 63},
      {0, sq::e8, White, 63},
      {0, sq::e2, Black, 63},
      {0, sq::e1, Black, 63},
      // Black looks towards rank 1; the files keep their order.
      {pawnsOn({sq::f7, sq::g7, sq::h6}), sq::g8, Black, 0b100011},
  };
  for (const Case& c : cases) EXPECT_EQ(shelterPattern(c.pawns, c.king, c.color), c.pattern) << int(c.king);
}

TEST(KingSafetyTest, HolesAndOpenFilesBesideTheKing) {
  NoBook none;
  PawnInfo info;
  info.pawns[White] = pawnsOn({sq::f2, sq::g2, sq::h2});
  EXPECT_EQ(unpack(kingSafety<White>(info, sq::g1, 0, none)), (ScorePair{0, 0}));
  info.pawns[White] = pawnsOn({sq::g2, sq::h2});
  EXPECT_EQ(unpack(kingSafety<White>(info, sq::g1, 0, none)), (ScorePair{-15, 7}));

  // No pawns on f, g and h against two rooks and a queen: two holes (-30 / 14), and with M = 2
  // the open king's file and both neighbours (-102 / -62).
  info.pawns[White] = 0;
  info.openFiles = 0b11100000;
  const std::uint32_t twoRooksAndQueen = 2u << 12 | 1u << 16;
  EXPECT_EQ(unpack(kingSafety<White>(info, sq::g1, twoRooksAndQueen, none)), (ScorePair{-132, -48}));
  // Without heavy pieces the open files cost nothing, but the holes still count.
  EXPECT_EQ(unpack(kingSafety<White>(info, sq::g1, 0, none)), (ScorePair{-30, 14}));
  // An h-file king has no higher neighbour to be open: one queen, M = 1.
  EXPECT_EQ(unpack(kingSafety<White>(info, sq::h1, 1u << 16, none)), (ScorePair{-15 - 35 - 8, 7 - 9 - 11}));
  // Black's king on g8 behind f7, g7, h7.
  info.pawns[Black] = pawnsOn({sq::f7, sq::g7, sq::h7});
  info.openFiles = 0;
  EXPECT_EQ(unpack(kingSafety<Black>(info, sq::g8, twoRooksAndQueen, none)), (ScorePair{0, 0}));
}

}  // namespace
}  // namespace torvy
