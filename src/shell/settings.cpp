#include "shell/settings.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "platform/text_encoding.h"
#include "shell/file_bytes.h"
#include "shell/ini_file.h"
#include "shell/rounding.h"

namespace recscope {

const char *const kDeliveredViewerComIni =
    "[PRINT]\r\n"
    "DLINE=1\r\n"
    "WLINE=2\r\n"
    "MLINE=1\r\n"
    "SLINE=1\r\n"
    "SCALE=1\r\n"
    "PALL=0\r\n"
    "DAY=0\r\n"
    "HOR=1\r\n"
    "MIN=0\r\n"
    "PAG=1\r\n"
    "CURSOR=0\r\n"
    "[DATETYPE]\r\n"
    "HYOUJINUM=1\r\n"
    "[TREND]\r\n"
    "DIRECTION=Hori\r\n";

std::string ViewerComIniPath(const std::string &folder) { return folder + "/VIEWERCOM.INI"; }

bool EnsureViewerComIni(const std::string &folder) {
  const std::string path = ViewerComIniPath(folder);
  std::error_code error;
  if (std::filesystem::exists(path, error)) return true;
  return ReplaceFileBytes(path, kDeliveredViewerComIni);
}

bool SettingToInt(const std::string &text, int &out) {
  const char *start = text.c_str();
  while (*start == ' ' || *start == '\t') ++start;
  if (*start == '\0') return false;
  char *end = nullptr;
  errno = 0;
  double value = std::strtod(start, &end);
  if (end == start || errno == ERANGE || !std::isfinite(value)) return false;
  while (*end == ' ' || *end == '\t') ++end;
  if (*end != '\0') return false;
  double rounded = RoundHalfEven(value);
  if (rounded < -32768.0 || rounded > 32767.0) return false;
  out = static_cast<int>(rounded);
  return true;
}

PrintSettings DeliveredPrintSettings() {
  PrintSettings delivered;
  delivered.DLINE = 1;
  delivered.WLINE = 2;
  delivered.MLINE = 1;
  delivered.SLINE = 1;
  delivered.PALL = 0;
  delivered.DAY = 0;
  delivered.HOR = 1;
  delivered.MIN = 0;
  delivered.PAG = 1;
  delivered.CURSOR = 0;
  return delivered;
}

namespace {
void ReadPrintKey(const char *key, const std::string &iniFile, int &field) {
  int value = 0;
  if (SettingToInt(ReadIni(key, "PRINT", iniFile), value)) field = value;
}
}  // namespace

PrintSettings ReadPrintSettings(const std::string &iniFile) {
  PrintSettings s = DeliveredPrintSettings();
  ReadPrintKey("DLINE", iniFile, s.DLINE);
  ReadPrintKey("WLINE", iniFile, s.WLINE);
  ReadPrintKey("MLINE", iniFile, s.MLINE);
  ReadPrintKey("SLINE", iniFile, s.SLINE);
  ReadPrintKey("PALL", iniFile, s.PALL);
  ReadPrintKey("DAY", iniFile, s.DAY);
  ReadPrintKey("HOR", iniFile, s.HOR);
  ReadPrintKey("MIN", iniFile, s.MIN);
  ReadPrintKey("PAG", iniFile, s.PAG);
  ReadPrintKey("CURSOR", iniFile, s.CURSOR);
  return s;
}

void WritePrintSettings(const PrintSettings &s, const std::string &iniFile) {
  WriteIni(std::to_string(s.DLINE), "DLINE", "PRINT", iniFile);
  WriteIni(std::to_string(s.WLINE), "WLINE", "PRINT", iniFile);
  WriteIni(std::to_string(s.MLINE), "MLINE", "PRINT", iniFile);
  WriteIni(std::to_string(s.SLINE), "SCALE", "PRINT", iniFile);
  WriteIni(std::to_string(s.PALL), "PALL", "PRINT", iniFile);
  WriteIni(std::to_string(s.DAY), "DAY", "PRINT", iniFile);
  WriteIni(std::to_string(s.HOR), "HOR", "PRINT", iniFile);
  WriteIni(std::to_string(s.MIN), "MIN", "PRINT", iniFile);
  WriteIni(std::to_string(s.PAG), "PAG", "PRINT", iniFile);
  WriteIni(std::to_string(s.CURSOR), "CURSOR", "PRINT", iniFile);
}

std::uint8_t ReadDateType(const std::string &iniFile) {
  int value = 0;
  if (!SettingToInt(ReadIni("HYOUJINUM", "DATETYPE", iniFile), value)) return 1;
  if (value < 1 || value > 5) return 1;
  return static_cast<std::uint8_t>(value);
}

void WriteDateType(int dateFormatNo, const std::string &iniFile) {
  WriteIni(std::to_string(dateFormatNo), "HYOUJINUM", "DATETYPE", iniFile);
}

std::int16_t ReadTrendDirection(const std::string &iniFile) {
  const bool vertical = ReadIni("DIRECTION", "TREND", iniFile) == "Ver";
  const std::int16_t orientation = vertical ? 0 : -1;
  WriteTrendDirection(orientation, iniFile);
  return orientation;
}

void WriteTrendDirection(std::int16_t trendOrientation, const std::string &iniFile) {
  WriteIni(trendOrientation == 0 ? "Ver" : "Hori", "DIRECTION", "TREND", iniFile);
}

}  // namespace recscope
