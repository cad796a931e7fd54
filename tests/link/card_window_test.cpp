// The card file read through the real main window against the simulated
// recorder: "Ｆile read" and Start, frmComFileread with its pages and single
// choice, the fetch under dlgComUnderfilereading, the record opened in a trend
// window, the menus after it; a cancel, no card, a card without files and a
// card taken out during the read, each with its message.
#include <gtest/gtest.h>
#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "link/card_windows.h"
#include "link/command_driver.h"
#include "record/record_writer.h"
#include "record_fixture.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "simulated_recorder.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;
using recscope::testing::SimulatedRecorder;
using recscope::testing_support::MakeInfo;
using recscope::testing_support::MakeRecords;
using recscope::testing_support::ReadAll;
using recscope::testing_support::RecordBytes;

namespace {

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

struct CardDesktop : ::testing::Test {
  CardDesktop() {
    ComSettings() = ComPortSettings{};
    ::setenv("RECSCOPE_COM1", recorder.device().c_str(), 1);
    QFile::copy(QString::fromStdString(recscope::testing::kShippedInitSet),
                home.path(QStringLiteral("InitSet.txt")));
    ConnectDesktopCommands(window);
    window.load();
  }
  ~CardDesktop() override {
    ::unsetenv("RECSCOPE_COM1");
    ComSettings() = ComPortSettings{};
  }

  // The card: file 1 a real record of 250 samples with 1300 bytes of events,
  // then `others` files that are only listed.
  void PutCard(int others) {
    const RecordFileInfo info = MakeInfo(3, 2);
    const RecordWriter writer(info, 2);
    measurement = RecordBytes(info, 2, MakeRecords(info, 250));
    // A binary alarm file of 34 events: 1396 bytes, two blocks.
    events = recscope::testing_support::AlarmHeader() + std::string(2, '\0');
    for (int i = 0; i < 34; ++i)
      events += recscope::testing_support::BinaryAlarm(1700000000 + 10 * i, 1 + i % 3);
    std::ofstream(recorder.path("SCARD01.FDT"), std::ios::binary) << measurement;
    std::ofstream(recorder.path("ACARD01.FDT"), std::ios::binary) << events;
    recorder.AddCardFile("SCARD01", 1700000000, static_cast<long long>(measurement.size()),
                         recorder.path("SCARD01.FDT"),
                         static_cast<int>(writer.HeaderBytes().size()), writer.RecordLength(),
                         recorder.path("ACARD01.FDT"));
    std::ofstream(recorder.path("blank"), std::ios::binary) << std::string(200, '\0');
    for (int i = 1; i <= others; ++i)
      recorder.AddCardFile("S" + std::to_string(100000 + i), 1700000000 + 3600 * i, 999 + i,
                           recorder.path("blank"), 100, 10, "");
  }

  bool enabled(const char *name) { return window.command(QString::fromLatin1(name))->isEnabled(); }
  CardFileWindow *list() { return window.findChild<CardFileWindow *>("frmComFileread"); }
  template <typename T>
  T *control(const QString &name) {
    return list()->findChild<T *>(name);
  }
  QString row(int n, const char *column) {
    return control<QLineEdit>(QStringLiteral("%1_%2").arg(column).arg(n))->text();
  }
  QList<TrendWindow *> trends() {
    QList<TrendWindow *> found;
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) found.append(t);
    return found;
  }
  // Chooses the name in dlgSavefilename, confirms it and waits for the fetch
  // to end.
  void Save(const QString &name) {
    auto *ask = list()->findChild<QDialog *>("dlgSavefilename");
    ASSERT_NE(ask, nullptr);
    const int before = list()->FetchesDone();
    ask->findChild<QLineEdit *>("txtFileName")->setText(name);
    ask->findChild<QPushButton *>("cmdOK")->click();
    QElapsedTimer clock;
    clock.start();
    while (list()->FetchesDone() == before && clock.elapsed() < 30000)
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    ASSERT_EQ(list()->FetchesDone(), before + 1);
  }
  void Start() {
    window.runCommand(QStringLiteral("mnuComunicationFileRead"));
    window.runCommand(QStringLiteral("mnuComunicationStart"));
  }

  SimulatedRecorder recorder;
  MessageRecorder messages{QMessageBox::Yes};
  GuiHome home;
  MainWindow window;
  std::string measurement;
  std::string events;
};

}  // namespace

TEST_F(CardDesktop, StartListsTheCardChoiceFetchesAndTheRecordOpensInATrendWindow) {
  ASSERT_TRUE(recorder.ready());
  PutCard(10);
  Start();
  ASSERT_NE(list(), nullptr);
  EXPECT_TRUE(list()->isVisible());
  EXPECT_TRUE(messages.ids().empty());
  // The link's menus rest while the list is open.
  EXPECT_FALSE(enabled("mnuComunicationStart"));
  EXPECT_FALSE(enabled("mnuRealTime"));
  EXPECT_FALSE(enabled("mnuComunicationFileRead"));
  EXPECT_FALSE(enabled("mnuComunicationSetting"));

  // Page 1: ten rows.
  EXPECT_EQ(row(0, "Text2"), "SCARD01 ");
  EXPECT_EQ(row(0, "Text3"), "2023/11/14 22:13:20");
  EXPECT_EQ(row(0, "Text4"), QString::fromStdString(CardSizeText(measurement.size())));
  EXPECT_EQ(row(1, "Text2"), "S100001 ");
  EXPECT_EQ(row(1, "Text3"), "2023/11/14 23:13:20");
  EXPECT_EQ(row(1, "Text4"), "1KB");
  EXPECT_EQ(row(9, "Text2"), "S100009 ");
  EXPECT_FALSE(control<QPushButton>("Command2")->isEnabled());
  ASSERT_TRUE(control<QPushButton>("Command3")->isEnabled());

  // Page 2: the eleventh file, the other rows empty with their boxes disabled.
  control<QPushButton>("Command3")->click();
  EXPECT_EQ(row(0, "Text2"), "S100010 ");
  EXPECT_EQ(row(0, "Text4"), "1KB");
  EXPECT_EQ(row(1, "Text2"), "");
  EXPECT_FALSE(control<QCheckBox>("Check1_1")->isEnabled());
  EXPECT_TRUE(control<QCheckBox>("Check1_0")->isEnabled());
  EXPECT_FALSE(control<QPushButton>("Command3")->isEnabled());
  control<QPushButton>("Command2")->click();
  EXPECT_EQ(row(0, "Text2"), "SCARD01 ");

  // A single choice.
  control<QCheckBox>("Check1_1")->setChecked(true);
  control<QCheckBox>("Check1_0")->setChecked(true);
  EXPECT_FALSE(control<QCheckBox>("Check1_1")->isChecked());
  EXPECT_EQ(list()->CheckedRow(), 0);
  EXPECT_EQ(control<QLineEdit>("Text1")->text(), "SCARD01 ");

  // The fetch: dlgComUnderfilereading shows each phase while it runs.
  QStringList phases;
  int progressMaximum = -1;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    auto *dialog = list() ? list()->findChild<QDialog *>("dlgComUnderfilereading") : nullptr;
    if (!dialog || !dialog->isVisible()) return;
    const QString phase = dialog->findChild<QLabel *>("Label1")->text();
    if (phases.isEmpty() || phases.back() != phase) phases.append(phase);
    progressMaximum = dialog->findChild<QProgressBar *>("ProgressBar1")->maximum();
  });
  watch.start(1);
  control<QPushButton>("Command6")->click();
  Save(QStringLiteral("CARD1"));
  watch.stop();
  EXPECT_EQ(phases, (QStringList{Text(18902), Text(18903), Text(18904)}));
  EXPECT_EQ(progressMaximum, 2);
  EXPECT_EQ(messages.ids(), (std::vector<int>{18500}));

  // Both files byte for byte, in the program's folder.
  EXPECT_EQ(ReadAll(home.folder() + "/SCARD1.FDT"), measurement);
  EXPECT_EQ(ReadAll(home.folder() + "/ACARD1.FDT"), events);
  // The record opened like any other.
  ASSERT_EQ(trends().size(), 1);
  EXPECT_EQ(Shared().Slot(1).Record.FilePath, home.folder() + "/SCARD1.FDT");
  EXPECT_EQ(Shared().Slot(1).Record.RecordCount, 250);

  // Closing the list ends the link and gives the menus back.
  control<QPushButton>("Command7")->click();
  QCoreApplication::processEvents();
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_TRUE(enabled("mnuRealTime"));
  EXPECT_TRUE(enabled("mnuComunicationFileRead"));
  EXPECT_TRUE(enabled("mnuComunicationSetting"));
  EXPECT_FALSE(enabled("mnuComunicationEnd"));
}

TEST_F(CardDesktop, CancelDuringTheMeasurementDataLeavesNoFileAndOpensNothing) {
  ASSERT_TRUE(recorder.ready());
  PutCard(0);
  Start();
  ASSERT_NE(list(), nullptr);
  EXPECT_FALSE(control<QPushButton>("Command3")->isEnabled());
  control<QCheckBox>("Check1_0")->setChecked(true);
  QTimer watch;
  bool clicked = false;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    auto *dialog = list() ? list()->findChild<QDialog *>("dlgComUnderfilereading") : nullptr;
    if (clicked || !dialog || !dialog->isVisible()) return;
    if (dialog->findChild<QLabel *>("Label1")->text() != Text(18903)) return;
    if (dialog->findChild<QProgressBar *>("ProgressBar1")->value() < 1) return;
    dialog->findChild<QPushButton *>("Command1")->click();
    clicked = true;
  });
  watch.start(1);
  control<QPushButton>("Command6")->click();
  Save(QStringLiteral("CARD2"));
  watch.stop();
  EXPECT_TRUE(clicked);
  EXPECT_FALSE(std::filesystem::exists(home.folder() + "/SCARD2.FDT"));
  EXPECT_FALSE(std::filesystem::exists(home.folder() + "/ACARD2.FDT"));
  EXPECT_EQ(messages.ids(), (std::vector<int>{18500}));
  EXPECT_TRUE(trends().isEmpty());
  EXPECT_NE(list(), nullptr);  // the list stays for another choice
}

TEST_F(CardDesktop, NoCardShows18901AndEndsTheLink) {
  ASSERT_TRUE(recorder.ready());
  Start();
  EXPECT_EQ(messages.ids(), (std::vector<int>{18901}));
  EXPECT_EQ(messages.messages()[0].text(), QStringLiteral("CFカードがありません"));
  EXPECT_EQ(list(), nullptr);
  EXPECT_TRUE(enabled("mnuComunicationStart"));
  EXPECT_TRUE(enabled("mnuComunicationFileRead"));
}

TEST_F(CardDesktop, CardWithoutFilesShows18905AndEndsTheLink) {
  ASSERT_TRUE(recorder.ready());
  recorder.EmptyCard();
  Start();
  EXPECT_EQ(messages.ids(), (std::vector<int>{18905}));
  EXPECT_EQ(messages.messages()[0].text(), QStringLiteral("ファイルがありません"));
  EXPECT_EQ(list(), nullptr);
  EXPECT_TRUE(enabled("mnuComunicationStart"));
}

TEST_F(CardDesktop, CardTakenOutDuringTheFetchShows18901AndLeavesNoFile) {
  ASSERT_TRUE(recorder.ready());
  PutCard(0);
  Start();
  ASSERT_NE(list(), nullptr);
  control<QCheckBox>("Check1_0")->setChecked(true);
  recorder.Fault("cardout", 30);  // in the measurement data
  control<QPushButton>("Command6")->click();
  Save(QStringLiteral("CARD3"));
  EXPECT_EQ(messages.ids(), (std::vector<int>{18500, 18901}));
  EXPECT_FALSE(std::filesystem::exists(home.folder() + "/SCARD3.FDT"));
  EXPECT_FALSE(std::filesystem::exists(home.folder() + "/ACARD3.FDT"));
  EXPECT_TRUE(trends().isEmpty());
}
