// Set-up, comparison and perft helpers shared by the board and diagnostics tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/move_text.h"
#include "board/movegen.h"
#include "diagnostics/perft.h"
#include "position_fields.h"

namespace torvy::testing {

inline std::unique_ptr<Board_0x88> boardFrom(const char* fen) {
  auto board = std::make_unique<Board_0x88>();
  EXPECT_TRUE(setFromFen(*board, fen)) << fen;
  return board;
}

inline std::vector<std::string> legalMoveTexts(Board_0x88& board) {
  MoveList list;
  generateLegalMoves(board, list);
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < list.count; ++i) texts.push_back(moveToText(list[i]));
  return texts;
}

inline Move legalMove(Board_0x88& board, const char* text) {
  Move m = NoMove;
  EXPECT_TRUE(parseCoordinateMove(board, text, m)) << text;
  return m;
}

inline void play(Board_0x88& board, const char* text, UndoRecord& undo) {
  const Move m = legalMove(board, text);
  forSideToMove(board, [&]<Color Us>() { board.makeMove<Us>(m, undo); });
}

inline void play(Board_0x88& board, std::initializer_list<const char*> texts) {
  for (const char* text : texts) {
    UndoRecord undo;
    play(board, text, undo);
  }
}

inline void expectSamePosition(const Board_0x88& a, const Board_0x88& b) {
  ASSERT_TRUE(PositionFields(a) == PositionFields(b));
}

// One table for all perft counts: big enough to matter, small enough for sanitizer runs.
inline std::uint64_t perftOf(Board_0x88& board, int depth) {
  static PerftTable table;
  if (!table.exists()) {
    std::ostringstream ignored;
    table.resize(16, "Perft hash", ignored);
  }
  table.clear();
  std::uint64_t nodes = 0;
  return perftFromRoot(nodes, board, table, depth);
}

// The same position seen from the other side: ranks reversed, colours and rights swapped.
inline std::string flippedFen(const std::string& fen) {
  std::istringstream in(fen);
  std::string placement, side, castling, ep, rest;
  in >> placement >> side >> castling >> ep;
  std::getline(in, rest);
  auto swapCase = [](char c) { return char(std::isupper(c) ? std::tolower(c) : std::toupper(c)); };
  std::string flipped;
  std::istringstream ranks(placement);
  for (std::string rank; std::getline(ranks, rank, '/');) flipped = rank + (flipped.empty() ? "" : "/") + flipped;
  std::transform(flipped.begin(), flipped.end(), flipped.begin(), swapCase);
  std::string rights;
  for (char right : std::string("KQkq"))
    if (castling.find(swapCase(right)) != std::string::npos) rights += right;
  if (ep != "-") ep[1] = ep[1] == '3' ? '6' : '3';
  return flipped + (side == "w" ? " b " : " w ") + (rights.empty() ? "-" : rights) + ' ' + ep + rest;
}

}  // namespace torvy::testing
