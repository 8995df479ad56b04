#include "tablebase/path_list.h"

#include <gtest/gtest.h>

#include <string>

namespace torvy {
namespace {

TEST(PathListTest, SplitsAtSemicolonsAndDropsEmptyPieces) {
  PathList list;
  addTablebasePaths(list, "a;;b");
  EXPECT_EQ(list, (PathList{"a", "b"}));
  addTablebasePaths(list, ";");
  addTablebasePaths(list, "");
  EXPECT_EQ(list.size(), 2u);
  addTablebasePaths(list, ";/tb/five men;c:/gtb;");
  EXPECT_EQ(list, (PathList{"a", "b", "/tb/five men", "c:/gtb"}));
}

TEST(PathListTest, FileNamesJoinFolderNameAndExtension) {
  auto fileName = [](std::string_view folder, std::string_view name, CompressionScheme scheme) {
    return std::string(tablebaseFileName(folder, name, scheme).data());
  };
  EXPECT_EQ(fileName("C:/gtb/", "kqk", CompressionScheme::Lzma), "C:/gtb/kqk.gtb.cp4");
  EXPECT_EQ(fileName("C:/gtb", "kqk", CompressionScheme::Lzma), "C:/gtb/kqk.gtb.cp4");
  EXPECT_EQ(fileName("C:\\gtb\\", "kqpkr", CompressionScheme::Huffman), "C:\\gtb\\/kqpkr.gtb.cp1");
  EXPECT_EQ(fileName("tb", "kpk", CompressionScheme::Uncompressed), "tb/kpk.gtb");
  EXPECT_EQ(fileName("tb", "kpk", CompressionScheme(8)), "tb/kpk.gtb.cp8");

  const std::string longFolder(255, 'x');
  EXPECT_EQ(fileName(longFolder, "kqpkr", CompressionScheme::Stored), longFolder + "/kqpkr.gtb.cp9");
}

}  // namespace
}  // namespace torvy
