#include "tablebase/tablebase_files.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

using testing::Bytes;

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

  // The marker of the file the endgame is open from, or -1.
  int markerOf(std::string_view name) {
    std::size_t size = 0;
    if (!files.readBlock(findEndgame(name), 0, buffer, size) || size != 3) return -1;
    return buffer[1];
  }

  bool isOpen(std::string_view name) const { return files.record(findEndgame(name)).file != nullptr; }

  testing::ScratchFolder scratch;
  TablebaseFiles files;
  std::array<std::uint8_t, BlockBufferSize> buffer{};
};

TEST_F(TableFilesTest, OpensWhatIsFoundAndLoadsItsIndex) {
  const std::string folder = scratch.subfolder("a");
  writeTable(folder, "kqk", 7);
  writeTable(folder, "kqkr", 8);
  files.open({folder}, Scheme, 8, false);

  EXPECT_TRUE(isOpen("kqk"));
  EXPECT_TRUE(isOpen("kqkr"));
  EXPECT_FALSE(isOpen("krk"));
  EXPECT_EQ(files.record(findEndgame("kqk")).blockIndex.count, 3u);
  EXPECT_EQ(files.openFileCount(), 2);
  EXPECT_EQ(markerOf("kqk"), 7);
  EXPECT_EQ(markerOf("kqkr"), 8);

  std::size_t size = 0;
  EXPECT_TRUE(files.readBlock(findEndgame("kqk"), 1, buffer, size));
  EXPECT_EQ(size, 4u);
  EXPECT_FALSE(files.readBlock(findEndgame("kqk"), 2, buffer, size)) << "past the last block";

  EXPECT_EQ(files.openEndgameFile(findEndgame("krk")), nullptr);
  EXPECT_FALSE(files.prepare(findEndgame("krk")));

  files.close();
  EXPECT_FALSE(isOpen("kqk"));
  EXPECT_FALSE(files.record(findEndgame("kqk")).blockIndex.loaded());
  EXPECT_EQ(files.openFileCount(), 0);
}

// The queue closes the oldest file whenever an opening is tried at the limit, found or not.
TEST_F(TableFilesTest, ClosesTheEarliestOpenedFileFirst) {
  const std::string folder = scratch.subfolder("a");
  const char* names[] = {"kqk", "krk", "kbk", "knk", "kpk", "kqkq"};
  for (const char* name : names) writeTable(folder, name, 1);
  files.open({folder}, Scheme, 4, false);

  // kpk and kqkq pushed kqk and krk out; the search for the next endgame, not found, took kbk.
  for (const char* name : {"kqk", "krk", "kbk"}) EXPECT_FALSE(isOpen(name)) << name;
  for (const char* name : {"knk", "kpk", "kqkq"}) EXPECT_TRUE(isOpen(name)) << name;
  for (const char* name : names) EXPECT_TRUE(files.record(findEndgame(name)).blockIndex.loaded()) << name;
  EXPECT_EQ(files.openFileCount(), 3);
  EXPECT_EQ(files.filesOpened(), 6u);

  EXPECT_TRUE(files.prepare(findEndgame("kqk")));
  EXPECT_EQ(files.openFileCount(), 4);
  // Using an open file doesn't renew it: knk is still the oldest.
  EXPECT_NE(files.openEndgameFile(findEndgame("knk")), nullptr);
  EXPECT_TRUE(files.prepare(findEndgame("krk")));
  EXPECT_FALSE(isOpen("knk"));
  EXPECT_EQ(files.openEndgameFile(findEndgame("kqqk")), nullptr);
  EXPECT_FALSE(isOpen("kpk"));
  for (const char* name : {"kqkq", "kqk", "krk"}) EXPECT_TRUE(isOpen(name)) << name;
  EXPECT_EQ(files.filesOpened(), 8u);
  EXPECT_EQ(markerOf("kqk"), 1) << "the index survived the closing";
}

TEST_F(TableFilesTest, ReopeningContinuesInTheNextFolderAndComesRound) {
  const std::string first = scratch.subfolder("first");
  const std::string second = scratch.subfolder("second/");
  writeTable(first, "kqk", 1);
  writeTable(second, "kqk", 2);
  writeTable(second, "krk", 3);
  // Four more tables push kqk out again each time it is reopened.
  const char* others[] = {"kbk", "knk", "kpk", "kqkq"};
  for (const char* name : others) writeTable(first, name, 9);
  files.open({first, second}, Scheme, 4, false);
  const int kqk = findEndgame("kqk");

  EXPECT_EQ(files.record(kqk).pathIndex, 1);
  EXPECT_EQ(files.record(findEndgame("krk")).pathIndex, 2);
  EXPECT_FALSE(isOpen("kqk"));

  const auto reopen = [&] {
    EXPECT_NE(files.openEndgameFile(kqk), nullptr);
    const int marker = markerOf("kqk");
    for (const char* name : others) files.openEndgameFile(findEndgame(name));
    return marker;
  };
  EXPECT_EQ(reopen(), 2);
  EXPECT_EQ(files.record(kqk).pathIndex, 2);
  EXPECT_EQ(reopen(), 1);
  EXPECT_EQ(reopen(), 2);
}

TEST_F(TableFilesTest, DamagedHeadsAndBlocksFailToRead) {
  const std::string folder = scratch.subfolder("a");
  Bytes shortTable = testing::tableFile({{0, 1}});
  shortTable[32] = 36;  // the offset table would end inside the head
  writeTable(folder, "kqk", shortTable);
  Bytes cutTable = testing::tableFile({{0, 1}, {0, 2}});
  cutTable.resize(44);  // the head and one offset of three
  writeTable(folder, "krk", cutTable);
  writeTable(folder, "kbk", Bytes(20, 0));
  Bytes badOffsets = testing::tableFile({{0, 1}, {0, 2}, {0, 3}});
  badOffsets[44] = 0;  // the second block now starts before the first
  writeTable(folder, "knk", badOffsets);
  writeTable(folder, "kpk", testing::tableFile({{0, 1}, Bytes(BlockBufferSize + 1, 5), {0, 3}}));
  Bytes pastTheEnd = testing::tableFile({{0, 1, 2, 3}});
  pastTheEnd.resize(pastTheEnd.size() - 1);
  writeTable(folder, "kqkq", pastTheEnd);

  const std::string report = files.open({folder}, Scheme, 8, true);
  EXPECT_NE(report.find("  Compression Indexes (3-pc) = **FAILED**\n"), std::string::npos) << report;

  for (const char* name : {"kqk", "krk", "kbk"}) {
    EXPECT_TRUE(isOpen(name)) << name;
    EXPECT_FALSE(files.loadBlockIndex(findEndgame(name))) << name;
    std::size_t size = 0;
    EXPECT_FALSE(files.readBlock(findEndgame(name), 0, buffer, size)) << name;
  }
  std::size_t size = 0;
  EXPECT_FALSE(files.readBlock(findEndgame("knk"), 0, buffer, size)) << "ends before it begins";
  EXPECT_TRUE(files.readBlock(findEndgame("knk"), 2, buffer, size));
  EXPECT_TRUE(files.readBlock(findEndgame("kpk"), 0, buffer, size));
  EXPECT_FALSE(files.readBlock(findEndgame("kpk"), 1, buffer, size)) << "larger than the buffer";
  EXPECT_TRUE(files.readBlock(findEndgame("kpk"), 2, buffer, size));
  EXPECT_FALSE(files.readBlock(findEndgame("kqkq"), 0, buffer, size)) << "file ends inside the block";
}

TEST_F(TableFilesTest, ReportNamesFoldersSchemeAndWhatWasFound) {
  const std::string folder = scratch.subfolder("a");
  writeTable(folder, "kqk", 1);
  const std::string report = files.open({folder, "/nowhere"}, Scheme, 8, true);
  EXPECT_EQ(report, "\nGTB PATHS\n  main: " + folder + "\n    #1: /nowhere\n\nGTB initialization\n"
                    "  Compression  Scheme = 9\n  Compression Indexes (3-pc) = PASSED\n"
                    "  Compression Indexes (4-pc) = **FAILED**\n  Compression Indexes (5-pc) = **FAILED**\n");
  EXPECT_EQ(files.open({folder}, Scheme, 8, false), "");
  const std::string empty = files.open({}, Scheme, 8, true);
  EXPECT_EQ(empty.substr(0, 27), "\nGTB PATHS not initialized\n");
  EXPECT_NE(empty.find("  Compression Indexes = **FAILED**\n"), std::string::npos);
}

TEST_F(TableFilesTest, UncompressedFilesNeedNoIndexAndReadRawBytes) {
  const std::string folder = scratch.subfolder("a");
  testing::writeFile(folder + "/kqk.gtb", Bytes{10, 11, 12, 13, 14, 15});
  files.open({folder}, CompressionScheme::Uncompressed, 8, false);
  const int kqk = findEndgame("kqk");
  EXPECT_TRUE(files.prepare(kqk));
  EXPECT_FALSE(files.record(kqk).blockIndex.loaded());
  EXPECT_TRUE(files.readRaw(kqk, 2, 3, buffer));
  EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 3), (Bytes{12, 13, 14}));
  EXPECT_FALSE(files.readRaw(kqk, 4, 3, buffer));
}

}  // namespace
}  // namespace torvy
