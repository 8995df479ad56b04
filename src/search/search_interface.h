// All that a search thread sees of the player that owns it.
#pragma once

#include "search/search_types.h"

namespace torvy {

class SearchInterface {
 public:
  // Thread 0 asks at every node; true once the move's time has run out.
  virtual bool checkTimeout() = 0;
  virtual void printAnalysisLine(unsigned depth, int score, const PvLine& line) = 0;
  virtual void printSearchStats() = 0;

 protected:
  ~SearchInterface() = default;
};

}  // namespace torvy
