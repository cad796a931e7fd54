#include "link/link_commands.h"

#include <QAction>
#include <QMessageBox>
#include <QTimer>
#include <optional>

#include "link/card_windows.h"
#include "link/com_setting_dialog.h"
#include "link/command_driver.h"
#include "link/monitor_session.h"
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

// The link of one main window: the command driver on its serial line and the
// communication monitor.
class LinkSession : public QObject {
 public:
  explicit LinkSession(MainWindow &frame) : QObject(&frame), frame_(frame) {
    driver_.Line = &line_;
    monitor_ = new MonitorSession(frame, driver_);
    monitor_->Stopped = [this] { SetRunning(false); };
  }
  ~LinkSession() override {
    delete monitor_;
    ComPortClose(driver_);
  }

  void ComMonitorStart();
  void ComMonitorStop();
  MonitorSession &monitor() { return *monitor_; }

 private:
  void SetRunning(bool running);

  MainWindow &frame_;
  SerialComLine line_;
  CommandDriver driver_;
  MonitorSession *monitor_ = nullptr;
  bool running_ = false;
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
  monitor_->ComMonitorStart();
}

void LinkSession::ComMonitorStop() { monitor_->ComMonitorStop(); }

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
  // While the monitor runs, Whole display and Bar graph bring back their views.
  window.setCommandHandler(QStringLiteral("mnuWindowAllmoment"), [session] {
    session->monitor().openView(SlotWindowKind::kComWholedisplay);
  });
  window.setCommandHandler(QStringLiteral("mnuWindowBarGrafu"), [session] {
    session->monitor().openView(SlotWindowKind::kComBargraph);
  });
  // The trend of slot 17: the one that stands is brought up, or the monitor's
  // trend comes back while it runs.
  window.setCommandHandler(QStringLiteral("mnuWindowTrando"),
                           [session] { session->monitor().openView(SlotWindowKind::kTrend); });
}

}  // namespace recscope
