// Set-up, comparison and perft helpers shared by the board and diagnostics tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/move_text.h"
#include "board/movegen.h"
#include "diagnostics/perft.h"

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

// Everything a make/unmake pair must give back, compared field by field.
inline void expectSamePosition(const Board_0x88& a, const Board_0x88& b) {
  for (int s = 0; s < 120; ++s) {
    ASSERT_EQ(a.pieceOn[s], b.pieceOn[s]) << s;
    ASSERT_EQ(a.colorOn[s], b.colorOn[s]) << s;
    ASSERT_EQ(a.slotOn[s], b.slotOn[s]) << s;
  }
  ASSERT_EQ(0, std::memcmp(a.pieceList, b.pieceList, sizeof a.pieceList));
  ASSERT_EQ(0, std::memcmp(a.pieceCount, b.pieceCount, sizeof a.pieceCount));
  ASSERT_EQ(a.psq[White], b.psq[White]);
  ASSERT_EQ(a.psq[Black], b.psq[Black]);
  ASSERT_EQ(a.castlingRights, b.castlingRights);
  ASSERT_EQ(a.epSquare, b.epSquare);
  ASSERT_EQ(a.halfmoveClock, b.halfmoveClock);
  ASSERT_EQ(a.sideToMove, b.sideToMove);
  ASSERT_EQ(a.historyIndex, b.historyIndex);
  ASSERT_EQ(a.key(), b.key());
  ASSERT_EQ(a.pawnKey(), b.pawnKey());
  ASSERT_EQ(a.lightIndex, b.lightIndex);
  ASSERT_EQ(a.lightKeys[a.lightIndex], b.lightKeys[b.lightIndex]);
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

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace torvy::testing
