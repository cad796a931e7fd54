// The instant value list through the real main window on the demo record: the
// Window menu's command opens it beside the trend, its grid shows the page's
// texts, the paging buttons move it, it follows the trend's cursor and tabs, a
// row click sets the trend's cursor, the copy commands fill the clipboard, and
// closing the trend closes it.
#include <gtest/gtest.h>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTableWidget>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/menu_state.h"
#include "shell/shared_state.h"
#include "shell/toolbar_table.h"
#include "trend/trend_window.h"
#include "views/instant_value_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");
const std::int32_t kSampleStart = static_cast<std::int32_t>(FromCivil({2024, 3, 4, 8, 0, 0}));

struct InstantFixture : ::testing::Test {
  InstantFixture() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
    window.openFiles({kSample});
    window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;

  TrendWindow *Trend() {
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) return t;
    return nullptr;
  }
  QList<InstantValueWindow *> Lists() {
    QList<InstantValueWindow *> found;
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *w = qobject_cast<InstantValueWindow *>(sub->widget())) found.append(w);
    return found;
  }
  InstantValueWindow *OpenThroughTheMenu() {
    window.command("mnuWindowMoment")->trigger();
    QCoreApplication::processEvents();
    return Lists().isEmpty() ? nullptr : Lists().front();
  }
  static QTableWidget *Grid(InstantValueWindow *list) {
    return list->findChild<QTableWidget *>("MSFlexGrid1");
  }
  static QString Time(InstantValueWindow *list, int row) {
    return Grid(list)->verticalHeaderItem(row)->text();
  }
  static QString Cell(InstantValueWindow *list, int row, int column) {
    return Grid(list)->item(row, column)->text();
  }
  static int SelectedRow(InstantValueWindow *list) {
    const auto ranges = Grid(list)->selectedRanges();
    if (ranges.size() != 1 || ranges.front().topRow() != ranges.front().bottomRow()) return -1;
    return ranges.front().topRow();
  }
  static QString TimeText(std::int64_t t) { return QString::fromStdString(FormatTime(t, 1)); }
};

TEST_F(InstantFixture, WindowMomentOpensTheListOnScreenWithThePageTexts) {
  InstantValueWindow *list = OpenThroughTheMenu();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->objectName(), "frmInstantvalue");
  EXPECT_TRUE(list->isVisible());
  EXPECT_EQ(list->windowTitle(),
            QString::fromStdString(GetMessageText(19300, "@strNumber@", "01")) + "[" +
                QString::fromStdString(Shared().Slot(1).Record.FilePath) + "]");
  EXPECT_EQ(Shared().Slot(1).InstantOpen, -1);
  EXPECT_EQ(Shared().CurrentFile, 1);

  QTableWidget *grid = Grid(list);
  ASSERT_NE(grid, nullptr);
  ASSERT_EQ(grid->rowCount(), 1202);
  ASSERT_GE(grid->columnCount(), 5);
  EXPECT_EQ(grid->horizontalHeaderItem(0)->text(), "CH01\n最小");
  EXPECT_EQ(grid->horizontalHeaderItem(1)->text(), "CH01\n最大");
  EXPECT_EQ(grid->horizontalHeaderItem(2)->text(), "CH02\n瞬時値");
  EXPECT_EQ(grid->horizontalHeaderItem(4)->text(), "CH04\n平均値");
  EXPECT_EQ(Time(list, 0), "2024/03/04 08:00:00");
  EXPECT_EQ(Time(list, 1201), TimeText(kSampleStart + 10 * 1201));
  const QStringList firstRow = {Cell(list, 0, 0), Cell(list, 0, 1), Cell(list, 0, 2),
                                Cell(list, 0, 3), Cell(list, 0, 4)};
  EXPECT_EQ(firstRow, (QStringList{"39.6", "42.3", "38.3", "34.2", "28.7"}));
  EXPECT_EQ(SelectedRow(list), 0);

  auto *tabs = list->findChild<QTabBar *>("TabStrip1");
  ASSERT_NE(tabs, nullptr);
  EXPECT_EQ(tabs->tabText(tabs->count() - 1), QString::fromStdString(GetMessageText(10604)));
  for (const char *name : {"cmdFillTop", "cmdFillEnd", "cmdFillbefore", "cmdFillnext"})
    EXPECT_NE(list->findChild<QPushButton *>(name), nullptr) << name;
  EXPECT_EQ(list->findChild<QPushButton *>("cmdFillnext")->text(),
            QString::fromStdString(GetMessageText(11006)));

  // The menu set after: the record's set stands, the command stays on.
  EXPECT_EQ(Shared().MenuState, 1);
  for (const MenuStateRow &row : MenuStateTable())
    EXPECT_EQ(window.command(row.control)->isEnabled(), row.on[1]) << row.control;
  EXPECT_TRUE(window.command("mnuWindowMoment")->isEnabled());
}

TEST_F(InstantFixture, ToolKeyMomentOpensItAndASecondCommandKeepsOneWindow) {
  window.dispatchToolKey("Moment");
  QCoreApplication::processEvents();
  ASSERT_EQ(Lists().size(), 1);
  window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  window.runCommand("mnuWindowMoment");
  EXPECT_EQ(Lists().size(), 1);
}

TEST_F(InstantFixture, PagingButtonsMoveByPagesOf1202) {
  InstantValueWindow *list = OpenThroughTheMenu();
  ASSERT_NE(list, nullptr);
  const std::int32_t records = Shared().Slot(1).Record.RecordCount;  // 25920
  list->findChild<QPushButton *>("cmdFillnext")->click();
  EXPECT_EQ(Time(list, 0), TimeText(kSampleStart + 10 * 1202));
  EXPECT_EQ(Grid(list)->rowCount(), 1202);
  list->findChild<QPushButton *>("cmdFillEnd")->click();
  EXPECT_EQ(Grid(list)->rowCount(), 1202);
  EXPECT_EQ(Time(list, 1201), TimeText(kSampleStart + 10 * (records - 1)));
  EXPECT_EQ(Time(list, 0), TimeText(kSampleStart + 10 * (records - 1202)));
  EXPECT_EQ(SelectedRow(list), 0);
  EXPECT_EQ(Grid(list)->verticalScrollBar()->value(), 0);
  list->findChild<QPushButton *>("cmdFillbefore")->click();
  EXPECT_EQ(Time(list, 0), TimeText(kSampleStart + 10 * (records - 2404)));
  list->findChild<QPushButton *>("cmdFillTop")->click();
  EXPECT_EQ(Time(list, 0), "2024/03/04 08:00:00");
  const int reads = list->values().readCount();
  list->findChild<QPushButton *>("cmdFillTop")->click();  // the page stands: nothing redone
  list->findChild<QPushButton *>("cmdFillbefore")->click();
  EXPECT_EQ(list->values().readCount(), reads);
}

TEST_F(InstantFixture, FollowsTheTrendCursorAndReadsOnlyForAnotherPage) {
  InstantValueWindow *list = OpenThroughTheMenu();
  TrendWindow *trend = Trend();
  ASSERT_NE(list, nullptr);
  ASSERT_NE(trend, nullptr);
  trend->view().Cursor1Set = true;
  trend->view().Cursor1Time = kSampleStart + 10 * 5000;
  emit trend->cursorsChanged(1, 1, true);
  // Record 5001 is outside the first page: the page centres it.
  EXPECT_EQ(list->values().page().PageFirst, 5001 - 601);
  EXPECT_EQ(SelectedRow(list), 601);
  EXPECT_EQ(Time(list, 601), TimeText(kSampleStart + 10 * 5000));
  EXPECT_EQ(Grid(list)->verticalScrollBar()->value(), 596);

  // Inside the page only the selection moves: no read of the record file.
  const int reads = list->values().readCount();
  trend->view().Cursor1Time = kSampleStart + 10 * 5100;
  emit trend->cursorsChanged(1, 1, true);
  EXPECT_EQ(list->values().readCount(), reads);
  EXPECT_EQ(SelectedRow(list), 701);
  EXPECT_EQ(Grid(list)->verticalScrollBar()->value(), 696);

  // A move that the list itself asked for (follow false) leaves it.
  trend->view().Cursor1Time = kSampleStart + 10 * 20;
  emit trend->cursorsChanged(1, 1, false);
  EXPECT_EQ(SelectedRow(list), 701);
  EXPECT_EQ(list->values().page().PageFirst, 5001 - 601);
}

TEST_F(InstantFixture, CursorOnTheLastRecordRunsThePageToTheEnd) {
  InstantValueWindow *list = OpenThroughTheMenu();
  TrendWindow *trend = Trend();
  ASSERT_NE(list, nullptr);
  const RecordFileInfo &info = Shared().Slot(1).Record;
  trend->view().Cursor2Set = true;
  trend->view().Cursor2Time = info.LastTime;
  emit trend->cursorsChanged(1, 2, true);
  EXPECT_EQ(Grid(list)->rowCount(), 1202);
  EXPECT_EQ(SelectedRow(list), 1201);
  EXPECT_EQ(Time(list, 1201), TimeText(info.LastTime));
}

TEST_F(InstantFixture, RowClickMovesTheTrendCursorWithoutMovingTheList) {
  InstantValueWindow *list = OpenThroughTheMenu();
  TrendWindow *trend = Trend();
  ASSERT_NE(list, nullptr);
  list->findChild<QPushButton *>("cmdFillnext")->click();
  const std::int32_t first = list->values().page().PageFirst;
  emit Grid(list)->cellClicked(40, 2);
  EXPECT_TRUE(trend->view().Cursor1Set);
  EXPECT_EQ(trend->view().Cursor1Time, kSampleStart + 10 * (1202 + 40));
  // The cursor lies in the view of the whole file: the view stands.
  EXPECT_EQ(trend->view().DisplayStart, Shared().Slot(1).Record.FirstTime);
  EXPECT_EQ(list->values().page().PageFirst, first);
  EXPECT_EQ(SelectedRow(list), 0);
}

TEST_F(InstantFixture, TabsStayInStepWithTheTrend) {
  InstantValueWindow *list = OpenThroughTheMenu();
  TrendWindow *trend = Trend();
  ASSERT_NE(list, nullptr);
  auto *tabs = list->findChild<QTabBar *>("TabStrip1");
  trend->selectGroup(9);
  EXPECT_EQ(tabs->tabData(tabs->currentIndex()).toString(), "G9");
  EXPECT_EQ(list->values().group(), 9);
  // All 12 channels and 3 DI: CH01 has two columns, the rest as their types say.
  EXPECT_EQ(Grid(list)->columnCount(), static_cast<int>(list->values().grid().Columns.size()));
  EXPECT_EQ(Grid(list)->horizontalHeaderItem(Grid(list)->columnCount() - 1)->text().left(4),
            "DI03");
  // The operator's tab in the list goes to the trend.
  tabs->setCurrentIndex(0);
  EXPECT_EQ(trend->view().CurrentGroup, 1);
  EXPECT_EQ(list->values().group(), 1);
}

TEST_F(InstantFixture, CopyCommandsPutTheSelectionOnTheClipboard) {
  InstantValueWindow *list = OpenThroughTheMenu();
  ASSERT_NE(list, nullptr);
  QTableWidget *grid = Grid(list);
  grid->clearSelection();
  grid->setRangeSelected(QTableWidgetSelectionRange(0, 0, 1, 1), true);
  window.runCommand("mnuCopyPV");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "2024/03/04 08:00:00\t39.6\t42.3\t\r"
            "2024/03/04 08:00:10\t40.2\t42.6\t\r");
  window.runCommand("mnuCopyPVti");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "時刻\tCH01\tCH01\t\r"
            "\t最小\t最大\t\r"
            "2024/03/04 08:00:00\t39.6\t42.3\t\r"
            "2024/03/04 08:00:10\t40.2\t42.6\t\r");
}

TEST_F(InstantFixture, ClosingTheTrendClosesTheList) {
  InstantValueWindow *list = OpenThroughTheMenu();
  ASSERT_NE(list, nullptr);
  for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
    if (qobject_cast<TrendWindow *>(sub->widget())) sub->close();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(Lists().isEmpty());
  EXPECT_EQ(Shared().Slot(1).InstantOpen, 0);
  EXPECT_EQ(Shared().Slot(1).Record.InUse, 0);
  EXPECT_EQ(Shared().MenuState, 0);
}

TEST_F(InstantFixture, ListFollowsTheNewTrendAfterADirectionSwitch) {
  InstantValueWindow *list = OpenThroughTheMenu();
  ASSERT_NE(list, nullptr);
  window.runCommand("mnuViewTrendVer");
  QCoreApplication::processEvents();
  TrendWindow *trend = Trend();
  ASSERT_EQ(trend->objectName(), "frmTrend2");
  ASSERT_EQ(Lists().size(), 1);
  trend->view().Cursor1Set = true;
  trend->view().Cursor1Time = kSampleStart + 10 * 3000;
  emit trend->cursorsChanged(1, 1, true);
  EXPECT_EQ(Time(list, SelectedRow(list)), TimeText(kSampleStart + 10 * 3000));
}

}  // namespace

namespace {

// The batch command prints the grid as the window's copy with titles puts the
// whole grid on the clipboard, with "\n" for "\r".
TEST_F(InstantFixture, WholeGridCopyWithTitlesIsWhatTheBatchCommandPrints) {
  InstantValueWindow *list = OpenThroughTheMenu();
  ASSERT_NE(list, nullptr);
  list->findChild<QPushButton *>("cmdFillnext")->click();
  Grid(list)->selectAll();
  window.runCommand("mnuCopyPVti");
  QByteArray copied = QGuiApplication::clipboard()->text().toUtf8();
  ASSERT_EQ(copied.count('\r'), 1204);
  copied.replace('\r', '\n');

  QProcess cli;
  cli.start(QStringLiteral(RECSCOPE_BINARY_DIR "/bin/recscope-cli"),
            {"--home", QString::fromStdString(home.folder()), "--date-format", "1",
             "--decimal-char", ".", "instant", kSample, "--page", "2"});
  ASSERT_TRUE(cli.waitForFinished(60000));
  ASSERT_EQ(cli.exitCode(), 0) << cli.readAllStandardError().toStdString();
  EXPECT_EQ(cli.readAllStandardOutput(), copied);
}

}  // namespace
