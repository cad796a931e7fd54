#include "views/event_list.h"

#include <gtest/gtest.h>

#include "shell/civil_time.h"
#include "views/grid_copy.h"

namespace recscope {
namespace {

const std::int32_t kT0 = static_cast<std::int32_t>(FromCivil({2024, 3, 4, 8, 0, 0}));

AlarmFileInfo Alarms() {
  AlarmFileInfo a;
  a.Alarms.push_back({kT0 + 10, "A", 3, 2, 4, 1, -1, 2});
  a.Alarms.push_back({kT0 + 70, "A", 12, 1, 7, 0, 0, 2});  // action 7: no text
  a.Messages.push_back({kT0 + 100, "M", "昇温開始", 4, -1, 6});
  return a;
}

std::vector<FlagEvent> Flags() { return {{kT0 + 3600, "ロット 1", 0, 9}, {kT0 + 7200, "", -1, 3}}; }

TEST(EventList, TabKeysCaptionsAndKinds) {
  EXPECT_EQ(ListTabKey(kAlarmTab), "Alarm");
  EXPECT_EQ(ListTabKey(kMessageTab), "Message");
  EXPECT_EQ(ListTabKey(kFlagTab), "Flg");
  EXPECT_EQ(ListTabOfKey("Flg"), kFlagTab);
  EXPECT_EQ(ListTabOfKey("Flag"), 0);
  EXPECT_EQ(ListTabCaption(kAlarmTab), "ｱﾗｰﾑ");
  EXPECT_EQ(ListTabCaption(kMessageTab), "ﾒｯｾｰｼﾞ");
  EXPECT_EQ(ListTabCaption(kFlagTab), "ﾌﾗｸﾞ");
  EXPECT_EQ(ListTabOfEventKind(0), kAlarmTab);
  EXPECT_EQ(ListTabOfEventKind(1), kMessageTab);
  EXPECT_EQ(ListTabOfEventKind(2), kFlagTab);
  EXPECT_EQ(ListTabOfEventKind(3), 0);
}

TEST(EventList, ColumnTitlesAndWidthsOfEachTab) {
  const auto alarm = EventColumns(kAlarmTab, true);
  ASSERT_EQ(alarm.size(), 5u);
  EXPECT_EQ(alarm[0].Title, "発生/解除時刻");
  EXPECT_EQ(alarm[0].Width, 2200);
  EXPECT_EQ(alarm[1].Title, "ﾁｬﾈﾙ№");
  EXPECT_EQ(alarm[2].Title, "ｱﾗｰﾑ№");
  EXPECT_EQ(alarm[3].Title, "警報動作");
  EXPECT_EQ(alarm[4].Title, "発生/解除");
  for (int c = 1; c < 5; ++c) EXPECT_EQ(alarm[static_cast<size_t>(c)].Width, 1200);
  const auto message = EventColumns(kMessageTab, true);
  ASSERT_EQ(message.size(), 4u);
  EXPECT_EQ(message[1].Title, "メッセージ");
  EXPECT_EQ(message[1].Width, 5500);
  EXPECT_EQ(message[2].Title, "表示");
  EXPECT_EQ(message[2].Width, 1000);
  EXPECT_EQ(message[3].Title, "表示位置");
  EXPECT_EQ(message[3].Width, 1500);
  const auto flag = EventColumns(kFlagTab, false);
  ASSERT_EQ(flag.size(), 4u);
  EXPECT_EQ(flag[0].Title, "設定時刻");
  EXPECT_EQ(flag[0].Width, 2200);
  EXPECT_EQ(flag[1].Width, 3000);
  EXPECT_EQ(flag[3].Title, "表示位置");  // message 19039 in the vertical orientation
  EXPECT_EQ(EventGridWidth(), 11000);
}

TEST(EventList, AlarmWithActionSevenHasAnEmptyActionCell) {
  EXPECT_EQ(AlarmActionText(7), "");
  EXPECT_EQ(AlarmActionText(-1), "");
  const GridRows grid = FillCells2(kAlarmTab, Alarms(), Flags(), 1, true);
  ASSERT_EQ(grid.size(), 3u);
  EXPECT_EQ(grid[2], (std::vector<std::string>{"2024/03/04 08:01:10", "12", "1", "", "解除"}));
}

TEST(EventList, ActionStateAndSwitchTexts) {
  const char *actions[] = {"OFF", "H", "L", "DH", "DL", "RH", "RL"};
  for (int code = 0; code <= 6; ++code) EXPECT_EQ(AlarmActionText(code), actions[code]);
  EXPECT_EQ(AlarmStateText(0), "解除");
  EXPECT_EQ(AlarmStateText(1), "発生");
  EXPECT_EQ(AlarmStateText(2), "");
  EXPECT_EQ(OnOffText(0), "OFF");
  EXPECT_EQ(OnOffText(-1), "ON");
  EXPECT_EQ(ColorNameText(1), "赤");
  EXPECT_EQ(ColorNameText(14), "銀鼠");
  EXPECT_EQ(ColorNameText(0), "");
  EXPECT_EQ(ColorNameText(15), "");
}

TEST(EventList, RowsOfEachTabInListOrder) {
  const GridRows alarm = FillCells2(kAlarmTab, Alarms(), Flags(), 1, true);
  EXPECT_EQ(alarm[0][0], "発生/解除時刻");
  EXPECT_EQ(alarm[1], (std::vector<std::string>{"2024/03/04 08:00:10", "3", "2", "DL", "発生"}));
  const GridRows message = FillCells2(kMessageTab, Alarms(), Flags(), 2, true);
  ASSERT_EQ(message.size(), 2u);
  EXPECT_EQ(message[1], (std::vector<std::string>{"04/03/2024 08:01:40", "昇温開始", "ON", "6"}));
  const GridRows flag = FillCells2(kFlagTab, Alarms(), Flags(), 1, false);
  ASSERT_EQ(flag.size(), 3u);
  EXPECT_EQ(flag[1], (std::vector<std::string>{"2024/03/04 09:00:00", "ロット 1", "OFF", "9"}));
  EXPECT_EQ(flag[2], (std::vector<std::string>{"2024/03/04 10:00:00", "", "ON", "3"}));
  const GridRows none = FillCells2(kFlagTab, Alarms(), {}, 1, true);
  EXPECT_EQ(none.size(), 1u);
}

TEST(EventList, RowTimes) {
  EXPECT_EQ(EventRowTime(kAlarmTab, Alarms(), Flags(), 2), kT0 + 70);
  EXPECT_EQ(EventRowTime(kMessageTab, Alarms(), Flags(), 1), kT0 + 100);
  EXPECT_EQ(EventRowTime(kFlagTab, Alarms(), Flags(), 2), kT0 + 7200);
  EXPECT_FALSE(EventRowTime(kFlagTab, Alarms(), Flags(), 0).has_value());
  EXPECT_FALSE(EventRowTime(kFlagTab, Alarms(), Flags(), 3).has_value());
  EXPECT_EQ(EventRowCount(kMessageTab, Alarms(), Flags()), 1);
}

TEST(EventList, RowClickWithOnlyCursorTwoSetAndShiftSayingOneSetsCursorOne) {
  EXPECT_EQ(ListClickCursor(1, false, true, 0, 0), 1);
  EXPECT_EQ(ListClickCursor(1, false, true, 1, 0), 2);
  EXPECT_EQ(ListClickCursor(3, true, false, 1, 1), 1);
}

TEST(EventList, RowClickOnTheTitleRowOrWithNoCursorDoesNothing) {
  EXPECT_EQ(ListClickCursor(0, true, true, 0, 0), 0);
  EXPECT_EQ(ListClickCursor(2, false, false, 0, 0), 0);
}

TEST(EventList, CaptionAndTheFileNumberReadBack) {
  const std::string caption = EventListCaption(3, "/data/SHEAT01.FDT");
  EXPECT_EQ(caption, "アラーム／メッセージ／フラグ一覧表03[/data/SHEAT01.FDT]");
  EXPECT_EQ(FileNumberOfCaption(caption), 3);
  EXPECT_EQ(FileNumberOfCaption(EventListCaption(16, "x")), 16);
  EXPECT_EQ(FileNumberOfCaption("short"), 0);
}

GridRows Grid() {
  return {{"t0", "t1", "t2"}, {"a0", "a1", "a2"}, {"b0", "b1", "b2"}, {"c0", "c1", "c2"}};
}

TEST(GridCopy, SelectionCopiesCellsWithTabsAndRowsWithReturns) {
  EXPECT_EQ(GridCopyText(Grid(), 1, 1, 2, 2, false), "a1\ta2\t\rb1\tb2\t\r");
}

TEST(GridCopy, SelectionMadeFromBottomToTopStillCopiesTopToBottom) {
  EXPECT_EQ(GridCopyText(Grid(), 3, 2, 2, 0, false), "b0\tb1\tb2\t\rc0\tc1\tc2\t\r");
  EXPECT_EQ(GridCopyText(Grid(), 3, 2, 2, 0, false), GridCopyText(Grid(), 2, 0, 3, 2, false));
}

TEST(GridCopy, WithTitlesTheTitleRowComesFirst) {
  EXPECT_EQ(GridCopyText(Grid(), 3, 1, 3, 1, true), "t1\t\rc1\t\r");
  EXPECT_EQ(WholeGridText(Grid()), "t0\tt1\tt2\t\ra0\ta1\ta2\t\rb0\tb1\tb2\t\rc0\tc1\tc2\t\r");
  EXPECT_EQ(WithNewlines("a\t\rb\t\r"), "a\t\nb\t\n");
}

}  // namespace
}  // namespace recscope
