// Cost of the tablebase read path on the installed 3-man tables: decoding one block in each
// scheme, and one distance-to-mate probe when its block is cached and when every probe must
// read and decode (a cache of one block, visited in an order that always misses).
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tablebase/gaviota_tables.h"

using namespace torvy;

namespace {

const std::string InstalledTables = "/usr/share/gaviotatb";
constexpr const char* Names[] = {"kqk", "krk", "kbk", "knk", "kpk"};

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void benchDecoding() {
  std::array<std::uint8_t, BlockBufferSize> compressed, decoded;
  for (int scheme = 1; scheme <= 4; ++scheme) {
    TablebaseFiles files;
    files.open({InstalledTables + "/gtb" + std::to_string(scheme)}, CompressionScheme(scheme), 8, false);
    int blocks = 0;
    std::uint64_t bytes = 0;
    double seconds = 0;
    for (int round = 0; round < 20; ++round)
      for (const char* name : Names) {
        const int id = findEndgame(name);
        const std::uint32_t maxIndex = Endgames[id].maxIndex;
        for (std::uint32_t b = 0; b < 2 * blocksPerSide(maxIndex); ++b) {
          std::size_t size = 0;
          if (!files.readBlock(id, b, compressed, size)) continue;
          const auto start = std::chrono::steady_clock::now();
          const std::uint32_t count = valuesInBlock(b % blocksPerSide(maxIndex) * ValuesPerBlock, maxIndex);
          decodeBlock(CompressionScheme(scheme), BlockInput(compressed.data() + 1, size - 1), count, decoded);
          seconds += secondsSince(start);
          ++blocks;
          bytes += size;
        }
      }
    std::printf("scheme %d: %6.1f us per block, %5.0f compressed bytes per block (%d blocks)\n", scheme,
                seconds * 1e6 / blocks, double(bytes) / blocks, blocks);
  }
}

// Random positions of kings and one man, with White to move.
std::vector<TablebaseProbe> randomProbes(int count) {
  std::mt19937 random(1);
  std::vector<TablebaseProbe> probes;
  while (int(probes.size()) < count) {
    TablebaseProbe probe;
    const std::uint8_t piece = std::uint8_t(1 + random() % 5);
    probe.whiteSquares = {std::uint32_t(random() % 64), std::uint32_t(8 + random() % 48), NoTableSquare};
    probe.blackSquares = {std::uint32_t(random() % 64), NoTableSquare};
    probe.whitePieces = {6, piece, 0};
    probe.blackPieces = {6, 0};
    if (probe.whiteSquares[0] == probe.blackSquares[0] || probe.whiteSquares[1] == probe.whiteSquares[0] ||
        probe.whiteSquares[1] == probe.blackSquares[0])
      continue;
    probes.push_back(probe);
  }
  return probes;
}

void benchProbes(GaviotaTables& tables, const std::vector<TablebaseProbe>& probes, const char* label) {
  unsigned code = 0, plies = 0;
  int answered = 0;
  const auto start = std::chrono::steady_clock::now();
  for (const TablebaseProbe& probe : probes) answered += tables.probeDtm(probe, true, code, plies);
  const double seconds = secondsSince(start);
  const DiskStatistics& disk = tables.cache().diskStatistics();
  std::printf("%s: %7.3f us per probe, %d of %zu answered, %llu blocks read\n", label, seconds * 1e6 / probes.size(),
              answered, probes.size(), static_cast<unsigned long long>(disk.blocksRead));
}

}  // namespace

int main() {
  if (!std::filesystem::exists(InstalledTables + "/gtb4/kqk.gtb.cp4")) {
    std::printf("no tables under %s (Debian package gaviotatb): nothing to measure\n", InstalledTables.c_str());
    return 0;
  }
  benchDecoding();

  GaviotaTables tables;
  tables.initGaviota(false, CompressionScheme::Lzma, {InstalledTables + "/gtb4"});
  const std::vector<TablebaseProbe> probes = randomProbes(200000);
  tables.cache().initCache(16 << 20, 0);
  benchProbes(tables, probes, "cold, 16 MB cache");
  tables.cache().resetCacheStatistics();
  benchProbes(tables, probes, "warm, 16 MB cache");

  // Alternating between two endgames with a single slot makes every probe of a position that
  // exists a disk read.
  std::vector<TablebaseProbe> alternating(probes.begin(), probes.begin() + 2000);
  for (std::size_t i = 0; i < alternating.size(); ++i) alternating[i].whitePieces[1] = std::uint8_t(i % 2 ? 5 : 4);
  tables.cache().initCache(0, 0);
  benchProbes(tables, alternating, "alternating endgames, 1 block");
  return 0;
}
