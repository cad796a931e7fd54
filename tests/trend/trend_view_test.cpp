#include "trend/trend_view.h"

#include <gtest/gtest.h>

#include "shell/catalogue.h"
#include "trend/colour_table.h"
#include "trend/trend_layout.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;

TEST(GroupLists, GroupWithNoMembersHasNoTabAndAllChannelsAlwaysHasOne) {
  RecordFileInfo info = MakeRecord(10, 4, 1, 0);
  info.Groups[0] = {};                      // group 1 empty
  info.Groups[1].Members = {3, 0, 129, 0};  // group 2
  info.Groups[1].GroupName = "BOILER";
  info.Groups[3].Members = {1};  // group 4
  TrendView view;
  BuildGroupLists(view, info, 1);
  EXPECT_FALSE(view.Groups[0].HasTab);
  EXPECT_TRUE(view.Groups[1].HasTab);
  EXPECT_EQ(view.Groups[1].TabCaption, "2:BOILER");
  EXPECT_FALSE(view.Groups[2].HasTab);
  EXPECT_TRUE(view.Groups[3].HasTab);
  EXPECT_TRUE(view.Groups[8].HasTab);
  EXPECT_EQ(view.Groups[8].TabCaption, GetMessageText(10604));
  EXPECT_EQ(view.CurrentGroup, 2);  // moved past the removed first tab
  EXPECT_EQ(view.Groups[1].MemberCount, 2);
  EXPECT_EQ(view.Groups[1].ChannelIndex[2], 5);  // DI 1 behind four analog channels
  EXPECT_EQ(view.Groups[8].MemberCount, 5);
  EXPECT_EQ(TabIndexOfGroup(view, 4), 1);
  EXPECT_EQ(GroupOfTabIndex(view, 1), 4);
  EXPECT_EQ(GroupOfTabIndex(view, 2), 9);
}

TEST(GroupLists, AllEmptyGroupsLeaveOnlyTheAllChannelsTab) {
  RecordFileInfo info = MakeRecord(10, 2, 0, 0);
  info.Groups[0] = {};
  TrendView view;
  BuildGroupLists(view, info, 1);
  EXPECT_EQ(view.CurrentGroup, 9);
  EXPECT_EQ(GroupOfTabIndex(view, 0), 9);
}

TEST(GroupLists, EmptyGroupsKeepTheirTabsOutsideAFileView) {
  RecordFileInfo info = MakeRecord(10, 2, 0, 0);
  TrendView view;
  BuildGroupLists(view, info, 2);
  EXPECT_TRUE(view.Groups[5].HasTab);
}

TEST(GroupLists, ColourNumberZeroOrFifteenTakesThePreviousChannelsColour) {
  RecordFileInfo info = MakeRecord(10, 3, 0, 0);
  info.Channels[0].ColorNo = 2;  // blue
  info.Channels[1].ColorNo = 0;
  info.Channels[2].ColorNo = 15;
  TrendView view;
  BuildGroupLists(view, info, 1);
  std::string blue = ColourText({0, 0, 255});
  EXPECT_EQ(view.Groups[0].ChannelColor[0], blue);
  EXPECT_EQ(view.Groups[0].ChannelColor[1], blue);
  EXPECT_EQ(view.Groups[0].ChannelColor[2], blue);
}

TEST(GroupLists, SlotToMemberSkipsEmptyPlaces) {
  RecordFileInfo info = MakeRecord(10, 4, 0, 0);
  info.Groups[0].Members = {0, 2, 0, 4};
  TrendView view;
  BuildGroupLists(view, info, 1);
  EXPECT_EQ(SlotToMember(view.Groups[0], 1, 1), 2);
  EXPECT_EQ(SlotToMember(view.Groups[0], 1, 2), 4);
  EXPECT_EQ(SlotToMember(view.Groups[0], 1, 3), 0);
  EXPECT_EQ(SlotToMember(view.Groups[8], 9, 3), 3);
}

TEST(ScaleSlots, OneMemberWithThreeScalesShowsOnePanel) {
  RecordFileInfo info = MakeRecord(10, 4, 0, 0);
  info.Groups[0].Members = {3};
  TrendView view;
  InitTrendView(view, info, 3);
  EXPECT_EQ(view.Groups[0].ShownScales, 1);
  EXPECT_EQ(view.Groups[8].ShownScales, 3);
}

TEST(ScaleSlots, FirstAssignmentAvoidsTheOtherSlotsMembers) {
  TrendView view;
  view.SlotValue = {2, 9, 9};
  AssignScaleSlots(view, 2);
  EXPECT_EQ(view.SlotValue[1], 1);
  view.SlotValue = {3, 9, 9};
  AssignScaleSlots(view, 3);
  EXPECT_EQ(view.SlotValue[1], 2);
  EXPECT_EQ(view.SlotValue[2], 1);
  view.SlotValue = {1, 9, 9};
  AssignScaleSlots(view, 3);
  EXPECT_EQ(view.SlotValue[1], 2);
  EXPECT_EQ(view.SlotValue[2], 3);
}

TEST(ScaleSlots, SlotTextsOfChannelAndDi) {
  RecordFileInfo info = MakeRecord(10, 2, 2, 0);
  info.Groups[0].Members = {2, 130};
  TrendView view;
  InitTrendView(view, info, 2);
  EXPECT_EQ(view.SlotChannelText[0], "02");
  EXPECT_EQ(view.SlotChannelText[1], "02");  // DI 2 without the 128
  EXPECT_EQ(view.SlotMemberText[1], "02");
}

TEST(ScaleSlots, CheckBoxesFollowTheGroupState) {
  RecordFileInfo info = MakeRecord(10, 2, 0, 0);
  TrendView view;
  InitTrendView(view, info, 1);
  EXPECT_EQ(ChkAllValue(view), 1);
  EXPECT_EQ(ChkSingleValue(view), 0);
  view.Group().AllOn = 0;
  EXPECT_EQ(ChkSingleValue(view), 1);
  view.Group().ChannelOn[0] = 0;
  EXPECT_EQ(ChkSingleValue(view), 0);
}

TEST(Zones, ResizeKeepsRelativePlaceAndAtLeast500) {
  Zone zone = ResizeZone({516, 3250}, 400, 3570, 400, 7140);
  EXPECT_EQ(zone.height, 6500);
  EXPECT_EQ(zone.top, 400 + 116 * 640 / 320);
  Zone small = ResizeZone({516, 3250}, 400, 3570, 400, 500);
  EXPECT_EQ(small.height, 500);
}

TEST(Layout, PlotFollowsThePanelsInBothOrientations) {
  TrendLayout one = LayoutTrend(10000, 5500, 1, true);
  TrendLayout three = LayoutTrend(10000, 5500, 3, true);
  EXPECT_EQ(one.Picture2.Width, 9700);
  EXPECT_EQ(one.Picture2.Height, 4680);
  EXPECT_EQ(one.Picture1.Height, 3570);
  EXPECT_EQ(one.Picture1.Width, 9700 - 1840);
  EXPECT_EQ(three.Picture1.Left, one.Picture1.Left + 2 * kPanelExtent);
  EXPECT_EQ(three.Picture1.Width, one.Picture1.Width - 2 * kPanelExtent);
  TrendLayout ver = LayoutTrend(10000, 5500, 2, false);
  EXPECT_EQ(ver.Picture1.Top, ver.Picture3[0].Top + 2 * kPanelExtent + 10);
  EXPECT_EQ(ver.Picture1.Height, 4680 - 1340 - kPanelExtent);
  EXPECT_EQ(ver.Scroll.Top, ver.Picture1.Top);
  EXPECT_EQ(ver.Scroll.Height, ver.Picture1.Height);
  TrendLayout tiny = LayoutTrend(6400, 1000, 1, true);
  EXPECT_EQ(tiny.TabStrip1.Height, 2085);
  EXPECT_EQ(tiny.Picture2.Height, 1695);
  EXPECT_EQ(tiny.Picture1.Height, 695);
}

}  // namespace
}  // namespace recscope
