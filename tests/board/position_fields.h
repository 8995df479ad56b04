// Everything a make/unmake pair must give back, copied out of a board for comparison without
// copying its long history. The fuzzer uses it too, so it needs nothing of gtest.
#pragma once

#include <algorithm>

#include "board/board.h"

namespace torvy::testing {

struct PositionFields {
  explicit PositionFields(const Board_0x88& b)
      : rights(b.castlingRights),
        ep(b.epSquare),
        halfmoves(b.halfmoveClock),
        side(b.sideToMove),
        historyIndex(b.historyIndex),
        lightIndex(b.lightIndex),
        keys{b.key(), b.pawnKey(), b.lightKeys[b.lightIndex]},
        psq{b.psq[White], b.psq[Black]} {
    std::copy(std::begin(b.pieceOn), std::end(b.pieceOn), pieces);
    std::copy(std::begin(b.colorOn), std::end(b.colorOn), colors);
    std::copy(std::begin(b.slotOn), std::end(b.slotOn), slots);
    std::copy(&b.pieceList[0][0], &b.pieceList[0][0] + 32, &pieceList[0][0]);
    std::copy(&b.pieceCount[0][0], &b.pieceCount[0][0] + 16, &pieceCount[0][0]);
  }
  bool operator==(const PositionFields&) const = default;

  CastlingRights rights;
  Square88 ep;
  std::uint8_t halfmoves;
  Color side;
  std::uint32_t historyIndex, lightIndex;
  Key keys[3];  // the full, the pawn and the light key
  ScorePair psq[2];
  PieceType pieces[128];
  Color colors[128];
  std::uint8_t slots[128];
  Square88 pieceList[2][16];
  std::uint8_t pieceCount[2][8];
};

}  // namespace torvy::testing
