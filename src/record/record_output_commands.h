#pragma once
// The desktop side of the record outputs: the CSV conversion of the active
// record and the save of its shown range, with the progress dialog and the
// catalogue messages.
#include <QMessageBox>
#include <QString>
#include <functional>

class QWidget;

namespace recscope {

// How these commands speak to the operator: a message box with the catalogue
// text and the given buttons, returning the button pressed. Tests replace it.
using OutputMessage = std::function<QMessageBox::StandardButton(
    QWidget *parent, int messageId, const QString &text, QMessageBox::StandardButtons buttons)>;
void SetOutputMessage(OutputMessage message);
QMessageBox::StandardButton ShowOutputMessage(QWidget *parent, int messageId, const QString &text,
                                              QMessageBox::StandardButtons buttons);

// mnuFileChange on a measurement slot: the CSV files beside the record, dlgRead
// with the rows' progress, then 11132, 11130 or 11131. Returns the message id.
int RunMeasurementCsv(QWidget *parent, int slot);

}  // namespace recscope
