#pragma once
// The desktop side of opening a record: runs the open pipeline with the reading
// dialog, reports a refusal through the message service and, on success, makes
// the slot's trend window through the slot window route. After every attempt the
// menu set of the main window is applied.
#include <QString>

#include "record/open_record.h"

class QMdiArea;
class QWidget;

namespace recscope {

// Opens `path` into the shared state. Returns true when a window stands for it;
// `outcome` (when given) gets the pipeline's result.
bool OpenRecordPath(QWidget *parent, QMdiArea *mdi, const QString &path,
                    OpenOutcome *outcome = nullptr);

}  // namespace recscope
