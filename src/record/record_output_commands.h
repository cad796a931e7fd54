#pragma once
// The desktop side of the record outputs: the CSV conversion of the active
// record and the save of its shown range, with the progress dialog and the
// catalogue messages.
#include <QMessageBox>
#include <QString>
#include <cstdint>
#include <functional>

class QWidget;

namespace recscope {

// mnuFileChange on a measurement slot: the CSV files beside the record, dlgRead
// with the rows' progress, then 11132, 11130 or 11131. Returns the message id.
int RunMeasurementCsv(QWidget *parent, int slot);

// The save file dialog of mnuFileSaveas (title 11172, filter 11173): one path,
// or an empty text when cancelled. Tests replace it.
using SaveNameAsker = std::function<QString(QWidget *parent)>;
void SetSaveNameAsker(SaveNameAsker asker);

// mnuFileSaveas on a measurement slot for the range t0..t1 that its trend window
// shows: the name from the save dialog, its tests and messages, dlgRead with
// 11186 while the files are written, then 11184. Returns the message id shown
// last (0 when the operator cancelled or declined).
int RunSaveAs(QWidget *parent, int slot, std::int32_t t0, std::int32_t t1);

}  // namespace recscope
