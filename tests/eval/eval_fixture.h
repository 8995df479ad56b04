// Positions set up from FEN and evaluated against a small pawn hash of their own.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>

#include "board/fen.h"
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

  // Also takes positions that setFromFen refuses, such as both kings in check: the evaluation
  // defines a value for them all the same.
  const Board_0x88& setUp(const char* fen) {
    if (!setFromFen(board, fen)) placeMen(fen);
    return board;
  }

  int score(const char* fen, int alpha = -32000, int beta = 32000) {
    setUp(fen);
    return evaluate(board, pawnHash, alpha, beta);
  }

  Board_0x88 board;

 private:
  void placeMen(const char* fen) {
    board.clear();
    std::istringstream fields(fen);
    std::string placement, side, castling, enPassant;
    int clock = 0;
    fields >> placement >> side >> castling >> enPassant >> clock;
    int file = 0, rank = 7;
    for (char c : placement) {
      if (c == '/') {
        file = 0;
        --rank;
      } else if (c >= '1' && c <= '8') {
        file += c - '0';
      } else {
        const Color color = std::isupper(c) ? White : Black;
        const PieceType type = PieceType(std::string(PieceLetters).find(char(std::tolower(c))));
        ASSERT_TRUE(board.addPiece(makeSquare(file++, rank), type, color)) << fen;
      }
    }
    board.sideToMove = side == "b" ? Black : White;
    board.halfmoveClock = std::uint8_t(clock);
    board.history[0].key = board.computeKey();
    board.history[0].pawnKey = board.computePawnKey();
  }

  PawnHashTable pawnHash;
};

}  // namespace torvy
