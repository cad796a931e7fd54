#pragma once
// What the alarm/message/flag list shows: its three tabs, their columns and
// widths, the cells of each row, which cursor a row click sets and the caption.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "record/record_file_info.h"
#include "views/grid_copy.h"

namespace recscope {

// ListTab: the tab of the list.
constexpr int kAlarmTab = 1;
constexpr int kMessageTab = 2;
constexpr int kFlagTab = 3;

// Tab keys "Alarm", "Message", "Flg"; an unknown key gives 0.
std::string ListTabKey(int listTab);
int ListTabOfKey(std::string_view key);
// Tab captions: messages 19034 to 19036.
std::string ListTabCaption(int listTab);
// The tab of an event kind of the search (0 alarm, 1 message, 2 flag), or 0.
int ListTabOfEventKind(int kind);

struct GridColumn {
  std::string Title;
  int Width = 0;  // twips
};

// Columns of a tab with their titles and widths. The position column is titled
// by message 19030 in the horizontal trend orientation and 19039 in the vertical.
std::vector<GridColumn> EventColumns(int listTab, bool horizontalTrend);
// Width of the whole grid in twips (message 19002).
int EventGridWidth();

// Alarm action 0 to 6: "OFF", "H", "L", "DH", "DL", "RH", "RL"; others empty.
std::string AlarmActionText(int code);
// Alarm state: 0 "解除", 1 "発生"; others empty.
std::string AlarmStateText(int state);
// Display switch: 0 "OFF", -1 (any other) "ON".
std::string OnOffText(int displaySwitch);
// Colour names of ColorNo 1 to 14 (messages 11200 to 11213); others empty.
std::string ColorNameText(int colorNo);

// The grid of a tab: row 0 the titles, then one row an event in list order.
GridRows FillCells2(int listTab, const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags,
                    int dateFormatNo, bool horizontalTrend);

// Number of events of a tab.
int EventRowCount(int listTab, const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags);

// The time of grid row `row` (1 for the first event); none for row 0 or a row
// beyond the list.
std::optional<std::int32_t> EventRowTime(int listTab, const AlarmFileInfo &alarms,
                                         const std::vector<FlagEvent> &flags, int row);

// Which cursor a click on grid row `row` sets: 0 for none (the title row, or
// neither cursor set), else as a click on the plot: 1 when the Shift state
// equals the baseline, 2 when it differs.
int ListClickCursor(int row, bool cursor1Set, bool cursor2Set, int shiftState, int shiftBaseline);

// Caption: message 19000 with the slot in two digits, then "[", the path, "]".
std::string EventListCaption(int slot, const std::string &filePath);
// The file number read back from a caption: the two characters at the position
// of message 19001 (counted from 1 in characters); 0 when they are no number.
int FileNumberOfCaption(const std::string &caption);

}  // namespace recscope
