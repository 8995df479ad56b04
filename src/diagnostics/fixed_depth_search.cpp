#include "diagnostics/fixed_depth_search.h"

#include <sstream>

#include "board/fen.h"

namespace torvy {

FixedDepthSearch::FixedDepthSearch(std::uint32_t ttHashSizeMB, std::uint32_t pawnHashSizeMB)
    : game(std::make_unique<Board_0x88>()) {
  std::ostringstream sizeLines;
  ttHash.resize(ttHashSizeMB, "TT hash", sizeLines);
  pawnHash.resize(pawnHashSizeMB, "Pawn hash", sizeLines);
  clock.timeLimited = false;
  clock.depthLimited = true;
}

bool FixedDepthSearch::setPosition(const char* fen) {
  ttHash.clear();
  pawnHash.clear();
  // A fresh searcher, so that nothing of the last search's killers reaches this one.
  searcher = std::make_unique<Searcher>(0, Searcher::Tables{&ttHash, &pawnHash, &tablebases, &clock, this});
  return setFromFen(*game, fen);
}

std::uint64_t FixedDepthSearch::search(unsigned depth) {
  clock.maxDepth = depth;
  Move best = NoMove;
  Move ponder = NoMove;
  searcher->runSearch(*game, best, ponder);
  return searcher->stats.nodes.get();
}

}  // namespace torvy
