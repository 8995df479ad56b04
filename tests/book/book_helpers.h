// Helpers of the book tests: book moves from text, and book files written to a temp folder.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "book/book_entry.h"
#include "book/book_move.h"

namespace torvy::testing {

// "e2e4" or "a7a8" with a promotion field.
inline std::uint16_t bookMove(const char* text, unsigned promotion = 0) {
  return makeBookMove(makeSquare(text[0] - 'a', text[1] - '1'), makeSquare(text[2] - 'a', text[3] - '1'), promotion);
}

inline std::vector<unsigned char> encodeBook(const std::vector<BookEntry>& entries) {
  std::vector<unsigned char> bytes(entries.size() * BookEntrySize);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    BookEntryBytes record;
    encodeBookEntry(entries[i], record);
    std::copy(record, record + BookEntrySize, bytes.begin() + std::ptrdiff_t(i * BookEntrySize));
  }
  return bytes;
}

// A file in the temp folder, unique to this process and name, removed at the end of its scope.
class TempFile {
 public:
  explicit TempFile(const std::string& name)
      : path_(std::filesystem::temp_directory_path() / ("torvy-" + std::to_string(::getpid()) + "-" + name)) {}
  TempFile(const std::string& name, const std::vector<unsigned char>& bytes) : TempFile(name) { write(bytes); }
  ~TempFile() { std::filesystem::remove(path_); }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  void write(const std::vector<unsigned char>& bytes) const {
    std::ofstream out(path_, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  }
  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace torvy::testing
