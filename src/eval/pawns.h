// Pawn structure through the pawn hash, and the passed pawns, which depend on more than pawns.
#pragma once

#include <cstdint>

#include "board/board.h"
#include "eval/eval_term.h"
#include "eval/material.h"
#include "eval/occupancy.h"
#include "eval/packed_score.h"
#include "eval/pawn_hash.h"
#include "eval/pawn_masks.h"

namespace torvy {

// The working record of one evaluation.
struct PawnInfo {
  Bitboard pawns[2] = {};
  Bitboard passed[2] = {};
  std::uint8_t fileCount[2][8] = {};  // filled on a pawn hash miss only
  std::uint8_t openFiles = 0;         // bit f: no pawn on file f
  std::uint8_t halfOpenFiles = 0;     // bit f: pawns of one colour only on file f
  std::uint8_t openFileCount = 0;
  std::uint8_t halfOpenFileCount = 0;
};

// Probes or fills the pawn hash; returns the structure pair, White minus Black.
template <class Book>
PackedScore evaluatePawns(PawnInfo& info, const Board_0x88& board, PawnHashTable& pawnHash, Book& book);

// Isolated, doubled and backward pawns of one colour, from pawns and fileCount alone.
template <Color Us, class Book>
PackedScore pawnStructure(const PawnInfo& info, Book& book);

template <Color Us, class Book>
PackedScore passedPawnScore(const Board_0x88& board, const MaterialInfo& material, const PawnInfo& info,
                            const Occupancy& occupancy, Book& book);

}  // namespace torvy
