// One record of a Polyglot book file: 16 bytes, big-endian, sorted by key.
#pragma once

#include <cstddef>
#include <cstdint>

#include "board/keys.h"

namespace torvy {

constexpr std::size_t BookEntrySize = 16;
constexpr std::size_t BookKeySize = 8;

struct BookEntry {
  Key key = 0;
  std::uint16_t move = 0;
  std::uint16_t weight = 0;
  std::uint32_t learn = 0;  // read, and not used
};

using BookEntryBytes = unsigned char[BookEntrySize];

constexpr std::uint64_t readBigEndian(const unsigned char* bytes, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < width; ++i) value = value << 8 | bytes[i];
  return value;
}

constexpr void writeBigEndian(std::uint64_t value, unsigned char* bytes, std::size_t width) {
  for (std::size_t i = width; i-- > 0; value >>= 8) bytes[i] = static_cast<unsigned char>(value & 0xFF);
}

constexpr BookEntry decodeBookEntry(const BookEntryBytes& bytes) {
  return {readBigEndian(bytes, 8), std::uint16_t(readBigEndian(bytes + 8, 2)),
          std::uint16_t(readBigEndian(bytes + 10, 2)), std::uint32_t(readBigEndian(bytes + 12, 4))};
}

// The engine only reads books; writing serves whoever makes one, such as tests and benchmarks.
constexpr void encodeBookEntry(const BookEntry& entry, BookEntryBytes& bytes) {
  writeBigEndian(entry.key, bytes, 8);
  writeBigEndian(entry.move, bytes + 8, 2);
  writeBigEndian(entry.weight, bytes + 10, 2);
  writeBigEndian(entry.learn, bytes + 12, 4);
}

}  // namespace torvy
