#include "app/desktop_commands.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <functional>

#include "record/open_command.h"
#include "record/open_select_dialog.h"
#include "shell/frame/main_window.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"
#include "trend/cursor_commands.h"
#include "trend/trend_window.h"

namespace recscope {
namespace {

QList<TrendWindow *> TrendWindows(QMdiArea *mdi) {
  QList<TrendWindow *> windows;
  for (QMdiSubWindow *sub : mdi->subWindowList())
    if (auto *trend = qobject_cast<TrendWindow *>(sub->widget())) windows.append(trend);
  return windows;
}

// The trend window a command acts on: the active child's slot (CurrentFile).
TrendWindow *CurrentTrendWindow(QMdiArea *mdi) {
  for (TrendWindow *trend : TrendWindows(mdi))
    if (trend->slot() == Shared().CurrentFile) return trend;
  return nullptr;
}

void OnTrend(MainWindow &window, const char *command, void (TrendWindow::*action)()) {
  QMdiArea *mdi = window.mdiArea();
  window.setCommandHandler(command, [mdi, action] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi)) (trend->*action)();
  });
}

void RedrawAll(QMdiArea *mdi) {
  for (TrendWindow *trend : TrendWindows(mdi)) trend->Repaint();
}

}  // namespace

void ConnectDesktopCommands(MainWindow &window) {
  QMdiArea *mdi = window.mdiArea();
  MainWindow *frame = &window;

  // Every child window carries its slot: the one that gets the focus is the one
  // all commands work on.
  QObject::connect(mdi, &QMdiArea::subWindowActivated, frame, [](QMdiSubWindow *sub) {
    if (sub && sub->widget() && sub->widget()->property("slot").isValid())
      Shared().CurrentFile = static_cast<std::int16_t>(sub->widget()->property("slot").toInt());
  });

  // Each open applies the menu set itself, after the open count has changed; the
  // trend window's close does the same (shell/slot_windows).
  window.setOpenFilesHandler([frame, mdi](const QStringList &paths) {
    for (const QString &path : paths) OpenRecordPath(frame, mdi, path);
  });
  window.setCommandHandler("mnuFileOpen",
                           [frame, mdi] { OpenSelectDialog::ShowModal(mdi, frame); });

  OnTrend(window, "mnuTimeAll", &TrendWindow::onTimeAll);
  OnTrend(window, "mnuTimeI", &TrendWindow::onEnlarge);
  OnTrend(window, "mnuTimeO", &TrendWindow::onReduce);
  OnTrend(window, "mnuTimeSet", &TrendWindow::onTimeSet);
  OnTrend(window, "mnuBetweenC", &TrendWindow::onBetweenCursors);

  // Cursors, their jumps and event searches, and flags, on the active trend.
  auto onCursor = [&window, mdi](const char *command, std::function<void(TrendWindow &)> action) {
    window.setCommandHandler(command, [mdi, action] {
      if (TrendWindow *trend = CurrentTrendWindow(mdi)) action(*trend);
    });
  };
  onCursor("mnuEditAcasolLeft", [](TrendWindow &t) { t.onSearchEarlier(1); });
  onCursor("mnuEditAcasolRight", [](TrendWindow &t) { t.onSearchLater(1); });
  onCursor("mnuEditBcasolLeft", [](TrendWindow &t) { t.onSearchEarlier(2); });
  onCursor("mnuEditBcasolRight", [](TrendWindow &t) { t.onSearchLater(2); });
  onCursor("mnuEditCurJump1", [](TrendWindow &t) { t.onJumpDialog(1); });
  onCursor("mnuEditCurJump2", [](TrendWindow &t) { t.onJumpDialog(2); });
  onCursor("mnuEditCurJumpHago", [](TrendWindow &t) { t.onShiftCursor1(kHourBack); });
  onCursor("mnuEditCurJumpHlate", [](TrendWindow &t) { t.onShiftCursor1(kHourOn); });
  onCursor("mnuEditCurJumpDago", [](TrendWindow &t) { t.onShiftCursor1(kDayBack); });
  onCursor("mnuEditCurJumpDlate", [](TrendWindow &t) { t.onShiftCursor1(kDayOn); });
  onCursor("mnuEditKaxsoruDel", [](TrendWindow &t) { t.onRemoveCursors(); });
  onCursor("mnuCursorChange", [](TrendWindow &t) { t.onCursorChange(); });
  onCursor("mnuEditMark", [](TrendWindow &t) { t.onAddFlag(); });
  onCursor("mnuEditMarkDel", [](TrendWindow &t) { t.onRemoveFlags(); });

  // The frame has already kept the new value; the views follow it.
  const char *scaleCommands[3] = {"mnuView1Scale", "mnuView2Scale", "mnuView3Scale"};
  for (const char *command : scaleCommands)
    window.setCommandHandler(command, [mdi] {
      for (TrendWindow *trend : TrendWindows(mdi)) trend->setScaleCount(Shared().ScaleCount);
    });
  window.setCommandHandler("mnuViewTrendVer", [mdi] { SwitchTrendOrientation(mdi, false); });
  window.setCommandHandler("mnuViewTrendHori", [mdi] { SwitchTrendOrientation(mdi, true); });
  for (const char *command : {"mnuViewAlarm", "mnuViewMessage", "mnuViewFlag"})
    window.setCommandHandler(command, [mdi] {
      if (TrendWindow *trend = CurrentTrendWindow(mdi)) trend->Repaint();
    });
  for (const char *command :
       {"mnuViewdaysub1", "mnuViewdaysub2", "mnuviewdaysub3", "mnuViewdaysub4", "mnuViewdaysub5"})
    window.setCommandHandler(command, [mdi] { RedrawAll(mdi); });
}

}  // namespace recscope
