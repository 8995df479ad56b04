// The configuration file: how a line is read, what each key accepts, and where its output lands.
#include "frontend/configuration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>

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
// quotes are trimmed. A "#" behind the first non-blank character is text.
TEST(ConfigurationLine, SkipsOrSplitsIntoKeyAndValue) {
  for (const char* line : {"", "   ", "# ttHashSizeMB=1", "   # ttHashSizeMB=1", "ttHashSizeMB", "  ttHashSizeMB 5"})
    EXPECT_FALSE(parseConfigurationLine(line)) << '"' << line << '"';
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"ttHashSizeMB=64", "ttHashSizeMB", "64"},
      {"   ttHashSizeMB   =   64", "ttHashSizeMB", "64"},
      {"gtbPath = \"C:/my tb\"", "gtbPath", "C:/my tb"},
      {"bookFilePath = \"abc", "bookFilePath", "\"abc"},
      {"bookFilePath = \"", "bookFilePath", "\""},
      {"bookFilePath = \"\"", "bookFilePath", ""},
      {"a=b=c", "a", "b=c"},
      {"bookFilePath = a.bin # mine", "bookFilePath", "a.bin # mine"},
      {"key\t= 1", "key\t", "1"},  // a tab is no blank
  };
  for (const auto& [line, key, value] : cases) {
    const auto parsed = parseConfigurationLine(line);
    ASSERT_TRUE(parsed) << line;
    EXPECT_EQ(parsed->key, key) << line;
    EXPECT_EQ(parsed->value, value) << line;
  }
}

// The file is read while the engine is built: its lines come before the banner, the command
// line comes after it, and a later line wins. Unknown and miscased keys are ignored; a value out
// of range is warned about and changes nothing; a number of cores has a minimum only and is
// capped by the hardware. The first game and the features show the values from the file, and
// the file alone sets no tablebase up. Line ends may be CR LF, and the last line needs none.
TEST(ProtocolConfiguration, EveryKeyWithItsRangeIsReadBeforeTheBanner) {
  testing::ScratchFolder folder;
  folder.write("torvy.ini",
               "# sizes\r\n"
               "ttHashSizeMB = 16   \r\n"
               "TTHashSizeMB=64\nnosuch=1\n=1\n"
               "numberOfCores=100000\nnumberOfCores=0\nnumberOfCores=1\n"
               "ttHashSizeMB=2048\nttHashSizeMB=2049\npawnHashSizeMB=1\npawnHashSizeMB=x\n"
               "gtbCacheSizeMB=0\ngtbCacheSizeMB=-1\ngtbCacheSizeMB=257\n"
               "\n"
               "ttHashSizeMB = 3\n"
               "gtbPath = \"C:/my tb\"\n"
               "bookFilePath=other.bin");
  const auto run = testing::runEngine("xboard\nprotover 2\n", {"-cores", "2"}, std::chrono::seconds(60), folder.path());
  ASSERT_EQ(run.exitCode, 0);
  const std::uint32_t max = usableCores(std::thread::hardware_concurrency());
  const Lines expected = testing::joined({
      {cores(max, 100000, max), "# WARNING: numberOfCores = 0 out of range in ini file (min = 1)", cores(1, 1, max),
       "# WARNING: ttHashSizeMB = 2049 out of range in ini file (min = 1, max = 2048)",
       "# WARNING: pawnHashSizeMB = x out of range in ini file (min = 1, max = 2048)",
       "# WARNING: gtbCacheSizeMB = -1 out of range in ini file (min = 0, max = 256)",
       "# WARNING: gtbCacheSizeMB = 257 out of range in ini file (min = 0, max = 256)"},
      testing::banner(),
      {cores(std::min<std::uint32_t>(2, max), 2, max), "# new size of TT hash: 2 MB", "# new size of Pawn hash: 1 MB"},
  });
  ASSERT_GE(run.lines.size(), expected.size());
  EXPECT_EQ(Lines(run.lines.begin(), run.lines.begin() + std::ptrdiff_t(expected.size())), expected);
  for (const char* feature :
       {"feature option=\"ttHashSizeMB -spin 3 1 2048\"", "feature option=\"pawnHashSizeMB -spin 1 1 2048\"",
        "feature option=\"gtbCacheSizeMB -spin 0 0 256\"", "feature option=\"gtbPath -path C:/my tb\"",
        "feature option=\"bookFilePath -path other.bin\""})
    EXPECT_NE(std::find(run.lines.begin(), run.lines.end(), feature), run.lines.end()) << feature;
  EXPECT_EQ(testing::countStarting(run.lines, "# initializing TB"), 0);
}

}  // namespace
}  // namespace torvy
