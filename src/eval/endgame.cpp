#include "eval/endgame.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "eval/eval_report.h"
#include "eval/packed_score.h"

namespace torvy {

namespace {

// Material of one colour as counts of pawns, knights, bishops, rooks and queens.
constexpr std::array<std::uint8_t, 5> menOf(int pawns, int knights, int bishops, int rooks, int queens) {
  return {std::uint8_t(pawns), std::uint8_t(knights), std::uint8_t(bishops), std::uint8_t(rooks), std::uint8_t(queens)};
}
std::array<std::uint8_t, 5> menOf(const Board_0x88& board, Color c) {
  const auto& n = board.pieceCount[c];
  return menOf(n[Pawn], n[Knight], n[Bishop], n[Rook], n[Queen]);
}

constexpr auto RookOnly = menOf(0, 0, 0, 1, 0);
constexpr auto BishopOnly = menOf(0, 0, 1, 0, 0);
constexpr auto KnightOnly = menOf(0, 1, 0, 0, 0);
constexpr auto BishopAndPawn = menOf(1, 0, 1, 0, 0);
constexpr auto QueenOnly = menOf(0, 0, 0, 0, 1);
constexpr auto PawnOnly = menOf(1, 0, 0, 0, 0);
constexpr auto BishopAndKnight = menOf(0, 1, 1, 0, 0);

int distance(Square88 a, Square88 b) {
  return std::max(std::abs(fileOf(a) - fileOf(b)), std::abs(rankOf(a) - rankOf(b)));
}

// a1 and all squares of its colour are dark.
bool isDark(Square88 s) { return (fileOf(s) + rankOf(s)) % 2 == 0; }

int edgeDistance(Square88 s) { return std::min({fileOf(s), 7 - fileOf(s), rankOf(s), 7 - rankOf(s)}); }

// The first square of the colour's pieces of the type, by slot order.
Square88 findMan(const Board_0x88& board, Color c, PieceType type) {
  for (Square88 s : board.pieceList[c])
    if (onBoard(s) && board.pieceOn[s] == type) return s;
  return NoSquare;
}

// King, bishop and rook pawn against the bare king: a draw if the bishop can't cover the
// promotion square and the bare king reaches it.
int bishopAndRookPawn(const Board_0x88& board, Color strong) {
  const Square88 pawn = findMan(board, strong, Pawn);
  if (fileOf(pawn) != 0 && fileOf(pawn) != 7) return 100;
  const Square88 corner = makeSquare(fileOf(pawn), strong == White ? 7 : 0);
  if (isDark(findMan(board, strong, Bishop)) == isDark(corner)) return 100;
  return distance(board.kingSquare(opposite(strong)), corner) <= 1 ? 0 : 50;
}

// Queen against a rook or bishop pawn on its seventh rank with its king beside it: the king
// that the queen can't drive away in time draws.
int queenAgainstSeventhRankPawn(const Board_0x88& board, Color pawnSide) {
  const Square88 pawn = findMan(board, pawnSide, Pawn);
  const int pawnFile = fileOf(pawn);
  if (relativeRank(pawnSide, pawn) != 6) return 100;
  if (pawnFile != 0 && pawnFile != 2 && pawnFile != 5 && pawnFile != 7) return 100;
  // Seen as a Black pawn on the queen side, on a2 or c2.
  const Square88 king = board.kingSquare(pawnSide);
  const bool flipFiles = pawnFile > 3;
  const int kingFile = flipFiles ? 7 - fileOf(king) : fileOf(king);
  const int kingRank = pawnSide == White ? 7 - rankOf(king) : rankOf(king);
  const Square88 seen = makeSquare(kingFile, kingRank);
  const bool rookPawn = pawnFile == 0 || pawnFile == 7;
  const bool drawing = rookPawn
                           ? seen == sq::a1 || seen == sq::b1 || seen == sq::b2
                           : seen == sq::b1 || seen == sq::c1 || seen == sq::d1 || seen == sq::b2 || seen == sq::d2;
  return drawing ? 25 : 100;
}

}  // namespace

int drawScale(const Board_0x88& board) {
  if (board.totalCount(White) + board.totalCount(Black) != 4) return 100;
  for (Color us : {White, Black}) {
    const auto own = menOf(board, us);
    const auto other = menOf(board, opposite(us));
    if (own == RookOnly && other == BishopOnly) return 25;
    if (own == RookOnly && other == KnightOnly) return 12;
    if (own == BishopAndPawn) return bishopAndRookPawn(board, us);
    if (own == QueenOnly && other == PawnOnly) return queenAgainstSeventhRankPawn(board, opposite(us));
  }
  return 100;
}

template <class Book>
int evaluatePawnless(const Board_0x88& board, const MaterialInfo& material, Book& book) {
  const Color toMove = board.sideToMove;
  const int phase = int(material.phase);
  int score[2] = {taper(material.materialMg, material.materialEg, phase), 0};
  // Level material counts White as the weaker side. King, bishop and knight against the bare
  // king is worth far more than the margin, so its owner is always the strong side.
  const Color strong = score[White] > 190 ? White : Black;
  auto credit = [&](EvalTerm term, Color c, int value) {
    score[c] += value;
    book.add(term, toMove, ScorePair{std::int16_t(value), std::int16_t(value)});
  };
  score[toMove] += phase;
  book.add(EvalTerm::SideToMove, toMove, ScorePair{24, 0});
  const bool bishopAndKnightMate = board.totalCount(White) + board.totalCount(Black) == 4 &&
                                   (menOf(board, White) == BishopAndKnight || menOf(board, Black) == BishopAndKnight);
  const Color weak = opposite(strong);
  const Square88 weakKing = board.kingSquare(weak);
  credit(EvalTerm::KingEdgeDistance, weak, edgeDistance(weakKing) * 64);
  credit(EvalTerm::KingDistance, strong, (7 - distance(weakKing, board.kingSquare(strong))) * 2);
  if (bishopAndKnightMate) {
    // The corners of the colour that the bishop can't reach, where no mate can be forced.
    const bool darkBishop = isDark(findMan(board, strong, Bishop));
    const Square88 corner1 = darkBishop ? sq::a8 : sq::a1;
    const Square88 corner2 = darkBishop ? sq::h1 : sq::h8;
    const int d = std::min(distance(weakKing, corner1), distance(weakKing, corner2));
    credit(EvalTerm::KbnkSafeCorner, weak, (7 - d) * 16);
  }
  return score[toMove] - score[opposite(toMove)];
}

template int evaluatePawnless(const Board_0x88&, const MaterialInfo&, NoBook&);
template int evaluatePawnless(const Board_0x88&, const MaterialInfo&, EvalReport&);

}  // namespace torvy
