#pragma once
// The time-axis commands and the scroll bar of a file trend, as functions on the
// view state. A command returns the catalogue id of its refusal, or 0 when the
// range changed and the caller is to redraw the whole view.
#include <array>
#include <cstdint>

#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

// The steps of the time axis, in seconds: the tick step of the labels is the first
// of these that fits.
constexpr std::array<std::int32_t, 33> IntervalTable = {
    1,       2,       3,        5,        10,       20,      30,     60,      120,
    180,     300,     600,      1200,     1800,     3600,    7200,   10800,   14400,
    21600,   43200,   86400,    172800,   259200,   432000,  864000, 1728000, 2592000,
    5184000, 7776000, 10368000, 15552000, 31536000, 63072000};

constexpr int kCannotEnlarge = 11160;
constexpr int kCannotReduce = 11161;
constexpr int kCursorTimesEqual = 11163;
constexpr int kCursorsNotSet = 11164;

// Whole file in view.
int ShowWholeFile(TrendView &view, const RecordFileInfo &info);
// Halves the range, keeping the start; 11160 when at most five samples apart.
int EnlargeSpan(TrendView &view, std::int32_t period);
// Doubles the range, keeping the start; 11161 when the view is already a hundred
// times the file.
int ReduceSpan(TrendView &view, const RecordFileInfo &info, std::int32_t period);
// The range of the two cursors; 11164 when one is unset, 11163 when equal.
int ShowBetweenCursors(TrendView &view);

// Position of a time on the plot: Round(PlotSpan x (t - start) / (end - start)),
// 0 on an empty range.
std::int32_t TimeToPosition(const TrendView &view, std::int64_t t);

struct ScrollBarState {
  int Min = 0;
  int Max = 0;
  int Value = 0;
  int SmallChange = 1;
  int LargeChange = 1;
};

// The scroll bar for the range in view and LevelInUse; sets ScrollValue.
ScrollBarState SetScrollRange(TrendView &view, const RecordFileInfo &info, std::int32_t period);

// The scroll bar moved to `value`: the new range, or false when nothing is to be
// done (Busy set, Max 0, no change). The caller sets Busy, redraws and then keeps
// the bar's value in ScrollValue.
bool OnScroll(TrendView &view, const RecordFileInfo &info, std::int32_t period,
              const ScrollBarState &bar, int value);

}  // namespace recscope
