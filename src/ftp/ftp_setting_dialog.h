#pragma once
// frmFTPsetting: the recorder's address, the user and the password. Its connect
// button saves the address and the user, finds the recorder's folder layout off
// the window's thread and, when the recorder answered, hands the session's
// settings to its caller and closes.
#include <QDialog>
#include <functional>

#include "ftp/ftp_client.h"

class QLineEdit;
class QPushButton;

namespace recscope {

class FtpSettingDialog : public QDialog {
  Q_OBJECT
 public:
  // `connected` gets the endpoint and the layout count (0 to 2) once the
  // recorder answered.
  FtpSettingDialog(QWidget *parent, std::function<void(const FtpEndpoint &, int)> connected);

  // The test port; 21 unless set. Also taken from $RECSCOPE_FTP_PORT.
  void setPort(int port) { port_ = port; }
  bool isBusy() const { return busy_; }

  // The address of the four fields joined with ".".
  QString address() const;

 private:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void onConnect();

  QLineEdit *ip_[4] = {};
  QLineEdit *name_ = nullptr;
  QLineEdit *pass_ = nullptr;
  QPushButton *connect_ = nullptr;
  std::function<void(const FtpEndpoint &, int)> connected_;
  int port_ = 21;
  bool busy_ = false;
};

// The FTP port of the desktop program: $RECSCOPE_FTP_PORT for tests, else 21.
// $RECSCOPE_FTP_TIMEOUT (seconds), also for tests, shortens every wait.
int DesktopFtpPort();

}  // namespace recscope
