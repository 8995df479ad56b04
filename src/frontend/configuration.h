// The configuration file: key=value lines read once at start-up, before the command line and
// the protocol may change the same options.
#pragma once

#include <optional>
#include <ostream>
#include <string_view>

#include "search/chess_player.h"

namespace torvy {

constexpr const char* ConfigurationFileName = "torvy.ini";

struct ConfigurationLine {
  std::string_view key;
  std::string_view value;  // without the double-quote marks that enclosed it
};

// Nothing for a comment, a blank line or a line without "=".
std::optional<ConfigurationLine> parseConfigurationLine(std::string_view line);

// Stores a known key's value; an unknown key is ignored and a value out of range warned about.
// No table exists yet, so sizes are only stored.
void applyConfigurationLine(const ConfigurationLine& line, ChessPlayer& player, std::ostream& out);

// Reads the file line by line; a file that does not open is no error and says nothing.
void readConfigurationFile(const char* path, ChessPlayer& player, std::ostream& out);

}  // namespace torvy
