// Expected output pieces shared by the protocol tests: the start-up lines and board pictures.
#pragma once

#include <gtest/gtest.h>

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

inline Lines startBoard() {
  return boardPicture({"rnbqkbnr", "pppppppp", "........", "........", "........", "........", "PPPPPPPP", "RNBQKBNR"});
}

inline Lines banner() { return {"# Torvy 0.6.51", "# a chess engine for xboard front ends, written in C++20", "# ", "feature done=0"}; }

inline Lines newTableLines() { return {"# new size of TT hash: 256 MB", "# new size of Pawn hash: 32 MB"}; }

inline Lines joined(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// Runs the commands behind "xboard", so no prompt follows, and returns what came after the
// start-up lines and the one prompt that "xboard" answers with an empty line.
inline Lines xboardSession(const std::string& commands) {
  const EngineOutput run = runEngine("xboard\n" + commands);
  EXPECT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const Lines startup = joined({banner(), newTableLines(), startBoard(), {"# Your move: "}});
  if (run.lines.size() < startup.size() || !std::equal(startup.begin(), startup.end(), run.lines.begin())) {
    ADD_FAILURE() << "unexpected start-up lines";
    return run.lines;
  }
  return Lines(run.lines.begin() + std::ptrdiff_t(startup.size()), run.lines.end());
}

}  // namespace torvy::testing
