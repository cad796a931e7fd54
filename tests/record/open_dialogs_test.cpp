#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <filesystem>
#include <memory>

#include "record/open_command.h"
#include "record/open_select_dialog.h"
#include "record/read_dialog.h"
#include "record_fixture.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"

namespace recscope {
namespace {

using testing_support::MakeInfo;
using testing_support::MakeRecords;
using testing_support::RecordBytes;
using testing_support::TempFolder;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

class OpenDialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!QApplication::instance()) {
      static int argc = 1;
      static char name[] = "open_dialogs_test";
      static char *argv[] = {name, nullptr};
      new QApplication(argc, argv);
    }
    ResetSharedState(Shared());
    std::filesystem::create_directories(folder.Path("home"));
    Shared().ProgramFolder = folder.Path("home");
    area = new QMdiArea;
    SetMessageService([this](QWidget *, const MessageRequest &request) {
      refusals << request.text();
      return static_cast<int>(QMessageBox::Ok);
    });
  }
  void TearDown() override {
    area->closeAllSubWindows();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete area;
    SetMessageService({});
  }

  std::string WriteRecord(const std::string &name, const std::string &bytes) {
    const std::string path = folder.Path(name);
    EXPECT_TRUE(WriteWholeFile(path, bytes));
    return path;
  }
  std::string GoodRecord() {
    RecordFileInfo info = MakeInfo(2, 1);
    return WriteRecord("SGOOD01.FDT", RecordBytes(info, 2, MakeRecords(info, 40)));
  }

  TempFolder folder;
  QMdiArea *area = nullptr;
  QStringList refusals;
};

TEST_F(OpenDialogs, ReadDialogHasItsCaptionLabelAndBar) {
  ReadDialog dialog;
  EXPECT_EQ(dialog.objectName(), "dlgRead");
  EXPECT_FALSE(dialog.isModal());
  EXPECT_EQ(dialog.windowTitle(), Text(10611));
  auto *label = dialog.findChild<QLabel *>("Label1");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->text(), Text(10611));
  auto *bar = dialog.findChild<QProgressBar *>("ProgressBar1");
  ASSERT_NE(bar, nullptr);
  dialog.SetProgress(3, 8);
  EXPECT_EQ(bar->maximum(), 8);
  EXPECT_EQ(bar->value(), 3);
}

TEST_F(OpenDialogs, OpenSelectHasItsCaptions) {
  OpenSelectDialog dialog(area);
  EXPECT_EQ(dialog.objectName(), "frmOpenSelect");
  EXPECT_EQ(dialog.windowTitle(), Text(41001));
  EXPECT_EQ(dialog.findChild<QLabel *>("Label1")->text(), Text(41002));
  EXPECT_EQ(dialog.findChild<QPushButton *>("cmdDirect")->text(), Text(41003));
  EXPECT_EQ(dialog.findChild<QPushButton *>("cmdRecord")->text(), Text(41004));
}

TEST_F(OpenDialogs, OpeningMakesTheSlotWindowAndClosingItFreesTheSlot) {
  const std::string path = GoodRecord();
  ASSERT_TRUE(OpenRecordPath(nullptr, area, QString::fromStdString(path)));
  ASSERT_EQ(area->subWindowList().size(), 1);
  QWidget *window = area->subWindowList().first()->widget();
  EXPECT_EQ(window->objectName(), "frmTrend");
  EXPECT_EQ(window->property("slot").toInt(), 1);
  EXPECT_EQ(window->windowTitle(),
            Text(19500).replace("@FileNumber@", "01") + "[" + QString::fromStdString(path) + "]");
  EXPECT_EQ(window->windowTitle(), SlotWindowCaption(1));
  EXPECT_EQ(Shared().Slot(1).Record.InUse, -1);
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_FALSE(std::filesystem::is_empty(Shared().ProgramFolder));
  for (QWidget *top : QApplication::topLevelWidgets()) EXPECT_NE(top->objectName(), "dlgRead");

  area->subWindowList().first()->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Shared().Slot(1).Record.InUse, 0);
  EXPECT_EQ(Shared().OpenFileCount, 0);
  EXPECT_TRUE(std::filesystem::is_empty(Shared().ProgramFolder));
}

TEST_F(OpenDialogs, CommittedSampleOpensInAWindow) {
  const QString path = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");
  ASSERT_TRUE(OpenRecordPath(nullptr, area, path));
  ASSERT_EQ(area->subWindowList().size(), 1);
  EXPECT_TRUE(area->subWindowList().first()->widget()->windowTitle().endsWith("[" + path + "]"));
  EXPECT_TRUE(refusals.isEmpty());
}

TEST_F(OpenDialogs, RefusalShowsTheCatalogueTextAndMakesNoWindow) {
  RecordFileInfo info = MakeInfo(2, 0);
  const std::string path =
      WriteRecord("SBAD01.FDT", RecordBytes(info, 2, MakeRecords(info, 4)) + "x");
  EXPECT_FALSE(OpenRecordPath(nullptr, area, QString::fromStdString(path)));
  ASSERT_EQ(refusals.size(), 1);
  EXPECT_EQ(refusals[0], Text(11194));
  EXPECT_TRUE(area->subWindowList().isEmpty());
  EXPECT_TRUE(std::filesystem::is_empty(Shared().ProgramFolder));
}

TEST_F(OpenDialogs, DirectOpensTheChosenFile) {
  const std::string path = GoodRecord();
  OpenSelectDialog dialog(area);
  dialog.SetFileChooser([&](QWidget *) { return QString::fromStdString(path); });
  dialog.show();
  dialog.findChild<QPushButton *>("cmdDirect")->click();
  EXPECT_EQ(area->subWindowList().size(), 1);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(OpenDialogs, CancelledFileDialogLeavesTheChoiceStanding) {
  OpenSelectDialog dialog(area);
  dialog.SetFileChooser([](QWidget *) { return QString(); });
  dialog.show();
  dialog.findChild<QPushButton *>("cmdDirect")->click();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_TRUE(area->subWindowList().isEmpty());
  EXPECT_TRUE(refusals.isEmpty());
}

TEST_F(OpenDialogs, WrongNameBringsTheChoiceBack) {
  const std::string path = folder.Path("AWRONG1.FDT");
  OpenSelectDialog dialog(area);
  dialog.SetFileChooser([&](QWidget *) { return QString::fromStdString(path); });
  dialog.show();
  dialog.findChild<QPushButton *>("cmdDirect")->click();
  ASSERT_EQ(refusals.size(), 1);
  EXPECT_EQ(refusals[0], Text(11112));
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_TRUE(dialog.isModal());
}

TEST_F(OpenDialogs, RecordButtonLeavesForTheRegistry) {
  bool registryShown = false;
  OpenSelectDialog dialog(area);
  dialog.SetRegistryOpener([&] { registryShown = true; });
  dialog.show();
  dialog.findChild<QPushButton *>("cmdRecord")->click();
  EXPECT_TRUE(registryShown);
  EXPECT_FALSE(dialog.isVisible());
}

}  // namespace
}  // namespace recscope
