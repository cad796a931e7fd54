// recscope-cli instant: the instant value window's grid of one page, as its
// copy with titles puts the whole grid on the clipboard.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "views/instant_values.h"

namespace recscope::cli {
namespace {

int RunInstant(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--group", "--page", "--cursor"}, {}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("instant takes one FILE");
  int group = 0;
  long long page = 1;
  bool lastPage = false;
  long long cursor = 0;
  const std::string *cursorText = parsed.find("--cursor");
  try {
    if (const std::string *g = parsed.find("--group")) {
      std::size_t used = 0;
      group = std::stoi(*g, &used);
      if (used != g->size() || group < 1 || group > 9)
        return UsageError("--group takes a group from 1 to 9");
    }
    if (const std::string *p = parsed.find("--page")) {
      if (*p == "last") {
        lastPage = true;
      } else {
        std::size_t used = 0;
        page = std::stoll(*p, &used);
        if (used != p->size() || page < 1) return UsageError("--page takes N >= 1 or 'last'");
      }
    }
    if (cursorText) cursor = ParseCliTime(*cursorText);
  } catch (const std::invalid_argument &e) {
    return UsageError(e.what());
  } catch (const std::out_of_range &) {
    return UsageError("a number is out of range");
  }

  SharedState &state = Shared();
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const int slot = outcome.slot;
  const RecordFileInfo &info = state.Slot(slot).Record;
  bool hasTab = false;
  if (group != 0)
    for (const InstantTab &tab : InstantTabs(info)) hasTab = hasTab || tab.GroupNo == group;
  if (group != 0 && !hasTab) {
    CloseRecordSlot(state, slot);
    return UsageError("group " + std::to_string(group) + " has no members");
  }

  InstantValues values(info, state.DecimalChar, state.DateFormatNo);
  values.SetGroup(group != 0 ? group : FirstGroupWithMembers(info));
  if (lastPage)
    values.FillEnd();
  else
    for (long long n = 1; n < page && values.FillNext(); ++n) {
    }
  if (cursorText) {
    // Cursor 1 set at T stands on a sample; the list follows it.
    const std::int32_t period = state.Slot(slot).Period();
    const std::int64_t t = SnapToSample(cursor, info.FirstTime, info.LastTime, period);
    values.FollowCursor(CursorRecordIndex(t, info.FirstTime, period));
  }
  const bool read = values.lastFillRead();
  const std::string text = InstantWholeGridText(values.grid(), "\n");
  CloseRecordSlot(state, slot);
  if (!read) {
    std::fprintf(stderr, "recscope-cli: the record file could not be read\n");
    return kExitOther;
  }
  std::fputs(text.c_str(), stdout);
  return kExitDone;
}

const Registration kInstant({
    "instant",
    "one page of the instant value list, tab-separated",
    "Usage: recscope-cli instant FILE [--group G] [--page N|last] [--cursor T]\n"
    "\n"
    "The instant value window's grid for group G (default: the first group with\n"
    "members; 9 is all channels): the page reached from the file's top by N - 1\n"
    "presses of the next-page button (default 1), 'last' the page of the file-end\n"
    "button, or with --cursor T the page that following cursor 1 at time T gives.\n"
    "T is whole seconds from 1970/1/1 00:00:00 or 'yyyy/mm/dd hh:mm:ss', put on a\n"
    "sample as a cursor is (outside the file: its start or end).\n"
    "\n"
    "Prints the grid as the window's copy with titles gives it: the two title rows,\n"
    "then every row of the page, the time column first, each cell followed by a tab\n"
    "and each row ending in a newline. Times follow --date-format, values\n"
    "--decimal-char. A group without members is a usage error.\n"
    "The working files are built for slot 1 in the home folder and\n"
    "deleted at the end.\n",
    RunInstant,
});

}  // namespace
}  // namespace recscope::cli
