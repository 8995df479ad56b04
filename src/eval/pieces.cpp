#include "eval/pieces.h"

#include "board/geometry.h"
#include "eval/eval_report.h"
#include "eval/tropism.h"

namespace torvy {

namespace {

struct MobilityWeights {
  ScorePair perSquare;
  ScorePair none;  // a piece that can't move at all
};
// Rooks lose in the middle game for each free square; their value comes from files there.
constexpr MobilityWeights knightMobility = {{4, 8}, {-13, -55}};
constexpr MobilityWeights bishopMobility = {{10, 6}, {-10, -20}};
constexpr MobilityWeights rookMobility = {{-2, 13}, {-15, -30}};
constexpr MobilityWeights queenMobilityWeights = {{4, 13}, {-30, -60}};

// By the number of open files on the board, and of open and half-open files together.
constexpr ScorePair rookOpenFile[9] = {{0, 0},  {68, 42},  {88, 20},  {86, 9}, {82, -2},
                                       {35, -6}, {41, -21}, {3, -45}, {0, 0}};
constexpr ScorePair rookHalfOpenFile[9] = {{0, 0},   {25, -42}, {36, 4},  {44, 2}, {55, 8},
                                           {53, 10}, {24, 19},  {0, 20}, {0, 0}};

struct OpenFileWeights {
  ScorePair kingFile;      // the enemy king stands on the open file
  ScorePair besideKing;    // the enemy king stands on a file next to it
};
constexpr OpenFileWeights rookNearKing = {{83, 36}, {54, -21}};
constexpr OpenFileWeights queenNearKing = {{16, 111}, {7, 39}};

ScorePair mobilityScore(int m, const MobilityWeights& weights) {
  return m == 0 ? weights.none : scaled(weights.perSquare, m);
}

// Empty squares along each ray, and the enemy man that ends it.
template <int N>
int sliderMobility(const Board_0x88& board, Square88 s, Color us, const int (&deltas)[N]) {
  int m = 0;
  for (int d : deltas) {
    int t = s + d;
    for (; onBoard(t) && board.pieceOn[t] == NoPiece; t += d) ++m;
    if (onBoard(t) && board.colorOn[t] != us) ++m;
  }
  return m;
}

int knightTargets(const Board_0x88& board, Square88 s, Color us) {
  int m = 0;
  for (int d : knightDeltas) {
    const int t = s + d;
    if (onBoard(t) && board.colorOn[t] != us) ++m;
  }
  return m;
}

ScorePair openFileNearKing(int file, int enemyKingFile, const OpenFileWeights& weights) {
  if (file == enemyKingFile) return weights.kingFile;
  if (file == enemyKingFile - 1 || file == enemyKingFile + 1) return weights.besideKing;
  return ScorePair{};
}

ScorePair rookFile(int file, int enemyKingFile, const PawnInfo& info) {
  if (info.openFiles >> file & 1)
    return rookOpenFile[info.openFileCount] + openFileNearKing(file, enemyKingFile, rookNearKing);
  if (info.halfOpenFiles >> file & 1) return rookHalfOpenFile[info.openFileCount + info.halfOpenFileCount];
  return ScorePair{};
}

// A pawn that has passed the enemy king's rank no longer bears on it.
template <Color Us>
bool bearsOnKing(PieceType type, Square88 s, Square88 enemyKing) {
  if (type != Pawn) return true;
  return Us == White ? rankOf(s) <= rankOf(enemyKing) : rankOf(s) >= rankOf(enemyKing);
}

}  // namespace

PackedScore queenMobility(const Board_0x88& board, Square88 square, Color color) {
  return pack(mobilityScore(sliderMobility(board, square, color, kingDeltas), queenMobilityWeights));
}

template <Color Us, class Book>
PackedScore pieceTerms(const Board_0x88& board, const PawnInfo& info, Book& book) {
  const Square88 enemyKing = board.kingSquare(Us ^ 1);
  const int enemyKingFile = fileOf(enemyKing);
  ScorePair total;
  auto credit = [&](EvalTerm term, ScorePair value) {
    total += value;
    book.add(term, Us, value);
  };
  for (Square88 s : board.pieceList[Us]) {
    if (!onBoard(s)) continue;
    const PieceType type = board.pieceOn[s];
    switch (type) {
      case Knight:
        credit(EvalTerm::Knights, mobilityScore(knightTargets(board, s, Us), knightMobility));
        break;
      case Bishop:
        credit(EvalTerm::Bishops, mobilityScore(sliderMobility(board, s, Us, bishopDeltas), bishopMobility));
        break;
      case Rook:
        credit(EvalTerm::Rooks, mobilityScore(sliderMobility(board, s, Us, rookDeltas), rookMobility) +
                                    rookFile(fileOf(s), enemyKingFile, info));
        break;
      case Queen: {
        ScorePair value = unpack(queenMobility(board, s, Us));
        if (info.openFiles >> fileOf(s) & 1) value += openFileNearKing(fileOf(s), enemyKingFile, queenNearKing);
        credit(EvalTerm::Queens, value);
        break;
      }
      default:
        break;
    }
    if (bearsOnKing<Us>(type, s, enemyKing)) credit(EvalTerm::KingTropism, tropism(type, s, enemyKing));
  }
  return pack(total);
}

template PackedScore pieceTerms<White>(const Board_0x88&, const PawnInfo&, NoBook&);
template PackedScore pieceTerms<Black>(const Board_0x88&, const PawnInfo&, NoBook&);
template PackedScore pieceTerms<White>(const Board_0x88&, const PawnInfo&, EvalReport&);
template PackedScore pieceTerms<Black>(const Board_0x88&, const PawnInfo&, EvalReport&);

}  // namespace torvy
