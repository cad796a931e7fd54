// The cursors and flags of a real trend window: presses on the plot at computed
// places, Shift presses through the application's filter, the event searches and
// jumps, the event text carried by the mouse, and flags added and removed, each
// looked at in the state and in the drawn picture.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <cmath>

#include "../gui/gui_test_support.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/cursor_commands.h"
#include "trend/event_marks.h"
#include "trend/jump_dialog.h"
#include "trend/shift_key.h"
#include "trend/time_axis.h"
#include "trend/trend_window.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using recscope::testing::App;
using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

const QColor kCyan(0, 255, 255);
const QColor kMagenta(255, 0, 255);

TrendLayout LayoutOf(TrendWindow &w) {
  return LayoutTrend(static_cast<std::int32_t>(w.width() * 15),
                     static_cast<std::int32_t>(w.height() * 15), w.view().Group().ShownScales,
                     w.horizontal());
}

int CountColour(const QImage &image, const QRect &area, const QColor &colour) {
  int n = 0;
  QRect r = area.intersected(image.rect());
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x)
      if (image.pixelColor(x, y) == colour) ++n;
  return n;
}

QWidget *Picture2(TrendWindow &w) { return w.findChild<QWidget *>(QStringLiteral("Picture2")); }

void Mouse(TrendWindow &w, QEvent::Type type, QPoint at, Qt::MouseButton button,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QWidget *target = Picture2(w);
  Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
  if (type == QEvent::MouseMove) buttons = Qt::LeftButton;
  QMouseEvent event(type, QPointF(at), QPointF(target->mapToGlobal(at)),
                    type == QEvent::MouseMove ? Qt::NoButton : button, buttons, modifiers);
  QApplication::sendEvent(target, &event);
}

void Click(TrendWindow &w, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  Mouse(w, QEvent::MouseButtonPress, at, Qt::LeftButton, modifiers);
  Mouse(w, QEvent::MouseButtonRelease, at, Qt::LeftButton, modifiers);
}

void ShiftKey(QWidget *target, QEvent::Type type, bool autoRepeat = false) {
  QKeyEvent event(type, Qt::Key_Shift,
                  type == QEvent::KeyPress ? Qt::ShiftModifier : Qt::NoModifier, QString(),
                  autoRepeat);
  QApplication::sendEvent(target, &event);
}

// The pixel of Picture2 at `along` twips (at least) from the plot's start edge of
// the time axis, in the middle of the plot across it.
QPoint PlotPixel(TrendWindow &w, double along) {
  const Box &plot = LayoutOf(w).Picture1;
  if (w.horizontal())
    return QPoint(static_cast<int>(std::ceil((plot.Left + along) / 15.0)),
                  (plot.Top + plot.Height / 2) / 15);
  return QPoint((plot.Left + plot.Width / 2) / 15,
                static_cast<int>(std::ceil((plot.Top + along) / 15.0)));
}

// Twips from the plot's edge of a pixel, along the time axis.
double AlongOf(TrendWindow &w, QPoint px) {
  const Box &plot = LayoutOf(w).Picture1;
  return w.horizontal() ? px.x() * 15.0 - plot.Left : px.y() * 15.0 - plot.Top;
}

// The time under a pixel as the view maps it, before the sample rule.
std::int64_t RawTimeAt(TrendWindow &w, QPoint px) {
  const TrendView &v = w.view();
  double r = AlongOf(w, px) / v.PlotSpan;
  if (!w.horizontal()) r = 1 - r;
  return v.DisplayStart +
         static_cast<std::int64_t>(std::floor((v.DisplayEnd - v.DisplayStart) * r));
}

// The pixel column (row, vertical) of a time on the plot.
int PixelOfTime(TrendWindow &w, std::int64_t t) {
  const Box &plot = LayoutOf(w).Picture1;
  std::int32_t pos = TimeToPosition(w.view(), t);
  return w.horizontal() ? (plot.Left + pos) / 15 : (plot.Top + w.view().PlotSpan - pos) / 15;
}

// Pixels of a colour on a line across the plot at a time (a column of the
// horizontal plot, a row of the vertical one), one pixel either side.
int LinePixels(TrendWindow &w, std::int64_t t, const QColor &colour) {
  const Box &plot = LayoutOf(w).Picture1;
  int at = PixelOfTime(w, t);
  QRect area = w.horizontal() ? QRect(at - 1, plot.Top / 15 + 5, 3, plot.Height / 15 - 10)
                              : QRect(plot.Left / 15 + 5, at - 1, plot.Width / 15 - 10, 3);
  return CountColour(w.picture(), area, colour);
}

struct Signals {
  std::vector<std::array<int, 3>> cursors;  // slot, cursorNo, follow
  std::vector<std::array<int, 3>> found;    // slot, kind, row
  std::vector<int> flags;
  std::vector<std::array<int, 3>> levels;
  void Watch(TrendWindow &w) {
    QObject::connect(&w, &TrendWindow::cursorsChanged, [this](int s, int c, bool f) {
      cursors.push_back({s, c, f ? 1 : 0});
    });
    QObject::connect(&w, &TrendWindow::eventFound, [this](int s, int k, int r) {
      found.push_back({s, k, r});
    });
    QObject::connect(&w, &TrendWindow::flagsChanged, [this](int s) { flags.push_back(s); });
    QObject::connect(&w, &TrendWindow::eventLevelChanged, [this](int s, int k, int r) {
      levels.push_back({s, k, r});
    });
  }
};

// One channel (red) in a record of twenty samples, ten seconds apart, from 1000
// to 1190: cyan on the plot is a cursor, magenta a flag.
struct CursorFixture : ::testing::Test {
  TempFolder home;
  MessageRecorder messages{QMessageBox::No};
  void SetUp() override {
    App();
    ResetSharedState(Shared());
    Shared().ProgramFolder = home.str();
    RecordFileInfo info = MakeRecord(20, 1, 0, 1000, 10);
    WriteLevels(info, home.str(), 1, [](std::int64_t r, int) {
      return std::make_pair(static_cast<std::int16_t>(300 + r), static_cast<std::int16_t>(310 + r));
    });
    Shared().Slot(1).Record = info;
    Shared().Slot(1).SamplePeriod = 10;
  }
  void Show(TrendWindow &w) {
    w.resize(800, 400);
    w.show();
    QApplication::processEvents();
  }
};

// ---- clicks on the plot ----

TEST_F(CursorFixture, ClickOnThePlotSetsCursorOneOnTheLaterSampleAndTellsTheViews) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  ASSERT_GT(w.view().PlotSpan, 1000);
  QPoint at = PlotPixel(w, w.view().PlotSpan * 0.33);
  std::int64_t raw = RawTimeAt(w, at);
  ASSERT_GT(raw, 1000);
  ASSERT_LT(raw, 1190);
  EXPECT_EQ(LinePixels(w, 1000 + ((raw - 1000) / 10 + 1) * 10, kCyan), 0);
  Click(w, at);
  EXPECT_TRUE(w.view().Cursor1Set);
  EXPECT_FALSE(w.view().Cursor2Set);
  EXPECT_EQ(w.view().Cursor1Time, 1000 + ((raw - 1000) / 10 + 1) * 10);
  EXPECT_EQ(s.cursors, (std::vector<std::array<int, 3>>{{1, 1, 1}}));
  EXPECT_GT(LinePixels(w, w.view().Cursor1Time, kCyan), 100);
}

TEST_F(CursorFixture, ClickOnTheFirstSampleStaysThere) {
  TrendWindow w(1, true);
  Show(w);
  QPoint at = PlotPixel(w, 0);
  ASSERT_EQ(RawTimeAt(w, at), 1000);  // under a tenth of a second per twip
  Click(w, at);
  EXPECT_EQ(w.view().Cursor1Time, 1000);
}

TEST_F(CursorFixture, ClickOnTheLastSampleStaysThereAndBeyondTheFileEndNothingHappens) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  w.onReduce();  // the view is twice the file: its end stands mid-plot
  ASSERT_EQ(w.view().DisplayEnd, 1380);
  QPoint last = PlotPixel(w, w.view().PlotSpan / 2.0);
  ASSERT_EQ(RawTimeAt(w, last), 1190);
  QPoint beyond = PlotPixel(w, w.view().PlotSpan * 0.75);
  ASSERT_GT(RawTimeAt(w, beyond), 1190);
  Click(w, beyond);
  EXPECT_FALSE(w.view().Cursor1Set);
  EXPECT_TRUE(s.cursors.empty());
  Click(w, last);
  EXPECT_TRUE(w.view().Cursor1Set);
  EXPECT_EQ(w.view().Cursor1Time, 1190);
}

TEST_F(CursorFixture, ClickOnAMiddleSampleMovesOnToTheNext) {
  TrendWindow w(1, true);
  Show(w);
  // The first pixel whose time is exactly a sample inside the file.
  const Box &plot = LayoutOf(w).Picture1;
  QPoint on;
  for (int x = plot.Left / 15 + 20; x < (plot.Left + w.view().PlotSpan) / 15; ++x) {
    QPoint p(x, (plot.Top + plot.Height / 2) / 15);
    std::int64_t t = RawTimeAt(w, p);
    if (t > 1000 && t < 1190 && t % 10 == 0) {
      on = p;
      break;
    }
  }
  ASSERT_FALSE(on.isNull());
  const std::int64_t sample = RawTimeAt(w, on);
  Click(w, on);
  EXPECT_EQ(w.view().Cursor1Time, sample + 10);
}

TEST_F(CursorFixture, VerticalWindowCountsTimeUpwards) {
  TrendWindow w(1, false);
  Show(w);
  QPoint top = PlotPixel(w, 0);
  ASSERT_GE(RawTimeAt(w, top), 1189);
  Click(w, top);
  EXPECT_EQ(w.view().Cursor1Time, 1190);
  QPoint low = PlotPixel(w, w.view().PlotSpan * 0.8);
  std::int64_t raw = RawTimeAt(w, low);
  ASSERT_LT(raw, 1100);
  Click(w, low, Qt::ShiftModifier);  // held: cursor 2
  EXPECT_TRUE(w.view().Cursor2Set);
  EXPECT_EQ(w.view().Cursor2Time, 1000 + ((raw - 1000) / 10 + 1) * 10);
  // Both lines run across the plot at their times.
  EXPECT_GT(LinePixels(w, w.view().Cursor1Time, kCyan), 100);
  EXPECT_GT(LinePixels(w, w.view().Cursor2Time, kCyan), 100);
}

TEST_F(CursorFixture, ClicksBesideThePlotAndRightPressesSetNoCursor) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  const Box &plot = LayoutOf(w).Picture1;
  Click(w, QPoint(plot.Left / 15 - 10, (plot.Top + plot.Height / 2) / 15));  // a scale panel
  Click(w, QPoint((plot.Left + 500) / 15, plot.Top / 15 - 5));               // above the plot
  Mouse(w, QEvent::MouseButtonPress, PlotPixel(w, 2000), Qt::RightButton);
  Mouse(w, QEvent::MouseButtonRelease, PlotPixel(w, 2000), Qt::RightButton);
  EXPECT_FALSE(w.view().Cursor1Set);
  EXPECT_FALSE(w.view().Cursor2Set);
  EXPECT_TRUE(s.cursors.empty());
}

// ---- the Shift key ----

TEST_F(CursorFixture, EachShiftPressSwapsTheCursorAClickSetsAndHeldReadsDifferently) {
  TrendWindow w(1, true);
  Show(w);
  QWidget *target = Picture2(w);
  QPoint a = PlotPixel(w, 1000), b = PlotPixel(w, 3000), c = PlotPixel(w, 5000);
  Click(w, a);
  EXPECT_TRUE(w.view().Cursor1Set);
  const std::int32_t first = w.view().Cursor1Time;

  ShiftKey(target, QEvent::KeyPress);
  Click(w, b, Qt::ShiftModifier);  // while held
  EXPECT_TRUE(w.view().Cursor2Set);
  EXPECT_EQ(w.view().Cursor1Time, first);
  ShiftKey(target, QEvent::KeyRelease);
  Click(w, c);  // released, the bit stays flipped: still cursor 2
  EXPECT_EQ(w.view().Cursor1Time, first);
  EXPECT_EQ(w.view().Cursor2Time, 1000 + ((RawTimeAt(w, c) - 1000) / 10 + 1) * 10);

  ShiftKey(target, QEvent::KeyPress);
  ShiftKey(target, QEvent::KeyRelease);  // a second press flips it back
  Click(w, b);
  EXPECT_NE(w.view().Cursor1Time, first);
  EXPECT_EQ(w.view().Cursor1Time, 1000 + ((RawTimeAt(w, b) - 1000) / 10 + 1) * 10);
}

TEST_F(CursorFixture, AShiftPressFlipsTheBitOnceHoweverManyWidgetsSeeItAndRepeatsDoNot) {
  TrendWindow w(1, true);
  Show(w);
  ShiftKeyState &shift = ShiftKeyState::Instance();
  const bool before = shift.toggle();
  // Picture2 passes the key on to the window: the filter sees the press twice.
  ShiftKey(Picture2(w), QEvent::KeyPress);
  EXPECT_NE(shift.toggle(), before);
  ShiftKey(Picture2(w), QEvent::KeyPress, true);  // the key repeats while held
  ShiftKey(&w, QEvent::KeyPress, true);
  EXPECT_NE(shift.toggle(), before);
  EXPECT_EQ(shift.State(true), (shift.toggle() ? 1 : 0) - 128);
  ShiftKey(Picture2(w), QEvent::KeyRelease);
  EXPECT_EQ(shift.State(), shift.toggle() ? 1 : 0);
  ShiftKey(&w, QEvent::KeyPress);
  ShiftKey(&w, QEvent::KeyRelease);
  EXPECT_EQ(shift.toggle(), before);
}

TEST_F(CursorFixture, BaselineIsTheShiftStateWhenTheWindowOpens) {
  ShiftKeyState &shift = ShiftKeyState::Instance();
  TrendWindow a(1, true);
  EXPECT_EQ(a.view().ShiftBaseline, shift.State());
  ShiftKey(&a, QEvent::KeyPress);
  ShiftKey(&a, QEvent::KeyRelease);
  TrendWindow b(1, true);
  EXPECT_EQ(b.view().ShiftBaseline, shift.State());
  EXPECT_NE(a.view().ShiftBaseline, b.view().ShiftBaseline);
  // For the first window the press swapped the cursors, for the second not.
  Show(a);
  Show(b);
  Click(a, PlotPixel(a, 2000));
  Click(b, PlotPixel(b, 2000));
  EXPECT_TRUE(a.view().Cursor2Set);
  EXPECT_TRUE(b.view().Cursor1Set);
}

TEST_F(CursorFixture, CursorChangeSwapsTheCursorAClickSets) {
  TrendWindow w(1, true);
  Show(w);
  w.onCursorChange();
  Click(w, PlotPixel(w, 2000));
  EXPECT_TRUE(w.view().Cursor2Set);
  EXPECT_FALSE(w.view().Cursor1Set);
  w.onCursorChange();
  Click(w, PlotPixel(w, 4000));
  EXPECT_TRUE(w.view().Cursor1Set);
}

// ---- a real-time window ----

TEST_F(CursorFixture, RealTimeWindowRefusesClicksCursorCommandsAndFlags) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  w.view().RealTime = 1;
  Click(w, PlotPixel(w, 2000));
  EXPECT_FALSE(w.view().Cursor1Set);
  w.onSearchEarlier(1);
  w.onSearchLater(2);
  w.onJumpDialog(1);
  w.onShiftCursor1(kHourOn);
  w.view().Cursor1Set = true;
  w.view().Cursor1Time = 1050;
  w.onAddFlag();
  w.onRemoveCursors();
  EXPECT_TRUE(w.view().Cursor1Set);
  Shared().Slot(1).Flags = {FlagEvent{1100, "", 0, 5}};
  w.onRemoveFlags();
  EXPECT_EQ(Shared().Slot(1).Flags.size(), 1u);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_TRUE(s.cursors.empty());
  EXPECT_TRUE(s.flags.empty());
}

// ---- both cursors, their lines and texts ----

TEST_F(CursorFixture, BothCursorsOnTheSameTimeDrawBothLinesInOnePlace) {
  TrendWindow w(1, true);
  Show(w);
  QPoint at = PlotPixel(w, 4000);
  Click(w, at);
  Click(w, at, Qt::ShiftModifier);
  ASSERT_TRUE(w.view().Cursor1Set && w.view().Cursor2Set);
  EXPECT_EQ(w.view().Cursor1Time, w.view().Cursor2Time);
  EXPECT_GT(LinePixels(w, w.view().Cursor1Time, kCyan), 100);
  // One cyan line on the plot: no cyan beside its column.
  const Box &plot = LayoutOf(w).Picture1;
  const int x = PixelOfTime(w, w.view().Cursor1Time);
  QRect left(plot.Left / 15, plot.Top / 15, x - 1 - plot.Left / 15, plot.Height / 15);
  QRect right(x + 2, plot.Top / 15, plot.Right() / 15 - x - 2, plot.Height / 15);
  EXPECT_EQ(CountColour(w.picture(), left, kCyan), 0);
  EXPECT_EQ(CountColour(w.picture(), right, kCyan), 0);
  // The range between the two is refused.
  w.onBetweenCursors();
  EXPECT_EQ(messages.ids(), std::vector<int>{11163});
}

// The changed pixels under the plot between a drawing without and with cursor 1
// at `t`, in the row of the cursor texts (below the time labels' row).
std::pair<int, int> CursorTextExtent(TrendWindow &w, std::int32_t t) {
  w.view().Cursor1Set = false;
  w.Repaint();
  QImage without = w.picture();
  w.view().Cursor1Set = true;
  w.view().Cursor1Time = t;
  w.Repaint();
  const QImage &with = w.picture();
  const TrendLayout l = LayoutOf(w);
  const double h = QFontMetricsF(TrendFont(9)).height();
  const double rowA = l.Picture1.Bottom() + 10;
  const double rowB = std::max(rowA, std::min(rowA + h, l.Scroll.Top - h));
  EXPECT_GE(rowB, rowA + h - 1);  // the texts have a row of their own
  int lo = with.width(), hi = -1;
  for (int y = static_cast<int>((rowA + h) / 15) + 1; y < static_cast<int>((rowB + h) / 15); ++y)
    for (int x = 0; x < with.width(); ++x)
      if (with.pixel(x, y) != without.pixel(x, y)) {
        lo = std::min(lo, x);
        hi = std::max(hi, x);
      }
  return {lo, hi};
}

TEST_F(CursorFixture, CursorTextStandsRightOfItsLineAndFlipsLeftPastHalfThePlot) {
  TrendWindow w(1, true);
  w.resize(1000, 400);
  w.show();
  auto [lo1, hi1] = CursorTextExtent(w, 1040);
  const int line1 = PixelOfTime(w, 1040);
  ASSERT_GE(hi1, 0);
  EXPECT_GT(lo1, line1);
  auto [lo2, hi2] = CursorTextExtent(w, 1150);
  const int line2 = PixelOfTime(w, 1150);
  ASSERT_GE(hi2, 0);
  EXPECT_LT(hi2, line2);
}

TEST_F(CursorFixture, RemovingCursorsKeepsTheirTimesClearsTheLinesAndTellsTheViews) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  Click(w, PlotPixel(w, 2000));
  Click(w, PlotPixel(w, 6000), Qt::ShiftModifier);
  const std::int32_t t1 = w.view().Cursor1Time, t2 = w.view().Cursor2Time;
  s.cursors.clear();
  w.onRemoveCursors();
  EXPECT_FALSE(w.view().Cursor1Set);
  EXPECT_FALSE(w.view().Cursor2Set);
  EXPECT_EQ(w.view().Cursor1Time, t1);
  EXPECT_EQ(w.view().Cursor2Time, t2);
  EXPECT_EQ(LinePixels(w, t1, kCyan), 0);
  EXPECT_EQ(LinePixels(w, t2, kCyan), 0);
  EXPECT_EQ(s.cursors, (std::vector<std::array<int, 3>>{{1, 1, 0}, {1, 2, 0}}));
}

// ---- searches and jumps ----

TEST_F(CursorFixture, SearchTellsTheListItsFindAndAFlagWinsOverAnAlarmAtTheSameTime) {
  AlarmFileInfo &alarms = Shared().Slot(1).Alarms;
  alarms.Alarms = {AlarmEvent{1063, "A", 1, 1, 1, 1, 0, 2}};
  alarms.Messages = {MessageEvent{1120, "M", "start", 0, 0, 5}};
  Shared().Slot(1).Flags = {FlagEvent{1020, "", 0, 5}, FlagEvent{1063, "", 0, 5}};
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  w.view().Cursor1Set = true;
  w.view().Cursor1Time = 1100;
  w.onSearchEarlier(1);
  EXPECT_EQ(w.view().Cursor1Time, 1060);
  EXPECT_EQ(s.found, (std::vector<std::array<int, 3>>{{1, 2, 1}}));
  EXPECT_EQ(s.cursors.back(), (std::array<int, 3>{1, 1, 1}));
  w.onSearchLater(1);  // from 1060: the flag and alarm at 1063 are later
  EXPECT_EQ(w.view().Cursor1Time, 1070);
  EXPECT_EQ(s.found.back(), (std::array<int, 3>{1, 2, 1}));
  w.onSearchLater(1);
  EXPECT_EQ(w.view().Cursor1Time, 1120);
  EXPECT_EQ(s.found.back(), (std::array<int, 3>{1, 1, 0}));
  w.onSearchLater(1);  // nothing left: the file end, and nothing told
  EXPECT_EQ(w.view().Cursor1Time, 1190);
  EXPECT_EQ(s.found.size(), 3u);
  EXPECT_GT(LinePixels(w, 1190, kCyan), 100);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(CursorFixture, SearchOfACursorThatIsNotSetAsksForIt) {
  TrendWindow w(1, true);
  Show(w);
  w.onSearchEarlier(1);
  w.onSearchLater(2);
  w.onShiftCursor1(kDayOn);
  EXPECT_EQ(messages.ids(), (std::vector<int>{11140, 11141, 11140}));
  EXPECT_FALSE(w.view().Cursor1Set);
}

TEST_F(CursorFixture, JumpOutsideTheViewMovesTheRangeToIt) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  w.onEnlarge();
  w.onEnlarge();  // 1000 .. 1040
  ASSERT_EQ(w.view().DisplayEnd, 1040);
  w.view().Cursor2Set = true;
  w.CursorJump(1136, 2, false);
  EXPECT_EQ(w.view().Cursor2Time, 1140);
  EXPECT_EQ(w.view().DisplayStart, 1120);
  EXPECT_EQ(w.view().DisplayEnd, 1160);
  EXPECT_EQ(s.cursors, (std::vector<std::array<int, 3>>{{1, 2, 0}}));
  EXPECT_GT(LinePixels(w, 1140, kCyan), 100);
}

TEST_F(CursorFixture, HourJumpFromTheLastHourStopsAtTheFileEnd) {
  TrendWindow w(1, true);
  Show(w);
  w.onEnlarge();  // 1000 .. 1090
  w.view().Cursor1Set = true;
  w.view().Cursor1Time = 1050;
  w.onShiftCursor1(kHourOn);
  EXPECT_EQ(w.view().Cursor1Time, 1190);
  EXPECT_EQ(w.view().DisplayEnd, 1190);
  EXPECT_EQ(w.view().DisplayStart, 1100);
  w.onShiftCursor1(kDayBack);
  EXPECT_EQ(w.view().Cursor1Time, 1000);
  EXPECT_EQ(w.view().DisplayStart, 1000);
}

// ---- frmJump ----

QComboBox *Combo(QWidget &d, const char *name) {
  return d.findChild<QComboBox *>(QString::fromLatin1(name));
}

TEST(JumpDialogTest, ShowsTheRecordTimesTheYearsAndTheCursorsTime) {
  App();
  const auto t = [](const char *text) { return static_cast<std::int32_t>(*ParseRecordTime(text)); };
  JumpDialog d(2, t("2023/12/30 00:00:00"), t("2024/03/01 00:00:00"), t("2024/01/31 13:45:10"), 1);
  EXPECT_EQ(d.objectName(), "frmJump");
  EXPECT_EQ(d.windowTitle(), QString::fromUtf8("2カーソル 時間ジャンプ設定"));
  EXPECT_EQ(d.findChild<QLabel *>("lblStartTime")->text(), "2023/12/30 00:00:00");
  EXPECT_EQ(d.findChild<QLabel *>("lblEndTime")->text(), "2024/03/01 00:00:00");
  EXPECT_EQ(d.findChild<QLabel *>("lblTwenty")->text(), "20");
  EXPECT_EQ(d.findChild<QPushButton *>("cmdJump")->text(), QString::fromUtf8("ジャンプ"));
  EXPECT_EQ(d.findChild<QPushButton *>("cmdCancel")->text(), QString::fromUtf8("キャンセル"));
  QComboBox *year = Combo(d, "cboYear");
  ASSERT_EQ(year->count(), 2);
  EXPECT_EQ(year->itemText(0), "23");
  EXPECT_EQ(year->itemText(1), "24");
  EXPECT_EQ(Combo(d, "cboMonth")->count(), 12);
  EXPECT_EQ(Combo(d, "cboHour")->itemText(23), "23");
  EXPECT_EQ(Combo(d, "cboMin")->count(), 60);
  EXPECT_EQ(year->currentText(), "24");
  EXPECT_EQ(Combo(d, "cboMonth")->currentText(), "01");
  EXPECT_EQ(Combo(d, "cboDay")->currentText(), "31");
  EXPECT_EQ(Combo(d, "cboHour")->currentText(), "13");
  EXPECT_EQ(Combo(d, "cboMin")->currentText(), "45");
  EXPECT_EQ(d.chosenTime(), t("2024/01/31 13:45:00"));  // seconds are always 00
}

TEST(JumpDialogTest, AMonthChangeFromThe31stToFebruarySelectsTheLastDay) {
  App();
  const auto t = [](const char *text) { return static_cast<std::int32_t>(*ParseRecordTime(text)); };
  JumpDialog d(1, t("2023/01/01 00:00:00"), t("2024/12/31 00:00:00"), t("2024/01/31 00:00:00"), 1);
  QComboBox *day = Combo(d, "cboDay");
  Combo(d, "cboMonth")->setCurrentText("02");
  EXPECT_EQ(day->count(), 29);
  EXPECT_EQ(day->currentText(), "29");
  Combo(d, "cboYear")->setCurrentText("23");  // not a leap year: the 29th is gone
  EXPECT_EQ(day->count(), 28);
  EXPECT_EQ(day->currentText(), "28");
  day->setCurrentText("15");
  Combo(d, "cboMonth")->setCurrentText("04");  // a day the month has stays
  EXPECT_EQ(day->count(), 30);
  EXPECT_EQ(day->currentText(), "15");
  EXPECT_EQ(d.chosenTime(), t("2023/04/15 00:00:00"));
}

TEST_F(CursorFixture, JumpDialogMovesTheCursorAndCancelLeavesIt) {
  TrendWindow w(1, true);
  Show(w);
  w.view().Cursor1Set = true;
  w.view().Cursor1Time = 1000;
  // The record lies in 1970/01/01 00:16:40 .. 00:19:50; years of 19xx cannot be
  // chosen, so a choice of 1970 lands on 2070 and is snapped to the file's end.
  QTimer::singleShot(0, [] {
    auto *d = qobject_cast<JumpDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(Combo(*d, "cboYear")->currentText(), "70");
    EXPECT_EQ(Combo(*d, "cboMin")->currentText(), "16");
    d->findChild<QPushButton *>("cmdJump")->click();
  });
  w.onJumpDialog(1);
  EXPECT_EQ(w.view().Cursor1Time, 1190);
  QTimer::singleShot(0, [] {
    auto *d = qobject_cast<JumpDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(d, nullptr);
    d->findChild<QPushButton *>("cmdCancel")->click();
  });
  w.view().Cursor1Time = 1050;
  w.onJumpDialog(1);
  EXPECT_EQ(w.view().Cursor1Time, 1050);
  w.onJumpDialog(2);  // cursor 2 is not set: no dialog
  EXPECT_EQ(messages.ids(), std::vector<int>{11141});
}

// ---- the event text under the mouse ----

struct EventTextFixture : CursorFixture {
  void SetUp() override {
    CursorFixture::SetUp();
    AlarmEvent alarm{1100, "A", 1, 2, 1, 1, -1, 2};
    Shared().Slot(1).Alarms.Alarms = {alarm};
    Shared().Slot(1).Flags = {FlagEvent{1100, "FLAG TEXT", -1, 2}};
  }
  // The centre of a placed text, in pixels of Picture2.
  static QPoint Centre(TrendWindow &w, const PlacedText &text) {
    const Box &plot = LayoutOf(w).Picture1;
    return QPoint((plot.Left + (text.box.Left + text.box.Right) / 2) / 15,
                  (plot.Top + (text.box.Top + text.box.Bottom) / 2) / 15);
  }
};

TEST_F(EventTextFixture, PressOnATextShowsItAndTheAlarmComesBeforeTheFlag) {
  TrendWindow w(1, true);
  Show(w);
  ASSERT_EQ(w.placement().eventTexts.size(), 2u);
  const PlacedText alarm = w.placement().eventTexts[0];
  ASSERT_EQ(alarm.kind, MarkKind::kAlarm);
  auto *picIvent = w.findChild<QLabel *>("picIvent");
  ASSERT_NE(picIvent, nullptr);
  EXPECT_FALSE(picIvent->isVisible());
  // Both texts stand at the same time and level: at a point of both, the alarm
  // is hit first.
  const PlacedText flag = w.placement().eventTexts[1];
  ASSERT_EQ(flag.kind, MarkKind::kFlag);
  const Box &plot = LayoutOf(w).Picture1;
  const QPoint both((plot.Left + alarm.box.Left + 45) / 15,
                    (plot.Top + (alarm.box.Top + alarm.box.Bottom) / 2) / 15);
  ASSERT_TRUE(TextBoxContains(flag.box, both.x() * 15.0 - plot.Left, both.y() * 15.0 - plot.Top));
  ASSERT_TRUE(TextBoxContains(alarm.box, both.x() * 15.0 - plot.Left, both.y() * 15.0 - plot.Top));
  Mouse(w, QEvent::MouseButtonPress, both, Qt::LeftButton);
  EXPECT_TRUE(picIvent->isVisible());
  EXPECT_EQ(picIvent->text(),
            QString::fromStdString(AlarmMarkText(Shared().Slot(1).Alarms.Alarms[0])));
  EXPECT_EQ(picIvent->y(), (plot.Top + alarm.box.Top) / 15);
  EXPECT_EQ(picIvent->x(), (plot.Left + alarm.box.Left + 50) / 15);
  EXPECT_TRUE(w.view().Cursor1Set);  // the press set a cursor as well
  Mouse(w, QEvent::MouseButtonRelease, both, Qt::LeftButton);
  EXPECT_FALSE(picIvent->isVisible());
}

TEST_F(EventTextFixture, TextCarriedDownTheZoneTakesItsNewLevelAndTheDisplayIsUnsaved) {
  Shared().Slot(1).Alarms.Alarms[0].Shown = 0;  // only the flag's text stands
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  ASSERT_TRUE(w.view().DisplaySaved);
  ASSERT_EQ(w.placement().eventTexts.size(), 1u);
  const PlacedText flag = w.placement().eventTexts[0];
  ASSERT_EQ(flag.kind, MarkKind::kFlag);
  auto *picIvent = w.findChild<QLabel *>("picIvent");
  const QPoint from = Centre(w, flag);
  Mouse(w, QEvent::MouseButtonPress, from, Qt::LeftButton);
  ASSERT_TRUE(picIvent->isVisible());
  EXPECT_EQ(picIvent->text(), "FLAG TEXT");
  // Up from level 2 to the middle of the zone's seventh tenth from its top: level 4.
  const Box &plot = LayoutOf(w).Picture1;
  const Zone zone = SlotZone(w.view(), w.view().SelectedSlot);
  const int y = static_cast<int>((plot.Top + zone.height / 10.0 * 6.5) / 15);
  Mouse(w, QEvent::MouseMove, QPoint(from.x(), y), Qt::LeftButton);
  EXPECT_EQ(picIvent->y(), y);
  Mouse(w, QEvent::MouseButtonRelease, QPoint(from.x(), y), Qt::LeftButton);
  EXPECT_FALSE(picIvent->isVisible());
  EXPECT_EQ(Shared().Slot(1).Flags[0].Position, 4);
  EXPECT_FALSE(w.view().DisplaySaved);
  EXPECT_EQ(s.levels, (std::vector<std::array<int, 3>>{{1, 2, 0}}));
  // Drawn again at its new level.
  ASSERT_EQ(w.placement().eventTexts.size(), 1u);
  EXPECT_LT(w.placement().eventTexts[0].box.Top, flag.box.Top);
}

TEST_F(EventTextFixture, TextDoesNotFollowTheMouseOutOfTheZone) {
  Shared().Slot(1).Alarms.Alarms[0].Shown = 0;
  TrendWindow w(1, true);
  Show(w);
  const PlacedText flag = w.placement().eventTexts.at(0);
  auto *picIvent = w.findChild<QLabel *>("picIvent");
  const QPoint from = Centre(w, flag);
  Mouse(w, QEvent::MouseButtonPress, from, Qt::LeftButton);
  const int before = picIvent->y();
  const Box &plot = LayoutOf(w).Picture1;
  Mouse(w, QEvent::MouseMove, QPoint(from.x(), plot.Top / 15 + 1), Qt::LeftButton);  // above it
  EXPECT_EQ(picIvent->y(), before);
  Mouse(w, QEvent::MouseButtonRelease, QPoint(from.x(), plot.Top / 15 + 1), Qt::LeftButton);
  EXPECT_EQ(Shared().Slot(1).Flags[0].Position, 10);  // dropped at the top
}

TEST_F(EventTextFixture, TextOnTheVerticalWindowIsCarriedAcross) {
  Shared().Slot(1).Alarms.Alarms[0].Shown = 0;
  TrendWindow w(1, false);
  Show(w);
  ASSERT_EQ(w.placement().eventTexts.size(), 1u);
  const PlacedText flag = w.placement().eventTexts[0];
  auto *picIvent = w.findChild<QLabel *>("picIvent");
  const QPoint from = EventTextFixture::Centre(w, flag);
  Mouse(w, QEvent::MouseButtonPress, from, Qt::LeftButton);
  ASSERT_TRUE(picIvent->isVisible());
  const Box &plot = LayoutOf(w).Picture1;
  const Zone zone = SlotZone(w.view(), w.view().SelectedSlot);
  const int x = static_cast<int>((plot.Left + zone.height / 10.0 * 6.5) / 15);
  Mouse(w, QEvent::MouseMove, QPoint(x, from.y()), Qt::LeftButton);
  EXPECT_EQ(picIvent->x(), x);
  Mouse(w, QEvent::MouseButtonRelease, QPoint(x, from.y()), Qt::LeftButton);
  EXPECT_EQ(Shared().Slot(1).Flags[0].Position, 6);
  ASSERT_EQ(w.placement().eventTexts.size(), 1u);
  EXPECT_GT(w.placement().eventTexts[0].box.Left, flag.box.Left);
}

TEST_F(EventTextFixture, PressBesideTheTextsShowsNothing) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  Click(w, PlotPixel(w, 300));
  EXPECT_FALSE(w.findChild<QLabel *>("picIvent")->isVisible());
  EXPECT_TRUE(s.levels.empty());
  EXPECT_TRUE(w.view().DisplaySaved);
}

// ---- flags ----

TEST_F(CursorFixture, AddedFlagStandsAtTheCursorWithItsLineAndTellsTheList) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  Click(w, PlotPixel(w, 3000));
  const std::int32_t t = w.view().Cursor1Time;
  EXPECT_EQ(LinePixels(w, t, kMagenta), 0);
  w.onAddFlag();
  ASSERT_EQ(Shared().Slot(1).Flags.size(), 1u);
  const FlagEvent &flag = Shared().Slot(1).Flags[0];
  EXPECT_EQ(flag.Time, t);
  EXPECT_EQ(flag.Text, "");
  EXPECT_EQ(flag.Shown, 0);
  EXPECT_EQ(flag.Position, 9);
  EXPECT_EQ(s.flags, std::vector<int>{1});
  // The cursor's line is drawn over the flag's; the mark above the plot is the flag's.
  const Box &plot = LayoutOf(w).Picture1;
  const int x = PixelOfTime(w, t);
  EXPECT_GT(CountColour(w.picture(), QRect(x - 3, plot.Top / 15 - 18, 16, 16), kMagenta), 5);
  // Adding and removing flags leaves the saved flag alone.
  EXPECT_TRUE(w.view().DisplaySaved);
}

TEST_F(CursorFixture, AddingASecondFlagAtTheSameTimeIsIgnored) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  Click(w, PlotPixel(w, 3000));
  w.onAddFlag();
  w.onAddFlag();
  EXPECT_EQ(Shared().Slot(1).Flags.size(), 1u);
  EXPECT_EQ(s.flags.size(), 1u);
}

TEST_F(CursorFixture, FlagGoesToTheCursorTheShiftStateChoosesAndNeedsItSet) {
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  Click(w, PlotPixel(w, 3000), Qt::ShiftModifier);  // cursor 2 only
  ASSERT_TRUE(w.view().Cursor2Set);
  w.onAddFlag();  // the Shift rule says cursor 1, which is not set
  EXPECT_TRUE(Shared().Slot(1).Flags.empty());
  EXPECT_TRUE(s.flags.empty());
  EXPECT_TRUE(messages.ids().empty());
  w.onCursorChange();  // now cursor 2 is meant
  w.onAddFlag();
  ASSERT_EQ(Shared().Slot(1).Flags.size(), 1u);
  EXPECT_EQ(Shared().Slot(1).Flags[0].Time, w.view().Cursor2Time);
}

TEST_F(CursorFixture, FlagOutsideTheRangeExistsAndShowsWhenTheRangeReachesIt) {
  TrendWindow w(1, true);
  Show(w);
  w.onEnlarge();  // 1000 .. 1090
  Shared().Slot(1).Flags = {FlagEvent{1150, "", 0, 9}};
  w.Repaint();
  const Box &plot = LayoutOf(w).Picture1;
  QRect inside(plot.Left / 15, plot.Top / 15, plot.Width / 15, plot.Height / 15);
  EXPECT_EQ(CountColour(w.picture(), inside, kMagenta), 0);
  w.onTimeAll();
  EXPECT_GT(LinePixels(w, 1150, kMagenta), 100);
}

TEST_F(CursorFixture, VerticalFlagLineRunsAcrossThePlot) {
  Shared().Slot(1).Flags = {FlagEvent{1150, "", 0, 9}};
  TrendWindow w(1, false);
  Show(w);
  EXPECT_GT(LinePixels(w, 1150, kMagenta), 100);
}

TEST_F(CursorFixture, RemovingFlagsEmptiesTheListRedrawsAndTellsTheList) {
  Shared().Slot(1).Flags = {FlagEvent{1050, "a", -1, 3}, FlagEvent{1150, "b", 0, 9}};
  TrendWindow w(1, true);
  Signals s;
  s.Watch(w);
  Show(w);
  EXPECT_GT(LinePixels(w, 1050, kMagenta), 100);
  w.onRemoveFlags();
  EXPECT_TRUE(Shared().Slot(1).Flags.empty());
  EXPECT_EQ(LinePixels(w, 1050, kMagenta), 0);
  EXPECT_EQ(LinePixels(w, 1150, kMagenta), 0);
  EXPECT_EQ(s.flags, std::vector<int>{1});
  EXPECT_TRUE(w.placement().eventTexts.empty());
  EXPECT_TRUE(messages.ids().empty());  // no question is asked
}

}  // namespace
}  // namespace recscope
