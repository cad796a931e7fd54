#include "views/event_list.h"

#include <cstdio>
#include <cstdlib>

#include "shell/catalogue.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kCaption = 19000;
constexpr int kCaptionNumberPlace = 19001;
constexpr int kGridWidth = 19002;
constexpr int kTimeWidth = 19006;
constexpr int kAlarmColumnWidth = 19007;
constexpr int kMessageWidth = 19008;
constexpr int kSwitchWidth = 19029;
constexpr int kPositionWidth = 19031;
constexpr int kFlagTextWidth = 19033;

int Number(int messageId) { return std::atoi(GetMessageText(messageId).c_str()); }

GridColumn Column(int titleId, int widthId) { return {GetMessageText(titleId), Number(widthId)}; }

}  // namespace

std::string ListTabKey(int listTab) {
  switch (listTab) {
    case kAlarmTab:
      return "Alarm";
    case kMessageTab:
      return "Message";
    case kFlagTab:
      return "Flg";
  }
  return {};
}

int ListTabOfKey(std::string_view key) {
  if (key == "Alarm") return kAlarmTab;
  if (key == "Message") return kMessageTab;
  if (key == "Flg") return kFlagTab;
  return 0;
}

std::string ListTabCaption(int listTab) {
  if (listTab < kAlarmTab || listTab > kFlagTab) return {};
  return GetMessageText(19034 + listTab - 1);
}

int ListTabOfEventKind(int kind) {
  switch (kind) {
    case 0:
      return kAlarmTab;
    case 1:
      return kMessageTab;
    case 2:
      return kFlagTab;
  }
  return 0;
}

std::vector<GridColumn> EventColumns(int listTab, bool horizontalTrend) {
  const int positionTitle = horizontalTrend ? 19030 : 19039;
  switch (listTab) {
    case kAlarmTab:
      return {Column(19009, kTimeWidth), Column(19010, kAlarmColumnWidth),
              Column(19011, kAlarmColumnWidth), Column(19012, kAlarmColumnWidth),
              Column(19013, kAlarmColumnWidth)};
    case kMessageTab:
      return {Column(19009, kTimeWidth), Column(19014, kMessageWidth), Column(19026, kSwitchWidth),
              Column(positionTitle, kPositionWidth)};
    case kFlagTab:
      return {Column(19016, kTimeWidth), Column(19032, kFlagTextWidth), Column(19026, kSwitchWidth),
              Column(positionTitle, kPositionWidth)};
  }
  return {};
}

int EventGridWidth() { return Number(kGridWidth); }

std::string AlarmActionText(int code) {
  if (code < 0 || code > 6) return {};
  return GetMessageText(19017 + code);
}

std::string AlarmStateText(int state) {
  if (state == 0) return GetMessageText(19024);
  if (state == 1) return GetMessageText(19025);
  return {};
}

std::string OnOffText(int displaySwitch) {
  return GetMessageText(displaySwitch == 0 ? 19027 : 19028);
}

std::string ColorNameText(int colorNo) {
  if (colorNo < 1 || colorNo > 14) return {};
  return GetMessageText(11200 + colorNo - 1);
}

GridRows FillCells2(int listTab, const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags,
                    int dateFormatNo, bool horizontalTrend) {
  GridRows grid;
  std::vector<std::string> titles;
  for (const GridColumn &column : EventColumns(listTab, horizontalTrend))
    titles.push_back(column.Title);
  grid.push_back(std::move(titles));
  switch (listTab) {
    case kAlarmTab:
      for (const AlarmEvent &e : alarms.Alarms)
        grid.push_back({FormatTime(e.Time, dateFormatNo), std::to_string(e.ChannelNo),
                        std::to_string(e.AlarmNo), AlarmActionText(e.AlarmAction),
                        AlarmStateText(e.AlarmState)});
      break;
    case kMessageTab:
      for (const MessageEvent &e : alarms.Messages)
        grid.push_back({FormatTime(e.Time, dateFormatNo), e.Text, OnOffText(e.Shown),
                        std::to_string(e.Position)});
      break;
    case kFlagTab:
      for (const FlagEvent &e : flags)
        grid.push_back({FormatTime(e.Time, dateFormatNo), e.Text, OnOffText(e.Shown),
                        std::to_string(e.Position)});
      break;
  }
  return grid;
}

int EventRowCount(int listTab, const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags) {
  switch (listTab) {
    case kAlarmTab:
      return static_cast<int>(alarms.Alarms.size());
    case kMessageTab:
      return static_cast<int>(alarms.Messages.size());
    case kFlagTab:
      return static_cast<int>(flags.size());
  }
  return 0;
}

std::optional<std::int32_t> EventRowTime(int listTab, const AlarmFileInfo &alarms,
                                         const std::vector<FlagEvent> &flags, int row) {
  if (row < 1 || row > EventRowCount(listTab, alarms, flags)) return std::nullopt;
  const auto i = static_cast<size_t>(row - 1);
  switch (listTab) {
    case kAlarmTab:
      return alarms.Alarms[i].Time;
    case kMessageTab:
      return alarms.Messages[i].Time;
    default:
      return flags[i].Time;
  }
}

int ListClickCursor(int row, bool cursor1Set, bool cursor2Set, int shiftState, int shiftBaseline) {
  if (row < 1) return 0;
  if (!cursor1Set && !cursor2Set) return 0;
  return shiftState == shiftBaseline ? 1 : 2;
}

std::string EventListCaption(int slot, const std::string &filePath) {
  char number[16];
  std::snprintf(number, sizeof number, "%02d", slot);
  return GetMessageText(kCaption, "@strNumber@", number) + "[" + filePath + "]";
}

int FileNumberOfCaption(const std::string &caption) {
  const int place = Number(kCaptionNumberPlace);
  // Characters counted in UTF-8: a byte that is not a continuation byte starts one.
  int character = 0;
  std::string two;
  for (size_t i = 0; i < caption.size(); ++i) {
    const auto byte = static_cast<unsigned char>(caption[i]);
    if ((byte & 0xC0) != 0x80) ++character;
    if (character == place || character == place + 1) two += caption[i];
  }
  if (two.size() != 2 || two[0] < '0' || two[0] > '9' || two[1] < '0' || two[1] > '9') return 0;
  return std::atoi(two.c_str());
}

}  // namespace recscope
