#include "record/open_command.h"

#include <QCoreApplication>
#include <QMdiArea>
#include <QWidget>

#include "record/read_dialog.h"
#include "shell/frame/message_service.h"
#include "shell/frame/recent_files_menu.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"

namespace recscope {

bool OpenRecordPath(QWidget *parent, QMdiArea *mdi, const QString &path, OpenOutcome *outcome) {
  SharedState &state = Shared();
  ReadDialog *reading = new ReadDialog(parent);
  reading->show();
  QCoreApplication::processEvents();
  const OpenOutcome result =
      OpenRecordFile(state, path.toStdString(),
                     [reading](int value, int maximum) { reading->SetProgress(value, maximum); });
  delete reading;
  if (outcome) *outcome = result;
  QWidget *frame = mdi ? static_cast<QWidget *>(mdi) : parent;
  if (!result.opened) {
    ShowMessage(parent, result.messageId);
    ApplyMenuSet(frame);
    return false;
  }
  // The monitor's windows give way to the record.
  UnloadMonitorViews(mdi);
  OpenSlotWindow(mdi, result.slot, SlotWindowKind::kTrend);
  ApplyMenuSet(frame);
  RememberRecentFile(path);
  return true;
}

}  // namespace recscope
