#include "link/monitor_views.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "record/value_text.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

std::string TwoDigits(const char *prefix, int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%s%02d", prefix, number);
  return text;
}

std::string CutTrailingBlanks(std::string text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.pop_back();
  return text;
}

const ChannelInfo *ChannelOf(const RecordFileInfo &record, int member) {
  if (member < 1 || member > static_cast<int>(record.Channels.size())) return nullptr;
  return &record.Channels[static_cast<std::size_t>(member - 1)];
}

const DiInfo *DiOf(const RecordFileInfo &record, int member) {
  const int n = member - kDiMemberBase;
  if (n < 1 || n > static_cast<int>(record.Dis.size())) return nullptr;
  return &record.Dis[static_cast<std::size_t>(n - 1)];
}

}  // namespace

std::string MonitorLabel(const RecordFileInfo &record, int member) {
  if (member > kDiMemberBase) {
    const DiInfo *di = DiOf(record, member);
    return TwoDigits("DI", di ? di->DiNo - kDiMemberBase : member - kDiMemberBase);
  }
  const ChannelInfo *channel = ChannelOf(record, member);
  return TwoDigits("CH", channel ? channel->ChannelNo : member);
}

std::vector<int> GroupMembers(const RecordFileInfo &record, int groupNo) {
  std::vector<int> members;
  if (groupNo < 1 || groupNo > static_cast<int>(record.Groups.size())) return members;
  for (std::int16_t m : record.Groups[static_cast<std::size_t>(groupNo - 1)].Members) {
    const bool analog = m >= 1 && m <= kMonitorChannels;
    const bool input = m > kDiMemberBase && m <= kDiMemberBase + kMonitorDis;
    if (analog || input) members.push_back(m);
  }
  return members;
}

std::vector<int> GroupsWithMembers(const RecordFileInfo &record) {
  std::vector<int> groups;
  for (int g = 1; g <= static_cast<int>(record.Groups.size()); ++g)
    if (!GroupMembers(record, g).empty()) groups.push_back(g);
  return groups;
}

std::vector<int> AllMembers(const RecordFileInfo &record) {
  std::vector<int> members;
  const int analog = std::min<int>(kMonitorChannels, static_cast<int>(record.Channels.size()));
  const int inputs = std::min<int>(kMonitorDis, static_cast<int>(record.Dis.size()));
  for (int c = 1; c <= analog; ++c) members.push_back(c);
  for (int n = 1; n <= inputs; ++n) members.push_back(kDiMemberBase + n);
  return members;
}

int WholeDisplayRows(int channels) {
  return (channels + kWholeDisplayColumns - 1) / kWholeDisplayColumns;
}

MonitorCell MonitorCellOf(const RecordFileInfo &record, const MonitorRing &ring, int index,
                          int member) {
  MonitorCell cell;
  cell.Member = member;
  cell.Label = MonitorLabel(record, member);
  if (member > kDiMemberBase) {
    const int n = member - kDiMemberBase;
    const bool on = n >= 1 && n <= kMonitorDis && ring.value(31 + n, index) != 0;
    if (const DiInfo *di = DiOf(record, member)) cell.Tag = CutTrailingBlanks(di->Tag);
    cell.Value.assign(1, on ? '1' : '0');
    cell.Fraction = on ? 1.0 : 0.0;
    return cell;
  }
  const ChannelInfo *channel = ChannelOf(record, member);
  if (!channel || member > kMonitorChannels) return cell;
  const double scaled = ring.value(1 + member, index);
  const auto raw =
      static_cast<std::int32_t>(std::lround(scaled * std::pow(10.0, channel->Decimals)));
  cell.Tag = CutTrailingBlanks(channel->Tag);
  cell.Unit = CutTrailingBlanks(channel->Unit);
  if (channel->ScaleKind == 1)
    cell.Value = LogValueText(channel->RangeLow, channel->RangeHigh, channel->ExponentLow,
                              channel->ExponentHigh, channel->Decimals, raw);
  else
    cell.Value = ValueText(raw, channel->Decimals, channel->InputType);
  const double span = static_cast<double>(channel->ScaleHigh) - channel->ScaleLow;
  if (SpecialValueText(raw, channel->InputType).empty() && span != 0)
    cell.Fraction = std::clamp((raw - channel->ScaleLow) / span, 0.0, 1.0);
  return cell;
}

std::string MonitorTimeText(const MonitorRing &ring, int index) {
  return RecordTimeText(static_cast<std::int64_t>(ring.value(1, index)));
}

std::string InstantValueLine(const MonitorCell &cell) {
  return cell.Label + "\t" + cell.Tag + "\t" + cell.Value + "\t" + cell.Unit;
}

}  // namespace recscope
