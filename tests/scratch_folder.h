// A folder of its own under /tmp for files a test writes (books, tables, torvy.ini), removed
// with everything in it at the end of its scope.
#pragma once

#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace torvy::testing {

using Bytes = std::vector<std::uint8_t>;

inline void writeFile(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

inline void writeFile(const std::filesystem::path& path, const Bytes& bytes) {
  writeFile(path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

class ScratchFolder {
 public:
  ScratchFolder() {
    char name[] = "/tmp/torvy-test-XXXXXX";
    path_ = mkdtemp(name) ? name : "";
  }
  ~ScratchFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string path() const { return path_.string(); }
  std::string file(const std::string& name) const { return (path_ / name).string(); }
  std::string subfolder(const std::string& name) const {
    std::filesystem::create_directories(path_ / name);
    return file(name);
  }
  template <class Content>
  void write(const std::string& name, const Content& content) const {
    writeFile(path_ / name, content);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace torvy::testing
