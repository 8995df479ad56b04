#include "eval/material.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

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

// The bishop pair and the pawn-count adjustment of one colour, packed.
PackedSum colourAdjustment(const std::uint8_t (&count)[8]) {
  const std::uint32_t pawnsAboveFive = std::uint32_t(count[Pawn]) - 5;
  return (count[Bishop] > 1 ? packedWeight(bishopPair) : 0) +
         pawnsAboveFive * (count[Knight] * packedWeight(knightPerPawn) + count[Rook] * packedWeight(rookPerPawn));
}

// Out of line: inlined, it made every cache hit save and restore six registers.
[[gnu::noinline]] MaterialInfo buildMaterial(const Board_0x88& board) {
  const auto& white = board.pieceCount[White];
  const auto& black = board.pieceCount[Black];
  MaterialInfo m;
  m.signature[White] = makeSignature(white);
  m.signature[Black] = makeSignature(black);
  const unsigned phase = white[Knight] + black[Knight] + white[Bishop] + black[Bishop] +
                         2 * (white[Rook] + black[Rook]) + 4 * (white[Queen] + black[Queen]);
  m.phase = std::uint8_t(std::min(phase, 24u));
  // The piece values are the same for both colours, so only the differences of the counts
  // need multiplying.
  PackedSum balance = colourAdjustment(white) - colourAdjustment(black);
  for (PieceType t = Pawn; t <= Queen; ++t)
    balance += (std::uint32_t(white[t]) - black[t]) * packedWeight(pieceValue[t]);
  const ScorePair halves = unpackSum(balance);
  m.materialMg = halves.mg;
  m.materialEg = halves.eg;
  m.canWin[White] = hasMatingMaterial(white);
  m.canWin[Black] = hasMatingMaterial(black);
  return m;
}

// The materials this thread met last, by their counts: the search meets few distinct ones, so
// most evaluations copy theirs instead of rebuilding it.
struct MaterialEntry {
  std::uint64_t counts[2] = {~std::uint64_t(0), ~std::uint64_t(0)};  // no board counts 255 of each
  MaterialInfo info{};
};
constexpr int MaterialCacheBits = 9;
constexpr std::uint64_t MaterialKeyMix = 0x9E3779B97F4A7C15;
thread_local std::array<MaterialEntry, 1 << MaterialCacheBits> materialCache;

}  // namespace

MaterialInfo computeMaterial(const Board_0x88& board) {
  static_assert(sizeof board.pieceCount[White] == sizeof(std::uint64_t));
  std::uint64_t white, black;
  std::memcpy(&white, board.pieceCount[White], sizeof white);
  std::memcpy(&black, board.pieceCount[Black], sizeof black);
  // The rotation moves Black's counts into the nibbles that White's small counts leave empty.
  MaterialEntry& entry = materialCache[(white ^ std::rotl(black, 4)) * MaterialKeyMix >> (64 - MaterialCacheBits)];
  if (entry.counts[White] != white || entry.counts[Black] != black) entry = {{white, black}, buildMaterial(board)};
  return entry.info;
}

}  // namespace torvy
