// The event list and the between-cursors window through the real main window on
// the sample record: opened by their menu commands and tool buttons, their grids
// and labels as shown, row clicks sending a cursor to the trend, the trend's
// event search, cursor moves and tab changes followed, the copies on the
// clipboard, and both closing with their trend window.
#include <gtest/gtest.h>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"
#include "views/cursor_calc_window.h"
#include "views/event_list.h"
#include "views/event_list_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");
constexpr std::int32_t kFirstTime = 1709539200;  // 2024/03/04 08:00:00
constexpr std::int32_t kLastTime = 1709798390;   // 2024/03/07 07:59:50

template <typename T>
QList<T *> Windows(MainWindow &w) {
  QList<T *> found;
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (auto *t = qobject_cast<T *>(sub->widget())) found.append(t);
  return found;
}

QStringList RowTexts(QTableWidget *table, int row) {
  QStringList texts;
  for (int c = 0; c < table->columnCount(); ++c)
    texts << (table->item(row, c) ? table->item(row, c)->text() : QString());
  return texts;
}

QStringList Titles(QTableWidget *table) {
  QStringList texts;
  for (int c = 0; c < table->columnCount(); ++c) texts << table->horizontalHeaderItem(c)->text();
  return texts;
}

QString Label(QWidget *w, const char *name) { return w->findChild<QLabel *>(name)->text(); }

struct SlotViewsFixture : ::testing::Test {
  SlotViewsFixture() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
    window.openFiles({kSample});
    trend = Windows<TrendWindow>(window).value(0);
    EventListWindow::SetShiftStateSource([] { return 0; });
  }
  ~SlotViewsFixture() override {
    EventListWindow::SetShiftStateSource(nullptr);
    EventListWindow::SetEventSettingOpener(nullptr);
  }
  EventListWindow *OpenList() {
    window.runCommand("mnuWindowAramu");
    return Windows<EventListWindow>(window).value(0);
  }
  CursorCalcWindow *OpenCalc() {
    window.runCommand("mnuWindowBetweenC");
    return Windows<CursorCalcWindow>(window).value(0);
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
  TrendWindow *trend = nullptr;
};

TEST_F(SlotViewsFixture, EventListOpensFromTheMenuWithTheAlarmsOfTheRecord) {
  ASSERT_NE(trend, nullptr);
  EXPECT_TRUE(window.command("mnuWindowAramu")->isEnabled());
  EventListWindow *list = OpenList();
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(list->isVisible());
  EXPECT_EQ(list->objectName(), "frmEventlist");
  EXPECT_EQ(list->windowTitle(),
            QStringLiteral("アラーム／メッセージ／フラグ一覧表01[") + kSample + "]");
  EXPECT_EQ(Shared().Slot(1).AlarmListOpen, -1);
  auto *tabs = list->findChild<QTabBar *>("TabStrip1");
  ASSERT_EQ(tabs->count(), 3);
  EXPECT_EQ(tabs->tabText(0), "ｱﾗｰﾑ");
  EXPECT_EQ(tabs->tabText(1), "ﾒｯｾｰｼﾞ");
  EXPECT_EQ(tabs->tabText(2), "ﾌﾗｸﾞ");
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  EXPECT_EQ(Titles(table),
            (QStringList{"発生/解除時刻", "ﾁｬﾈﾙ№", "ｱﾗｰﾑ№", "警報動作", "発生/解除"}));
  EXPECT_EQ(table->columnWidth(0), 2200 / 15);
  EXPECT_EQ(table->columnWidth(1), 1200 / 15);
  ASSERT_EQ(table->rowCount(), 4);
  EXPECT_EQ(RowTexts(table, 0), (QStringList{"2024/03/04 18:38:30", "1", "1", "H", "発生"}));
  EXPECT_EQ(RowTexts(table, 1), (QStringList{"2024/03/04 19:03:20", "1", "1", "H", "解除"}));
  // The menu set stays that of an open record.
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(window.command("mnuWindowAramu")->isEnabled());
  // The tool button "Table" brings the same window forward, not a second one.
  window.dispatchToolKey("Table");
  EXPECT_EQ(Windows<EventListWindow>(window).size(), 1);
}

TEST_F(SlotViewsFixture, EventListTabsShowMessagesAndFlags) {
  EventListWindow *list = OpenList();
  auto *tabs = list->findChild<QTabBar *>("TabStrip1");
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  tabs->setCurrentIndex(1);
  EXPECT_EQ(list->listTab(), kMessageTab);
  EXPECT_EQ(Titles(table), (QStringList{"発生/解除時刻", "メッセージ", "表示", "表示位置"}));
  EXPECT_EQ(table->columnWidth(1), 5500 / 15);
  ASSERT_EQ(table->rowCount(), 36);
  EXPECT_EQ(RowTexts(table, 0), (QStringList{"2024/03/04 08:15:00", "扉閉 運転開始", "ON", "5"}));
  EXPECT_EQ(RowTexts(table, 1), (QStringList{"2024/03/04 08:30:00", "昇温開始", "OFF", "5"}));
  tabs->setCurrentIndex(2);
  EXPECT_EQ(list->listTab(), kFlagTab);
  EXPECT_EQ(Titles(table), (QStringList{"設定時刻", "メッセージ", "表示", "表示位置"}));
  ASSERT_EQ(table->rowCount(), 9);
  EXPECT_EQ(RowTexts(table, 0),
            (QStringList{"2024/03/04 09:30:00", "ロット 101 昇温確認", "ON", "3"}));
}

TEST_F(SlotViewsFixture, ChangeOfTabToTheSameTabRefillsNothing) {
  EventListWindow *list = OpenList();
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  table->item(0, 1)->setText("marked");
  list->selectTab(kAlarmTab);
  EXPECT_EQ(table->item(0, 1)->text(), "marked");
  list->selectTab(kFlagTab);
  list->selectTab(kAlarmTab);
  EXPECT_EQ(table->item(0, 1)->text(), "1");
}

TEST_F(SlotViewsFixture, DateFormatTakesEffectAtTheRefill) {
  EventListWindow *list = OpenList();
  window.runCommand("mnuViewdaysub2");
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  EXPECT_EQ(table->item(0, 0)->text(), "04/03/2024 18:38:30");
}

TEST_F(SlotViewsFixture, RowClickWithOnlyCursorTwoSetSetsCursorOne) {
  EventListWindow *list = OpenList();
  int moves = 0;
  QObject::connect(trend, &TrendWindow::cursorsChanged, [&moves](int, int, bool) { ++moves; });
  trend->setCursorFromList(2, kFirstTime + 600, true);
  moves = 0;
  EXPECT_FALSE(trend->view().Cursor1Set);
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  emit table->cellClicked(0, 2);  // the first alarm, as a click on it gives
  EXPECT_TRUE(trend->view().Cursor1Set);
  EXPECT_EQ(trend->view().Cursor1Time, 1709577510);
  EXPECT_EQ(trend->view().Cursor2Time, kFirstTime + 600);
  EXPECT_EQ(moves, 1);
  // The whole row is selected.
  ASSERT_EQ(table->selectedRanges().size(), 1);
  EXPECT_EQ(table->selectedRanges()[0].topRow(), 0);
  EXPECT_EQ(table->selectedRanges()[0].columnCount(), 5);
  // With Shift against the baseline the click sets cursor 2.
  EventListWindow::SetShiftStateSource([] { return 1; });
  emit table->cellClicked(1, 0);
  EXPECT_EQ(trend->view().Cursor2Time, 1709579000);
  EXPECT_EQ(trend->view().Cursor1Time, 1709577510);
}

TEST_F(SlotViewsFixture, RowClickWithNoCursorSetDoesNothing) {
  EventListWindow *list = OpenList();
  emit list->findChild<QTableWidget *>("MSFlexGrid1")->cellClicked(0, 0);
  EXPECT_FALSE(trend->view().Cursor1Set);
  EXPECT_FALSE(trend->view().Cursor2Set);
}

TEST_F(SlotViewsFixture, RowClickOutsideTheViewMovesTheView) {
  EventListWindow *list = OpenList();
  window.runCommand("mnuTimeI");
  window.runCommand("mnuTimeI");
  const std::int32_t span = trend->view().DisplayEnd - trend->view().DisplayStart;
  ASSERT_LT(trend->view().DisplayEnd, 1709798390 - 3600);
  trend->setCursorFromList(1, kFirstTime, true);
  list->selectTab(kFlagTab);
  const auto last = EventRowTime(kFlagTab, Shared().Slot(1).Alarms, Shared().Slot(1).Flags, 9);
  ASSERT_TRUE(last.has_value());
  list->clickRow(9);
  EXPECT_EQ(trend->view().Cursor1Time, *last);
  EXPECT_LE(trend->view().DisplayStart, *last);
  EXPECT_GE(trend->view().DisplayEnd, *last);
  EXPECT_EQ(trend->view().DisplayEnd - trend->view().DisplayStart, span);
}

TEST_F(SlotViewsFixture, EventFoundByTheTrendSelectsTabAndRow) {
  EventListWindow *list = OpenList();
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  emit trend->eventFound(1, 2, 4);
  EXPECT_EQ(list->listTab(), kFlagTab);
  EXPECT_EQ(list->findChild<QTabBar *>("TabStrip1")->currentIndex(), 2);
  EXPECT_EQ(table->currentRow(), 4);
  ASSERT_EQ(table->selectedRanges().size(), 1);
  EXPECT_EQ(table->selectedRanges()[0].topRow(), 4);
  EXPECT_EQ(table->selectedRanges()[0].bottomRow(), 4);
  emit trend->eventFound(1, 1, 30);
  EXPECT_EQ(list->listTab(), kMessageTab);
  EXPECT_EQ(table->currentRow(), 30);
  // A find of another slot is not this list's.
  emit trend->eventFound(2, 0, 1);
  EXPECT_EQ(list->listTab(), kMessageTab);
}

TEST_F(SlotViewsFixture, EventFoundReachesTheListAfterTheDirectionSwitch) {
  EventListWindow *list = OpenList();
  window.runCommand("mnuViewTrendVer");
  TrendWindow *fresh = Windows<TrendWindow>(window).value(0);
  ASSERT_NE(fresh, nullptr);
  EXPECT_EQ(fresh->objectName(), "frmTrend2");
  ASSERT_EQ(Windows<EventListWindow>(window).size(), 1);
  emit fresh->eventFound(1, 0, 2);
  EXPECT_EQ(list->listTab(), kAlarmTab);
  EXPECT_EQ(list->findChild<QTableWidget *>("MSFlexGrid1")->currentRow(), 2);
}

TEST_F(SlotViewsFixture, CopyOfASelectionMadeUpwardsRunsTopToBottom) {
  EventListWindow *list = OpenList();
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  // From row 2, column 4 up to row 1, column 3: the current cell is the upper one.
  table->setCurrentCell(2, 4);
  table->setCurrentCell(1, 3, QItemSelectionModel::NoUpdate);
  table->clearSelection();
  table->setRangeSelected(QTableWidgetSelectionRange(1, 3, 2, 4), true);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(list->parentWidget()));
  window.runCommand("mnuCopyEvent");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "H\t解除\t\rH\t発生\t\r");
  window.runCommand("mnuCopyEventTi");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "警報動作\t発生/解除\t\rH\t解除\t\rH\t発生\t\r");
}

TEST_F(SlotViewsFixture, SettingButtonOpensTheEventSettingWithTabAndTopRow) {
  EventListWindow *list = OpenList();
  std::vector<std::pair<int, int>> opened;
  EventListWindow::SetEventSettingOpener(
      [&opened](EventListWindow &, int tab, int top) { opened.emplace_back(tab, top); });
  list->selectTab(kMessageTab);
  list->findChild<QPushButton *>("cmdSetting")->click();
  ASSERT_EQ(opened.size(), 1u);
  EXPECT_EQ(opened[0], std::make_pair(kMessageTab, 1));
}

TEST_F(SlotViewsFixture, AfterFlagsAreRemovedTheFlagTabIsEmptyAndSettingDoesNothing) {
  EventListWindow *list = OpenList();
  int opened = 0;
  EventListWindow::SetEventSettingOpener([&opened](EventListWindow &, int, int) { ++opened; });
  list->selectTab(kFlagTab);
  Shared().Slot(1).Flags.clear();
  list->Refill();
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  EXPECT_EQ(table->rowCount(), 0);
  EXPECT_EQ(Titles(table), (QStringList{"設定時刻", "メッセージ", "表示", "表示位置"}));
  list->findChild<QPushButton *>("cmdSetting")->click();
  EXPECT_EQ(opened, 0);
}

TEST_F(SlotViewsFixture, ClosingTheTrendClosesBothListWindows) {
  OpenList();
  OpenCalc();
  EXPECT_EQ(Shared().Slot(1).CursorCalcOpen, -1);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(trend->parentWidget()));
  window.runCommand("mnuFileClose");
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(Windows<TrendWindow>(window).isEmpty());
  EXPECT_TRUE(Windows<EventListWindow>(window).isEmpty());
  EXPECT_TRUE(Windows<CursorCalcWindow>(window).isEmpty());
  EXPECT_EQ(Shared().Slot(1).AlarmListOpen, 0);
  EXPECT_EQ(Shared().Slot(1).CursorCalcOpen, 0);
  EXPECT_EQ(Shared().MenuState, 0);
  EXPECT_FALSE(window.command("mnuWindowAramu")->isEnabled());
  EXPECT_FALSE(window.command("mnuWindowBetweenC")->isEnabled());
}

TEST_F(SlotViewsFixture, ClosingTheListClearsItsOpenFlag) {
  EventListWindow *list = OpenList();
  list->parentWidget()->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Shared().Slot(1).AlarmListOpen, 0);
  EXPECT_EQ(Windows<TrendWindow>(window).size(), 1);
}

TEST_F(SlotViewsFixture, BetweenCursorsOpensFromTheMenuOverTheWholeFile) {
  EXPECT_TRUE(window.command("mnuWindowBetweenC")->isEnabled());
  CursorCalcWindow *calc = OpenCalc();
  ASSERT_NE(calc, nullptr);
  EXPECT_TRUE(calc->isVisible());
  EXPECT_EQ(calc->objectName(), "CurData");
  EXPECT_EQ(calc->windowTitle(), "01:" + kSample);
  EXPECT_EQ(Shared().Slot(1).CursorCalcOpen, -1);
  EXPECT_EQ(Label(calc, "Label1"), "表示時刻 :");
  EXPECT_EQ(Label(calc, "Label3"), "～");
  EXPECT_EQ(Label(calc, "Label2"), "時間幅 :");
  EXPECT_EQ(Label(calc, "Label4"), "データNo :");
  EXPECT_EQ(Label(calc, "lbl_StTime"), "2024/03/04 08:00:00");
  EXPECT_EQ(Label(calc, "lbl_EndTime"), "2024/03/07 07:59:50");
  EXPECT_EQ(Label(calc, "lbl_TimeWid"), "2 日  23:59:50");
  EXPECT_EQ(Label(calc, "lbl_DataNum"), "25920");
  auto *tabs = calc->findChild<QTabBar *>("TabStrip1");
  ASSERT_EQ(tabs->count(), 4);
  EXPECT_EQ(tabs->tabText(3), "全体表示");
  auto *table = calc->findChild<QTableWidget *>("MSCurData");
  ASSERT_EQ(table->rowCount(), 7);
  ASSERT_EQ(table->columnCount(), 5);
  EXPECT_EQ(table->columnWidth(1), 1300 / 15);
  EXPECT_EQ(RowTexts(table, 0), (QStringList{"", "CH1", "CH2", "CH3", "CH4"}));
  EXPECT_EQ(RowTexts(table, 1), (QStringList{"", "炉内温度", "炉内温度", "炉内温度", "ワーク温"}));
  EXPECT_EQ(RowTexts(table, 2), (QStringList{"", " 上     ", " 中     ", " 下     ", "度      "}));
  EXPECT_EQ(RowTexts(table, 3), (QStringList{"", "ﾟC     ", "ﾟC     ", "ﾟC     ", "ﾟC     "}));
  EXPECT_EQ(RowTexts(table, 4), (QStringList{"最大値", "898.1", "848.5", "845.5", "806.5"}));
  EXPECT_EQ(RowTexts(table, 5), (QStringList{"最小値", "36.8", "35.5", "32.5", "27.9"}));
  EXPECT_EQ(RowTexts(table, 6), (QStringList{"平均値", "525.4", "522.2", "519.2", "494.2"}));
  EXPECT_EQ(Shared().MenuState, 1);
  window.dispatchToolKey("cursor");
  EXPECT_EQ(Windows<CursorCalcWindow>(window).size(), 1);
}

TEST_F(SlotViewsFixture, CursorsChangedRecomputesFromTheCursors) {
  CursorCalcWindow *calc = OpenCalc();
  // Cursor 2 earlier than cursor 1: the labels still run from earlier to later.
  trend->view().Cursor1Time = 1709577513;
  trend->view().Cursor1Set = true;
  trend->view().Cursor2Time = 1709544600;
  trend->view().Cursor2Set = true;
  emit trend->cursorsChanged(1, 1, false);
  EXPECT_EQ(Label(calc, "lbl_StTime"), "2024/03/04 09:30:00");
  EXPECT_EQ(Label(calc, "lbl_EndTime"), "2024/03/04 18:38:30");
  EXPECT_EQ(Label(calc, "lbl_TimeWid"), "0 日  09:08:30");
  EXPECT_EQ(Label(calc, "lbl_DataNum"), "3292");
  auto *table = calc->findChild<QTableWidget *>("MSCurData");
  EXPECT_EQ(RowTexts(table, 4), (QStringList{"最大値", "897.2", "848.5", "845.5", "806.5"}));
  EXPECT_EQ(RowTexts(table, 5), (QStringList{"最小値", "36.8", "35.5", "32.5", "27.9"}));
  EXPECT_EQ(RowTexts(table, 6), (QStringList{"平均値", "543.6", "540.6", "537.6", "511.9"}));
}

TEST_F(SlotViewsFixture, EqualCursorsGiveOneSample) {
  CursorCalcWindow *calc = OpenCalc();
  trend->setCursorFromList(1, kFirstTime + 3600, true);
  trend->setCursorFromList(2, kFirstTime + 3601, true);
  EXPECT_EQ(Label(calc, "lbl_DataNum"), "1");
  EXPECT_EQ(Label(calc, "lbl_TimeWid"), "0 日  00:00:00");
  EXPECT_EQ(Label(calc, "lbl_StTime"), Label(calc, "lbl_EndTime"));
}

TEST_F(SlotViewsFixture, OneCursorRunsToTheFileEnd) {
  CursorCalcWindow *calc = OpenCalc();
  trend->setCursorFromList(1, kLastTime - 86400 - 3600, true);
  EXPECT_EQ(Label(calc, "lbl_StTime"), "2024/03/06 06:59:50");
  EXPECT_EQ(Label(calc, "lbl_EndTime"), "2024/03/07 07:59:50");
  EXPECT_EQ(Label(calc, "lbl_TimeWid"), "1 日  01:00:00");
}

TEST_F(SlotViewsFixture, TabsOfTrendAndBetweenCursorsKeepInStep) {
  CursorCalcWindow *calc = OpenCalc();
  auto *table = calc->findChild<QTableWidget *>("MSCurData");
  trend->selectGroup(2);
  EXPECT_EQ(calc->currentGroup(), 2);
  EXPECT_EQ(calc->findChild<QTabBar *>("TabStrip1")->currentIndex(), 1);
  EXPECT_EQ(RowTexts(table, 0), (QStringList{"", "CH5", "CH9", "CH8", "CH11"}));
  EXPECT_EQ(RowTexts(table, 6).value(1), "            -   ");  // a log channel has no average
  calc->findChild<QTabBar *>("TabStrip1")->setCurrentIndex(2);
  EXPECT_EQ(trend->view().CurrentGroup, 3);
  EXPECT_EQ(RowTexts(table, 0),
            (QStringList{"", "CH6", "CH7", "CH10", "CH12", "DI1", "DI2", "DI3"}));
  EXPECT_EQ(RowTexts(table, 4).mid(5), (QStringList{"1", "1", "1"}));
  EXPECT_EQ(RowTexts(table, 6).mid(5), (QStringList{"", "", ""}));
}

TEST_F(SlotViewsFixture, BetweenCursorsCopyWithTitlesAndOfTheSelection) {
  CursorCalcWindow *calc = OpenCalc();
  trend->setCursorFromList(1, 1709544600, true);
  trend->setCursorFromList(2, 1709577510, true);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(calc->parentWidget()));
  window.runCommand("mnuCopyMathTi");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "2024/03/04 09:30:00  to  2024/03/04 18:38:30\t0 日  09:08:30\t3292\r"
            "\tCH1\tCH2\tCH3\tCH4\t\r"
            "\t炉内温度\t炉内温度\t炉内温度\tワーク温\t\r"
            "\t 上     \t 中     \t 下     \t度      \t\r"
            "\tﾟC     \tﾟC     \tﾟC     \tﾟC     \t\r"
            "最大値\t897.2\t848.5\t845.5\t806.5\t\r"
            "最小値\t36.8\t35.5\t32.5\t27.9\t\r"
            "平均値\t543.6\t540.6\t537.6\t511.9\t\r");
  auto *table = calc->findChild<QTableWidget *>("MSCurData");
  table->setRangeSelected(QTableWidgetSelectionRange(4, 1, 6, 2), true);
  window.runCommand("mnuCopyMath");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "897.2\t848.5\t\r36.8\t35.5\t\r543.6\t540.6\t\r");
}

}  // namespace

namespace recscope {
namespace {

// The desktop program wires cmdSetting to frmEventSet on the list's tab and top row.
TEST_F(SlotViewsFixture, SettingButtonThroughTheProgramOpensFrmEventSet) {
  ConnectDesktopCommands(window);  // the fixture's list hooks were set after it
  EventListWindow *list = OpenList();
  ASSERT_NE(list, nullptr);
  list->selectTab(kFlagTab);
  QString seen;
  QTimer::singleShot(0, [&seen] {
    for (QWidget *w : QApplication::topLevelWidgets())
      if (w->objectName() == "frmEventSet" && w->isVisible()) {
        seen = w->objectName();
        w->findChild<QPushButton *>("cmdExit")->click();
      }
  });
  list->findChild<QPushButton *>("cmdSetting")->click();
  EXPECT_EQ(seen, "frmEventSet");
  EXPECT_FALSE(trend->view().DisplaySaved);
}

// A flag added at the cursor through the menu shows in the flag tab at once,
// and removing the flags empties it.
TEST_F(SlotViewsFixture, FlagsAddedAndRemovedThroughTheMenuShowInTheList) {
  EventListWindow *list = OpenList();
  ASSERT_NE(list, nullptr);
  list->selectTab(kFlagTab);
  auto *table = list->findChild<QTableWidget *>("MSFlexGrid1");
  const int before = table->rowCount();
  trend->setCursorFromList(1, kFirstTime + 7 * 3600 + 5, true);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(trend->parentWidget()));
  window.runCommand("mnuEditMark");
  EXPECT_EQ(table->rowCount(), before + 1);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(trend->parentWidget()));
  window.runCommand("mnuEditMarkDel");
  EXPECT_EQ(table->rowCount(), 0);
}

}  // namespace
}  // namespace recscope

namespace recscope {
namespace {

// The window arrangement lays out all four windows of the slot, the
// between-cursors window last, one above the other.
TEST_F(SlotViewsFixture, TileOneAboveTheOtherTakesAllFourWindowsOfTheSlot) {
  window.resize(1400, 1000);
  for (const char *command : {"mnuWindowMoment", "mnuWindowAramu", "mnuWindowBetweenC"}) {
    window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(trend->parentWidget()));
    window.runCommand(command);
  }
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(trend->parentWidget()));
  window.runCommand("mnuWindowTileHorizontal");
  QCoreApplication::processEvents();
  std::vector<int> tops;
  for (const char *name : {"frmTrend", "frmInstantvalue", "frmEventlist", "CurData"}) {
    QWidget *view = nullptr;
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (sub->widget() && sub->widget()->objectName() == name) view = sub;
    ASSERT_NE(view, nullptr) << name;
    tops.push_back(view->geometry().top());
  }
  EXPECT_EQ(tops[0], 0);
  EXPECT_LT(tops[0], tops[1]);
  EXPECT_LT(tops[1], tops[2]);
  EXPECT_LT(tops[2], tops[3]);
}

}  // namespace
}  // namespace recscope
