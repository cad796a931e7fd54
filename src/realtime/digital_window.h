#pragma once
// frmDigital: the monitor's present values and alarm states as a grid, a row a
// channel, a page of channels a tab.
#include <QWidget>

class QMdiArea;
class QTabBar;
class QTableWidget;

namespace recscope {

class DigitalWindow : public QWidget {
  Q_OBJECT
 public:
  explicit DigitalWindow(QWidget *parent = nullptr);
  static DigitalWindow *Instance();

  // setDigitalForm: the grid's columns and rows for the model, and the pages.
  void setDigitalForm();
  // The cells of the chosen page from the newest sample and the alarm flags.
  void refresh();

 private:
  QTabBar *tabs_ = nullptr;
  QTableWidget *grid_ = nullptr;
  int pages_ = 0;
};

// mnuWindowRealTimeDigital: shows frmDigital in the MDI area (or the open one).
DigitalWindow *ShowDigital(QMdiArea *mdi);

}  // namespace recscope
