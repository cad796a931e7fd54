#include "totalize/report_select_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "totalize/report.h"

namespace recscope {

namespace {
QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
}  // namespace

ReportSelectDialog::ReportSelectDialog(int slot, std::int64_t baseTime,
                                       std::function<void(int type)> opener, QWidget *parent)
    : QDialog(parent), slot_(slot), baseTime_(baseTime), opener_(std::move(opener)) {
  setObjectName("frmChohyoSelect");
  setWindowTitle(Text(41200));
  auto *layout = new QVBoxLayout(this);
  auto *prompt = new QLabel(Text(41207), this);
  prompt->setObjectName("Label1");
  layout->addWidget(prompt);
  const struct {
    const char *name;
    int type;
    int caption;
  } buttons[] = {{"cmdDay", kDailyReport, 41201},
                 {"cmdMonth", kMonthlyReport, 41202},
                 {"cmdYear", kAnnualReport, 41203}};
  for (const auto &b : buttons) {
    auto *button = new QPushButton(Text(b.caption), this);
    button->setObjectName(b.name);
    button->setAutoDefault(false);
    layout->addWidget(button);
    const int type = b.type;
    connect(button, &QPushButton::clicked, this, [this, type] { choose(type); });
  }
}

void ReportSelectDialog::choose(int type) {
  const RecordSlot &slot = Shared().Slot(slot_);
  const int result = GatherChohyoTable(slot.Record, Shared().ProgramFolder, slot_, slot.Period(),
                                       type, baseTime_, SharedChohyoTable());
  if (result != 0) {
    ShowMessage(this, result);
    return;
  }
  // The dialog goes first, then the report window takes the type.
  std::function<void(int)> opener = opener_;
  close();
  if (opener) opener(type);
}

}  // namespace recscope
