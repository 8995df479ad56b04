// Positions set up from FEN and evaluated against a small pawn hash of their own.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "board/fen.h"
#include "board/movegen.h"
#include "eval/eval_report.h"
#include "eval/evaluate.h"
#include "eval/pawn_hash.h"

namespace torvy {

class EvalFixture : public ::testing::Test {
 protected:
  EvalFixture() {
    initEvaluation();
    std::ostringstream sink;
    pawnHash.resize(1, "Pawn hash", sink);
  }

  const Board_0x88& setUp(const char* fen) {
    EXPECT_TRUE(setFromFen(board, fen)) << fen;
    return board;
  }

  int score(const char* fen, int alpha = -32000, int beta = 32000) {
    setUp(fen);
    return evaluate(board, pawnHash, alpha, beta);
  }

  // The terms of the position as the report books them.
  EvalReport terms(const char* fen) {
    setUp(fen);
    EvalReport report;
    evaluateWith(board, pawnHash, -32000, 32000, report);
    return report;
  }

  // Plays games of random legal moves from the start position and shows each position to visit.
  template <class Visit>
  void playRandomGames(int games, unsigned seed, Visit visit) {
    std::mt19937 random(seed);
    for (int game = 0; game < games; ++game) {
      setStartPosition(board);
      for (int ply = 0; ply < 300 && board.halfmoveClock < 100; ++ply) {
        MoveList moves;
        generateLegalMoves(board, moves);
        if (moves.count == 0) break;
        const Move m = moves[random() % moves.count];
        UndoRecord undo;
        forSideToMove(board, [&]<Color Us>() { board.makeMove<Us>(m, undo); });
        visit(board);
      }
    }
  }

  // The same position with the board turned upside down and the colours swapped.
  static void setMirror(const Board_0x88& from, Board_0x88& to) {
    to.clear();
    for (Color c : {White, Black})
      for (Square88 s : from.pieceList[c])
        if (onBoard(s)) to.addPiece(Square88(s ^ 0x70), from.pieceOn[s], opposite(c));
    to.sideToMove = opposite(from.sideToMove);
    to.halfmoveClock = from.halfmoveClock;
    to.history[0].key = to.computeKey();
    to.history[0].pawnKey = to.computePawnKey();
  }

  Board_0x88 board;
  PawnHashTable pawnHash;
};

}  // namespace torvy
