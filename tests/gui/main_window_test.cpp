#include "shell/frame/main_window.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTimer>
#include <QToolBar>

#include <fstream>

#include "ftp/operation_log.h"
#include "gui_test_support.h"
#include "platform/text_encoding.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/control_tips.h"
#include "shell/frame/window_place.h"
#include "shell/ini_file.h"
#include "shell/init_set.h"
#include "shell/menu_state.h"
#include "shell/settings.h"
#include "shell/toolbar_table.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

void WriteFile(const QString &path, const std::string &bytes) {
  std::ofstream out(path.toStdString(), std::ios::binary);
  out << bytes;
}

QAction *Button(MainWindow &w, int index) {
  return w.findChild<QAction *>(QStringLiteral("tbButton%1").arg(index));
}

void ExpectState(MainWindow &w, int state) {
  for (const MenuStateRow &row : MenuStateTable())
    EXPECT_EQ(w.command(row.control)->isEnabled(), row.on[state])
        << row.control << " in state " << state;
  for (const ToolButtonSpec &place : ToolButtonTable()) {
    if (place.key == nullptr) continue;
    EXPECT_EQ(Button(w, place.index)->isEnabled(), ToolButtonOn(place.index, state))
        << "button " << place.index << " in state " << state;
  }
}

}  // namespace

TEST(MainWindow, MenusCarryCatalogueAndDesignCaptions) {
  GuiHome home;
  MainWindow w;
  EXPECT_EQ(w.objectName(), "frmMain");
  EXPECT_EQ(w.findChild<QMenu *>("mnuFile")->title(), Text(10500));
  EXPECT_EQ(w.findChild<QAction *>("mnuFileOpen")->text(), Text(10501));
  EXPECT_EQ(w.findChild<QAction *>("mnuFileSaveDispSet")->text(), Text(10557));
  EXPECT_EQ(w.findChild<QAction *>("mnuCommRealTime")->text(), Text(19728));
  EXPECT_EQ(w.findChild<QAction *>("mnuEditCurJumpDlate")->text(), Text(40016));
  EXPECT_EQ(w.findChild<QAction *>("mnuviewdaysub3")->text(), Text(10540));
  EXPECT_EQ(w.findChild<QAction *>("mnuView3Scale")->text(), Text(10565));
  EXPECT_EQ(w.findChild<QAction *>("mnuWindowChohyo")->text(), Text(41200));
  EXPECT_EQ(w.findChild<QAction *>("mnuHelpAbout")->text(), Text(10554));
  EXPECT_EQ(w.findChild<QMenu *>("mnuCopyPV")->title(), Text(10558));
  EXPECT_EQ(w.findChild<QAction *>("mnuCopyMathTi")->text(), Text(10556));
  EXPECT_EQ(w.findChild<QMenu *>("mnuComunication")->title(), "Communication(&C)");
  EXPECT_EQ(w.findChild<QAction *>("mnuRealTime")->text(), "Real time monitor");
  EXPECT_EQ(w.findChild<QAction *>("mnuComunicationStart")->text(), "Communication start");
  EXPECT_EQ(w.findChild<QAction *>("mnuWindowRealTimeDigital")->text(), "Real time digital");
  EXPECT_EQ(w.findChild<QAction *>("mnuWindowBarGrafu")->text(), "Bar graph");
  EXPECT_FALSE(w.findChild<QAction *>("mnuEditMarkReturn")->isVisible());
  EXPECT_FALSE(w.findChild<QAction *>("mnuTimeB")->isVisible());
}

TEST(MainWindow, EveryCommandOfTheTreeExists) {
  GuiHome home;
  MainWindow w;
  for (const char *name : {"mnuFileOpen",
                           "mnuFileAdditionView",
                           "mnuFileClose",
                           "mnuFileChange",
                           "mnuFileSaveas",
                           "mnuFileSaveDispSet",
                           "mnuFileFileCoupling",
                           "mnuFilePrint",
                           "mnuFileV",
                           "mnuFileExit",
                           "mnuComm",
                           "mnuCommRealTime",
                           "mnuCommFTP",
                           "mnuCommRec",
                           "mnuEdit",
                           "mnuEditAcasolLeft",
                           "mnuEditAcasolRight",
                           "mnuEditBcasolLeft",
                           "mnuEditBcasolRight",
                           "mnuEditCurJump1",
                           "mnuEditCurJump2",
                           "mnuEditCurJumpHago",
                           "mnuEditCurJumpHlate",
                           "mnuEditCurJumpDago",
                           "mnuEditCurJumpDlate",
                           "mnuEditKaxsoruDel",
                           "mnuEditMark",
                           "mnuEditMarkDel",
                           "mnuTime",
                           "mnuTimeAll",
                           "mnuTimeSet",
                           "mnuTimeI",
                           "mnuTimeO",
                           "mnuBetweenC",
                           "mnuView",
                           "mnuViewd",
                           "mnuViewToolbar",
                           "mnuViewStatusBar",
                           "mnuViewAlarm",
                           "mnuViewMessage",
                           "mnuViewFlag",
                           "mnuViewday",
                           "mnuViewdaysub1",
                           "mnuViewdaysub2",
                           "mnuviewdaysub3",
                           "mnuViewdaysub4",
                           "mnuViewdaysub5",
                           "mnuViewTrend",
                           "mnuViewTrendVer",
                           "mnuViewTrendHori",
                           "mnuViewScale",
                           "mnuView1Scale",
                           "mnuView2Scale",
                           "mnuView3Scale",
                           "mnuWindow",
                           "mnuWindowCascade",
                           "mnuWindowTileVertical",
                           "mnuWindowTileHorizontal",
                           "mnuWindowTrando",
                           "mnuWindowMoment",
                           "mnuWindowAramu",
                           "mnuWindowBetweenC",
                           "mnuWindowChohyo",
                           "mnuHelp",
                           "mnuHelpAbout",
                           "mnuCursor",
                           "mnuCursorChange",
                           "mnuCopyPV",
                           "mnuCopyEvent",
                           "mnuCopyTotal",
                           "mnuCopyMath",
                           "mnuComunication",
                           "mnuRealTime",
                           "mnuComunicationFileRead",
                           "mnuComunicationStart",
                           "mnuComunicationEnd",
                           "mnuComunicationSetting",
                           "mnuWindowRealTimeDigital",
                           "mnuWindowAllmoment",
                           "mnuWindowBarGrafu"})
    EXPECT_NE(w.command(name), nullptr) << name;
}

TEST(MainWindow, ToolBarHas42IndexedPlacesWithKeysAndTips) {
  GuiHome home;
  MainWindow w;
  auto *bar = w.findChild<QToolBar *>("tbToolBar");
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(bar->actions().size(), 42);
  for (const ToolButtonSpec &entry : ToolButtonTable()) {
    QAction *place = Button(w, entry.index);
    ASSERT_NE(place, nullptr) << entry.index;
    EXPECT_EQ(bar->actions().indexOf(place), entry.index - 1);
    if (entry.key == nullptr) {
      EXPECT_TRUE(place->isSeparator()) << entry.index;
    } else {
      EXPECT_EQ(place->data().toString(), QString::fromLatin1(entry.key));
      EXPECT_EQ(place->toolTip(), Text(entry.tipId));
    }
  }
  EXPECT_EQ(Button(w, 12)->data().toString(), "Torenndo");
}

TEST(MainWindow, LoadAppliesStateZero) {
  GuiHome home;
  MainWindow w;
  w.load();
  EXPECT_EQ(Shared().MenuState, 0);
  ExpectState(w, 0);
  EXPECT_TRUE(w.command("mnuFileOpen")->isEnabled());
}

TEST(MainWindow, StateTableOfStatesOneAndTwo) {
  GuiHome home;
  MainWindow w;
  w.load();
  Shared().OpenFileCount = 1;
  w.UpdateMainMenus();
  EXPECT_EQ(Shared().MenuState, 1);
  ExpectState(w, 1);
  Shared().OpenFileCount = 0;
  Shared().OpenAdditionCount = 2;
  w.UpdateMainMenus();
  EXPECT_EQ(Shared().MenuState, 2);
  ExpectState(w, 2);
}

TEST(MainWindow, OneTotalizeWindowKeepsWindowMenuOnWithItsRecordEntriesOff) {
  GuiHome home;
  MainWindow w;
  w.load();
  Shared().OpenAdditionCount = 1;
  w.UpdateMainMenus();
  EXPECT_TRUE(w.findChild<QMenu *>("mnuWindow")->menuAction()->isEnabled());
  for (const char *entry :
       {"mnuWindowMoment", "mnuWindowAramu", "mnuWindowBetweenC", "mnuWindowChohyo"})
    EXPECT_FALSE(w.findChild<QAction *>(entry)->isEnabled()) << entry;
}

TEST(MainWindow, ClickOnTheTrendToolButtonDoesNothing) {
  GuiHome home;
  MainWindow w;
  w.load();
  int calls = 0;
  for (const MenuStateRow &row : MenuStateTable())
    w.setCommandHandler(row.control, [&calls] { ++calls; });
  int trendCalls = 0;
  w.setCommandHandler("mnuWindowTrando", [&trendCalls] { ++trendCalls; });
  w.dispatchToolKey(Button(w, 12)->data().toString());
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(trendCalls, 0);
  // The dispatcher's own spelling would reach the command.
  w.dispatchToolKey("Torando");
  EXPECT_EQ(trendCalls, 1);
}

TEST(MainWindow, ToolButtonRunsTheHandlerOfItsMenuCommand) {
  GuiHome home;
  MainWindow w;
  w.load();
  int opens = 0;
  int ranges = 0;
  w.setCommandHandler("mnuFileOpen", [&opens] { ++opens; });
  w.setCommandHandler("mnuBetweenC", [&ranges] { ++ranges; });
  Button(w, 1)->trigger();
  w.findChild<QAction *>("mnuFileOpen")->trigger();
  EXPECT_EQ(opens, 2);
  Shared().OpenFileCount = 1;
  w.UpdateMainMenus();
  Button(w, 10)->trigger();
  EXPECT_EQ(ranges, 1);
}

TEST(MainWindow, UnregisteredCommandDoesNothing) {
  GuiHome home;
  MainWindow w;
  w.load();
  w.findChild<QAction *>("mnuFileOpen")->trigger();
  w.runCommand("mnuCommFTP");
  EXPECT_TRUE(w.isEnabled());
  EXPECT_EQ(w.mdiArea()->subWindowList().size(), 0);
}

TEST(MainWindow, DateFormatCommandChecksOneEntryAndWritesTheSetting) {
  GuiHome home;
  MainWindow w;
  w.load();
  EXPECT_TRUE(w.findChild<QAction *>("mnuViewdaysub1")->isChecked());
  w.findChild<QAction *>("mnuviewdaysub3")->trigger();
  EXPECT_EQ(Shared().DateFormatNo, 3);
  EXPECT_EQ(ReadIni("HYOUJINUM", "DATETYPE", ViewerComIniPath(home.folder())), "3");
  int checked = 0;
  for (const char *name :
       {"mnuViewdaysub1", "mnuViewdaysub2", "mnuviewdaysub3", "mnuViewdaysub4", "mnuViewdaysub5"})
    checked += w.findChild<QAction *>(name)->isChecked() ? 1 : 0;
  EXPECT_EQ(checked, 1);
  EXPECT_TRUE(w.findChild<QAction *>("mnuviewdaysub3")->isChecked());
}

TEST(MainWindow, DateFormatSwitchReachesTheNextRefill) {
  GuiHome home;
  MainWindow w;
  w.load();
  const std::int64_t t = FromCivil({2010, 11, 22, 8, 5, 9});
  const std::string before = FormatTime(t, Shared().DateFormatNo);
  w.findChild<QAction *>("mnuViewdaysub5")->trigger();
  // A list refilled now reads the new number.
  EXPECT_NE(FormatTime(t, Shared().DateFormatNo), before);
  EXPECT_EQ(FormatTime(t, Shared().DateFormatNo), "Nov-22-10 08:05:09");
}

TEST(MainWindow, DateFormatCaptionsMatchTheirFormats) {
  const std::int64_t t = FromCivil({2010, 11, 22, 0, 0, 0});
  for (int n = 1; n <= 5; ++n) {
    const std::string caption = GetMessageText(10537 + n);
    EXPECT_EQ(FormatTime(t, n).substr(0, caption.size()), caption) << n;
  }
}

TEST(MainWindow, StartReadsDateTypeAndDirection) {
  GuiHome home;
  WriteFile(home.path("VIEWERCOM.INI"), std::string(kDeliveredViewerComIni) + "[X]\r\n");
  WriteIni("4", "HYOUJINUM", "DATETYPE", ViewerComIniPath(home.folder()));
  WriteIni("Ver", "DIRECTION", "TREND", ViewerComIniPath(home.folder()));
  MainWindow w;
  w.load();
  EXPECT_EQ(Shared().DateFormatNo, 4);
  EXPECT_TRUE(w.findChild<QAction *>("mnuViewdaysub4")->isChecked());
  EXPECT_EQ(Shared().TrendOrientation, 0);
  EXPECT_TRUE(w.findChild<QAction *>("mnuViewTrendVer")->isChecked());
}

TEST(MainWindow, DirectionCommandsWriteAndMoveTheCheck) {
  GuiHome home;
  MainWindow w;
  w.load();
  int rebuilds = 0;
  w.setCommandHandler("mnuViewTrendVer", [&rebuilds] { ++rebuilds; });
  EXPECT_EQ(Shared().TrendOrientation, -1);
  w.findChild<QAction *>("mnuViewTrendVer")->trigger();
  EXPECT_EQ(Shared().TrendOrientation, 0);
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ViewerComIniPath(home.folder())), "Ver");
  EXPECT_TRUE(w.findChild<QAction *>("mnuViewTrendVer")->isChecked());
  EXPECT_FALSE(w.findChild<QAction *>("mnuViewTrendHori")->isChecked());
  EXPECT_EQ(rebuilds, 1);
  w.findChild<QAction *>("mnuViewTrendHori")->trigger();
  EXPECT_EQ(Shared().TrendOrientation, -1);
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ViewerComIniPath(home.folder())), "Hori");
}

TEST(MainWindow, ViewTogglesKeepTheirFlagAndCheck) {
  GuiHome home;
  MainWindow w;
  w.load();
  int redraws = 0;
  w.setCommandHandler("mnuViewAlarm", [&redraws] { ++redraws; });
  Shared().OpenFileCount = 1;
  w.UpdateMainMenus();
  EXPECT_TRUE(Shared().ShowAlarms);
  w.findChild<QAction *>("mnuViewAlarm")->trigger();
  EXPECT_FALSE(Shared().ShowAlarms);
  EXPECT_FALSE(w.findChild<QAction *>("mnuViewAlarm")->isChecked());
  EXPECT_EQ(redraws, 1);
  w.findChild<QAction *>("mnuViewFlag")->trigger();
  EXPECT_FALSE(Shared().ShowFlags);
  EXPECT_TRUE(Shared().ShowMessages);
  w.findChild<QAction *>("mnuViewToolbar")->trigger();
  EXPECT_TRUE(w.findChild<QToolBar *>("tbToolBar")->isHidden());
  EXPECT_FALSE(w.findChild<QAction *>("mnuViewToolbar")->isChecked());
  w.findChild<QAction *>("mnuViewToolbar")->trigger();
  EXPECT_FALSE(w.findChild<QToolBar *>("tbToolBar")->isHidden());
}

TEST(MainWindow, ScaleCountCommandsAndTheValueInForceDoesNothing) {
  GuiHome home;
  MainWindow w;
  w.load();
  int redraws = 0;
  for (const char *name : {"mnuView1Scale", "mnuView2Scale", "mnuView3Scale"})
    w.setCommandHandler(name, [&redraws] { ++redraws; });
  EXPECT_EQ(Shared().ScaleCount, 1);
  w.findChild<QAction *>("mnuView1Scale")->trigger();
  EXPECT_EQ(redraws, 0);
  w.findChild<QAction *>("mnuView2Scale")->trigger();
  EXPECT_EQ(Shared().ScaleCount, 2);
  EXPECT_EQ(redraws, 1);
  EXPECT_TRUE(w.findChild<QAction *>("mnuView2Scale")->isChecked());
  w.findChild<QAction *>("mnuView2Scale")->trigger();
  EXPECT_EQ(redraws, 1);
  EXPECT_TRUE(w.findChild<QAction *>("mnuView2Scale")->isChecked());
}

TEST(MainWindow, FirstStartPutsTheDeliveredSettingsInPlace) {
  GuiHome home;
  MainWindow w;
  w.load();
  EXPECT_TRUE(QFile::exists(home.path("VIEWERCOM.INI")));
  EXPECT_NE(ReadIni("SLINE", "PRINT", ViewerComIniPath(home.folder())), "ERROR");
}

TEST(MainWindow, MissingAutoShowsTheSettingsErrorAndWritesZero) {
  GuiHome home;
  MainWindow w;
  w.load();
  EXPECT_EQ(w.findChild<QLabel *>("sbAutoFetch")->text(), Text(10803));
  EXPECT_EQ(ReadIni("AUTO", "FTP", ViewerComIniPath(home.folder())), "0");
}

TEST(MainWindow, SettingsErrorPanelSaysWhatIsMissingInItsTip) {
  GuiHome home;
  MainWindow w;
  w.load();
  auto *panel = w.findChild<QLabel *>("sbAutoFetch");
  EXPECT_EQ(panel->text(), QString::fromUtf8("設定エラー"));
  EXPECT_EQ(panel->toolTip(), ControlTip("sbAutoFetch"));
  EXPECT_TRUE(panel->toolTip().contains(QString::fromUtf8("自動")));
  EXPECT_TRUE(panel->toolTip().contains(QString::fromUtf8("設定が不完全")));
}

TEST(MainWindow, CompleteFetchSettingsShowNoError) {
  GuiHome home;
  WriteFile(home.path("VIEWERCOM.INI"),
            std::string(kDeliveredViewerComIni) +
                "[FTP]\r\nCYCLE=00:01\r\nAUTO=0\r\n[FTP_1]\r\nIP=10.0.0.2\r\nUSER=u\r\n"
                "PASS=p\r\nON=1\r\n");
  MainWindow w;
  w.load();
  EXPECT_NE(w.findChild<QLabel *>("sbAutoFetch")->text(), Text(10803));
  EXPECT_TRUE(w.findChild<QLabel *>("sbAutoFetch")->toolTip().isEmpty());
}

TEST(MainWindow, BadSettingsFileNeverStopsTheStart) {
  GuiHome home;
  WriteFile(home.path("VIEWERCOM.INI"),
            "\xff\xfe\x00garbage\r\n[PRINT]\r\nDLINE=wide\r\n[DATETYPE]\r\nHYOUJINUM=abc\r\n"
            "[TREND]\r\nDIRECTION=ver\r\n");
  WriteFile(home.path("InitSet.txt"), "1,\"U  \",40001,4,12\r\n0,\"UNIT\",0,0\r\n\xff\xff,,,\r\n");
  MainWindow w;
  w.load();
  EXPECT_EQ(Shared().DateFormatNo, 1);
  EXPECT_EQ(Shared().TrendOrientation, -1);
  EXPECT_EQ(ReadIni("DIRECTION", "TREND", ViewerComIniPath(home.folder())), "Hori");
  EXPECT_EQ(Registers().Groups.size(), 1u);
}

TEST(MainWindow, MissingInitSetGivesAnEmptyMap) {
  GuiHome home;
  Registers().Groups.resize(3);
  MainWindow w;
  w.load();
  EXPECT_TRUE(Registers().Groups.empty());
}

TEST(MainWindow, FirstStartPlaceIsEightyPercentOfTheScreenCentred) {
  EXPECT_EQ(FirstStartPlace(QRect(0, 0, 1920, 1080)), QRect(192, 108, 1536, 864));
  EXPECT_EQ(FirstStartPlace(QRect(0, 30, 1920, 1050)), QRect(192, 135, 1536, 840));
  EXPECT_EQ(FirstStartPlace(QRect(1920, 0, 1280, 1024)), QRect(2048, 102, 1024, 819));
  // The trend window's first size, 10000 x 5500 twips, fits a common screen's place.
  for (QSize screen : {QSize(1920, 1080), QSize(1366, 768), QSize(1280, 720)}) {
    const QRect place = FirstStartPlace(QRect(QPoint(0, 0), screen));
    EXPECT_GT(place.width(), 10000 / 15 + 100) << screen.width();
    EXPECT_GT(place.height(), 5500 / 15 + 150) << screen.height();
  }
}

TEST(MainWindow, FirstStartTakesTheFirstStartPlaceOfItsScreen) {
  GuiHome home;
  MainWindow w;
  w.load();
  QScreen *screen = w.screen() ? w.screen() : QGuiApplication::primaryScreen();
  ASSERT_NE(screen, nullptr);
  EXPECT_EQ(w.size(), FirstStartPlace(screen->availableGeometry()).size());
  EXPECT_NE(w.size(), QSize(6500 / 15, 6500 / 15));
}

TEST(MainWindow, SavedSizeWithoutLeftAndTopTakesTheirDefaults) {
  GuiHome home;
  {
    QSettings store("Recscope", "Recscope");
    store.beginGroup("Settings");
    store.setValue("MainWidth", "9000");
    store.setValue("MainHeight", "6000");
  }
  EXPECT_EQ(ReadWindowPlace(QRect(0, 0, 1920, 1080)), QRect(67, 67, 600, 400));
  {
    QSettings store("Recscope", "Recscope");
    store.beginGroup("Settings");
    store.setValue("MainLeft", "1500");
    store.setValue("MainTop", "3000");
  }
  EXPECT_EQ(ReadWindowPlace(QRect(0, 0, 1920, 1080)), QRect(100, 200, 600, 400));
  MainWindow w;
  w.load();
  EXPECT_EQ(w.size(), QSize(600, 400));
}

TEST(MainWindow, UnloadSavesThePlaceAndLogsTheStop) {
  GuiHome home;
  {
    MainWindow w;
    w.load();
    w.show();
    w.move(150, 90);
    w.resize(600, 450);
    QApplication::processEvents();
    EXPECT_TRUE(w.close());
  }
  QSettings store("Recscope", "Recscope");
  store.beginGroup("Settings");
  EXPECT_EQ(store.value("MainWidth").toString(), "9000");
  EXPECT_EQ(store.value("MainHeight").toString(), "6750");
  EXPECT_TRUE(store.contains("MainLeft"));
  const std::string log = Cp932ToUtf8([&] {
    std::ifstream in(LogFilePath(home.folder()), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }());
  EXPECT_NE(log.find(" " + GetMessageText(10856) + "\r\n"), std::string::npos);

  MainWindow again;
  again.load();
  EXPECT_EQ(again.size(), QSize(600, 450));
}

TEST(MainWindow, MinimisedWindowKeepsTheSavedPlace) {
  GuiHome home;
  {
    MainWindow w;
    w.load();
    w.showMinimized();
    QApplication::processEvents();
    w.close();
  }
  QSettings store("Recscope", "Recscope");
  store.beginGroup("Settings");
  EXPECT_FALSE(store.contains("MainWidth"));
  EXPECT_TRUE(QFile::exists(QString::fromStdString(LogFilePath(home.folder()))));
}

TEST(MainWindow, RunningFetchHoldsTheUnloadBehindTheWaitDialog) {
  GuiHome home;
  MainWindow w;
  w.load();
  w.show();
  Shared().AutoRunning = true;
  EXPECT_FALSE(w.close());
  auto *wait = QApplication::activeModalWidget() ? nullptr : [] {
    for (QWidget *top : QApplication::topLevelWidgets())
      if (top->objectName() == "frmWait" && top->isVisible()) return top;
    return static_cast<QWidget *>(nullptr);
  }();
  ASSERT_NE(wait, nullptr);
  EXPECT_FALSE(w.isEnabled());
  EXPECT_EQ(wait->findChild<QLabel *>("Label1")->text(), Text(10950));
  EXPECT_EQ(wait->findChild<QPushButton *>("cmdEnd")->text(), Text(10952));

  // cmdEnd asks the fetch to stop; the window waits for the flag to fall.
  wait->findChild<QPushButton *>("cmdEnd")->click();
  EXPECT_TRUE(Shared().AutoStop);
  EXPECT_TRUE(w.isVisible());
  EXPECT_FALSE(QFile::exists(QString::fromStdString(LogFilePath(home.folder()))));

  Shared().AutoRunning = false;
  QTimer *timer = wait->findChild<QTimer *>("Timer1");
  ASSERT_NE(timer, nullptr);
  QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
  EXPECT_FALSE(w.isVisible());
  EXPECT_TRUE(w.isEnabled());
  EXPECT_TRUE(QFile::exists(QString::fromStdString(LogFilePath(home.folder()))));
}

TEST(MainWindow, WaitDialogCancelGivesTheWindowBack) {
  GuiHome home;
  MainWindow w;
  w.load();
  w.show();
  Shared().AutoRunning = true;
  w.close();
  QWidget *wait = nullptr;
  for (QWidget *top : QApplication::topLevelWidgets())
    if (top->objectName() == "frmWait" && top->isVisible()) wait = top;
  ASSERT_NE(wait, nullptr);
  wait->findChild<QPushButton *>("cmdCancel")->click();
  EXPECT_TRUE(w.isEnabled());
  EXPECT_TRUE(w.isVisible());
  EXPECT_FALSE(wait->isVisible());
  Shared().AutoRunning = false;
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

namespace {
QMdiSubWindow *AddChild(MainWindow &w, const char *kind, int slot) {
  auto *view = new QWidget;
  view->setObjectName(kind);
  view->setProperty("slot", slot);
  QMdiSubWindow *child = w.mdiArea()->addSubWindow(view);
  child->setGeometry(5, 5, 100, 80);
  child->show();
  return child;
}
}  // namespace

TEST(MainWindow, TileByHandPlacesTheCurrentSlotsWindowsSideBySide) {
  GuiHome home;
  MainWindow w;
  w.load();
  w.resize(900, 700);
  w.show();
  QApplication::processEvents();
  QMdiSubWindow *instant = AddChild(w, "frmInstantvalue", 1);
  QMdiSubWindow *trend = AddChild(w, "frmTrend", 1);
  QMdiSubWindow *other = AddChild(w, "frmTrend", 2);
  Shared().CurrentFile = 1;
  w.runCommand("mnuWindowTileVertical");
  const QSize frame = w.mdiArea()->viewport()->size();
  EXPECT_EQ(trend->geometry(), QRect(0, 0, frame.width() / 2, frame.height()));
  EXPECT_EQ(instant->geometry().left(), frame.width() / 2);
  EXPECT_EQ(instant->geometry().right(), frame.width() - 1);
  EXPECT_EQ(other->geometry(), QRect(5, 5, 100, 80));

  w.runCommand("mnuWindowTileHorizontal");
  EXPECT_EQ(trend->geometry(), QRect(0, 0, frame.width(), frame.height() / 2));
  EXPECT_EQ(instant->geometry().top(), frame.height() / 2);
}

TEST(MainWindow, TileWithATotalizeWindowUsesTheFramesTiling) {
  GuiHome home;
  MainWindow w;
  w.load();
  w.resize(900, 700);
  w.show();
  QApplication::processEvents();
  AddChild(w, "frmTrend", 1);
  QMdiSubWindow *other = AddChild(w, "frmTrend", 2);
  AddChild(w, "frmAddition", 0);
  w.runCommand("mnuWindowTileVertical");
  // The frame's tiling moves every window, not only those of the current slot.
  EXPECT_NE(other->geometry(), QRect(5, 5, 100, 80));
}

TEST(MainWindow, FilesGoToTheOpenHandler) {
  GuiHome home;
  MainWindow w;
  QStringList received;
  w.setOpenFilesHandler([&received](const QStringList &files) { received = files; });
  w.openFiles({"/data/S000001.FDT"});
  EXPECT_EQ(received, QStringList{"/data/S000001.FDT"});
}

TEST(MainWindow, VersionBoxShowsTheProgramName) {
  GuiHome home;
  MainWindow w;
  w.load();
  QString shown;
  QTimer::singleShot(0, [&shown] {
    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
      shown = box->text();
      box->accept();
    }
  });
  Button(w, 25)->trigger();
  EXPECT_TRUE(shown.startsWith(Text(10722)));
}
