#pragma once
// The print of a trend window: the printer asked for with the print dialog, its
// paper and orientation taken into the print settings, and the pages of the
// window's view drawn on it by the page routine. A PDF file stands in for the
// printer when the dialog's "print to file" is chosen, or when the machine has no
// printer at all.
#include <QPrinter>
#include <functional>

#include "print/page_draw.h"

class QWidget;

namespace recscope {

class TrendWindow;

// Asks for the printer: the print dialog, or (with no printer installed) a PDF
// file name. True when the operator chose one; `printer` then holds the choice.
using PrinterChooser = std::function<bool(QPrinter &printer, QWidget *parent)>;
bool ChoosePrinter(QPrinter &printer, QWidget *parent);
// Replaces the chooser (tests answer without a dialog); an empty one restores the
// dialog.
void SetPrinterChooser(PrinterChooser chooser);

// The printer's paper, orientation and copies into the settings, and back.
void PrinterStateToConfig(const QPrinter &printer, PrintConfig &config);
void ConfigToPrinter(const PrintConfig &config, QPrinter &printer);

// What a print of the trend window reads: a copy of its view, its zones' plot,
// the shared print settings and the clock.
PrintSource TrendPrintSource(TrendWindow &trend);

// The pages of `source` on the printer already chosen. False when the printer
// cannot be opened.
bool PrintOnPrinter(QPrinter &printer, const PrintSource &source);

// mnuFilePrint: the print dialog for the trend window's view; on OK its pages are
// printed. False when the operator cancelled or the printer failed.
bool PrintTrendWindow(TrendWindow &trend, QWidget *parent);

}  // namespace recscope
