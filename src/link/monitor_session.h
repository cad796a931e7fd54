#pragma once
// The communication monitor of the main window: ComMonitorStart and
// ComMonitorStop with Timer2, which polls the recorder every 100 ms, writes the
// record pair and redraws the views that are open: frmComBargraph,
// frmComInstantvalue, frmComWholedisplay and the trend of slot 17, all four
// from the ring in memory.
#include <QObject>
#include <QTimer>
#include <functional>

#include "link/monitor_run.h"
#include "shell/frame/slot_windows.h"

namespace recscope {

class MainWindow;

class MonitorSession : public QObject {
 public:
  MonitorSession(MainWindow &frame, CommandDriver &driver);
  ~MonitorSession() override;

  // The start; false when the setup read gave up (the monitor then stopped).
  bool ComMonitorStart();
  void ComMonitorStop();
  bool running() const { return run_.running(); }
  const MonitorRun &run() const { return run_; }
  // Brings up a window of the monitor (a view or the trend of slot 17): the one
  // that stands, or, while the monitor runs, a new one.
  void openView(SlotWindowKind kind);
  // Called at the end of every stop, the one chosen and the one after a failure.
  std::function<void()> Stopped;

 private:
  void Timer2_Timer();
  // Slot 17's trend windows draw the ring from now on.
  void FeedTrend();
  void CloseMonitorWindows();
  void Redraw();

  MainWindow &frame_;
  CommandDriver &driver_;
  MonitorRun run_;
  QTimer timer2_;
  bool busy_ = false;
};

}  // namespace recscope
