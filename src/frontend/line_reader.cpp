#include "frontend/line_reader.h"

#include <cstring>

namespace torvy {

bool readLine(char* buffer, std::size_t size, std::FILE* stream) {
  if (std::fgets(buffer, int(size), stream) == nullptr) return false;
  buffer[size - 1] = '\0';
  std::size_t length = std::strlen(buffer);
  auto stripOne = [&](char c) {
    if (length > 0 && buffer[length - 1] == c) buffer[--length] = '\0';
  };
  stripOne('\n');
  stripOne('\r');
  while (length > 0 && buffer[length - 1] == ' ') buffer[--length] = '\0';
  return true;
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  for (std::size_t cut = text.find(separator); cut != std::string_view::npos; cut = text.find(separator)) {
    pieces.emplace_back(text.substr(0, cut));
    text.remove_prefix(cut + 1);
  }
  pieces.emplace_back(text);
  return pieces;
}

}  // namespace torvy
