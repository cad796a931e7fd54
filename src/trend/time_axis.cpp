#include "trend/time_axis.h"

#include <cmath>

#include "shell/rounding.h"

namespace recscope {

namespace {

// Time spans are worked in 64 bits so that a view a hundred times a long file
// does not wrap.
std::int64_t Span(const TrendView &view) {
  return static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart;
}

std::int64_t CeilDiv(std::int64_t a, std::int64_t b) { return a / b + (a % b > 0 ? 1 : 0); }

}  // namespace

int ShowWholeFile(TrendView &view, const RecordFileInfo &info) {
  view.DisplayStart = info.FirstTime;
  view.DisplayEnd = info.LastTime;
  return 0;
}

int EnlargeSpan(TrendView &view, std::int32_t period) {
  if (period <= 0) period = 1;
  std::int64_t s = Span(view);
  if (s / period < 6) return kCannotEnlarge;
  std::int64_t end = view.DisplayStart + s / 2;
  end -= (end - view.DisplayStart) % period;
  view.DisplayEnd = static_cast<std::int32_t>(end);
  return 0;
}

int ReduceSpan(TrendView &view, const RecordFileInfo &info, std::int32_t period) {
  if (period <= 0) period = 1;
  std::int64_t f = static_cast<std::int64_t>(info.LastTime) - info.FirstTime;
  std::int64_t s = Span(view);
  // A one-record file has no span to compare with: any view of it is wide enough.
  if (f <= 0 || s / f >= 100) return kCannotReduce;
  std::int64_t start = view.DisplayStart;
  std::int64_t end = start + 2 * s;
  end -= (end - start) % period;
  if (end - start >= f) {
    end -= start - info.FirstTime;
    start = info.FirstTime;
  }
  if (end > INT32_MAX) return kCannotReduce;
  view.DisplayStart = static_cast<std::int32_t>(start);
  view.DisplayEnd = static_cast<std::int32_t>(end);
  return 0;
}

int ShowBetweenCursors(TrendView &view) {
  if (!view.Cursor1Set || !view.Cursor2Set) return kCursorsNotSet;
  if (view.Cursor1Time == view.Cursor2Time) return kCursorTimesEqual;
  view.DisplayStart = std::min(view.Cursor1Time, view.Cursor2Time);
  view.DisplayEnd = std::max(view.Cursor1Time, view.Cursor2Time);
  return 0;
}

std::int32_t TimeToPosition(const TrendView &view, std::int64_t t) {
  std::int64_t s = Span(view);
  double ratio = s != 0 ? static_cast<double>(t - view.DisplayStart) / s : 0.0;
  return static_cast<std::int32_t>(RoundToInt(view.PlotSpan * ratio));
}

ScrollBarState SetScrollRange(TrendView &view, const RecordFileInfo &info, std::int32_t period) {
  if (period <= 0) period = 1;
  ScrollBarState bar;
  std::int64_t n = Span(view) / period + 1;
  std::int64_t m = RoundToInt(info.RecordCount - std::pow(10.0, view.LevelInUse));
  if (n < m) {
    std::int64_t d = m - n;
    std::int64_t q = (4 * d) / n + ((4 * d) % n != 0 ? 1 : 0);
    if (q < 32768) {
      bar.Max = static_cast<int>(q);
      bar.LargeChange = q >= 4 ? 2 : 1;
    } else {
      bar.Max = 32767;
      bar.LargeChange = 2;
    }
    double r = static_cast<double>((static_cast<std::int64_t>(view.DisplayStart) - info.FirstTime) /
                                   period) /
               d;
    std::int64_t v = RoundToInt(bar.Max * r);
    if (v > bar.Max) {
      bar.Value = bar.Max;
    } else {
      // A view that is not at the file start never shows its thumb at Min.
      if (v == 0 && view.DisplayStart != info.FirstTime) {
        v = 1;
        if (bar.Max == 1) bar.Max = 2;
      }
      bar.Value = static_cast<int>(v);
    }
  }
  view.ScrollValue = static_cast<std::int16_t>(bar.Value);
  bar.SmallChange = 1;
  bar.Min = 0;
  return bar;
}

bool OnScroll(TrendView &view, const RecordFileInfo &info, std::int32_t period,
              const ScrollBarState &bar, int value) {
  if (view.Busy != 0 || bar.Max == 0) return false;
  if (period <= 0) period = 1;
  int delta = value - view.ScrollValue;
  if (delta == 0) return false;
  std::int64_t s = Span(view);
  std::int64_t h = CeilDiv(s, 2LL * period) * period;
  std::int64_t u = CeilDiv(s, 4LL * period) * period;
  std::int64_t fileStart = info.FirstTime;
  std::int64_t fileEnd = info.LastTime;
  std::int64_t start = view.DisplayStart;
  if (value <= bar.Min) {
    start = fileStart;
  } else if (value >= bar.Max) {
    start = fileEnd - s;
  } else if (delta == -1) {
    start -= u;
  } else if (delta == 1) {
    start += u;
  } else if (delta == -2) {
    start -= h;
  } else if (delta == 2) {
    start += h;
  } else {
    std::int64_t along = RoundToInt(static_cast<double>(fileEnd - fileStart) * value / bar.Max);
    start = fileStart + (along / period) * period;
  }
  view.DisplayStart = static_cast<std::int32_t>(start);
  view.DisplayEnd = static_cast<std::int32_t>(start + s);
  return true;
}

}  // namespace recscope
