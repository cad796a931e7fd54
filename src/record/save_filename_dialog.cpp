#include "record/save_filename_dialog.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "record/record_output_commands.h"
#include "record/save_as.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"

namespace recscope {

namespace {
constexpr int kConfirmName = 18500;
constexpr int kCancel = 11000;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
}  // namespace

SaveFileNameDialog::SaveFileNameDialog(const QString &folder, QWidget *parent)
    : QDialog(parent), folder_(folder) {
  setObjectName("dlgSavefilename");
  setModal(true);
  text_ = new QLineEdit(this);
  text_->setObjectName("txtFileName");
  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName("cmdOK");
  ok->setDefault(true);
  auto *cancel = new QPushButton(Text(kCancel), this);
  cancel->setObjectName("cmdCancel");
  auto *buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, &SaveFileNameDialog::Confirm);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

QString SaveFileNameDialog::RecordPath() const { return folder_ + "/S" + text_->text() + ".FDT"; }
QString SaveFileNameDialog::AlarmPath() const { return folder_ + "/A" + text_->text() + ".FDT"; }

void SaveFileNameDialog::Confirm() {
  if (ShowComposedMessage(this, kConfirmName, Text(kConfirmName),
                          QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
    return;
  const int refused = CheckSaveFileName(folder_.toStdString(), text_->text().toStdString());
  if (refused != 0) {
    ShowComposedMessage(this, refused, Text(refused), QMessageBox::Ok);
    return;
  }
  accept();
}

}  // namespace recscope
