// Expected output pieces shared by the protocol tests, and ways to look for lines in the output.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frontend/engine_process.h"

namespace torvy::testing {

using Lines = std::vector<std::string>;

// The picture of printBoard: eight ranks from the eighth down, then "#" alone.
inline Lines boardPicture(const Lines& ranks) {
  Lines picture;
  for (const std::string& rank : ranks) picture.push_back("# " + rank);
  picture.push_back("#");
  return picture;
}

// What the engine prints before it reads its first line, the prompt included.
inline Lines startUpLines() {
  Lines lines{"# Torvy 0.6.51",
              "# a chess engine for xboard front ends, written in C++20",
              "# ",
              "feature done=0",
              "# new size of TT hash: 256 MB",
              "# new size of Pawn hash: 32 MB"};
  for (const std::string& line :
       boardPicture({"rnbqkbnr", "pppppppp", "........", "........", "........", "........", "PPPPPPPP", "RNBQKBNR"}))
    lines.push_back(line);
  lines.push_back("# Your move: ");
  return lines;
}

inline bool startsWith(const std::string& line, const std::string& prefix) { return line.rfind(prefix, 0) == 0; }

inline long countStarting(const Lines& lines, const std::string& prefix) {
  return std::count_if(lines.begin(), lines.end(), [&](const std::string& l) { return startsWith(l, prefix); });
}

// The index of the first line at or after `from` that begins with prefix, or the size.
inline std::size_t findLine(const Lines& lines, const std::string& prefix, std::size_t from = 0) {
  for (std::size_t i = from; i < lines.size(); ++i)
    if (startsWith(lines[i], prefix)) return i;
  return lines.size();
}

// Runs the steps, the first of which names the protocol, and returns what came after the
// start-up lines and the one prompt that the protocol's name is answered with.
inline Lines session(const std::vector<ScriptStep>& steps) {
  const EngineOutput run = runEngineScripted(steps);
  EXPECT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const Lines startup = startUpLines();
  if (run.lines.size() < startup.size() || !std::equal(startup.begin(), startup.end(), run.lines.begin())) {
    ADD_FAILURE() << "unexpected start-up lines";
    return run.lines;
  }
  return Lines(run.lines.begin() + std::ptrdiff_t(startup.size()), run.lines.end());
}

}  // namespace torvy::testing
