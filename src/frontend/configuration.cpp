#include "frontend/configuration.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "frontend/engine_options.h"
#include "frontend/line_reader.h"

namespace torvy {

namespace {

// Only the blank counts as white space, here as in every command.
std::string_view trimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view unquoted(std::string_view value) {
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') return value.substr(1, value.size() - 2);
  return value;
}

void warnOutOfRange(const ConfigurationLine& line, std::ostream& out, const SizeOption* option) {
  out << "# WARNING: " << line.key << " = " << line.value << " out of range in ini file (min = ";
  if (option == nullptr)
    out << MinCores << ')' << std::endl;
  else
    out << option->min << ", max = " << option->max << ')' << std::endl;
}

}  // namespace

std::optional<ConfigurationLine> parseConfigurationLine(std::string_view line) {
  line = trimBlanks(line);
  if (line.empty() || line.front() == '#') return std::nullopt;
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  return ConfigurationLine{trimBlanks(line.substr(0, equals)), unquoted(trimBlanks(line.substr(equals + 1)))};
}

void applyConfigurationLine(const ConfigurationLine& line, ChessPlayer& player, std::ostream& out) {
  const int number = std::atoi(std::string(line.value).c_str());
  if (line.key == CoresKey) {
    if (number >= MinCores)
      player.setCores(std::uint32_t(number));
    else
      warnOutOfRange(line, out, nullptr);
  } else if (const SizeOption* size = findOption(SizeOptions, line.key)) {
    if (size->accepts(number))
      player.*(size->field) = std::uint32_t(number);
    else
      warnOutOfRange(line, out, size);
  } else if (const PathOption* path = findOption(PathOptions, line.key)) {
    copyOptionPath(player.*(path->field), line.value);
  }
}

void readConfigurationFile(const char* path, ChessPlayer& player, std::ostream& out) {
  std::FILE* file = std::fopen(path, "r");
  if (file == nullptr) return;
  char text[LineBufferSize];
  while (readLine(text, sizeof text, file))
    if (const auto line = parseConfigurationLine(text)) applyConfigurationLine(*line, player, out);
  std::fclose(file);
}

}  // namespace torvy
