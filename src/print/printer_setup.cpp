#include "print/printer_setup.h"

#include <QDir>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <memory>

#include "shell/frame/control_tips.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

// Sets a page size, orientation and copies on the current printer; a page size
// it cannot take leaves the old one and shows the box.
bool ApplyPrinterPage(QWidget *owner, const QPageSize &size, QPageLayout::Orientation orientation,
                      int copies) {
  QPrinter &printer = CurrentPrinter();
  const QPageSize old = printer.pageLayout().pageSize();
  bool paperSet = size.isValid() && printer.setPageSize(size) &&
                  printer.pageLayout().pageSize().isEquivalentTo(size);
  if (!paperSet) {
    if (!printer.pageLayout().pageSize().isEquivalentTo(old)) printer.setPageSize(old);
    ShowWordedMessage(owner, ControlCaption(QStringLiteral("msgPrinterSetting")),
                      ControlCaption(QStringLiteral("msgPrinterSettingText")));
  }
  printer.setPageOrientation(orientation);
  if (copies >= 1) printer.setCopyCount(copies);
  ReadPrinterState();
  return paperSet;
}

}  // namespace

QPrinter &CurrentPrinter() {
  static QPrinter *printer = [] {
    auto *made = new QPrinter(QPrinter::HighResolution);
    if (QPrinterInfo::availablePrinterNames().isEmpty()) made->setOutputFormat(QPrinter::PdfFormat);
    return made;
  }();
  return *printer;
}

PrinterState ReadPrinterState() {
  const QPrinter &printer = CurrentPrinter();
  PrinterState state;
  state.PaperCode = PrinterPaperCode(printer.pageLayout().pageSize());
  state.Orientation = OrientationCodeOf(printer.pageLayout().orientation());
  state.Copies = printer.copyCount();
  PrintConfig &config = Shared().Print;
  config.PaperCode = state.PaperCode;
  config.Orientation = state.Orientation;
  config.Copies = state.Copies;
  return state;
}

bool ApplyPrinterState(QWidget *owner, int paperCode, int orientation, int copies) {
  return ApplyPrinterPage(owner, PrinterPageSize(paperCode), PageOrientationOf(orientation),
                          copies);
}

int ShowPrintSetup(QWidget *owner) {
  QPrinter &current = CurrentPrinter();
  // The dialog works on a printer of its own, filled from the current one, so
  // that a cancel leaves the current printer untouched.
  QPrinter choice(QPrinter::HighResolution);
  if (current.outputFormat() == QPrinter::NativeFormat) {
    choice.setPrinterName(current.printerName());
  } else {
    // A PDF file: the one it was, else trend.pdf in the home folder.
    choice.setOutputFormat(QPrinter::PdfFormat);
    choice.setOutputFileName(current.outputFileName().isEmpty()
                                 ? QDir::home().filePath(QStringLiteral("trend.pdf"))
                                 : current.outputFileName());
  }
  choice.setPageSize(current.pageLayout().pageSize());
  choice.setPageOrientation(current.pageLayout().orientation());
  choice.setCopyCount(current.copyCount());

  QPrintDialog dialog(&choice, owner);
  dialog.setObjectName(QStringLiteral("dlgPrint"));
  dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
  dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
  if (dialog.exec() != QDialog::Accepted) return 0;

  // The chosen device, looked up among the platform's printers, becomes current.
  if (choice.outputFormat() == QPrinter::NativeFormat &&
      QPrinterInfo::availablePrinterNames().contains(choice.printerName())) {
    current.setOutputFormat(QPrinter::NativeFormat);
    current.setPrinterName(choice.printerName());
  } else {
    current.setOutputFormat(QPrinter::PdfFormat);
    current.setOutputFileName(choice.outputFileName());
  }
  ApplyPrinterPage(owner, choice.pageLayout().pageSize(), choice.pageLayout().orientation(),
                   choice.copyCount());
  return -1;
}

}  // namespace recscope
