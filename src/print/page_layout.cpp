#include "print/page_layout.h"

#include <algorithm>

#include "shell/catalogue.h"

namespace recscope {

namespace {

template <std::size_t N>
void ReadRun(std::array<double, N> &out, int firstId) {
  for (std::size_t i = 0; i < N; ++i) out[i] = MessageNumber(firstId + static_cast<int>(i));
}

// The period texts of the catalogue (" 1秒" .. "24時") stand for these periods.
constexpr std::array<std::int32_t, 21> kPeriodSteps = {
    1,   2,    3,    5,    10,   20,    30,    60,    120,   180,  300,
    600, 1200, 1800, 3600, 7200, 10800, 14400, 21600, 43200, 86400};
constexpr int kPeriodTextFirst = 15060;

}  // namespace

PageNumbers ReadPageNumbers() {
  PageNumbers n;
  n.PreviewWidth = MessageNumber(15102);
  n.PreviewHeight = MessageNumber(15103);
  n.PreviewMarginX = MessageNumber(15104);
  n.PreviewMarginY = MessageNumber(15105);
  n.BottomHori = MessageNumber(15106);
  n.BottomVer = MessageNumber(15107);
  ReadRun(n.InfoColumns, 15108);
  ReadRun(n.ListColumns, 15111);
  ReadRun(n.DateColumns, 15116);
  ReadRun(n.ListRight, 15119);
  n.RowHeight = MessageNumber(15125);
  n.InfoTop = MessageNumber(15126);
  n.TitleTop = MessageNumber(15127);
  n.InfoStep = MessageNumber(15128);
  n.ChartTop10 = MessageNumber(15129);
  n.FrameTop10 = MessageNumber(15130);
  n.ListRow = MessageNumber(15131);
  ReadRun(n.Hori, 15132);
  ReadRun(n.Ver, 15138);
  ReadRun(n.VerScale, 15150);
  n.FontSize = MessageNumber(15200, 8);
  n.TitleFontSize = MessageNumber(15201, 13);
  n.Cursor1Label = GetMessageText(15148);
  n.Cursor2Label = GetMessageText(15149);
  return n;
}

ChartPosition ChartPositionOf(int groupNo, int channelCount) {
  const PageNumbers numbers = ReadPageNumbers();
  ChartPosition p;
  const int n = channelCount;
  if (groupNo == 9 && n > 10) {
    if (n > 30) {
      p.DoubleList = true;
      const int half = n / 2;
      p.K = half <= 30 ? half - 10 : half - 13;
    } else {
      p.K = n - 10;
    }
  }
  p.ChartTop = numbers.ChartTop10 + p.K * numbers.ListRow;
  p.FrameTop = numbers.FrameTop10 + p.K * numbers.ListRow;
  return p;
}

ListRowPlace ListRowAt(const ListBlock &list, int row) {
  ListRowPlace place;
  int line = row;
  if (list.DoubleList && row >= list.RowsPerColumn) {
    place.RightHalf = true;
    line = row - list.RowsPerColumn;
  }
  place.Top = list.RowTop + line * list.RowHeight;
  return place;
}

bool HorizontalFormOf(int orientation) { return orientation == kLandscape; }

PageGeometry LayoutPage(int paperCode, int orientation, int groupNo, int channelCount,
                        int shownScales) {
  const PageNumbers n = ReadPageNumbers();
  PageGeometry g;
  g.Orientation = orientation == kLandscape ? kLandscape : kPortrait;
  g.Horizontal = HorizontalFormOf(g.Orientation);
  g.PaperScale = PaperScale(paperCode);
  g.Width = g.Horizontal ? kA4PageHeight : kA4PageWidth;
  g.Height = g.Horizontal ? kA4PageWidth : kA4PageHeight;
  g.Chart = ChartPositionOf(groupNo, channelCount);
  g.FontSize = n.FontSize;
  g.TitleFontSize = n.TitleFontSize;
  const int shown = std::clamp(shownScales, 1, 3);

  // Header block.
  g.TitleX = n.InfoColumns[0];
  g.TitleY = n.TitleTop;
  g.DateLabelX = n.DateColumns[0];
  g.DateX = n.DateColumns[1];
  g.TimeX = n.DateColumns[2];
  g.DateY = n.RowHeight;
  g.InfoLabelX = n.InfoColumns[0];
  g.InfoColonX = n.InfoColumns[1];
  g.InfoValueX = n.InfoColumns[2];
  g.InfoTop = n.InfoTop;
  g.InfoStep = n.InfoStep;

  // List block: its rows stand just above ChartTop, the heading row over them.
  ListBlock &list = g.List;
  list.DoubleList = g.Chart.DoubleList;
  list.Count = std::max(channelCount, 0);
  list.RowsPerColumn = list.DoubleList ? (list.Count + 1) / 2 : list.Count;
  list.RowHeight = n.ListRow;
  list.RowTop = g.Chart.ChartTop - std::max(list.RowsPerColumn, 10) * n.ListRow;
  list.HeadTop = list.RowTop - n.ListRow;
  list.Left = {n.ListColumns[0], n.ListColumns[1], n.ListColumns[2], n.ListColumns[3]};
  const double shift = n.ListColumns[4] - n.ListColumns[0];
  for (std::size_t i = 0; i < 4; ++i) list.Right[i] = list.Left[i] + shift;

  g.CursorBand = {0, g.Chart.ChartTop, g.Width, g.Chart.FrameTop - g.Chart.ChartTop};

  if (g.Horizontal) {
    // The frame: left 1500, right and bottom 500 in from the page's edges.
    const double left = n.Hori[0];
    const double right = n.Hori[3];
    g.Frame = {left, g.Chart.FrameTop, g.Width - right - left, g.Height - right - g.Chart.FrameTop};
    g.Plot = g.Frame;
    g.ChartLength = g.Plot.Width;
    // The scales stand side by side in the margin left of the frame.
    const double room = left - n.PreviewMarginX;
    const double panel = n.VerScale[5];  // a screen panel's extent
    g.PanelSqueeze = std::min(1.0, room / (shown * panel));
    for (int i = 0; i < shown; ++i) {
      // The first scale stands next to the frame.
      const double x = left - (i + 1) * panel * g.PanelSqueeze;
      g.ScalePanels.push_back({x, g.Plot.Top, panel, g.Plot.Height});
    }
    g.TimeTextY = g.Frame.Bottom() + 40;
  } else {
    const double left = n.Ver[0];
    const double edge = n.Ver[2];
    g.Frame = {left, g.Chart.FrameTop, g.Width - edge - left, g.Height - edge - g.Chart.FrameTop};
    // The scales stand one under another at the top of the frame, the plot under them.
    const double panel = n.VerScale[5];
    for (int i = 0; i < shown; ++i)
      g.ScalePanels.push_back({g.Frame.Left, g.Frame.Top + i * panel, g.Frame.Width, panel});
    const double plotTop = g.Frame.Top + shown * panel;
    g.Plot = {g.Frame.Left, plotTop, g.Frame.Width, g.Frame.Bottom() - plotTop};
    g.ChartLength = g.Plot.Height;
    g.TimeTextRight = g.Frame.Left - 50;
  }
  return g;
}

std::vector<PageRange> PlanPages(const PrintConfig &config, std::int32_t displayStart,
                                 std::int32_t displayEnd, std::int32_t lastTime) {
  std::vector<PageRange> pages;
  const std::int64_t width = static_cast<std::int64_t>(displayEnd) - displayStart;
  pages.push_back({displayStart, displayEnd});
  const std::int64_t step = ContinuousStep(config, width);
  if (step <= 0) return pages;
  const int count = std::max(config.PAG, 1);
  for (int page = 1; page < count; ++page) {
    const std::int64_t start = displayStart + page * step;
    const std::int64_t end = start + width;
    if (start > lastTime || end > INT32_MAX) break;
    pages.push_back({static_cast<std::int32_t>(start), static_cast<std::int32_t>(end)});
  }
  return pages;
}

std::string PeriodText(std::int32_t period) {
  for (std::size_t i = 0; i < kPeriodSteps.size(); ++i)
    if (kPeriodSteps[i] == period) {
      std::string text = GetMessageText(kPeriodTextFirst + static_cast<int>(i));
      const std::size_t first = text.find_first_not_of(' ');
      return first == std::string::npos ? text : text.substr(first);
    }
  return std::to_string(period) + "秒";
}

}  // namespace recscope
