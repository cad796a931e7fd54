#pragma once
// The state that all parts of the program share: the 17 slots and the shared
// numbers. Slots 1 to 16 hold open measurement files, slot 17 belongs to the link
// with the recorder. Arrays have 18 places so that a slot number is its index.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

constexpr int kSlotCount = 17;
constexpr int kLinkSlot = 17;

// The steps of the time axis, in seconds.
constexpr std::array<std::int32_t, 33> IntervalTable = {
    1,       2,       3,        5,        10,       20,      30,     60,      120,
    180,     300,     600,      1200,     1800,     3600,    7200,   10800,   14400,
    21600,   43200,   86400,    172800,   259200,   432000,  864000, 1728000, 2592000,
    5184000, 7776000, 10368000, 15552000, 31536000, 63072000};

struct SharedState {
  std::array<RecordFileInfo, kSlotCount + 1> RecordFiles{};
  std::array<AlarmFileInfo, kSlotCount + 1> AlarmFiles{};
  std::array<std::string, kSlotCount + 1> FlagPaths{};
  std::array<std::vector<FlagEvent>, kSlotCount + 1> FlagLists{};
  std::array<std::int32_t, kSlotCount + 1> SamplePeriods{};
  std::array<std::int16_t, kSlotCount + 1> InstantOpen{};
  std::array<std::int16_t, kSlotCount + 1> AlarmListOpen{};
  std::array<std::int16_t, kSlotCount + 1> CursorCalcOpen{};

  std::int16_t CurrentFile = 1;
  std::int16_t OpenFileCount = 0;
  std::int16_t OpenAdditionCount = 0;
  std::int16_t MenuState = 5;
  std::int16_t LevelBase = 10;
  std::int32_t LevelRowLimit = 6000;
  std::int16_t OpenValid = 0;
  std::int16_t OpenResult = 0;
  std::int16_t TrendOrientation = -1;  // -1 horizontal, 0 vertical
  std::uint8_t DateFormatNo = 1;
  std::string DecimalChar = ".";
  std::string ListSeparator = ",";
  std::int16_t ScaleCount = 1;
  bool ShowAlarms = true;
  bool ShowMessages = true;
  bool ShowFlags = true;

  // The automatic fetch: AutoRunning stands while a run is in progress (the main
  // window then refuses to close), AutoStop asks the run to end at its next test.
  bool AutoRunning = false;
  bool AutoStop = false;

  std::string ProgramFolder;  // the home folder
  std::string ComWorkPath;
  std::string EndMarkerPath;
};

// The one shared state of the process.
SharedState &Shared();

// Puts every shared number and slot back to its start value (tests and start-up).
void ResetSharedState(SharedState &state);

// `ComWorkPath` and `EndMarkerPath`: the folder and the name, with "/" added only
// when the folder does not end in one.
std::string ProgramFilePath(const std::string &folder, const std::string &name);

// DecimalChar from the locale's text of 0.0, and ListSeparator from it:
// "," when the decimal character is ".", else ";".
void SetSeparators(SharedState &state, const std::string &decimalChar);
std::string LocaleDecimalChar();

}  // namespace recscope
