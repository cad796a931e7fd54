#include "print/print_command.h"

#include <QFileDialog>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinterInfo>

#include "shell/catalogue.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

namespace recscope {

namespace {

PrinterChooser &Chooser() {
  static PrinterChooser chooser;
  return chooser;
}

bool DialogChooser(QPrinter &printer, QWidget *parent) {
  if (QPrinterInfo::availablePrinters().isEmpty()) {
    // No printer on this machine: the print goes to a PDF file.
    const QString name =
        QFileDialog::getSaveFileName(parent, QString::fromStdString(GetMessageText(11017)),
                                     QStringLiteral("trend.pdf"), QStringLiteral("PDF (*.pdf)"));
    if (name.isEmpty()) return false;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(name);
    return true;
  }
  QPrintDialog dialog(&printer, parent);
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace

bool ChoosePrinter(QPrinter &printer, QWidget *parent) {
  if (Chooser()) return Chooser()(printer, parent);
  return DialogChooser(printer, parent);
}

void SetPrinterChooser(PrinterChooser chooser) { Chooser() = std::move(chooser); }

void PrinterStateToConfig(const QPrinter &printer, PrintConfig &config) {
  const QPageLayout layout = printer.pageLayout();
  config.PaperCode = PaperCodeOfPageSize(layout.pageSize().id());
  config.Orientation = layout.orientation() == QPageLayout::Landscape ? kLandscape : kPortrait;
  config.Copies = std::max(printer.copyCount(), 1);
}

void ConfigToPrinter(const PrintConfig &config, QPrinter &printer) {
  SetPrintPage(printer, config.PaperCode, config.Orientation);
  printer.setCopyCount(std::max(config.Copies, 1));
}

PrintSource TrendPrintSource(TrendWindow &trend) {
  return SlotPrintSource(Shared(), trend.slot(), trend.view(), trend.zonePlotOrigin(),
                         trend.zonePlotExtent());
}

bool PrintOnPrinter(QPrinter &printer, const PrintSource &source) {
  // The page of the paper chosen, centred on the sheet.
  SetPrintPage(printer, source.config.PaperCode, source.config.Orientation);
  return PaintPrint(printer, source, PlanPrint(source));
}

bool PrintTrendWindow(TrendWindow &trend, QWidget *parent) {
  QPrinter printer(QPrinter::HighResolution);
  ConfigToPrinter(Shared().Print, printer);
  if (!ChoosePrinter(printer, parent)) return false;
  PrinterStateToConfig(printer, Shared().Print);
  // The view itself is not touched: the print works on a copy of it.
  return PrintOnPrinter(printer, TrendPrintSource(trend));
}

}  // namespace recscope
