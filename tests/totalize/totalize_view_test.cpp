// What the totalize window shows, without the window: caption and slot, tabs by
// key, the grid texts of each tab, the action type row by version, the buttons,
// page turns, the copy text and the layout rules.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "record/record_writer.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"
#include "totalize/addition.h"
#include "totalize/totalize_view.h"
#include "totalize_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeTotalizeContent;
using testing_support::MakeTotalizeRecords;
using testing_support::TotalizeFolder;

using Row = std::vector<std::string>;

class TotalizeView : public ::testing::Test {
 protected:
  void SetUp() override { ResetSharedState(state); }

  // Opens a file of the fixture's content with `records` records into slot 1.
  TotalizeWindow &Open(const std::string &name, bool binary, int records,
                       const TotalizeFileContent &content = MakeTotalizeContent()) {
    path = folder.Path(name);
    EXPECT_TRUE(
        WriteWholeFile(path, TotalizeFileBytes(content, binary, MakeTotalizeRecords(records))));
    const TotalizeOpenResult r = OpenTotalizeFile(state, path);
    EXPECT_TRUE(r.Ok()) << r.MessageId;
    return state.Totalize(r.Slot);
  }

  SharedState state;
  TotalizeFolder folder;
  std::string path;
};

TEST(TotalizeCaption, CarriesKindNameSlotDigitsAndPath) {
  EXPECT_EQ(TotalizeCaption(1, 3, "/data/T0001.FDT"), "日報積算値表示03[/data/T0001.FDT]");
  EXPECT_EQ(TotalizeCaption(6, 16, "/d/R1.FDT"), "日報(時間)積算値表示16[/d/R1.FDT]");
  EXPECT_EQ(TotalizeCaption(7, 9, "/d/E1.FDT"), "外部入力積算値表示09[/d/E1.FDT]");
}

TEST(TotalizeCaption, SlotIsFoundAgainFromTheFirstZeroOrOne) {
  EXPECT_EQ(TotalizeSlotOfCaption("日報積算値表示03[/data/T0001.FDT]"), 3);
  EXPECT_EQ(TotalizeSlotOfCaption("月報積算値表示16[/x2/D9.FDT]"), 16);
  // A digit 2 to 9 in front is passed over: only "0" and "1" start the slot.
  EXPECT_EQ(TotalizeSlotOfCaption("A2B12[/p]"), 12);
  EXPECT_EQ(TotalizeSlotOfCaption("no digits"), 0);
}

TEST(TotalizeCaption, TotalizeWindowsAreToldFromOthersByTheirKindName) {
  for (int kind = 1; kind <= 7; ++kind)
    EXPECT_TRUE(IsTotalizeCaption(TotalizeCaption(kind, 1, "/p/T1.FDT"))) << kind;
  // The trend window's caption and the never used fixed-period name are no totalize windows.
  EXPECT_FALSE(IsTotalizeCaption("トレンド表示01[/p/SHEAT01.FDT]"));
  EXPECT_FALSE(IsTotalizeCaption(GetMessageText(19200) + "01[/p/T1.FDT]"));
  EXPECT_FALSE(IsTotalizeCaption(GetMessageText(19728)));
  EXPECT_FALSE(IsTotalizeCaption(""));
}

TEST_F(TotalizeView, FourGroupFileHasFiveTabsTheLastForAllChannels) {
  const TotalizeWindow &t = Open("T0001.FDT", true, 2);
  const std::vector<TotalizeTab> tabs = TotalizeTabs(t);
  ASSERT_EQ(tabs.size(), 5u);
  const char *captions[] = {"積算グループ１", "積算グループ２", "積算グループ３", "積算グループ４",
                            "全体表示"};
  const char *keys[] = {"Group1", "Group2", "Group3", "Group4", "Group9"};
  const int numbers[] = {1, 2, 3, 4, 9};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(tabs[static_cast<std::size_t>(i)].Caption, captions[i]);
    EXPECT_EQ(tabs[static_cast<std::size_t>(i)].Key, keys[i]);
    EXPECT_EQ(tabs[static_cast<std::size_t>(i)].TabNo, numbers[i]);
    EXPECT_EQ(TotalizeTabOfKey(keys[i]), numbers[i]);
  }
  EXPECT_EQ(TotalizeTabOfKey("Group0"), 0);
  EXPECT_EQ(TotalizeTabOfKey("Tab1"), 0);
}

TEST_F(TotalizeView, EightGroupFileHasNineTabs) {
  TotalizeFileContent content = MakeTotalizeContent(8);
  const TotalizeWindow &t = Open("Y0001.FDT", true, 1, content);
  const std::vector<TotalizeTab> tabs = TotalizeTabs(t);
  ASSERT_EQ(tabs.size(), 9u);
  EXPECT_EQ(tabs[7].Caption, "積算グループ８");
  EXPECT_EQ(tabs[8].Key, "Group9");
}

TEST_F(TotalizeView, AllChannelsGridHasTitleRowsAndEveryRecordOfThePage) {
  const TotalizeWindow &t = Open("T0001.FDT", true, 2);
  const GridRows grid = TotalizeGrid(t, kTotalizeAllTab, 1);
  // The fixture's version "Ver.01.02" has "1." at characters 6 and 7: no number,
  // so every channel shows the totalize name.
  const GridRows expected = {
      {"", "", "CH01", "CH05", "CH09"},
      {"", "積算動作タイプ", "積算", "積算", "積算"},
      {"", "積算タグ", "FLOW1   ", "PUMP    ", "RUN     "},
      {"積算開始時刻", "積算終了時刻", "m3     ", "count  ", "h      "},
      {"2026/01/02 00:00:00", "2026/01/02 01:00:00", "1.1", "-1", "123.457"},
      {"2026/01/02 01:00:00", "2026/01/02 02:00:00", "2.1", "-2", "123.458"},
  };
  EXPECT_EQ(grid, expected);
}

TEST_F(TotalizeView, GroupTabSkipsEmptyPlacesAndKeepsMemberOrder) {
  const TotalizeWindow &t = Open("T0001.FDT", true, 1);
  // Group 2 holds 0, 9, 0, 1: channel 9 then channel 1.
  const GridRows grid = TotalizeGrid(t, 2, 1);
  ASSERT_EQ(grid.size(), 5u);
  EXPECT_EQ(grid[0], (Row{"", "", "CH09", "CH01"}));
  EXPECT_EQ(grid[2], (Row{"", "積算タグ", "RUN     ", "FLOW1   "}));
  EXPECT_EQ(grid[4], (Row{"2026/01/02 00:00:00", "2026/01/02 01:00:00", "123.457", "1.1"}));
}

TEST_F(TotalizeView, GroupWithNoMembersShowsOnlyTheTwoTimeColumns) {
  const TotalizeWindow &t = Open("T0001.FDT", true, 2);
  const GridRows grid = TotalizeGrid(t, 3, 1);
  const GridRows expected = {
      {"", ""},
      {"", "積算動作タイプ"},
      {"", "積算タグ"},
      {"積算開始時刻", "積算終了時刻"},
      {"2026/01/02 00:00:00", "2026/01/02 01:00:00"},
      {"2026/01/02 01:00:00", "2026/01/02 02:00:00"},
  };
  EXPECT_EQ(grid, expected);
}

TEST_F(TotalizeView, SameChannelNumberTwiceTakesTheLastMatch) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels[2].ChannelNo = 5;  // channels 1, 5, 5
  content.Groups[0].Members = {5, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  content.Groups[1].Members = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  const TotalizeWindow &t = Open("T0001.FDT", true, 1, content);
  EXPECT_EQ(TotalizeTabChannels(t, 1), std::vector<int>{2});
  EXPECT_EQ(TotalizeGrid(t, 1, 1)[2], (Row{"", "積算タグ", "RUN     "}));
}

TEST_F(TotalizeView, ActionTypeNamesShowFromVersionEighteen) {
  EXPECT_FALSE(TotalizeShowsActionType(""));
  EXPECT_FALSE(TotalizeShowsActionType("Ver.01.02"));      // "1."
  EXPECT_FALSE(TotalizeShowsActionType("VER.0117"));       // 11
  EXPECT_FALSE(TotalizeShowsActionType("  VER.0 7  "));    // "0 " after trimming
  EXPECT_TRUE(TotalizeShowsActionType("VER.0180"));        // 18
  EXPECT_TRUE(TotalizeShowsActionType("   VER.0220   "));  // trimmed first: 22
  EXPECT_FALSE(TotalizeShowsActionType("VER.0"));

  TotalizeFileContent content = MakeTotalizeContent();
  content.VersionText = "VER.0180";
  const TotalizeWindow &t = Open("T0001.FDT", true, 1, content);
  EXPECT_EQ(TotalizeGrid(t, kTotalizeAllTab, 1)[1],
            (Row{"", "積算動作タイプ", "積算", "カウンタ", "動作時間"}));
  EXPECT_TRUE(TotalizeActionTypesShowable(t));
}

TEST_F(TotalizeView, ActionTypeAboveTwoCannotBeShownInANewFileOnly) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels[1].ActionType = 3;
  TotalizeWindow &old = Open("T0001.FDT", true, 1, content);
  EXPECT_TRUE(TotalizeActionTypesShowable(old));
  EXPECT_EQ(TotalizeGrid(old, kTotalizeAllTab, 1)[1][3], "積算");
  old.VersionText = "VER.0220";
  EXPECT_FALSE(TotalizeActionTypesShowable(old));
}

TEST_F(TotalizeView, TimeColumnsFollowTheDateFormat) {
  const TotalizeWindow &t = Open("T0001.FDT", true, 1);
  const char *expected[6][2] = {{"", ""},
                                {"2026/01/02 00:00:00", "2026/01/02 01:00:00"},
                                {"02/01/2026 00:00:00", "02/01/2026 01:00:00"},
                                {"02-Jan-26 00:00:00", "02-Jan-26 01:00:00"},
                                {"01/02/2026 00:00:00", "01/02/2026 01:00:00"},
                                {"Jan-02-26 00:00:00", "Jan-02-26 01:00:00"}};
  for (int format = 1; format <= 5; ++format) {
    const GridRows grid = TotalizeGrid(t, 1, format);
    EXPECT_EQ(grid[4][0], expected[format][0]) << format;
    EXPECT_EQ(grid[4][1], expected[format][1]) << format;
  }
}

TEST_F(TotalizeView, TextFileShowsItsValueColumnsWithTheMachinesDecimalChar) {
  state.DecimalChar = ",";
  const TotalizeWindow &t = Open("T0001.FDT", false, 1);
  EXPECT_EQ(TotalizeGrid(t, kTotalizeAllTab, 1)[4],
            (Row{"2026/01/02 00:00:00", "2026/01/02 01:00:00", "        1,1", "         -1",
                 "    123,457"}));
}

TEST(TotalizeButtons, StatesByPage) {
  using B = std::array<bool, 4>;
  EXPECT_EQ(TotalizeButtonStates(1, 1), (B{true, true, false, false}));
  EXPECT_EQ(TotalizeButtonStates(1, 3), (B{true, true, false, true}));
  EXPECT_EQ(TotalizeButtonStates(2, 3), (B{true, true, true, true}));
  EXPECT_EQ(TotalizeButtonStates(3, 3), (B{true, true, true, false}));
}

TEST(TotalizeButtons, PagesAndRowsOfEachButton) {
  EXPECT_EQ(TotalizePageOfButton(kTotalizeTop, 3, 5), 1);
  EXPECT_EQ(TotalizePageOfButton(kTotalizeEnd, 3, 5), 5);
  EXPECT_EQ(TotalizePageOfButton(kTotalizeBefore, 3, 5), 2);
  EXPECT_EQ(TotalizePageOfButton(kTotalizeNext, 3, 5), 4);
  EXPECT_EQ(TotalizePageOfButton(kTotalizeBefore, 1, 5), 1);
  EXPECT_EQ(TotalizePageOfButton(kTotalizeNext, 5, 5), 5);
  EXPECT_EQ(TotalizeRowAfterButton(kTotalizeTop, 1202), 4);
  EXPECT_EQ(TotalizeRowAfterButton(kTotalizeNext, 1202), 4);
  EXPECT_EQ(TotalizeRowAfterButton(kTotalizeEnd, 1), 4);
  EXPECT_EQ(TotalizeRowAfterButton(kTotalizeBefore, 1202), 1205);
}

TEST_F(TotalizeView, PageTurnReadsTheNewPageAndAFailedOneLeavesTheSlot) {
  TotalizeWindow &t = Open("T0001.FDT", true, 1203);
  ASSERT_EQ(t.PageCount, 2);
  ASSERT_TRUE(TurnTotalizePage(t, 2, "."));
  EXPECT_EQ(t.CurrentPage, 2);
  EXPECT_EQ(t.PageRows, 1);
  EXPECT_EQ(t.Rows[0].Values[0], "1203.1");
  ASSERT_TRUE(TurnTotalizePage(t, 1, "."));
  EXPECT_EQ(t.PageRows, 1202);
  // The file cut short: page 2 is gone, and the slot keeps page 1.
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(t.DataStart) + 1202u * 20u);
  EXPECT_FALSE(TurnTotalizePage(t, 2, "."));
  EXPECT_EQ(t.CurrentPage, 1);
  EXPECT_EQ(t.PageRows, 1202);
  EXPECT_EQ(t.Rows.size(), 1202u);
  EXPECT_EQ(t.Rows[1201].Values[0], "1202.1");
}

const GridRows kCopyGrid = {
    {"", "", "CH01"},    {"", "A", "x"},      {"", "T", "tag"},    {"S", "E", "u"},
    {"t1", "e1", "1.0"}, {"t2", "e2", "2.0"}, {"t3", "e3", "3.0"},
};

TEST(TotalizeCopy, TitleRowsThenTheSelectedRowsWithTabsAndCarriageReturns) {
  EXPECT_EQ(TotalizeCopyText(kCopyGrid, 5, 6),
            "\t\tCH01\t\r\tA\tx\t\r\tT\ttag\t\rS\tE\tu\t\r"
            "t2\te2\t2.0\t\rt3\te3\t3.0\t\r");
}

TEST(TotalizeCopy, SelectionRunningUpwardsIsCopiedTopDown) {
  EXPECT_EQ(TotalizeCopyText(kCopyGrid, 6, 4), TotalizeCopyText(kCopyGrid, 4, 6));
  EXPECT_EQ(TotalizeCopyText(kCopyGrid, 6, 4),
            "\t\tCH01\t\r\tA\tx\t\r\tT\ttag\t\rS\tE\tu\t\r"
            "t1\te1\t1.0\t\rt2\te2\t2.0\t\rt3\te3\t3.0\t\r");
}

TEST(TotalizeCopy, SelectionInTheHeaderRowsRepeatsThem) {
  // Rows 1 to 2 selected: the four title rows, then rows 1 and 2 again.
  EXPECT_EQ(TotalizeCopyText(kCopyGrid, 2, 1),
            "\t\tCH01\t\r\tA\tx\t\r\tT\ttag\t\rS\tE\tu\t\r"
            "\tA\tx\t\r\tT\ttag\t\r");
  // Row 0 alone: only the title rows.
  EXPECT_EQ(TotalizeCopyText(kCopyGrid, 0, 0), "\t\tCH01\t\r\tA\tx\t\r\tT\ttag\t\rS\tE\tu\t\r");
}

TEST(TotalizeLayoutRules, ControlsFollowTheInnerSize) {
  const TotalizeLayout l = TotalizeLayoutOf(12000, 6000, 600);
  EXPECT_EQ(l.TabWidth, 11850);
  EXPECT_EQ(l.TabHeight, 5335);
  EXPECT_EQ(l.GridWidth, 11600);
  EXPECT_EQ(l.GridHeight, 4575);
  EXPECT_EQ(l.StripTop, 600 + 4575 + 100);
  const TotalizeLayout small = TotalizeLayoutOf(3000, 1000, 600);
  EXPECT_EQ(small.TabHeight, 335);
  EXPECT_EQ(small.GridHeight, 0);  // below 0 becomes 0
  EXPECT_EQ(small.StripTop, 700);
  EXPECT_EQ(TotalizeLayoutOf(3000, 500, 600).TabHeight, 0);
}

}  // namespace
}  // namespace recscope
