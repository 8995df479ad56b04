#include "search/move_selector.h"

#include <cstdio>

#include "board/move_text.h"
#include "search/console.h"

namespace torvy {

void reportHashCollision(Move m, bool inCheck) {
  char text[MoveTextSize];
  moveToText(m, text);
  char line[64];
  std::snprintf(line, sizeof line, "# hash collision: %5s %s", text, inCheck ? "(in check)" : "(not in check)");
  printLine(line);
}

}  // namespace torvy
