#include "app/desktop_commands.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include "record/file_coupling_dialog.h"
#include "record/open_command.h"
#include "record/open_record.h"
#include "record/open_select_dialog.h"
#include "record/record_output_commands.h"
#include "record/registry_dialogs.h"
#include "shell/main_window.h"
#include "shell/shared_state.h"
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
  for (TrendWindow *trend : TrendWindows(mdi)) trend->RedrawWholeView();
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

  SetTrendWindowFactory(
      [](int slot) -> QWidget * { return new TrendWindow(slot, Shared().TrendOrientation != 0); });
  SetTrendCloseHook([frame](int slot) {
    CloseRecordSlot(Shared(), slot);
    frame->UpdateMainMenus();
  });

  auto openPaths = [frame, mdi](const QStringList &paths) {
    for (const QString &path : paths) OpenRecordPath(frame, mdi, path);
    frame->UpdateMainMenus();
  };
  window.setOpenFilesHandler(openPaths);
  window.setCommandHandler("mnuFileOpen", [frame, mdi] {
    OpenSelectDialog *choice = OpenSelectDialog::ShowModal(mdi, frame);
    choice->SetRegistryOpener([frame, mdi] {
      GroupManagerDialog::ShowForProgramFolder(mdi, frame, [frame] { frame->UpdateMainMenus(); });
    });
    frame->UpdateMainMenus();
  });

  window.setCommandHandler("mnuFileChange", [frame] {
    RunMeasurementCsv(frame, Shared().CurrentFile);
    frame->UpdateMainMenus();
  });

  window.setCommandHandler("mnuFileFileCoupling", [frame] {
    auto *coupling = new FileCouplingDialog(frame);
    coupling->setAttribute(Qt::WA_DeleteOnClose);
    coupling->setModal(true);
    coupling->show();
  });

  window.setCommandHandler("mnuFileSaveas", [frame, mdi] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi))
      RunSaveAs(frame, trend->slot(), trend->view().DisplayStart, trend->view().DisplayEnd);
    frame->UpdateMainMenus();
  });

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
      if (TrendWindow *trend = CurrentTrendWindow(mdi)) trend->RedrawWholeView();
    });
  for (const char *command :
       {"mnuViewdaysub1", "mnuViewdaysub2", "mnuviewdaysub3", "mnuViewdaysub4", "mnuViewdaysub5"})
    window.setCommandHandler(command, [mdi] { RedrawAll(mdi); });
}

}  // namespace recscope
