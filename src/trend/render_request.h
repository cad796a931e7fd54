#pragma once
// A trend of an open slot drawn into an image, as the window would show it at a
// given size and state: for the batch command, the tests and the benchmarks.
#include <QImage>
#include <cstdint>
#include <optional>
#include <string>

#include "shell/shared_state.h"
#include "trend/trend_draw.h"

namespace recscope {

struct RenderRequest {
  const SharedState *state = nullptr;
  int slot = 1;
  int widthPx = 1000;
  int heightPx = 550;
  int group = 0;  // 0: the first group with members
  std::optional<std::int32_t> from;
  std::optional<std::int32_t> to;
  bool horizontal = true;
  int scales = 1;
  std::optional<std::int32_t> cursor1;
  std::optional<std::int32_t> cursor2;
  int waveMode = 1;
  double devicePixelRatio = 1.0;
};

// What one drawing of a slot's trend needs: the slot's record, events and flags,
// the view and layout, and the shared switches and formats.
TrendScene SlotScene(const SharedState &state, int slot, const TrendView &view,
                     const TrendLayout &layout);

// The view state and layout of a request: groups, range, cursors, scales.
void PrepareRenderView(const RenderRequest &request, TrendView &view, TrendLayout &layout);

// Reduction of the view's range for the layout's plot.
void ReduceForLayout(const RenderRequest &request, TrendView &view, const TrendLayout &layout);

// The window's picture, the tab captions and Picture2 with everything on it,
// painted on any device whose units are pixels of the request's size.
void PaintTrendWindow(QPainter &painter, const RenderRequest &request, const TrendView &view,
                      const TrendLayout &layout);

// The same into an image, and into an SVG file (false when it cannot be written).
bool WriteTrendWindowSvg(const std::string &path, const RenderRequest &request,
                         const TrendView &view, const TrendLayout &layout);
QImage DrawTrendWindowImage(const RenderRequest &request, const TrendView &view,
                            const TrendLayout &layout);

QImage RenderTrendImage(const RenderRequest &request);

}  // namespace recscope
