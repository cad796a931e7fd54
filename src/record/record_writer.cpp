#include "record/record_writer.h"

#include <cstdio>
#include <filesystem>

#include "record/record_fields.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

const char *const kCrLf = "\r\n";

int ExponentByte(int exponent) { return exponent < 0 ? exponent + 256 : exponent; }

std::string FileHeader102(const RecordFileInfo &info) {
  std::string out;
  out += FixedCp932(info.FileNameText, 32) + kCrLf;
  out += FixedCp932(info.ModelText, 32) + kCrLf;
  out += FixedCp932(info.SerialText, 20);
  out += FixedCp932(info.VersionText, 12) + kCrLf;
  return out;
}

std::string BinaryChannel(const ChannelInfo &c) {
  std::string out;
  PutU8(out, c.ChannelNo);
  out += FixedCp932(c.Tag, 16);
  PutU8(out, c.ColorNo);
  PutU8(out, c.InputType);
  out += FixedCp932(c.Unit, 7);
  PutI16(out, c.ScaleLow);
  PutI16(out, c.ScaleHigh);
  PutU8(out, c.RecordType);
  PutU8(out, c.ScaleKind);
  PutI16(out, RawOfValue(c.RangeLow, c.Decimals));
  PutI16(out, RawOfValue(c.RangeHigh, c.Decimals));
  PutU8(out, ExponentByte(c.ExponentLow));
  PutU8(out, ExponentByte(c.ExponentHigh));
  PutU8(out, c.Decimals);
  PutU8(out, 0);
  for (int i = 0; i < 4; ++i) {
    PutU8(out, c.AlarmKind[i]);
    PutU8(out, c.AlarmOutput[i]);
    PutI16(out, RawOfValue(c.AlarmValue[i], c.Decimals));
  }
  return out;
}

std::string TextScaleField(const ChannelInfo &c, int raw) {
  return c.ScaleKind == 1 ? RightNumber(raw, 7) : NumberFieldText(raw, c.Decimals);
}

std::string TextChannel(const ChannelInfo &c) {
  std::string out = "CH" + ZeroNumber(c.ChannelNo, 2) + ",";
  out += FixedCp932(c.Tag, 16) + ",";
  out += ZeroNumber(c.ColorNo, 2) + ",";
  out += ZeroNumber(c.InputType, 2) + ",";
  out += FixedCp932(c.Unit, 7) + ",";
  out += TextScaleField(c, c.ScaleLow) + ",";
  out += TextScaleField(c, c.ScaleHigh) + ",";
  out += std::to_string(c.RecordType % 10) + ",";
  out += std::to_string(c.ScaleKind % 10) + ",";
  out += NumberFieldText(RawOfValue(c.RangeLow, c.Decimals), c.Decimals) + ",";
  out += NumberFieldText(RawOfValue(c.RangeHigh, c.Decimals), c.Decimals) + ",";
  out += ZeroNumber(ExponentByte(c.ExponentLow), 3) + ",";
  out += ZeroNumber(ExponentByte(c.ExponentHigh), 3) + ",";
  out += std::to_string(c.Decimals % 10);
  for (int i = 0; i < 4; ++i) {
    out += "," + std::to_string(c.AlarmKind[i] % 10);
    out += "," + ZeroNumber(c.AlarmOutput[i], 2);
    out += "," + NumberFieldText(RawOfValue(c.AlarmValue[i], c.Decimals), c.Decimals);
  }
  return out + kCrLf;
}

std::string BinaryDi(const DiInfo &d) {
  std::string out;
  PutU8(out, d.DiNo);
  out += FixedCp932(d.Tag, 16);
  PutU8(out, d.ColorNo);
  PutI16(out, d.ScaleLow);
  PutI16(out, d.ScaleHigh);
  PutU8(out, d.RecordType);
  PutU8(out, 0);
  return out;
}

std::string TextDi(const DiInfo &d) {
  std::string out = "DI" + ZeroNumber(d.DiNo - 128, 2) + ",";
  out += FixedCp932(d.Tag, 16) + ",";
  out += ZeroNumber(d.ColorNo, 2) + ",";
  out += RightNumber(d.ScaleLow, 7) + ",";
  out += RightNumber(d.ScaleHigh, 7) + ",";
  out += std::to_string(d.RecordType % 10);
  return out + kCrLf;
}

std::string TextMember(int member) {
  if (member > 128) return "D" + std::to_string((member - 128) % 10);
  return ZeroNumber(member, 2);
}

// The line of column titles in front of the text data: as long as a record.
std::string TitleLine(const RecordFileInfo &info, std::int32_t recordLength) {
  std::string out = FixedCp932("Date Time", 19);
  for (const ChannelInfo &c : info.Channels) {
    int units = c.RecordType == 0 ? 2 : 1;
    for (int u = 0; u < units; ++u) out += "," + FixedCp932("CH" + ZeroNumber(c.ChannelNo, 2), 7);
  }
  for (const DiInfo &d : info.Dis) {
    int units = d.RecordType == 0 ? 2 : 1;
    for (int u = 0; u < units; ++u) out += "," + FixedCp932("DI" + ZeroNumber(d.DiNo - 128, 2), 7);
  }
  out.resize(static_cast<std::size_t>(recordLength) - 2, ' ');
  return out + kCrLf;
}

}  // namespace

int GroupTableRecords(int groupCount) { return groupCount == 8 ? 8 : 4; }

int AnalogUnitCount(const RecordFileInfo &info) {
  int units = 0;
  for (const ChannelInfo &c : info.Channels) units += c.RecordType == 0 ? 2 : 1;
  return units;
}

int TextDiUnitCount(const RecordFileInfo &info) {
  int units = 0;
  for (const DiInfo &d : info.Dis) units += d.RecordType == 0 ? 2 : 1;
  return units;
}

std::int32_t GetRecordLength(const RecordFileInfo &info, int fileFormat) {
  if (fileFormat == 2) return 4 + 2 * AnalogUnitCount(info) + (info.Dis.empty() ? 0 : 2);
  return 21 + 8 * (AnalogUnitCount(info) + TextDiUnitCount(info));
}

RecordWriter::RecordWriter(const RecordFileInfo &info, int fileFormat)
    : info_(info), format_(fileFormat) {
  if (format_ == 0) info_.Dis.clear();
  info_.AnalogCount = static_cast<std::int16_t>(info_.Channels.size());
  info_.DiCount = static_cast<std::int16_t>(info_.Dis.size());
  recordLength_ = GetRecordLength(info_, format_);
}

std::string RecordWriter::HeaderBytes() const {
  std::string out = FileHeader102(info_);
  const int groups = GroupTableRecords(info_.GroupCount);
  if (format_ == 2) {
    PutU8(out, 0);
    PutU8(out, info_.AnalogCount);
    PutU8(out, info_.SamplingCode);
    PutU8(out, 0);
    PutU8(out, info_.DiCount);
    PutU8(out, info_.GroupCount);
    for (const ChannelInfo &c : info_.Channels) out += BinaryChannel(c);
    for (const DiInfo &d : info_.Dis) out += BinaryDi(d);
    for (int g = 0; g < groups; ++g) {
      out += FixedCp932(info_.Groups[g].GroupName, 16);
      for (std::int16_t m : info_.Groups[g].Members) PutU8(out, m);
    }
    return out + kCrLf;
  }
  out += ZeroNumber(info_.AnalogCount, 2) + ",";
  out += ZeroNumber(info_.SamplingCode, 2) + ",08";
  out += format_ == 1 ? "," + ZeroNumber(info_.DiCount, 2) + "," : std::string("    ");
  out += FixedCp932(ZeroNumber(info_.GroupCount, 2), 10);
  out += std::string(10, ' ') + kCrLf;
  for (const ChannelInfo &c : info_.Channels) out += TextChannel(c);
  for (const DiInfo &d : info_.Dis) out += TextDi(d);
  for (int g = 0; g < groups; ++g) {
    out += "G" + std::to_string(g + 1) + ",";
    out += FixedCp932(info_.Groups[g].GroupName, 16);
    for (std::int16_t m : info_.Groups[g].Members) out += "," + TextMember(m);
    out += kCrLf;
  }
  return out + TitleLine(info_, recordLength_);
}

void RecordWriter::AppendRecord(std::string &out, const DataRecord &record) const {
  AppendRecord(out, record.Time, record.Units, record.DiStates);
}

void RecordWriter::AppendRecord(std::string &out, std::int32_t time,
                                std::span<const std::int16_t> units,
                                std::span<const std::uint8_t> diStates) const {
  const std::size_t analogUnits = static_cast<std::size_t>(AnalogUnitCount(info_));
  auto unit = [&](std::size_t i) -> std::int16_t { return i < units.size() ? units[i] : 0; };
  auto state = [&](std::size_t i) -> int { return i < diStates.size() && diStates[i] ? 1 : 0; };
  if (format_ == 2) {
    PutI32(out, time);
    for (std::size_t i = 0; i < analogUnits; ++i) PutI16(out, unit(i));
    if (!info_.Dis.empty()) {
      int word = 0;
      for (std::size_t n = 0; n < info_.Dis.size() && n < 8; ++n) {
        const bool twoStates = info_.Dis[n].RecordType == 0;
        word |= state(2 * n) << (2 * n);
        word |= (twoStates ? state(2 * n + 1) : state(2 * n)) << (2 * n + 1);
      }
      PutI16(out, word);
    }
    return;
  }
  out += RecordTimeText(time);
  std::size_t u = 0;
  for (const ChannelInfo &c : info_.Channels) {
    const int count = c.RecordType == 0 ? 2 : 1;
    for (int k = 0; k < count; ++k, ++u) out += "," + NumberFieldText(unit(u), c.Decimals);
  }
  for (std::size_t n = 0; n < info_.Dis.size(); ++n) {
    out += "," + RightNumber(state(2 * n), 7);
    if (info_.Dis[n].RecordType == 0) out += "," + RightNumber(state(2 * n + 1), 7);
  }
  out += kCrLf;
}

bool WriteWholeFile(const std::string &path, const std::string &bytes) {
  std::FILE *file = std::fopen(path.c_str(), "wb");
  if (!file) return false;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  ok = std::fclose(file) == 0 && ok;
  if (!ok) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  return ok;
}

bool WriteRecordFile(const std::string &path, const RecordFileInfo &info, int fileFormat,
                     const std::vector<DataRecord> &records) {
  RecordWriter writer(info, fileFormat);
  std::string bytes = writer.HeaderBytes();
  bytes.reserve(bytes.size() + records.size() * static_cast<std::size_t>(writer.RecordLength()));
  for (const DataRecord &r : records) writer.AppendRecord(bytes, r);
  return WriteWholeFile(path, bytes);
}

}  // namespace recscope
