#include "print/print_command.h"

#include "print/printer_setup.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

namespace recscope {

bool AskForPrinter(QWidget *parent) {
  // The preview's page buttons change the settings' orientation; the print takes
  // the settings as they are now.
  const PrintConfig &config = Shared().Print;
  const PrinterState wanted{config.PaperCode, config.Orientation, config.Copies};
  const PrinterState printer = ReadPrinterState();  // the settings now follow the printer
  if (wanted.PaperCode != printer.PaperCode || wanted.Orientation != printer.Orientation ||
      wanted.Copies != printer.Copies)
    ApplyPrinterState(parent, wanted.PaperCode, wanted.Orientation, wanted.Copies);
  return ShowPrintSetup(parent) != 0;
}

PrintSource TrendPrintSource(TrendWindow &trend) {
  return SlotPrintSource(Shared(), trend.slot(), trend.view(), trend.zonePlotOrigin(),
                         trend.zonePlotExtent());
}

bool PrintOnPrinter(QPrinter &printer, const PrintSource &source) {
  // The page of the paper code, centred on the printer's sheet.
  SetPrintPage(printer, printer.pageLayout().pageSize(), source.config.PaperCode,
               source.config.Orientation);
  return PaintPrint(printer, source, PlanPrint(source));
}

bool PrintTrendWindow(TrendWindow &trend, QWidget *parent) {
  if (!AskForPrinter(parent)) return false;
  // The view itself is not touched: the print works on a copy of it.
  return PrintOnPrinter(CurrentPrinter(), TrendPrintSource(trend));
}

}  // namespace recscope
