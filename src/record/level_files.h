#pragma once
// The one reader of the working files. A level's value file holds rows of two
// i16 a channel (minimum, maximum) and its sum file rows of two i32 a channel
// (sum, count), in channel table order, analog first, then DI; both are in the
// machine's byte order, as the build writes them. Every view, calculation and
// drawing that reads a level reads it through here.
#include <cstddef>
#include <cstdint>
#include <string>

namespace recscope {

// Bytes of one value row and of one sum row of a record with `channelTotal`
// channels.
constexpr std::int64_t ValueRowBytes(int channelTotal) { return 4LL * channelTotal; }
constexpr std::int64_t SumRowBytes(int channelTotal) { return 8LL * channelTotal; }

// Records of the record file that one row of a level stands for: 10^level, with
// level counted from 0 (level 0 is the file "Operation_<n>_1.OPL").
std::int64_t RecordsPerLevelRow(int level);

// The files of one level of a slot, open for reading. `level` counts from 0.
class LevelFiles {
 public:
  enum Parts { kValuesOnly, kValuesAndSums };
  LevelFiles(const std::string &programFolder, int slot, int level, int channelTotal,
             Parts parts = kValuesAndSums);
  ~LevelFiles();
  LevelFiles(const LevelFiles &) = delete;
  LevelFiles &operator=(const LevelFiles &) = delete;

  bool ok() const { return valueFd_ >= 0 && (parts_ == kValuesOnly || sumFd_ >= 0); }

  // `count` rows from row `firstRow` into `out` (2 x channelTotal values a row).
  // Rows past a file's end read as zeros; false when a file cannot be read.
  bool ReadValueRows(std::int64_t firstRow, std::int64_t count, std::int16_t *out) const;
  bool ReadSumRows(std::int64_t firstRow, std::int64_t count, std::int32_t *out) const;

  // Sum rows read from the byte position of value row `firstRow`: the position
  // with which the view rows of a window have always addressed the sum file. The
  // sums are thus the shown rows' sums only when the view starts at row 0.
  bool ReadSumRowsAtValueOffset(std::int64_t firstRow, std::int64_t count, std::int32_t *out) const;

 private:
  int channelTotal_;
  Parts parts_;
  int valueFd_ = -1;
  int sumFd_ = -1;
};

}  // namespace recscope
