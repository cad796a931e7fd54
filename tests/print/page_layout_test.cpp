#include "print/page_layout.h"

#include <gtest/gtest.h>

using namespace recscope;

TEST(PageLayout, LayoutNumbersAreReadFromTheCatalogue) {
  const PageNumbers n = ReadPageNumbers();
  EXPECT_EQ(n.PreviewWidth, 15000);
  EXPECT_EQ(n.PreviewHeight, 11520);
  EXPECT_EQ(n.PreviewMarginX, 100);
  EXPECT_EQ(n.BottomHori, 200);
  EXPECT_EQ(n.BottomVer, 200);
  EXPECT_EQ(n.InfoColumns, (std::array<double, 3>{400, 1700, 1900}));
  EXPECT_EQ(n.DateColumns, (std::array<double, 3>{8550, 9850, 10850}));
  EXPECT_EQ(n.ListColumns, (std::array<double, 5>{3950, 4650, 5650, 6700, 6950}));
  EXPECT_EQ(n.ListRight, (std::array<double, 6>{7800, 9450, 8150, 6400, 8100, 9500}));
  EXPECT_EQ(n.RowHeight, 200);
  EXPECT_EQ(n.InfoTop, 400);
  EXPECT_EQ(n.TitleTop, 100);
  EXPECT_EQ(n.InfoStep, 200);
  EXPECT_EQ(n.ChartTop10, 4200);
  EXPECT_EQ(n.FrameTop10, 4700);
  EXPECT_EQ(n.ListRow, 200);
  EXPECT_EQ(n.Hori, (std::array<double, 6>{1500, 2000, 1700, 500, 1300, 1400}));
  EXPECT_EQ(n.Ver[0], 1500);
  EXPECT_EQ(n.Ver[2], 500);
  EXPECT_EQ(n.Ver[9], 900);
  EXPECT_EQ(n.VerScale[0], 700);
  EXPECT_EQ(n.VerScale[5], 1200);
  EXPECT_EQ(n.VerScale[10], 2200);
  EXPECT_EQ(n.FontSize, 8);
  EXPECT_EQ(n.TitleFontSize, 13);
  EXPECT_EQ(n.Cursor1Label, "ｶｰｿﾙ1:");
  EXPECT_EQ(n.Cursor2Label, "ｶｰｿﾙ2:");
}

TEST(PageLayout, ChartTopForTenChannels) {
  ChartPosition p = ChartPositionOf(9, 10);
  EXPECT_EQ(p.K, 0);
  EXPECT_FALSE(p.DoubleList);
  EXPECT_EQ(p.ChartTop, 4200);
  EXPECT_EQ(p.FrameTop, 4700);
}

TEST(PageLayout, ChartTopFor24ChannelsMovesDownFourteenRows) {
  ChartPosition p = ChartPositionOf(9, 24);
  EXPECT_EQ(p.K, 14);
  EXPECT_FALSE(p.DoubleList);
  EXPECT_EQ(p.ChartTop, 4200 + 14 * 200);
  EXPECT_EQ(p.FrameTop, 4700 + 14 * 200);
}

TEST(PageLayout, ChartTopFor48ChannelsIsADoubleListOfHalfTheRows) {
  ChartPosition p = ChartPositionOf(9, 48);
  EXPECT_TRUE(p.DoubleList);
  EXPECT_EQ(p.K, 24 - 10);
  EXPECT_EQ(p.ChartTop, 7000);
  EXPECT_EQ(p.FrameTop, 7500);
}

TEST(PageLayout, ChartTopOfADoubleListAboveThirtyRowsTakesThirteenOff) {
  ChartPosition p = ChartPositionOf(9, 72);
  EXPECT_TRUE(p.DoubleList);
  EXPECT_EQ(p.K, 36 - 13);
  EXPECT_EQ(p.ChartTop, 4200 + 23 * 200);
  ChartPosition odd = ChartPositionOf(9, 31);
  EXPECT_TRUE(odd.DoubleList);
  EXPECT_EQ(odd.K, 15 - 10);
  ChartPosition thirty = ChartPositionOf(9, 30);
  EXPECT_FALSE(thirty.DoubleList);
  EXPECT_EQ(thirty.K, 20);
}

TEST(PageLayout, OtherGroupsAndSmallViewsKeepTheTenChannelChart) {
  for (int group : {1, 5, 8}) {
    ChartPosition p = ChartPositionOf(group, 10);
    EXPECT_EQ(p.ChartTop, 4200);
    EXPECT_EQ(p.FrameTop, 4700);
  }
  EXPECT_EQ(ChartPositionOf(9, 4).ChartTop, 4200);
  EXPECT_EQ(ChartPositionOf(3, 48).ChartTop, 4200);  // only the all-channels view grows
}

TEST(PageLayout, HorizontalFormFrameEdgesOnLandscapeA4) {
  PageGeometry g = LayoutPage(kPaperA4, kLandscape, 1, 4, 1);
  EXPECT_TRUE(g.Horizontal);
  EXPECT_EQ(g.Width, 16495);
  EXPECT_EQ(g.Height, 11680);
  EXPECT_EQ(g.Frame.Left, 1500);
  EXPECT_EQ(g.Frame.Right(), 16495 - 500);
  EXPECT_EQ(g.Frame.Top, 4700);
  EXPECT_EQ(g.Frame.Bottom(), 11680 - 500);
  // The waves fill the frame; the chart runs along the page's width.
  EXPECT_EQ(g.Plot.Left, g.Frame.Left);
  EXPECT_EQ(g.Plot.Bottom(), g.Frame.Bottom());
  EXPECT_EQ(g.ChartLength, 16495 - 500 - 1500);
  // One scale panel beside the frame, as wide as a screen panel.
  ASSERT_EQ(g.ScalePanels.size(), 1u);
  EXPECT_EQ(g.ScalePanels[0].Width, 1200);
  EXPECT_EQ(g.ScalePanels[0].Left, 1500 - 1200);
  EXPECT_EQ(g.PanelSqueeze, 1.0);
  EXPECT_EQ(g.TimeTextY, 11180 + 40);
}

TEST(PageLayout, VerticalFormFrameEdgesOnPortraitA4) {
  PageGeometry g = LayoutPage(kPaperA4, kPortrait, 9, 24, 2);
  EXPECT_FALSE(g.Horizontal);
  EXPECT_EQ(g.Width, 11680);
  EXPECT_EQ(g.Height, 16495);
  EXPECT_EQ(g.Frame.Left, 1500);
  EXPECT_EQ(g.Frame.Right(), 11680 - 500);
  EXPECT_EQ(g.Frame.Top, 7500);
  EXPECT_EQ(g.Frame.Bottom(), 16495 - 500);
  // Two scales at the top of the frame, 1200 each; the chart runs down under them.
  ASSERT_EQ(g.ScalePanels.size(), 2u);
  EXPECT_EQ(g.ScalePanels[1].Top, 7500 + 1200);
  EXPECT_EQ(g.Plot.Top, 7500 + 2400);
  EXPECT_EQ(g.ChartLength, 16495 - 500 - 9900);
  EXPECT_EQ(g.TimeTextRight, 1450);
}

TEST(PageLayout, ThreeScalesShareTheMarginOfTheHorizontalForm) {
  PageGeometry g = LayoutPage(kPaperA4, kLandscape, 1, 10, 3);
  ASSERT_EQ(g.ScalePanels.size(), 3u);
  EXPECT_DOUBLE_EQ(g.PanelSqueeze, 1400.0 / 3600.0);
  EXPECT_DOUBLE_EQ(g.ScalePanels[2].Left, 100);  // the margin's left end
}

TEST(PageLayout, PaperScaleOfEveryPaper) {
  EXPECT_DOUBLE_EQ(LayoutPage(8, kPortrait, 1, 10, 1).PaperScale, 1.414);
  EXPECT_DOUBLE_EQ(LayoutPage(11, kPortrait, 1, 10, 1).PaperScale, 0.704);
  EXPECT_DOUBLE_EQ(LayoutPage(12, kPortrait, 1, 10, 1).PaperScale, 1.19);
  EXPECT_DOUBLE_EQ(LayoutPage(13, kPortrait, 1, 10, 1).PaperScale, 0.865);
  EXPECT_DOUBLE_EQ(LayoutPage(9, kPortrait, 1, 10, 1).PaperScale, 1.0);
  // The layout numbers stay those of A4: the scale is applied when drawing.
  EXPECT_EQ(LayoutPage(8, kPortrait, 1, 10, 1).Frame.Left, 1500);
}

TEST(PageLayout, HeaderBlockGeometry) {
  PageGeometry g = LayoutPage(kPaperA4, kPortrait, 1, 10, 1);
  EXPECT_EQ(g.TitleX, 400);
  EXPECT_EQ(g.TitleY, 100);
  EXPECT_EQ(g.DateLabelX, 8550);
  EXPECT_EQ(g.DateX, 9850);
  EXPECT_EQ(g.TimeX, 10850);
  EXPECT_EQ(g.DateY, 200);
  EXPECT_EQ(g.InfoLabelX, 400);
  EXPECT_EQ(g.InfoColonX, 1700);
  EXPECT_EQ(g.InfoValueX, 1900);
  EXPECT_EQ(g.InfoTop, 400);
  EXPECT_EQ(g.InfoStep, 200);
  EXPECT_EQ(g.FontSize, 8);
  EXPECT_EQ(g.TitleFontSize, 13);
}

TEST(PageLayout, ListRowsStandAboveTheChart) {
  PageGeometry ten = LayoutPage(kPaperA4, kPortrait, 9, 10, 1);
  EXPECT_EQ(ten.List.RowTop, 4200 - 10 * 200);
  EXPECT_EQ(ten.List.HeadTop, 4200 - 11 * 200);
  EXPECT_EQ(ListRowAt(ten.List, 9).Top + 200, ten.Chart.ChartTop);
  EXPECT_EQ(ten.List.Left, (std::array<double, 4>{3950, 4650, 5650, 6700}));

  PageGeometry many = LayoutPage(kPaperA4, kPortrait, 9, 48, 1);
  EXPECT_TRUE(many.List.DoubleList);
  EXPECT_EQ(many.List.RowsPerColumn, 24);
  EXPECT_EQ(many.List.RowTop, 7000 - 24 * 200);
  ListRowPlace first = ListRowAt(many.List, 0);
  ListRowPlace right = ListRowAt(many.List, 24);
  EXPECT_FALSE(first.RightHalf);
  EXPECT_TRUE(right.RightHalf);
  EXPECT_EQ(right.Top, first.Top);
  EXPECT_EQ(ListRowAt(many.List, 47).Top + 200, 7000);
  EXPECT_EQ(many.List.Right[0], 6950);
}

namespace {
PrintConfig Config(int pall, int pag) {
  PrintConfig c;
  c.PALL = pall;
  c.PrintMode = PrintModeOf(pall);
  c.PAG = pag;
  return c;
}
}  // namespace

TEST(PageLayout, DisplayOnlyPrintIsOnePageOfTheDisplayedRange) {
  auto pages = PlanPages(Config(0, 5), 1000, 4600, 100000);
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_EQ(pages[0].Start, 1000);
  EXPECT_EQ(pages[0].End, 4600);
}

TEST(PageLayout, ContinuousPrintStepsByTheDisplayWidthUpToPag) {
  auto pages = PlanPages(Config(1, 3), 1000, 4600, 100000);
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_EQ(pages[1].Start, 4600);
  EXPECT_EQ(pages[1].End, 8200);
  EXPECT_EQ(pages[2].Start, 8200);
  EXPECT_EQ(pages[2].End, 11800);
}

TEST(PageLayout, ContinuousPrintBySetTimeKeepsTheDisplayWidth) {
  PrintConfig c = Config(2, 4);
  c.HOR = 1;
  c.MIN = 30;
  auto pages = PlanPages(c, 0, 3600, 100000);
  ASSERT_EQ(pages.size(), 4u);
  EXPECT_EQ(pages[1].Start, 5400);
  EXPECT_EQ(pages[1].End, 9000);
  EXPECT_EQ(pages[3].Start, 16200);
}

TEST(PageLayout, ContinuousPrintEndsWithTheData) {
  auto pages = PlanPages(Config(1, 10), 0, 3600, 9000);
  ASSERT_EQ(pages.size(), 3u);  // pages start at 0, 3600 and 7200; 10800 is past the end
  EXPECT_EQ(pages.back().Start, 7200);
}

TEST(PageLayout, NoPagesOrNoStepPrintsOnePage) {
  EXPECT_EQ(PlanPages(Config(1, 0), 0, 3600, 100000).size(), 1u);
  PrintConfig zero = Config(2, 5);
  EXPECT_EQ(PlanPages(zero, 0, 3600, 100000).size(), 1u);  // DAY, HOR and MIN all 0
}

TEST(PageLayout, PeriodTextOfTheHeader) {
  EXPECT_EQ(PeriodText(1), "1秒");
  EXPECT_EQ(PeriodText(10), "10秒");
  EXPECT_EQ(PeriodText(60), "1分");
  EXPECT_EQ(PeriodText(3600), "1時");
  EXPECT_EQ(PeriodText(86400), "24時");
  EXPECT_EQ(PeriodText(7), "7秒");
}
