#pragma once
// What the three small windows of the communication monitor show: the labels
// "CH" and "DI" with two digits from slot 17's channel records, the members of
// a group, and for each channel the last value of the ring as text, its unit
// and its place on the scale. The windows only lay these out.
#include <string>
#include <vector>

#include "link/monitor_sample.h"
#include "record/record_file_info.h"

namespace recscope {

// A member number as groups hold it: channel 1 to 30, 128 + n for DI n.
inline constexpr int kDiMemberBase = 128;
// The whole display puts six channels to a row.
inline constexpr int kWholeDisplayColumns = 6;

struct MonitorCell {
  int Member = 0;
  std::string Label;    // "CH05", "DI02"
  std::string Tag;      // the channel's tag, trailing blanks cut
  std::string Value;    // the last value as the views show it
  std::string Unit;     // analog only, trailing blanks cut
  double Fraction = 0;  // 0 to 1: where the value stands between the scale's ends
};

// "CH" and the channel number in two digits, or "DI" and the input's number.
std::string MonitorLabel(const RecordFileInfo &record, int member);
// The members of group `groupNo` (1 to 8) in their order, empty places left out.
std::vector<int> GroupMembers(const RecordFileInfo &record, int groupNo);
// The groups that have members, by number.
std::vector<int> GroupsWithMembers(const RecordFileInfo &record);
// Every channel of the monitor: the analog channels, then the inputs.
std::vector<int> AllMembers(const RecordFileInfo &record);
// Rows the whole display needs: channels / 6, rounded up.
int WholeDisplayRows(int channels);
// The cell of a member from the ring's sample at `index`: analog values with the
// channel's decimals (the special values as their texts), inputs "0" or "1".
MonitorCell MonitorCellOf(const RecordFileInfo &record, const MonitorRing &ring, int index,
                          int member);
// The time of the ring's sample at `index`, "yyyy/mm/dd hh:mm:ss".
std::string MonitorTimeText(const MonitorRing &ring, int index);
// One line of the instant value list: label, tag, value and unit, separated by
// tabs.
std::string InstantValueLine(const MonitorCell &cell);

}  // namespace recscope
