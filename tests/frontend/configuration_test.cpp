// How a line of the configuration file is read; the configuration_file transcript shows the rest.
#include "frontend/configuration.h"

#include <gtest/gtest.h>

#include <tuple>

namespace torvy {
namespace {

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

}  // namespace
}  // namespace torvy
