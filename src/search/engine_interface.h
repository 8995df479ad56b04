// What the search sees of the front end: the one place a finished search hands its move to,
// and the form of its thinking lines.
#pragma once

#include <cstdint>

#include "board/types.h"
#include "search/search_types.h"

namespace torvy {

class EngineInterface {
 public:
  virtual void makeEngineMove(Move move) = 0;
  // A thinking line in the protocol's form; time in centiseconds since the search began.
  virtual void printThinking(unsigned depth, int score, std::int32_t time, std::uint64_t nodes, const PvLine& line) = 0;

 protected:
  ~EngineInterface() = default;
};

}  // namespace torvy
