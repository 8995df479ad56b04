#include "tablebase/position_index.h"

#include <algorithm>
#include <utility>

namespace torvy {
namespace {

constexpr int fileOfSquare(TableSquare s) { return int(s & 7); }
constexpr int rankOfSquare(TableSquare s) { return int(s >> 3); }
constexpr bool onPawnRank(TableSquare s) { return s >= 8 && s < 56; }
constexpr bool onQueenSide(TableSquare s) { return fileOfSquare(s) < 4; }

constexpr bool kingsTouch(TableSquare a, TableSquare b) {
  const int files = fileOfSquare(a) - fileOfSquare(b);
  const int ranks = rankOfSquare(a) - rankOfSquare(b);
  return files >= -1 && files <= 1 && ranks >= -1 && ranks <= 1;
}

// The flips that bring the black king into the a1-d1-d4 triangle, and, with the black king on the
// diagonal, the white king to or below it.
constexpr int flipsForKings(TableSquare black, TableSquare white) {
  int flips = 0;
  if (fileOfSquare(black) > 3) {
    black ^= 7;
    white ^= 7;
    flips |= FlipFiles;
  }
  if (rankOfSquare(black) > 3) {
    black ^= 56;
    white ^= 56;
    flips |= FlipRanks;
  }
  if (rankOfSquare(black) > fileOfSquare(black) ||
      (rankOfSquare(black) == fileOfSquare(black) && rankOfSquare(white) > fileOfSquare(white)))
    flips |= FlipDiagonal;
  return flips;
}

// Pawn squares counted from a pawn's own side: ranks 2 to 7 give 0 to 47.
constexpr int p48White(TableSquare s) { return int(s ^ 56) - 8; }
constexpr int p48Black(TableSquare s) { return int(s) - 8; }
// A queen-side pawn's rank * 4 + file, from its p48 number.
constexpr int p24(int q) { return (q + (q & 3)) >> 1; }

// Of two pawns the anchor is the more advanced one, then the one nearer the edge, then the lower.
constexpr bool firstIsAnchor(TableSquare a, TableSquare b) {
  if (rankOfSquare(b) != rankOfSquare(a)) return rankOfSquare(b) < rankOfSquare(a);
  const auto edgeness = [](TableSquare s) { return std::max(fileOfSquare(s), 7 - fileOfSquare(s)); };
  if (edgeness(a) != edgeness(b)) return edgeness(a) > edgeness(b);
  return a < b;
}

constexpr void buildKingTables(IndexTables& t) {
  for (auto& row : t.kingPairIndex) row.fill(Unset);
  for (TableSquare black = 0; black < 64; ++black)
    for (TableSquare white = 0; white < 64; ++white)
      t.flipTable[black][white] = std::uint8_t(flipsForKings(black, white));
  int n = 0;
  for (TableSquare x = 0; x < 64; ++x) {
    for (TableSquare y = 0; y < 64; ++y) {
      if (x == y || kingsTouch(x, y)) continue;
      const int flips = t.flipTable[x][y];
      const TableSquare i = flipSquare(x, flips);
      const TableSquare j = flipSquare(y, flips);
      if (t.kingPairIndex[i][j] != Unset) continue;
      t.kingPairIndex[i][j] = t.kingPairIndex[x][y] = std::int16_t(n);
      t.blackKingOf[n] = std::uint8_t(i);
      t.whiteKingOf[n] = std::uint8_t(j);
      ++n;
    }
  }
}

constexpr void buildPairTables(IndexTables& t) {
  for (auto& row : t.pairIndex) row.fill(Unset);
  int n = 0;
  for (int x = 0; x < 64; ++x)
    for (int y = x + 1; y < 64; ++y) t.pairIndex[x][y] = t.pairIndex[y][x] = std::int16_t(n++);
  for (std::uint32_t z = 0; z < 64; ++z) t.tripleBase[z] = z * (z - 1) * (z - 2) / 6;
}

constexpr void buildPawnPairTables(IndexTables& t) {
  for (auto& row : t.pawnPairIndex) row.fill(Unset);
  for (auto& row : t.pawnPair48) row.fill(Unset);
  int n = 0;
  for (TableSquare a = 55; a >= 8; --a) {
    if (onQueenSide(a)) continue;
    for (TableSquare b = a - 1; b >= 8; --b) {
      TableSquare anchor = firstIsAnchor(a, b) ? a : b;
      TableSquare loose = anchor == a ? b : a;
      if (!onQueenSide(anchor)) {
        anchor ^= 7;
        loose ^= 7;
      }
      auto& entry = t.pawnPairIndex[p24(p48White(anchor))][p48White(loose)];
      if (entry == Unset) entry = std::int16_t(n++);
    }
  }
  n = 0;
  for (TableSquare a = 55; a >= 8; --a) {
    for (TableSquare b = a - 1; b >= 8; --b) {
      const int i = int(a ^ 63) - 8;
      const int j = int(b ^ 63) - 8;
      if (t.pawnPair48[i][j] != Unset) continue;
      t.pawnPair48[i][j] = t.pawnPair48[j][i] = std::int16_t(n++);
    }
  }
}

constexpr void buildPawnTripleTable(IndexTables& t) {
  for (auto& plane : t.pawnTriple48)
    for (auto& row : plane) row.fill(Unset);
  // King side first, then queen side; within each from the 7th rank down and from the edge in.
  std::array<TableSquare, 48> order{};
  int count = 0;
  for (int firstFile : {7, 3})
    for (int rank = 6; rank >= 1; --rank)
      for (int file = firstFile; file > firstFile - 4; --file) order[count++] = TableSquare(rank * 8 + file);
  int n = 0;
  for (int x = 0; x < 48; ++x) {
    for (int y = x + 1; y < 48; ++y) {
      for (int z = y + 1; z < 48; ++z) {
        if (!onQueenSide(order[y]) || !onQueenSide(order[z])) continue;
        const int i = int(order[x]) - 8, j = int(order[y]) - 8, k = int(order[z]) - 8;
        if (t.pawnTriple48[i][j][k] != Unset) continue;
        const auto value = std::int16_t(n++);
        t.pawnTriple48[i][j][k] = t.pawnTriple48[i][k][j] = t.pawnTriple48[j][i][k] = value;
        t.pawnTriple48[j][k][i] = t.pawnTriple48[k][i][j] = t.pawnTriple48[k][j][i] = value;
      }
    }
  }
}

constexpr IndexTables buildIndexTables() {
  IndexTables t{};
  buildKingTables(t);
  buildPairTables(t);
  buildPawnPairTables(t);
  buildPawnTripleTable(t);
  return t;
}

constexpr IndexTables Tables = buildIndexTables();

// A number in base 64 with the first digit highest.
template <class... Rest>
constexpr std::uint32_t digits(std::uint32_t first, Rest... rest) {
  ((first = first * 64 + std::uint32_t(rest)), ...);
  return first;
}

constexpr int pair(TableSquare a, TableSquare b) { return Tables.pairIndex[a][b]; }

constexpr int triple(TableSquare a, TableSquare b, TableSquare c) {
  if (a == b || b == c || a == c) return Unset;
  // Sorted so that z > y > x.
  if (a > b) std::swap(a, b);
  if (b > c) std::swap(b, c);
  if (a > b) std::swap(a, b);
  return int(b * (b - 1) / 2 + a + Tables.tripleBase[c]);
}

// Working copies of the men of a position, as the shape says how many each side has.
struct Men {
  std::array<TableSquare, 4> w{};
  std::array<TableSquare, 4> b{};
  int whiteCount = 0;
  int blackCount = 0;

  Men(EndgameShape shape, const TableSquare* white, const TableSquare* black) {
    const std::string_view pattern = Shapes[std::size_t(shape)].pattern;
    whiteCount = int(pattern.find('k', 1));
    blackCount = int(pattern.size()) - whiteCount;
    for (int i = 0; i < whiteCount; ++i) w[i] = white[i];
    for (int i = 0; i < blackCount; ++i) b[i] = black[i];
  }

  void flip(int flips) {
    for (int i = 0; i < whiteCount; ++i) w[i] = flipSquare(w[i], flips);
    for (int i = 0; i < blackCount; ++i) b[i] = flipSquare(b[i], flips);
  }
};

bool pawnlessIndex(EndgameShape shape, Men& m, std::uint32_t& index) {
  m.flip(Tables.flipTable[m.b[0]][m.w[0]]);
  const int k = Tables.kingPairIndex[m.b[0]][m.w[0]];
  if (k == Unset) return false;
  const std::uint32_t kings = std::uint32_t(k);
  int likeMen = 0;  // the pair or triple number, for shapes that have like men
  switch (shape) {
    case EndgameShape::Kak: index = digits(kings, m.w[1]); return true;
    case EndgameShape::Kabk: index = digits(kings, m.w[1], m.w[2]); return true;
    case EndgameShape::Kakb: index = digits(kings, m.w[1], m.b[1]); return true;
    case EndgameShape::Kabck: index = digits(kings, m.w[1], m.w[2], m.w[3]); return true;
    case EndgameShape::Kabkc: index = digits(kings, m.w[1], m.w[2], m.b[1]); return true;
    case EndgameShape::Kaak:
    case EndgameShape::Kaabk:
    case EndgameShape::Kaakb: likeMen = pair(m.w[1], m.w[2]); break;
    case EndgameShape::Kabbk: likeMen = pair(m.w[2], m.w[3]); break;
    case EndgameShape::Kaaak: likeMen = triple(m.w[1], m.w[2], m.w[3]); break;
    default: return false;
  }
  if (likeMen == Unset) return false;
  switch (shape) {
    case EndgameShape::Kaak: index = kings * PairCount + std::uint32_t(likeMen); return true;
    case EndgameShape::Kaabk: index = digits(kings * PairCount + std::uint32_t(likeMen), m.w[3]); return true;
    case EndgameShape::Kabbk: index = digits(kings * PairCount + std::uint32_t(likeMen), m.w[1]); return true;
    case EndgameShape::Kaakb: index = digits(kings * PairCount + std::uint32_t(likeMen), m.b[1]); return true;
    default: index = kings * TripleCount + std::uint32_t(likeMen); return true;
  }
}

// Shapes with one pawn, or several of which one decides the file flip: that pawn's place.
struct DecidingPawn {
  bool white;
  int slot;
};

constexpr DecidingPawn decidingPawn(EndgameShape shape) {
  switch (shape) {
    case EndgameShape::Kpk:
    case EndgameShape::Kpkp: return {true, 1};
    case EndgameShape::Kapk:
    case EndgameShape::Kapkb:
    case EndgameShape::Kapkp: return {true, 2};
    case EndgameShape::Kabpk:
    case EndgameShape::Kaapk: return {true, 3};
    default: return {false, 1};  // kakp, kabkp, kaakp, kppkp
  }
}

bool singlePawnIndex(EndgameShape shape, Men& m, std::uint32_t& index) {
  const DecidingPawn deciding = decidingPawn(shape);
  if (!onQueenSide(deciding.white ? m.w[deciding.slot] : m.b[deciding.slot])) m.flip(FlipFiles);
  const TableSquare pawn = deciding.white ? m.w[deciding.slot] : m.b[deciding.slot];
  const std::uint32_t p = std::uint32_t(p24(deciding.white ? p48White(pawn) : p48Black(pawn)));
  const TableSquare w0 = m.w[0], b0 = m.b[0];
  switch (shape) {
    case EndgameShape::Kpk: index = digits(p, w0, b0); return true;
    case EndgameShape::Kakp:
    case EndgameShape::Kapk: index = digits(p, w0, b0, m.w[1]); return true;
    case EndgameShape::Kabpk:
    case EndgameShape::Kabkp: index = digits(p, w0, b0, m.w[1], m.w[2]); return true;
    case EndgameShape::Kapkb: index = digits(p, w0, b0, m.w[1], m.b[1]); return true;
    case EndgameShape::Kaapk:
    case EndgameShape::Kaakp: {
      const int like = pair(m.w[1], m.w[2]);
      if (like == Unset) return false;
      index = digits(p, w0, b0) * PairCount + std::uint32_t(like);
      return true;
    }
    case EndgameShape::Kpkp: index = digits(p * 48 + (m.b[1] - 8), w0, b0); return true;
    case EndgameShape::Kapkp: index = digits(p * 48 + (m.b[1] - 8), w0, b0, m.w[1]); return true;
    case EndgameShape::Kppkp: {
      const int like = Tables.pawnPair48[(m.w[1] ^ 63) - 8][(m.w[2] ^ 63) - 8];
      if (like == Unset) return false;
      index = digits(p * PawnPair48Count + std::uint32_t(like), w0, b0);
      return true;
    }
    default: return false;
  }
}

// Two like White pawns: the anchor decides the flip.
bool pawnPairIndex(EndgameShape shape, Men& m, std::uint32_t& index) {
  const int first = shape == EndgameShape::Kappk ? 2 : 1;
  const bool anchorFirst = firstIsAnchor(m.w[first], m.w[first + 1]);
  if (!onQueenSide(anchorFirst ? m.w[first] : m.w[first + 1])) m.flip(FlipFiles);
  const TableSquare anchor = anchorFirst ? m.w[first] : m.w[first + 1];
  const TableSquare loose = anchorFirst ? m.w[first + 1] : m.w[first];
  const int q = Tables.pawnPairIndex[p24(p48White(anchor))][p48White(loose)];
  if (q == Unset) return false;
  switch (shape) {
    case EndgameShape::Kppk: index = digits(std::uint32_t(q), m.w[0], m.b[0]); return true;
    case EndgameShape::Kppka: index = digits(std::uint32_t(q), m.w[0], m.b[0], m.b[1]); return true;
    default: index = digits(std::uint32_t(q), m.w[0], m.b[0], m.w[1]); return true;
  }
}

bool pawnTripleIndex(Men& m, std::uint32_t& index) {
  const auto lookUp = [&m] { return Tables.pawnTriple48[m.w[1] - 8][m.w[2] - 8][m.w[3] - 8]; };
  int t = lookUp();
  if (t == Unset) {
    m.flip(FlipFiles);
    t = lookUp();
  }
  if (t == Unset) return false;
  index = digits(std::uint32_t(t), m.w[0], m.b[0]);
  return true;
}

// Pawns off ranks 2 to 7 have no number; refusing them keeps every table lookup in range.
bool pawnsOnPawnRanks(std::string_view pattern, const Men& m) {
  const std::size_t blackKing = pattern.find('k', 1);
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool white = i < blackKing;
    const TableSquare square = white ? m.w[i] : m.b[i - blackKing];
    if (pattern[i] == 'p' && !onPawnRank(square)) return false;
  }
  return true;
}

}  // namespace

const IndexTables& indexTables() { return Tables; }

bool positionToIndex(EndgameShape shape, const TableSquare* white, const TableSquare* black, std::uint32_t& index) {
  Men men(shape, white, black);
  const std::string_view pattern = Shapes[std::size_t(shape)].pattern;
  if (pattern.find('p') == std::string_view::npos) return pawnlessIndex(shape, men, index);
  if (!pawnsOnPawnRanks(pattern, men)) return false;
  switch (shape) {
    case EndgameShape::Kppk:
    case EndgameShape::Kppka:
    case EndgameShape::Kappk: return pawnPairIndex(shape, men, index);
    case EndgameShape::Kpppk: return pawnTripleIndex(men, index);
    default: return singlePawnIndex(shape, men, index);
  }
}

}  // namespace torvy
