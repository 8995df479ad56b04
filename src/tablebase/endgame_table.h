// The 145 endgames that have Gaviota tables, their shapes and their sizes.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace torvy {

// The arrangement of an endgame's men with the piece kinds abstracted: a, b, c stand for distinct
// pieces other than pawns, repeated letters for like pieces. The shape alone fixes the size of a
// table and its index function.
// clang-format off
enum class EndgameShape : std::uint8_t {
  Kak, Kpk, Kabk, Kakb, Kaak, Kakp, Kapk, Kppk, Kpkp,
  Kaaak, Kaabk, Kabbk, Kaakb, Kabck, Kabkc, Kaapk, Kaakp,
  Kabpk, Kapkb, Kabkp, Kappk, Kppka, Kapkp, Kppkp, Kpppk,
};
// clang-format on

struct ShapeInfo {
  std::string_view pattern;
  EndgameShape shape;
  std::uint32_t maxIndex;  // positions per side to move
};

inline constexpr std::array<ShapeInfo, 25> Shapes = {{
    {"kak", EndgameShape::Kak, 29568},         {"kpk", EndgameShape::Kpk, 98304},
    {"kabk", EndgameShape::Kabk, 1892352},     {"kakb", EndgameShape::Kakb, 1892352},
    {"kaak", EndgameShape::Kaak, 931392},      {"kakp", EndgameShape::Kakp, 6291456},
    {"kapk", EndgameShape::Kapk, 6291456},     {"kppk", EndgameShape::Kppk, 2359296},
    {"kpkp", EndgameShape::Kpkp, 4718592},     {"kaaak", EndgameShape::Kaaak, 19248768},
    {"kaabk", EndgameShape::Kaabk, 59609088},  {"kabbk", EndgameShape::Kabbk, 59609088},
    {"kaakb", EndgameShape::Kaakb, 59609088},  {"kabck", EndgameShape::Kabck, 121110528},
    {"kabkc", EndgameShape::Kabkc, 121110528}, {"kaapk", EndgameShape::Kaapk, 198180864},
    {"kaakp", EndgameShape::Kaakp, 198180864}, {"kabpk", EndgameShape::Kabpk, 402653184},
    {"kapkb", EndgameShape::Kapkb, 402653184}, {"kabkp", EndgameShape::Kabkp, 402653184},
    {"kappk", EndgameShape::Kappk, 150994944}, {"kppka", EndgameShape::Kppka, 150994944},
    {"kapkp", EndgameShape::Kapkp, 301989888}, {"kppkp", EndgameShape::Kppkp, 110886912},
    {"kpppk", EndgameShape::Kpppk, 35422208},
}};

// Only one colour arrangement of each endgame has a file; the order fixes the endgame ids.
inline constexpr std::array<std::string_view, 145> EndgameNames = {
    "kqk",   "krk",   "kbk",   "knk",   "kpk",   "kqkq",  "kqkr",  "kqkb",  "kqkn",  "krkr",  "krkb",  "krkn",  "kbkb",
    "kbkn",  "knkn",  "kqqk",  "kqrk",  "kqbk",  "kqnk",  "krrk",  "krbk",  "krnk",  "kbbk",  "kbnk",  "knnk",  "kqkp",
    "krkp",  "kbkp",  "knkp",  "kqpk",  "krpk",  "kbpk",  "knpk",  "kppk",  "kpkp",  "kqqqk", "kqqrk", "kqqbk", "kqqnk",
    "kqrrk", "kqrbk", "kqrnk", "kqbbk", "kqbnk", "kqnnk", "krrrk", "krrbk", "krrnk", "krbbk", "krbnk", "krnnk", "kbbbk",
    "kbbnk", "kbnnk", "knnnk", "kqqkq", "kqqkr", "kqqkb", "kqqkn", "kqrkq", "kqrkr", "kqrkb", "kqrkn", "kqbkq", "kqbkr",
    "kqbkb", "kqbkn", "kqnkq", "kqnkr", "kqnkb", "kqnkn", "krrkq", "krrkr", "krrkb", "krrkn", "krbkq", "krbkr", "krbkb",
    "krbkn", "krnkq", "krnkr", "krnkb", "krnkn", "kbbkq", "kbbkr", "kbbkb", "kbbkn", "kbnkq", "kbnkr", "kbnkb", "kbnkn",
    "knnkq", "knnkr", "knnkb", "knnkn", "kqqpk", "kqrpk", "kqbpk", "kqnpk", "krrpk", "krbpk", "krnpk", "kbbpk", "kbnpk",
    "knnpk", "kqppk", "krppk", "kbppk", "knppk", "kqpkq", "kqpkr", "kqpkb", "kqpkn", "krpkq", "krpkr", "krpkb", "krpkn",
    "kbpkq", "kbpkr", "kbpkb", "kbpkn", "knpkq", "knpkr", "knpkb", "knpkn", "kppkq", "kppkr", "kppkb", "kppkn", "kqqkp",
    "kqrkp", "kqbkp", "kqnkp", "krrkp", "krbkp", "krnkp", "kbbkp", "kbnkp", "knnkp", "kqpkp", "krpkp", "kbpkp", "knpkp",
    "kppkp", "kpppk",
};

inline constexpr int EndgameCount = int(EndgameNames.size());

struct Endgame {
  std::string_view name;
  EndgameShape shape;
  std::uint32_t maxIndex;
};

// The shape pattern of a name: pieces become a, b, c in order of first appearance, with Black's
// letters continuing after White's, so that "kqrkq" reads "kabkc" and "kppkr" reads "kppka".
constexpr EndgameShape shapeOfName(std::string_view name) {
  std::array<char, 5> pattern{};
  char nextLetter = 'a';
  char lastPiece = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    if (c == 'k') {
      pattern[i] = 'k';
      lastPiece = 0;
    } else if (c == 'p') {
      pattern[i] = 'p';
    } else {
      // Men of one side come sorted, so like pieces stand next to each other.
      pattern[i] = c == lastPiece ? char(nextLetter - 1) : nextLetter++;
      lastPiece = c;
    }
  }
  const std::string_view text(pattern.data(), name.size());
  for (const ShapeInfo& info : Shapes)
    if (info.pattern == text) return info.shape;
  throw "endgame name of no known shape";  // only ever evaluated at compile time
}

constexpr std::uint32_t maxIndexOf(EndgameShape shape) { return Shapes[std::size_t(shape)].maxIndex; }

inline constexpr std::array<Endgame, EndgameCount> Endgames = [] {
  std::array<Endgame, EndgameCount> table{};
  for (int id = 0; id < EndgameCount; ++id) {
    const EndgameShape shape = shapeOfName(EndgameNames[id]);
    table[id] = {EndgameNames[id], shape, maxIndexOf(shape)};
  }
  return table;
}();

// The id of the endgame with this name, -1 if there is no table of that name.
int findEndgame(std::string_view name);

}  // namespace torvy
