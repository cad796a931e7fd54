#include "record/working_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "platform/disk_space.h"
#include "record/level_fold.h"
#include "record/level_rows.h"
#include "record/row_writer.h"
#include "shell/rounding.h"

namespace recscope {

static_assert(std::endian::native == std::endian::little,
              "level files are written straight from memory as little-endian");

std::string WorkingFilePath(const std::string &programFolder, int slot, int level, bool sums) {
  std::string path = programFolder;
  if (path.empty() || path.back() != '/') path += '/';
  path +=
      "Operation_" + std::to_string(slot) + (sums ? "_COM_" : "_") + std::to_string(level) + ".OPL";
  return path;
}

void PlanLevels(RecordFileInfo &info, int levelBase, std::int32_t levelRowLimit) {
  const double count = info.RecordCount;
  const double base = levelBase;
  auto power = [base](int t) {
    double p = 1;
    for (int i = 0; i < t; ++i) p *= base;
    return p;
  };
  int top = 0;
  while (count / power(top) >= levelRowLimit) ++top;
  // Unlike the level count, this test rounds the quotient (a tie to even):
  // 5999 records go past a LevelStep of 10 and stay on one level.
  int step = 1;
  while (RoundHalfEven(count / (step * power(top))) >= 600) ++step;
  // The whole-file view takes LevelStep x 10^T records a row, as step 2 left them.
  const double overview = step * power(top);
  if (step == levelBase) {
    step = 1;
    ++top;
  }
  info.TopLevel = static_cast<std::int16_t>(top);
  info.LevelStep = static_cast<std::int16_t>(step);
  info.OverviewStep = static_cast<std::int32_t>(overview);
  info.Thinned = info.OverviewStep == 1 ? 0 : 1;
  if (info.OverviewStep == 1) {
    const std::int32_t c = info.RecordCount;
    info.CursorStep = (c >= 300 && c <= 600) ? 3 : (c >= 200 && c < 300) ? 2 : 1;
  } else {
    info.CursorStep = info.OverviewStep * 3;
  }
  info.LevelRows.assign(static_cast<size_t>(top) + 1, 0);
  std::int64_t rows = info.RecordCount;
  for (auto &levelRows : info.LevelRows) {
    levelRows = static_cast<std::int32_t>(rows);
    rows = (rows + levelBase - 1) / levelBase;
  }
}

namespace {

constexpr std::int64_t kFixedPoint = 10000;  // four decimals

// a / b to four decimals, a tie going to the even last digit.
std::int64_t DivideFixed(std::int64_t a, std::int64_t b) {
  std::int64_t q = a / b;
  std::int64_t r = a % b;
  if (2 * r > b || (2 * r == b && (q % 2) != 0)) ++q;
  return q;
}

}  // namespace

// The bytes the working files need, in ten-thousandths: a margin of a million
// bytes and, per level, the sums' share of the record count at that level.
static std::int64_t NeededBytesFixed(const RecordFileInfo &info) {
  std::int64_t needed = 1000000 * kFixedPoint;
  const std::int64_t full =
      static_cast<std::int64_t>(info.ChannelTotal) * 8 * info.RecordCount * kFixedPoint;
  std::int64_t divisor = 1;
  for (int i = 1; i <= info.TopLevel + 1; ++i) {
    needed += DivideFixed(full, divisor);
    divisor *= 10;
  }
  return needed;
}

namespace {

// A row of one level in the making, folded from the rows of the level below.
struct LevelAccumulator {
  std::vector<std::int16_t> values;  // min, max per channel
  std::vector<std::int32_t> sums;    // sum, count per channel
  int rows = 0;
};

struct WriteFailure {};

// The levels above level 1: each takes ten rows of the level below into one
// and writes it as soon as it is whole.
class PyramidBuilder {
 public:
  PyramidBuilder(int channelTotal, int levels, int levelBase, RowWriter &writer,
                 const std::vector<int> &valueFiles, const std::vector<int> &sumFiles)
      : columns_(2 * channelTotal),
        base_(levelBase),
        writer_(writer),
        valueFiles_(valueFiles),
        sumFiles_(sumFiles) {
    acc_.resize(static_cast<size_t>(levels));
    for (auto &a : acc_) {
      a.values.resize(static_cast<size_t>(columns_));
      a.sums.resize(static_cast<size_t>(columns_));
    }
  }

  // Level-1 rows already written: folded into level 2 and, from there, upward.
  void AddLevelOneRows(const std::int16_t *values, const std::int32_t *sums, std::int64_t rows) {
    if (acc_.size() < 2) return;
    const auto columns = static_cast<std::size_t>(columns_);
    for (std::int64_t r = 0; r < rows; ++r) Fold(1, values + r * columns, sums + r * columns);
  }

  // The short rows of the last chunk.
  void Finish() {
    for (size_t level = 1; level < acc_.size(); ++level) {
      if (acc_[level].rows > 0) Emit(level);
    }
  }

 private:
  void Fold(size_t level, const std::int16_t *values, const std::int32_t *sums) {
    LevelAccumulator &a = acc_[level];
    if (a.rows == 0) {
      std::memcpy(a.values.data(), values, sizeof(std::int16_t) * static_cast<size_t>(columns_));
      std::memcpy(a.sums.data(), sums, sizeof(std::int32_t) * static_cast<size_t>(columns_));
    } else {
      FoldLevelRow(columns_, a.values.data(), a.sums.data(), values, sums);
    }
    if (++a.rows == base_) Emit(level);
  }

  void Emit(size_t level) {
    LevelAccumulator &a = acc_[level];
    a.rows = 0;
    Put(valueFiles_[level], a.values.data(), sizeof(std::int16_t) * a.values.size());
    Put(sumFiles_[level], a.sums.data(), sizeof(std::int32_t) * a.sums.size());
    if (level + 1 < acc_.size()) Fold(level + 1, a.values.data(), a.sums.data());
  }

  void Put(int file, const void *row, std::size_t bytes) {
    std::size_t room = 0;
    char *to = writer_.Room(file, bytes, room);
    if (!to) throw WriteFailure();
    std::memcpy(to, row, bytes);
    writer_.Commit(file, bytes);
  }

  int columns_;
  int base_;
  std::vector<LevelAccumulator> acc_;
  RowWriter &writer_;
  const std::vector<int> &valueFiles_;
  const std::vector<int> &sumFiles_;
};

}  // namespace

int BuildWorkingFiles(const RecordFileInfo &info, const std::string &programFolder, int slot,
                      const ProgressFn &progress) {
  const std::int64_t free = FreeDiskBytes(programFolder);
  if (free < 0 || free * kFixedPoint <= NeededBytesFixed(info)) return kNoDiskSpace;

  const int levels = info.TopLevel + 1;
  const int channelTotal = info.AnalogCount + info.DiCount;
  if (info.RecordCount <= 0 || channelTotal <= 0 ||
      info.Channels.size() != static_cast<size_t>(info.AnalogCount) ||
      info.Dis.size() != static_cast<size_t>(info.DiCount) || info.TopLevel < 0 ||
      info.TopLevel > 9)
    return kWrongFile;

  // Layout of a record: where each channel's units lie.
  LevelOnePlan plan;
  if (!MakeLevelOnePlan(info, plan) || info.DataStart < 0) return kWrongFile;
  const std::int64_t recordLength = plan.recordLength;

  auto writer = std::make_unique<RowWriter>();
  int input = -1;
  auto fail = [&]() {
    if (input >= 0) ::close(input);
    writer.reset();  // the writing thread ends before its files go
    DeleteWorkingFiles(info, programFolder, slot);
    return static_cast<int>(kWrongFile);
  };

  try {
    // Level 1 takes nearly all the bytes: its buffers are large, the others small.
    const std::size_t columns = 2 * static_cast<std::size_t>(channelTotal);
    const std::size_t valueRow = sizeof(std::int16_t) * columns;
    const std::size_t sumRow = sizeof(std::int32_t) * columns;
    std::vector<int> valueFiles;
    std::vector<int> sumFiles;
    for (int k = 1; k <= levels; ++k) {
      const std::size_t rows = std::max<std::size_t>(1, (k == 1 ? 4 << 20 : 256 << 10) / sumRow);
      for (bool sums : {false, true}) {
        const std::string path = WorkingFilePath(programFolder, slot, k, sums);
        std::remove(path.c_str());
        const int file = writer->Open(path, rows * (sums ? sumRow : valueRow));
        if (file < 0) return fail();
        (sums ? sumFiles : valueFiles).push_back(file);
      }
    }

    input = ::open(info.FilePath.c_str(), O_RDONLY);
    if (input < 0) return fail();
    const std::int64_t dataBytes = recordLength * info.RecordCount;
    const off_t fileEnd = ::lseek(input, 0, SEEK_END);
    if (fileEnd < 0 || info.DataStart + dataBytes > fileEnd) return fail();

    std::int64_t chunkRecords = 1;
    for (int i = 0; i < info.TopLevel; ++i) chunkRecords *= 10;
    const std::int64_t chunks = (info.RecordCount + chunkRecords - 1) / chunkRecords;

    // The bar: m chunks, moving every d-th chunk, three steps left for the end.
    const std::int64_t m = info.RecordCount / chunkRecords + 1;
    std::int64_t d = 1;
    if (m > 100) {
      d = 2;
      while (m / d >= 101) ++d;
    }
    const int maximum = static_cast<int>(m / d + 3);
    if (progress) progress(0, maximum);

    PyramidBuilder pyramid(channelTotal, levels, 10, *writer, valueFiles, sumFiles);

    // The record file is read in blocks of whole records, whatever the chunks'
    // size; the bar still moves chunk by chunk as the records pass.
    const std::int64_t blockRecords = std::clamp<std::int64_t>(
        (4 << 20) / recordLength, 1, static_cast<std::int64_t>(info.RecordCount));
    std::vector<char> block(static_cast<size_t>(blockRecords * recordLength));

    std::int64_t record = 0;
    std::int64_t chunk = 0;
    while (record < info.RecordCount) {
      const std::int64_t n = std::min<std::int64_t>(blockRecords, info.RecordCount - record);
      const size_t bytes = static_cast<size_t>(n * recordLength);
      size_t done = 0;
      while (done < bytes) {
        ssize_t got = ::pread(input, block.data() + done, bytes - done,
                              static_cast<off_t>(info.DataStart + record * recordLength + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return fail();
        done += static_cast<size_t>(got);
      }
      // Level-1 rows are made straight into the output buffers, as many as fit.
      for (std::int64_t r = 0; r < n;) {
        std::size_t valueRoom = 0;
        std::size_t sumRoom = 0;
        char *values = writer->Room(valueFiles[0], valueRow, valueRoom);
        char *sums = writer->Room(sumFiles[0], sumRow, sumRoom);
        if (!values || !sums) return fail();
        const std::int64_t rows =
            std::min<std::int64_t>({n - r, static_cast<std::int64_t>(valueRoom / valueRow),
                                    static_cast<std::int64_t>(sumRoom / sumRow)});
        auto *valueRows = reinterpret_cast<std::int16_t *>(values);
        auto *sumRows = reinterpret_cast<std::int32_t *>(sums);
        MakeLevelOneRows(plan, block.data() + r * recordLength, rows, valueRows, sumRows);
        pyramid.AddLevelOneRows(valueRows, sumRows, rows);
        writer->Commit(valueFiles[0], static_cast<std::size_t>(rows) * valueRow);
        writer->Commit(sumFiles[0], static_cast<std::size_t>(rows) * sumRow);
        r += rows;
      }
      record += n;
      while (chunk < chunks && std::min((chunk + 1) * chunkRecords,
                                        static_cast<std::int64_t>(info.RecordCount)) <= record) {
        ++chunk;
        if (progress && chunk % d == 0) progress(static_cast<int>(chunk / d), maximum);
      }
    }
    pyramid.Finish();
    ::close(input);
    input = -1;
    if (!writer->Finish()) return fail();
  } catch (const LevelRowFailure &) {
    return fail();
  } catch (const WriteFailure &) {
    return fail();
  } catch (const std::exception &) {
    return fail();
  }
  return -1;
}

void DeleteWorkingFiles(const RecordFileInfo &info, const std::string &programFolder, int slot) {
  for (int k = 1; k <= info.TopLevel + 1; ++k) {
    std::remove(WorkingFilePath(programFolder, slot, k, false).c_str());
    std::remove(WorkingFilePath(programFolder, slot, k, true).c_str());
  }
}

bool IsWorkingFileName(const std::string &name) {
  // Reads one run of digits at `pos`; false when there is none.
  auto digits = [&name](std::size_t &pos) {
    const std::size_t start = pos;
    while (pos < name.size() && name[pos] >= '0' && name[pos] <= '9') ++pos;
    return pos > start;
  };
  auto literal = [&name](std::size_t &pos, std::string_view text) {
    if (name.compare(pos, text.size(), text) != 0) return false;
    pos += text.size();
    return true;
  };
  std::size_t pos = 0;
  if (!literal(pos, "Operation_") || !digits(pos) || !literal(pos, "_")) return false;
  literal(pos, "COM_");
  return digits(pos) && literal(pos, ".OPL") && pos == name.size();
}

int DeleteStaleWorkingFiles(const std::string &programFolder) {
  std::error_code error;
  std::filesystem::directory_iterator entries(programFolder, error);
  if (error) return 0;
  std::vector<std::filesystem::path> stale;
  for (const auto &entry : entries)
    if (entry.is_regular_file(error) && IsWorkingFileName(entry.path().filename().string()))
      stale.push_back(entry.path());
  int deleted = 0;
  for (const auto &path : stale)
    if (std::filesystem::remove(path, error)) ++deleted;
  return deleted;
}

}  // namespace recscope
