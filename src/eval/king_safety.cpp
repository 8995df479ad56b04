#include "eval/king_safety.h"

#include <algorithm>
#include <array>

#include "eval/eval_report.h"
#include "eval/material.h"

namespace torvy {

namespace {

constexpr ScorePair holeWeight = {-15, 7};
constexpr ScorePair openKingFileWeight = {-35, -9};
constexpr ScorePair openNeighbourFileWeight = {-8, -11};

constexpr unsigned NearLower = 1, NearHigher = 4, FarLower = 8;

// Holes: no pawn on the lower file in either row, and none on the higher file in the near row.
constexpr std::array<std::uint8_t, 64> makeShelterTable() {
  std::array<std::uint8_t, 64> table{};
  for (unsigned pattern = 0; pattern < 64; ++pattern)
    table[pattern] = std::uint8_t((pattern & (NearLower | FarLower)) == 0) + ((pattern & NearHigher) == 0);
  return table;
}
constexpr std::array<std::uint8_t, 64> shelterTable = makeShelterTable();

}  // namespace

unsigned shelterPattern(SquareSet ownPawns, Square88 kingSquare, Color color) {
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

template <Color Us, class Book>
PackedScore kingSafety(const PawnInfo& info, Square88 kingSquare, std::uint32_t enemySignature, Book& book) {
  const int holes = shelterTable[shelterPattern(info.pawns[Us], kingSquare, Us)];
  ScorePair total = scaled(holeWeight, holes);
  const int heavy = std::min(2u, signature::field(enemySignature, signature::RookShift) +
                                     signature::field(enemySignature, signature::QueenShift));
  // Bit 0 is the lower file, bit 1 the king's, bit 2 the higher; off the board is never open.
  const unsigned open = (unsigned(info.openFiles) << 1) >> fileOf(kingSquare);
  total += scaled(openKingFileWeight, heavy * int(open >> 1 & 1));
  total += scaled(openNeighbourFileWeight, heavy * int((open & 1) + (open >> 2 & 1)));
  book.add(EvalTerm::KingSafety, Us, total);
  return pack(total);
}

template PackedScore kingSafety<White>(const PawnInfo&, Square88, std::uint32_t, NoBook&);
template PackedScore kingSafety<Black>(const PawnInfo&, Square88, std::uint32_t, NoBook&);
template PackedScore kingSafety<White>(const PawnInfo&, Square88, std::uint32_t, EvalReport&);
template PackedScore kingSafety<Black>(const PawnInfo&, Square88, std::uint32_t, EvalReport&);

}  // namespace torvy
