#pragma once
// The print of a trend window on the current printer: the settings in hand put on
// the printer, the platform's print dialog over it (device, paper, orientation,
// copies; "print to file" gives a PDF file, the only device of a machine without
// printers), and the pages of the window's view drawn on it by the page routine.
#include <QPrinter>

#include "print/page_draw.h"

class QWidget;

namespace recscope {

class TrendWindow;

// Brings the current printer to the paper, orientation and copies of the print
// settings in hand (a paper it cannot take shows the box "Printer setting" and the
// printer keeps its own), then asks with the print dialog. True on OK; the choice
// is then the current printer's and the settings'. A cancel changes neither the
// printer's device nor the settings.
bool AskForPrinter(QWidget *parent);

// What a print of the trend window reads: a copy of its view, its zones' plot,
// the shared print settings and the clock.
PrintSource TrendPrintSource(TrendWindow &trend);

// The pages of `source` on the printer, on the sheet the printer holds. False when
// the printer cannot be opened.
bool PrintOnPrinter(QPrinter &printer, const PrintSource &source);

// mnuFilePrint: the print dialog for the trend window's view; on OK its pages are
// printed on the current printer. False when the operator cancelled or the printer
// failed.
bool PrintTrendWindow(TrendWindow &trend, QWidget *parent);

}  // namespace recscope
