// The compression schemes of Gaviota table files; the number is also the digit of the extension.
#pragma once

#include <cstdint>

namespace torvy {

// Schemes 5, 6 and 8 are names without a decoder: their blocks never decode.
enum class CompressionScheme : std::uint8_t {
  Uncompressed = 0,
  Huffman = 1,
  Lzf = 2,
  Zlib = 3,
  Lzma = 4,
  RunLength = 7,
  Stored = 9,
};

constexpr bool isCompressed(CompressionScheme scheme) { return scheme != CompressionScheme::Uncompressed; }

// ".gtb" for uncompressed files, ".gtb.cpN" for scheme N.
constexpr const char* fileExtension(CompressionScheme scheme) {
  constexpr const char* extensions[10] = {".gtb",     ".gtb.cp1", ".gtb.cp2", ".gtb.cp3", ".gtb.cp4",
                                          ".gtb.cp5", ".gtb.cp6", ".gtb.cp7", ".gtb.cp8", ".gtb.cp9"};
  return extensions[std::uint8_t(scheme) % 10];
}

}  // namespace torvy
