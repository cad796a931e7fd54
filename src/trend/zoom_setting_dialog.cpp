#include "trend/zoom_setting_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "shell/frame/message_service.h"

namespace recscope {

ZoomSettingDialog::ZoomSettingDialog(std::int32_t highestReduction, QWidget *parent)
    : QDialog(parent), highest_(highestReduction) {
  setObjectName(QStringLiteral("frmZoomsetting"));
  auto *layout = new QHBoxLayout(this);
  enlarge_ = new QRadioButton(QStringLiteral("x"), this);
  enlarge_->setObjectName(QStringLiteral("Option1"));
  enlarge_->setChecked(true);
  reduce_ = new QRadioButton(QStringLiteral("1/"), this);
  reduce_->setObjectName(QStringLiteral("Option2"));
  text1_ = new QLineEdit(QStringLiteral("1"), this);
  text1_->setObjectName(QStringLiteral("Text1"));
  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("OKButton"));
  layout->addWidget(enlarge_);
  layout->addWidget(reduce_);
  layout->addWidget(text1_);
  layout->addWidget(ok);
  connect(ok, &QPushButton::clicked, this, &ZoomSettingDialog::onOk);
}

void ZoomSettingDialog::onOk() {
  setting_ = CheckZoomSetting(text1_->text().toStdString(), enlarge_->isChecked(), highest_);
  if (setting_.messageId != 0) {
    // The dialog stays open until the factor is right or it is cancelled.
    ShowMessage(this, setting_.messageId, QMessageBox::Ok, setting_.placeholders);
    return;
  }
  accept();
}

}  // namespace recscope
