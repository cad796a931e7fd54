#include "record/flag_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/text_encoding.h"
#include "record/record_fields.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr std::string_view kEventLinePattern = "####*?#*?# ?#:?#:?#*";

struct FlagLine {
  std::int64_t time = 0;
  bool timeValid = false;
  char kind = 0;
  std::int16_t shown = 0;
  std::int16_t position = 0;
  std::string text;  // UTF-8, as in the file
};

// A loose number read: leading blanks, digits up to the first other character.
std::int16_t LooseNumber(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  int value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && value < 10000; ++i)
    value = value * 10 + (text[i] - '0');
  return static_cast<std::int16_t>(value);
}

std::string Trim(std::string_view text) {
  std::size_t b = 0, e = text.size();
  while (b < e && text[b] == ' ') ++b;
  while (e > b && text[e - 1] == ' ') --e;
  return std::string(text.substr(b, e - b));
}

std::vector<FlagLine> EventLines(std::string_view bytes) {
  std::vector<FlagLine> lines;
  std::size_t pos = 0;
  while (pos < bytes.size()) {
    std::size_t end = bytes.find('\n', pos);
    if (end == std::string_view::npos) end = bytes.size();
    std::string_view line = bytes.substr(pos, end - pos);
    pos = end + 1;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (!MatchesLinePattern(line, kEventLinePattern)) continue;
    std::vector<std::string_view> fields;
    std::size_t start = 0;
    while (fields.size() < 4) {
      std::size_t comma = line.find(',', start);
      if (comma == std::string_view::npos) break;
      fields.push_back(line.substr(start, comma - start));
      start = comma + 1;
    }
    if (fields.size() < 4) continue;
    FlagLine f;
    std::optional<std::int64_t> time = ParseRecordTime(fields[0]);
    f.timeValid = time.has_value() && *time >= INT32_MIN && *time <= INT32_MAX;
    f.time = time.value_or(0);
    f.kind = fields[1].size() == 1 ? fields[1][0] : 0;
    f.shown = fields[2] == "1" ? -1 : 0;
    f.position = LooseNumber(fields[3]);
    f.text = Cp932ToUtf8(line.substr(start));
    lines.push_back(std::move(f));
  }
  return lines;
}

template <typename Event>
bool TimeAmong(const FlagLine &line, const std::vector<Event> &events) {
  if (!line.timeValid) return false;
  return std::any_of(events.begin(), events.end(),
                     [&](const Event &e) { return e.Time == line.time; });
}

std::string EventLine(std::int32_t time, char kind, std::int16_t shown, std::int16_t position,
                      std::string_view text) {
  return RecordTimeText(time) + "," + kind + "," + (shown != 0 ? "1" : "0") + "," +
         ZeroNumber(position % 100, 2) + "," + FixedCp932(text, 32) + "\r\n";
}

}  // namespace

bool MatchesLinePattern(std::string_view text, std::string_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == '*') {
    for (std::size_t skip = 0; skip <= text.size(); ++skip)
      if (MatchesLinePattern(text.substr(skip), pattern.substr(1))) return true;
    return false;
  }
  if (text.empty()) return false;
  const char p = pattern[0], c = text[0];
  const bool one = p == '?' || (p == '#' ? (c >= '0' && c <= '9') : p == c);
  return one && MatchesLinePattern(text.substr(1), pattern.substr(1));
}

bool ApplyFlagBytes(std::string_view bytes, AlarmFileInfo &alarms, std::vector<FlagEvent> &flags) {
  if (bytes.size() < kMinFlagFileLength) return false;
  std::vector<FlagLine> lines = EventLines(bytes);
  std::size_t alarmLines = 0, messageLines = 0;
  for (const FlagLine &line : lines) {
    if (line.kind == 'A') {
      ++alarmLines;
      if (!TimeAmong(line, alarms.Alarms)) return false;
    } else if (line.kind == 'M') {
      ++messageLines;
      if (!TimeAmong(line, alarms.Messages)) return false;
    }
  }
  if (alarmLines != alarms.Alarms.size() || messageLines != alarms.Messages.size()) return false;

  std::size_t a = 0, m = 0;
  flags.clear();
  for (const FlagLine &line : lines) {
    if (line.kind == 'A') {
      alarms.Alarms[a].Shown = line.shown;
      alarms.Alarms[a++].Position = line.position;
    } else if (line.kind == 'M') {
      alarms.Messages[m].Shown = line.shown;
      alarms.Messages[m++].Position = line.position;
    } else if (line.kind == 'F' && line.timeValid) {
      FlagEvent f;
      f.Time = static_cast<std::int32_t>(line.time);
      f.Text = Trim(line.text);
      f.Shown = line.shown;
      f.Position = line.position;
      flags.push_back(std::move(f));
    }
  }
  return true;
}

bool ApplyFlagFile(const std::string &path, AlarmFileInfo &alarms, std::vector<FlagEvent> &flags) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return ApplyFlagBytes(bytes, alarms, flags);
}

std::string FlagFileBytes(const RecordFileInfo &record, const AlarmFileInfo &alarms,
                          const std::vector<FlagEvent> &flags) {
  std::string name = FixedCp932(record.FileNameText, 32);
  name[0] = 'F';
  std::string out = name + "\r\n";
  out += FixedCp932(record.ModelText, 32) + "\r\n";
  out += FixedCp932(record.SerialText, 20) + FixedCp932(record.VersionText, 10) + "\r\n";
  out += std::string(32, ' ') + "\r\n";
  out += std::string(32, ' ') + "\r\n";
  for (const AlarmEvent &a : alarms.Alarms) out += EventLine(a.Time, 'A', a.Shown, a.Position, "");
  for (const MessageEvent &m : alarms.Messages)
    out += EventLine(m.Time, 'M', m.Shown, m.Position, m.Text);
  for (const FlagEvent &f : flags) out += EventLine(f.Time, 'F', f.Shown, f.Position, f.Text);
  return out;
}

bool WriteFlagFile(const std::string &path, const RecordFileInfo &record,
                   const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags) {
  // The whole file goes to a temporary name beside it and then replaces the old
  // one in one step: a failed write leaves the old file as it was.
  const std::string temporary = path + ".tmp";
  if (!WriteWholeFile(temporary, FlagFileBytes(record, alarms, flags))) return false;
  std::error_code error;
  std::filesystem::rename(temporary, path, error);
  if (error) {
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    return false;
  }
  return true;
}

}  // namespace recscope
