// The vocabulary of the engine: colours, pieces, squares, packed moves and lists.
#pragma once

#include <array>
#include <cstdint>

namespace torvy {

// Distinct enums, so that a colour, a piece and a move kind can't stand in for one another;
// unscoped, so that they still index the tables.
enum Color : std::uint8_t { White, Black, NoColor };

constexpr Color opposite(Color c) { return Color(c ^ 1); }

enum PieceType : std::uint8_t { NoPiece, Pawn, Knight, Bishop, Rook, Queen, King };

// For the loops over the kinds of piece, Pawn to King.
constexpr PieceType& operator++(PieceType& t) { return t = PieceType(t + 1); }

// The only piece alphabet: index by PieceType, upper case for White where shown.
constexpr const char* PieceLetters = ".pnbrqk";

namespace sq {
// A square of the board, rank * 16 + file, named by its file and rank; unscoped, so that it
// still indexes the tables, and in a namespace of its own, so that its names stay apart from
// the engine's other short names. Its arithmetic lives beside it, where lookup always finds it.
// clang-format off
enum Square88 : std::uint8_t {
  a1 = 0x00, b1, c1, d1, e1, f1, g1, h1,
  a2 = 0x10, b2, c2, d2, e2, f2, g2, h2,
  a3 = 0x20, b3, c3, d3, e3, f3, g3, h3,
  a4 = 0x30, b4, c4, d4, e4, f4, g4, h4,
  a5 = 0x40, b5, c5, d5, e5, f5, g5, h5,
  a6 = 0x50, b6, c6, d6, e6, f6, g6, h6,
  a7 = 0x60, b7, c7, d7, e7, f7, g7, h7,
  a8 = 0x70, b8, c8, d8, e8, f8, g8, h8,
};
// clang-format on

// A step that leaves the board sets a bit of 0x88, in the low byte too: a step's result
// wrapped to a Square88 is off the board exactly when the whole number is.
constexpr Square88 operator+(Square88 s, int delta) { return Square88(int(s) + delta); }
constexpr Square88 operator-(Square88 s, int delta) { return Square88(int(s) - delta); }
constexpr Square88& operator+=(Square88& s, int delta) { return s = s + delta; }
// How far apart two squares are: a number, not a square.
constexpr int operator-(Square88 a, Square88 b) { return int(a) - int(b); }
}  // namespace sq

using sq::Square88;
constexpr Square88 NoSquare = Square88(255);

// The same square as the square sets and the 64-entry tables number it, rank * 8 + file; a
// type of its own, so that one numbering can't be passed for the other.
enum Square64 : std::uint8_t {};

constexpr bool onBoard(int square) { return (square & 0x88) == 0; }
constexpr int fileOf(Square88 s) { return s & 15; }
constexpr int rankOf(Square88 s) { return s >> 4; }
// The rank counted from the side of us: 0 is its home rank.
constexpr int relativeRank(Color us, Square88 s) { return us == White ? rankOf(s) : 7 - rankOf(s); }
constexpr Square88 makeSquare(int file, int rank) { return Square88(rank * 16 + file); }
// Both conversions run for every move made, keyed or encoded; a table read is one load where
// the bit arithmetic takes four operations. Every byte value has an entry, as the arithmetic had.
constexpr std::array<Square64, 256> makeSquare64Table() {
  std::array<Square64, 256> table{};
  for (int s = 0; s < 256; ++s) table[s] = Square64((s & 15) | ((s >> 1) & 0x78));
  return table;
}
constexpr std::array<Square88, 256> makeSquare88Table() {
  std::array<Square88, 256> table{};
  for (int s = 0; s < 256; ++s) table[s] = Square88((s & 7) | ((s & 0x38) << 1));
  return table;
}
inline constexpr std::array<Square64, 256> square64Table = makeSquare64Table();
inline constexpr std::array<Square88, 256> square88Table = makeSquare88Table();

constexpr Square64 toSquare64(Square88 s) { return square64Table[s]; }
constexpr Square88 toSquare88(Square64 s) { return square88Table[s]; }
constexpr int fileOf(Square64 s) { return s & 7; }
constexpr int rankOf(Square64 s) { return s >> 3; }

// One bit per right; a set of rights is a value of the same type, so a square or a number
// can't be passed for one.
enum CastlingRights : std::uint8_t {
  NoCastlingRights = 0,
  WhiteKingSide = 1,
  WhiteQueenSide = 2,
  BlackKingSide = 4,
  BlackQueenSide = 8,
  AllCastlingRights = 15,
};
// The rights one at a time, in the order their keys are drawn.
constexpr CastlingRights SingleCastlingRights[4] = {WhiteKingSide, WhiteQueenSide, BlackKingSide, BlackQueenSide};

constexpr CastlingRights operator|(CastlingRights a, CastlingRights b) { return CastlingRights(unsigned(a) | b); }
constexpr CastlingRights operator&(CastlingRights a, CastlingRights b) { return CastlingRights(unsigned(a) & b); }
constexpr CastlingRights operator^(CastlingRights a, CastlingRights b) { return CastlingRights(unsigned(a) ^ b); }
constexpr CastlingRights operator~(CastlingRights a) { return CastlingRights(~unsigned(a) & AllCastlingRights); }
constexpr CastlingRights& operator|=(CastlingRights& a, CastlingRights b) { return a = a | b; }
constexpr CastlingRights& operator&=(CastlingRights& a, CastlingRights b) { return a = a & b; }

// Move: from (6 bits), to (6 bits), kind (2 bits), detail (2 bits); 0 is no move.
using Move = std::uint16_t;
constexpr Move NoMove = 0;

enum MoveKind : std::uint8_t { NormalMove, PromotionMove, CastlingMove, EnPassantMove };

constexpr Move encodeMove(Square88 from, Square88 to, MoveKind kind, unsigned detail) {
  return Move(toSquare64(from) | (toSquare64(to) << 6) | (kind << 12) | (detail << 14));
}
constexpr Move makeNormalMove(Square88 from, Square88 to, bool doubleStep = false) {
  return encodeMove(from, to, NormalMove, doubleStep ? 1 : 0);
}
constexpr Move makePromotion(Square88 from, Square88 to, PieceType promoted) {
  return encodeMove(from, to, PromotionMove, promoted - 2u);
}
constexpr Move makeEnPassant(Square88 from, Square88 to) { return encodeMove(from, to, EnPassantMove, 0); }
constexpr Move makeCastling(Square88 from, Square88 to, unsigned code) {
  return encodeMove(from, to, CastlingMove, code);
}

constexpr Square88 fromSquare(Move m) { return square88Table[m & 63]; }
constexpr Square88 toSquare(Move m) { return square88Table[(m >> 6) & 63]; }
constexpr MoveKind moveKind(Move m) { return MoveKind((m >> 12) & 3); }
constexpr unsigned moveDetail(Move m) { return m >> 14; }
constexpr PieceType promotionPiece(Move m) { return PieceType(moveDetail(m) + 2); }
constexpr bool isNoMove(Move m) { return m == NoMove; }
constexpr void clearMove(Move& m) { m = NoMove; }

// Same squares, and the same promoted piece if either is a promotion.
constexpr bool sameMove(Move a, Move b) {
  if ((a & 0xFFF) != (b & 0xFFF)) return false;
  bool aPromotes = moveKind(a) == PromotionMove;
  bool bPromotes = moveKind(b) == PromotionMove;
  return aPromotes == bPromotes && (!aPromotes || moveDetail(a) == moveDetail(b));
}

// The four castling moves, written as the king's move, by castling code.
constexpr Move WhiteCastleKingSide = 0x2184;
constexpr Move WhiteCastleQueenSide = 0x6084;
constexpr Move BlackCastleKingSide = 0xAFBC;
constexpr Move BlackCastleQueenSide = 0xEEBC;

// A move in the low 16 bits and a signed order score in the high 16 bits.
// No initialiser: a list is built on the stack at every node, and only entries below its count
// are ever read, each written by addMove first.
struct MoveEntry {
  std::uint32_t word;

  constexpr Move move() const { return Move(word & 0xFFFF); }
  constexpr std::int16_t score() const { return std::int16_t(word >> 16); }
  constexpr void setScore(int score) { word = (word & 0xFFFF) | (std::uint32_t(std::uint16_t(score)) << 16); }
};

struct MoveList {
  static constexpr std::uint32_t Capacity = 255;

  MoveEntry entries[Capacity];
  std::uint32_t count = 0;

  // Entries past the count are never read, so clearing the count clears the list.
  void clear() { count = 0; }
  // A full list drops further moves: no reachable position comes near 255.
  void addMove(Move m) {
    if (count < Capacity) entries[count++].word = m;
  }
  Move operator[](std::uint32_t i) const { return entries[i].move(); }
};

// Middle game and end game halves, added half by half with 16-bit wrap-around.
struct ScorePair {
  std::int16_t mg = 0;
  std::int16_t eg = 0;

  constexpr ScorePair& operator+=(ScorePair o) {
    mg = std::int16_t(mg + o.mg);
    eg = std::int16_t(eg + o.eg);
    return *this;
  }
  constexpr ScorePair& operator-=(ScorePair o) {
    mg = std::int16_t(mg - o.mg);
    eg = std::int16_t(eg - o.eg);
    return *this;
  }
  friend constexpr bool operator==(ScorePair, ScorePair) = default;
};

}  // namespace torvy
