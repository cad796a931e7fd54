#pragma once
// What the print settings dialog and the title dialog show and take, without the
// windows: the dialog's fields from the print settings in hand, what its OK does
// with them, and the length test of a page title.
#include <cstddef>
#include <string>

#include "print/print_settings.h"
#include "trend/trend_view.h"

namespace recscope {

// Range choices of dlgPrnSet, as PALL stores them.
constexpr int kRangeScreen = 0;     // OptScreen: the display only
constexpr int kRangeByDisplay = 1;  // continuous by the display's time width
constexpr int kRangeBySetTime = 2;  // continuous by DAY, HOR and MIN

// The longest title, in bytes of the code page of the settings and record files,
// and the message that refuses a longer one.
constexpr std::size_t kPrintTitleBytes = 80;
constexpr int kPrintTitleTooLong = 18700;

// The fields of dlgPrnSet.
struct PrintSettingForm {
  int DataLine = 0;   // DLINE
  int WakuLine = 0;   // WLINE
  int MasuLine = 0;   // MLINE
  int ScaleLine = 0;  // the scale line width in memory (SLINE at start, SCALE on disk)
  int Range = kRangeScreen;
  int Day = 0;
  int Hour = 0;
  int Minute = 0;
  int Pages = 0;
  bool FlagValues = false;  // the value column from the flags instead of the cursors
};

// The dialog's fields from the print settings in hand.
PrintSettingForm PrintSettingFormOf(const PrintConfig &config);

// The PRINT keys the fields stand for: the four widths, PALL by the range
// choice, CURSOR 1 unless the flag option is chosen.
PrintSettings PrintSettingsOfForm(const PrintSettingForm &form);

// OK of dlgPrnSet: takes the widths, PrintMode ("Screen" with OptScreen, else
// "All"), PALL and CURSOR into `config`; stores the print range in the view (start
// and end of the display, and the step of a continuous print: the display's time
// width for PALL 1, DAY x 86400 + HOR x 3600 + MIN x 60 seconds for PALL 2, 0 for
// the display only); then writes the keys, the scale width under SCALE.
void AcceptPrintSettingForm(const PrintSettingForm &form, PrintConfig &config, TrendView &view,
                            const std::string &iniFile);

// Bytes of a title in the code page; a title fits when it has at most 80.
std::size_t PrintTitleBytes(const std::string &utf8);
bool PrintTitleFits(const std::string &utf8);

}  // namespace recscope
