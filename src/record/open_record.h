#pragma once
// Opening a measurement record into a slot: the name test, the slot, the
// companions, the encoding, the read steps, the working files and the alarm and
// flag files. The window that shows the slot is the caller's.
#include <string>

#include "record/working_files.h"
#include "shell/shared_state.h"

namespace recscope {

struct OpenOutcome {
  bool opened = false;           // slot filled, InUse -1
  int slot = 0;                  // the slot used (when opened)
  int messageId = 0;             // catalogue id of the refusal, 0 when opened
  bool showChoiceAgain = false;  // true after a refusal the routine itself reported
};

// The first slot 1..16 with InUse 0 becomes CurrentFile; with none free, 17.
int FileSelect(SharedState &state);

// Where the name of a record path starts, by the test of the open command: the
// first "/" among the characters L-6 .. L-12 (counted from 1), else the
// character at L-4. Returns the 0-based index of the name's first letter, or
// -1 when the path is too short to have one.
int NameStartIndex(const std::string &path);

// True when the path passes the name and extension test ("S"/"s" and
// "FDT"/"Fdt"/"fdt").
bool IsRecordFileName(const std::string &path);

// The whole pipeline of opening except creating the window. On failure the
// working files are deleted, the remembered slot comes back and nothing of the
// attempt is left on disk.
OpenOutcome OpenRecordFile(SharedState &state, const std::string &path,
                           const ProgressFn &progress = {});

// Whether a slot in use holds exactly this FilePath (the same text; no other
// spelling of the path counts). Opening does not ask it: the same file opened
// twice takes two slots.
bool IsFileOpen(const SharedState &state, const std::string &path);

// The working files of every slot still in use are deleted; the slots stay as
// they are. The end of the program does this, so that no working file outlives it.
void DeleteOpenWorkingFiles(const SharedState &state);

// Reads and checks a record family as the open does (name test, companions,
// encoding, read steps, alarm and flag files) into `slot`, without taking a slot of
// the shared state and without making working files: for the commands that read
// the record file itself. Returns 0 when the record is valid, otherwise the
// catalogue id of the refusal (the slot is then cleared).
int ReadRecordFamily(const SharedState &state, const std::string &path, RecordSlot &slot);

// Reads a record family into the slot `slotNo` as the open does, working files
// included, without choosing a slot and without counting an open file: for the
// link's slot, whose record grows while it is shown. Returns 0, or the catalogue
// id of the refusal (the slot is then cleared).
int ReadRecordIntoSlot(SharedState &state, const std::string &path, int slotNo);
// What closing a trend window does to its slot: arrays erased, InUse 0, working
// files deleted, one open file fewer (the link's slot was never counted, so its
// close lowers no count).
void CloseRecordSlot(SharedState &state, int slot);

}  // namespace recscope
