// The printed page drawn by its one routine: ink where the frame, the waves and
// the cursor lines must be, nothing but the header and frame on a page without
// data, the paper's scale, and PDF files whose pages pdftoppm renders.
#include "print/page_draw.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>

#include "../trend/trend_fixture.h"
#include "trend/wave_scale.h"

using namespace recscope;
using recscope::testing_support::MakeRecord;
using recscope::testing_support::TempFolder;
using recscope::testing_support::WriteLevels;

namespace {

QGuiApplication &App() {
  static int argc = 1;
  static char name[] = "print_render_tests";
  static char *argv[] = {name, nullptr};
  static QGuiApplication *app = new QGuiApplication(argc, argv);
  return *app;
}

constexpr std::int32_t kFirst = 1700000000;
constexpr int kRecords = 3600;
constexpr double kPx = 2.0 / 15.0;  // two pixels for each screen pixel of 15 twips

struct PageFixture : ::testing::Test {
  PageFixture() {
    App();
    state.ProgramFolder = folder.str();
    RecordSlot &slot = state.Slot(1);
    slot.Record = MakeRecord(kRecords, 4, 0, kFirst, 1);
    slot.SamplePeriod = 1;
    // Channel 1 stands at a quarter of its scale (0 to 1000), channel 2 at three
    // quarters; channels 3 and 4 are switched off.
    WriteLevels(slot.Record, folder.str(), 1, [](std::int64_t, int c) {
      std::int16_t v = c == 0 ? 250 : c == 1 ? 750 : 500;
      return std::make_pair(v, v);
    });
    InitTrendView(view, slot.Record, 1);
    view.Group().ChannelOn[2] = 0;
    view.Group().ChannelOn[3] = 0;
    source.state = &state;
    source.slot = 1;
    source.view = view;
    source.config.DLINE = 2;
    source.config.WLINE = 2;
    source.config.MLINE = 1;
    source.config.SLINE = 1;
    source.config.CURSOR = 1;
    source.printedDate = "2026/01/02";
    source.printedTime = "03:04:05";
    source.view.PrintTitle = "TITLE";
  }
  TempFolder folder;
  SharedState state;
  TrendView view;
  PrintSource source;
};

bool IsWhite(QRgb c) { return qRed(c) > 245 && qGreen(c) > 245 && qBlue(c) > 245; }
bool IsDark(QRgb c) { return qRed(c) < 80 && qGreen(c) < 80 && qBlue(c) < 80; }
bool Near(QRgb c, const QColor &want, int tolerance = 40) {
  return std::abs(qRed(c) - want.red()) <= tolerance &&
         std::abs(qGreen(c) - want.green()) <= tolerance &&
         std::abs(qBlue(c) - want.blue()) <= tolerance;
}

// Rows of column x, between y0 and y1, whose pixel is near the colour.
std::vector<int> RowsOfColour(const QImage &image, int x, int y0, int y1, const QColor &colour,
                              int tolerance = 40) {
  std::vector<int> rows;
  for (int y = std::max(0, y0); y < std::min(image.height(), y1); ++y)
    if (Near(image.pixel(x, y), colour, tolerance)) rows.push_back(y);
  return rows;
}
std::vector<int> ColumnsOfColour(const QImage &image, int y, int x0, int x1, const QColor &colour,
                                 int tolerance = 40) {
  std::vector<int> cols;
  for (int x = std::max(0, x0); x < std::min(image.width(), x1); ++x)
    if (Near(image.pixel(x, y), colour, tolerance)) cols.push_back(x);
  return cols;
}

// Where a value at `fraction` of its scale stands across the plot, in twips
// from the plot's start on the value axis: the zone of the member (as the page
// scales it from the window's plot) from its high end.
double ValueAcross(const PageGeometry &g, double fraction) {
  const double extent = g.Horizontal ? g.Plot.Height : g.Plot.Width;
  Zone zone = ResizeZone(Zone{kZoneTopStart, kZoneHeightStart}, kPlotOffset, kDesignPlotExtent,
                         kPlotOffset, static_cast<std::int32_t>(std::lround(extent)));
  if (g.Horizontal) return zone.top - 381 + (1.0 - fraction) * zone.height;
  return zone.top - kPlotOffset + fraction * zone.height;
}

QColor ChannelColour(const TrendView &view, int place) {
  return ColourOfText(view.Group().ChannelColor[place - 1]);
}

int Px(double twips) { return static_cast<int>(std::lround(twips * kPx)); }

}  // namespace

TEST_F(PageFixture, HorizontalFormHasInkAtTheFrameAndAtEachWave) {
  source.config.Orientation = kLandscape;
  const PrintPlan plan = PlanPrint(source);
  const PageGeometry &g = plan.geometry;
  ASSERT_TRUE(g.Horizontal);
  const QImage image = DrawPrintPageImage(source, plan, 0, kPx);
  EXPECT_EQ(image.width(), static_cast<int>(std::ceil(16495 * kPx)));
  EXPECT_EQ(image.height(), static_cast<int>(std::ceil(11680 * kPx)));
  // The frame: left edge at 1500, right 500 in from the page, top at FrameTop.
  const int midY = Px(g.Plot.Top + g.Plot.Height / 3);
  EXPECT_TRUE(IsDark(image.pixel(Px(1500), midY)));
  EXPECT_TRUE(IsDark(image.pixel(Px(16495 - 500), midY)));
  EXPECT_TRUE(IsDark(image.pixel(Px(8000), Px(4700))));
  EXPECT_TRUE(IsDark(image.pixel(Px(8000), Px(11680 - 500))));
  EXPECT_TRUE(IsWhite(image.pixel(Px(1500) - 10, midY + 3)) ||
              !IsDark(image.pixel(Px(1500) - 10, midY + 3)));
  // The waves: channel 1 at a quarter of its zone, channel 2 at three quarters.
  const int x = Px(g.Plot.Left + g.Plot.Width * 0.37);
  const int y1 = Px(g.Plot.Top + ValueAcross(g, 0.25));
  const int y2 = Px(g.Plot.Top + ValueAcross(g, 0.75));
  std::vector<int> rows1 =
      RowsOfColour(image, x, Px(g.Plot.Top), Px(g.Plot.Bottom()), ChannelColour(source.view, 1));
  std::vector<int> rows2 =
      RowsOfColour(image, x, Px(g.Plot.Top), Px(g.Plot.Bottom()), ChannelColour(source.view, 2));
  ASSERT_FALSE(rows1.empty());
  ASSERT_FALSE(rows2.empty());
  for (int y : rows1) EXPECT_NEAR(y, y1, 3);
  for (int y : rows2) EXPECT_NEAR(y, y2, 3);
  EXPECT_LT(y2, y1);  // the higher value stands higher
}

TEST_F(PageFixture, VerticalFormHasInkAtTheFrameAndAtEachWave) {
  source.config.Orientation = kPortrait;
  const PrintPlan plan = PlanPrint(source);
  const PageGeometry &g = plan.geometry;
  ASSERT_FALSE(g.Horizontal);
  const QImage image = DrawPrintPageImage(source, plan, 0, kPx);
  EXPECT_EQ(image.width(), static_cast<int>(std::ceil(11680 * kPx)));
  const int midY = Px(g.Plot.Top + g.Plot.Height / 2);
  EXPECT_TRUE(IsDark(image.pixel(Px(1500), midY)));
  EXPECT_TRUE(IsDark(image.pixel(Px(11680 - 500), midY)));
  EXPECT_TRUE(IsDark(image.pixel(Px(6000), Px(4700))));
  EXPECT_TRUE(IsDark(image.pixel(Px(6000), Px(16495 - 500))));
  const int y = Px(g.Plot.Top + g.Plot.Height * 0.41);
  const int x1 = Px(g.Plot.Left + ValueAcross(g, 0.25));
  const int x2 = Px(g.Plot.Left + ValueAcross(g, 0.75));
  std::vector<int> cols1 =
      ColumnsOfColour(image, y, Px(g.Plot.Left), Px(g.Plot.Right()), ChannelColour(source.view, 1));
  std::vector<int> cols2 =
      ColumnsOfColour(image, y, Px(g.Plot.Left), Px(g.Plot.Right()), ChannelColour(source.view, 2));
  ASSERT_FALSE(cols1.empty());
  ASSERT_FALSE(cols2.empty());
  for (int x : cols1) EXPECT_NEAR(x, x1, 3);
  for (int x : cols2) EXPECT_NEAR(x, x2, 3);
  EXPECT_GT(x2, x1);  // the higher value stands further right
}

TEST_F(PageFixture, RangeWithNoDataPrintsTheFrameAndHeaderOnly) {
  source.config.Orientation = kLandscape;
  source.view.DisplayStart = kFirst + kRecords + 1000;
  source.view.DisplayEnd = kFirst + kRecords + 5000;
  const PrintPlan plan = PlanPrint(source);
  const PageGeometry &g = plan.geometry;
  const QImage image = DrawPrintPageImage(source, plan, 0, kPx);
  EXPECT_TRUE(IsDark(image.pixel(Px(1500), Px(6000))));  // the frame
  int inside = 0, header = 0, below = 0;
  for (int y = Px(g.Plot.Top) + 4; y < Px(g.Plot.Bottom()) - 4; ++y)
    for (int x = Px(g.Plot.Left) + 4; x < Px(g.Plot.Right()) - 4; ++x)
      if (!IsWhite(image.pixel(x, y))) ++inside;
  for (int y = 0; y < Px(2600); ++y)
    for (int x = 0; x < Px(3900); ++x)
      if (!IsWhite(image.pixel(x, y))) ++header;
  // No list, scales or time texts: outside the header only the frame has ink.
  for (int y = Px(2600); y < image.height(); ++y)
    for (int x = 0; x < Px(1500) - 4; ++x)
      if (!IsWhite(image.pixel(x, y))) ++below;
  for (int y = Px(2000); y < Px(4200); ++y)
    for (int x = Px(3950); x < Px(9000); ++x)
      if (!IsWhite(image.pixel(x, y))) ++below;
  EXPECT_EQ(inside, 0);
  EXPECT_GT(header, 100);
  EXPECT_EQ(below, 0);
}

TEST_F(PageFixture, CursorLinesStandInCursorModeOnly) {
  source.config.Orientation = kLandscape;
  source.view.Cursor1Set = true;
  source.view.Cursor1Time = kFirst + kRecords / 2;
  const QColor cyan(0, 255, 255);
  const PrintPlan plan = PlanPrint(source);
  const PageGeometry &g = plan.geometry;
  const int y = Px(g.Plot.Top + g.Plot.Height * 0.9);
  std::vector<int> cols = ColumnsOfColour(DrawPrintPageImage(source, plan, 0, kPx), y,
                                          Px(g.Plot.Left), Px(g.Plot.Right()), cyan, 10);
  ASSERT_FALSE(cols.empty());
  const double along = 0.5 * g.Plot.Width;
  for (int x : cols) EXPECT_NEAR(x, Px(g.Plot.Left + along), 4);
  source.config.CURSOR = 0;  // flag mode, and the record has no flags
  EXPECT_TRUE(ColumnsOfColour(DrawPrintPageImage(source, PlanPrint(source), 0, kPx), y,
                              Px(g.Plot.Left), Px(g.Plot.Right()), cyan, 10)
                  .empty());
}

TEST_F(PageFixture, PaperScaleScalesTheWholePage) {
  source.config.Orientation = kPortrait;
  source.config.PaperCode = kPaperA3;
  const PrintPlan plan = PlanPrint(source);
  const QImage image = DrawPrintPageImage(source, plan, 0, kPx);
  EXPECT_EQ(image.width(), static_cast<int>(std::ceil(11680 * 1.414 * kPx)));
  EXPECT_EQ(image.height(), static_cast<int>(std::ceil(16495 * 1.414 * kPx)));
  const double s = 1.414;
  const int midY = Px((plan.geometry.Plot.Top + plan.geometry.Plot.Height / 2) * s);
  EXPECT_TRUE(IsDark(image.pixel(Px(1500 * s), midY)));
  EXPECT_TRUE(IsDark(image.pixel(Px((11680 - 500) * s), midY)));
  EXPECT_FALSE(IsDark(image.pixel(Px(1500), midY)));  // where A4's edge would be
}

namespace {

// Renders every page of a PDF with pdftoppm at `dpi`; the images in page order.
std::vector<QImage> RenderPdf(const QString &pdf, int dpi) {
  QTemporaryDir dir;
  const QString prefix = dir.filePath(QStringLiteral("page"));
  const int rc = QProcess::execute(
      QStringLiteral("pdftoppm"),
      {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-png"), pdf, prefix});
  EXPECT_EQ(rc, 0);
  QStringList names =
      QDir(dir.path()).entryList({QStringLiteral("page*.png")}, QDir::Files, QDir::Name);
  std::vector<QImage> pages;
  for (const QString &name : names) pages.push_back(QImage(dir.filePath(name)));
  return pages;
}

}  // namespace

TEST_F(PageFixture, ContinuousPdfRendersToItsPagesWithInkAtFrameAndWaves) {
  source.config.Orientation = kLandscape;
  source.config.PALL = 1;
  source.config.PrintMode = "All";
  source.config.PAG = 5;
  source.view.DisplayStart = kFirst;
  source.view.DisplayEnd = kFirst + 1200;  // a third of the record: pages at 0, 1200, 2400
  const PrintPlan plan = PlanPrint(source);
  ASSERT_EQ(plan.pages.size(), 3u);
  QTemporaryDir dir;
  const QString pdf = dir.filePath(QStringLiteral("trend.pdf"));
  ASSERT_TRUE(WritePrintPdf(pdf.toStdString(), source, plan));
  const std::vector<QImage> pages = RenderPdf(pdf, 96);
  ASSERT_EQ(pages.size(), 3u);
  const PageGeometry &g = plan.geometry;
  // At 96 dpi a pixel is 15 twips; the printable page is centred on the sheet.
  const double mx = (841.89 - 16495 / 20.0) / 2 * 96 / 72;
  const double my = (595.28 - 11680 / 20.0) / 2 * 96 / 72;
  auto X = [&](double twips) { return static_cast<int>(std::lround(mx + twips / 15)); };
  auto Y = [&](double twips) { return static_cast<int>(std::lround(my + twips / 15)); };
  for (const QImage &page : pages) {
    EXPECT_EQ(page.width(), 1123);  // A4 landscape at 96 dpi
    EXPECT_EQ(page.height(), 794);
    const int midY = Y(g.Plot.Top + g.Plot.Height / 3);
    bool frame = false;
    for (int dx = -1; dx <= 1; ++dx) frame = frame || IsDark(page.pixel(X(1500) + dx, midY));
    EXPECT_TRUE(frame);
    const int x = X(g.Plot.Left + g.Plot.Width * 0.37);
    std::vector<int> rows =
        RowsOfColour(page, x, Y(g.Plot.Top), Y(g.Plot.Bottom()), ChannelColour(source.view, 1), 60);
    ASSERT_FALSE(rows.empty());
    for (int y : rows) EXPECT_NEAR(y, Y(g.Plot.Top + ValueAcross(g, 0.25)), 3);
  }
}

// Paper codes are the platform's: B4 and B5 are the JIS sheets.
TEST(PaperCodes, PaperCodesOfTheTableMapToTheirPapersAndBack) {
  EXPECT_EQ(PrinterPageSize(8).id(), QPageSize::A3);
  EXPECT_EQ(PrinterPageSize(9).id(), QPageSize::A4);
  EXPECT_EQ(PrinterPageSize(11).id(), QPageSize::A5);
  EXPECT_EQ(PrinterPageSize(12).id(), QPageSize::JisB4);
  EXPECT_EQ(PrinterPageSize(13).id(), QPageSize::JisB5);
  for (int code : {8, 9, 11, 12, 13}) EXPECT_EQ(PrinterPaperCode(PrinterPageSize(code)), code);
  EXPECT_EQ(PrinterPaperCode(QPageSize(QPageSize::Letter)), 1);
  EXPECT_FALSE(PrinterPageSize(0).isValid());
  EXPECT_FALSE(PrinterPageSize(9999).isValid());
  EXPECT_EQ(PrinterPaperCode(QPageSize()), 0);
}

TEST_F(PageFixture, EveryPaperGivesItsSheetInThePdf) {
  struct Sheet {
    int code;
    int width, height;  // points, portrait
  };
  for (Sheet sheet :
       {Sheet{kPaperA3, 842, 1191}, Sheet{kPaperA4, 595, 842}, Sheet{kPaperA5, 420, 595},
        Sheet{kPaperB4, 729, 1032}, Sheet{kPaperB5, 516, 729},
        // Another platform code gives its own sheet; a code of no paper prints on A4.
        Sheet{1, 612, 792}, Sheet{9999, 595, 842}}) {
    source.config.PaperCode = sheet.code;
    source.config.Orientation = kPortrait;
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("paper.pdf"));
    ASSERT_TRUE(WritePrintPdf(pdf.toStdString(), source, PlanPrint(source)));
    const std::vector<QImage> pages = RenderPdf(pdf, 72);
    ASSERT_EQ(pages.size(), 1u);
    EXPECT_NEAR(pages[0].width(), sheet.width, 1) << PaperName(sheet.code);
    EXPECT_NEAR(pages[0].height(), sheet.height, 1) << PaperName(sheet.code);
  }
}

TEST(PageDoubleList, FortyEightChannelsListInTwoHalvesAboveTheChart) {
  App();
  TempFolder folder;
  SharedState state;
  state.ProgramFolder = folder.str();
  RecordSlot &slot = state.Slot(1);
  slot.Record = MakeRecord(600, 48, 0, kFirst, 1);
  slot.SamplePeriod = 1;
  WriteLevels(slot.Record, folder.str(), 1, [](std::int64_t, int c) {
    return std::make_pair<std::int16_t, std::int16_t>(static_cast<std::int16_t>(10 * c), 10 * c);
  });
  PrintSource source;
  source.state = &state;
  InitTrendView(source.view, slot.Record, 1);
  source.view.CurrentGroup = kAllChannelsGroup;
  source.config.Orientation = kPortrait;
  source.config.CURSOR = 1;
  const PrintPlan plan = PlanPrint(source);
  const PageGeometry &g = plan.geometry;
  ASSERT_TRUE(g.List.DoubleList);
  EXPECT_EQ(g.Chart.ChartTop, 7000);
  EXPECT_EQ(g.Frame.Top, 7500);
  const QImage image = DrawPrintPageImage(source, plan, 0, kPx);
  // Ink in both halves' number columns on the first and the last row, none in
  // the band between the list and the frame (no cursor is set).
  auto inkIn = [&](double x0, double x1, double y0, double y1) {
    int n = 0;
    for (int y = Px(y0); y < Px(y1); ++y)
      for (int x = Px(x0); x < Px(x1); ++x)
        if (!IsWhite(image.pixel(x, y))) ++n;
    return n;
  };
  EXPECT_GT(inkIn(3950, 4600, 2200, 2400), 0);  // CH01
  EXPECT_GT(inkIn(3950, 4600, 6800, 7000), 0);  // CH24
  EXPECT_GT(inkIn(6950, 7600, 2200, 2400), 0);  // CH25
  EXPECT_GT(inkIn(6950, 7600, 6800, 7000), 0);  // CH48
  EXPECT_EQ(inkIn(3950, 11000, 7000, 7500 - 20), 0);
}
