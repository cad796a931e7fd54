#include "trend/scale_panel.h"

#include <cmath>
#include <cstdio>

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

void ScaleLabel(QPainter &painter, double x, double y, const QString &value, bool exponentFlag,
                bool horizontal) {
  QString text = exponentFlag ? QStringLiteral("10") + value : value;
  double width = horizontal ? 76.0 * text.size() : 50.0 * text.size();
  double left = std::max(x - width, 0.0);
  if (!exponentFlag) {
    PrintText(painter, left, y, value);
    return;
  }
  // The exponent, sign included, stands raised just after "10": 100 twips on,
  // or further when "10" is wider than that in this font, since a minus sign
  // printed over the "0" is lost in it.
  QSizeF base = PrintText(painter, left, y, QStringLiteral("10"));
  QFont font = painter.font();
  QFont small = font;
  small.setPixelSize(std::max(1, font.pixelSize() / 2 + 40));  // half the size plus 2 points
  painter.setFont(small);
  PrintText(painter, left + std::max(100.0, base.width()), y - 50, value);
  painter.setFont(font);
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

  painter.setPen(QPen(colour, 0));
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

  // 3. End ticks and their labels.
  auto label = [&](double along, double v) {
    QString text = ValueLabel(v, pc.decimals, pc.logarithmic, scene.decimalChar);
    painter.setPen(QPen(Qt::black, 0));
    if (horizontal)
      ScaleLabel(painter, kLabelAnchor, along - 70, text, pc.logarithmic, true);
    else
      ScaleLabel(painter, along + 50.0 * text.size() / 2, 520, text, pc.logarithmic, false);
    painter.setPen(QPen(colour, 0));
  };
  line(nearEnd, kAxis, kLongTick);
  line(farEnd, kAxis, kLongTick);
  label(nearEnd, pc.lo);
  label(farEnd, pc.hi);

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
      if (isLong && !nearEnds && (!horizontal || (at >= 500 && !inBand(at - 70)))) label(at, v);
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

  // 7, 8. Channel, tag and unit.
  painter.setPen(QPen(Qt::black, 0));
  QString head =
      QString::fromStdString((pc.di ? "DI:" : "CH:") + scene.view->SlotChannelText[slot]);
  QString tag1 = QString::fromStdString(LeftCp932Bytes(pc.tag, 8));
  QString tag2 = QString::fromStdString(MidCp932Bytes(pc.tag, 8));
  if (horizontal) {
    PrintText(painter, 0, Yn, head);
    PrintText(painter, 0, Yn + 250, tag1);
    PrintText(painter, 0, Yn + 500, tag2);
  } else {
    double x = panel.Width - 1300;
    PrintText(painter, x, 0, head + QStringLiteral(" ") + tag1 + tag2);
  }
  if (!pc.di) {
    QString unit =
        QStringLiteral("[") + QString::fromStdString(UnitLength(pc.unit)) + QStringLiteral("]");
    if (horizontal) {
      double y = (PT - 70 > -100 && PT - 70 < 200) ? PT + 80 : 50;
      PrintText(painter, 0, y, unit);
    } else {
      PrintText(painter, panel.Width - 1300, 250, unit);
    }
  }
}

}  // namespace recscope
