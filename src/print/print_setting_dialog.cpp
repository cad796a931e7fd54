#include "print/print_setting_dialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "shell/catalogue.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kCaption = 10630;
constexpr int kWidthFrame = 10631;
constexpr int kDataLine = 10632;
constexpr int kWakuLine = 10633;
constexpr int kMasuLine = 10634;
constexpr int kScaleLine = 10635;
constexpr int kRangeFrame = 10636;
constexpr int kScreenOnly = 10637;
constexpr int kByDisplay = 10638;
constexpr int kBySetTime = 10639;
constexpr int kTimeRow = 10640;
constexpr int kDay = 10641;
constexpr int kHour = 10642;
constexpr int kMinute = 10643;
constexpr int kPageRow = 10644;
constexpr int kPage = 10645;
constexpr int kCursorValues = 10724;
constexpr int kFlagValues = 10725;
constexpr int kValueFrame = 10726;
constexpr int kCancel = 11000;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

QLabel *MakeLabel(QWidget *parent, int id, const char *name) {
  auto *label = new QLabel(Text(id), parent);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

// A list of whole numbers from..to; a value from the settings outside it is
// shown as it stands.
QComboBox *MakeNumbers(QWidget *parent, const char *name, int from, int to) {
  auto *combo = new QComboBox(parent);
  combo->setObjectName(QString::fromLatin1(name));
  for (int n = from; n <= to; ++n) combo->addItem(QString::number(n), n);
  return combo;
}

void Select(QComboBox *combo, int value) {
  int index = combo->findData(value);
  if (index < 0) {
    combo->addItem(QString::number(value), value);
    index = combo->count() - 1;
  }
  combo->setCurrentIndex(index);
}

int Number(const QComboBox *combo) { return combo->currentData().toInt(); }

QRadioButton *MakeOption(QWidget *parent, int id, const char *name) {
  auto *option = new QRadioButton(Text(id), parent);
  option->setObjectName(QString::fromLatin1(name));
  return option;
}

}  // namespace

PrintSettingDialog::PrintSettingDialog(PrintConfig &config, TrendView &view, std::string iniFile,
                                       QWidget *parent)
    : QDialog(parent), config_(config), view_(view), iniFile_(std::move(iniFile)) {
  setObjectName(QStringLiteral("dlgPrnSet"));
  setWindowTitle(Text(kCaption));
  setModal(true);

  auto *widths = new QGroupBox(Text(kWidthFrame), this);
  widths->setObjectName(QStringLiteral("Frame1"));
  auto *widthGrid = new QGridLayout(widths);
  dataLine_ = MakeNumbers(widths, "DataLine", 1, 10);
  wakuLine_ = MakeNumbers(widths, "WakuLine", 1, 10);
  masuLine_ = MakeNumbers(widths, "MasuLine", 1, 10);
  scaleLine_ = MakeNumbers(widths, "ScaleLine", 1, 10);
  widthGrid->addWidget(MakeLabel(widths, kDataLine, "Label1"), 0, 0);
  widthGrid->addWidget(dataLine_, 0, 1);
  widthGrid->addWidget(MakeLabel(widths, kWakuLine, "Label2"), 0, 2);
  widthGrid->addWidget(wakuLine_, 0, 3);
  widthGrid->addWidget(MakeLabel(widths, kMasuLine, "Label3"), 1, 0);
  widthGrid->addWidget(masuLine_, 1, 1);
  widthGrid->addWidget(MakeLabel(widths, kScaleLine, "Label4"), 1, 2);
  widthGrid->addWidget(scaleLine_, 1, 3);

  auto *range = new QGroupBox(Text(kRangeFrame), this);
  range->setObjectName(QStringLiteral("Frame2"));
  auto *rangeBox = new QVBoxLayout(range);
  optScreen_ = MakeOption(range, kScreenOnly, "OptScreen");
  option1_ = MakeOption(range, kByDisplay, "Option1");
  option2_ = MakeOption(range, kBySetTime, "Option2");
  rangeBox->addWidget(optScreen_);
  rangeBox->addWidget(option1_);
  rangeBox->addWidget(option2_);
  rangeBox->addWidget(MakeLabel(range, kTimeRow, "Label5"));
  auto *time = new QHBoxLayout();
  comboDay_ = MakeNumbers(range, "ComboDay", 0, 31);
  comboHour_ = MakeNumbers(range, "ComboHour", 0, 23);
  comboMin_ = MakeNumbers(range, "ComboMin", 0, 59);
  time->addSpacing(20);
  time->addWidget(comboDay_);
  time->addWidget(MakeLabel(range, kDay, "Label6"));
  time->addWidget(comboHour_);
  time->addWidget(MakeLabel(range, kHour, "Label7"));
  time->addWidget(comboMin_);
  time->addWidget(MakeLabel(range, kMinute, "Label8"));
  time->addStretch();
  rangeBox->addLayout(time);
  auto *pages = new QHBoxLayout();
  comboPage_ = MakeNumbers(range, "ComboPage", 1, 99);
  pages->addWidget(MakeLabel(range, kPageRow, "Label9"));
  pages->addWidget(comboPage_);
  pages->addWidget(MakeLabel(range, kPage, "Label10"));
  pages->addStretch();
  rangeBox->addLayout(pages);

  auto *values = new QGroupBox(Text(kValueFrame), this);
  values->setObjectName(QStringLiteral("Frame3"));
  auto *valueBox = new QVBoxLayout(values);
  optCursor_ = MakeOption(values, kCursorValues, "OptCursor");
  optFlag_ = MakeOption(values, kFlagValues, "OptFlag");
  valueBox->addWidget(optCursor_);
  valueBox->addWidget(optFlag_);

  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("OKButton"));
  ok->setDefault(true);
  auto *cancel = new QPushButton(Text(kCancel), this);
  cancel->setObjectName(QStringLiteral("CancelButton"));
  auto *buttons = new QHBoxLayout();
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(widths);
  layout->addWidget(range);
  layout->addWidget(values);
  layout->addLayout(buttons);

  connect(ok, &QPushButton::clicked, this, &PrintSettingDialog::onOk);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  for (QRadioButton *option : {optScreen_, option1_, option2_})
    connect(option, &QRadioButton::toggled, this, &PrintSettingDialog::updateRows);

  showForm(PrintSettingFormOf(config_));
}

void PrintSettingDialog::showForm(const PrintSettingForm &form) {
  Select(dataLine_, form.DataLine);
  Select(wakuLine_, form.WakuLine);
  Select(masuLine_, form.MasuLine);
  Select(scaleLine_, form.ScaleLine);
  // A range value other than 1 and 2 shows as the display only, as OK would store it.
  if (form.Range == kRangeByDisplay)
    option1_->setChecked(true);
  else if (form.Range == kRangeBySetTime)
    option2_->setChecked(true);
  else
    optScreen_->setChecked(true);
  Select(comboDay_, form.Day);
  Select(comboHour_, form.Hour);
  Select(comboMin_, form.Minute);
  Select(comboPage_, form.Pages);
  (form.FlagValues ? optFlag_ : optCursor_)->setChecked(true);
  updateRows();
}

// The time row counts only for the print by a set time, the page count for
// either continuous print.
void PrintSettingDialog::updateRows() {
  const bool setTime = option2_->isChecked();
  for (QComboBox *combo : {comboDay_, comboHour_, comboMin_}) combo->setEnabled(setTime);
  comboPage_->setEnabled(!optScreen_->isChecked());
}

PrintSettingForm PrintSettingDialog::form() const {
  PrintSettingForm form;
  form.DataLine = Number(dataLine_);
  form.WakuLine = Number(wakuLine_);
  form.MasuLine = Number(masuLine_);
  form.ScaleLine = Number(scaleLine_);
  if (optScreen_->isChecked())
    form.Range = kRangeScreen;
  else
    form.Range = option2_->isChecked() ? kRangeBySetTime : kRangeByDisplay;
  form.Day = Number(comboDay_);
  form.Hour = Number(comboHour_);
  form.Minute = Number(comboMin_);
  form.Pages = Number(comboPage_);
  form.FlagValues = optFlag_->isChecked();
  return form;
}

void PrintSettingDialog::onOk() {
  AcceptPrintSettingForm(form(), config_, view_, iniFile_);
  accept();
}

bool ShowPrintSettingDialog(QWidget *parent, TrendView &view) {
  SharedState &state = Shared();
  PrintSettingDialog dialog(state.Print, view, ViewerComIniPath(state.ProgramFolder), parent);
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace recscope
