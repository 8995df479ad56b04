// Attack sets of bishops and rooks by magic multiplication: the men on the squares that can
// block, times a number fitted to the square, index a table of that square's attack sets. One
// multiply and one load stand for a walk along four rays.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "board/bitboards.h"
#include "board/geometry.h"

namespace torvy {

namespace detail {

// 32 bytes, so that a square's entry is found with one shift.
struct Magic {
  Bitboard mask;         // the squares whose men can block, each ray's far end left out
  std::uint64_t factor;  // maps each set of blockers within the mask to its own index
  Bitboard* attacks;     // the square's part of the table, indexed directly; filled at start-up
  unsigned shift;        // 64 less the squares of the mask
};
static_assert(sizeof(Magic) == 32);

// The squares reached from s along the steps, each ray up to and with the first man of all.
template <const auto& Deltas>
constexpr Bitboard walkAttacks(int s, Bitboard all) {
  Bitboard attacks = 0;
  for (int d : Deltas)
    for (int t = toSquare88(Square64(s)) + d; onBoard(t); t += d) {
      const Bitboard bit = Bitboard(1) << toSquare64(Square88(t));
      attacks |= bit;
      if (all & bit) break;
    }
  return attacks;
}

template <const auto& Deltas>
constexpr Bitboard blockerMask(int s) {
  Bitboard mask = 0;
  for (int d : Deltas)
    for (int t = toSquare88(Square64(s)) + d; onBoard(t + d); t += d) mask |= Bitboard(1) << toSquare64(Square88(t));
  return mask;
}

using Factors = std::array<std::uint64_t, 64>;
// By 0x88 square, the board's own index, which spares converting it at each lookup; the
// entries off the board stay empty.
using Magics = std::array<Magic, 128>;

// Every set of blockers of every square has its entry.
template <const auto& Deltas>
constexpr std::size_t tableSize() {
  std::size_t size = 0;
  for (int s = 0; s < 64; ++s) size += std::size_t(1) << std::popcount(blockerMask<Deltas>(s));
  return size;
}

template <const auto& Deltas>
constexpr Magics makeMagics(const Factors& factors, Bitboard* attacks) {
  Magics magics{};
  for (int s = 0; s < 64; ++s) {
    const Bitboard mask = blockerMask<Deltas>(s);
    magics[toSquare88(Square64(s))] = {mask, factors[s], attacks, unsigned(64 - std::popcount(mask))};
    attacks += std::size_t(1) << std::popcount(mask);
  }
  return magics;
}

// Found by trying sparse random numbers, each the AND of three, until no two sets of blockers
// with different attack sets shared an index; the index then needs no more bits than the mask.
// clang-format off
inline constexpr Factors bishopFactors = {
    0x8210103483004200, 0x0008022802002820, 0x0404810401000010, 0x4004043280808044,
    0x0181104004600101, 0x8802021104000000, 0x000111011041a000, 0x4000420890211000,
    0x3200109001080880, 0x0002e0810a0a0840, 0x2040840802004228, 0x9200110408800000,
    0x0000c45040020100, 0x0200088824401000, 0x0000110690104804, 0x04010a4400a41006,
    0x01c100d03001a100, 0x9820220481020a00, 0x520d263000420040, 0x0180810802004102,
    0x0002001016100000, 0x0200800808010828, 0x0002402c88081800, 0x4018400a82009080,
    0x441005010a200402, 0x4024041143880802, 0x0200280210004940, 0xa201004024004200,
    0x8000840184802000, 0x0800820080880c00, 0x1008004821040202, 0x0000921019820280,
    0x0102084100045001, 0xa590820820200802, 0x0104020200010409, 0x0000a00800210106,
    0x0001020401020102, 0x0508080021011000, 0x0058162850140100, 0x0002040020004212,
    0x000801108a001000, 0x0a408090100008c2, 0x0000101804002800, 0x0000004200821800,
    0x0020049008800401, 0x02c8015004080480, 0x8804014414000110, 0x0008011042000080,
    0x04010c8290400010, 0x0382048208232402, 0x1000202108080140, 0x008000120a020100,
    0x108c0011a2020004, 0x010004200421100e, 0x8820200409105000, 0x0108300400802840,
    0x0402008049282000, 0x0000002402080480, 0x08001c0422017001, 0x000200001420a801,
    0x2010c20011020204, 0x3000308461444500, 0x1000040404c80200, 0x0825011019060080,
};
inline constexpr Factors rookFactors = {
    0x1080004008801020, 0x0840092002c03000, 0x1900200010400900, 0x0880100008000480,
    0x4200100420080200, 0x8100020100080400, 0x0200040110886200, 0x0200008040220411,
    0x0404800084400220, 0x0000401000402000, 0x0086001081220440, 0x0408800800100280,
    0x000a001201040820, 0x8848800200840080, 0x4001000100040200, 0x0442000102105084,
    0x9080010020804100, 0x0040404000201009, 0x0000808010002009, 0x2200090021d00100,
    0x0008008008040080, 0x0004004002010040, 0x0011040008015042, 0x00000a0001768104,
    0x0000800080204009, 0x2010004140002001, 0x9800200280100080, 0x1000100080080080,
    0x0442000a00049020, 0x2100040080020080, 0x0800120400900148, 0x0010040a00128541,
    0x2800804000800030, 0x1010002000400041, 0x4000200011004100, 0x0610008410800800,
    0x0400802402800800, 0xc100020080800400, 0x0002000802000401, 0x0182085882000401,
    0x0220204000808000, 0x2860100040024022, 0x0001002004110040, 0x99101042000a0020,
    0x0004080004008080, 0x0010040002008080, 0x2012004881020004, 0x8300842444820011,
    0x0088403882010200, 0x0820400080210100, 0x0110910040a00300, 0x0801100280080480,
    0x0242009008200600, 0x1002000489500200, 0x0040800200010080, 0x0091800041000080,
    0x0000209300488001, 0x04c1002414824001, 0x020020000b001041, 0x7000100004200901,
    0x8002002004100802, 0x30010002084c0007, 0x0888221800813004, 0x4000002840840112,
};
// clang-format on

inline constexpr std::size_t BishopTableSize = tableSize<bishopDeltas>();
inline constexpr std::size_t SliderTableSize = BishopTableSize + tableSize<rookDeltas>();

// Filled at start-up, before main.
extern std::array<Bitboard, SliderTableSize> sliderAttackTable;

inline constexpr Magics bishopMagics = makeMagics<bishopDeltas>(bishopFactors, sliderAttackTable.data());
inline constexpr Magics rookMagics = makeMagics<rookDeltas>(rookFactors, sliderAttackTable.data() + BishopTableSize);

inline Bitboard lookUp(const Magic& m, Bitboard all) { return m.attacks[(all & m.mask) * m.factor >> m.shift]; }

}  // namespace detail

inline Bitboard bishopAttacks(Square88 square, Bitboard all) {
  return detail::lookUp(detail::bishopMagics[square], all);
}
inline Bitboard rookAttacks(Square88 square, Bitboard all) { return detail::lookUp(detail::rookMagics[square], all); }

}  // namespace torvy
