#pragma once
// dlgSavefilename: asks for the variable part of a record name (1 to 6 digits and
// letters) for a folder chosen before, as the print and card paths save a record.
#include <QDialog>
#include <QString>

class QLineEdit;
class QPushButton;

namespace recscope {

class SaveFileNameDialog : public QDialog {
  Q_OBJECT
 public:
  SaveFileNameDialog(const QString &folder, QWidget *parent = nullptr);
  // The measurement file's path once accepted: the folder, "/S", the text, ".FDT".
  QString RecordPath() const;
  QString AlarmPath() const;

 private:
  void Confirm();

  QString folder_;
  QLineEdit *text_ = nullptr;
};

}  // namespace recscope
