#include "trend/wave_render.h"

#include <QLine>
#include <vector>

#include "shell/rounding.h"
#include "trend/wave_scale.h"

namespace recscope {

namespace {

int ChannelOfPlace(const TrendScene &scene, int place) {
  return scene.view->Group().ChannelIndex[place - 1];
}

}  // namespace

void WaveDrawHori(QPainter &painter, const TrendScene &scene, int place) {
  const TrendView &view = *scene.view;
  const TrendGroup &group = view.Group();
  int channel = ChannelOfPlace(scene, place);
  if (channel < 1 || view.DataColumnCount < 1) return;
  const Box &plot = scene.layout.Picture1;
  WaveScale s = MakeWaveScale(*scene.info, channel, group.ZoneTop[place - 1],
                              group.ZoneHeight[place - 1], plot.Height);
  const int minRow = 2 * (channel - 1);
  const bool envelope = view.WaveMode == 1;

  std::vector<QLine> lines;
  lines.reserve(static_cast<std::size_t>(view.DataColumnCount) * 2);
  int x0 = static_cast<int>(RoundToInt(-static_cast<double>(view.PlotShift)));
  int ya = WaveHeight(s, view.Disp(minRow, 0));
  int yb = WaveHeight(s, view.Disp(minRow + 1, 0));
  int mid = MidHeight(s, ya, yb);
  if (envelope) lines.emplace_back(x0, ya, x0, yb);
  int prevX = x0;
  int prevMid = mid;
  for (int i = 1; i < view.DataColumnCount; ++i) {
    int x = ColumnPosition(view.PlotSpan, view.ColumnPitch, view.ColumnCount, i);
    ya = WaveHeight(s, view.Disp(minRow, i));
    yb = WaveHeight(s, view.Disp(minRow + 1, i));
    mid = MidHeight(s, ya, yb);
    if (envelope) lines.emplace_back(x, ya, x, yb);
    lines.emplace_back(prevX, prevMid, x, mid);
    prevX = x;
    prevMid = mid;
  }
  painter.setPen(QPen(ColourOfText(group.ChannelColor[place - 1]), 0));
  painter.drawLines(lines.data(), static_cast<int>(lines.size()));
}

void WaveDrawVert(QPainter &painter, const TrendScene &scene, int place) {
  const TrendView &view = *scene.view;
  const TrendGroup &group = view.Group();
  int channel = ChannelOfPlace(scene, place);
  if (channel < 1 || view.DataColumnCount < 1) return;
  const Box &plot = scene.layout.Picture1;
  double A = 0, B = 0;
  ScaleEnds(*scene.info, channel, A, B);
  double H = group.ZoneHeight[place - 1];
  int offset = group.ZoneTop[place - 1] - plot.Left;
  int hmax = plot.Width - 30;
  const int minRow = 2 * (channel - 1);
  const bool envelope = view.WaveMode == 1;
  auto xOf = [&](int v) { return WaveX(A, B, H, offset, hmax, v); };
  auto midOf = [&](int xa, int xb) {
    if (xa == 30 || xa == hmax) return xa;
    if (xb == 30 || xb == hmax) return xb;
    return static_cast<int>(RoundToInt((xa + xb) / 2.0));
  };

  std::vector<QLine> lines;
  lines.reserve(static_cast<std::size_t>(view.DataColumnCount) * 2);
  int y0 = static_cast<int>(RoundToInt(static_cast<double>(view.PlotSpan) - view.PlotShift));
  int xa = xOf(view.Disp(minRow, 0));
  int xb = xOf(view.Disp(minRow + 1, 0));
  int mid = midOf(xa, xb);
  if (envelope) lines.emplace_back(xa, y0, xb, y0);
  int prevY = y0;
  int prevMid = mid;
  for (int i = 1; i < view.DataColumnCount; ++i) {
    int y = view.PlotSpan - ColumnPosition(view.PlotSpan, view.ColumnPitch, view.ColumnCount, i);
    xa = xOf(view.Disp(minRow, i));
    xb = xOf(view.Disp(minRow + 1, i));
    mid = midOf(xa, xb);
    if (envelope) lines.emplace_back(xa, y, xb, y);
    lines.emplace_back(prevMid, prevY, mid, y);
    prevY = y;
    prevMid = mid;
  }
  painter.setPen(QPen(ColourOfText(group.ChannelColor[place - 1]), 0));
  painter.drawLines(lines.data(), static_cast<int>(lines.size()));
}

void Wave(QPainter &painter, const TrendScene &scene) {
  const TrendGroup &group = scene.view->Group();
  for (int place = 1; place <= static_cast<int>(group.ChannelNo.size()); ++place) {
    if (group.ChannelNo[place - 1] == 0 || group.ChannelOn[place - 1] == 0) continue;
    if (scene.layout.horizontal)
      WaveDrawHori(painter, scene, place);
    else
      WaveDrawVert(painter, scene, place);
  }
}

}  // namespace recscope
