#include "record/working_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "platform/disk_space.h"
#include "record/level_fold.h"
#include "record/number_field.h"
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

// One output file with a large buffer: rows are appended and written in big blocks.
class BufferedOutput {
 public:
  explicit BufferedOutput(const std::string &path) {
    fd_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    buffer_.resize(kBufferBytes);
  }
  ~BufferedOutput() {
    if (fd_ >= 0) ::close(fd_);
  }
  BufferedOutput(const BufferedOutput &) = delete;
  BufferedOutput &operator=(const BufferedOutput &) = delete;

  bool ok() const { return fd_ >= 0 && ok_; }
  void Append(const void *data, std::size_t bytes) {
    if (used_ + bytes > buffer_.size()) Flush();
    if (bytes > buffer_.size()) {
      WriteAll(static_cast<const char *>(data), bytes);
      return;
    }
    std::memcpy(buffer_.data() + used_, data, bytes);
    used_ += bytes;
  }
  bool Close() {
    Flush();
    if (fd_ >= 0 && ::close(fd_) != 0) ok_ = false;
    fd_ = -1;
    return ok_;
  }

 private:
  static constexpr std::size_t kBufferBytes = 1 << 20;
  void Flush() {
    WriteAll(buffer_.data(), used_);
    used_ = 0;
  }
  void WriteAll(const char *p, std::size_t bytes) {
    while (bytes > 0 && ok_ && fd_ >= 0) {
      ssize_t n = ::write(fd_, p, bytes);
      if (n < 0) {
        if (errno == EINTR) continue;
        ok_ = false;
        return;
      }
      p += n;
      bytes -= static_cast<std::size_t>(n);
    }
  }
  int fd_ = -1;
  bool ok_ = true;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

// Where a channel's columns of level 1 come from in a data record.
struct ColumnSource {
  int firstUnit = 0;  // analog: index of its first unit; text DI: index of its first unit
  bool twoUnits = false;
  bool analog = true;
  int diBit = 0;  // binary DI: bit 2n-2 of the DI word
};

struct BuildFailure : std::runtime_error {
  BuildFailure() : std::runtime_error("working files") {}
};

// A row of one level in the making, folded from the rows of the level below.
struct LevelAccumulator {
  std::vector<std::int16_t> values;  // min, max per channel
  std::vector<std::int32_t> sums;    // sum, count per channel
  int rows = 0;
};

class PyramidBuilder {
 public:
  PyramidBuilder(int channelTotal, int levels, int levelBase,
                 std::vector<std::unique_ptr<BufferedOutput>> &valueOut,
                 std::vector<std::unique_ptr<BufferedOutput>> &sumOut)
      : columns_(2 * channelTotal), base_(levelBase), valueOut_(valueOut), sumOut_(sumOut) {
    acc_.resize(static_cast<size_t>(levels));
    for (auto &a : acc_) {
      a.values.resize(static_cast<size_t>(columns_));
      a.sums.resize(static_cast<size_t>(columns_));
    }
  }

  // A level-1 row: written at once, then folded into the level above.
  void AddRow(const std::int16_t *values, const std::int32_t *sums) { Emit(0, values, sums); }

  // The short rows of the last chunk.
  void Finish() {
    for (size_t level = 1; level < acc_.size(); ++level) {
      if (acc_[level].rows > 0) EmitAccumulated(level);
    }
  }

 private:
  void Emit(size_t level, const std::int16_t *values, const std::int32_t *sums) {
    valueOut_[level]->Append(values, sizeof(std::int16_t) * static_cast<size_t>(columns_));
    sumOut_[level]->Append(sums, sizeof(std::int32_t) * static_cast<size_t>(columns_));
    if (level + 1 < acc_.size()) Fold(level + 1, values, sums);
  }

  void EmitAccumulated(size_t level) {
    LevelAccumulator &a = acc_[level];
    a.rows = 0;
    Emit(level, a.values.data(), a.sums.data());
  }

  void Fold(size_t level, const std::int16_t *values, const std::int32_t *sums) {
    LevelAccumulator &a = acc_[level];
    if (a.rows == 0) {
      std::memcpy(a.values.data(), values, sizeof(std::int16_t) * static_cast<size_t>(columns_));
      std::memcpy(a.sums.data(), sums, sizeof(std::int32_t) * static_cast<size_t>(columns_));
    } else {
      // Separate passes over the columns keep each loop simple enough to vectorise.
      std::int16_t *v = a.values.data();
      for (int c = 0; c < columns_; c += 2) v[c] = FoldLevelMin(v[c], values[c]);
      for (int c = 1; c < columns_; c += 2) v[c] = FoldLevelMax(v[c], values[c]);
      std::int32_t *s = a.sums.data();
      bool overflow = false;
      for (int c = 0; c < columns_; ++c) {
        const std::int64_t total = static_cast<std::int64_t>(s[c]) + sums[c];
        overflow |= total != static_cast<std::int32_t>(total);
        s[c] = static_cast<std::int32_t>(total);
      }
      // A sum that leaves 32 bits is a failure of the build, not a wrapped number.
      if (overflow) throw BuildFailure();
    }
    if (++a.rows == base_) EmitAccumulated(level);
  }

  int columns_;
  int base_;
  std::vector<LevelAccumulator> acc_;
  std::vector<std::unique_ptr<BufferedOutput>> &valueOut_;
  std::vector<std::unique_ptr<BufferedOutput>> &sumOut_;
};

bool IsSpecialRaw(std::int32_t raw) { return raw == -32768 || raw == 32767 || raw == -32767; }

// A text number field of 7 characters. The common shapes (blanks, a sign,
// digits, the point in its place) are read here directly; anything else goes
// through the general reader, so both give the same value.
std::int32_t TextUnit(const char *field, int decimals) {
  const int point = decimals > 0 ? 6 - decimals : -1;
  if (decimals >= 0 && decimals <= 6) {
    int i = 0;
    while (i < 7 && i != point && field[i] == ' ') ++i;
    bool negative = false;
    if (i < 7 && i != point && field[i] == '-') {
      negative = true;
      ++i;
    }
    std::int32_t value = 0;
    int digits = 0;
    bool plain = true;
    for (; i < 7; ++i) {
      if (i == point) {
        if (field[i] != '.') plain = false;
        continue;
      }
      const unsigned d = static_cast<unsigned char>(field[i]) - '0';
      if (d > 9) {
        plain = false;
        break;
      }
      value = value * 10 + static_cast<std::int32_t>(d);
      ++digits;
    }
    if (plain && digits > 0) return negative ? -value : value;
  }
  auto value = ReadNumberField(std::string_view(field, 7), decimals);
  if (!value) throw BuildFailure();
  return *value;
}

std::int16_t ToRaw(std::int32_t value) {
  if (value < -32768 || value > 32767) throw BuildFailure();
  return static_cast<std::int16_t>(value);
}

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
  const bool binary = info.FileFormat == 2;
  std::vector<ColumnSource> sources;
  int units = 0;
  for (const auto &ch : info.Channels) {
    ColumnSource s;
    s.firstUnit = units;
    s.twoUnits = ch.RecordType == 0;
    units += s.twoUnits ? 2 : 1;
    sources.push_back(s);
  }
  const int analogUnits = units;
  for (size_t i = 0; i < info.Dis.size(); ++i) {
    const auto &di = info.Dis[i];
    ColumnSource s;
    s.analog = false;
    s.twoUnits = di.RecordType == 0;
    int n = di.DiNo - 128;
    if (n < 1 || n > 8) n = static_cast<int>(i) + 1;
    s.diBit = 2 * n - 2;
    s.firstUnit = units;
    if (!binary) units += s.twoUnits ? 2 : 1;
    sources.push_back(s);
  }
  const std::int64_t recordLength =
      binary ? 4 + 2 * analogUnits + (info.DiCount > 0 ? 2 : 0) : 21 + 8 * units;
  if (recordLength != info.RecordLength || info.DataStart < 0) return kWrongFile;

  std::vector<std::int16_t> analogDecimals;
  for (const auto &ch : info.Channels) analogDecimals.push_back(ch.Decimals);

  std::vector<std::unique_ptr<BufferedOutput>> valueOut;
  std::vector<std::unique_ptr<BufferedOutput>> sumOut;
  int input = -1;
  auto fail = [&]() {
    if (input >= 0) ::close(input);
    valueOut.clear();
    sumOut.clear();
    DeleteWorkingFiles(info, programFolder, slot);
    return static_cast<int>(kWrongFile);
  };

  try {
    for (int k = 1; k <= levels; ++k) {
      for (bool sums : {false, true}) {
        const std::string path = WorkingFilePath(programFolder, slot, k, sums);
        std::remove(path.c_str());
        (sums ? sumOut : valueOut).push_back(std::make_unique<BufferedOutput>(path));
        if (!(sums ? sumOut : valueOut).back()->ok()) return fail();
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

    PyramidBuilder pyramid(channelTotal, levels, 10, valueOut, sumOut);
    std::vector<std::int16_t> rowValues(2 * static_cast<size_t>(channelTotal));
    std::vector<std::int32_t> rowSums(2 * static_cast<size_t>(channelTotal));
    std::vector<std::int16_t> textUnits(static_cast<size_t>(units));

    // A chunk is read in blocks of whole records, so that memory stays small
    // whatever the chunk's size.
    const std::int64_t blockRecords =
        std::max<std::int64_t>(1, std::min<std::int64_t>(chunkRecords, (4 << 20) / recordLength));
    std::vector<char> block(static_cast<size_t>(blockRecords * recordLength));

    std::int64_t record = 0;
    for (std::int64_t chunk = 1; chunk <= chunks; ++chunk) {
      const std::int64_t chunkEnd = std::min<std::int64_t>(record + chunkRecords, info.RecordCount);
      while (record < chunkEnd) {
        const std::int64_t n = std::min(blockRecords, chunkEnd - record);
        const size_t bytes = static_cast<size_t>(n * recordLength);
        size_t done = 0;
        while (done < bytes) {
          ssize_t got = ::pread(input, block.data() + done, bytes - done,
                                static_cast<off_t>(info.DataStart + record * recordLength + done));
          if (got < 0 && errno == EINTR) continue;
          if (got <= 0) return fail();
          done += static_cast<size_t>(got);
        }
        for (std::int64_t r = 0; r < n; ++r) {
          const char *rec = block.data() + r * recordLength;
          if (binary) {
            const char *unitBase = rec + 4;
            std::uint16_t diWord = 0;
            if (info.DiCount > 0) std::memcpy(&diWord, unitBase + 2 * analogUnits, 2);
            for (int c = 0; c < channelTotal; ++c) {
              const ColumnSource &s = sources[static_cast<size_t>(c)];
              std::int16_t lo;
              std::int16_t hi;
              std::int32_t sum = 0;
              std::int32_t count = 0;
              if (s.analog) {
                std::memcpy(&lo, unitBase + 2 * s.firstUnit, 2);
                hi = lo;
                if (s.twoUnits) std::memcpy(&hi, unitBase + 2 * s.firstUnit + 2, 2);
                if (!IsSpecialRaw(lo)) sum += lo, ++count;
                if (s.twoUnits && !IsSpecialRaw(hi)) sum += hi, ++count;
              } else {
                lo = static_cast<std::int16_t>((diWord >> s.diBit) & 1);
                hi = s.twoUnits ? static_cast<std::int16_t>((diWord >> (s.diBit + 1)) & 1) : lo;
              }
              rowValues[2 * c] = lo;
              rowValues[2 * c + 1] = hi;
              rowSums[2 * c] = sum;
              rowSums[2 * c + 1] = count;
            }
          } else {
            for (int c = 0; c < channelTotal; ++c) {
              const ColumnSource &s = sources[static_cast<size_t>(c)];
              const int decimals = s.analog ? analogDecimals[static_cast<size_t>(c)] : 0;
              const char *field = rec + 20 + 8 * s.firstUnit;
              const std::int16_t lo = ToRaw(TextUnit(field, decimals));
              const std::int16_t hi = s.twoUnits ? ToRaw(TextUnit(field + 8, decimals)) : lo;
              std::int32_t sum = 0;
              std::int32_t count = 0;
              if (s.analog) {
                if (!IsSpecialRaw(lo)) sum += lo, ++count;
                if (s.twoUnits && !IsSpecialRaw(hi)) sum += hi, ++count;
              }
              rowValues[2 * c] = lo;
              rowValues[2 * c + 1] = hi;
              rowSums[2 * c] = sum;
              rowSums[2 * c + 1] = count;
            }
          }
          pyramid.AddRow(rowValues.data(), rowSums.data());
        }
        record += n;
      }
      if (progress && chunk % d == 0) progress(static_cast<int>(chunk / d), maximum);
    }
    pyramid.Finish();
    ::close(input);
    input = -1;
    for (auto &out : valueOut)
      if (!out->Close()) return fail();
    for (auto &out : sumOut)
      if (!out->Close()) return fail();
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

}  // namespace recscope
