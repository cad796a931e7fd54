#include "views/cursor_statistics.h"

#include <gtest/gtest.h>

#include "shell/civil_time.h"

namespace recscope {
namespace {

const std::int64_t kStart = FromCivil({2024, 3, 1, 8, 0, 0});
const std::int64_t kEnd = kStart + 10 * 99999;

TEST(ComputeTime, EqualCursorsGiveOneSampleAndZeroWidth) {
  ComputeSpan span = get_ComputeTime(true, kStart + 503, true, kStart + 497, kStart, kEnd, 10, 1);
  EXPECT_EQ(span.Start, kStart + 500);
  EXPECT_EQ(span.End, kStart + 500);
  EXPECT_EQ(span.DataNumText, "1");
  EXPECT_EQ(span.TimeWidthText, "0 日  00:00:00");
  EXPECT_EQ(span.StTimeText, "2024/03/01 08:08:20");
  EXPECT_EQ(span.EndTimeText, span.StTimeText);
}

TEST(ComputeTime, SecondCursorEarlierStillRunsFromEarlierToLater) {
  ComputeSpan span = get_ComputeTime(true, kStart + 7200, true, kStart + 3600, kStart, kEnd, 10, 1);
  EXPECT_EQ(span.StTimeText, "2024/03/01 09:00:00");
  EXPECT_EQ(span.EndTimeText, "2024/03/01 10:00:00");
  EXPECT_EQ(span.TimeWidthText, "0 日  01:00:00");
  EXPECT_EQ(span.DataNum, 361);
}

TEST(ComputeTime, SpanOfMoreThanADayShowsTheDays) {
  ComputeSpan span = get_ComputeTime(false, 0, false, 0, kStart, kEnd, 10, 1);
  EXPECT_EQ(span.Start, kStart);
  EXPECT_EQ(span.End, kEnd);
  // 999990 seconds: 11 days and 13:46:30.
  EXPECT_EQ(span.TimeWidthText, "11 日  13:46:30");
  EXPECT_EQ(span.DataNumText, "100000");
}

TEST(ComputeTime, OneCursorRunsToTheFileEndOrFromItsStart) {
  ComputeSpan toEnd = get_ComputeTime(true, kStart + 1000, false, 0, kStart, kEnd, 10, 1);
  EXPECT_EQ(toEnd.Start, kStart + 1000);
  EXPECT_EQ(toEnd.End, kEnd);
  ComputeSpan fromStart = get_ComputeTime(false, 0, true, kStart + 1000, kStart, kEnd, 10, 1);
  EXPECT_EQ(fromStart.Start, kStart);
  EXPECT_EQ(fromStart.End, kStart + 1000);
  ComputeSpan otherFormat = get_ComputeTime(false, 0, true, kStart + 1000, kStart, kEnd, 10, 2);
  EXPECT_EQ(otherFormat.StTimeText, "01/03/2024 08:00:00");
}

RecordFileInfo Info() {
  RecordFileInfo info;
  info.AnalogCount = 2;
  info.DiCount = 1;
  info.ChannelTotal = 3;
  info.Channels.resize(2);
  info.Channels[0].Decimals = 2;
  info.Channels[0].InputType = 1;
  info.Channels[1].ScaleKind = 1;
  info.Channels[1].RangeLow = 0;
  info.Channels[1].RangeHigh = 100;
  info.Channels[1].ExponentLow = -3;
  info.Channels[1].ExponentHigh = 2;
  info.Channels[1].Decimals = 0;
  info.Dis.resize(1);
  return info;
}

TEST(CurCompute, LinearChannelCells) {
  ChannelStatistics s{-1234, 5678, 12345.0, 7};
  CursorCells cells = CurComputeCells(Info(), 0, s, ".");
  EXPECT_EQ(cells.MaxText, "56.78");
  EXPECT_EQ(cells.MinText, "-12.34");
  EXPECT_EQ(cells.AvgText, "17.64");  // 12345 / 7 / 100 = 17.6357...
  EXPECT_EQ(CurComputeCells(Info(), 0, s, ",").AvgText, "17,64");
}

TEST(CurCompute, ChannelWithOnlySpecialValuesShowsTextsAndNoAverage) {
  ChannelStatistics s{-32767, 32767, 0.0, 0};
  CursorCells cells = CurComputeCells(Info(), 0, s, ".");
  EXPECT_EQ(cells.MaxText, "ｵｰﾊﾞｰ");
  EXPECT_EQ(cells.MinText, "ｱﾝﾀﾞｰ");
  EXPECT_EQ(cells.AvgText, "ｲｼﾞｮｳ");
  ChannelStatistics burnout{-32768, -32768, 0.0, 0};
  EXPECT_EQ(CurComputeCells(Info(), 0, burnout, ".").MaxText, "ﾊﾞｰﾝｱｳﾄ");
}

TEST(CurCompute, LogChannelHasNoAverage) {
  ChannelStatistics s{0, 100, 5000.0, 100};
  CursorCells cells = CurComputeCells(Info(), 1, s, ".");
  EXPECT_EQ(cells.MinText, "1.00E-3");
  EXPECT_EQ(cells.MaxText, "1.00E+2");
  EXPECT_EQ(cells.AvgText, "            -   ");
}

TEST(CurCompute, DigitalInputShowsStatesOnly) {
  ChannelStatistics s{0, 1, 0.0, 0};
  CursorCells cells = CurComputeCells(Info(), 2, s, ".");
  EXPECT_EQ(cells.MinText, "0");
  EXPECT_EQ(cells.MaxText, "1");
  EXPECT_EQ(cells.AvgText, "");
}

TEST(FormatDecimals, RoundsHalvesAwayFromZeroOnDecimalDigits) {
  EXPECT_EQ(FormatDecimals(2.675, 2, "."), "2.68");
  EXPECT_EQ(FormatDecimals(1.005, 2, "."), "1.01");
  EXPECT_EQ(FormatDecimals(0.5, 0, "."), "1");
  EXPECT_EQ(FormatDecimals(-1.5, 0, "."), "-2");
  EXPECT_EQ(FormatDecimals(9.9996, 3, "."), "10.000");
  EXPECT_EQ(FormatDecimals(0.04, 1, "."), "0.0");
  EXPECT_EQ(FormatDecimals(12345.6789, 4, "."), "12345.6789");
  EXPECT_EQ(FormatDecimals(0.0, 2, "."), "0.00");
  EXPECT_EQ(FormatDecimals(-3276.7, 1, ","), "-3276,7");
}

}  // namespace
}  // namespace recscope
