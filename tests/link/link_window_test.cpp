// The Communication menu through the real main window against the simulated
// recorder: dlgComsetting, the setup read with its messages and question, the
// poll of the present values into the new record, and the record in a trend
// window with the menus as they stand after it.
#include <gtest/gtest.h>
#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

#include <cstdlib>
#include <filesystem>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "link/com_setting_dialog.h"
#include "link/command_driver.h"
#include "link/link_commands.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"
#include "simulated_recorder.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;
using recscope::testing::SimulatedRecorder;

namespace {

void Wait(int ms) {
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

template <typename Done>
bool WaitUntil(Done done, int ms) {
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > ms) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  }
  return true;
}

struct LinkDesktop : ::testing::Test {
  LinkDesktop() {
    ComSettings() = ComPortSettings{};
    ::setenv("RECSCOPE_COM1", recorder.device().c_str(), 1);
    QFile::copy(QString::fromStdString(recscope::testing::kShippedInitSet),
                home.path(QStringLiteral("InitSet.txt")));
    ConnectDesktopCommands(window);
    window.load();
  }
  ~LinkDesktop() override {
    ::unsetenv("RECSCOPE_COM1");
    ComSettings() = ComPortSettings{};
  }
  bool enabled(const char *name) { return window.command(QString::fromLatin1(name))->isEnabled(); }
  QList<TrendWindow *> trends() {
    QList<TrendWindow *> found;
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) found.append(t);
    return found;
  }
  std::string file(const char *name) { return home.folder() + "/" + name; }

  SimulatedRecorder recorder;
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
};

TEST(ComErrorDialog, EachCodeShowsItsErrorThenTheQuestionAndYesIs6) {
  GuiHome home;
  MessageRecorder messages{QMessageBox::Yes};
  for (int code = 1; code <= 5; ++code) {
    messages.clear();
    EXPECT_EQ(ComErrorDialog(nullptr, code), 6);
    ASSERT_EQ(messages.ids(), (std::vector<int>{11100 + code, 11100}));
    EXPECT_EQ(messages.messages()[0].buttons, QMessageBox::Ok);
    EXPECT_EQ(messages.messages()[1].buttons, QMessageBox::Yes | QMessageBox::No);
  }
  EXPECT_EQ(messages.messages()[1].text(), QStringLiteral("処理を中止しますか？"));
  messages.setAnswer(QMessageBox::No);
  EXPECT_EQ(ComErrorDialog(nullptr, 1), 7);
}

TEST_F(LinkDesktop, SettingDialogShowsTheSelectedPortAndOkStoresUnderTheChosenPort) {
  window.runCommand(QStringLiteral("mnuComunicationSetting"));
  auto *dialog = window.findChild<ComSettingDialog *>(QStringLiteral("dlgComsetting"));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->windowTitle(), "Communication setting");
  auto combo = [dialog](int i) {
    return dialog->findChild<QComboBox *>(QStringLiteral("Combo1_%1").arg(i));
  };
  EXPECT_EQ(combo(0)->currentText(), "19200");
  EXPECT_EQ(combo(1)->currentText(), "8");
  EXPECT_EQ(combo(2)->currentText(), "ODD");
  EXPECT_EQ(combo(3)->currentText(), "1");
  EXPECT_EQ(combo(4)->currentText(), "COM1");
  EXPECT_EQ(combo(2)->count(), 3);
  EXPECT_EQ(combo(2)->itemText(2), "NONE");
  combo(0)->setCurrentText(QStringLiteral("9600"));
  combo(2)->setCurrentText(QStringLiteral("EVEN"));
  combo(3)->setCurrentText(QStringLiteral("2"));
  combo(4)->setCurrentText(QStringLiteral("COM2"));
  dialog->findChild<QPushButton *>(QStringLiteral("Command1"))->click();
  EXPECT_EQ(ComSettings().SelectedPort, 2);
  EXPECT_EQ(ComSettings().BaudRate[2], 9600);
  EXPECT_EQ(ComSettings().Parity[2], "EVEN");
  EXPECT_EQ(ComSettings().StopBits[2], 2);
  EXPECT_EQ(ComSettings().BaudRate[1], 19200);  // port 1 kept its own
  EXPECT_EQ(ComSettingsText(ComSettings()), "9600,E,8,2");

  // Command2 closes without storing.
  window.runCommand(QStringLiteral("mnuComunicationSetting"));
  Wait(50);
  ComSettingDialog *again = nullptr;
  for (auto *d : window.findChildren<ComSettingDialog *>(QStringLiteral("dlgComsetting")))
    if (d->isVisible()) again = d;
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->findChild<QComboBox *>(QStringLiteral("Combo1_4"))->currentText(), "COM2");
  again->findChild<QComboBox *>(QStringLiteral("Combo1_0"))
      ->setCurrentText(QStringLiteral("19200"));
  again->findChild<QPushButton *>(QStringLiteral("Command2"))->click();
  EXPECT_EQ(ComSettings().BaudRate[2], 9600);
}

TEST_F(LinkDesktop, NoneChosenInTheDialogOpensNoPortAndTheReadEndsWith11105AndTheQuestion) {
  ASSERT_TRUE(recorder.ready());
  window.runCommand(QStringLiteral("mnuComunicationSetting"));
  auto *dialog = window.findChild<ComSettingDialog *>(QStringLiteral("dlgComsetting"));
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QComboBox *>(QStringLiteral("Combo1_2"))
      ->setCurrentText(QStringLiteral("NONE"));
  dialog->findChild<QPushButton *>(QStringLiteral("Command1"))->click();
  messages.setAnswer(QMessageBox::Yes);
  window.runCommand(QStringLiteral("mnuRealTime"));
  window.runCommand(QStringLiteral("mnuComunicationStart"));
  EXPECT_EQ(messages.ids(), (std::vector<int>{11105, 11100}));
  EXPECT_EQ(messages.messages()[1].buttons, QMessageBox::Yes | QMessageBox::No);
  EXPECT_TRUE(recorder.Requests().empty());
  EXPECT_FALSE(std::filesystem::exists(file("S100000.FDT")));
  EXPECT_FALSE(std::filesystem::exists(file("A100000.FDT")));
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  EXPECT_TRUE(trends().isEmpty());
}

TEST_F(LinkDesktop, StartReadsTheSetupPollsTheRecorderAndEndOpensTheRecordInATrendWindow) {
  ASSERT_TRUE(recorder.ready());
  // The two modes are a pair of check marks.
  window.runCommand(QStringLiteral("mnuComunicationFileRead"));
  window.runCommand(QStringLiteral("mnuRealTime"));
  EXPECT_TRUE(window.command(QStringLiteral("mnuRealTime"))->isChecked());
  EXPECT_FALSE(window.command(QStringLiteral("mnuComunicationFileRead"))->isChecked());
  window.runCommand(QStringLiteral("mnuComunicationStart"));
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_TRUE(std::filesystem::exists(file("S100000.FDT")));
  EXPECT_TRUE(std::filesystem::exists(file("A100000.FDT")));
  // While the link runs its other commands are off and the end is on.
  EXPECT_FALSE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationSetting"));
  EXPECT_FALSE(enabled("mnuRealTime"));
  EXPECT_TRUE(enabled("mnuComunicationEnd"));
  // Timer2 polls the present values: 82 requests of the read, then one a poll.
  ASSERT_TRUE(WaitUntil([&] { return recorder.Requests().size() >= 82u + 4u; }, 5000));
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  const std::size_t polls = recorder.Requests().size() - 82u;
  EXPECT_EQ(recorder.Requests()[82], "4 86 44");

  ASSERT_EQ(trends().size(), 1);
  TrendWindow *trend = trends().front();
  const RecordFileInfo &info = Shared().Slot(trend->slot()).Record;
  EXPECT_EQ(info.FilePath, file("S100000.FDT"));
  // The recorder's clock goes on by a second a poll: one record each.
  EXPECT_EQ(static_cast<std::size_t>(info.RecordCount), polls);
  EXPECT_EQ(info.FirstTime, 1700000000);
  EXPECT_EQ(info.AnalogCount, 30);
  EXPECT_EQ(info.Channels[4].Tag, "CH05TAG         ");
  EXPECT_EQ(info.Groups[1].GroupName, "GROUP 2         ");
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_TRUE(enabled("mnuComunicationSetting"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  EXPECT_TRUE(enabled("mnuFileClose"));
  EXPECT_TRUE(enabled("mnuEdit"));
}

TEST_F(LinkDesktop, FailedRequestOfTheReadAnsweredNoReadsAgainIntoAFreshPair) {
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("noreply", 4);
  messages.setAnswer(QMessageBox::No);
  window.runCommand(QStringLiteral("mnuRealTime"));
  window.runCommand(QStringLiteral("mnuComunicationStart"));
  EXPECT_EQ(messages.ids(), (std::vector<int>{11102, 11100}));
  EXPECT_EQ(QString::fromStdString(GetMessageText(11102)), messages.messages()[0].text());
  EXPECT_TRUE(enabled("mnuComunicationEnd"));
  EXPECT_TRUE(std::filesystem::exists(file("S100000.FDT")));
  ASSERT_TRUE(WaitUntil([&] { return recorder.Requests().size() >= 4u + 70u + 82u + 2u; }, 5000));
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  ASSERT_EQ(trends().size(), 1);
}

TEST_F(LinkDesktop, FailedPollAnsweredYesEndsTheCommunicationAndTheRecordOpens) {
  ASSERT_TRUE(recorder.ready());
  messages.setAnswer(QMessageBox::Yes);
  window.runCommand(QStringLiteral("mnuRealTime"));
  window.runCommand(QStringLiteral("mnuComunicationStart"));
  ASSERT_TRUE(WaitUntil([&] { return recorder.Requests().size() >= 82u + 2u; }, 5000));
  recorder.Fault("noreply", 8);
  ASSERT_TRUE(WaitUntil([&] { return !messages.ids().empty(); }, 8000));
  EXPECT_EQ(messages.ids(), (std::vector<int>{11102, 11100}));
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  ASSERT_EQ(trends().size(), 1);
}

}  // namespace
