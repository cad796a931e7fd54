#pragma once
// dlgSyousai: the recording ranges of all channels and the group names of one
// open record, group by group, with copy and paste between groups. It belongs
// to the slot of its trend window and goes when that window closes.
#include <QDialog>
#include <QPointer>

#include "trend/display_settings.h"

class QTabBar;
class QTableWidget;
class QLineEdit;

namespace recscope {

class TrendWindow;

class DetailDialog : public QDialog {
  Q_OBJECT
 public:
  DetailDialog(TrendWindow *trend, QWidget *parent = nullptr);

  int slot() const { return slot_; }
  // The group the grid shows.
  int currentGroup() const { return group_; }
  const DetailEdits &edits() const { return edits_; }

  // Command1, Command2: the current group's cells to the copy buffer, and back
  // onto the current group.
  void onCopy();
  void onPaste();
  // Command3 (OK): the checks of every place in order; the message of the first
  // refusal with its group and cell shown, or everything applied, the trend
  // redrawn and the dialog closed.
  void onOk();

 private:
  void keepGrid();
  void fillGrid();
  void selectGroup(int group);

  QPointer<TrendWindow> trend_;
  int slot_;
  int group_ = 1;
  DetailEdits edits_;
  DetailCells copied_;
  bool haveCopy_ = false;
  QTabBar *tabs_;
  QTableWidget *grid_;
  QLineEdit *text1_;
};

// The route of mnuViewd: the slot's detail dialog over `parent`, modal, closed
// with the trend window that owns the slot.
DetailDialog *ShowDetailDialog(TrendWindow *trend, QWidget *parent);

}  // namespace recscope
