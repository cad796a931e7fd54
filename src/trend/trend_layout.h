#pragma once
// Where the surfaces of a trend window lie, in twips, for a window size, the
// number of scale panels and the orientation. Picture2 is placed in the window;
// Picture1, the panels, the slot up-downs and the scroll bar in Picture2.
#include <array>
#include <cstdint>

namespace recscope {

struct Box {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  std::int32_t Right() const { return Left + Width; }
  std::int32_t Bottom() const { return Top + Height; }
};

constexpr std::int32_t kFirstWidth = 10000;
constexpr std::int32_t kFirstHeight = 5500;
constexpr std::int32_t kMinWidth = 6400;
constexpr std::int32_t kMinHeight = 4100;
constexpr std::int32_t kMinimisedHeight = 360;
constexpr std::int32_t kPanelExtent = 1200;  // width of a panel (height when vertical)
constexpr std::int32_t kPlotOffset = 400;    // Picture1.Top (Left when vertical)
// The plot extent across time that the start zones (516, 3250) were made for.
constexpr std::int32_t kDesignPlotExtent = 3570;
// A slot up-down as the platform draws it: room for two digits and its arrows.
constexpr std::int32_t kUpDownWidth = 600;
constexpr std::int32_t kUpDownHeight = 330;

struct TrendLayout {
  bool horizontal = true;
  std::int32_t formWidth = kFirstWidth;
  std::int32_t formHeight = kFirstHeight;
  Box TabStrip1;
  Box Picture2;                 // in the window
  Box Picture1;                 // in Picture2
  std::array<Box, 3> Picture3;  // in Picture2
  std::array<Box, 3> UpDown3;   // in Picture2
  Box Scroll;                   // HScroll1 or VScroll1, in Picture2
  Box BottomRow;                // UpDown1, UpDown2, labels and Command1, in the window
  // Plot extent across the time axis (height when horizontal, width when vertical).
  std::int32_t ValueExtent() const { return horizontal ? Picture1.Height : Picture1.Width; }
  std::int32_t TimeExtent() const { return horizontal ? Picture1.Width : Picture1.Height; }
  std::int32_t PlotOrigin() const { return horizontal ? Picture1.Top : Picture1.Left; }
};

TrendLayout LayoutTrend(std::int32_t formWidth, std::int32_t formHeight, int shownScales,
                        bool horizontal);

}  // namespace recscope
