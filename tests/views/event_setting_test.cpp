// The event setting dialog in core: the kind of a list tab, the texts of a row,
// what a stored row becomes, and the 32-byte test of a flag text.
#include "views/event_setting.h"

#include <gtest/gtest.h>

#include "shell/catalogue.h"

namespace recscope {
namespace {

RecordSlot EventSlot() {
  RecordSlot slot;
  AlarmEvent a;
  a.Time = 86400 + 3661;  // 1970/01/02 01:01:01
  a.ChannelNo = 12;
  a.AlarmNo = 3;
  a.AlarmAction = 4;
  a.AlarmState = 1;
  a.Shown = -1;
  a.Position = 6;
  AlarmEvent unknown = a;
  unknown.AlarmAction = 7;
  unknown.AlarmState = 0;
  unknown.Shown = 0;
  unknown.Position = 2;
  slot.Alarms.Alarms = {a, unknown};
  MessageEvent m;
  m.Time = 0;
  m.Text = "炉温上昇";
  slot.Alarms.Messages = {m};
  FlagEvent f;
  f.Time = 60;
  f.Text = "mark";
  f.Shown = -1;
  f.Position = 10;
  slot.Flags = {f};
  return slot;
}

TEST(EventSetting, TabCaptionsGiveTheKind) {
  EXPECT_EQ(EventSetKindOfTab("ｱﾗｰﾑ"), kEventSetAlarm);
  EXPECT_EQ(EventSetKindOfTab("ﾒｯｾｰｼﾞ"), kEventSetMessage);
  EXPECT_EQ(EventSetKindOfTab("ﾌﾗｸﾞ"), kEventSetFlag);
  EXPECT_EQ(EventSetKindOfTab("Alarm"), -1);
}

TEST(EventSetting, CaptionsByKind) {
  EXPECT_EQ(EventSetCaption(0), "アラーム表示");
  EXPECT_EQ(EventSetCaption(1), "メッセージ表示");
  EXPECT_EQ(EventSetCaption(2), "フラグ表示");
}

TEST(EventSetting, AlarmRowShowsItsNumbersActionAndState) {
  const EventSetRow row = LoadEventSetRow(EventSlot(), kEventSetAlarm, 1, 1);
  EXPECT_EQ(row.time, "1970/01/02 01:01:01");
  EXPECT_EQ(row.channel, "12");
  EXPECT_EQ(row.alarmNo, "3");
  EXPECT_EQ(row.action, "DL");
  EXPECT_EQ(row.state, "発生");
  EXPECT_EQ(row.displayIndex, 1);
  EXPECT_EQ(row.positionIndex, 5);
}

TEST(EventSetting, AlarmRowWithAnUnknownActionCodeShowsAnEmptyAction) {
  const EventSetRow row = LoadEventSetRow(EventSlot(), kEventSetAlarm, 2, 1);
  EXPECT_EQ(row.action, "");
  EXPECT_EQ(row.state, "解除");
  EXPECT_EQ(row.displayIndex, 0);
  EXPECT_EQ(row.positionIndex, 1);
}

TEST(EventSetting, ActionTextsOfTheSevenCodes) {
  const char *texts[] = {"OFF", "H", "L", "DH", "DL", "RH", "RL"};
  for (int code = 0; code < 7; ++code) EXPECT_EQ(EventSetActionText(code), texts[code]);
  EXPECT_EQ(EventSetActionText(-1), "");
  EXPECT_EQ(EventSetActionText(7), "");
}

TEST(EventSetting, MessageAndFlagRowsShowTheirTexts) {
  const EventSetRow message = LoadEventSetRow(EventSlot(), kEventSetMessage, 1, 2);
  EXPECT_EQ(message.time, "01/01/1970 00:00:00");  // the operator's date format 2
  EXPECT_EQ(message.text, "炉温上昇");
  EXPECT_EQ(message.positionIndex, 4);
  const EventSetRow flag = LoadEventSetRow(EventSlot(), kEventSetFlag, 1, 1);
  EXPECT_EQ(flag.time, "1970/01/01 00:01:00");
  EXPECT_EQ(flag.text, "mark");
  EXPECT_EQ(flag.displayIndex, 1);
  EXPECT_EQ(flag.positionIndex, 9);
}

TEST(EventSetting, StoreSetsSwitchPositionAndFlagText) {
  RecordSlot slot = EventSlot();
  StoreEventSetRow(slot, kEventSetAlarm, 2, 1, 9, "ignored");
  EXPECT_EQ(slot.Alarms.Alarms[1].Shown, -1);
  EXPECT_EQ(slot.Alarms.Alarms[1].Position, 10);
  StoreEventSetRow(slot, kEventSetMessage, 1, 0, 0, "ignored");
  EXPECT_EQ(slot.Alarms.Messages[0].Shown, 0);
  EXPECT_EQ(slot.Alarms.Messages[0].Position, 1);
  EXPECT_EQ(slot.Alarms.Messages[0].Text, "炉温上昇");
  StoreEventSetRow(slot, kEventSetFlag, 1, 0, 2, "新しい");
  EXPECT_EQ(slot.Flags[0].Shown, 0);
  EXPECT_EQ(slot.Flags[0].Position, 3);
  EXPECT_EQ(slot.Flags[0].Text, "新しい");
}

TEST(EventSetting, RowsOutsideTheListAreLeftAlone) {
  RecordSlot slot = EventSlot();
  StoreEventSetRow(slot, kEventSetFlag, 2, 0, 0, "x");
  StoreEventSetRow(slot, kEventSetFlag, 0, 0, 0, "x");
  EXPECT_EQ(slot.Flags[0].Text, "mark");
  EXPECT_EQ(LoadEventSetRow(slot, kEventSetAlarm, 3, 1).time, "");
  EXPECT_EQ(EventSetRowCount(slot, kEventSetAlarm), 2);
  EXPECT_EQ(EventSetRowCount(slot, kEventSetMessage), 1);
  EXPECT_EQ(EventSetRowCount(slot, kEventSetFlag), 1);
}

TEST(EventSetting, FlagTextOf32SingleByteCharactersIsAcceptedAnd33IsNot) {
  EXPECT_EQ(CheckFlagText(std::string(32, 'a')), 0);
  MessagePlaceholders placeholders;
  EXPECT_EQ(CheckFlagText(std::string(33, 'a'), &placeholders), 20117);
  EXPECT_EQ(GetMessageText(20117, placeholders), "半角32文字以下で入力してください");
  // Half-width katakana are single bytes in code page 932.
  std::string kana;
  for (int i = 0; i < 32; ++i) kana += "ｱ";
  EXPECT_EQ(CheckFlagText(kana), 0);
  EXPECT_EQ(CheckFlagText(kana + "ｱ"), 20117);
}

TEST(EventSetting, DoubleWidthCharactersCountTwoBytes) {
  std::string kanji;
  for (int i = 0; i < 16; ++i) kanji += "温";
  EXPECT_EQ(CheckFlagText(kanji), 0);
  EXPECT_EQ(CheckFlagText(kanji + "a"), 20117);
}

}  // namespace
}  // namespace recscope
