// The options that the configuration file, "option" and "protover" share: names, ranges and
// what a protocol change sets in motion.
#pragma once

#include <cstdint>
#include <string_view>

#include "search/chess_player.h"

namespace torvy {

struct SizeOption {
  std::string_view name;
  std::uint32_t ChessPlayer::*field;
  int min;
  int max;
  void (ChessPlayer::*set)(std::uint32_t);

  // A negative number is out of range for every size.
  bool accepts(int value) const { return value >= min && value <= max; }
};

struct PathOption {
  std::string_view name;
  OptionPath ChessPlayer::*field;
  void (ChessPlayer::*set)(std::string_view);
};

// In the order the feature list announces them.
constexpr SizeOption SizeOptions[] = {
    {"ttHashSizeMB", &ChessPlayer::ttHashSizeMB, 1, 2048, &ChessPlayer::setTtHashSizeMB},
    {"pawnHashSizeMB", &ChessPlayer::pawnHashSizeMB, 1, 2048, &ChessPlayer::setPawnHashSizeMB},
    {"gtbCacheSizeMB", &ChessPlayer::gtbCacheSizeMB, 0, 256, &ChessPlayer::setGtbCacheSizeMB},
};

constexpr PathOption PathOptions[] = {
    {"gtbPath", &ChessPlayer::gtbPath, &ChessPlayer::setGtbPath},
    {"bookFilePath", &ChessPlayer::bookFilePath, &ChessPlayer::setBookFilePath},
};

// The configuration file's key for the number of search threads; it has no maximum.
constexpr std::string_view CoresKey = "numberOfCores";
constexpr int MinCores = 1;

template <class Option, std::size_t N>
constexpr const Option* findOption(const Option (&options)[N], std::string_view name) {
  for (const Option& option : options)
    if (option.name == name) return &option;
  return nullptr;
}

}  // namespace torvy
