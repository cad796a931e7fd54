#include "record/open_record.h"

#include <filesystem>

#include "record/alarm_file.h"
#include "record/flag_file.h"
#include "record/record_reader.h"

namespace recscope {

namespace {

constexpr int kValid = -1;
constexpr int kWrongName = 11112;
constexpr int kNoFreeSlot = 11113;

std::int64_t FileSize(const std::string &path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return -1;
  const auto size = std::filesystem::file_size(path, error);
  return error ? -1 : static_cast<std::int64_t>(size);
}

// A companion of the record: the same folder, `letter` and the rest of the name.
// Upper and lower case letters are both looked for.
std::string FindCompanion(const std::string &path, int nameStart, char letter) {
  const std::string folder = path.substr(0, static_cast<std::size_t>(nameStart));
  const std::string rest = path.substr(static_cast<std::size_t>(nameStart) + 1);
  for (char c : {letter, static_cast<char>(letter - 'A' + 'a')}) {
    const std::string candidate = folder + c + rest;
    if (FileSize(candidate) >= 0) return candidate;
  }
  return {};
}

// Empties a slot; a slot's period stays until the next read sets it, as the
// read steps take the previous period for an unknown sampling code.
void ClearSlot(RecordSlot &slot) {
  const std::int32_t period = slot.SamplePeriod;
  slot = RecordSlot{};
  slot.SamplePeriod = period;
}

// The read steps of one encoding; returns -1 when all went well.
// Without `buildLevels` the record is read and checked but no working file is made.
int ReadSteps(const SharedState &state, int slotNo, RecordSlot &slot, const ProgressFn &progress,
              bool buildLevels = true) {
  RecordFileInfo &info = slot.Record;
  int result = kWrongFile;
  {
    FileSource source(info.FilePath);
    if (!source.IsOpen()) return kWrongFile;
    info.FileFormat = static_cast<std::int16_t>(DetectFileFormat(source));
    result = ReadRecordTables(source, info, slot.SamplePeriod,
                              LevelPlan{state.LevelBase, state.LevelRowLimit});
  }
  if (result == kValid && buildLevels)
    result = BuildWorkingFiles(info, state.ProgramFolder, slotNo, progress);
  if (result != kValid) return result;

  AlarmFileInfo &alarms = slot.Alarms;
  if (!alarms.AlarmPath.empty()) {
    if (!ReadAlarmFile(alarms.AlarmPath, info.FileFormat == 2, alarms)) return kWrongFile;
  } else {
    alarms.AlarmCount = 0;
    alarms.MessageCount = 0;
  }
  if (!slot.FlagPath.empty()) ApplyFlagFile(slot.FlagPath, alarms, slot.Flags);
  return kValid;
}

// The companions and the lengths of a record path, in a cleared slot.
void FindFamily(const std::string &path, RecordSlot &slot) {
  const int nameStart = NameStartIndex(path);
  AlarmFileInfo &alarms = slot.Alarms;
  alarms.AlarmPath = FindCompanion(path, nameStart, 'A');
  alarms.AlarmLength = alarms.AlarmPath.empty() ? 0
                                                : static_cast<std::int32_t>(std::min<std::int64_t>(
                                                      FileSize(alarms.AlarmPath), INT32_MAX));
  const std::string flagPath = FindCompanion(path, nameStart, 'F');
  if (!flagPath.empty() && FileSize(flagPath) >= static_cast<std::int64_t>(kMinFlagFileLength))
    slot.FlagPath = flagPath;
  RecordFileInfo &info = slot.Record;
  info.FilePath = path;
  info.FileLength = static_cast<std::int32_t>(std::min<std::int64_t>(FileSize(path), INT32_MAX));
}

}  // namespace

int ReadRecordFamily(const SharedState &state, const std::string &path, RecordSlot &slot) {
  if (!IsRecordFileName(path)) return kWrongName;
  ClearSlot(slot);
  FindFamily(path, slot);
  const int result = ReadSteps(state, 0, slot, {}, false);
  if (result != kValid) {
    ClearSlot(slot);
    return OpenResultMessageId(result);
  }
  return 0;
}

int ReadRecordIntoSlot(SharedState &state, const std::string &path, int slotNo) {
  RecordSlot &slot = state.Slot(slotNo);
  DeleteWorkingFiles(slot.Record, state.ProgramFolder, slotNo);
  ClearSlot(slot);
  FindFamily(path, slot);
  const int result = ReadSteps(state, slotNo, slot, {});
  if (result != kValid) {
    DeleteWorkingFiles(slot.Record, state.ProgramFolder, slotNo);
    ClearSlot(slot);
    return OpenResultMessageId(result);
  }
  slot.Record.InUse = -1;
  return 0;
}

int FileSelect(SharedState &state) {
  for (int slot = 1; slot <= 16; ++slot) {
    if (!state.Slot(slot).InUse()) {
      state.CurrentFile = static_cast<std::int16_t>(slot);
      return slot;
    }
  }
  state.CurrentFile = kLinkSlot;
  return kLinkSlot;
}

int NameStartIndex(const std::string &path) {
  const int length = static_cast<int>(path.size());
  for (int position = length - 6; position >= length - 12 && position >= 1; --position)
    if (path[static_cast<std::size_t>(position - 1)] == '/') return position;
  return length - 4 >= 1 ? length - 5 : -1;
}

bool IsRecordFileName(const std::string &path) {
  const int start = NameStartIndex(path);
  if (start < 0 || path.size() < 4) return false;
  const std::string extension = path.substr(path.size() - 3);
  if (extension != "FDT" && extension != "Fdt" && extension != "fdt") return false;
  const char first = path[static_cast<std::size_t>(start)];
  return first == 'S' || first == 's';
}

OpenOutcome OpenRecordFile(SharedState &state, const std::string &path,
                           const ProgressFn &progress) {
  OpenOutcome outcome;
  if (!IsRecordFileName(path)) {
    outcome.messageId = kWrongName;
    outcome.showChoiceAgain = true;
    return outcome;
  }
  const std::int16_t remembered = state.CurrentFile;
  const int slotNo = FileSelect(state);
  if (slotNo == kLinkSlot) {
    state.CurrentFile = remembered;
    outcome.messageId = kNoFreeSlot;
    outcome.showChoiceAgain = true;
    return outcome;
  }

  RecordSlot &slot = state.Slot(slotNo);
  ClearSlot(slot);
  FindFamily(path, slot);
  RecordFileInfo &info = slot.Record;

  // The bar's maximum of the build, so that success can fill the bar.
  int lastMaximum = 0;
  auto tracked = [&](int value, int maximum) {
    lastMaximum = maximum;
    if (progress) progress(value, maximum);
  };
  const int result = ReadSteps(state, slotNo, slot, tracked);
  if (result != kValid) {
    DeleteWorkingFiles(info, state.ProgramFolder, slotNo);
    ClearSlot(slot);
    state.CurrentFile = remembered;
    outcome.messageId = OpenResultMessageId(result);
    return outcome;
  }
  if (progress && lastMaximum > 0) progress(lastMaximum, lastMaximum);
  state.OpenFileCount = static_cast<std::int16_t>(state.OpenFileCount + 1);
  info.InUse = -1;
  outcome.opened = true;
  outcome.slot = slotNo;
  return outcome;
}

bool IsFileOpen(const SharedState &state, const std::string &path) {
  for (int slot = 1; slot <= kSlotCount; ++slot)
    if (state.Slot(slot).InUse() && state.Slot(slot).Record.FilePath == path) return true;
  return false;
}

void DeleteOpenWorkingFiles(const SharedState &state) {
  for (int slot = 1; slot <= kSlotCount; ++slot)
    if (state.Slot(slot).InUse())
      DeleteWorkingFiles(state.Slot(slot).Record, state.ProgramFolder, slot);
}

void CloseRecordSlot(SharedState &state, int slotNo) {
  if (slotNo < 1 || slotNo > kSlotCount) return;
  RecordSlot &slot = state.Slot(slotNo);
  const bool wasInUse = slot.InUse();
  DeleteWorkingFiles(slot.Record, state.ProgramFolder, slotNo);
  ClearSlot(slot);
  if (wasInUse && slotNo != kLinkSlot && state.OpenFileCount > 0)
    state.OpenFileCount = static_cast<std::int16_t>(state.OpenFileCount - 1);
}

}  // namespace recscope
