#include "tablebase/gaviota_tables.h"

#include <utility>

#include "tablebase/position_index.h"

namespace torvy {
namespace {

constexpr std::uint8_t PawnCode = 1;
constexpr std::uint8_t KingCode = 6;
constexpr const char* PieceCodeLetters = "-pnbrqk";

constexpr unsigned otherSideCode(unsigned code) {
  return code == ResultWhiteMates ? ResultBlackMates : ResultWhiteMates;
}

// The better of two values for the side to move: a win beats a draw, a draw beats a loss, the
// quicker win and the slower loss are better. A forbidden value never wins.
DtmValue betterFor(std::uint32_t sideToMove, DtmValue current, DtmValue candidate) {
  if (dtmCode(candidate) == ResultForbidden) return current;
  if (dtmCode(current) == ResultForbidden) return candidate;
  const unsigned winCode = sideToMove == 0 ? ResultWhiteMates : ResultBlackMates;
  const auto rank = [winCode](DtmValue value) {
    if (dtmCode(value) == ResultDraw) return 1;
    return dtmCode(value) == winCode ? 2 : 0;
  };
  if (rank(current) != rank(candidate)) return rank(candidate) > rank(current) ? candidate : current;
  if (rank(current) == 2) return std::min(current, candidate);
  if (rank(current) == 0) return std::max(current, candidate);
  return current;
}

DtmValue withColoursSwapped(DtmValue value) {
  const unsigned code = dtmCode(value);
  if (code != ResultWhiteMates && code != ResultBlackMates) return value;
  return dtmValue(dtmPlies(value), otherSideCode(code));
}

}  // namespace

void GaviotaTables::Men::add(std::uint32_t square, std::uint8_t piece) {
  squares[count] = square;
  pieces[count] = piece;
  ++count;
}

void GaviotaTables::Men::remove(int slot) {
  for (int i = slot; i + 1 < count; ++i) {
    squares[i] = squares[i + 1];
    pieces[i] = pieces[i + 1];
  }
  --count;
}

std::string GaviotaTables::initGaviota(bool verbose, CompressionScheme scheme, const PathList& paths) {
  std::string report = files_.open(paths, scheme, processOpenFileLimit(), verbose);
  cache_.resetCacheStatistics();
  lastFound_ = 0;
  return report;
}

void GaviotaTables::closeGaviota() { files_.close(); }

GaviotaTables::Position GaviotaTables::positionOf(const TablebaseProbe& probe) {
  Position position;
  position.sideToMove = probe.sideToMove;
  position.epSquare = probe.epSquare;
  const auto fill = [](Men& men, const auto& squares, const auto& pieces) {
    // Anything off the board ends a list, so that no square can index past the tables.
    for (int i = 0; i + 1 < ProbeListSize && squares[i] < NoTableSquare && pieces[i] != 0; ++i)
      men.add(squares[i], pieces[i]);
  };
  fill(position.white, probe.whiteSquares, probe.whitePieces);
  fill(position.black, probe.blackSquares, probe.blackPieces);
  return position;
}

int GaviotaTables::findByName(const Men& first, const Men& second) {
  std::array<char, MostTablebaseMen> letters{};
  int length = 0;
  for (const Men* men : {&first, &second})
    for (int i = 0; i < men->count; ++i) letters[length++] = PieceCodeLetters[men->pieces[i] % 7];
  const std::string_view name(letters.data(), std::size_t(length));
  const int hint = lastFound_.load(std::memory_order_relaxed);
  if (Endgames[hint].name == name) return hint;
  const int id = findEndgame(name);
  if (id >= 0) lastFound_.store(id, std::memory_order_relaxed);
  return id;
}

GaviotaTables::Outcome GaviotaTables::locate(Position& position, Located& located, DtmValue& bareKings) {
  Men& white = position.white;
  Men& black = position.black;
  if (white.count == 1 && black.count == 1 && white.pieces[0] == KingCode && black.pieces[0] == KingCode) {
    const IndexTables& tables = indexTables();
    const int flips = tables.flipTable[black.squares[0]][white.squares[0]];
    const TableSquare blackKing = flipSquare(black.squares[0], flips);
    const bool legal = tables.kingPairIndex[blackKing][flipSquare(white.squares[0], flips)] != Unset;
    bareKings = dtmValue(0, legal ? ResultDraw : ResultForbidden);
    return Outcome::BareKings;
  }
  if (white.count + black.count > MostTablebaseMen) return Outcome::NoTable;

  // Strongest first, so that the men stand in the order of the table names.
  for (Men* men : {&white, &black})
    for (int i = 1; i < men->count; ++i)
      for (int j = i; j > 0 && men->pieces[j] > men->pieces[j - 1]; --j) {
        std::swap(men->pieces[j], men->pieces[j - 1]);
        std::swap(men->squares[j], men->squares[j - 1]);
      }

  located.endgame = findByName(white, black);
  if (located.endgame < 0) {
    located.endgame = findByName(black, white);
    if (located.endgame < 0) return Outcome::NoTable;
    // Only the other colour arrangement has a table: turn the board round.
    std::swap(white, black);
    for (Men* men : {&white, &black})
      for (int i = 0; i < men->count; ++i) men->squares[i] ^= 56;
    position.sideToMove ^= 1;
    if (position.epSquare != NoTableSquare) position.epSquare ^= 56;
    located.mirrored = true;
  }
  if (files_.record(located.endgame).status.load(std::memory_order_relaxed) != EndgameAvailable)
    return Outcome::NoTable;
  located.exists =
      positionToIndex(Endgames[located.endgame].shape, white.squares.data(), black.squares.data(), located.index);
  return Outcome::Value;
}

bool GaviotaTables::probeDtm(const TablebaseProbe& probe, bool hard, unsigned& code, unsigned& plies) {
  code = ResultForbidden;
  plies = 0;
  if (probe.castling != 0) return false;
  DtmValue value = 0;
  if (!probeDtmPosition(positionOf(probe), hard, value)) return false;
  code = dtmCode(value);
  plies = dtmPlies(value);
  return true;
}

bool GaviotaTables::probeDtmPosition(Position position, bool hard, DtmValue& value) {
  Located located;
  switch (locate(position, located, value)) {
    case Outcome::BareKings: return true;
    case Outcome::NoTable: return false;
    case Outcome::Value: break;
  }
  if (!located.exists) {
    value = dtmValue(0, ResultForbidden);
  } else {
    bool found;
    {
      std::lock_guard lock(mutex_);
      found = cache_.getDtm(located.endgame, int(position.sideToMove), located.index, hard, value);
    }
    if (!found) {
      if (hard) files_.record(located.endgame).status.store(EndgameGivenUp, std::memory_order_relaxed);
      return false;
    }
  }
  if (position.epSquare != NoTableSquare && !resolveEnPassant(position, hard, value)) return false;
  if (located.mirrored) value = withColoursSwapped(value);
  return true;
}

// No table knows about en passant: each capture is probed as the position after it, and the
// side to move takes it where it does better than the table's value.
bool GaviotaTables::resolveEnPassant(const Position& position, bool hard, DtmValue& value) {
  const bool whiteToMove = position.sideToMove == 0;
  const Men& us = whiteToMove ? position.white : position.black;
  const Men& them = whiteToMove ? position.black : position.white;
  const std::uint32_t victimSquare = position.epSquare ^ 8;
  int victim = -1;
  for (int i = 0; i < them.count; ++i)
    if (them.squares[i] == victimSquare && them.pieces[i] == PawnCode) victim = i;
  if (victim < 0) return true;

  for (int i = 0; i < us.count; ++i) {
    if (us.pieces[i] != PawnCode || us.squares[i] / 8 != victimSquare / 8) continue;
    const int fileDistance = int(us.squares[i] % 8) - int(victimSquare % 8);
    if (fileDistance != 1 && fileDistance != -1) continue;

    Position after = position;
    after.sideToMove ^= 1;
    after.epSquare = NoTableSquare;
    Men& capturer = whiteToMove ? after.white : after.black;
    Men& captured = whiteToMove ? after.black : after.white;
    capturer.squares[i] = position.epSquare;
    captured.remove(victim);
    DtmValue result = 0;
    if (!probeDtmPosition(after, hard, result)) return false;
    if (dtmCode(result) == ResultWhiteMates || dtmCode(result) == ResultBlackMates) result = DtmValue(result + 8);
    value = betterFor(position.sideToMove, value, result);
  }
  return true;
}

bool GaviotaTables::probeWdl(const TablebaseProbe& probe, bool hard, unsigned& code) {
  code = ResultForbidden;
  if (probe.castling != 0) return false;
  if (probe.epSquare != NoTableSquare) {
    unsigned plies = 0;
    return probeDtm(probe, hard, code, plies);
  }
  Position position = positionOf(probe);
  Located located;
  DtmValue bareKings = 0;
  switch (locate(position, located, bareKings)) {
    case Outcome::BareKings: code = dtmCode(bareKings); return true;
    case Outcome::NoTable: return false;
    case Outcome::Value: break;
  }
  if (!located.exists) return true;
  bool found;
  {
    std::lock_guard lock(mutex_);
    found = cache_.getWdl(located.endgame, int(position.sideToMove), located.index, hard, code);
  }
  if (!found) {
    code = ResultForbidden;
    if (hard) files_.record(located.endgame).status.store(EndgameGivenUp, std::memory_order_relaxed);
    return false;
  }
  if (located.mirrored) code = dtmCode(withColoursSwapped(dtmValue(0, code)));
  return true;
}

GaviotaTables& gaviotaTables() {
  static GaviotaTables tables;
  return tables;
}

}  // namespace torvy
