// Runs the built-in perft suite and prints its wall time and rates.
#include <chrono>
#include <cstdint>
#include <iostream>

#include "diagnostics/self_test.h"

int main() {
  using namespace torvy;
  constexpr std::uint32_t PerftHashSizeMB = 64;
  Board_0x88 board;
  PerftTable table;
  const auto start = std::chrono::steady_clock::now();
  const SelfTestResult result = runSelfTest(board, table, PerftHashSizeMB, std::cout);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::cout << "wall time: " << seconds << " s\n"
            << "leaves/second: " << std::uint64_t(double(result.totalLeaves) / seconds) << '\n'
            << "nodes/second: " << std::uint64_t(double(result.totalNodes) / seconds) << std::endl;
  return result.failed == 0 ? 0 : 1;
}
