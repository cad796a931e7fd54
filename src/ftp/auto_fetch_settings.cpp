#include "ftp/auto_fetch_settings.h"

#include <cstdio>

#include "shell/ini_file.h"

namespace recscope {

namespace {

std::string Section(int recorderNo) { return "FTP_" + std::to_string(recorderNo); }

std::string Value(const std::string &key, const std::string &section, const std::string &ini) {
  std::string value = ReadIni(key, section, ini);
  return value == kIniMissing ? std::string() : value;
}

// The whole number at the front of `text`, or 0.
int LeadingNumber(const std::string &text) {
  int value = 0;
  std::size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  bool any = false;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && value < 100000; ++i) {
    value = value * 10 + (text[i] - '0');
    any = true;
  }
  return any ? value : 0;
}

std::string TwoDigits(int value) {
  std::string text = std::to_string(value);
  return text.size() == 1 ? "0" + text : text;
}

}  // namespace

FetchRecorder ReadFetchRecorder(const std::string &iniFile, int recorderNo) {
  const std::string section = Section(recorderNo);
  FetchRecorder recorder;
  recorder.IP = Value("IP", section, iniFile);
  recorder.USER = Value("USER", section, iniFile);
  recorder.PASS = Value("PASS", section, iniFile);
  recorder.ON = Value("ON", section, iniFile) == "1";
  return recorder;
}

FetchRecorders ReadFetchRecorders(const std::string &iniFile) {
  FetchRecorders recorders;
  for (int n = 1; n <= kFetchRecorders; ++n) recorders[n - 1] = ReadFetchRecorder(iniFile, n);
  return recorders;
}

std::string CycleText(const FetchCycle &cycle) {
  return TwoDigits(cycle.Days) + ":" + TwoDigits(cycle.Hours);
}

FetchCycle ParseCycle(const std::string &text) {
  const std::string value = text == kIniMissing ? std::string(kDefaultFetchCycle) : text;
  FetchCycle cycle;
  const std::size_t colon = value.find(':');
  cycle.Days = LeadingNumber(value.substr(0, colon));
  if (colon != std::string::npos) cycle.Hours = LeadingNumber(value.substr(colon + 1));
  return cycle;
}

std::int64_t AddCycle(std::int64_t now, const FetchCycle &cycle) {
  return now + static_cast<std::int64_t>(cycle.Days) * 86400 +
         static_cast<std::int64_t>(cycle.Hours) * 3600;
}

int CheckFetchStart(const FetchRecorders &recorders, const FetchCycle &cycle) {
  for (const FetchRecorder &recorder : recorders) {
    if (!recorder.ON) continue;
    if (recorder.USER.empty()) return 10858;
    if (cycle.Days == 0 && cycle.Hours == 0) return 10859;
  }
  return 0;
}

void WriteFetchSettings(const std::string &iniFile, const FetchRecorders &recorders,
                        const FetchCycle &cycle, bool autoOn) {
  for (int n = 1; n <= kFetchRecorders; ++n) {
    const FetchRecorder &recorder = recorders[n - 1];
    const std::string section = Section(n);
    WriteIni(recorder.IP, "IP", section, iniFile);
    WriteIni(recorder.USER, "USER", section, iniFile);
    WriteIni(recorder.PASS, "PASS", section, iniFile);
    WriteIni(recorder.ON ? "1" : "0", "ON", section, iniFile);
  }
  WriteIni(CycleText(cycle), "CYCLE", "FTP", iniFile);
  WriteIni(autoOn ? "1" : "0", "AUTO", "FTP", iniFile);
}

std::optional<std::array<int, 4>> ParseRecorderAddress(const std::string &ip) {
  std::array<int, 4> parts{};
  std::size_t at = 0;
  for (int p = 0; p < 4; ++p) {
    std::size_t digits = 0;
    int value = 0;
    while (at < ip.size() && ip[at] >= '0' && ip[at] <= '9') {
      if (++digits > 3) return std::nullopt;
      value = value * 10 + (ip[at] - '0');
      ++at;
    }
    if (digits == 0 || value > 255) return std::nullopt;
    parts[static_cast<std::size_t>(p)] = value;
    if (p < 3) {
      if (at >= ip.size() || ip[at] != '.') return std::nullopt;
      ++at;
    }
  }
  if (at != ip.size()) return std::nullopt;
  return parts;
}

std::string RecorderFolderName(const std::string &ip) {
  const std::optional<std::array<int, 4>> parts = ParseRecorderAddress(ip);
  if (!parts) return {};
  std::string name = "IP";
  for (int part : *parts) {
    char padded[8];
    std::snprintf(padded, sizeof padded, "%03d", part);
    name += padded;
  }
  return name;
}

FetchTimer::FetchTimer(std::function<std::int64_t()> clock) : clock_(std::move(clock)) {}

void FetchTimer::Start(const std::string &cycleText) {
  firstTick_ = true;
  next_ = AddCycle(clock_(), ParseCycle(cycleText));
}

bool FetchTimer::Tick(const std::string &cycleText, const std::function<bool()> &askNow,
                      bool running) {
  if (running) return false;
  if (firstTick_) {
    firstTick_ = false;
    const bool now = askNow && askNow();
    next_ = now ? clock_() : AddCycle(clock_(), ParseCycle(cycleText));
  }
  return next_ - clock_() <= 0;
}

void FetchTimer::RunEnded(const std::string &cycleText) {
  next_ = AddCycle(clock_(), ParseCycle(cycleText));
}

}  // namespace recscope
