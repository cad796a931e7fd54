// Developer tool: the desktop program with the sample totalize file open in its
// window on the tab of all channels, drawn into a PNG for the documentation.
// Usage: totalize_screenshot SAMPLES_FOLDER OUTPUT_FOLDER   (under xvfb-run)
#include <QApplication>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <cstdio>

#include "app/desktop_commands.h"
#include "screenshot_home.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "totalize/addition_commands.h"
#include "totalize/addition_window.h"

using namespace recscope;

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: totalize_screenshot SAMPLES_FOLDER OUTPUT_FOLDER\n");
    return 1;
  }
  QApplication app(argc, argv);
  tools::ScreenshotHome sandbox;
  SetMessageService([](QWidget *, const MessageRequest &) { return int(QMessageBox::Ok); });
  const QString samples = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
  const QString out = QString::fromLocal8Bit(argv[2]);

  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  window.setGeometry(0, 0, 1280, 640);
  window.show();
  tools::SettleWindows();
  if (!OpenAdditionPath(&window, window.mdiArea(), samples + "/THEAT01.FDT")) return 2;
  tools::SettleWindows();
  AdditionWindow *addition = nullptr;
  for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
    if (auto *a = qobject_cast<AdditionWindow *>(sub->widget())) addition = a;
  if (!addition) return 2;
  auto *tabs = addition->findChild<QTabBar *>("TabStrip1");
  tabs->setCurrentIndex(tabs->count() - 1);  // all channels
  tools::SettleWindows();
  window.grab().save(out + "/totalize_window.png");
  return 0;
}
