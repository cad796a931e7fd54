#include "trend/time_axis.h"

#include <gtest/gtest.h>

#include "trend/trend_layout.h"
#include "trend/trend_view.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;

TrendView ViewOf(const RecordFileInfo &info) {
  TrendView view;
  InitTrendView(view, info, 1);
  view.PlotSpan = 1000;
  return view;
}

TEST(TimeAxis, OneRecordFileHasEmptyRangeAtPositionZeroAndEnlargeRefuses) {
  RecordFileInfo info = MakeRecord(1, 2, 0, 1000, 10);
  TrendView view = ViewOf(info);
  EXPECT_EQ(view.DisplayStart, view.DisplayEnd);
  EXPECT_EQ(TimeToPosition(view, 1000), 0);
  EXPECT_EQ(TimeToPosition(view, 5000), 0);
  EXPECT_EQ(EnlargeSpan(view, 10), kCannotEnlarge);
  EXPECT_EQ(view.DisplayEnd, 1000);
}

TEST(TimeAxis, EnlargeHalvesKeepingStartOnASample) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 0, 10);  // 0 .. 1000
  TrendView view = ViewOf(info);
  view.DisplayStart = 0;
  view.DisplayEnd = 990;
  EXPECT_EQ(EnlargeSpan(view, 10), 0);
  EXPECT_EQ(view.DisplayStart, 0);
  EXPECT_EQ(view.DisplayEnd, 490);  // 495 lowered onto the sample before it
}

TEST(TimeAxis, EnlargeRefusesAtFiveSamplesApart) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 0, 10);
  TrendView view = ViewOf(info);
  view.DisplayEnd = 59;  // 59 \ 10 = 5
  EXPECT_EQ(EnlargeSpan(view, 10), kCannotEnlarge);
  view.DisplayEnd = 60;
  EXPECT_EQ(EnlargeSpan(view, 10), 0);
  EXPECT_EQ(view.DisplayEnd, 30);
}

TEST(TimeAxis, ReduceOnWholeFileDoublesAndStartsAtFileStart) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 2000, 10);  // 2000 .. 3000
  TrendView view = ViewOf(info);
  ASSERT_EQ(ReduceSpan(view, info, 10), 0);
  EXPECT_EQ(view.DisplayStart, 2000);
  EXPECT_EQ(view.DisplayEnd, 4000);
}

TEST(TimeAxis, ReduceSlidesTheViewBackToTheFileStart) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 2000, 10);
  TrendView view = ViewOf(info);
  view.DisplayStart = 2500;
  view.DisplayEnd = 3000;
  ASSERT_EQ(ReduceSpan(view, info, 10), 0);
  // The new span 1000 reaches the file span: the view slides back by 500.
  EXPECT_EQ(view.DisplayStart, 2000);
  EXPECT_EQ(view.DisplayEnd, 3000);
}

TEST(TimeAxis, ReduceRefusesAtAHundredTimesTheFile) {
  RecordFileInfo info = MakeRecord(11, 2, 0, 0, 10);  // file span 100
  TrendView view = ViewOf(info);
  view.DisplayEnd = 9999;
  EXPECT_EQ(ReduceSpan(view, info, 10), 0);
  view.DisplayEnd = 10000;  // span \ file span = 100
  EXPECT_EQ(ReduceSpan(view, info, 10), kCannotReduce);
  EXPECT_EQ(view.DisplayEnd, 10000);
}

TEST(TimeAxis, BetweenCursorsNeedsBothAndDistinctTimes) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 0, 10);
  TrendView view = ViewOf(info);
  view.Cursor1Set = true;
  view.Cursor1Time = 700;
  EXPECT_EQ(ShowBetweenCursors(view), kCursorsNotSet);
  view.Cursor2Set = true;
  view.Cursor2Time = 700;
  EXPECT_EQ(ShowBetweenCursors(view), kCursorTimesEqual);
  view.Cursor2Time = 300;
  EXPECT_EQ(ShowBetweenCursors(view), 0);
  EXPECT_EQ(view.DisplayStart, 300);
  EXPECT_EQ(view.DisplayEnd, 700);
}

TEST(TimeAxis, WholeFileRestoresTheFileEnds) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 50, 10);
  TrendView view = ViewOf(info);
  view.DisplayStart = 300;
  view.DisplayEnd = 400;
  ShowWholeFile(view, info);
  EXPECT_EQ(view.DisplayStart, 50);
  EXPECT_EQ(view.DisplayEnd, 1050);
}

TEST(TimeAxis, PositionRoundsHalfToEven) {
  RecordFileInfo info = MakeRecord(101, 2, 0, 0, 10);
  TrendView view = ViewOf(info);
  view.DisplayEnd = 1000;
  view.PlotSpan = 5;
  EXPECT_EQ(TimeToPosition(view, 100), 0);  // 0.5 -> 0
  EXPECT_EQ(TimeToPosition(view, 300), 2);  // 1.5 -> 2
  EXPECT_EQ(TimeToPosition(view, 500), 2);  // 2.5 -> 2
}

TEST(ScrollRange, WholeFileHasNoScroll) {
  RecordFileInfo info = MakeRecord(1000, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  ScrollBarState bar = SetScrollRange(view, info, 1);
  EXPECT_EQ(bar.Max, 0);
  EXPECT_EQ(bar.Value, 0);
}

TEST(ScrollRange, QuarterPagesAndValue) {
  RecordFileInfo info = MakeRecord(1000, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  view.DisplayStart = 0;
  view.DisplayEnd = 99;  // n = 100, m = 999, d = 899, q = 3596 \ 100 + 1 = 36
  ScrollBarState bar = SetScrollRange(view, info, 1);
  EXPECT_EQ(bar.Max, 36);
  EXPECT_EQ(bar.LargeChange, 2);
  EXPECT_EQ(bar.Value, 0);
  view.DisplayStart = 450;
  view.DisplayEnd = 549;
  bar = SetScrollRange(view, info, 1);
  EXPECT_EQ(bar.Value, 18);  // Round(36 x 450 / 899) = Round(18.02)
  EXPECT_EQ(view.ScrollValue, 18);
}

TEST(ScrollRange, ThumbNeverAtMinAwayFromFileStartEvenWithMaxOne) {
  RecordFileInfo info = MakeRecord(100, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  // n = 80, m = 99, d = 19, q = 76 \ 80 + 1 = 1.
  view.DisplayStart = 1;
  view.DisplayEnd = 80;
  ScrollBarState bar = SetScrollRange(view, info, 1);
  EXPECT_EQ(bar.Max, 2);
  EXPECT_EQ(bar.Value, 1);
  EXPECT_EQ(bar.LargeChange, 1);
}

TEST(ScrollRange, QuarterPagesAboveTheBarLimitStopAt32767) {
  RecordFileInfo info = MakeRecord(2000000, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  view.DisplayStart = 0;
  view.DisplayEnd = 9;
  ScrollBarState bar = SetScrollRange(view, info, 1);
  EXPECT_EQ(bar.Max, 32767);
  EXPECT_EQ(bar.LargeChange, 2);
}

TEST(OnScroll, ValueAtMaxGivesFileEndMinusSpanEvenForASmallStep) {
  RecordFileInfo info = MakeRecord(1000, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  view.DisplayStart = 100;
  view.DisplayEnd = 199;
  ScrollBarState bar = SetScrollRange(view, info, 1);
  view.ScrollValue = static_cast<std::int16_t>(bar.Max - 1);
  ASSERT_TRUE(OnScroll(view, info, 1, bar, bar.Max));
  EXPECT_EQ(view.DisplayStart, 999 - 99);
  EXPECT_EQ(view.DisplayEnd, 999);
}

TEST(OnScroll, StepsOfQuarterAndHalfPages) {
  RecordFileInfo info = MakeRecord(1000, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  view.DisplayStart = 400;
  view.DisplayEnd = 499;  // s = 99: u = 25, h = 50
  ScrollBarState bar = SetScrollRange(view, info, 1);
  int value = view.ScrollValue;
  ASSERT_TRUE(OnScroll(view, info, 1, bar, value + 1));
  EXPECT_EQ(view.DisplayStart, 425);
  view.ScrollValue = static_cast<std::int16_t>(value);
  ASSERT_TRUE(OnScroll(view, info, 1, bar, value - 2));
  EXPECT_EQ(view.DisplayStart, 375);
  EXPECT_EQ(view.DisplayEnd, 474);
}

TEST(OnScroll, ThumbDragAndMinAndGuards) {
  RecordFileInfo info = MakeRecord(1000, 2, 0, 0, 1);
  TrendView view = ViewOf(info);
  view.DisplayStart = 400;
  view.DisplayEnd = 499;
  ScrollBarState bar = SetScrollRange(view, info, 1);
  ASSERT_TRUE(OnScroll(view, info, 1, bar, 30));  // Round(832.5) = 832
  EXPECT_EQ(view.DisplayStart, 832);
  view.ScrollValue = 30;
  ASSERT_TRUE(OnScroll(view, info, 1, bar, 0));
  EXPECT_EQ(view.DisplayStart, 0);
  view.ScrollValue = 0;
  EXPECT_FALSE(OnScroll(view, info, 1, bar, 0));  // no change
  view.Busy = -1;
  EXPECT_FALSE(OnScroll(view, info, 1, bar, 10));  // nested event of a redraw
  view.Busy = 0;
  ScrollBarState none;
  EXPECT_FALSE(OnScroll(view, info, 1, none, 10));
}

}  // namespace
}  // namespace recscope

TEST(TimeAxis, IntervalTableHoldsTheThirtyThreeTickSteps) {
  using recscope::IntervalTable;
  EXPECT_EQ(IntervalTable.size(), 33u);
  EXPECT_EQ(IntervalTable.front(), 1);
  EXPECT_EQ(IntervalTable[15], 7200);
  EXPECT_EQ(IntervalTable.back(), 63072000);
}
