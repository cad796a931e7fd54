#pragma once
// frmFTP: a two-pane file manager. The local drive, folder and file lists on the
// left, the recorder's record or totalize files on the right. Connecting goes
// through frmFTPsetting; listing, downloads and deletes run off the window's
// thread while the window shows that it is busy.
#include <QDialog>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "ftp/ftp_browser.h"
#include "ftp/ftp_client.h"

class QComboBox;
class QFileSystemModel;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTimer;
class QTreeView;
class QTreeWidget;
class QTreeWidgetItem;

namespace recscope {

class FtpSettingDialog;

class FtpWindow : public QDialog {
  Q_OBJECT
 public:
  explicit FtpWindow(QWidget *parent = nullptr);
  ~FtpWindow() override;

  // The one browser of the program: made on first use, brought to the front after.
  static FtpWindow *Show(QWidget *parent);

  bool isConnected() const { return connected_; }
  // True while a listing, download or delete is under way.
  bool isBusy() const { return busy_; }
  // The folder of drLocalFoldar that downloads go to.
  QString localFolder() const { return localFolder_; }
  void setLocalFolder(const QString &folder);
  // The record folder on the recorder: "/" or "/S000000".
  const std::string &remoteFolder() const { return ftpDir_; }
  const FtpEndpoint &endpoint() const { return endpoint_; }
  // The rows of lvRemote as the window shows them (name, time, size).
  std::vector<std::vector<QString>> remoteTexts() const;
  // The names in flLocalFile.
  QStringList localFiles() const;

  // Connects without the dialog, as its button does after the layout test.
  void connectTo(const FtpEndpoint &endpoint, int layoutCount);

  void onConnect();
  void onDownload();
  void onDelete();
  void onOptionChanged();

 signals:
  void busyChanged(bool busy);

 protected:
  // cmdCancel, Escape and the window's close button ask before the window goes.
  void reject() override;

 private:
  void setBusy(bool busy, const QString &text = {});
  void listRemote();
  void fillRemote(const FtpListing &listing);
  void refreshLocalFiles();
  void showLocalFolder();
  void onDriveChanged(int index);
  bool totalize() const;
  std::string optionFolder() const;
  std::vector<std::string> selectedNames() const;

  QComboBox *drive_ = nullptr;
  QTreeView *folders_ = nullptr;
  QFileSystemModel *folderModel_ = nullptr;
  QListWidget *files_ = nullptr;
  QTreeWidget *remote_ = nullptr;
  QLabel *reading_ = nullptr;
  QTimer *followTimer_ = nullptr;
  QRadioButton *optS_ = nullptr;
  QRadioButton *optT_ = nullptr;
  QPushButton *connect_ = nullptr;
  QPushButton *cancelButton_ = nullptr;
  QPushButton *download_ = nullptr;
  QPushButton *delete_ = nullptr;

  QString localFolder_;
  FtpEndpoint endpoint_;
  std::string ftpDir_ = "/";
  bool connected_ = false;
  bool busy_ = false;
  bool followFolder_ = true;
  std::shared_ptr<std::atomic<bool>> cancelFlag_;
};

}  // namespace recscope
