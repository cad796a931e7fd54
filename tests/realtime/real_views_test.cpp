// The real-time windows, driven by filling the monitor's state directly: the
// trend drawn from the ring through the trend's drawing, its zoom, tabs and
// lamp; frmRealInstant and frmDigital with their texts.
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>
#include <ctime>

#include "gui_test_support.h"
#include "real_state_fixture.h"
#include "realtime/digital_window.h"
#include "realtime/real_instant_window.h"
#include "realtime/real_logging.h"
#include "realtime/real_trend_window.h"
#include "realtime/real_views.h"
#include "realtime/realtime_acquisition.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"
#include "trend/trend_layout.h"

using namespace recscope;
using recscope::testing::GuiHome;
using recscope::testing_support::FillRealSetup;
using recscope::testing_support::PutSample;

namespace {

constexpr std::int32_t kBase = 1700000000 - 1700000000 % 86400;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// A 30-channel recorder at a cycle of 1 s that has written `count` samples,
// channel 1 at a constant half of its scale.
void FillRunningMonitor(int count) {
  RealtimeState &rt = Shared().Realtime;
  FillRealSetup(rt, true, 1);
  for (int i = 0; i < count; ++i) {
    const std::int32_t t = kBase + 5000 + i;
    const std::int32_t slot = PutSample(rt, t);
    std::vector<std::int32_t> v = testing_support::SampleValues(rt, t);
    v[0] = 5000;
    rt.Ring.Write(slot, t, v);
  }
  rt.AnalyzeEnabled = true;
  rt.StateMessageId = 19750;
}

// Pixels of a colour in a band of rows of an image, from column `left` on.
int CountColour(const QImage &image, QRgb colour, int top, int bottom, int left = 0) {
  int n = 0;
  for (int y = std::max(top, 0); y < std::min(bottom, image.height()); ++y)
    for (int x = std::max(left, 0); x < image.width(); ++x)
      if ((image.pixel(x, y) & 0xFFFFFF) == (colour & 0xFFFFFF)) ++n;
  return n;
}

struct RealViewsFixture : ::testing::Test {
  GuiHome home;
  ~RealViewsFixture() override {
    if (RealTrendWindow *w = RealTrendWindow::Instance()) delete w;
    if (DigitalWindow *d = DigitalWindow::Instance()) delete d;
    Shared().Realtime = RealtimeState{};
  }
};

TEST_F(RealViewsFixture, TrendWindowHasItsControlsAndCaptions) {
  FillRunningMonitor(10);
  RealTrendWindow *w = ShowRealTrend(nullptr);
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->objectName(), "frmRealTrend");
  EXPECT_EQ(w->windowTitle(), Text(19728));
  EXPECT_EQ(w->findChild<QPushButton *>("cmdStart")->text(), Text(19729));
  EXPECT_EQ(w->findChild<QPushButton *>("cmdStop")->text(), Text(19730));
  EXPECT_EQ(w->findChild<QPushButton *>("cmdAnalyze")->text(), Text(19731));
  EXPECT_EQ(w->findChild<QPushButton *>("cmdInst")->text(), Text(19732));
  EXPECT_EQ(w->findChild<QLabel *>("lblStatusMess")->text(), Text(19752));
  EXPECT_EQ(w->findChild<QLabel *>("lblState")->text(), "OK");
  QTabBar *tabs = w->findChild<QTabBar *>("TabStrip1");
  ASSERT_EQ(tabs->count(), 3);
  EXPECT_EQ(tabs->tabText(0), "G9");
  EXPECT_EQ(tabs->tabText(1), "G1");
  EXPECT_EQ(tabs->tabText(2), "G2");
  QTimer *lamp = w->findChild<QTimer *>("timerRealLamp");
  EXPECT_EQ(lamp->interval(), 100);
  EXPECT_FALSE(lamp->isActive());  // at rest
  EXPECT_EQ(w->findChild<QSpinBox *>("UpDown1")->value(), 3);
  // UpDown3 reaches the members of the tab: all 30 channels, then group 1's three
  EXPECT_EQ(w->findChild<QSpinBox *>("UpDown3")->maximum(), 30);
  tabs->setCurrentIndex(1);
  EXPECT_EQ(w->findChild<QSpinBox *>("UpDown3")->maximum(), 3);
  EXPECT_TRUE(Shared().Realtime.TrendOpen);
  delete w;
  EXPECT_FALSE(Shared().Realtime.TrendOpen);
}

TEST_F(RealViewsFixture, ChartIsDrawnFromTheRingThroughTheTrendDrawing) {
  FillRunningMonitor(300);
  RealTrendWindow *w = ShowRealTrend(nullptr);
  w->resize(1000, 600);
  QTabBar *tabs = w->findChild<QTabBar *>("TabStrip1");
  tabs->setCurrentIndex(1);  // G1: channels 1 to 3
  w->displayTick();
  const RealtimeState &rt = Shared().Realtime;
  EXPECT_EQ(rt.Ring.LastDrawn, rt.Ring.LastWritten);
  const TrendView &view = w->view();
  EXPECT_EQ(view.CurrentGroup, 1);
  EXPECT_EQ(view.DisplayEnd, kBase + 5299);
  // zoom x1: one sample a plot column, ending with the newest
  EXPECT_EQ(view.DisplayEnd - view.DisplayStart + 1, view.ColumnCount);
  const int last = view.DataColumnCount - 1;
  EXPECT_EQ(view.Disp(0, last), 5000);
  EXPECT_EQ(view.Disp(2, last), 10 + (kBase + 5299) % 100);
  // before the first sample the ring holds blanks: zeros
  EXPECT_EQ(view.Disp(2, 0), 0);
  // channel 1 (colour 1, red) runs at half its scale: red pixels across the middle
  // of the plot
  const QImage &chart = w->chartImage();
  TrendLayout layout = LayoutTrend(chart.width() * 15 + 300, chart.height() * 15 + 820, 1, true);
  const int top = (layout.Picture1.Top) / 15;
  const int mid = top + layout.Picture1.Height / 30;
  // the last quarter of the plot: newer than the first sample, so no jump there
  const int left = (layout.Picture1.Left + 3 * layout.Picture1.Width / 4) / 15;
  EXPECT_GT(CountColour(chart, qRgb(255, 0, 0), mid - 3, mid + 3, left), 100);
  EXPECT_EQ(CountColour(chart, qRgb(255, 0, 0), top + 2, mid - 10, left), 0);
  EXPECT_EQ(CountColour(chart, qRgb(255, 0, 0), mid + 10, top + layout.Picture1.Height / 15, left),
            0);
}

TEST_F(RealViewsFixture, ChangeOfZoomRedrawsTheChartFromTheRingAtTheNextTick) {
  FillRunningMonitor(2000);
  RealTrendWindow *w = ShowRealTrend(nullptr);
  w->resize(1000, 600);
  w->displayTick();
  const int drawn = w->drawCount();
  const std::int32_t shownAtX1 = w->view().DisplayEnd - w->view().DisplayStart + 1;
  const QImage before = w->chartImage();
  w->displayTick();  // nothing new written: no drawing
  EXPECT_EQ(w->drawCount(), drawn);

  w->findChild<QSpinBox *>("UpDown1")->setValue(1);  // x0.1
  EXPECT_EQ(Shared().Realtime.Ring.LastDrawn, 0);
  EXPECT_EQ(w->drawCount(), drawn);  // not before the tick
  EXPECT_TRUE(RealFullRedraw(Shared().Realtime.Ring.LastDrawn, w->zoomIndex()));
  w->displayTick();
  EXPECT_EQ(w->drawCount(), drawn + 1);
  const std::int32_t shownAtTenth = w->view().DisplayEnd - w->view().DisplayStart + 1;
  EXPECT_EQ(shownAtTenth, RealChartSamples(w->view().ColumnCount, 1));
  EXPECT_EQ(shownAtTenth, 10 * shownAtX1);
  EXPECT_NE(w->chartImage(), before);
  EXPECT_EQ(Shared().Realtime.Ring.LastDrawn, Shared().Realtime.Ring.LastWritten);
}

TEST_F(RealViewsFixture, ZoomTableDividesTheChartsSampleCount) {
  EXPECT_EQ(RealChartSamples(600, 1), 6000);
  EXPECT_EQ(RealChartSamples(600, 2), 1200);
  EXPECT_EQ(RealChartSamples(600, 3), 600);
  EXPECT_EQ(RealChartSamples(600, 4), 300);
  EXPECT_EQ(RealChartSamples(600, 5), 60);
  EXPECT_EQ(RealChartSamples(600, 6), 10);
  EXPECT_TRUE(RealFullRedraw(0, 6));
  EXPECT_TRUE(RealFullRedraw(5, 3));
  EXPECT_FALSE(RealFullRedraw(5, 4));
}

TEST_F(RealViewsFixture, LampBlinksGreyAndRedWhileTheConnectionIsSought) {
  FillRunningMonitor(1);
  RealtimeState &rt = Shared().Realtime;
  rt.LampBlinking = true;
  rt.LampColour = kRealLampGrey;
  RealTrendWindow *w = ShowRealTrend(nullptr);
  w->syncFromState();
  QTimer *lamp = w->findChild<QTimer *>("timerRealLamp");
  EXPECT_TRUE(lamp->isActive());
  QLabel *pic = w->findChild<QLabel *>("picRealStatus");
  QMetaObject::invokeMethod(lamp, "timeout", Qt::DirectConnection);
  EXPECT_EQ(rt.LampColour, kRealLampRed);
  EXPECT_EQ(pic->palette().color(QPalette::Window), QColor(221, 0, 0));
  QMetaObject::invokeMethod(lamp, "timeout", Qt::DirectConnection);
  EXPECT_EQ(rt.LampColour, kRealLampGrey);
  EXPECT_EQ(pic->palette().color(QPalette::Window), QColor(0x88, 0x88, 0x88));
  rt.LampBlinking = false;
  rt.LampColour = kRealLampBlue;
  rt.StateMessageId = 19751;
  w->syncFromState();
  EXPECT_FALSE(lamp->isActive());
  EXPECT_EQ(pic->palette().color(QPalette::Window), QColor(0, 0, 0xDD));
  EXPECT_EQ(w->findChild<QLabel *>("lblState")->text(), Text(19751));
}

RealInstantWindow *FindInstant() {
  for (QWidget *top : QApplication::topLevelWidgets())
    if (auto *found = qobject_cast<RealInstantWindow *>(top)) return found;
  return nullptr;
}

TEST_F(RealViewsFixture, OpeningInstantWhileTheLinkIsStoppedShowsTheLastSample) {
  FillRunningMonitor(5);
  RealtimeState &rt = Shared().Realtime;
  rt.Running = false;
  RealTrendWindow *w = ShowRealTrend(nullptr);
  w->findChild<QPushButton *>("cmdInst")->click();
  RealInstantWindow *inst = FindInstant();
  ASSERT_NE(inst, nullptr);
  EXPECT_EQ(inst->windowTitle(), Text(19733));
  EXPECT_EQ(inst->findChild<QLabel *>("lblRealTime")->text(), Text(19734));
  const std::int32_t t = kBase + 5004;
  EXPECT_EQ(inst->findChild<QLabel *>("lblTime")->text(),
            QString::fromStdString(RecordTimeText(t)));
  EXPECT_EQ(inst->findChild<QTabBar *>("TabStrip1")->tabText(0), Text(10604));
  const QList<QLabel *> ch = inst->findChildren<QLabel *>("lblCh_All");
  const QList<QLabel *> val = inst->findChildren<QLabel *>("lblVal_All");
  ASSERT_EQ(ch.size(), 30);
  ASSERT_EQ(val.size(), 30);
  EXPECT_EQ(ch[0]->text(), "CH01");
  EXPECT_EQ(ch[29]->text(), "CH30");
  EXPECT_EQ(val[0]->text(), "500.0");
  const int raw2 = 20 + t % 100;
  EXPECT_EQ(val[2]->text(), QString("%1.%2").arg(raw2 / 10).arg(raw2 % 10));
  delete inst;
}

TEST_F(RealViewsFixture, InstantGroupRowsHoldTagsUnitsAndLitAlarms) {
  FillRunningMonitor(3);
  RealtimeState &rt = Shared().Realtime;
  rt.AlarmFlags[1] = {0, 1, 0, 1};
  rt.Display[2].InputType = 0;  // a channel that is off shows no value
  RealInstantWindow inst(1);
  const QList<QLabel *> ch = inst.findChildren<QLabel *>("lblCh");
  ASSERT_EQ(ch.size(), 3);
  EXPECT_EQ(ch[1]->text(), "CH02");
  EXPECT_EQ(inst.findChildren<QLabel *>("lblTag1")[1]->text(), "T2");
  EXPECT_EQ(inst.findChildren<QLabel *>("lblTag2")[1]->text(), "U2");
  EXPECT_EQ(inst.findChildren<QLabel *>("lblUnit")[1]->text(),
            QString::fromStdString(rt.UnitTextOf(rt.Display[1].UnitCode)));
  EXPECT_EQ(inst.findChildren<QLabel *>("lblVal")[2]->text(), "");
  EXPECT_FALSE(inst.findChildren<QLabel *>("lblAlm1")[1]->property("lit").toBool());
  EXPECT_TRUE(inst.findChildren<QLabel *>("lblAlm2")[1]->property("lit").toBool());
  EXPECT_TRUE(inst.findChildren<QLabel *>("lblAlm4")[1]->property("lit").toBool());
  EXPECT_FALSE(inst.findChildren<QLabel *>("lblAlm2")[0]->property("lit").toBool());
}

TEST_F(RealViewsFixture, DigitalGridShowsValuesAndAlarmStatesByChannel) {
  FillRunningMonitor(2);
  RealtimeState &rt = Shared().Realtime;
  rt.AlarmFlags[0] = {1, 0, 0, 0};
  rt.AlarmFlags[17] = {0, 0, 1, 1};
  DigitalWindow *d = ShowDigital(nullptr);
  QTableWidget *grid = d->findChild<QTableWidget *>("msfDigital");
  ASSERT_NE(grid, nullptr);
  ASSERT_EQ(grid->columnCount(), 5);
  EXPECT_EQ(grid->horizontalHeaderItem(0)->text(), Text(19901));
  EXPECT_EQ(grid->horizontalHeaderItem(1)->text(), Text(19902));
  EXPECT_EQ(grid->horizontalHeaderItem(4)->text(), Text(19905));
  ASSERT_EQ(grid->rowCount(), 30);
  EXPECT_EQ(grid->verticalHeaderItem(0)->text(), "CH01");
  EXPECT_EQ(grid->verticalHeaderItem(29)->text(), "CH30");
  EXPECT_EQ(grid->item(0, 0)->text(), "500.0");
  EXPECT_EQ(grid->item(0, 1)->text(), "ON");
  EXPECT_EQ(grid->item(0, 2)->text(), "OFF");
  EXPECT_EQ(grid->item(17, 3)->text(), "ON");
  EXPECT_EQ(grid->item(17, 4)->text(), "ON");
  EXPECT_EQ(grid->item(18, 1)->text(), "OFF");
  EXPECT_EQ(d->findChild<QTabBar *>("tabDigital")->count(), 1);
  // the 72-channel family takes three pages
  FillRealSetup(rt, false, 1);
  d->setDigitalForm();
  QTabBar *pages = d->findChild<QTabBar *>("tabDigital");
  ASSERT_EQ(pages->count(), 3);
  EXPECT_EQ(pages->tabText(2), "CH61-CH72");
  pages->setCurrentIndex(2);
  ASSERT_EQ(grid->rowCount(), 12);
  EXPECT_EQ(grid->verticalHeaderItem(11)->text(), "CH72");
}

TEST_F(RealViewsFixture, SecondRunShowsTheEarlierSamplesBeforeTheLinkStarts) {
  // A first run leaves its two files in the program's folder.
  const std::int32_t now = static_cast<std::int32_t>(std::time(nullptr)) / 1 * 1;
  {
    RealtimeState first;
    FillRealSetup(first, true, 1);
    ASSERT_TRUE(WriteRealSetFile(first, RealSetFilePath(home.folder())));
    for (int i = 0; i < 50; ++i)
      ASSERT_TRUE(WriteRealTimeRecord(first.Ring, RealTimeFilePath(home.folder()),
                                      PutSample(first, now - 100 + i)));
    WriteIni("0", "CYCLE", "REALTIME", ViewerComIniPath(home.folder()));  // 1 s
    WriteIni("127.0.0.1", "IP", "REALTIME", ViewerComIniPath(home.folder()));
  }
  Shared().Realtime = RealtimeState{};
  RealTrendWindow *w = ShowRealTrend(nullptr);
  const RealtimeState &rt = Shared().Realtime;
  EXPECT_EQ(rt.ModelText, "KTX1030");
  EXPECT_EQ(rt.TabNames, (std::vector<std::string>{"G9", "G1", "G2"}));
  EXPECT_EQ(RealNewestTime(rt), now - 51);
  EXPECT_GT(w->drawCount(), 0);
  EXPECT_EQ(w->view().DisplayEnd, now - 51);
  const int last = w->view().DataColumnCount - 1;
  EXPECT_EQ(w->view().Disp(2 * 4, last), 40 + (now - 51) % 100);
  EXPECT_EQ(w->findChild<QTabBar *>("TabStrip1")->count(), 3);
}

}  // namespace
