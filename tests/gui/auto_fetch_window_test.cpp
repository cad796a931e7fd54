// frmRecord and the automatic fetch through the real main window: the menu
// command, the rows, start with its question, a run against real FTP servers off
// the window thread, the status texts, the log box, stop, and the close that
// waits for a run.
#include <gtest/gtest.h>
#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>

#include <chrono>
#include <fstream>
#include <thread>

#include "../ftp/auto_fetch_test_support.h"
#include "app/desktop_commands.h"
#include "ftp/auto_fetch_control.h"
#include "ftp/auto_fetch_window.h"
#include "ftp/operation_log.h"
#include "gui_test_support.h"
#include "platform/text_encoding.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

using namespace recscope;
using namespace recscope::testing_support;
using recscope::testing::GuiHome;

namespace {

const std::int64_t kNow = FromCivil({2025, 11, 3, 8, 30, 0});

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// Lets the window system run until `done` holds, at most `seconds`.
bool WaitFor(const std::function<bool()> &done, int seconds = 30) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

// The port of the test servers for the window's runs.
class PortVariable {
 public:
  explicit PortVariable(int port) { qputenv("RECSCOPE_FTP_PORT", QByteArray::number(port)); }
  ~PortVariable() { qunsetenv("RECSCOPE_FTP_PORT"); }
};

template <typename T>
T *Control(QWidget *window, const QString &name) {
  T *found = window->findChild<T *>(name);
  EXPECT_NE(found, nullptr) << name.toStdString();
  return found;
}

void FillRow(RecordFetchWindow *form, int n, const QStringList &ip, const QString &user,
             const QString &password, bool on) {
  Control<QCheckBox>(form, QStringLiteral("chkOn_%1").arg(n))->setChecked(on);
  for (int k = 0; k < 4; ++k)
    Control<QLineEdit>(form, QStringLiteral("txtIP_%1_%2").arg(n).arg(k + 1))->setText(ip[k]);
  Control<QLineEdit>(form, QStringLiteral("txtName_%1").arg(n))->setText(user);
  Control<QLineEdit>(form, QStringLiteral("txtPass_%1").arg(n))->setText(password);
}

QString Status(RecordFetchWindow *form, int n) {
  return Control<QLabel>(form, QStringLiteral("lblCommu_%1").arg(n))->text();
}

// The log box's lines, without their times.
QStringList LogBoxMessages(RecordFetchWindow *form) {
  QStringList messages;
  for (const QString &line : Control<QPlainTextEdit>(form, "txtLogwin")->toPlainText().split('\n'))
    messages.append(line.mid(20));
  return messages;
}

QString Fetched(int n, const QString &name) {
  return QString::fromStdString(GetMessageText(10860, {{"@NUM@", std::to_string(n)}})) + name +
         Text(10853);
}

struct Desktop {
  GuiHome home;
  MainWindow window;
  AutoFetchControl *control = nullptr;
  Desktop() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
    control = AutoFetchControl::Of(&window);
    control->setClock([] { return kNow; });
  }
  ~Desktop() {
    if (control) control->stop();
    Shared().AutoRunning = false;
    Shared().AutoStop = false;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  RecordFetchWindow *openForm() {
    window.runCommand("mnuCommRec");
    return window.findChild<RecordFetchWindow *>("frmRecord");
  }
};

}  // namespace

TEST(AutoFetchWindow, WholeRouteFromTheMenuFetchesTwoRecordersShowsTheirStatusAndStops) {
  FtpServerOptions first;
  first.memoryLayout = true;
  FtpTestServer one(first);
  WriteBytes(one.RecordFolder() / "S0101.FDT", 4096, 11);
  WriteBytes(one.RecordFolder() / "A0101.FDT", 96, 12);
  WriteBytes(one.TotalizeFolder() / "D0101.FDT", 512, 13);
  ASSERT_TRUE(one.Start());
  FtpServerOptions second;
  second.host = "127.0.0.2";
  second.port = one.Port();
  FtpTestServer two(second);
  WriteBytes(two.RecordFolder() / "S0202.FDT", 2500, 21);
  ASSERT_TRUE(two.Start());
  PortVariable port(one.Port());

  Desktop desk;
  MessageRecorder messages(QMessageBox::Yes);
  RecordFetchWindow *form = desk.openForm();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(form->windowTitle(), Text(10900));
  for (int n = 1; n <= 10; ++n)
    EXPECT_NE(form->findChild<QLineEdit *>(QStringLiteral("txtIP_%1_4").arg(n)), nullptr) << n;

  FillRow(form, 1, {"127", "0", "0", "1"}, "user", "pass", true);
  FillRow(form, 4, {"127", "0", "0", "2"}, "user", "pass", true);
  FillRow(form, 7, {"127", "0", "0", "9"}, "nobody", "x", false);
  Control<QSpinBox>(form, "txtDay")->setValue(0);
  Control<QSpinBox>(form, "txtHour")->setValue(2);
  auto *start = Control<QPushButton>(form, "cmdStart");
  auto *stop = Control<QPushButton>(form, "cmdStop");
  EXPECT_TRUE(start->isEnabled());
  EXPECT_FALSE(stop->isEnabled());

  start->click();
  const std::string ini = ViewerComIniPath(desk.home.folder());
  EXPECT_EQ(ReadIni("IP", "FTP_1", ini), "127.0.0.1");
  EXPECT_EQ(ReadIni("USER", "FTP_4", ini), "user");
  EXPECT_EQ(ReadIni("PASS", "FTP_4", ini), "pass");
  EXPECT_EQ(ReadIni("ON", "FTP_7", ini), "0");
  EXPECT_EQ(ReadIni("IP", "FTP_10", ini), "");
  EXPECT_EQ(ReadIni("CYCLE", "FTP", ini), "00:02");
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "1");
  EXPECT_FALSE(start->isEnabled());
  EXPECT_TRUE(stop->isEnabled());
  auto *lampTimer = desk.window.findChild<QTimer *>("LampTimer");
  ASSERT_NE(lampTimer, nullptr);
  EXPECT_TRUE(lampTimer->isActive());
  EXPECT_EQ(lampTimer->interval(), 2500);

  // The first tick asks; Yes runs at once, on a thread of its own.
  ASSERT_TRUE(WaitFor([&] { return !messages.ids().empty(); }));
  EXPECT_EQ(messages.ids(), std::vector<int>{10870});
  ASSERT_TRUE(WaitFor([&] { return Status(form, 4) == "OK"; }));
  ASSERT_TRUE(WaitFor([&] { return !Shared().AutoRunning; }));
  EXPECT_TRUE(desk.window.isEnabled());

  const std::filesystem::path home(desk.home.folder());
  EXPECT_EQ(ReadAll(home / "IP127000000001" / "S000000" / "S0101.FDT"),
            ReadAll(one.RecordFolder() / "S0101.FDT"));
  EXPECT_EQ(ReadAll(home / "IP127000000001" / "S000000" / "A0101.FDT"),
            ReadAll(one.RecordFolder() / "A0101.FDT"));
  EXPECT_EQ(ReadAll(home / "IP127000000001" / "S000000" / "T000000" / "D0101.FDT"),
            ReadAll(one.TotalizeFolder() / "D0101.FDT"));
  EXPECT_EQ(ReadAll(home / "IP127000000002" / "S0202.FDT"),
            ReadAll(two.RecordFolder() / "S0202.FDT"));
  EXPECT_FALSE(std::filesystem::exists(home / "IP127000000009"));

  EXPECT_EQ(Status(form, 1), "OK");
  EXPECT_EQ(Status(form, 4), "OK");
  EXPECT_EQ(Status(form, 7), " ");
  EXPECT_EQ(desk.window.findChild<QLabel *>("sbAutoFetch")->text(), QString());
  EXPECT_FALSE(desk.window.findChild<QPushButton *>("cmdCancel")->isVisible());
  EXPECT_EQ(Control<QLabel>(form, "lblNextTime")->text(),
            QString::fromStdString(FormatTime(kNow + 2 * 3600, Shared().DateFormatNo)));
  EXPECT_EQ(LogBoxMessages(form),
            (QStringList{Text(10850), Text(10850), Fetched(1, "S0101.FDT"), Fetched(1, "A0101.FDT"),
                         Fetched(1, "D0101.FDT"), Fetched(4, "S0202.FDT"), Text(10851)}));
  EXPECT_EQ(Control<QPlainTextEdit>(form, "txtLogwin")->toPlainText(),
            QString::fromStdString(LogShow(desk.home.folder())).replace("\r\n", "\n"));

  // The next tick finds the next time two hours on: nothing more happens.
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 120);
  EXPECT_EQ(messages.ids(), std::vector<int>{10870});
  EXPECT_FALSE(Shared().AutoRunning);

  stop->click();
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "0");
  EXPECT_EQ(desk.window.findChild<QLabel *>("sbAutoFetch")->text(), Text(10802));
  EXPECT_EQ(Status(form, 1), " ");
  EXPECT_EQ(Status(form, 4), " ");
  EXPECT_EQ(LogBoxMessages(form).last(), Text(10851));
  EXPECT_TRUE(start->isEnabled());
  EXPECT_FALSE(stop->isEnabled());
  EXPECT_FALSE(desk.window.findChild<QTimer *>("AutoFTPTimer")->isActive());
  EXPECT_FALSE(lampTimer->isActive());
  EXPECT_EQ(desk.window.findChild<QLabel *>("picCommStatus")->property("lampColour").toInt(),
            0x888888);
}

TEST(AutoFetchWindow, FirstTickAnsweredNoWaitsOneCycle) {
  Desktop desk;
  MessageRecorder messages(QMessageBox::No);
  RecordFetchWindow *form = desk.openForm();
  ASSERT_NE(form, nullptr);
  FillRow(form, 2, {"127", "0", "0", "1"}, "user", "pass", true);
  Control<QSpinBox>(form, "txtDay")->setValue(1);
  Control<QSpinBox>(form, "txtHour")->setValue(3);
  Control<QPushButton>(form, "cmdStart")->click();
  ASSERT_TRUE(WaitFor([&] { return !messages.ids().empty(); }));
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 120);
  EXPECT_EQ(messages.ids(), std::vector<int>{10870});
  EXPECT_FALSE(Shared().AutoRunning);
  EXPECT_EQ(desk.control->nextFetchTime(), kNow + 86400 + 3 * 3600);
  EXPECT_EQ(Control<QLabel>(form, "lblNextTime")->text(),
            QString::fromStdString(FormatTime(kNow + 86400 + 3 * 3600, Shared().DateFormatNo)));
  EXPECT_EQ(LogBoxMessages(form), QStringList{Text(10850)});
}

TEST(AutoFetchWindow, CheckedRowWithoutUserNameRefusesTheStartWith10858) {
  Desktop desk;
  MessageRecorder messages;
  RecordFetchWindow *form = desk.openForm();
  FillRow(form, 3, {"10", "0", "0", "5"}, "", "pass", true);
  Control<QSpinBox>(form, "txtHour")->setValue(1);
  Control<QPushButton>(form, "cmdStart")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{10858});
  EXPECT_FALSE(desk.control->isOn());
  EXPECT_EQ(ReadIni("IP", "FTP_3", ViewerComIniPath(desk.home.folder())), kIniMissing);
  EXPECT_TRUE(Control<QPushButton>(form, "cmdStart")->isEnabled());
}

TEST(AutoFetchWindow, NoCycleRefusesTheStartWith10859) {
  Desktop desk;
  MessageRecorder messages;
  RecordFetchWindow *form = desk.openForm();
  FillRow(form, 1, {"10", "0", "0", "5"}, "user", "pass", true);
  Control<QSpinBox>(form, "txtDay")->setValue(0);
  Control<QSpinBox>(form, "txtHour")->setValue(0);
  Control<QPushButton>(form, "cmdStart")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{10859});
  EXPECT_FALSE(desk.control->isOn());
}

TEST(AutoFetchWindow, AddressPartAbove255ShowsTheRangeMessage) {
  Desktop desk;
  MessageRecorder messages;
  RecordFetchWindow *form = desk.openForm();
  auto *part = Control<QLineEdit>(form, "txtIP_5_2");
  part->setText("256");
  emit part->editingFinished();
  ASSERT_EQ(messages.ids(), std::vector<int>{20115});
  EXPECT_EQ(messages.messages()[0].text(),
            Text(20115).replace("@FORMIN@", "0").replace("@FORMAX@", "255"));
  part->setText("255");
  emit part->editingFinished();
  EXPECT_EQ(messages.ids().size(), 1u);
}

TEST(AutoFetchWindow, FormShowsTheStoredRecordersAndTheCycle) {
  Desktop desk;
  FetchRecorders rows;
  rows[5] = {"192.168.0.5", "rec6", "pw6", true};
  WriteFetchSettings(ViewerComIniPath(desk.home.folder()), rows, {3, 4}, false);
  RecordFetchWindow *form = desk.openForm();
  EXPECT_EQ(Control<QLineEdit>(form, "txtIP_6_3")->text(), "0");
  EXPECT_EQ(Control<QLineEdit>(form, "txtIP_6_4")->text(), "5");
  EXPECT_EQ(Control<QLineEdit>(form, "txtName_6")->text(), "rec6");
  EXPECT_TRUE(Control<QCheckBox>(form, "chkOn_6")->isChecked());
  EXPECT_FALSE(Control<QCheckBox>(form, "chkOn_1")->isChecked());
  EXPECT_EQ(Control<QSpinBox>(form, "txtDay")->value(), 3);
  EXPECT_EQ(Control<QSpinBox>(form, "txtHour")->value(), 4);
  // A second command brings the same window forward.
  EXPECT_EQ(desk.openForm(), form);
}

TEST(AutoFetchWindow, LogBoxShowsOnlyTheNewestLinesOfALongLog) {
  Desktop desk;
  std::string text;
  for (int i = 1; i <= 1500; ++i) text += "2025/01/01 00:00:00 line " + std::to_string(i) + "\r\n";
  {
    std::ofstream out(LogFilePath(desk.home.folder()), std::ios::binary);
    out << text;
  }
  RecordFetchWindow *form = desk.openForm();
  auto *box = Control<QPlainTextEdit>(form, "txtLogwin");
  // What follows the (1500 - 1001)th line end: lines 500 to 1500, no final line end.
  EXPECT_EQ(box->document()->blockCount(), 1001);
  EXPECT_TRUE(box->toPlainText().startsWith("2025/01/01 00:00:00 line 500\n"));
  EXPECT_TRUE(box->toPlainText().endsWith("line 1500"));
}

TEST(AutoFetchWindow, MissingLogLeavesTheBoxEmpty) {
  Desktop desk;
  RecordFetchWindow *form = desk.openForm();
  EXPECT_EQ(Control<QPlainTextEdit>(form, "txtLogwin")->toPlainText(), QString());
}

TEST(AutoFetchWindow, MainWindowCloseWaitsForTheRunningFetch) {
  FtpServerOptions slow;
  slow.slowSeconds = 0.15;
  FtpTestServer server(slow);
  WriteBytes(server.RecordFolder() / "S0001.FDT", 3000, 1);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 3000, 2);
  ASSERT_TRUE(server.Start());
  PortVariable port(server.Port());

  Desktop desk;
  MessageRecorder messages(QMessageBox::Yes);
  RecordFetchWindow *form = desk.openForm();
  FillRow(form, 1, {"127", "0", "0", "1"}, "user", "pass", true);
  Control<QSpinBox>(form, "txtHour")->setValue(1);
  Control<QPushButton>(form, "cmdStart")->click();
  ASSERT_TRUE(WaitFor([] { return Shared().AutoRunning; }));
  EXPECT_TRUE(desk.window.findChild<QPushButton *>("cmdCancel")->isVisible());
  EXPECT_EQ(desk.window.findChild<QLabel *>("sbAutoFetch")->text().isEmpty(), false);

  // The close is held while the busy flag stands; frmWait shows.
  EXPECT_FALSE(desk.window.close());
  QWidget *wait = nullptr;
  for (QWidget *top : QApplication::topLevelWidgets())
    if (top->objectName() == "frmWait" && top->isVisible()) wait = top;
  ASSERT_NE(wait, nullptr);
  EXPECT_FALSE(desk.window.isEnabled());
  EXPECT_TRUE(desk.window.isVisible());

  // When the run ends the window closes by itself, after the run's last line.
  ASSERT_TRUE(WaitFor([&] { return !desk.window.isVisible(); }));
  EXPECT_FALSE(Shared().AutoRunning);
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(desk.home.folder()) / "IP127000000001" /
                                      "S0002.FDT"));
  const QString log = QString::fromStdString(Cp932ToUtf8(ReadAll(LogFilePath(desk.home.folder()))));
  const QStringList lines = log.split("\r\n", Qt::SkipEmptyParts);
  ASSERT_GE(lines.size(), 2);
  EXPECT_EQ(lines[lines.size() - 2].mid(20), Text(10851));
  EXPECT_EQ(lines.last().mid(20), Text(10856));
}

TEST(AutoFetchWindow, WaitDialogEndCutsTheRunShortAndTheWindowCloses) {
  FtpServerOptions slow;
  slow.slowSeconds = 0.3;
  FtpTestServer server(slow);
  for (int i = 1; i <= 6; ++i)
    WriteBytes(server.RecordFolder() / ("S000" + std::to_string(i) + ".FDT"), 2000, i);
  ASSERT_TRUE(server.Start());
  PortVariable port(server.Port());

  Desktop desk;
  MessageRecorder messages(QMessageBox::Yes);
  RecordFetchWindow *form = desk.openForm();
  FillRow(form, 1, {"127", "0", "0", "1"}, "user", "pass", true);
  Control<QSpinBox>(form, "txtHour")->setValue(1);
  Control<QPushButton>(form, "cmdStart")->click();
  ASSERT_TRUE(WaitFor([] { return Shared().AutoRunning; }));
  EXPECT_FALSE(desk.window.close());
  QWidget *wait = nullptr;
  for (QWidget *top : QApplication::topLevelWidgets())
    if (top->objectName() == "frmWait" && top->isVisible()) wait = top;
  ASSERT_NE(wait, nullptr);
  wait->findChild<QPushButton *>("cmdEnd")->click();
  ASSERT_TRUE(WaitFor([&] { return !desk.window.isVisible(); }));
  // The run ended on the stop, before its sixth file.
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(desk.home.folder()) /
                                       "IP127000000001" / "S0006.FDT"));
  const QString log = QString::fromStdString(Cp932ToUtf8(ReadAll(LogFilePath(desk.home.folder()))));
  EXPECT_TRUE(log.endsWith(Text(10856) + "\r\n"));
}

TEST(AutoFetchWindow, FailedRecorderShowsNGAndTheCommunicationErrorText) {
  FtpServerOptions refusing;
  refusing.refuseLogin = true;
  FtpTestServer server(refusing);
  ASSERT_TRUE(server.Start());
  PortVariable port(server.Port());

  Desktop desk;
  MessageRecorder messages(QMessageBox::Yes);
  RecordFetchWindow *form = desk.openForm();
  FillRow(form, 2, {"127", "0", "0", "1"}, "user", "wrong", true);
  Control<QSpinBox>(form, "txtHour")->setValue(1);
  Control<QPushButton>(form, "cmdStart")->click();
  ASSERT_TRUE(WaitFor([&] { return Status(form, 2) == "NG"; }));
  ASSERT_TRUE(WaitFor([] { return !Shared().AutoRunning; }));
  EXPECT_EQ(desk.window.findChild<QLabel *>("sbAutoFetch")->text(), Text(10801));
  EXPECT_EQ(
      LogBoxMessages(form),
      (QStringList{Text(10850), Text(10850),
                   QString::fromStdString(GetMessageText(10860, {{"@NUM@", "2"}})) + Text(10855),
                   Text(10851)}));
}

TEST(AutoFetchWindow, StartUpWithTheFetchLeftOnResumesOneCycleOn) {
  GuiHome home;
  FetchRecorders rows;
  rows[0] = {"127.0.0.1", "user", "pass", true};
  WriteFetchSettings(ViewerComIniPath(home.folder()), rows, {0, 3}, true);
  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  AutoFetchControl *control = AutoFetchControl::Of(&window);
  ASSERT_NE(control, nullptr);
  ASSERT_TRUE(WaitFor([&] { return control->isOn(); }, 5));
  EXPECT_TRUE(window.findChild<QTimer *>("AutoFTPTimer")->isActive());
  const QString log = QString::fromStdString(LogShow(home.folder()));
  EXPECT_EQ(log.mid(20), Text(10852));
  EXPECT_GT(control->nextFetchTime(), LocalNowSeconds() + 3 * 3600 - 60);
  control->stop();
}

TEST(AutoFetchWindow, StartUpWithTheFetchOffStaysStopped) {
  Desktop desk;
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  EXPECT_FALSE(desk.control->isOn());
  EXPECT_FALSE(desk.window.findChild<QTimer *>("AutoFTPTimer")->isActive());
  EXPECT_EQ(LogShow(desk.home.folder()), "");
}
