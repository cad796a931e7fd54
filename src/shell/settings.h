#pragma once
// The settings of VIEWERCOM.INI that the shell reads at start and writes from its
// commands, and the file as it is delivered with the program.
#include <cstdint>
#include <string>

namespace recscope {

// VIEWERCOM.INI as delivered: every key that start-up needs.
extern const char *const kDeliveredViewerComIni;

// The settings file of a program folder: the folder, "/", "VIEWERCOM.INI". The
// separator is added even when the folder ends in one.
std::string ViewerComIniPath(const std::string &folder);

// Puts the delivered settings file into `folder` when it has none, so that a
// first start finds every key it reads. An existing file is left as it is.
// Returns false when the file is missing and could not be written.
bool EnsureViewerComIni(const std::string &folder);

// The ten line and range values of section PRINT that start-up reads. The scale
// line width comes from SLINE; the print settings write it under SCALE, which
// nothing reads, so an operator's choice lasts only until the program ends.
struct PrintSettings {
  int DLINE = 0;   // data line width
  int WLINE = 0;   // frame line width
  int MLINE = 0;   // grid line width
  int SLINE = 0;   // scale line width
  int PALL = 0;    // print range choice
  int DAY = 0;     // repeat interval: days
  int HOR = 0;     // hours
  int MIN = 0;     // minutes
  int PAG = 0;     // pages of a continuous print
  int CURSOR = 0;  // 0 or 1: measured value print style
};

// The print settings as delivered with the program.
PrintSettings DeliveredPrintSettings();

// Reads the ten PRINT keys. A key that is missing or holds no whole number gets
// its delivered value; the file itself is not changed.
PrintSettings ReadPrintSettings(const std::string &iniFile);

// What the print settings dialog stores: every key above except that the scale
// line width goes to SCALE, never to SLINE.
void WritePrintSettings(const PrintSettings &settings, const std::string &iniFile);

// DATETYPE / HYOUJINUM: the date format 1 to 5. Anything else gives 1.
std::uint8_t ReadDateType(const std::string &iniFile);
void WriteDateType(int dateFormatNo, const std::string &iniFile);

// TREND / DIRECTION: exactly "Ver" gives the vertical trend (0) and writes "Ver"
// again; anything else, a missing key or "ver" included, gives the horizontal
// trend (-1) and writes "Hori".
std::int16_t ReadTrendDirection(const std::string &iniFile);
void WriteTrendDirection(std::int16_t trendOrientation, const std::string &iniFile);

// A setting text read as a whole number the way start-up converts it: blanks
// around it allowed, a fraction rounded half to even, 16-bit range. Nothing when
// the text is no such number.
bool SettingToInt(const std::string &text, int &out);

}  // namespace recscope
