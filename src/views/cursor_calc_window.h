#pragma once
// CurData: the maximum, minimum and average of each member of a group over the
// span between the two cursors of the slot's trend window. It follows the
// trend's cursors and group, and a tab chosen here goes to the trend.
#include <QPointer>
#include <QWidget>

#include "trend/trend_view.h"
#include "views/cursor_statistics.h"
#include "views/grid_copy.h"

class QLabel;
class QTabBar;
class QTableWidget;

namespace recscope {

class TrendWindow;

class CursorCalcWindow : public QWidget {
  Q_OBJECT
 public:
  explicit CursorCalcWindow(int slot, QWidget *parent = nullptr);

  int slot() const { return slot_; }
  int currentGroup() const { return groups_.CurrentGroup; }
  // The trend window whose cursors and group this window follows.
  void attachTrend(TrendWindow *trend);

  // The span from the cursors (the file's ends for an unset cursor) and the four labels.
  void get_ComputeTime();
  // Span, statistics and the value rows of the grid.
  void CurCompute();
  // Title rows for the group's members, then CurCompute.
  void CGroupChange(int groupNo);
  // The trend's choice of group: the same tab here, without telling it back.
  void selectGroup(int groupNo);

  const ComputeSpan &span() const { return span_; }
  const GridRows &grid() const { return grid_; }
  // With titles: the span line and the whole grid; without: the selected cells.
  std::string copyText(bool withTitle) const;
  // MathMSFlexGrid1_copy: the copy text replaces the clipboard.
  void MathMSFlexGrid1_copy(bool withTitle);

 private:
  void ShowGrid();

  int slot_;
  TrendView groups_;  // the group tabs as the trend window has them
  std::vector<int> columns_;
  ComputeSpan span_;
  GridRows grid_;
  QPointer<TrendWindow> trend_;
  QTabBar *tabs_ = nullptr;
  QTableWidget *table_ = nullptr;
  QLabel *lblStTime_ = nullptr;
  QLabel *lblEndTime_ = nullptr;
  QLabel *lblTimeWid_ = nullptr;
  QLabel *lblDataNum_ = nullptr;
  bool updating_ = false;
};

}  // namespace recscope
