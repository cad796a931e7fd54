// Developer tool: frmRecord after a run of the automatic fetch, drawn into a PNG
// for the documentation. Two recorders are filled in, started with the question
// answered Yes, fetched from FTP servers the caller runs on 127.0.0.1 and
// 127.0.0.2 at PORT, and the screen is grabbed with the window over the main
// window.
// Usage: autofetch_screenshot PORT OUTPUT_PNG   (under xvfb-run)
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <chrono>
#include <cstdio>
#include <thread>

#include "app/desktop_commands.h"
#include "ftp/auto_fetch_window.h"
#include "screenshot_home.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

using namespace recscope;

namespace {

void Settle(int rounds = 20) {
  for (int i = 0; i < rounds; ++i) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

void FillRow(QWidget *form, int n, const QStringList &ip, const QString &user, bool on) {
  form->findChild<QCheckBox *>(QStringLiteral("chkOn_%1").arg(n))->setChecked(on);
  for (int k = 0; k < 4; ++k)
    form->findChild<QLineEdit *>(QStringLiteral("txtIP_%1_%2").arg(n).arg(k + 1))->setText(ip[k]);
  form->findChild<QLineEdit *>(QStringLiteral("txtName_%1").arg(n))->setText(user);
  form->findChild<QLineEdit *>(QStringLiteral("txtPass_%1").arg(n))->setText("pass");
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: autofetch_screenshot PORT OUTPUT_PNG\n");
    return 1;
  }
  QApplication app(argc, argv);
  qputenv("RECSCOPE_FTP_PORT", argv[1]);
  tools::ScreenshotHome sandbox;
  SetMessageService([](QWidget *, const MessageRequest &) { return int(QMessageBox::Yes); });

  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  window.setGeometry(0, 0, 1500, 950);
  window.show();
  window.runCommand("mnuCommRec");
  auto *form = window.findChild<RecordFetchWindow *>("frmRecord");
  if (!form) return 2;
  form->move(120, 90);
  FillRow(form, 1, {"127", "0", "0", "1"}, "user", true);
  FillRow(form, 2, {"127", "0", "0", "2"}, "user", true);
  FillRow(form, 3, {"192", "168", "0", "5"}, "line3", false);
  form->findChild<QSpinBox *>("txtHour")->setValue(6);
  form->findChild<QPushButton *>("cmdStart")->click();
  for (int i = 0; i < 600 && !Shared().AutoRunning; ++i) Settle(1);
  for (int i = 0; i < 3000 && Shared().AutoRunning; ++i) Settle(1);
  Settle();
  QGuiApplication::primaryScreen()
      ->grabWindow(0, 0, 0, 1500, 950)
      .save(QString::fromLocal8Bit(argv[2]));
  return 0;
}
