#pragma once
// dlgExportPicture: where and at which size the trend's view is saved as a
// picture, PNG or SVG by the file name.
#include <QDialog>
#include <QSize>
#include <functional>

class QLineEdit;
class QSpinBox;

namespace recscope {

class ExportPictureDialog : public QDialog {
  Q_OBJECT
 public:
  // Starts at the window's own size and, when given, a file name.
  ExportPictureDialog(QSize windowSize, const QString &path, QWidget *parent = nullptr);

  QSize pictureSize() const;
  QString path() const;

  // The platform's save dialog behind cmdBrowse; tests replace it.
  using PathChooser = std::function<QString(QWidget *parent, const QString &current)>;
  static void SetPathChooser(PathChooser chooser);

 private:
  QSpinBox *width_;
  QSpinBox *height_;
  QLineEdit *path_;
};

}  // namespace recscope
