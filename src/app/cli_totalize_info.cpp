// recscope-cli totalize-info: the totalize window's grid of one tab and page.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"
#include "totalize/addition.h"
#include "totalize/totalize_view.h"

namespace recscope::cli {
namespace {

bool WholeNumber(const std::string &text, long long &value) {
  try {
    std::size_t used = 0;
    value = std::stoll(text, &used);
    return used == text.size();
  } catch (const std::exception &) {
    return false;
  }
}

int RunTotalizeInfo(const GlobalOptions &, const std::vector<std::string> &args) {
  ParsedArgs parsed;
  std::string error;
  if (!ParseArgs(args, {"--tab", "--page"}, {}, parsed, error)) return UsageError(error);
  if (parsed.positional.size() != 1) return UsageError("totalize-info takes one FILE");
  long long tab = 0;
  long long page = 1;
  if (const std::string *t = parsed.find("--tab"))
    if (!WholeNumber(*t, tab) || tab < 1 || tab > kTotalizeAllTab)
      return UsageError("--tab takes a tab from 1 to 9");
  if (const std::string *p = parsed.find("--page"))
    if (!WholeNumber(*p, page) || page < 1) return UsageError("--page takes N >= 1");

  SharedState &state = Shared();
  const TotalizeOpenResult opened = OpenTotalizeFile(state, AbsolutePath(parsed.positional[0]));
  if (!opened.Ok()) throw CatalogueError(opened.MessageId, GetMessageText(opened.MessageId));
  TotalizeWindow &slot = state.Totalize(opened.Slot);
  if (!TotalizeActionTypesShowable(slot)) {
    const int id = TotalizeErrorMessageId(kTotalizeBadFile);
    throw CatalogueError(id, GetMessageText(id));
  }
  const std::vector<TotalizeTab> tabs = TotalizeTabs(slot);
  if (tab == 0) tab = tabs.front().TabNo;
  bool hasTab = false;
  for (const TotalizeTab &t : tabs) hasTab = hasTab || t.TabNo == tab;
  if (!hasTab) return UsageError("the file has no tab " + std::to_string(tab));
  if (page > slot.PageCount)
    return UsageError("the file has " + std::to_string(slot.PageCount) + " pages");
  if (page != slot.CurrentPage &&
      !TurnTotalizePage(slot, static_cast<std::int32_t>(page), state.DecimalChar)) {
    const int id = 18806;
    throw CatalogueError(id, GetMessageText(id));
  }
  const GridRows grid = TotalizeGrid(slot, static_cast<int>(tab), state.DateFormatNo);
  std::fputs(WithNewlines(WholeGridText(grid)).c_str(), stdout);
  return kExitDone;
}

const Registration kTotalizeInfo({
    "totalize-info",
    "the totalize window's grid of one tab and page, tab-separated",
    "Usage: recscope-cli totalize-info FILE [--tab N] [--page N]\n"
    "\n"
    "Opens the totalize file (T, D, W, M, Y, R or E*.FDT, binary or text) the way\n"
    "the desktop program's totalize open does and prints the grid its window shows\n"
    "on tab N (1 to 8 a group, 9 all channels; default: the first tab) for page N\n"
    "of 1202 records (default 1): the four title rows (channel, action type, tag,\n"
    "unit with the time titles), then one row a record with its start and end\n"
    "times, every cell followed by a tab and every row ending in a newline. Times\n"
    "follow --date-format, values --decimal-char. A tab the file does not have or\n"
    "a page beyond its last is a usage error.\n"
    "\n"
    "Exit 2 with the open's message when the file is refused (11112 a wrong name,\n"
    "11120 to 11124 a wrong file), or 18806 when the page cannot be read.\n",
    RunTotalizeInfo,
});

}  // namespace
}  // namespace recscope::cli
