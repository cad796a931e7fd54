// What a user expects of a desktop viewer beyond the recorder's own commands: the
// records opened last in the file menu, the usual keys, full screen, and files
// named to a second start handed to the program that runs.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QLocalServer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
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

namespace {

// Fills dlgExportPicture when it stands and presses OK.
void AnswerExportDialog(int width, int height, const QString &path) {
  QTimer::singleShot(0, [=] {
    for (QWidget *w : QApplication::topLevelWidgets()) {
      if (w->objectName() != "dlgExportPicture" || !w->isVisible()) continue;
      w->findChild<QSpinBox *>("txtWidth")->setValue(width);
      w->findChild<QSpinBox *>("txtHeight")->setValue(height);
      w->findChild<QLineEdit *>("txtPath")->setText(path);
      w->findChild<QPushButton *>("cmdOK")->click();
    }
  });
}

struct ExportFixture : HabitsFixture {
  ExportFixture() {
    window.show();
    window.openFiles({kSample});
    window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  }
  TrendWindow *Trend() {
    return qobject_cast<TrendWindow *>(window.mdiArea()->subWindowList().front()->widget());
  }
  QTemporaryDir out;
};

TEST_F(ExportFixture, FileMenuSavesThePictureAsPngAtTheChosenSize) {
  const QString path = out.filePath("trend.png");
  AnswerExportDialog(800, 450, path);
  window.command("mnuFileExportImage")->trigger();
  QImage saved(path);
  ASSERT_FALSE(saved.isNull());
  EXPECT_EQ(saved.size(), QSize(800, 450));
  // The same routine as the window: the plot holds the record's red channel.
  int red = 0;
  for (int y = 0; y < saved.height(); ++y)
    for (int x = 0; x < saved.width(); ++x)
      if (saved.pixelColor(x, y) == QColor(255, 0, 0)) ++red;
  EXPECT_GT(red, 100);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(ExportFixture, ANameEndingInSvgGivesAnSvgDrawing) {
  const QString path = out.filePath("trend.SVG");
  AnswerExportDialog(1200, 700, path);
  window.command("mnuFileExportImage")->trigger();
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray svg = file.readAll();
  EXPECT_TRUE(svg.startsWith("<?xml"));
  EXPECT_TRUE(svg.contains("viewBox=\"0 0 1200 700\""));
  EXPECT_TRUE(svg.contains("2024/03/04"));
}

TEST_F(ExportFixture, AFileThatCannotBeWrittenSaysSoAndLeavesNothing) {
  const QString path = out.filePath("no/such/folder/trend.png");
  AnswerExportDialog(640, 400, path);
  window.command("mnuFileExportImage")->trigger();
  EXPECT_EQ(messages.ids(), std::vector<int>{11107});
  EXPECT_FALSE(QFile::exists(path));
}

TEST_F(ExportFixture, CopyPutsTheWindowsPictureOnTheClipboard) {
  QGuiApplication::clipboard()->clear();
  window.command("mnuEditCopyImage")->trigger();
  const QImage copied = QGuiApplication::clipboard()->image();
  ASSERT_FALSE(copied.isNull());
  EXPECT_EQ(copied.size(), Trend()->size());
}

TEST_F(HabitsFixture, PictureCommandsNeedARecord) {
  EXPECT_FALSE(window.command("mnuFileExportImage")->isEnabled());
  EXPECT_FALSE(window.command("mnuEditCopyImage")->isEnabled());
  window.openFiles({kSample});
  EXPECT_TRUE(window.command("mnuFileExportImage")->isEnabled());
  EXPECT_TRUE(window.command("mnuEditCopyImage")->isEnabled());
}

}  // namespace
