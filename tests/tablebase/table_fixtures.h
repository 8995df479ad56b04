// Helpers for the tablebase tests: scratch folders, hand-made table files, the installed tables.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace torvy::test {

using Bytes = std::vector<std::uint8_t>;

// Where Debian's gaviotatb package puts its 3-man tables, one folder per scheme ("gtb4" ...).
inline const std::filesystem::path InstalledTables = "/usr/share/gaviotatb";

inline std::filesystem::path installedTableFolder(int scheme) {
  return InstalledTables / ("gtb" + std::to_string(scheme));
}

// Tests that read the real tables derive from this; they skip where the package isn't installed.
class InstalledTablesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int scheme = 1; scheme <= 4; ++scheme)
      if (!std::filesystem::exists(installedTableFolder(scheme) / ("kqk.gtb.cp" + std::to_string(scheme))))
        GTEST_SKIP() << "Gaviota 3-man tables not found under " << InstalledTables
                     << " (install Debian's gaviotatb package)";
  }
};

// A folder of its own under the system's temporary folder, removed with everything in it.
class ScratchFolder {
 public:
  ScratchFolder() {
    static std::atomic<int> counter = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("torvy-tb-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string string() const { return path_.string(); }
  std::string subfolder(const std::string& name) const {
    std::filesystem::create_directories(path_ / name);
    return (path_ / name).string();
  }

 private:
  std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

inline void appendLittleEndian32(Bytes& bytes, std::uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(std::uint8_t(word >> shift));
}

// The layout of a compressed table file: a ten-word head whose word 8 ends the offset table,
// the offsets, then the blocks as given (each block's first byte included).
inline Bytes tableFile(const std::vector<Bytes>& blocks) {
  const std::uint32_t tableEnd = 40 + 4 * std::uint32_t(blocks.size() + 1);
  Bytes file;
  for (int word = 0; word < 10; ++word) appendLittleEndian32(file, word == 8 ? tableEnd : 0);
  std::uint32_t offset = tableEnd;
  for (const Bytes& block : blocks) {
    appendLittleEndian32(file, offset);
    offset += std::uint32_t(block.size());
  }
  appendLittleEndian32(file, offset);
  for (const Bytes& block : blocks) file.insert(file.end(), block.begin(), block.end());
  return file;
}

}  // namespace torvy::test
