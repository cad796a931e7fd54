#pragma once
// frmWait: stands while the main window waits for an automatic fetch to end.
#include <QDialog>
#include <functional>

class QTimer;

namespace recscope {

class WaitDialog : public QDialog {
  Q_OBJECT
 public:
  // `mainWindow` is disabled while the dialog stands. `abortFetch` is what
  // cmdEnd calls; `fetchEnded` is called once Timer1 sees the busy flag fall.
  WaitDialog(QWidget *mainWindow, std::function<void()> abortFetch,
             std::function<void()> fetchEnded);

 private:
  void poll();
  void cancel();

  QWidget *mainWindow_;
  std::function<void()> abortFetch_;
  std::function<void()> fetchEnded_;
  QTimer *timer_;
};

}  // namespace recscope
