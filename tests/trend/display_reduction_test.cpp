#include "trend/display_reduction.h"
#include "record/working_files.h"

#include <gtest/gtest.h>

#include "trend/trend_view.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

// Channel 0 holds the record number (mod 30000) as minimum and maximum; channel 1
// a saw between -r % 7 and r % 7.
std::pair<std::int16_t, std::int16_t> Values(std::int64_t r, int c) {
  if (c == 0) return {static_cast<std::int16_t>(r % 30000), static_cast<std::int16_t>(r % 30000)};
  return {static_cast<std::int16_t>(-(r % 7)), static_cast<std::int16_t>(r % 7)};
}

struct Reduced {
  RecordFileInfo info;
  TrendView view;
};

TEST(ReduceDisplayData, ViewFitsThePlotOneColumnPerSample) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(50, 2, 0, 0, 2);
  WriteLevels(info, home.str(), 1, Values);
  TrendView view;
  InitTrendView(view, info, 1);
  ReduceDisplayData(view, info, 2, 100 * 15, home.str(), 1);
  EXPECT_EQ(view.PlotSpan, 99 * 15);
  EXPECT_EQ(view.LevelInUse, 0);
  EXPECT_EQ(view.ColumnCount, 50);
  EXPECT_EQ(view.DataColumnCount, 50);
  EXPECT_EQ(view.Disp(0, 0), 0);
  EXPECT_EQ(view.Disp(1, 49), 49);
  EXPECT_EQ(view.Disp(3, 6), 6);
}

TEST(ReduceDisplayData, SamplesOneMoreThanColumnsTakeLevelZeroAndFold) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(7000, 2, 0, 0, 1);
  WriteLevels(info, home.str(), 1, Values);
  TrendView view;
  InitTrendView(view, info, 1);
  view.DisplayStart = 100;
  view.DisplayEnd = 200;                                      // S = 101
  ReduceDisplayData(view, info, 1, 100 * 15, home.str(), 1);  // P = 100
  EXPECT_EQ(view.LevelInUse, 0);
  EXPECT_EQ(view.ColumnCount, 100);
  EXPECT_EQ(view.DataColumnCount, 100);
  // Column j holds records up to (j x 101) \ 100: the first column one record, the
  // last one two.
  EXPECT_EQ(view.Disp(0, 0), 100);
  EXPECT_EQ(view.Disp(1, 0), 100);
  EXPECT_EQ(view.Disp(0, 99), 199);
  EXPECT_EQ(view.Disp(1, 99), 200);
}

TEST(ReduceDisplayData, TenTimesTheColumnsTakeLevelOneAndStartMovesDown) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(7000, 2, 0, 0, 1);
  ASSERT_GE(info.TopLevel, 1);
  WriteLevels(info, home.str(), 1, Values);
  TrendView view;
  InitTrendView(view, info, 1);
  view.DisplayStart = 1005;
  view.DisplayEnd = 2004;  // S = 1000 = 10 x P
  ReduceDisplayData(view, info, 1, 100 * 15, home.str(), 1);
  EXPECT_EQ(view.LevelInUse, 1);
  EXPECT_EQ(view.DisplayStart, 1000);  // a multiple of 10 x p from the file start
  EXPECT_EQ(view.DisplayEnd, 2000);
  EXPECT_EQ(view.ColumnCount, 100);
  // Level-1 row 100 holds records 1000..1009.
  EXPECT_EQ(view.Disp(0, 0), 1000);
  EXPECT_EQ(view.Disp(1, 0), 1009);
  EXPECT_EQ(view.Disp(2, 0), -6);
  EXPECT_EQ(view.Disp(3, 0), 6);
}

TEST(ReduceDisplayData, LevelIsCutToTheHighestLevelOfTheFile) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(5000, 1, 0, 0, 1);
  ASSERT_EQ(info.TopLevel, 0);
  WriteLevels(info, home.str(), 1, Values);
  TrendView view;
  InitTrendView(view, info, 1);
  ReduceDisplayData(view, info, 1, 100 * 15, home.str(), 1);
  EXPECT_EQ(view.LevelInUse, 0);
  EXPECT_EQ(view.ColumnCount, 100);
  EXPECT_EQ(view.DataColumnCount, 100);
  EXPECT_EQ(view.Disp(0, 0), 0);
  EXPECT_EQ(view.Disp(1, 0), 49);  // (1 x 5000) \ 100 = 50 records in the first column
  EXPECT_EQ(view.Disp(1, 99), 4999);
}

TEST(ReduceDisplayData, SpanPastTheFileEndHasFewerDataColumns) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(50, 2, 0, 0, 1);
  WriteLevels(info, home.str(), 1, Values);
  TrendView view;
  InitTrendView(view, info, 1);
  view.DisplayEnd = 99;  // after a reduce: twice the file
  ReduceDisplayData(view, info, 1, 200 * 15, home.str(), 1);
  EXPECT_EQ(view.ColumnCount, 100);
  EXPECT_EQ(view.DataColumnCount, 50);
  EXPECT_EQ(view.Disp(1, 49), 49);

  view.DisplayStart = 0;
  view.DisplayEnd = 199;  // S = 200 > P = 100: R = 50
  ReduceDisplayData(view, info, 1, 100 * 15, home.str(), 1);
  EXPECT_EQ(view.ColumnCount, 100);
  EXPECT_EQ(view.DataColumnCount, 25);
  EXPECT_EQ(view.Disp(1, 24), 49);
}

TEST(ReduceDisplayData, MissingLevelFileGivesZerosNotACrash) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(50, 2, 0, 0, 1);
  TrendView view;
  InitTrendView(view, info, 1);
  ReduceDisplayData(view, info, 1, 100 * 15, home.str(), 1);
  ASSERT_EQ(view.DataColumnCount, 50);
  EXPECT_EQ(view.Disp(1, 49), 0);
}

TEST(ReduceDisplayData, PlotTooNarrowForAColumnDrawsNothing) {
  TempFolder home;
  RecordFileInfo info = MakeRecord(50, 2, 0, 0, 1);
  WriteLevels(info, home.str(), 1, Values);
  TrendView view;
  InitTrendView(view, info, 1);
  ReduceDisplayData(view, info, 1, 10, home.str(), 1);
  EXPECT_EQ(view.PlotSpan, -15);
  EXPECT_EQ(view.ColumnCount, 0);
  EXPECT_EQ(view.DataColumnCount, 0);
}

TEST(ReduceDisplayData, LevelLFileIsWorkingFileLPlusOne) {
  EXPECT_EQ(WorkingFilePath("/home/x", 3, 1, false), "/home/x/Operation_3_1.OPL");
  EXPECT_EQ(WorkingFilePath("/home/x/", 12, 3, false), "/home/x/Operation_12_3.OPL");
}

}  // namespace
}  // namespace recscope
