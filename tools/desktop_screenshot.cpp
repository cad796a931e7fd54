// Developer tool: the desktop program as an operator leaves it after a short
// session on the sample record, drawn into a PNG for the documentation: both
// cursors, a flag, the instant value, event list and between-cursors windows
// tiled beside the trend, the file menu with the records opened last, and the
// view exported as SVG and rendered back.
// Usage: desktop_screenshot SAMPLES_FOLDER OUTPUT_FOLDER   (under xvfb-run)
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QSvgRenderer>
#include <QTimer>
#include <cstdio>

#include "app/desktop_commands.h"
#include "screenshot_home.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_export.h"
#include "trend/trend_window.h"

using namespace recscope;

namespace {

TrendWindow *TrendOf(MainWindow &w) {
  for (QMdiSubWindow *sub : w.mdiArea()->subWindowList())
    if (auto *trend = qobject_cast<TrendWindow *>(sub->widget())) return trend;
  return nullptr;
}

void Activate(MainWindow &w, QWidget *child) {
  w.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(child->parentWidget()));
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: desktop_screenshot SAMPLES_FOLDER OUTPUT_FOLDER\n");
    return 1;
  }
  QApplication app(argc, argv);
  tools::ScreenshotHome sandbox;
  SetMessageService([](QWidget *, const MessageRequest &) { return int(QMessageBox::No); });
  const QString samples = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
  const QString out = QString::fromLocal8Bit(argv[2]);

  MainWindow window;
  ConnectDesktopCommands(window);
  window.load();
  window.setGeometry(0, 0, 1600, 1000);
  window.show();
  window.openFiles({samples + "/text/SHEAT01.FDT"});
  window.runCommand("mnuFileClose");
  window.openFiles({samples + "/SHEAT01.FDT"});
  tools::SettleWindows();
  TrendWindow *trend = TrendOf(window);
  if (!trend) return 2;
  Activate(window, trend);

  // A day in view, two cursors four hours apart, a flag at cursor 1.
  const RecordFileInfo &info = Shared().Slot(trend->slot()).Record;
  trend->view().DisplayStart = info.FirstTime + 12 * 3600;
  trend->view().DisplayEnd = info.FirstTime + 36 * 3600;
  trend->RedrawWholeView();
  trend->setCursorFromList(1, info.FirstTime + 20 * 3600 + 15 * 60, true);
  trend->setCursorFromList(2, info.FirstTime + 26 * 3600 + 40 * 60, true);
  window.runCommand("mnuEditMark");
  for (const char *command : {"mnuWindowMoment", "mnuWindowAramu", "mnuWindowBetweenC"}) {
    Activate(window, trend);
    window.runCommand(command);
  }
  // The trend across the top, the three lists side by side under it.
  QMdiArea *mdi = window.mdiArea();
  const QSize frame = mdi->viewport()->size();
  const int trendHeight = frame.height() * 45 / 100;
  int left = 0;
  for (QMdiSubWindow *sub : mdi->subWindowList()) {
    if (sub->widget() == trend) {
      sub->setGeometry(0, 0, frame.width(), trendHeight);
      continue;
    }
    const int width = frame.width() / 3;
    sub->setGeometry(left, trendHeight, width, frame.height() - trendHeight);
    left += width;
  }
  Activate(window, trend);
  tools::SettleWindows();
  window.grab().save(out + "/desktop_cursors_and_views.png");

  // The file menu with the records opened last.
  QMenu *file = window.findChild<QMenu *>("mnuFile");
  QMenu *recent = window.findChild<QMenu *>("mnuFileRecent");
  file->popup(window.mapToGlobal(QPoint(10, 25)));
  tools::SettleWindows();
  recent->popup(file->mapToGlobal(
      QPoint(file->width() - 10, file->actionGeometry(recent->menuAction()).top())));
  tools::SettleWindows();
  QScreen *screen = QGuiApplication::primaryScreen();
  screen->grabWindow(0, 0, 0, 1100, 600).save(out + "/desktop_file_menu_recent.png");
  recent->hide();
  file->hide();

  // The view exported as an SVG drawing, and that drawing rendered back.
  const QString svgPath = out + "/desktop_export.svg";
  TrendExport request;
  request.state = &Shared();
  request.slot = trend->slot();
  request.view = &trend->view();
  request.zoneOrigin = trend->zonePlotOrigin();
  request.zoneExtent = trend->zonePlotExtent();
  request.horizontal = trend->horizontal();
  request.widthPx = 1200;
  request.heightPx = 600;
  if (!ExportTrendFile(request, svgPath)) return 3;
  QSvgRenderer renderer(svgPath);
  QImage rendered(1200, 600, QImage::Format_RGB32);
  rendered.fill(Qt::white);
  QPainter painter(&rendered);
  renderer.render(&painter);
  painter.end();
  rendered.save(out + "/desktop_export_svg_rendered.png");
  QFile::remove(svgPath);
  return 0;
}
