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

void ClearSlot(SharedState &state, int slot) {
  state.RecordFiles[slot] = RecordFileInfo{};
  state.AlarmFiles[slot] = AlarmFileInfo{};
  state.FlagPaths[slot].clear();
  state.FlagLists[slot].clear();
}

// The read steps of one encoding; returns -1 when all went well.
int ReadSteps(SharedState &state, int slot, const ProgressFn &progress) {
  RecordFileInfo &info = state.RecordFiles[slot];
  int result = kWrongFile;
  {
    FileSource source(info.FilePath);
    if (!source.IsOpen()) return kWrongFile;
    info.FileFormat = static_cast<std::int16_t>(DetectFileFormat(source));
    result = ReadRecordTables(source, info, state.SamplePeriods[slot],
                              LevelPlan{state.LevelBase, state.LevelRowLimit});
  }
  if (result == kValid) result = BuildWorkingFiles(info, state.ProgramFolder, slot, progress);
  if (result != kValid) return result;

  AlarmFileInfo &alarms = state.AlarmFiles[slot];
  if (!alarms.AlarmPath.empty()) {
    if (!ReadAlarmFile(alarms.AlarmPath, info.FileFormat == 2, alarms)) return kWrongFile;
  } else {
    alarms.AlarmCount = 0;
    alarms.MessageCount = 0;
  }
  if (!state.FlagPaths[slot].empty())
    ApplyFlagFile(state.FlagPaths[slot], alarms, state.FlagLists[slot]);
  return kValid;
}

}  // namespace

int FileSelect(SharedState &state) {
  for (int slot = 1; slot <= 16; ++slot) {
    if (state.RecordFiles[slot].InUse == 0) {
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
  const int slot = FileSelect(state);
  if (slot == kLinkSlot) {
    state.CurrentFile = remembered;
    outcome.messageId = kNoFreeSlot;
    outcome.showChoiceAgain = true;
    return outcome;
  }

  ClearSlot(state, slot);
  const int nameStart = NameStartIndex(path);
  AlarmFileInfo &alarms = state.AlarmFiles[slot];
  alarms.AlarmPath = FindCompanion(path, nameStart, 'A');
  alarms.AlarmLength = alarms.AlarmPath.empty() ? 0
                                                : static_cast<std::int32_t>(std::min<std::int64_t>(
                                                      FileSize(alarms.AlarmPath), INT32_MAX));
  const std::string flagPath = FindCompanion(path, nameStart, 'F');
  if (!flagPath.empty() && FileSize(flagPath) >= static_cast<std::int64_t>(kMinFlagFileLength))
    state.FlagPaths[slot] = flagPath;

  RecordFileInfo &info = state.RecordFiles[slot];
  info.FilePath = path;
  info.FileLength = static_cast<std::int32_t>(std::min<std::int64_t>(FileSize(path), INT32_MAX));

  // The bar's maximum of the build, so that success can fill the bar.
  int lastMaximum = 0;
  auto tracked = [&](int value, int maximum) {
    lastMaximum = maximum;
    if (progress) progress(value, maximum);
  };
  const int result = ReadSteps(state, slot, tracked);
  if (result != kValid) {
    DeleteWorkingFiles(info, state.ProgramFolder, slot);
    ClearSlot(state, slot);
    state.CurrentFile = remembered;
    outcome.messageId = OpenResultMessageId(result);
    return outcome;
  }
  if (progress && lastMaximum > 0) progress(lastMaximum, lastMaximum);
  state.OpenFileCount = static_cast<std::int16_t>(state.OpenFileCount + 1);
  info.InUse = -1;
  outcome.opened = true;
  outcome.slot = slot;
  return outcome;
}

bool IsFileOpen(const SharedState &state, const std::string &path) {
  for (int slot = 1; slot <= kSlotCount; ++slot)
    if (state.RecordFiles[slot].InUse != 0 && state.RecordFiles[slot].FilePath == path) return true;
  return false;
}

void DeleteOpenWorkingFiles(const SharedState &state) {
  for (int slot = 1; slot <= kSlotCount; ++slot)
    if (state.RecordFiles[slot].InUse != 0)
      DeleteWorkingFiles(state.RecordFiles[slot], state.ProgramFolder, slot);
}

void CloseRecordSlot(SharedState &state, int slot) {
  if (slot < 1 || slot > kSlotCount) return;
  const bool wasInUse = state.RecordFiles[slot].InUse != 0;
  DeleteWorkingFiles(state.RecordFiles[slot], state.ProgramFolder, slot);
  ClearSlot(state, slot);
  if (wasInUse && state.OpenFileCount > 0)
    state.OpenFileCount = static_cast<std::int16_t>(state.OpenFileCount - 1);
}

}  // namespace recscope
