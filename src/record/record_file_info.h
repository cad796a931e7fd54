#pragma once
// One open measurement record in memory: the measurement file's header, channel,
// digital-input and group tables, its data limits and levels, and the alarm,
// message and flag events of its companions. Texts are UTF-8 and fixed fields
// keep their padding. Tables are 0-based here; channel and DI numbers are the
// file's own.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace recscope {

struct ChannelInfo {
  std::int16_t ChannelNo = 0;
  std::string Tag;
  std::string ChannelLabel;  // text files only: "CH" and two digits
  std::int16_t ColorNo = 0;
  std::int16_t InputType = 0;  // 15..18 are held as 30..33
  std::string Unit;
  std::int16_t ScaleLow = 0;  // raw, or a power of ten when ScaleKind is 1
  std::int16_t ScaleHigh = 0;
  double DisplayLow = 0;  // what the operator may change
  double DisplayHigh = 0;
  double RecordedLow = 0;  // what the file said
  double RecordedHigh = 0;
  std::int16_t RecordType = 0;  // 0 minimum and maximum, 1 instantaneous, 2 average
  std::int16_t ScaleKind = 0;   // 0 linear, 1 logarithmic
  double RangeLow = 0;
  double RangeHigh = 0;
  std::int16_t ExponentLow = 0;
  std::int16_t ExponentHigh = 0;
  std::int16_t Decimals = 0;
  std::array<std::int16_t, 4> AlarmKind{};
  std::array<std::int16_t, 4> AlarmOutput{};
  std::array<double, 4> AlarmValue{};
};

struct DiInfo {
  std::int16_t DiNo = 0;  // 128 + n for DI n
  std::string Tag;
  std::int16_t ColorNo = 0;
  std::int16_t ScaleLow = 0;
  std::int16_t ScaleHigh = 0;
  std::int16_t RecordType = 0;  // 0: two states a sample
};

struct GroupInfo {
  std::string GroupName;
  std::array<std::int16_t, 10> Members{};  // channel number, 128 + n for DI n, 0 empty
};

struct RecordFileInfo {
  std::string FileNameText;
  std::string ModelText;
  std::string SerialText;
  std::string VersionText;
  std::int16_t DiCount = 0;
  std::int16_t AnalogCount = 0;
  std::int16_t SamplingCode = 0;
  std::int16_t GroupCount = 0;  // as used: 4 when the file says 0 or no number
  std::vector<ChannelInfo> Channels;
  std::vector<DiInfo> Dis;
  std::array<GroupInfo, 8> Groups{};
  std::vector<std::int32_t> LevelRows;  // rows of level 1, 2, ... at [0], [1], ...
  std::int32_t DataStart = 0;
  std::int32_t FirstTime = 0;
  std::int32_t LastTime = 0;
  std::int16_t InUse = 0;  // -1 when the slot holds a file
  std::int16_t Thinned = 0;
  std::int16_t ChannelTotal = 0;
  std::string FilePath;
  std::int16_t FileFormat = 0;  // 0 older text, 1 text, 2 binary
  std::int32_t FileLength = 0;
  std::int16_t TopLevel = 0;
  std::int16_t LevelStep = 0;
  std::int32_t OverviewStep = 0;
  std::int32_t CursorStep = 0;
  std::int32_t RecordLength = 0;
  std::int32_t ColumnCount = 0;
  std::int32_t RecordCount = 0;
  std::int32_t FirstRecord = 1;
  std::int32_t LastRecord = 0;
};

// Where the text of a drawn event mark lies on a surface, for the hit test of the
// plot. Each surface keeps its own (see TrendPlacement).
struct TextBox {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Right = 0;
  std::int32_t Bottom = 0;
};

struct AlarmEvent {
  std::int32_t Time = 0;
  std::string Kind = "A";
  std::int16_t ChannelNo = 0;
  std::int16_t AlarmNo = 0;
  std::int16_t AlarmAction = 0;  // index of the texts "OFF", "H", "L", "DH", "DL", "RH", "RL"
  std::int16_t AlarmState = 0;   // 1 raised, 0 cleared
  std::int16_t Shown = 0;
  std::int16_t Position = 2;
};

struct MessageEvent {
  std::int32_t Time = 0;
  std::string Kind = "M";
  std::string Text;
  std::int16_t MessageColor = 0;
  std::int16_t Shown = 0;
  std::int16_t Position = 5;
};

// A flag set by the operator, kept in the flag file.
struct FlagEvent {
  std::int32_t Time = 0;
  std::string Text;
  std::int16_t Shown = 0;
  std::int16_t Position = 5;
};

struct AlarmFileInfo {
  std::string FileNameText;
  std::string ModelText;
  std::string SerialText;
  std::string VersionText;
  std::vector<AlarmEvent> Alarms;
  std::vector<MessageEvent> Messages;
  std::string AlarmPath;  // empty when there is no alarm file
  std::int32_t AlarmLength = 0;
  std::int32_t AlarmCount = 0;
  std::int32_t MessageCount = 0;
};

// Result numbers of the read steps, turned into messages by the open pipeline.
enum OpenResultCode : std::int16_t {
  kWrongFile = 0,        // 11190
  kNoChannels = 1,       // 11191
  kNoGroupMember = 2,    // 11192
  kNoRecords = 3,        // 11193
  kBrokenRecords = 4,    // 11194
  kNoDiskSpace = 5,      // 11195
  kTooManyChannels = 6,  // 11196
};

// The catalogue id that reports a result number; numbers outside 0..6 give 11190.
int OpenResultMessageId(int result);

// Seconds per record of a sampling code; a code outside 0..20 gives `previous`.
std::int32_t SamplePeriodOfCode(int samplingCode, std::int32_t previous);

}  // namespace recscope
