#include "trend/trend_view.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "shell/catalogue.h"
#include "shell/rounding.h"
#include "trend/colour_table.h"

namespace recscope {

namespace {

constexpr int kAllChannelsCaption = 10604;
constexpr std::int32_t kZoneHeightFloor = 500;

std::string TwoDigits(int n) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d", n);
  return text;
}

int ColorNoOf(const RecordFileInfo &info, int index) {
  int analog = static_cast<int>(info.Channels.size());
  if (index >= 1 && index <= analog) return info.Channels[index - 1].ColorNo;
  int di = index - analog;
  if (di >= 1 && di <= static_cast<int>(info.Dis.size())) return info.Dis[di - 1].ColorNo;
  return 0;
}

void AddMember(TrendGroup &group, int channelNo, int index, std::string &workingColour,
               const RecordFileInfo &info) {
  ColorFromCode(ColorNoOf(info, index), workingColour);
  group.ChannelNo.push_back(static_cast<std::int16_t>(channelNo));
  group.ChannelIndex.push_back(static_cast<std::int16_t>(index));
  group.ZoneHeight.push_back(kZoneHeightStart);
  group.ZoneTop.push_back(kZoneTopStart);
  group.ChannelColor.push_back(workingColour);
  group.ChannelOn.push_back(-1);
}

void AddEmptyPlace(TrendGroup &group) {
  group.ChannelNo.push_back(0);
  group.ChannelIndex.push_back(0);
  group.ZoneHeight.push_back(kZoneHeightStart);
  group.ZoneTop.push_back(kZoneTopStart);
  group.ChannelColor.push_back(std::string());
  group.ChannelOn.push_back(0);
}

}  // namespace

std::int16_t ChannelNoToIndex(const RecordFileInfo &info, int channelNo) {
  if (channelNo > 128) {
    for (std::size_t i = 0; i < info.Dis.size(); ++i)
      if (info.Dis[i].DiNo == channelNo)
        return static_cast<std::int16_t>(info.Channels.size() + i + 1);
    return 0;
  }
  for (std::size_t i = 0; i < info.Channels.size(); ++i)
    if (info.Channels[i].ChannelNo == channelNo) return static_cast<std::int16_t>(i + 1);
  return 0;
}

void BuildGroupLists(TrendView &view, const RecordFileInfo &info, int viewMode) {
  view.CurrentGroup = 1;
  // The working colour runs on from member to member, so an unknown colour number
  // repeats the colour of the member before it.
  std::string workingColour = ColourText({255, 0, 0});
  for (int g = 1; g <= 8; ++g) {
    TrendGroup group;
    group.MemberCount = kGroupPlaces;
    for (int place = 0; place < kGroupPlaces; ++place) {
      int member = info.Groups[g - 1].Members[place];
      if (member != 0) {
        AddMember(group, member, ChannelNoToIndex(info, member), workingColour, info);
      } else {
        AddEmptyPlace(group);
        --group.MemberCount;
      }
    }
    if (group.MemberCount > 0 || viewMode != 1) {
      group.HasTab = true;
      group.TabCaption = std::to_string(g) + ":" + info.Groups[g - 1].GroupName;
    } else if (g <= view.CurrentGroup) {
      ++view.CurrentGroup;
    }
    group.AllOn = -1;
    view.Groups[g - 1] = std::move(group);
  }

  TrendGroup all;
  int analog = static_cast<int>(info.Channels.size());
  int total = analog + static_cast<int>(info.Dis.size());
  for (int index = 1; index <= total; ++index) {
    int number =
        index <= analog ? info.Channels[index - 1].ChannelNo : info.Dis[index - analog - 1].DiNo;
    AddMember(all, number, index, workingColour, info);
  }
  all.MemberCount = static_cast<std::int16_t>(total);
  all.AllOn = -1;
  all.HasTab = true;
  all.TabCaption = GetMessageText(kAllChannelsCaption);
  view.Groups[kAllChannelsGroup - 1] = std::move(all);
}

void InitTrendView(TrendView &view, const RecordFileInfo &info, int scaleCount) {
  view.DisplayStart = info.FirstTime;
  view.DisplayEnd = info.LastTime;
  view.ColumnPitch = 15;
  view.PlotShift = 0;
  view.GridGrey = kGridGreyStart;
  view.BackGrey = kBackGreyStart;
  view.GridColor = ColourText(GreyOfStep(view.GridGrey));
  view.BackColor = ColourText(GreyOfStep(view.BackGrey));
  view.ZoomFactor = 1.0;
  view.ZoomKind = 0;
  view.ZoomCaption = "x1";
  view.WaveMode = 1;
  view.Cursor1Set = false;
  view.Cursor2Set = false;
  view.DisplaySaved = true;
  view.SelectedSlot = 0;
  view.SlotValue = {1, 2, 3};
  BuildGroupLists(view, info, 1);
  SetShownScales(view, scaleCount);
  AssignScaleSlots(view, scaleCount);
  FillSlotTexts(view);
}

int SlotToMember(const TrendGroup &group, int groupNo, int slot) {
  if (groupNo == kAllChannelsGroup)
    return slot >= 1 && slot <= static_cast<int>(group.ChannelNo.size()) ? slot : 0;
  int seen = 0;
  for (int place = 1; place <= static_cast<int>(group.ChannelNo.size()); ++place) {
    if (group.ChannelNo[place - 1] == 0) continue;
    if (++seen == slot) return place;
  }
  return 0;
}

int TabIndexOfGroup(const TrendView &view, int groupNo) {
  int index = 0;
  for (int g = 1; g < groupNo; ++g)
    if (view.Groups[g - 1].HasTab) ++index;
  return index;
}

int GroupOfTabIndex(const TrendView &view, int tabIndex) {
  int index = 0;
  for (int g = 1; g <= kGroupTabs; ++g) {
    if (!view.Groups[g - 1].HasTab) continue;
    if (index == tabIndex) return g;
    ++index;
  }
  return kAllChannelsGroup;
}

void SetShownScales(TrendView &view, int scaleCount) {
  for (auto &group : view.Groups)
    group.ShownScales = static_cast<std::int16_t>(std::min<int>(group.MemberCount, scaleCount));
}

void AssignScaleSlots(TrendView &view, int scaleCount) {
  auto &slots = view.SlotValue;
  if (scaleCount >= 2) slots[1] = slots[0] != 2 ? 2 : 1;
  if (scaleCount >= 3) {
    int candidate = 3;
    if (slots[0] == candidate || slots[1] == candidate) {
      candidate = 1;
      while (candidate == slots[0] || candidate == slots[1]) ++candidate;
    }
    slots[2] = candidate;
  }
}

void ReselectScaleSlots(TrendView &view, int scaleCount) {
  const int members = view.Group().MemberCount;
  if (view.SlotValue[0] < 1 || view.SlotValue[0] > members) view.SlotValue[0] = 1;
  AssignScaleSlots(view, std::min(scaleCount, members));
  for (int i = 0; i < 3; ++i)
    if (view.SlotValue[i] < 1 || view.SlotValue[i] > members) view.SlotValue[i] = 1;
  view.SelectedSlot = 0;
}

void KeepAcrossOrientationSwitch(TrendView &fresh, const TrendView &old) {
  fresh.Cursor1Set = old.Cursor1Set;
  fresh.Cursor2Set = old.Cursor2Set;
  fresh.Cursor1Time = old.Cursor1Time;
  fresh.Cursor2Time = old.Cursor2Time;
  fresh.DisplaySaved = old.DisplaySaved;
  if (old.CurrentGroup >= 1 && old.CurrentGroup <= kGroupTabs &&
      fresh.Groups[old.CurrentGroup - 1].HasTab)
    fresh.CurrentGroup = old.CurrentGroup;
  for (int g = 0; g < kGroupTabs; ++g) {
    TrendGroup &to = fresh.Groups[g];
    const TrendGroup &from = old.Groups[g];
    if (to.ChannelNo.size() != from.ChannelNo.size()) continue;  // not the same record
    to.ChannelOn = from.ChannelOn;
    to.ZoneTop = from.ZoneTop;
    to.ZoneHeight = from.ZoneHeight;
    to.AllOn = from.AllOn;
  }
}

void FillSlotTexts(TrendView &view) {
  const TrendGroup &group = view.Group();
  for (int i = 0; i < 3; ++i) {
    int place = SlotToMember(group, view.CurrentGroup, view.SlotValue[i]);
    int number = place > 0 ? group.ChannelNo[place - 1] : 0;
    view.SlotChannelText[i] = TwoDigits(number > 128 ? number - 128 : number);
    view.SlotMemberText[i] = TwoDigits(view.SlotValue[i]);
  }
}

Zone SlotZone(const TrendView &view, int slot) {
  const TrendGroup &group = view.Group();
  int place = SlotToMember(group, view.CurrentGroup, view.SlotValue[slot]);
  if (place == 0) return {};
  return {group.ZoneTop[place - 1], group.ZoneHeight[place - 1]};
}

int SlotChannelIndex(const TrendView &view, int slot) {
  const TrendGroup &group = view.Group();
  int place = SlotToMember(group, view.CurrentGroup, view.SlotValue[slot]);
  return place > 0 ? group.ChannelIndex[place - 1] : 0;
}

int ChkAllValue(const TrendView &view) { return view.Group().AllOn != 0 ? 1 : 0; }

int ChkSingleValue(const TrendView &view) {
  const TrendGroup &group = view.Group();
  if (group.AllOn != 0) return 0;
  int place = SlotToMember(group, view.CurrentGroup, view.SlotValue[view.SelectedSlot]);
  return place > 0 && group.ChannelOn[place - 1] != 0 ? 1 : 0;
}

Zone ResizeZone(Zone zone, std::int32_t oldPlotTop, std::int32_t g, std::int32_t newPlotTop,
                std::int32_t h) {
  if (g <= 0) return zone;
  double scaled = static_cast<double>(zone.height) * h / g;
  std::int32_t height =
      scaled < kZoneHeightFloor ? kZoneHeightFloor : static_cast<std::int32_t>(RoundToInt(scaled));
  double room = static_cast<double>(g - zone.height);
  double share = room != 0.0 ? (zone.top - oldPlotTop) / room : 0.0;
  std::int32_t top = static_cast<std::int32_t>(IntDown(share * (h - height) + newPlotTop));
  return {std::clamp(top, -32768, 32767), std::clamp(height, 0, 32767)};
}

void ResizeZones(TrendView &view, std::int32_t oldPlotTop, std::int32_t g, std::int32_t newPlotTop,
                 std::int32_t h) {
  for (auto &group : view.Groups) {
    for (std::size_t p = 0; p < group.ZoneHeight.size(); ++p) {
      Zone zone = ResizeZone({group.ZoneTop[p], group.ZoneHeight[p]}, oldPlotTop, g, newPlotTop, h);
      group.ZoneTop[p] = static_cast<std::int16_t>(zone.top);
      group.ZoneHeight[p] = static_cast<std::int16_t>(zone.height);
    }
  }
}

}  // namespace recscope
