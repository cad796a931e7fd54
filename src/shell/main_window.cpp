#include "shell/main_window.h"

#include <QMdiArea>

#include "shell/catalogue.h"

namespace recscope {

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent) {
  setObjectName("frmMain");
  setWindowTitle(QString::fromStdString(GetMessageText(10722)));
  mdi_ = new QMdiArea(this);
  mdi_->setObjectName("mdiArea");
  setCentralWidget(mdi_);
  resize(1000, 700);
}

}  // namespace recscope
