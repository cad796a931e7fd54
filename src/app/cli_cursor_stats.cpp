// recscope-cli cursor-stats: the between-cursors window's grid for two cursor
// times and a group, as its copy with titles gives it.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/cli_common.h"
#include "record/open_record.h"
#include "record/range_statistics.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "trend/trend_view.h"
#include "views/cursor_calc.h"

namespace recscope::cli {
namespace {

int RunCursorStats(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--cursor1", "--cursor2", "--group"}, {}, parsed, error))
    return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("cursor-stats takes one FILE");
  const std::string *text1 = parsed.find("--cursor1");
  const std::string *text2 = parsed.find("--cursor2");
  if (!text1 || !text2) return UsageError("cursor-stats needs --cursor1 and --cursor2");
  long long t1 = 0;
  long long t2 = 0;
  try {
    t1 = ParseCliTime(*text1);
    t2 = ParseCliTime(*text2);
  } catch (const std::invalid_argument &e) {
    return UsageError(e.what());
  }
  int group = 0;
  if (const std::string *g = parsed.find("--group")) {
    char *end = nullptr;
    group = static_cast<int>(std::strtol(g->c_str(), &end, 10));
    if (g->empty() || *end != '\0' || group < 1 || group > kGroupTabs)
      return UsageError("--group takes 1 to 9");
  }

  SharedState &state = Shared();
  const OpenOutcome outcome = OpenRecordFile(state, AbsolutePath(parsed.positional[0]));
  if (!outcome.opened) throw CatalogueError(outcome.messageId, GetMessageText(outcome.messageId));
  const int slot = outcome.slot;
  const RecordFileInfo &info = state.Slot(slot).Record;
  const std::int32_t period = state.Slot(slot).Period();

  // The group tabs as the window has them: the first with members unless named.
  TrendView groups;
  BuildGroupLists(groups, info);
  if (group == 0) group = groups.CurrentGroup;
  if (!groups.Groups[static_cast<size_t>(group - 1)].HasTab) {
    CloseRecordSlot(state, slot);
    return UsageError("group " + std::to_string(group) + " has no members");
  }
  const std::vector<int> columns =
      CurDataColumns(info, groups.Groups[static_cast<size_t>(group - 1)].ChannelNo);
  const ComputeSpan span = get_ComputeTime(true, t1, true, t2, info.FirstTime, info.LastTime,
                                           period, state.DateFormatNo);
  std::vector<ChannelStatistics> stats;
  const bool read =
      GetRangeStatistics(info, state.ProgramFolder, slot, period, span.Start, span.End, stats);
  const std::string text =
      read ? WithNewlines(MathCopyText(span, CurDataGrid(info, columns, stats, state.DecimalChar)))
           : std::string();
  // As closing the trend window does: the slot is freed and its working files go.
  CloseRecordSlot(state, slot);
  if (!read) {
    std::fprintf(stderr, "recscope-cli: the working files could not be read\n");
    return kExitOther;
  }
  std::fputs(text.c_str(), stdout);
  return kExitDone;
}

const Registration kCursorStats({
    "cursor-stats",
    "the between-cursors grid of a group as the window's copy with titles",
    "Usage: recscope-cli cursor-stats FILE --cursor1 T1 --cursor2 T2 [--group G]\n"
    "\n"
    "The between-cursors window with cursor 1 at T1 and cursor 2 at T2 (both snapped\n"
    "to samples; the earlier is the start) for group G (1 to 8, 9 all channels;\n"
    "default the first group with members), as its copy with titles gives it: the\n"
    "line of the span (start '  to  ' end, the width and the data number,\n"
    "tab-separated), then the seven rows of the grid: four title rows (CH or DI and\n"
    "the number, the tag in two parts, the unit), maximum, minimum and average, each\n"
    "cell followed by a tab and each row by a newline. Times are whole seconds from\n"
    "1970/1/1 00:00:00 or 'yyyy/mm/dd hh:mm:ss'.\n"
    "The working files are built for slot 1 in the home folder and deleted at the end.\n",
    RunCursorStats,
});

}  // namespace
}  // namespace recscope::cli
