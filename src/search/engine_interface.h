// What the search sees of the front end: the one place a finished search hands its move to.
#pragma once

#include "board/types.h"

namespace torvy {

class EngineInterface {
 public:
  virtual void makeEngineMove(Move move) = 0;

 protected:
  ~EngineInterface() = default;
};

}  // namespace torvy
