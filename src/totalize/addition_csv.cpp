#include "totalize/addition_csv.h"

#include <algorithm>

#include "platform/text_encoding.h"
#include "record/number_field.h"
#include "record/output_files.h"
#include "record/record_fields.h"
#include "record/record_reader.h"
#include "shell/civil_time.h"
#include "totalize/addition.h"

namespace recscope {

namespace {

constexpr int kCsvDone = 11132;
constexpr int kCsvOutputExists = 11130;
constexpr int kCsvFailed = 11131;
constexpr std::int64_t kLineLimit = 65536;
constexpr std::size_t kValueWidth = 11;
constexpr std::size_t kRecordsAChunk = 4096;
constexpr const char *kCrLf = "\r\n";

std::string PadLeft(std::string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

std::string ChannelHead(int channelNo) { return "CH" + ZeroNumber(channelNo, 2); }

// The bar of the conversion: its maximum and the records a step.
struct CsvBar {
  int maximum = 0;
  std::int64_t step = 1;
};
CsvBar BarOf(std::int64_t records) {
  if (records >= 100) return {100, records / 100 + (records % 100 != 0 ? 1 : 0)};
  return {static_cast<int>(records), 1};
}

}  // namespace

TotalizeCsvPlan PlanTotalizeCsv(const std::string &sourcePath, std::int64_t channelCount,
                                std::int64_t recordCount) {
  TotalizeCsvPlan plan;
  const std::int64_t lines = channelCount + recordCount + 9;
  if (lines <= kLineLimit) {
    plan.Files.push_back(ReplaceLastFour(sourcePath, ".CSV"));
    plan.DataLines.push_back(recordCount);
    return plan;
  }
  const std::int64_t files = lines / kLineLimit + (lines % kLineLimit != 0 ? 1 : 0);
  std::int64_t left = recordCount;
  for (std::int64_t k = 1; k <= files; ++k) {
    plan.Files.push_back(ReplaceLastFour(sourcePath, "_" + std::to_string(k) + ".CSV"));
    const std::int64_t room = k == 1 ? kLineLimit - (channelCount + 9) : kLineLimit;
    const std::int64_t here = std::clamp<std::int64_t>(left, 0, room);
    plan.DataLines.push_back(here);
    left -= here;
  }
  return plan;
}

std::string TotalizeCsvHead(const TotalizeWindow &slot, const CsvFormat &format) {
  const std::string &s = format.Separator;
  std::string text;
  text += slot.HeaderText1 + kCrLf;
  text += slot.HeaderText2 + kCrLf;
  text += slot.HeaderText3 + slot.VersionText + kCrLf;
  text += ZeroNumber(slot.ChannelCount, 2) + s + "00" + s + "00" + s + "00" + s +
          ZeroNumber(slot.GroupCount, 2) + std::string(19, ' ') + kCrLf;
  for (const TotalizeChannel &c : slot.Channels) {
    text += ChannelHead(c.ChannelNo) + s + c.Tag + s + ZeroNumber(c.Setting1, 2) + s +
            ZeroNumber(c.ActionType, 2) + s + c.Unit + s + PadLeft(c.ScaleText, 7) + s +
            ZeroNumber(c.Decimals, 1) + " " + kCrLf;
  }
  const int groups = std::clamp<int>(slot.GroupCount, 0, static_cast<int>(slot.Groups.size()));
  for (int g = 0; g < groups; ++g) {
    const TotalizeGroup &group = slot.Groups[static_cast<std::size_t>(g)];
    text += "G" + std::to_string(g + 1) + s + group.GroupName;
    for (std::int16_t member : group.Members)
      text += s + (member > 128 ? "D" + std::to_string(member - 128) : ZeroNumber(member, 2));
    text += kCrLf;
  }
  text += std::string(19, ' ') + s + std::string(19, ' ');
  for (const TotalizeChannel &c : slot.Channels)
    text += s + ChannelHead(c.ChannelNo) + std::string(7, ' ');
  text += kCrLf;
  return Utf8ToCp932(text);
}

std::string TotalizeCsvTime(std::int64_t seconds) {
  std::string text = RecordTimeText(seconds);
  if (text.size() >= 9) {
    if (text[5] == '0') text[5] = ' ';
    if (text[8] == '0') text[8] = ' ';
  }
  return text;
}

std::optional<std::int32_t> TotalizeTextRaw(std::string_view field, int decimals) {
  if (field.size() < kValueWidth) return std::nullopt;
  field = field.substr(0, kValueWidth);
  if (decimals <= 0 || decimals >= static_cast<int>(kValueWidth)) return ReadIntegerField(field);
  const auto point = kValueWidth - 1 - static_cast<std::size_t>(decimals);
  std::string digits(field.substr(0, point));
  digits += field.substr(point + 1);
  return ReadIntegerField(digits);
}

bool TotalizeCsvDataLine(const TotalizeWindow &slot, std::string_view record,
                         const CsvFormat &format, std::string &line) {
  const std::size_t n = slot.Channels.size();
  if (record.size() < static_cast<std::size_t>(slot.RecordLength)) return false;
  line.clear();
  if (slot.IsBinary != 0) {
    line +=
        TotalizeCsvTime(I32At(record, 0)) + format.Separator + TotalizeCsvTime(I32At(record, 4));
  } else {
    line +=
        std::string(record.substr(0, 19)) + format.Separator + std::string(record.substr(20, 19));
  }
  for (std::size_t i = 0; i < n; ++i) {
    const int decimals = slot.Channels[i].Decimals;
    std::int32_t raw = 0;
    if (slot.IsBinary != 0) {
      raw = I32At(record, 8 + 4 * i);
    } else {
      const auto value = TotalizeTextRaw(record.substr(40 + 12 * i, kValueWidth), decimals);
      if (!value) return false;
      raw = *value;
    }
    const std::string text = FormatTotalizeValue(raw, decimals, format.DecimalChar);
    if (text.size() > kValueWidth) return false;
    line += format.Separator + PadLeft(text, kValueWidth);
  }
  return true;
}

namespace {

// Writes the planned files under their temporary names; false at the first failure.
bool WriteTotalizeCsv(const TotalizeWindow &slot, const CsvFormat &format,
                      const TotalizeCsvPlan &plan, const std::vector<std::string> &temps,
                      const std::function<void(int, int)> &progress) {
  const std::int64_t records = slot.RecordCount;
  const auto length = static_cast<std::size_t>(slot.RecordLength);
  if (records <= 0 || length == 0 ||
      slot.Channels.size() != static_cast<std::size_t>(slot.ChannelCount))
    return false;
  const CsvBar bar = BarOf(records);
  int barValue = 0;
  if (progress) progress(0, bar.maximum);

  std::size_t part = 0;
  OutputFile out;
  if (!out.Open(temps[part])) return false;
  out.Write(TotalizeCsvHead(slot, format));
  if (!out.Ok()) return false;

  FileSource source(slot.Path);
  if (!source.IsOpen()) return false;
  std::int64_t inPart = 0;
  std::string chunk;
  std::string line;
  for (std::int64_t done = 0; done < records;) {
    const std::int64_t count = std::min<std::int64_t>(kRecordsAChunk, records - done);
    if (!source.Read(slot.DataStart + done * static_cast<std::int64_t>(length),
                     static_cast<std::size_t>(count) * length, chunk))
      return false;
    for (std::int64_t k = 0; k < count; ++k, ++done) {
      if (inPart == plan.DataLines[part]) {
        if (!out.Close()) return false;
        if (++part >= temps.size()) return false;
        if (!out.Open(temps[part])) return false;
        inPart = 0;
      }
      if (!TotalizeCsvDataLine(slot, std::string_view(chunk).substr(k * length, length), format,
                               line))
        return false;
      line += kCrLf;
      out.Write(line);
      ++inPart;
      if (progress && (done + 1) % bar.step == 0 && barValue < bar.maximum)
        progress(++barValue, bar.maximum);
    }
    if (!out.Ok()) return false;
  }
  if (!out.Close()) return false;
  if (progress) progress(bar.maximum, bar.maximum);
  return part + 1 == temps.size();
}

}  // namespace

TotalizeCsvOutcome TotalizeToCsv(const TotalizeWindow &slot, const CsvFormat &format,
                                 const std::function<void(int, int)> &progress) {
  TotalizeCsvOutcome outcome;
  const TotalizeCsvPlan plan = PlanTotalizeCsv(slot.Path, slot.ChannelCount, slot.RecordCount);
  for (const std::string &file : plan.Files)
    if (PathExists(file)) {
      outcome.MessageId = kCsvOutputExists;
      return outcome;
    }
  OutputSet outputs;
  std::vector<std::string> temps;
  for (const std::string &file : plan.Files) temps.push_back(outputs.Add(file));
  const bool ok = WriteTotalizeCsv(slot, format, plan, temps, progress) && outputs.Publish();
  if (!ok) {
    outputs.Discard();
    outcome.MessageId = kCsvFailed;
    return outcome;
  }
  outcome.MessageId = kCsvDone;
  outcome.Files = outputs.Targets();
  return outcome;
}

}  // namespace recscope
