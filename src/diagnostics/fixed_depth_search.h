// A search whose node count depends on nothing but the position and the depth: no clock,
// option, book or tablebase reaches it.
#pragma once

#include <cstdint>
#include <memory>

#include "board/board.h"
#include "eval/pawn_hash.h"
#include "search/search_clock.h"
#include "search/search_interface.h"
#include "search/searcher.h"
#include "search/tt_entry.h"
#include "tablebase/tablebase_state.h"

namespace torvy {

// One Searcher as thread 0 of a pool of one, with tables of its own that are emptied for each
// position, as at the start of a game.
class FixedDepthSearch final : SearchInterface {
 public:
  FixedDepthSearch(std::uint32_t ttHashSizeMB, std::uint32_t pawnHashSizeMB);

  // A new game on this position; false when the text can't be read.
  bool setPosition(const char* fen);
  // The nodes of a search of the position set up, to depth (at least 1).
  std::uint64_t search(unsigned depth);

 private:
  // Only the node count matters: the clock never runs out and nothing is printed.
  bool checkTimeout() override { return false; }
  void printAnalysisLine(unsigned, int, const PvLine&) override {}
  void printSearchStats() override {}
  void printSearchNote(std::string_view) override {}

  TranspositionTable ttHash;
  PawnHashTable pawnHash;
  TablebaseState tablebases;  // never set up
  SearchClock clock;          // never started
  std::unique_ptr<Board_0x88> game;
  std::unique_ptr<Searcher> searcher;
};

}  // namespace torvy
