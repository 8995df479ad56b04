// Replays each session in data/transcripts against the built engine and compares its output.
// A transcript has one item to a line:
//   "> text"     an input line, or ">" an empty one; "\t" and "\r" in it stand for a tab and a
//                carriage return
//   ">| text"    the last input, sent without a line feed
//   "; text"     a note for the reader
//   "@args A B"  the engine's command-line arguments
//   "@folder F"  the engine runs in the folder F beside the transcripts, and reads what is there;
//                otherwise it runs in an empty folder
//   "@startup"   the start-up lines: banner, table sizes, the start position and the prompt
//   "@board R/R/R/R/R/R/R/R"  a board picture, its ranks as printed from the eighth down
// and every other line is an output line, trailing blanks included: "{cores}" in it stands for
// the machine's core count, and one that begins with "~" is a regular expression for a line
// whose numbers vary (times, speeds). The input goes in at once, so the engine answers in
// order; no search may run, as its output varies.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

#include "frontend/line_reader.h"
#include "frontend/transcript.h"
#include "search/chess_player.h"

namespace torvy::testing {
namespace {

const std::filesystem::path transcriptFolder = std::filesystem::path(TORVY_TEST_DATA) / "transcripts";

// The transcripts in a folder, by their paths below the transcript folder without ".txt".
std::vector<std::string> transcriptsIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(transcriptFolder / folder))
    if (entry.path().extension() == ".txt")
      names.push_back((std::filesystem::path(folder) / entry.path().stem()).string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

struct Transcript {
  std::vector<std::string> args;
  std::string folder;
  std::string input;
  Lines output;
};

Transcript readTranscript(const std::string& name) {
  const std::string cores = std::to_string(usableCores(std::thread::hardware_concurrency()));
  Transcript t;
  std::ifstream file(transcriptFolder / (name + ".txt"));
  const auto input = [](const std::string& text) { return replaced(replaced(text, "\\t", "\t"), "\\r", "\r"); };
  for (std::string line; std::getline(file, line);) {
    if (startsWith(line, ">| ")) {
      t.input += input(line.substr(3));
    } else if (startsWith(line, ">")) {
      t.input += input(line.substr(std::min<std::size_t>(2, line.size()))) + "\n";
    } else if (startsWith(line, "@folder ")) {
      t.folder = (transcriptFolder / line.substr(8)).string();
    } else if (startsWith(line, "@args ")) {
      t.args = split(line.substr(6), ' ');
    } else if (line == "@startup") {
      const Lines lines = startUpLines();
      t.output.insert(t.output.end(), lines.begin(), lines.end());
    } else if (startsWith(line, "@board ")) {
      const Lines picture = boardPicture(split(line.substr(7), '/'));
      t.output.insert(t.output.end(), picture.begin(), picture.end());
    } else if (!startsWith(line, ";")) {
      t.output.push_back(replaced(line, "{cores}", cores));
    }
  }
  return t;
}

class TranscriptTest : public ::testing::TestWithParam<std::string> {};

TEST_P(TranscriptTest, Replays) {
  const Transcript t = readTranscript(GetParam());
  ASSERT_FALSE(t.output.empty()) << "no transcript " << GetParam();
  // The self-test takes a minute under AddressSanitizer, more on a busy machine.
  EngineOutput run = runEngine(t.input, t.args, std::chrono::seconds(300), t.folder);
  EXPECT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  // A line that matches its expression is shown as the expression, so that only misfits differ.
  for (std::size_t i = 0; i < std::min(run.lines.size(), t.output.size()); ++i)
    if (startsWith(t.output[i], "~") && std::regex_match(run.lines[i], std::regex(t.output[i].substr(1))))
      run.lines[i] = t.output[i];
  EXPECT_EQ(run.lines, t.output);
}

std::string testName(const ::testing::TestParamInfo<std::string>& info) {
  return std::filesystem::path(info.param).filename().string();
}

// Sessions of the protocol, which the race-checking build runs too, and the diagnostic
// reports, single-threaded and too slow for it.
INSTANTIATE_TEST_SUITE_P(Protocol, TranscriptTest, ::testing::ValuesIn(transcriptsIn("")), testName);
INSTANTIATE_TEST_SUITE_P(Reports, TranscriptTest, ::testing::ValuesIn(transcriptsIn("reports")), testName);

}  // namespace
}  // namespace torvy::testing
