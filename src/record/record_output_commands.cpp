#include "record/record_output_commands.h"

#include <QApplication>
#include <QFileDialog>

#include "record/measurement_csv.h"
#include "record/read_dialog.h"
#include "record/save_as.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kCsvCaption = 18210;
constexpr int kCsvLabel = 18211;
constexpr int kSaveTitle = 11172;
constexpr int kRecordFilter = 11173;
constexpr int kWriting = 11186;
constexpr int kAlarmExists = 11185;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

SaveNameAsker &Asker() {
  static SaveNameAsker asker = [](QWidget *parent) {
    return QFileDialog::getSaveFileName(parent, Text(kSaveTitle), QString(), Text(kRecordFilter),
                                        nullptr, QFileDialog::DontConfirmOverwrite);
  };
  return asker;
}

}  // namespace

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
  ShowComposedMessage(parent, outcome.MessageId,
                      QString::fromStdString(GetMessageText(outcome.MessageId)), QMessageBox::Ok);
  return outcome.MessageId;
}

void SetSaveNameAsker(SaveNameAsker asker) {
  if (asker) Asker() = std::move(asker);
}

int RunSaveAs(QWidget *parent, int slotNo, std::int32_t t0, std::int32_t t1) {
  const SharedState &state = Shared();
  if (slotNo < 1 || slotNo > 16 || !state.Slot(slotNo).InUse()) return 0;
  const RecordSlot &slot = state.Slot(slotNo);
  const QString target = Asker()(parent);
  if (target.isEmpty()) return 0;
  ReadDialog *dialog = nullptr;
  const SaveAsOutcome outcome = SaveRecordRange(
      slot.Record, slot.Alarms, slot.Period(), t0, t1, target.toStdString(),
      [parent](const std::string &alarmTarget) {
        const QString question =
            QString::fromStdString(GetMessageText(kAlarmExists, "@SaveFileName@", alarmTarget));
        return ShowComposedMessage(parent, kAlarmExists, question,
                                   QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
      },
      [&dialog, parent](int value, int maximum) {
        if (!dialog) {
          dialog = new ReadDialog(parent, kWriting, kWriting);
          dialog->show();
        }
        dialog->SetProgress(value, maximum);
      });
  delete dialog;
  if (outcome.MessageId != 0)
    ShowComposedMessage(parent, outcome.MessageId, Text(outcome.MessageId), QMessageBox::Ok);
  return outcome.MessageId;
}

}  // namespace recscope
