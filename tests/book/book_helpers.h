// Helpers of the book tests: book moves from text, book files as bytes, and the real book.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "book/book_entry.h"
#include "book/book_move.h"
#include "scratch_folder.h"

namespace torvy::testing {

constexpr Key StartKey = 0x463B96181691FC9C;

// "e2e4" or "a7a8" with a promotion field.
inline std::uint16_t bookMove(const char* text, unsigned promotion = 0) {
  return makeBookMove(makeSquare(text[0] - 'a', text[1] - '1'), makeSquare(text[2] - 'a', text[3] - '1'), promotion);
}

inline Bytes encodeBook(const std::vector<BookEntry>& entries) {
  Bytes bytes(entries.size() * BookEntrySize);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    BookEntryBytes record;
    encodeBookEntry(entries[i], record);
    std::copy(record, record + BookEntrySize, bytes.begin() + std::ptrdiff_t(i * BookEntrySize));
  }
  return bytes;
}

// pychess_book.bin, which scripts/fetch-book-fixture.sh fetches into fixtures/; tests that need
// it skip where it is missing.
inline std::filesystem::path realBookPath() {
  if (const char* path = std::getenv("TORVY_BOOK_FIXTURE")) return path;
  return std::filesystem::path(TORVY_TEST_DATA).parent_path().parent_path() / "fixtures" / "pychess_book.bin";
}

}  // namespace torvy::testing
