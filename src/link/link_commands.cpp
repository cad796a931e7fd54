#include "link/link_commands.h"

#include <QAction>
#include <QMessageBox>
#include <QTimer>
#include <optional>

#include "link/card_windows.h"
#include "link/com_setting_dialog.h"
#include "link/command_driver.h"
#include "link/monitor_sample.h"
#include "link/parameter_read.h"
#include "platform/serial_line.h"
#include "record/open_command.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/init_set.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kAbortQuestion = 11100;
constexpr int kAnswerYes = 6;
constexpr int kAnswerNo = 7;
constexpr int kTimer2Interval = 100;

// The link of one main window: the command driver on its serial line, the
// record the setup read began, the ring and Timer2.
class LinkSession : public QObject {
 public:
  explicit LinkSession(MainWindow &frame) : QObject(&frame), frame_(frame) {
    timer2_.setInterval(kTimer2Interval);
    connect(&timer2_, &QTimer::timeout, this, [this] { Timer2_Timer(); });
    driver_.Line = &line_;
  }
  ~LinkSession() override {
    timer2_.stop();
    ComPortClose(driver_);
    record_.Close();
  }

  void ComMonitorStart();
  void ComMonitorStop();

 private:
  void SetRunning(bool running);
  void Timer2_Timer();

  MainWindow &frame_;
  SerialComLine line_;
  CommandDriver driver_;
  ParameterRecord record_;
  PresentValueMap present_;
  MonitorRing ring_;
  std::optional<MonitorSample> previous_;
  QTimer timer2_;
  bool running_ = false;
  bool busy_ = false;
  int samplesWritten_ = 0;
};

void LinkSession::SetRunning(bool running) {
  running_ = running;
  for (const char *name :
       {"mnuRealTime", "mnuComunicationFileRead", "mnuComunicationStart", "mnuComunicationSetting"})
    if (QAction *a = frame_.command(QString::fromLatin1(name))) a->setEnabled(!running);
  if (QAction *end = frame_.command(QStringLiteral("mnuComunicationEnd"))) end->setEnabled(running);
}

void LinkSession::ComMonitorStart() {
  if (running_) return;
  SetRunning(true);
  ring_ = MonitorRing();
  previous_.reset();
  samplesWritten_ = 0;
  CrcTableInit(driver_);
  ComPortOpen(driver_, ComSettings());
  present_ = FillPresentValueMap(Registers());
  ParameterReadHooks hooks;
  hooks.ComErrorDialog = [this](int code) { return ComErrorDialog(&frame_, code); };
  hooks.NoFileName = [this] {
    ShowComposedMessage(&frame_, 0, QString::fromLatin1(kNoFileNameText));
  };
  if (!ComParameterRead(driver_, Registers(), Shared().ProgramFolder, hooks, record_)) {
    ComMonitorStop();
    return;
  }
  driver_.Timer2Enabled = true;
  timer2_.start();
}

void LinkSession::Timer2_Timer() {
  // The tick waits inside the transaction while events run: a tick that comes
  // meanwhile has nothing to do.
  if (busy_ || !driver_.Timer2Enabled) return;
  busy_ = true;
  ring_.Advance();
  const int result = ComTransact(driver_, kComReadInput, present_.Address, present_.Words, 3, 10,
                                 present_.ReplyLength);
  if (result != kComSuccess) {
    if (line_.IsOpen() && ComErrorDialog(&frame_, result) == kAnswerYes) {
      busy_ = false;
      ComMonitorStop();
      return;
    }
    ring_.StepBack();
    busy_ = false;
    return;
  }
  const MonitorSample sample = TakeSample(driver_.Registers, present_);
  for (const MonitorSample &s : SamplesToWrite(previous_ ? &*previous_ : nullptr, sample)) {
    const std::string bytes = SampleRecordBytes(s);
    if (record_.Measurement) std::fwrite(bytes.data(), 1, bytes.size(), record_.Measurement);
    ++samplesWritten_;
  }
  if (record_.Measurement) std::fflush(record_.Measurement);
  ring_.Store(sample, record_.Record.Channels);
  previous_ = sample;
  busy_ = false;
}

void LinkSession::ComMonitorStop() {
  timer2_.stop();
  ComPortClose(driver_);
  const bool written = record_.Measurement && samplesWritten_ > 0;
  record_.Close();
  SetRunning(false);
  // The record the monitor wrote opens like any other.
  if (written)
    OpenRecordPath(&frame_, frame_.mdiArea(), QString::fromStdString(record_.MeasurementPath));
}

}  // namespace

int ComErrorDialog(QWidget *parent, int code) {
  if (code >= 1 && code <= 5) ShowMessage(parent, kAbortQuestion + code);
  const int answer = ShowMessage(parent, kAbortQuestion, QMessageBox::Yes | QMessageBox::No);
  return answer == QMessageBox::Yes ? kAnswerYes : kAnswerNo;
}

void ConnectLinkCommands(MainWindow &window) {
  auto *session = new LinkSession(window);
  MainWindow *frame = &window;
  QAction *realTime = window.command(QStringLiteral("mnuRealTime"));
  QAction *fileRead = window.command(QStringLiteral("mnuComunicationFileRead"));
  if (fileRead) fileRead->setCheckable(true);
  // The two modes are a pair of check marks: the one chosen is set, the other
  // cleared.
  window.setCommandHandler(QStringLiteral("mnuRealTime"), [realTime, fileRead] {
    if (realTime) realTime->setChecked(true);
    if (fileRead) fileRead->setChecked(false);
  });
  window.setCommandHandler(QStringLiteral("mnuComunicationFileRead"), [realTime, fileRead] {
    if (fileRead) fileRead->setChecked(true);
    if (realTime) realTime->setChecked(false);
  });
  if (QAction *end = window.command(QStringLiteral("mnuComunicationEnd"))) end->setEnabled(false);

  window.setCommandHandler(QStringLiteral("mnuComunicationSetting"), [frame] {
    auto *dialog = new ComSettingDialog(ComSettings(), frame);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(true);
    dialog->show();
  });
  window.setCommandHandler(QStringLiteral("mnuComunicationStart"),
                           [session, realTime, fileRead, frame] {
                             if (realTime && realTime->isChecked()) session->ComMonitorStart();
                             // With "Ｆile read" checked the start lists the recorder's card.
                             else if (fileRead && fileRead->isChecked())
                               ComFileListOpen(*frame);
                           });
  window.setCommandHandler(QStringLiteral("mnuComunicationEnd"),
                           [session] { session->ComMonitorStop(); });
}

}  // namespace recscope
