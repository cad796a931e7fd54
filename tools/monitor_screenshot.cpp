// Developer tool: the communication monitor as an operator sees it: "Real time
// monitor" checked, Communication start, the setup read, then the four windows
// filled by Timer2 for a while.
// Usage: monitor_screenshot DEVICE INITSET SECONDS OUTPUT_PNG [WIDTH HEIGHT [vertical]]
// (under xvfb-run, with a recorder, or tests/link/sim_recorder.py, on the serial
// device DEVICE); the frame is 1280 x 860 unless given, the trend horizontal
// unless "vertical".
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/desktop_commands.h"
#include "screenshot_home.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"

using namespace recscope;

int main(int argc, char **argv) {
  if (argc != 5 && argc != 7 && argc != 8) {
    std::fprintf(stderr,
                 "usage: monitor_screenshot DEVICE INITSET SECONDS OUTPUT_PNG"
                 " [WIDTH HEIGHT [vertical]]\n");
    return 1;
  }
  setenv("RECSCOPE_COM1", argv[1], 1);
  QApplication app(argc, argv);
  tools::ScreenshotHome sandbox;
  QFile::copy(QString::fromLocal8Bit(argv[2]), sandbox.home.filePath("InitSet.txt"));
  SetMessageService([](QWidget *, const MessageRequest &request) {
    std::fprintf(stderr, "message %d\n", request.messageId);
    return int(QMessageBox::Yes);
  });

  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  const int width = argc >= 7 ? std::atoi(argv[5]) : 1280;
  const int height = argc >= 7 ? std::atoi(argv[6]) : 860;
  window.setGeometry(0, 0, width, height);
  window.show();
  window.runCommand("mnuRealTime");
  window.runCommand("mnuComunicationStart");
  if (argc == 8 && std::string(argv[7]) == "vertical") window.runCommand("mnuViewTrendVer");
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < 1000 * std::atoi(argv[3]))
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  tools::SettleWindows();
  const QPixmap shot = window.screen()->grabWindow(0);
  if (!shot.save(QString::fromLocal8Bit(argv[4]))) return 3;
  window.runCommand("mnuComunicationEnd");
  return 0;
}
