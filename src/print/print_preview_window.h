#pragma once
// frmPrintpreview: the pages of a trend window's print on screen, drawn by the
// same page routine as the printer, with the eleven buttons of Command1: print,
// title, print settings, redraw, vertical and horizontal pages, enlarge, reduce,
// close, previous and next page.
#include <QPointer>
#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "print/page_draw.h"

class QLabel;
class QPushButton;
class QScrollArea;

namespace recscope {

class TrendWindow;

class PrintPreviewWindow : public QWidget {
  Q_OBJECT
 public:
  explicit PrintPreviewWindow(TrendWindow *trend, QWidget *parent = nullptr);

  // The dialogs that buttons 1 (title) and 2 (print settings) open; each changes
  // the trend's view or the shared print settings and returns true on OK. Until
  // they are set the two buttons open nothing.
  using ViewDialog = std::function<bool(QWidget *parent, TrendView &view)>;
  static void SetTitleDialog(ViewDialog dialog);
  static void SetPrintSettingsDialog(ViewDialog dialog);

  int slot() const { return slot_; }
  int orientation() const { return orientation_; }
  int pageIndex() const { return page_; }
  int pageCount() const { return static_cast<int>(plan_.pages.size()); }
  double zoom() const { return zoom_; }
  const PrintPlan &plan() const { return plan_; }
  const PrintSource &source() const { return source_; }
  // The page as it stands on screen.
  const QImage &pageImage() const { return image_; }
  // Twips of the paper per pixel of the page image at the present zoom.
  double pixelsPerTwip() const;

  // Draws the vertical (DispHeight) or horizontal (DispWidth) form: "All" from the
  // first page with the view as it now stands, "Next" the following page, "Prev"
  // the page before.
  void DispHeight(const std::string &mode);
  void DispWidth(const std::string &mode);

  // The buttons of Command1 by index.
  void onCommand(int index);

 private:
  void Disp(int orientation, const std::string &mode);
  void Redraw();
  void PrintNow();
  void ShowPage();
  void UpdateButtons();

  QPointer<TrendWindow> trend_;
  int slot_ = 0;
  int orientation_ = kPortrait;
  int page_ = 0;
  double zoom_ = 1.0;
  PrintSource source_;
  PrintPlan plan_;
  QImage image_;
  std::array<QPushButton *, 11> buttons_{};
  QScrollArea *scroll_ = nullptr;
  QLabel *picture_ = nullptr;
  QLabel *pageLabel_ = nullptr;
};

// mnuFileV: the preview of the current trend window, made on first use and
// brought to the front afterwards; it goes when its trend window closes.
PrintPreviewWindow *ShowPrintPreview(TrendWindow *trend, QWidget *parent);

}  // namespace recscope
