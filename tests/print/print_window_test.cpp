// Print and its preview through the real main window on the sample record: the
// menu command, the preview on screen, its page and zoom buttons and the state
// they leave; the print command and the preview's print button going through the
// platform's print dialog on the current printer (its "print to file" device, as
// on a machine without printers), the PDF it writes, the state the next print
// starts from, and the trend's view untouched by either.
#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPrintDialog>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>

#include "../gui/gui_test_support.h"
#include "app/desktop_commands.h"
#include "print/print_command.h"
#include "print/print_preview_window.h"
#include "print/printer_setup.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");

int PdfPages(const QString &pdf) {
  QTemporaryDir dir;
  if (QProcess::execute(QStringLiteral("pdftoppm"),
                        {QStringLiteral("-r"), QStringLiteral("20"), QStringLiteral("-png"), pdf,
                         dir.filePath(QStringLiteral("p"))}) != 0)
    return -1;
  return static_cast<int>(QDir(dir.path()).entryList({QStringLiteral("p*.png")}).size());
}

// The first page's size in points as pdfinfo reads it; empty when it cannot.
QSizeF PdfPageSize(const QString &pdf) {
  QProcess info;
  info.start(QStringLiteral("pdfinfo"), {pdf});
  if (!info.waitForFinished(10000) || info.exitCode() != 0) return {};
  const QRegularExpressionMatch m =
      QRegularExpression(QStringLiteral(R"(Page size:\s+([\d.]+) x ([\d.]+) pts)"))
          .match(QString::fromLocal8Bit(info.readAllStandardOutput()));
  if (!m.hasMatch()) return {};
  return {m.captured(1).toDouble(), m.captured(2).toDouble()};
}

// The first page's sheet is `width` by `height` points, within a point.
::testing::AssertionResult SheetIs(const QString &pdf, double width, double height) {
  const QSizeF sheet = PdfPageSize(pdf);
  if (std::abs(sheet.width() - width) <= 1 && std::abs(sheet.height() - height) <= 1)
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "sheet " << sheet.width() << " x " << sheet.height();
}

// What the operator does in the print dialog: the output file typed in, a paper
// and an orientation picked in its properties, the copies, then Print or Cancel.
// Empty or 0 leaves a field as the dialog shows it.
struct DialogAnswer {
  QString file;
  QString paper;
  int orientation = 0;
  int copies = 0;
  bool print = true;
};

// Print to `file`, every other field as the dialog shows it.
DialogAnswer PrintTo(const QString &file) {
  DialogAnswer answer;
  answer.file = file;
  return answer;
}

// What the dialog showed before the answer.
struct DialogSeen {
  bool shown = false;
  QString name;
  QString file;
  QString paper;
  bool portrait = false;
  bool landscape = false;
  int copies = 0;
};

// Answers the next print dialog as the operator would, through its widgets.
void AnswerPrintDialog(const DialogAnswer &answer, DialogSeen &seen) {
  QTimer::singleShot(0, [answer, &seen] {
    auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
    if (!dialog) {
      ADD_FAILURE() << "no print dialog";
      if (QWidget *other = QApplication::activeModalWidget()) other->close();
      return;
    }
    seen.shown = true;
    seen.name = dialog->objectName();
    auto *file = dialog->findChild<QLineEdit *>(QStringLiteral("filename"));
    auto *copies = dialog->findChild<QSpinBox *>(QStringLiteral("copies"));
    auto *properties = dialog->findChild<QPushButton *>(QStringLiteral("properties"));
    if (!file || !copies || !properties) {
      ADD_FAILURE() << "the print dialog lacks its file, copies or properties";
      dialog->reject();
      return;
    }
    seen.file = file->text();
    seen.copies = copies->value();
    // Paper and orientation are in the properties dialog.
    QTimer::singleShot(0, [answer, &seen] {
      auto *props = qobject_cast<QDialog *>(QApplication::activeModalWidget());
      auto *paper =
          props ? props->findChild<QComboBox *>(QStringLiteral("pageSizeCombo")) : nullptr;
      auto *portrait =
          props ? props->findChild<QRadioButton *>(QStringLiteral("portrait")) : nullptr;
      auto *landscape =
          props ? props->findChild<QRadioButton *>(QStringLiteral("landscape")) : nullptr;
      if (!paper || !portrait || !landscape) {
        ADD_FAILURE() << "no properties dialog with paper and orientation";
        if (props) props->reject();
        return;
      }
      seen.paper = paper->currentText();
      seen.portrait = portrait->isChecked();
      seen.landscape = landscape->isChecked();
      if (!answer.paper.isEmpty()) {
        const int index = paper->findText(answer.paper);
        EXPECT_GE(index, 0) << answer.paper.toStdString();
        paper->setCurrentIndex(index);
      }
      if (answer.orientation == kPortrait) portrait->click();
      if (answer.orientation == kLandscape) landscape->click();
      props->accept();
    });
    properties->click();
    if (!answer.file.isEmpty()) file->setText(answer.file);
    if (answer.copies > 0) copies->setValue(answer.copies);
    if (answer.print)
      dialog->accept();
    else
      dialog->reject();
  });
}

struct PrintRoute : ::testing::Test {
  PrintRoute() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
    window.openFiles({kSample});
    window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
    trend = qobject_cast<TrendWindow *>(window.mdiArea()->subWindowList().front()->widget());
    // A continuous print of three pages, each a day of the record.
    PrintConfig &print = Shared().Print;
    print.PALL = 1;
    print.PrintMode = "All";
    print.PAG = 3;
    print.CURSOR = 1;
    print.Orientation = kLandscape;
    print.PaperCode = kPaperA4;
    print.Copies = 1;
    // The current printer lives as long as the process: each test starts it as a
    // fresh one on a machine without printers is, an A4 PDF file of no name yet.
    QPrinter &printer = CurrentPrinter();
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString());
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setCopyCount(1);
    trend->view().DisplayStart = Shared().Slot(1).Record.FirstTime;
    trend->view().DisplayEnd = Shared().Slot(1).Record.FirstTime + 86400;
    trend->RedrawWholeView();
  }
  ~PrintRoute() override {
    for (QWidget *w : QApplication::topLevelWidgets())
      if (w->objectName() == "frmPrintpreview") w->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  PrintPreviewWindow *Preview() {
    for (QWidget *w : QApplication::topLevelWidgets())
      if (auto *p = qobject_cast<PrintPreviewWindow *>(w))
        if (p->isVisible()) return p;
    return nullptr;
  }
  QPushButton *Button(PrintPreviewWindow *p, int index) {
    return p->findChild<QPushButton *>(QStringLiteral("Command1_%1").arg(index));
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
  TrendWindow *trend = nullptr;
};

}  // namespace

TEST_F(PrintRoute, PreviewFromTheMenuPagesThroughTheButtons) {
  ASSERT_NE(trend, nullptr);
  ASSERT_TRUE(window.command("mnuFileV")->isEnabled());
  const std::int32_t start = trend->view().DisplayStart;
  window.command("mnuFileV")->trigger();
  PrintPreviewWindow *preview = Preview();
  ASSERT_NE(preview, nullptr);
  EXPECT_EQ(preview->objectName(), "frmPrintpreview");
  EXPECT_EQ(preview->windowTitle(), QString::fromStdString(GetMessageText(10710)));
  const int captions[] = {11017, 11018, 11019, 11020, 11021, 11022,
                          11023, 11024, 11025, 11005, 11006};
  for (int i = 0; i < 11; ++i) {
    ASSERT_NE(Button(preview, i), nullptr) << i;
    EXPECT_EQ(Button(preview, i)->text(), QString::fromStdString(GetMessageText(captions[i])));
  }
  EXPECT_NE(preview->findChild<QScrollBar *>("HScroll1"), nullptr);
  EXPECT_NE(preview->findChild<QScrollBar *>("VScroll1"), nullptr);

  // Landscape: the horizontal form, three pages a day apart, the first shown.
  EXPECT_EQ(preview->orientation(), kLandscape);
  EXPECT_TRUE(preview->plan().geometry.Horizontal);
  ASSERT_EQ(preview->pageCount(), 3);
  EXPECT_EQ(preview->plan().pages[1].Start, start + 86400);
  EXPECT_EQ(preview->pageIndex(), 0);
  EXPECT_GT(preview->pageImage().width(), preview->pageImage().height());
  EXPECT_FALSE(Button(preview, 9)->isEnabled());
  EXPECT_TRUE(Button(preview, 10)->isEnabled());

  Button(preview, 10)->click();
  EXPECT_EQ(preview->pageIndex(), 1);
  Button(preview, 10)->click();
  EXPECT_EQ(preview->pageIndex(), 2);
  EXPECT_FALSE(Button(preview, 10)->isEnabled());
  Button(preview, 10)->click();  // nothing past the last page
  EXPECT_EQ(preview->pageIndex(), 2);
  Button(preview, 9)->click();
  EXPECT_EQ(preview->pageIndex(), 1);
  EXPECT_EQ(preview->findChild<QLabel *>("lblPage")->text(), "2 / 3");

  // Enlarge and reduce change the scale of the page on screen.
  const int width = preview->pageImage().width();
  Button(preview, 6)->click();
  EXPECT_GT(preview->pageImage().width(), width);
  EXPECT_DOUBLE_EQ(preview->zoom(), 1.25);
  Button(preview, 7)->click();
  Button(preview, 7)->click();
  EXPECT_LT(preview->pageImage().width(), width);

  // Vertical pages: portrait, the vertical form, from the first page again.
  Button(preview, 4)->click();
  EXPECT_EQ(preview->orientation(), kPortrait);
  EXPECT_EQ(Shared().Print.Orientation, kPortrait);
  EXPECT_FALSE(preview->plan().geometry.Horizontal);
  EXPECT_EQ(preview->pageIndex(), 0);
  EXPECT_LT(preview->pageImage().width(), preview->pageImage().height());
  Button(preview, 5)->click();
  EXPECT_TRUE(preview->plan().geometry.Horizontal);

  // The preview shows what would print: the same routine at the preview's scale.
  const QImage same =
      DrawPrintPageImage(preview->source(), preview->plan(), 0, preview->pixelsPerTwip());
  EXPECT_EQ(same, preview->pageImage());

  // The trend's view is as it was; the close button takes the preview away.
  EXPECT_EQ(trend->view().DisplayStart, start);
  Button(preview, 8)->click();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Preview(), nullptr);
}

TEST_F(PrintRoute, PrintCommandPrintsOnThePaperChosenInThePrintDialogAndKeepsIt) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("print.pdf"));
  const std::int32_t start = trend->view().DisplayStart;
  const std::int32_t end = trend->view().DisplayEnd;
  DialogSeen seen;
  AnswerPrintDialog({.file = pdf, .paper = "A5", .orientation = kPortrait, .copies = 2}, seen);
  window.command("mnuFilePrint")->trigger();
  ASSERT_TRUE(seen.shown);
  EXPECT_EQ(seen.name, "dlgPrint");
  // The dialog opens on the settings in hand: A4, landscape, one copy.
  EXPECT_EQ(seen.paper, "A4");
  EXPECT_TRUE(seen.landscape);
  EXPECT_EQ(seen.copies, 1);
  // The PDF holds the three pages on an A5 sheet in portrait.
  ASSERT_TRUE(QFileInfo::exists(pdf));
  EXPECT_EQ(PdfPages(pdf), 3);
  EXPECT_TRUE(SheetIs(pdf, 419.5, 595.3));
  // The choice is the current printer's and the print settings'.
  const PrinterState printer = ReadPrinterState();
  EXPECT_EQ(printer.PaperCode, kPaperA5);
  EXPECT_EQ(printer.Orientation, kPortrait);
  EXPECT_EQ(printer.Copies, 2);
  EXPECT_EQ(CurrentPrinter().outputFileName(), pdf);
  EXPECT_EQ(Shared().Print.PaperCode, kPaperA5);
  EXPECT_EQ(Shared().Print.Orientation, kPortrait);
  EXPECT_EQ(Shared().Print.Copies, 2);
  EXPECT_TRUE(messages.ids().empty());
  // The view is the one it was before the print.
  EXPECT_EQ(trend->view().DisplayStart, start);
  EXPECT_EQ(trend->view().DisplayEnd, end);

  // The next print starts from that state; the portrait page is the vertical form.
  const QString second = out.filePath(QStringLiteral("second.pdf"));
  DialogSeen next;
  AnswerPrintDialog(PrintTo(second), next);
  window.command("mnuFilePrint")->trigger();
  ASSERT_TRUE(next.shown);
  EXPECT_EQ(next.paper, "A5");
  EXPECT_TRUE(next.portrait);
  EXPECT_EQ(next.copies, 2);
  EXPECT_EQ(next.file, pdf);
  ASSERT_TRUE(QFileInfo::exists(second));
  EXPECT_EQ(PdfPages(second), 3);
  EXPECT_TRUE(SheetIs(second, 419.5, 595.3));
  EXPECT_TRUE(window.command("mnuFilePrint")->isEnabled());
}

TEST_F(PrintRoute, JisB4InLandscapeIsPaperCode12OnItsOwnSheet) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("b4.pdf"));
  DialogSeen seen;
  AnswerPrintDialog({.file = pdf, .paper = "JIS B4", .orientation = kLandscape}, seen);
  window.command("mnuFilePrint")->trigger();
  ASSERT_TRUE(seen.shown);
  EXPECT_EQ(Shared().Print.PaperCode, 12);
  EXPECT_EQ(Shared().Print.Orientation, kLandscape);
  // 364 by 257 mm; the page on it is the A4 layout at 1.19.
  EXPECT_TRUE(SheetIs(pdf, 1031.8, 728.5));
  const PageExtent page = PrintablePage(Shared().Print.PaperCode, Shared().Print.Orientation);
  EXPECT_DOUBLE_EQ(page.Width, 16495 * 1.19);
  EXPECT_EQ(PdfPages(pdf), 3);
}

TEST_F(PrintRoute, APaperThePrinterCannotTakeShowsPrinterSettingOnThePrintRoute) {
  // Settings in hand that name a paper the platform has no sheet for.
  Shared().Print.PaperCode = 9999;
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("old-paper.pdf"));
  DialogSeen seen;
  AnswerPrintDialog(PrintTo(pdf), seen);
  window.command("mnuFilePrint")->trigger();
  ASSERT_EQ(messages.messages().size(), 1u);
  EXPECT_EQ(messages.messages()[0].title, "Printer setting");
  EXPECT_EQ(messages.messages()[0].text(), "The stecified size of the form can not be used.");
  EXPECT_EQ(messages.messages()[0].buttons, QMessageBox::Ok);
  // The print goes on with the old paper, in the settings' orientation.
  ASSERT_TRUE(seen.shown);
  EXPECT_EQ(seen.paper, "A4");
  EXPECT_TRUE(seen.landscape);
  EXPECT_EQ(Shared().Print.PaperCode, kPaperA4);
  EXPECT_TRUE(SheetIs(pdf, 841.9, 595.3));
}

TEST_F(PrintRoute, CancelledPrintDialogPrintsNothing) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("never.pdf"));
  DialogSeen seen;
  AnswerPrintDialog(
      {.file = pdf, .paper = "A3", .orientation = kPortrait, .copies = 3, .print = false}, seen);
  window.command("mnuFilePrint")->trigger();
  ASSERT_TRUE(seen.shown);
  EXPECT_FALSE(QFileInfo::exists(pdf));
  EXPECT_TRUE(QDir(out.path()).isEmpty());
  // Neither the settings nor the printer take what was cancelled.
  EXPECT_EQ(Shared().Print.PaperCode, kPaperA4);
  EXPECT_EQ(Shared().Print.Orientation, kLandscape);
  EXPECT_EQ(Shared().Print.Copies, 1);
  EXPECT_NE(CurrentPrinter().outputFileName(), pdf);
  EXPECT_EQ(ReadPrinterState().PaperCode, kPaperA4);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(PrintRoute, WithoutAFileNameThePrintGoesToTrendPdfInTheHomeFolder) {
  QTemporaryDir home;
  const QByteArray oldHome = qgetenv("HOME");
  qputenv("HOME", home.path().toLocal8Bit());
  DialogSeen seen;
  AnswerPrintDialog({}, seen);
  window.command("mnuFilePrint")->trigger();
  qputenv("HOME", oldHome);
  ASSERT_TRUE(seen.shown);
  const QString pdf = QDir(home.path()).filePath(QStringLiteral("trend.pdf"));
  EXPECT_EQ(seen.file, pdf);
  ASSERT_TRUE(QFileInfo::exists(pdf));
  EXPECT_EQ(PdfPages(pdf), 3);
}

TEST_F(PrintRoute, PreviewPrintButtonPrintsThePagesItShows) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("preview.pdf"));
  window.command("mnuFileV")->trigger();
  PrintPreviewWindow *preview = Preview();
  ASSERT_NE(preview, nullptr);
  EXPECT_EQ(preview->orientation(), kLandscape);
  DialogSeen seen;
  AnswerPrintDialog({.file = pdf, .paper = "JIS B5", .orientation = kPortrait}, seen);
  Button(preview, 0)->click();
  ASSERT_TRUE(seen.shown);
  EXPECT_TRUE(seen.landscape);
  // JIS B5 in portrait, and the preview shows the pages it printed.
  EXPECT_EQ(Shared().Print.PaperCode, kPaperB5);
  EXPECT_EQ(preview->orientation(), kPortrait);
  EXPECT_FALSE(preview->plan().geometry.Horizontal);
  ASSERT_TRUE(QFileInfo::exists(pdf));
  EXPECT_EQ(PdfPages(pdf), preview->pageCount());
  EXPECT_EQ(preview->pageCount(), 3);
  EXPECT_TRUE(SheetIs(pdf, 515.9, 728.5));

  // The preview's page buttons change the orientation the next print starts from.
  Button(preview, 5)->click();
  DialogSeen next;
  DialogAnswer cancel;
  cancel.print = false;
  AnswerPrintDialog(cancel, next);
  Button(preview, 0)->click();
  ASSERT_TRUE(next.shown);
  EXPECT_EQ(next.paper, "JIS B5");
  EXPECT_TRUE(next.landscape);
}

TEST_F(PrintRoute, PreviewGoesWithItsTrendWindow) {
  window.command("mnuFileV")->trigger();
  ASSERT_NE(Preview(), nullptr);
  window.command("mnuFileClose")->trigger();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Preview(), nullptr);
  EXPECT_FALSE(window.command("mnuFileV")->isEnabled());
}
