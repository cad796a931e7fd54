#pragma once
// The two cursors of a trend: which one a click sets, the time of a click on the
// plot, the jump of a cursor with the view that follows it, the search for the
// next or previous alarm, message or flag, and the times of the jump dialog.
// Functions over the view state and the slot's events; the window only routes.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

constexpr int kSetCursor1First = 11140;  // "カーソル１をセットして下さい。"
constexpr int kSetCursor2First = 11141;  // "カーソル２をセットして下さい。"

// The cursor a click (or a flag, or an event list row) is meant for: cursor 1
// when the Shift key state equals the baseline read at the window's load,
// cursor 2 when they differ.
int CursorOfShift(std::int16_t shiftState, std::int16_t shiftBaseline);

// mnuCursorChange: the baseline becomes 1 when it is not 1, and 0 when it is.
std::int16_t SwappedShiftBaseline(std::int16_t shiftBaseline);

bool CursorSet(const TrendView &view, int cursorNo);
std::int32_t CursorTime(const TrendView &view, int cursorNo);
// The cursor's time and its set flag.
void PlaceCursor(TrendView &view, int cursorNo, std::int32_t t);
// 0 when the cursor is set, otherwise the catalogue id that asks for it.
int CursorRefusal(const TrendView &view, int cursorNo);
// Both cursors unset; their times stay as they are.
void RemoveCursors(TrendView &view);

// The time of a left press on the plot at `along` twips from the plot's edge
// where the time axis starts counting (x from the left on the horizontal view,
// y from the top on the vertical one, whose time runs upwards). The press takes
// the time under it rounded down to a whole second; a time between two samples
// (or on a sample other than the file's first and last) moves on to the later
// sample. Nothing when the time lies outside the file.
std::optional<std::int32_t> ClickTime(const TrendView &view, const RecordFileInfo &info,
                                      std::int32_t period, double along, bool horizontal);

// The time put on a sample of the file (SnapToSample over the file's ends).
std::int32_t SnapToFileSample(const RecordFileInfo &info, std::int32_t period, std::int64_t t);

// CursorJump on the state: the time is put on a sample and stored in the
// cursor's time (its set flag is the caller's). When the time lies outside the
// range in view, the range moves to stand around it, kept inside the file where
// the span allows. Returns true when the range moved.
bool JumpCursor(TrendView &view, const RecordFileInfo &info, std::int32_t period, std::int64_t t,
                int cursorNo);

// What an event search found: the time the cursor goes to and the row (kind 0
// alarm, 1 message, 2 flag; row 0-based in its list), or kind -1 for no find.
struct EventSearchResult {
  std::int32_t time = 0;
  int kind = -1;
  int row = -1;
  bool found() const { return kind >= 0; }
};

// Casol_Left_Click: the latest event before `cursorTime` (flags, then alarms,
// then messages; at equal times the first found stays), brought down to its
// sample. With no find, the file start. The file start itself never counts.
EventSearchResult SearchEarlierEvent(const RecordFileInfo &info, std::int32_t period,
                                     const AlarmFileInfo &alarms,
                                     const std::vector<FlagEvent> &flags, std::int32_t cursorTime);
// Casol_Right_Click: the earliest event after `cursorTime`, raised to the first
// sample at or after it. With no find, the file end, which never counts itself.
EventSearchResult SearchLaterEvent(const RecordFileInfo &info, std::int32_t period,
                                   const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags,
                                   std::int32_t cursorTime);

// The hour and day jumps of cursor 1, in seconds.
constexpr std::int32_t kHourBack = -3600;
constexpr std::int32_t kHourOn = 3600;
constexpr std::int32_t kDayBack = -86400;
constexpr std::int32_t kDayOn = 86400;

// The event level of a text dropped at `along` twips across the plot (y from
// the plot's top on the horizontal view, x from its left on the vertical one),
// for a zone of `zoneExtent` twips: 1 to 10.
std::int16_t DroppedEventLevel(double along, std::int32_t zoneExtent, bool horizontal);

// The box of a drawn event text contains the point (edges included).
bool TextBoxContains(const TextBox &box, double x, double y);

// The jump dialog's lists: "00" texts.
std::string TwoDigits(int n);
// The last two digits of each year from the file's start year to its end year.
std::vector<std::string> JumpYearItems(std::int32_t fileStart, std::int32_t fileEnd);
// Days of a month of 20yy: the day before the first of the next month.
int DaysOfMonth(int twoDigitYear, int month);
std::vector<std::string> JumpDayItems(int twoDigitYear, int month);
// The day selected after the year or month changed: the former day when the new
// month has it, otherwise its last day.
int KeptJumpDay(int formerDay, int twoDigitYear, int month);
// The time of the dialog's choice: "20" & year & "/" & month & "/" & day & " "
// & hour & ":" & minute & ":00".
std::int64_t JumpChoiceTime(int twoDigitYear, int month, int day, int hour, int minute);

}  // namespace recscope
