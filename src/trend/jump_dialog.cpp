#include "trend/jump_dialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "trend/cursor_commands.h"

namespace recscope {

namespace {

constexpr int kCaption = 40000;
constexpr int kRecordTime = 40001;
constexpr int kTilde = 40002;
constexpr int kTwenty = 40003;
constexpr int kYear = 40004;
constexpr int kMonth = 40005;
constexpr int kDay = 40006;
constexpr int kHour = 40007;
constexpr int kMinute = 40008;
constexpr int kJump = 40009;
constexpr int kCancel = 40010;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

QLabel *MakeLabel(QWidget *parent, const QString &text, const char *name = nullptr) {
  auto *label = new QLabel(text, parent);
  if (name) label->setObjectName(QString::fromLatin1(name));
  return label;
}

QComboBox *MakeCombo(QWidget *parent, const char *name) {
  auto *combo = new QComboBox(parent);
  combo->setObjectName(QString::fromLatin1(name));
  return combo;
}

void FillNumbers(QComboBox *combo, int from, int to) {
  for (int n = from; n <= to; ++n) combo->addItem(QString::fromStdString(TwoDigits(n)));
}

void Select(QComboBox *combo, int n) {
  int index = combo->findText(QString::fromStdString(TwoDigits(n)));
  combo->setCurrentIndex(index >= 0 ? index : 0);
}

int Number(const QComboBox *combo) { return combo->currentText().toInt(); }

}  // namespace

JumpDialog::JumpDialog(int cursorNo, std::int32_t fileStart, std::int32_t fileEnd,
                       std::int32_t cursorTime, int dateFormatNo, QWidget *parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("frmJump"));
  setWindowTitle(
      QString::fromStdString(GetMessageText(kCaption, "@NUM@", std::to_string(cursorNo))));
  setModal(true);

  auto *grid = new QGridLayout(this);
  auto *times = new QHBoxLayout();
  times->addWidget(MakeLabel(this, Text(kRecordTime), "Label1"));
  times->addWidget(
      MakeLabel(this, QString::fromStdString(FormatTime(fileStart, dateFormatNo)), "lblStartTime"));
  times->addWidget(MakeLabel(this, Text(kTilde), "Label2"));
  times->addWidget(
      MakeLabel(this, QString::fromStdString(FormatTime(fileEnd, dateFormatNo)), "lblEndTime"));
  times->addStretch();
  grid->addLayout(times, 0, 0, 1, 11);

  year_ = MakeCombo(this, "cboYear");
  month_ = MakeCombo(this, "cboMonth");
  day_ = MakeCombo(this, "cboDay");
  hour_ = MakeCombo(this, "cboHour");
  minute_ = MakeCombo(this, "cboMin");
  int column = 0;
  grid->addWidget(MakeLabel(this, Text(kTwenty), "lblTwenty"), 1, column++);
  for (auto [combo, unit] :
       {std::pair{year_, kYear}, std::pair{month_, kMonth}, std::pair{day_, kDay},
        std::pair{hour_, kHour}, std::pair{minute_, kMinute}}) {
    grid->addWidget(combo, 1, column++);
    grid->addWidget(MakeLabel(this, Text(unit)), 1, column++);
  }

  for (const std::string &item : JumpYearItems(fileStart, fileEnd))
    year_->addItem(QString::fromStdString(item));
  FillNumbers(month_, 1, 12);
  FillNumbers(hour_, 0, 23);
  FillNumbers(minute_, 0, 59);

  // The first choice is the cursor's time.
  const CivilTime now = ToCivil(cursorTime);
  Select(year_, now.year);
  Select(month_, now.month);
  FillDays();
  Select(day_, now.day);
  Select(hour_, now.hour);
  Select(minute_, now.minute);
  connect(year_, &QComboBox::currentIndexChanged, this, [this] { FillDays(); });
  connect(month_, &QComboBox::currentIndexChanged, this, [this] { FillDays(); });

  auto *jump = new QPushButton(Text(kJump), this);
  jump->setObjectName(QStringLiteral("cmdJump"));
  jump->setDefault(true);
  auto *cancel = new QPushButton(Text(kCancel), this);
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  auto *buttons = new QHBoxLayout();
  buttons->addStretch();
  buttons->addWidget(jump);
  buttons->addWidget(cancel);
  grid->addLayout(buttons, 2, 0, 1, 11);
  connect(jump, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void JumpDialog::FillDays() {
  const int former = day_->count() > 0 ? Number(day_) : 0;
  const int year = Number(year_);
  const int month = Number(month_);
  const QSignalBlocker block(day_);
  day_->clear();
  for (const std::string &item : JumpDayItems(year, month))
    day_->addItem(QString::fromStdString(item));
  Select(day_, KeptJumpDay(former, year, month));
}

std::int64_t JumpDialog::chosenTime() const {
  return JumpChoiceTime(Number(year_), Number(month_), Number(day_), Number(hour_),
                        Number(minute_));
}

}  // namespace recscope
