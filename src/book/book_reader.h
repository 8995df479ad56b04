// Reads the entries of an open book file through a window of one aligned 4 KB block, so that
// the last steps of a binary search and the collection of a position's entries, which all lie
// close together, cost no further calls to the system. Each block is one positioned read of
// the stream's descriptor: a seek and a read through the stream cost twice as much.
#pragma once

#include <cstdint>
#include <cstdio>

#include "book/book_entry.h"

namespace torvy {

class BookReader {
 public:
  static constexpr std::uint64_t BlockEntries = 256;

  explicit BookReader(std::FILE* file) : file_(file) {}

  // False if the entry lies beyond the end of the file or the read failed; errno then tells
  // the system's reason, or is 0 when the file simply ended.
  bool read(std::uint64_t index, BookEntry& entry);

 private:
  bool loadBlockOf(std::uint64_t index);

  std::FILE* file_;
  std::uint64_t first_ = 0;  // index of the window's first entry
  std::uint64_t count_ = 0;  // entries in the window; 0 before the first read
  BookEntryBytes window_[BlockEntries];
};

}  // namespace torvy
