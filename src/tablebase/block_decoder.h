// Decoding of one compressed table block, by the scheme the tables were opened with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "tablebase/compression_scheme.h"

namespace torvy {

// Both the compressed block and its decoded values must fit this many bytes.
constexpr std::size_t BlockBufferSize = 65536;

using BlockInput = std::span<const std::uint8_t>;
using BlockOutput = std::span<std::uint8_t, BlockBufferSize>;

// compressed starts behind the block's first byte; outputSize is the number of values the block
// holds. Returns false for a block that does not decode and for schemes without a decoder.
bool decodeBlock(CompressionScheme scheme, BlockInput compressed, std::size_t outputSize, BlockOutput output);

// The decoders behind decodeBlock.
bool decodeHuffman(BlockInput input, BlockOutput output);
bool decodeLzf(BlockInput input, BlockOutput output);
bool decodeZlib(BlockInput input, BlockOutput output);
bool decodeLzma(BlockInput input, std::size_t outputSize, BlockOutput output);
bool decodeRunLength(BlockInput input, std::size_t outputSize, BlockOutput output);
bool decodeStored(BlockInput input, BlockOutput output);

}  // namespace torvy
