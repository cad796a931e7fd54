#include "app/desktop_commands.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include "record/open_command.h"
#include "record/open_select_dialog.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"
#include "trend/detail_dialog.h"
#include "trend/trend_window.h"

namespace recscope {
namespace {

constexpr int kDisplaySettingsSaved = 19502;

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

  // The display settings: saved into the slot's flag file (never in a real-time
  // window), and the detail dialog of the current slot.
  window.setCommandHandler("mnuFileSaveDispSet", [frame, mdi] {
    TrendWindow *trend = CurrentTrendWindow(mdi);
    if (!trend || trend->view().RealTime != 0) return;
    if (trend->saveDisplaySettings()) ShowMessage(frame, kDisplaySettingsSaved);
  });
  window.setCommandHandler("mnuViewd", [frame, mdi] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi)) ShowDetailDialog(trend, frame);
  });
  for (const char *command :
       {"mnuViewdaysub1", "mnuViewdaysub2", "mnuviewdaysub3", "mnuViewdaysub4", "mnuViewdaysub5"})
    window.setCommandHandler(command, [mdi] { RedrawAll(mdi); });
}

}  // namespace recscope
