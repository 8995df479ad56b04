// The commands the engine knows, with their argument counts, whether they stop a search first
// and whether they need a position.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace torvy {

class WBEngine;

using Arguments = std::vector<std::string>;
using CommandHandler = bool (WBEngine::*)(const Arguments&);

struct CommandRow {
  std::string_view name;
  CommandHandler handler;
  std::uint32_t minArgs;
  std::uint32_t maxArgs;
  bool stopsSearch;
  bool needsPosition;  // refused while a failed set-up has left no position
};

// The first row with exactly this name, case counting, or nullptr: unknown commands are ignored.
const CommandRow* findCommand(std::string_view name);

}  // namespace torvy
