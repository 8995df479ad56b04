#include "diagnostics/self_test.h"

#include "board/fen.h"

namespace torvy {

namespace {

struct SelfTestRow {
  std::uint32_t number;
  const char* fen;
  std::uint32_t depth;
  std::uint64_t expectedLeaves;
};

constexpr const char* Kiwipete = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
constexpr const char* RookEnding = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1";

// The numbers skip 7 and 13; row 20 repeats row 12.
constexpr SelfTestRow selfTestRows[] = {
    {1, StartFen, 1, 20},
    {2, StartFen, 2, 400},
    {3, StartFen, 3, 8902},
    {4, StartFen, 4, 197281},
    {5, StartFen, 5, 4865609},
    {6, StartFen, 6, 119060324},
    {8, Kiwipete, 1, 48},
    {9, Kiwipete, 2, 2039},
    {10, Kiwipete, 3, 97862},
    {11, Kiwipete, 4, 4085603},
    {12, Kiwipete, 5, 193690690},
    {14, "8/3K4/2p5/p2b2r1/5k2/8/8/1q6 b - - 1 67", 1, 50},
    {15, "8/3K4/2p5/p2b2r1/5k2/8/8/1q6 b - - 1 67", 2, 279},
    {16, "8/7p/p5pb/4k3/P1pPn3/8/P5PP/1rB2RK1 b - d3 0 28", 6, 38633283},
    {17, "rnbqkb1r/ppppp1pp/7n/4Pp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", 5, 11139762},
    {18, RookEnding, 6, 11030083},
    {19, RookEnding, 7, 178633661},
    {20, Kiwipete, 5, 193690690},
};

// Rates are printed as unsigned 32-bit values, as the report has always shown them.
std::uint32_t perSecond(std::uint64_t count, std::uint32_t centiseconds) {
  return centiseconds == 0 ? 0 : std::uint32_t(count * 100 / centiseconds);
}

// The set-up has just produced the keys, so the root is neither rebuilt nor tested for check.
std::uint64_t perftFromSetUp(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth) {
  return forSideToMove(board, [&]<Color Us>() { return perftNode<Us, false>(nodes, board, table, depth); });
}

}  // namespace

SelfTestResult runSelfTest(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, std::ostream& out) {
  SelfTestResult result;
  for (const SelfTestRow& row : selfTestRows) {
    const std::int32_t start = SearchClock::now();
    if (!setFromFen(board, row.fen)) {
      out << "# Self-test no. " << row.number << " FAILED  (illegal FEN)" << std::endl;
      ++result.failed;
      continue;
    }
    preparePerftHash(table, sizeMB, out);
    std::uint64_t nodes = 0;
    const std::uint64_t leaves = perftFromSetUp(nodes, board, table, int(row.depth));
    const std::uint32_t time = std::uint32_t(SearchClock::now() - start);
    result.totalLeaves += leaves;
    result.totalNodes += nodes;
    result.totalCentiseconds += time;
    if (leaves != row.expectedLeaves) {
      out << "# Self-test no. " << row.number << " FAILED  (expected " << row.expectedLeaves << ", got " << leaves
          << ")" << std::endl;
      ++result.failed;
      continue;
    }
    ++result.passed;
    out << "# Self-test no. " << row.number << " passed: n=" << leaves << ", t=" << time
        << ", lps=" << perSecond(leaves, time) << ", nps=" << perSecond(nodes, time) << std::endl;
  }
  out << result.passed << " tests passed, " << result.failed << " tests failed, 0 tests skipped, total "
      << result.passed + result.failed << " tests run:" << std::endl;
  out << "n=" << result.totalNodes << ", t=" << result.totalCentiseconds
      << ", lps=" << perSecond(result.totalLeaves, result.totalCentiseconds)
      << ", nps=" << perSecond(result.totalNodes, result.totalCentiseconds) << std::endl;
  return result;
}

}  // namespace torvy
