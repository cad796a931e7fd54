#pragma once
// A trend window's view drawn again at a size of the operator's choosing, into an
// image, a PNG file or an SVG drawing, by the same drawing routine as the window.
#include <QImage>
#include <QString>
#include <cstdint>

#include "shell/shared_state.h"
#include "trend/trend_view.h"

namespace recscope {

struct TrendExport {
  const SharedState *state = nullptr;
  int slot = 1;
  const TrendView *view = nullptr;  // the window's state: range, group, cursors, scales
  std::int32_t zoneOrigin = 0;      // the plot the view's zones are measured on
  std::int32_t zoneExtent = 0;
  bool horizontal = true;
  int widthPx = 1000;
  int heightPx = 550;
};

// The picture of the view at the export's size: the zones carried from the
// window's plot to the new one, the range reduced for the new width.
QImage ExportTrendImage(const TrendExport &request);

// Writes it to `path`: an SVG drawing when the name ends in ".svg" (any case),
// else a PNG image. False when the file cannot be written.
bool ExportTrendFile(const TrendExport &request, const QString &path);

}  // namespace recscope
