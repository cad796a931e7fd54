#pragma once
// The desktop side of opening a record: runs the open pipeline with the reading
// dialog, reports a refusal in a message box and, on success, makes the window
// of the slot in the MDI area. Closing that window frees the slot.
#include <QString>
#include <functional>

#include "record/open_record.h"

class QMdiArea;
class QWidget;

namespace recscope {

// Makes the window that shows an opened slot. The window is deleted when it is
// closed, and it frees its slot (CloseRecordSlot) when it ends.
using TrendWindowFactory = std::function<QWidget *(int slot)>;
void SetTrendWindowFactory(TrendWindowFactory factory);

// Until the trend view exists: an empty child window named frmTrend.
QWidget *MakePlainTrendWindow(int slot);

// Caption of a slot's window: message 19500 with the slot in two digits, then
// "[", the record's path, "]".
QString TrendWindowCaption(int slot);

// How a refusal reaches the operator; a message box unless replaced (tests).
using RefusalNotice = std::function<void(QWidget *parent, const QString &text)>;
void SetRefusalNotice(RefusalNotice notice);

// Opens `path` into the shared state. Returns true when a window stands for it;
// `outcome` (when given) gets the pipeline's result.
bool OpenRecordPath(QWidget *parent, QMdiArea *mdi, const QString &path,
                    OpenOutcome *outcome = nullptr);

}  // namespace recscope
