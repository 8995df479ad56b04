// The built-in perft suite over published positions.
#pragma once

#include <cstdint>
#include <ostream>

#include "diagnostics/perft.h"

namespace torvy {

struct SelfTestResult {
  std::uint32_t passed = 0;
  std::uint32_t failed = 0;
  std::uint64_t totalLeaves = 0;  // of the rows whose FEN was read
  std::uint64_t totalNodes = 0;
  std::uint32_t totalCentiseconds = 0;
};

// Runs every row on the given board and prints each result and the totals.
SelfTestResult runSelfTest(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, std::ostream& out);

}  // namespace torvy
