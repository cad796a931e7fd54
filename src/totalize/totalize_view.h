#pragma once
// What the totalize window (frmAddition) shows, without the window: its caption
// and the slot found again in it, the tabs by key, the grid of the current page
// for a tab, the paging buttons and page turns, the copy text and the layout of
// the controls. The window only shows these and routes the operator's actions.
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "totalize/totalize_window.h"
#include "views/grid_copy.h"

namespace recscope {

// The tab of all channels; tabs 1 to 8 are the groups.
constexpr int kTotalizeAllTab = 9;
// Rows of the grid above the data: channel number, action type, tag, unit.
constexpr int kTotalizeTitleRows = 4;

// "<kind name><slot in two digits>[<path>]".
std::string TotalizeCaption(int kind, int slot, const std::string &path);
// The slot written in a caption: the two digits from the first "0" or "1"; 0 when
// there is none.
int TotalizeSlotOfCaption(std::string_view caption);
// Whether a caption is a totalize window's: the part in front of the first "0"
// or "1" is one of the seven kind names.
bool IsTotalizeCaption(std::string_view caption);

struct TotalizeTab {
  std::string Key;      // "Group1" to "Group9"
  std::string Caption;  // 10671 to 10678, 10604 for the tab of all channels
  int TabNo = 0;        // 1 to 9, from the key
};
// The tabs that stay at load: the groups up to GroupCount, then all channels.
std::vector<TotalizeTab> TotalizeTabs(const TotalizeWindow &slot);
// The tab number of a key "GroupN"; 0 for anything else.
int TotalizeTabOfKey(std::string_view key);

// Whether the file's version shows the action type of each channel: characters
// 6 and 7 of the trimmed VersionText are a number of 18 or more.
bool TotalizeShowsActionType(const std::string &versionText);
// False when the action type row cannot be shown: a new file with an action type
// above 2.
bool TotalizeActionTypesShowable(const TotalizeWindow &slot);

// The channels (indices into Channels) of a tab's columns in order: the whole
// table on the tab of all channels; on a group tab the members from 1 to 10,
// empty places skipped, each the last channel of its ChannelNo.
std::vector<int> TotalizeTabChannels(const TotalizeWindow &slot, int tab);

// The grid of a tab over the page in memory: PageRows + 4 rows, the columns'
// count + 2 columns. Times in the date format `dateFormatNo`.
GridRows TotalizeGrid(const TotalizeWindow &slot, int tab, int dateFormatNo);

// The copy: rows 0 to 3 in full, then the selected rows `selFirst` to `selLast`
// (in either order) when the first of them is at least 1; every cell followed by
// a tab, every row by "\r".
std::string TotalizeCopyText(const GridRows &grid, int selFirst, int selLast);

// The paging buttons: 0 file top, 1 file end, 2 page before, 3 page after.
enum TotalizeButton : int {
  kTotalizeTop = 0,
  kTotalizeEnd = 1,
  kTotalizeBefore = 2,
  kTotalizeNext = 3
};
// Which of the four buttons are enabled on `page` of `pageCount`.
std::array<bool, 4> TotalizeButtonStates(std::int32_t page, std::int32_t pageCount);
// The page a button goes to from `page` (kept within 1..pageCount).
std::int32_t TotalizePageOfButton(int button, std::int32_t page, std::int32_t pageCount);
// The grid row selected after a button: the top data row after 0 and 3, the
// bottom row after 1 and 2.
int TotalizeRowAfterButton(int button, int pageRows);

// Reads page `page` of the slot's file; only when the read succeeds do Rows,
// PageRows and CurrentPage take the new page: a failed read leaves the slot as
// it was. The file is opened for this read alone.
bool TurnTotalizePage(TotalizeWindow &slot, std::int32_t page, const std::string &decimalChar,
                      const std::function<void(int, int)> &progress = {});

// The places of the controls in twips for an inner size: the tab strip and the
// grid (width and height) and the top of the button strip below the grid.
struct TotalizeLayout {
  int TabWidth = 0;
  int TabHeight = 0;
  int GridWidth = 0;
  int GridHeight = 0;
  int StripTop = 0;
};
TotalizeLayout TotalizeLayoutOf(int innerWidth, int innerHeight, int gridTop);

// Column widths in twips: the two time columns and the channel columns.
constexpr int kTotalizeTimeColumnTwips = 2200;
constexpr int kTotalizeValueColumnTwips = 1000;

}  // namespace recscope
