// Perft on a position given as FEN, and the colour-flipped twin of a FEN.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "board/fen.h"
#include "diagnostics/perft.h"

namespace torvy::testing {

// One table for all perft tests: big enough to matter, small enough for sanitizer runs.
inline PerftTable& sharedPerftTable() {
  static PerftTable table;
  if (!table.exists()) {
    std::ostringstream ignored;
    table.resize(16, "Perft hash", ignored);
  }
  return table;
}

inline std::uint64_t perftOf(Board_0x88& board, int depth) {
  PerftTable& table = sharedPerftTable();
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
  std::vector<std::string> ranks;
  std::istringstream rankStream(placement);
  for (std::string rank; std::getline(rankStream, rank, '/');) ranks.insert(ranks.begin(), rank);
  auto swapCase = [](std::string text) {
    for (char& c : text) c = char(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c) : std::toupper(c));
    return text;
  };
  std::string flipped;
  for (const std::string& rank : ranks) {
    if (!flipped.empty()) flipped += '/';
    flipped += swapCase(rank);
  }
  std::string rights = castling == "-" ? "-" : "";
  for (char r : std::string("KQkq"))
    if (castling != "-" && castling.find(char(std::isupper(r) ? std::tolower(r) : std::toupper(r))) != std::string::npos)
      rights += r;
  if (ep != "-") ep[1] = ep[1] == '3' ? '6' : '3';
  flipped += side == "w" ? " b " : " w ";
  flipped += rights;
  flipped += ' ';
  flipped += ep;
  flipped += rest;
  return flipped;
}

// True if text has the shape, in which "{n}" stands for one or more digits and "{d}" for one.
inline bool matchesShape(const std::string& text, const std::string& shape) {
  std::size_t t = 0;
  std::size_t s = 0;
  auto digitAt = [&](std::size_t i) { return i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); };
  while (s < shape.size()) {
    if (shape.compare(s, 3, "{n}") == 0 || shape.compare(s, 3, "{d}") == 0) {
      if (!digitAt(t)) return false;
      ++t;
      if (shape[s + 1] == 'n')
        while (digitAt(t)) ++t;
      s += 3;
    } else if (t < text.size() && text[t] == shape[s]) {
      ++t;
      ++s;
    } else {
      return false;
    }
  }
  return t == text.size();
}

}  // namespace torvy::testing
