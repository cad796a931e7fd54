#include "trend/trend_draw.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <cmath>

#include "shell/shared_state.h"
#include "trend/render_request.h"
#include "trend/time_axis.h"
#include "trend/wave_scale.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
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
  Scene(int columns, int columnCount) {
    App();
    InitTrendView(view, info, 1);
    scene.info = &info;
    scene.alarms = &alarms;
    scene.flags = &flags;
    scene.view = &view;
    scene.layout = LayoutTrend(15000, 8250, 1, true);
    view.PlotSpan = 1200 * 15 / 15 * 15 / 15;  // set below from the layout
    std::int32_t P = scene.layout.Picture1.Width / 15;
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

}  // namespace
}  // namespace recscope
