// The folders searched for table files, and the name of a table file in a folder.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "tablebase/compression_scheme.h"

namespace torvy {

using PathList = std::vector<std::string>;

// Appends each non-empty piece of text between semicolons, in order.
void addTablebasePaths(PathList& list, std::string_view text);

// A folder of 255 characters, a separator, a name of five men and the longest extension fit.
using TablebaseFileName = std::array<char, 288>;

// folder + "/" + name + extension; no separator is added when the folder ends in "/".
TablebaseFileName tablebaseFileName(std::string_view folder, std::string_view name, CompressionScheme scheme);

}  // namespace torvy
