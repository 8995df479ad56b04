// The configuration file: how a line is read, what each key accepts, and where its output lands.
#include "frontend/configuration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <thread>

#include "frontend/transcript.h"
#include "scratch_folder.h"

namespace torvy {
namespace {

using testing::Lines;

std::string cores(std::uint32_t used, std::uint32_t requested, std::uint32_t max) {
  return "# will now use " + std::to_string(used) + " cores (requested=" + std::to_string(requested) +
         ", current=0, max=" + std::to_string(max) + ")";
}

// Comments, blank lines and lines without "=" are skipped; blanks and one pair of enclosing
// quotes are trimmed.
TEST(ConfigurationLine, SkipsOrSplitsIntoKeyAndValue) {
  for (const char* line : {"", "   ", "# ttHashSizeMB=1", "   # ttHashSizeMB=1", "ttHashSizeMB", "  ttHashSizeMB 5"})
    EXPECT_FALSE(parseConfigurationLine(line)) << '"' << line << '"';
  struct Case {
    const char* line;
    const char* key;
    const char* value;
  };
  for (const Case& c : {
           Case{"ttHashSizeMB=64", "ttHashSizeMB", "64"},
           Case{"   ttHashSizeMB   =   64", "ttHashSizeMB", "64"},
           Case{"gtbPath = \"C:/my tb\"", "gtbPath", "C:/my tb"},
           Case{"bookFilePath = \"abc", "bookFilePath", "\"abc"},
           Case{"bookFilePath = \"", "bookFilePath", "\""},
           Case{"bookFilePath = \"\"", "bookFilePath", ""},
           Case{"a=b=c", "a", "b=c"},
           Case{"key\t= 1", "key\t", "1"},  // a tab is no blank
       }) {
    const auto parsed = parseConfigurationLine(c.line);
    ASSERT_TRUE(parsed) << c.line;
    EXPECT_EQ(parsed->key, c.key) << c.line;
    EXPECT_EQ(parsed->value, c.value) << c.line;
  }
}

class ConfigurationApply : public ::testing::Test {
 protected:
  void apply(const char* key, const char* value) { applyConfigurationLine({key, value}, player, out); }

  SearchClock clock;
  std::ostringstream out;
  ChessPlayer player{clock, out};
};

TEST_F(ConfigurationApply, SizesAreStoredInRangeAndWarnedAboutOutside) {
  apply("TTHashSizeMB", "64");  // unknown and miscased keys are ignored
  apply("nosuch", "1");
  apply("", "1");
  EXPECT_EQ(player.ttHashSizeMB, 256u);
  apply("ttHashSizeMB", "2048");
  apply("pawnHashSizeMB", "1");
  apply("gtbCacheSizeMB", "0");
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(player.ttHashSizeMB, 2048u);
  EXPECT_EQ(player.pawnHashSizeMB, 1u);
  EXPECT_EQ(player.gtbCacheSizeMB, 0u);
  EXPECT_FALSE(player.ttHash.exists());  // tables come with the first game, not from the file

  apply("ttHashSizeMB", "2049");
  apply("pawnHashSizeMB", "x");
  apply("gtbCacheSizeMB", "-1");
  apply("gtbCacheSizeMB", "257");
  EXPECT_EQ(out.str(),
            "# WARNING: ttHashSizeMB = 2049 out of range in ini file (min = 1, max = 2048)\n"
            "# WARNING: pawnHashSizeMB = x out of range in ini file (min = 1, max = 2048)\n"
            "# WARNING: gtbCacheSizeMB = -1 out of range in ini file (min = 0, max = 256)\n"
            "# WARNING: gtbCacheSizeMB = 257 out of range in ini file (min = 0, max = 256)\n");
  EXPECT_EQ(player.ttHashSizeMB, 2048u);
  EXPECT_EQ(player.pawnHashSizeMB, 1u);
  EXPECT_EQ(player.gtbCacheSizeMB, 0u);
}

TEST_F(ConfigurationApply, CoresHaveAMinimumOnlyAndAreCappedByTheHardware) {
  apply("numberOfCores", "0");
  EXPECT_EQ(out.str(), "# WARNING: numberOfCores = 0 out of range in ini file (min = 1)\n");
  EXPECT_EQ(player.cores, 1u);
  out.str("");
  apply("numberOfCores", "100000");
  EXPECT_EQ(out.str(), cores(player.maxCores, 100000, player.maxCores) + "\n");
  EXPECT_EQ(player.cores, player.maxCores);
}

// The copy is the one the protocol's options use; their test shows the cut to 255 characters.
TEST_F(ConfigurationApply, PathsAreCopiedAsTheyStand) {
  apply("gtbPath", "C:/my tb");
  apply("bookFilePath", "\"abc");
  EXPECT_STREQ(player.gtbPath, "C:/my tb");
  EXPECT_STREQ(player.bookFilePath, "\"abc");
  EXPECT_FALSE(player.tablebases.initialised);  // the file alone sets no tablebase up
  EXPECT_EQ(out.str(), "");
}

TEST(ConfigurationFile, EveryLineIsReadAndALaterLineWins) {
  testing::ScratchFolder folder;
  folder.write("torvy.ini",
               "# sizes\r\n"
               "ttHashSizeMB = 16   \r\n"
               "pawnHashSizeMB=4000\n"
               "\n"
               "ttHashSizeMB = 8\n"
               "gtbPath = \"C:/my tb\"\n"
               "bookFilePath=other.bin");  // no line end at the end of the file
  SearchClock clock;
  std::ostringstream out;
  ChessPlayer player(clock, out);
  readConfigurationFile(folder.file("missing.ini").c_str(), player, out);
  EXPECT_EQ(out.str(), "");
  EXPECT_STREQ(player.bookFilePath, "book.bin");
  readConfigurationFile(folder.file("torvy.ini").c_str(), player, out);
  EXPECT_EQ(out.str(), "# WARNING: pawnHashSizeMB = 4000 out of range in ini file (min = 1, max = 2048)\n");
  EXPECT_EQ(player.ttHashSizeMB, 8u);
  EXPECT_EQ(player.pawnHashSizeMB, 32u);
  EXPECT_STREQ(player.gtbPath, "C:/my tb");
  EXPECT_STREQ(player.bookFilePath, "other.bin");
}

// The file is read while the engine is built: its lines come before the banner, the command
// line comes after it, and the tables of the first game have the sizes from the file.
TEST(ProtocolConfiguration, FileIsReadBeforeTheBannerAndTheCommandLineOverridesIt) {
  testing::ScratchFolder folder;
  folder.write("torvy.ini", "numberOfCores=1\nnumberOfCores=-3\nttHashSizeMB=3\npawnHashSizeMB=0\n");
  const auto run = testing::runEngine("xboard\nprotover 2\n", {"-cores", "2"}, std::chrono::seconds(60), folder.path());
  ASSERT_EQ(run.exitCode, 0);
  const std::uint32_t max = usableCores(std::thread::hardware_concurrency());
  const Lines expected = testing::joined({
      {cores(1, 1, max), "# WARNING: numberOfCores = -3 out of range in ini file (min = 1)",
       "# WARNING: pawnHashSizeMB = 0 out of range in ini file (min = 1, max = 2048)"},
      testing::banner(),
      {cores(std::min<std::uint32_t>(2, max), 2, max), "# new size of TT hash: 2 MB", "# new size of Pawn hash: 32 MB"},
  });
  ASSERT_GE(run.lines.size(), expected.size());
  EXPECT_EQ(Lines(run.lines.begin(), run.lines.begin() + std::ptrdiff_t(expected.size())), expected);
  EXPECT_NE(std::find(run.lines.begin(), run.lines.end(), "feature option=\"ttHashSizeMB -spin 3 1 2048\""),
            run.lines.end());
}

}  // namespace
}  // namespace torvy
