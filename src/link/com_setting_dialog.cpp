#include "link/com_setting_dialog.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace recscope {

ComSettingDialog::ComSettingDialog(ComPortSettings &settings, QWidget *parent)
    : QDialog(parent), settings_(settings) {
  setObjectName(QStringLiteral("dlgComsetting"));
  setWindowTitle(QStringLiteral("Communication setting"));
  const QStringList choices[5] = {
      {QStringLiteral("9600"), QStringLiteral("19200")},
      {QStringLiteral("7"), QStringLiteral("8")},
      {QStringLiteral("ODD"), QStringLiteral("EVEN"), QStringLiteral("NONE")},
      {QStringLiteral("1"), QStringLiteral("2")},
      {QStringLiteral("COM1"), QStringLiteral("COM2")},
  };
  const char *labels[5] = {"Baud rate", "Data bits", "Parity", "Stop bits", "Port"};
  auto *form = new QFormLayout;
  for (int i = 0; i < 5; ++i) {
    combo_[i] = new QComboBox(this);
    combo_[i]->setObjectName(QStringLiteral("Combo1_%1").arg(i));
    combo_[i]->addItems(choices[i]);
    form->addRow(QString::fromLatin1(labels[i]), combo_[i]);
  }
  // The lists show the selected port's values.
  const auto port = static_cast<std::size_t>(settings_.SelectedPort == 2 ? 2 : 1);
  combo_[0]->setCurrentText(QString::number(settings_.BaudRate[port]));
  combo_[1]->setCurrentText(QString::number(settings_.DataBits[port]));
  combo_[2]->setCurrentText(QString::fromStdString(settings_.Parity[port]));
  combo_[3]->setCurrentText(QString::number(settings_.StopBits[port]));
  combo_[4]->setCurrentText(port == 2 ? QStringLiteral("COM2") : QStringLiteral("COM1"));

  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("Command1"));
  ok->setDefault(true);
  auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("Command2"));
  connect(ok, &QPushButton::clicked, this, [this] { Command1_Click(); });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto *buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  auto *layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addLayout(buttons);
}

void ComSettingDialog::Command1_Click() {
  settings_.SelectedPort = combo_[4]->currentText() == QStringLiteral("COM1") ? 1 : 2;
  const auto port = static_cast<std::size_t>(settings_.SelectedPort);
  settings_.BaudRate[port] = combo_[0]->currentText().toInt();
  settings_.DataBits[port] = combo_[1]->currentText().toInt();
  settings_.Parity[port] = combo_[2]->currentText().toStdString();
  settings_.StopBits[port] = combo_[3]->currentText().toInt();
  accept();
}

}  // namespace recscope
