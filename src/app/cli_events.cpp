// recscope-cli events: the grid of one tab of the alarm/message/flag list, as its
// copy with titles gives it.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "views/event_list.h"

namespace recscope::cli {
namespace {

int RunEvents(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--tab"}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("events takes one FILE");
  int tab = kAlarmTab;
  if (const std::string *name = parsed.find("--tab")) {
    if (*name == "alarm")
      tab = kAlarmTab;
    else if (*name == "message")
      tab = kMessageTab;
    else if (*name == "flag")
      tab = kFlagTab;
    else
      return UsageError("--tab takes alarm, message or flag");
  }

  SharedState &state = Shared();
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const RecordSlot &slot = state.Slot(outcome.slot);
  const GridRows grid =
      FillCells2(tab, slot.Alarms, slot.Flags, state.DateFormatNo, state.TrendOrientation != 0);
  const std::string text = WithNewlines(WholeGridText(grid));
  // As closing the trend window does: the slot is freed and its working files go.
  CloseRecordSlot(state, outcome.slot);
  std::fputs(text.c_str(), stdout);
  return kExitDone;
}

const Registration kEvents({
    "events",
    "the alarm, message or flag list as the window's copy with titles",
    "Usage: recscope-cli events FILE [--tab alarm|message|flag]\n"
    "\n"
    "The grid of the alarm/message/flag list for that tab (default alarm): the title\n"
    "row, then one row an event in list order, each cell followed by a tab and each\n"
    "row by a newline. Times follow --date-format; the position column is titled\n"
    "for the trend direction of the settings.\n"
    "The working files are built for slot 1 in the home folder and deleted at the end.\n",
    RunEvents,
});

}  // namespace
}  // namespace recscope::cli
