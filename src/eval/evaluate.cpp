#include "eval/evaluate.h"

#include <algorithm>

#include "board/slider_attacks.h"
#include "eval/endgame.h"
#include "eval/eval_report.h"
#include "eval/king_safety.h"
#include "eval/material.h"
#include "eval/packed_score.h"
#include "eval/pawns.h"
#include "eval/pieces.h"

namespace torvy {

namespace {

// The positional part may move the base score this far at most, which makes the lazy exit a
// true bound.
constexpr int PositionalLimit = 200;
constexpr ScorePair sideToMoveBonus = {24, 0};

// Pieces, passed pawns and king safety of one colour, to be tapered as one pair.
template <Color Us, class Book>
ScorePair colourTerms(const Board_0x88& board, const MaterialInfo& material, const PawnInfo& info,
                      const Occupancy& occupancy, Book& book) {
  ScorePair pair = unpack(pieceTerms<Us>(board, info, occupancy, book)) +
                   unpack(kingSafety<Us>(info, board.kingSquare(Us), material.signature[opposite(Us)], book));
  // Most positions have no passed pawn, and the call cost more than this test; the term of
  // none is zero.
  if (info.passed[Us] != 0) pair += unpack(passedPawnScore<Us>(board, material, info, occupancy, book));
  return pair;
}

}  // namespace

// The other tables of the evaluation are built by the compiler.
void initEvaluation() { initPieceSquareTables(); }

template <class Book>
int evaluateWith(const Board_0x88& board, PawnHashTable& pawnHash, int alpha, int beta, Book& book) {
  const MaterialInfo material = computeMaterial(board);
  const int clock = std::min<int>(board.halfmoveClock, 100);
  const int fiftyScale = (10000 - clock * clock) / 100;
  const int fewMenScale = material.menBesideKing(White) + material.menBesideKing(Black) <= 4 ? drawScale(board) : 100;
  if (!material.canWin[White] && !material.canWin[Black]) return 0;
  const int scale = std::min(fewMenScale, fiftyScale);
  if (scale == 0) return 0;
  const int phase = int(material.phase);
  book.setPhaseAndScale(phase, scale);
  if (material.pawns(White) + material.pawns(Black) == 0) return evaluatePawnless(board, material, book);

  const Color us = board.sideToMove;
  const Color them = opposite(us);
  const ScorePair balance = {material.materialMg, material.materialEg};
  book.add(EvalTerm::Material, White, balance);
  book.add(EvalTerm::PieceSquare, White, board.psq[White]);
  book.add(EvalTerm::PieceSquare, Black, board.psq[Black]);
  book.add(EvalTerm::SideToMove, us, sideToMoveBonus);
  int base[2] = {taper(board.psq[White], phase) + taper(balance, phase), taper(board.psq[Black], phase)};
  base[us] += taper(sideToMoveBonus, phase);
  const int s = base[us] - base[them];
  if (scale == 100 && material.canWin[White] && material.canWin[Black]) {
    if (alpha > s + PositionalLimit - 1) return s + PositionalLimit;
    if (beta < s - PositionalLimit + 1) return s - PositionalLimit;
  }

  PawnInfo info;
  const int pawnScore = taper(unpack(evaluatePawns(info, board, pawnHash, book)), phase);
  const Occupancy occupancy = Occupancy::of(board, info.pawns[White], info.pawns[Black]);
  const int whiteTerms = taper(colourTerms<White>(board, material, info, occupancy, book), phase);
  const int blackTerms = taper(colourTerms<Black>(board, material, info, occupancy, book), phase);
  const int whiteView = pawnScore + whiteTerms - blackTerms;
  const int positional = std::clamp(us == White ? whiteView : -whiteView, -PositionalLimit, PositionalLimit);
  int score = s + positional;
  if (!material.canWin[us]) score = std::min(score, 0);
  if (!material.canWin[them]) score = std::max(score, 0);
  return score * scale / 100;
}

int evaluate(const Board_0x88& board, PawnHashTable& pawnHash, int alpha, int beta) {
  NoBook none;
  return evaluateWith(board, pawnHash, alpha, beta, none);
}

template int evaluateWith(const Board_0x88&, PawnHashTable&, int, int, NoBook&);
template int evaluateWith(const Board_0x88&, PawnHashTable&, int, int, EvalReport&);

}  // namespace torvy
