// Helpers for the tablebase tests: the installed 3-man tables and hand-made table files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "scratch_folder.h"
#include "tablebase/tablebase_files.h"

namespace torvy::testing {

// Where Debian's gaviotatb package puts its 3-man tables, one folder per scheme ("gtb4" ...).
inline std::filesystem::path installedTableFolder(int scheme) {
  return std::filesystem::path("/usr/share/gaviotatb") / ("gtb" + std::to_string(scheme));
}

// Tests that read the real tables derive from this; they skip where the package isn't installed.
class InstalledTablesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int scheme = 1; scheme <= 4; ++scheme)
      if (!std::filesystem::exists(installedTableFolder(scheme) / ("kqk.gtb.cp" + std::to_string(scheme))))
        GTEST_SKIP() << "Gaviota 3-man tables not found (install Debian's gaviotatb package)";
  }
};

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

// A block of values in the stored scheme, which reads back as written, or in the run-length
// scheme as runs of at most 252 (a count of 253 would read as a literal 253); both behind the
// block's skipped first byte.
inline Bytes encodedBlock(CompressionScheme scheme, const Bytes& values) {
  Bytes block{0};
  if (scheme == CompressionScheme::Stored) {
    block.insert(block.end(), values.begin(), values.end());
    return block;
  }
  for (std::size_t i = 0; i < values.size();) {
    std::size_t run = 1;
    while (i + run < values.size() && run < 252 && values[i + run] == values[i]) ++run;
    block.insert(block.end(), {253, std::uint8_t(run), values[i]});
    i += run;
  }
  return block;
}

// The blocks of a table that holds byteOf(side, index) for every position of the endgame,
// White's blocks first.
template <class ByteOf>
std::vector<Bytes> tableBlocks(std::string_view endgame, CompressionScheme scheme, ByteOf byteOf) {
  const std::uint32_t maxIndex = Endgames[findEndgame(endgame)].maxIndex;
  std::vector<Bytes> blocks;
  for (int side = 0; side < 2; ++side)
    for (std::uint32_t base = 0; base < maxIndex; base += ValuesPerBlock) {
      Bytes values;
      for (std::uint32_t i = base; i < base + valuesInBlock(base, maxIndex); ++i) values.push_back(byteOf(side, i));
      blocks.push_back(encodedBlock(scheme, values));
    }
  return blocks;
}

inline void writeTable(const std::string& folder, std::string_view endgame, CompressionScheme scheme,
                       const std::vector<Bytes>& blocks) {
  writeFile(tablebaseFileName(folder, endgame, scheme).data(), tableFile(blocks));
}

}  // namespace torvy::testing
