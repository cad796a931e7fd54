#include "record/file_coupling.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <memory>

#include "record/open_record.h"
#include "record/output_files.h"
#include "record/record_fields.h"
#include "record/record_reader.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kDifferentEncoding = 19800;
constexpr int kDifferentPeriod = 19801;
constexpr int kDifferentChannelNo = 19802;
constexpr int kDifferentRecordType = 19803;
constexpr int kDifferentCounts = 19804;
constexpr int kDifferentAlarmEncoding = 19805;
constexpr int kCancelled = 19806;
constexpr int kNotMarked = 19808;
constexpr int kTooFew = 19809;
constexpr int kJoined = 19810;
constexpr int kJoinFailed = 19811;
constexpr int kAlreadyChosen = 19812;
constexpr int kDifferentGroups = 19813;
constexpr std::size_t kChunkBytes = 4u << 20;

// "####*?#*?# ?#*?#*?#*": the shape of a text data record's line ("#" a digit,
// "?" any character, "*" any run of characters).
bool IsRecordLine(std::string_view line) {
  static constexpr std::string_view kPattern = "####*?#*?# ?#*?#*?#*";
  // reach[s]: the pattern so far can end just before line[s].
  std::vector<char> reach(line.size() + 1, 0), next(line.size() + 1, 0);
  reach[0] = 1;
  for (const char p : kPattern) {
    std::fill(next.begin(), next.end(), 0);
    if (p == '*') {
      char any = 0;
      for (std::size_t s = 0; s <= line.size(); ++s)
        next[s] = any = static_cast<char>(any | reach[s]);
    } else {
      for (std::size_t s = 0; s < line.size(); ++s) {
        if (!reach[s]) continue;
        const char c = line[s];
        const bool fits = p == '#' ? (c >= '0' && c <= '9') : p == '?' ? true : c == p;
        if (fits) next[s + 1] = 1;
      }
    }
    reach.swap(next);
  }
  return reach[line.size()] != 0;
}

// Reads a file's lines from an offset, a chunk at a time; each line keeps its end.
class LineReader {
 public:
  LineReader(const std::string &path, std::int64_t from) : source_(path), at_(from) {}
  bool IsOpen() const { return source_.IsOpen(); }
  bool Failed() const { return failed_; }
  // The next line with its "\n" (or the rest of the file); false at the end.
  bool Next(std::string &line) {
    for (;;) {
      const std::size_t end = buffer_.find('\n', used_);
      if (end != std::string::npos) {
        line.assign(buffer_, used_, end + 1 - used_);
        used_ = end + 1;
        return true;
      }
      if (at_ >= source_.Length()) {
        if (used_ >= buffer_.size()) return false;
        line.assign(buffer_, used_, std::string::npos);
        used_ = buffer_.size();
        return true;
      }
      const auto size =
          static_cast<std::size_t>(std::min<std::int64_t>(kChunkBytes, source_.Length() - at_));
      std::string chunk;
      if (!source_.Read(at_, size, chunk)) {
        failed_ = true;
        return false;
      }
      at_ += static_cast<std::int64_t>(size);
      buffer_.erase(0, used_);
      used_ = 0;
      buffer_ += chunk;
    }
  }

 private:
  FileSource source_;
  std::int64_t at_;
  std::string buffer_;
  std::size_t used_ = 0;
  bool failed_ = false;
};

std::string ZeroField(int decimals) {
  switch (decimals) {
    case 1:
      return ",    0.0";
    case 2:
      return ",   0.00";
    case 3:
      return ",  0.000";
    case 4:
      return ", 0.0000";
    default:
      return ",      0";
  }
}

// A record of zeros at `time` in the file's encoding.
std::string FillerRecord(const CouplingFile &f, std::int32_t time) {
  std::string out;
  if (f.Binary) {
    PutI32(out, time);
    out.resize(static_cast<std::size_t>(f.RecordLength), '\0');
    return out;
  }
  out = RecordTimeText(time);
  for (std::size_t c = 0; c < f.RecordTypes.size(); ++c)
    for (int k = 0; k < (f.RecordTypes[c] == 0 ? 2 : 1); ++k) out += ZeroField(f.Decimals[c]);
  for (std::int16_t type : f.DiRecordTypes)
    for (int k = 0; k < (type == 0 ? 2 : 1); ++k) out += ZeroField(0);
  return out + "\r\n";
}

// Writes the records of one file from `next` on, with the fillers in front of
// them; `next` becomes the time that would follow its last record.
bool JoinRecords(const CouplingFile &f, bool first, std::int64_t &next, OutputFile &out) {
  auto take = [&](std::int64_t time) {
    if (!first && time < next) return false;  // an overlap is passed over
    if (!first)
      for (; next < time; next += f.Period)
        out.Write(FillerRecord(f, static_cast<std::int32_t>(next)));
    first = false;
    next = time + f.Period;
    return true;
  };
  if (f.Binary) {
    FileSource source(f.Path);
    if (!source.IsOpen()) return false;
    const std::int64_t length = f.RecordLength;
    const std::int64_t count = (source.Length() - f.DataStart) / length;
    const std::int64_t chunkRecords = std::max<std::int64_t>(1, kChunkBytes / length);
    std::string chunk;
    for (std::int64_t r = 0; r < count; r += chunkRecords) {
      const std::int64_t n = std::min(chunkRecords, count - r);
      if (!source.Read(f.DataStart + r * length, static_cast<std::size_t>(n * length), chunk))
        return false;
      for (std::int64_t i = 0; i < n; ++i) {
        const std::string_view record(chunk.data() + i * length, static_cast<std::size_t>(length));
        if (take(I32At(record, 0))) out.Write(record.data(), record.size());
      }
      if (!out.Ok()) return false;
    }
    return true;
  }
  LineReader lines(f.Path, f.DataStart);
  if (!lines.IsOpen()) return false;
  std::string line;
  while (lines.Next(line)) {
    std::string_view body(line);
    while (!body.empty() && (body.back() == '\n' || body.back() == '\r')) body.remove_suffix(1);
    if (!IsRecordLine(body)) continue;
    const auto time = ParseRecordTime(body.substr(0, 19));
    if (!time) return false;
    if (take(*time)) out.Write(line);
    if (!out.Ok()) return false;
  }
  return !lines.Failed();
}

bool JoinAlarms(const std::vector<CouplingFile> &files, const std::vector<std::size_t> &order,
                OutputFile &out) {
  bool header = false;
  for (std::size_t i : order) {
    const CouplingFile &f = files[i];
    if (f.AlarmEncoding == 3) continue;
    const std::size_t headerBytes = f.AlarmEncoding == 2 ? 104 : 102;
    FileSource source(f.AlarmPath);
    std::string bytes;
    if (!source.IsOpen() || source.Length() < static_cast<std::int64_t>(headerBytes) ||
        !source.Read(0, static_cast<std::size_t>(source.Length()), bytes))
      return false;
    if (!header) out.Write(bytes.data(), headerBytes);
    header = true;
    if (f.AlarmEncoding == 2) {
      const std::size_t count = (bytes.size() - headerBytes) / 38;
      out.Write(bytes.data() + headerBytes, count * 38);
    } else {
      // The events of a text file are its lines behind the header.
      out.Write(bytes.data() + headerBytes, bytes.size() - headerBytes);
    }
  }
  return out.Ok();
}

}  // namespace

int AddCouplingSelection(std::vector<std::string> &list, const std::string &path) {
  if (std::find(list.begin(), list.end(), path) != list.end()) return kAlreadyChosen;
  list.push_back(path);
  return 0;
}

int RemoveCouplingSelection(std::vector<std::string> &list, int marked) {
  if (marked < 0 || marked >= static_cast<int>(list.size())) return kNotMarked;
  list.erase(list.begin() + marked);
  return 0;
}

int ReadCouplingFiles(const SharedState &state, const std::vector<std::string> &paths,
                      std::vector<CouplingFile> &files) {
  files.clear();
  for (const std::string &path : paths) {
    auto slot = std::make_unique<RecordSlot>();
    if (ReadRecordFamily(state, path, *slot) != 0) return kJoinFailed;
    const RecordFileInfo &info = slot->Record;
    CouplingFile f;
    f.Path = path;
    f.Folder = std::filesystem::path(path).parent_path().string();
    f.Binary = info.FileFormat == 2;
    f.SamplingCode = info.SamplingCode;
    f.AnalogCount = info.AnalogCount;
    f.DiCount = info.DiCount;
    f.GroupCount = info.GroupCount;
    for (const ChannelInfo &c : info.Channels) {
      f.ChannelNos.push_back(c.ChannelNo);
      f.RecordTypes.push_back(c.RecordType);
      f.Decimals.push_back(c.Decimals);
    }
    for (const DiInfo &d : info.Dis) f.DiRecordTypes.push_back(d.RecordType);
    f.RecordLength = info.RecordLength;
    f.DataStart = f.Binary ? info.DataStart : info.DataStart - info.RecordLength;
    f.FirstTime = info.FirstTime;
    f.LastTime = info.LastTime;
    f.AlarmPath = slot->Alarms.AlarmPath;
    f.AlarmEncoding = f.AlarmPath.empty() ? 3 : f.Binary ? 2 : 0;
    f.AlarmCount = slot->Alarms.AlarmCount + slot->Alarms.MessageCount;
    f.Period = slot->Period();
    files.push_back(std::move(f));
  }
  return 0;
}

CouplingTargets CouplingTargetNames(const std::string &firstPath) {
  const std::filesystem::path path(firstPath);
  const std::string name = path.filename().string();
  const std::string rest = name.size() > 2 ? name.substr(2, 9) : std::string();
  return {(path.parent_path() / ("SC" + rest)).string(),
          (path.parent_path() / ("AC" + rest)).string()};
}

std::vector<int> CouplingFindings(const std::vector<CouplingFile> &files) {
  std::vector<int> findings;
  if (files.empty()) return findings;
  const CouplingFile &a = files.front();
  for (std::size_t i = 1; i < files.size(); ++i) {
    const CouplingFile &b = files[i];
    if (a.Binary != b.Binary) findings.push_back(kDifferentEncoding);
    if (a.SamplingCode != b.SamplingCode) findings.push_back(kDifferentPeriod);
    if (a.AnalogCount != b.AnalogCount || a.DiCount != b.DiCount)
      findings.push_back(kDifferentCounts);
    const std::size_t common = std::min(a.ChannelNos.size(), b.ChannelNos.size());
    if (!std::equal(a.ChannelNos.begin(), a.ChannelNos.begin() + static_cast<long>(common),
                    b.ChannelNos.begin()))
      findings.push_back(kDifferentChannelNo);
    if (!std::equal(a.RecordTypes.begin(), a.RecordTypes.begin() + static_cast<long>(common),
                    b.RecordTypes.begin()))
      findings.push_back(kDifferentRecordType);
    if (a.GroupCount != b.GroupCount) findings.push_back(kDifferentGroups);
  }
  int alarmEncoding = 3;
  for (const CouplingFile &f : files) {
    if (f.AlarmEncoding == 3) continue;
    if (alarmEncoding == 3) {
      alarmEncoding = f.AlarmEncoding;
    } else if (f.AlarmEncoding != alarmEncoding) {
      findings.push_back(kDifferentAlarmEncoding);
      break;
    }
  }
  return findings;
}

std::vector<std::size_t> CouplingOrder(const std::vector<CouplingFile> &files) {
  std::vector<std::size_t> order(files.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  for (std::size_t i = 0; i + 1 < order.size(); ++i)
    for (std::size_t j = i + 1; j < order.size(); ++j)
      if (files[order[j]].FirstTime < files[order[i]].FirstTime) std::swap(order[i], order[j]);
  return order;
}

bool JoinFiles(const std::vector<CouplingFile> &files, const CouplingTargets &targets) {
  if (files.empty()) return false;
  const std::vector<std::size_t> order = CouplingOrder(files);
  OutputSet outputs;
  {
    OutputFile out;
    if (!out.Open(outputs.Add(targets.Measurement, true))) return false;
    const CouplingFile &head = files[order.front()];
    FileSource source(head.Path);
    std::string bytes;
    if (!source.IsOpen() || !source.Read(0, static_cast<std::size_t>(head.DataStart), bytes))
      return false;
    out.Write(bytes);
    std::int64_t next = 0;
    bool first = true;
    for (std::size_t i : order) {
      if (!JoinRecords(files[i], first, next, out)) return false;
      first = false;
    }
    if (!out.Close()) return false;
  }
  const bool anyAlarms = std::any_of(files.begin(), files.end(),
                                     [](const CouplingFile &f) { return f.AlarmEncoding != 3; });
  if (anyAlarms) {
    OutputFile out;
    if (!out.Open(outputs.Add(targets.Alarm, true))) return false;
    if (!JoinAlarms(files, order, out) || !out.Close()) return false;
  }
  return outputs.Publish();
}

CouplingOutcome CoupleFiles(const SharedState &state, const std::vector<std::string> &paths,
                            const std::function<bool(const std::string &)> &confirmOverwrite) {
  CouplingOutcome outcome;
  if (paths.size() < 2) {
    outcome.MessageId = kTooFew;
    return outcome;
  }
  std::vector<CouplingFile> files;
  if (ReadCouplingFiles(state, paths, files) != 0) {
    outcome.MessageId = kJoinFailed;
    return outcome;
  }
  const CouplingTargets targets = CouplingTargetNames(paths.front());
  const bool anyAlarms = std::any_of(files.begin(), files.end(),
                                     [](const CouplingFile &f) { return f.AlarmEncoding != 3; });
  std::vector<std::string> asked = {targets.Measurement};
  if (anyAlarms) asked.push_back(targets.Alarm);
  for (const std::string &target : asked) {
    if (PathExists(target) && !(confirmOverwrite && confirmOverwrite(target))) {
      outcome.MessageId = kCancelled;
      return outcome;
    }
  }
  outcome.Findings = CouplingFindings(files);
  if (!outcome.Findings.empty()) return outcome;
  if (!JoinFiles(files, targets)) {
    outcome.MessageId = kJoinFailed;
    return outcome;
  }
  outcome.MessageId = kJoined;
  outcome.Files.push_back(targets.Measurement);
  if (anyAlarms) outcome.Files.push_back(targets.Alarm);
  return outcome;
}

}  // namespace recscope
