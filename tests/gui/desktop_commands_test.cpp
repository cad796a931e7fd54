// The desktop program's wiring: a record opened through the menu and its dialog,
// the tool button, the command line or a drop stands in a trend window with the
// record's menu set on; the commands reach it, a switch of direction keeps the
// slot, and closing the window frees the slot and its working files and turns
// the menus off again. A failed open shows its catalogue message and changes
// nothing.
#include "app/desktop_commands.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QDropEvent>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <filesystem>
#include <set>

#include "gui_test_support.h"
#include "record/open_select_dialog.h"
#include "record/working_files.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/frame/window_place.h"
#include "shell/menu_state.h"
#include "shell/shared_state.h"
#include "shell/toolbar_table.h"
#include "trend/trend_layout.h"
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

QString Text19500(int slot) {
  return QString::fromStdString(GetMessageText(19500))
      .replace("@FileNumber@", QStringLiteral("%1").arg(slot, 2, 10, QLatin1Char('0')));
}

int CountWorkingFiles(const std::string &folder) {
  int n = 0;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".OPL") ++n;
  return n;
}

std::set<std::string> FilesIn(const std::string &folder) {
  std::set<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    names.insert(entry.path().filename().string());
  return names;
}

QAction *Button(MainWindow &w, int index) {
  return w.findChild<QAction *>(QStringLiteral("tbButton%1").arg(index));
}

// Every command and tool button of the menu set of `state` is as the table says.
void ExpectMenuSet(MainWindow &w, int state) {
  for (const MenuStateRow &row : MenuStateTable())
    EXPECT_EQ(w.command(row.control)->isEnabled(), row.on[state])
        << row.control << " in state " << state;
  for (const ToolButtonSpec &place : ToolButtonTable()) {
    if (place.key == nullptr) continue;
    EXPECT_EQ(Button(w, place.index)->isEnabled(), ToolButtonOn(place.index, state))
        << "button " << place.index << " in state " << state;
  }
}

// The commands the issue names, spelled out: on with a record, off without.
void ExpectRecordCommands(MainWindow &w, bool on) {
  for (const char *name : {"mnuTime", "mnuEdit", "mnuFileClose"})
    EXPECT_EQ(w.command(name)->isEnabled(), on) << name;
  for (int index : {4, 5, 6, 7, 8, 9, 10, 13, 14, 15, 16, 27, 28, 29, 30, 39, 40, 41, 42})
    EXPECT_EQ(Button(w, index)->isEnabled(), on) << "button " << index;
}

struct DesktopFixture : ::testing::Test {
  DesktopFixture() {
    ConnectDesktopCommands(window);
    window.load();
  }
  // The save question on close is answered No; one-button messages are noted.
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;

  // The frmOpenSelect that stands, or nullptr.
  OpenSelectDialog *OpenSelect() {
    for (auto *dialog : window.findChildren<OpenSelectDialog *>("frmOpenSelect"))
      if (dialog->isVisible()) return dialog;
    return nullptr;
  }
  // Chooses `path` in frmOpenSelect through cmdDirect; only the platform's file
  // chooser is replaced.
  void ChooseDirect(const QString &path) {
    OpenSelectDialog *dialog = OpenSelect();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isModal());
    dialog->SetFileChooser([path](QWidget *) { return path; });
    dialog->findChild<QPushButton *>("cmdDirect")->click();
  }
  // A copy of the sample cut in the middle of its data, under `name`.
  QString TruncatedSample(const QString &name) {
    QFile sample(kSample);
    EXPECT_TRUE(sample.open(QIODevice::ReadOnly));
    const QByteArray bytes = sample.readAll();
    const QString path = home.path(name);
    QFile cut(path);
    EXPECT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(bytes.left(bytes.size() - 7));
    return path;
  }
  void CloseActiveThroughTheMenu() {
    QMdiArea *mdi = window.mdiArea();
    if (!mdi->activeSubWindow() && !mdi->subWindowList().isEmpty())
      mdi->setActiveSubWindow(mdi->subWindowList().front());
    window.command("mnuFileClose")->trigger();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
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

TEST_F(DesktopFixture, FileOpenThroughTheDialogTurnsTheRecordMenusOnAndCloseTurnsThemOff) {
  window.show();
  ExpectMenuSet(window, 0);
  window.command("mnuFileOpen")->trigger();
  ChooseDirect(kSample);

  ASSERT_EQ(Trends(window).size(), 1);
  TrendWindow *trend = Trends(window).front();
  EXPECT_TRUE(trend->isVisible());
  EXPECT_EQ(trend->windowTitle(), Text19500(1) + "[" + kSample + "]");
  EXPECT_EQ(OpenSelect(), nullptr);  // the choice is gone
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(Shared().MenuState, 1);
  ExpectRecordCommands(window, true);
  ExpectMenuSet(window, 1);

  CloseActiveThroughTheMenu();
  EXPECT_TRUE(Trends(window).isEmpty());
  EXPECT_EQ(Shared().OpenFileCount, 0);
  EXPECT_EQ(Shared().MenuState, 0);
  ExpectRecordCommands(window, false);
  ExpectMenuSet(window, 0);
  EXPECT_EQ(CountWorkingFiles(home.folder()), 0);
}

TEST_F(DesktopFixture, OpenToolButtonGoesTheSameWay) {
  window.show();
  Button(window, 1)->trigger();  // "Open"
  ChooseDirect(kSample);
  ASSERT_EQ(Trends(window).size(), 1);
  EXPECT_TRUE(Trends(window).front()->isVisible());
  ExpectRecordCommands(window, true);
  ExpectMenuSet(window, 1);
}

TEST_F(DesktopFixture, MalformedRecordThroughTheDialogShowsItsMessageAndChangesNothing) {
  window.show();
  const QString cut = TruncatedSample("SCUT01.FDT");
  const std::set<std::string> before = FilesIn(home.folder());
  window.command("mnuFileOpen")->trigger();
  ChooseDirect(cut);
  // The data no longer divides into whole records.
  EXPECT_EQ(messages.ids(), std::vector<int>{11194});
  EXPECT_TRUE(Trends(window).isEmpty());
  EXPECT_EQ(Shared().OpenFileCount, 0);
  ExpectMenuSet(window, 0);
  EXPECT_EQ(FilesIn(home.folder()), before);
}

TEST_F(DesktopFixture, MalformedRecordWithARecordOpenLeavesTheMenusOn) {
  window.show();
  window.openFiles({kSample});
  ExpectMenuSet(window, 1);
  const QString cut = TruncatedSample("SCUT02.FDT");
  const std::set<std::string> before = FilesIn(home.folder());
  window.command("mnuFileOpen")->trigger();
  ChooseDirect(cut);
  EXPECT_EQ(messages.ids(), std::vector<int>{11194});
  EXPECT_EQ(Trends(window).size(), 1);
  EXPECT_EQ(Shared().OpenFileCount, 1);
  EXPECT_EQ(Shared().CurrentFile, 1);
  ExpectMenuSet(window, 1);
  EXPECT_EQ(FilesIn(home.folder()), before);
}

TEST_F(DesktopFixture, NameThatFailsTheNameTestBringsTheChoiceBackAndChangesNothing) {
  window.show();
  // A real record under a name that does not start with S.
  ASSERT_TRUE(QFile::copy(kSample, home.path("AHEAT01.FDT")));
  const std::set<std::string> before = FilesIn(home.folder());
  window.command("mnuFileOpen")->trigger();
  ChooseDirect(home.path("AHEAT01.FDT"));
  EXPECT_EQ(messages.ids(), std::vector<int>{11112});
  EXPECT_EQ(messages.messages().front().text(), QString::fromStdString(GetMessageText(11112)));
  OpenSelectDialog *again = OpenSelect();
  ASSERT_NE(again, nullptr);
  EXPECT_TRUE(again->isModal());
  EXPECT_TRUE(Trends(window).isEmpty());
  ExpectMenuSet(window, 0);
  EXPECT_EQ(FilesIn(home.folder()), before);

  // The choice that came back opens a good record.
  ChooseDirect(kSample);
  ASSERT_EQ(Trends(window).size(), 1);
  ExpectMenuSet(window, 1);
}

TEST_F(DesktopFixture, CommandLinePathsOpenEachAndTheMenusFollowTheCount) {
  window.show();
  // What the program's start does with the paths it was given.
  window.openFiles({kSample, kSample});
  ASSERT_EQ(Trends(window).size(), 2);
  for (TrendWindow *trend : Trends(window)) EXPECT_TRUE(trend->isVisible());
  ExpectMenuSet(window, 1);
  CloseActiveThroughTheMenu();
  EXPECT_EQ(Shared().OpenFileCount, 1);
  ExpectMenuSet(window, 1);
  CloseActiveThroughTheMenu();
  EXPECT_EQ(Shared().OpenFileCount, 0);
  ExpectMenuSet(window, 0);
}

TEST_F(DesktopFixture, CommandLineWithAMalformedPathShowsItsMessageAndOpensTheRest) {
  window.show();
  const QString cut = TruncatedSample("SCUT03.FDT");
  window.openFiles({cut, kSample});
  EXPECT_EQ(messages.ids(), std::vector<int>{11194});
  ASSERT_EQ(Trends(window).size(), 1);
  EXPECT_EQ(Trends(window).front()->windowTitle(), Text19500(1) + "[" + kSample + "]");
  ExpectMenuSet(window, 1);
}

TEST_F(DesktopFixture, DroppedRecordOpensAndTurnsTheMenusOn) {
  window.show();
  auto drop = [this](const QString &path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
    EXPECT_TRUE(event.isAccepted());
  };
  const QString cut = TruncatedSample("SCUT04.FDT");
  const std::set<std::string> before = FilesIn(home.folder());
  drop(cut);
  EXPECT_EQ(messages.ids(), std::vector<int>{11194});
  ExpectMenuSet(window, 0);
  EXPECT_EQ(FilesIn(home.folder()), before);

  drop(kSample);
  ASSERT_EQ(Trends(window).size(), 1);
  EXPECT_TRUE(Trends(window).front()->isVisible());
  ExpectRecordCommands(window, true);
  ExpectMenuSet(window, 1);
}

TEST_F(DesktopFixture, ClosingTheMainWindowDeletesTheWorkingFilesOfOpenSlots) {
  window.show();
  window.openFiles({kSample, kSample});
  ASSERT_EQ(CountWorkingFiles(home.folder()), 8);
  EXPECT_TRUE(window.close());
  EXPECT_EQ(CountWorkingFiles(home.folder()), 0);
  // The settings and the stop line stay.
  EXPECT_TRUE(QFile::exists(home.path("VIEWERCOM.INI")));
}

TEST_F(DesktopFixture, TrendWindowAtItsFirstSizeFitsTheFirstStartPlace) {
  // A first start on a 1920 x 1080 screen.
  window.setGeometry(FirstStartPlace(QRect(0, 0, 1920, 1080)));
  window.show();
  window.openFiles({kSample});
  ASSERT_EQ(window.mdiArea()->subWindowList().size(), 1);
  QMdiSubWindow *sub = window.mdiArea()->subWindowList().front();
  EXPECT_GE(sub->widget()->width(), static_cast<int>(kFirstWidth / kTwipsPerPixel));
  EXPECT_GE(sub->widget()->height(), static_cast<int>(kFirstHeight / kTwipsPerPixel));
  EXPECT_TRUE(window.mdiArea()->viewport()->rect().contains(sub->geometry()))
      << sub->geometry().width() << "x" << sub->geometry().height() << " in "
      << window.mdiArea()->viewport()->width() << "x" << window.mdiArea()->viewport()->height();
}

}  // namespace
