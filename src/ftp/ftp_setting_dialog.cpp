#include "ftp/ftp_setting_dialog.h"

#include <QApplication>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>
#include <cstdlib>

#include "ftp/background_work.h"
#include "ftp/ftp_browser.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kCaption = 10700;
constexpr int kAddressLabel = 10701;
constexpr int kFrame = 10702;
constexpr int kUserLabel = 10703;
constexpr int kPasswordLabel = 10704;
constexpr int kConnectCaption = 11016;
constexpr int kOutOfRange = 20115;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

std::string IniPath() { return ViewerComIniPath(Shared().ProgramFolder); }

struct Detection {
  FtpStatus status = FtpStatus::NoConnect;
  int count = -1;
};

}  // namespace

int DesktopFtpPort() {
  const char *text = std::getenv("RECSCOPE_FTP_PORT");
  int port = text ? std::atoi(text) : 0;
  return port > 0 && port < 65536 ? port : 21;
}

FtpSettingDialog::FtpSettingDialog(QWidget *parent,
                                   std::function<void(const FtpEndpoint &, int)> connected)
    : QDialog(parent), connected_(std::move(connected)), port_(DesktopFtpPort()) {
  setObjectName(QStringLiteral("frmFTPsetting"));
  setWindowTitle(Text(kCaption));
  setModal(true);

  // The last address and user stand in the fields; the password never does.
  QStringList parts;
  std::string ip = ReadIni("IP", "FTP", IniPath());
  if (ip != kIniMissing) parts = QString::fromStdString(ip).split('.');
  std::string user = ReadIni("USER", "FTP", IniPath());

  auto *frame = new QGroupBox(Text(kFrame), this);
  frame->setObjectName(QStringLiteral("Frame1"));
  auto *grid = new QGridLayout(frame);
  auto *address = new QHBoxLayout;
  auto *digits =
      new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), this);
  for (int i = 0; i < 4; ++i) {
    ip_[i] = new QLineEdit(frame);
    ip_[i]->setObjectName(QStringLiteral("txtIP%1").arg(i + 1));
    ip_[i]->setValidator(digits);
    ip_[i]->setMaxLength(3);
    ip_[i]->setFixedWidth(48);
    if (parts.size() == 4) ip_[i]->setText(parts[i]);
    ip_[i]->installEventFilter(this);
    address->addWidget(ip_[i]);
    if (i < 3) address->addWidget(new QLabel(QStringLiteral("."), frame));
  }
  address->addStretch();
  grid->addWidget(new QLabel(Text(kAddressLabel), frame), 0, 0);
  grid->addLayout(address, 0, 1);
  name_ = new QLineEdit(frame);
  name_->setObjectName(QStringLiteral("txtName"));
  if (user != kIniMissing) name_->setText(QString::fromStdString(user));
  pass_ = new QLineEdit(frame);
  pass_->setObjectName(QStringLiteral("txtPass"));
  pass_->setEchoMode(QLineEdit::Password);
  grid->addWidget(new QLabel(Text(kUserLabel), frame), 1, 0);
  grid->addWidget(name_, 1, 1);
  grid->addWidget(new QLabel(Text(kPasswordLabel), frame), 2, 0);
  grid->addWidget(pass_, 2, 1);

  connect_ = new QPushButton(Text(kConnectCaption), this);
  connect_->setObjectName(QStringLiteral("txtConnect"));
  connect_->setDefault(true);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(frame);
  layout->addWidget(connect_, 0, Qt::AlignRight);
  connect(connect_, &QPushButton::clicked, this, &FtpSettingDialog::onConnect);
}

QString FtpSettingDialog::address() const {
  QStringList parts;
  for (QLineEdit *field : ip_) parts << field->text();
  return parts.join('.');
}

// On leaving an address field, a value above 255 is refused with the range
// message and the field keeps the focus.
bool FtpSettingDialog::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::FocusOut) {
    for (QLineEdit *field : ip_) {
      if (watched != field || field->text().isEmpty()) continue;
      int value = field->text().toInt();
      if (value < 0 || value > 255) {
        ShowMessage(this, kOutOfRange, QMessageBox::Ok, {{"@FORMIN@", "0"}, {"@FORMAX@", "255"}});
        field->selectAll();
        field->setFocus();
      }
    }
  }
  return QDialog::eventFilter(watched, event);
}

void FtpSettingDialog::onConnect() {
  if (busy_) return;
  FtpEndpoint endpoint;
  endpoint.Host = address().toStdString();
  endpoint.Port = port_;
  endpoint.User = name_->text().toStdString();
  endpoint.Password = pass_->text().toStdString();
  ApplyTimeoutFromEnvironment(endpoint);
  WriteIni(endpoint.Host, "IP", "FTP", IniPath());
  WriteIni(endpoint.User, "USER", "FTP", IniPath());

  busy_ = true;
  connect_->setEnabled(false);
  QApplication::setOverrideCursor(Qt::WaitCursor);
  RunInBackground<Detection>(
      this,
      [endpoint] {
        Detection detection;
        detection.count = DetectLayout(endpoint, &detection.status);
        return detection;
      },
      [this, endpoint](const Detection &detection) {
        QApplication::restoreOverrideCursor();
        busy_ = false;
        connect_->setEnabled(true);
        if (detection.count < 0) {
          // The dialog stays for another try.
          ShowMessage(this, MessageForStatus(detection.status));
          return;
        }
        accept();
        if (connected_) connected_(endpoint, detection.count);
      });
}

}  // namespace recscope
