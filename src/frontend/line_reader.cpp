#include "frontend/line_reader.h"

#include <cstring>

namespace torvy {

namespace {

// The line feed, a carriage return before it and trailing blanks; answers the new length.
std::size_t stripLineEnd(const char* text, std::size_t length) {
  auto stripOne = [&](char c) {
    if (length > 0 && text[length - 1] == c) --length;
  };
  stripOne('\n');
  stripOne('\r');
  while (length > 0 && text[length - 1] == ' ') --length;
  return length;
}

}  // namespace

bool readLine(char* buffer, std::size_t size, std::FILE* stream) {
  if (std::fgets(buffer, int(size), stream) == nullptr) return false;
  buffer[size - 1] = '\0';
  buffer[stripLineEnd(buffer, std::strlen(buffer))] = '\0';
  return true;
}

bool readWholeLine(std::string& line, std::FILE* stream) {
  line.clear();
  char piece[LineBufferSize];
  while (std::fgets(piece, int(sizeof piece), stream) != nullptr) {
    line += piece;
    if (line.back() == '\n') break;
  }
  if (line.empty()) return false;
  line.resize(stripLineEnd(line.data(), line.size()));
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
