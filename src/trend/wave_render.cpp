#include "trend/wave_render.h"

#include <QLine>
#include <atomic>
#include <vector>

#include "shell/rounding.h"
#include "trend/wave_scale.h"

namespace recscope {

namespace {

int ChannelOfPlace(const TrendScene &scene, int place) {
  return scene.view->Group().ChannelIndex[place - 1];
}

std::atomic<WaveDrawPath> drawPath{WaveDrawPath::Fastest};
thread_local bool lastUsedImage = false;
thread_local WaveImageCounts lastCounts;

void DrawLines(QPainter &painter, const QColor &colour, const std::vector<QLine> &lines) {
  painter.setPen(QPen(colour, 0));
  painter.drawLines(lines.data(), static_cast<int>(lines.size()));
}

}  // namespace

void WaveLinesHori(const TrendScene &scene, int place, std::vector<QLine> &lines) {
  lines.clear();
  const TrendView &view = *scene.view;
  const TrendGroup &group = view.Group();
  int channel = ChannelOfPlace(scene, place);
  if (channel < 1 || view.DataColumnCount < 1) return;
  const Box &plot = scene.layout.Picture1;
  WaveScale s = MakeWaveScale(*scene.info, channel, group.ZoneTop[place - 1],
                              group.ZoneHeight[place - 1], plot.Height);
  const int minRow = 2 * (channel - 1);
  const bool envelope = view.WaveMode == 1;

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
}

void WaveLinesVert(const TrendScene &scene, int place, std::vector<QLine> &lines) {
  lines.clear();
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
}

void WaveDrawHori(QPainter &painter, const TrendScene &scene, int place) {
  std::vector<QLine> lines;
  WaveLinesHori(scene, place, lines);
  if (lines.empty()) return;
  DrawLines(painter, ColourOfText(scene.view->Group().ChannelColor[place - 1]), lines);
}

void WaveDrawVert(QPainter &painter, const TrendScene &scene, int place) {
  std::vector<QLine> lines;
  WaveLinesVert(scene, place, lines);
  if (lines.empty()) return;
  DrawLines(painter, ColourOfText(scene.view->Group().ChannelColor[place - 1]), lines);
}

void Wave(QPainter &painter, const TrendScene &scene) {
  const TrendGroup &group = scene.view->Group();
  lastUsedImage = false;
  lastCounts = WaveImageCounts();
  std::vector<WaveLines> channels;
  for (int place = 1; place <= static_cast<int>(group.ChannelNo.size()); ++place) {
    if (group.ChannelNo[place - 1] == 0 || group.ChannelOn[place - 1] == 0) continue;
    WaveLines wave;
    if (scene.layout.horizontal)
      WaveLinesHori(scene, place, wave.lines);
    else
      WaveLinesVert(scene, place, wave.lines);
    if (wave.lines.empty()) continue;
    wave.colour = ColourOfText(group.ChannelColor[place - 1]);
    channels.push_back(std::move(wave));
  }
  if (drawPath.load() == WaveDrawPath::Fastest && painter.device()->devType() == QInternal::Image &&
      DrawWavesOnImage(painter, channels, &lastCounts)) {
    lastUsedImage = true;
    return;
  }
  for (const WaveLines &wave : channels) DrawLines(painter, wave.colour, wave.lines);
}

void SetWaveDrawPath(WaveDrawPath path) { drawPath.store(path); }
WaveDrawPath CurrentWaveDrawPath() { return drawPath.load(); }
bool LastWaveUsedImagePath() { return lastUsedImage; }
WaveImageCounts LastWaveImageCounts() { return lastCounts; }

}  // namespace recscope
