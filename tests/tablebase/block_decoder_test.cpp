#include "tablebase/block_decoder.h"

#include <gtest/gtest.h>
#include <lzma.h>

#include <array>
#include <vector>

#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

using testing::Bytes;

struct DecoderTest : ::testing::Test {
  std::array<std::uint8_t, BlockBufferSize> output{};

  Bytes decoded(std::size_t count) const { return Bytes(output.begin(), output.begin() + count); }
};

// Some bytes that compress, but not to nothing.
Bytes samplePayload(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = std::uint8_t((i * 7) ^ (i >> 5));
  return bytes;
}

// An LZMA block as the tables frame it: filter byte, five property bytes, eight size bytes, then
// a raw stream without end mark. The x86 filter, when asked for, is applied by the encoder.
Bytes lzmaBlock(const Bytes& payload, bool x86) {
  lzma_options_lzma options;
  lzma_lzma_preset(&options, 6);
  options.ext_flags = 0;
  lzma_filter lzmaOnly[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
  lzma_filter withX86[] = {{LZMA_FILTER_X86, nullptr}, {LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
  Bytes stream(payload.size() * 2 + 1024);
  std::size_t streamSize = 0;
  EXPECT_EQ(lzma_raw_buffer_encode(x86 ? withX86 : lzmaOnly, nullptr, payload.data(), payload.size(), stream.data(),
                                   &streamSize, stream.size()),
            LZMA_OK);

  Bytes block{std::uint8_t(x86 ? 1 : 0), std::uint8_t((options.pb * 5 + options.lp) * 9 + options.lc)};
  testing::appendLittleEndian32(block, options.dict_size);
  testing::appendLittleEndian32(block, std::uint32_t(payload.size()));
  testing::appendLittleEndian32(block, 0);
  block.insert(block.end(), stream.begin(), stream.begin() + streamSize);
  return block;
}

// Scheme 7 expands "253, count, byte" runs (253 alone by 253, 253), scheme 9 stores blocks as
// they are; neither may write past the size asked for or the buffer. The real tables show that
// good blocks of schemes 1 to 4 decode; damage to the engine's scheme 4 must fail.
TEST_F(DecoderTest, EachSchemeDecodesWhatFitsAndRefusesDamage) {
  const Bytes lzma = lzmaBlock(samplePayload(4096), false);
  Bytes lzmaBadFilter = lzma;
  lzmaBadFilter[0] = 2;
  Bytes lzmaBadProperties = lzma;
  lzmaBadProperties[1] = 225;

  struct Case {
    CompressionScheme scheme;
    Bytes input;
    std::size_t size;
    bool ok;
    Bytes expected;
  };
  const CompressionScheme Runs = CompressionScheme::RunLength;
  const CompressionScheme Lzma = CompressionScheme::Lzma;
  const Case cases[] = {
      {Runs, {253, 253, 65, 253, 3, 66}, 5, true, {253, 65, 66, 66, 66}},
      {Runs, {7, 253, 0, 9, 8}, 2, true, {7, 8}},  // a run of 0 gives nothing
      {Runs, {253, 4, 1}, 4, true, {1, 1, 1, 1}},  // exactly full
      {Runs, {1, 2, 253}, 16, false, {}},
      {Runs, {1, 253, 4}, 16, false, {}},
      {Runs, {253, 4, 1}, 3, false, {}},  // a run past the size
      {Runs, {1, 2, 3}, 2, false, {}},    // a literal past the size
      {CompressionScheme::Stored, Bytes(BlockBufferSize, 1), 16384, true, Bytes(BlockBufferSize, 1)},
      {CompressionScheme::Stored, Bytes(BlockBufferSize + 1, 1), 16384, false, {}},
      {Lzma, lzmaBadFilter, 4096, false, {}},
      {Lzma, lzmaBadProperties, 4096, false, {}},
      {Lzma, Bytes(lzma.begin(), lzma.begin() + 13), 4096, false, {}},  // a frame cut short
      {Lzma, Bytes(lzma.begin(), lzma.end() - lzma.size() / 2), 4096, false, {}},
      {Lzma, lzmaBlock(samplePayload(8192), false), 4096, true, samplePayload(4096)},  // stops when full
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "scheme " << int(c.scheme) << ", " << c.input.size() << " bytes in");
    ASSERT_EQ(decodeBlock(c.scheme, c.input, c.size, output), c.ok);
    EXPECT_EQ(decoded(c.expected.size()), c.expected);
  }
  for (int scheme : {0, 5, 6, 8, 10})
    EXPECT_FALSE(decodeBlock(CompressionScheme(scheme), Bytes{1, 2, 3}, 3, output)) << "no decoder for " << scheme;
}

// The real cp4 tables decode through the plain stream; this is the filtered one.
TEST_F(DecoderTest, LzmaUndoesTheX86Filter) {
  // Code with relative calls whose targets the filter rewrites.
  Bytes code = samplePayload(13184);
  for (std::size_t i = 0; i + 5 <= code.size(); i += 23) {
    const std::uint8_t call[] = {0xE8, std::uint8_t(i), std::uint8_t(i >> 8), 0, 0};
    std::copy(std::begin(call), std::end(call), code.begin() + std::ptrdiff_t(i));
  }
  Bytes filtered = lzmaBlock(code, true);
  EXPECT_TRUE(decodeBlock(CompressionScheme::Lzma, filtered, code.size(), output));
  EXPECT_EQ(decoded(code.size()), code);
  filtered[0] = 0;  // the same stream read as if unfiltered keeps the rewritten call targets
  EXPECT_TRUE(decodeBlock(CompressionScheme::Lzma, filtered, code.size(), output));
  EXPECT_NE(decoded(code.size()), code);
}

// The package ships each 3-man table in schemes 1 to 4; all four must read the same values.
class InstalledTableDecodingTest : public testing::InstalledTablesTest {};

TEST_F(InstalledTableDecodingTest, AllSchemesAgreeOnEveryBlock) {
  for (const char* name : {"kqk", "krk", "kbk", "knk", "kpk"}) {
    const int id = findEndgame(name);
    const std::uint32_t maxIndex = Endgames[id].maxIndex;
    std::vector<Bytes> values(5);
    for (int scheme = 1; scheme <= 4; ++scheme) {
      SCOPED_TRACE(::testing::Message() << name << " scheme " << scheme);
      TablebaseFiles files;
      files.open({testing::installedTableFolder(scheme).string()}, CompressionScheme(scheme), 8, false);
      ASSERT_EQ(files.record(id).blockIndex.count, 2 * blocksPerSide(maxIndex) + 1);
      std::array<std::uint8_t, BlockBufferSize> compressed;
      std::array<std::uint8_t, BlockBufferSize> output;
      for (std::uint32_t b = 0; b < 2 * blocksPerSide(maxIndex); ++b) {
        std::size_t size = 0;
        ASSERT_TRUE(files.readBlock(id, b, compressed, size)) << "block " << b;
        const std::uint32_t count = valuesInBlock(b % blocksPerSide(maxIndex) * ValuesPerBlock, maxIndex);
        ASSERT_TRUE(decodeBlock(CompressionScheme(scheme), BlockInput(compressed.data() + 1, size - 1), count, output))
            << "block " << b;
        values[scheme].insert(values[scheme].end(), output.begin(), output.begin() + count);
      }
    }
    EXPECT_EQ(values[4].size(), 2u * maxIndex);
    for (int scheme = 1; scheme <= 3; ++scheme) EXPECT_EQ(values[scheme], values[4]) << name << " scheme " << scheme;
  }
}

}  // namespace
}  // namespace torvy
