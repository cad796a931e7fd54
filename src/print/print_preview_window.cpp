#include "print/print_preview_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "print/print_command.h"
#include "print/printer_setup.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

namespace recscope {

namespace {

constexpr std::array<int, 11> kCaptions = {11017, 11018, 11019, 11020, 11021, 11022,
                                           11023, 11024, 11025, 11005, 11006};
constexpr double kZoomStep = 1.25;
constexpr double kZoomMin = 0.25;
constexpr double kZoomMax = 4.0;

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

PrintPreviewWindow::ViewDialog &TitleDialog() {
  static PrintPreviewWindow::ViewDialog dialog;
  return dialog;
}
PrintPreviewWindow::ViewDialog &SettingsDialog() {
  static PrintPreviewWindow::ViewDialog dialog;
  return dialog;
}

QPointer<PrintPreviewWindow> &OpenPreview() {
  static QPointer<PrintPreviewWindow> preview;
  return preview;
}

}  // namespace

void PrintPreviewWindow::SetTitleDialog(ViewDialog dialog) { TitleDialog() = std::move(dialog); }
void PrintPreviewWindow::SetPrintSettingsDialog(ViewDialog dialog) {
  SettingsDialog() = std::move(dialog);
}

PrintPreviewWindow::PrintPreviewWindow(TrendWindow *trend, QWidget *parent)
    : QWidget(parent, Qt::Window), trend_(trend), slot_(trend ? trend->slot() : 0) {
  setObjectName(QStringLiteral("frmPrintpreview"));
  setWindowTitle(Text(10710));
  setAttribute(Qt::WA_DeleteOnClose);

  auto *buttons = new QHBoxLayout;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    auto *button = new QPushButton(Text(kCaptions[i]), this);
    button->setObjectName(QStringLiteral("Command1_%1").arg(i));
    connect(button, &QPushButton::clicked, this, [this, i] { onCommand(static_cast<int>(i)); });
    buttons->addWidget(button);
    buttons_[i] = button;
  }
  pageLabel_ = new QLabel(this);
  pageLabel_->setObjectName(QStringLiteral("lblPage"));
  buttons->addWidget(pageLabel_);
  buttons->addStretch(1);

  picture_ = new QLabel;
  picture_->setObjectName(QStringLiteral("Picture1"));
  picture_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  scroll_ = new QScrollArea(this);
  scroll_->setObjectName(QStringLiteral("Picture2"));
  scroll_->setWidget(picture_);
  scroll_->setAlignment(Qt::AlignCenter);
  scroll_->setBackgroundRole(QPalette::Dark);
  scroll_->horizontalScrollBar()->setObjectName(QStringLiteral("HScroll1"));
  scroll_->verticalScrollBar()->setObjectName(QStringLiteral("VScroll1"));

  auto *column = new QVBoxLayout(this);
  column->addLayout(buttons);
  column->addWidget(scroll_, 1);

  // The preview's first size: the page extent of the catalogue and its margins.
  const PageNumbers numbers = ReadPageNumbers();
  resize(static_cast<int>((numbers.PreviewWidth + 2 * numbers.PreviewMarginX) / kTwipsPerPixel),
         static_cast<int>((numbers.PreviewHeight + 2 * numbers.PreviewMarginY) / kTwipsPerPixel));

  if (trend) {
    connect(trend, &TrendWindow::closed, this, [this](int) { close(); });
    connect(trend, &QObject::destroyed, this, [this] { close(); });
  }
  orientation_ = Shared().Print.Orientation == kLandscape ? kLandscape : kPortrait;
  Redraw();
}

double PrintPreviewWindow::pixelsPerTwip() const {
  // At zoom 1 the page fits the catalogue's preview extent.
  const PageNumbers numbers = ReadPageNumbers();
  const PageExtent paper = plan_.geometry.OnPaper();
  const double w = std::max(paper.Width, 1.0);
  const double h = std::max(paper.Height, 1.0);
  const double fit = std::min(numbers.PreviewWidth / w, numbers.PreviewHeight / h);
  return fit / kTwipsPerPixel * zoom_;
}

void PrintPreviewWindow::DispHeight(const std::string &mode) { Disp(kPortrait, mode); }
void PrintPreviewWindow::DispWidth(const std::string &mode) { Disp(kLandscape, mode); }

void PrintPreviewWindow::Disp(int orientation, const std::string &mode) {
  if (mode == "All" || orientation != orientation_ || plan_.pages.empty()) {
    orientation_ = orientation;
    if (!trend_) return;
    source_ = TrendPrintSource(*trend_);
    source_.config.Orientation = orientation_;
    plan_ = PlanPrint(source_);
    page_ = 0;
  } else if (mode == "Next") {
    if (page_ + 1 >= pageCount()) return;
    ++page_;
  } else if (mode == "Prev") {
    if (page_ <= 0) return;
    --page_;
  }
  ShowPage();
}

void PrintPreviewWindow::Redraw() {
  if (orientation_ == kLandscape)
    DispWidth("All");
  else
    DispHeight("All");
}

void PrintPreviewWindow::ShowPage() {
  if (plan_.pages.empty()) return;
  image_ = DrawPrintPageImage(source_, plan_, page_, pixelsPerTwip());
  picture_->setPixmap(QPixmap::fromImage(image_));
  picture_->resize(image_.size());
  pageLabel_->setText(QStringLiteral("%1 / %2").arg(page_ + 1).arg(pageCount()));
  UpdateButtons();
}

void PrintPreviewWindow::UpdateButtons() {
  buttons_[9]->setEnabled(page_ > 0);
  buttons_[10]->setEnabled(page_ + 1 < pageCount());
  buttons_[6]->setEnabled(zoom_ * kZoomStep <= kZoomMax + 1e-9);
  buttons_[7]->setEnabled(zoom_ / kZoomStep >= kZoomMin - 1e-9);
}

void PrintPreviewWindow::PrintNow() {
  if (!trend_ || !AskForPrinter(this)) return;
  // The pages shown become those of the paper and orientation chosen.
  orientation_ = Shared().Print.Orientation;
  Redraw();
  PrintOnPrinter(CurrentPrinter(), source_);
}

void PrintPreviewWindow::onCommand(int index) {
  switch (index) {
    case 0:
      PrintNow();
      break;
    case 1:
      if (trend_ && TitleDialog() && TitleDialog()(this, trend_->view())) Redraw();
      break;
    case 2:
      if (trend_ && SettingsDialog()) SettingsDialog()(this, trend_->view());
      break;
    case 3:
      Redraw();
      break;
    case 4:
      Shared().Print.Orientation = kPortrait;
      DispHeight("All");
      break;
    case 5:
      Shared().Print.Orientation = kLandscape;
      DispWidth("All");
      break;
    case 6:
      if (zoom_ * kZoomStep <= kZoomMax + 1e-9) zoom_ *= kZoomStep;
      ShowPage();
      break;
    case 7:
      if (zoom_ / kZoomStep >= kZoomMin - 1e-9) zoom_ /= kZoomStep;
      ShowPage();
      break;
    case 8:
      close();
      break;
    case 9:
      Disp(orientation_, "Prev");
      break;
    case 10:
      Disp(orientation_, "Next");
      break;
    default:
      break;
  }
}

PrintPreviewWindow *ShowPrintPreview(TrendWindow *trend, QWidget *parent) {
  if (!trend) return nullptr;
  QPointer<PrintPreviewWindow> &open = OpenPreview();
  if (open && open->slot() != trend->slot()) {
    open->close();
    open = nullptr;
  }
  if (!open)
    open = new PrintPreviewWindow(trend, parent);
  else
    open->onCommand(3);
  open->show();
  open->raise();
  open->activateWindow();
  return open;
}

}  // namespace recscope
