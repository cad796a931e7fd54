#include "print/print_settings.h"

namespace recscope {

std::string PrintModeOf(int pall) { return pall == 0 ? "Screen" : "All"; }

void PrintSettingsLoad(PrintConfig &config, const std::string &iniFile) {
  static_cast<PrintSettings &>(config) = ReadPrintSettings(iniFile);
  config.PrintMode = PrintModeOf(config.PALL);
}

void PrintSettingsWrite(const PrintConfig &config, const std::string &iniFile) {
  WritePrintSettings(config, iniFile);
}

void PrintSettingsAccept(PrintConfig &config, const PrintSettings &chosen,
                         const std::string &iniFile) {
  static_cast<PrintSettings &>(config) = chosen;
  config.PrintMode = PrintModeOf(chosen.PALL);
  PrintSettingsWrite(config, iniFile);
}

double PaperScale(int paperCode) {
  switch (paperCode) {
    case kPaperA3:
      return 1.414;
    case kPaperA5:
      return 0.704;
    case kPaperB4:
      return 1.19;
    case kPaperB5:
      return 0.865;
    default:
      return 1.0;
  }
}

const char *PaperName(int paperCode) {
  switch (paperCode) {
    case kPaperA3:
      return "A3";
    case kPaperA5:
      return "A5";
    case kPaperB4:
      return "B4";
    case kPaperB5:
      return "B5";
    default:
      return "A4";
  }
}

PageExtent PrintablePage(int paperCode, int orientation) {
  const double s = PaperScale(paperCode);
  if (orientation == kLandscape) return {kA4PageHeight * s, kA4PageWidth * s};
  return {kA4PageWidth * s, kA4PageHeight * s};
}

std::int64_t ContinuousStep(const PrintConfig &config, std::int64_t displayWidthSeconds) {
  if (config.PrintMode != "All") return 0;
  if (config.PALL == 1) return displayWidthSeconds;
  if (config.PALL == 2)
    return static_cast<std::int64_t>(config.DAY) * 86400 +
           static_cast<std::int64_t>(config.HOR) * 3600 +
           static_cast<std::int64_t>(config.MIN) * 60;
  return 0;
}

}  // namespace recscope
