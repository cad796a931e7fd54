#include "trend/trend_draw.h"

#include <QFontMetricsF>
#include <array>
#include <cmath>
#include <vector>

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

// Least room between two texts along the time axis.
constexpr double kTextGap = 100;

bool Touches(const QRectF &box, const std::vector<QRectF> &placed) {
  QRectF wide = box.adjusted(-kTextGap / 2, -kTextGap / 2, kTextGap / 2, kTextGap / 2);
  for (const QRectF &other : placed)
    if (wide.intersects(other)) return true;
  return false;
}

// Boxes of the start and end labels of the horizontal time axis, in Picture2;
// empty when the label is not printed.
struct EndLabels {
  QRectF start, end;
};
EndLabels HorizontalEndLabels(const TrendScene &scene, const QFontMetricsF &metrics) {
  const TrendView &view = *scene.view;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  const double W = view.PlotSpan;
  const double y = plot.Bottom() + 10;
  const double h = metrics.height();
  EndLabels out;
  if (!(view.RealTime != 0 && view.DisplayStart == 0))
    out.start =
        QRectF(plot.Left, y, metrics.horizontalAdvance(TimeLabel(scene, view.DisplayStart)), h);
  if (FixTowardsZero((W - kLabelWidth) / kLabelWidth) > 0) {
    const double w = metrics.horizontalAdvance(TimeLabel(scene, view.DisplayEnd));
    out.end = QRectF(std::min(plot.Left + W + 200 - w, l.Picture2.Width - 30 - w), y, w, h);
  }
  return out;
}

// The text of a cursor ("ｶｰｿﾙ1:" and its time) and the box it takes in Picture2.
struct CursorText {
  bool shown = false;
  double along = 0;  // the cursor line's position along the time axis
  QString text;
  QRectF box;
};

// Horizontal view: the cursor texts stand in the row under the time labels,
// right of their line in the plot's first half and left of it in the second.
// When the two would touch, the second tries the other side of its line, then
// the row of the time labels. Vertical view: inside the plot at its right end,
// just above the line (under it near the top); when the two would touch, the
// upper line's text stands above it and the other under its line.
std::array<CursorText, 2> PlaceCursorTexts(const TrendScene &scene) {
  std::array<CursorText, 2> out;
  const TrendView &view = *scene.view;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  QFontMetricsF metrics(TrendFont(9));
  const double h = metrics.height();
  const double rowA = plot.Bottom() + 10;
  const double rowB = std::max(rowA, std::min(rowA + h, l.Scroll.Top - h));
  for (int which = 1; which <= 2; ++which) {
    bool set = which == 1 ? view.Cursor1Set : view.Cursor2Set;
    std::int32_t t = which == 1 ? view.Cursor1Time : view.Cursor2Time;
    if (!set || t < view.DisplayStart || t > view.DisplayEnd) continue;
    CursorText &c = out[which - 1];
    c.shown = true;
    c.along = TimeAlong(scene, t);
    c.text = QString::fromStdString(GetMessageText(which == 1 ? kCursor1Text : kCursor2Text)) +
             TimeLabel(scene, t);
    const double w = metrics.horizontalAdvance(c.text);
    if (l.horizontal) {
      double x = c.along <= view.PlotSpan / 2.0 ? plot.Left + c.along + 100
                                                : plot.Left + c.along - 100 - w;
      x = std::max<double>(plot.Left, std::min(x, l.Picture2.Width - 30 - w));
      c.box = QRectF(x, rowB, w, h);
    } else {
      double y = c.along - h - 10;
      if (y < 0) y = c.along + 10;
      c.box = QRectF(plot.Left + std::max(0.0, plot.Width - 60 - w), plot.Top + y, w, h);
    }
  }
  if (out[0].shown && out[1].shown && Touches(out[1].box, {out[0].box})) {
    QRectF &box = out[1].box;
    if (l.horizontal) {
      // First the other side of its own line in the same row; then the row of
      // the time labels, on a side clear of the start and end labels; else
      // there, where the labels give way.
      const double right = plot.Left + out[1].along + 100;
      const double left = plot.Left + out[1].along - 100 - box.width();
      const bool leftFirst = box.left() < plot.Left + out[1].along;
      EndLabels ends = HorizontalEndLabels(scene, metrics);
      std::vector<QRectF> labels;
      if (!ends.start.isEmpty()) labels.push_back(ends.start);
      if (!ends.end.isEmpty()) labels.push_back(ends.end);
      auto fits = [&](double x) {
        return x >= plot.Left && x + box.width() <= l.Picture2.Width - 30;
      };
      auto at = [&](double x, double y) { return QRectF(x, y, box.width(), box.height()); };
      const double firstX = leftFirst ? left : right;
      const double otherX = leftFirst ? right : left;
      if (fits(otherX) && !Touches(at(otherX, rowB), {out[0].box}))
        box = at(otherX, rowB);
      else if (fits(firstX) && !Touches(at(firstX, rowA), labels))
        box = at(firstX, rowA);
      else if (fits(otherX) && !Touches(at(otherX, rowA), labels))
        box = at(otherX, rowA);
      else
        box.moveTop(rowA);
    } else {
      // The text of the upper line goes above it, the other under its own line.
      CursorText &upper = out[0].along <= out[1].along ? out[0] : out[1];
      CursorText &lower = &upper == &out[0] ? out[1] : out[0];
      upper.box.moveTop(std::max(0.0, upper.along - h - 10) + plot.Top);
      lower.box.moveTop(std::min(lower.along + 10, plot.Height - h) + plot.Top);
    }
  }
  return out;
}

// Time labels go where they touch no text placed before them: the cursor texts,
// the start and end labels, and the tick labels to their left (above, on the
// vertical view). A label that would touch one of those is left out.
void DrawTimeAxis(QPainter &painter, const TrendScene &scene) {
  const TrendView &view = *scene.view;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  const double W = view.PlotSpan;
  const std::int64_t N = FixTowardsZero((W - kLabelWidth) / kLabelWidth);
  const bool printStart = !(view.RealTime != 0 && view.DisplayStart == 0);
  QPen gridPen(ColourOfText(view.GridColor), 0);
  painter.setFont(TrendFont(9));
  QFontMetricsF metrics(painter.font());
  const double h = metrics.height();

  // Everything in Picture2 coordinates.
  std::vector<QRectF> placed;
  if (view.RealTime == 0)
    for (const CursorText &c : PlaceCursorTexts(scene))
      if (c.shown) placed.push_back(c.box);
  auto label = [&](double x, double y, std::int64_t t) {
    QString text = TimeLabel(scene, t);
    QRectF box(x, y, metrics.horizontalAdvance(text), h);
    if (Touches(box, placed)) return;
    placed.push_back(box);
    painter.setPen(QPen(Qt::black, 0));
    PrintText(painter, x, y, text);
  };
  const double labelY = plot.Bottom() + 10;
  auto width = [&](std::int64_t t) { return metrics.horizontalAdvance(TimeLabel(scene, t)); };

  if (l.horizontal) {
    EndLabels ends = HorizontalEndLabels(scene, metrics);
    if (!ends.start.isEmpty()) label(ends.start.left(), labelY, view.DisplayStart);
    if (!ends.end.isEmpty()) label(ends.end.left(), labelY, view.DisplayEnd);
  } else {
    // Inside the plot, clipped to it.
    painter.save();
    painter.setClipRect(QRect(plot.Left, plot.Top, plot.Width, plot.Height));
    if (printStart) label(plot.Left + 50, plot.Top + plot.Height - h - 10, view.DisplayStart);
    if (N > 0) label(plot.Left + 50, plot.Top + 50, view.DisplayEnd);
    painter.restore();
  }
  if (N < 2) return;

  const std::int64_t span = static_cast<std::int64_t>(view.DisplayEnd) - view.DisplayStart;
  const std::int32_t step = TickStep(span, N);
  std::int64_t t = (view.DisplayStart / step + 1) * static_cast<std::int64_t>(step);
  for (std::int64_t i = 1; i <= N + 1 && t < view.DisplayEnd; ++i, t += step) {
    double along = TimeAlong(scene, t);
    InBox(painter, plot, [&] {
      painter.setPen(gridPen);
      if (l.horizontal)
        painter.drawLine(QLineF(along, 0, along, plot.Height));
      else
        painter.drawLine(QLineF(0, along, plot.Width, along));
    });
    if (l.horizontal) {
      // Centred on its tick, inside the plot's width.
      double x = plot.Left + along - width(t) / 2;
      if (x >= plot.Left && x + width(t) <= plot.Right()) label(x, labelY, t);
    } else {
      // Just above its line, inside the plot.
      double y = along - h - 10;
      if (y >= 0 && y + h <= plot.Height) {
        painter.save();
        painter.setClipRect(QRect(plot.Left, plot.Top, plot.Width, plot.Height));
        label(plot.Left + 50, plot.Top + y, t);
        painter.restore();
      }
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

void ValueGrid(QPainter &painter, const TrendScene &scene) {
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
    painter.setPen(QPen(ColourOfText(scene.view->GridColor), scene.gridLineWidth));
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

void DrawCursors(QPainter &painter, const TrendScene &scene) {
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  const std::array<CursorText, 2> texts = PlaceCursorTexts(scene);
  for (int which = 1; which <= 2; ++which) {
    const CursorText &c = texts[which - 1];
    if (!c.shown) continue;
    DrawTimeLine(painter, l, c.along, QColor(kCursorColour.r, kCursorColour.g, kCursorColour.b));
    painter.setPen(QPen(Qt::black, 0));
    painter.setFont(TrendFont(9));
    QString number = QString::number(which);
    if (l.horizontal)
      PrintText(painter, plot.Left + c.along, plot.Top - 150, number);
    else
      PrintText(painter, plot.Left - 150, plot.Top + c.along - 100, number);
    PrintText(painter, c.box.left(), c.box.top(), c.text);
  }
}

// "No" and the member of each shown slot, beside its up-down: left of it on the
// horizontal view, above it on the vertical one, clear of the control by its
// measured width.
void DrawSlotNumbers(QPainter &painter, const TrendScene &scene) {
  painter.save();
  painter.setPen(QPen(Qt::black, 0));
  painter.setFont(TrendFont(9));
  QFontMetricsF metrics(painter.font());
  for (int i = 0; i < scene.view->Group().ShownScales && i < 3; ++i) {
    const Box &up = scene.layout.UpDown3[i];
    QString text = QStringLiteral("No") + QString::fromStdString(scene.view->SlotMemberText[i]);
    const double w = metrics.horizontalAdvance(text);
    if (scene.layout.horizontal)
      PrintText(painter, up.Left - std::max(400.0, w + 40),
                up.Top + (up.Height - metrics.height()) / 2, text);
    else
      PrintText(painter, std::min<double>(up.Left - 50, scene.layout.Picture2.Width - 30 - w),
                up.Top - metrics.height() - 10, text);
  }
  painter.restore();
}

}  // namespace

void DrawValueGrid(QPainter &painter, const TrendScene &scene) { ValueGrid(painter, scene); }

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

void DrawTimeLine(QPainter &painter, const TrendLayout &layout, double along,
                  const QColor &colour) {
  // Not clipped to the plot: a clip whose edge falls inside a pixel would hide
  // a line on the plot's first or last position.
  const Box &plot = layout.Picture1;
  painter.save();
  painter.setPen(QPen(colour, 0));
  if (layout.horizontal)
    painter.drawLine(QLineF(plot.Left + along, plot.Top, plot.Left + along, plot.Bottom()));
  else
    painter.drawLine(QLineF(plot.Left, plot.Top + along, plot.Right(), plot.Top + along));
  painter.restore();
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
  ValueGrid(painter, scene);
  InBox(painter, l.Picture1, [&] { Wave(painter, scene); });
  // 5. Marks and cursors of a file view.
  if (view.RealTime == 0) {
    placed.eventTexts = DrawEventMarks(painter, scene);
    DrawCursors(painter, scene);
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
