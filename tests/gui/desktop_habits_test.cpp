// What a user expects of a desktop viewer beyond the recorder's own commands: the
// records opened last in the file menu, the usual keys, full screen, and files
// named to a second start handed to the program that runs.
#include <gtest/gtest.h>

#include <QAction>
#include <QFile>
#include <QLocalServer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "record/open_select_dialog.h"
#include "shell/frame/file_handoff.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/frame/recent_files_menu.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");
const QString kTextSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/text/SHEAT01.FDT");

int TrendCount(MainWindow &w) {
  int n = 0;
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (qobject_cast<TrendWindow *>(sub->widget())) ++n;
  return n;
}

QMenu *RecentMenu(MainWindow &w) { return w.findChild<QMenu *>("mnuFileRecent"); }

// The entries as the menu shows them when it opens.
QList<QAction *> RecentEntries(MainWindow &w) {
  QMenu *menu = RecentMenu(w);
  emit menu->aboutToShow();
  return menu->actions();
}

struct HabitsFixture : ::testing::Test {
  HabitsFixture() {
    ConnectDesktopCommands(window);
    window.load();
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;

  // File → Close on the window the operator last worked in.
  void CloseActiveThroughTheMenu() {
    QMdiArea *mdi = window.mdiArea();
    if (!mdi->activeSubWindow() && !mdi->subWindowList().isEmpty())
      mdi->setActiveSubWindow(mdi->subWindowList().front());
    window.command("mnuFileClose")->trigger();
    QCoreApplication::processEvents();
  }
};

// The whole way: File → Open → frmOpenSelect → cmdDirect puts the record at the
// head of the list; the entry reopens it after the window is closed.
TEST_F(HabitsFixture, ARecordOpenedThroughTheMenuIsOfferedAgainInTheFileMenu) {
  ASSERT_NE(RecentMenu(window), nullptr);
  EXPECT_TRUE(RecentEntries(window).isEmpty());
  EXPECT_FALSE(RecentMenu(window)->isEnabled());

  window.command("mnuFileOpen")->trigger();
  auto *dialog = window.findChild<OpenSelectDialog *>("frmOpenSelect");
  ASSERT_NE(dialog, nullptr);
  dialog->SetFileChooser([](QWidget *) { return kSample; });
  dialog->findChild<QPushButton *>("cmdDirect")->click();
  ASSERT_EQ(TrendCount(window), 1);

  QList<QAction *> entries = RecentEntries(window);
  ASSERT_EQ(entries.size(), 1);
  EXPECT_EQ(entries[0]->text(), "&1 " + kSample);
  EXPECT_TRUE(RecentMenu(window)->isEnabled());

  CloseActiveThroughTheMenu();
  ASSERT_EQ(TrendCount(window), 0);
  EXPECT_FALSE(window.command("mnuTime")->isEnabled());
  entries[0]->trigger();
  EXPECT_EQ(TrendCount(window), 1);
  EXPECT_TRUE(window.command("mnuTime")->isEnabled());
}

TEST_F(HabitsFixture, TheNewestRecordComesFirstAndARepeatMovesUp) {
  window.openFiles({kSample});
  window.openFiles({kTextSample});
  QList<QAction *> entries = RecentEntries(window);
  ASSERT_EQ(entries.size(), 2);
  EXPECT_EQ(entries[0]->text(), "&1 " + kTextSample);
  EXPECT_EQ(entries[1]->text(), "&2 " + kSample);
  window.openFiles({kSample});
  EXPECT_EQ(RecentFiles(), (QStringList{kSample, kTextSample}));
}

TEST_F(HabitsFixture, AFailedOpenIsNotRemembered) {
  QTemporaryDir folder;
  const QString broken = folder.filePath("SBROKEN.FDT");
  QFile file(broken);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("not a record");
  file.close();
  window.openFiles({broken});
  EXPECT_EQ(TrendCount(window), 0);
  EXPECT_TRUE(RecentFiles().isEmpty());
}

TEST_F(HabitsFixture, AVanishedRecordSaysSoAndLeavesTheList) {
  QTemporaryDir folder;
  const QString copy = folder.filePath("SHEAT01.FDT");
  ASSERT_TRUE(QFile::copy(kSample, copy));
  window.openFiles({copy});
  CloseActiveThroughTheMenu();
  ASSERT_EQ(TrendCount(window), 0);
  ASSERT_TRUE(QFile::remove(copy));
  QList<QAction *> entries = RecentEntries(window);
  ASSERT_EQ(entries.size(), 1);
  entries[0]->trigger();
  EXPECT_EQ(messages.ids(), std::vector<int>{18905});
  EXPECT_EQ(TrendCount(window), 0);
  EXPECT_TRUE(RecentFiles().isEmpty());
  EXPECT_TRUE(RecentEntries(window).isEmpty());
}

TEST_F(HabitsFixture, TheUsualKeysOpenCloseQuitAndFullScreen) {
  EXPECT_EQ(window.command("mnuFileOpen")->shortcut(), QKeySequence(QKeySequence::Open));
  EXPECT_EQ(window.command("mnuFileClose")->shortcut(), QKeySequence(QKeySequence::Close));
  EXPECT_EQ(window.command("mnuFileExit")->shortcut(), QKeySequence(QKeySequence::Quit));
  QAction *fullScreen = window.command("mnuViewFullScreen");
  ASSERT_NE(fullScreen, nullptr);
  EXPECT_EQ(fullScreen->shortcut(), QKeySequence(QKeySequence::FullScreen));
  window.show();
  fullScreen->trigger();
  EXPECT_TRUE(window.windowState() & Qt::WindowFullScreen);
  EXPECT_TRUE(fullScreen->isChecked());
  fullScreen->trigger();
  EXPECT_FALSE(window.windowState() & Qt::WindowFullScreen);
  EXPECT_FALSE(fullScreen->isChecked());
}

// A second start hands its files over: the running window opens each of them.
TEST_F(HabitsFixture, FilesHandedByASecondStartOpenInTheRunningWindow) {
  const QString folder = QString::fromStdString(Shared().ProgramFolder);
  QLocalServer *server = ListenForHandedFiles(folder, window);
  ASSERT_TRUE(server->isListening());
  ASSERT_TRUE(HandFilesToRunningProgram(folder, {kSample, kTextSample}));
  for (int i = 0; i < 200 && TrendCount(window) < 2; ++i) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  EXPECT_EQ(TrendCount(window), 2);
  EXPECT_TRUE(window.command("mnuTime")->isEnabled());
}

TEST(FileHandoff, NothingListeningMeansNotHandedOver) {
  recscope::testing::App();
  QTemporaryDir folder;
  EXPECT_FALSE(HandFilesToRunningProgram(folder.path(), {kSample}));
  EXPECT_NE(HandoffName(folder.path()), HandoffName(folder.path() + "/other"));
}

}  // namespace
