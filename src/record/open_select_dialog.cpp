#include "record/open_select_dialog.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "record/open_command.h"
#include "shell/catalogue.h"

namespace recscope {

namespace {
QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
}  // namespace

OpenSelectDialog::OpenSelectDialog(QMdiArea *mdi, QWidget *parent) : QDialog(parent), mdi_(mdi) {
  setObjectName("frmOpenSelect");
  setWindowTitle(Text(41001));
  auto *label = new QLabel(Text(41002), this);
  label->setObjectName("Label1");
  auto *direct = new QPushButton(Text(41003), this);
  direct->setObjectName("cmdDirect");
  auto *record = new QPushButton(Text(41004), this);
  record->setObjectName("cmdRecord");
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(direct);
  layout->addWidget(record);
  connect(direct, &QPushButton::clicked, this, &OpenSelectDialog::Direct);
  connect(record, &QPushButton::clicked, this, &OpenSelectDialog::Record);
}

OpenSelectDialog *OpenSelectDialog::ShowModal(QMdiArea *mdi, QWidget *parent) {
  auto *dialog = new OpenSelectDialog(mdi, parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setModal(true);
  dialog->show();
  return dialog;
}

QString OpenSelectDialog::ChooseRecordFile(QWidget *parent) {
  return QFileDialog::getOpenFileName(parent, Text(11170), QString(), Text(11173));
}

void OpenSelectDialog::Direct() {
  const QString path = chooser_(this);
  if (path.isEmpty()) return;  // cancelled: this dialog stays
  QCoreApplication::processEvents();
  hide();
  OpenOutcome outcome;
  OpenRecordPath(parentWidget(), mdi_, path, &outcome);
  if (outcome.showChoiceAgain) {
    setModal(true);
    show();
    return;
  }
  accept();
}

void OpenSelectDialog::Record() {
  accept();
  if (registry_) registry_();
}

}  // namespace recscope
