#include "diagnostics/bench.h"

#include <charconv>
#include <chrono>
#include <iterator>

#include "diagnostics/bench_positions.h"
#include "diagnostics/fixed_depth_search.h"

namespace torvy {

std::uint64_t runBench(std::ostream& out, unsigned depth) {
  using Clock = std::chrono::steady_clock;
  FixedDepthSearch search(BenchTtHashSizeMB, BenchPawnHashSizeMB);
  std::uint64_t total = 0;
  Clock::duration time{};
  std::size_t number = 0;
  for (const char* fen : BenchPositions) {
    std::uint64_t nodes = 0;
    const bool legal = search.setPosition(fen);
    if (legal) {
      const Clock::time_point start = Clock::now();
      nodes = search.search(depth);
      time += Clock::now() - start;
      total += nodes;
    }
    // After the search, which may have printed a line of its own about a mate it found.
    out << "Position " << ++number << '/' << std::size(BenchPositions) << ": ";
    if (legal)
      out << "nodes " << nodes << std::endl;
    else
      out << "illegal FEN " << fen << std::endl;
  }
  const double seconds = std::chrono::duration<double>(time).count();
  out << "Nodes searched: " << total << '\n'
      << "Nodes/second: " << std::uint64_t(seconds > 0 ? double(total) / seconds : 0) << std::endl;
  return total;
}

int runBenchCommand(std::ostream& out, std::string_view depthText) {
  unsigned depth = DefaultBenchDepth;
  if (!depthText.empty()) {
    const char* end = depthText.data() + depthText.size();
    const auto [stop, error] = std::from_chars(depthText.data(), end, depth);
    if (error != std::errc() || stop != end || depth == 0) {
      out << "Error (depth must be a positive number): " << depthText << std::endl;
      return 1;
    }
  }
  runBench(out, depth);
  return 0;
}

}  // namespace torvy
