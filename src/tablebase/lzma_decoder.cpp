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

// Decodes until the output holds outputSize bytes; the liblzma stream allocates for itself.
bool decodeStream(const lzma_filter* filters, BlockInput stream, std::size_t outputSize, BlockOutput output) {
  lzma_stream decoder = LZMA_STREAM_INIT;
  if (lzma_raw_decoder(&decoder, filters) != LZMA_OK) return false;
  decoder.next_in = stream.data();
  decoder.avail_in = stream.size();
  decoder.next_out = output.data();
  decoder.avail_out = outputSize;
  const lzma_ret result = lzma_code(&decoder, LZMA_FINISH);
  lzma_end(&decoder);
  return (result == LZMA_OK || result == LZMA_STREAM_END) && decoder.avail_out == 0;
}

}  // namespace

bool decodeLzma(BlockInput input, std::size_t outputSize, BlockOutput output) {
  if (input.size() < FrameSize || outputSize > output.size()) return false;
  const std::uint8_t filter = input[FilterOffset];
  if (filter != NoFilter && filter != X86Filter) return false;

  lzma_options_lzma options{};
  if (!readProperties(input.subspan(PropertiesOffset, 5), options)) return false;
  // The stream has no end mark. Told the size, the decoder sees where the stream ends, and the
  // branch filter can convert its last bytes too; that is how the tables write their blocks.
  options.ext_flags = LZMA_LZMA1EXT_ALLOW_EOPM;
  options.ext_size_low = std::uint32_t(outputSize);
  options.ext_size_high = 0;

  lzma_filter lzmaOnly[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
  lzma_filter withX86[] = {{LZMA_FILTER_X86, nullptr}, {LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
  const lzma_filter* filters = filter == X86Filter ? withX86 : lzmaOnly;
  const BlockInput stream = input.subspan(StreamOffset);
  if (decodeStream(filters, stream, outputSize, output)) return true;
  // liblzma refuses a stream that goes on beyond the size it was told. Without the size it
  // decodes such a stream too, and the block is what the first outputSize bytes are.
  options.ext_size_low = std::uint32_t(LZMA_VLI_UNKNOWN);
  options.ext_size_high = std::uint32_t(LZMA_VLI_UNKNOWN >> 32);
  return decodeStream(filters, stream, outputSize, output);
}

}  // namespace torvy
