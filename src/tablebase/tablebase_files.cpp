#include "tablebase/tablebase_files.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdarg>
#include <new>

namespace torvy {
namespace {

constexpr std::size_t ReportCapacity = 4096;

std::uint32_t littleEndian32(const std::uint8_t* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | std::uint32_t(bytes[3]) << 24;
}

// Appends printf-style text to the report, which never grows past its fixed capacity.
[[gnu::format(printf, 2, 3)]] void appendReport(std::string& report, const char* format, ...) {
  char line[512];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  report.append(line, 0, ReportCapacity - 1 - std::min(report.size(), ReportCapacity - 1));
}

}  // namespace

int openFileLimitFor(long processLimit) {
  const long limit = processLimit - 5;
  if (limit <= 3) return TablebaseFiles::MinOpenFiles;
  if (limit > TablebaseFiles::MaxOpenFiles) return TablebaseFiles::MaxOpenFiles;
  return int(limit);
}

int processOpenFileLimit() {
  constexpr long UnknownLimit = 20;
  rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return openFileLimitFor(UnknownLimit);
  // Anything far above the cap counts the same; the bound keeps RLIM_INFINITY out of a long.
  return openFileLimitFor(long(std::min<rlim_t>(limit.rlim_cur, 1024)));
}

TablebaseFiles::TablebaseFiles() {
  for (int id = 0; id < EndgameCount; ++id) records_[id].id = id;
}

TablebaseFiles::~TablebaseFiles() { close(); }

std::string TablebaseFiles::open(const PathList& paths, CompressionScheme scheme, int openFileLimit, bool verbose) {
  close();
  paths_ = paths;
  scheme_ = scheme;
  openFileLimit_ = std::clamp(openFileLimit, int(MinOpenFiles), int(MaxOpenFiles));

  std::string report;
  if (paths_.empty()) {
    appendReport(report, "\nGTB PATHS not initialized\n");
  } else {
    appendReport(report, "\nGTB PATHS\n");
    for (std::size_t i = 0; i < paths_.size(); ++i) {
      if (i == 0)
        appendReport(report, "  main: %s\n", paths_[i].c_str());
      else
        appendReport(report, "    #%d: %s\n", int(i), paths_[i].c_str());
    }
  }
  appendReport(report, "\nGTB initialization\n");
  appendReport(report, "  Compression  Scheme = %d\n", int(scheme_));

  // Per number of men: how many tables were found, and whether each of them had a readable index.
  std::array<int, MostTablebaseMen + 1> found{};
  std::array<bool, MostTablebaseMen + 1> indexFailed{};
  for (int id = 0; id < EndgameCount; ++id) {
    if (openEndgameFile(id) == nullptr) continue;
    const std::size_t men = Endgames[id].name.size();
    ++found[men];
    if (!loadBlockIndex(id)) indexFailed[men] = true;
  }
  for (int men = 3; men <= MostTablebaseMen; ++men) {
    const bool passed = found[men] > 0 && !indexFailed[men];
    appendReport(report, "  Compression Indexes (%d-pc) = %s\n", men, passed ? "PASSED" : "**FAILED**");
  }
  if (found[3] + found[4] + found[5] == 0) appendReport(report, "  Compression Indexes = **FAILED**\n");
  return verbose ? report : std::string();
}

void TablebaseFiles::close() {
  for (EndgameRecord& record : records_) {
    if (record.file != nullptr) std::fclose(record.file);
    record.file = nullptr;
    record.status = EndgameAvailable;
    record.pathIndex = 0;
    record.blockIndex = BlockIndex{};
  }
  openHead_ = 0;
  openCount_ = 0;
  paths_.clear();
}

std::FILE* TablebaseFiles::openEndgameFile(int id) {
  EndgameRecord& record = records_[id];
  if (record.file != nullptr) return record.file;
  if (openCount_ >= openFileLimit_) closeOldestFile();
  std::FILE* file = findFile(record);
  if (file == nullptr) return nullptr;
  record.file = file;
  openQueue_[(openHead_ + openCount_) % MaxOpenFiles] = id;
  ++openCount_;
  ++filesOpened_;
  return file;
}

// Goes round the folders from where the last search of this endgame left off, so that a file that
// was found once is looked for first in the folder after it.
std::FILE* TablebaseFiles::findFile(EndgameRecord& record) {
  const int folderCount = int(paths_.size());
  const int start = std::min(record.pathIndex, folderCount);
  for (int step = 0; step < folderCount; ++step) {
    const int folder = (start + step) % folderCount;
    const TablebaseFileName name = tablebaseFileName(paths_[folder], Endgames[record.id].name, scheme_);
    if (std::FILE* file = std::fopen(name.data(), "rb")) {
      record.pathIndex = folder + 1;
      return file;
    }
  }
  return nullptr;
}

void TablebaseFiles::closeOldestFile() {
  EndgameRecord& oldest = records_[openQueue_[openHead_]];
  std::fclose(oldest.file);
  oldest.file = nullptr;
  openHead_ = (openHead_ + 1) % MaxOpenFiles;
  --openCount_;
}

bool TablebaseFiles::loadBlockIndex(int id) {
  EndgameRecord& record = records_[id];
  if (record.blockIndex.loaded() || !isCompressed(scheme_)) return true;
  if (record.file == nullptr) return false;

  std::uint8_t head[HeadSize];
  if (!seekAndRead(record.file, 0, HeadSize, head)) return false;
  const std::uint32_t tableEnd = littleEndian32(head + OffsetTableEndWord * 4);
  if (tableEnd < HeadSize) return false;
  const std::uint32_t count = (tableEnd - std::uint32_t(HeadSize)) / 4;

  std::unique_ptr<std::uint8_t[]> bytes(new (std::nothrow) std::uint8_t[std::size_t(count) * 4]);
  std::unique_ptr<std::uint32_t[]> offsets(new (std::nothrow) std::uint32_t[count]);
  if (bytes == nullptr || offsets == nullptr) return false;
  if (std::fread(bytes.get(), 4, count, record.file) != count) return false;
  for (std::uint32_t i = 0; i < count; ++i) offsets[i] = littleEndian32(bytes.get() + 4 * i);
  record.blockIndex.offsets = std::move(offsets);
  record.blockIndex.count = count;
  return true;
}

bool TablebaseFiles::prepare(int id) {
  if (records_[id].file == nullptr && openEndgameFile(id) == nullptr) return false;
  return loadBlockIndex(id);
}

bool TablebaseFiles::readBlock(int id, std::uint32_t b, BlockOutput buffer, std::size_t& size) {
  const EndgameRecord& record = records_[id];
  const BlockIndex& index = record.blockIndex;
  if (record.file == nullptr || !index.loaded() || std::uint64_t(b) + 1 >= index.count) return false;
  const std::uint32_t begin = index.offsets[b];
  const std::uint32_t end = index.offsets[b + 1];
  if (end <= begin || end - begin > buffer.size()) return false;
  size = end - begin;
  return seekAndRead(record.file, begin, size, buffer.data());
}

bool TablebaseFiles::readRaw(int id, std::uint64_t offset, std::size_t count, BlockOutput buffer) {
  const EndgameRecord& record = records_[id];
  if (record.file == nullptr || count > buffer.size()) return false;
  return seekAndRead(record.file, offset, count, buffer.data());
}

bool TablebaseFiles::seekAndRead(std::FILE* file, std::uint64_t offset, std::size_t size, std::uint8_t* buffer) {
  if (std::fseek(file, long(offset), SEEK_SET) != 0) return false;
  return std::fread(buffer, 1, size, file) == size;
}

}  // namespace torvy
