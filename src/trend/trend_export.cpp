#include "trend/trend_export.h"

#include "trend/render_request.h"
#include "trend/trend_feed.h"
#include "trend/trend_layout.h"

namespace recscope {

namespace {

// The request, view and layout of the export's size, reduced and ready to paint.
struct Prepared {
  RenderRequest request;
  TrendView view;
  TrendLayout layout;
};

Prepared Prepare(const TrendExport &e) {
  Prepared p;
  p.request.state = e.state;
  p.request.slot = e.slot;
  p.request.widthPx = std::max(e.widthPx, 1);
  p.request.heightPx = std::max(e.heightPx, 1);
  p.request.horizontal = e.horizontal;
  p.view = *e.view;
  const auto twips = static_cast<std::int32_t>(kTwipsPerPixel);
  p.layout = LayoutTrend(p.request.widthPx * twips, p.request.heightPx * twips,
                         p.view.Group().ShownScales, e.horizontal);
  ResizeZones(p.view, e.zoneOrigin, e.zoneExtent, p.layout.PlotOrigin(), p.layout.ValueExtent());
  // A window fed from memory is exported from its feed: its slot has no level files.
  if (const TrendFeed *feed = FindTrendFeed(e.slot))
    feed->Fill(p.view, p.layout.TimeExtent());
  else
    ReduceForLayout(p.request, p.view, p.layout);
  return p;
}

}  // namespace

QImage ExportTrendImage(const TrendExport &request) {
  if (!request.state || !request.view) return {};
  Prepared p = Prepare(request);
  return DrawTrendWindowImage(p.request, p.view, p.layout);
}

bool ExportTrendFile(const TrendExport &request, const QString &path) {
  if (!request.state || !request.view || path.isEmpty()) return false;
  Prepared p = Prepare(request);
  if (path.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive))
    return WriteTrendWindowSvg(path.toStdString(), p.request, p.view, p.layout);
  return DrawTrendWindowImage(p.request, p.view, p.layout).save(path, "PNG");
}

}  // namespace recscope
