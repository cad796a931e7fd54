#include "ftp/auto_fetch_window.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ftp/auto_fetch_control.h"
#include "ftp/operation_log.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/message_service.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

std::string IniPath() { return ViewerComIniPath(Shared().ProgramFolder); }

QString RowName(const char *control, int n) { return QStringLiteral("%1_%2").arg(control).arg(n); }

}  // namespace

RecordFetchWindow::RecordFetchWindow(AutoFetchControl *control, QWidget *parent)
    : QDialog(parent), control_(control) {
  setObjectName("frmRecord");
  setWindowTitle(Text(10900));
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);

  auto *grid = new QGridLayout;
  grid->addWidget(new QLabel(Text(10911), this), 0, 0);
  grid->addWidget(new QLabel(Text(10910), this), 0, 1);
  auto *ipTitle = new QLabel(Text(10701), this);
  grid->addWidget(ipTitle, 0, 2, 1, 7);
  grid->addWidget(new QLabel(Text(10703), this), 0, 9);
  grid->addWidget(new QLabel(Text(10704), this), 0, 10);
  grid->addWidget(new QLabel(Text(10912), this), 0, 11);

  const auto *digits = new QRegularExpressionValidator(QRegularExpression("[0-9]{0,3}"), this);
  for (int n = 1; n <= kFetchRecorders; ++n) {
    Row &row = rows_[static_cast<std::size_t>(n - 1)];
    row.number = new QLabel(Text(10909) + QString::number(n), this);
    row.number->setObjectName(RowName("LabelNo", n));
    grid->addWidget(row.number, n, 0);
    row.on = new QCheckBox(this);
    row.on->setObjectName(RowName("chkOn", n));
    grid->addWidget(row.on, n, 1, Qt::AlignCenter);
    for (int k = 0; k < 4; ++k) {
      QLineEdit *part = new QLineEdit(this);
      part->setObjectName(QStringLiteral("txtIP_%1_%2").arg(n).arg(k + 1));
      part->setValidator(digits);
      part->setMaxLength(3);
      part->setFixedWidth(40);
      part->setAlignment(Qt::AlignRight);
      connect(part, &QLineEdit::editingFinished, this, [this, part] { checkAddressPart(part); });
      row.ip[static_cast<std::size_t>(k)] = part;
      grid->addWidget(part, n, 2 + 2 * k);
      if (k < 3) {
        auto *dot = new QLabel(QStringLiteral("."), this);
        dot->setObjectName(QStringLiteral("Label_Dot_%1_%2").arg(n).arg(k + 1));
        grid->addWidget(dot, n, 3 + 2 * k);
      }
    }
    row.user = new QLineEdit(this);
    row.user->setObjectName(RowName("txtName", n));
    grid->addWidget(row.user, n, 9);
    row.password = new QLineEdit(this);
    row.password->setObjectName(RowName("txtPass", n));
    row.password->setEchoMode(QLineEdit::Password);
    grid->addWidget(row.password, n, 10);
    row.status = new QLabel(this);
    row.status->setObjectName(RowName("lblCommu", n));
    row.status->setMinimumWidth(50);
    row.status->setFrameShape(QFrame::StyledPanel);
    grid->addWidget(row.status, n, 11);
  }
  auto *recorders = new QGroupBox(Text(10902), this);
  recorders->setLayout(grid);

  days_ = new QSpinBox(this);
  days_->setObjectName("txtDay");
  days_->setRange(0, 99);
  hours_ = new QSpinBox(this);
  hours_->setObjectName("txtHour");
  hours_->setRange(0, 23);
  auto *cycleRow = new QHBoxLayout;
  cycleRow->addWidget(new QLabel(Text(10901), this));
  cycleRow->addWidget(days_);
  cycleRow->addWidget(new QLabel(Text(10904), this));
  cycleRow->addWidget(hours_);
  cycleRow->addWidget(new QLabel(Text(10905), this));
  cycleRow->addSpacing(24);
  cycleRow->addWidget(new QLabel(Text(10903), this));
  nextTime_ = new QLabel(this);
  nextTime_->setObjectName("lblNextTime");
  nextTime_->setMinimumWidth(150);
  nextTime_->setFrameShape(QFrame::StyledPanel);
  cycleRow->addWidget(nextTime_);
  cycleRow->addStretch();

  log_ = new QPlainTextEdit(this);
  log_->setObjectName("txtLogwin");
  log_->setReadOnly(true);
  log_->setLineWrapMode(QPlainTextEdit::NoWrap);
  // One font for every line, whatever script a message is written in.
  log_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto *logBox = new QGroupBox(Text(10906), this);
  auto *logLayout = new QVBoxLayout(logBox);
  logLayout->addWidget(log_);

  start_ = new QPushButton(Text(10907), this);
  start_->setObjectName("cmdStart");
  stop_ = new QPushButton(Text(10908), this);
  stop_->setObjectName("cmdStop");
  auto *buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(start_);
  buttons->addWidget(stop_);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(recorders);
  layout->addLayout(cycleRow);
  layout->addWidget(logBox, 1);
  layout->addLayout(buttons);

  connect(start_, &QPushButton::clicked, this, &RecordFetchWindow::onStart);
  connect(stop_, &QPushButton::clicked, this, &RecordFetchWindow::onStop);
  connect(control_, &AutoFetchControl::statusChanged, this, &RecordFetchWindow::showStatus);
  connect(control_, &AutoFetchControl::logged, this, &RecordFetchWindow::LogShow);
  connect(control_, &AutoFetchControl::scheduleChanged, this, &RecordFetchWindow::showSchedule);

  loadSettings();
  for (int n = 1; n <= kFetchRecorders; ++n) showStatus(n);
  showSchedule();
  LogShow();
  resize(820, 640);
}

void RecordFetchWindow::loadSettings() {
  const std::string ini = IniPath();
  const FetchRecorders stored = ReadFetchRecorders(ini);
  for (int i = 0; i < kFetchRecorders; ++i) {
    Row &row = rows_[static_cast<std::size_t>(i)];
    const FetchRecorder &recorder = stored[static_cast<std::size_t>(i)];
    row.on->setChecked(recorder.ON);
    const QStringList parts = QString::fromStdString(recorder.IP).split('.');
    for (int k = 0; k < 4; ++k)
      row.ip[static_cast<std::size_t>(k)]->setText(parts.size() == 4 ? parts[k] : QString());
    row.user->setText(QString::fromStdString(recorder.USER));
    row.password->setText(QString::fromStdString(recorder.PASS));
  }
  const FetchCycle cycle = ParseCycle(ReadIni("CYCLE", "FTP", ini));
  days_->setValue(cycle.Days);
  hours_->setValue(cycle.Hours);
}

FetchRecorders RecordFetchWindow::recorders() const {
  FetchRecorders out;
  for (int i = 0; i < kFetchRecorders; ++i) {
    const Row &row = rows_[static_cast<std::size_t>(i)];
    FetchRecorder &recorder = out[static_cast<std::size_t>(i)];
    QStringList parts;
    bool any = false;
    for (QLineEdit *part : row.ip) {
      parts.append(part->text());
      any = any || !part->text().isEmpty();
    }
    recorder.IP = any ? parts.join('.').toStdString() : std::string();
    recorder.USER = row.user->text().toStdString();
    recorder.PASS = row.password->text().toStdString();
    recorder.ON = row.on->isChecked();
  }
  return out;
}

FetchCycle RecordFetchWindow::cycle() const { return {days_->value(), hours_->value()}; }

void RecordFetchWindow::checkAddressPart(QLineEdit *part) {
  if (checking_ || part->text().isEmpty()) return;
  if (part->text().toInt() <= 255) return;
  checking_ = true;
  ShowMessage(this, 20115, QMessageBox::Ok, {{"@FORMIN@", "0"}, {"@FORMAX@", "255"}});
  part->setFocus();
  part->selectAll();
  checking_ = false;
}

void RecordFetchWindow::onStart() {
  const FetchRecorders rows = recorders();
  const FetchCycle chosen = cycle();
  const int refusal = CheckFetchStart(rows, chosen);
  if (refusal != 0) {
    ShowMessage(this, refusal);
    return;
  }
  WriteFetchSettings(IniPath(), rows, chosen, true);
  control_->start();
}

void RecordFetchWindow::onStop() { control_->stop(); }

void RecordFetchWindow::showStatus(int recorderNo) {
  rows_[static_cast<std::size_t>(recorderNo - 1)].status->setText(
      control_->recorderStatus()[static_cast<std::size_t>(recorderNo - 1)]);
}

void RecordFetchWindow::showSchedule() {
  const bool on = control_->isOn();
  start_->setEnabled(!on);
  stop_->setEnabled(on);
  nextTime_->setText(
      on && control_->nextFetchTime() != 0
          ? QString::fromStdString(FormatTime(control_->nextFetchTime(), Shared().DateFormatNo))
          : QString());
}

void RecordFetchWindow::LogShow() {
  log_->setPlainText(
      QString::fromStdString(recscope::LogShow(Shared().ProgramFolder)).replace("\r\n", "\n"));
  log_->verticalScrollBar()->setValue(log_->verticalScrollBar()->maximum());
}

}  // namespace recscope
