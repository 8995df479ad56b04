// Fixed-depth searches over openings, middlegames and endgames: the single thread's nodes, time
// and nodes per second, then the time to reach the same depth with one and with two threads.
//
//   search_bench [DEPTH]
#include <time.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <thread>

#include "board/fen.h"
#include "diagnostics/fixed_depth_search.h"
#include "eval/evaluate.h"
#include "search/chess_player.h"
#include "search/engine_interface.h"

namespace torvy {
namespace {

// About thirteen seconds of one thread. Even, because with two threads the helper runs the even
// depths only: at an odd depth it is one iteration ahead and helps much less.
constexpr unsigned DefaultDepth = 12;
constexpr std::uint32_t BenchHashMB = 64;
constexpr std::uint32_t BenchPawnHashMB = 8;

struct BenchPosition {
  const char* name;
  const char* fen;
};

// Quiet enough that no position ends early on a forced move or a short mate.
constexpr BenchPosition Positions[] = {
    {"start position", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
    {"open game", "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3"},
    {"Italian", "r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/3P1N2/PPP2PPP/RNBQK2R w KQkq - 1 5"},
    {"King's Indian", "rnbqk2r/ppp1ppbp/3p1np1/8/2PPP3/2N5/PP3PPP/R1BQKBNR w KQkq - 0 5"},
    {"kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"},
    {"promotions", "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1"},
    {"knight fork", "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8"},
    {"symmetric", "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10"},
    {"rooks and knight", "3r1k2/4npp1/1ppr3p/p6P/P2PPPP1/1NR5/5K2/2R5 w - - 0 1"},
    {"closed centre", "2q1rr1k/3bbnnp/p2p1pp1/2pPp3/PpP1P1P1/1P2BNNP/2BQ1PRK/7R b - - 0 1"},
    {"early queen", "rnbqkb1r/p3pppp/1p6/2ppP3/3N4/2P5/PPP1QPPP/R1B1KB1R w KQkq - 0 1"},
    {"Sicilian structure", "r1b2rk1/2q1b1pp/p2ppn2/1p6/3QP3/1BN1B3/PPP3PP/R4RK1 w - - 0 1"},
    {"rook on seventh", "2r3k1/pppR1pp1/4p3/4P1P1/5P2/1P4K1/P1P5/8 w - - 0 1"},
    {"French attack", "1nk1r1r1/pp2n1pp/4p3/q2pPp1N/b1pP1P2/B1P2R2/2P1B1PP/R2Q2K1 w - - 0 1"},
    {"bishop ending", "4b3/p3kp2/6p1/3pP2p/2pP1P2/4K1P1/P3N2P/8 w - - 0 1"},
    {"opposite castling", "2kr1bnr/pbpq4/2n1pp2/3p3p/3P1P1B/2N2N1Q/PPP3PP/2KR1B1R w - - 0 1"},
    {"isolated pawn", "3rr1k1/pp3pp1/1qn2np1/8/3p4/PP1R1P2/2P1NQPP/R1B3K1 b - - 0 1"},
    {"queenside space", "2r1nrk1/p2q1ppp/bp1p4/n1pPp3/P1P1P3/2PBB1N1/4QPPP/R4RK1 w - - 0 1"},
    {"kingside pressure", "r3r1k1/ppqb1ppp/8/4p1NQ/8/2P5/PP3PPP/R3R1K1 b - - 0 1"},
    {"Benoni structure", "r2q1rk1/4bppp/p2p4/2pP4/3pP3/3Q4/PP1B1PPP/R3R1K1 w - - 0 1"},
    {"fianchetto", "rnb2r1k/pp2p2p/2pp2p1/q2P1p2/8/1Pb2NP1/PB2PPBP/R2Q1RK1 w - - 0 1"},
    {"heavy pieces", "2r3k1/1p2q1pp/2b1pr2/p1pp4/6Q1/1P1PP1R1/P1PN2PP/5RK1 w - - 0 1"},
    {"Spanish closed", "r2q1rk1/1ppnbppp/p2p1nb1/3Pp3/2P1P1P1/2N2N1P/PPB1QP2/R1B2RK1 b - - 0 1"},
    {"knight outpost", "r4k2/pb2bp1r/1p1qp2p/3pNp2/3P1P2/2N3P1/PPP1Q2P/2KRR3 w - - 0 1"},
    {"hedgehog", "2r2rk1/1bqnbpp1/1p1ppn1p/pP6/N1P1P3/P2B1N1P/1B2QPP1/R2R2K1 b - - 0 1"},
    {"Fine 70", "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1"},
    {"rook and pawns", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1"},
    {"rook ending", "6k1/5pp1/7p/8/3R4/6P1/r4P1P/6K1 w - - 0 1"},
    {"pawn race", "8/pp3k2/2p5/2P5/1P4K1/8/P7/8 w - - 0 1"},
    {"Lucena", "1K1k4/1P6/8/8/8/8/r7/2R5 w - - 0 1"},
};
constexpr int PositionCount = int(sizeof Positions / sizeof Positions[0]);

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The calling thread's processor time: on a shared machine the wall clock also counts other work.
double threadCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

struct SearchRun {
  std::uint64_t nodes = 0;
  double seconds = 0;
  double cpuSeconds = 0;
};

// Only the search itself is timed, not the set-up of the position.
SearchRun runSingle(FixedDepthSearch& single, const char* fen, unsigned depth) {
  single.setPosition(fen);
  const auto start = std::chrono::steady_clock::now();
  const double cpuStart = threadCpuSeconds();
  const std::uint64_t nodes = single.search(depth);
  return {nodes, secondsSince(start), threadCpuSeconds() - cpuStart};
}

// A front end that shows nothing: only the statistics lines, which the player prints itself,
// are read. A search without a time limit gives no move.
class QuietFrontEnd final : public EngineInterface {
 public:
  void makeEngineMove(Move) override {}
  void printThinking(unsigned, int, std::int32_t, std::uint64_t, const PvLine&) override {}
};

// The engine's own pool, as a game would drive it, but searching to a fixed depth.
class PoolBench {
 public:
  explicit PoolBench(std::uint32_t cores) : player_(std::make_unique<ChessPlayer>(clock_, console_)) {
    player_->engine = &frontEnd_;
    player_->ttHashSizeMB = BenchHashMB;
    player_->pawnHashSizeMB = BenchPawnHashMB;
    player_->setCores(cores);
  }

  // The time until every thread is idle again; the nodes are the sum over the threads.
  SearchRun run(const char* fen, unsigned depth) {
    player_->newGame();
    player_->setPosition(fen);
    clock_.timeLimited = false;
    clock_.depthLimited = true;
    clock_.maxDepth = depth;
    sink_.str("");
    const auto start = std::chrono::steady_clock::now();
    player_->startSearch();
    while (!player_->isIdle()) std::this_thread::sleep_for(std::chrono::microseconds(200));
    const double seconds = secondsSince(start);
    return {totalNodesReported(), seconds, 0};
  }

 private:
  std::uint64_t totalNodesReported() const {
    const std::string text = sink_.str();
    const std::string label = "# total nodes = ";
    const std::size_t at = text.rfind(label);
    return at == std::string::npos ? 0 : std::strtoull(text.c_str() + at + label.size(), nullptr, 10);
  }

  SearchClock clock_;
  std::ostringstream sink_;
  Console console_{sink_};
  QuietFrontEnd frontEnd_;
  std::unique_ptr<ChessPlayer> player_;
};

}  // namespace
}  // namespace torvy

int main(int argc, char** argv) {
  using namespace torvy;
  const unsigned depth = argc > 1 ? unsigned(std::atoi(argv[1])) : DefaultDepth;
  initEvaluation();
  for (const BenchPosition& p : Positions) {
    auto board = std::make_unique<Board_0x88>();
    if (!setFromFen(*board, p.fen)) {
      std::printf("bad position %s: %s\n", p.name, p.fen);
      return 1;
    }
  }

  std::printf("Single thread, depth %u, %d positions\n", depth, PositionCount);
  std::printf("%3s %-20s %12s %9s %10s %9s %10s\n", "#", "position", "nodes", "ms", "nps", "cpu ms", "cpu nps");
  FixedDepthSearch single(BenchHashMB, BenchPawnHashMB);
  std::uint64_t totalNodes = 0;
  double totalSeconds = 0;
  double totalCpuSeconds = 0;
  for (int i = 0; i < PositionCount; ++i) {
    const SearchRun r = runSingle(single, Positions[i].fen, depth);
    totalNodes += r.nodes;
    totalSeconds += r.seconds;
    totalCpuSeconds += r.cpuSeconds;
    std::printf("%3d %-20s %12llu %9.0f %10.0f %9.0f %10.0f\n", i + 1, Positions[i].name,
                static_cast<unsigned long long>(r.nodes), r.seconds * 1000, double(r.nodes) / r.seconds,
                r.cpuSeconds * 1000, double(r.nodes) / r.cpuSeconds);
  }
  std::printf("total nodes = %llu, time = %.3f s, nps = %.0f; processor time = %.3f s, nps = %.0f\n\n",
              static_cast<unsigned long long>(totalNodes), totalSeconds, double(totalNodes) / totalSeconds,
              totalCpuSeconds, double(totalNodes) / totalCpuSeconds);

  std::printf("Time to depth %u with the engine's thread pool\n", depth);
  std::printf("%3s %-20s %9s %12s %9s %12s %6s\n", "#", "position", "1t ms", "1t nodes", "2t ms", "2t nodes", "ratio");
  PoolBench one(1);
  PoolBench two(2);
  double seconds[2] = {0, 0};
  std::uint64_t nodes[2] = {0, 0};
  double ratioSum = 0;
  for (int i = 0; i < PositionCount; ++i) {
    const SearchRun a = one.run(Positions[i].fen, depth);
    const SearchRun b = two.run(Positions[i].fen, depth);
    seconds[0] += a.seconds;
    seconds[1] += b.seconds;
    nodes[0] += a.nodes;
    nodes[1] += b.nodes;
    ratioSum += b.seconds / a.seconds;
    std::printf("%3d %-20s %9.0f %12llu %9.0f %12llu %6.3f\n", i + 1, Positions[i].name, a.seconds * 1000,
                static_cast<unsigned long long>(a.nodes), b.seconds * 1000, static_cast<unsigned long long>(b.nodes),
                b.seconds / a.seconds);
  }
  std::printf("1 thread: %.3f s, %llu nodes, nps = %.0f\n", seconds[0], static_cast<unsigned long long>(nodes[0]),
              double(nodes[0]) / seconds[0]);
  std::printf("2 threads: %.3f s, %llu nodes, nps = %.0f\n", seconds[1], static_cast<unsigned long long>(nodes[1]),
              double(nodes[1]) / seconds[1]);
  std::printf("time ratio 2 threads / 1 thread: %.3f of the totals, %.3f mean over positions\n",
              seconds[1] / seconds[0], ratioSum / PositionCount);
  // What the ratio would be on two free cores with both threads at the single thread's speed:
  // the figure that a busy machine cannot distort.
  std::printf("node ratio per thread, (2 thread nodes / 2) / 1 thread nodes: %.3f\n",
              double(nodes[1]) / 2 / double(nodes[0]));
  return 0;
}
