#pragma once
// The print settings the program holds while it runs: the line widths, range and
// value source of section PRINT, the range mode, and the printer's paper and
// orientation. The dialogs change them, the page layout and the print read them.
#include <cstdint>
#include <string>

#include "shell/settings.h"

namespace recscope {

// Paper codes of the printer driver that change the page's scale. Every other
// code prints as A4.
constexpr int kPaperA3 = 8;
constexpr int kPaperA4 = 9;
constexpr int kPaperA5 = 11;
constexpr int kPaperB4 = 12;
constexpr int kPaperB5 = 13;

// Orientation of the paper.
constexpr int kPortrait = 1;
constexpr int kLandscape = 2;

// The printable page of an A4 sheet in portrait, in twips; the layout numbers of
// the page are those of this sheet.
constexpr double kA4PageWidth = 11680.0;
constexpr double kA4PageHeight = 16495.0;

// The PRINT keys as integers (DLINE, WLINE, MLINE, SLINE, PALL, DAY, HOR, MIN, PAG,
// CURSOR: see PrintSettings) and what the print keeps beside them.
//
// SLINE holds the scale line width in memory. It is read from the key SLINE at
// start and written under SCALE by the settings dialog, so an operator's width
// lasts until the program ends and the next start goes back to SLINE.
struct PrintConfig : PrintSettings {
  // "Screen": the displayed range only; "All": a continuous print.
  std::string PrintMode = "Screen";
  // The printer's state as last read or chosen.
  int PaperCode = kPaperA4;
  int Orientation = kPortrait;
  int Copies = 1;
};

// PrintMode of a range choice: "Screen" for PALL 0, "All" for 1 and 2.
std::string PrintModeOf(int pall);

// At start: the PRINT keys of the settings file (SLINE for the scale width), and
// PrintMode from PALL. Paper, orientation and copies are left as they are.
void PrintSettingsLoad(PrintConfig &config, const std::string &iniFile);

// What OK in the print settings dialog does with the chosen values: takes the
// widths, range and value source, sets PrintMode from PALL and writes the keys,
// the scale line width under SCALE.
void PrintSettingsAccept(PrintConfig &config, const PrintSettings &chosen,
                         const std::string &iniFile);

// Writes the keys as the dialog's OK does: every key, the scale width as SCALE.
void PrintSettingsWrite(const PrintConfig &config, const std::string &iniFile);

// The page scale of a paper code: A3 1.414, A5 0.704, B4 1.19, B5 0.865, else 1.0.
double PaperScale(int paperCode);
// "A3", "A5", "B4", "B5", else "A4".
const char *PaperName(int paperCode);

// The printable page in twips: 11680 by 16495 in portrait and 16495 by 11680 in
// landscape, each multiplied by the paper's scale.
struct PageExtent {
  double Width = 0;
  double Height = 0;
};
PageExtent PrintablePage(int paperCode, int orientation);

// The seconds a continuous print moves on from one page to the next: the display's
// time width for PALL 1, DAY x 86400 + HOR x 3600 + MIN x 60 for PALL 2, and 0 for a
// print of the display only (PALL 0 or PrintMode "Screen").
std::int64_t ContinuousStep(const PrintConfig &config, std::int64_t displayWidthSeconds);

}  // namespace recscope
