#include "trend/wave_scale.h"

#include <cmath>

#include "record/value_text.h"
#include "shell/rounding.h"

namespace recscope {

void ScaleEnds(const RecordFileInfo &info, int channelIndex, double &A, double &B) {
  int analog = static_cast<int>(info.Channels.size());
  A = 0;
  B = 1;
  if (channelIndex >= 1 && channelIndex <= analog) {
    const ChannelInfo &ch = info.Channels[channelIndex - 1];
    A = ch.ScaleLow;
    B = ch.ScaleHigh;
    if (ch.ScaleKind == 1) {
      A = LogScaleRaw(ch.RangeLow, ch.RangeHigh, ch.ExponentLow, ch.ExponentHigh, ch.Decimals,
                      ch.ScaleLow);
      B = LogScaleRaw(ch.RangeLow, ch.RangeHigh, ch.ExponentLow, ch.ExponentHigh, ch.Decimals,
                      ch.ScaleHigh);
    }
  } else if (channelIndex > analog && channelIndex - analog <= static_cast<int>(info.Dis.size())) {
    const DiInfo &di = info.Dis[channelIndex - analog - 1];
    A = di.ScaleLow;
    B = di.ScaleHigh;
  }
  if (A == B) {
    if (A < -8.0)
      B = B + 1;
    else
      A = A - 1;
  }
}

WaveScale MakeWaveScale(const RecordFileInfo &info, int channelIndex, std::int32_t zoneTop,
                        std::int32_t zoneHeight, std::int32_t scaleHeight) {
  WaveScale s;
  ScaleEnds(info, channelIndex, s.A, s.B);
  s.H = zoneHeight;
  s.Hmax = scaleHeight - 30;
  s.top = static_cast<std::int32_t>(RoundToInt(zoneTop - 381.0));
  s.span = std::fabs(s.B - s.A);
  double base = s.B >= s.A ? s.A : s.B;
  if (s.H == 0) s.H = 1;
  s.vTop = RoundToInt((s.top / s.H + 1.0) * s.span + base);
  s.vBot = RoundToInt(((s.top - s.Hmax) / s.H + 1.0) * s.span + base);
  return s;
}

std::int32_t ColumnPosition(std::int32_t plotSpan, std::int32_t pitch, std::int32_t columnCount,
                            std::int32_t i) {
  if (pitch <= 0 || columnCount <= 1) return 0;
  std::int64_t px = plotSpan / pitch;
  return static_cast<std::int32_t>(((px * i) / (columnCount - 1)) * pitch);
}

std::int32_t WaveX(double A, double B, double H, std::int32_t zoneOffset, std::int32_t Hmax,
                   std::int32_t v) {
  double span = std::fabs(B - A);
  if (span == 0) span = 1;
  double along = B >= A ? (v - A) / span : (A - v) / span;
  double x = std::floor(along * H + zoneOffset);
  if (x < 30) return 30;
  if (x > Hmax) return Hmax;
  return static_cast<std::int32_t>(x);
}

}  // namespace recscope
