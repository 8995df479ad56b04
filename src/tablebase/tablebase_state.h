// What the engine sees of the endgame tablebases: setting them up from the options, and the two
// probes that turn a board into a mate score. The probes answer nothing until the tables are set up.
#pragma once

#include <cstdint>
#include <string_view>

#include "board/board.h"
#include "tablebase/gaviota_tables.h"
#include "tablebase/path_list.h"

namespace torvy {

class TablebaseState {
 public:
  // Of the cache, this share in 128ths holds win/draw/loss blocks, the rest distance blocks.
  static constexpr unsigned WdlCacheFraction = 96;

  // Tears down whatever was set up before, cached blocks and open files included; then, for the
  // type "gaviota", opens the tables in the folders of gtbPath with a cache of cacheSizeMB.
  void setup(std::string_view type, std::string_view gtbPath, std::uint32_t cacheSizeMB);

  // Scores for the side to move Us: MateScore - n when it mates in n plies, its negation when
  // it is mated, 0 for a draw. The soft probe answers only from cached blocks.
  template <Color Us>
  bool probeHard(const Board_0x88& board, int& value) const;
  template <Color Us>
  bool probeSoft(const Board_0x88& board, int& value) const;

  bool initialised = false;
  PathList paths;
};

// The board as a probe takes it, with Us to move.
TablebaseProbe probeRecordOf(const Board_0x88& board, Color sideToMove);

// The score for the side us of a probe's answer; false for forbidden and unknown codes.
bool tablebaseScore(Color us, unsigned code, unsigned plies, int& value);

}  // namespace torvy
