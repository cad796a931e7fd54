#include "trend/trend_draw.h"

#include <QFontMetricsF>
#include <cmath>

#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/rounding.h"
#include "shell/shared_state.h"
#include "trend/colour_table.h"
#include "trend/event_marks.h"
#include "trend/scale_panel.h"
#include "trend/scale_steps.h"
#include "trend/time_axis.h"
#include "trend/wave_render.h"

namespace recscope {

namespace {

constexpr int kCursor1Text = 15148;
constexpr int kCursor2Text = 15149;
constexpr double kLabelWidth = 1700;
const QColor kFrameColour(240, 240, 240);

QString TimeLabel(const TrendScene &scene, std::int64_t t) {
  return QString::fromStdString(FormatTime(t, scene.dateFormatNo));
}

// Position of a time along the plot's time axis, from its start edge.
double TimeAlong(const TrendScene &scene, std::int64_t t) {
  double pos = TimeToPosition(*scene.view, t);
  return scene.layout.horizontal ? pos : scene.view->PlotSpan - pos;
}

std::int32_t TickStep(std::int64_t span, std::int64_t labels) {
  for (std::int32_t entry : IntervalTable)
    if (span / entry <= labels) return entry;
  return IntervalTable.back();
}

void DrawTimeAxis(QPainter &painter, const TrendScene &scene) {
  const TrendView &view = *scene.view;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  const double W = view.PlotSpan;
  const std::int64_t N = FixTowardsZero((W - kLabelWidth) / kLabelWidth);
  const bool printStart = !(view.RealTime != 0 && view.DisplayStart == 0);
  QPen gridPen(ColourOfText(view.GridColor), 0);
  painter.setFont(TrendFont(9));

  if (l.horizontal) {
    double labelY = plot.Top + plot.Height + 10;
    painter.setPen(QPen(Qt::black, 0));
    if (printStart) PrintText(painter, plot.Left, labelY, TimeLabel(scene, view.DisplayStart));
    if (N > 0)
      PrintText(painter, plot.Width - kLabelWidth + plot.Left + 200, labelY,
                TimeLabel(scene, view.DisplayEnd));
  } else {
    InBox(painter, plot, [&] {
      painter.setPen(QPen(Qt::black, 0));
      if (printStart)
        PrintText(painter, 50, plot.Height - 200, TimeLabel(scene, view.DisplayStart));
      if (N > 0) PrintText(painter, 50, 250 - 200, TimeLabel(scene, view.DisplayEnd));
    });
  }
  if (N < 2) return;

  const std::int64_t span = static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart;
  const std::int32_t step = TickStep(span, N);
  std::int64_t t = (view.DisplayStart / step + 1) * static_cast<std::int64_t>(step);
  for (std::int64_t i = 1; i <= N + 1 && t < view.DisplayEnd; ++i, t += step) {
    double along = TimeAlong(scene, t);
    InBox(painter, plot, [&] {
      painter.setPen(gridPen);
      if (l.horizontal) {
        painter.drawLine(QLineF(along, 0, along, plot.Height));
      } else {
        painter.drawLine(QLineF(0, along, plot.Width, along));
        double y = along - 200;
        painter.setPen(QPen(Qt::black, 0));
        if (y < plot.Height - 250 && y > 500) PrintText(painter, 50, y, TimeLabel(scene, t));
      }
    });
    if (l.horizontal) {
      double xl = along - 750;
      painter.setPen(QPen(Qt::black, 0));
      if (xl > kLabelWidth && xl < W - 3200)
        PrintText(painter, plot.Left + xl, plot.Top + plot.Height + 10, TimeLabel(scene, t));
    }
  }
}

// Scale ends of the channel of a slot: raw values, or exponents of a log channel.
bool SlotScale(const TrendScene &scene, int slot, double &lo, double &hi, bool &logarithmic) {
  int index = SlotChannelIndex(*scene.view, slot);
  const RecordFileInfo &info = *scene.info;
  int analog = static_cast<int>(info.Channels.size());
  logarithmic = false;
  if (index >= 1 && index <= analog) {
    lo = info.Channels[index - 1].ScaleLow;
    hi = info.Channels[index - 1].ScaleHigh;
    logarithmic = info.Channels[index - 1].ScaleKind == 1;
    return true;
  }
  if (index > analog && index - analog <= static_cast<int>(info.Dis.size())) {
    lo = info.Dis[index - analog - 1].ScaleLow;
    hi = info.Dis[index - analog - 1].ScaleHigh;
    return true;
  }
  return false;
}

void DrawValueGrid(QPainter &painter, const TrendScene &scene) {
  double lo = 0, hi = 0;
  bool logarithmic = false;
  if (!SlotScale(scene, 0, lo, hi, logarithmic)) return;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  Zone zone = SlotZone(*scene.view, scene.view->SelectedSlot);
  const double plotStart = l.horizontal ? plot.Top : plot.Left;
  const double YT = std::floor(zone.top - plotStart + 20);
  const double YB = std::floor(zone.height + YT);
  const double R = std::fabs(hi - lo);
  if (R == 0) return;
  const double step = GridStepMinor(static_cast<std::int32_t>(R));
  const double k = (YB - YT) / R;
  // Horizontal: lo at YB going up. Vertical: lo at the left end going right.
  const double nearEnd = l.horizontal ? YB : YT;
  const double dir = l.horizontal ? -1 : 1;
  auto pos = [&](double v) {
    return hi >= lo ? nearEnd + dir * (v - lo) * k : nearEnd - dir * (v - lo) * k;
  };
  auto line = [&](double at) {
    if (l.horizontal)
      painter.drawLine(QLineF(0, at, plot.Width, at));
    else
      painter.drawLine(QLineF(at, 0, at, plot.Height));
  };

  InBox(painter, plot, [&] {
    painter.setPen(QPen(ColourOfText(scene.view->GridColor), 0));
    line(nearEnd);
    const double walk = hi >= lo ? step : -step;
    int guard = 0;
    for (double v = FirstStepValue(lo, hi, step); (hi >= lo ? v <= hi : v >= hi) && guard < 100000;
         v += walk, ++guard)
      line(pos(v));
    if (logarithmic) {
      const double d1 = hi >= lo ? 1 : -1;
      for (double d = lo; hi >= lo ? d <= hi - 1 : d >= hi + 1; d += d1) {
        double y0 = pos(d), y1 = pos(d + d1);
        line(y0 - (y0 - y1) * std::log(5.0) / std::log(10.0));
      }
    }
  });
}

void DrawCursor(QPainter &painter, const TrendScene &scene, int which) {
  const TrendView &view = *scene.view;
  bool set = which == 1 ? view.Cursor1Set : view.Cursor2Set;
  std::int32_t t = which == 1 ? view.Cursor1Time : view.Cursor2Time;
  if (!set || t < view.DisplayStart || t > view.DisplayEnd) return;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  double along = TimeAlong(scene, t);
  InBox(painter, plot, [&] {
    painter.setPen(QPen(QColor(kCursorColour.r, kCursorColour.g, kCursorColour.b), 0));
    if (l.horizontal)
      painter.drawLine(QLineF(along, 0, along, plot.Height));
    else
      painter.drawLine(QLineF(0, along, plot.Width, along));
  });
  painter.setPen(QPen(Qt::black, 0));
  painter.setFont(TrendFont(9));
  QString number = QString::number(which);
  QString text = QString::fromStdString(GetMessageText(which == 1 ? kCursor1Text : kCursor2Text)) +
                 TimeLabel(scene, t);
  if (l.horizontal) {
    PrintText(painter, plot.Left + along, plot.Top - 150, number);
    double x =
        along <= view.PlotSpan / 2.0 ? plot.Left + along + 100 : plot.Left + along - 1350 - 630;
    double y = l.Scroll.Top - (which == 1 ? 340 : 190);
    PrintText(painter, x, y, text);
  } else {
    PrintText(painter, plot.Left - 150, plot.Top + along - 100, number);
    PrintText(painter, plot.Left, plot.Bottom() + (which == 1 ? 20 : 190), text);
  }
}

void DrawSlotNumbers(QPainter &painter, const TrendScene &scene) {
  painter.save();
  painter.setPen(QPen(Qt::black, 0));
  painter.setFont(TrendFont(9));
  for (int i = 0; i < scene.view->Group().ShownScales && i < 3; ++i) {
    const Box &up = scene.layout.UpDown3[i];
    QString text = QStringLiteral("No") + QString::fromStdString(scene.view->SlotMemberText[i]);
    if (scene.layout.horizontal)
      PrintText(painter, up.Left - 400, up.Top + 50, text);
    else
      PrintText(painter, up.Left - 50, up.Top - 200, text);
  }
  painter.restore();
}

}  // namespace

QColor ColourOfText(const std::string &colourText) {
  Rgb rgb = RgbOfColourText(colourText);
  return QColor(rgb.r, rgb.g, rgb.b);
}

QFont TrendFont(double points) {
  QFont font(QStringLiteral("Sans Serif"));
  font.setPixelSize(static_cast<int>(points * 20));  // a point is 20 twips
  return font;
}

QSizeF PrintText(QPainter &painter, double x, double y, const QString &text) {
  QFontMetricsF metrics(painter.font());
  QSizeF size(metrics.horizontalAdvance(text), metrics.height());
  painter.drawText(QPointF(x, y + metrics.ascent()), text);
  return size;
}

void ClearTrendSurfaces(QPainter &painter, const TrendScene &scene) {
  const TrendLayout &l = scene.layout;
  painter.fillRect(QRect(0, 0, l.Picture2.Width, l.Picture2.Height), kFrameColour);
  QColor back = ColourOfText(scene.view->BackColor);
  const Box &p1 = l.Picture1;
  painter.fillRect(QRect(p1.Left, p1.Top, p1.Width, p1.Height), back);
  for (int i = 0; i < scene.view->Group().ShownScales && i < 3; ++i) {
    const Box &p3 = l.Picture3[i];
    painter.fillRect(QRect(p3.Left, p3.Top, p3.Width, p3.Height), back);
  }
}

void DrawChannelWave(QPainter &painter, const TrendScene &scene, int place) {
  InBox(painter, scene.layout.Picture1, [&] {
    if (scene.layout.horizontal)
      WaveDrawHori(painter, scene, place);
    else
      WaveDrawVert(painter, scene, place);
  });
}

TrendPlacement TrendDraw(QPainter &painter, const TrendScene &scene) {
  TrendPlacement placed;
  if (!scene.info || !scene.view) return placed;
  const TrendView &view = *scene.view;
  const TrendLayout &l = scene.layout;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setRenderHint(QPainter::TextAntialiasing, true);

  // 1. Scale panels as requested.
  if (scene.panelRequest == 1) {
    int shown = std::min<int>(view.Group().ShownScales, 3);
    for (int i = 0; i < shown; ++i)
      if (scene.panelIndex == 3 || scene.panelIndex == i)
        InBox(painter, l.Picture3[i], [&] { DrawScalePanel(painter, scene, i); });
  }
  // 2, 3, 4. Time axis, value grid, channel lines.
  DrawTimeAxis(painter, scene);
  DrawValueGrid(painter, scene);
  InBox(painter, l.Picture1, [&] { Wave(painter, scene); });
  // 5. Marks and cursors of a file view.
  if (view.RealTime == 0) {
    placed.eventTexts = DrawEventMarks(painter, scene);
    DrawCursor(painter, scene, 1);
    DrawCursor(painter, scene, 2);
  }
  // 6. Slot numbers.
  DrawSlotNumbers(painter, scene);
  painter.restore();
  return placed;
}

QImage DrawTrendImage(const TrendScene &scene, double devicePixelRatio, TrendPlacement *placed) {
  const Box &frame = scene.layout.Picture2;
  int width =
      std::max(1, static_cast<int>(std::ceil(frame.Width / kTwipsPerPixel * devicePixelRatio)));
  int height =
      std::max(1, static_cast<int>(std::ceil(frame.Height / kTwipsPerPixel * devicePixelRatio)));
  QImage image(width, height, QImage::Format_RGB32);
  image.setDevicePixelRatio(devicePixelRatio);
  QPainter painter(&image);
  painter.scale(1.0 / kTwipsPerPixel, 1.0 / kTwipsPerPixel);
  ClearTrendSurfaces(painter, scene);
  TrendPlacement drawn = TrendDraw(painter, scene);
  if (placed) *placed = std::move(drawn);
  return image;
}

}  // namespace recscope
