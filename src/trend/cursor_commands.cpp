#include "trend/cursor_commands.h"

#include <algorithm>
#include <cmath>

#include "record/value_text.h"
#include "shell/civil_time.h"

namespace recscope {

int CursorOfShift(std::int16_t shiftState, std::int16_t shiftBaseline) {
  return shiftState == shiftBaseline ? 1 : 2;
}

std::int16_t SwappedShiftBaseline(std::int16_t shiftBaseline) { return shiftBaseline != 1 ? 1 : 0; }

bool CursorSet(const TrendView &view, int cursorNo) {
  return cursorNo == 1 ? view.Cursor1Set : view.Cursor2Set;
}

std::int32_t CursorTime(const TrendView &view, int cursorNo) {
  return cursorNo == 1 ? view.Cursor1Time : view.Cursor2Time;
}

void PlaceCursor(TrendView &view, int cursorNo, std::int32_t t) {
  if (cursorNo == 1) {
    view.Cursor1Time = t;
    view.Cursor1Set = true;
  } else {
    view.Cursor2Time = t;
    view.Cursor2Set = true;
  }
}

int CursorRefusal(const TrendView &view, int cursorNo) {
  if (CursorSet(view, cursorNo)) return 0;
  return cursorNo == 1 ? kSetCursor1First : kSetCursor2First;
}

void RemoveCursors(TrendView &view) {
  view.Cursor1Set = false;
  view.Cursor2Set = false;
}

std::optional<std::int32_t> ClickTime(const TrendView &view, const RecordFileInfo &info,
                                      std::int32_t period, double along, bool horizontal) {
  if (period <= 0) period = 1;
  double r = view.PlotSpan > 0 ? along / view.PlotSpan : 0.0;
  if (!horizontal) r = 1.0 - r;  // time runs upwards
  const std::int64_t s = static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart;
  std::int64_t t = view.DisplayStart + static_cast<std::int64_t>(std::floor(s * r));
  if (t < info.FirstTime || t > info.LastTime) return std::nullopt;
  if (t != info.FirstTime && t != info.LastTime) {
    const std::int64_t k = (t - view.DisplayStart) / period;
    t = view.DisplayStart + (k + 1) * period;
  }
  return static_cast<std::int32_t>(t);
}

std::int32_t SnapToFileSample(const RecordFileInfo &info, std::int32_t period, std::int64_t t) {
  return static_cast<std::int32_t>(
      SnapToSample(t, info.FirstTime, info.LastTime, period > 0 ? period : 1));
}

bool JumpCursor(TrendView &view, const RecordFileInfo &info, std::int32_t period,
                std::int64_t target, int cursorNo) {
  if (period <= 0) period = 1;
  const std::int32_t t = SnapToFileSample(info, period, target);
  if (cursorNo == 1)
    view.Cursor1Time = t;
  else
    view.Cursor2Time = t;
  if (view.DisplayStart <= t && t <= view.DisplayEnd) return false;
  const std::int32_t s = view.DisplayEnd - view.DisplayStart;
  const std::int32_t h = s / 2 - (s / 2) % period;
  view.DisplayStart = t - h;
  view.DisplayEnd = view.DisplayStart + s;
  if (t - h < info.FirstTime) {
    view.DisplayStart = info.FirstTime;
    view.DisplayEnd = info.FirstTime + s;
  }
  if (static_cast<std::int64_t>(t) + h > info.LastTime) {
    view.DisplayEnd = info.LastTime;
    view.DisplayStart = info.LastTime - s;
  }
  return true;
}

namespace {

// One pass over the events of the three kinds in the search's order: flags,
// alarms, messages. `better(time, best)` says whether an event beats the best so far.
template <typename Better>
EventSearchResult Search(const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags,
                         std::int32_t start, Better better) {
  EventSearchResult result;
  result.time = start;
  auto look = [&](std::int32_t time, int kind, std::size_t row) {
    if (!better(time, result.time)) return;
    result.time = time;
    result.kind = kind;
    result.row = static_cast<int>(row);
  };
  for (std::size_t i = 0; i < flags.size(); ++i) look(flags[i].Time, 2, i);
  for (std::size_t i = 0; i < alarms.Alarms.size(); ++i) look(alarms.Alarms[i].Time, 0, i);
  for (std::size_t i = 0; i < alarms.Messages.size(); ++i) look(alarms.Messages[i].Time, 1, i);
  return result;
}

}  // namespace

EventSearchResult SearchEarlierEvent(const RecordFileInfo &info, std::int32_t period,
                                     const AlarmFileInfo &alarms,
                                     const std::vector<FlagEvent> &flags, std::int32_t cursorTime) {
  if (period <= 0) period = 1;
  EventSearchResult result =
      Search(alarms, flags, info.FirstTime, [cursorTime](std::int32_t time, std::int32_t best) {
        return time < cursorTime && time > best;
      });
  if (result.time != info.FirstTime)
    result.time -= static_cast<std::int32_t>(
        (static_cast<std::int64_t>(result.time) - info.FirstTime) % period);
  else
    result.kind = -1, result.row = -1;
  return result;
}

EventSearchResult SearchLaterEvent(const RecordFileInfo &info, std::int32_t period,
                                   const AlarmFileInfo &alarms, const std::vector<FlagEvent> &flags,
                                   std::int32_t cursorTime) {
  if (period <= 0) period = 1;
  EventSearchResult result =
      Search(alarms, flags, info.LastTime, [cursorTime](std::int32_t time, std::int32_t best) {
        return time > cursorTime && time < best;
      });
  if (result.time != info.LastTime) {
    const std::int32_t off = static_cast<std::int32_t>(
        (static_cast<std::int64_t>(result.time) - info.FirstTime) % period);
    if (off != 0) result.time = result.time - off + period;
  } else {
    result.kind = -1;
    result.row = -1;
  }
  return result;
}

std::int16_t DroppedEventLevel(double along, std::int32_t zoneExtent, bool horizontal) {
  const double tenth = zoneExtent / 10.0;
  if (tenth <= 0) return 1;
  // Horizontal: level 10 at the top of the zone, 1 at its bottom. Vertical: the
  // text of level n stands n tenths of the zone from the plot's left.
  const std::int64_t step = static_cast<std::int64_t>(std::floor(along / tenth));
  const std::int64_t level = horizontal ? 10 - step : step;
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(level, 1, 10));
}

bool TextBoxContains(const TextBox &box, double x, double y) {
  return x >= box.Left && y >= box.Top && x <= box.Right && y <= box.Bottom;
}

std::string TwoDigits(int n) {
  std::string text = std::to_string(n % 100);
  return text.size() < 2 ? "0" + text : text;
}

std::vector<std::string> JumpYearItems(std::int32_t fileStart, std::int32_t fileEnd) {
  std::vector<std::string> items;
  for (int y = ToCivil(fileStart).year; y <= ToCivil(fileEnd).year; ++y)
    items.push_back(TwoDigits(y));
  return items;
}

int DaysOfMonth(int twoDigitYear, int month) {
  CivilTime next;
  next.year = 2000 + twoDigitYear + (month == 12 ? 1 : 0);
  next.month = month == 12 ? 1 : month + 1;
  next.day = 1;
  return ToCivil(FromCivil(next) - 86400).day;
}

std::vector<std::string> JumpDayItems(int twoDigitYear, int month) {
  std::vector<std::string> items;
  for (int d = 1; d <= DaysOfMonth(twoDigitYear, month); ++d) items.push_back(TwoDigits(d));
  return items;
}

int KeptJumpDay(int formerDay, int twoDigitYear, int month) {
  const int last = DaysOfMonth(twoDigitYear, month);
  return formerDay >= 1 && formerDay <= last ? formerDay : last;
}

std::int64_t JumpChoiceTime(int twoDigitYear, int month, int day, int hour, int minute) {
  CivilTime civil;
  civil.year = 2000 + twoDigitYear;
  civil.month = month;
  civil.day = day;
  civil.hour = hour;
  civil.minute = minute;
  civil.second = 0;
  return FromCivil(civil);
}

}  // namespace recscope
