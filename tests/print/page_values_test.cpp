#include "print/page_values.h"

#include <gtest/gtest.h>

#include "../trend/trend_fixture.h"
#include "shell/civil_time.h"

using namespace recscope;
using recscope::testing_support::MakeRecord;
using recscope::testing_support::TempFolder;
using recscope::testing_support::WriteLevels;

namespace {

constexpr std::int32_t kFirst = 1000000;
constexpr std::int32_t kPeriod = 10;

struct ValuesFixture : ::testing::Test {
  ValuesFixture() {
    info = MakeRecord(100, 3, 1, kFirst, kPeriod);
    WriteLevels(info, folder.str(), 1, [](std::int64_t r, int c) {
      std::int16_t v =
          c < 3 ? static_cast<std::int16_t>(100 * (c + 1) + r) : static_cast<std::int16_t>(r % 2);
      return std::make_pair(v, v);
    });
    InitTrendView(view, info, 1);
  }
  TempFolder folder;
  RecordFileInfo info;
  TrendView view;
};

}  // namespace

TEST_F(ValuesFixture, HeaderRowsCarryTheFileInformationInOrder) {
  info.FileNameText = "S0000001.FDT";
  info.ModelText = "MODEL";
  auto rows = HeaderInfoRows(info, view, kPeriod, 1);
  ASSERT_EQ(rows.size(), 11u);
  EXPECT_EQ(rows[0].Label, "ＲＣＤ ファイル名");
  EXPECT_EQ(rows[0].Value, "S0000001.FDT");
  EXPECT_EQ(rows[1].Value, "MODEL");
  EXPECT_EQ(rows[4].Label, "チャネル数");
  EXPECT_EQ(rows[4].Value, "4");
  EXPECT_EQ(rows[5].Value, "10秒");
  EXPECT_EQ(rows[6].Value, "100");
  EXPECT_EQ(rows[7].Label, "グループ№");
  EXPECT_EQ(rows[7].Value, "G1");
  EXPECT_EQ(rows[8].Value, "GROUP1");
  EXPECT_EQ(rows[9].Value, FormatTime(kFirst, 1));
  EXPECT_EQ(rows[10].Label, "停止時間");
  EXPECT_EQ(rows[10].Value, FormatTime(kFirst + 99 * kPeriod, 1));
  view.CurrentGroup = 9;
  EXPECT_EQ(HeaderInfoRows(info, view, kPeriod, 1)[7].Value, "ALL");
}

TEST_F(ValuesFixture, CursorModeListsTheValuesAtBothCursors) {
  view.Cursor1Set = view.Cursor2Set = true;
  view.Cursor1Time = kFirst + 2 * kPeriod;
  view.Cursor2Time = kFirst + 5 * kPeriod + 4;  // rounds onto record 5
  auto marks = ListMarks(view, {}, 1, kFirst, kFirst + 990);
  EXPECT_EQ(marks[0].Label, "ｶｰｿﾙ1:");
  EXPECT_EQ(marks[1].Label, "ｶｰｿﾙ2:");
  auto rows = ListRows(info, view, marks, kPeriod, folder.str(), 1, ".");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].Number, "CH01");
  EXPECT_EQ(rows[0].Tag, "TAG1");
  EXPECT_EQ(rows[0].Values[0], "10.2");
  EXPECT_EQ(rows[0].Values[1], "10.5");
  EXPECT_EQ(rows[2].Values[0], "30.2");
  EXPECT_EQ(rows[3].Number, "DI01");
  EXPECT_EQ(rows[3].Values[0], "0");
  EXPECT_EQ(rows[3].Values[1], "1");
  EXPECT_EQ(ListRows(info, view, marks, kPeriod, folder.str(), 1, ",")[0].Values[0], "10,2");
}

TEST_F(ValuesFixture, UnsetCursorOrTimeOutsideTheFileLeavesTheValueEmpty) {
  view.Cursor1Set = false;
  view.Cursor2Set = true;
  view.Cursor2Time = kFirst + 100 * kPeriod;  // one period past the last record
  auto rows = ListRows(info, view, ListMarks(view, {}, 1, kFirst, kFirst + 990), kPeriod,
                       folder.str(), 1, ".");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].Values[0], "");
  EXPECT_EQ(rows[0].Values[1], "");
}

TEST_F(ValuesFixture, FlagModeTakesTheFirstTwoFlagsOfThePage) {
  std::vector<FlagEvent> flags(4);
  flags[0].Time = kFirst - 50;  // before the page
  flags[1].Time = kFirst + 30;
  flags[2].Time = kFirst + 70;
  flags[3].Time = kFirst + 90;
  view.Cursor1Set = true;
  view.Cursor1Time = kFirst;
  auto marks = ListMarks(view, flags, 0, kFirst, kFirst + 990);
  EXPECT_TRUE(marks[0].Set);
  EXPECT_EQ(marks[0].Time, kFirst + 30);
  EXPECT_EQ(marks[0].Label, "ﾌﾗｸﾞ2:");
  EXPECT_EQ(marks[1].Time, kFirst + 70);
  EXPECT_EQ(marks[1].Label, "ﾌﾗｸﾞ3:");
  auto rows = ListRows(info, view, marks, kPeriod, folder.str(), 1, ".");
  EXPECT_EQ(rows[1].Values[0], "20.3");
  EXPECT_EQ(rows[1].Values[1], "20.7");
  // No flag on the page: nothing listed.
  auto none = ListMarks(view, flags, 0, kFirst + 200, kFirst + 400);
  EXPECT_FALSE(none[0].Set);
  EXPECT_FALSE(none[1].Set);
}
