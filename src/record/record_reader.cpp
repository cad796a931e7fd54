#include "record/record_reader.h"

#include <cmath>
#include <optional>

#include "record/number_field.h"
#include "record/record_fields.h"
#include "record/record_writer.h"
#include "record/working_files.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kValid = -1;
constexpr int kMaxChannels = 72;
constexpr std::size_t kBinaryHeader = 108, kBinaryChannel = 56, kBinaryDi = 24, kBinaryGroup = 26;
constexpr std::size_t kTextHeader = 136, kTextChannel = 135, kTextDi = 44, kTextGroup = 51;
constexpr int kGroupRecordsRead = 8;

bool FitsI16(std::int64_t v) { return v >= INT16_MIN && v <= INT16_MAX; }

// A field of the text encoding that must hold a whole number of 16 bits.
bool TextInt(std::string_view b, std::size_t at, std::size_t width, std::int16_t &out) {
  std::optional<std::int32_t> v = ReadIntegerField(b.substr(at, width));
  if (!v || !FitsI16(*v)) return false;
  out = static_cast<std::int16_t>(*v);
  return true;
}

bool TextNumber(std::string_view b, std::size_t at, int decimals, std::int32_t &out) {
  // A 7-character field has no place for a point with more than 6 decimals.
  if (decimals > 6) return false;
  std::optional<std::int32_t> v = ReadNumberField(b.substr(at, 7), decimals);
  if (!v || !FitsI16(*v)) return false;
  out = *v;
  return true;
}

double Scaled(std::int32_t raw, int decimals) { return raw * std::pow(10.0, -decimals); }

// The rules every channel goes through after its fields are read.
void SettleChannel(ChannelInfo &c) {
  if (c.InputType >= 15 && c.InputType <= 18)
    c.InputType = static_cast<std::int16_t>(c.InputType + 15);
  if (c.ScaleKind == 1) {
    if (c.ExponentLow >= 247 && c.ExponentLow <= 255)
      c.ExponentLow = static_cast<std::int16_t>(c.ExponentLow - 256);
    if (c.ExponentHigh >= 247 && c.ExponentHigh <= 255)
      c.ExponentHigh = static_cast<std::int16_t>(c.ExponentHigh - 256);
  }
  if (c.ScaleLow == c.ScaleHigh) {
    const bool widenUp = c.ScaleKind == 1 ? c.ScaleLow < -8 : c.ScaleLow == INT16_MIN;
    if (widenUp)
      c.ScaleHigh = static_cast<std::int16_t>(c.ScaleHigh + 1);
    else
      c.ScaleLow = static_cast<std::int16_t>(c.ScaleLow - 1);
  }
  if (c.ScaleKind == 1) {
    c.DisplayLow = c.ScaleLow;
    c.DisplayHigh = c.ScaleHigh;
  } else {
    c.DisplayLow = Scaled(c.ScaleLow, c.Decimals);
    c.DisplayHigh = Scaled(c.ScaleHigh, c.Decimals);
  }
  c.RecordedLow = c.DisplayLow;
  c.RecordedHigh = c.DisplayHigh;
}

// Channel count rules shared by both encodings, checked when the header is read.
int CheckCounts(const RecordFileInfo &info) {
  if (info.AnalogCount < 0 || info.DiCount < 0) return kWrongFile;
  const int total = info.AnalogCount + info.DiCount;
  if (total > kMaxChannels) return kTooManyChannels;
  if (total == 0) return kNoChannels;
  if (info.GroupCount < 0 || info.GroupCount > 8) return kWrongFile;
  return kValid;
}

// ---- binary ----

int ReadBinaryHeader(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  if (!src.Read(0, kBinaryHeader, b)) return kWrongFile;
  info.FileNameText = TextAt(b, 0, 32);
  info.ModelText = TextAt(b, 34, 32);
  info.SerialText = TextAt(b, 68, 20);
  info.VersionText = TextAt(b, 88, 12);
  info.AnalogCount = U8At(b, 103);
  info.SamplingCode = U8At(b, 104);
  info.DiCount = U8At(b, 106);
  info.GroupCount = U8At(b, 107);
  if (info.GroupCount == 0) info.GroupCount = 4;
  return CheckCounts(info);
}

int ReadBinaryChannels(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  if (!src.Read(kBinaryHeader, kBinaryChannel * info.AnalogCount, b)) return kWrongFile;
  info.Channels.assign(info.AnalogCount, {});
  for (int i = 0; i < info.AnalogCount; ++i) {
    std::string_view r = std::string_view(b).substr(i * kBinaryChannel, kBinaryChannel);
    ChannelInfo &c = info.Channels[i];
    c.ChannelNo = U8At(r, 0);
    c.Tag = TextAt(r, 1, 16);
    c.ColorNo = U8At(r, 17);
    c.InputType = U8At(r, 18);
    c.Unit = TextAt(r, 19, 7);
    c.ScaleLow = I16At(r, 26);
    c.ScaleHigh = I16At(r, 28);
    c.RecordType = U8At(r, 30);
    c.ScaleKind = U8At(r, 31);
    c.ExponentLow = U8At(r, 36);
    c.ExponentHigh = U8At(r, 37);
    c.Decimals = U8At(r, 38);
    c.RangeLow = Scaled(I16At(r, 32), c.Decimals);
    c.RangeHigh = Scaled(I16At(r, 34), c.Decimals);
    for (int k = 0; k < 4; ++k) {
      c.AlarmKind[k] = U8At(r, 40 + 4 * k);
      c.AlarmOutput[k] = U8At(r, 41 + 4 * k);
      c.AlarmValue[k] = Scaled(I16At(r, 42 + 4 * k), c.Decimals);
    }
    SettleChannel(c);
  }
  return kValid;
}

int ReadBinaryDis(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  const std::int64_t at = kBinaryHeader + kBinaryChannel * info.AnalogCount;
  if (!src.Read(at, kBinaryDi * info.DiCount, b)) return kWrongFile;
  info.Dis.assign(info.DiCount, {});
  for (int i = 0; i < info.DiCount; ++i) {
    std::string_view r = std::string_view(b).substr(i * kBinaryDi, kBinaryDi);
    DiInfo &d = info.Dis[i];
    d.DiNo = U8At(r, 0);
    d.Tag = TextAt(r, 1, 16);
    d.ColorNo = U8At(r, 17);
    d.ScaleLow = I16At(r, 18);
    d.ScaleHigh = I16At(r, 20);
    d.RecordType = U8At(r, 22);
  }
  return kValid;
}

std::int64_t GroupTableAt(const RecordFileInfo &info, bool binary) {
  if (binary) return kBinaryHeader + kBinaryChannel * info.AnalogCount + kBinaryDi * info.DiCount;
  return kTextHeader + kTextChannel * info.AnalogCount + kTextDi * info.DiCount;
}

// The group table is read as if it had 8 records; bytes beyond the end of the
// file read as zeros (binary) or blanks (text). Only GroupCount records count,
// and those must lie in the file.
bool ReadGroupRegion(const ByteSource &src, const RecordFileInfo &info, bool binary,
                     std::string &b) {
  const std::size_t size = binary ? kBinaryGroup : kTextGroup;
  const std::int64_t at = GroupTableAt(info, binary);
  if (at + static_cast<std::int64_t>(size) * info.GroupCount > src.Length()) return false;
  const std::int64_t available =
      std::min<std::int64_t>(size * kGroupRecordsRead, src.Length() - at);
  if (!src.Read(at, static_cast<std::size_t>(available), b)) return false;
  b.resize(size * kGroupRecordsRead, binary ? '\0' : ' ');
  return true;
}

int ReadBinaryGroups(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  if (!ReadGroupRegion(src, info, true, b)) return kWrongFile;
  for (int g = 0; g < info.GroupCount; ++g) {
    std::string_view r = std::string_view(b).substr(g * kBinaryGroup, kBinaryGroup);
    info.Groups[g].GroupName = TextAt(r, 0, 16);
    for (int m = 0; m < 10; ++m) info.Groups[g].Members[m] = U8At(r, 16 + m);
  }
  return kValid;
}

// ---- text ----

int ReadTextHeader(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  if (!src.Read(0, kTextHeader, b)) return kWrongFile;
  if (b[135] != '\n') return kWrongFile;
  info.FileNameText = TextAt(b, 0, 32);
  info.ModelText = TextAt(b, 34, 32);
  info.SerialText = TextAt(b, 68, 20);
  info.VersionText = TextAt(b, 88, 12);
  if (!TextInt(b, 102, 2, info.AnalogCount) || !TextInt(b, 105, 2, info.SamplingCode))
    return kWrongFile;
  info.DiCount = 0;
  if (info.FileFormat == 1 && !TextInt(b, 111, 2, info.DiCount)) return kWrongFile;
  std::optional<std::int32_t> groups = ReadIntegerField(std::string_view(b).substr(114, 10));
  info.GroupCount = groups && FitsI16(*groups) ? static_cast<std::int16_t>(*groups) : 4;
  if (info.GroupCount == 0) info.GroupCount = 4;
  return CheckCounts(info);
}

int ReadTextChannels(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  if (!src.Read(kTextHeader, kTextChannel * info.AnalogCount, b)) return kWrongFile;
  info.Channels.assign(info.AnalogCount, {});
  for (int i = 0; i < info.AnalogCount; ++i) {
    std::string_view r = std::string_view(b).substr(i * kTextChannel, kTextChannel);
    ChannelInfo &c = info.Channels[i];
    c.ChannelLabel = TextAt(r, 0, 4);
    c.Tag = TextAt(r, 5, 16);
    c.Unit = TextAt(r, 28, 7);
    if (!TextInt(r, 2, 2, c.ChannelNo) || !TextInt(r, 22, 2, c.ColorNo) ||
        !TextInt(r, 25, 2, c.InputType) || !TextInt(r, 52, 1, c.RecordType) ||
        !TextInt(r, 54, 1, c.ScaleKind) || !TextInt(r, 72, 3, c.ExponentLow) ||
        !TextInt(r, 76, 3, c.ExponentHigh) || !TextInt(r, 80, 1, c.Decimals))
      return kWrongFile;
    const int scaleDecimals = c.ScaleKind == 1 ? 0 : c.Decimals;
    std::int32_t low = 0, high = 0, rangeLow = 0, rangeHigh = 0;
    if (!TextNumber(r, 36, scaleDecimals, low) || !TextNumber(r, 44, scaleDecimals, high) ||
        !TextNumber(r, 56, c.Decimals, rangeLow) || !TextNumber(r, 64, c.Decimals, rangeHigh))
      return kWrongFile;
    c.ScaleLow = static_cast<std::int16_t>(low);
    c.ScaleHigh = static_cast<std::int16_t>(high);
    c.RangeLow = Scaled(rangeLow, c.Decimals);
    c.RangeHigh = Scaled(rangeHigh, c.Decimals);
    for (int k = 0; k < 4; ++k) {
      const std::size_t at = 82 + 13 * static_cast<std::size_t>(k);
      std::int32_t value = 0;
      if (!TextInt(r, at, 1, c.AlarmKind[k]) || !TextInt(r, at + 2, 2, c.AlarmOutput[k]) ||
          !TextNumber(r, at + 5, c.Decimals, value))
        return kWrongFile;
      c.AlarmValue[k] = Scaled(value, c.Decimals);
    }
    SettleChannel(c);
  }
  return kValid;
}

int ReadTextDis(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  const std::int64_t at = kTextHeader + kTextChannel * info.AnalogCount;
  if (!src.Read(at, kTextDi * info.DiCount, b)) return kWrongFile;
  info.Dis.assign(info.DiCount, {});
  for (int i = 0; i < info.DiCount; ++i) {
    std::string_view r = std::string_view(b).substr(i * kTextDi, kTextDi);
    DiInfo &d = info.Dis[i];
    d.Tag = TextAt(r, 5, 16);
    if (!TextInt(r, 2, 2, d.DiNo) || !TextInt(r, 22, 2, d.ColorNo) ||
        !TextInt(r, 25, 7, d.ScaleLow) || !TextInt(r, 33, 7, d.ScaleHigh) ||
        !TextInt(r, 41, 1, d.RecordType))
      return kWrongFile;
    d.DiNo = static_cast<std::int16_t>(d.DiNo + 128);
  }
  return kValid;
}

// A member field: "D" and a digit is DI n, digits a channel; anything that is no
// number reads as an empty place.
std::int16_t TextMember(std::string_view field) {
  if (field.size() == 2 && field[0] == 'D' && field[1] >= '0' && field[1] <= '9')
    return static_cast<std::int16_t>(128 + (field[1] - '0'));
  std::optional<std::int32_t> v = ReadIntegerField(field);
  return v && FitsI16(*v) ? static_cast<std::int16_t>(*v) : 0;
}

int ReadTextGroups(const ByteSource &src, RecordFileInfo &info) {
  std::string b;
  if (!ReadGroupRegion(src, info, false, b)) return kWrongFile;
  for (int g = 0; g < info.GroupCount; ++g) {
    std::string_view r = std::string_view(b).substr(g * kTextGroup, kTextGroup);
    info.Groups[g].GroupName = TextAt(r, 3, 16);
    for (int m = 0; m < 10; ++m) info.Groups[g].Members[m] = TextMember(r.substr(20 + 3 * m, 2));
  }
  return kValid;
}

// ---- both ----

int CheckMembers(const RecordFileInfo &info) {
  bool anyMember = false;
  for (int g = 0; g < info.GroupCount; ++g) {
    for (std::int16_t m : info.Groups[g].Members) {
      if (m == 0) continue;
      bool known = false;
      for (const ChannelInfo &c : info.Channels) known = known || c.ChannelNo == m;
      for (const DiInfo &d : info.Dis) known = known || d.DiNo == m;
      if (!known) return kWrongFile;
      anyMember = true;
    }
  }
  return anyMember ? kValid : kNoGroupMember;
}

bool RecordTime(const ByteSource &src, const RecordFileInfo &info, std::int64_t at,
                std::int32_t &time) {
  std::string b;
  if (info.FileFormat == 2) {
    if (!src.Read(at, 4, b)) return false;
    time = I32At(b, 0);
    return true;
  }
  if (!src.Read(at, 19, b)) return false;
  std::optional<std::int64_t> t = ParseRecordTime(b);
  if (!t || *t < INT32_MIN || *t > INT32_MAX) return false;
  time = static_cast<std::int32_t>(*t);
  return true;
}

int ReadDataLimits(const ByteSource &src, RecordFileInfo &info, std::int32_t &period,
                   const LevelPlan &plan) {
  const bool binary = info.FileFormat == 2;
  const std::int64_t groups = GroupTableRecords(info.GroupCount);
  info.RecordLength = GetRecordLength(info, info.FileFormat);
  const std::int64_t start =
      binary ? GroupTableAt(info, true) + kBinaryGroup * groups + 2
             : GroupTableAt(info, false) + kTextGroup * groups + info.RecordLength;
  info.ChannelTotal = static_cast<std::int16_t>(info.AnalogCount + info.DiCount);
  info.ColumnCount =
      binary ? info.AnalogCount + 1 + (info.DiCount > 0 ? 1 : 0) : info.ChannelTotal + 1;
  const std::int64_t length = src.Length();
  if (length == start) return kNoRecords;
  if (length < start || length > INT32_MAX) return kWrongFile;
  if ((length - start) % info.RecordLength != 0) return kBrokenRecords;
  info.DataStart = static_cast<std::int32_t>(start);
  info.RecordCount = static_cast<std::int32_t>((length - start) / info.RecordLength);
  if (!RecordTime(src, info, start, info.FirstTime) ||
      !RecordTime(src, info, length - info.RecordLength, info.LastTime))
    return kWrongFile;
  info.FirstRecord = 1;
  info.LastRecord = info.RecordCount;
  period = SamplePeriodOfCode(info.SamplingCode, period);
  PlanLevels(info, plan.levelBase, plan.levelRowLimit);
  return kValid;
}

}  // namespace

bool MemorySource::Read(std::int64_t offset, std::size_t size, std::string &out) const {
  if (offset < 0 || offset > Length() || static_cast<std::int64_t>(size) > Length() - offset)
    return false;
  out.assign(bytes_.substr(static_cast<std::size_t>(offset), size));
  return true;
}

FileSource::FileSource(const std::string &path) {
  file_ = std::fopen(path.c_str(), "rb");
  if (!file_) return;
  if (std::fseek(file_, 0, SEEK_END) == 0) length_ = std::ftell(file_);
  if (length_ < 0) length_ = 0;
}

FileSource::~FileSource() {
  if (file_) std::fclose(file_);
}

bool FileSource::Read(std::int64_t offset, std::size_t size, std::string &out) const {
  if (!file_ || offset < 0 || offset > length_ ||
      static_cast<std::int64_t>(size) > length_ - offset)
    return false;
  out.resize(size);
  if (std::fseek(file_, static_cast<long>(offset), SEEK_SET) != 0) return false;
  return std::fread(out.data(), 1, size, file_) == size;
}

int DetectFileFormat(const ByteSource &source) {
  std::string b;
  const char at102 = source.Read(102, 1, b) ? b[0] : '\0';
  const char at110 = source.Read(110, 1, b) ? b[0] : '\0';
  if (at102 == '\0') return 2;
  return at110 == ',' ? 1 : 0;
}

int ReadRecordTables(const ByteSource &source, RecordFileInfo &info, std::int32_t &period,
                     const LevelPlan &plan) {
  const bool binary = info.FileFormat == 2;
  int result = binary ? ReadBinaryHeader(source, info) : ReadTextHeader(source, info);
  if (result == kValid && info.AnalogCount > 0)
    result = binary ? ReadBinaryChannels(source, info) : ReadTextChannels(source, info);
  if (result == kValid && info.DiCount > 0)
    result = binary ? ReadBinaryDis(source, info) : ReadTextDis(source, info);
  if (result == kValid)
    result = binary ? ReadBinaryGroups(source, info) : ReadTextGroups(source, info);
  if (result == kValid) result = CheckMembers(info);
  if (result == kValid) result = ReadDataLimits(source, info, period, plan);
  return result;
}

int ReadRecordBytes(std::string_view bytes, RecordFileInfo &info, std::int32_t &period,
                    const LevelPlan &plan) {
  MemorySource source(bytes);
  info.FileLength = static_cast<std::int32_t>(std::min<std::size_t>(bytes.size(), INT32_MAX));
  info.FileFormat = static_cast<std::int16_t>(DetectFileFormat(source));
  return ReadRecordTables(source, info, period, plan);
}

}  // namespace recscope
