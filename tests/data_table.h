// Tables kept as text files in tests/data: a row to a line, its fields separated by "|"; lines
// that begin with ";" are notes for the reader.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "board/types.h"
#include "frontend/line_reader.h"

namespace torvy::testing {

using DataRow = std::vector<std::string>;

inline std::vector<DataRow> dataTable(const std::string& name) {
  std::vector<DataRow> rows;
  std::ifstream file(std::filesystem::path(TORVY_TEST_DATA) / name);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == ';') continue;
    DataRow& row = rows.emplace_back();
    for (const std::string& field : split(line, '|')) {
      const std::size_t first = field.find_first_not_of(' ');
      row.push_back(first == std::string::npos ? "" : field.substr(first, field.find_last_not_of(' ') - first + 1));
    }
  }
  return rows;
}

// A square as the tables write it: "e4".
inline Square88 squareNamed(const std::string& name) { return makeSquare(name[0] - 'a', name[1] - '1'); }

}  // namespace torvy::testing
