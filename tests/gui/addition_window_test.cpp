// Totalize files on the desktop: mnuFileAdditionView with the real file dialog,
// frmAddition in the frame with its caption, tabs, grid and buttons, paging with
// its two messages, the copy by Ctrl+C and by the popup, the resize rules, the
// menu set of totalize windows, and mnuFileChange choosing the totalize CSV by
// the active window's caption.
#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "../totalize/totalize_fixture.h"
#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "record/record_writer.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/menu_state.h"
#include "shell/shared_state.h"
#include "shell/toolbar_table.h"
#include "totalize/addition_commands.h"
#include "totalize/addition_window.h"
#include "totalize/totalize_writer.h"

using namespace recscope;
using recscope::testing::GuiHome;
using recscope::testing_support::MakeTotalizeContent;
using recscope::testing_support::MakeTotalizeRecords;

namespace {

using Row = std::vector<std::string>;

std::set<std::string> FilesIn(const std::string &folder) {
  std::set<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    names.insert(entry.path().filename().string());
  return names;
}

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

// The grid's texts as the window shows them.
std::vector<Row> GridTexts(QTableWidget *grid) {
  std::vector<Row> rows;
  for (int r = 0; r < grid->rowCount(); ++r) {
    Row row;
    for (int c = 0; c < grid->columnCount(); ++c)
      row.push_back(grid->item(r, c) ? grid->item(r, c)->text().toStdString() : std::string());
    rows.push_back(row);
  }
  return rows;
}

// The selected rows of the grid, each selected over all its columns, as a list.
std::vector<int> SelectedWholeRows(QTableWidget *grid) {
  std::vector<int> rows;
  for (const QTableWidgetSelectionRange &r : grid->selectedRanges()) {
    EXPECT_EQ(r.leftColumn(), 0);
    EXPECT_EQ(r.rightColumn(), grid->columnCount() - 1);
    for (int row = r.topRow(); row <= r.bottomRow(); ++row) rows.push_back(row);
  }
  return rows;
}

QString Caption(int kind, int slot, const QString &path) {
  static const int ids[] = {0, 19201, 19203, 19202, 19204, 19204, 19205, 19206};
  return QString::fromStdString(GetMessageText(ids[kind])) +
         QStringLiteral("%1").arg(slot, 2, 10, QLatin1Char('0')) + "[" + path + "]";
}

struct AdditionFixture : ::testing::Test {
  AdditionFixture() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
  }
  MessageRecorder messages{QMessageBox::Ok};
  GuiHome home;
  MainWindow window;

  QString Write(const QString &name, bool binary, int records,
                const TotalizeFileContent &content = MakeTotalizeContent()) {
    const QString path = home.path(name);
    EXPECT_TRUE(
        WriteTotalizeFile(path.toStdString(), content, binary, MakeTotalizeRecords(records)));
    return path;
  }
  QList<AdditionWindow *> Additions() {
    QList<AdditionWindow *> found;
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *a = qobject_cast<AdditionWindow *>(sub->widget())) found.append(a);
    return found;
  }
  AdditionWindow *OpenPath(const QString &path) {
    EXPECT_TRUE(OpenAdditionPath(&window, window.mdiArea(), path));
    QCoreApplication::processEvents();
    return Additions().isEmpty() ? nullptr : Additions().back();
  }
  static QTableWidget *Grid(AdditionWindow *w) {
    return w->findChild<QTableWidget *>("MSFlexGrid1");
  }
  static QPushButton *Button(AdditionWindow *w, int index) {
    for (QPushButton *b : w->findChildren<QPushButton *>("cmdFilloperate"))
      if (b->property("index").toInt() == index) return b;
    return nullptr;
  }
  static std::array<bool, 4> ButtonStates(AdditionWindow *w) {
    return {Button(w, 0)->isEnabled(), Button(w, 1)->isEnabled(), Button(w, 2)->isEnabled(),
            Button(w, 3)->isEnabled()};
  }
  QAction *ToolButton(int index) {
    return window.findChild<QAction *>(QStringLiteral("tbButton%1").arg(index));
  }
  void ExpectMenuSet(int state) {
    for (const MenuStateRow &row : MenuStateTable())
      EXPECT_EQ(window.command(row.control)->isEnabled(), row.on[state])
          << row.control << " in state " << state;
    for (const ToolButtonSpec &place : ToolButtonTable()) {
      if (place.key == nullptr) continue;
      EXPECT_EQ(ToolButton(place.index)->isEnabled(), ToolButtonOn(place.index, state))
          << "button " << place.index << " in state " << state;
    }
  }
  // Answers the file dialog that the next command shows: checks it and chooses
  // `path` in it (an empty path cancels it).
  void AnswerFileDialog(const QString &path) {
    auto answer = std::make_shared<std::function<void()>>();
    *answer = [this, path, answer] {
      auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
      if (!dialog) {
        QTimer::singleShot(10, *answer);
        return;
      }
      dialogSeen = true;
      EXPECT_EQ(dialog->objectName(), "dlgAdditionOpen");
      EXPECT_EQ(dialog->windowTitle().toStdString(), GetMessageText(11171));
      EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
      EXPECT_EQ(dialog->nameFilters(),
                QStringList{QStringLiteral("積算ファイル (T*.FDT D*.FDT M*.FDT E*.FDT)")});
      if (path.isEmpty()) {
        dialog->reject();
        return;
      }
      dialog->selectFile(path);
      static_cast<QDialog *>(dialog)->accept();  // the file dialog's own accept
    };
    QTimer::singleShot(0, *answer);
  }
  void CloseActiveThroughTheMenu() {
    window.command("mnuFileClose")->trigger();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  void SendKey(QWidget *to, QEvent::Type type, int key, Qt::KeyboardModifiers mods) {
    QKeyEvent event(type, key, mods);
    QCoreApplication::sendEvent(to, &event);
  }
  bool dialogSeen = false;
};

const std::vector<Row> kFirstTabOfTwoRecords = {
    {"", "", "CH01", "CH05"},
    {"", "積算動作タイプ", "積算", "積算"},
    {"", "積算タグ", "FLOW1   ", "PUMP    "},
    {"積算開始時刻", "積算終了時刻", "m3     ", "count  "},
    {"2026/01/02 00:00:00", "2026/01/02 01:00:00", "1.1", "-1"},
    {"2026/01/02 01:00:00", "2026/01/02 02:00:00", "2.1", "-2"},
};

TEST_F(AdditionFixture, MenuCommandOpensTheFileChosenInTheDialogAndTurnsTheTotalizeMenusOn) {
  const QString path = Write("T0001.FDT", true, 2);
  ExpectMenuSet(0);
  AnswerFileDialog(path);
  window.command("mnuFileAdditionView")->trigger();
  QCoreApplication::processEvents();
  EXPECT_TRUE(dialogSeen);
  EXPECT_TRUE(messages.ids().empty());

  ASSERT_EQ(Additions().size(), 1);
  AdditionWindow *w = Additions().front();
  EXPECT_TRUE(w->isVisible());
  EXPECT_EQ(w->objectName(), "frmAddition");
  EXPECT_EQ(w->windowTitle(), Caption(1, 1, path));
  EXPECT_EQ(Shared().Totalize(1).InUse, 1);
  EXPECT_EQ(Shared().OpenAdditionCount, 1);
  EXPECT_EQ(Shared().OpenFileCount, 0);

  auto *tabs = w->findChild<QTabBar *>("TabStrip1");
  ASSERT_NE(tabs, nullptr);
  ASSERT_EQ(tabs->count(), 5);
  EXPECT_EQ(tabs->tabText(0).toStdString(), "積算グループ１");
  EXPECT_EQ(tabs->tabText(4).toStdString(), "全体表示");
  EXPECT_EQ(tabs->currentIndex(), 0);
  EXPECT_EQ(w->currentTab(), 1);
  EXPECT_EQ(GridTexts(Grid(w)), kFirstTabOfTwoRecords);
  EXPECT_EQ(SelectedWholeRows(Grid(w)), std::vector<int>{4});
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, false}));
  EXPECT_EQ(Button(w, 0)->text().toStdString(), "ファイル先頭");
  EXPECT_EQ(Button(w, 3)->text().toStdString(), "次ページ");
  // Column widths: 2200 twips for the times, 1000 for a channel.
  EXPECT_EQ(Grid(w)->columnWidth(0), 2200 / 15);
  EXPECT_EQ(Grid(w)->columnWidth(1), 2200 / 15);
  EXPECT_EQ(Grid(w)->columnWidth(2), 1000 / 15);
  EXPECT_EQ(Grid(w)->item(4, 2)->textAlignment(), int(Qt::AlignCenter));

  // Only totalize windows: state 2, the window menu on, its record entries off.
  EXPECT_EQ(Shared().MenuState, 2);
  ExpectMenuSet(2);
  EXPECT_TRUE(window.command("mnuWindow")->isEnabled());
  EXPECT_FALSE(window.command("mnuWindowMoment")->isEnabled());

  CloseActiveThroughTheMenu();
  EXPECT_TRUE(Additions().isEmpty());
  EXPECT_EQ(Shared().Totalize(1).InUse, 0);
  EXPECT_EQ(Shared().OpenAdditionCount, 0);
  EXPECT_EQ(Shared().MenuState, 0);
  ExpectMenuSet(0);
}

TEST_F(AdditionFixture, ToolButtonAdditionGoesTheSameWay) {
  const QString path = Write("D0001.FDT", false, 2);
  AnswerFileDialog(path);
  ToolButton(2)->trigger();  // "Addition"
  QCoreApplication::processEvents();
  ASSERT_EQ(Additions().size(), 1);
  EXPECT_EQ(Additions().front()->windowTitle(), Caption(2, 1, path));
  ExpectMenuSet(2);
}

TEST_F(AdditionFixture, MalformedTotalizeFileThroughTheDialogShowsItsMessageAndOpensNothing) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.EndMark = 0xFFFE;
  const QString path = Write("T0002.FDT", true, 3, content);
  const std::set<std::string> before = FilesIn(home.folder());
  AnswerFileDialog(path);
  window.command("mnuFileAdditionView")->trigger();
  QCoreApplication::processEvents();
  EXPECT_TRUE(dialogSeen);
  EXPECT_EQ(messages.ids(), std::vector<int>{11120});
  EXPECT_TRUE(Additions().isEmpty());
  EXPECT_TRUE(window.mdiArea()->subWindowList().isEmpty());
  for (int n = 1; n <= kTotalizeSlotCount; ++n) EXPECT_EQ(Shared().Totalize(n).InUse, 0);
  EXPECT_EQ(Shared().OpenAdditionCount, 0);
  ExpectMenuSet(0);
  EXPECT_EQ(FilesIn(home.folder()), before);
}

TEST_F(AdditionFixture, HalfARecordThroughTheDialogShows11123) {
  const QString path = Write("T0003.FDT", true, 3);
  std::filesystem::resize_file(path.toStdString(),
                               std::filesystem::file_size(path.toStdString()) - 7);
  AnswerFileDialog(path);
  window.command("mnuFileAdditionView")->trigger();
  QCoreApplication::processEvents();
  EXPECT_EQ(messages.ids(), std::vector<int>{11123});
  EXPECT_TRUE(Additions().isEmpty());
  ExpectMenuSet(0);
}

TEST_F(AdditionFixture, CancelledDialogOpensNothing) {
  AnswerFileDialog(QString());
  window.command("mnuFileAdditionView")->trigger();
  QCoreApplication::processEvents();
  EXPECT_TRUE(dialogSeen);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_TRUE(Additions().isEmpty());
  ExpectMenuSet(0);
}

TEST_F(AdditionFixture, WrongNameShows11112) {
  const QString path = Write("X0001.FDT", true, 2);
  EXPECT_FALSE(OpenAdditionPath(&window, window.mdiArea(), path));
  EXPECT_EQ(messages.ids(), std::vector<int>{11112});
  EXPECT_TRUE(Additions().isEmpty());
}

TEST_F(AdditionFixture, NewFileWithAnActionTypeAboveTwoIsRefusedWithoutAWindow) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.VersionText = "VER.0220";
  content.Channels[2].ActionType = 3;
  const QString path = Write("T0004.FDT", true, 2, content);
  EXPECT_FALSE(OpenAdditionPath(&window, window.mdiArea(), path));
  EXPECT_EQ(messages.ids(), std::vector<int>{11120});
  EXPECT_TRUE(Additions().isEmpty());
  EXPECT_EQ(Shared().Totalize(1).InUse, 0);
  EXPECT_EQ(Shared().OpenAdditionCount, 0);
  ExpectMenuSet(0);
}

TEST_F(AdditionFixture, WindowTakesTheFramesInnerWidthLess500TwipsAnd6000TwipsHigh) {
  AdditionWindow *w = OpenPath(Write("T0001.FDT", true, 100));
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->width(), window.mdiArea()->viewport()->width() - 500 / 15);
  EXPECT_EQ(w->height(), 6000 / 15);
  EXPECT_EQ(w->parentWidget()->pos(), QPoint(0, 0));
  // Row 4 is selected with the title rows above it in sight.
  QCoreApplication::processEvents();
  EXPECT_EQ(SelectedWholeRows(Grid(w)), std::vector<int>{4});
  EXPECT_EQ(Grid(w)->verticalScrollBar()->value(), 0);
  EXPECT_GT(Grid(w)->verticalScrollBar()->maximum(), 0);
}

TEST_F(AdditionFixture, ResizeKeepsTheControlsToTheirRules) {
  AdditionWindow *w = OpenPath(Write("T0001.FDT", true, 2));
  ASSERT_NE(w, nullptr);
  w->resize(12000 / 15, 6000 / 15);
  QCoreApplication::processEvents();
  QTableWidget *grid = Grid(w);
  EXPECT_EQ(w->findChild<QTabBar *>("TabStrip1")->width(), (12000 - 150) / 15);
  EXPECT_EQ(grid->width(), (12000 - 400) / 15);
  EXPECT_EQ(grid->height(), (6000 - 1425) / 15);
  EXPECT_EQ(w->findChild<QWidget *>("Picture1")->y(), grid->y() + (6000 - 1425 + 100) / 15);
  w->resize(3000 / 15, 900 / 15);
  QCoreApplication::processEvents();
  EXPECT_EQ(grid->height(), 0);  // a height below 0 becomes 0
}

TEST_F(AdditionFixture, PagingButtonsTurnPagesAndSelectTheirRows) {
  AdditionWindow *w = OpenPath(Write("T0005.FDT", true, 2500));
  ASSERT_NE(w, nullptr);
  const TotalizeWindow &t = Shared().Totalize(1);
  ASSERT_EQ(t.PageCount, 3);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, true}));
  QTableWidget *grid = Grid(w);
  EXPECT_EQ(grid->rowCount(), 1202 + 4);

  Button(w, 3)->click();  // next page: record 1203 starts 1202 hours (50 days 2 hours) on
  EXPECT_EQ(t.CurrentPage, 2);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, true, true}));
  EXPECT_EQ(GridTexts(grid)[4],
            (Row{"2026/02/21 02:00:00", "2026/02/21 03:00:00", "1203.1", "-1203"}));
  EXPECT_EQ(SelectedWholeRows(grid), std::vector<int>{4});

  Button(w, 1)->click();  // file end: 2500 - 2404 = 96 rows
  EXPECT_EQ(t.CurrentPage, 3);
  EXPECT_EQ(grid->rowCount(), 96 + 4);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, true, false}));
  EXPECT_EQ(SelectedWholeRows(grid), std::vector<int>{99});
  EXPECT_EQ(GridTexts(grid)[99][2], "2500.1");

  Button(w, 2)->click();  // page before: its bottom row
  EXPECT_EQ(t.CurrentPage, 2);
  EXPECT_EQ(SelectedWholeRows(grid), std::vector<int>{1205});

  Button(w, 0)->click();  // file top
  EXPECT_EQ(t.CurrentPage, 1);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, true}));
  EXPECT_EQ(SelectedWholeRows(grid), std::vector<int>{4});
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(AdditionFixture, OnePageFileReselectsWithItsFirstAndLastButtonsWithoutReadingTheFile) {
  const QString path = Write("T0006.FDT", true, 3);
  AdditionWindow *w = OpenPath(path);
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, false}));
  const std::vector<Row> shown = GridTexts(Grid(w));
  // The file now holds other values: a read would show them.
  std::vector<TotalizeRecordContent> other = MakeTotalizeRecords(3);
  for (auto &r : other) r.Values = {999, 999, 999};
  ASSERT_TRUE(WriteTotalizeFile(path.toStdString(), MakeTotalizeContent(), true, other));

  Button(w, 1)->click();
  EXPECT_EQ(SelectedWholeRows(Grid(w)), std::vector<int>{6});
  EXPECT_EQ(GridTexts(Grid(w)), shown);
  Button(w, 0)->click();
  EXPECT_EQ(SelectedWholeRows(Grid(w)), std::vector<int>{4});
  EXPECT_EQ(GridTexts(Grid(w)), shown);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, false}));
  EXPECT_TRUE(messages.ids().empty());

  // The test that the file exists is still made.
  std::filesystem::remove(path.toStdString());
  Button(w, 1)->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{18805});
}

TEST_F(AdditionFixture, DeletedFileAndNextPageReport18805AndKeepThePage) {
  const QString path = Write("T0007.FDT", true, 1203);
  AdditionWindow *w = OpenPath(path);
  ASSERT_NE(w, nullptr);
  const std::vector<Row> shown = GridTexts(Grid(w));
  std::filesystem::remove(path.toStdString());
  Button(w, 3)->click();
  ASSERT_EQ(messages.ids(), std::vector<int>{18805});
  EXPECT_EQ(messages.messages()[0].placeholders,
            (MessagePlaceholders{{"@AdditionfName@", path.toStdString()}}));
  EXPECT_EQ(GetMessageText(18805, messages.messages()[0].placeholders),
            "ファイル" + path.toStdString() + "は存在しません");
  EXPECT_EQ(Shared().Totalize(1).CurrentPage, 1);
  EXPECT_EQ(GridTexts(Grid(w)), shown);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, true}));
}

TEST_F(AdditionFixture, FailedPageReadReports18806AndLeavesTheWindowAsItWas) {
  const QString path = Write("T0008.FDT", true, 1203);
  AdditionWindow *w = OpenPath(path);
  ASSERT_NE(w, nullptr);
  const std::vector<Row> shown = GridTexts(Grid(w));
  // The file is still there but ends within page 1.
  std::filesystem::resize_file(path.toStdString(), 1000);
  Button(w, 3)->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{18806});
  EXPECT_EQ(Shared().Totalize(1).CurrentPage, 1);
  EXPECT_EQ(GridTexts(Grid(w)), shown);
  EXPECT_EQ(ButtonStates(w), (std::array<bool, 4>{true, true, false, true}));
}

TEST_F(AdditionFixture, TabsRefillTheGridFromMemoryAndAnEmptyGroupShowsTheTimesOnly) {
  const QString path = Write("T0009.FDT", true, 2);
  AdditionWindow *w = OpenPath(path);
  ASSERT_NE(w, nullptr);
  // No read is needed for a tab: the file may be gone.
  std::filesystem::remove(path.toStdString());
  auto *tabs = w->findChild<QTabBar *>("TabStrip1");
  tabs->setCurrentIndex(4);  // "全体表示", key Group9
  EXPECT_EQ(w->currentTab(), 9);
  EXPECT_EQ(GridTexts(Grid(w))[0], (Row{"", "", "CH01", "CH05", "CH09"}));
  EXPECT_EQ(GridTexts(Grid(w))[5],
            (Row{"2026/01/02 01:00:00", "2026/01/02 02:00:00", "2.1", "-2", "123.458"}));
  EXPECT_EQ(SelectedWholeRows(Grid(w)), std::vector<int>{4});
  tabs->setCurrentIndex(2);  // group 3 has no members
  EXPECT_EQ(w->currentTab(), 3);
  const std::vector<Row> expected = {
      {"", ""},
      {"", "積算動作タイプ"},
      {"", "積算タグ"},
      {"積算開始時刻", "積算終了時刻"},
      {"2026/01/02 00:00:00", "2026/01/02 01:00:00"},
      {"2026/01/02 01:00:00", "2026/01/02 02:00:00"},
  };
  EXPECT_EQ(GridTexts(Grid(w)), expected);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(AdditionFixture, CtrlCCopiesTitleRowsAndTheSelectionByKeyState) {
  AdditionWindow *w = OpenPath(Write("T0010.FDT", true, 3));
  ASSERT_NE(w, nullptr);
  QTableWidget *grid = Grid(w);
  QGuiApplication::clipboard()->setText("before");
  // Rows 5 and 6, selected upwards: the current cell is on row 5 and the
  // selection reaches down to row 6 from where it began.
  grid->clearSelection();
  grid->setCurrentCell(5, 0, QItemSelectionModel::NoUpdate);
  grid->setRangeSelected(QTableWidgetSelectionRange(5, 0, 6, 3), true);
  SendKey(grid, QEvent::KeyPress, Qt::Key_Control, Qt::ControlModifier);
  SendKey(grid, QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");  // copied at the release
  SendKey(grid, QEvent::KeyRelease, Qt::Key_C, Qt::ControlModifier);
  const std::string titles =
      "\t\tCH01\tCH05\t\r\t積算動作タイプ\t積算\t積算\t\r\t積算タグ\tFLOW1   \tPUMP    \t\r"
      "積算開始時刻\t積算終了時刻\tm3     \tcount  \t\r";
  const std::string rows56 =
      "2026/01/02 01:00:00\t2026/01/02 02:00:00\t2.1\t-2\t\r"
      "2026/01/02 02:00:00\t2026/01/02 03:00:00\t3.1\t-3\t\r";
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), titles + rows56);

  // Both keys were forgotten at the release: C alone copies nothing.
  QGuiApplication::clipboard()->setText("again");
  SendKey(grid, QEvent::KeyRelease, Qt::Key_Control, Qt::NoModifier);
  SendKey(grid, QEvent::KeyPress, Qt::Key_C, Qt::NoModifier);
  SendKey(grid, QEvent::KeyRelease, Qt::Key_C, Qt::NoModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "again");

  // The selection the other way round (current cell at its bottom) copies the same.
  grid->clearSelection();
  grid->setCurrentCell(6, 0, QItemSelectionModel::NoUpdate);
  grid->setRangeSelected(QTableWidgetSelectionRange(5, 0, 6, 3), true);
  w->TotalMSFlexGrid1_copy();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), titles + rows56);
}

TEST_F(AdditionFixture, SelectionInTheHeaderRowsCopiesThemTwice) {
  AdditionWindow *w = OpenPath(Write("T0011.FDT", true, 3));
  ASSERT_NE(w, nullptr);
  QTableWidget *grid = Grid(w);
  grid->clearSelection();
  grid->setCurrentCell(2, 0, QItemSelectionModel::NoUpdate);
  grid->setRangeSelected(QTableWidgetSelectionRange(1, 0, 2, 3), true);
  w->TotalMSFlexGrid1_copy();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "\t\tCH01\tCH05\t\r\t積算動作タイプ\t積算\t積算\t\r\t積算タグ\tFLOW1   \tPUMP    \t\r"
            "積算開始時刻\t積算終了時刻\tm3     \tcount  \t\r"
            "\t積算動作タイプ\t積算\t積算\t\r\t積算タグ\tFLOW1   \tPUMP    \t\r");
}

TEST_F(AdditionFixture, RightButtonReleaseOpensTheCopyPopupWhoseCommandCopies) {
  AdditionWindow *w = OpenPath(Write("T0012.FDT", true, 2));
  ASSERT_NE(w, nullptr);
  QTableWidget *grid = Grid(w);
  QMenu *popup = window.command("mnuCopyTotal")->menu();
  ASSERT_NE(popup, nullptr);
  const QPoint at(20, 20);
  QMouseEvent release(QEvent::MouseButtonRelease, QPointF(at),
                      grid->viewport()->mapToGlobal(QPointF(at)), Qt::RightButton, Qt::NoButton,
                      Qt::NoModifier);
  QCoreApplication::sendEvent(grid->viewport(), &release);
  EXPECT_TRUE(popup->isVisible());
  popup->hide();
  QGuiApplication::clipboard()->setText("before");
  window.command("mnuCopyTotalTi")->trigger();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "\t\tCH01\tCH05\t\r\t積算動作タイプ\t積算\t積算\t\r\t積算タグ\tFLOW1   \tPUMP    \t\r"
            "積算開始時刻\t積算終了時刻\tm3     \tcount  \t\r"
            "2026/01/02 00:00:00\t2026/01/02 01:00:00\t1.1\t-1\t\r");
}

TEST_F(AdditionFixture, EachWindowMakesTheSlotInItsCaptionCurrent) {
  AdditionWindow *first = OpenPath(Write("T0013.FDT", true, 2));
  AdditionWindow *second = OpenPath(Write("W0013.FDT", true, 3));
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->windowTitle(), Caption(3, 2, home.path("W0013.FDT")));
  Shared().CurrentFile = 1;
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(first->parentWidget()));
  EXPECT_EQ(Shared().CurrentAddition, 1);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(second->parentWidget()));
  EXPECT_EQ(Shared().CurrentAddition, 2);
  EXPECT_EQ(Shared().CurrentFile, 1);  // the record slot is not touched
  // A button of the first window works on its own slot, found in its caption.
  Button(first, 1)->click();
  EXPECT_EQ(Shared().CurrentAddition, 1);
  EXPECT_EQ(Shared().OpenAdditionCount, 2);
  ExpectMenuSet(2);
  first->parentWidget()->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Shared().OpenAdditionCount, 1);
  EXPECT_EQ(Shared().Totalize(1).InUse, 0);
  EXPECT_EQ(Shared().Totalize(2).InUse, 1);
  ExpectMenuSet(2);
  // The freed slot is the next one taken.
  AdditionWindow *third = OpenPath(Write("E0013.FDT", false, 1));
  ASSERT_NE(third, nullptr);
  EXPECT_EQ(third->windowTitle(), Caption(7, 1, home.path("E0013.FDT")));
}

TEST_F(AdditionFixture, DateFormatChangeShowsTheTimesAgain) {
  AdditionWindow *w = OpenPath(Write("T0014.FDT", true, 2));
  ASSERT_NE(w, nullptr);
  window.command("mnuViewdaysub2")->trigger();
  EXPECT_EQ(GridTexts(Grid(w))[4][0], "02/01/2026 00:00:00");
  EXPECT_EQ(GridTexts(Grid(w))[4][1], "02/01/2026 01:00:00");
  window.command("mnuViewdaysub1")->trigger();
}

TEST_F(AdditionFixture, FileChangeOnTheActiveTotalizeWindowWritesItsCsv) {
  const QString path = Write("T0015.FDT", true, 2);
  AdditionWindow *w = OpenPath(path);
  ASSERT_NE(w, nullptr);
  window.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(w->parentWidget()));
  EXPECT_TRUE(window.command("mnuFileChange")->isEnabled());
  window.command("mnuFileChange")->trigger();
  EXPECT_EQ(messages.ids(), std::vector<int>{11132});
  const std::string csv = ReadAll(home.path("T0015.CSV").toStdString());
  EXPECT_EQ(csv.substr(0, 13), "TTEST01.FDT  ");
  const std::string last =
      "2026/ 1/ 2 01:00:00,2026/ 1/ 2 02:00:00,        2.1,         -2,    123.458\r\n";
  ASSERT_GE(csv.size(), last.size());
  EXPECT_EQ(csv.substr(csv.size() - last.size()), last);
  // Again: the output exists.
  messages.clear();
  window.command("mnuFileChange")->trigger();
  EXPECT_EQ(messages.ids(), std::vector<int>{11130});
  EXPECT_EQ(ReadAll(home.path("T0015.CSV").toStdString()), csv);
  ExpectMenuSet(2);
}

TEST_F(AdditionFixture, FileChangeOnTheRealTimeViewIsRefusedWith11131) {
  auto *view = new QWidget;
  view->setWindowTitle(QString::fromStdString(GetMessageText(19728)));
  QMdiSubWindow *sub = window.mdiArea()->addSubWindow(view);
  sub->setAttribute(Qt::WA_DeleteOnClose);
  sub->show();
  window.mdiArea()->setActiveSubWindow(sub);
  const std::set<std::string> before = FilesIn(home.folder());
  EXPECT_EQ(RunFileChange(&window, window.mdiArea()), 11131);
  EXPECT_EQ(messages.ids(), std::vector<int>{11131});
  EXPECT_EQ(FilesIn(home.folder()), before);
  sub->close();
}

}  // namespace
