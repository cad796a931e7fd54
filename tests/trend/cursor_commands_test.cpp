// Cursors without a window: which cursor a click sets, the time of a click, the
// jump of a cursor with its view, the event search, the dropped level of an
// event text, the jump dialog's lists, and the flag list.
#include "trend/cursor_commands.h"

#include <gtest/gtest.h>

#include "record/value_text.h"
#include "shell/civil_time.h"
#include "trend/flag_list.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;

// Twenty samples ten seconds apart from 1000 to 1190.
RecordFileInfo TenSecondRecord() { return MakeRecord(20, 1, 0, 1000, 10); }

// A whole-file view of `info` whose plot has one twip per second.
TrendView WholeView(const RecordFileInfo &info) {
  TrendView view;
  view.DisplayStart = info.FirstTime;
  view.DisplayEnd = info.LastTime;
  view.PlotSpan = info.LastTime - info.FirstTime;
  return view;
}

AlarmEvent Alarm(std::int32_t t) {
  AlarmEvent a;
  a.Time = t;
  return a;
}
MessageEvent Message(std::int32_t t) {
  MessageEvent m;
  m.Time = t;
  return m;
}
FlagEvent Flag(std::int32_t t) {
  FlagEvent f;
  f.Time = t;
  return f;
}

// ---- which cursor ----

TEST(CursorChoice, EqualShiftStateSetsCursorOneAndADifferentOneCursorTwo) {
  EXPECT_EQ(CursorOfShift(0, 0), 1);
  EXPECT_EQ(CursorOfShift(1, 1), 1);
  EXPECT_EQ(CursorOfShift(1, 0), 2);
  EXPECT_EQ(CursorOfShift(0, 1), 2);
  // Held down the state reads differently from either toggle value.
  EXPECT_EQ(CursorOfShift(-128, 0), 2);
  EXPECT_EQ(CursorOfShift(-127, 1), 2);
}

TEST(CursorChoice, CursorChangeMakesTheBaselineOneUnlessItIsOne) {
  EXPECT_EQ(SwappedShiftBaseline(0), 1);
  EXPECT_EQ(SwappedShiftBaseline(1), 0);
  EXPECT_EQ(SwappedShiftBaseline(-127), 1);
  EXPECT_EQ(SwappedShiftBaseline(-128), 1);
}

TEST(CursorChoice, RefusalNamesTheCursorThatIsNotSet) {
  TrendView view;
  EXPECT_EQ(CursorRefusal(view, 1), 11140);
  EXPECT_EQ(CursorRefusal(view, 2), 11141);
  PlaceCursor(view, 2, 1050);
  EXPECT_EQ(CursorRefusal(view, 2), 0);
  EXPECT_TRUE(view.Cursor2Set);
  EXPECT_EQ(view.Cursor2Time, 1050);
  EXPECT_EQ(CursorRefusal(view, 1), 11140);
}

TEST(CursorChoice, RemovingCursorsKeepsTheirTimes) {
  TrendView view;
  PlaceCursor(view, 1, 1010);
  PlaceCursor(view, 2, 1020);
  RemoveCursors(view);
  EXPECT_FALSE(view.Cursor1Set);
  EXPECT_FALSE(view.Cursor2Set);
  EXPECT_EQ(view.Cursor1Time, 1010);
  EXPECT_EQ(view.Cursor2Time, 1020);
}

// ---- the time of a click ----

TEST(ClickTime, ClickOnTheFirstSampleStaysThere) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  EXPECT_EQ(ClickTime(view, info, 10, 0, true), 1000);
  EXPECT_EQ(ClickTime(view, info, 10, 0.9, true), 1000);  // floor of the time under it
}

TEST(ClickTime, ClickOnTheLastSampleStaysThere) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  EXPECT_EQ(ClickTime(view, info, 10, 190, true), 1190);
}

TEST(ClickTime, ClickBetweenTwoSamplesTakesTheLaterOne) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  EXPECT_EQ(ClickTime(view, info, 10, 15, true), 1020);
  EXPECT_EQ(ClickTime(view, info, 10, 1, true), 1010);
  EXPECT_EQ(ClickTime(view, info, 10, 189.9, true), 1190);
}

TEST(ClickTime, ClickOnAMiddleSampleMovesOnToTheNext) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  EXPECT_EQ(ClickTime(view, info, 10, 10, true), 1020);
  EXPECT_EQ(ClickTime(view, info, 10, 180, true), 1190);
}

TEST(ClickTime, TheTimeUnderTheClickIsRoundedDown) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  view.PlotSpan = 380;  // two twips a second: 39 twips are 19.5 seconds
  EXPECT_EQ(ClickTime(view, info, 10, 39, true), 1020);   // 1019 -> next sample
  EXPECT_EQ(ClickTime(view, info, 10, 1.9, true), 1000);  // 1000.95 -> the start
}

TEST(ClickTime, ClickBeyondTheFileEndInAWiderViewDoesNothing) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  view.DisplayEnd = 1000 + 2 * 190;  // reduced once: the file fills half the plot
  view.PlotSpan = 380;
  EXPECT_EQ(ClickTime(view, info, 10, 190, true), 1190);  // on the last sample
  EXPECT_EQ(ClickTime(view, info, 10, 192, true), std::nullopt);
  EXPECT_EQ(ClickTime(view, info, 10, 379, true), std::nullopt);
}

TEST(ClickTime, ClickBeforeTheFileStartDoesNothing) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  view.DisplayStart = 900;  // a view that starts before the file
  view.DisplayEnd = 1190;
  view.PlotSpan = 290;
  EXPECT_EQ(ClickTime(view, info, 10, 50, true), std::nullopt);
  EXPECT_EQ(ClickTime(view, info, 10, 100, true), 1000);
}

TEST(ClickTime, VerticalViewCountsTimeUpwards) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  EXPECT_EQ(ClickTime(view, info, 10, 0, false), 1190);    // the top is the end
  EXPECT_EQ(ClickTime(view, info, 10, 190, false), 1000);  // the bottom the start
  EXPECT_EQ(ClickTime(view, info, 10, 175, false), 1020);  // 1015 -> next sample
}

TEST(ClickTime, EmptyPlotTakesTheRangeStart) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  view.PlotSpan = 0;
  EXPECT_EQ(ClickTime(view, info, 10, 40, true), 1000);
}

// ---- SnapToSample and CursorJump ----

TEST(SnapToSample, WithPeriodTenAnOffsetOfFiveGoesDownAndSixGoesUp) {
  RecordFileInfo info = TenSecondRecord();
  EXPECT_EQ(SnapToFileSample(info, 10, 1035), 1030);
  EXPECT_EQ(SnapToFileSample(info, 10, 1036), 1040);
  EXPECT_EQ(SnapToFileSample(info, 10, 1034), 1030);
  EXPECT_EQ(SnapToFileSample(info, 10, 1040), 1040);
}

TEST(SnapToSample, TimesOutsideTheFileGoToItsEnds) {
  RecordFileInfo info = TenSecondRecord();
  EXPECT_EQ(SnapToFileSample(info, 10, 999), 1000);
  EXPECT_EQ(SnapToFileSample(info, 10, -5000), 1000);
  EXPECT_EQ(SnapToFileSample(info, 10, 1190), 1190);
  EXPECT_EQ(SnapToFileSample(info, 10, 99999), 1190);
  // The house's one helper is the one used.
  EXPECT_EQ(SnapToFileSample(info, 10, 1077), SnapToSample(1077, 1000, 1190, 10));
}

TEST(CursorJump, TimeInRangeMovesOnlyTheCursor) {
  RecordFileInfo info = TenSecondRecord();
  TrendView view = WholeView(info);
  EXPECT_FALSE(JumpCursor(view, info, 10, 1047, 2));
  EXPECT_EQ(view.Cursor2Time, 1050);
  EXPECT_EQ(view.DisplayStart, 1000);
  EXPECT_EQ(view.DisplayEnd, 1190);
  EXPECT_FALSE(view.Cursor2Set);  // the set flag is the caller's
}

TEST(CursorJump, TimeOutsideTheRangeCentresTheView) {
  RecordFileInfo info = MakeRecord(1000, 1, 0, 0, 10);  // 0 .. 9990
  TrendView view;
  view.DisplayStart = 0;
  view.DisplayEnd = 1000;
  EXPECT_TRUE(JumpCursor(view, info, 10, 5003, 1));
  EXPECT_EQ(view.Cursor1Time, 5000);
  EXPECT_EQ(view.DisplayStart, 4500);
  EXPECT_EQ(view.DisplayEnd, 5500);
}

TEST(CursorJump, HalfSpanIsCutToWholeSamples) {
  RecordFileInfo info = MakeRecord(1000, 1, 0, 0, 10);
  TrendView view;
  view.DisplayStart = 0;
  view.DisplayEnd = 1050;  // half of it, 525, is cut to 520
  EXPECT_TRUE(JumpCursor(view, info, 10, 5000, 1));
  EXPECT_EQ(view.DisplayStart, 4480);
  EXPECT_EQ(view.DisplayEnd, 5530);
}

TEST(CursorJump, ViewNearTheStartStaysAtTheFileStart) {
  RecordFileInfo info = MakeRecord(1000, 1, 0, 0, 10);
  TrendView view;
  view.DisplayStart = 8000;
  view.DisplayEnd = 9000;
  EXPECT_TRUE(JumpCursor(view, info, 10, 200, 1));
  EXPECT_EQ(view.DisplayStart, 0);
  EXPECT_EQ(view.DisplayEnd, 1000);
}

TEST(CursorJump, HourJumpFromTheLastHourSnapsToTheEndAndTheViewStopsThere) {
  RecordFileInfo info = MakeRecord(200, 1, 0, 0, 60);  // 0 .. 11940
  TrendView view;
  view.DisplayStart = 0;
  view.DisplayEnd = 1200;
  PlaceCursor(view, 1, 11000);
  EXPECT_TRUE(JumpCursor(view, info, 60, view.Cursor1Time + kHourOn, 1));
  EXPECT_EQ(view.Cursor1Time, 11940);
  EXPECT_EQ(view.DisplayEnd, 11940);
  EXPECT_EQ(view.DisplayStart, 11940 - 1200);
}

TEST(CursorJump, DayJumpBackBeforeTheFileGoesToItsStart) {
  RecordFileInfo info = MakeRecord(200, 1, 0, 100000, 60);
  TrendView view;
  view.DisplayStart = 110000;
  view.DisplayEnd = 111000;
  EXPECT_TRUE(JumpCursor(view, info, 60, 110500 + kDayBack, 1));
  EXPECT_EQ(view.Cursor1Time, 100000);
  EXPECT_EQ(view.DisplayStart, 100000);
  EXPECT_EQ(view.DisplayEnd, 101000);
}

// ---- event search ----

TEST(EventSearch, EarlierFindsTheNearestEventBelowTheCursorOnItsSample) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Alarms = {Alarm(1015), Alarm(1047), Alarm(1100)};
  EventSearchResult r = SearchEarlierEvent(info, 10, alarms, {}, 1090);
  EXPECT_EQ(r.kind, 0);
  EXPECT_EQ(r.row, 1);
  EXPECT_EQ(r.time, 1040);  // the last sample at or before the event
}

TEST(EventSearch, LaterFindsTheNearestEventAboveTheCursorOnTheNextSample) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Messages = {Message(1120), Message(1043)};
  EventSearchResult r = SearchLaterEvent(info, 10, alarms, {}, 1000);
  EXPECT_EQ(r.kind, 1);
  EXPECT_EQ(r.row, 1);
  EXPECT_EQ(r.time, 1050);  // the first sample at or after the event
}

TEST(EventSearch, LaterOnASampleStaysOnIt) {
  RecordFileInfo info = TenSecondRecord();
  EventSearchResult r = SearchLaterEvent(info, 10, {}, {Flag(1030)}, 1000);
  EXPECT_EQ(r.time, 1030);
  EXPECT_EQ(r.kind, 2);
}

TEST(EventSearch, EventAtTheCursorItselfIsNotFound) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Alarms = {Alarm(1050)};
  EXPECT_FALSE(SearchEarlierEvent(info, 10, alarms, {}, 1050).found());
  EXPECT_FALSE(SearchLaterEvent(info, 10, alarms, {}, 1050).found());
}

TEST(EventSearch, SearchWithNoEventLeftGoesToTheFileStartOrEnd) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Alarms = {Alarm(1100)};
  EventSearchResult left = SearchEarlierEvent(info, 10, alarms, {}, 1090);
  EXPECT_FALSE(left.found());
  EXPECT_EQ(left.time, 1000);
  EventSearchResult right = SearchLaterEvent(info, 10, alarms, {}, 1100);
  EXPECT_FALSE(right.found());
  EXPECT_EQ(right.time, 1190);
}

TEST(EventSearch, TheFileStartAndEndThemselvesNeverCount) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Alarms = {Alarm(1000), Alarm(1190)};
  EXPECT_FALSE(SearchEarlierEvent(info, 10, alarms, {}, 1100).found());
  EXPECT_FALSE(SearchLaterEvent(info, 10, alarms, {}, 1100).found());
}

TEST(EventSearch, AnAlarmAndAFlagAtTheSameTimeFindTheFlag) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Alarms = {Alarm(1060)};
  std::vector<FlagEvent> flags = {Flag(1020), Flag(1060)};
  EventSearchResult left = SearchEarlierEvent(info, 10, alarms, flags, 1100);
  EXPECT_EQ(left.kind, 2);
  EXPECT_EQ(left.row, 1);
  EventSearchResult right = SearchLaterEvent(info, 10, alarms, flags, 1030);
  EXPECT_EQ(right.kind, 2);
  EXPECT_EQ(right.row, 1);
}

TEST(EventSearch, AnAlarmBeatsAMessageAtTheSameTimeAndTheFirstRowStays) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Alarms = {Alarm(1070), Alarm(1070)};
  alarms.Messages = {Message(1070)};
  EventSearchResult left = SearchEarlierEvent(info, 10, alarms, {}, 1100);
  EXPECT_EQ(left.kind, 0);
  EXPECT_EQ(left.row, 0);
  EventSearchResult right = SearchLaterEvent(info, 10, alarms, {}, 1000);
  EXPECT_EQ(right.kind, 0);
  EXPECT_EQ(right.row, 0);
}

TEST(EventSearch, ANearerMessageBeatsAnEarlierFlag) {
  RecordFileInfo info = TenSecondRecord();
  AlarmFileInfo alarms;
  alarms.Messages = {Message(1081)};
  EventSearchResult left = SearchEarlierEvent(info, 10, alarms, {Flag(1080)}, 1100);
  EXPECT_EQ(left.kind, 1);
  EXPECT_EQ(left.time, 1080);
}

// ---- the event text carried to a new level ----

TEST(EventLevel, DroppedTextTakesTheTenthOfTheZoneFromItsTop) {
  EXPECT_EQ(DroppedEventLevel(0, 3000, true), 10);
  EXPECT_EQ(DroppedEventLevel(299, 3000, true), 10);
  EXPECT_EQ(DroppedEventLevel(300, 3000, true), 9);
  EXPECT_EQ(DroppedEventLevel(2999, 3000, true), 1);
}

TEST(EventLevel, DroppedLevelIsKeptBetweenOneAndTen) {
  EXPECT_EQ(DroppedEventLevel(3500, 3000, true), 1);
  EXPECT_EQ(DroppedEventLevel(-40, 3000, true), 10);
  EXPECT_EQ(DroppedEventLevel(-40, 3000, false), 1);
  EXPECT_EQ(DroppedEventLevel(99999, 3000, false), 10);
}

TEST(EventLevel, VerticalLevelCountsTenthsFromTheLeft) {
  EXPECT_EQ(DroppedEventLevel(900, 3000, false), 3);
  EXPECT_EQ(DroppedEventLevel(2999, 3000, false), 9);
}

TEST(EventLevel, TextBoxHitIncludesItsEdges) {
  TextBox box{100, 200, 300, 400};
  EXPECT_TRUE(TextBoxContains(box, 100, 200));
  EXPECT_TRUE(TextBoxContains(box, 300, 400));
  EXPECT_FALSE(TextBoxContains(box, 99, 300));
  EXPECT_FALSE(TextBoxContains(box, 200, 401));
  EXPECT_FALSE(TextBoxContains(TextBox{}, 5, 5));
}

// ---- the jump dialog's lists ----

TEST(JumpLists, YearsRunFromTheFileStartYearToItsEndYearInTwoDigits) {
  const std::int32_t start = static_cast<std::int32_t>(*ParseRecordTime("2009/12/31 23:00:00"));
  const std::int32_t end = static_cast<std::int32_t>(*ParseRecordTime("2011/01/01 01:00:00"));
  EXPECT_EQ(JumpYearItems(start, end), (std::vector<std::string>{"09", "10", "11"}));
  EXPECT_EQ(JumpYearItems(start, start), (std::vector<std::string>{"09"}));
}

TEST(JumpLists, DaysAreThoseOfTheMonthIncludingLeapFebruary) {
  EXPECT_EQ(DaysOfMonth(24, 2), 29);
  EXPECT_EQ(DaysOfMonth(23, 2), 28);
  EXPECT_EQ(DaysOfMonth(23, 12), 31);  // the day before January of the next year
  EXPECT_EQ(DaysOfMonth(23, 4), 30);
  std::vector<std::string> days = JumpDayItems(23, 2);
  ASSERT_EQ(days.size(), 28u);
  EXPECT_EQ(days.front(), "01");
  EXPECT_EQ(days.back(), "28");
}

TEST(JumpLists, AMonthChangeFromThe31stToFebruarySelectsTheLastDay) {
  EXPECT_EQ(KeptJumpDay(31, 23, 2), 28);
  EXPECT_EQ(KeptJumpDay(31, 24, 2), 29);
  EXPECT_EQ(KeptJumpDay(31, 23, 4), 30);
  EXPECT_EQ(KeptJumpDay(15, 23, 2), 15);  // a day the new month has stays
}

TEST(JumpLists, ChoiceIsTheTwentiethCenturyYearWithSecondsZero) {
  EXPECT_EQ(JumpChoiceTime(23, 1, 2, 3, 4), *ParseRecordTime("2023/01/02 03:04:00"));
  EXPECT_EQ(JumpChoiceTime(0, 12, 31, 23, 59), *ParseRecordTime("2000/12/31 23:59:00"));
  EXPECT_EQ(TwoDigits(7), "07");
  EXPECT_EQ(TwoDigits(1999), "99");
}

// ---- flags ----

TEST(FlagList, NewFlagHasNoTextIsNotShownAndStandsAtNine) {
  std::vector<FlagEvent> flags = {Flag(1000)};
  flags[0].Text = "old";
  EXPECT_TRUE(AddFlag(flags, 1050));
  ASSERT_EQ(flags.size(), 2u);
  EXPECT_EQ(flags[0].Text, "old");  // the others are kept
  EXPECT_EQ(flags[1].Time, 1050);
  EXPECT_EQ(flags[1].Text, "");
  EXPECT_EQ(flags[1].Shown, 0);
  EXPECT_EQ(flags[1].Position, 9);
}

TEST(FlagList, AddingASecondFlagAtTheSameTimeIsIgnored) {
  std::vector<FlagEvent> flags;
  EXPECT_TRUE(AddFlag(flags, 1050));
  EXPECT_TRUE(FlagStandsAt(flags, 1050));
  EXPECT_FALSE(AddFlag(flags, 1050));
  EXPECT_EQ(flags.size(), 1u);
  EXPECT_FALSE(FlagStandsAt(flags, 1060));
  EXPECT_TRUE(AddFlag(flags, 1060));
  EXPECT_EQ(flags.size(), 2u);
}

TEST(FlagList, RemoveTakesThemAll) {
  std::vector<FlagEvent> flags = {Flag(1000), Flag(1010)};
  RemoveAllFlags(flags);
  EXPECT_TRUE(flags.empty());
  EXPECT_TRUE(AddFlag(flags, 1000));  // and the time is free again
}

}  // namespace
}  // namespace recscope
