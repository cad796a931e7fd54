#include "totalize/addition_commands.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMdiArea>
#include <QMdiSubWindow>

#include "record/measurement_csv.h"
#include "record/read_dialog.h"
#include "record/record_output_commands.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"
#include "totalize/addition.h"
#include "totalize/addition_csv.h"
#include "totalize/totalize_view.h"

namespace recscope {

namespace {

constexpr int kOpenTitle = 11171;
constexpr int kFilter = 11177;
constexpr const char *kFilterPatterns = "|T*.FDT;D*.FDT;M*.FDT;E*.FDT";
constexpr int kCsvCaption = 18210;
constexpr int kCsvLabel = 18211;
constexpr int kCsvFailed = 11131;
constexpr int kRealTimeCaption = 19728;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// The filter of the dialog: the catalogue text with the patterns behind "|". The
// file dialog reads a filter's patterns from its last parentheses, separated by
// blanks, so the patterns are given to it in that form.
QString FilterOf(const QString &text, const QString &patterns) {
  QString cut = text;
  const int open = cut.lastIndexOf('(');
  if (open > 0) cut = cut.left(open).trimmed();
  QString list = patterns.mid(patterns.indexOf('|') + 1);
  list.replace(';', ' ');
  return cut + " (" + list + ")";
}

}  // namespace

QString ChooseTotalizeFile(QWidget *parent) {
  QFileDialog dialog(parent, Text(kOpenTitle));
  dialog.setObjectName(QStringLiteral("dlgAdditionOpen"));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setNameFilter(FilterOf(Text(kFilter), QString::fromLatin1(kFilterPatterns)));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
  return dialog.selectedFiles().front();
}

bool OpenAdditionPath(QWidget *parent, QMdiArea *mdi, const QString &path) {
  SharedState &state = Shared();
  QWidget *frame = mdi ? static_cast<QWidget *>(mdi) : parent;
  auto *reading = new ReadDialog(parent);
  reading->show();
  QCoreApplication::processEvents();
  TotalizeOpenResult result =
      OpenTotalizeFile(state, path.toStdString(),
                       [reading](int done, int total) { reading->SetProgress(done, total); });
  delete reading;
  if (result.Ok() && !TotalizeActionTypesShowable(state.Totalize(result.Slot))) {
    // An action type the grid has no name for: the file is refused as a wrong one.
    state.Totalize(result.Slot).InUse = 0;
    --state.OpenAdditionCount;
    result.MessageId = TotalizeErrorMessageId(kTotalizeBadFile);
  }
  if (!result.Ok()) {
    ShowMessage(parent, result.MessageId);
    ApplyMenuSet(frame);
    return false;
  }
  // The monitor's windows give way to the totalize window.
  UnloadMonitorViews(mdi);
  QWidget *window = OpenSlotWindow(mdi, result.Slot, SlotWindowKind::kAddition);
  // Nearly as wide as the frame: it starts at the frame's left edge.
  if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget())) sub->move(0, 0);
  ApplyMenuSet(frame);
  return true;
}

void OpenAdditionFile(QWidget *parent, QMdiArea *mdi) {
  const QString path = ChooseTotalizeFile(parent);
  if (path.isEmpty()) return;
  QCoreApplication::processEvents();
  OpenAdditionPath(parent, mdi, path);
}

int RunTotalizeCsv(QWidget *parent, int slot) {
  SharedState &state = Shared();
  if (slot < 1 || slot > kTotalizeSlotCount || state.Totalize(slot).InUse == 0) return 0;
  state.CurrentAddition = static_cast<std::int16_t>(slot);
  auto *dialog = new ReadDialog(parent, kCsvCaption, kCsvLabel);
  dialog->show();
  QCoreApplication::processEvents();
  const TotalizeCsvOutcome outcome =
      TotalizeToCsv(state.Totalize(slot), CsvFormat{state.ListSeparator, state.DecimalChar},
                    [dialog](int value, int maximum) { dialog->SetProgress(value, maximum); });
  delete dialog;
  ShowMessage(parent, outcome.MessageId);
  return outcome.MessageId;
}

int RunFileChange(QWidget *parent, QMdiArea *mdi) {
  QString caption;
  if (mdi && mdi->activeSubWindow() && mdi->activeSubWindow()->widget())
    caption = mdi->activeSubWindow()->widget()->windowTitle();
  const std::string text = caption.toStdString();
  if (IsTotalizeCaption(text)) return RunTotalizeCsv(parent, TotalizeSlotOfCaption(text));
  if (!caption.isEmpty() && caption == Text(kRealTimeCaption)) {
    ShowMessage(parent, kCsvFailed);
    return kCsvFailed;
  }
  return RunMeasurementCsv(parent, Shared().CurrentFile);
}

}  // namespace recscope
