#include "record/record_output_commands.h"

#include <QApplication>

#include "record/measurement_csv.h"
#include "record/read_dialog.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kCsvCaption = 18210;
constexpr int kCsvLabel = 18211;

OutputMessage &Message() {
  static OutputMessage message = [](QWidget *parent, int, const QString &text,
                                    QMessageBox::StandardButtons buttons) {
    if (buttons & QMessageBox::Yes)
      return QMessageBox::question(parent, QApplication::applicationDisplayName(), text, buttons);
    return QMessageBox::information(parent, QApplication::applicationDisplayName(), text, buttons);
  };
  return message;
}

}  // namespace

void SetOutputMessage(OutputMessage message) {
  if (message) Message() = std::move(message);
}

QMessageBox::StandardButton ShowOutputMessage(QWidget *parent, int id, const QString &text,
                                              QMessageBox::StandardButtons buttons) {
  return Message()(parent, id, text, buttons);
}

int RunMeasurementCsv(QWidget *parent, int slotNo) {
  const SharedState &state = Shared();
  if (slotNo < 1 || slotNo > 16 || !state.Slot(slotNo).InUse()) return 0;
  const RecordSlot &slot = state.Slot(slotNo);
  auto *dialog = new ReadDialog(parent, kCsvCaption, kCsvLabel);
  dialog->show();
  QCoreApplication::processEvents();
  const CsvOutcome outcome = ConvertMeasurementCsv(
      slot.Record, slot.Alarms, CsvFormat{state.ListSeparator, state.DecimalChar},
      [dialog](int value, int maximum) { dialog->SetProgress(value, maximum); });
  delete dialog;
  ShowOutputMessage(parent, outcome.MessageId,
                    QString::fromStdString(GetMessageText(outcome.MessageId)), QMessageBox::Ok);
  return outcome.MessageId;
}

}  // namespace recscope
