#include "app/desktop_commands.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <functional>

#include "ftp/auto_fetch_control.h"
#include "ftp/ftp_window.h"
#include "link/link_commands.h"
#include "print/print_command.h"
#include "print/print_preview_window.h"
#include "print/print_setting_dialog.h"
#include "print/title_dialog.h"
#include "realtime/digital_window.h"
#include "realtime/real_set_dialog.h"
#include "realtime/real_trend_window.h"
#include "realtime/realtime_link.h"
#include "record/file_coupling_dialog.h"
#include "record/open_command.h"
#include "record/open_select_dialog.h"
#include "record/record_output_commands.h"
#include "record/registry_dialogs.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"
#include "totalize/addition_commands.h"
#include "totalize/addition_window.h"
#include "totalize/report_list_window.h"
#include "totalize/report_select_dialog.h"
#include "trend/cursor_commands.h"
#include "trend/detail_dialog.h"
#include "trend/trend_feed.h"
#include "trend/trend_window.h"
#include "views/cursor_calc_window.h"
#include "views/event_list.h"
#include "views/event_list_window.h"
#include "views/event_setting_dialog.h"
#include "views/instant_value_window.h"

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
  for (QMdiSubWindow *sub : mdi->subWindowList())
    if (auto *list = qobject_cast<EventListWindow *>(sub->widget())) list->Refill();
  for (QMdiSubWindow *sub : mdi->subWindowList())
    if (auto *list = qobject_cast<InstantValueWindow *>(sub->widget())) list->refreshFormat();
  for (QMdiSubWindow *sub : mdi->subWindowList())
    if (auto *addition = qobject_cast<AdditionWindow *>(sub->widget())) addition->refreshFormat();
}

// The list window of the current slot opens, or comes to the front when it stands.
// A trend fed from memory keeps no working files: a list or a print of its
// slot reads the record as far as it is written first. False (the refusal
// shown) when that read fails.
bool ReadFedRecord(TrendWindow *trend) {
  const TrendFeed *feed = FindTrendFeed(trend->slot());
  if (!feed || !feed->ReadRecord) return true;
  const int id = feed->ReadRecord();
  if (id != 0) ShowMessage(trend, id);
  return id == 0;
}

void OpenSlotView(QMdiArea *mdi, SlotWindowKind kind) {
  TrendWindow *trend = CurrentTrendWindow(mdi);
  if (!trend) return;
  if (QWidget *open = FindSlotWindow(mdi, trend->slot(), kind)) {
    mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(open->parentWidget()));
    return;
  }
  if (ReadFedRecord(trend)) OpenSlotWindow(mdi, trend->slot(), kind);
}

// The copy commands act on the active list window, else on the current slot's.
template <typename View>
View *ActiveView(QMdiArea *mdi, SlotWindowKind kind) {
  if (QMdiSubWindow *sub = mdi->activeSubWindow())
    if (auto *view = qobject_cast<View *>(sub->widget())) return view;
  return qobject_cast<View *>(FindSlotWindow(mdi, Shared().CurrentFile, kind));
}

}  // namespace

void ConnectDesktopCommands(MainWindow &window) {
  QMdiArea *mdi = window.mdiArea();
  MainWindow *frame = &window;

  // Every child window carries its slot: the one that gets the focus is the one
  // all commands work on.
  QObject::connect(mdi, &QMdiArea::subWindowActivated, frame, [](QMdiSubWindow *sub) {
    // A totalize window's slot is a totalize slot: it makes that one current.
    if (auto *addition = qobject_cast<AdditionWindow *>(sub ? sub->widget() : nullptr)) {
      addition->slot();
      return;
    }
    if (sub && sub->widget() && sub->widget()->property("slot").isValid())
      Shared().CurrentFile = static_cast<std::int16_t>(sub->widget()->property("slot").toInt());
  });

  // Each open applies the menu set itself, after the open count has changed; the
  // trend window's close does the same (shell/slot_windows).
  window.setOpenFilesHandler([frame, mdi](const QStringList &paths) {
    for (const QString &path : paths) OpenRecordPath(frame, mdi, path);
  });
  // The menu set follows each open where the open count changes, not here: the
  // choice dialog is not modal to this call.
  window.setCommandHandler("mnuFileOpen", [frame, mdi] {
    OpenSelectDialog *choice = OpenSelectDialog::ShowModal(mdi, frame);
    choice->SetRegistryOpener([frame, mdi] {
      GroupManagerDialog::ShowForProgramFolder(mdi, frame, [frame] { ApplyMenuSet(frame); });
    });
  });

  // The conversion is chosen by the active window's caption: a totalize window's
  // file, or the current record.
  window.setCommandHandler("mnuFileChange", [frame, mdi] {
    RunFileChange(frame, mdi);
    ApplyMenuSet(frame);
  });

  // Totalize files: the open dialog, frmAddition, and the copy of its popup.
  window.setCommandHandler("mnuFileAdditionView", [frame, mdi] { OpenAdditionFile(frame, mdi); });
  window.setCommandHandler("mnuCopyTotalTi", [mdi] {
    if (QMdiSubWindow *sub = mdi->activeSubWindow())
      if (auto *addition = qobject_cast<AdditionWindow *>(sub->widget()))
        addition->TotalMSFlexGrid1_copy();
  });

  window.setCommandHandler("mnuFileFileCoupling", [frame] {
    auto *coupling = new FileCouplingDialog(frame);
    coupling->setAttribute(Qt::WA_DeleteOnClose);
    coupling->setModal(true);
    coupling->show();
  });

  window.setCommandHandler("mnuFileSaveas", [mdi, frame] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi))
      RunSaveAs(frame, trend->slot(), trend->view().DisplayStart, trend->view().DisplayEnd);
    ApplyMenuSet(frame);
  });

  // The print's settings and title belong to the current slot's trend view.
  window.setCommandHandler("mnuFilePrintSet", [mdi, frame] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi)) ShowPrintSettingDialog(frame, trend->view());
  });
  window.setCommandHandler("mnuFilePrintTitle", [mdi, frame] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi)) ShowTitleDialog(frame, trend->view());
  });

  OnTrend(window, "mnuFileExportImage", &TrendWindow::exportPicture);
  OnTrend(window, "mnuEditCopyImage", &TrendWindow::copyPicture);
  OnTrend(window, "mnuTimeAll", &TrendWindow::onTimeAll);
  OnTrend(window, "mnuTimeI", &TrendWindow::onEnlarge);
  OnTrend(window, "mnuTimeO", &TrendWindow::onReduce);
  OnTrend(window, "mnuTimeSet", &TrendWindow::onTimeSet);
  OnTrend(window, "mnuBetweenC", &TrendWindow::onBetweenCursors);

  // The event list's cmdSetting opens frmEventSet on the list's tab and top row;
  // each stored row refills the list.
  EventListWindow::SetEventSettingOpener([](EventListWindow &list, int listTab, int topRow) {
    QPointer<EventListWindow> shown(&list);
    ShowEventSetting(&list, list.slot(), listTab - kAlarmTab, topRow, [shown] {
      if (shown) shown->Refill();
    });
  });
  window.setCommandHandler("mnuWindowAramu",
                           [mdi] { OpenSlotView(mdi, SlotWindowKind::kEventList); });
  window.setCommandHandler("mnuWindowBetweenC",
                           [mdi] { OpenSlotView(mdi, SlotWindowKind::kCursorCalc); });
  for (bool withTitle : {false, true}) {
    window.setCommandHandler(withTitle ? "mnuCopyEventTi" : "mnuCopyEvent", [mdi, withTitle] {
      if (auto *list = ActiveView<EventListWindow>(mdi, SlotWindowKind::kEventList))
        list->EventMSFlexGrid1_copy(withTitle);
    });
    window.setCommandHandler(withTitle ? "mnuCopyMathTi" : "mnuCopyMath", [mdi, withTitle] {
      if (auto *calc = ActiveView<CursorCalcWindow>(mdi, SlotWindowKind::kCursorCalc))
        calc->MathMSFlexGrid1_copy(withTitle);
    });
  }

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

  // Reports: frmChohyoSelect for the current record, with cursor 1 as the base
  // time when it is set; the chosen report replaces the one that stands.
  window.setCommandHandler("mnuWindowChohyo", [frame, mdi] {
    TrendWindow *trend = CurrentTrendWindow(mdi);
    if (!trend) return;
    const int slot = trend->slot();
    const TrendView &view = trend->view();
    const std::int64_t base =
        view.Cursor1Set ? view.Cursor1Time : Shared().Slot(slot).Record.FirstTime;
    auto *choice = new ReportSelectDialog(
        slot, base,
        [mdi, slot](int type) {
          for (QMdiSubWindow *sub : mdi->subWindowList())
            if (qobject_cast<ReportListWindow *>(sub->widget())) sub->close();
          auto *list =
              static_cast<ReportListWindow *>(OpenSlotWindow(mdi, slot, SlotWindowKind::kReport));
          list->subMakeChohyo(type);
        },
        frame);
    choice->setAttribute(Qt::WA_DeleteOnClose);
    choice->setModal(true);
    choice->show();
  });

  // One list window of each kind a record: a second command brings the open one
  // forward.
  window.setCommandHandler("mnuWindowMoment",
                           [mdi] { OpenSlotView(mdi, SlotWindowKind::kInstant); });
  for (bool withTitle : {false, true})
    window.setCommandHandler(withTitle ? "mnuCopyPVti" : "mnuCopyPV", [mdi, withTitle] {
      if (auto *list = ActiveView<InstantValueWindow>(mdi, SlotWindowKind::kInstant))
        list->copySelection(withTitle);
    });

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

  // Print and its preview, of the current trend window's view.
  window.setCommandHandler("mnuFilePrint", [frame, mdi] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi); trend && ReadFedRecord(trend))
      PrintTrendWindow(*trend, frame);
  });
  window.setCommandHandler("mnuFileV", [frame, mdi] {
    if (TrendWindow *trend = CurrentTrendWindow(mdi); trend && ReadFedRecord(trend))
      ShowPrintPreview(trend, frame);
  });
  // The recorder link's Communication menu.
  ConnectLinkCommands(window);
  // The preview's title and print settings buttons open the same dialogs as the
  // file menu.
  PrintPreviewWindow::SetTitleDialog(ShowTitleDialog);
  PrintPreviewWindow::SetPrintSettingsDialog(ShowPrintSettingDialog);
  // The FTP browser: one window, brought to the front when it stands.
  window.setCommandHandler("mnuCommFTP", [frame] { FtpWindow::Show(frame); });
  // The real-time monitor: its driver on timers of the main window; frmRealTrend's
  // cmdStart and cmdStop reach it, and each decoded block is shown at once.
  QPointer<RealLinkTimers> realLink =
      new RealLinkTimers(Shared().Realtime, Shared().ProgramFolder, {}, frame);
  SetRealTrendLinkHooks({[realLink] {
                           if (realLink) realLink->driver().Start();
                         },
                         [realLink] {
                           if (realLink) realLink->driver().RealLinkStop();
                         }});
  QObject::connect(realLink, &RealLinkTimers::groupDecoded, [] {
    if (RealTrendWindow *trend = RealTrendWindow::Instance()) trend->syncFromState();
  });
  RealSetDialog::SetTrendOpener([mdi](QWidget *) { ShowRealTrend(mdi); });
  window.setCommandHandler("mnuWindowRealTimeDigital", [mdi] { ShowDigital(mdi); });
  // The automatic fetch: its timers live with the main window, frmRecord shows them.
  auto *autoFetch = new AutoFetchControl(frame);
  window.setCommandHandler("mnuCommRec", [autoFetch] { autoFetch->showWindow(); });
  window.setCommandHandler("mnuCommRealTime", [frame] { RealSetDialog::Show(frame); });
  autoFetch->resumeAfterLoad();
}

}  // namespace recscope
