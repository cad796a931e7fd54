#include "trend/scale_panel.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/text_encoding.h"
#include "shell/rounding.h"
#include "trend/colour_table.h"
#include "trend/scale_steps.h"

namespace recscope {

namespace {

constexpr double kAxis = 985;
constexpr double kLongTick = 780;
constexpr double kShortTick = 835;
constexpr double kLogTick = 885;
constexpr double kLabelAnchor = 760;
constexpr double kVerticalLabelTop = 520;
constexpr double kTextGap = 30;  // least room between two texts of a panel
// Vertical view: room kept right of the channel texts, towards the slot numbers.
constexpr double kRightMargin = 120;

QString ValueLabel(double tick, int decimals, bool logarithmic, const std::string &decimalChar) {
  if (logarithmic) return QString::number(static_cast<int>(tick));
  char text[48];
  std::snprintf(text, sizeof text, "%.*f", std::max(decimals, 0), tick * std::pow(10.0, -decimals));
  std::string out = text;
  if (decimalChar != ".")
    for (auto &c : out)
      if (c == '.') c = decimalChar[0];
  return QString::fromStdString(out);
}

struct PanelChannel {
  bool di = false;
  double lo = 0;
  double hi = 1;
  int decimals = 0;
  bool logarithmic = false;
  std::string tag;
  std::string unit;
  std::string colour;
};

PanelChannel ChannelOfSlot(const TrendScene &scene, int slot) {
  PanelChannel pc;
  const RecordFileInfo &info = *scene.info;
  int index = SlotChannelIndex(*scene.view, slot);
  int analog = static_cast<int>(info.Channels.size());
  const TrendGroup &group = scene.view->Group();
  int place = SlotToMember(group, scene.view->CurrentGroup, scene.view->SlotValue[slot]);
  if (place > 0) pc.colour = group.ChannelColor[place - 1];
  if (index >= 1 && index <= analog) {
    const ChannelInfo &ch = info.Channels[index - 1];
    pc.lo = ch.ScaleLow;
    pc.hi = ch.ScaleHigh;
    pc.decimals = ch.Decimals;
    pc.logarithmic = ch.ScaleKind == 1;
    pc.tag = ch.Tag;
    pc.unit = ch.Unit;
  } else if (index > analog && index - analog <= static_cast<int>(info.Dis.size())) {
    const DiInfo &di = info.Dis[index - analog - 1];
    pc.di = true;
    pc.lo = di.ScaleLow;
    pc.hi = di.ScaleHigh;
    pc.tag = di.Tag;
  }
  return pc;
}

// The unit as the panel shows it: seven bytes, cut at the first space.
std::string UnitLength(const std::string &unit) {
  std::string text = LeftCp932Bytes(unit, 7);
  std::size_t space = text.find(' ');
  return space == std::string::npos ? text : text.substr(0, space);
}

}  // namespace

double ScalePosition(double nearEnd, double k, double v, double lo, double hi) {
  return hi >= lo ? nearEnd - (v - lo) * k : nearEnd + (v - lo) * k;
}

double FirstStepValue(double lo, double hi, double step) {
  double rest;
  if (hi >= lo) {
    rest = lo >= 0 ? step - std::fmod(lo, step) : -std::fmod(lo, step);
    if (rest == 0) rest = step;
    return lo + rest;
  }
  // Walking down: the next multiple below lo.
  rest = lo >= 0 ? std::fmod(lo, step) : step + std::fmod(lo, step);
  if (rest == 0 || rest == step) rest = step;
  return lo - rest;
}

namespace {

QFont ExponentFont(const QFont &font) {
  QFont small = font;
  small.setPixelSize(std::max(1, font.pixelSize() / 2 + 40));  // half the size plus 2 points
  return small;
}

// The exponent, sign included, stands raised just after "10": 100 twips on, or
// further when "10" is wider than that in this font, since a minus sign printed
// over the "0" is lost in it.
double ExponentOffset(const QFont &font) {
  return std::max(100.0, QFontMetricsF(font).horizontalAdvance(QStringLiteral("10")));
}

}  // namespace

QRectF ScaleLabelBox(const QFont &font, double x, double y, const QString &value, bool exponentFlag,
                     bool horizontal) {
  QFontMetricsF metrics(font);
  double width = metrics.horizontalAdvance(value);
  double top = y;
  double height = metrics.height();
  if (exponentFlag) {
    width = ExponentOffset(font) + QFontMetricsF(ExponentFont(font)).horizontalAdvance(value);
    top = y - 50;
    height += 50;
  }
  double left = std::max(horizontal ? x - width : x - width / 2, 0.0);
  return QRectF(left, top, width, height);
}

QRectF ScaleLabel(QPainter &painter, double x, double y, const QString &value, bool exponentFlag,
                  bool horizontal) {
  const QFont font = painter.font();
  QRectF box = ScaleLabelBox(font, x, y, value, exponentFlag, horizontal);
  if (!exponentFlag) {
    PrintText(painter, box.left(), y, value);
    return box;
  }
  PrintText(painter, box.left(), y, QStringLiteral("10"));
  painter.setFont(ExponentFont(font));
  PrintText(painter, box.left() + ExponentOffset(font), y - 50, value);
  painter.setFont(font);
  return box;
}

void DrawScalePanel(QPainter &painter, const TrendScene &scene, int slot) {
  const bool horizontal = scene.layout.horizontal;
  const Box &panel = scene.layout.Picture3[slot];
  Zone zone = SlotZone(*scene.view, scene.view->SelectedSlot);
  PanelChannel pc = ChannelOfSlot(scene, slot);
  QColor colour = ColourOfText(pc.colour);

  // Ends of the scale along the panel: PT the high end, PB the low end (in the
  // vertical view the low end is at the left).
  double panelStart = horizontal ? panel.Top : panel.Left;
  double PT = zone.top - panelStart + 20;
  double PB = PT + zone.height;
  double R = std::fabs(pc.hi - pc.lo);
  double k = R != 0 ? (PB - PT) / R : 0;
  double nearEnd = horizontal ? PB : PT;
  double farEnd = horizontal ? PT : PB;
  double kk = horizontal ? k : -k;  // vertical values grow to the right
  auto pos = [&](double v) { return ScalePosition(nearEnd, kk, v, pc.lo, pc.hi); };
  auto line = [&](double along, double from, double to) {
    if (horizontal)
      painter.drawLine(QLineF(from, along, to, along));
    else
      painter.drawLine(QLineF(along, from, along, to));
  };

  painter.setPen(QPen(colour, scene.scaleLineWidth));
  painter.setFont(TrendFont(8));
  // 1. Axis.
  if (horizontal)
    painter.drawLine(QLineF(kAxis, PT, kAxis, PB));
  else
    painter.drawLine(QLineF(PT, kAxis, PB, kAxis));

  // 2. The block of channel texts stays clear of the end labels.
  double Yn = std::floor(panel.Height / 2.0 - (scene.layout.formHeight / 5500.0) * 800);
  auto inBand = [&](double y) { return y >= Yn - 150 && y <= Yn + 650; };
  if (horizontal) {
    if (inBand(PB - 70)) Yn = RoundHalfEven(PB - 70 - 200) - 500;
    if (inBand(PT - 70)) Yn = RoundHalfEven(PT - 70 + 200);
  }

  // Texts are placed by their measured size in the panel's font, and a text
  // that would touch one already placed is left out or moved.
  std::vector<QRectF> placed;
  auto isFree = [&](const QRectF &box) {
    QRectF wide = box.adjusted(-kTextGap, -kTextGap, kTextGap, kTextGap);
    for (const QRectF &other : placed)
      if (wide.intersects(other)) return false;
    return true;
  };
  const QFont font = painter.font();
  // Box of a value label at a place along the scale; on the vertical view kept
  // inside the panel's right edge.
  auto labelBox = [&](double along, const QString &text) {
    if (horizontal)
      return ScaleLabelBox(font, kLabelAnchor, along - 70, text, pc.logarithmic, true);
    QRectF box = ScaleLabelBox(font, along, kVerticalLabelTop, text, pc.logarithmic, false);
    double over = box.right() - (panel.Width - kTextGap);
    if (over > 0)
      box = ScaleLabelBox(font, along - over, kVerticalLabelTop, text, pc.logarithmic, false);
    return box;
  };
  auto label = [&](double along, double v, bool always) {
    QString text = ValueLabel(v, pc.decimals, pc.logarithmic, scene.decimalChar);
    QRectF box = labelBox(along, text);
    if (!always && !isFree(box)) return;
    painter.setPen(QPen(Qt::black, 0));
    // The box's anchor: right edge (horizontal) or centre (vertical).
    double anchor = horizontal ? box.right() : box.center().x();
    placed.push_back(ScaleLabel(painter, anchor, box.top() + (pc.logarithmic ? 50 : 0), text,
                                pc.logarithmic, horizontal));
    painter.setPen(QPen(colour, scene.scaleLineWidth));
  };

  // 3. End ticks and their labels.
  line(nearEnd, kAxis, kLongTick);
  line(farEnd, kAxis, kLongTick);
  label(nearEnd, pc.lo, true);
  label(farEnd, pc.hi, true);

  // 7. The channel's text block: on the horizontal view in its band at the
  // panel's left, on the vertical view one line at the panel's right end.
  QString head =
      QString::fromStdString((pc.di ? "DI:" : "CH:") + scene.view->SlotChannelText[slot]);
  QString tag1 = QString::fromStdString(LeftCp932Bytes(pc.tag, 8));
  QString tag2 = QString::fromStdString(MidCp932Bytes(pc.tag, 8));
  QFontMetricsF metrics(font);
  auto print = [&](double x, double y, const QString &text) {
    if (text.isEmpty()) return;
    painter.setPen(QPen(Qt::black, 0));
    QSizeF size = PrintText(painter, x, y, text);
    placed.push_back(QRectF(QPointF(x, y), size));
    painter.setPen(QPen(colour, scene.scaleLineWidth));  // lines go on in the channel's colour
  };
  if (horizontal) {
    print(0, Yn, head);
    print(0, Yn + 250, tag1);
    print(0, Yn + 500, tag2);
  } else {
    QString line1 = head + QStringLiteral(" ") + tag1 + tag2;
    print(std::max(0.0, panel.Width - kRightMargin - metrics.horizontalAdvance(line1)), 0, line1);
  }

  // 4, 5. Inner ticks, the labelled ones long.
  if (R > 0) {
    double minor = GridStepMinor(static_cast<std::int32_t>(R));
    double major = GridStepLabel(static_cast<std::int32_t>(R));
    double step = pc.hi >= pc.lo ? minor : -minor;
    int guard = 0;
    for (double v = FirstStepValue(pc.lo, pc.hi, minor);
         (pc.hi >= pc.lo ? v < pc.hi : v > pc.hi) && guard < 100000; v += step, ++guard) {
      double at = pos(v);
      bool isLong = std::fmod(v, major) == 0;
      line(at, kAxis, isLong ? kLongTick : kShortTick);
      bool nearEnds = std::fabs(at - PB) < 140 || std::fabs(at - PT) < 140;
      if (isLong && !nearEnds && (!horizontal || (at >= 500 && !inBand(at - 70))))
        label(at, v, false);
    }
  }

  // 6. Logarithmic scales: ticks for 2 to 9 in each decade.
  if (pc.logarithmic) {
    double dir = pc.hi >= pc.lo ? 1 : -1;
    for (double d = pc.lo; dir > 0 ? d < pc.hi : d > pc.hi; d += dir) {
      double y0 = pos(d);
      double y1 = pos(d + dir);
      for (int n = 2; n <= 9; ++n)
        line(y0 - (y0 - y1) * std::log(n) / std::log(10.0), kAxis, kLogTick);
    }
  }

  // 8. Unit, analog only: at the top of the panel, or under the first text it
  // would touch there.
  if (!pc.di) {
    QString unit =
        QStringLiteral("[") + QString::fromStdString(UnitLength(pc.unit)) + QStringLiteral("]");
    QSizeF size(metrics.horizontalAdvance(unit), metrics.height());
    if (horizontal) {
      std::vector<double> tops{50};
      for (const QRectF &box : placed) tops.push_back(box.bottom() + kTextGap + 1);
      std::sort(tops.begin(), tops.end());
      double y = (PT - 70 > -100 && PT - 70 < 200) ? PT + 80 : 50;
      for (double top : tops) {
        if (top + size.height() > panel.Height) break;
        if (isFree(QRectF(QPointF(0, top), size))) {
          y = top;
          break;
        }
      }
      print(0, y, unit);
    } else {
      print(std::max(0.0, panel.Width - kRightMargin - size.width()), 250, unit);
    }
  }
}

}  // namespace recscope
