// Developer tool: the FTP browser as an operator sees it after connecting to a
// recorder and fetching a record: opened from the main window's command,
// connected through its dialog, a row chosen and downloaded into a folder.
// Usage: ftp_screenshot PORT LOCAL_FOLDER OUTPUT_PNG   (under xvfb-run, with an FTP
// server on 127.0.0.1:PORT, user "user", password "pass")
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTreeView>
#include <QTreeWidget>
#include <cstdio>
#include <cstdlib>

#include "app/desktop_commands.h"
#include "ftp/ftp_setting_dialog.h"
#include "ftp/ftp_window.h"
#include "screenshot_home.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

using namespace recscope;

namespace {

void SettleUntil(const std::function<bool()> &done, int ms) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < ms)
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  for (int i = 0; i < 20; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: ftp_screenshot PORT LOCAL_FOLDER OUTPUT_PNG\n");
    return 1;
  }
  setenv("RECSCOPE_FTP_PORT", argv[1], 1);
  QApplication app(argc, argv);
  tools::ScreenshotHome sandbox;
  SetMessageService([](QWidget *, const MessageRequest &request) {
    std::fprintf(stderr, "message %d\n", request.messageId);
    return int(QMessageBox::Ok);
  });

  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  window.setGeometry(0, 0, 1280, 800);
  window.show();
  window.runCommand("mnuCommFTP");
  auto *browser = window.findChild<FtpWindow *>("frmFTP");
  if (!browser) return 2;
  browser->setGeometry(120, 90, 1000, 600);
  browser->setLocalFolder(QString::fromLocal8Bit(argv[2]));
  browser->findChild<QPushButton *>("cmdConnect")->click();
  auto *dialog = browser->findChild<FtpSettingDialog *>("frmFTPsetting");
  if (!dialog) return 2;
  const char *parts[] = {"127", "0", "0", "1"};
  for (int i = 0; i < 4; ++i)
    dialog->findChild<QLineEdit *>(QStringLiteral("txtIP%1").arg(i + 1))->setText(parts[i]);
  dialog->findChild<QLineEdit *>("txtName")->setText("user");
  dialog->findChild<QLineEdit *>("txtPass")->setText("pass");
  dialog->findChild<QPushButton *>("txtConnect")->click();
  SettleUntil([browser] { return browser->isConnected() && !browser->isBusy(); }, 20000);

  auto *remote = browser->findChild<QTreeWidget *>("lvRemote");
  for (int i = 0; i < remote->topLevelItemCount(); ++i)
    if (remote->topLevelItem(i)->text(0) == "SHEAT01.FDT")
      remote->topLevelItem(i)->setSelected(true);
  browser->findChild<QPushButton *>("cmdDownload")->click();
  SettleUntil([browser] { return !browser->isBusy(); }, 20000);
  // Leave the downloaded row chosen, as the operator sees it.
  browser->raise();
  browser->activateWindow();
  SettleUntil([] { return false; }, 500);
  // The folder downloads went to, as the tree shows it.
  auto *tree = browser->findChild<QTreeView *>("drLocalFoldar");
  QRect shown = tree->visualRect(tree->currentIndex());
  if (!tree->viewport()->rect().contains(shown.center()))
    std::fprintf(stderr, "folder not in sight\n");
  QScreen *screen = QGuiApplication::primaryScreen();
  screen->grabWindow(0, 0, 0, 1280, 800).save(QString::fromLocal8Bit(argv[3]));
  return browser->isConnected() ? 0 : 3;
}
