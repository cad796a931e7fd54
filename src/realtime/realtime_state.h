#pragma once
// The state of the real-time monitor: its settings, the recorder's setup as the
// driver read it, the sample ring with its slot arithmetic, the alarm flags and
// the place of the driver in its steps. The driver writes it, the logging and
// the real-time windows read it. Plain C++: no window and no port in here.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace recscope {

// The ring has one slot for each cycle of a day's worth of cycles: 24 hours at
// a cycle of 1 second, 60 days at 60 seconds.
inline constexpr std::int32_t kRealSlotCount = 86400;
// The cycles of the cycle list, in seconds, by list index 0 to 7.
inline constexpr std::array<std::int16_t, 8> kRealCycleSeconds{1, 2, 3, 5, 10, 20, 30, 60};
inline constexpr int kRealUserUnitCount = 12;
inline constexpr int kRealUserUnitFirstCode = 156;  // codes 156 to 167

// The recorder families the driver tells apart by the first three characters
// of the model text.
inline constexpr int kRealKtxChannels = 30;
inline constexpr int kRealKtxGroups = 4;
inline constexpr int kRealZnqChannels = 72;
inline constexpr int kRealZnqGroups = 8;
// The alarm flags reach these channels and no further: the higher channels'
// flags stay 0. Both limits belong to the design as it stands.
inline constexpr int kRealKtxAlarmChannels = 18;
inline constexpr int kRealZnqAlarmChannels = 70;

// Colours of the status lamp, as the numbers blue, green, red.
inline constexpr std::uint32_t kRealLampRed = 221;  // 0x0000DD
inline constexpr std::uint32_t kRealLampBlue = 0xDD0000;
inline constexpr std::uint32_t kRealLampGrey = 0x888888;

// The section REALTIME of VIEWERCOM.INI, as frmRealSet keeps it.
struct RealSettings {
  std::int32_t Communication = 0;  // list index of frmRealSet: 0 Ethernet, else RS-232C
  std::int32_t Cycle = 0;          // list index 0 to 7 of the cycle list
  std::int32_t Station = 1;        // Modbus station 0 to 255
  std::int32_t Com = 1;            // port number 1 to 5
  std::int32_t BoudRate = 0;       // 0 is 9600, 1 is 19200
  std::int32_t Parity = 0;         // 0 none, 1 odd, 2 even
  std::string Ip = "1.1.1.1";

  bool Serial() const { return Communication != 0; }
  // The cycle in seconds of the list index; an index outside the list counts as 0.
  std::int16_t CycleSeconds() const;
};

// One channel as the driver reads it: two tags and thirteen values, in the
// order of the channel block offsets 8, 9, 11, 17, 25, 27, 28, 35, 19, 13, 14,
// 15, 16.
struct RealChannelRecord {
  std::string Tag1;  // 8 bytes of code page 932 on disk
  std::string Tag2;
  std::int32_t ColorNo = 0;       // 8
  std::int32_t InputType = 0;     // 9, 0 is off
  std::int32_t UnitCode = 0;      // 11
  std::int32_t Decimals = 0;      // 17
  std::int32_t Further = 0;       // 25, kept but not used
  std::int32_t ScaleLow = 0;      // 27
  std::int32_t ScaleHigh = 0;     // 28
  std::int32_t CommonPoint = 0;   // 35, only from version 14 on, else 0
  std::int32_t ScaleKind = 0;     // 19
  std::int32_t RangeLow = 0;      // 13, only when ScaleKind is nonzero
  std::int32_t RangeHigh = 0;     // 14
  std::int32_t ExponentLow = 0;   // 15
  std::int32_t ExponentHigh = 0;  // 16
};

struct RealGroupRecord {
  std::string Name;                         // 16 bytes on disk
  std::array<std::uint8_t, 10> Channels{};  // channel numbers, 0 for none
};

// One channel as the real-time windows and the analyzed record take it, built
// from the channel record once the setup has been read: the decimals are the
// common point's when the channel's common-point flag is set, and a zero span
// of the scale is widened.
struct RealDisplayChannel {
  std::string Tag1;  // cut to 8 bytes of code page 932
  std::string Tag2;
  std::int16_t ColorNo = 0;
  std::int16_t InputType = 0;
  std::int16_t UnitCode = 0;
  std::int16_t Decimals = 0;
  std::int16_t ScaleLow = 0;
  std::int16_t ScaleHigh = 0;
  std::int16_t RangeLow = 0;
  std::int16_t RangeHigh = 0;
  std::int16_t ExponentLow = 0;
  std::int16_t ExponentHigh = 0;
};

// The 86400 sample slots. Slot numbers are 1-based. Each slot holds a time, a
// valid byte (1 a sample, 0 a blank), a reserved byte (0) and one signed 32-bit
// value per channel. A blank is a slot of zeros throughout.
class RealSampleRing {
 public:
  // Makes every slot a blank for `channels` channels, the counters 0.
  void Allocate(int channels);
  int channels() const { return channels_; }
  bool allocated() const { return !times_.empty(); }

  std::int32_t Time(std::int32_t slot) const { return times_.at(Index(slot)); }
  std::uint8_t Valid(std::int32_t slot) const { return valid_.at(Index(slot)); }
  std::uint8_t Reserved(std::int32_t slot) const { return reserved_.at(Index(slot)); }
  std::int32_t Value(std::int32_t slot, int channel0) const;

  // Writes a sample: time, valid byte 1, reserved byte 0 and the values
  // (missing values are 0).
  void Write(std::int32_t slot, std::int32_t time, const std::vector<std::int32_t> &values);
  void Blank(std::int32_t slot);

  // The slot as a record of the file: time (4 bytes), valid, reserved, then
  // each value (4 bytes), all little-endian; and the reverse.
  std::vector<std::uint8_t> RecordBytes(std::int32_t slot) const;
  void SetFromRecordBytes(std::int32_t slot, const std::uint8_t *bytes, std::size_t size);

  // 1-based counts of the last written slot and of the slot last drawn; 0 for none.
  std::int32_t LastWritten = 0;
  std::int32_t LastDrawn = 0;

 private:
  std::size_t Index(std::int32_t slot) const { return static_cast<std::size_t>(slot - 1); }
  int channels_ = 0;
  std::vector<std::int32_t> times_;
  std::vector<std::uint8_t> valid_;
  std::vector<std::uint8_t> reserved_;
  std::vector<std::int32_t> values_;  // slot-major, channels_ per slot
};

// Record length of the ring file: 4 × channels + 6.
inline constexpr std::int32_t RealRecordLength(int channels) { return 4 * channels + 6; }

// The slot of a sample time: ((time mod (cycle × 86400)) / cycle) + 1.
std::int32_t RealSlotOfTime(std::int32_t sampleTime, std::int32_t cycle);

// The slots a new sample at `newSlot` leaves blank after the last written slot
// `oldSlot`: from oldSlot + 1 on, round over 86400 to 1 when the new slot is
// not above the old one, up to newSlot - 1. None when oldSlot is 0 or the new
// slot follows the old one.
std::vector<std::int32_t> RealGapSlots(std::int32_t oldSlot, std::int32_t newSlot);

// Sample time aligned to the cycle: now - (now mod cycle).
std::int32_t RealAlignedTime(std::int32_t now, std::int32_t cycle);

// The state of the real-time monitor, one per process in the shared state.
struct RealtimeState {
  RealSettings Settings;

  // What the recorder told of itself at step 0 or 1.
  std::string ModelText;    // 16 bytes on disk, trimmed
  std::string SerialText;   // 8 bytes
  std::string VersionText;  // 8 bytes
  std::int32_t ChannelCount = 0;
  std::int32_t GroupCount = 0;

  // The setup read now, and the one of the last run for the comparison before
  // the first sample.
  std::vector<RealChannelRecord> Channels;
  std::vector<RealChannelRecord> LastChannels;
  std::vector<RealGroupRecord> Groups;
  std::int32_t CommonPoint = 0;                             // the common decimal point
  std::array<std::string, kRealUserUnitCount> UserUnits{};  // 7 bytes each on disk
  std::string LastSerialText;
  std::int32_t LastCommonPoint = 0;
  std::int32_t LastCycle = 0;  // seconds; 0 before any run

  std::vector<RealDisplayChannel> Display;
  // The channels of each group counted, by group.
  std::vector<std::int32_t> GroupSizes;
  // Tabs of the trend: "G9" (all channels) first, then "G<n>" for each group
  // with channels; and the group number of each tab (0 for "G9").
  std::vector<std::string> TabNames;
  std::vector<std::int32_t> TabGroups;

  // Alarm flags by channel: a byte per alarm level 1 to 4, each 0 or 1; the
  // present state only.
  std::vector<std::array<std::uint8_t, 4>> AlarmFlags;

  RealSampleRing Ring;
  std::int16_t CycleSeconds = 1;  // the cycle of the running read, from the list
  std::int16_t DisplayStep = 8;   // step width of the display

  // The driver: the step of the decoder (0 find the 30-channel family, 1 the
  // 72-channel one, 2 to 5 setup, 6 first values, 7 each cycle), the running
  // flag, and the sample times.
  std::int32_t Step = 0;
  bool Running = false;
  std::int32_t SampleTime = 0;
  std::int32_t NextSampleTime = 0;

  // What the trend window shows of the link: the catalogue id of lblState
  // (0 nothing yet, 19750 "OK", 19751 the error), the lamp colour and whether
  // it blinks; the enabling of cmdAnalyze and cmdInst.
  std::int32_t StateMessageId = 0;
  std::uint32_t LampColour = kRealLampBlue;
  bool LampBlinking = false;
  bool AnalyzeEnabled = false;
  bool ButtonsEnabled = true;
  bool StartEnabled = true;  // cmdStart and the menu entry; off while running

  // frmRealSet is open (its unload clears it); frmRealTrend is open.
  bool SetDialogOpen = false;
  bool TrendOpen = false;

  // Sets the counts of a family and makes all arrays anew: channel copies,
  // group records, display records, alarm flags and the ring.
  void AllocateFamily(int channels, int groups);
  // The text of a unit code: the catalogue's for 0 to 155, the user units read
  // from the recorder for 156 to 167, seven blanks otherwise.
  std::string UnitTextOf(int unitCode) const;
};

}  // namespace recscope
