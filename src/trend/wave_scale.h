#pragma once
// How a channel's raw values stand on the plot: the scale ends, the limits in raw
// units beyond which a value lies on the plot's edge, and the height of a value.
#include <cstdint>

#include "record/record_file_info.h"

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

// Height of a raw value, clamped to 0 and Hmax beyond the limits.
std::int32_t WaveHeight(const WaveScale &scale, std::int32_t v);

// The point a column's connecting line goes through: a clipped end pulls it to
// the edge, otherwise the middle of the column.
std::int32_t MidHeight(const WaveScale &scale, std::int32_t ya, std::int32_t yb);

// x of column i (0-based, after the first) of a run: whole-number division places
// it, so neighbours can be one or two pitches apart.
std::int32_t ColumnPosition(std::int32_t plotSpan, std::int32_t pitch, std::int32_t columnCount,
                            std::int32_t i);

// Vertical view: value position along x, clamped to 30 and Hmax.
std::int32_t WaveX(double A, double B, double H, std::int32_t zoneOffset, std::int32_t Hmax,
                   std::int32_t v);

}  // namespace recscope
