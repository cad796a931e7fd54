#pragma once
// The printer the program prints on, and the platform's print dialog over it:
// device, paper, orientation and number of copies. Papers are told by the
// platform's paper codes (PrinterPaperCode, PrinterPageSize), orientation by
// 1 portrait and 2 landscape.
#include "print/page_draw.h"

class QPrinter;
class QWidget;

namespace recscope {

// The one printer of the process: what the print dialog sets up and the print
// and preview draw on. At first the platform's default printer, or a PDF file
// where the machine has none.
QPrinter &CurrentPrinter();

struct PrinterState {
  int PaperCode = 0;
  int Orientation = 1;
  int Copies = 1;
};

// Paper, orientation and copies of the current printer. They also become the
// paper, orientation and copies of the print settings in hand (Shared().Print).
PrinterState ReadPrinterState();

// Sets paper, orientation and copies on the current printer. When it cannot take
// the paper, the box "Printer setting" says so over `owner` and the old paper
// stays. The print settings in hand follow the printer. False when the paper was
// refused.
bool ApplyPrinterState(QWidget *owner, int paperCode, int orientation, int copies);

// The platform's print dialog, filled from the current printer's device, paper,
// orientation and copies. On OK the chosen device becomes current and the chosen
// paper, orientation and copies are set on it as ApplyPrinterState does. Returns
// -1 on OK and 0 on cancel.
int ShowPrintSetup(QWidget *owner);

}  // namespace recscope
