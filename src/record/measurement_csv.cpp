#include "record/measurement_csv.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>

#include "platform/text_encoding.h"
#include "record/alarm_file.h"
#include "record/number_field.h"
#include "record/output_files.h"
#include "record/record_fields.h"
#include "record/record_reader.h"
#include "record/value_text.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kCsvDone = 11132;
constexpr int kCsvTargetExists = 11130;
constexpr int kCsvFailed = 11131;
constexpr const char *kCrLf = "\r\n";
constexpr std::size_t kChunkBytes = 4u << 20;

// A whole number in a format of zeros ("00", "000"): at least `width` digits, the
// sign in front.
std::string ZeroForm(long long value, std::size_t width) {
  std::string digits = std::to_string(value < 0 ? -value : value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return value < 0 ? "-" + digits : digits;
}

std::string PadLeft7(std::string text) {
  if (text.size() < 7) text.insert(0, 7 - text.size(), ' ');
  return text;
}

std::string Cp932(std::string_view utf8) { return Utf8ToCp932(utf8); }

std::string ChannelName(int number) {
  return number > 128 ? "DI" + ZeroForm(number - 128, 2) : "CH" + ZeroForm(number, 2);
}

std::string TitleOf(int number, int recordType, const std::string &sep) {
  const std::string name = ChannelName(number);
  switch (recordType) {
    case 0:
      return sep + name + "MIN" + sep + name + "MAX";
    case 1:
      return sep + name + "PV ";
    case 2:
      return sep + name + "AVG";
    default:
      return sep + name;
  }
}

// The text of one analog unit, without its separator.
std::string UnitText(std::int32_t raw, const ChannelInfo &c, const CsvFormat &format) {
  if (c.ScaleKind == 1)
    return PadLeft7(LogValueText(c.RangeLow, c.RangeHigh, c.ExponentLow, c.ExponentHigh, c.Decimals,
                                 raw, format.DecimalChar));
  return PadLeft7(CsvRawNumber(raw, c.Decimals, format.DecimalChar));
}

// Separator and text of every raw value of one channel kind, ready to copy.
struct UnitEntry {
  char text[15];
  std::uint8_t length;
};
using UnitTable = std::unique_ptr<UnitEntry[]>;

UnitTable MakeUnitTable(const ChannelInfo &c, const CsvFormat &format) {
  UnitTable table(new UnitEntry[65536]);
  for (int raw = -32768; raw <= 32767; ++raw) {
    const std::string text = format.Separator + UnitText(raw, c, format);
    UnitEntry &e = table[static_cast<std::size_t>(raw + 32768)];
    std::memset(e.text, ' ', sizeof e.text);
    const std::size_t n = std::min(text.size(), sizeof e.text);
    std::memcpy(e.text, text.data(), n);
    e.length = static_cast<std::uint8_t>(n);
  }
  return table;
}

std::string TableKey(const ChannelInfo &c) {
  if (c.ScaleKind != 1) return "D" + std::to_string(c.Decimals);
  char key[160];
  std::snprintf(key, sizeof key, "L%.17g,%.17g,%d,%d,%d", c.RangeLow, c.RangeHigh, c.ExponentLow,
                c.ExponentHigh, c.Decimals);
  return key;
}

// "yyyy/m/d " of the day of a time, kept while the day stays.
class DayText {
 public:
  const std::string &Of(std::int64_t day) {
    if (day != day_) {
      const CivilTime civil = ToCivil(day * 86400);
      text_ = std::to_string(civil.year) + "/" + std::to_string(civil.month) + "/" +
              std::to_string(civil.day) + " ";
      day_ = day;
    }
    return text_;
  }

 private:
  std::int64_t day_ = INT64_MIN;
  std::string text_;
};

char *PutTwo(char *p, int v) {
  p[0] = static_cast<char>('0' + v / 10);
  p[1] = static_cast<char>('0' + v % 10);
  return p + 2;
}

char *PutBinaryTime(char *p, std::int64_t t, DayText &days) {
  std::int64_t day = t / 86400;
  std::int64_t second = t % 86400;
  if (second < 0) {
    second += 86400;
    --day;
  }
  const std::string &prefix = days.Of(day);
  std::memcpy(p, prefix.data(), prefix.size());
  p += prefix.size();
  p = PutTwo(p, static_cast<int>(second / 3600));
  *p++ = ':';
  p = PutTwo(p, static_cast<int>(second / 60 % 60));
  *p++ = ':';
  return PutTwo(p, static_cast<int>(second % 60));
}

// Writes the data rows of the whole record over the parts of the plan.
class RowWriter {
 public:
  RowWriter(const RecordFileInfo &info, const CsvFormat &format) : format_(format) {
    std::map<std::string, std::size_t> byKey;
    for (const ChannelInfo &c : info.Channels) {
      const std::string key = TableKey(c);
      auto found = byKey.find(key);
      if (found == byKey.end()) {
        found = byKey.emplace(key, tables_.size()).first;
        tables_.push_back(MakeUnitTable(c, format));
      }
      for (int k = 0; k < (c.RecordType == 0 ? 2 : 1); ++k) {
        unitTables_.push_back(tables_[found->second].get());
        unitChannels_.push_back(&c);
      }
    }
    withDi_ = info.DiCount > 0;
    rowMax_ = 32 + unitTables_.size() * 16 + 4;
  }

  // One row of a binary record; false never (every raw value has its text).
  void BinaryRow(const char *record, OutputFile &out) {
    char *p = out.Reserve(rowMax_);
    p = PutBinaryTime(p, I32At(std::string_view(record, 4), 0), days_);
    const char *unit = record + 4;
    for (const UnitEntry *table : unitTables_) {
      const auto raw = static_cast<std::int16_t>(static_cast<std::uint8_t>(unit[0]) |
                                                 (static_cast<std::uint8_t>(unit[1]) << 8));
      const UnitEntry &e = table[static_cast<std::size_t>(raw + 32768)];
      std::memcpy(p, e.text, sizeof e.text);
      p += e.length;
      unit += 2;
    }
    p = EndRow(p);
    out.Commit(p);
  }

  // One row of a text record; false when a value field does not read.
  bool TextRow(std::string_view record, OutputFile &out) {
    const std::size_t length = record.size();
    if (length < 21 || record[length - 2] != '\r' || record[length - 1] != '\n') return false;
    if (19 + 8 * unitTables_.size() > length - 2) return false;
    char *p = out.Reserve(rowMax_ + 64);
    std::memcpy(p, record.data(), 19);
    p += 19;
    for (std::size_t u = 0; u < unitTables_.size(); ++u) {
      const ChannelInfo &c = *unitChannels_[u];
      std::optional<std::int32_t> raw = ReadNumberField(record.substr(20 + 8 * u, 7), c.Decimals);
      if (!raw) return false;
      if (*raw >= -32768 && *raw <= 32767) {
        const UnitEntry &e = unitTables_[u][static_cast<std::size_t>(*raw + 32768)];
        std::memcpy(p, e.text, sizeof e.text);
        p += e.length;
      } else {
        const std::string text = format_.Separator + UnitText(*raw, c, format_);
        if (text.size() > 48) return false;
        std::memcpy(p, text.data(), text.size());
        p += text.size();
      }
    }
    p = EndRow(p);
    out.Commit(p);
    return true;
  }

 private:
  // A row of a file with digital inputs ends in a separator and has no line end:
  // the states themselves are not written.
  char *EndRow(char *p) const {
    if (withDi_) {
      std::memcpy(p, format_.Separator.data(), format_.Separator.size());
      return p + format_.Separator.size();
    }
    p[0] = '\r';
    p[1] = '\n';
    return p + 2;
  }

  const CsvFormat &format_;
  std::vector<UnitTable> tables_;
  std::vector<const UnitEntry *> unitTables_;
  std::vector<const ChannelInfo *> unitChannels_;
  bool withDi_ = false;
  std::size_t rowMax_ = 0;
  DayText days_;
};

// Progress as the conversion moves it: 0 to 100 in steps of ceil(c / 100) rows
// for 100 rows or more, otherwise one step a row.
class RowProgress {
 public:
  RowProgress(std::int64_t count, const ProgressFn &fn) : fn_(fn) {
    if (count >= 100) {
      maximum_ = 100;
      step_ = (count + 99) / 100;
    } else {
      maximum_ = static_cast<int>(count);
      step_ = 1;
    }
    if (fn_) fn_(0, maximum_);
  }
  void Row(std::int64_t done) {
    if (fn_ && done % step_ == 0)
      fn_(static_cast<int>(std::min<std::int64_t>(done / step_, maximum_)), maximum_);
  }
  void End() {
    if (fn_) fn_(maximum_, maximum_);
  }

 private:
  const ProgressFn &fn_;
  int maximum_ = 0;
  std::int64_t step_ = 1;
};

bool ReadWholeFile(const std::string &path, std::string &out) {
  FileSource source(path);
  if (!source.IsOpen()) return false;
  return source.Read(0, static_cast<std::size_t>(source.Length()), out);
}

bool WriteMeasurementParts(const RecordFileInfo &info, const CsvFormat &format,
                           const MeasurementCsvPlan &plan, const std::vector<std::string> &temps,
                           const ProgressFn &progress) {
  FileSource source(info.FilePath);
  if (!source.IsOpen() || info.RecordLength <= 0) return false;
  const std::int64_t length = info.RecordLength;
  if (info.DataStart + length * info.RecordCount > source.Length()) return false;
  const bool binary = info.FileFormat == 2;
  RowWriter rows(info, format);
  RowProgress bar(info.RecordCount, progress);
  const std::int64_t chunkRecords = std::max<std::int64_t>(1, kChunkBytes / length);
  std::string chunk;
  std::int64_t record = 0;
  for (std::size_t part = 0; part < plan.Parts.size(); ++part) {
    OutputFile out;
    if (!out.Open(temps[part])) return false;
    if (part == 0) out.Write(MeasurementCsvHeader(info, format));
    std::int64_t left = plan.PartRows[part];
    while (left > 0) {
      const std::int64_t n = std::min(left, chunkRecords);
      if (!source.Read(info.DataStart + record * length, static_cast<std::size_t>(n * length),
                       chunk))
        return false;
      for (std::int64_t i = 0; i < n; ++i) {
        const char *at = chunk.data() + i * length;
        if (binary) {
          rows.BinaryRow(at, out);
        } else if (!rows.TextRow(std::string_view(at, static_cast<std::size_t>(length)), out)) {
          return false;
        }
        ++record;
        bar.Row(record);
      }
      if (!out.Ok()) return false;
      left -= n;
    }
    if (!out.Close()) return false;
  }
  bar.End();
  return true;
}

bool WriteAlarmCsv(const RecordFileInfo &info, const AlarmFileInfo &alarms, const CsvFormat &format,
                   const std::string &temp) {
  std::string bytes;
  if (!ReadWholeFile(alarms.AlarmPath, bytes)) return false;
  std::string text;
  if (info.FileFormat != 2) {
    text = std::move(bytes);  // a text alarm file goes across whole
  } else if (!BinaryAlarmCsv(bytes, format, text)) {
    return false;
  }
  OutputFile out;
  if (!out.Open(temp)) return false;
  out.Write(text);
  return out.Close();
}

}  // namespace

std::string ReplaceLastFour(const std::string &path, const std::string &ending) {
  return (path.size() >= 4 ? path.substr(0, path.size() - 4) : std::string()) + ending;
}

std::vector<std::int64_t> CsvPartRows(std::int64_t channelTotal, std::int64_t recordCount,
                                      std::int64_t groupCount) {
  const std::int64_t before = channelTotal + groupCount + 5;
  if (before + recordCount < kCsvLineLimit + 1) return {recordCount};
  std::vector<std::int64_t> rows;
  std::int64_t left = recordCount;
  std::int64_t room = std::max<std::int64_t>(kCsvLineLimit - before, 0);
  while (left > 0 || rows.empty()) {
    const std::int64_t n = std::min(left, room);
    rows.push_back(n);
    left -= n;
    room = kCsvLineLimit;
  }
  return rows;
}

MeasurementCsvPlan PlanMeasurementCsv(const RecordFileInfo &info, const AlarmFileInfo &alarms) {
  MeasurementCsvPlan plan;
  plan.SingleName = ReplaceLastFour(info.FilePath, ".CSV");
  plan.PartRows = CsvPartRows(info.ChannelTotal, info.RecordCount, info.GroupCount);
  plan.Split = info.ChannelTotal + info.RecordCount + info.GroupCount + 5 >= kCsvLineLimit + 1;
  if (!plan.Split) {
    plan.Parts = {plan.SingleName};
  } else {
    for (std::size_t k = 1; k <= plan.PartRows.size(); ++k)
      plan.Parts.push_back(ReplaceLastFour(info.FilePath, "_" + std::to_string(k) + ".CSV"));
  }
  if (!alarms.AlarmPath.empty()) plan.AlarmCsv = ReplaceLastFour(alarms.AlarmPath, ".CSV");
  return plan;
}

std::string CsvRawNumber(std::int32_t raw, int decimals, const std::string &decimalChar) {
  const long long magnitude = std::llabs(static_cast<long long>(raw));
  if (decimals >= 1 && decimals <= 4) {
    long long scale = 1;
    for (int i = 0; i < decimals; ++i) scale *= 10;
    std::string fraction = std::to_string(magnitude % scale);
    fraction.insert(0, static_cast<std::size_t>(decimals) - fraction.size(), '0');
    return PadLeft7((raw < 0 ? "-" : "") + std::to_string(magnitude / scale) + decimalChar +
                    fraction);
  }
  if (decimals <= 0) return PadLeft7(std::to_string(raw));
  // "######0" of raw x 10^-decimals: halves go away from zero, the sign stays.
  const long long whole = std::llround(static_cast<double>(magnitude) * std::pow(10.0, -decimals));
  return PadLeft7((raw < 0 ? "-" : "") + std::to_string(whole));
}

std::string CsvNumber(double value, int decimals, const std::string &decimalChar) {
  if (decimals >= 1 && decimals <= 4)
    return CsvRawNumber(RawOfValue(value, decimals), decimals, decimalChar);
  const long long whole = std::llround(std::fabs(value));
  return PadLeft7((value < 0 ? "-" : "") + std::to_string(whole));
}

std::string CsvTimeText(std::int64_t seconds) {
  char buffer[64];
  DayText days;
  char *end = PutBinaryTime(buffer, seconds, days);
  return std::string(buffer, end);
}

std::string MeasurementCsvHeader(const RecordFileInfo &info, const CsvFormat &format) {
  const std::string &sep = format.Separator;
  const std::string &dec = format.DecimalChar;
  std::string out;
  out += Cp932(info.FileNameText) + kCrLf;
  out += Cp932(info.ModelText) + kCrLf;
  out += Cp932(info.SerialText) + Cp932(info.VersionText) + kCrLf;
  out += ZeroForm(info.AnalogCount, 2) + sep + ZeroForm(info.SamplingCode, 2) + sep + "08" + sep +
         ZeroForm(info.DiCount, 2) + sep + ZeroForm(info.GroupCount, 2) + std::string(18, ' ') +
         kCrLf;
  for (const ChannelInfo &c : info.Channels) {
    const bool log = c.ScaleKind == 1;
    out += "CH" + ZeroForm(c.ChannelNo, 2) + sep + Cp932(c.Tag) + sep + ZeroForm(c.ColorNo, 2) +
           sep + ZeroForm(c.InputType, 2) + sep + Cp932(c.Unit) + sep;
    out += CsvNumber(c.RecordedLow, log ? 0 : c.Decimals, dec) + sep;
    out += CsvNumber(c.RecordedHigh, log ? 0 : c.Decimals, dec) + sep;
    out += ZeroForm(c.RecordType, 1) + sep + ZeroForm(c.ScaleKind, 1) + sep;
    out += CsvNumber(c.RangeLow, c.Decimals, dec) + sep + CsvNumber(c.RangeHigh, c.Decimals, dec) +
           sep;
    out += ZeroForm(c.ExponentLow, 3) + sep + ZeroForm(c.ExponentHigh, 3) + sep +
           ZeroForm(c.Decimals, 1);
    for (int i = 0; i < 4; ++i)
      out += sep + ZeroForm(c.AlarmKind[i], 1) + sep + ZeroForm(c.AlarmOutput[i], 2) + sep +
             CsvNumber(c.AlarmValue[i], c.Decimals, dec);
    out += kCrLf;
  }
  for (const DiInfo &d : info.Dis) {
    out += "DI" + ZeroForm(d.DiNo - 128, 2) + sep + Cp932(d.Tag) + sep + ZeroForm(d.ColorNo, 2) +
           sep + RightNumber(d.ScaleLow, 7) + sep + RightNumber(d.ScaleHigh, 7) + sep +
           ZeroForm(d.RecordType, 1) + kCrLf;
  }
  for (int g = 0; g < info.GroupCount && g < static_cast<int>(info.Groups.size()); ++g) {
    out += "G" + std::to_string(g + 1) + sep + Cp932(info.Groups[g].GroupName);
    for (std::int16_t m : info.Groups[g].Members)
      out += sep + (m > 128 ? "D" + std::to_string(m - 128) : ZeroForm(m, 2));
    out += kCrLf;
  }
  out += std::string(19, ' ');
  for (const ChannelInfo &c : info.Channels) out += TitleOf(c.ChannelNo, c.RecordType, sep);
  for (const DiInfo &d : info.Dis) out += TitleOf(d.DiNo, d.RecordType, sep);
  return out + kCrLf;
}

bool BinaryAlarmCsv(std::string_view bytes, const CsvFormat &format, std::string &out) {
  constexpr std::size_t kHeader = 104, kEvent = 38;
  if (bytes.size() < kHeader || I16At(bytes, 102) > 0) return false;
  const std::string &sep = format.Separator;
  out.clear();
  out.append(bytes.substr(0, 32)).append(kCrLf);
  out.append(bytes.substr(34, 32)).append(kCrLf);
  out.append(bytes.substr(68, 20)).append(bytes.substr(88, 12)).append(kCrLf);
  const std::size_t count = (bytes.size() - kHeader) / kEvent;
  int alarmsSeen = 0, messagesSeen = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view e = bytes.substr(kHeader + i * kEvent, kEvent);
    const std::int32_t time = I32At(e, 0);
    const std::uint8_t kind = U8At(e, 4);
    if (kind == 'A') {
      if (++alarmsSeen > kMaxEventsOfKind) continue;
      out += CsvTimeText(time) + sep + "A" + sep + ZeroForm(U8At(e, 5), 2) + sep +
             ZeroForm(U8At(e, 6), 1) + sep + ZeroForm(U8At(e, 7), 2) + sep +
             ZeroForm(U8At(e, 8), 1) + std::string(26, ' ') + kCrLf;
    } else if (kind == 'M') {
      if (++messagesSeen > kMaxEventsOfKind) continue;
      std::string_view text = e.substr(5, 32);
      text = text.substr(0, std::min(text.find('\0'), text.size()));
      out += CsvTimeText(time) + sep + "M" + sep + std::string(text) + sep +
             ZeroForm(U8At(e, 37), 2) + kCrLf;
    } else {
      return false;
    }
  }
  return true;
}

CsvOutcome ConvertMeasurementCsv(const RecordFileInfo &info, const AlarmFileInfo &alarms,
                                 const CsvFormat &format, const ProgressFn &progress) {
  CsvOutcome outcome;
  const MeasurementCsvPlan plan = PlanMeasurementCsv(info, alarms);
  bool exists = PathExists(plan.SingleName);
  for (const std::string &p : plan.Parts) exists = exists || PathExists(p);
  if (!plan.AlarmCsv.empty()) exists = exists || PathExists(plan.AlarmCsv);
  if (exists) {
    outcome.MessageId = kCsvTargetExists;
    return outcome;
  }
  OutputSet outputs;
  std::vector<std::string> temps;
  for (const std::string &p : plan.Parts) temps.push_back(outputs.Add(p));
  const std::string alarmTemp = plan.AlarmCsv.empty() ? std::string() : outputs.Add(plan.AlarmCsv);
  bool ok = WriteMeasurementParts(info, format, plan, temps, progress);
  if (ok && !plan.AlarmCsv.empty()) ok = WriteAlarmCsv(info, alarms, format, alarmTemp);
  if (ok) ok = outputs.Publish();
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
