// Positions set up from FEN and evaluated against a small pawn hash of their own.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <sstream>
#include <string>

#include "board/fen.h"
#include "board/movegen.h"
#include "eval/eval_report.h"
#include "eval/evaluate.h"
#include "eval/pawn_hash.h"

namespace torvy {

struct TermCase {
  const char* fen;
  ScorePair white;  // the term as the report books it for White
};

class EvalFixture : public ::testing::Test {
 protected:
  EvalFixture() {
    initEvaluation();
    std::ostringstream sink;
    pawnHash.resize(1, "Pawn hash", sink);
  }

  // Also takes positions that setFromFen refuses, such as both kings in check: the evaluation
  // defines a value for them all the same.
  const Board_0x88& setUp(const char* fen) {
    if (setFromFen(board, fen)) return board;
    board.clear();
    std::istringstream fields(fen);
    std::string placement, side, castling, enPassant;
    int clock = 0;
    fields >> placement >> side >> castling >> enPassant >> clock;
    int square = makeSquare(0, 7);
    for (char c : placement) {
      if (c == '/')
        square -= 16 + 8;  // from behind the h-file to the a-file of the rank below
      else if (std::isdigit(c))
        square += c - '0';
      else
        EXPECT_TRUE(board.addPiece(Square88(square++), PieceType(std::string(PieceLetters).find(char(std::tolower(c)))),
                                   std::isupper(c) ? White : Black)) << fen;
    }
    board.sideToMove = side == "b" ? Black : White;
    board.halfmoveClock = std::uint8_t(clock);
    board.history[0].key = board.computeKey();
    board.history[0].pawnKey = board.computePawnKey();
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

  void expectWhiteTerm(EvalTerm term, const TermCase& c) {
    EXPECT_EQ(terms(c.fen).term(term, White), c.white) << c.fen;
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
        if (board.sideToMove == White)
          board.makeMove<White>(m, undo);
        else
          board.makeMove<Black>(m, undo);
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
