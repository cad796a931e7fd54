#pragma once
// The present values of the recorder as the communication monitor polls them:
// the input register block of group "V  " and the offsets of its items, one
// sample taken from a reply, the ring of 1801 samples, and the record of a
// sample as it goes into the measurement file the setup read began.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "link/command_frames.h"
#include "record/record_file_info.h"
#include "shell/init_set.h"

namespace recscope {

inline constexpr int kMonitorChannels = 30;
inline constexpr int kMonitorDis = 5;
inline constexpr int kMonitorRingSamples = 1801;  // indices 0 to 1800

// Where the present values stand: the block's zero-based input address, its
// words and reply length, and the word offsets of "GTIM", "DIB ", "ALMB" and
// "PV  ".
struct PresentValueMap {
  std::int32_t Address = 0;
  int Words = 0;
  int ReplyLength = 5;
  std::int32_t Time = 0;
  std::int32_t Inputs = 0;
  std::int32_t Alarms = 0;
  std::int32_t Values = 0;
};
PresentValueMap FillPresentValueMap(const RegisterMap &map);

struct MonitorSample {
  std::int32_t Time = 0;  // seconds since 1970/1/1 00:00:00
  std::array<std::int16_t, kMonitorChannels> Raw{};
  std::array<std::uint8_t, kMonitorDis> Inputs{};
  // Alarm level 1 to 4 of channel 1 to 32: word w of "ALMB" carries channels
  // 4w + 1 to 4w + 4, a nibble each, bit 1 alarm 1 to bit 8 alarm 4.
  std::array<std::array<std::uint8_t, 32>, 4> Alarms{};
};

// The sample of a reply held in the register table.
MonitorSample TakeSample(const RegisterTable &table, const PresentValueMap &map);

// The samples to write for `next` after `previous`: a difference of 1 second
// or less makes `next` the next one; a larger one has the missing seconds
// stepped in first, each with the values of `previous`.
std::vector<MonitorSample> SamplesToWrite(const MonitorSample *previous, const MonitorSample &next);

// A sample as a binary data record of the monitor's record (30 channels of one
// unit each, 5 inputs): time, values, the input word with DI n in bit 2n - 2.
std::string SampleRecordBytes(const MonitorSample &sample);

// The ring of the monitor: 37 rows by 1801 samples (row 1 the time, rows 2 to
// 31 the channels scaled by their decimals, rows 32 to 36 the inputs), the
// write index and the full flag.
class MonitorRing {
 public:
  MonitorRing();
  // Timer2's first step: the write index goes up by 1; beyond 1800 it becomes 1
  // and the ring is full.
  void Advance();
  // A failed poll puts the write index back by 1; 0 becomes 1800.
  void StepBack();
  void Store(const MonitorSample &sample, const std::vector<ChannelInfo> &channels);
  int writeIndex() const { return writeIndex_; }
  bool full() const { return full_; }
  double value(int row, int index) const {
    return values_[static_cast<std::size_t>(row) * kMonitorRingSamples +
                   static_cast<std::size_t>(index)];
  }

 private:
  std::vector<double> values_;
  int writeIndex_ = 0;
  bool full_ = false;
};

}  // namespace recscope
