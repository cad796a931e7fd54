#include "trend/trend_layout.h"

#include <algorithm>

namespace recscope {

namespace {

constexpr std::int32_t kPanelStart = 60;
constexpr std::int32_t kTabRow = 360;
constexpr std::int32_t kScrollThickness = 255;

}  // namespace

TrendLayout LayoutTrend(std::int32_t formWidth, std::int32_t formHeight, int shownScales,
                        bool horizontal) {
  TrendLayout l;
  l.horizontal = horizontal;
  l.formWidth = formWidth;
  l.formHeight = formHeight;
  int shown = std::max(shownScales, 1);
  l.TabStrip1 = {60, 0, formWidth - 120, std::max(formHeight - 400, 2085)};
  l.Picture2 = {150, kTabRow + 40, formWidth - 300, std::max(formHeight - 820, 1695)};
  const Box &p2 = l.Picture2;

  if (horizontal) {
    std::int32_t plotHeight = std::max(p2.Height - 1110, 695);
    for (int i = 0; i < 3; ++i)
      l.Picture3[i] = {kPanelStart + i * kPanelExtent, kPlotOffset, kPanelExtent, plotHeight};
    l.Picture1 = {l.Picture3[0].Left + shown * kPanelExtent + 10, kPlotOffset,
                  p2.Width - 1840 - (shown - 1) * kPanelExtent, plotHeight};
    // Each slot up-down stands under the right end of its panel, clear of the
    // plot's first time label, with its "No" text to the left of it.
    for (int i = 0; i < 3; ++i)
      l.UpDown3[i] = {l.Picture3[i].Right() - kUpDownWidth - 40, l.Picture1.Bottom() + 60,
                      kUpDownWidth, kUpDownHeight};
    l.Scroll = {l.Picture1.Left, p2.Height - kScrollThickness, l.Picture1.Width, kScrollThickness};
  } else {
    std::int32_t plotWidth = std::max(p2.Width - 1110, 695);
    for (int i = 0; i < 3; ++i)
      l.Picture3[i] = {kPlotOffset, kPanelStart + i * kPanelExtent, plotWidth, kPanelExtent};
    l.Picture1 = {kPlotOffset, l.Picture3[0].Top + shown * kPanelExtent + 10, plotWidth,
                  p2.Height - 1340 - (shown - 1) * kPanelExtent};
    // Right of the plot, beside its panel, inside Picture2.
    for (int i = 0; i < 3; ++i)
      l.UpDown3[i] = {l.Picture1.Right() + 60, l.Picture3[i].Top + 500, kUpDownWidth,
                      kUpDownHeight};
    l.Scroll = {l.Picture1.Right() + 100, l.Picture1.Top, kScrollThickness, l.Picture1.Height};
  }
  l.BottomRow = {p2.Left, p2.Bottom() + 20, p2.Width, 360};
  return l;
}

}  // namespace recscope
