#include "shell/shared_state.h"

#include <clocale>
#include <cstdio>

#include "shell/settings.h"
#include "totalize/report_templates.h"

namespace recscope {

SharedState &Shared() {
  static SharedState state;
  return state;
}

void ResetSharedState(SharedState &state) {
  std::string folder = state.ProgramFolder;
  state = SharedState{};
  state.ProgramFolder = folder;
  state.ComWorkPath = ProgramFilePath(folder, "COMWORK.DAT");
  state.EndMarkerPath = ProgramFilePath(folder, "end");
}

void StartSharedState(SharedState &state, const std::string &decimalChar) {
  ResetSharedState(state);
  SetSeparators(state, decimalChar.empty() ? LocaleDecimalChar() : decimalChar);
  const std::string ini = ViewerComIniPath(state.ProgramFolder);
  EnsureViewerComIni(state.ProgramFolder);
  EnsureReportTemplates(state.ProgramFolder);
  state.DateFormatNo = ReadDateType(ini);
  state.TrendOrientation = ReadTrendDirection(ini);
  PrintSettingsLoad(state.Print, ini);
  // Until the operator picks a paper, a horizontal trend prints on landscape pages.
  state.Print.Orientation = state.TrendOrientation == 0 ? kPortrait : kLandscape;
}

std::string ProgramFilePath(const std::string &folder, const std::string &name) {
  if (!folder.empty() && folder.back() == '/') return folder + name;
  return folder + "/" + name;
}

void SetSeparators(SharedState &state, const std::string &decimalChar) {
  // One character of the locale's text; assigned in place, which also keeps
  // GCC 12's overlap warning about string copies quiet.
  state.DecimalChar.assign(1, decimalChar.empty() ? '.' : decimalChar[0]);
  state.ListSeparator.assign(1, state.DecimalChar == "." ? ',' : ';');
}

std::string LocaleDecimalChar() {
  // The second character of the locale's text of 0.0.
  const char *previous = std::setlocale(LC_NUMERIC, nullptr);
  std::string saved = previous ? previous : "C";
  std::setlocale(LC_NUMERIC, "");
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%.1f", 0.0);
  std::setlocale(LC_NUMERIC, saved.c_str());
  return std::string(1, buffer[1]);
}

}  // namespace recscope
