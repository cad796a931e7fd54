#pragma once
// The look at the automatic fetch settings that start-up makes.
#include <string>

namespace recscope {

inline constexpr int kFetchRecorderCount = 10;

struct FetchScheduleCheck {
  int ValidRecorders = 0;  // FTP_1 to FTP_10 with every key set
  bool CycleSet = false;   // FTP / CYCLE present
  bool AutoSet = false;    // FTP / AUTO present
  bool AutoOn = false;     // FTP / AUTO is "1"
  // At least one valid recorder, a cycle and an auto state: what the fetch
  // needs to run. Without it start-up writes AUTO 0 and shows the settings error.
  bool Complete = false;
};

// A recorder n counts as valid when its section FTP_n holds IP, USER, PASS and ON;
// a section without IP means there is no recorder n. Reads only.
FetchScheduleCheck CheckFetchSchedule(const std::string &iniFile);

// The start-up step: the check, and AUTO written as "0" when the set is not
// complete.
FetchScheduleCheck StartupFetchCheck(const std::string &iniFile);

}  // namespace recscope
