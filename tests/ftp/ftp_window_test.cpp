// frmFTP and frmFTPsetting against a real FTP server on 127.0.0.1: the whole
// route from the main window's command to files on disk, the address test, the
// remote list's rows, options, sorting, double click, delete with its question,
// the messages of failed sessions and that the window keeps running meanwhile.
#include "ftp/ftp_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QElapsedTimer>
#include <QFocusEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QTreeWidget>
#include <QValidator>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>

#include "../gui/gui_test_support.h"
#include "app/desktop_commands.h"
#include "ftp/ftp_setting_dialog.h"
#include "ftp/operation_log.h"
#include "ftp_server_fixture.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

using namespace recscope;
using recscope::testing::GuiHome;
using recscope::testing_support::FtpServerOptions;
using recscope::testing_support::FtpTestServer;
using recscope::testing_support::MakeTempFolder;
using recscope::testing_support::ReadAll;
using recscope::testing_support::WriteBytes;
namespace fs = std::filesystem;

namespace {

// Runs the event loop until `done` holds or `ms` have passed.
bool WaitFor(const std::function<bool()> &done, int ms = 20000) {
  QElapsedTimer timer;
  timer.start();
  while (!done()) {
    if (timer.elapsed() > ms) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return true;
}

std::set<std::string> FolderNames(const fs::path &folder) {
  std::set<std::string> names;
  for (const auto &item : fs::directory_iterator(folder))
    names.insert(item.path().filename().string());
  return names;
}

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

struct FtpWindowFixture : ::testing::Test {
  // The local folder stands alone in a folder of its own, so that anything
  // written beside it shows.
  FtpWindowFixture() {
    outer = MakeTempFolder("recscope-ftp-local");
    target = outer / "local";
    fs::create_directories(target);
  }
  ~FtpWindowFixture() override {
    if (window) delete window.data();
    fs::remove_all(outer);
    unsetenv("RECSCOPE_FTP_PORT");
    unsetenv("RECSCOPE_FTP_TIMEOUT");
  }

  // The browser standing on its own (the whole route opens it from the menu).
  FtpWindow *OpenBrowser() {
    window = new FtpWindow();
    window->setLocalFolder(QString::fromStdString(target.string()));
    window->show();
    return window;
  }

  FtpSettingDialog *SettingDialog() {
    for (auto *dialog : window->findChildren<FtpSettingDialog *>("frmFTPsetting"))
      if (dialog->isVisible()) return dialog;
    return nullptr;
  }

  // cmdConnect, the four address parts, the user and the password, txtConnect.
  void ConnectThroughTheDialog(int port, const QString &password = "pass") {
    setenv("RECSCOPE_FTP_PORT", std::to_string(port).c_str(), 1);
    window->findChild<QPushButton *>("cmdConnect")->click();
    FtpSettingDialog *dialog = SettingDialog();
    ASSERT_NE(dialog, nullptr);
    const char *parts[] = {"127", "0", "0", "1"};
    for (int i = 0; i < 4; ++i)
      dialog->findChild<QLineEdit *>(QStringLiteral("txtIP%1").arg(i + 1))->setText(parts[i]);
    dialog->findChild<QLineEdit *>("txtName")->setText("user");
    dialog->findChild<QLineEdit *>("txtPass")->setText(password);
    dialog->findChild<QPushButton *>("txtConnect")->click();
  }

  bool Settled() {
    return WaitFor([this] { return !window->isBusy() && !AnyDialogBusy(); });
  }
  bool AnyDialogBusy() {
    for (auto *dialog : window->findChildren<FtpSettingDialog *>())
      if (dialog->isBusy()) return true;
    return false;
  }

  QTreeWidget *Remote() { return window->findChild<QTreeWidget *>("lvRemote"); }
  void Select(const QStringList &names) {
    Remote()->clearSelection();
    for (int i = 0; i < Remote()->topLevelItemCount(); ++i)
      if (names.contains(Remote()->topLevelItem(i)->text(0)))
        Remote()->topLevelItem(i)->setSelected(true);
  }
  QStringList RemoteNames() {
    QStringList names;
    for (const auto &row : window->remoteTexts()) names << row[0];
    return names;
  }

  MessageRecorder messages{QMessageBox::Ok};
  GuiHome home;
  fs::path outer;
  fs::path target;
  QPointer<FtpWindow> window;
};

TEST_F(FtpWindowFixture, WholeRouteFromTheMenuToFilesOnDisk) {
  FtpTestServer server({.memoryLayout = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 3000, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 500, 2);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 2048 * 1024, 3);
  WriteBytes(server.TotalizeFolder() / "T0001.FDT", 900, 4);
  ASSERT_TRUE(server.Start());

  MainWindow main;
  ConnectDesktopCommands(main);
  main.load();
  ASSERT_TRUE(main.command("mnuCommFTP")->isEnabled());
  main.command("mnuCommFTP")->trigger();
  window = main.findChild<FtpWindow *>("frmFTP");
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(window->windowTitle(), Text(10690));
  EXPECT_FALSE(window->isConnected());
  window->setLocalFolder(QString::fromStdString(target.string()));

  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(SettingDialog(), nullptr);
  ASSERT_TRUE(window->isConnected());
  EXPECT_EQ(window->remoteFolder(), "/S000000");
  // The address and the user are kept; the password is not.
  std::string ini = ViewerComIniPath(Shared().ProgramFolder);
  EXPECT_EQ(ReadIni("IP", "FTP", ini), "127.0.0.1");
  EXPECT_EQ(ReadIni("USER", "FTP", ini), "user");
  EXPECT_EQ(ReadIni("PASS", "FTP", ini), kIniMissing);

  // The list on screen: record files only, sorted by name, with the column titles.
  QTreeWidget *remote = Remote();
  EXPECT_EQ(remote->headerItem()->text(0), Text(30103));
  EXPECT_EQ(remote->headerItem()->text(1), Text(30102));
  EXPECT_EQ(remote->headerItem()->text(2), Text(30104));
  auto rows = window->remoteTexts();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0][0], "S0001.FDT");
  EXPECT_EQ(rows[0][2], "3 KB");
  EXPECT_EQ(rows[1][0], "S0002.FDT");
  EXPECT_EQ(rows[1][2], "2 MB");
  // A file written just now is a file of today: one year ahead.
  CivilTime now = ToCivil(LocalNowSeconds());
  EXPECT_TRUE(rows[0][1].startsWith(QString::number(now.year + 1) + "/"))
      << rows[0][1].toStdString();

  Select({"S0001.FDT"});
  window->findChild<QPushButton *>("cmdDownload")->click();
  ASSERT_TRUE(Settled());
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(FolderNames(target), (std::set<std::string>{"S0001.FDT", "A0001.FDT"}));
  EXPECT_EQ(ReadAll(target / "S0001.FDT"), ReadAll(server.RecordFolder() / "S0001.FDT"));
  EXPECT_EQ(ReadAll(target / "A0001.FDT"), ReadAll(server.RecordFolder() / "A0001.FDT"));
  EXPECT_EQ(window->localFiles(), (QStringList{"A0001.FDT", "S0001.FDT"}));

  // State after: still connected, the buttons on, the list unchanged.
  EXPECT_TRUE(window->isConnected());
  EXPECT_TRUE(window->findChild<QPushButton *>("cmdDownload")->isEnabled());
  EXPECT_TRUE(window->findChild<QPushButton *>("cmdDelete")->isEnabled());
  EXPECT_EQ(window->remoteTexts(), rows);

  // The same again: the file stands and is named.
  window->findChild<QPushButton *>("cmdDownload")->click();
  ASSERT_TRUE(Settled());
  ASSERT_EQ(messages.ids(), std::vector<int>{30108});
  EXPECT_EQ(messages.messages()[0].text(), "S0001.FDT\n" + Text(30108).remove("@DITEM@"));
  messages.clear();

  // The menu brings the same window to the front.
  main.command("mnuCommFTP")->trigger();
  EXPECT_EQ(main.findChildren<FtpWindow *>("frmFTP").size(), 1);

  // cmdCancel asks before the window goes.
  messages.setAnswer(QMessageBox::No);
  window->findChild<QPushButton *>("cmdCancel")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{30100});
  EXPECT_TRUE(window->isVisible());
  messages.setAnswer(QMessageBox::Yes);
  window->findChild<QPushButton *>("cmdCancel")->click();
  EXPECT_TRUE(WaitFor([this] { return window.isNull(); }, 3000));
}

TEST_F(FtpWindowFixture, AddressPartsTakeDigitsAndAValueAbove255IsRefusedOnLeaving) {
  OpenBrowser();
  window->findChild<QPushButton *>("cmdConnect")->click();
  FtpSettingDialog *dialog = SettingDialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->windowTitle(), Text(10700));
  QStringList labels;
  for (QLabel *label : dialog->findChildren<QLabel *>()) labels << label->text();
  EXPECT_TRUE(labels.contains(Text(10701)));
  EXPECT_TRUE(labels.contains(Text(10703)));
  EXPECT_TRUE(labels.contains(Text(10704)));
  QLineEdit *ip1 = dialog->findChild<QLineEdit *>("txtIP1");
  QString typed = "12a";
  int position = 0;
  EXPECT_EQ(ip1->validator()->validate(typed, position), QValidator::Invalid);
  ip1->setText("256");
  QFocusEvent leave(QEvent::FocusOut);
  QCoreApplication::sendEvent(ip1, &leave);
  ASSERT_EQ(messages.ids(), std::vector<int>{20115});
  EXPECT_EQ(messages.messages()[0].text(), "0から255の値を入力してください");
  messages.clear();
  ip1->setText("255");
  QCoreApplication::sendEvent(ip1, &leave);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(dialog->findChild<QLineEdit *>("txtPass")->echoMode(), QLineEdit::Password);
}

TEST_F(FtpWindowFixture, RefusedLoginShowsItsMessageAndTheDialogStays) {
  FtpTestServer server({.refuseLogin = true});
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  auto start = std::chrono::steady_clock::now();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  EXPECT_EQ(messages.ids(), std::vector<int>{30001});
  EXPECT_NE(SettingDialog(), nullptr);
  EXPECT_FALSE(window->isConnected());
  EXPECT_TRUE(window->remoteTexts().empty());
  // Download and delete do nothing without a connection.
  window->findChild<QPushButton *>("cmdDownload")->click();
  window->findChild<QPushButton *>("cmdDelete")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{30001});
}

TEST_F(FtpWindowFixture, SlowServerGivesItsMessageWithinTheLimitAndTheWindowKeepsRunning) {
  FtpTestServer server({.slowSeconds = 8});
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  setenv("RECSCOPE_FTP_TIMEOUT", "2", 1);
  int ticks = 0;
  QTimer ticker;
  QObject::connect(&ticker, &QTimer::timeout, [&ticks] { ++ticks; });
  ticker.start(50);
  auto start = std::chrono::steady_clock::now();
  ConnectThroughTheDialog(server.Port());
  EXPECT_TRUE(AnyDialogBusy());
  ASSERT_TRUE(Settled());
  auto took = std::chrono::steady_clock::now() - start;
  EXPECT_LT(took, std::chrono::seconds(6));
  EXPECT_GE(took, std::chrono::milliseconds(1500));
  // The window's own timers ran all along.
  EXPECT_GT(ticks, 15);
  EXPECT_EQ(messages.ids(), std::vector<int>{30001});
  EXPECT_FALSE(window->isConnected());
}

TEST_F(FtpWindowFixture, ServerAnsweringOnlyTheFallbackStillFillsTheList) {
  FtpTestServer server({.listFallbackOnly = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 1024, 1);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 1025, 2);
  WriteBytes(server.RecordFolder() / "S0003.txt", 10, 3);
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  EXPECT_TRUE(messages.ids().empty());
  auto rows = window->remoteTexts();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0][0], "S0001.FDT");
  EXPECT_EQ(rows[0][2], "1024" + Text(30113));
  EXPECT_EQ(rows[1][0], "S0002.FDT");
  EXPECT_EQ(rows[1][2], "1" + Text(30110));
}

TEST_F(FtpWindowFixture, OptionsSortingAndDoubleClick) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 9000, 1);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 100, 2);
  WriteBytes(server.RecordFolder() / "S0003.FDT", 5000, 3);
  WriteBytes(server.TotalizeFolder() / "T0001.FDT", 700, 4);
  WriteBytes(server.TotalizeFolder() / "D0001.FDT", 800, 5);
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  ASSERT_EQ(RemoteNames(), (QStringList{"S0001.FDT", "S0002.FDT", "S0003.FDT"}));
  EXPECT_EQ(Remote()->selectionMode(), QAbstractItemView::ExtendedSelection);

  // A click on the size header sorts by size (by the bytes, not the text).
  Remote()->sortByColumn(2, Qt::AscendingOrder);
  EXPECT_EQ(RemoteNames(), (QStringList{"S0002.FDT", "S0003.FDT", "S0001.FDT"}));
  Remote()->sortByColumn(0, Qt::DescendingOrder);
  EXPECT_EQ(RemoteNames(), (QStringList{"S0003.FDT", "S0002.FDT", "S0001.FDT"}));

  // Totalize files from T000000.
  window->findChild<QRadioButton *>("optTfile")->setChecked(true);
  EXPECT_EQ(window->findChild<QLabel *>("lblReading")->text(), Text(30114));
  ASSERT_TRUE(Settled());
  EXPECT_EQ(window->findChild<QLabel *>("lblReading")->text(), "");
  Remote()->sortByColumn(0, Qt::AscendingOrder);
  EXPECT_EQ(RemoteNames(), (QStringList{"D0001.FDT", "T0001.FDT"}));

  // A double click on a row downloads it.
  QTreeWidgetItem *row = Remote()->topLevelItem(1);
  Remote()->clearSelection();
  row->setSelected(true);
  emit Remote()->itemDoubleClicked(row, 0);
  ASSERT_TRUE(Settled());
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(FolderNames(target), std::set<std::string>{"T0001.FDT"});
  EXPECT_EQ(ReadAll(target / "T0001.FDT"), ReadAll(server.TotalizeFolder() / "T0001.FDT"));
}

TEST_F(FtpWindowFixture, DeleteAsksWithTheNamesAndListsAgain) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 100, 2);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 100, 3);
  WriteBytes(server.RecordFolder() / "S0003.FDT", 100, 4);
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());

  // Nothing selected: nothing happens.
  Remote()->clearSelection();
  window->findChild<QPushButton *>("cmdDelete")->click();
  EXPECT_TRUE(messages.ids().empty());

  // Cancel keeps the files.
  Select({"S0001.FDT", "S0003.FDT"});
  messages.setAnswer(QMessageBox::Cancel);
  window->findChild<QPushButton *>("cmdDelete")->click();
  ASSERT_EQ(messages.ids(), std::vector<int>{30106});
  EXPECT_EQ(messages.messages()[0].text(),
            "S0001.FDT\nS0003.FDT\n" + Text(30106).remove("@DITEM@"));
  EXPECT_TRUE(fs::exists(server.RecordFolder() / "S0001.FDT"));
  messages.clear();

  messages.setAnswer(QMessageBox::Ok);
  window->findChild<QPushButton *>("cmdDelete")->click();
  ASSERT_TRUE(WaitFor([this] { return RemoteNames() == QStringList{"S0002.FDT"}; }));
  ASSERT_TRUE(Settled());
  EXPECT_EQ(messages.ids(), std::vector<int>{30106});
  std::set<std::string> left;
  for (const auto &item : fs::directory_iterator(server.RecordFolder()))
    left.insert(item.path().filename().string());
  EXPECT_EQ(left, (std::set<std::string>{"S0002.FDT", "T000000"}));
}

TEST_F(FtpWindowFixture, HostileNamesNeverShowAndACutTransferIsNamedAsNotFetched) {
  FtpTestServer server({.hostileNames = true, .cutTransfer = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 40000, 1);
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  EXPECT_EQ(RemoteNames(), QStringList{"S0001.FDT"});
  Select({"S0001.FDT"});
  window->findChild<QPushButton *>("cmdDownload")->click();
  ASSERT_TRUE(Settled());
  ASSERT_EQ(messages.ids(), std::vector<int>{30109});
  EXPECT_EQ(messages.messages()[0].text(), "S0001.FDT\n" + Text(30109).remove("@FITEM@"));
  EXPECT_TRUE(fs::is_empty(target));
  EXPECT_TRUE(window->localFiles().isEmpty());
  EXPECT_EQ(FolderNames(outer), std::set<std::string>{"local"});
}

TEST_F(FtpWindowFixture, AnEmptyFolderSaysThereAreNoFiles) {
  FtpTestServer server;
  ASSERT_TRUE(server.Start());
  OpenBrowser();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  EXPECT_EQ(messages.ids(), std::vector<int>{30105});
  EXPECT_TRUE(window->isConnected());
}

TEST_F(FtpWindowFixture, AFlatRecorderWithoutTotalizeFolderSaysTheFolderIsMissing) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  ASSERT_TRUE(server.Start());
  fs::remove_all(server.TotalizeFolder());
  OpenBrowser();
  ConnectThroughTheDialog(server.Port());
  ASSERT_TRUE(Settled());
  window->findChild<QRadioButton *>("optTfile")->setChecked(true);
  ASSERT_TRUE(Settled());
  EXPECT_EQ(messages.ids(), std::vector<int>{30000});
  EXPECT_TRUE(window->remoteTexts().empty());
}

}  // namespace
