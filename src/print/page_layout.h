#pragma once
// The geometry of a printed trend page, in twips of an A4 page before the paper's
// scale: the layout numbers of the catalogue, the chart's position by the channel
// count, every block's place in both chart forms, and the ranges of the pages of a
// print. No drawing here: the page routine of the render layer draws by these.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "print/print_settings.h"

namespace recscope {

// The layout numbers, read from the catalogue by id (they are held there as text).
struct PageNumbers {
  double PreviewWidth = 0, PreviewHeight = 0;                     // 15102, 15103
  double PreviewMarginX = 0, PreviewMarginY = 0;                  // 15104, 15105
  double BottomHori = 0, BottomVer = 0;                           // 15106, 15107
  std::array<double, 3> InfoColumns{};                            // 15108..15110
  std::array<double, 5> ListColumns{};                            // 15111..15115
  std::array<double, 3> DateColumns{};                            // 15116..15118
  std::array<double, 6> ListRight{};                              // 15119..15124
  double RowHeight = 0, InfoTop = 0, TitleTop = 0, InfoStep = 0;  // 15125..15128
  double ChartTop10 = 0, FrameTop10 = 0;                          // 15129, 15130
  double ListRow = 0;                                             // 15131
  std::array<double, 6> Hori{};                                   // 15132..15137
  std::array<double, 10> Ver{};                                   // 15138..15147
  std::array<double, 11> VerScale{};                              // 15150..15160
  double FontSize = 0, TitleFontSize = 0;                         // 15200, 15201
  std::string Cursor1Label, Cursor2Label;                         // 15148, 15149
};
PageNumbers ReadPageNumbers();

// Where the chart starts for the channel list above it. `groupNo` is the view's
// group (9 for all channels), `channelCount` its channels.
struct ChartPosition {
  int K = 0;                // extra list rows the chart moves down for
  bool DoubleList = false;  // the list stands in two halves
  double ChartTop = 0;      // 4200 + K x 200
  double FrameTop = 0;      // 4700 + K x 200
};
ChartPosition ChartPositionOf(int groupNo, int channelCount);

struct PageRect {
  double Left = 0, Top = 0, Width = 0, Height = 0;
  double Right() const { return Left + Width; }
  double Bottom() const { return Top + Height; }
};

// The list block: the channels of the view with their values at the cursors (or
// flags), in one list or two halves side by side; the rows stand above ChartTop.
struct ListBlock {
  bool DoubleList = false;
  int Count = 0;          // channels listed
  int RowsPerColumn = 0;  // rows of the first half
  double HeadTop = 0;     // the heading row
  double RowTop = 0;      // the first channel row
  double RowHeight = 0;
  // Columns of a half: channel number, tag, first value, second value.
  std::array<double, 4> Left{};
  std::array<double, 4> Right{};
};
struct ListRowPlace {
  bool RightHalf = false;
  double Top = 0;
};
ListRowPlace ListRowAt(const ListBlock &list, int row);

struct PageGeometry {
  double Width = 0, Height = 0;  // the printable page by the orientation, A4 twips
  double PaperScale = 1.0;
  int Orientation = kPortrait;
  bool Horizontal = false;  // horizontal chart form (landscape), else vertical (portrait)
  ChartPosition Chart;
  PageRect Frame;          // WakuDisp
  PageRect Plot;           // where the waves go
  double ChartLength = 0;  // the plot's extent along the time axis
  // Scale panels of the shown scales, each as wide (horizontal) or as high
  // (vertical) as a screen panel; on the horizontal form they are squeezed across
  // by PanelSqueeze into the margin left of the frame.
  std::vector<PageRect> ScalePanels;
  double PanelSqueeze = 1.0;
  // Header block.
  double TitleX = 0, TitleY = 0;
  double DateLabelX = 0, DateX = 0, TimeX = 0, DateY = 0;
  double InfoLabelX = 0, InfoColonX = 0, InfoValueX = 0, InfoTop = 0, InfoStep = 0;
  double FontSize = 8, TitleFontSize = 13;  // points on A4, before the paper's scale
  ListBlock List;
  // The band between ChartTop and FrameTop that holds the cursor texts.
  PageRect CursorBand;
  // Time texts: under the frame (horizontal) or in the margin left of it (vertical).
  double TimeTextY = 0;      // horizontal form: top of the time texts
  double TimeTextRight = 0;  // vertical form: right edge of the time texts
  // The printable page on the paper: Width and Height times PaperScale.
  PageExtent OnPaper() const { return {Width * PaperScale, Height * PaperScale}; }
};

// The chart form of an orientation: landscape pages carry the horizontal form.
bool HorizontalFormOf(int orientation);

// The page of a paper, orientation, view group, its channel count and the scales
// it shows (1 to 3).
PageGeometry LayoutPage(int paperCode, int orientation, int groupNo, int channelCount,
                        int shownScales);

// The time range of one page.
struct PageRange {
  std::int32_t Start = 0;
  std::int32_t End = 0;
};

// The pages of a print of the displayed range start..end. "Screen" (or PALL 0)
// prints that range once. A continuous print starts at the display's left time
// and moves on by the step (ContinuousStep) for PAG pages (at least one), ending
// early at the page that would start after the file's last time; a step of 0
// prints one page.
std::vector<PageRange> PlanPages(const PrintConfig &config, std::int32_t displayStart,
                                 std::int32_t displayEnd, std::int32_t lastTime);

// The sample period's text of the header ("10秒"): the catalogue's text of a
// period of the time steps, else the seconds and "秒".
std::string PeriodText(std::int32_t period);

}  // namespace recscope
