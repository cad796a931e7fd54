#pragma once
// frmEventlist: the alarms, messages and flags of one open record in a grid with
// three tabs. A click on a row sends a cursor of the slot's trend window there;
// cmdSetting opens the event setting dialog through the opener the program sets.
#include <QPointer>
#include <QWidget>
#include <functional>

#include "views/grid_copy.h"

class QTabBar;
class QTableWidget;
class QPushButton;

namespace recscope {

class TrendWindow;

class EventListWindow : public QWidget {
  Q_OBJECT
 public:
  explicit EventListWindow(int slot, QWidget *parent = nullptr);

  int slot() const { return slot_; }
  int listTab() const { return listTab_; }
  // The trend window of the slot: its cursors take the row clicks and its event
  // search selects rows here.
  void attachTrend(TrendWindow *trend);

  // Columns, titles and rows of `tab` (1 alarm, 2 message, 3 flag).
  void FillCells2(int tab);
  // The current tab filled again (flags added or removed, positions, date format).
  void Refill();
  // A change of tab by key: the same tab refills nothing.
  void selectTab(int tab);
  // A find of the event search (kind 0 alarm, 1 message, 2 flag; row 0-based in
  // its list): its tab, its row selected and scrolled into view.
  void selectEvent(int kind, int row);
  // A click on grid row `row` (1 for the first event), as the operator's.
  void clickRow(int row);

  // The grid as shown, row 0 the titles.
  const GridRows &grid() const { return grid_; }
  // The copy text of the selection, with row 0 first when `withTitle`.
  std::string copyText(bool withTitle) const;
  // EventMSFlexGrid1_copy: the copy text replaces the clipboard.
  void EventMSFlexGrid1_copy(bool withTitle);

  // What cmdSetting opens: the event setting dialog, given this window, its tab
  // and the grid's top row (1 for the first event).
  using SettingOpener = std::function<void(EventListWindow &, int listTab, int topRow)>;
  static void SetEventSettingOpener(SettingOpener opener);
  // The Shift state a row click compares with the trend's ShiftBaseline.
  static void SetShiftStateSource(std::function<int()> source);

 private:
  void onSetting();

  int slot_;
  int listTab_ = 0;
  GridRows grid_;
  QPointer<TrendWindow> trend_;
  QTabBar *tabs_ = nullptr;
  QTableWidget *table_ = nullptr;
  QPushButton *cmdSetting_ = nullptr;
  bool updating_ = false;
};

}  // namespace recscope
