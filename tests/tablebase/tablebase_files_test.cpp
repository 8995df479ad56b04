#include "tablebase/tablebase_files.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tablebase/path_list.h"
#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

using testing::Bytes;

TEST(PathListTest, SplitsAtSemicolonsAndNamesFilesInTheFolders) {
  PathList list;
  for (const char* text : {"a;;b", ";", "", ";/tb/five men;c:/gtb;"}) addTablebasePaths(list, text);
  EXPECT_EQ(list, (PathList{"a", "b", "/tb/five men", "c:/gtb"}));

  struct Case {
    std::string folder;
    const char* name;
    CompressionScheme scheme;
    std::string expected;
  };
  const std::string longFolder(255, 'x');
  for (const Case& c : {Case{"C:/gtb/", "kqk", CompressionScheme::Lzma, "C:/gtb/kqk.gtb.cp4"},
                        Case{"C:/gtb", "kqk", CompressionScheme::Lzma, "C:/gtb/kqk.gtb.cp4"},
                        Case{"C:\\gtb\\", "kqpkr", CompressionScheme::Huffman, "C:\\gtb\\/kqpkr.gtb.cp1"},
                        Case{"tb", "kpk", CompressionScheme::Uncompressed, "tb/kpk.gtb"},
                        Case{"tb", "kpk", CompressionScheme(8), "tb/kpk.gtb.cp8"},
                        Case{longFolder, "kqpkr", CompressionScheme::Stored, longFolder + "/kqpkr.gtb.cp9"}})
    EXPECT_EQ(std::string(tablebaseFileName(c.folder, c.name, c.scheme).data()), c.expected);
}

// Table files of the stored scheme, whose blocks read back as written.
class TableFilesTest : public ::testing::Test {
 protected:
  static constexpr CompressionScheme Scheme = CompressionScheme::Stored;

  // Two blocks, each with the skipped first byte and then a marker of the file it came from.
  static void writeTable(const std::string& folder, std::string_view name, std::uint8_t marker) {
    writeTable(folder, name, testing::tableFile({{0, marker, 1}, {0, marker, 2, 2}}));
  }
  static void writeTable(const std::string& folder, std::string_view name, const Bytes& file) {
    testing::writeFile(tablebaseFileName(folder, name, Scheme).data(), file);
  }

  bool readable(std::string_view name, std::uint32_t block) {
    std::size_t size = 0;
    return files.readBlock(findEndgame(name), block, buffer, size);
  }
  // The marker of the file the endgame is open from, or -1.
  int markerOf(std::string_view name) { return readable(name, 0) ? buffer[1] : -1; }
  bool isOpen(std::string_view name) const { return files.record(findEndgame(name)).file != nullptr; }

  testing::ScratchFolder scratch;
  const std::string folder = scratch.subfolder("a");
  TablebaseFiles files;
  std::array<std::uint8_t, BlockBufferSize> buffer{};
};

// The queue closes the oldest file whenever an opening is tried at the limit, found or not;
// the block indexes stay in memory until the files are closed as a whole.
TEST_F(TableFilesTest, OpensWhatIsFoundAndClosesTheEarliestOpenedFileFirst) {
  const char* names[] = {"kqk", "krk", "kbk", "knk", "kpk", "kqkq"};
  for (int i = 0; i < 6; ++i) writeTable(folder, names[i], std::uint8_t(i));
  files.open({folder}, Scheme, 4, false);

  // kpk and kqkq pushed kqk and krk out; the search for the next endgame, not found, took kbk.
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(isOpen(names[i]), i >= 3) << names[i];
    EXPECT_TRUE(files.record(findEndgame(names[i])).blockIndex.loaded()) << names[i];
  }
  EXPECT_EQ(files.filesOpened(), 6u);
  EXPECT_EQ(files.record(findEndgame("kqkq")).blockIndex.count, 3u);
  std::size_t size = 0;
  EXPECT_TRUE(files.readBlock(findEndgame("kqkq"), 1, buffer, size));
  EXPECT_EQ(size, 4u);
  EXPECT_FALSE(readable("kqkq", 2)) << "past the last block";

  EXPECT_TRUE(files.prepare(findEndgame("kqk")));
  // Using an open file doesn't renew it: knk is still the oldest.
  EXPECT_NE(files.openEndgameFile(findEndgame("knk")), nullptr);
  EXPECT_TRUE(files.prepare(findEndgame("krk")));
  EXPECT_FALSE(isOpen("knk"));
  EXPECT_FALSE(files.prepare(findEndgame("kqqk")));
  EXPECT_FALSE(isOpen("kpk"));
  EXPECT_EQ(files.openFileCount(), 3);
  EXPECT_EQ(files.filesOpened(), 8u);
  EXPECT_EQ(markerOf("kqk"), 0) << "the index survived the closing";
  EXPECT_EQ(markerOf("krk"), 1);

  files.close();
  EXPECT_EQ(files.openFileCount(), 0);
  EXPECT_FALSE(isOpen("kqk"));
  EXPECT_FALSE(files.record(findEndgame("kqk")).blockIndex.loaded());
}

TEST_F(TableFilesTest, ReopeningContinuesInTheNextFolderAndComesRound) {
  const std::string second = scratch.subfolder("second/");
  writeTable(folder, "kqk", 1);
  writeTable(second, "kqk", 2);
  // Four more tables push kqk out again each time it is reopened.
  const char* others[] = {"kbk", "knk", "kpk", "kqkq"};
  for (const char* name : others) writeTable(folder, name, 9);
  files.open({folder, second}, Scheme, 4, false);
  const int kqk = findEndgame("kqk");

  const auto reopen = [&] {
    EXPECT_NE(files.openEndgameFile(kqk), nullptr);
    const int marker = markerOf("kqk");
    for (const char* name : others) files.openEndgameFile(findEndgame(name));
    return marker;
  };
  EXPECT_EQ(reopen(), 2);
  EXPECT_EQ(reopen(), 1);
  EXPECT_EQ(reopen(), 2);
}

TEST_F(TableFilesTest, DamagedHeadsAndBlocksFailToRead) {
  Bytes shortTable = testing::tableFile({{0, 1}});
  shortTable[32] = 36;  // the offset table would end inside the head
  Bytes cutTable = testing::tableFile({{0, 1}, {0, 2}});
  cutTable.resize(44);  // the head and one offset of three
  Bytes badOffsets = testing::tableFile({{0, 1}, {0, 2}, {0, 3}});
  badOffsets[44] = 0;  // the second block now starts before the first
  Bytes pastTheEnd = testing::tableFile({{0, 1, 2, 3}});
  pastTheEnd.pop_back();
  struct Case {
    const char* name;
    Bytes file;
    std::vector<bool> readable;  // block by block
  };
  const Case cases[] = {
      {"kqk", shortTable, {false}},
      {"krk", cutTable, {false}},
      {"kbk", Bytes(20, 0), {false}},
      {"knk", badOffsets, {false, true, true}},
      {"kpk", testing::tableFile({{0, 1}, Bytes(BlockBufferSize + 1, 5), {0, 3}}), {true, false, true}},
      {"kqkq", pastTheEnd, {false}},
  };
  for (const Case& c : cases) writeTable(folder, c.name, c.file);
  files.open({folder}, Scheme, 8, false);
  for (const Case& c : cases) {
    EXPECT_TRUE(isOpen(c.name)) << c.name;
    for (std::uint32_t b = 0; b < c.readable.size(); ++b) EXPECT_EQ(readable(c.name, b), c.readable[b]) << c.name << b;
  }
}

}  // namespace
}  // namespace torvy
