// The switch of trend orientation through the main window's menu command: the
// rebuilt window shows the whole file and keeps only the cursors, the saved flag
// and the group state, with the zones carried over to its own plot.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QSpinBox>
#include <QTabBar>

#include "../gui/gui_test_support.h"
#include "app/desktop_commands.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

namespace recscope {
namespace {

using recscope::testing::GuiHome;

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");

TrendWindow *OnlyTrend(MainWindow &w) {
  TrendWindow *found = nullptr;
  int count = 0;
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) {
      found = t;
      ++count;
    }
  return count == 1 ? found : nullptr;
}

struct SwitchFixture : ::testing::Test {
  SwitchFixture() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
  }
  GuiHome home;
  MessageRecorder messages{QMessageBox::No};
  MainWindow window;
};

TEST_F(SwitchFixture, MenuSwitchShowsTheWholeFileAndKeepsCursorsSavedFlagAndGroups) {
  window.openFiles({kSample});
  TrendWindow *old = OnlyTrend(window);
  ASSERT_NE(old, nullptr);
  ASSERT_TRUE(old->horizontal());
  window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  const RecordFileInfo &info = Shared().Slot(old->slot()).Record;

  // The operator's state: group 2, its channels switched by hand, a darker
  // background, a narrower range and both cursors.
  old->findChild<QTabBar *>("TabStrip1")->setCurrentIndex(1);
  ASSERT_EQ(old->view().CurrentGroup, 2);
  old->findChild<QCheckBox *>("chkAll")->click();
  old->findChild<QCheckBox *>("chkSingle")->click();
  old->findChild<QSpinBox *>("UpDown2")->setValue(4);
  ASSERT_FALSE(old->view().DisplaySaved);
  window.runCommand("mnuTimeI");
  ASSERT_LT(old->view().DisplayEnd - old->view().DisplayStart, info.LastTime - info.FirstTime);
  old->view().Cursor1Set = true;
  old->view().Cursor1Time = info.FirstTime + 3600;
  old->view().Cursor2Set = true;
  old->view().Cursor2Time = info.FirstTime + 7200;
  const TrendView before = old->view();
  const double oldExtent = old->zonePlotExtent();
  ASSERT_GT(oldExtent, 0);

  window.runCommand("mnuViewTrendVer");
  QCoreApplication::processEvents();
  TrendWindow *fresh = OnlyTrend(window);
  ASSERT_NE(fresh, nullptr);
  EXPECT_EQ(fresh->objectName(), "frmTrend2");
  const TrendView &view = fresh->view();

  // The whole file, as the time axis command gives it.
  EXPECT_EQ(view.DisplayStart, info.FirstTime);
  const std::int32_t end = view.DisplayEnd;
  EXPECT_GT(end - view.DisplayStart, before.DisplayEnd - before.DisplayStart);

  // What is kept.
  EXPECT_TRUE(view.Cursor1Set);
  EXPECT_TRUE(view.Cursor2Set);
  EXPECT_EQ(view.Cursor1Time, before.Cursor1Time);
  EXPECT_EQ(view.Cursor2Time, before.Cursor2Time);
  EXPECT_FALSE(view.DisplaySaved);
  EXPECT_EQ(view.CurrentGroup, 2);
  EXPECT_EQ(fresh->findChild<QTabBar *>("TabStrip1")->currentIndex(), 1);
  for (int g = 0; g < kGroupTabs; ++g) {
    EXPECT_EQ(view.Groups[g].AllOn, before.Groups[g].AllOn) << g;
    EXPECT_EQ(view.Groups[g].ChannelOn, before.Groups[g].ChannelOn) << g;
  }
  EXPECT_EQ(view.Group().AllOn, 0);
  EXPECT_FALSE(fresh->findChild<QCheckBox *>("chkAll")->isChecked());

  // Zones keep their share of the plot: on the vertical view the scale spans
  // the plot's width as it spanned the horizontal plot's height.
  const double extent = fresh->zonePlotExtent();
  ASSERT_GT(extent, 0);
  // A copy: the vertical window and its view go with the switch back below.
  const TrendGroup group = view.Group();
  for (std::size_t p = 0; p < group.ZoneHeight.size(); ++p) {
    if (group.ChannelNo[p] == 0) continue;
    const double share = before.Groups[1].ZoneHeight[p] / oldExtent;
    EXPECT_NEAR(group.ZoneHeight[p] / extent, share, 0.02) << p;
    EXPECT_GT(group.ZoneHeight[p], 0.8 * extent) << p;
  }

  // Colours are not part of what a switch keeps: the new window starts from the
  // start greys, and its pickers show the greys it draws with.
  EXPECT_EQ(fresh->findChild<QSpinBox *>("UpDown1")->value(), view.GridGrey);
  EXPECT_EQ(fresh->findChild<QSpinBox *>("UpDown2")->value(), view.BackGrey);
  EXPECT_EQ(view.BackGrey, 0);
  EXPECT_EQ(view.GridGrey, 10);

  window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  window.runCommand("mnuTimeAll");
  EXPECT_EQ(fresh->view().DisplayStart, info.FirstTime);
  EXPECT_EQ(fresh->view().DisplayEnd, end);

  // And back: the horizontal window again takes the state over.
  window.runCommand("mnuViewTrendHori");
  QCoreApplication::processEvents();
  TrendWindow *back = OnlyTrend(window);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(back->horizontal());
  EXPECT_EQ(back->view().CurrentGroup, 2);
  EXPECT_EQ(back->view().Cursor2Time, before.Cursor2Time);
  for (std::size_t p = 0; p < group.ZoneHeight.size(); ++p) {
    if (group.ChannelNo[p] == 0) continue;
    EXPECT_NEAR(back->view().Group().ZoneHeight[p] / double(back->zonePlotExtent()),
                before.Groups[1].ZoneHeight[p] / oldExtent, 0.02)
        << p;
  }
}

}  // namespace
}  // namespace recscope
