#include "tablebase/block_decoder.h"

#include <gtest/gtest.h>
#include <lzma.h>
#include <zlib.h>

#include <array>
#include <vector>

#include "tablebase/tablebase_files.h"
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

// Scheme 7 expands "253, count, byte" runs (253 alone by 253, 253), scheme 9 stores blocks as
// they are; neither may write past the size asked for or the buffer.
TEST_F(DecoderTest, RunLengthAndStoredBlocks) {
  struct Case {
    CompressionScheme scheme;
    Bytes input;
    std::size_t size;
    bool ok;
    Bytes expected;
  };
  const CompressionScheme Runs = CompressionScheme::RunLength;
  const Case cases[] = {
      {Runs, {253, 253, 65, 253, 3, 66}, 5, true, {253, 65, 66, 66, 66}},
      {Runs, {7, 253, 0, 9, 8}, 2, true, {7, 8}},  // a run of 0 gives nothing
      {Runs, {}, 16384, true, {}},
      {Runs, {253, 4, 1}, 4, true, {1, 1, 1, 1}},  // exactly full
      {Runs, {1, 2, 253}, 16, false, {}},
      {Runs, {1, 253, 4}, 16, false, {}},
      {Runs, {253, 4, 1}, 3, false, {}},  // a run past the size
      {Runs, {1, 2, 3}, 2, false, {}},    // a literal past the size
      {CompressionScheme::Stored, {5, 6, 7}, 3, true, {5, 6, 7}},
      {CompressionScheme::Stored, Bytes(BlockBufferSize, 1), 16384, true, Bytes(BlockBufferSize, 1)},
      {CompressionScheme::Stored, Bytes(BlockBufferSize + 1, 1), 16384, false, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "scheme " << int(c.scheme) << ", " << c.input.size() << " bytes in");
    ASSERT_EQ(decodeBlock(c.scheme, c.input, c.size, output), c.ok);
    if (c.ok) {
      EXPECT_EQ(decoded(c.expected.size()), c.expected);
    }
  }
  for (int scheme : {0, 5, 6, 8, 10})
    EXPECT_FALSE(decodeBlock(CompressionScheme(scheme), Bytes{1, 2, 3}, 3, output)) << "no decoder for " << scheme;
}

// The real cp2 and cp3 tables show that good zlib and LZF blocks decode; damage must fail.
TEST_F(DecoderTest, ZlibAndLzfRefuseDamage) {
  const Bytes payload = samplePayload(16384);
  Bytes zlib(compressBound(uLong(payload.size())));
  uLongf zlibSize = zlib.size();
  ASSERT_EQ(compress(zlib.data(), &zlibSize, payload.data(), uLong(payload.size())), Z_OK);
  EXPECT_TRUE(decodeBlock(CompressionScheme::Zlib, Bytes(zlib.begin(), zlib.begin() + zlibSize), 16384, output));
  EXPECT_FALSE(decodeBlock(CompressionScheme::Zlib, Bytes(zlib.begin(), zlib.begin() + zlibSize - 8), 16384, output));
  EXPECT_FALSE(decodeBlock(CompressionScheme::Lzf, Bytes{0x20, 0x10}, 16384, output)) << "reference before the start";
}

// Bits written from the lowest of each byte upwards, as the Huffman blocks store them.
class BitWriter {
 public:
  void bit(unsigned value) {
    if (count_ % 8 == 0) bytes_.push_back(0);
    bytes_.back() |= std::uint8_t(value << (count_ % 8));
    ++count_;
  }
  void bits(std::initializer_list<unsigned> values) {
    for (unsigned value : values) bit(value);
  }
  void leaf(std::uint8_t symbol) {
    bit(1);
    for (int i = 0; i < 8; ++i) bit((symbol >> i) & 1);
  }

  // The block: the output length, then the bits.
  Bytes block(std::uint32_t length) const {
    Bytes result(4 + bytes_.size());
    for (int i = 0; i < 4; ++i) result[i] = std::uint8_t(length >> (8 * i));
    std::copy(bytes_.begin(), bytes_.end(), result.begin() + 4);
    return result;
  }

 private:
  Bytes bytes_;
  std::size_t count_ = 0;
};

using HuffmanTest = DecoderTest;

// The real cp1 tables show that codes decode; these are the ways a block can run out.
TEST_F(HuffmanTest, FailsWhenBitsTreeOrRoomRunOut) {
  BitWriter single;
  single.leaf(42);
  for (int i = 0; i < 10; ++i) single.bit(i % 2);
  // The tree takes 9 bits; with the 10 code bits the three bytes leave room for 15 codes, not 16.
  EXPECT_TRUE(decodeBlock(CompressionScheme::Huffman, single.block(15), 15, output));
  EXPECT_EQ(decoded(15), Bytes(15, 42));
  EXPECT_FALSE(decodeBlock(CompressionScheme::Huffman, single.block(16), 16, output)) << "runs out of bits";
  EXPECT_FALSE(decodeBlock(CompressionScheme::Huffman, single.block(BlockBufferSize + 1), 16384, output))
      << "longer than the buffer";
  EXPECT_FALSE(decodeBlock(CompressionScheme::Huffman, Bytes{1, 0, 0}, 1, output)) << "no full length word";

  BitWriter cut;
  cut.bit(0);
  cut.leaf('a');  // the second child is missing
  EXPECT_FALSE(decodeBlock(CompressionScheme::Huffman, cut.block(1), 1, output));

  // A chain of inner nodes, each with a leaf as first child: 2 * inner + 1 nodes, at most 512.
  auto chain = [](int innerNodes) {
    BitWriter writer;
    for (int i = 0; i < innerNodes; ++i) {
      writer.bit(0);
      writer.leaf(std::uint8_t(i));
    }
    writer.leaf(255);
    writer.bits({1, 0});  // the second leaf
    return writer.block(1);
  };
  EXPECT_TRUE(decodeBlock(CompressionScheme::Huffman, chain(255), 1, output));
  EXPECT_EQ(output[0], 1);
  EXPECT_FALSE(decodeBlock(CompressionScheme::Huffman, chain(256), 1, output));
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
  const lzma_ret result = lzma_raw_buffer_encode(x86 ? withX86 : lzmaOnly, nullptr, payload.data(), payload.size(),
                                                 stream.data(), &streamSize, stream.size());
  EXPECT_EQ(result, LZMA_OK);

  Bytes block{std::uint8_t(x86 ? 1 : 0), std::uint8_t((options.pb * 5 + options.lp) * 9 + options.lc)};
  testing::appendLittleEndian32(block, options.dict_size);
  testing::appendLittleEndian32(block, std::uint32_t(payload.size()));
  testing::appendLittleEndian32(block, 0);
  block.insert(block.end(), stream.begin(), stream.begin() + streamSize);
  return block;
}

// Code with relative calls whose targets the x86 filter rewrites.
Bytes machineCode(std::size_t size) {
  Bytes bytes = samplePayload(size);
  for (std::size_t i = 0; i + 5 <= size; i += 23) {
    bytes[i] = 0xE8;
    bytes[i + 1] = std::uint8_t(i);
    bytes[i + 2] = std::uint8_t(i >> 8);
    bytes[i + 3] = 0;
    bytes[i + 4] = 0;
  }
  return bytes;
}

using LzmaTest = DecoderTest;

TEST_F(LzmaTest, DecodesPlainAndX86FilteredBlocks) {
  const Bytes payload = samplePayload(16384);
  EXPECT_TRUE(decodeBlock(CompressionScheme::Lzma, lzmaBlock(payload, false), payload.size(), output));
  EXPECT_EQ(decoded(payload.size()), payload);

  const Bytes code = machineCode(13184);
  Bytes filtered = lzmaBlock(code, true);
  EXPECT_TRUE(decodeBlock(CompressionScheme::Lzma, filtered, code.size(), output));
  EXPECT_EQ(decoded(code.size()), code);

  filtered[0] = 0;  // the same stream read as if unfiltered keeps the rewritten call targets
  EXPECT_TRUE(decodeBlock(CompressionScheme::Lzma, filtered, code.size(), output));
  EXPECT_NE(decoded(code.size()), code);
}

TEST_F(LzmaTest, RejectsBadFramesAndStreams) {
  Bytes block = lzmaBlock(samplePayload(4096), false);
  Bytes badFilter = block;
  badFilter[0] = 2;
  EXPECT_FALSE(decodeBlock(CompressionScheme::Lzma, badFilter, 4096, output));

  EXPECT_FALSE(decodeBlock(CompressionScheme::Lzma, Bytes(block.begin(), block.begin() + 13), 4096, output));
  EXPECT_FALSE(decodeBlock(CompressionScheme::Lzma, Bytes(block.begin(), block.end() - block.size() / 2), 4096, output));

  Bytes badProperties = block;
  badProperties[1] = 225;
  EXPECT_FALSE(decodeBlock(CompressionScheme::Lzma, badProperties, 4096, output));
}

// The package ships each 3-man table in schemes 1 to 4; all four must read the same values.
class InstalledTableDecodingTest : public testing::InstalledTablesTest {};

TEST_F(InstalledTableDecodingTest, AllSchemesAgreeOnEveryBlock) {
  for (const char* name : {"kqk", "krk", "kbk", "knk", "kpk"}) {
    const int id = findEndgame(name);
    const std::uint32_t maxIndex = Endgames[id].maxIndex;
    std::vector<Bytes> values(5);
    for (int scheme = 1; scheme <= 4; ++scheme) {
      TablebaseFiles files;
      files.open({testing::installedTableFolder(scheme).string()}, CompressionScheme(scheme), 8, false);
      ASSERT_NE(files.record(id).file, nullptr) << name << " scheme " << scheme;
      ASSERT_EQ(files.record(id).blockIndex.count, 2 * blocksPerSide(maxIndex) + 1);
      std::array<std::uint8_t, BlockBufferSize> compressed;
      std::array<std::uint8_t, BlockBufferSize> output;
      for (std::uint32_t b = 0; b < 2 * blocksPerSide(maxIndex); ++b) {
        std::size_t size = 0;
        ASSERT_TRUE(files.readBlock(id, b, compressed, size)) << name << " block " << b;
        const std::uint32_t count = valuesInBlock(b % blocksPerSide(maxIndex) * ValuesPerBlock, maxIndex);
        ASSERT_TRUE(decodeBlock(CompressionScheme(scheme), BlockInput(compressed.data() + 1, size - 1), count, output))
            << name << " scheme " << scheme << " block " << b;
        values[scheme].insert(values[scheme].end(), output.begin(), output.begin() + count);
      }
    }
    EXPECT_EQ(values[4].size(), 2u * maxIndex);
    for (int scheme = 1; scheme <= 3; ++scheme) EXPECT_EQ(values[scheme], values[4]) << name << " scheme " << scheme;
  }
}

}  // namespace
}  // namespace torvy
