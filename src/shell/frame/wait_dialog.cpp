#include "shell/frame/wait_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "shell/catalogue.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {
QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }
}  // namespace

WaitDialog::WaitDialog(QWidget *mainWindow, std::function<void()> abortFetch,
                       std::function<void()> fetchEnded)
    : QDialog(nullptr),
      mainWindow_(mainWindow),
      abortFetch_(std::move(abortFetch)),
      fetchEnded_(std::move(fetchEnded)) {
  setObjectName("frmWait");
  setWindowTitle(Text(10722));
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);

  auto *label1 = new QLabel(Text(10950), this);
  label1->setObjectName("Label1");
  auto *label2 = new QLabel(Text(10951), this);
  label2->setObjectName("Label2");
  auto *end = new QPushButton(Text(10952), this);
  end->setObjectName("cmdEnd");
  auto *cancelButton = new QPushButton(Text(10953), this);
  cancelButton->setObjectName("cmdCancel");

  auto *buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(end);
  buttons->addWidget(cancelButton);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(label1);
  layout->addWidget(label2);
  layout->addLayout(buttons);

  connect(end, &QPushButton::clicked, this, [this] {
    if (abortFetch_) abortFetch_();
  });
  connect(cancelButton, &QPushButton::clicked, this, &WaitDialog::cancel);

  timer_ = new QTimer(this);
  timer_->setObjectName("Timer1");
  timer_->setInterval(100);
  connect(timer_, &QTimer::timeout, this, &WaitDialog::poll);
  timer_->start();

  if (mainWindow_) mainWindow_->setEnabled(false);
}

void WaitDialog::poll() {
  if (Shared().AutoRunning) return;
  timer_->stop();
  if (mainWindow_) mainWindow_->setEnabled(true);
  close();
  if (fetchEnded_) fetchEnded_();
}

void WaitDialog::cancel() {
  timer_->stop();
  if (mainWindow_) mainWindow_->setEnabled(true);
  close();
}

}  // namespace recscope
