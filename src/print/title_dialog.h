#pragma once
// dlgTitle: the title printed at the head of each page of a trend. It holds at
// most 80 bytes in the code page of the program's files; a longer title is
// refused with 18700 and the dialog stays open for a shorter one.
#include <QDialog>

#include "trend/trend_view.h"

class QLineEdit;

namespace recscope {

class TitleDialog : public QDialog {
  Q_OBJECT
 public:
  // The text starts from the view's title; OK stores it there.
  explicit TitleDialog(TrendView &view, QWidget *parent = nullptr);

  void onOk();

 private:
  TrendView &view_;
  QLineEdit *text1_;
};

// Opens dlgTitle modally over `parent` for a trend view. True when a title was
// stored.
bool ShowTitleDialog(QWidget *parent, TrendView &view);

}  // namespace recscope
