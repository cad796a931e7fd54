#pragma once
// How a channel's raw values stand on the plot: the scale ends, the limits in raw
// units beyond which a value lies on the plot's edge, and the height of a value.
#include <cstdint>

#include "record/record_file_info.h"
#include "shell/rounding.h"

namespace recscope {

struct WaveScale {
  double A = 0;  // value at the zone's bottom (ScaleLow)
  double B = 0;  // value at the zone's top (ScaleHigh)
  double span = 1;
  double H = 0;  // zone height
  std::int32_t top = 0;
  std::int32_t Hmax = 0;
  std::int64_t vTop = 0;
  std::int64_t vBot = 0;
};

// Scale ends of a channel (1-based index, DI behind analog) as reals, with the log
// exponents turned into raw values and equal ends pulled apart.
void ScaleEnds(const RecordFileInfo &info, int channelIndex, double &A, double &B);

// Horizontal view: zone top T and height H, plot height `scaleHeight`.
WaveScale MakeWaveScale(const RecordFileInfo &info, int channelIndex, std::int32_t zoneTop,
                        std::int32_t zoneHeight, std::int32_t scaleHeight);

// Height of a raw value, clamped to 0 and Hmax beyond the limits. (Inline: a
// redraw asks it twice per column of every channel.)
inline std::int32_t WaveHeight(const WaveScale &s, std::int32_t v) {
  if (s.B >= s.A) {
    if (v > s.vTop) return 0;
    if (v < s.vBot) return s.Hmax;
    return static_cast<std::int32_t>(RoundToInt((1.0 - (v - s.A) / s.span) * s.H + s.top));
  }
  if (v > s.vTop) return s.Hmax;
  if (v < s.vBot) return 0;
  return static_cast<std::int32_t>(RoundToInt(s.top + s.H - (1.0 - (v - s.B) / s.span) * s.H));
}

// The point a column's connecting line goes through: a clipped end pulls it to
// the edge, otherwise the middle of the column.
inline std::int32_t MidHeight(const WaveScale &s, std::int32_t ya, std::int32_t yb) {
  if (ya == 0 || ya == s.Hmax) return ya;
  if (yb == 0 || yb == s.Hmax) return yb;
  return static_cast<std::int32_t>(RoundToInt((ya + yb) / 2.0));
}

// x of column i (0-based, after the first) of a run: whole-number division places
// it, so neighbours can be one or two pitches apart.
std::int32_t ColumnPosition(std::int32_t plotSpan, std::int32_t pitch, std::int32_t columnCount,
                            std::int32_t i);

// Vertical view: value position along x, clamped to 30 and Hmax.
std::int32_t WaveX(double A, double B, double H, std::int32_t zoneOffset, std::int32_t Hmax,
                   std::int32_t v);

}  // namespace recscope
