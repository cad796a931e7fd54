#include "trend/event_marks.h"

#include <QPainterPath>
#include <cmath>
#include <optional>

#include "shell/catalogue.h"
#include "trend/colour_table.h"
#include "trend/time_axis.h"

namespace recscope {

namespace {

constexpr int kAlarmRaised = 19037;
constexpr int kAlarmCleared = 19038;

QColor ColourOf(Rgb rgb) { return QColor(rgb.r, rgb.g, rgb.b); }

struct MarkStyle {
  Rgb colour;
  QColor textColour;
  int dx, dy, width, height;  // box relative to (Picture1.Left + x, Picture1.Top)
  int sideX;                  // vertical view: left of Picture1.Left
  int sideY;                  // vertical view: above the row's y
};

MarkStyle StyleOf(MarkKind kind) {
  switch (kind) {
    case MarkKind::kAlarm:
      return {kAlarmColour, QColor(255, 0, 0), -120, -300, 300, 300, -300, -120};
    case MarkKind::kMessage:
      return {kMessageColour, QColor(0, 0, 255), -90, -255, 250, 255, -270, -90};
    case MarkKind::kFlag:
    default:
      return {kFlagColour, Qt::black, -30, -250, 200, 200, -250, -30};
  }
}

std::string Trimmed(const std::string &text) {
  std::size_t b = text.find_first_not_of(' ');
  if (b == std::string::npos) return std::string();
  std::size_t e = text.find_last_not_of(' ');
  return text.substr(b, e - b + 1);
}

// One row: line across the plot, the mark on Picture2 and, when shown, its text.
// Returns the box of the text, or nothing when the row's text is not shown.
std::optional<TextBox> DrawRow(QPainter &painter, const TrendScene &scene, MarkKind kind,
                               std::int32_t time, std::int16_t shown, std::int16_t level,
                               const std::string &text) {
  const TrendView &view = *scene.view;
  const TrendLayout &l = scene.layout;
  const Box &plot = l.Picture1;
  MarkStyle style = StyleOf(kind);
  Zone zone = SlotZone(view, view.SelectedSlot);

  std::int32_t pos = TimeToPosition(view, time);
  QRect mark;
  double tx, ty;
  if (l.horizontal) {
    DrawTimeLine(painter, l, pos, ColourOf(style.colour));
    mark = QRect(plot.Left + pos + style.dx, plot.Top + style.dy, style.width, style.height);
    tx = pos + 50;
    ty = std::floor((zone.top - plot.Top) + (zone.height / 10.0) * (10 - level));
  } else {
    pos = view.PlotSpan - pos;  // time runs upwards
    DrawTimeLine(painter, l, pos, ColourOf(style.colour));
    mark = QRect(plot.Left + style.sideX, plot.Top + pos + style.sideY, style.width, style.height);
    tx = std::floor((zone.height / 10.0) * level);
    ty = pos < 201 ? pos + 50 : pos - 200;
  }
  DrawMarkPicture(painter, kind, mark);
  if (shown == 0) return std::nullopt;
  TextBox box;
  InBox(painter, plot, [&] {
    painter.setPen(QPen(style.textColour, 0));
    painter.setFont(TrendFont(10));
    QSizeF size = PrintText(painter, tx, ty, QString::fromStdString(text));
    box = {static_cast<std::int32_t>(tx), static_cast<std::int32_t>(ty),
           static_cast<std::int32_t>(tx + size.width()),
           static_cast<std::int32_t>(ty + size.height())};
  });
  return box;
}

bool InRange(const TrendView &view, std::int32_t t) {
  return view.DisplayStart <= t && t <= view.DisplayEnd;
}

}  // namespace

std::string AlarmMarkText(const AlarmEvent &alarm) {
  return "CH" + std::to_string(alarm.ChannelNo) + "-" + std::to_string(alarm.AlarmNo) +
         (alarm.AlarmAction == 1 ? " H " : " L ") +
         GetMessageText(alarm.AlarmState == 1 ? kAlarmRaised : kAlarmCleared);
}

void DrawMarkPicture(QPainter &painter, MarkKind kind, const QRect &box) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, true);
  QRectF r = QRectF(box).adjusted(20, 20, -20, -20);
  switch (kind) {
    case MarkKind::kAlarm: {  // a red warning triangle with a white bar
      QPainterPath path;
      path.moveTo(r.center().x(), r.top());
      path.lineTo(r.right(), r.bottom());
      path.lineTo(r.left(), r.bottom());
      path.closeSubpath();
      painter.fillPath(path, QColor(255, 0, 0));
      painter.fillRect(
          QRectF(r.center().x() - 15, r.top() + r.height() * 0.35, 30, r.height() * 0.35),
          Qt::white);
      break;
    }
    case MarkKind::kMessage: {  // a blue note with two text lines
      painter.fillRect(r, QColor(0, 0, 255));
      painter.fillRect(QRectF(r.left() + 40, r.top() + 50, r.width() - 80, 25), Qt::white);
      painter.fillRect(QRectF(r.left() + 40, r.top() + 120, r.width() - 80, 25), Qt::white);
      break;
    }
    case MarkKind::kFlag: {  // a magenta pennant on a black pole
      painter.fillRect(QRectF(r.left(), r.top(), 25, r.height()), Qt::black);
      QPainterPath path;
      path.moveTo(r.left() + 25, r.top());
      path.lineTo(r.right(), r.top() + r.height() * 0.3);
      path.lineTo(r.left() + 25, r.top() + r.height() * 0.6);
      path.closeSubpath();
      painter.fillPath(path, QColor(255, 0, 255));
      break;
    }
  }
  painter.restore();
}

std::vector<PlacedText> DrawEventMarks(QPainter &painter, const TrendScene &scene) {
  const TrendView &view = *scene.view;
  std::vector<PlacedText> placed;
  auto keep = [&](MarkKind kind, std::size_t row, std::optional<TextBox> box) {
    if (box) placed.push_back({kind, row, *box});
  };
  if (scene.alarms && scene.showAlarms)
    for (std::size_t i = 0; i < scene.alarms->Alarms.size(); ++i) {
      const AlarmEvent &row = scene.alarms->Alarms[i];
      if (InRange(view, row.Time))
        keep(MarkKind::kAlarm, i,
             DrawRow(painter, scene, MarkKind::kAlarm, row.Time, row.Shown, row.Position,
                     AlarmMarkText(row)));
    }
  if (scene.alarms && scene.showMessages)
    for (std::size_t i = 0; i < scene.alarms->Messages.size(); ++i) {
      const MessageEvent &row = scene.alarms->Messages[i];
      if (InRange(view, row.Time))
        keep(MarkKind::kMessage, i,
             DrawRow(painter, scene, MarkKind::kMessage, row.Time, row.Shown, row.Position,
                     Trimmed(row.Text)));
    }
  if (scene.flags && scene.showFlags)
    for (std::size_t i = 0; i < scene.flags->size(); ++i) {
      const FlagEvent &row = (*scene.flags)[i];
      if (InRange(view, row.Time))
        keep(MarkKind::kFlag, i,
             DrawRow(painter, scene, MarkKind::kFlag, row.Time, row.Shown, row.Position, row.Text));
    }
  return placed;
}

}  // namespace recscope
