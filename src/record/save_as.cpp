#include "record/save_as.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "record/output_files.h"
#include "record/record_fields.h"
#include "record/record_reader.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kWrongSaveName = 11180;
constexpr int kRecordExists = 11181;
constexpr int kRecordWriteFailed = 11182;
constexpr int kAlarmWriteFailed = 11183;
constexpr int kSaved = 11184;
constexpr int kNameExists = 18501;
constexpr int kNameLength = 18502;
constexpr int kNameCharacters = 18503;

std::string Upper(std::string text) {
  for (char &c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::size_t NameStart(const std::string &path) {
  const auto slash = path.find_last_of('/');
  return slash == std::string::npos ? 0 : slash + 1;
}

}  // namespace

bool IsSaveAsName(const std::string &path) {
  const std::string name = path.substr(NameStart(path));
  if (name.size() < 6 || name.size() > 12) return false;
  return Upper(name.substr(0, 1)) == "S" && Upper(name.substr(name.size() - 3)) == "FDT";
}

std::string SaveAlarmPath(const std::string &target) {
  std::string alarm = target;
  const std::size_t at = NameStart(target);
  if (at < alarm.size()) alarm[at] = 'A';
  return alarm;
}

SaveRange SaveRangeOf(const RecordFileInfo &info, std::int32_t period, std::int64_t t0,
                      std::int64_t t1) {
  if (period < 1) period = 1;
  SaveRange range;
  t0 = std::clamp<std::int64_t>(t0, info.FirstTime, info.LastTime);
  t1 = std::min<std::int64_t>(t1, info.LastTime);
  range.Start = static_cast<std::int32_t>(t0);
  range.End = static_cast<std::int32_t>(t1);
  range.FirstRecord = (t0 - info.FirstTime) / period;
  range.Count = t1 < t0 ? 0 : (t1 - t0) / period + 1;
  range.Count = std::min<std::int64_t>(range.Count, info.RecordCount - range.FirstRecord);
  return range;
}

bool CopyMeasurementRange(const RecordFileInfo &info, const SaveRange &range,
                          const std::string &target, const ProgressFn &progress) {
  FileSource source(info.FilePath);
  if (!source.IsOpen() || info.DataStart <= 0 || info.RecordLength <= 0) return false;
  const std::int64_t from =
      static_cast<std::int64_t>(info.DataStart) + range.FirstRecord * info.RecordLength;
  const std::int64_t bytes = range.Count * info.RecordLength;
  if (from + bytes > source.Length()) return false;
  OutputFile out;
  if (!out.Open(target)) return false;
  std::string block;
  if (!source.Read(0, static_cast<std::size_t>(info.DataStart), block)) return false;
  out.Write(block);
  const std::int64_t blocks = (bytes + kSaveBlockBytes - 1) / kSaveBlockBytes;
  if (progress) progress(0, static_cast<int>(blocks));
  for (std::int64_t k = 0; k < blocks; ++k) {
    const std::int64_t size = std::min(kSaveBlockBytes, bytes - k * kSaveBlockBytes);
    if (!source.Read(from + k * kSaveBlockBytes, static_cast<std::size_t>(size), block))
      return false;
    out.Write(block);
    if (!out.Ok()) return false;
    if (progress) progress(static_cast<int>(k + 1), static_cast<int>(blocks));
  }
  return out.Close();
}

bool CopyAlarmRange(const RecordFileInfo &info, const AlarmFileInfo &alarms, const SaveRange &range,
                    const std::string &target) {
  const bool binary = info.FileFormat == 2;
  const std::size_t header = binary ? 104 : 102;
  const std::size_t event = binary ? 38 : 59;
  FileSource source(alarms.AlarmPath);
  if (!source.IsOpen() || source.Length() < static_cast<std::int64_t>(header)) return false;
  std::string bytes;
  if (!source.Read(0, static_cast<std::size_t>(source.Length()), bytes)) return false;
  OutputFile out;
  if (!out.Open(target)) return false;
  out.Write(bytes.data(), header);
  const std::size_t count = (bytes.size() - header) / event;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view e(bytes.data() + header + i * event, event);
    std::int64_t time = 0;
    if (binary) {
      time = I32At(e, 0);
    } else {
      const auto parsed = ParseRecordTime(e.substr(0, 19));
      if (!parsed) return false;
      time = *parsed;
    }
    if (time >= range.Start && time <= range.End) out.Write(e.data(), e.size());
  }
  return out.Close();
}

SaveAsOutcome SaveRecordRange(const RecordFileInfo &info, const AlarmFileInfo &alarms,
                              std::int32_t period, std::int64_t t0, std::int64_t t1,
                              const std::string &target,
                              const std::function<bool(const std::string &)> &confirmOverwrite,
                              const ProgressFn &progress) {
  SaveAsOutcome outcome;
  if (!IsSaveAsName(target)) {
    outcome.MessageId = kWrongSaveName;
    return outcome;
  }
  if (PathExists(target)) {
    outcome.MessageId = kRecordExists;
    return outcome;
  }
  const bool withAlarms = !alarms.AlarmPath.empty();
  const std::string alarmTarget = SaveAlarmPath(target);
  bool replaceAlarm = false;
  if (withAlarms && PathExists(alarmTarget)) {
    if (!confirmOverwrite || !confirmOverwrite(alarmTarget)) return outcome;
    replaceAlarm = true;
  }
  const SaveRange range = SaveRangeOf(info, period, t0, t1);
  OutputSet outputs;
  const std::string recordTemp = outputs.Add(target);
  if (!CopyMeasurementRange(info, range, recordTemp, progress)) {
    outcome.MessageId = kRecordWriteFailed;
    return outcome;
  }
  if (withAlarms && !CopyAlarmRange(info, alarms, range, outputs.Add(alarmTarget, replaceAlarm))) {
    outcome.MessageId = kAlarmWriteFailed;
    return outcome;
  }
  if (!outputs.Publish()) {
    outcome.MessageId = kRecordWriteFailed;
    return outcome;
  }
  outcome.MessageId = kSaved;
  outcome.Files = outputs.Targets();
  return outcome;
}

int CheckSaveFileName(const std::string &folder, const std::string &text) {
  std::size_t characters = 0;
  for (unsigned char c : text)
    if ((c & 0xC0) != 0x80) ++characters;
  if (characters < 1 || characters > 6) return kNameLength;
  for (unsigned char c : text)
    if (!std::isalnum(c) || c >= 0x80) return kNameCharacters;
  const std::string base = folder.empty() || folder.back() == '/' ? folder : folder + "/";
  if (PathExists(base + "S" + text + ".FDT") || PathExists(base + "A" + text + ".FDT"))
    return kNameExists;
  return 0;
}

}  // namespace recscope
