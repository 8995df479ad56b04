// All that a search thread sees of the player that owns it.
#pragma once

#include <string_view>

#include "search/search_types.h"

namespace torvy {

class SearchInterface {
 public:
  // Thread 0 asks at every node; true once the move's time has run out.
  virtual bool checkTimeout() = 0;
  virtual void printAnalysisLine(unsigned depth, int score, const PvLine& line) = 0;
  virtual void printSearchStats() = 0;
  // A comment line of thread 0's, such as why it stopped early.
  virtual void printSearchNote(std::string_view line) = 0;

 protected:
  ~SearchInterface() = default;
};

}  // namespace torvy
