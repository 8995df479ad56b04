#include "eval/pieces.h"

#include <array>
#include <utility>

#include "eval/eval_report.h"
#include "eval/mobility.h"
#include "eval/tropism.h"

namespace torvy {

namespace {

// By the number of squares a piece can go to; a piece that can't move at all pays extra.
constexpr int MaxMobility = 28;
// Packed, as are all the weights of this file: a man's terms add up with one addition each.
using MobilityTable = std::array<PackedSum, MaxMobility>;

constexpr MobilityTable makeMobilityTable(ScorePair perSquare, ScorePair none) {
  MobilityTable table{};
  table[0] = packedWeight(none);
  for (int m = 1; m < MaxMobility; ++m) table[m] = packedWeight(scaled(perSquare, m));
  return table;
}
// Rooks lose in the middle game for each free square; their value comes from files there.
constexpr MobilityTable knightMobility = makeMobilityTable({4, 8}, {-13, -55});
constexpr MobilityTable bishopMobility = makeMobilityTable({10, 6}, {-10, -20});
constexpr MobilityTable rookMobility = makeMobilityTable({-2, 13}, {-15, -30});
constexpr MobilityTable queenMobilityTable = makeMobilityTable({4, 13}, {-30, -60});

// By the number of open files on the board, and of open and half-open files together.
using FileTable = std::array<PackedSum, 9>;

constexpr FileTable makeFileTable(const std::array<ScorePair, 9>& pairs) {
  FileTable table{};
  for (std::size_t i = 0; i < pairs.size(); ++i) table[i] = packedWeight(pairs[i]);
  return table;
}
constexpr FileTable rookOpenFile =
    makeFileTable({{{0, 0}, {68, 42}, {88, 20}, {86, 9}, {82, -2}, {35, -6}, {41, -21}, {3, -45}, {0, 0}}});
constexpr FileTable rookHalfOpenFile =
    makeFileTable({{{0, 0}, {25, -42}, {36, 4}, {44, 2}, {55, 8}, {53, 10}, {24, 19}, {0, 20}, {0, 0}}});

struct OpenFileWeights {
  PackedSum kingFile;    // the enemy king stands on the open file
  PackedSum besideKing;  // the enemy king stands on a file next to it
};
constexpr OpenFileWeights rookNearKing = {packedWeight({83, 36}), packedWeight({54, -21})};
constexpr OpenFileWeights queenNearKing = {packedWeight({16, 111}), packedWeight({7, 39})};

PackedSum openFileNearKing(int file, int enemyKingFile, const OpenFileWeights& weights) {
  if (file == enemyKingFile) return weights.kingFile;
  if (file == enemyKingFile - 1 || file == enemyKingFile + 1) return weights.besideKing;
  return 0;
}

PackedSum rookFile(int file, int enemyKingFile, const PawnInfo& info) {
  if (info.openFiles >> file & 1)
    return rookOpenFile[info.openFileCount] + openFileNearKing(file, enemyKingFile, rookNearKing);
  if (info.halfOpenFiles >> file & 1) return rookHalfOpenFile[info.openFileCount + info.halfOpenFileCount];
  return 0;
}

}  // namespace

PackedScore queenMobility(const Board_0x88& board, Square88 square, Color color) {
  const Occupancy occupancy = Occupancy::of(board);
  return pack(unpackSum(queenMobilityTable[queenSquares(square, occupancy.all, targetsOf(occupancy, color))]));
}

namespace {

// What every man of one colour is scored against.
struct Surroundings {
  const Board_0x88& board;
  const PawnInfo& info;
  Bitboard all;
  Bitboard targets;  // for the colour's men
  Square88 enemyKing;
  KingTropism tropism;
};

// What one man earns, with its type known at compile time; the book is told each part. Inlined
// into each slot: as a call, the rook and queen reloaded the surroundings and saved registers.
template <PieceType Type, Color Us, class Book>
[[gnu::always_inline]] inline PackedSum scoreMan(const Surroundings& around, Square88 s, Book& book) {
  const int enemyKingFile = fileOf(around.enemyKing);
  PackedSum piece = 0;  // the king has no piece terms
  if constexpr (Type == Knight) {
    piece = knightMobility[knightSquares(s, around.targets)];
    book.add(EvalTerm::Knights, Us, unpackSum(piece));
  } else if constexpr (Type == Bishop) {
    piece = bishopMobility[bishopSquares(s, around.all, around.targets)];
    book.add(EvalTerm::Bishops, Us, unpackSum(piece));
  } else if constexpr (Type == Rook) {
    piece = rookMobility[rookSquares(s, around.all, around.targets)] + rookFile(fileOf(s), enemyKingFile, around.info);
    book.add(EvalTerm::Rooks, Us, unpackSum(piece));
  } else if constexpr (Type == Queen) {
    piece = queenMobilityTable[queenSquares(s, around.all, around.targets)];
    if (around.info.openFiles >> fileOf(s) & 1) piece += openFileNearKing(fileOf(s), enemyKingFile, queenNearKing);
    book.add(EvalTerm::Queens, Us, unpackSum(piece));
  }
  const PackedSum nearKing = around.tropism.of<Type>(s);
  book.add(EvalTerm::KingTropism, Us, unpackSum(nearKing));
  return piece + nearKing;
}

// Slots 0 to 7 belong to one type each, so their men need no dispatch.
constexpr PieceType ownSlotType[8] = {King, Queen, Rook, Rook, Bishop, Bishop, Knight, Knight};

template <Color Us, class Book, std::size_t... Slot>
void scoreOwnSlots(const Surroundings& around, PackedSum& total, Book& book, std::index_sequence<Slot...>) {
  auto scoreSlot = [&]<std::size_t I>() {
    const Square88 s = around.board.pieceList[Us][I];
    if (onBoard(s)) total += scoreMan<ownSlotType[I], Us>(around, s, book);
  };
  (scoreSlot.template operator()<Slot>(), ...);
}

// Slots 8 to 15: pawns, whose tropism is counted apart, and pieces beyond their own slots.
template <Color Us, class Book>
void scoreSharedSlots(const Surroundings& around, PackedSum& total, Book& book) {
  for (int slot = SharedSlotsBegin; slot < SlotCount; ++slot) {
    const Square88 s = around.board.pieceList[Us][slot];
    if (!onBoard(s) || around.board.pieceOn[s] == Pawn) continue;
    switch (around.board.pieceOn[s]) {
      case Knight: total += scoreMan<Knight, Us>(around, s, book); break;
      case Bishop: total += scoreMan<Bishop, Us>(around, s, book); break;
      case Rook: total += scoreMan<Rook, Us>(around, s, book); break;
      case Queen: total += scoreMan<Queen, Us>(around, s, book); break;
      default: break;
    }
  }
}

}  // namespace

template <Color Us, class Book>
PackedScore pieceTerms(const Board_0x88& board, const PawnInfo& info, const Occupancy& occupancy, Book& book) {
  const Square88 enemyKing = board.kingSquare(opposite(Us));
  const Surroundings around{board, info, occupancy.all, targetsOf(occupancy, Us), enemyKing, KingTropism(enemyKing)};
  const ScorePair pawns = pawnTropism(Us, info.pawns[Us], around.enemyKing);
  book.add(EvalTerm::KingTropism, Us, pawns);
  PackedSum total = packedWeight(pawns);
  scoreOwnSlots<Us>(around, total, book, std::make_index_sequence<SharedSlotsBegin>());
  // Only a promotion puts a piece among the pawns' slots, which the occupancy's count found.
  if (occupancy.piecesInPawnSlots[Us]) scoreSharedSlots<Us>(around, total, book);
  return pack(unpackSum(total));
}

template PackedScore pieceTerms<White>(const Board_0x88&, const PawnInfo&, const Occupancy&, NoBook&);
template PackedScore pieceTerms<Black>(const Board_0x88&, const PawnInfo&, const Occupancy&, NoBook&);
template PackedScore pieceTerms<White>(const Board_0x88&, const PawnInfo&, const Occupancy&, EvalReport&);
template PackedScore pieceTerms<Black>(const Board_0x88&, const PawnInfo&, const Occupancy&, EvalReport&);

}  // namespace torvy
