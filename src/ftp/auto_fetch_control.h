#pragma once
// The main window's side of the automatic fetch: AutoFTPTimer, which steps the
// due time and starts a run, LampTimer and the lamp picCommStatus, the status
// panel, cmdCancel of a run, and the busy flag AutoRunning that the main window's
// close waits on. A run goes on a worker thread so that the window stays alive;
// what it reports comes back to this object on the window thread.
#include <QObject>
#include <QString>
#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>

#include "ftp/auto_fetch.h"
#include "ftp/auto_fetch_settings.h"

class QLabel;
class QPushButton;
class QTimer;

namespace recscope {

class MainWindow;
class RecordFetchWindow;

class AutoFetchControl : public QObject {
  Q_OBJECT
 public:
  explicit AutoFetchControl(MainWindow *frame);
  ~AutoFetchControl() override;

  // The control of the main window (made by ConnectDesktopCommands), or nullptr.
  static AutoFetchControl *Of(QObject *frame);

  // mnuCommRec: frmRecord opens, or comes to the front.
  RecordFetchWindow *showWindow();
  RecordFetchWindow *window() const { return window_; }

  // cmdStart after its checks and the settings write: logs 10850 and turns the
  // timer on; the next tick asks whether to fetch at once.
  void start();
  // cmdStop: AutoStop, AUTO 0, log 10851, "停止中", the status texts cleared.
  void stop();
  // Start-up with the fetch left on (AUTO 1 and a complete set): logs 10852 and
  // waits one cycle.
  void resume();
  // Once the main window's load has looked at the settings: resume() when the
  // fetch was left on.
  void resumeAfterLoad();

  bool isOn() const { return on_; }
  bool isRunning() const { return running_; }
  std::int64_t nextFetchTime() const { return timer_.NextFetchTime(); }
  const std::array<QString, kFetchRecorders> &recorderStatus() const { return status_; }

  // Tests fix the clock of the due time.
  void setClock(std::function<std::int64_t()> clock);

 signals:
  void statusChanged(int recorderNo);
  void logged();
  void scheduleChanged();
  void runFinished();

 private:
  void tick();
  void beginRun();
  void endRun(const FetchRunResult &result);
  void blink();
  std::string iniPath() const;

  MainWindow *frame_;
  QTimer *autoTimer_ = nullptr;
  QTimer *lampTimer_ = nullptr;
  QLabel *lamp_ = nullptr;
  QPushButton *cancel_ = nullptr;
  RecordFetchWindow *window_ = nullptr;
  FetchTimer timer_;
  std::array<QString, kFetchRecorders> status_;
  bool on_ = false;
  bool running_ = false;
  bool asking_ = false;
  bool lampRed_ = false;
  std::atomic<bool> stopRun_{false};
  std::thread worker_;
};

}  // namespace recscope
