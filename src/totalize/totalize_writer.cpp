#include "totalize/totalize_writer.h"

#include <cstddef>
#include <cstdlib>

#include "record/record_fields.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

std::string RightAligned(std::string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

// raw x 10^-decimals with its point, no padding.
std::string PointText(std::int32_t raw, int decimals) {
  if (decimals <= 0) return std::to_string(raw);
  std::string digits = std::to_string(std::llabs(static_cast<long long>(raw)));
  const auto d = static_cast<std::size_t>(decimals);
  if (digits.size() <= d) digits.insert(0, d + 1 - digits.size(), '0');
  digits.insert(digits.size() - d, ".");
  if (raw < 0) digits.insert(0, "-");
  return digits;
}

}  // namespace

std::int32_t TotalizeRecordLength(int channelCount, bool binary) {
  return binary ? 8 + 4 * channelCount : 41 + 12 * channelCount;
}

std::string TotalizeValueField(std::int32_t raw, int decimals) {
  return RightAligned(PointText(raw, decimals), 11);
}

std::string TotalizeHeaderBytes(const TotalizeFileContent &content, bool binary) {
  std::string out;
  out += FixedCp932(content.HeaderText1, 34);
  out += FixedCp932(content.HeaderText2, 34);
  out += FixedCp932(content.HeaderText3, 20);
  out += FixedCp932(content.VersionText, 14);
  const int n = static_cast<int>(content.Channels.size());
  const std::size_t tableSize = content.GroupCount == 8 ? 8 : 4;
  if (binary) {
    PutU8(out, 0);  // the mark of the binary encoding
    PutU8(out, n);
    out.append(3, '\0');
    PutU8(out, content.GroupCount);
    for (const TotalizeChannelContent &c : content.Channels) {
      PutU8(out, c.ChannelNo);
      out += FixedCp932(c.Tag, 8);
      PutU8(out, c.Setting1);
      PutU8(out, c.ActionType);
      out += FixedCp932(c.Unit, 7);
      PutI16(out, c.Scale);
      PutU8(out, c.Decimals);
      PutU8(out, 0);
    }
    for (std::size_t g = 0; g < tableSize; ++g) {
      const TotalizeGroupContent empty;
      const TotalizeGroupContent &group = g < content.Groups.size() ? content.Groups[g] : empty;
      out += FixedCp932(group.GroupName, 16);
      for (int member : group.Members) PutU8(out, member);
    }
    PutI16(out, content.EndMark);
    return out;
  }
  // The count line: channel count at 102, group count at 114, LF at 135.
  std::string line = ZeroNumber(n, 2);
  line.resize(12, ' ');
  line += content.TextGroupCount.empty() ? ZeroNumber(content.GroupCount, 2)
                                         : content.TextGroupCount.substr(0, 2);
  line.resize(32, ' ');
  line += "\r\n";
  out += line;
  for (const TotalizeChannelContent &c : content.Channels) {
    std::string l = "CH" + ZeroNumber(c.ChannelNo, 2) + "," + FixedCp932(c.Tag, 8) + "," +
                    ZeroNumber(c.Setting1, 2) + "," + ZeroNumber(c.ActionType, 2) + "," +
                    FixedCp932(c.Unit, 7) + "," + RightAligned(PointText(c.Scale, c.Decimals), 7) +
                    "," + ZeroNumber(c.Decimals, 1) + " \r\n";
    out += l;
  }
  for (std::size_t g = 0; g < tableSize; ++g) {
    const TotalizeGroupContent empty;
    const TotalizeGroupContent &group = g < content.Groups.size() ? content.Groups[g] : empty;
    std::string l = "G" + std::to_string(g + 1) + "," + FixedCp932(group.GroupName, 16);
    for (int member : group.Members) l += "," + ZeroNumber(member, 2);
    l += "\r\n";
    out += l;
  }
  return out;
}

void AppendTotalizeRecord(std::string &out, const TotalizeFileContent &content, bool binary,
                          const TotalizeRecordContent &record) {
  const std::size_t n = content.Channels.size();
  if (binary) {
    PutI32(out, record.StartTime);
    PutI32(out, record.EndTime);
    for (std::size_t i = 0; i < n; ++i)
      PutI32(out, i < record.Values.size() ? record.Values[i] : 0);
    return;
  }
  out += RecordTimeText(record.StartTime) + "," + RecordTimeText(record.EndTime) + ",";
  for (std::size_t i = 0; i < n; ++i) {
    out += TotalizeValueField(i < record.Values.size() ? record.Values[i] : 0,
                              content.Channels[i].Decimals);
    out += i + 1 < n ? "," : "\r";
  }
  if (n == 0) out += "\r";
  out += "\n";
}

std::string TotalizeFileBytes(const TotalizeFileContent &content, bool binary,
                              const std::vector<TotalizeRecordContent> &records) {
  std::string out = TotalizeHeaderBytes(content, binary);
  for (const TotalizeRecordContent &r : records) AppendTotalizeRecord(out, content, binary, r);
  return out;
}

bool WriteTotalizeFile(const std::string &path, const TotalizeFileContent &content, bool binary,
                       const std::vector<TotalizeRecordContent> &records) {
  return WriteWholeFile(path, TotalizeFileBytes(content, binary, records));
}

}  // namespace recscope
