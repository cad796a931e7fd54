#pragma once
// frmFileCoupling: the operator picks measurement files from folders and joins
// them into SC<name>.FDT (and AC<name>.FDT).
#include <QDialog>
#include <string>
#include <vector>

class QComboBox;
class QFileSystemModel;
class QListWidget;
class QTreeView;

namespace recscope {

class FileCouplingDialog : public QDialog {
  Q_OBJECT
 public:
  explicit FileCouplingDialog(QWidget *parent = nullptr);
  // Shows the S*.FDT files of `folder` in the file list.
  void setFolder(const QString &folder);
  const std::vector<std::string> &selection() const { return selection_; }

 private:
  void Select();
  void Clear();
  void AllClear();
  void Couple();
  void FillSelection();

  QString folder_;
  QComboBox *drives_ = nullptr;
  QTreeView *folders_ = nullptr;
  QFileSystemModel *model_ = nullptr;
  QListWidget *files_ = nullptr;
  QListWidget *chosen_ = nullptr;
  std::vector<std::string> selection_;
};

}  // namespace recscope
