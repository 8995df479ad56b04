// Reading input lines and cutting them into words, for the command loop and the configuration file.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace torvy {

// Input lines of this many bytes or more arrive in pieces.
constexpr std::size_t LineBufferSize = 1024;

// One line into the buffer, without its line feed, carriage return and trailing blanks; false at
// end of input. A line longer than the buffer arrives as several lines.
bool readLine(char* buffer, std::size_t size, std::FILE* stream);

// One line of any length, stripped like readLine's; false at end of input. UCI sends a game's
// moves on one line, which outgrows any fixed buffer in a long game.
bool readWholeLine(std::string& line, std::FILE* stream);

// Every piece between separators, empty ones included: the result is never empty.
std::vector<std::string> split(std::string_view text, char separator);

}  // namespace torvy
