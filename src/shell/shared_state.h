#pragma once
// The state that all parts of the program share: the 17 slots and the shared
// numbers. Slots 1 to 16 hold open measurement files, slot 17 belongs to the link
// with the recorder. Arrays have 18 places so that a slot number is its index.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "print/print_settings.h"
#include "realtime/realtime_state.h"
#include "record/record_file_info.h"
#include "totalize/totalize_window.h"

namespace recscope {

constexpr int kSlotCount = 17;
constexpr int kLinkSlot = 17;

// One record slot: the open measurement file with its alarm and flag companions,
// its period and which of its list windows are open. Slots 1 to 16 hold files,
// slot 17 the link with the recorder.
struct RecordSlot {
  RecordFileInfo Record;
  AlarmFileInfo Alarms;
  std::string FlagPath;  // empty when the record has no usable flag file
  std::vector<FlagEvent> Flags;
  std::int32_t SamplePeriod = 0;  // seconds per record
  std::int16_t InstantOpen = 0;   // -1 while its instant value window is open
  std::int16_t AlarmListOpen = 0;
  std::int16_t CursorCalcOpen = 0;

  bool InUse() const { return Record.InUse != 0; }
  // The period every view and calculation works with: never below one second.
  std::int32_t Period() const { return SamplePeriod > 1 ? SamplePeriod : 1; }
};

struct SharedState {
  // By slot number: index 0 is not used.
  std::array<RecordSlot, kSlotCount + 1> Slots{};

  std::int16_t CurrentFile = 1;
  std::int16_t OpenFileCount = 0;
  std::int16_t OpenAdditionCount = 0;
  // The totalize slots 1 to 16 (index 0 is not used) and the current one.
  std::array<TotalizeWindow, kTotalizeSlotCount + 1> TotalizeSlots{};
  std::int16_t CurrentAddition = 1;
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
  // The print settings: section PRINT as read at start and as the dialogs change it.
  PrintConfig Print;

  // The automatic fetch: AutoRunning stands while a run is in progress (the main
  // window then refuses to close), AutoStop asks the run to end at its next test.
  bool AutoRunning = false;
  bool AutoStop = false;

  // The real-time monitor: its settings, the recorder's setup, the sample ring
  // and the place of its driver.
  RealtimeState Realtime;

  std::string ProgramFolder;  // the home folder
  std::string ComWorkPath;
  std::string EndMarkerPath;

  RecordSlot &Slot(int slot) { return Slots.at(static_cast<std::size_t>(slot)); }
  const RecordSlot &Slot(int slot) const { return Slots.at(static_cast<std::size_t>(slot)); }
  TotalizeWindow &Totalize(int slot) { return TotalizeSlots.at(static_cast<std::size_t>(slot)); }
  const TotalizeWindow &Totalize(int slot) const {
    return TotalizeSlots.at(static_cast<std::size_t>(slot));
  }
};

// The one shared state of the process.
SharedState &Shared();

// Puts every shared number and slot back to its start value (tests and start-up).
void ResetSharedState(SharedState &state);

// The start of the shared state that both programs make, once the program folder
// is known: every slot free, the separators (from `decimalChar`, or the locale's
// when empty), the delivered settings file when there is none, and the date format
// and trend direction of the settings.
void StartSharedState(SharedState &state, const std::string &decimalChar = {});

// `ComWorkPath` and `EndMarkerPath`: the folder and the name, with "/" added only
// when the folder does not end in one.
std::string ProgramFilePath(const std::string &folder, const std::string &name);

// DecimalChar from the locale's text of 0.0, and ListSeparator from it:
// "," when the decimal character is ".", else ";".
void SetSeparators(SharedState &state, const std::string &decimalChar);
std::string LocaleDecimalChar();

}  // namespace recscope
