// The table files: finding and opening them in the folder list, a first-in first-out limit on how
// many stay open, and each compressed file's index of blocks.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "tablebase/block_decoder.h"
#include "tablebase/compression_scheme.h"
#include "tablebase/endgame_table.h"
#include "tablebase/path_list.h"

namespace torvy {

// The tables cover endings of at most this many men, kings included.
constexpr int MostTablebaseMen = 5;

// The positions of one side to move that share a block.
constexpr std::uint32_t ValuesPerBlock = 16384;

constexpr std::uint32_t blocksPerSide(std::uint32_t maxIndex) { return (maxIndex - 1) / ValuesPerBlock + 1; }
constexpr std::uint32_t blockNumber(int side, std::uint32_t index, std::uint32_t maxIndex) {
  return std::uint32_t(side) * blocksPerSide(maxIndex) + index / ValuesPerBlock;
}
// 16384, or what is left for the last block of a side.
constexpr std::uint32_t valuesInBlock(std::uint32_t firstIndex, std::uint32_t maxIndex) {
  return maxIndex - firstIndex < ValuesPerBlock ? maxIndex - firstIndex : ValuesPerBlock;
}

// File offset of each block, and one more for the end of the last.
struct BlockIndex {
  std::unique_ptr<std::uint32_t[]> offsets;
  std::uint32_t count = 0;

  bool loaded() const { return offsets != nullptr; }
};

constexpr int EndgameAvailable = 0;
constexpr int EndgameGivenUp = 4;

// The run-time state of one endgame beside its constant row in Endgames.
struct EndgameRecord {
  int id = 0;
  std::FILE* file = nullptr;
  // Read by every probing thread without the mutex; a probe that reads it stale costs one more
  // failed attempt at most.
  std::atomic<int> status = EndgameAvailable;
  int pathIndex = 0;  // where the next search of the folders begins
  BlockIndex blockIndex;
};

// 5 fewer than the process may open, kept within 4 to 32.
int openFileLimitFor(long processLimit);
// The same for this process, taking 20 when its limit can't be read.
int processOpenFileLimit();

class TablebaseFiles {
 public:
  static constexpr int MinOpenFiles = 4;
  static constexpr int MaxOpenFiles = 32;
  static constexpr int HeadWords = 10;
  static constexpr std::size_t HeadSize = HeadWords * 4;
  static constexpr int OffsetTableEndWord = 8;

  TablebaseFiles();
  ~TablebaseFiles();
  TablebaseFiles(const TablebaseFiles&) = delete;
  TablebaseFiles& operator=(const TablebaseFiles&) = delete;

  // Takes the folders and scheme and opens every table that can be found, loading its block index;
  // with verbose, returns the report of what was found.
  std::string open(const PathList& paths, CompressionScheme scheme, int openFileLimit, bool verbose);
  // Closes all files, frees all block indexes and makes every endgame available again.
  void close();

  std::FILE* openEndgameFile(int id);
  bool loadBlockIndex(int id);
  // Opens the endgame's file if it was closed, and makes sure its block index is in memory.
  bool prepare(int id);
  // Reads block b of an open endgame whole; false if it can't be read or is too large.
  bool readBlock(int id, std::uint32_t b, BlockOutput buffer, std::size_t& size);
  // Reads count raw values from an open uncompressed file.
  bool readRaw(int id, std::uint64_t offset, std::size_t count, BlockOutput buffer);

  EndgameRecord& record(int id) { return records_[id]; }
  const EndgameRecord& record(int id) const { return records_[id]; }
  CompressionScheme scheme() const { return scheme_; }
  int openFileLimit() const { return openFileLimit_; }
  int openFileCount() const { return openCount_; }
  std::uint64_t filesOpened() const { return filesOpened_; }

 private:
  std::FILE* findFile(EndgameRecord& record);
  void closeOldestFile();
  bool seekAndRead(std::FILE* file, std::uint64_t offset, std::size_t size, std::uint8_t* buffer);

  PathList paths_;
  CompressionScheme scheme_ = CompressionScheme::Lzma;
  int openFileLimit_ = MinOpenFiles;
  std::array<EndgameRecord, EndgameCount> records_;
  // Ids of the open endgames in order of opening: a ring of openCount_ entries from openHead_.
  std::array<int, MaxOpenFiles> openQueue_{};
  int openHead_ = 0;
  int openCount_ = 0;
  std::uint64_t filesOpened_ = 0;
};

}  // namespace torvy
