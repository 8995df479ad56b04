#include "tablebase/tablebase_state.h"

#include "search/search_types.h"

namespace torvy {
namespace {

// The board's rights are 1 K, 2 Q, 4 k, 8 q; a probe wants them the other way round.
constexpr std::uint32_t probeCastling(CastlingRights rights) {
  return (rights & WhiteKingSide ? ProbeWhiteKingSide : 0) | (rights & WhiteQueenSide ? ProbeWhiteQueenSide : 0) |
         (rights & BlackKingSide ? ProbeBlackKingSide : 0) | (rights & BlackQueenSide ? ProbeBlackQueenSide : 0);
}

template <Color Us>
bool probeBoard(const TablebaseState& state, const Board_0x88& board, bool hard, int& value) {
  const TablebaseProbe probe = probeRecordOf(board, Us);
  if (!state.initialised) return false;
  unsigned code = 0;
  unsigned plies = 0;
  if (!gaviotaTables().probeDtm(probe, hard, code, plies)) return false;
  return tablebaseScore(Us, code, plies, value);
}

}  // namespace

void TablebaseState::setup(std::string_view type, std::string_view gtbPath, std::uint32_t cacheSizeMB) {
  GaviotaTables& tables = gaviotaTables();
  if (initialised) {
    initialised = false;
    tables.cache().closeCache();
    tables.closeGaviota();
  }
  paths.clear();
  if (type != "gaviota") return;

  addTablebasePaths(paths, gtbPath);
  tables.initGaviota(false, CompressionScheme::Lzma, paths);
  tables.cache().initCache(std::uint64_t(cacheSizeMB) << 20, WdlCacheFraction);
  tables.cache().resetCacheStatistics();
  initialised = true;
}

template <Color Us>
bool TablebaseState::probeHard(const Board_0x88& board, int& value) const {
  return probeBoard<Us>(*this, board, true, value);
}

template <Color Us>
bool TablebaseState::probeSoft(const Board_0x88& board, int& value) const {
  return probeBoard<Us>(*this, board, false, value);
}

template bool TablebaseState::probeHard<White>(const Board_0x88&, int&) const;
template bool TablebaseState::probeHard<Black>(const Board_0x88&, int&) const;
template bool TablebaseState::probeSoft<White>(const Board_0x88&, int&) const;
template bool TablebaseState::probeSoft<Black>(const Board_0x88&, int&) const;

TablebaseProbe probeRecordOf(const Board_0x88& board, Color sideToMove) {
  TablebaseProbe probe;
  probe.sideToMove = sideToMove;
  probe.epSquare = board.epSquare == NoSquare ? NoTableSquare : std::uint32_t(toSquare64(board.epSquare));
  probe.castling = probeCastling(board.castlingRights);
  for (Color c : {White, Black}) {
    auto& squares = c == White ? probe.whiteSquares : probe.blackSquares;
    auto& pieces = c == White ? probe.whitePieces : probe.blackPieces;
    int count = 0;
    for (Square88 s : board.pieceList[c]) {
      if (s == NoSquare) continue;
      squares[count] = toSquare64(s);
      pieces[count] = board.pieceOn[s];
      ++count;
    }
    squares[count] = NoTableSquare;
    pieces[count] = 0;
  }
  return probe;
}

bool tablebaseScore(Color us, unsigned code, unsigned plies, int& value) {
  if (code == ResultDraw) {
    value = DrawScore;
    return true;
  }
  if (code != ResultWhiteMates && code != ResultBlackMates) return false;
  const bool weMate = (code == ResultWhiteMates) == (us == White);
  value = weMate ? MateScore - int(plies) : int(plies) - MateScore;
  return true;
}

}  // namespace torvy
