#include "trend/scale_edit_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "trend/scale_edit.h"

namespace recscope {

namespace {

constexpr int kTitle = 10620;
constexpr int kMaxLabel = 10621;
constexpr int kMinLabel = 10622;
constexpr int kCancelCaption = 11000;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

}  // namespace

bool RefusalPointsAtMaximum(const RecordFileInfo &info, int channelIndex, int messageId,
                            const std::string &maxText) {
  // A check of one value alone fails on the maximum only when the maximum is
  // the wrong one; checked against itself it passes every single-value check.
  ScaleEditCheck alone = CheckScaleEdit(info, channelIndex, maxText, maxText);
  switch (messageId) {
    case 18300:
    case 18301:
    case 20115:
      return alone.messageId == messageId;
    default:
      return true;
  }
}

ScaleEditDialog::ScaleEditDialog(RecordFileInfo &info, int channelIndex, QWidget *parent)
    : QDialog(parent), info_(info), channelIndex_(channelIndex) {
  setObjectName(QStringLiteral("dlglenge"));
  setWindowTitle(Text(kTitle));
  setModal(true);

  ScaleEditTexts start = ScaleEditStartTexts(info, channelIndex);
  txtMax_ = new QLineEdit(QString::fromStdString(start.maxText), this);
  txtMax_->setObjectName(QStringLiteral("txtMax"));
  txtMin_ = new QLineEdit(QString::fromStdString(start.minText), this);
  txtMin_->setObjectName(QStringLiteral("txtMin"));
  auto *maxLabel = new QLabel(Text(kMaxLabel), this);
  maxLabel->setObjectName(QStringLiteral("Label1"));
  auto *minLabel = new QLabel(Text(kMinLabel), this);
  minLabel->setObjectName(QStringLiteral("Label2"));

  auto *ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("OKButton"));
  ok->setDefault(true);
  auto *cancel = new QPushButton(Text(kCancelCaption), this);
  cancel->setObjectName(QStringLiteral("CancelButton"));

  auto *fields = new QGridLayout;
  fields->addWidget(maxLabel, 0, 0);
  fields->addWidget(txtMax_, 0, 1);
  fields->addWidget(minLabel, 1, 0);
  fields->addWidget(txtMin_, 1, 1);
  auto *buttons = new QVBoxLayout;
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  buttons->addStretch();
  auto *layout = new QHBoxLayout(this);
  layout->addLayout(fields);
  layout->addLayout(buttons);

  connect(ok, &QPushButton::clicked, this, &ScaleEditDialog::onOk);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ScaleEditDialog::onOk() {
  std::string maxText = txtMax_->text().toStdString();
  std::string minText = txtMin_->text().toStdString();
  ScaleEditCheck check = CheckScaleEdit(info_, channelIndex_, maxText, minText);
  if (check.messageId != 0) {
    // The dialog stays open on the wrong field until it is right or cancelled.
    ShowMessage(this, check.messageId, QMessageBox::Ok, check.placeholders);
    QLineEdit *wrong =
        RefusalPointsAtMaximum(info_, channelIndex_, check.messageId, maxText) ? txtMax_ : txtMin_;
    wrong->setFocus();
    wrong->selectAll();
    return;
  }
  ApplyScaleEdit(info_, channelIndex_, maxText, minText);
  accept();
}

}  // namespace recscope
