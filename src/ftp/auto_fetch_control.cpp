#include "ftp/auto_fetch_control.h"

#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>

#include "ftp/auto_fetch_window.h"
#include "ftp/operation_log.h"
#include "shell/catalogue.h"
#include "shell/fetch_schedule_check.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// The due test has whole seconds: a tick every 100 ms finds a due time in time.
constexpr int kTickMilliseconds = 100;
constexpr int kLampMilliseconds = 2500;

void PaintLamp(QLabel *lamp, bool red) {
  lamp->setStyleSheet(red ? QStringLiteral("background-color: rgb(221, 0, 0);")
                          : QStringLiteral("background-color: #888888;"));
  lamp->setProperty("lampColour", red ? 221 : 0x888888);
}

}  // namespace

AutoFetchControl::AutoFetchControl(MainWindow *frame)
    : QObject(frame), frame_(frame), timer_(LocalNowSeconds) {
  setObjectName("AutoFetch");
  for (QString &status : status_) status = QStringLiteral(" ");

  autoTimer_ = new QTimer(this);
  autoTimer_->setObjectName("AutoFTPTimer");
  autoTimer_->setInterval(kTickMilliseconds);
  connect(autoTimer_, &QTimer::timeout, this, &AutoFetchControl::tick);

  lampTimer_ = new QTimer(this);
  lampTimer_->setObjectName("LampTimer");
  lampTimer_->setInterval(kLampMilliseconds);
  connect(lampTimer_, &QTimer::timeout, this, &AutoFetchControl::blink);

  lamp_ = new QLabel(frame);
  lamp_->setObjectName("picCommStatus");
  lamp_->setFixedSize(14, 14);
  PaintLamp(lamp_, false);
  cancel_ = new QPushButton(Text(11000), frame);
  cancel_->setObjectName("cmdCancel");
  cancel_->hide();
  connect(cancel_, &QPushButton::clicked, this, [this] {
    Shared().AutoStop = true;
    stopRun_ = true;
  });
  frame->statusBar()->addPermanentWidget(cancel_);
  frame->statusBar()->addPermanentWidget(lamp_);
}

AutoFetchControl::~AutoFetchControl() {
  stopRun_ = true;
  if (worker_.joinable()) worker_.join();
  if (running_) Shared().AutoRunning = false;
}

AutoFetchControl *AutoFetchControl::Of(QObject *frame) {
  return frame ? frame->findChild<AutoFetchControl *>("AutoFetch", Qt::FindDirectChildrenOnly)
               : nullptr;
}

std::string AutoFetchControl::iniPath() const { return ViewerComIniPath(Shared().ProgramFolder); }

void AutoFetchControl::setClock(std::function<std::int64_t()> clock) {
  timer_ = FetchTimer(std::move(clock));
}

RecordFetchWindow *AutoFetchControl::showWindow() {
  if (!window_) {
    window_ = new RecordFetchWindow(this, frame_);
    connect(window_, &QObject::destroyed, this, [this] { window_ = nullptr; });
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
  return window_;
}

void AutoFetchControl::start() {
  for (QString &status : status_) status = QStringLiteral(" ");
  for (int n = 1; n <= kFetchRecorders; ++n) emit statusChanged(n);
  LogWrite(Shared().ProgramFolder, GetMessageText(10850));
  emit logged();
  on_ = true;
  timer_.Start(ReadIni("CYCLE", "FTP", iniPath()));
  frame_->setAutoFetchStatus(QString());
  autoTimer_->start();
  lampTimer_->start();
  emit scheduleChanged();
}

void AutoFetchControl::resume() {
  on_ = true;
  LogWrite(Shared().ProgramFolder, GetMessageText(10852));
  emit logged();
  timer_.RunEnded(ReadIni("CYCLE", "FTP", iniPath()));
  autoTimer_->start();
  lampTimer_->start();
  emit scheduleChanged();
}

void AutoFetchControl::resumeAfterLoad() {
  QTimer::singleShot(0, this, [this] {
    const FetchScheduleCheck check = CheckFetchSchedule(iniPath());
    if (check.Complete && check.AutoOn && !on_) resume();
  });
}

void AutoFetchControl::stop() {
  Shared().AutoStop = true;
  stopRun_ = true;
  on_ = false;
  autoTimer_->stop();
  lampTimer_->stop();
  lampRed_ = false;
  PaintLamp(lamp_, false);
  WriteIni("0", "AUTO", "FTP", iniPath());
  LogWrite(Shared().ProgramFolder, GetMessageText(10851));
  emit logged();
  frame_->setAutoFetchStatus(Text(10802));
  for (QString &status : status_) status = QStringLiteral(" ");
  for (int n = 1; n <= kFetchRecorders; ++n) emit statusChanged(n);
  emit scheduleChanged();
}

void AutoFetchControl::tick() {
  if (running_) {
    // frmWait's cmdEnd asks through the shared flag.
    if (Shared().AutoStop) stopRun_ = true;
    return;
  }
  if (asking_ || !on_) return;
  asking_ = true;
  const std::int64_t before = timer_.NextFetchTime();
  const bool due = timer_.Tick(
      ReadIni("CYCLE", "FTP", iniPath()),
      [this] {
        QWidget *parent = window_ ? static_cast<QWidget *>(window_) : frame_;
        return ShowMessage(parent, 10870, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
      },
      false);
  asking_ = false;
  if (timer_.NextFetchTime() != before) emit scheduleChanged();
  if (due && on_) beginRun();
}

void AutoFetchControl::beginRun() {
  running_ = true;
  Shared().AutoRunning = true;
  Shared().AutoStop = false;
  stopRun_ = false;
  cancel_->show();
  frame_->setAutoFetchStatus(Text(10800));

  FetchRunOptions options;
  options.ProgramFolder = Shared().ProgramFolder;
  options.Port = FtpPortFromEnvironment();
  options.Stop = &stopRun_;
  FetchRunHooks hooks;
  hooks.Logged = [this](const std::string &) {
    QMetaObject::invokeMethod(
        this, [this] { emit logged(); }, Qt::QueuedConnection);
  };
  hooks.Status = [this](int n, const std::string &status) {
    const QString text = QString::fromStdString(status);
    QMetaObject::invokeMethod(
        this,
        [this, n, text] {
          status_[static_cast<std::size_t>(n - 1)] = text;
          emit statusChanged(n);
        },
        Qt::QueuedConnection);
  };
  hooks.Progress = [this](const std::string &progress) {
    const QString text = QString::fromStdString(progress);
    QMetaObject::invokeMethod(
        this, [this, text] { frame_->setAutoFetchStatus(text); }, Qt::QueuedConnection);
  };
  if (worker_.joinable()) worker_.join();
  worker_ = std::thread([this, options, hooks] {
    const FetchRunResult result = RunFetchCycle(options, hooks);
    QMetaObject::invokeMethod(
        this, [this, result] { endRun(result); }, Qt::QueuedConnection);
  });
}

void AutoFetchControl::endRun(const FetchRunResult &result) {
  if (worker_.joinable()) worker_.join();
  timer_.RunEnded(ReadIni("CYCLE", "FTP", iniPath()));
  running_ = false;
  Shared().AutoRunning = false;
  cancel_->hide();
  if (on_) frame_->setAutoFetchStatus(result.AnyFailed ? Text(10801) : QString());
  emit scheduleChanged();
  emit runFinished();
}

void AutoFetchControl::blink() {
  lampRed_ = !lampRed_;
  PaintLamp(lamp_, lampRed_);
}

}  // namespace recscope
