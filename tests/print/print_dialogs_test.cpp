// The print settings dialog, the title dialog and the printer set-up the whole
// way through the real main window on the demo record: the menu opens them over
// the current trend, their controls are found by name, OK stores what they show
// in the settings file and in the trend's view, cancel changes nothing, and the
// menu set stands as it was after.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <functional>
#include <memory>

#include "../gui/gui_test_support.h"
#include "../shell/temp_folder.h"
#include "app/desktop_commands.h"
#include "print/print_preview_window.h"
#include "print/print_setting_form.h"
#include "print/printer_setup.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;
using recscope::testing::ReadBytes;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");

QString Text(int id) { return QString::fromStdString(GetMessageText(id)); }

// Runs `drive` on the modal dialog named `name` once it stands. A dialog the
// drive leaves open is closed with cancel, so that a failed step cannot hang the
// test.
void WhenShown(const QString &name, std::function<void(QDialog *)> drive) {
  QTimer::singleShot(0, [name, drive] {
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    const bool found = dialog && dialog->objectName() == name;
    EXPECT_TRUE(found) << name.toStdString();
    if (found) drive(dialog);
    if (dialog && dialog->isVisible()) dialog->reject();
  });
}

template <typename T>
T *Child(QDialog *dialog, const char *name) {
  T *found = dialog->findChild<T *>(QString::fromLatin1(name));
  EXPECT_NE(found, nullptr) << name;
  return found;
}

void Choose(QDialog *dialog, const char *combo, const QString &value) {
  if (auto *box = Child<QComboBox>(dialog, combo)) {
    const int index = box->findText(value);
    EXPECT_GE(index, 0) << combo << " " << value.toStdString();
    box->setCurrentIndex(index);
  }
}

QString Shown(QDialog *dialog, const char *combo) {
  auto *box = Child<QComboBox>(dialog, combo);
  return box ? box->currentText() : QString();
}

bool Checked(QDialog *dialog, const char *option) {
  auto *button = Child<QRadioButton>(dialog, option);
  return button && button->isChecked();
}

void Click(QDialog *dialog, const char *name) {
  if (auto *button = Child<QPushButton>(dialog, name)) button->click();
}

struct PrintDialogs : ::testing::Test {
  PrintDialogs() { Start(); }

  // The program as it starts, with the demo record open.
  void Start() {
    window = std::make_unique<MainWindow>();
    ConnectDesktopCommands(*window);
    window->load();
    window->openFiles({kSample});
    trend = nullptr;
    for (QMdiSubWindow *sub : window->mdiArea()->subWindowList())
      if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) trend = t;
    ASSERT_NE(trend, nullptr);
  }
  // An end and a new start of the program: the record is closed, the window goes,
  // and a new one reads the settings file again.
  void Restart() {
    CloseRecord();
    window.reset();
    Start();
  }
  void CloseRecord() {
    QMdiArea *mdi = window->mdiArea();
    mdi->setActiveSubWindow(mdi->subWindowList().front());
    window->runCommand("mnuFileClose");
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    trend = nullptr;
  }
  std::string Ini() const { return ViewerComIniPath(home.folder()); }

  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  std::unique_ptr<MainWindow> window;
  TrendWindow *trend = nullptr;
};

const std::string kChosenIni =
    "[PRINT]\r\nDLINE=3\r\nWLINE=4\r\nMLINE=2\r\nSLINE=1\r\nSCALE=5\r\nPALL=2\r\nDAY=1\r\n"
    "HOR=2\r\nMIN=30\r\nPAG=6\r\nCURSOR=0\r\n"
    "[DATETYPE]\r\nHYOUJINUM=1\r\n[TREND]\r\nDIRECTION=Hori\r\n[FTP]\r\nAUTO=0\r\n";

// The start adds the automatic fetch's switch to the delivered file.
const std::string kStartedIni = std::string(kDeliveredViewerComIni) + "[FTP]\r\nAUTO=0\r\n";

// The choice the round trip makes in dlgPrnSet.
void ChooseSettings(QDialog *d) {
  Choose(d, "DataLine", "3");
  Choose(d, "WakuLine", "4");
  Choose(d, "MasuLine", "2");
  Choose(d, "ScaleLine", "5");
  Child<QRadioButton>(d, "Option2")->setChecked(true);
  Choose(d, "ComboDay", "1");
  Choose(d, "ComboHour", "2");
  Choose(d, "ComboMin", "30");
  Choose(d, "ComboPage", "6");
  Child<QRadioButton>(d, "OptFlag")->setChecked(true);
}

}  // namespace

TEST_F(PrintDialogs, SettingsDialogShowsItsCaptionFramesAndControlsFromTheCatalogue) {
  bool seen = false;
  WhenShown("dlgPrnSet", [&seen](QDialog *d) {
    seen = true;
    EXPECT_TRUE(d->isModal());
    EXPECT_EQ(d->windowTitle(), Text(10630));
    QStringList frames;
    for (QGroupBox *frame : d->findChildren<QGroupBox *>()) frames << frame->title();
    EXPECT_EQ(frames, (QStringList{Text(10631), Text(10636), Text(10726)}));
    QStringList labels;
    for (QLabel *label : d->findChildren<QLabel *>()) labels << label->text();
    for (int id : {10632, 10633, 10634, 10635, 10640, 10641, 10642, 10643, 10644, 10645})
      EXPECT_TRUE(labels.contains(Text(id))) << id;
    EXPECT_EQ(Child<QRadioButton>(d, "OptScreen")->text(), Text(10637));
    EXPECT_EQ(Child<QRadioButton>(d, "Option1")->text(), Text(10638));
    EXPECT_EQ(Child<QRadioButton>(d, "Option2")->text(), Text(10639));
    EXPECT_EQ(Child<QRadioButton>(d, "OptCursor")->text(), Text(10724));
    EXPECT_EQ(Child<QRadioButton>(d, "OptFlag")->text(), Text(10725));
    EXPECT_EQ(Child<QPushButton>(d, "OKButton")->text(), "OK");
    EXPECT_EQ(Child<QPushButton>(d, "CancelButton")->text(), Text(11000));
    // The delivered settings file.
    EXPECT_EQ(Shown(d, "DataLine"), "1");
    EXPECT_EQ(Shown(d, "WakuLine"), "2");
    EXPECT_EQ(Shown(d, "MasuLine"), "1");
    EXPECT_EQ(Shown(d, "ScaleLine"), "1");
    EXPECT_TRUE(Checked(d, "OptScreen"));
    EXPECT_EQ(Shown(d, "ComboDay"), "0");
    EXPECT_EQ(Shown(d, "ComboHour"), "1");
    EXPECT_EQ(Shown(d, "ComboMin"), "0");
    EXPECT_EQ(Shown(d, "ComboPage"), "1");
    EXPECT_TRUE(Checked(d, "OptFlag"));  // CURSOR=0: the values at the flags
    // The time row serves the print by a set time, the page row a continuous print.
    EXPECT_FALSE(Child<QComboBox>(d, "ComboDay")->isEnabled());
    EXPECT_FALSE(Child<QComboBox>(d, "ComboPage")->isEnabled());
    Child<QRadioButton>(d, "Option2")->setChecked(true);
    EXPECT_TRUE(Child<QComboBox>(d, "ComboDay")->isEnabled());
    EXPECT_TRUE(Child<QComboBox>(d, "ComboPage")->isEnabled());
    Child<QRadioButton>(d, "Option1")->setChecked(true);
    EXPECT_FALSE(Child<QComboBox>(d, "ComboMin")->isEnabled());
    EXPECT_TRUE(Child<QComboBox>(d, "ComboPage")->isEnabled());
    Click(d, "CancelButton");
  });
  ASSERT_TRUE(window->command("mnuFilePrintSet")->isEnabled());
  window->command("mnuFilePrintSet")->trigger();
  EXPECT_TRUE(seen);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(PrintDialogs, SettingsRoundTripThroughTheMenuWritesTheKeysAndReopenShowsThem) {
  const std::string before = ReadBytes(Ini());
  EXPECT_EQ(before, kStartedIni);
  const TrendView &view = trend->view();
  WhenShown("dlgPrnSet", [](QDialog *d) {
    ChooseSettings(d);
    Click(d, "OKButton");
    EXPECT_FALSE(d->isVisible());
  });
  window->command("mnuFilePrintSet")->trigger();

  EXPECT_EQ(ReadBytes(Ini()), kChosenIni);
  const PrintConfig &print = Shared().Print;
  EXPECT_EQ(print.DLINE, 3);
  EXPECT_EQ(print.WLINE, 4);
  EXPECT_EQ(print.MLINE, 2);
  EXPECT_EQ(print.SLINE, 5);  // the width in hand, though the file keeps SLINE=1
  EXPECT_EQ(print.PALL, 2);
  EXPECT_EQ(print.PAG, 6);
  EXPECT_EQ(print.CURSOR, 0);
  EXPECT_EQ(print.PrintMode, "All");
  // The range is the trend's display; the step a day, two hours and a half.
  EXPECT_EQ(view.PrintStart, view.DisplayStart);
  EXPECT_EQ(view.PrintEnd, view.DisplayEnd);
  EXPECT_GT(view.PrintEnd, view.PrintStart);
  EXPECT_EQ(view.PrintStep, 86400 + 2 * 3600 + 30 * 60);

  bool seen = false;
  WhenShown("dlgPrnSet", [&seen](QDialog *d) {
    seen = true;
    EXPECT_EQ(Shown(d, "DataLine"), "3");
    EXPECT_EQ(Shown(d, "WakuLine"), "4");
    EXPECT_EQ(Shown(d, "MasuLine"), "2");
    EXPECT_EQ(Shown(d, "ScaleLine"), "5");
    EXPECT_TRUE(Checked(d, "Option2"));
    EXPECT_EQ(Shown(d, "ComboDay"), "1");
    EXPECT_EQ(Shown(d, "ComboHour"), "2");
    EXPECT_EQ(Shown(d, "ComboMin"), "30");
    EXPECT_EQ(Shown(d, "ComboPage"), "6");
    EXPECT_TRUE(Checked(d, "OptFlag"));
    EXPECT_FALSE(Checked(d, "OptCursor"));
    Click(d, "CancelButton");
  });
  window->command("mnuFilePrintSet")->trigger();
  EXPECT_TRUE(seen);
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_TRUE(window->command("mnuFilePrintSet")->isEnabled());
  EXPECT_TRUE(window->command("mnuFilePrint")->isEnabled());
}

TEST_F(PrintDialogs, ContinuousByTheDisplayWidthThenTheDisplayOnlyWithCursorValues) {
  WhenShown("dlgPrnSet", [](QDialog *d) {
    Child<QRadioButton>(d, "Option1")->setChecked(true);
    Click(d, "OKButton");
  });
  window->command("mnuFilePrintSet")->trigger();
  const TrendView &view = trend->view();
  EXPECT_EQ(view.PrintStep, view.DisplayEnd - view.DisplayStart);
  WhenShown("dlgPrnSet", [](QDialog *d) {
    Child<QRadioButton>(d, "OptScreen")->setChecked(true);
    Child<QRadioButton>(d, "OptCursor")->setChecked(true);
    Click(d, "OKButton");
  });
  window->command("mnuFilePrintSet")->trigger();
  EXPECT_EQ(Shared().Print.PrintMode, "Screen");
  EXPECT_EQ(Shared().Print.CURSOR, 1);
  EXPECT_EQ(view.PrintStep, 0);
  EXPECT_EQ(ReadIni("PALL", "PRINT", Ini()), "0");
  EXPECT_EQ(ReadIni("CURSOR", "PRINT", Ini()), "1");
}

TEST_F(PrintDialogs, CancelLeavesTheKeysAndTheViewUntouched) {
  const std::string before = ReadBytes(Ini());
  const PrintConfig held = Shared().Print;
  WhenShown("dlgPrnSet", [](QDialog *d) {
    ChooseSettings(d);
    Click(d, "CancelButton");
    EXPECT_FALSE(d->isVisible());
  });
  window->command("mnuFilePrintSet")->trigger();
  EXPECT_EQ(ReadBytes(Ini()), before);
  EXPECT_EQ(Shared().Print.DLINE, held.DLINE);
  EXPECT_EQ(Shared().Print.SLINE, held.SLINE);
  EXPECT_EQ(Shared().Print.PALL, held.PALL);
  EXPECT_EQ(Shared().Print.PrintMode, held.PrintMode);
  EXPECT_EQ(trend->view().PrintStep, 0);
  EXPECT_EQ(trend->view().PrintEnd, 0);
}

TEST_F(PrintDialogs, AfterARestartTheScaleWidthIsSlinesNotTheLastChosen) {
  WhenShown("dlgPrnSet", [](QDialog *d) {
    Choose(d, "ScaleLine", "7");
    Click(d, "OKButton");
  });
  window->command("mnuFilePrintSet")->trigger();
  EXPECT_EQ(ReadIni("SCALE", "PRINT", Ini()), "7");
  EXPECT_EQ(ReadIni("SLINE", "PRINT", Ini()), "1");
  WhenShown("dlgPrnSet", [](QDialog *d) {
    EXPECT_EQ(Shown(d, "ScaleLine"), "7");  // while the program runs
  });
  window->command("mnuFilePrintSet")->trigger();

  Restart();
  bool seen = false;
  WhenShown("dlgPrnSet", [&seen](QDialog *d) {
    seen = true;
    EXPECT_EQ(Shown(d, "ScaleLine"), "1");
  });
  window->command("mnuFilePrintSet")->trigger();
  EXPECT_TRUE(seen);
  EXPECT_EQ(Shared().Print.SLINE, 1);
}

TEST_F(PrintDialogs, TitleOfEightyDoubleByteCharactersIsRefusedWith18700AndTheDialogStays) {
  const QString tooLong = QString(80, QChar(0x3042));  // あ: 160 bytes in the code page
  const QString fits = QString(40, QChar(0x3042));     // 80 bytes
  bool stayed = false;
  WhenShown("dlgTitle", [&](QDialog *d) {
    EXPECT_EQ(d->windowTitle(), Text(10660));
    EXPECT_EQ(Child<QLabel>(d, "Label1")->text(), Text(10661));
    EXPECT_EQ(Child<QPushButton>(d, "Command2")->text(), Text(11000));
    EXPECT_EQ(Child<QLineEdit>(d, "Text1")->text(), "");
    Child<QLineEdit>(d, "Text1")->setText(tooLong);
    Click(d, "Command1");
    stayed = d->isVisible();
    EXPECT_EQ(messages.ids(), std::vector<int>{18700});
    if (!messages.messages().empty()) {
      EXPECT_EQ(messages.messages()[0].text(),
                QString::fromUtf8("タイトルは80文字以内で入力してください"));
    }
    EXPECT_EQ(trend->view().PrintTitle, "");
    Child<QLineEdit>(d, "Text1")->setText(fits);
    Click(d, "Command1");
    EXPECT_FALSE(d->isVisible());
  });
  ASSERT_TRUE(window->command("mnuFilePrintTitle")->isEnabled());
  window->command("mnuFilePrintTitle")->trigger();
  EXPECT_TRUE(stayed);
  EXPECT_EQ(trend->view().PrintTitle, fits.toStdString());
  EXPECT_EQ(messages.ids(), std::vector<int>{18700});

  // Reopened, it shows the title; cancel leaves it.
  WhenShown("dlgTitle", [&](QDialog *d) {
    EXPECT_EQ(Child<QLineEdit>(d, "Text1")->text(), fits);
    Child<QLineEdit>(d, "Text1")->setText("other");
    Click(d, "Command2");
  });
  window->command("mnuFilePrintTitle")->trigger();
  EXPECT_EQ(trend->view().PrintTitle, fits.toStdString());
  EXPECT_TRUE(window->command("mnuFilePrintTitle")->isEnabled());
}

TEST_F(PrintDialogs, PrintCommandsOfTheDialogsAreOffWithoutARecord) {
  CloseRecord();
  EXPECT_EQ(Shared().OpenFileCount, 0);
  EXPECT_FALSE(window->command("mnuFilePrintSet")->isEnabled());
  EXPECT_FALSE(window->command("mnuFilePrintTitle")->isEnabled());
}

TEST_F(PrintDialogs, PreviewButtonsOpenTheTitleAndTheSettingsDialogsOfItsTrend) {
  window->command("mnuFileV")->trigger();
  PrintPreviewWindow *preview = nullptr;
  for (QWidget *w : QApplication::topLevelWidgets())
    if (auto *p = qobject_cast<PrintPreviewWindow *>(w))
      if (p->isVisible()) preview = p;
  ASSERT_NE(preview, nullptr);
  const QString title = QString::fromUtf8("焼鈍炉 A");
  WhenShown("dlgTitle", [&title](QDialog *d) {
    Child<QLineEdit>(d, "Text1")->setText(title);
    Click(d, "Command1");
  });
  preview->findChild<QPushButton *>("Command1_1")->click();
  EXPECT_EQ(trend->view().PrintTitle, title.toStdString());
  WhenShown("dlgPrnSet", [](QDialog *d) {
    Choose(d, "DataLine", "4");
    Click(d, "OKButton");
  });
  preview->findChild<QPushButton *>("Command1_2")->click();
  EXPECT_EQ(ReadIni("DLINE", "PRINT", Ini()), "4");
  EXPECT_EQ(Shared().Print.DLINE, 4);
  EXPECT_TRUE(messages.ids().empty());
  preview->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The printer: a PDF file stands for a device, so that the set-up can be driven
// on a machine without printers.
struct PrinterSetup : PrintDialogs {
  PrinterSetup() {
    CurrentPrinter().setOutputFormat(QPrinter::PdfFormat);
    CurrentPrinter().setOutputFileName(home.path("page.pdf"));
  }
};

TEST_F(PrinterSetup, PaperCode8GivesAnA3PageOf11680By16495Times1414) {
  ASSERT_TRUE(ApplyPrinterState(window.get(), 8, 1, 1));
  EXPECT_EQ(CurrentPrinter().pageLayout().pageSize().id(), QPageSize::A3);
  const PrinterState state = ReadPrinterState();
  EXPECT_EQ(state.PaperCode, 8);
  EXPECT_EQ(state.Orientation, 1);
  EXPECT_EQ(Shared().Print.PaperCode, 8);
  const PageExtent page = PrintablePage(Shared().Print.PaperCode, Shared().Print.Orientation);
  EXPECT_DOUBLE_EQ(page.Width, 11680 * 1.414);
  EXPECT_DOUBLE_EQ(page.Height, 16495 * 1.414);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(PrinterSetup, LandscapeB5WithTwoCopiesIsSetAndReadBack) {
  ASSERT_TRUE(ApplyPrinterState(window.get(), 13, 2, 2));
  const PrinterState state = ReadPrinterState();
  EXPECT_EQ(state.PaperCode, 13);
  EXPECT_EQ(state.Orientation, 2);
  EXPECT_EQ(state.Copies, 2);
  EXPECT_EQ(CurrentPrinter().pageLayout().orientation(), QPageLayout::Landscape);
  const PageExtent page = PrintablePage(Shared().Print.PaperCode, Shared().Print.Orientation);
  EXPECT_DOUBLE_EQ(page.Width, 16495 * 0.865);
  EXPECT_DOUBLE_EQ(page.Height, 11680 * 0.865);
}

TEST_F(PrinterSetup, APaperThePrinterCannotTakeShowsPrinterSettingAndKeepsTheOldPaper) {
  ASSERT_TRUE(ApplyPrinterState(window.get(), 8, 1, 1));
  EXPECT_FALSE(ApplyPrinterState(window.get(), 9999, 2, 3));
  ASSERT_EQ(messages.messages().size(), 1u);
  EXPECT_EQ(messages.messages()[0].title, "Printer setting");
  EXPECT_EQ(messages.messages()[0].text(), "The stecified size of the form can not be used.");
  EXPECT_EQ(messages.messages()[0].buttons, QMessageBox::Ok);
  const PrinterState state = ReadPrinterState();
  EXPECT_EQ(state.PaperCode, 8);  // the old paper
  EXPECT_EQ(state.Orientation, 2);
  EXPECT_EQ(state.Copies, 3);
}

TEST_F(PrinterSetup, PrintDialogIsFilledFromTheCurrentPrinterAndBringsBackTheChoice) {
  ASSERT_TRUE(ApplyPrinterState(window.get(), 8, 2, 2));
  bool seen = false;
  QTimer::singleShot(0, [&seen] {
    auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    seen = true;
    EXPECT_EQ(dialog->objectName(), "dlgPrint");
    EXPECT_EQ(dialog->printer()->pageLayout().pageSize().id(), QPageSize::A3);
    EXPECT_EQ(dialog->printer()->pageLayout().orientation(), QPageLayout::Landscape);
    auto *copies = dialog->findChild<QSpinBox *>("copies");
    EXPECT_NE(copies, nullptr);
    if (copies) {
      EXPECT_EQ(copies->value(), 2);
      copies->setValue(3);
    }
    dialog->accept();
  });
  EXPECT_EQ(ShowPrintSetup(window.get()), -1);
  EXPECT_TRUE(seen);
  const PrinterState state = ReadPrinterState();
  EXPECT_EQ(state.PaperCode, 8);
  EXPECT_EQ(state.Orientation, 2);
  EXPECT_EQ(state.Copies, 3);
  EXPECT_EQ(CurrentPrinter().outputFormat(), QPrinter::PdfFormat);
  EXPECT_TRUE(messages.ids().empty());
}

TEST_F(PrinterSetup, CancelOfThePrintDialogLeavesThePrinter) {
  ASSERT_TRUE(ApplyPrinterState(window.get(), 11, 1, 1));
  QTimer::singleShot(0, [] {
    auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    if (auto *copies = dialog->findChild<QSpinBox *>("copies")) copies->setValue(4);
    dialog->reject();
  });
  EXPECT_EQ(ShowPrintSetup(window.get()), 0);
  const PrinterState state = ReadPrinterState();
  EXPECT_EQ(state.PaperCode, 11);
  EXPECT_EQ(state.Orientation, 1);
  EXPECT_EQ(state.Copies, 1);
}
