#include "eval/material.h"

#include <algorithm>

#include "eval/packed_score.h"

namespace torvy {

namespace {

constexpr ScorePair pieceValue[7] = {{0, 0}, {127, 100}, {424, 376}, {402, 403}, {621, 594}, {1220, 1223}, {0, 0}};
constexpr ScorePair bishopPair = {42, 69};
// Per own pawn above five: knights gain, rooks lose.
constexpr ScorePair knightPerPawn = {7, 6};
constexpr ScorePair rookPerPawn = {-15, -12};

std::uint32_t makeSignature(const std::uint8_t (&count)[8]) {
  using namespace signature;
  return std::uint32_t(count[Pawn]) << PawnShift | std::uint32_t(count[Knight]) << KnightShift |
         std::uint32_t(count[Bishop]) << BishopShift | std::uint32_t(count[Rook]) << RookShift |
         std::uint32_t(count[Queen]) << QueenShift | std::uint32_t(count[Knight] + count[Bishop]) << MinorShift |
         std::uint32_t(count[Rook] + count[Queen]) << MajorShift |
         std::uint32_t(count[TotalCountIndex] - 1) << MenShift;
}

// Two knights can't force mate; two minors of which one is a bishop can.
bool hasMatingMaterial(const std::uint8_t (&count)[8]) {
  if (count[Pawn] + count[Rook] + count[Queen] > 0) return true;
  const int minors = count[Knight] + count[Bishop];
  return minors > 2 || (minors == 2 && count[Bishop] > 0);
}

// Material of one colour, with its bishop pair and the pawn-count adjustment.
ScoreSum colourMaterial(const std::uint8_t (&count)[8]) {
  ScoreSum total;
  for (PieceType t = Pawn; t <= Queen; ++t) {
    total.mg += pieceValue[t].mg * count[t];
    total.eg += pieceValue[t].eg * count[t];
  }
  if (count[Bishop] > 1) total += bishopPair;
  const int pawnsAboveFive = count[Pawn] - 5;
  total.mg += pawnsAboveFive * (knightPerPawn.mg * count[Knight] + rookPerPawn.mg * count[Rook]);
  total.eg += pawnsAboveFive * (knightPerPawn.eg * count[Knight] + rookPerPawn.eg * count[Rook]);
  return total;
}

}  // namespace

MaterialInfo computeMaterial(const Board_0x88& board) {
  const auto& white = board.pieceCount[White];
  const auto& black = board.pieceCount[Black];
  MaterialInfo m;
  m.signature[White] = makeSignature(white);
  m.signature[Black] = makeSignature(black);
  const unsigned phase = white[Knight] + black[Knight] + white[Bishop] + black[Bishop] +
                         2 * (white[Rook] + black[Rook]) + 4 * (white[Queen] + black[Queen]);
  m.phase = std::min(phase, 24u);
  const ScoreSum whiteMaterial = colourMaterial(white);
  const ScoreSum blackMaterial = colourMaterial(black);
  m.materialMg = std::int16_t(whiteMaterial.mg - blackMaterial.mg);
  m.materialEg = std::int16_t(whiteMaterial.eg - blackMaterial.eg);
  m.canWin[White] = hasMatingMaterial(white);
  m.canWin[Black] = hasMatingMaterial(black);
  return m;
}

}  // namespace torvy
