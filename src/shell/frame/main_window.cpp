#include "shell/frame/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>

#include "ftp/operation_log.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/child_layout.h"
#include "shell/fetch_schedule_check.h"
#include "shell/frame/control_tips.h"
#include "shell/frame/wait_dialog.h"
#include "shell/frame/window_place.h"
#include "shell/init_set.h"
#include "shell/menu_state.h"
#include "shell/settings.h"
#include "shell/shared_state.h"
#include "shell/toolbar_table.h"

namespace recscope {

namespace {

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

const char *const kDateFormatCommands[] = {"mnuViewdaysub1", "mnuViewdaysub2", "mnuviewdaysub3",
                                           "mnuViewdaysub4", "mnuViewdaysub5"};
const char *const kScaleCommands[] = {"mnuView1Scale", "mnuView2Scale", "mnuView3Scale"};

// The kinds of child window that the by-hand arrangement places, in its order.
int SlotWindowRank(const QString &kind) {
  if (kind == "frmTrend" || kind == "frmTrend2") return 0;
  if (kind == "frmInstantvalue") return 1;
  if (kind == "frmEventlist" || kind == "frmAlarmList") return 2;
  if (kind == "CurData" || kind == "frmCurData") return 3;
  return -1;
}

bool NeedsFrameTiling(const QString &kind) {
  return kind.startsWith("frmReal") || kind == "frmAddition";
}

std::string IniPath() { return ViewerComIniPath(Shared().ProgramFolder); }

}  // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent) {
  setObjectName("frmMain");
  setWindowTitle(Text(10722));
  setAcceptDrops(true);
  mdi_ = new QMdiArea(this);
  mdi_->setObjectName("mdiArea");
  setCentralWidget(mdi_);
  buildMenus();
  buildToolBar();
  buildStatusBar();
  command("mnuViewToolbar")->setChecked(true);
  command("mnuViewStatusBar")->setChecked(true);
  resize(1000, 700);
}

void MainWindow::load() {
  SharedState &state = Shared();
  StartSharedState(state);
  const std::string ini = IniPath();

  command(kDateFormatCommands[state.DateFormatNo - 1])->setChecked(true);
  command(state.TrendOrientation == 0 ? "mnuViewTrendVer" : "mnuViewTrendHori")->setChecked(true);

  state.ScaleCount = 1;
  command("mnuView1Scale")->setChecked(true);
  for (const char *toggle : {"mnuViewAlarm", "mnuViewMessage", "mnuViewFlag"})
    command(toggle)->setChecked(true);
  state.ShowAlarms = state.ShowMessages = state.ShowFlags = true;

  state.MenuState = 5;
  state.OpenFileCount = 0;
  state.OpenAdditionCount = 0;
  UpdateMainMenus();

  const QScreen *shown = screen() ? screen() : QGuiApplication::primaryScreen();
  const QRect place = ReadWindowPlace(shown ? shown->availableGeometry() : QRect(0, 0, 800, 600));
  move(place.topLeft());
  resize(place.size());

  LoadInitSet(state.ProgramFolder, Registers());

  const FetchScheduleCheck fetch = StartupFetchCheck(ini);
  setAutoFetchStatus(fetch.Complete ? (fetch.AutoOn ? QString() : Text(10802)) : Text(10803));
  autoFetchPanel_->setToolTip(fetch.Complete ? QString() : ControlTip("sbAutoFetch"));
}

QAction *MainWindow::command(const QString &controlName) const {
  if (QAction *action = commands_.value(controlName)) return action;
  if (QMenu *menu = menus_.value(controlName)) return menu->menuAction();
  return nullptr;
}

void MainWindow::setCommandHandler(const QString &controlName, std::function<void()> handler) {
  handlers_.insert(controlName, std::move(handler));
}

void MainWindow::callHandler(const QString &controlName) {
  auto found = handlers_.find(controlName);
  if (found != handlers_.end() && *found) (*found)();
}

void MainWindow::runCommand(const QString &controlName) {
  for (int i = 0; i < 5; ++i)
    if (controlName == kDateFormatCommands[i]) return chooseDateFormat(i + 1);
  for (int i = 0; i < 3; ++i)
    if (controlName == kScaleCommands[i]) return chooseScaleCount(i + 1);
  if (controlName == "mnuViewTrendVer") return chooseDirection(true);
  if (controlName == "mnuViewTrendHori") return chooseDirection(false);
  if (controlName == "mnuViewAlarm" || controlName == "mnuViewMessage" ||
      controlName == "mnuViewFlag" || controlName == "mnuViewToolbar" ||
      controlName == "mnuViewStatusBar")
    return toggleView(controlName);
  if (handlers_.contains(controlName)) return callHandler(controlName);
  if (controlName == "mnuWindowCascade") return mdi_->cascadeSubWindows();
  if (controlName == "mnuWindowTileVertical") return tileWindows(true);
  if (controlName == "mnuWindowTileHorizontal") return tileWindows(false);
  if (controlName == "mnuHelpAbout") return showVersion();
  if (controlName == "mnuViewFullScreen") {
    setWindowState(windowState() ^ Qt::WindowFullScreen);
    command("mnuViewFullScreen")->setChecked(isFullScreen());
    return;
  }
  if (controlName == "mnuFileClose") return closeActiveChild();
  if (controlName == "mnuFileExit") {
    close();
    return;
  }
  // The command's subsystem has not registered it: nothing happens.
}

void MainWindow::dispatchToolKey(const QString &key) {
  const std::string target = DispatchToolKey(key.toStdString());
  if (!target.empty()) runCommand(QString::fromStdString(target));
}

void MainWindow::setOpenFilesHandler(std::function<void(const QStringList &)> handler) {
  openFilesHandler_ = std::move(handler);
}

void MainWindow::openFiles(const QStringList &paths) {
  if (!paths.isEmpty() && openFilesHandler_) openFilesHandler_(paths);
}

void MainWindow::setCommandOn(const QString &controlName, bool on) {
  if (QAction *action = command(controlName)) action->setEnabled(on);
}

void MainWindow::UpdateMainMenus() {
  SharedState &state = Shared();
  state.MenuState =
      static_cast<std::int16_t>(MenuStateOf(state.OpenFileCount, state.OpenAdditionCount));
  for (const MenuStateRow &row : MenuStateTable())
    setCommandOn(QString::fromLatin1(row.control), row.on[state.MenuState]);
  for (const ToolButtonSpec &place : ToolButtonTable()) {
    if (place.key == nullptr) continue;
    if (QAction *button =
            toolBar_->findChild<QAction *>(QStringLiteral("tbButton%1").arg(place.index)))
      button->setEnabled(ToolButtonOn(place.index, state.MenuState));
  }
  // The picture of a trend and the print's title and settings need a record, as
  // printing it does.
  for (const char *control :
       {"mnuFileExportImage", "mnuEditCopyImage", "mnuFilePrintTitle", "mnuFilePrintSet"})
    setCommandOn(QString::fromLatin1(control), state.MenuState == 1);
}

void MainWindow::setAutoFetchStatus(const QString &text) { autoFetchPanel_->setText(text); }

void MainWindow::chooseDateFormat(int dateFormatNo) {
  Shared().DateFormatNo = static_cast<std::uint8_t>(dateFormatNo);
  command(kDateFormatCommands[dateFormatNo - 1])->setChecked(true);
  WriteDateType(dateFormatNo, IniPath());
  callHandler(kDateFormatCommands[dateFormatNo - 1]);
}

void MainWindow::chooseDirection(bool vertical) {
  Shared().TrendOrientation = vertical ? 0 : -1;
  WriteTrendDirection(Shared().TrendOrientation, IniPath());
  command(vertical ? "mnuViewTrendVer" : "mnuViewTrendHori")->setChecked(true);
  callHandler(vertical ? "mnuViewTrendVer" : "mnuViewTrendHori");
}

void MainWindow::chooseScaleCount(int count) {
  command(kScaleCommands[Shared().ScaleCount - 1])->setChecked(true);
  if (Shared().ScaleCount == count) return;
  Shared().ScaleCount = static_cast<std::int16_t>(count);
  command(kScaleCommands[count - 1])->setChecked(true);
  callHandler(kScaleCommands[count - 1]);
}

void MainWindow::toggleView(const QString &controlName) {
  // The action has already flipped its check when triggered from the menu; the
  // check is the value kept.
  const bool on = command(controlName)->isChecked();
  SharedState &state = Shared();
  if (controlName == "mnuViewAlarm") state.ShowAlarms = on;
  if (controlName == "mnuViewMessage") state.ShowMessages = on;
  if (controlName == "mnuViewFlag") state.ShowFlags = on;
  if (controlName == "mnuViewToolbar") toolBar_->setVisible(on);
  if (controlName == "mnuViewStatusBar") statusBar()->setVisible(on);
  callHandler(controlName);
}

void MainWindow::tileWindows(bool sideBySide) {
  const QList<QMdiSubWindow *> children = mdi_->subWindowList();
  for (QMdiSubWindow *child : children) {
    if (child->widget() && NeedsFrameTiling(child->widget()->objectName())) {
      mdi_->tileSubWindows();
      return;
    }
  }
  // By hand: the current slot's windows, trend first.
  QList<QMdiSubWindow *> slotWindows;
  for (int rank = 0; rank < 4; ++rank) {
    for (QMdiSubWindow *child : children) {
      QWidget *view = child->widget();
      if (!view || view->property("slot").toInt() != Shared().CurrentFile) continue;
      if (SlotWindowRank(view->objectName()) == rank) slotWindows.append(child);
    }
  }
  const QSize frame = mdi_->viewport()->size();
  const std::vector<ChildRect> places =
      TileSlotWindows(static_cast<int>(slotWindows.size()), frame.width(), frame.height(),
                      sideBySide ? TileDirection::kSideBySide : TileDirection::kOneAboveTheOther);
  for (int i = 0; i < slotWindows.size(); ++i) {
    slotWindows[i]->showNormal();
    slotWindows[i]->setGeometry(places[i].left, places[i].top, places[i].width, places[i].height);
  }
}

void MainWindow::showVersion() {
  QString caption = Text(10554);
  caption.remove(QStringLiteral("(&A)"));
  QMessageBox box(QMessageBox::Information, caption,
                  Text(10722) + "\n" + Text(18000) + QStringLiteral(RECSCOPE_VERSION_TEXT),
                  QMessageBox::Ok, this);
  box.setObjectName("frmAbout");
  box.exec();
}

void MainWindow::closeActiveChild() {
  if (QMdiSubWindow *active = mdi_->activeSubWindow()) active->close();
}

void MainWindow::closeEvent(QCloseEvent *event) {
  SharedState &state = Shared();
  if (state.AutoRunning && !fetchWaitOver_) {
    event->ignore();
    if (!waitDialog_) {
      waitDialog_ = new WaitDialog(
          this, [] { Shared().AutoStop = true; },
          [this] {
            fetchWaitOver_ = true;
            close();
          });
      waitDialog_->show();
    }
    return;
  }
  if (!isMinimized()) SaveWindowPlace(QRect(pos(), size()));
  // No working file outlives the program: those of the slots still open go now.
  DeleteOpenWorkingFiles(state);
  LogWrite(state.ProgramFolder, GetMessageText(10856));
  event->accept();
  // The process ends at once; open child windows are not asked.
  QCoreApplication::quit();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event) {
  QStringList paths;
  for (const QUrl &url : event->mimeData()->urls())
    if (url.isLocalFile()) paths.append(url.toLocalFile());
  openFiles(paths);
  event->acceptProposedAction();
}

}  // namespace recscope
