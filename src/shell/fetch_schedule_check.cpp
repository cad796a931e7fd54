#include "shell/fetch_schedule_check.h"

#include "shell/ini_file.h"

namespace recscope {

namespace {
bool Present(const std::string &value) { return value != kIniMissing; }
}  // namespace

FetchScheduleCheck CheckFetchSchedule(const std::string &iniFile) {
  FetchScheduleCheck check;
  for (int n = 1; n <= kFetchRecorderCount; ++n) {
    const std::string section = "FTP_" + std::to_string(n);
    const std::string ip = ReadIni("IP", section, iniFile);
    if (!Present(ip) || ip.empty()) continue;
    if (Present(ReadIni("USER", section, iniFile)) && Present(ReadIni("PASS", section, iniFile)) &&
        Present(ReadIni("ON", section, iniFile)))
      ++check.ValidRecorders;
  }
  check.CycleSet = Present(ReadIni("CYCLE", "FTP", iniFile));
  const std::string autoState = ReadIni("AUTO", "FTP", iniFile);
  check.AutoSet = Present(autoState);
  check.AutoOn = autoState == "1";
  check.Complete = check.ValidRecorders > 0 && check.CycleSet && check.AutoSet;
  return check;
}

FetchScheduleCheck StartupFetchCheck(const std::string &iniFile) {
  FetchScheduleCheck check = CheckFetchSchedule(iniFile);
  if (!check.Complete) {
    WriteIni("0", "AUTO", "FTP", iniFile);
    check.AutoOn = false;
  }
  return check;
}

}  // namespace recscope
