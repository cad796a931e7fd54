#pragma once
// The instant value window of one open record (frmInstantvalue): a page of the
// record's samples as a grid, a tab a group, four paging buttons. It shows what
// InstantValues (views/instant_values.h) holds and routes the operator's
// actions to it; the trend window's cursor and tabs reach it through the slot
// window route.
#include <QWidget>

#include "views/instant_values.h"

class QTabBar;
class QTableWidget;
class QPushButton;

namespace recscope {

class InstantValueWindow : public QWidget {
  Q_OBJECT
 public:
  explicit InstantValueWindow(int slot, QWidget *parent = nullptr);
  ~InstantValueWindow() override;

  int slot() const { return slot_; }
  const InstantValues &values() const { return values_; }

  // EGroupChange: the tab of `groupNo` is selected, the columns are built and
  // the page is refilled. Nothing when the group has no tab or is shown already.
  void selectGroup(int groupNo);
  // The trend's cursor stands at `time`: the list goes to its record.
  void followCursorTime(std::int32_t time);
  // The paging buttons.
  void fillTop();
  void fillEnd();
  void fillBefore();
  void fillNext();
  // PVMSFlexGrid1_copy: the selection onto the clipboard, with the title rows
  // first when `withTitles`.
  void copySelection(bool withTitles);
  // The date format or decimal character changed: the page is shown again.
  void refreshFormat();

 signals:
  // The operator chose another tab: the trend window selects the group too.
  void groupChosen(int slot, int groupNo);
  // The operator clicked a row: the trend's cursor goes to that record's time
  // (cursor 1, or 2 by the Shift state as on the plot), without moving this list.
  void rowChosen(int slot, std::int32_t time);

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;

 private:
  void ShowPage();
  void ShowSelection();
  void ShowColumns();
  void LayoutControls();

  int slot_;
  InstantValues values_;
  QTabBar *tabs_ = nullptr;
  QTableWidget *grid_ = nullptr;
  QPushButton *top_ = nullptr;
  QPushButton *end_ = nullptr;
  QPushButton *before_ = nullptr;
  QPushButton *next_ = nullptr;
  bool updating_ = false;
};

}  // namespace recscope
