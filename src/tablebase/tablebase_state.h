// What the search sees of the endgame tablebases: the two probes, which answer nothing until
// the tables are set up.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace torvy {

class TablebaseState {
 public:
  bool initialised = false;

  // Exact scores for the side to move Us: MateScore - n when it mates in n plies.
  template <Color Us>
  bool probeHard(const Board_0x88&, int&) const {
    return false;
  }
  // The same from cached blocks only, never touching a file.
  template <Color Us>
  bool probeSoft(const Board_0x88&, int&) const {
    return false;
  }
};

}  // namespace torvy
