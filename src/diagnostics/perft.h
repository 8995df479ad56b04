// Perft and divide: leaf counts of the legal move tree, with a table of subtree counts.
#pragma once

#include <cstdint>
#include <ostream>

#include "board/attacks.h"
#include "board/board.h"
#include "search/hash_table.h"
#include "search/search_clock.h"

namespace torvy {

// A subtree count and the depth it holds for, under the low 48 bits of the position key.
struct PerftEntry {
  std::uint64_t count = 0;
  std::uint64_t depthAndKey = 0;  // depth in the low 16 bits, key bits above

  bool isEmpty() const { return (depthAndKey >> 16) == 0; }
  void clear() { *this = PerftEntry{}; }
};

using PerftTable = HashTable<PerftEntry, 4>;

// Empties the table, or creates it at the first use.
void preparePerftHash(PerftTable& table, std::uint32_t sizeMB, std::ostream& out);

// One node of the tree, per colour; InCheck hands down the check of the move that led here,
// without it the node finds any check itself. Depth 1 counts the moves without making them.
template <Color Us, bool InCheck>
std::uint64_t perftNode(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth,
                        const CheckInfo& check = CheckInfo{});

// The leaf count at depth (at least 1) from the board's side to move; nodes counts every call.
std::uint64_t perftFromRoot(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth);

// The "perft N" and "divide N" drivers with their reports.
void runPerft(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, SearchClock& clock, int depth,
              std::ostream& out);
void runDivide(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, SearchClock& clock, int depth,
               std::ostream& out);

}  // namespace torvy
