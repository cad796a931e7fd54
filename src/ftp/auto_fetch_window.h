#pragma once
// frmRecord: the ten recorders of the automatic fetch, the cycle, the next time,
// the operation log and the start and stop buttons. The window only shows and
// routes: the settings, the checks and the schedule are core code, the run
// belongs to the main window's AutoFetchControl and goes on when this window is
// closed.
#include <QDialog>
#include <array>

#include "ftp/auto_fetch_settings.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace recscope {

class AutoFetchControl;

class RecordFetchWindow : public QDialog {
  Q_OBJECT
 public:
  RecordFetchWindow(AutoFetchControl *control, QWidget *parent);

  // The rows as they stand in the fields.
  FetchRecorders recorders() const;
  FetchCycle cycle() const;

  // LogShow: the newest lines of LogMsg.txt in txtLogwin, scrolled to the end.
  void LogShow();

 private:
  struct Row {
    QLabel *number = nullptr;
    QCheckBox *on = nullptr;
    std::array<QLineEdit *, 4> ip{};
    QLineEdit *user = nullptr;
    QLineEdit *password = nullptr;
    QLabel *status = nullptr;
  };

  void loadSettings();
  void onStart();
  void onStop();
  void checkAddressPart(QLineEdit *part);
  void showStatus(int recorderNo);
  void showSchedule();

  AutoFetchControl *control_;
  std::array<Row, kFetchRecorders> rows_;
  QSpinBox *days_ = nullptr;
  QSpinBox *hours_ = nullptr;
  QLabel *nextTime_ = nullptr;
  QPlainTextEdit *log_ = nullptr;
  QPushButton *start_ = nullptr;
  QPushButton *stop_ = nullptr;
  bool checking_ = false;
};

}  // namespace recscope
