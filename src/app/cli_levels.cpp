// recscope-cli levels: builds the working files of a record for a slot and
// keeps them.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "record/working_files.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

int RunLevels(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--slot"}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("levels takes one FILE");
  int slot = 1;
  if (const std::string *text = parsed.find("--slot")) {
    try {
      slot = std::stoi(*text);
    } catch (const std::exception &) {
      slot = 0;
    }
    if (slot < 1 || slot > 16) return UsageError("--slot takes 1 to 16");
  }
  SharedState &state = Shared();
  // The open takes the first free slot: the slots in front of the wanted one
  // are held for the time of the open.
  for (int s = 1; s < slot; ++s) state.Slot(s).Record.InUse = -1;
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  for (int s = 1; s < slot; ++s) state.Slot(s).Record.InUse = 0;
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const RecordFileInfo &info = state.Slot(outcome.slot).Record;
  for (int k = 1; k <= info.TopLevel + 1; ++k) {
    std::printf("%s\n", WorkingFilePath(state.ProgramFolder, outcome.slot, k, false).c_str());
    std::printf("%s\n", WorkingFilePath(state.ProgramFolder, outcome.slot, k, true).c_str());
  }
  return kExitDone;
}

const Registration kLevels({
    "levels",
    "build and keep the working files of a record",
    "Usage: recscope-cli levels FILE [--slot N]\n"
    "\n"
    "Opens the measurement file as the desktop program does and builds its working\n"
    "files for slot N (1 to 16, default 1) in the home folder:\n"
    "Operation_N_k.OPL (minimum and maximum) and Operation_N_COM_k.OPL (sum and\n"
    "count) for k = 1 to TopLevel + 1. The files are kept; their paths are printed,\n"
    "one a line. A refused file exits 2 with 'error ID: TEXT'.\n",
    RunLevels,
});

}  // namespace
}  // namespace recscope::cli
