#include "print/print_setting_form.h"

#include "platform/text_encoding.h"

namespace recscope {

PrintSettingForm PrintSettingFormOf(const PrintConfig &config) {
  PrintSettingForm form;
  form.DataLine = config.DLINE;
  form.WakuLine = config.WLINE;
  form.MasuLine = config.MLINE;
  form.ScaleLine = config.SLINE;
  form.Range = config.PALL;
  form.Day = config.DAY;
  form.Hour = config.HOR;
  form.Minute = config.MIN;
  form.Pages = config.PAG;
  form.FlagValues = config.CURSOR == 0;
  return form;
}

PrintSettings PrintSettingsOfForm(const PrintSettingForm &form) {
  PrintSettings chosen;
  chosen.DLINE = form.DataLine;
  chosen.WLINE = form.WakuLine;
  chosen.MLINE = form.MasuLine;
  chosen.SLINE = form.ScaleLine;
  if (form.Range == kRangeScreen)
    chosen.PALL = 0;
  else
    chosen.PALL = form.Range == kRangeBySetTime ? 2 : 1;
  chosen.DAY = form.Day;
  chosen.HOR = form.Hour;
  chosen.MIN = form.Minute;
  chosen.PAG = form.Pages;
  chosen.CURSOR = form.FlagValues ? 0 : 1;
  return chosen;
}

void AcceptPrintSettingForm(const PrintSettingForm &form, PrintConfig &config, TrendView &view,
                            const std::string &iniFile) {
  const PrintSettings chosen = PrintSettingsOfForm(form);
  // PrintSettingsAccept takes the values, sets PrintMode and writes the keys; the
  // range is stored first so that a print started from here sees both at once.
  PrintConfig next = config;
  static_cast<PrintSettings &>(next) = chosen;
  next.PrintMode = PrintModeOf(chosen.PALL);
  view.PrintStart = view.DisplayStart;
  view.PrintEnd = view.DisplayEnd;
  view.PrintStep =
      ContinuousStep(next, static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart);
  PrintSettingsAccept(config, chosen, iniFile);
}

std::size_t PrintTitleBytes(const std::string &utf8) { return Utf8ToCp932(utf8).size(); }

bool PrintTitleFits(const std::string &utf8) { return PrintTitleBytes(utf8) <= kPrintTitleBytes; }

}  // namespace recscope
