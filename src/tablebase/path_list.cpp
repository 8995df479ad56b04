#include "tablebase/path_list.h"

#include <cstdio>

namespace torvy {

void addTablebasePaths(PathList& list, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find(';');
    const std::string_view piece = text.substr(0, end);
    if (!piece.empty()) list.emplace_back(piece);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
}

TablebaseFileName tablebaseFileName(std::string_view folder, std::string_view name, CompressionScheme scheme) {
  TablebaseFileName fileName;
  const bool hasSeparator = !folder.empty() && folder.back() == '/';
  std::snprintf(fileName.data(), fileName.size(), "%.*s%s%.*s%s", int(folder.size()), folder.data(),
                hasSeparator ? "" : "/", int(name.size()), name.data(), fileExtension(scheme));
  return fileName;
}

}  // namespace torvy
