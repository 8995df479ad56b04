#include "eval/pawns.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "eval/eval_report.h"

namespace torvy {

namespace {

constexpr ScorePair isolatedWeight = {-31, -13};
constexpr ScorePair doubledWeight = {-6, -30};
constexpr ScorePair attackedStretchWeight = {-24, -13};
constexpr ScorePair occupiedStretchWeight = {12, -5};

// By blocked promotion distance.
constexpr ScorePair passedBonus[12] = {{0, 0},   {97, 188}, {76, 133}, {20, 84},   {16, 57}, {8, 36},
                                       {32, 20}, {15, 32},  {26, 40},  {-15, -60}, {1, 2},   {1, 1}};
constexpr ScorePair unstoppableBonus[12] = {{0, 0},   {193, 420}, {143, 339}, {95, 90}, {-33, 72}, {-38, 47},
                                            {-9, 55}, {0, 0},     {0, 0},     {0, 0},   {0, 0},    {0, 0}};

constexpr Bitboard FileA = 0x0101010101010101;
constexpr Bitboard FileH = FileA << 7;

// The nearest of a non-empty set in the direction in which Us advances.
template <Color Us>
int nearestAhead(Bitboard set) {
  return Us == White ? std::countr_zero(set) : 63 - std::countl_zero(set);
}

// The squares ahead of a pawn on its own file, up to the last rank; every man there slows it.
template <Color Us>
Bitboard pathToPromotion(int s) {
  const Bitboard file = FileA << (s & 7);
  return Us == White ? file & ~Bitboard(0) << (s + 1) : file & ((Bitboard(1) << s) - 1);
}

// The squares from which an enemy pawn would capture on one of the set, which lies on one file.
template <Color Us>
Bitboard enemyPawnAttackers(Bitboard set, int file) {
  Bitboard attackers = 0;
  if (file != 0) attackers |= Us == White ? set << 7 : set >> 9;
  if (file != 7) attackers |= Us == White ? set << 9 : set >> 7;
  return attackers;
}

void collectPawns(PawnInfo& info, const Board_0x88& board) {
  for (Color c : {White, Black})
    for (int slot = SharedSlotsBegin; slot < SlotCount; ++slot) {
      const Square88 s = board.pieceList[c][slot];
      if (!onBoard(s) || board.pieceOn[s] != Pawn) continue;
      info.pawns[c] |= Bitboard(1) << toSquare64(s);
      ++info.fileCount[c][fileOf(s)];
    }
  for (int f = 0; f < 8; ++f) {
    const int colours = (info.fileCount[White][f] > 0) + (info.fileCount[Black][f] > 0);
    if (colours == 0) info.openFiles |= std::uint8_t(1 << f);
    if (colours == 1) info.halfOpenFiles |= std::uint8_t(1 << f);
  }
}

// The pawns of Us with no enemy pawn ahead on their own or a neighbouring file: the enemy pawns
// spread backwards from Us's side and sideways, which is passedMask seen from the other end.
template <Color Us>
Bitboard passedPawns(const PawnInfo& info) {
  Bitboard span = info.pawns[opposite(Us)];
  if constexpr (Us == White) {
    span >>= 8;
    span |= span >> 8;
    span |= span >> 16;
    span |= span >> 32;
  } else {
    span <<= 8;
    span |= span << 8;
    span |= span << 16;
    span |= span << 32;
  }
  span |= (span & ~FileH) << 1 | (span & ~FileA) >> 1;
  return info.pawns[Us] & ~span;
}

// What a pawn hash miss computes. Out of line: inlined, it made every hit save and restore
// five registers.
template <class Book>
[[gnu::noinline]] PawnHashData analysePawns(PawnInfo& info, const Board_0x88& board, Book& book) {
  collectPawns(info, board);
  info.passed[White] = passedPawns<White>(info);
  info.passed[Black] = passedPawns<Black>(info);
  const ScorePair black = unpack(pawnStructure<Black>(info, book));
  const ScorePair white = unpack(pawnStructure<White>(info, book));
  const auto passedColours = std::uint8_t((info.passed[White] != 0) << White | (info.passed[Black] != 0) << Black);
  return PawnHashData{
      {info.pawns[White], info.pawns[Black]}, pack(white - black), info.openFiles, info.halfOpenFiles, passedColours};
}

}  // namespace

template <class Book>
PackedScore evaluatePawns(PawnInfo& info, const Board_0x88& board, PawnHashTable& pawnHash, Book& book) {
  const Key key = board.pawnKey();
  PawnHashEntry& entry = *pawnHash.cluster(key);
  PawnHashData data;
  if (entry.load(key, data)) {
    pawnHash.countHit();
    info.pawns[White] = data.pawns[White];
    info.pawns[Black] = data.pawns[Black];
    info.openFiles = data.openFiles;
    info.halfOpenFiles = data.halfOpenFiles;
    // Passed pawns are rare, and the entry tells which colours have any: the spans of the
    // others need no filling.
    info.passed[White] = data.passedColours >> White & 1 ? passedPawns<White>(info) : 0;
    info.passed[Black] = data.passedColours >> Black & 1 ? passedPawns<Black>(info) : 0;
    book.add(EvalTerm::PawnStructure, White, unpack(data.structure));
  } else {
    data = analysePawns(info, board, book);
    entry.store(key, data);
  }
  info.openFileCount = std::uint8_t(countSquares(info.openFiles));
  info.halfOpenFileCount = std::uint8_t(countSquares(info.halfOpenFiles));
  return data.structure;
}

template <Color Us, class Book>
PackedScore pawnStructure(const PawnInfo& info, Book& book) {
  const Bitboard own = info.pawns[Us];
  const Bitboard enemy = info.pawns[opposite(Us)];
  const auto& count = info.fileCount[Us];
  ScorePair total;
  unsigned isolatedFiles = 0;
  for (int f = 0; f < 8; ++f) {
    if (count[f] == 0) continue;
    const bool leftNeighbour = f > 0 && count[f - 1] > 0;
    const bool rightNeighbour = f < 7 && count[f + 1] > 0;
    if (!leftNeighbour && !rightNeighbour) {
      total += isolatedWeight;
      isolatedFiles |= 1u << f;
    }
    if (count[f] != 1) total += doubledWeight;
  }
  for (Bitboard set = own; set; set &= set - 1) {
    const int s = std::countr_zero(set);
    const int file = s & 7;
    const int relative = Us == White ? s >> 3 : 7 - (s >> 3);
    if ((isolatedFiles >> file & 1) || relative > 4) continue;
    if (supportMask[Us][s] & own) continue;
    // Not isolated and not supported, so an own pawn stands ahead on a neighbouring file;
    // the pawn's own file up to the nearest such rank is the way it must go to find support.
    const int nearest = nearestAhead<Us>(passedMask[Us][s] & ~forwardFile[Us][s] & own);
    const int stopRank = nearest >> 3;
    const Bitboard stretch = forwardFile[Us][s] & ~forwardFile[Us][stopRank * 8 + file];
    if (enemyPawnAttackers<Us>(stretch, file) & enemy) total += attackedStretchWeight;
    if (stretch & enemy) total += occupiedStretchWeight;
  }
  book.add(EvalTerm::WeakPawns, Us, total);
  return pack(total);
}

template <Color Us, class Book>
PackedScore passedPawnScore(const Board_0x88& board, const MaterialInfo& material, const PawnInfo& info,
                            const Occupancy& occupancy, Book& book) {
  constexpr Color Them = opposite(Us);
  constexpr int promotionRank = Us == White ? 7 : 0;
  const Square88 enemyKing = board.kingSquare(Them);
  // A single enemy piece beside pawns is the one case in which the king race decides.
  const bool loneEnemyPiece = material.pawns(Them) + 1 == material.menBesideKing(Them);
  ScorePair total;
  for (Bitboard set = info.passed[Us]; set; set &= set - 1) {
    const int s = std::countr_zero(set);
    const int rank = Us == White ? s >> 3 : 7 - (s >> 3);
    const Bitboard path = pathToPromotion<Us>(s);
    // The double step saves a move; every man on the way costs one.
    const int n = (rank == 1 ? 5 : 7 - rank) + countSquares(path & occupancy.all);
    const bool blocked = (path & occupancy.men(Them)) != 0;
    const int divisor = blocked ? 4 : 1;
    total += ScorePair{std::int16_t(passedBonus[n].mg / divisor), std::int16_t(passedBonus[n].eg / divisor)};
    if (blocked || !loneEnemyPiece) continue;
    const int fileDistance = std::abs((s & 7) - fileOf(enemyKing));
    const int rankDistance = std::abs(promotionRank - rankOf(enemyKing));
    const int kingDistance = std::max(fileDistance, rankDistance) - (board.sideToMove == Them ? 1 : 0);
    if (kingDistance > n) total += unstoppableBonus[n];
  }
  book.add(EvalTerm::PassedPawns, Us, total);
  return pack(total);
}

template PackedScore evaluatePawns(PawnInfo&, const Board_0x88&, PawnHashTable&, NoBook&);
template PackedScore evaluatePawns(PawnInfo&, const Board_0x88&, PawnHashTable&, EvalReport&);
template PackedScore pawnStructure<White>(const PawnInfo&, NoBook&);
template PackedScore pawnStructure<Black>(const PawnInfo&, NoBook&);
template PackedScore passedPawnScore<White>(const Board_0x88&, const MaterialInfo&, const PawnInfo&, const Occupancy&,
                                            NoBook&);
template PackedScore passedPawnScore<Black>(const Board_0x88&, const MaterialInfo&, const PawnInfo&, const Occupancy&,
                                            NoBook&);
template PackedScore passedPawnScore<White>(const Board_0x88&, const MaterialInfo&, const PawnInfo&, const Occupancy&,
                                            EvalReport&);
template PackedScore passedPawnScore<Black>(const Board_0x88&, const MaterialInfo&, const PawnInfo&, const Occupancy&,
                                            EvalReport&);

}  // namespace torvy
