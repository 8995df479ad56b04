#include "tablebase/endgame_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>

namespace torvy {
namespace {

std::string withColoursSwapped(std::string_view name) {
  const std::size_t blackKing = name.find('k', 1);
  return std::string(name.substr(blackKing)) + std::string(name.substr(0, blackKing));
}

TEST(EndgameTableTest, HoldsEachEndgameOnceInOneColourArrangement) {
  std::array<int, 6> byMen{};
  std::set<std::string_view> names;
  for (const Endgame& endgame : Endgames) {
    ++byMen[endgame.name.size()];
    names.insert(endgame.name);
  }
  EXPECT_EQ(byMen[3], 5);
  EXPECT_EQ(byMen[4], 30);
  EXPECT_EQ(byMen[5], 110);
  EXPECT_EQ(names.size(), std::size_t(EndgameCount));

  for (const Endgame& endgame : Endgames) {
    const std::string mirrored = withColoursSwapped(endgame.name);
    if (mirrored != endgame.name) {
      EXPECT_EQ(findEndgame(mirrored), -1) << endgame.name;
    }
  }
  for (const char* unknown : {"kqqqkq", "", "kk"}) EXPECT_EQ(findEndgame(unknown), -1) << unknown;
}

// The shape decides the size; likeness counts only within a side, and Black's piece letters
// follow White's.
TEST(EndgameTableTest, ShapesAndSizesFollowTheMen) {
  struct Case {
    std::string_view name;
    EndgameShape shape;
    std::uint32_t maxIndex;
  };
  const Case cases[] = {
      {"kqk", EndgameShape::Kak, 29568},          {"kpk", EndgameShape::Kpk, 98304},
      {"kqkq", EndgameShape::Kakb, 1892352},      {"kqrk", EndgameShape::Kabk, 1892352},
      {"kbbk", EndgameShape::Kaak, 931392},       {"kqkp", EndgameShape::Kakp, 6291456},
      {"knpk", EndgameShape::Kapk, 6291456},      {"kppk", EndgameShape::Kppk, 2359296},
      {"kpkp", EndgameShape::Kpkp, 4718592},      {"knnnk", EndgameShape::Kaaak, 19248768},
      {"kqqrk", EndgameShape::Kaabk, 59609088},   {"kqrrk", EndgameShape::Kabbk, 59609088},
      {"kqqkq", EndgameShape::Kaakb, 59609088},   {"kqrbk", EndgameShape::Kabck, 121110528},
      {"krbkb", EndgameShape::Kabkc, 121110528},  {"kqqpk", EndgameShape::Kaapk, 198180864},
      {"kbbkp", EndgameShape::Kaakp, 198180864},  {"kqrpk", EndgameShape::Kabpk, 402653184},
      {"kbpkb", EndgameShape::Kapkb, 402653184},  {"krnkp", EndgameShape::Kabkp, 402653184},
      {"knppk", EndgameShape::Kappk, 150994944},  {"kppkn", EndgameShape::Kppka, 150994944},
      {"kqpkp", EndgameShape::Kapkp, 301989888},  {"kppkp", EndgameShape::Kppkp, 110886912},
      {"kpppk", EndgameShape::Kpppk, 35422208},
  };
  for (const Case& c : cases) {
    const int id = findEndgame(c.name);
    ASSERT_GE(id, 0) << c.name;
    EXPECT_EQ(Endgames[id].shape, c.shape) << c.name;
    EXPECT_EQ(Endgames[id].maxIndex, c.maxIndex) << c.name;
  }
}

}  // namespace
}  // namespace torvy
