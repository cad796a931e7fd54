#include "record/read_dialog.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "shell/catalogue.h"

namespace recscope {

namespace {
constexpr int kReadingFile = 10611;
}

ReadDialog::ReadDialog(QWidget *parent) : ReadDialog(parent, kReadingFile, kReadingFile) {}

ReadDialog::ReadDialog(QWidget *parent, int captionId, int labelId) : QDialog(parent) {
  setObjectName("dlgRead");
  setModal(false);
  setWindowTitle(QString::fromStdString(GetMessageText(captionId)));
  label_ = new QLabel(QString::fromStdString(GetMessageText(labelId)), this);
  label_->setObjectName("Label1");
  bar_ = new QProgressBar(this);
  bar_->setObjectName("ProgressBar1");
  bar_->setRange(0, 1);
  bar_->setValue(0);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(label_);
  layout->addWidget(bar_);
  resize(360, 90);
}

void ReadDialog::SetProgress(int value, int maximum) {
  if (maximum > 0 && bar_->maximum() != maximum) bar_->setRange(0, maximum);
  bar_->setValue(std::min(value, bar_->maximum()));
  QCoreApplication::processEvents();
}

}  // namespace recscope
