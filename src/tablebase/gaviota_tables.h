// The Gaviota tables as a whole: start-up and shut-down, and the probes that turn a list of men
// into a stored result. It works on the tables' own terms and knows nothing of the board.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

#include "tablebase/dtm_value.h"
#include "tablebase/path_list.h"
#include "tablebase/tablebase_cache.h"
#include "tablebase/tablebase_files.h"

namespace torvy {

constexpr std::uint32_t NoTableSquare = 64;
constexpr int ProbeListSize = 17;

// Castling bits of a probe: they run the other way from the board's rights.
constexpr std::uint32_t ProbeWhiteKingSide = 8;
constexpr std::uint32_t ProbeWhiteQueenSide = 4;
constexpr std::uint32_t ProbeBlackKingSide = 2;
constexpr std::uint32_t ProbeBlackQueenSide = 1;

// A position as a probe takes it: squares a1 = 0 ... h8 = 63, each list closed by square 64 and
// piece 0; piece codes 1 pawn ... 6 king.
struct TablebaseProbe {
  std::uint32_t sideToMove = 0;
  std::uint32_t epSquare = NoTableSquare;
  std::uint32_t castling = 0;
  std::array<std::uint32_t, ProbeListSize> whiteSquares{};
  std::array<std::uint32_t, ProbeListSize> blackSquares{};
  std::array<std::uint8_t, ProbeListSize> whitePieces{};
  std::array<std::uint8_t, ProbeListSize> blackPieces{};
};

class GaviotaTables {
 public:
  // Opens what can be found of the tables in the folders; with verbose, returns the report.
  std::string initGaviota(bool verbose, CompressionScheme scheme, const PathList& paths);
  // Closes all files and frees all block indexes; every endgame becomes available again.
  void closeGaviota();

  // False, with code 3 and plies 0, when no value can be had: castling rights, no table, a block
  // that can't be read (which, when hard, gives the endgame up), or a soft probe of an uncached
  // block. On success code is 0 draw, 1 White mates, 2 Black mates or 3 forbidden.
  bool probeDtm(const TablebaseProbe& probe, bool hard, unsigned& code, unsigned& plies);
  bool probeWdl(const TablebaseProbe& probe, bool hard, unsigned& code);

  TablebaseFiles& files() { return files_; }
  TablebaseCache& cache() { return cache_; }

 private:
  struct Men {
    std::array<std::uint32_t, ProbeListSize> squares{};
    std::array<std::uint8_t, ProbeListSize> pieces{};
    int count = 0;

    void add(std::uint32_t square, std::uint8_t piece);
    void remove(int slot);
  };
  struct Position {
    std::uint32_t sideToMove = 0;
    std::uint32_t epSquare = NoTableSquare;
    Men white;
    Men black;
  };
  // What steps common to both probes found: the table, the index, whether colours were swapped.
  struct Located {
    int endgame = -1;
    bool mirrored = false;
    bool exists = false;  // false: the index function knows no such position
    std::uint32_t index = 0;
  };
  enum class Outcome { Value, BareKings, NoTable };

  static Position positionOf(const TablebaseProbe& probe);
  Outcome locate(Position& position, Located& located, DtmValue& bareKings);
  int findByName(const Men& first, const Men& second);
  bool probeDtmPosition(Position position, bool hard, DtmValue& value);
  bool resolveEnPassant(const Position& position, bool hard, DtmValue& value);

  TablebaseFiles files_;
  TablebaseCache cache_{files_};
  // One lock for the caches, the open files and the shared decoding buffers.
  std::mutex mutex_;
  std::atomic<int> lastFound_ = 0;  // a hint, always compared before it is used
};

// The one set of tables of the process.
GaviotaTables& gaviotaTables();

}  // namespace torvy
