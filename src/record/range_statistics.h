#pragma once
// Minimum, maximum, sum and count of each channel over a time range, read from
// the level files with few rows at each level.
#include <cstdint>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

struct ChannelStatistics {
  std::int16_t Min = 0;
  std::int16_t Max = 0;
  double Sum = 0;
  std::int32_t Count = 0;
};

// One entry per channel in table order, analog then DI. The range runs from the
// record at `firstTime` to the one at `lastTime` (times of samples of the file).
// False when a level file cannot be read.
bool GetRangeStatistics(const RecordFileInfo &info, const std::string &programFolder, int slot,
                        std::int32_t period, std::int64_t firstTime, std::int64_t lastTime,
                        std::vector<ChannelStatistics> &result);

}  // namespace recscope
