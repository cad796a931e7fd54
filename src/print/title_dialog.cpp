#include "print/title_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "print/print_setting_form.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"

namespace recscope {

namespace {

constexpr int kCaption = 10660;
constexpr int kTitleName = 10661;
constexpr int kCancel = 11000;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

}  // namespace

TitleDialog::TitleDialog(TrendView &view, QWidget *parent) : QDialog(parent), view_(view) {
  setObjectName(QStringLiteral("dlgTitle"));
  setWindowTitle(Text(kCaption));
  setModal(true);

  auto *label = new QLabel(Text(kTitleName), this);
  label->setObjectName(QStringLiteral("Label1"));
  text1_ = new QLineEdit(QString::fromStdString(view_.PrintTitle), this);
  text1_->setObjectName(QStringLiteral("Text1"));
  text1_->setMinimumWidth(420);
  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("Command1"));
  ok->setDefault(true);
  auto *cancel = new QPushButton(Text(kCancel), this);
  cancel->setObjectName(QStringLiteral("Command2"));

  auto *row = new QHBoxLayout();
  row->addWidget(label);
  row->addWidget(text1_, 1);
  auto *buttons = new QHBoxLayout();
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  auto *layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addLayout(buttons);

  connect(ok, &QPushButton::clicked, this, &TitleDialog::onOk);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void TitleDialog::onOk() {
  const std::string title = text1_->text().toStdString();
  if (!PrintTitleFits(title)) {
    ShowMessage(this, kPrintTitleTooLong);
    text1_->setFocus();
    return;
  }
  view_.PrintTitle = title;
  accept();
}

bool ShowTitleDialog(QWidget *parent, TrendView &view) {
  TitleDialog dialog(view, parent);
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace recscope
