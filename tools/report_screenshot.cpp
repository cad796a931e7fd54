// Developer tool: the monthly report of the sample record as the desktop program
// shows it, drawn into a PNG for the documentation. The record is copied into a
// temporary folder first, so nothing is written beside the samples.
// Usage: report_screenshot SAMPLES_FOLDER OUTPUT_FOLDER   (under xvfb-run)
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <cstdio>

#include "app/desktop_commands.h"
#include "screenshot_home.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "totalize/report_list_window.h"
#include "totalize/report_select_dialog.h"
#include "trend/trend_window.h"

using namespace recscope;

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: report_screenshot SAMPLES_FOLDER OUTPUT_FOLDER\n");
    return 1;
  }
  QApplication app(argc, argv);
  tools::ScreenshotHome sandbox;
  SetMessageService([](QWidget *, const MessageRequest &) { return int(QMessageBox::No); });
  const QString samples = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
  const QString out = QString::fromLocal8Bit(argv[2]);
  const QString record = sandbox.home.filePath("SHEAT01.FDT");
  if (!QFile::copy(samples + "/SHEAT01.FDT", record)) return 2;

  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  window.setGeometry(0, 0, 1600, 1000);
  window.show();
  window.openFiles({record});
  tools::SettleWindows();
  window.runCommand("mnuWindowChohyo");
  tools::SettleWindows();
  auto *select = window.findChild<ReportSelectDialog *>("frmChohyoSelect");
  if (!select) return 3;
  select->findChild<QPushButton *>("cmdMonth")->click();
  tools::SettleWindows();
  for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
    if (qobject_cast<ReportListWindow *>(sub->widget())) sub->showMaximized();
  tools::SettleWindows();
  window.grab().save(out + "/monthly_report.png");
  window.runCommand("mnuFileClose");
  return 0;
}
