#pragma once
// frmAddition: the window of one open totalize file. A tab a group and one of all
// channels, the grid of the current page, and four paging buttons. It finds its
// slot again in its own caption at every event and makes it the current one;
// what it shows comes from totalize/totalize_view.h.
#include <QWidget>
#include <array>

#include "views/grid_copy.h"

class QFrame;
class QPushButton;
class QTabBar;
class QTableWidget;

namespace recscope {

class AdditionWindow : public QWidget {
  Q_OBJECT
 public:
  explicit AdditionWindow(int slot, QWidget *parent = nullptr);
  // Frees the slot: InUse 0 and one window fewer in the open count.
  ~AdditionWindow() override;

  // The slot written in the caption (the slot given at creation until the
  // caption is set); it becomes the current totalize slot.
  int slot();
  int currentTab() const { return currentTab_; }
  // The grid's texts as shown.
  const GridRows &grid() const { return cells_; }

  // A tab chosen by its key's number (1 to 8 a group, 9 all channels); nothing
  // for the tab in hand or one the window does not have.
  void selectTab(int tabNo);
  // cmdFilloperate(i): 0 file top, 1 file end, 2 page before, 3 page after.
  void pressButton(int index);
  // TotalMSFlexGrid1_copy: rows 0 to 3 and the selected rows onto the clipboard.
  void TotalMSFlexGrid1_copy();
  // The date format changed: the grid is filled again from the page in memory.
  void refreshFormat();

  // Key state of the copy shortcut, kept by the grid's key events.
  void gridKeyDown(int key);
  void gridKeyUp();

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  void ShowGrid();
  void SelectRow(int row);
  void ShowButtonStates(const std::array<bool, 4> &states);
  void LayoutControls();

  int slot_;
  int currentTab_ = 1;
  int ctrlDown_ = 0;  // 17 while Ctrl is down
  int cDown_ = 0;     // 67 while C is down
  GridRows cells_;
  QTabBar *tabs_ = nullptr;
  QFrame *pane_ = nullptr;
  QTableWidget *grid_ = nullptr;
  QWidget *strip_ = nullptr;
  std::array<QPushButton *, 4> buttons_{};
};

}  // namespace recscope
