// frmRealSet through the real main window: the menu command, the lists and
// their defaults, the address and station tests, and cmdShow writing the keys
// of REALTIME into VIEWERCOM.INI.
#include <gtest/gtest.h>
#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <filesystem>
#include <fstream>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "realtime/real_set_dialog.h"
#include "realtime/realtime_driver.h"
#include "realtime/realtime_settings.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

std::string Bytes(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

struct RealSetWindow : ::testing::Test {
  RealSetWindow() {
    ConnectDesktopCommands(window);
    window.load();
    RealSetDialog::SetTrendOpener([this](QWidget *) { ++trendOpened; });
  }
  ~RealSetWindow() override { RealSetDialog::SetTrendOpener({}); }

  RealSetDialog *open() {
    window.runCommand(QStringLiteral("mnuCommRealTime"));
    for (auto *d : window.findChildren<RealSetDialog *>(QStringLiteral("frmRealSet")))
      if (d->isVisible()) return d;
    return nullptr;
  }
  template <typename T>
  static T *control(QWidget *dialog, const char *name) {
    return dialog->findChild<T *>(QString::fromLatin1(name));
  }
  static void LoseFocus(QLineEdit *field) {
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(field, &out);
  }
  std::string ini() const { return ViewerComIniPath(home.folder()); }

  MessageRecorder messages;
  GuiHome home;
  MainWindow window;
  int trendOpened = 0;
};

TEST_F(RealSetWindow, MenuShowsTheDialogWithDefaultsAndCmdShowWritesTheKeysByteForByte) {
  const std::string before = Bytes(ini());
  ASSERT_EQ(before.find("REALTIME"), std::string::npos);
  RealSetDialog *dialog = open();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(Shared().Realtime.SetDialogOpen);
  EXPECT_EQ(dialog->windowTitle(), QStringLiteral("リアルタイムトレンド設定"));
  EXPECT_EQ(control<QPushButton>(dialog, "cmdShow")->text(), QStringLiteral("リアルタイム表示"));
  auto *communication = control<QComboBox>(dialog, "cmbCommunication");
  auto *cycle = control<QComboBox>(dialog, "cmbCycle");
  auto *com = control<QComboBox>(dialog, "cmbCom");
  auto *rate = control<QComboBox>(dialog, "cmbRate");
  auto *parity = control<QComboBox>(dialog, "cmbParity");
  // The lists.
  EXPECT_EQ(communication->itemText(0), "Ethernet");
  EXPECT_EQ(communication->itemText(1), "RS-232C");
  ASSERT_EQ(cycle->count(), 8);
  EXPECT_EQ(cycle->itemText(0), "1s");
  EXPECT_EQ(cycle->itemText(7), "60s");
  ASSERT_EQ(com->count(), 5);
  EXPECT_EQ(com->itemText(4), "COM5");
  EXPECT_EQ(rate->itemText(1), "19200bps");
  EXPECT_EQ(parity->itemText(2), QStringLiteral("偶数"));
  // No REALTIME keys: Ethernet, 1 second, station 1, COM1, 9600 bps, no parity, 1.1.1.1.
  EXPECT_EQ(communication->currentText(), "Ethernet");
  EXPECT_EQ(cycle->currentText(), "1s");
  EXPECT_EQ(control<QLineEdit>(dialog, "txtSno")->text(), "1");
  EXPECT_EQ(com->currentText(), "COM1");
  EXPECT_EQ(rate->currentText(), "9600bps");
  EXPECT_EQ(parity->currentText(), QStringLiteral("無し"));
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(dialog->findChild<QLineEdit *>(QStringLiteral("IP_%1").arg(i))->text(), "1");
  // Ethernet: the address on, the serial lists off.
  EXPECT_TRUE(control<QLineEdit>(dialog, "IP_0")->isEnabled());
  EXPECT_FALSE(com->isEnabled());
  EXPECT_FALSE(rate->isEnabled());
  EXPECT_FALSE(parity->isEnabled());

  const char *address[4] = {"192", "168", "0", "10"};
  for (int i = 0; i < 4; ++i)
    dialog->findChild<QLineEdit *>(QStringLiteral("IP_%1").arg(i))->setText(address[i]);
  control<QLineEdit>(dialog, "txtSno")->setText(QStringLiteral("7"));
  cycle->setCurrentIndex(4);
  // cmdShow closes the dialog, which deletes itself: watched through a guard.
  const QPointer<RealSetDialog> shown = dialog;
  control<QPushButton>(dialog, "cmdShow")->click();
  QCoreApplication::processEvents();
  EXPECT_TRUE(!shown || !shown->isVisible());
  EXPECT_EQ(trendOpened, 1);
  EXPECT_EQ(Bytes(ini()), before +
                              "[REALTIME]\r\nCOMMUNICATION=0\r\nSTATION=7\r\nCOM=1\r\n"
                              "BOUDRATE=0\r\nPARITY=0\r\nIP=192.168.0.10\r\n");
  // The cycle is kept in memory only.
  EXPECT_EQ(Shared().Realtime.Settings.Cycle, 4);
  EXPECT_EQ(Shared().Realtime.Settings.CycleSeconds(), 10);
  EXPECT_TRUE(messages.ids().empty());
  // The menu stays as it was, and the dialog comes again with the new values.
  EXPECT_TRUE(window.command(QStringLiteral("mnuCommRealTime"))->isEnabled());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(Shared().Realtime.SetDialogOpen);
  RealSetDialog *again = open();
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(control<QLineEdit>(again, "IP_0")->text(), "192");
  EXPECT_EQ(control<QLineEdit>(again, "txtSno")->text(), "7");
  again->close();
}

TEST_F(RealSetWindow, AddressFieldHolding256Or1aKeepsTheFocusAndShows20115) {
  RealSetDialog *dialog = open();
  ASSERT_NE(dialog, nullptr);
  auto *part = control<QLineEdit>(dialog, "IP_1");
  for (const char *bad : {"256", "1a"}) {
    messages.clear();
    control<QLineEdit>(dialog, "IP_3")->setFocus();
    part->setText(QString::fromLatin1(bad));
    LoseFocus(part);
    ASSERT_EQ(messages.ids(), (std::vector<int>{20115})) << bad;
    EXPECT_EQ(messages.messages()[0].text(), QStringLiteral("0から255の値を入力してください"));
    EXPECT_EQ(dialog->focusWidget(), part) << bad;
  }
  // A good value goes back without leading zeros, with no message.
  messages.clear();
  part->setText(QStringLiteral("007"));
  LoseFocus(part);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(part->text(), "7");
  dialog->close();
}

TEST_F(RealSetWindow, StationIsTestedTheSameWayAndStation0IsAccepted) {
  RealSetDialog *dialog = open();
  ASSERT_NE(dialog, nullptr);
  auto *station = control<QLineEdit>(dialog, "txtSno");
  station->setText(QStringLiteral("300"));
  LoseFocus(station);
  EXPECT_EQ(messages.ids(), (std::vector<int>{20115}));
  messages.clear();
  station->setText(QStringLiteral("0"));
  LoseFocus(station);
  EXPECT_TRUE(messages.ids().empty());
  control<QPushButton>(dialog, "cmdShow")->click();
  EXPECT_NE(Bytes(ini()).find("STATION=0\r\n"), std::string::npos);
  EXPECT_EQ(Shared().Realtime.Settings.Station, 0);
}

TEST_F(RealSetWindow, CommunicationIndex1IsRs232cForTheDriver) {
  RealSetDialog *dialog = open();
  ASSERT_NE(dialog, nullptr);
  auto *communication = control<QComboBox>(dialog, "cmbCommunication");
  communication->setCurrentIndex(1);
  EXPECT_FALSE(control<QLineEdit>(dialog, "IP_0")->isEnabled());
  EXPECT_TRUE(control<QComboBox>(dialog, "cmbCom")->isEnabled());
  EXPECT_TRUE(control<QComboBox>(dialog, "cmbRate")->isEnabled());
  control<QComboBox>(dialog, "cmbCom")->setCurrentIndex(2);
  control<QComboBox>(dialog, "cmbRate")->setCurrentIndex(1);
  control<QComboBox>(dialog, "cmbParity")->setCurrentIndex(2);
  control<QPushButton>(dialog, "cmdShow")->click();
  const std::string text = Bytes(ini());
  EXPECT_NE(text.find("COMMUNICATION=1\r\nSTATION=1\r\nCOM=3\r\nBOUDRATE=1\r\nPARITY=2\r\n"),
            std::string::npos);
  const RealSettings &settings = Shared().Realtime.Settings;
  EXPECT_TRUE(settings.Serial());
  EXPECT_EQ(RealSerialSettingsText(settings), "19200,E,8,1");
}

TEST_F(RealSetWindow, UnreadableSettingsFileShows11107AndTheDefaults) {
  std::filesystem::remove(ini());
  RealSetDialog *dialog = open();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(messages.ids(), (std::vector<int>{11107}));
  EXPECT_EQ(control<QLineEdit>(dialog, "IP_2")->text(), "1");
  EXPECT_EQ(control<QComboBox>(dialog, "cmbCommunication")->currentIndex(), 0);
  dialog->close();
}

TEST(RealSettingsFile, KeysAreReadWithTheBoudrateSpellingAndAMissingIpGivesAllDefaults) {
  GuiHome home;
  const std::string ini = home.folder() + "/VIEWERCOM.INI";
  {
    std::ofstream out(ini, std::ios::binary);
    out << "[REALTIME]\r\nCOMMUNICATION=1\r\nCYCLE=7\r\nSTATION=9\r\nCOM=2\r\nBOUDRATE=1\r\n"
           "PARITY=1\r\nIP=10.0.0.2\r\n";
  }
  RealSettings settings;
  ASSERT_TRUE(ReadRealSettings(settings, ini));
  EXPECT_EQ(settings.Communication, 1);
  EXPECT_EQ(settings.CycleSeconds(), 60);
  EXPECT_EQ(settings.Station, 9);
  EXPECT_EQ(settings.Com, 2);
  EXPECT_EQ(settings.BoudRate, 1);
  EXPECT_EQ(settings.Parity, 1);
  EXPECT_EQ(settings.Ip, "10.0.0.2");
  {
    std::ofstream out(ini, std::ios::binary);
    out << "[REALTIME]\r\nCOMMUNICATION=1\r\nCYCLE=7\r\nSTATION=9\r\n";
  }
  ASSERT_TRUE(ReadRealSettings(settings, ini));
  EXPECT_EQ(settings.Communication, 0);
  EXPECT_EQ(settings.Cycle, 0);
  EXPECT_EQ(settings.Station, 1);
  EXPECT_EQ(settings.Ip, "1.1.1.1");
  EXPECT_FALSE(ReadRealSettings(settings, home.folder() + "/none.ini"));
}

}  // namespace
