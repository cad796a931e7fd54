// The desktop program's wiring: a record named to the main window opens in a
// trend window, the commands reach it, a switch of direction keeps the slot, and
// closing the window frees the slot and its working files.
#include "app/desktop_commands.h"

#include <gtest/gtest.h>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>

#include <filesystem>

#include "gui_test_support.h"
#include "record/working_files.h"
#include "shell/main_window.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");

QList<TrendWindow *> Trends(MainWindow &w) {
  QList<TrendWindow *> found;
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) found.append(t);
  return found;
}

int CountWorkingFiles(const std::string &folder) {
  int n = 0;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".OPL") ++n;
  return n;
}

struct DesktopFixture : ::testing::Test {
  DesktopFixture() {
    SetTrendMessageHandler([](QWidget *, int, const QString &, bool question) {
      return static_cast<int>(question ? QMessageBox::No : QMessageBox::Ok);
    });
    ConnectDesktopCommands(window);
    window.load();
  }
  GuiHome home;
  MainWindow window;
};

TEST_F(DesktopFixture, NamedRecordOpensInATrendWindowAndMenusGoToStateOne) {
  window.openFiles({kSample});
  ASSERT_EQ(Trends(window).size(), 1);
  TrendWindow *trend = Trends(window).front();
  EXPECT_EQ(trend->objectName(), "frmTrend");
  EXPECT_EQ(trend->slot(), 1);
  EXPECT_EQ(Shared().Slot(1).Record.InUse, -1);
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(window.command("mnuTime")->isEnabled());
  EXPECT_EQ(CountWorkingFiles(home.folder()), 4);
}

TEST_F(DesktopFixture, TimeAxisCommandsReachTheActiveTrendWindow) {
  window.openFiles({kSample});
  TrendWindow *trend = Trends(window).front();
  window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  window.runCommand("mnuTimeAll");
  const std::int32_t start = trend->view().DisplayStart;
  const std::int32_t span = trend->view().DisplayEnd - start;
  EXPECT_EQ(start, Shared().Slot(1).Record.FirstTime);
  window.runCommand("mnuTimeI");
  EXPECT_EQ(trend->view().DisplayStart, start);
  EXPECT_LT(trend->view().DisplayEnd - trend->view().DisplayStart, span);
  window.runCommand("mnuTimeAll");
  EXPECT_EQ(trend->view().DisplayEnd - trend->view().DisplayStart, span);
}

TEST_F(DesktopFixture, DirectionSwitchKeepsTheSlotAndItsFiles) {
  window.openFiles({kSample});
  window.runCommand("mnuViewTrendVer");
  ASSERT_EQ(Trends(window).size(), 1);
  EXPECT_EQ(Trends(window).front()->objectName(), "frmTrend2");
  EXPECT_EQ(Shared().Slot(1).Record.InUse, -1);
  EXPECT_EQ(Shared().OpenFileCount, 1);
  EXPECT_EQ(CountWorkingFiles(home.folder()), 4);
  window.runCommand("mnuViewTrendHori");
  EXPECT_EQ(Trends(window).front()->objectName(), "frmTrend");
}

TEST_F(DesktopFixture, ClosingTheTrendWindowFreesTheSlotAndDeletesItsFiles) {
  window.openFiles({kSample});
  window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  window.runCommand("mnuFileClose");
  QCoreApplication::processEvents();
  EXPECT_TRUE(Trends(window).isEmpty());
  EXPECT_EQ(Shared().Slot(1).Record.InUse, 0);
  EXPECT_EQ(Shared().OpenFileCount, 0);
  EXPECT_EQ(Shared().MenuState, 0);
  EXPECT_FALSE(window.command("mnuTime")->isEnabled());
  EXPECT_EQ(CountWorkingFiles(home.folder()), 0);
}

TEST_F(DesktopFixture, SameRecordTwiceTakesTwoSlots) {
  window.openFiles({kSample, kSample});
  EXPECT_EQ(Trends(window).size(), 2);
  EXPECT_EQ(Shared().OpenFileCount, 2);
  EXPECT_EQ(CountWorkingFiles(home.folder()), 8);
}

}  // namespace
