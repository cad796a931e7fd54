#include "trend/trend_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QScrollBar>
#include <QTabBar>
#include <QWheelEvent>

#include "../gui/gui_test_support.h"
#include "shell/message_service.h"
#include "shell/shared_state.h"
#include "shell/slot_windows.h"
#include "trend/trend_tooltips.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

using recscope::testing::App;

struct WindowFixture : ::testing::Test {
  TempFolder home;
  MessageRecorder messages{QMessageBox::No};
  void SetUp() override {
    App();
    ResetSharedState(Shared());
    Shared().ProgramFolder = home.str();
    RecordFileInfo info = MakeRecord(7000, 3, 0, 0, 1);
    info.Groups[1].Members = {2};
    info.Groups[1].GroupName = "TWO";
    WriteLevels(info, home.str(), 1, [](std::int64_t r, int) {
      std::int16_t v = static_cast<std::int16_t>(r % 1000);
      return std::make_pair(v, v);
    });
    Shared().Slot(1).Record = info;
    Shared().Slot(1).SamplePeriod = 1;
  }
};

TEST_F(WindowFixture, WindowIsMadeByTheOrientationWithCaptionAndTabs) {
  QMdiArea mdi;
  QWidget *w = OpenSlotWindow(&mdi, 1, SlotWindowKind::kTrend);
  EXPECT_EQ(w->objectName(), "frmTrend");
  EXPECT_EQ(w->property("slot").toInt(), 1);
  EXPECT_TRUE(w->windowTitle().startsWith(QString::fromUtf8("トレンド表示01[")));
  auto *tabs = w->findChild<QTabBar *>("TabStrip1");
  ASSERT_NE(tabs, nullptr);
  EXPECT_EQ(tabs->count(), 3);  // groups 1, 2 and all channels
  EXPECT_EQ(tabs->tabText(2), QString::fromUtf8("全体表示"));
  Shared().TrendOrientation = 0;
  QWidget *v = OpenSlotWindow(&mdi, 1, SlotWindowKind::kTrend);
  EXPECT_EQ(v->objectName(), "frmTrend2");
  EXPECT_NE(v->findChild<QScrollBar *>("VScroll1"), nullptr);
}

TEST_F(WindowFixture, EnlargeReduceAndTheScrollBarDriveTheRange) {
  TrendWindow w(1, true);
  w.resize(800, 400);
  w.show();
  w.onEnlarge();
  EXPECT_EQ(w.view().DisplayStart, 0);
  EXPECT_LT(w.view().DisplayEnd, 6999);
  auto *bar = w.findChild<QScrollBar *>("HScroll1");
  ASSERT_NE(bar, nullptr);
  EXPECT_GT(bar->maximum(), 0);
  std::int32_t span = w.view().DisplayEnd - w.view().DisplayStart;
  bar->setValue(bar->maximum());
  EXPECT_EQ(w.view().DisplayEnd, 6999 - (6999 - w.view().DisplayEnd) % 10);
  EXPECT_GE(w.view().DisplayStart, 6999 - span - 10);
  w.onTimeAll();
  EXPECT_EQ(w.view().DisplayStart, 0);
  EXPECT_EQ(bar->maximum(), 0);
  for (int i = 0; i < 20 && messages.ids().empty(); ++i) w.onEnlarge();
  ASSERT_FALSE(messages.ids().empty());
  EXPECT_EQ(messages.ids().back(), 11160);
  EXPECT_EQ(messages.messages().back().buttons, QMessageBox::Ok);
}

TEST_F(WindowFixture, WheelScrollsAndCtrlWheelZooms) {
  TrendWindow w(1, true);
  w.resize(800, 400);
  w.show();
  std::int32_t before = w.view().DisplayEnd;
  QWheelEvent zoom(QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, 120), Qt::NoButton,
                   Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&w, &zoom);
  EXPECT_LT(w.view().DisplayEnd, before);
  std::int32_t start = w.view().DisplayStart;
  QWheelEvent down(QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, -120), Qt::NoButton,
                   Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&w, &down);
  EXPECT_GT(w.view().DisplayStart, start);
}

TEST_F(WindowFixture, TabChangeMovesTheGroup) {
  TrendWindow w(1, true);
  w.resize(800, 400);
  w.show();
  auto *tabs = w.findChild<QTabBar *>("TabStrip1");
  tabs->setCurrentIndex(1);
  EXPECT_EQ(w.view().CurrentGroup, 2);
  tabs->setCurrentIndex(2);
  EXPECT_EQ(w.view().CurrentGroup, 9);
}

TEST_F(WindowFixture, CloseAsksWhenUnsavedAndCancelKeepsTheWindow) {
  int closed = 0;
  auto *w = new TrendWindow(1, true);
  QObject::connect(w, &TrendWindow::closed, [&closed](int slot) { closed = slot; });
  w->show();
  w->view().DisplaySaved = false;
  messages.setAnswer(QMessageBox::Cancel);
  EXPECT_FALSE(w->close());
  ASSERT_EQ(messages.ids(), std::vector<int>{19503});
  const MessageRequest &question = messages.messages()[0];
  EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  EXPECT_TRUE(question.text().contains(QString::fromStdString(Shared().Slot(1).Record.FilePath)));
  EXPECT_FALSE(question.text().contains("@FileName@"));
  EXPECT_EQ(closed, 0);
  messages.setAnswer(QMessageBox::No);
  EXPECT_TRUE(w->close());
  EXPECT_EQ(closed, 1);
  delete w;
}

TEST_F(WindowFixture, SizeBelowTheMinimumSnapsBack) {
  TrendWindow w(1, true);
  w.show();
  w.resize(100, 100);
  EXPECT_GE(w.width(), 6400 / 15);
  EXPECT_GE(w.height(), 4100 / 15);
}

TEST_F(WindowFixture, OrientationSwitchKeepsCursorsAndGroup) {
  QMdiArea mdi;
  auto *w = static_cast<TrendWindow *>(OpenSlotWindow(&mdi, 1, SlotWindowKind::kTrend));
  Shared().Slot(1).Record.InUse = -1;
  Shared().OpenFileCount = 1;
  w->view().Cursor1Set = true;
  w->view().Cursor1Time = 1234;
  w->view().DisplaySaved = false;
  w->selectGroup(2);
  SwitchTrendOrientation(&mdi, false);
  QApplication::processEvents();
  TrendWindow *fresh = nullptr;
  for (QMdiSubWindow *sub : mdi.subWindowList())
    if (auto *t = qobject_cast<TrendWindow *>(sub->widget()); t && !t->horizontal()) fresh = t;
  ASSERT_NE(fresh, nullptr);
  EXPECT_EQ(fresh->objectName(), "frmTrend2");
  EXPECT_TRUE(fresh->view().Cursor1Set);
  EXPECT_EQ(fresh->view().Cursor1Time, 1234);
  EXPECT_FALSE(fresh->view().DisplaySaved);
  EXPECT_EQ(fresh->view().CurrentGroup, 2);
  EXPECT_TRUE(messages.ids().empty());  // no save question on the switch
  // The slot goes on in the new window.
  EXPECT_EQ(Shared().Slot(1).Record.InUse, -1);
  EXPECT_EQ(Shared().OpenFileCount, 1);
  EXPECT_EQ(fresh->property("slot").toInt(), 1);
  EXPECT_EQ(fresh->windowTitle(), SlotWindowCaption(1));
  // Closing the new window frees the slot: it was made by the same route.
  fresh->view().DisplaySaved = true;
  EXPECT_TRUE(fresh->close());
  EXPECT_EQ(Shared().Slot(1).Record.InUse, 0);
  EXPECT_EQ(Shared().OpenFileCount, 0);
}

TEST_F(WindowFixture, BottomControlsSayWhatTheyDo) {
  TrendWindow w(1, true);
  for (const char *name : {"UpDown1", "UpDown2", "Command1", "chkAll", "chkSingle"}) {
    QWidget *control = w.findChild<QWidget *>(name);
    ASSERT_NE(control, nullptr) << name;
    EXPECT_FALSE(control->toolTip().isEmpty()) << name;
    EXPECT_EQ(control->toolTip(), TrendControlTip(name)) << name;
  }
  // Each says something of its own, in the operator's language.
  EXPECT_NE(TrendControlTip("UpDown1"), TrendControlTip("UpDown2"));
  EXPECT_NE(TrendControlTip("chkAll"), TrendControlTip("chkSingle"));
  EXPECT_TRUE(TrendControlTip("UpDown1").contains(QString::fromUtf8("マス目")));
  EXPECT_TRUE(TrendControlTip("UpDown2").contains(QString::fromUtf8("バック")));
  EXPECT_TRUE(TrendControlTip("TabStrip1").isEmpty());
}

}  // namespace
}  // namespace recscope
