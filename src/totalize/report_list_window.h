#pragma once
// frmChohyoList: the sheet of a report, filled from the program's statistics
// table through the template of its type, and saved as CSV by cmdSave.
#include <QWidget>
#include <string>
#include <vector>

#include "totalize/report.h"

class QPushButton;
class QTableWidget;

namespace recscope {

class ReportListWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ReportListWindow(int slot, QWidget *parent = nullptr);

  int slot() const { return slot_; }
  int type() const { return type_; }
  // Caption, template walk and grid for `type`; 11107 when the template fails.
  void subMakeChohyo(int type);
  // cmdSave: the CSV beside the record; 41204 when written, 11107 otherwise.
  void save();
  // The path the save writes.
  std::string csvPath() const;
  const std::vector<std::vector<std::string>> &sheet() const { return sheet_; }

 protected:
  void resizeEvent(QResizeEvent *event) override;

 private:
  ChohyoContext Context() const;
  std::string TemplatePath() const;

  int slot_;
  int type_ = kDailyReport;
  std::vector<std::vector<std::string>> sheet_;
  QTableWidget *grid_ = nullptr;
  QPushButton *save_ = nullptr;
};

}  // namespace recscope
