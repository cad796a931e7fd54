#pragma once
// A paint device that draws nothing and keeps every text drawn on it, with its
// position and font, so tests can read what a drawing routine printed.
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QString>
#include <vector>

namespace recscope::testing_support {

struct DrawnText {
  QString text;
  QPointF at;  // baseline start, in the painter's logical units
  int pixelSize = 0;
};

class TextRecorderEngine : public QPaintEngine {
 public:
  TextRecorderEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}
  bool begin(QPaintDevice *) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState &) override {}
  void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
  // Shapes are dropped: the engine's own fallbacks call one another in a circle.
  void drawLines(const QLineF *, int) override {}
  void drawLines(const QLine *, int) override {}
  void drawRects(const QRectF *, int) override {}
  void drawRects(const QRect *, int) override {}
  void drawPoints(const QPointF *, int) override {}
  void drawPoints(const QPoint *, int) override {}
  void drawEllipse(const QRectF &) override {}
  void drawEllipse(const QRect &) override {}
  void drawPath(const QPainterPath &) override {}
  void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
  void drawPolygon(const QPoint *, int, PolygonDrawMode) override {}
  void drawImage(const QRectF &, const QImage &, const QRectF &,
                 Qt::ImageConversionFlags) override {}
  void drawTextItem(const QPointF &p, const QTextItem &item) override {
    texts.push_back({item.text(), painter()->transform().map(p), item.font().pixelSize()});
  }
  Type type() const override { return QPaintEngine::User; }
  std::vector<DrawnText> texts;
};

class TextRecorder : public QPaintDevice {
 public:
  QPaintEngine *paintEngine() const override { return &engine_; }
  const std::vector<DrawnText> &texts() const { return engine_.texts; }

 protected:
  int metric(PaintDeviceMetric m) const override {
    switch (m) {
      case PdmWidth:
      case PdmHeight:
        return 4000;
      case PdmDpiX:
      case PdmDpiY:
      case PdmPhysicalDpiX:
      case PdmPhysicalDpiY:
        return 96;
      case PdmDevicePixelRatio:
        return 1;
      case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
      case PdmDepth:
        return 32;
      default:
        return 1;
    }
  }

 private:
  mutable TextRecorderEngine engine_;
};

}  // namespace recscope::testing_support
