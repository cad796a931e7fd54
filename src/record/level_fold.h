#pragma once
// How rows of the level files are taken together, and how they are read back.
// A row holds, per channel, a minimum and a maximum (i16) and a sum and a count
// (i32). The no-data mark -32768 is treated differently on the two sides: it is
// passed over by the minimum but poisons the maximum for good, which is what the
// views expect of the higher levels.
#include <cstdint>
#include <string>
#include <vector>

namespace recscope {

constexpr std::int16_t kNoDataRaw = -32768;

// Minimum of a higher level: a later -32768 never replaces the running value.
inline std::int16_t FoldLevelMin(std::int16_t running, std::int16_t later) {
  return (later != kNoDataRaw && later < running) ? later : running;
}

// Maximum of a higher level: once either side is -32768 the result is -32768.
inline std::int16_t FoldLevelMax(std::int16_t running, std::int16_t later) {
  if (running == kNoDataRaw || later == kNoDataRaw) return kNoDataRaw;
  return later > running ? later : running;
}

// Rows of one level read back from its two files. Values: 2 x i16 a channel
// (minimum, maximum); sums: 2 x i32 a channel (sum, count).
struct LevelRowBlock {
  std::vector<std::int16_t> values;
  std::vector<std::int32_t> sums;
};

// The two files of one level of a slot, open for reading.
class LevelFiles {
 public:
  LevelFiles(const std::string &programFolder, int slot, int level);
  ~LevelFiles();
  LevelFiles(const LevelFiles &) = delete;
  LevelFiles &operator=(const LevelFiles &) = delete;

  bool ok() const { return valueFd_ >= 0 && sumFd_ >= 0; }
  // Reads `bytes` from each file at the given byte offsets; what lies past a
  // file's end reads as zeros. False when a file cannot be read.
  bool ReadValueBytes(std::int64_t offset, void *out, std::size_t bytes) const;
  bool ReadSumBytes(std::int64_t offset, void *out, std::size_t bytes) const;

 private:
  int valueFd_ = -1;
  int sumFd_ = -1;
};

}  // namespace recscope
