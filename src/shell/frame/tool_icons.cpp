#include "shell/frame/tool_icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>

namespace recscope {

namespace {

constexpr int kSize = 24;

void Arrow(QPainter &p, bool left, QColor colour) {
  p.setBrush(colour);
  p.setPen(Qt::NoPen);
  QPolygonF head;
  if (left)
    head << QPointF(5, 12) << QPointF(13, 6) << QPointF(13, 18);
  else
    head << QPointF(19, 12) << QPointF(11, 6) << QPointF(11, 18);
  p.drawPolygon(head);
}

void Label(QPainter &p, const QString &text, QColor colour) {
  QFont font = p.font();
  font.setPixelSize(9);
  font.setBold(true);
  p.setFont(font);
  p.setPen(colour);
  p.drawText(QRect(0, 13, kSize, 11), Qt::AlignCenter, text);
}

void Magnifier(QPainter &p, bool plus) {
  p.setPen(QPen(Qt::black, 2));
  p.setBrush(Qt::white);
  p.drawEllipse(QPointF(10, 10), 6, 6);
  p.drawLine(QPointF(14.5, 14.5), QPointF(20, 20));
  p.drawLine(QPointF(7, 10), QPointF(13, 10));
  if (plus) p.drawLine(QPointF(10, 7), QPointF(10, 13));
}

void Wave(QPainter &p) {
  p.setPen(QPen(QColor(0, 110, 200), 2));
  QPainterPath path(QPointF(3, 16));
  path.cubicTo(QPointF(8, 2), QPointF(12, 22), QPointF(21, 6));
  p.drawPath(path);
}

void Page(QPainter &p) {
  p.setPen(QPen(Qt::black, 1));
  p.setBrush(Qt::white);
  p.drawRect(5, 3, 14, 18);
  for (int y = 7; y <= 17; y += 3) p.drawLine(8, y, 16, y);
}

}  // namespace

QIcon ToolIcon(const QString &key) {
  QPixmap picture(kSize, kSize);
  picture.fill(Qt::transparent);
  QPainter p(&picture);
  p.setRenderHint(QPainter::Antialiasing);
  const QColor dark(40, 40, 40);
  const QColor red(200, 30, 30);
  const QColor blue(20, 80, 200);

  if (key == "Open") {
    p.setPen(dark);
    p.setBrush(QColor(240, 200, 80));
    p.drawRect(3, 8, 18, 12);
    p.drawRect(3, 5, 8, 3);
  } else if (key == "Addition") {
    Page(p);
    Label(p, QStringLiteral("Σ"), red);
  } else if (key == "Print") {
    p.setPen(dark);
    p.setBrush(QColor(200, 200, 200));
    p.drawRect(3, 10, 18, 8);
    p.setBrush(Qt::white);
    p.drawRect(7, 3, 10, 7);
  } else if (key == "Details") {
    Page(p);
  } else if (key == "Nine") {
    p.setPen(QPen(dark, 2));
    p.drawLine(7, 3, 7, 21);
    p.setBrush(red);
    p.setPen(Qt::NoPen);
    p.drawPolygon(QPolygonF() << QPointF(8, 4) << QPointF(19, 8) << QPointF(8, 12));
  } else if (key == "DspAll") {
    Wave(p);
    p.setPen(QPen(dark, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(1, 1, 22, 22);
  } else if (key == "Zoom") {
    Magnifier(p, true);
  } else if (key == "Reduction") {
    Magnifier(p, false);
  } else if (key == "Enlarge") {
    p.setPen(QPen(red, 2));
    p.drawLine(5, 3, 5, 21);
    p.setPen(QPen(blue, 2));
    p.drawLine(19, 3, 19, 21);
    p.setPen(QPen(dark, 1));
    p.drawLine(7, 12, 17, 12);
  } else if (key == "Torenndo") {
    Wave(p);
  } else if (key == "Moment" || key == "Table" || key == "Chohyo") {
    p.setPen(dark);
    p.setBrush(Qt::white);
    p.drawRect(3, 3, 18, 18);
    for (int y = 8; y < 21; y += 5) p.drawLine(3, y, 21, y);
    p.drawLine(10, 3, 10, 21);
    if (key == "Table") p.fillRect(4, 4, 6, 4, red);
    if (key == "Chohyo") p.fillRect(11, 4, 10, 4, blue);
  } else if (key == "cursor") {
    p.setPen(QPen(red, 2));
    p.drawLine(8, 3, 8, 21);
    p.setPen(QPen(blue, 2));
    p.drawLine(16, 3, 16, 21);
  } else if (key == "UpDown" || key == "Right and left") {
    p.setPen(dark);
    p.setBrush(QColor(180, 210, 250));
    if (key == "UpDown") {
      p.drawRect(3, 3, 18, 8);
      p.drawRect(3, 13, 18, 8);
    } else {
      p.drawRect(3, 3, 8, 18);
      p.drawRect(13, 3, 8, 18);
    }
  } else if (key == "Version") {
    p.setPen(QPen(blue, 2));
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(12, 12), 9, 9);
    Label(p, "i", blue);
  } else if (key == "Aleft" || key == "Aright") {
    Arrow(p, key == "Aleft", red);
    Label(p, "1", dark);
  } else if (key == "Bleft" || key == "Bright") {
    Arrow(p, key == "Bleft", blue);
    Label(p, "2", dark);
  } else if (key == "Hago" || key == "Dago" || key == "Hlate" || key == "Dlate") {
    Arrow(p, key.endsWith("ago"), red);
    Label(p, key.startsWith('H') ? "1h" : "1d", dark);
  } else {
    Label(p, key.left(2), dark);
  }
  return QIcon(picture);
}

}  // namespace recscope
