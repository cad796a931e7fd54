// Print and its preview through the real main window on the sample record: the
// menu command, the preview on screen, its page and zoom buttons and the state
// they leave; the print command writing the pages into a PDF in place of a
// printer, and the trend's view untouched by either.
#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>

#include "../gui/gui_test_support.h"
#include "app/desktop_commands.h"
#include "print/print_command.h"
#include "print/print_preview_window.h"
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
    trend->view().DisplayStart = Shared().Slot(1).Record.FirstTime;
    trend->view().DisplayEnd = Shared().Slot(1).Record.FirstTime + 86400;
    trend->RedrawWholeView();
  }
  ~PrintRoute() override {
    SetPrinterChooser({});
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

TEST_F(PrintRoute, PrintCommandWritesThePagesToAPdfInPlaceOfThePrinter) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("print.pdf"));
  int asked = 0;
  SetPrinterChooser([&](QPrinter &printer, QWidget *) {
    ++asked;
    // What the dialog's "print to file" does, with A5 chosen in portrait.
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    printer.setPageSize(QPageSize(QPageSize::A5));
    printer.setPageOrientation(QPageLayout::Portrait);
    return true;
  });
  const std::int32_t start = trend->view().DisplayStart;
  const std::int32_t end = trend->view().DisplayEnd;
  window.command("mnuFilePrint")->trigger();
  EXPECT_EQ(asked, 1);
  ASSERT_TRUE(QFileInfo::exists(pdf));
  EXPECT_EQ(PdfPages(pdf), 3);
  // The printer's choice is kept in the print settings.
  EXPECT_EQ(Shared().Print.PaperCode, kPaperA5);
  EXPECT_EQ(Shared().Print.Orientation, kPortrait);
  // The view is the one it was before the print.
  EXPECT_EQ(trend->view().DisplayStart, start);
  EXPECT_EQ(trend->view().DisplayEnd, end);
}

TEST_F(PrintRoute, CancelledPrintDialogPrintsNothing) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("never.pdf"));
  SetPrinterChooser([&](QPrinter &printer, QWidget *) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    return false;
  });
  window.command("mnuFilePrint")->trigger();
  EXPECT_FALSE(QFileInfo::exists(pdf));
  EXPECT_EQ(Shared().Print.Orientation, kLandscape);
}

TEST_F(PrintRoute, PreviewPrintButtonPrintsThePagesItShows) {
  QTemporaryDir out;
  const QString pdf = out.filePath(QStringLiteral("preview.pdf"));
  SetPrinterChooser([&](QPrinter &printer, QWidget *) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    return true;
  });
  window.command("mnuFileV")->trigger();
  PrintPreviewWindow *preview = Preview();
  ASSERT_NE(preview, nullptr);
  Button(preview, 0)->click();
  ASSERT_TRUE(QFileInfo::exists(pdf));
  EXPECT_EQ(PdfPages(pdf), preview->pageCount());
  EXPECT_EQ(preview->pageCount(), 3);
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
