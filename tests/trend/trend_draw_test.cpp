#include "trend/trend_draw.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <cmath>

#include "shell/shared_state.h"
#include "text_recorder.h"
#include "trend/render_request.h"
#include "trend/scale_panel.h"
#include "trend/scale_steps.h"
#include "trend/time_axis.h"
#include "trend/wave_scale.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::DrawnText;
using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::TextRecorder;
using testing_support::WriteLevels;

QGuiApplication &App() {
  static int argc = 1;
  static char name[] = "trend_draw_test";
  static char *argv[] = {name, nullptr};
  // Kept to the end of the process: destroying it among the static objects at
  // exit tears down the input devices twice.
  static QGuiApplication *app = new QGuiApplication(argc, argv);
  return *app;
}

const QColor kRed(255, 0, 0);

// True when a pixel within one of (px, py) has the colour: aliased lines fall on
// one side or the other of a twip position that lies between two pixels.
bool ColourNear(const QImage &image, double twipX, double twipY, const QColor &colour) {
  int px = static_cast<int>(std::floor(twipX / kTwipsPerPixel));
  int py = static_cast<int>(std::floor(twipY / kTwipsPerPixel));
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx) {
      int x = px + dx, y = py + dy;
      if (x < 0 || y < 0 || x >= image.width() || y >= image.height()) continue;
      if (image.pixelColor(x, y) == colour) return true;
    }
  return false;
}

// One analog channel, scale 0..1000, and a view with `columns` data columns
// filled by hand.
struct Scene {
  RecordFileInfo info = MakeRecord(1000, 1, 0, 0, 1);
  AlarmFileInfo alarms;
  std::vector<FlagEvent> flags;
  TrendView view;
  TrendScene scene;
  Scene(int columns, int columnCount, bool horizontal = true) {
    App();
    InitTrendView(view, info, 1);
    scene.info = &info;
    scene.alarms = &alarms;
    scene.flags = &flags;
    scene.view = &view;
    scene.layout = LayoutTrend(15000, 8250, 1, horizontal);
    if (!horizontal)  // the start zones belong to the horizontal plot's height
      ResizeZones(view, kPlotOffset, kDesignPlotExtent, scene.layout.PlotOrigin(),
                  scene.layout.ValueExtent());
    std::int32_t P = scene.layout.TimeExtent() / 15;
    view.PlotSpan = (P - 1) * 15;
    view.ColumnCount = columnCount;
    view.DataColumnCount = columns;
    view.DispRows = 2;
    view.DispData.assign(static_cast<std::size_t>(columns) * 2, 500);
    view.DisplayStart = 0;
    view.DisplayEnd = 999;
  }
  void Set(int column, std::int16_t lo, std::int16_t hi) {
    view.DispData[column * 2] = lo;
    view.DispData[column * 2 + 1] = hi;
  }
  WaveScale Scale() const {
    return MakeWaveScale(info, 1, view.Group().ZoneTop[0], view.Group().ZoneHeight[0],
                         scene.layout.Picture1.Height);
  }
  const Box &Plot() const { return scene.layout.Picture1; }
};

TEST(TrendDraw, WaveStandsAtTheColumnAndValuePositions) {
  Scene s(100, 100);
  s.Set(40, 250, 250);
  QImage image = DrawTrendImage(s.scene);
  WaveScale scale = s.Scale();
  double x = ColumnPosition(s.view.PlotSpan, 15, 100, 40);
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + x, s.Plot().Top + WaveHeight(scale, 250), kRed));
  EXPECT_TRUE(
      ColourNear(image, s.Plot().Left + x + 300, s.Plot().Top + WaveHeight(scale, 500), kRed));
  // Nothing of the channel a quarter of the zone away from its line.
  EXPECT_FALSE(
      ColourNear(image, s.Plot().Left + x + 300, s.Plot().Top + WaveHeight(scale, 750), kRed));
}

TEST(TrendDraw, OverRangeAndBurnoutAreClampedToThePlotEdges) {
  Scene s(100, 100);
  s.Set(20, 32767, 32767);
  s.Set(60, -32768, -32768);
  QImage image = DrawTrendImage(s.scene);
  WaveScale scale = s.Scale();
  double x20 = ColumnPosition(s.view.PlotSpan, 15, 100, 20);
  double x60 = ColumnPosition(s.view.PlotSpan, 15, 100, 60);
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + x20, s.Plot().Top, kRed));
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + x60, s.Plot().Top + scale.Hmax, kRed));
}

TEST(TrendDraw, ColumnWithEqualMinimumAndMaximumDrawsAPointInModeM) {
  Scene s(1, 100);
  QImage envelope = DrawTrendImage(s.scene);
  WaveScale scale = s.Scale();
  double y = s.Plot().Top + WaveHeight(scale, 500);
  EXPECT_TRUE(ColourNear(envelope, s.Plot().Left, y, kRed));
  s.view.WaveMode = 2;  // "A": only the mid line, which needs two columns
  QImage mid = DrawTrendImage(s.scene);
  EXPECT_FALSE(ColourNear(mid, s.Plot().Left, y, kRed));
}

TEST(TrendDraw, LinesStopWhereTheDataStops) {
  Scene s(50, 100);
  QImage image = DrawTrendImage(s.scene);
  WaveScale scale = s.Scale();
  double y = s.Plot().Top + WaveHeight(scale, 500);
  double last = ColumnPosition(s.view.PlotSpan, 15, 100, 49);
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + last - 30, y, kRed));
  EXPECT_FALSE(ColourNear(image, s.Plot().Left + last + 300, y, kRed));
}

TEST(TrendDraw, UpsideDownScaleDrawsScaleLowAtTheBottom) {
  Scene s(100, 100);
  s.info.Channels[0].ScaleLow = 1000;
  s.info.Channels[0].ScaleHigh = 0;
  for (int c = 0; c < 100; ++c) s.Set(c, 900, 900);
  QImage image = DrawTrendImage(s.scene);
  WaveScale scale = s.Scale();
  EXPECT_EQ(WaveHeight(scale, 900), 135 + 2925);
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + 3000, s.Plot().Top + 135 + 2925, kRed));
}

TEST(TrendDraw, TimeTicksStandOnRoundClockValues) {
  Scene s(0, 100);
  s.view.DisplayStart = 0;
  s.view.DisplayEnd = 3600;  // an hour: N labels, ticks on round minutes
  QImage image = DrawTrendImage(s.scene);
  QColor grid(0x50, 0x50, 0x50);
  std::int64_t N = static_cast<std::int64_t>((s.view.PlotSpan - 1700.0) / 1700.0);
  ASSERT_GE(N, 2);
  std::int32_t step = 0;
  for (std::int32_t entry : IntervalTable)
    if (3600 / entry <= N) {
      step = entry;
      break;
    }
  ASSERT_GT(step, 0);
  // A tick at the first multiple of the step, found on a row free of the grid lines
  // of the value scale.
  double x = TimeToPosition(s.view, step);
  double y = s.Plot().Top + 50;
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + x, y, grid));
  EXPECT_FALSE(ColourNear(image, s.Plot().Left + x + 150, y, grid));
}

TEST(TrendDraw, CursorLineAtItsTime) {
  Scene s(0, 100);
  s.view.Cursor1Set = true;
  s.view.Cursor1Time = 333;
  QImage image = DrawTrendImage(s.scene);
  double x = TimeToPosition(s.view, 333);
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + x, s.Plot().Top + 1500, QColor(0, 255, 255)));
  s.view.Cursor1Time = 5000;  // outside the range: no line
  QImage none = DrawTrendImage(s.scene);
  EXPECT_FALSE(ColourNear(none, s.Plot().Left + x, s.Plot().Top + 1500, QColor(0, 255, 255)));
}

TEST(TrendDraw, AlarmMarkAndTextBoxComeBackAsPlacement) {
  Scene s(0, 100);
  AlarmEvent alarm;
  alarm.Time = 500;
  alarm.ChannelNo = 1;
  alarm.AlarmNo = 2;
  alarm.AlarmAction = 1;
  alarm.AlarmState = 1;
  alarm.Shown = -1;
  s.alarms.Alarms.push_back(alarm);
  TrendPlacement placed;
  QImage image = DrawTrendImage(s.scene, 1.0, &placed);
  double x = TimeToPosition(s.view, 500);
  EXPECT_TRUE(ColourNear(image, s.Plot().Left + x, s.Plot().Top + 10, kRed));
  ASSERT_EQ(placed.eventTexts.size(), 1u);
  EXPECT_EQ(placed.eventTexts[0].kind, MarkKind::kAlarm);
  EXPECT_EQ(placed.eventTexts[0].row, 0u);
  const TextBox &box = placed.eventTexts[0].box;
  EXPECT_EQ(box.Left, x + 50);
  EXPECT_GT(box.Right, box.Left);
  EXPECT_GT(box.Bottom, box.Top);
  s.scene.showAlarms = false;
  QImage hidden = DrawTrendImage(s.scene, 1.0, &placed);
  EXPECT_FALSE(ColourNear(hidden, s.Plot().Left + x, s.Plot().Top + 10, kRed));
  EXPECT_TRUE(placed.eventTexts.empty());
}

// Two surfaces of the same record keep their own boxes: a drawing at another
// size places the text elsewhere without touching the first one's.
TEST(TrendDraw, EachSurfaceKeepsItsOwnPlacement) {
  Scene s(0, 100);
  AlarmEvent alarm;
  alarm.Time = 500;
  alarm.Shown = -1;
  s.alarms.Alarms.push_back(alarm);
  TrendPlacement screen, paper;
  DrawTrendImage(s.scene, 1.0, &screen);
  TrendScene wide = s.scene;
  wide.layout = LayoutTrend(30000, 8250, 1, true);
  TrendView wideView = s.view;
  wideView.PlotSpan = (wide.layout.Picture1.Width / 15 - 1) * 15;
  wide.view = &wideView;
  DrawTrendImage(wide, 1.0, &paper);
  ASSERT_EQ(screen.eventTexts.size(), 1u);
  ASSERT_EQ(paper.eventTexts.size(), 1u);
  EXPECT_EQ(screen.eventTexts[0].box.Left, TimeToPosition(s.view, 500) + 50);
  EXPECT_EQ(paper.eventTexts[0].box.Left, TimeToPosition(wideView, 500) + 50);
  EXPECT_NE(screen.eventTexts[0].box.Left, paper.eventTexts[0].box.Left);
}

TEST(TrendDraw, HighDensityImageHasTwiceThePixels) {
  Scene s(10, 100);
  QImage one = DrawTrendImage(s.scene, 1.0);
  QImage two = DrawTrendImage(s.scene, 2.0);
  EXPECT_EQ(two.width(), one.width() * 2);
  EXPECT_EQ(two.devicePixelRatio(), 2.0);
}

TEST(RenderTrendImage, DrawsAHandMadeSlotWithLevelFiles) {
  App();
  TempFolder home;
  SharedState state;
  state.ProgramFolder = home.str();
  RecordFileInfo info = MakeRecord(20000, 3, 1, 0, 1);
  WriteLevels(info, home.str(), 2, [](std::int64_t r, int c) {
    std::int16_t v = static_cast<std::int16_t>(c == 3 ? (r / 500) % 2 : 500);
    return std::make_pair(v, v);
  });
  state.Slot(2).Record = info;
  state.Slot(2).SamplePeriod = 1;
  RenderRequest request;
  request.state = &state;
  request.slot = 2;
  QImage image = RenderTrendImage(request);
  ASSERT_EQ(image.width(), 1000);
  ASSERT_EQ(image.height(), 550);
  // Channels 1 to 3 all stand at 500 of 0..1000; channel 3 (magenta) is drawn last.
  TrendView view;
  TrendLayout layout;
  PrepareRenderView(request, view, layout);
  WaveScale scale = MakeWaveScale(info, 1, view.Group().ZoneTop[0], view.Group().ZoneHeight[0],
                                  layout.Picture1.Height);
  double x = layout.Picture2.Left + layout.Picture1.Left + layout.Picture1.Width / 2.0;
  double y = layout.Picture2.Top + layout.Picture1.Top + WaveHeight(scale, 500);
  image.save(QString::fromUtf8(RECSCOPE_BINARY_DIR "/trend_render_sample.png"));
  EXPECT_TRUE(ColourNear(image, x, y, QColor(255, 0, 255)));
}

const QColor kGrid(0x50, 0x50, 0x50);
const QColor kCyan(0, 255, 255);

// Where the value grid and the panels measure from: the zone of slot 0, in the
// plot's own coordinates across the time axis (YT the high end, YB the low end
// of a horizontal plot; the low and high ends from the left of a vertical one).
struct GridEnds {
  double YT, YB;
};
GridEnds GridEndsOf(const Scene &s) {
  Zone zone = SlotZone(s.view, 0);
  const Box &plot = s.scene.layout.Picture1;
  double start = s.scene.layout.horizontal ? plot.Top : plot.Left;
  double YT = std::floor(zone.top - start + 20);
  return {YT, std::floor(zone.height + YT)};
}

TEST(TrendDrawVertical, WaveStandsAtTheValueAcrossAndTheColumnDown) {
  Scene s(60, 100, false);  // data in the lower 60 columns
  s.Set(40, 250, 250);
  QImage image = DrawTrendImage(s.scene);
  const Box &plot = s.Plot();
  const TrendGroup &group = s.view.Group();
  const double H = group.ZoneHeight[0];
  const std::int32_t offset = group.ZoneTop[0] - plot.Left;
  const std::int32_t hmax = plot.Width - 30;
  auto xOf = [&](int v) { return plot.Left + WaveX(0, 1000, H, offset, hmax, v); };
  auto yOf = [&](int column) {
    return plot.Top + s.view.PlotSpan - ColumnPosition(s.view.PlotSpan, 15, 100, column);
  };
  // The value 250 lies a quarter of the zone from its left end.
  EXPECT_NEAR(xOf(250) - plot.Left, offset + H / 4, 1.0);
  EXPECT_TRUE(ColourNear(image, xOf(250), yOf(40), kRed));
  EXPECT_TRUE(ColourNear(image, xOf(500), yOf(50), kRed));
  EXPECT_FALSE(ColourNear(image, xOf(750), yOf(50), kRed));
  // Time runs upwards: the first column is at the bottom of the plot, and the
  // lines stop where the data stops, below the top.
  EXPECT_TRUE(ColourNear(image, xOf(500), plot.Top + s.view.PlotSpan, kRed));
  EXPECT_FALSE(ColourNear(image, xOf(500), plot.Top + 30, kRed));
}

TEST(TrendDrawVertical, TimeTicksRunAcrossThePlotUpwards) {
  Scene s(0, 100, false);
  s.view.DisplayStart = 0;
  s.view.DisplayEnd = 3600;
  QImage image = DrawTrendImage(s.scene);
  std::int64_t N = static_cast<std::int64_t>((s.view.PlotSpan - 1700.0) / 1700.0);
  ASSERT_GE(N, 2);
  std::int32_t step = 0;
  for (std::int32_t entry : IntervalTable)
    if (3600 / entry <= N) {
      step = entry;
      break;
    }
  ASSERT_GT(step, 0);
  const Box &plot = s.Plot();
  // Between two value grid lines (every 100 raw units), at 50.
  GridEnds ends = GridEndsOf(s);
  double x = plot.Left + ends.YT + 50 * (ends.YB - ends.YT) / 1000;
  double y = plot.Top + s.view.PlotSpan - TimeToPosition(s.view, step);
  EXPECT_TRUE(ColourNear(image, x, y, kGrid));
  EXPECT_FALSE(ColourNear(image, x, y - 150, kGrid));
  EXPECT_FALSE(ColourNear(image, x, y + 150, kGrid));
  // The tick stands for a later time than the start, so above the bottom.
  EXPECT_LT(y, plot.Top + s.view.PlotSpan - 300);
}

TEST(TrendDrawVertical, AlarmLineRunsAcrossAtItsTimeWithTheMarkLeftOfThePlot) {
  Scene s(0, 100, false);
  AlarmEvent alarm;
  alarm.Time = 300;
  alarm.ChannelNo = 1;
  alarm.AlarmNo = 1;
  alarm.AlarmAction = 1;
  alarm.AlarmState = 1;
  s.alarms.Alarms.push_back(alarm);
  s.view.Cursor1Set = true;
  s.view.Cursor1Time = 700;
  QImage image = DrawTrendImage(s.scene);
  const Box &plot = s.Plot();
  double y = plot.Top + s.view.PlotSpan - TimeToPosition(s.view, 300);
  EXPECT_TRUE(ColourNear(image, plot.Left + 1000, y, kRed));
  EXPECT_TRUE(ColourNear(image, plot.Right() - 1000, y, kRed));
  EXPECT_FALSE(ColourNear(image, plot.Left + 1000, y - 100, kRed));
  // The mark stands left of the plot on the line's height (its left side: a
  // white bar runs down its middle).
  EXPECT_TRUE(ColourNear(image, plot.Left - 185, y, kRed));
  // The cursor runs across at its own time.
  double yc = plot.Top + s.view.PlotSpan - TimeToPosition(s.view, 700);
  EXPECT_TRUE(ColourNear(image, plot.Left + 1000, yc, kCyan));
  EXPECT_LT(yc, y);
}

TEST(TrendDrawValueGrid, LinesAtEveryMinorStepOfTheSlotScale) {
  Scene s(0, 100);
  QImage image = DrawTrendImage(s.scene);
  GridEnds e = GridEndsOf(s);
  const double k = (e.YB - e.YT) / 1000;  // scale 0..1000, minor step 100
  ASSERT_EQ(GridStepMinor(1000), 100);
  const Box &plot = s.Plot();
  const double x = plot.Left + 30;  // left of every time tick
  for (int v = 0; v <= 1000; v += 100)
    EXPECT_TRUE(ColourNear(image, x, plot.Top + e.YB - v * k, kGrid)) << v;
  for (int v = 50; v < 1000; v += 100)
    EXPECT_FALSE(ColourNear(image, x, plot.Top + e.YB - v * k, kGrid)) << v;
}

TEST(TrendDrawValueGrid, LogScaleHasDecadesAndTheFiveOfEachDecade) {
  Scene s(0, 100);
  ChannelInfo &ch = s.info.Channels[0];
  ch.ScaleKind = 1;
  ch.ScaleLow = -2;
  ch.ScaleHigh = 3;
  ch.Decimals = 0;
  QImage image = DrawTrendImage(s.scene);
  GridEnds e = GridEndsOf(s);
  const double k = (e.YB - e.YT) / 5;
  const Box &plot = s.Plot();
  const double x = plot.Left + 30;
  auto yOf = [&](double exponent) { return plot.Top + e.YB - (exponent + 2) * k; };
  for (int d = -2; d <= 3; ++d) EXPECT_TRUE(ColourNear(image, x, yOf(d), kGrid)) << d;
  for (int d = -2; d < 3; ++d) {
    EXPECT_TRUE(ColourNear(image, x, yOf(d + std::log10(5.0)), kGrid)) << "five of " << d;
    EXPECT_FALSE(ColourNear(image, x, yOf(d + std::log10(3.0)), kGrid)) << "three of " << d;
  }
  // A linear scale of the same span has no fives.
  ch.ScaleKind = 0;
  QImage linear = DrawTrendImage(s.scene);
  EXPECT_FALSE(ColourNear(linear, x, yOf(std::log10(5.0)), kGrid));
}

TEST(TrendDrawScalePanel, LongTicksAtLabelStepsShortTicksBetween) {
  Scene s(0, 100);
  QImage image = DrawTrendImage(s.scene);
  const Box &panel = s.scene.layout.Picture3[0];
  Zone zone = SlotZone(s.view, 0);
  const double PT = zone.top - panel.Top + 20;
  const double PB = PT + zone.height;
  const double k = (PB - PT) / 1000;
  ASSERT_EQ(GridStepLabel(1000), 500);
  auto at = [&](double x, int v) {
    return ColourNear(image, panel.Left + x, panel.Top + PB - v * k, kRed);
  };
  // The axis, the ends and the long tick at 500 reach to 780; the ticks at every
  // 100 between only to 835.
  EXPECT_TRUE(at(985, 250));
  for (int v : {0, 500, 1000}) EXPECT_TRUE(at(800, v)) << v;
  for (int v : {100, 200, 300, 400, 600, 700, 800, 900}) {
    EXPECT_TRUE(at(900, v)) << v;
    EXPECT_FALSE(at(800, v)) << v;
  }
  EXPECT_FALSE(at(900, 550));
}

TEST(TrendDrawScalePanel, LogPanelTicksTwoToNineInEachDecade) {
  Scene s(0, 100);
  ChannelInfo &ch = s.info.Channels[0];
  ch.ScaleKind = 1;
  ch.ScaleLow = -2;
  ch.ScaleHigh = 3;
  ch.Decimals = 0;
  QImage image = DrawTrendImage(s.scene);
  const Box &panel = s.scene.layout.Picture3[0];
  Zone zone = SlotZone(s.view, 0);
  const double PT = zone.top - panel.Top + 20;
  const double PB = PT + zone.height;
  const double k = (PB - PT) / 5;
  auto at = [&](double x, double exponent) {
    return ColourNear(image, panel.Left + x, panel.Top + PB - (exponent + 2) * k, kRed);
  };
  for (int d = -2; d < 3; ++d)
    for (int n : {2, 5, 9}) {
      EXPECT_TRUE(at(935, d + std::log10(n))) << d << " " << n;
      EXPECT_FALSE(at(850, d + std::log10(n))) << d << " " << n;  // short: from 885
    }
}

// The box of a drawn text, in the painter's units.
QRectF BoxOf(const DrawnText &t) {
  QFont font = TrendFont(9);
  font.setPixelSize(t.pixelSize);
  QFontMetricsF m(font);
  return QRectF(t.at.x(), t.at.y() - m.ascent(), m.horizontalAdvance(t.text), m.height());
}

std::vector<DrawnText> TextsOf(TrendScene &scene) {
  TextRecorder device;
  {
    QPainter painter(&device);
    TrendDraw(painter, scene);
  }
  return device.texts();
}

void ExpectNoTwoTouch(const std::vector<DrawnText> &texts, const std::string &what) {
  for (std::size_t i = 0; i < texts.size(); ++i)
    for (std::size_t j = i + 1; j < texts.size(); ++j)
      EXPECT_FALSE(BoxOf(texts[i]).intersects(BoxOf(texts[j])))
          << what << ": \"" << texts[i].text.toStdString() << "\" and \""
          << texts[j].text.toStdString() << "\"";
}

// A week of one-second samples with both cursors, at several window sizes: the
// time labels and the cursor texts under the plot never run into each other.
TEST(TrendDrawTexts, TimeLabelsAndCursorTextsNeverTouch) {
  for (bool horizontal : {true, false})
    for (std::int32_t width : {6400, 9000, 10000, 15000, 21000, 28000})
      for (std::int32_t span : {3600, 86400, 259200, 604800})
        for (int gap : {10, 1}) {  // percent of the span between the cursors
          Scene s(0, 100, horizontal);
          s.scene.layout = LayoutTrend(width, horizontal ? 8250 : width * 9 / 10, 1, horizontal);
          s.view.PlotSpan = (s.scene.layout.TimeExtent() / 15 - 1) * 15;
          s.view.DisplayStart = 1709539200;  // 2024/03/04 08:00:00
          s.view.DisplayEnd = s.view.DisplayStart + span;
          s.view.Cursor1Set = s.view.Cursor2Set = true;
          s.view.Cursor1Time = s.view.DisplayStart + span * 45 / 100;
          s.view.Cursor2Time = s.view.DisplayStart + span * (45 + gap) / 100;
          const Box &plot = s.Plot();
          std::vector<DrawnText> axis;
          for (const DrawnText &t : TextsOf(s.scene)) {
            QRectF box = BoxOf(t);
            bool under = box.top() >= plot.Bottom();
            bool inside = QRectF(plot.Left, plot.Top, plot.Width, plot.Height).contains(box);
            if (horizontal ? under : inside) axis.push_back(t);
            if (horizontal && under) {
              EXPECT_LE(box.right(), s.scene.layout.Picture2.Width) << t.text.toStdString();
              EXPECT_LE(box.bottom(), s.scene.layout.Scroll.Top + 1) << t.text.toStdString();
            }
          }
          std::string what = (horizontal ? "horizontal " : "vertical ") + std::to_string(width) +
                             " span " + std::to_string(span) + " gap " + std::to_string(gap);
          int cursorTexts = 0, labels = 0;
          for (const DrawnText &t : axis) {
            if (t.text.contains(QStringLiteral("2024/")) && t.text.size() > 19)
              ++cursorTexts;
            else if (t.text.startsWith(QStringLiteral("2024/")))
              ++labels;
          }
          EXPECT_EQ(cursorTexts, 2) << what;
          // A narrow plot has room for the two cursor texts only.
          if (width >= 15000) {
            EXPECT_GE(labels, 1) << what;
          }
          ExpectNoTwoTouch(axis, what);
        }
}

// The scale panel's texts never touch, for a range whose top labels crowd the
// unit and the high end, and with the zone at several places.
TEST(TrendDrawTexts, ScalePanelTextsNeverTouch) {
  for (bool horizontal : {true, false})
    for (std::int32_t height : {6150, 8250, 12000}) {
      Scene s(0, 100, horizontal);
      ChannelInfo &ch = s.info.Channels[0];
      ch.ScaleLow = 0;
      ch.ScaleHigh = 12000;
      ch.Decimals = 1;
      ch.Unit = "degC";
      ch.Tag = "FURNACE TEMP UPPER";
      s.scene.layout = LayoutTrend(horizontal ? 15000 : 12000, height, 1, horizontal);
      ResizeZones(s.view, kPlotOffset, kDesignPlotExtent, s.scene.layout.PlotOrigin(),
                  s.scene.layout.ValueExtent());
      const Box &panel = s.scene.layout.Picture3[0];
      TextRecorder device;
      {
        QPainter painter(&device);
        DrawScalePanel(painter, s.scene, 0);
      }
      std::string what =
          std::string(horizontal ? "horizontal " : "vertical ") + std::to_string(height);
      const std::vector<DrawnText> &texts = device.texts();
      bool unit = false, top = false;
      for (const DrawnText &t : texts) {
        QRectF box = BoxOf(t);
        EXPECT_GE(box.left(), 0) << what << " " << t.text.toStdString();
        EXPECT_LE(box.right(), panel.Width) << what << " " << t.text.toStdString();
        unit = unit || t.text == QStringLiteral("[degC]");
        top = top || t.text == QStringLiteral("1200.0");
      }
      EXPECT_TRUE(unit) << what;
      EXPECT_TRUE(top) << what;
      ExpectNoTwoTouch(texts, what);
    }
}

}  // namespace
}  // namespace recscope
