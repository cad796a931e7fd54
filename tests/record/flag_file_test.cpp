#include "record/flag_file.h"

#include <gtest/gtest.h>

#include "record/alarm_file.h"

namespace recscope {
namespace {

RecordFileInfo Header() {
  RecordFileInfo r;
  r.FileNameText = "STEST01.FDT";
  r.ModelText = "ZNQ";
  r.SerialText = "SNo.1";
  r.VersionText = "Ver.01.02.03";
  return r;
}

AlarmFileInfo Events() {
  AlarmFileInfo a;
  for (int i = 0; i < 2; ++i) {
    AlarmEvent e;
    e.Time = 1000 + i;
    a.Alarms.push_back(e);
  }
  MessageEvent m;
  m.Time = 2000;
  m.Text = "msg";
  a.Messages.push_back(m);
  return a;
}

TEST(FlagFile, HeaderOnlyFileHas168Bytes) {
  std::string bytes = FlagFileBytes(Header(), AlarmFileInfo{}, {});
  EXPECT_EQ(bytes.size(), 168u);
  EXPECT_EQ(bytes.substr(0, 11), "FTEST01.FDT");
  EXPECT_EQ(bytes.substr(68, 30), "SNo.1               Ver.01.02.");
}

TEST(FlagFile, DecisionsAndFlagsComeBack) {
  AlarmFileInfo saved = Events();
  saved.Alarms[1].Shown = -1;
  saved.Alarms[1].Position = 7;
  saved.Messages[0].Shown = -1;
  saved.Messages[0].Position = 10;
  FlagEvent f;
  f.Time = 1500;
  f.Text = "point, one";
  f.Shown = -1;
  f.Position = 9;
  std::string bytes = FlagFileBytes(Header(), saved, {f});
  AlarmFileInfo fresh = Events();
  std::vector<FlagEvent> flags;
  ASSERT_TRUE(ApplyFlagBytes(bytes, fresh, flags));
  EXPECT_EQ(fresh.Alarms[0].Shown, 0);
  EXPECT_EQ(fresh.Alarms[1].Shown, -1);
  EXPECT_EQ(fresh.Alarms[1].Position, 7);
  EXPECT_EQ(fresh.Messages[0].Position, 10);
  ASSERT_EQ(flags.size(), 1u);
  EXPECT_EQ(flags[0].Time, 1500);
  EXPECT_EQ(flags[0].Text, "point, one");  // trimmed, commas kept
  EXPECT_EQ(flags[0].Position, 9);
  EXPECT_EQ(flags[0].Shown, -1);
}

TEST(FlagFile, FileOf170BytesIsNotLookedAt) {
  FlagEvent f;
  f.Time = 1500;
  std::string bytes = FlagFileBytes(Header(), AlarmFileInfo{}, {f});
  AlarmFileInfo none;
  std::vector<FlagEvent> flags;
  ASSERT_TRUE(ApplyFlagBytes(bytes, none, flags));
  EXPECT_EQ(flags.size(), 1u);
  flags.clear();
  EXPECT_FALSE(ApplyFlagBytes(bytes.substr(0, 170), none, flags));
  EXPECT_TRUE(flags.empty());
}

TEST(FlagFile, StaleWhenCountsDiffer) {
  AlarmFileInfo saved = Events();
  saved.Alarms[0].Shown = -1;
  std::string bytes = FlagFileBytes(Header(), saved, {});
  AlarmFileInfo more = Events();
  more.Alarms.push_back(AlarmEvent{});
  std::vector<FlagEvent> flags;
  EXPECT_FALSE(ApplyFlagBytes(bytes, more, flags));
  EXPECT_EQ(more.Alarms[0].Shown, 0);
}

TEST(FlagFile, StaleWhenATimeIsNotAmongTheEvents) {
  AlarmFileInfo saved = Events();
  saved.Messages[0].Shown = -1;
  std::string bytes = FlagFileBytes(Header(), saved, {});
  AlarmFileInfo moved = Events();
  moved.Messages[0].Time = 2001;
  std::vector<FlagEvent> flags;
  EXPECT_FALSE(ApplyFlagBytes(bytes, moved, flags));
  EXPECT_EQ(moved.Messages[0].Shown, 0);
}

TEST(FlagFile, LinesOffThePatternArePassedOver) {
  std::string bytes = FlagFileBytes(Header(), Events(), {});
  bytes += "garbage,F,1,03,not an event\r\n";
  bytes += "2024/01/05 10:0x:00,F,1,03,broken minute\r\n";
  bytes += "2024/01/05 10:00:00,F,0,04,kept\r\n";
  AlarmFileInfo events = Events();
  std::vector<FlagEvent> flags;
  ASSERT_TRUE(ApplyFlagBytes(bytes, events, flags));
  ASSERT_EQ(flags.size(), 1u);
  EXPECT_EQ(flags[0].Text, "kept");
  EXPECT_EQ(flags[0].Shown, 0);
}

TEST(FlagFile, LinePatternMatchesTheRecordTime) {
  EXPECT_TRUE(MatchesLinePattern("2024/01/05 10:00:00,A", "####*?#*?# ?#:?#:?#*"));
  EXPECT_FALSE(MatchesLinePattern("202x/01/05 10:00:00", "####*?#*?# ?#:?#:?#*"));
  EXPECT_FALSE(MatchesLinePattern("", "####*?#*?# ?#:?#:?#*"));
}

}  // namespace
}  // namespace recscope
