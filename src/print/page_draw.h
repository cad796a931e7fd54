#pragma once
// The printed page of a trend, drawn by one routine on any paint device: the
// printer, a PDF file, the preview's picture or an image. The painter arrives in
// twips of the paper (origin at the printable page's top left); the routine scales
// the A4 layout by the paper's scale itself.
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <array>
#include <string>
#include <vector>

#include "print/page_layout.h"
#include "print/page_values.h"
#include "shell/shared_state.h"
#include "trend/trend_draw.h"
#include "trend/trend_layout.h"
#include "trend/trend_view.h"

namespace recscope {

// What a print of a slot's trend reads: the record of `slot` in `state`, a copy
// of the trend's view (group, zones, cursors, title, displayed range) with the
// plot its zones were made for, the print settings and the header's print date.
struct PrintSource {
  const SharedState *state = nullptr;
  int slot = 1;
  TrendView view;
  std::int32_t zonePlotOrigin = kPlotOffset;
  std::int32_t zonePlotExtent = kDesignPlotExtent;
  PrintConfig config;
  std::string printedDate;  // "2026/11/22"
  std::string printedTime;  // "21:30:00"
};

// The page geometry and the time range of every page.
struct PrintPlan {
  PageGeometry geometry;
  std::vector<PageRange> pages;
};
PrintPlan PlanPrint(const PrintSource &source);

// One page as the drawing routines see it: the view reduced to the page's plot,
// the trend scene laid out on the page and the marks of the list block.
struct PrintPageScene {
  const PrintSource *source = nullptr;
  const PageGeometry *geometry = nullptr;
  PageRange range;
  TrendView view;
  TrendScene scene;
  std::array<ListMark, 2> marks;
  bool hasData = false;  // the page's range holds samples of the file
};
PrintPageScene MakePageScene(const PrintSource &source, const PrintPlan &plan, int page);

// The blocks of a page, in A4 twips; `_Ver` draws the vertical chart form.
void BeforeDisp(QPainter &painter, const PrintPageScene &page);  // header, list, scales
void LengthLineDisp(QPainter &painter, const PrintPageScene &page);
void LengthLineDisp_Ver(QPainter &painter, const PrintPageScene &page);
void TimeDataDisp(QPainter &painter, const PrintPageScene &page);
void TimeDataDisp_Ver(QPainter &painter, const PrintPageScene &page);
void WidthLineDisp(QPainter &painter, const PrintPageScene &page);
void WidthLineDisp_Ver(QPainter &painter, const PrintPageScene &page);
void WakuDisp(QPainter &painter, const PrintPageScene &page);
void WakuDisp_Ver(QPainter &painter, const PrintPageScene &page);
void WaveDisp2(QPainter &painter, const PrintPageScene &page);
void WaveDisp2_Ver(QPainter &painter, const PrintPageScene &page);
void CursorLineDisp(QPainter &painter, const PrintPageScene &page);
void CursorLineDisp_Ver(QPainter &painter, const PrintPageScene &page);
void CursorDataDisp(QPainter &painter, const PrintPageScene &page);
void CursorDataDisp_Ver(QPainter &painter, const PrintPageScene &page);
// Cursor (or flag) lines with their texts.
void AllCursorLineDisp(QPainter &painter, const PrintPageScene &page);
void AllCursorLineDisp_Ver(QPainter &painter, const PrintPageScene &page);

// Page `page` of the plan, every block in order. The painter's unit is a twip of
// the paper; a white page is not filled in (paper is white).
void DrawPrintPage(QPainter &painter, const PrintSource &source, const PrintPlan &plan, int page);

// The same into a white image at `pixelsPerTwip` of the paper.
QImage DrawPrintPageImage(const PrintSource &source, const PrintPlan &plan, int page,
                          double pixelsPerTwip);

// Paper codes are the platform's (8 A3, 9 A4, 11 A5, 12 B4, 13 B5, 1 Letter, ...):
// the code of a page size, 0 for a size that has none; and the page size of a
// code, an invalid one for a code that names no paper. The page's scale comes
// from the code alone (PaperScale), whatever the sheet's exact size.
int PrinterPaperCode(const QPageSize &size);
QPageSize PrinterPageSize(int paperCode);

// Orientation codes (kPortrait, kLandscape) and the page layout's orientation.
QPageLayout::Orientation PageOrientationOf(int orientation);
int OrientationCodeOf(QPageLayout::Orientation orientation);

// Orientation and margins of a printer or PDF writer on `sheet`, so that its paint
// area is the printable page of the paper code centred on the sheet.
void SetPrintPage(QPagedPaintDevice &device, const QPageSize &sheet, int paperCode,
                  int orientation);

// Every page of the plan on a printer or PDF writer, a new sheet before each page
// after the first. False when the device cannot be painted on.
bool PaintPrint(QPagedPaintDevice &device, const PrintSource &source, const PrintPlan &plan);

// The pages of the plan written to a PDF file. False when it cannot be written.
bool WritePrintPdf(const std::string &path, const PrintSource &source, const PrintPlan &plan);

// A print source for a slot: the view copy, the zones' plot, the shared print
// settings and the clock's date and time for the header.
PrintSource SlotPrintSource(const SharedState &state, int slot, const TrendView &view,
                            std::int32_t zonePlotOrigin, std::int32_t zonePlotExtent);

}  // namespace recscope
