// King safety: the own pawns in front of a king, and open files at and beside its file.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "eval/material.h"
#include "eval/packed_score.h"
#include "eval/pawn_masks.h"
#include "eval/pawns.h"

namespace torvy {

// Six bits: near row lower file, king's file, higher file, then the same for the far row.
// A square off the board, and the whole own eighth rank, count as holding a pawn.
constexpr unsigned shelterPattern(Bitboard ownPawns, Square88 kingSquare, Color color) {
  const int file = fileOf(kingSquare);
  const unsigned offBoard = (file == 0 ? 1u : 0u) | (file == 7 ? 4u : 0u);
  unsigned pattern = 0;
  for (int row = 0; row < 2; ++row) {
    const int relative = relativeRank(color, kingSquare) + 1 + row;
    unsigned covered = 7;
    if (relative < 7) {
      // Bit 0 is file - 1; what the shift brings in from beyond the rim is overwritten.
      const int rank = color == White ? relative : 7 - relative;
      covered = (unsigned((ownPawns << 1) >> (rank * 8 + file)) & 7) | offBoard;
    }
    pattern |= covered << (row * 3);
  }
  return pattern;
}

namespace detail {

inline constexpr ScorePair holeWeight = {-15, 7};
inline constexpr ScorePair openKingFileWeight = {-35, -9};
inline constexpr ScorePair openNeighbourFileWeight = {-8, -11};

inline constexpr unsigned NearLower = 1, NearHigher = 4, FarLower = 8;
inline constexpr int MaxHoles = 2;
inline constexpr int MaxHeavy = 2;

// Holes: no pawn on the lower file in either row, and none on the higher file in the near row.
// Each is a mask of the squares whose pawns stop it, so counting holes takes two tests instead
// of building the pattern. A hole that the rim or the eighth rank closes has a1 in its mask,
// where no pawn ever stands and which the own pawns are given.
inline constexpr Bitboard ClosedHole = 1;
struct ShelterMasks {
  Bitboard lower;
  Bitboard higher;
};
using ShelterTable = std::array<std::array<ShelterMasks, 64>, 2>;

// From shelterPattern, whose bits are the OR of what each pawn covers.
constexpr ShelterTable makeShelterTable() {
  ShelterTable table{};
  for (Color c : {White, Black})
    for (int king = 0; king < 64; ++king) {
      const Square88 k = toSquare88(Square64(king));
      ShelterMasks& masks = table[c][king];
      const unsigned closed = shelterPattern(0, k, c);
      if (closed & (NearLower | FarLower)) masks.lower |= ClosedHole;
      if (closed & NearHigher) masks.higher |= ClosedHole;
      for (int pawn = 8; pawn < 56; ++pawn) {
        const unsigned covered = shelterPattern(Bitboard(1) << pawn, k, c) & ~closed;
        if (covered & (NearLower | FarLower)) masks.lower |= Bitboard(1) << pawn;
        if (covered & NearHigher) masks.higher |= Bitboard(1) << pawn;
      }
    }
  return table;
}
inline constexpr ShelterTable shelterTable = makeShelterTable();

// The whole term by holes, heavy enemy pieces (at most two count) and the open files among the
// lower, the king's and the higher file (bits 0 to 2): one load for the three weights.
using SafetyTable = std::array<std::array<std::array<ScorePair, 8>, MaxHeavy + 1>, MaxHoles + 1>;
constexpr SafetyTable makeSafetyTable() {
  SafetyTable table{};
  for (int holes = 0; holes <= MaxHoles; ++holes)
    for (int heavy = 0; heavy <= MaxHeavy; ++heavy)
      for (unsigned open = 0; open < 8; ++open) {
        ScorePair total = scaled(holeWeight, holes);
        total += scaled(openKingFileWeight, heavy * int(open >> 1 & 1));
        total += scaled(openNeighbourFileWeight, heavy * int((open & 1) + (open >> 2 & 1)));
        table[holes][heavy][open] = total;
      }
  return table;
}
inline constexpr SafetyTable safetyTable = makeSafetyTable();

}  // namespace detail

// Shelter holes and open files round the king of Us; inline, as a call cost more than the term.
template <Color Us, class Book>
PackedScore kingSafety(const PawnInfo& info, Square88 kingSquare, std::uint32_t enemySignature, Book& book) {
  const detail::ShelterMasks& masks = detail::shelterTable[Us][toSquare64(kingSquare)];
  const Bitboard pawns = info.pawns[Us] | detail::ClosedHole;
  const int holes = int((pawns & masks.lower) == 0) + int((pawns & masks.higher) == 0);
  const unsigned heavy =
      std::min(unsigned(detail::MaxHeavy), signature::field(enemySignature, signature::RookShift) +
                                               signature::field(enemySignature, signature::QueenShift));
  // Off the board is never open.
  const unsigned open = (unsigned(info.openFiles) << 1) >> fileOf(kingSquare) & 7;
  const ScorePair total = detail::safetyTable[holes][heavy][open];
  book.add(EvalTerm::KingSafety, Us, total);
  return pack(total);
}

}  // namespace torvy
