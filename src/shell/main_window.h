#pragma once
#include <QMainWindow>

class QMdiArea;

namespace recscope {

// frmMain: the frame that holds every child window, with the menus, the tool bar
// and the status bar of the program.
class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit MainWindow(QWidget *parent = nullptr);

  QMdiArea *mdiArea() const { return mdi_; }

 private:
  QMdiArea *mdi_ = nullptr;
};

}  // namespace recscope
