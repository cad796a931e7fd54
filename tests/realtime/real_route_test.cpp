// The real-time trend the whole way through the real main window: the menu
// command and frmRealSet's cmdShow show frmRealTrend with the ring's waves, Analyze writes
// SR00000.FDT and opens it through the ordinary open in a trend window, and the menus and the
// monitor are as they should be afterwards.
#include <gtest/gtest.h>

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>

#include <filesystem>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "real_state_fixture.h"
#include "realtime/digital_window.h"
#include "realtime/real_logging.h"
#include "realtime/real_set_dialog.h"
#include "realtime/real_trend_window.h"
#include "record_fixture.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

constexpr std::int32_t kBase = 1700000000 - 1700000000 % 86400;

QList<TrendWindow *> Trends(MainWindow &w) {
  QList<TrendWindow *> found;
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) found.append(t);
  return found;
}

RealTrendWindow *RealTrendIn(MainWindow &w) {
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (auto *t = qobject_cast<RealTrendWindow *>(sub->widget())) return t;
  return nullptr;
}

struct RealRouteFixture : ::testing::Test {
  RealRouteFixture() {
    ConnectDesktopCommands(window);
    window.load();
    // The monitor as its driver leaves it after 600 cycles of 10 s from a
    // 30-channel recorder.
    RealtimeState &rt = Shared().Realtime;
    testing_support::FillRealSetup(rt, true, 10);
    for (int i = 0; i < 600; ++i) testing_support::PutSample(rt, kBase + 10 * (3000 + i));
    rt.AnalyzeEnabled = true;
    rt.StateMessageId = 19750;
  }
  ~RealRouteFixture() override {
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList()) delete sub;
    Shared().Realtime = RealtimeState{};
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
};

TEST_F(RealRouteFixture, MenuShowsTheRingThenAnalyzeOpensTheRecordInATrendWindow) {
  QAction *menu = window.command("mnuCommRealTime");
  ASSERT_NE(menu, nullptr);
  ASSERT_TRUE(menu->isEnabled());
  menu->trigger();
  // frmRealSet first: its cmdShow opens the trend
  RealSetDialog *settings = window.findChild<RealSetDialog *>("frmRealSet");
  ASSERT_NE(settings, nullptr);
  EXPECT_EQ(RealTrendIn(window), nullptr);
  settings->findChild<QPushButton *>("cmdShow")->click();
  RealTrendWindow *real = RealTrendIn(window);
  ASSERT_NE(real, nullptr);
  EXPECT_TRUE(Shared().Realtime.TrendOpen);
  real->displayTick();
  // the ring's waves: the newest sample at the right end of the chart
  const TrendView &view = real->view();
  EXPECT_EQ(view.DisplayEnd, kBase + 10 * 3599);
  const int last = view.DataColumnCount - 1;
  ASSERT_GE(last, 0);
  EXPECT_EQ(view.Disp(2 * 7, last), 70 + (kBase + 10 * 3599) % 100);
  EXPECT_GT(real->drawCount(), 0);
  EXPECT_EQ(Shared().Realtime.Ring.LastDrawn, Shared().Realtime.Ring.LastWritten);
  EXPECT_TRUE(window.command("mnuFileClose") != nullptr);
  const bool closeBefore = window.command("mnuFileClose")->isEnabled();
  EXPECT_FALSE(closeBefore);  // no record open yet

  QPushButton *analyze = real->findChild<QPushButton *>("cmdAnalyze");
  ASSERT_TRUE(analyze->isEnabled());
  analyze->click();

  const std::string path = (std::filesystem::path(home.folder()) / "SR00000.FDT").string();
  ASSERT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(std::filesystem::file_size(path), 108u + 30 * 56 + 4 * 26 + 2 + 86400u * 64);
  const QList<TrendWindow *> trends = Trends(window);
  ASSERT_EQ(trends.size(), 1);
  const int slot = trends.front()->slot();
  const RecordFileInfo &info = Shared().Slot(slot).Record;
  EXPECT_EQ(info.FilePath, path);
  EXPECT_EQ(info.RecordCount, 86400);
  EXPECT_EQ(info.LastTime, kBase + 10 * 3599);
  EXPECT_EQ(info.FirstTime, kBase + 10 * 3599 - 10 * 86399);
  EXPECT_EQ(Shared().Slot(slot).Period(), 10);
  EXPECT_TRUE(messages.ids().empty());
  // afterwards: the record's commands are on, the monitor stands as it was
  EXPECT_TRUE(window.command("mnuFileClose")->isEnabled());
  EXPECT_EQ(RealTrendIn(window), real);
  EXPECT_TRUE(Shared().Realtime.TrendOpen);
  EXPECT_EQ(Shared().Realtime.Ring.LastWritten, RealSlotOfTime(kBase + 10 * 3599, 10));

  // A second Analyze while the record is open in a viewer replaces nothing.
  const auto before = std::filesystem::last_write_time(path);
  testing_support::PutSample(Shared().Realtime, kBase + 10 * 3600);
  analyze->click();
  EXPECT_EQ(std::filesystem::last_write_time(path), before);
  EXPECT_EQ(Trends(window).size(), 1);

  // Closing frmRealTrend stops the monitor and clears its open flag.
  Shared().Realtime.Running = true;
  real->parentWidget()->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(RealTrendIn(window), nullptr);
  EXPECT_FALSE(Shared().Realtime.TrendOpen);
  EXPECT_FALSE(Shared().Realtime.Running);
}

TEST_F(RealRouteFixture, DigitalMenuShowsTheGridOfTheMonitor) {
  QAction *menu = window.command("mnuWindowRealTimeDigital");
  ASSERT_NE(menu, nullptr);
  menu->trigger();
  DigitalWindow *digital = nullptr;
  for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
    if (auto *d = qobject_cast<DigitalWindow *>(sub->widget())) digital = d;
  ASSERT_NE(digital, nullptr);
  EXPECT_EQ(digital->objectName(), "frmDigital");
  EXPECT_EQ(digital->windowTitle(), "Real time digital");
  EXPECT_EQ(digital->findChild<QTabBar *>("tabDigital")->count(), 1);
}

}  // namespace
