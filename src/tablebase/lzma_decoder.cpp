// Scheme 4: a raw LZMA stream without end mark, in a frame that names its properties and an
// optional x86 branch filter.
#include <lzma.h>

#include "tablebase/block_decoder.h"

namespace torvy {
namespace {

constexpr std::size_t FrameSize = 14;
constexpr std::size_t FilterOffset = 0;
constexpr std::size_t PropertiesOffset = 1;
constexpr std::size_t StreamOffset = 14;
constexpr std::uint8_t NoFilter = 0;
constexpr std::uint8_t X86Filter = 1;

// The classic five property bytes: (pb * 5 + lp) * 9 + lc, then the dictionary size.
bool readProperties(BlockInput properties, lzma_options_lzma& options) {
  unsigned packed = properties[0];
  if (packed >= 9 * 5 * 5) return false;
  options.lc = packed % 9;
  packed /= 9;
  options.lp = packed % 5;
  options.pb = packed / 5;
  options.dict_size = properties[1] | properties[2] << 8 | properties[3] << 16 | std::uint32_t(properties[4]) << 24;
  if (options.dict_size < LZMA_DICT_SIZE_MIN) options.dict_size = LZMA_DICT_SIZE_MIN;
  return true;
}

}  // namespace

bool decodeLzma(BlockInput input, std::size_t outputSize, BlockOutput output) {
  if (input.size() < FrameSize || outputSize > output.size()) return false;
  const std::uint8_t filter = input[FilterOffset];
  if (filter != NoFilter && filter != X86Filter) return false;

  lzma_options_lzma options{};
  if (!readProperties(input.subspan(PropertiesOffset, 5), options)) return false;
  // The stream has no end mark, so the decoder is told how much it is to produce; that also lets
  // the branch filter flush its last bytes. The stream must end there: liblzma checks that it
  // does, so a block that holds more than outputSize values is refused as damaged.
  options.ext_flags = LZMA_LZMA1EXT_ALLOW_EOPM;
  options.ext_size_low = std::uint32_t(outputSize);
  options.ext_size_high = 0;

  lzma_filter lzmaOnly[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
  lzma_filter withX86[] = {{LZMA_FILTER_X86, nullptr}, {LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};

  const BlockInput stream = input.subspan(StreamOffset);
  std::size_t inPosition = 0;
  std::size_t outPosition = 0;
  const lzma_ret result = lzma_raw_buffer_decode(filter == X86Filter ? withX86 : lzmaOnly, nullptr, stream.data(),
                                                 &inPosition, stream.size(), output.data(), &outPosition, outputSize);
  return result == LZMA_OK && outPosition == outputSize;
}

}  // namespace torvy
