// A folder of its own for an engine run, holding the files the engine looks for beside it
// (torvy.ini, a book); removed with everything in it at the end of its scope.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace torvy::testing {

class EngineFolder {
 public:
  EngineFolder() {
    char name[] = "/tmp/torvy-folder-XXXXXX";
    path_ = mkdtemp(name) ? name : "";
  }
  ~EngineFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  EngineFolder(const EngineFolder&) = delete;
  EngineFolder& operator=(const EngineFolder&) = delete;

  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
  }
  void write(const std::string& name, const std::vector<unsigned char>& bytes) const {
    std::ofstream out(path_ / name, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  }

  std::string path() const { return path_.string(); }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace torvy::testing
