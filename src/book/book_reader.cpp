#include "book/book_reader.h"

#include <unistd.h>

#include <cerrno>

namespace torvy {

bool BookReader::read(std::uint64_t index, BookEntry& entry) {
  if (index - first_ >= count_ && !loadBlockOf(index)) return false;
  entry = decodeBookEntry(window_[index - first_]);
  return true;
}

bool BookReader::loadBlockOf(std::uint64_t index) {
  errno = 0;
  count_ = 0;
  first_ = index - index % BlockEntries;
  const ssize_t got = ::pread(fileno(file_), window_, sizeof window_, off_t(first_ * BookEntrySize));
  if (got < 0) return false;
  count_ = std::uint64_t(got) / BookEntrySize;
  return index - first_ < count_;
}

}  // namespace torvy
