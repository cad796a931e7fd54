#include "trend/render_request.h"

#include <QPainter>
#include <QSvgGenerator>
#include <cmath>

#include "trend/display_reduction.h"

namespace recscope {

void PrepareRenderView(const RenderRequest &request, TrendView &view, TrendLayout &layout) {
  const SharedState &state = *request.state;
  const RecordFileInfo &info = state.Slot(request.slot).Record;
  int scales = std::clamp(request.scales, 1, 3);
  InitTrendView(view, info, scales);
  if (request.group >= 1 && request.group <= kGroupTabs && view.Groups[request.group - 1].HasTab)
    view.CurrentGroup = static_cast<std::int16_t>(request.group);
  FillSlotTexts(view);
  if (request.from) view.DisplayStart = *request.from;
  if (request.to) view.DisplayEnd = *request.to;
  if (request.cursor1) {
    view.Cursor1Set = true;
    view.Cursor1Time = *request.cursor1;
  }
  if (request.cursor2) {
    view.Cursor2Set = true;
    view.Cursor2Time = *request.cursor2;
  }
  view.WaveMode = static_cast<std::int16_t>(request.waveMode == 2 ? 2 : 1);

  std::int32_t width = request.widthPx * static_cast<std::int32_t>(kTwipsPerPixel);
  std::int32_t height = request.heightPx * static_cast<std::int32_t>(kTwipsPerPixel);
  layout = LayoutTrend(width, height, view.Group().ShownScales, request.horizontal);
  // The start zones belong to the first layout; they follow the plot from there.
  ResizeZones(view, kPlotOffset, kDesignPlotExtent, layout.PlotOrigin(), layout.ValueExtent());
}

TrendScene SlotScene(const SharedState &state, int slot, const TrendView &view,
                     const TrendLayout &layout) {
  TrendScene scene;
  scene.info = &state.Slot(slot).Record;
  scene.alarms = &state.Slot(slot).Alarms;
  scene.flags = &state.Slot(slot).Flags;
  scene.view = &view;
  scene.layout = layout;
  scene.showAlarms = state.ShowAlarms;
  scene.showMessages = state.ShowMessages;
  scene.showFlags = state.ShowFlags;
  scene.dateFormatNo = state.DateFormatNo;
  scene.decimalChar = state.DecimalChar;
  return scene;
}

void ReduceForLayout(const RenderRequest &request, TrendView &view, const TrendLayout &layout) {
  const SharedState &state = *request.state;
  ReduceDisplayData(view, state.Slot(request.slot).Record, state.Slot(request.slot).Period(),
                    layout.TimeExtent(), state.ProgramFolder, request.slot);
}

void PaintTrendWindow(QPainter &painter, const RenderRequest &request, const TrendView &view,
                      const TrendLayout &layout) {
  TrendScene scene = SlotScene(*request.state, request.slot, view, layout);
  painter.fillRect(QRect(0, 0, std::max(request.widthPx, 1), std::max(request.heightPx, 1)),
                   QColor(212, 208, 200));
  painter.save();
  painter.scale(1.0 / kTwipsPerPixel, 1.0 / kTwipsPerPixel);
  // Tab captions along the top, the current one raised.
  painter.setFont(TrendFont(9));
  double x = layout.TabStrip1.Left + 40;
  for (int g = 1; g <= kGroupTabs; ++g) {
    const TrendGroup &group = view.Groups[g - 1];
    if (!group.HasTab) continue;
    QString caption = QString::fromStdString(group.TabCaption);
    double w = QFontMetricsF(painter.font()).horizontalAdvance(caption) + 200;
    QRectF tab(x, g == view.CurrentGroup ? 20 : 60, w, layout.Picture2.Top - 60);
    painter.fillRect(tab, g == view.CurrentGroup ? QColor(240, 240, 240) : QColor(200, 200, 200));
    painter.setPen(QPen(Qt::black, 0));
    painter.drawRect(tab);
    PrintText(painter, x + 100, tab.top() + 40, caption);
    x += w;
  }
  painter.translate(layout.Picture2.Left, layout.Picture2.Top);
  ClearTrendSurfaces(painter, scene);
  TrendDraw(painter, scene);
  painter.restore();
}

QImage DrawTrendWindowImage(const RenderRequest &request, const TrendView &view,
                            const TrendLayout &layout) {
  QImage image(std::max(request.widthPx, 1), std::max(request.heightPx, 1), QImage::Format_RGB32);
  QPainter painter(&image);
  PaintTrendWindow(painter, request, view, layout);
  return image;
}

bool WriteTrendWindowSvg(const std::string &path, const RenderRequest &request,
                         const TrendView &view, const TrendLayout &layout) {
  QSvgGenerator svg;
  svg.setFileName(QString::fromStdString(path));
  svg.setSize(QSize(std::max(request.widthPx, 1), std::max(request.heightPx, 1)));
  svg.setViewBox(QRect(0, 0, std::max(request.widthPx, 1), std::max(request.heightPx, 1)));
  svg.setTitle(QStringLiteral("Recscope trend"));
  QPainter painter;
  if (!painter.begin(&svg)) return false;
  PaintTrendWindow(painter, request, view, layout);
  return painter.end();
}

QImage RenderTrendImage(const RenderRequest &request) {
  if (!request.state || request.slot < 1 || request.slot > kSlotCount) return {};
  TrendView view;
  TrendLayout layout;
  PrepareRenderView(request, view, layout);
  ReduceForLayout(request, view, layout);
  return DrawTrendWindowImage(request, view, layout);
}

}  // namespace recscope
