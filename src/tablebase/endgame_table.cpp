#include "tablebase/endgame_table.h"

namespace torvy {

static_assert(
    [] {
      for (std::size_t i = 0; i < Shapes.size(); ++i)
        if (std::size_t(Shapes[i].shape) != i) return false;
      return true;
    }(),
    "Shapes must be listed in the order of EndgameShape");

int findEndgame(std::string_view name) {
  for (int id = 0; id < EndgameCount; ++id)
    if (Endgames[id].name == name) return id;
  return -1;
}

}  // namespace torvy
