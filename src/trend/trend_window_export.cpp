// The trend window's view as a picture: saved to a file or copied.
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/export_picture_dialog.h"
#include "trend/trend_export.h"
#include "trend/trend_window.h"

namespace recscope {

namespace {

constexpr int kCannotWrite = 11107;

}  // namespace

TrendExport TrendWindow::exportRequest(QSize size) const {
  TrendExport request;
  request.state = &Shared();
  request.slot = slot_;
  request.view = &view_;
  request.zoneOrigin = zonePlotOrigin();
  request.zoneExtent = zonePlotExtent();
  request.horizontal = horizontal_;
  request.widthPx = size.width();
  request.heightPx = size.height();
  return request;
}

QImage TrendWindow::pictureAt(QSize size) const { return ExportTrendImage(exportRequest(size)); }

void TrendWindow::exportPicture() {
  // The record's name with the picture's extension, beside the record.
  const QFileInfo record(QString::fromStdString(Shared().Slot(slot_).Record.FilePath));
  const QString suggested =
      QDir(record.absolutePath()).filePath(record.completeBaseName() + ".png");
  ExportPictureDialog dialog(size(), suggested, this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (!ExportTrendFile(exportRequest(dialog.pictureSize()), dialog.path()))
    ShowMessage(this, kCannotWrite);
}

void TrendWindow::copyPicture() { QGuiApplication::clipboard()->setImage(pictureAt(size())); }

}  // namespace recscope
