#pragma once
// dlgRead: the small modeless dialog that shows the progress of an open, a CSV
// conversion or a save. It has no button: the work cannot be stopped.
#include <QDialog>

class QLabel;
class QProgressBar;

namespace recscope {

class ReadDialog : public QDialog {
  Q_OBJECT
 public:
  explicit ReadDialog(QWidget *parent = nullptr);
  // With the catalogue texts of its caption and its label.
  ReadDialog(QWidget *parent, int captionId, int labelId);
  // Moves the bar and lets the window system catch up.
  void SetProgress(int value, int maximum);
  QProgressBar *bar() const { return bar_; }

 private:
  QLabel *label_ = nullptr;
  QProgressBar *bar_ = nullptr;
};

}  // namespace recscope
