// The record output commands the whole way through the main window: the menu
// action, the progress dialog, the files and the message, the menus after.
#include <gtest/gtest.h>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "record/file_coupling_dialog.h"
#include "record/record_output_commands.h"
#include "record/record_registry.h"
#include "record/registry_dialogs.h"
#include "record/save_filename_dialog.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
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
    // Every message is noted; the trend's close question is answered No, the
    // others with `answer`.
    SetMessageService([this](QWidget *, const MessageRequest &request) {
      if (request.messageId == 19503) return static_cast<int>(QMessageBox::No);
      messages.push_back(request.messageId);
      texts.push_back(request.text());
      return static_cast<int>(answer);
    });
    records = home.folder() + "/records";
    std::filesystem::create_directories(records);
    for (const char *name : {"SHEAT01.FDT", "AHEAT01.FDT"})
      std::filesystem::copy_file(kSamples + name, records + "/" + name);
    ConnectDesktopCommands(window);
    window.load();
  }
  // The hooks outlive the test: they must not keep pointing into it.
  ~RecordOutputs() override {
    SetMessageService([](QWidget *, const MessageRequest &request) {
      return static_cast<int>(request.buttons == QMessageBox::Ok ? QMessageBox::Ok
                                                                 : QMessageBox::No);
    });
    SetSaveNameAsker([](QWidget *) { return QString(); });
    SetRegistryFileChooser([](QWidget *) { return QString(); });
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

TEST_F(RecordOutputs, SaveAsMenuCommandSavesTheShownRangeWithItsAlarms) {
  OpenSample();
  window.runCommand("mnuTimeI");  // a narrower view than the whole file
  auto *trend = qobject_cast<TrendWindow *>(window.mdiArea()->subWindowList().front()->widget());
  ASSERT_NE(trend, nullptr);
  const std::int32_t t0 = trend->view().DisplayStart;
  const std::int32_t t1 = trend->view().DisplayEnd;
  const RecordFileInfo &info = Shared().Slot(1).Record;
  ASSERT_GT(t0, info.FirstTime - 1);
  ASSERT_LT(t1, info.LastTime);
  const std::string target = records + "/SPART.FDT";
  SetSaveNameAsker([&](QWidget *) { return QString::fromStdString(target); });
  QAction *saveas = window.command("mnuFileSaveas");
  ASSERT_TRUE(saveas->isEnabled());
  WatchProgressDialog();
  saveas->trigger();
  EXPECT_EQ(dialogTitle, QString::fromUtf8("ファイル書き込み中"));
  ASSERT_EQ(messages, std::vector<int>{11184});
  EXPECT_EQ(texts.front(), QString::fromUtf8("作成完了"));

  // The header region and the records t0..t1, byte for byte.
  const std::string source = ReadAll(records + "/SHEAT01.FDT");
  const std::int64_t first = (t0 - info.FirstTime) / 10;
  const std::int64_t count = (t1 - t0) / 10 + 1;
  const std::string expected =
      source.substr(0, static_cast<std::size_t>(info.DataStart)) +
      source.substr(static_cast<std::size_t>(info.DataStart + first * info.RecordLength),
                    static_cast<std::size_t>(count * info.RecordLength));
  EXPECT_TRUE(ReadAll(target) == expected);
  // The alarm file: its header and the events of the range (each 38 bytes).
  const std::string alarmSource = ReadAll(records + "/AHEAT01.FDT");
  std::string alarmExpected = alarmSource.substr(0, 104);
  for (std::size_t at = 104; at + 38 <= alarmSource.size(); at += 38) {
    std::int32_t time;
    std::memcpy(&time, alarmSource.data() + at, 4);
    if (time >= t0 && time <= t1) alarmExpected += alarmSource.substr(at, 38);
  }
  EXPECT_GT(alarmExpected.size(), 104u + 38u);  // the range holds events
  EXPECT_TRUE(ReadAll(records + "/APART.FDT") == alarmExpected);
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(saveas->isEnabled());

  // Again: the record exists.
  saveas->trigger();
  EXPECT_EQ(messages, (std::vector<int>{11184, 11181}));
  // Another name whose alarm file exists: asked, and No ends the command.
  std::filesystem::copy_file(records + "/APART.FDT", records + "/APART2.FDT");
  SetSaveNameAsker([&](QWidget *) { return QString::fromStdString(records + "/SPART2.FDT"); });
  answer = QMessageBox::No;
  saveas->trigger();
  EXPECT_EQ(messages, (std::vector<int>{11184, 11181, 11185}));
  EXPECT_TRUE(texts.back().contains("APART2.FDT"));
  EXPECT_FALSE(std::filesystem::exists(records + "/SPART2.FDT"));
  // A name that fails the test.
  SetSaveNameAsker([&](QWidget *) { return QString::fromStdString(records + "/XPART.FDT"); });
  saveas->trigger();
  EXPECT_EQ(messages.back(), 11180);
}

TEST_F(RecordOutputs, SaveFileNameDialogAsksThenTestsTheText) {
  SaveFileNameDialog dialog(QString::fromStdString(records));
  EXPECT_EQ(dialog.objectName(), "dlgSavefilename");
  auto *text = dialog.findChild<QLineEdit *>("txtFileName");
  auto *ok = dialog.findChild<QPushButton *>("cmdOK");
  ASSERT_TRUE(text && ok);
  EXPECT_EQ(dialog.findChild<QPushButton *>("cmdCancel")->text(), QString::fromUtf8("キャンセル"));
  dialog.show();
  text->setText("HEAT01");
  answer = QMessageBox::No;  // No stays in the dialog, nothing is tested
  ok->click();
  EXPECT_EQ(messages, std::vector<int>{18500});
  EXPECT_TRUE(dialog.isVisible());
  answer = QMessageBox::Yes;
  ok->click();  // SHEAT01.FDT and AHEAT01.FDT are there
  EXPECT_EQ(messages, (std::vector<int>{18500, 18500, 18501}));
  text->setText("TOOLONG");
  ok->click();
  EXPECT_EQ(messages.back(), 18502);
  text->setText("A_B");
  ok->click();
  EXPECT_EQ(messages.back(), 18503);
  EXPECT_TRUE(dialog.isVisible());
  text->setText("NEW1");
  ok->click();
  EXPECT_EQ(messages.back(), 18500);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.RecordPath(), QString::fromStdString(records + "/SNEW1.FDT"));
  EXPECT_EQ(dialog.AlarmPath(), QString::fromStdString(records + "/ANEW1.FDT"));
}

template <typename T>
T *TopLevel(const char *name) {
  for (QWidget *w : QApplication::topLevelWidgets())
    if (w->objectName() == name && w->isVisible())
      if (auto *found = qobject_cast<T *>(w)) return found;
  for (QWidget *w : QApplication::allWidgets())
    if (w->objectName() == name && w->isVisible())
      if (auto *found = qobject_cast<T *>(w)) return found;
  return nullptr;
}

void Click(QWidget *dialog, const char *button) {
  auto *b = dialog->findChild<QPushButton *>(button);
  ASSERT_NE(b, nullptr) << button;
  b->click();
  QCoreApplication::processEvents();
}

// Fills and confirms the frmFileAdd that is open.
void FillEntry(const QString &name, const QString &address = {}) {
  auto *add = TopLevel<FileAddDialog>("frmFileAdd");
  ASSERT_NE(add, nullptr);
  add->findChild<QLineEdit *>("txtName")->setText(name);
  if (auto *a = add->findChild<QLineEdit *>("txtAddress")) a->setText(address);
  Click(add, "cmdOK");
}

TEST_F(RecordOutputs, RegistryFromTheOpenChoiceToAnOpenedRecord) {
  window.command("mnuFileOpen")->trigger();
  QCoreApplication::processEvents();
  QDialog *choice = TopLevel<QDialog>("frmOpenSelect");
  ASSERT_NE(choice, nullptr);
  Click(choice, "cmdRecord");
  auto *groups = TopLevel<GroupManagerDialog>("frmGroupManager");
  ASSERT_NE(groups, nullptr);
  EXPECT_EQ(groups->windowTitle(), QString::fromUtf8("管理グループ選択"));
  EXPECT_TRUE(std::filesystem::exists(home.folder() + "/ViewerFile.txt"));

  // A new group; an empty name is refused first and the window stays.
  Click(groups, "cmdAdd");
  auto *add = TopLevel<FileAddDialog>("frmFileAdd");
  ASSERT_NE(add, nullptr);
  EXPECT_EQ(add->windowTitle(), QString::fromUtf8("管理グループの新規登録"));
  FillEntry("");
  EXPECT_EQ(messages, std::vector<int>{41056});
  FillEntry(QString::fromUtf8("熱処理炉"));
  ASSERT_EQ(groups->grid()->rowCount(), 1);
  EXPECT_EQ(groups->grid()->item(0, 0)->text(), "001");
  EXPECT_EQ(groups->grid()->item(0, 1)->text(), QString::fromUtf8("熱処理炉"));

  // Its file manager: a file entry that is missing on the disk, then the sample.
  emit groups->grid()->cellDoubleClicked(0, 1);
  QCoreApplication::processEvents();
  auto *files = TopLevel<FileManagerDialog>("frmFileManager");
  ASSERT_NE(files, nullptr);
  Click(files, "cmdAdd");
  FillEntry("gone", QString::fromStdString(records + "/SGONE.FDT"));
  Click(files, "cmdAdd");
  SetRegistryFileChooser(
      [&](QWidget *) { return QString::fromStdString(records + "/SHEAT01.FDT"); });
  auto *fileAdd = TopLevel<FileAddDialog>("frmFileAdd");
  ASSERT_NE(fileAdd, nullptr);
  Click(fileAdd, "cmdFile");
  EXPECT_EQ(fileAdd->findChild<QLineEdit *>("txtAddress")->text(),
            QString::fromStdString(records + "/SHEAT01.FDT"));
  fileAdd->findChild<QLineEdit *>("txtName")->setText(QString::fromUtf8("3日間"));
  Click(fileAdd, "cmdOK");
  ASSERT_EQ(files->grid()->rowCount(), 2);
  EXPECT_EQ(files->grid()->item(1, 0)->text(), "001002");

  // The file on the disk holds what the window shows.
  Registry saved;
  ASSERT_EQ(ReadRegistry(home.folder() + "/ViewerFile.txt", saved), 0);
  ASSERT_EQ(saved.Groups.size(), 1u);
  ASSERT_EQ(saved.Groups[0].Files.size(), 2u);
  EXPECT_EQ(saved.Groups[0].Files[1].Name, "3日間");

  // Up on the second row: it becomes the first and stays selected.
  files->grid()->selectRow(1);
  Click(files, "cmdUp");
  EXPECT_EQ(files->grid()->currentRow(), 0);
  EXPECT_EQ(files->grid()->item(0, 1)->text(), QString::fromUtf8("3日間"));

  // The missing file says so and nothing opens.
  emit files->grid()->cellDoubleClicked(1, 1);
  QCoreApplication::processEvents();
  EXPECT_EQ(messages.back(), 41061);
  EXPECT_TRUE(window.mdiArea()->subWindowList().isEmpty());

  // The sample opens: both managers are gone and the menus are those of a record.
  emit files->grid()->cellDoubleClicked(0, 1);
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  ASSERT_EQ(window.mdiArea()->subWindowList().size(), 1);
  EXPECT_EQ(Shared().Slot(1).Record.FilePath, records + "/SHEAT01.FDT");
  EXPECT_EQ(TopLevel<FileManagerDialog>("frmFileManager"), nullptr);
  EXPECT_EQ(TopLevel<GroupManagerDialog>("frmGroupManager"), nullptr);
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(window.command("mnuFileChange")->isEnabled());
}

TEST_F(RecordOutputs, RegistryGroupDeleteAsksAndKeepsTheRecordFiles) {
  Registry registry;
  AddRegistryGroup(registry, "one");
  AddRegistryGroup(registry, "two");
  AddRegistryFile(registry, 0, "heat", records + "/SHEAT01.FDT");
  ASSERT_TRUE(WriteRegistry(home.folder() + "/ViewerFile.txt", registry));
  auto *groups = GroupManagerDialog::ShowForProgramFolder(window.mdiArea(), &window);
  ASSERT_NE(groups, nullptr);
  ASSERT_EQ(groups->grid()->rowCount(), 2);
  groups->grid()->selectRow(0);
  answer = QMessageBox::No;
  Click(groups, "cmdDelete");
  EXPECT_EQ(messages, std::vector<int>{41051});
  EXPECT_EQ(texts.back(),
            QString::fromUtf8("管理グループの登録情報を抹消しますか？\n"
                              "（管理グループに登録されている記録ファイルは削除されません。）"));
  EXPECT_EQ(groups->grid()->rowCount(), 2);
  answer = QMessageBox::Yes;
  Click(groups, "cmdDelete");
  ASSERT_EQ(groups->grid()->rowCount(), 1);
  EXPECT_EQ(groups->grid()->item(0, 0)->text(), "001");
  EXPECT_EQ(groups->grid()->item(0, 1)->text(), "two");
  EXPECT_TRUE(std::filesystem::exists(records + "/SHEAT01.FDT"));
  Registry saved;
  ReadRegistry(home.folder() + "/ViewerFile.txt", saved);
  ASSERT_EQ(saved.Groups.size(), 1u);
  EXPECT_EQ(saved.Groups[0].Name, "two");
  groups->close();
}

TEST_F(RecordOutputs, RegistryRefusesThe31stGroupBeforeAsking) {
  Registry registry;
  for (int g = 0; g < 30; ++g) AddRegistryGroup(registry, "g" + std::to_string(g));
  ASSERT_TRUE(WriteRegistry(home.folder() + "/ViewerFile.txt", registry));
  auto *groups = GroupManagerDialog::ShowForProgramFolder(window.mdiArea(), &window);
  ASSERT_NE(groups, nullptr);
  Click(groups, "cmdAdd");
  EXPECT_EQ(messages, std::vector<int>{41050});
  EXPECT_EQ(TopLevel<FileAddDialog>("frmFileAdd"), nullptr);
  groups->close();
}

TEST_F(RecordOutputs, CouplingWindowJoinsTwoHalvesBackIntoTheWhole) {
  // The sample cut in two at a record boundary, composed from its bytes here.
  const std::string source = ReadAll(kSamples + "SHEAT01.FDT");
  const std::size_t start = 108 + 56 * 12 + 24 * 3 + 26 * 4 + 2;
  const std::size_t length = (source.size() - start) / 25920;
  const std::size_t cut = start + 10000 * length;
  const std::string parts = records + "/parts";
  std::filesystem::create_directories(parts);
  {
    std::ofstream(parts + "/SP1.FDT", std::ios::binary) << source.substr(0, cut);
    std::ofstream(parts + "/SP2.FDT", std::ios::binary)
        << source.substr(0, start) + source.substr(cut);
  }
  std::filesystem::copy_file(kSamples + "AHEAT01.FDT", parts + "/AP2.FDT");

  window.command("mnuFileFileCoupling")->trigger();
  QCoreApplication::processEvents();
  auto *coupling = TopLevel<FileCouplingDialog>("frmFileCoupling");
  ASSERT_NE(coupling, nullptr);
  EXPECT_EQ(coupling->windowTitle(), QString::fromUtf8("ファイル結合"));
  coupling->setFolder(QString::fromStdString(parts));
  auto *files = coupling->findChild<QListWidget *>("filLocal");
  ASSERT_EQ(files->count(), 2);
  Click(coupling, "cmdCoupling");
  EXPECT_EQ(messages, std::vector<int>{19809});
  files->setCurrentRow(1);  // SP2 first: the join goes by first time
  Click(coupling, "cmdSelect");
  Click(coupling, "cmdSelect");
  EXPECT_EQ(messages.back(), 19812);
  files->setCurrentRow(0);
  Click(coupling, "cmdSelect");
  ASSERT_EQ(coupling->selection().size(), 2u);
  Click(coupling, "cmdCoupling");
  EXPECT_EQ(messages.back(), 19810);
  // Targets named after the first chosen file.
  EXPECT_TRUE(ReadAll(parts + "/SC2.FDT") == source);
  EXPECT_TRUE(ReadAll(parts + "/AC2.FDT") == ReadAll(kSamples + "AHEAT01.FDT"));
  // Again: the target exists and No stops it.
  answer = QMessageBox::No;
  Click(coupling, "cmdCoupling");
  EXPECT_EQ(messages.back(), 19806);
  auto *chosen = coupling->findChild<QListWidget *>("lstSelect");
  chosen->setCurrentRow(-1);
  Click(coupling, "cmdClear");
  EXPECT_EQ(messages.back(), 19808);
  Click(coupling, "cmdAllClear");
  EXPECT_EQ(chosen->count(), 0);
  coupling->close();
  EXPECT_EQ(Shared().MenuState, 0);
  EXPECT_TRUE(window.command("mnuFileFileCoupling")->isEnabled());
}

}  // namespace
