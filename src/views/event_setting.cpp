#include "views/event_setting.h"

#include <algorithm>

#include "platform/text_encoding.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kTabCaptions[3] = {19034, 19035, 19036};
constexpr int kCaptions[3] = {19600, 19601, 19602};
constexpr int kFirstAction = 19017;
constexpr int kActionCount = 7;
constexpr int kStateCleared = 19024;
constexpr int kStateRaised = 19025;
constexpr int kTooLong = 20117;

bool InRange(const RecordSlot &slot, int kind, int row) {
  return row >= 1 && row <= EventSetRowCount(slot, kind);
}

int DisplayIndex(std::int16_t shown) { return shown == -1 ? 1 : 0; }

int PositionIndex(std::int16_t position) { return std::clamp<int>(position, 1, 10) - 1; }

}  // namespace

int EventSetKindOfTab(const std::string &tabCaption) {
  for (int kind = 0; kind < 3; ++kind)
    if (tabCaption == GetMessageText(kTabCaptions[kind])) return kind;
  return -1;
}

std::string EventSetCaption(int kind) {
  if (kind < 0 || kind > 2) return {};
  return GetMessageText(kCaptions[kind]);
}

int EventSetRowCount(const RecordSlot &slot, int kind) {
  switch (kind) {
    case kEventSetAlarm:
      return static_cast<int>(slot.Alarms.Alarms.size());
    case kEventSetMessage:
      return static_cast<int>(slot.Alarms.Messages.size());
    case kEventSetFlag:
      return static_cast<int>(slot.Flags.size());
  }
  return 0;
}

std::string EventSetActionText(int action) {
  if (action < 0 || action >= kActionCount) return {};
  return GetMessageText(kFirstAction + action);
}

std::string EventSetStateText(int state) {
  if (state == 0) return GetMessageText(kStateCleared);
  if (state == 1) return GetMessageText(kStateRaised);
  return {};
}

EventSetRow LoadEventSetRow(const RecordSlot &slot, int kind, int row, int dateFormatNo) {
  EventSetRow out;
  if (!InRange(slot, kind, row)) return out;
  const auto i = static_cast<std::size_t>(row - 1);
  switch (kind) {
    case kEventSetAlarm: {
      const AlarmEvent &a = slot.Alarms.Alarms[i];
      out.time = FormatTime(a.Time, dateFormatNo);
      out.channel = std::to_string(a.ChannelNo);
      out.alarmNo = std::to_string(a.AlarmNo);
      out.action = EventSetActionText(a.AlarmAction);
      out.state = EventSetStateText(a.AlarmState);
      out.displayIndex = DisplayIndex(a.Shown);
      out.positionIndex = PositionIndex(a.Position);
      break;
    }
    case kEventSetMessage: {
      const MessageEvent &m = slot.Alarms.Messages[i];
      out.time = FormatTime(m.Time, dateFormatNo);
      out.text = m.Text;
      out.displayIndex = DisplayIndex(m.Shown);
      out.positionIndex = PositionIndex(m.Position);
      break;
    }
    case kEventSetFlag: {
      const FlagEvent &f = slot.Flags[i];
      out.time = FormatTime(f.Time, dateFormatNo);
      out.text = f.Text;
      out.displayIndex = DisplayIndex(f.Shown);
      out.positionIndex = PositionIndex(f.Position);
      break;
    }
  }
  return out;
}

void StoreEventSetRow(RecordSlot &slot, int kind, int row, int displayIndex, int positionIndex,
                      const std::string &flagText) {
  if (!InRange(slot, kind, row)) return;
  const auto i = static_cast<std::size_t>(row - 1);
  const std::int16_t shown = displayIndex == 1 ? -1 : 0;
  const auto position = static_cast<std::int16_t>(positionIndex + 1);
  switch (kind) {
    case kEventSetAlarm:
      slot.Alarms.Alarms[i].Shown = shown;
      slot.Alarms.Alarms[i].Position = position;
      break;
    case kEventSetMessage:
      slot.Alarms.Messages[i].Shown = shown;
      slot.Alarms.Messages[i].Position = position;
      break;
    case kEventSetFlag:
      slot.Flags[i].Shown = shown;
      slot.Flags[i].Position = position;
      slot.Flags[i].Text = flagText;
      break;
  }
}

int CheckFlagText(const std::string &text, MessagePlaceholders *placeholders) {
  if (Utf8ToCp932(text).size() <= kFlagTextBytes) return 0;
  if (placeholders) *placeholders = {{"@LEN@", std::to_string(kFlagTextBytes)}};
  return kTooLong;
}

}  // namespace recscope
