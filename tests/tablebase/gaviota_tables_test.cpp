#include "tablebase/gaviota_tables.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "data_table.h"
#include "tablebase/table_fixtures.h"

namespace torvy {
namespace {

using testing::Bytes;

constexpr std::uint64_t MB = 1 << 20;
constexpr std::uint32_t WhiteToMove = 0;
constexpr std::uint32_t BlackToMove = 1;

constexpr std::uint32_t square(const char* name) { return std::uint32_t((name[1] - '1') * 8 + (name[0] - 'a')); }

// Men as letters and squares, "Kb6 Qg1 ka8", White's in upper case; "-" for no en passant square.
TablebaseProbe probeOf(std::uint32_t sideToMove, const std::string& men, const std::string& epSquare = "-") {
  TablebaseProbe probe;
  probe.sideToMove = sideToMove;
  probe.epSquare = epSquare == "-" ? NoTableSquare : square(epSquare.c_str());
  int whiteCount = 0, blackCount = 0;
  for (const std::string& man : split(men, ' ')) {
    const bool white = std::isupper(man[0]);
    const std::uint8_t piece = std::uint8_t(std::string(".pnbrqk").find(char(std::tolower(man[0]))));
    int& count = white ? whiteCount : blackCount;
    (white ? probe.whiteSquares : probe.blackSquares)[count] = square(man.c_str() + 1);
    (white ? probe.whitePieces : probe.blackPieces)[count] = piece;
    ++count;
  }
  probe.whiteSquares[whiteCount] = probe.blackSquares[blackCount] = NoTableSquare;
  return probe;
}

struct Answer {
  bool found;
  unsigned code;
  unsigned plies;
  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& a) {
  return out << (a.found ? "found" : "failed") << " code " << a.code << " plies " << a.plies;
}

// The distance probe's answer; the win/draw/loss probe must agree with its result.
Answer probeDtm(GaviotaTables& tables, const TablebaseProbe& probe, bool hard = true) {
  Answer answer{};
  answer.found = tables.probeDtm(probe, hard, answer.code, answer.plies);
  unsigned code = 7;
  EXPECT_EQ(tables.probeWdl(probe, hard, code), answer.found);
  EXPECT_EQ(code, answer.code);
  return answer;
}

// The rows of data/tablebase_probes.txt for the tables named in their first field.
void expectProbeRows(GaviotaTables& tables, const std::string& set) {
  const std::map<std::string, unsigned> codes = {{"draw", ResultDraw},
                                                 {"white mates", ResultWhiteMates},
                                                 {"black mates", ResultBlackMates},
                                                 {"forbidden", ResultForbidden}};
  for (const testing::DataRow& row : testing::dataTable("tablebase_probes.txt")) {
    if (row[0] != set) continue;
    const Answer expected{row[4] == "found", codes.at(row[5]), unsigned(std::stoi(row[6]))};
    EXPECT_EQ(probeDtm(tables, probeOf(row[1] == "white" ? WhiteToMove : BlackToMove, row[2], row[3])), expected)
        << row[1] << " to move, " << row[2] << ", en passant " << row[3];
  }
}

class InstalledTableProbeTest : public testing::InstalledTablesTest {
 protected:
  void SetUp() override {
    testing::InstalledTablesTest::SetUp();
    if (IsSkipped()) return;
    tables.initGaviota(false, CompressionScheme::Lzma, {testing::installedTableFolder(4).string()});
    tables.cache().initCache(MB, 96);
  }

  GaviotaTables tables;
};

TEST_F(InstalledTableProbeTest, AnswersForEitherColourArrangementAndBareKings) {
  expectProbeRows(tables, "installed");
  TablebaseProbe castling = probeOf(WhiteToMove, "Kb6 Qg1 ka8");
  castling.castling = ProbeBlackKingSide;
  EXPECT_EQ(probeDtm(tables, castling), (Answer{false, ResultForbidden, 0}));
}

// Threads that probe at once, through a cache too small for the endgames they visit, must get
// what one thread alone gets. The win/draw/loss cache, filled from each distance block read,
// answers many of the probes and must agree with the distances.
TEST_F(InstalledTableProbeTest, ConcurrentProbesAgreeWithSerialOnes) {
  tables.cache().initCache(2 * TablebaseCache::DtmBlockBytes, 64);
  std::vector<TablebaseProbe> probes;
  for (std::uint32_t i = 0; i < 1000; ++i) {
    TablebaseProbe probe = probeOf(i % 2, "Ka1 Qh1 kh8");
    probe.whiteSquares = {i * 7 % 64, 8 + i * 13 % 48, NoTableSquare};
    probe.blackSquares = {i * 29 % 64, NoTableSquare};
    probe.whitePieces[1] = std::uint8_t(1 + i % 5);
    probes.push_back(probe);
  }
  std::vector<Answer> serial;
  for (const TablebaseProbe& probe : probes) serial.push_back(probeDtm(tables, probe));
  EXPECT_GT(tables.cache().wdlCache().statistics.hits, 0u);

  std::vector<std::vector<Answer>> parallel(4);
  std::vector<std::thread> threads;
  for (auto& answers : parallel)
    threads.emplace_back([&] {
      for (const TablebaseProbe& probe : probes) answers.push_back(probeDtm(tables, probe));
    });
  for (std::thread& thread : threads) thread.join();
  for (const auto& answers : parallel) EXPECT_EQ(answers, serial);
}

// Hand-made tables of one value for each side to move, in the run-length scheme, for what the
// real ones can't show.
class HandMadeTableProbeTest : public ::testing::Test {
 protected:
  static constexpr CompressionScheme Scheme = CompressionScheme::RunLength;

  // The stored byte of every position with White to move, and with Black to move.
  static std::vector<Bytes> blocks(std::string_view name, std::pair<std::uint8_t, std::uint8_t> bytes) {
    return testing::tableBlocks(name, Scheme,
                                [&](int side, std::uint32_t) { return side == 0 ? bytes.first : bytes.second; });
  }
  void writeTable(std::string_view name, std::pair<std::uint8_t, std::uint8_t> bytes) {
    testing::writeTable(scratch.path(), name, Scheme, blocks(name, bytes));
  }

  void open() {
    tables.initGaviota(false, Scheme, {scratch.path()});
    tables.cache().initCache(MB, 0);
  }

  testing::ScratchFolder scratch;
  GaviotaTables tables;
};

constexpr std::uint8_t Draw = 0;
constexpr std::uint8_t WhiteMatesIn5Or4 = 2 * 4 + 1;  // 5 plies with White to move, 4 with Black
constexpr std::uint8_t BlackMatesIn6Or7 = 3 * 4 + 2;

// Black has just played d7-d5 beside the pawn on e5, or White e2-e4 beside the pawn on d4; the
// capture leaves kpk, or its colours swapped.
TEST_F(HandMadeTableProbeTest, EnPassantCaptureThatMatesAddsOnePly) {
  writeTable("kpkp", {Draw, Draw});
  writeTable("kpk", {WhiteMatesIn5Or4, WhiteMatesIn5Or4});
  open();
  expectProbeRows(tables, "kpk mates");
}

TEST_F(HandMadeTableProbeTest, EnPassantCaptureRescuesALostPosition) {
  writeTable("kpkp", {BlackMatesIn6Or7, BlackMatesIn6Or7});
  writeTable("kpk", {Draw, Draw});
  open();
  EXPECT_EQ(probeDtm(tables, probeOf(WhiteToMove, "Ke1 Pe5 ke8 pd5")), (Answer{true, ResultBlackMates, 6}));
  EXPECT_EQ(probeDtm(tables, probeOf(WhiteToMove, "Ke1 Pe5 ke8 pd5", "d6")), (Answer{true, ResultDraw, 0}));
}

TEST_F(HandMadeTableProbeTest, AnUnreadableBlockGivesTheEndgameUpUntilReopened) {
  std::vector<Bytes> table = blocks("kqk", {WhiteMatesIn5Or4, WhiteMatesIn5Or4});
  table[0] = table[1] = {};  // White's blocks are empty
  testing::writeTable(scratch.path(), "kqk", Scheme, table);
  open();
  const TablebaseProbe whiteToMove = probeOf(WhiteToMove, "Kb6 Qg1 kh8");
  const TablebaseProbe blackToMove = probeOf(BlackToMove, "Kb6 Qg1 kh8");
  const Answer readable{true, ResultWhiteMates, 4};

  EXPECT_FALSE(probeDtm(tables, whiteToMove, false).found);
  EXPECT_EQ(probeDtm(tables, blackToMove), readable) << "a soft failure gives nothing up";
  EXPECT_FALSE(probeDtm(tables, whiteToMove).found);
  EXPECT_FALSE(probeDtm(tables, blackToMove, false).found) << "given up as a whole, cached or not";
  tables.closeGaviota();
  open();
  EXPECT_EQ(probeDtm(tables, blackToMove), readable);
}

}  // namespace
}  // namespace torvy
