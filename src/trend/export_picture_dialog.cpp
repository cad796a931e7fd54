#include "trend/export_picture_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include "shell/frame/control_tips.h"

namespace recscope {

namespace {

constexpr int kLargest = 20000;  // pixels a side

ExportPictureDialog::PathChooser &Chooser() {
  static ExportPictureDialog::PathChooser chooser = [](QWidget *parent, const QString &current) {
    return QFileDialog::getSaveFileName(parent, ControlCaption(QStringLiteral("dlgExportPicture")),
                                        current, QStringLiteral("PNG (*.png);;SVG (*.svg)"));
  };
  return chooser;
}

QSpinBox *SizeBox(const char *name, int value, QWidget *parent) {
  auto *box = new QSpinBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  box->setRange(100, kLargest);
  box->setValue(std::clamp(value, 100, kLargest));
  box->setSuffix(QStringLiteral(" px"));
  return box;
}

}  // namespace

void ExportPictureDialog::SetPathChooser(PathChooser chooser) {
  if (chooser) Chooser() = std::move(chooser);
}

ExportPictureDialog::ExportPictureDialog(QSize windowSize, const QString &path, QWidget *parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("dlgExportPicture"));
  setWindowTitle(ControlCaption(QStringLiteral("dlgExportPicture")));
  width_ = SizeBox("txtWidth", windowSize.width(), this);
  height_ = SizeBox("txtHeight", windowSize.height(), this);
  path_ = new QLineEdit(path, this);
  path_->setObjectName(QStringLiteral("txtPath"));
  auto *browse = new QPushButton(QStringLiteral("..."), this);
  browse->setObjectName(QStringLiteral("cmdBrowse"));
  connect(browse, &QPushButton::clicked, this, [this] {
    const QString chosen = Chooser()(this, path_->text());
    if (!chosen.isEmpty()) path_->setText(chosen);
  });
  auto *pathRow = new QHBoxLayout;
  pathRow->addWidget(path_, 1);
  pathRow->addWidget(browse);
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    if (!path_->text().trimmed().isEmpty()) accept();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto *form = new QFormLayout(this);
  form->addRow(ControlCaption(QStringLiteral("txtWidth")), width_);
  form->addRow(ControlCaption(QStringLiteral("txtHeight")), height_);
  form->addRow(ControlCaption(QStringLiteral("txtPath")), pathRow);
  form->addRow(buttons);
}

QSize ExportPictureDialog::pictureSize() const { return QSize(width_->value(), height_->value()); }

QString ExportPictureDialog::path() const { return path_->text().trimmed(); }

}  // namespace recscope
