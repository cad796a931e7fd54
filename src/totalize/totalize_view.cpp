#include "totalize/totalize_view.h"

#include <algorithm>
#include <optional>

#include "record/number_field.h"
#include "record/record_fields.h"
#include "record/record_reader.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "totalize/addition.h"

namespace recscope {

namespace {

constexpr int kGroupTabCaption = 10671;  // 10671 to 10678
constexpr int kAllTabCaption = 10604;
constexpr int kStartTitle = 18800;
constexpr int kEndTitle = 18801;
constexpr int kTagTitle = 18802;
constexpr int kActionTitle = 18803;
constexpr int kChannelTitle = 18804;
constexpr int kActionName = 19214;  // 19214 to 19216 by action type
constexpr int kNewVersion = 18;

std::string Trimmed(const std::string &text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string TimeShown(const std::string &recordTime, int dateFormatNo) {
  const std::optional<std::int64_t> seconds = ParseRecordTime(recordTime);
  return seconds ? FormatTime(*seconds, dateFormatNo) : recordTime;
}

}  // namespace

std::string TotalizeCaption(int kind, int slot, const std::string &path) {
  return TotalizeKindName(kind) + ZeroNumber(slot, 2) + "[" + path + "]";
}

int TotalizeSlotOfCaption(std::string_view caption) {
  const std::size_t at = caption.find_first_of("01");
  if (at == std::string_view::npos || at + 2 > caption.size()) return 0;
  const auto number = ReadIntegerField(caption.substr(at, 2));
  return number ? *number : 0;
}

bool IsTotalizeCaption(std::string_view caption) {
  const std::size_t at = caption.find_first_of("01");
  if (at == std::string_view::npos) return false;
  const std::string_view front = caption.substr(0, at);
  for (int kind = 1; kind <= 7; ++kind)
    if (front == TotalizeKindName(kind)) return true;
  return false;
}

std::vector<TotalizeTab> TotalizeTabs(const TotalizeWindow &slot) {
  std::vector<TotalizeTab> tabs;
  const int groups = std::clamp<int>(slot.GroupCount, 0, 8);
  for (int g = 1; g <= groups; ++g)
    tabs.push_back({"Group" + std::to_string(g), GetMessageText(kGroupTabCaption + g - 1), g});
  tabs.push_back({"Group9", GetMessageText(kAllTabCaption), kTotalizeAllTab});
  return tabs;
}

int TotalizeTabOfKey(std::string_view key) {
  if (key.size() != 6 || key.substr(0, 5) != "Group") return 0;
  const char digit = key[5];
  return digit >= '1' && digit <= '9' ? digit - '0' : 0;
}

bool TotalizeShowsActionType(const std::string &versionText) {
  const std::string version = Trimmed(versionText);
  if (version.size() < 7) return false;
  const std::string_view two = std::string_view(version).substr(5, 2);
  if (!std::all_of(two.begin(), two.end(), [](char c) { return c >= '0' && c <= '9'; }))
    return false;
  return (two[0] - '0') * 10 + (two[1] - '0') >= kNewVersion;
}

bool TotalizeActionTypesShowable(const TotalizeWindow &slot) {
  if (!TotalizeShowsActionType(slot.VersionText)) return true;
  for (const TotalizeChannel &c : slot.Channels)
    if (c.ActionType < 0 || c.ActionType > 2) return false;
  return true;
}

std::vector<int> TotalizeTabChannels(const TotalizeWindow &slot, int tab) {
  std::vector<int> columns;
  const int n = static_cast<int>(slot.Channels.size());
  if (tab == kTotalizeAllTab) {
    for (int i = 0; i < n; ++i) columns.push_back(i);
    return columns;
  }
  if (tab < 1 || tab > static_cast<int>(slot.Groups.size())) return columns;
  for (std::int16_t member : slot.Groups[static_cast<std::size_t>(tab - 1)].Members) {
    if (member == 0) continue;
    int found = -1;
    for (int i = 0; i < n; ++i)
      if (slot.Channels[static_cast<std::size_t>(i)].ChannelNo == member) found = i;
    if (found >= 0) columns.push_back(found);
  }
  return columns;
}

GridRows TotalizeGrid(const TotalizeWindow &slot, int tab, int dateFormatNo) {
  const std::vector<int> channels = TotalizeTabChannels(slot, tab);
  const std::size_t columns = channels.size() + 2;
  const int pageRows = std::min<int>(slot.PageRows, static_cast<int>(slot.Rows.size()));
  GridRows grid(static_cast<std::size_t>(pageRows + kTotalizeTitleRows),
                std::vector<std::string>(columns));
  grid[1][1] = GetMessageText(kActionTitle);
  grid[2][1] = GetMessageText(kTagTitle);
  grid[3][0] = GetMessageText(kStartTitle);
  grid[3][1] = GetMessageText(kEndTitle);
  const bool actionNames = TotalizeShowsActionType(slot.VersionText);
  for (std::size_t k = 0; k < channels.size(); ++k) {
    const TotalizeChannel &c = slot.Channels[static_cast<std::size_t>(channels[k])];
    grid[0][k + 2] = GetMessageText(kChannelTitle) + ZeroNumber(c.ChannelNo, 2);
    const int action = actionNames ? std::clamp<int>(c.ActionType, 0, 2) : 0;
    grid[1][k + 2] = GetMessageText(kActionName + action);
    grid[2][k + 2] = c.Tag;
    grid[3][k + 2] = c.Unit;
  }
  for (int r = 0; r < pageRows; ++r) {
    const TotalizeRow &row = slot.Rows[static_cast<std::size_t>(r)];
    std::vector<std::string> &cells = grid[static_cast<std::size_t>(r + kTotalizeTitleRows)];
    cells[0] = TimeShown(row.StartText, dateFormatNo);
    cells[1] = TimeShown(row.EndText, dateFormatNo);
    for (std::size_t k = 0; k < channels.size(); ++k) {
      const auto at = static_cast<std::size_t>(channels[k]);
      if (at < row.Values.size()) cells[k + 2] = row.Values[at];
    }
  }
  return grid;
}

std::string TotalizeCopyText(const GridRows &grid, int selFirst, int selLast) {
  if (grid.empty()) return std::string();
  std::size_t width = 0;
  for (const auto &row : grid) width = std::max(width, row.size());
  const int last = static_cast<int>(width) - 1;
  if (last < 0) return std::string();
  if (selFirst > selLast) std::swap(selFirst, selLast);
  const int titleEnd = std::min<int>(kTotalizeTitleRows, static_cast<int>(grid.size())) - 1;
  std::string text = GridCopyText(grid, 0, 0, titleEnd, last, false);
  if (selFirst >= 1) {
    selLast = std::min<int>(selLast, static_cast<int>(grid.size()) - 1);
    if (selFirst <= selLast) text += GridCopyText(grid, selFirst, 0, selLast, last, false);
  }
  return text;
}

std::array<bool, 4> TotalizeButtonStates(std::int32_t page, std::int32_t pageCount) {
  if (pageCount <= 1) return {true, true, false, false};
  if (page <= 1) return {true, true, false, true};
  if (page >= pageCount) return {true, true, true, false};
  return {true, true, true, true};
}

std::int32_t TotalizePageOfButton(int button, std::int32_t page, std::int32_t pageCount) {
  std::int32_t target = page;
  switch (button) {
    case kTotalizeTop:
      target = 1;
      break;
    case kTotalizeEnd:
      target = pageCount;
      break;
    case kTotalizeBefore:
      target = page - 1;
      break;
    case kTotalizeNext:
      target = page + 1;
      break;
    default:
      break;
  }
  return std::clamp<std::int32_t>(target, 1, std::max<std::int32_t>(pageCount, 1));
}

int TotalizeRowAfterButton(int button, int pageRows) {
  return (button == kTotalizeEnd || button == kTotalizeBefore) ? pageRows + kTotalizeTitleRows - 1
                                                               : kTotalizeTitleRows;
}

bool TurnTotalizePage(TotalizeWindow &slot, std::int32_t page, const std::string &decimalChar,
                      const std::function<void(int, int)> &progress) {
  TotalizeWindow next;
  next.Channels = slot.Channels;
  next.ChannelCount = slot.ChannelCount;
  next.Path = slot.Path;
  next.IsBinary = slot.IsBinary;
  next.RecordLength = slot.RecordLength;
  next.DataStart = slot.DataStart;
  next.RecordCount = slot.RecordCount;
  next.PageCount = slot.PageCount;
  next.CurrentPage = page;
  if (!ReadTotalizePage(next, decimalChar, progress)) return false;
  slot.Rows = std::move(next.Rows);
  slot.PageRows = next.PageRows;
  slot.CurrentPage = page;
  return true;
}

TotalizeLayout TotalizeLayoutOf(int innerWidth, int innerHeight, int gridTop) {
  TotalizeLayout layout;
  layout.TabWidth = innerWidth - 150;
  layout.TabHeight = std::max(0, innerHeight - 665);
  layout.GridWidth = innerWidth - 400;
  layout.GridHeight = std::max(0, innerHeight - 1425);
  layout.StripTop = gridTop + layout.GridHeight + 100;
  return layout;
}

}  // namespace recscope
