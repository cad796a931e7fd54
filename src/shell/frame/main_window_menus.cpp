// The menu tree, the tool bar and the status bar of the main window.
#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

#include "shell/catalogue.h"
#include "shell/frame/control_tips.h"
#include "shell/frame/main_window.h"
#include "shell/frame/recent_files_menu.h"
#include "shell/frame/tool_icons.h"
#include "shell/toolbar_table.h"

namespace recscope {

namespace {
QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
}  // namespace

QAction *MainWindow::addCommand(QMenu *menu, const char *name, int captionId) {
  QAction *action = menu->addAction(Text(captionId));
  action->setObjectName(name);
  const QString control = QString::fromLatin1(name);
  connect(action, &QAction::triggered, this, [this, control] { runCommand(control); });
  commands_.insert(control, action);
  return action;
}

QAction *MainWindow::addEnglishCommand(QMenu *menu, const char *name, const char *caption) {
  QAction *action = addCommand(menu, name, 0);
  action->setText(QString::fromLatin1(caption));
  return action;
}

QMenu *MainWindow::addMenu(QMenu *parent, const char *name, int captionId) {
  QMenu *menu = parent ? parent->addMenu(Text(captionId)) : menuBar()->addMenu(Text(captionId));
  menu->setObjectName(name);
  menus_.insert(QString::fromLatin1(name), menu);
  return menu;
}

QMenu *MainWindow::addEnglishMenu(QMenu *parent, const char *name, const char *caption) {
  QMenu *menu = addMenu(parent, name, 0);
  menu->setTitle(QString::fromLatin1(caption));
  return menu;
}

// Entries the form carries without any action: present, never shown.
void MainWindow::addHiddenCommand(QMenu *menu, const char *name, int captionId) {
  QAction *action = menu->addAction(captionId ? Text(captionId) : QString());
  action->setObjectName(name);
  action->setVisible(false);
}

void MainWindow::buildMenus() {
  QMenu *file = addMenu(nullptr, "mnuFile", 10500);
  addCommand(file, "mnuFileOpen", 10501);
  addCommand(file, "mnuFileAdditionView", 10502);
  addCommand(file, "mnuFileClose", 10503);
  file->addSeparator();
  addCommand(file, "mnuFileChange", 10504);
  addCommand(file, "mnuFileSaveas", 10505);
  addCommand(file, "mnuFileSaveDispSet", 10557);
  addCommand(file, "mnuFileFileCoupling", 10506);
  file->addSeparator();
  addCommand(file, "mnuFilePrint", 10507);
  addCommand(file, "mnuFileV", 10508);
  // The page title and print settings, which the system reaches from the preview
  // only, stand beside print and preview as well.
  addCommand(file, "mnuFilePrintTitle", 11018);
  addCommand(file, "mnuFilePrintSet", 11019);
  file->addSeparator();
  addCommand(file, "mnuFileExportImage", 0)
      ->setText(ControlCaption(QStringLiteral("mnuFileExportImage")));
  file->addSeparator();
  InstallRecentFilesMenu(*this, file);
  file->addSeparator();
  addCommand(file, "mnuFileExit", 10509);
  // The keys every desktop program has, where the system gives its commands none.
  command("mnuFileOpen")->setShortcut(QKeySequence::Open);
  command("mnuFileClose")->setShortcut(QKeySequence::Close);
  command("mnuFileExit")->setShortcut(QKeySequence::Quit);

  QMenu *comm = addMenu(nullptr, "mnuComm", 10510);
  addCommand(comm, "mnuCommRealTime", 19728);
  addCommand(comm, "mnuCommFTP", 10511);
  addCommand(comm, "mnuCommRec", 10723);

  QMenu *link = addEnglishMenu(nullptr, "mnuComunication", "Communication(&C)");
  QAction *realTime = addEnglishCommand(link, "mnuRealTime", "Real time monitor");
  realTime->setCheckable(true);
  addEnglishCommand(link, "mnuComunicationFileRead", "File read");
  link->addSeparator();
  addEnglishCommand(link, "mnuComunicationStart", "Communication start");
  addEnglishCommand(link, "mnuComunicationEnd", "Communication end");
  addEnglishCommand(link, "mnuComunicationSetting", "Communication setting");

  QMenu *edit = addMenu(nullptr, "mnuEdit", 10512);
  addCommand(edit, "mnuEditAcasolLeft", 10514);
  addCommand(edit, "mnuEditAcasolRight", 10515);
  addCommand(edit, "mnuEditBcasolLeft", 10516);
  addCommand(edit, "mnuEditBcasolRight", 10517);
  edit->addSeparator();
  addCommand(edit, "mnuEditCurJump1", 40011);
  addCommand(edit, "mnuEditCurJump2", 40012);
  addCommand(edit, "mnuEditCurJumpHago", 40013);
  addCommand(edit, "mnuEditCurJumpHlate", 40014);
  addCommand(edit, "mnuEditCurJumpDago", 40015);
  addCommand(edit, "mnuEditCurJumpDlate", 40016);
  edit->addSeparator();
  addCommand(edit, "mnuEditKaxsoruDel", 10518);
  edit->addSeparator();
  addCommand(edit, "mnuEditMark", 10519);
  addCommand(edit, "mnuEditMarkDel", 10520);
  edit->addSeparator();
  addCommand(edit, "mnuEditCopyImage", 0)
      ->setText(ControlCaption(QStringLiteral("mnuEditCopyImage")));
  addHiddenCommand(edit, "mnuEditMarkReturn", 0);

  QMenu *time = addMenu(nullptr, "mnuTime", 10521);
  addHiddenCommand(time, "mnuTimeB", 10522);
  addHiddenCommand(time, "mnuTimeE", 10523);
  addCommand(time, "mnuTimeAll", 10524);
  addCommand(time, "mnuTimeSet", 10525);
  addCommand(time, "mnuTimeI", 10526);
  addCommand(time, "mnuTimeO", 10527);
  time->addSeparator();
  addCommand(time, "mnuBetweenC", 10528);

  QMenu *view = addMenu(nullptr, "mnuView", 10529);
  addCommand(view, "mnuViewd", 10530);
  view->addSeparator();
  addCommand(view, "mnuViewToolbar", 10531)->setCheckable(true);
  addHiddenCommand(view, "mnuViewSeach", 10532);
  addCommand(view, "mnuViewStatusBar", 10533)->setCheckable(true);
  QAction *fullScreen = addCommand(view, "mnuViewFullScreen", 0);
  fullScreen->setText(ControlCaption(QStringLiteral("mnuViewFullScreen")));
  fullScreen->setCheckable(true);
  fullScreen->setShortcut(QKeySequence::FullScreen);
  view->addSeparator();
  for (const char *toggle : {"mnuViewAlarm", "mnuViewMessage", "mnuViewFlag"}) {
    const int id = toggle == std::string_view("mnuViewAlarm")     ? 10534
                   : toggle == std::string_view("mnuViewMessage") ? 10535
                                                                  : 10536;
    addCommand(view, toggle, id)->setCheckable(true);
  }
  view->addSeparator();
  QMenu *day = addMenu(view, "mnuViewday", 10537);
  auto *dayGroup = new QActionGroup(this);
  const char *dayNames[] = {"mnuViewdaysub1", "mnuViewdaysub2", "mnuviewdaysub3", "mnuViewdaysub4",
                            "mnuViewdaysub5"};
  for (int i = 0; i < 5; ++i) {
    QAction *entry = addCommand(day, dayNames[i], 10538 + i);
    entry->setCheckable(true);
    dayGroup->addAction(entry);
  }
  QMenu *trend = addMenu(view, "mnuViewTrend", 10559);
  auto *trendGroup = new QActionGroup(this);
  trendGroup->addAction(addCommand(trend, "mnuViewTrendVer", 10560))->setCheckable(true);
  trendGroup->addAction(addCommand(trend, "mnuViewTrendHori", 10561))->setCheckable(true);
  QMenu *scale = addMenu(view, "mnuViewScale", 10562);
  auto *scaleGroup = new QActionGroup(this);
  scaleGroup->addAction(addCommand(scale, "mnuView1Scale", 10563))->setCheckable(true);
  scaleGroup->addAction(addCommand(scale, "mnuView2Scale", 10564))->setCheckable(true);
  scaleGroup->addAction(addCommand(scale, "mnuView3Scale", 10565))->setCheckable(true);

  QMenu *window = addMenu(nullptr, "mnuWindow", 10543);
  addCommand(window, "mnuWindowCascade", 10544);
  addCommand(window, "mnuWindowTileVertical", 10545);
  addCommand(window, "mnuWindowTileHorizontal", 10546);
  window->addSeparator();
  addCommand(window, "mnuWindowTrando", 10547);
  addCommand(window, "mnuWindowMoment", 10548);
  addHiddenCommand(window, "mnuWindowKtrando", 10549);
  addHiddenCommand(window, "mnuWindowKmoment", 10550);
  addCommand(window, "mnuWindowAramu", 10551);
  addCommand(window, "mnuWindowBetweenC", 10552);
  addCommand(window, "mnuWindowChohyo", 41200);
  addEnglishCommand(window, "mnuWindowRealTimeDigital", "Real time digital");
  addEnglishCommand(window, "mnuWindowAllmoment", "Whole display");
  addEnglishCommand(window, "mnuWindowBarGrafu", "Bar graph");

  // Menus of the form with no action of their own: kept, never shown.
  for (const char *name : {"mnuKaiseki", "mnuInformation", "mnuLength"}) {
    QMenu *unused = addEnglishMenu(nullptr, name, "");
    unused->menuAction()->setVisible(false);
    if (name == std::string_view("mnuInformation"))
      addHiddenCommand(unused, "mnuInformationFile", 0);
  }

  QMenu *help = addMenu(nullptr, "mnuHelp", 10553);
  addCommand(help, "mnuHelpAbout", 10554);

  // Pop-up menus of the views; they are not in the menu bar.
  auto popup = [this](const char *name, int captionId) {
    auto *menu = new QMenu(Text(captionId), this);
    menu->setObjectName(name);
    menus_.insert(QString::fromLatin1(name), menu);
    return menu;
  };
  addCommand(popup("mnuCursor", 10555), "mnuCursorChange", 10556);
  addCommand(popup("mnuCopyPV", 10558), "mnuCopyPVti", 10556);
  addCommand(popup("mnuCopyEvent", 10558), "mnuCopyEventTi", 10556);
  addCommand(popup("mnuCopyTotal", 10558), "mnuCopyTotalTi", 10556);
  addCommand(popup("mnuCopyMath", 10558), "mnuCopyMathTi", 10556);
}

void MainWindow::buildToolBar() {
  toolBar_ = addToolBar(QString());
  toolBar_->setObjectName("tbToolBar");
  toolBar_->setMovable(false);
  toolBar_->setIconSize(QSize(24, 24));
  for (const ToolButtonSpec &place : ToolButtonTable()) {
    QAction *action = nullptr;
    if (place.key == nullptr) {
      action = toolBar_->addSeparator();
    } else {
      const QString key = QString::fromLatin1(place.key);
      action = toolBar_->addAction(ToolIcon(key), Text(place.tipId));
      action->setToolTip(Text(place.tipId));
      action->setData(key);
      connect(action, &QAction::triggered, this, [this, key] { dispatchToolKey(key); });
    }
    action->setObjectName(QStringLiteral("tbButton%1").arg(place.index));
  }
}

void MainWindow::buildStatusBar() {
  statusBar()->setObjectName("sbStatusBar");
  auto *message = new QLabel(this);
  message->setObjectName("sbMessage");
  statusBar()->addWidget(message, 1);
  autoFetchPanel_ = new QLabel(this);
  autoFetchPanel_->setObjectName("sbAutoFetch");
  autoFetchPanel_->setMinimumWidth(120);
  statusBar()->addPermanentWidget(autoFetchPanel_);
}

}  // namespace recscope
