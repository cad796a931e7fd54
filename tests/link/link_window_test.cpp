// The Communication menu through the real main window against the simulated
// recorder: dlgComsetting, the setup read with its messages and question, the
// poll of the present values into the new record, and the record in a trend
// window with the menus as they stand after it.
#include <gtest/gtest.h>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "link/com_setting_dialog.h"
#include "link/command_driver.h"
#include "link/link_commands.h"
#include "link/monitor_windows.h"
#include "print/print_preview_window.h"
#include "record/open_record.h"
#include "record/open_select_dialog.h"
#include "record/working_files.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"
#include "simulated_recorder.h"
#include "totalize/addition_window.h"
#include "trend/trend_window.h"
#include "views/event_list_window.h"

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
  QAction *toolButton(int index) {
    return window.findChild<QAction *>(QStringLiteral("tbButton%1").arg(index));
  }
  // The monitor's windows of slot 17 in the MDI area, by class.
  int monitorWindows() {
    int count = 0;
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList()) {
      QWidget *w = sub->widget();
      if (qobject_cast<ComInstantValueWindow *>(w) || qobject_cast<ComBargraphWindow *>(w) ||
          qobject_cast<ComWholeDisplayWindow *>(w))
        ++count;
      else if (auto *t = qobject_cast<TrendWindow *>(w); t && t->slot() == kLinkSlot)
        ++count;
    }
    return count;
  }
  // The columns the trend of slot 17 shows, or 0 without it.
  int linkTrendColumns() {
    for (TrendWindow *t : trends())
      if (t->slot() == kLinkSlot) return t->view().DataColumnCount;
    return 0;
  }
  // The monitor started and polling, with its four windows.
  void StartMonitor() {
    ASSERT_TRUE(recorder.ready());
    window.show();
    window.runCommand(QStringLiteral("mnuRealTime"));
    window.runCommand(QStringLiteral("mnuComunicationStart"));
    ASSERT_TRUE(messages.ids().empty());
    ASSERT_TRUE(WaitUntil([&] { return linkTrendColumns() >= 2; }, 5000));
    ASSERT_EQ(monitorWindows(), 4);
  }
  // A copy of a sample in the home folder.
  QString Sample(const char *name) {
    const QString path = home.path(QString::fromLatin1(name));
    EXPECT_TRUE(QFile::copy(QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/") + name, path));
    return path;
  }

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

TEST_F(LinkDesktop, StartShowsTheMonitorTrendAndThreeViewsWithTheRecordersValuesAndEndClosesThem) {
  ASSERT_TRUE(recorder.ready());
  window.show();
  // A record open before the start is closed by it.
  ASSERT_TRUE(QFile::copy(QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT"),
                          home.path(QStringLiteral("SHEAT01.FDT"))));
  window.openFiles({home.path(QStringLiteral("SHEAT01.FDT"))});
  ASSERT_EQ(trends().size(), 1);
  ASSERT_EQ(trends().front()->slot(), 1);
  trends().front()->setAskOnClose(false);
  // The two modes are a pair of check marks.
  window.runCommand(QStringLiteral("mnuComunicationFileRead"));
  window.runCommand(QStringLiteral("mnuRealTime"));
  EXPECT_TRUE(window.command(QStringLiteral("mnuRealTime"))->isChecked());
  EXPECT_FALSE(window.command(QStringLiteral("mnuComunicationFileRead"))->isChecked());
  window.runCommand(QStringLiteral("mnuComunicationStart"));
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_TRUE(std::filesystem::exists(file("S100000.FDT")));
  EXPECT_TRUE(std::filesystem::exists(file("A100000.FDT")));
  EXPECT_FALSE(Shared().Slot(1).InUse());
  EXPECT_EQ(Shared().CurrentFile, kLinkSlot);
  // While the link runs its other commands are off and the end is on.
  EXPECT_FALSE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationSetting"));
  EXPECT_FALSE(enabled("mnuRealTime"));
  EXPECT_TRUE(enabled("mnuComunicationEnd"));
  for (int index : {11, 12, 14, 20, 21}) EXPECT_TRUE(toolButton(index)->isEnabled()) << index;

  // The trend of slot 17 and the three views stand.
  ASSERT_EQ(trends().size(), 1);
  TrendWindow *trend = trends().front();
  EXPECT_EQ(trend->slot(), kLinkSlot);
  EXPECT_EQ(trend->objectName(), "frmTrend");
  EXPECT_EQ(trend->windowTitle(), "Trend Viewer");
  auto *list = window.findChild<ComInstantValueWindow *>("frmComInstantvalue");
  auto *bars = window.findChild<ComBargraphWindow *>("frmComBargraph");
  auto *whole = window.findChild<ComWholeDisplayWindow *>("frmComWholedisplay");
  ASSERT_TRUE(list && bars && whole);
  EXPECT_TRUE(list->isVisible() && bars->isVisible() && whole->isVisible());
  EXPECT_EQ(window.mdiArea()->subWindowList().size(), 4);

  // Timer2 polls the present values: 82 requests of the read, then one a poll.
  ASSERT_TRUE(WaitUntil([&] { return recorder.Requests().size() >= 82u + 4u; }, 5000));
  EXPECT_EQ(recorder.Requests()[82], "4 86 44");
  ASSERT_TRUE(WaitUntil([&] { return trend->view().DataColumnCount >= 3; }, 5000));
  EXPECT_EQ(Shared().Slot(kLinkSlot).Record.FilePath, file("S100000.FDT"));
  // The trend shows the whole ring, drawn from memory: slot 17 has no working
  // files, and the record's own count is never read back.
  EXPECT_EQ(trend->view().RealTime, 1);
  EXPECT_EQ(trend->view().DisplayStart, 1700000000);
  EXPECT_EQ(trend->view().DisplayEnd, 1700000000 + trend->view().DataColumnCount - 1);
  EXPECT_FALSE(std::filesystem::exists(WorkingFilePath(home.folder(), kLinkSlot, 1, false)));
  EXPECT_EQ(Shared().Slot(kLinkSlot).Record.RecordCount, 0);
  // The simulated recorder's channel n reads n.0 (one decimal): 10n in units.
  EXPECT_EQ(trend->view().DispData[2 * 0], 10);
  EXPECT_EQ(trend->view().DispData[2 * 16 + 1], 170);
  EXPECT_FALSE(trend->picture().isNull());

  const QStringList group1{"CH01\tCH01TAG\t1.0\tUSR01ab", "CH02\tCH02TAG\t2.0\tUSR02ab",
                           "CH03\tCH03TAG\t3.0\tUSR03ab", "CH04\tCH04TAG\t4.0\tUSR04ab",
                           "CH05\tCH05TAG\t5.0\tUSR05ab", "CH06\tCH06TAG\t6.0\tUSR06ab",
                           "CH07\tCH07TAG\t7.0\tUSR07ab", "CH08\tCH08TAG\t8.0\tUSR08ab",
                           "CH09\tCH09TAG\t9.0\tUSR09ab", "CH10\tCH10TAG\t10.0\tUSR10ab"};
  EXPECT_EQ(list->rowTexts(), group1);
  EXPECT_TRUE(list->timeText().startsWith("2023/11/14 22:13:"));
  auto *listTabs = list->findChild<QTabBar *>("TabStrip1");
  ASSERT_EQ(listTabs->count(), 4);
  EXPECT_EQ(listTabs->tabText(3), "GROUP 4");
  // A click on a tab makes its group current.
  listTabs->setCurrentIndex(3);
  EXPECT_EQ(list->currentGroup(), 4);
  EXPECT_EQ(list->rowTexts(),
            (QStringList{"DI01\tDI1TAG\t1\t", "DI02\tDI2TAG\t0\t", "DI03\tDI3TAG\t1\t",
                         "DI04\tDI4TAG\t0\t", "DI05\tDI5TAG\t1\t"}));
  bars->findChild<QTabBar *>("TabStrip1")->setCurrentIndex(1);
  EXPECT_EQ(bars->currentGroup(), 2);
  ASSERT_EQ(bars->cells().size(), 10u);
  EXPECT_EQ(bars->cells()[0].Label, "CH11");
  EXPECT_EQ(bars->cells()[0].Value, "11.0");
  EXPECT_DOUBLE_EQ(bars->cells()[0].Fraction, (110.0 + 11.0) / (1011.0 + 11.0));
  EXPECT_EQ(bars->cells()[9].Label, "CH20");
  EXPECT_EQ(bars->cells()[9].Value, "20.0");
  EXPECT_EQ(whole->rows(), 6);
  const QStringList cells = whole->cellTexts();
  ASSERT_EQ(cells.size(), 35);
  EXPECT_EQ(cells[0], "CH01 CH01TAG\n1.0 USR01ab");
  EXPECT_EQ(cells[14], "CH15 CH15TAG\n15.0 m3/h");
  EXPECT_EQ(cells[16], "CH17 CH17TAG\n17.0");
  EXPECT_EQ(cells[34], "DI05 DI5TAG\n1");
  // Six to a row; the scroll bars follow the window's size.
  auto *cell7 = whole->findChild<QLabel *>("lblCell7");
  auto *cell1 = whole->findChild<QLabel *>("lblCell1");
  EXPECT_EQ(cell7->x(), cell1->x());
  EXPECT_GT(cell7->y(), cell1->y());
  auto *vscroll = whole->findChild<QScrollBar *>("VScroll1");
  auto *hscroll = whole->findChild<QScrollBar *>("HScroll1");
  whole->parentWidget()->resize(300, 200);
  const int smallRange = vscroll->maximum();
  EXPECT_GT(smallRange, 0);
  EXPECT_GT(hscroll->maximum(), 0);
  whole->parentWidget()->resize(900, 500);
  EXPECT_LT(vscroll->maximum(), smallRange);
  EXPECT_EQ(hscroll->maximum(), 0);

  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  const std::size_t polls = recorder.Requests().size() - 82u;
  Wait(50);
  EXPECT_TRUE(trends().isEmpty());
  EXPECT_EQ(window.findChild<ComInstantValueWindow *>("frmComInstantvalue"), nullptr);
  EXPECT_EQ(window.findChild<ComBargraphWindow *>("frmComBargraph"), nullptr);
  EXPECT_EQ(window.findChild<ComWholeDisplayWindow *>("frmComWholedisplay"), nullptr);
  EXPECT_FALSE(Shared().Slot(kLinkSlot).InUse());
  // The record stays: one sample a poll, as the recorder's clock goes on a
  // second a poll.
  RecordSlot written;
  ASSERT_EQ(ReadRecordFamily(Shared(), file("S100000.FDT"), written), 0);
  EXPECT_EQ(static_cast<std::size_t>(written.Record.RecordCount), polls);
  EXPECT_EQ(written.Alarms.AlarmCount, 2);
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_TRUE(enabled("mnuComunicationSetting"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  EXPECT_FALSE(enabled("mnuFileClose"));
  EXPECT_FALSE(toolButton(12)->isEnabled());
  EXPECT_FALSE(toolButton(14)->isEnabled());
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
  ASSERT_EQ(trends().size(), 1);
  EXPECT_EQ(trends().front()->slot(), kLinkSlot);
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  EXPECT_TRUE(trends().isEmpty());
}

TEST_F(LinkDesktop, FailedPollAnsweredYesEndsTheCommunicationAndClosesTheMonitorWindows) {
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
  Wait(50);
  EXPECT_TRUE(trends().isEmpty());
  EXPECT_EQ(window.findChild<ComInstantValueWindow *>("frmComInstantvalue"), nullptr);
  EXPECT_TRUE(std::filesystem::exists(file("S100000.FDT")));
}

TEST_F(LinkDesktop, RecordOpenedThroughTheMenuUnloadsTheMonitorWindowsAndThePollGoesOn) {
  StartMonitor();
  EXPECT_FALSE(enabled("mnuWindow"));  // nothing open: state 0
  const QString path = Sample("SHEAT01.FDT");
  window.command(QStringLiteral("mnuFileOpen"))->trigger();
  OpenSelectDialog *select = nullptr;
  for (auto *dialog : window.findChildren<OpenSelectDialog *>("frmOpenSelect"))
    if (dialog->isVisible()) select = dialog;
  ASSERT_NE(select, nullptr);
  select->SetFileChooser([path](QWidget *) { return path; });
  select->findChild<QPushButton *>("cmdDirect")->click();
  Wait(50);
  EXPECT_TRUE(messages.ids().empty());
  // The record's trend alone stands; the monitor's four windows are gone.
  EXPECT_EQ(monitorWindows(), 0);
  EXPECT_EQ(window.findChild<ComInstantValueWindow *>("frmComInstantvalue"), nullptr);
  EXPECT_EQ(window.findChild<ComBargraphWindow *>("frmComBargraph"), nullptr);
  EXPECT_EQ(window.findChild<ComWholeDisplayWindow *>("frmComWholedisplay"), nullptr);
  ASSERT_EQ(trends().size(), 1);
  TrendWindow *record = trends().front();
  EXPECT_EQ(record->slot(), 1);
  EXPECT_TRUE(record->isVisible());
  EXPECT_TRUE(record->windowTitle().endsWith("[" + path + "]"));
  record->setAskOnClose(false);
  EXPECT_FALSE(Shared().Slot(kLinkSlot).InUse());
  EXPECT_EQ(Shared().OpenFileCount, 1);
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(enabled("mnuFileClose"));
  EXPECT_TRUE(enabled("mnuWindow"));

  // Timer2 goes on writing the record, and redraws no window.
  const std::size_t before = recorder.Requests().size();
  ASSERT_TRUE(WaitUntil([&] { return recorder.Requests().size() >= before + 3u; }, 5000));
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(monitorWindows(), 0);
  EXPECT_FALSE(Shared().Slot(kLinkSlot).InUse());
  EXPECT_TRUE(enabled("mnuComunicationEnd"));

  // Trend display brings the monitor's trend back, read as far as written; the
  // record's open count stays.
  window.command(QStringLiteral("mnuWindowTrando"))->trigger();
  ASSERT_EQ(trends().size(), 2);
  auto *back = qobject_cast<TrendWindow *>(window.mdiArea()->activeSubWindow()->widget());
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->slot(), kLinkSlot);
  EXPECT_EQ(back->windowTitle(), "Trend Viewer");
  // It draws the ring, which went on filling while the window was away.
  EXPECT_TRUE(Shared().Slot(kLinkSlot).InUse());
  EXPECT_EQ(back->view().RealTime, 1);
  EXPECT_EQ(back->view().DisplayStart, 1700000000);
  EXPECT_GE(back->view().DataColumnCount, 5);
  EXPECT_EQ(Shared().OpenFileCount, 1);
  // With a record open the picture commands are on, and the copy of the
  // monitor's trend draws the ring too (the slot has no level files to read):
  // the ten channels of group 1 read 1.0 to 10.0, so their coloured lines run
  // across the plot at heights of their own.
  ASSERT_TRUE(enabled("mnuEditCopyImage"));
  QGuiApplication::clipboard()->clear();
  window.command(QStringLiteral("mnuEditCopyImage"))->trigger();
  const QImage copied = QGuiApplication::clipboard()->image();
  ASSERT_FALSE(copied.isNull());
  int waveRows = 0;
  for (int y = 0; y < copied.height(); ++y) {
    int coloured = 0;
    for (int x = 0; x < copied.width(); ++x) {
      const QRgb p = copied.pixel(x, y);
      const int hi = std::max({qRed(p), qGreen(p), qBlue(p)});
      const int lo = std::min({qRed(p), qGreen(p), qBlue(p)});
      if (hi - lo > 40) ++coloured;
    }
    if (coloured > copied.width() / 4) ++waveRows;
  }
  EXPECT_GE(waveRows, 6);  // 8 here; a copy of zeros gives 3
  // The print preview reads the record as far as written into the slot first.
  window.command(QStringLiteral("mnuFileV"))->trigger();
  auto *preview = window.findChild<PrintPreviewWindow *>("frmPrintpreview");
  ASSERT_NE(preview, nullptr);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_GE(Shared().Slot(kLinkSlot).Record.RecordCount, 5);
  EXPECT_EQ(Shared().Slot(kLinkSlot).Record.FirstTime, 1700000000);
  EXPECT_GE(preview->pageCount(), 1);
  EXPECT_FALSE(preview->pageImage().isNull());
  preview->close();
  Wait(20);

  // The end closes the monitor's trend and leaves the record's.
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  Wait(50);
  EXPECT_EQ(monitorWindows(), 0);
  ASSERT_EQ(trends().size(), 1);
  EXPECT_EQ(trends().front()->slot(), 1);
  EXPECT_EQ(Shared().OpenFileCount, 1);
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  EXPECT_TRUE(enabled("mnuFileClose"));
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(LinkDesktop, TotalizeFileOpenedThroughTheMenuUnloadsTheMonitorWindowsAndThePollGoesOn) {
  StartMonitor();
  const QString path = Sample("THEAT01.FDT");
  bool dialogSeen = false;
  auto answer = std::make_shared<std::function<void()>>();
  *answer = [&dialogSeen, path, answer] {
    auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (!dialog) {
      QTimer::singleShot(10, *answer);
      return;
    }
    dialogSeen = true;
    dialog->selectFile(path);
    static_cast<QDialog *>(dialog)->accept();
  };
  QTimer::singleShot(0, *answer);
  window.command(QStringLiteral("mnuFileAdditionView"))->trigger();
  Wait(50);
  EXPECT_TRUE(dialogSeen);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(monitorWindows(), 0);
  EXPECT_TRUE(trends().isEmpty());
  auto *addition = window.findChild<AdditionWindow *>("frmAddition");
  ASSERT_NE(addition, nullptr);
  EXPECT_TRUE(addition->isVisible());
  EXPECT_EQ(window.mdiArea()->subWindowList().size(), 1);
  EXPECT_FALSE(Shared().Slot(kLinkSlot).InUse());
  EXPECT_EQ(Shared().OpenAdditionCount, 1);
  EXPECT_EQ(Shared().OpenFileCount, 0);
  EXPECT_EQ(Shared().MenuState, 2);

  const std::size_t before = recorder.Requests().size();
  ASSERT_TRUE(WaitUntil([&] { return recorder.Requests().size() >= before + 3u; }, 5000));
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(monitorWindows(), 0);

  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  Wait(50);
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  EXPECT_EQ(window.findChild<AdditionWindow *>("frmAddition"), addition);
  EXPECT_EQ(Shared().MenuState, 2);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(LinkDesktop, TrendDisplayBringsUpTheMonitorTrendOfSlot17) {
  StartMonitor();
  QMdiArea *mdi = window.mdiArea();
  ASSERT_EQ(trends().size(), 1);
  TrendWindow *trend = trends().front();
  ASSERT_EQ(trend->slot(), kLinkSlot);
  auto *trendSub = qobject_cast<QMdiSubWindow *>(trend->parentWidget());
  auto *whole = window.findChild<ComWholeDisplayWindow *>("frmComWholedisplay");
  ASSERT_TRUE(trendSub && whole);
  trendSub->showMinimized();
  mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(whole->parentWidget()));
  ASSERT_NE(mdi->activeSubWindow(), trendSub);
  window.runCommand(QStringLiteral("mnuWindowTrando"));
  EXPECT_EQ(mdi->activeSubWindow(), trendSub);
  EXPECT_FALSE(trendSub->isMinimized());
  // The one that stands, no second one.
  EXPECT_EQ(trends().size(), 1);
  EXPECT_EQ(monitorWindows(), 4);
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  Wait(50);
  EXPECT_EQ(monitorWindows(), 0);
  // Without the monitor and its trend the command does nothing.
  window.runCommand(QStringLiteral("mnuWindowTrando"));
  EXPECT_TRUE(trends().isEmpty());
}

TEST_F(LinkDesktop, AlarmListButtonListsTheAlarmsOfTheRecordBeingWrittenWhileTheTrendDrawsTheRing) {
  StartMonitor();
  QMdiArea *mdi = window.mdiArea();
  TrendWindow *trend = trends().front();
  ASSERT_EQ(trend->slot(), kLinkSlot);
  mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(trend->parentWidget()));
  ASSERT_TRUE(toolButton(14)->isEnabled());
  toolButton(14)->trigger();
  auto *list = window.findChild<EventListWindow *>("frmEventlist");
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(list->slot(), kLinkSlot);
  EXPECT_TRUE(list->isVisible());
  // The record read as far as written: the two alarms the recorder raised at
  // its first sample.
  EXPECT_EQ(Shared().Slot(kLinkSlot).Alarms.AlarmCount, 2);
  ASSERT_EQ(list->grid().size(), 3u);
  EXPECT_EQ(list->grid()[1],
            (std::vector<std::string>{"2023/11/14 22:13:20", "1", "1", "H", "発生"}));
  EXPECT_EQ(list->grid()[2][0], "2023/11/14 22:13:20");
  // The trend goes on drawing the ring beside it.
  const int before = trend->view().DataColumnCount;
  ASSERT_TRUE(WaitUntil([&] { return trend->view().DataColumnCount >= before + 2; }, 5000));
  EXPECT_EQ(trend->view().DisplayEnd,
            trend->view().DisplayStart + trend->view().DataColumnCount - 1);
  // The time commands leave the ring's view alone, without a message.
  const std::int32_t start = trend->view().DisplayStart;
  trend->onEnlarge();
  trend->onReduce();
  trend->onTimeAll();
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(trend->view().DisplayStart, start);
  // The end closes the list with the monitor's windows.
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  Wait(50);
  EXPECT_EQ(window.findChild<EventListWindow *>("frmEventlist"), nullptr);
  EXPECT_EQ(monitorWindows(), 0);
  EXPECT_FALSE(std::filesystem::exists(WorkingFilePath(home.folder(), kLinkSlot, 1, false)));
}

TEST_F(LinkDesktop, OrientationSwitchDuringTheMonitorGivesAVerticalTrendThatGoesOnDrawingTheRing) {
  StartMonitor();
  ASSERT_TRUE(window.command(QStringLiteral("mnuViewTrendVer"))->isEnabled());
  const QRect place = trends().front()->parentWidget()->geometry();
  window.command(QStringLiteral("mnuViewTrendVer"))->trigger();
  Wait(50);
  ASSERT_EQ(trends().size(), 1);
  TrendWindow *vertical = trends().front();
  // The new form takes the tiled place of the old one.
  EXPECT_EQ(vertical->parentWidget()->geometry(), place);
  EXPECT_EQ(vertical->objectName(), "frmTrend2");
  EXPECT_EQ(vertical->slot(), kLinkSlot);
  EXPECT_EQ(vertical->windowTitle(), "Trend Viewer");
  EXPECT_EQ(vertical->view().RealTime, 1);
  EXPECT_TRUE(Shared().Slot(kLinkSlot).InUse());
  EXPECT_EQ(monitorWindows(), 4);
  const int before = vertical->view().DataColumnCount;
  ASSERT_TRUE(WaitUntil([&] { return vertical->view().DataColumnCount >= before + 2; }, 5000));
  EXPECT_EQ(vertical->view().DisplayStart, 1700000000);
  EXPECT_TRUE(messages.ids().empty());
  window.command(QStringLiteral("mnuViewTrendHori"))->trigger();
  Wait(50);
  ASSERT_EQ(trends().size(), 1);
  EXPECT_EQ(trends().front()->objectName(), "frmTrend");
  window.runCommand(QStringLiteral("mnuComunicationEnd"));
  Wait(50);
  EXPECT_EQ(monitorWindows(), 0);
  EXPECT_FALSE(Shared().Slot(kLinkSlot).InUse());
}

TEST_F(LinkDesktop, CablePulledDuringTheMonitorAsksTheQuestionAndYesEndsItKeepingTheRecord) {
  StartMonitor();
  messages.setAnswer(QMessageBox::Yes);
  recorder.Unplug();
  ASSERT_TRUE(WaitUntil([&] { return !messages.ids().empty(); }, 10000));
  Wait(50);
  // Four attempts without an answer: the time-out, then the question.
  EXPECT_EQ(messages.ids(), (std::vector<int>{11102, 11100}));
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
  EXPECT_EQ(monitorWindows(), 0);
  RecordSlot written;
  ASSERT_EQ(ReadRecordFamily(Shared(), file("S100000.FDT"), written), 0);
  EXPECT_GE(written.Record.RecordCount, 2);
}

}  // namespace
