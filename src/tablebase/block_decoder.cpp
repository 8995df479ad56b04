#include "tablebase/block_decoder.h"

#include <algorithm>

#include <liblzf/lzf.h>
#include <zlib.h>

namespace torvy {

bool decodeBlock(CompressionScheme scheme, BlockInput compressed, std::size_t outputSize, BlockOutput output) {
  switch (scheme) {
    case CompressionScheme::Huffman: return decodeHuffman(compressed, output);
    case CompressionScheme::Lzf: return decodeLzf(compressed, output);
    case CompressionScheme::Zlib: return decodeZlib(compressed, output);
    case CompressionScheme::Lzma: return decodeLzma(compressed, outputSize, output);
    case CompressionScheme::RunLength: return decodeRunLength(compressed, outputSize, output);
    case CompressionScheme::Stored: return decodeStored(compressed, output);
    default: return false;
  }
}

bool decodeLzf(BlockInput input, BlockOutput output) {
  return lzf_decompress(input.data(), unsigned(input.size()), output.data(), unsigned(output.size())) != 0;
}

bool decodeZlib(BlockInput input, BlockOutput output) {
  uLongf produced = output.size();
  return uncompress(output.data(), &produced, input.data(), uLong(input.size())) == Z_OK;
}

bool decodeRunLength(BlockInput input, std::size_t outputSize, BlockOutput output) {
  constexpr std::uint8_t Marker = 253;
  const std::size_t capacity = std::min(outputSize, output.size());
  std::size_t in = 0;
  std::size_t out = 0;
  while (in < input.size()) {
    std::uint8_t value = input[in++];
    std::size_t repeat = 1;
    if (value == Marker) {
      if (in == input.size()) return false;
      const std::uint8_t count = input[in++];
      if (count != Marker) {
        if (in == input.size()) return false;
        repeat = count;
        value = input[in++];
      }
    }
    if (repeat > capacity - out) return false;
    std::fill_n(output.begin() + out, repeat, value);
    out += repeat;
  }
  return true;
}

bool decodeStored(BlockInput input, BlockOutput output) {
  if (input.size() > output.size()) return false;
  std::copy(input.begin(), input.end(), output.begin());
  return true;
}

}  // namespace torvy
