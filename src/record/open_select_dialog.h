#pragma once
// frmOpenSelect: the choice between opening a record file directly and opening
// one from the registry.
#include <QDialog>
#include <functional>

class QMdiArea;
class QPushButton;

namespace recscope {

class OpenSelectDialog : public QDialog {
  Q_OBJECT
 public:
  explicit OpenSelectDialog(QMdiArea *mdi, QWidget *parent = nullptr);

  // The file dialog: gives one path, or an empty text when cancelled.
  using FileChooser = std::function<QString(QWidget *parent)>;
  void SetFileChooser(FileChooser chooser) { chooser_ = std::move(chooser); }
  // What cmdRecord shows after this dialog is gone.
  void SetRegistryOpener(std::function<void()> opener) { registry_ = std::move(opener); }

  // What File open on the menu and the Open tool button do: the dialog, modal,
  // deleted when it is done (it may come back after a refused name).
  static OpenSelectDialog *ShowModal(QMdiArea *mdi, QWidget *parent);

  // The file dialog of the open command: title 11170, filter 11173.
  static QString ChooseRecordFile(QWidget *parent);

 private:
  void Direct();
  void Record();

  QMdiArea *mdi_;
  FileChooser chooser_ = ChooseRecordFile;
  std::function<void()> registry_;
};

}  // namespace recscope
