#pragma once
// The record registry's windows: frmGroupManager (the management groups),
// frmFileManager (the files of one group) and frmFileAdd (one entry of either
// kind). Each change is written to ViewerFile.txt at once; a double click on a
// file opens it as the open command does.
#include <QDialog>
#include <QString>
#include <functional>
#include <memory>

#include "record/record_registry.h"

class QLabel;
class QLineEdit;
class QMdiArea;
class QPushButton;
class QTableWidget;

namespace recscope {

// The file dialog of frmFileAdd's cmdFile: one path, or empty when cancelled.
using RegistryFileChooser = std::function<QString(QWidget *parent)>;
void SetRegistryFileChooser(RegistryFileChooser chooser);

class FileAddDialog : public QDialog {
  Q_OBJECT
 public:
  enum class Use { NewGroup, ChangeGroup, NewFile, ChangeFile };
  FileAddDialog(Use use, const QString &name, const QString &address, QWidget *parent = nullptr);
  QString name() const;
  QString address() const;

 private:
  void Confirm();
  void ChooseFile();
  bool IsFileUse() const { return use_ == Use::NewFile || use_ == Use::ChangeFile; }

  Use use_;
  QLineEdit *name_ = nullptr;
  QLineEdit *address_ = nullptr;
};

// The registry as both managers share it while they are open.
struct RegistryState {
  std::string Path;
  Registry Data;
  QMdiArea *Mdi = nullptr;
  std::function<void()> AfterOpen;  // after a record was opened from the list
  bool Save();
};

class GroupManagerDialog : public QDialog {
  Q_OBJECT
 public:
  GroupManagerDialog(std::shared_ptr<RegistryState> state, QWidget *parent = nullptr);
  // What cmdRecord of frmOpenSelect shows: the registry of the program folder, or
  // 11107 when it cannot be read. Returns the dialog (deleted when closed) or null.
  static GroupManagerDialog *ShowForProgramFolder(QMdiArea *mdi, QWidget *parent,
                                                  std::function<void()> afterOpen = {});
  QTableWidget *grid() const { return grid_; }
  void Fill(int selected = 0);

 private:
  void Add();
  void Change();
  void Delete();
  void MoveRow(bool up);
  void OpenGroup(int row);

  std::shared_ptr<RegistryState> state_;
  QTableWidget *grid_ = nullptr;
};

class FileManagerDialog : public QDialog {
  Q_OBJECT
 public:
  FileManagerDialog(std::shared_ptr<RegistryState> state, std::size_t group,
                    GroupManagerDialog *groups, QWidget *parent = nullptr);
  QTableWidget *grid() const { return grid_; }
  void Fill(int selected = 0);

 private:
  void Add();
  void Change();
  void Delete();
  void MoveRow(bool up);
  void OpenFile(int row);

  std::shared_ptr<RegistryState> state_;
  std::size_t group_;
  GroupManagerDialog *groups_;
  QTableWidget *grid_ = nullptr;
};

}  // namespace recscope
