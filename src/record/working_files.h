#pragma once
// The working files of an open record: a pyramid of level files beside the
// program, in which each level holds one row for every ten rows of the level
// below. Level k of slot n is "Operation_<n>_<k>.OPL" (ValueRows: 2 x i16 a
// channel, minimum and maximum) and "Operation_<n>_COM_<k>.OPL" (SumRows: 2 x i32
// a channel, sum and count).
#include <cstdint>
#include <functional>
#include <string>

#include "record/record_file_info.h"

namespace recscope {

// Path of a level file: the program folder, "/", and the file's name.
std::string WorkingFilePath(const std::string &programFolder, int slot, int level, bool sums);

// TopLevel, LevelStep, OverviewStep, CursorStep, Thinned and LevelRows of a
// record count, with the level base and the row limit of the shared state.
void PlanLevels(RecordFileInfo &info, int levelBase = 10, std::int32_t levelRowLimit = 6000);

// Progress of a long build: value out of maximum. Called once per progress step,
// which is also where the window system may catch up.
using ProgressFn = std::function<void(int value, int maximum)>;

// Builds all working files of the record for the slot. Returns -1 when done,
// otherwise the result number of the failure (5: not enough disk space, nothing
// made; 0: a read or write failed, files removed).
int BuildWorkingFiles(const RecordFileInfo &info, const std::string &programFolder, int slot,
                      const ProgressFn &progress = {});

// Deletes both files of every level 1 to TopLevel + 1 of the slot, where they exist.
void DeleteWorkingFiles(const RecordFileInfo &info, const std::string &programFolder, int slot);

// Whether a file name is one of the working file names, Operation_<n>_<k>.OPL or
// Operation_<n>_COM_<k>.OPL.
bool IsWorkingFileName(const std::string &name);

// Deletes every working file in the program folder, of any slot and level: what
// a run that did not end normally left behind. Only for a start that holds the
// folder's single-instance lock, when no other run can be using them. Returns
// how many were deleted.
int DeleteStaleWorkingFiles(const std::string &programFolder);

}  // namespace recscope
