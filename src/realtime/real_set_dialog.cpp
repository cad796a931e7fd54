#include "realtime/real_set_dialog.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "realtime/realtime_settings.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kFileOpenError = 11107;

std::function<void(QWidget *)> &TrendOpener() {
  static std::function<void(QWidget *)> opener;
  return opener;
}

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

QComboBox *List(QWidget *parent, const char *name, const QStringList &items) {
  auto *combo = new QComboBox(parent);
  combo->setObjectName(QString::fromLatin1(name));
  combo->addItems(items);
  return combo;
}

void Select(QComboBox *combo, int index) {
  if (index < 0 || index >= combo->count()) index = 0;
  combo->setCurrentIndex(index);
}

}  // namespace

RealSetDialog::RealSetDialog(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmRealSet"));
  setWindowTitle(Text(19720));
  RealSettings &settings = Shared().Realtime.Settings;
  const std::string ini = ViewerComIniPath(Shared().ProgramFolder);
  if (!ReadRealSettings(settings, ini)) {
    ShowMessage(parent, kFileOpenError);
    settings = RealSettings{};
  }

  QStringList cycleItems;
  for (int i = 0; i < 8; ++i) {
    cycles_[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(Text(19702 + i).toInt());
    cycleItems.append(Text(19702 + i) + QStringLiteral("s"));
  }
  QStringList comItems;
  for (int i = 1; i <= 5; ++i) comItems.append(Text(19710) + QString::number(i));
  cmbCommunication_ = List(this, "cmbCommunication", {Text(19701), Text(19700)});
  cmbCycle_ = List(this, "cmbCycle", cycleItems);
  cmbCom_ = List(this, "cmbCom", comItems);
  cmbRate_ = List(this, "cmbRate", {Text(19711), Text(19712)});
  cmbParity_ = List(this, "cmbParity", {Text(19713), Text(19714), Text(19715)});
  txtSno_ = new QLineEdit(this);
  txtSno_->setObjectName(QStringLiteral("txtSno"));
  txtSno_->installEventFilter(this);
  auto *address = new QHBoxLayout;
  for (int i = 0; i < 4; ++i) {
    QLineEdit *part = new QLineEdit(this);
    part->setObjectName(QStringLiteral("IP_%1").arg(i));
    part->setMaxLength(3);
    part->installEventFilter(this);
    IP_[static_cast<std::size_t>(i)] = part;
    address->addWidget(part);
    if (i < 3) address->addWidget(new QLabel(QStringLiteral("."), this));
  }

  auto *grid = new QGridLayout;
  const char *labelNames[7] = {"lblCommunication", "lblCycle", "lblSno",   "lblIP",
                               "lblCom",           "lblRate",  "lblParity"};
  for (int i = 0; i < 7; ++i) {
    auto *label = new QLabel(Text(19721 + i), this);
    label->setObjectName(QString::fromLatin1(labelNames[i]));
    grid->addWidget(label, i, 0);
  }
  grid->addWidget(cmbCommunication_, 0, 1);
  grid->addWidget(cmbCycle_, 1, 1);
  grid->addWidget(txtSno_, 2, 1);
  grid->addLayout(address, 3, 1);
  grid->addWidget(cmbCom_, 4, 1);
  grid->addWidget(cmbRate_, 5, 1);
  grid->addWidget(cmbParity_, 6, 1);

  cmdShow_ = new QPushButton(Text(19728), this);
  cmdShow_->setObjectName(QStringLiteral("cmdShow"));
  cmdShow_->setDefault(true);
  connect(cmdShow_, &QPushButton::clicked, this, [this] { cmdShow_Click(); });
  auto *layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addWidget(cmdShow_, 0, Qt::AlignRight);

  // The values into the controls; the address split at ".".
  Select(cmbCommunication_, settings.Communication == 0 ? 0 : 1);
  Select(cmbCycle_, settings.Cycle);
  txtSno_->setText(QString::number(settings.Station));
  Select(cmbCom_, settings.Com - 1);
  Select(cmbRate_, settings.BoudRate);
  Select(cmbParity_, settings.Parity);
  const QStringList parts = QString::fromStdString(settings.Ip).split(QLatin1Char('.'));
  for (int i = 0; i < 4; ++i)
    IP_[static_cast<std::size_t>(i)]->setText(i < parts.size() ? parts[i] : QString());
  connect(cmbCommunication_, QOverload<int>::of(&QComboBox::activated), this,
          [this] { cmbCommunication_Click(); });
  connect(cmbCommunication_, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
          [this] { cmbCommunication_Click(); });
  cmbCommunication_Click();
  Shared().Realtime.SetDialogOpen = true;
}

RealSetDialog::~RealSetDialog() { Shared().Realtime.SetDialogOpen = false; }

RealSetDialog *RealSetDialog::Show(QWidget *parent) {
  auto *dialog = new RealSetDialog(parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setModal(true);
  dialog->show();
  return dialog;
}

void RealSetDialog::SetTrendOpener(std::function<void(QWidget *)> opener) {
  TrendOpener() = std::move(opener);
}

void RealSetDialog::cmbCommunication_Click() {
  const bool ethernet = cmbCommunication_->currentIndex() == 0;
  for (QLineEdit *part : IP_) part->setEnabled(ethernet);
  cmbCom_->setEnabled(!ethernet);
  cmbRate_->setEnabled(!ethernet);
  cmbParity_->setEnabled(!ethernet);
}

bool RealSetDialog::CheckField(QLineEdit *field) {
  int value = 0;
  const int refusal = CheckRealByteField(field->text().toStdString(), value);
  if (refusal == 0) {
    field->setText(QString::number(value));
    return true;
  }
  checking_ = true;
  ShowMessage(this, refusal, QMessageBox::Ok, {{"@FORMIN@", "0"}, {"@FORMAX@", "255"}});
  field->setFocus();
  field->selectAll();
  checking_ = false;
  return false;
}

bool RealSetDialog::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::FocusOut && !checking_) {
    if (auto *field = qobject_cast<QLineEdit *>(watched)) CheckField(field);
  }
  return QDialog::eventFilter(watched, event);
}

void RealSetDialog::bsubIniWrite() {
  RealSettings &settings = Shared().Realtime.Settings;
  settings.Communication = cmbCommunication_->currentIndex();
  settings.Cycle = cmbCycle_->currentIndex();
  settings.Station = txtSno_->text().toInt();
  settings.Com = cmbCom_->currentIndex() + 1;
  settings.BoudRate = cmbRate_->currentIndex();
  settings.Parity = cmbParity_->currentIndex();
  QStringList parts;
  for (QLineEdit *part : IP_) parts.append(part->text());
  settings.Ip = parts.join(QLatin1Char('.')).toStdString();
  WriteRealSettings(settings, ViewerComIniPath(Shared().ProgramFolder));
}

void RealSetDialog::cmdShow_Click() {
  bsubIniWrite();
  QWidget *owner = parentWidget();
  close();
  if (TrendOpener()) TrendOpener()(owner);
}

}  // namespace recscope
