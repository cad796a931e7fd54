#include "views/cursor_calc.h"

#include <gtest/gtest.h>

#include "shell/civil_time.h"

namespace recscope {
namespace {

RecordFileInfo Info() {
  RecordFileInfo info;
  info.AnalogCount = 2;
  info.DiCount = 1;
  info.ChannelTotal = 3;
  info.Channels.resize(2);
  info.Channels[0].ChannelNo = 1;
  info.Channels[0].Tag = "炉内温度 上     ";
  info.Channels[0].Unit = "ﾟC     ";
  info.Channels[0].Decimals = 1;
  info.Channels[1].ChannelNo = 7;
  info.Channels[1].Tag = "ABCDEFGHIJ";
  info.Channels[1].Unit = "kPa";
  info.Channels[1].Decimals = 0;
  info.Dis.resize(1);
  info.Dis[0].DiNo = 130;
  info.Dis[0].Tag = "扉 閉";
  return info;
}

TEST(CurData, ColumnsFollowTheMembersAndPassOverEmptyPlaces) {
  EXPECT_EQ(CurDataColumns(Info(), {7, 0, 130, 1, 99, 0}), (std::vector<int>{1, 2, 0}));
  EXPECT_EQ(CurDataColumnWidth(), 1300);
}

TEST(CurData, TitleRowsOfChannelAndDi) {
  EXPECT_EQ(CurDataTitles(Info(), 0),
            (std::vector<std::string>{"CH1", "炉内温度", " 上     ", "ﾟC     "}));
  EXPECT_EQ(CurDataTitles(Info(), 1), (std::vector<std::string>{"CH7", "ABCDEFGH", "IJ", "kPa"}));
  EXPECT_EQ(CurDataTitles(Info(), 2), (std::vector<std::string>{"DI2", "扉 閉", "", ""}));
}

TEST(CurData, ChannelWithNothingButSpecialValuesShowsTextsAndIjou) {
  std::vector<ChannelStatistics> stats = {{-32767, 32767, 0.0, 0}, {5, 9, 14.0, 2}, {0, 1, 0, 0}};
  const GridRows grid = CurDataGrid(Info(), {0, 1, 2}, stats, ".");
  ASSERT_EQ(grid.size(), 7u);
  EXPECT_EQ(grid[4], (std::vector<std::string>{"最大値", "ｵｰﾊﾞｰ", "9", "1"}));
  EXPECT_EQ(grid[5], (std::vector<std::string>{"最小値", "ｱﾝﾀﾞｰ", "5", "0"}));
  EXPECT_EQ(grid[6], (std::vector<std::string>{"平均値", "ｲｼﾞｮｳ", "7", ""}));
  EXPECT_EQ(grid[0], (std::vector<std::string>{"", "CH1", "CH7", "DI2"}));
}

TEST(CurData, GridWithoutStatisticsHasTitlesOnly) {
  const GridRows grid = CurDataGrid(Info(), {1}, {}, ".");
  EXPECT_EQ(grid[0][1], "CH7");
  EXPECT_EQ(grid[4], (std::vector<std::string>{"最大値", ""}));
}

TEST(CurData, CopyWithTitlesIsTheSpanLineThenTheWholeGrid) {
  const std::int64_t start = FromCivil({2024, 3, 4, 0, 0, 0});
  const ComputeSpan span =
      get_ComputeTime(true, start + 90000, true, start, start, start + 200000, 10, 1);
  std::vector<ChannelStatistics> stats = {{10, 20, 45.0, 3}};
  const GridRows grid = CurDataGrid(Info(), {0}, stats, ".");
  EXPECT_EQ(MathCopyText(span, grid),
            "2024/03/04 00:00:00  to  2024/03/05 01:00:00\t1 日  01:00:00\t9001\r"
            "\tCH1\t\r"
            "\t炉内温度\t\r"
            "\t 上     \t\r"
            "\tﾟC     \t\r"
            "最大値\t2.0\t\r"
            "最小値\t1.0\t\r"
            "平均値\t1.5\t\r");
}

}  // namespace
}  // namespace recscope
