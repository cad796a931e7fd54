#pragma once
// frmChohyoSelect: the choice of the daily, monthly or annual report for the
// current record. A choice gathers the statistics of the period holding the base
// time into the program's table and hands the type on; a missing working file
// shows 11107 and the dialog stays.
#include <QDialog>
#include <cstdint>
#include <functional>

namespace recscope {

class ReportSelectDialog : public QDialog {
  Q_OBJECT
 public:
  // `opener` receives the type once the table is filled and the dialog is gone.
  ReportSelectDialog(int slot, std::int64_t baseTime, std::function<void(int type)> opener,
                     QWidget *parent = nullptr);

  // Gathers the statistics of `type` (a click on cmdDay, cmdMonth or cmdYear).
  void choose(int type);

 private:
  int slot_;
  std::int64_t baseTime_;
  std::function<void(int)> opener_;
};

}  // namespace recscope
