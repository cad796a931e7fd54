#include "realtime/realtime_settings.h"

#include <fstream>

#include "shell/ini_file.h"

namespace recscope {

namespace {

constexpr const char *kSection = "REALTIME";
constexpr int kOutOfRange = 20115;

std::int32_t Number(const std::string &key, const std::string &iniFile) {
  const std::string text = ReadIni(key, kSection, iniFile);
  try {
    std::size_t used = 0;
    const long value = std::stol(text, &used);
    return static_cast<std::int32_t>(value);
  } catch (...) {
    return 0;
  }
}

}  // namespace

bool ReadRealSettings(RealSettings &settings, const std::string &iniFile) {
  if (!std::ifstream(iniFile).is_open()) return false;
  settings.Communication = Number("COMMUNICATION", iniFile);
  settings.Cycle = Number("CYCLE", iniFile);
  settings.Station = Number("STATION", iniFile);
  settings.Com = Number("COM", iniFile);
  settings.BoudRate = Number("BOUDRATE", iniFile);
  settings.Parity = Number("PARITY", iniFile);
  settings.Ip = ReadIni("IP", kSection, iniFile);
  if (settings.Ip == kIniMissing) settings = RealSettings{};
  return true;
}

void WriteRealSettings(const RealSettings &settings, const std::string &iniFile) {
  WriteIni(std::to_string(settings.Communication), "COMMUNICATION", kSection, iniFile);
  WriteIni(std::to_string(settings.Station), "STATION", kSection, iniFile);
  WriteIni(std::to_string(settings.Com), "COM", kSection, iniFile);
  WriteIni(std::to_string(settings.BoudRate), "BOUDRATE", kSection, iniFile);
  WriteIni(std::to_string(settings.Parity), "PARITY", kSection, iniFile);
  WriteIni(settings.Ip, "IP", kSection, iniFile);
}

int CheckRealByteField(const std::string &text, int &value) {
  if (text.empty() || text.size() > 9) return kOutOfRange;
  int v = 0;
  for (char ch : text) {
    if (ch < '0' || ch > '9') return kOutOfRange;
    v = v * 10 + (ch - '0');
  }
  if (v > 255) return kOutOfRange;
  value = v;
  return 0;
}

}  // namespace recscope
