// The record output commands the whole way through the main window: the menu
// action, the progress dialog, the files and the message, the menus after.
#include <gtest/gtest.h>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTimer>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "record/record_output_commands.h"
#include "shell/main_window.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const std::string kSamples = RECSCOPE_SOURCE_DIR "/samples/";

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

struct RecordOutputs : ::testing::Test {
  RecordOutputs() {
    SetTrendMessageHandler([](QWidget *, int, const QString &, bool question) {
      return static_cast<int>(question ? QMessageBox::No : QMessageBox::Ok);
    });
    SetOutputMessage([this](QWidget *, int id, const QString &text, QMessageBox::StandardButtons) {
      messages.push_back(id);
      texts.push_back(text);
      return answer;
    });
    records = home.folder() + "/records";
    std::filesystem::create_directories(records);
    for (const char *name : {"SHEAT01.FDT", "AHEAT01.FDT"})
      std::filesystem::copy_file(kSamples + name, records + "/" + name);
    ConnectDesktopCommands(window);
    window.load();
  }
  void OpenSample() {
    window.openFiles({QString::fromStdString(records + "/SHEAT01.FDT")});
    ASSERT_EQ(window.mdiArea()->subWindowList().size(), 1);
    window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
  }
  // Notes the caption and label of the progress dialog while the command runs.
  void WatchProgressDialog() {
    QTimer::singleShot(0, [this] {
      for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == "dlgRead" && w->isVisible()) dialogTitle = w->windowTitle();
    });
  }

  GuiHome home;
  MainWindow window;
  std::string records;
  std::vector<int> messages;
  std::vector<QString> texts;
  QString dialogTitle;
  QMessageBox::StandardButton answer = QMessageBox::Ok;
};

TEST_F(RecordOutputs, CsvMenuCommandWritesBothCsvFilesAndSaysDone) {
  OpenSample();
  QAction *change = window.command("mnuFileChange");
  ASSERT_NE(change, nullptr);
  ASSERT_TRUE(change->isEnabled());
  WatchProgressDialog();
  change->trigger();
  EXPECT_EQ(dialogTitle, QString::fromUtf8("CSVファイル書き込み中"));
  ASSERT_EQ(messages, std::vector<int>{11132});
  EXPECT_EQ(texts.front(), QString::fromUtf8("ＣＳＶファイル作成完了。"));
  const std::string csv = ReadAll(records + "/SHEAT01.CSV");
  ASSERT_FALSE(csv.empty());
  EXPECT_EQ(csv.substr(0, 7), "SHEAT01");
  // The sample has digital inputs: its rows run on after the title line.
  EXPECT_EQ(csv.back(), ',');
  EXPECT_TRUE(std::filesystem::exists(records + "/AHEAT01.CSV"));
  // The record stays open and the menus stay those of an open record.
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(change->isEnabled());
  EXPECT_TRUE(window.command("mnuFileSaveas")->isEnabled());

  // A second conversion finds its targets and touches nothing.
  const auto written = std::filesystem::last_write_time(records + "/SHEAT01.CSV");
  change->trigger();
  EXPECT_EQ(messages, (std::vector<int>{11132, 11130}));
  EXPECT_EQ(std::filesystem::last_write_time(records + "/SHEAT01.CSV"), written);
}

TEST_F(RecordOutputs, CsvOfARecordCutShortSaysFailedAndLeavesNoFile) {
  OpenSample();
  std::filesystem::resize_file(records + "/SHEAT01.FDT",
                               std::filesystem::file_size(records + "/SHEAT01.FDT") - 1000);
  window.command("mnuFileChange")->trigger();
  EXPECT_EQ(messages, std::vector<int>{11131});
  EXPECT_FALSE(std::filesystem::exists(records + "/SHEAT01.CSV"));
  EXPECT_FALSE(std::filesystem::exists(records + "/AHEAT01.CSV"));
  EXPECT_EQ(Shared().MenuState, 1);
}

}  // namespace
