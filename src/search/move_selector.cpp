#include "search/move_selector.h"

#include <cstdio>

#include "board/move_text.h"

namespace torvy {

void reportHashCollision(Move m, bool inCheck) {
  char text[MoveTextSize];
  moveToText(m, text);
  std::printf("# hash collision: %5s %s\n", text, inCheck ? "(in check)" : "(not in check)");
  std::fflush(stdout);
}

}  // namespace torvy
