// Reports through the real main window on the sample record: mnuWindowChohyo,
// frmChohyoSelect, the sheet in frmChohyoList, the CSV by cmdSave and the menus
// after. The expected values of a day are worked out here from the level-1
// working file with plain loops, apart from the report code.
#include <gtest/gtest.h>
#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTableWidget>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "platform/text_encoding.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "totalize/report.h"
#include "totalize/report_list_window.h"
#include "totalize/report_select_dialog.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::string Tenths(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

// What the month's report shows for channel 1 on one day, from level 1.
struct DayCells {
  std::string pv, mx, tx, mi, ti, av, sd;
};

DayCells ChannelOneOfDay(const std::string &folder, std::int64_t dayStart) {
  const RecordFileInfo &info = Shared().Slot(1).Record;
  const int ct = info.ChannelTotal;
  const std::int64_t period = Shared().Slot(1).Period();
  const std::string bytes = ReadAll(folder + "/Operation_1_1.OPL");
  auto value = [&](std::int64_t row, int column) {
    std::int16_t v;
    std::memcpy(&v, bytes.data() + (row * 2 * ct + column) * 2, 2);
    return v;
  };
  const std::int64_t i0 = (dayStart - info.FirstTime) / period;
  const std::int64_t i1 = (dayStart + 86400 - period - info.FirstTime) / period;
  int mx = -40000, mn = 40000;
  std::int64_t tx = 0, ti = 0;
  double sum = 0;
  int count = 0;
  for (std::int64_t r = i0; r <= i1; ++r) {
    const int lo = value(r, 0), hi = value(r, 1);
    if (hi > mx) mx = hi, tx = info.FirstTime + r * period;
    if (lo < mn) mn = lo, ti = info.FirstTime + r * period;
    for (int u : {lo, hi})
      if (u != 32767 && u != -32767 && u != -32768) sum += u, ++count;
  }
  DayCells d;
  const int pv = value(i0, 0) + value(i0, 1);
  d.pv = Tenths(std::nearbyint(pv / 2.0) / 10.0);
  d.mx = Tenths(mx / 10.0);
  d.mi = Tenths(mn / 10.0);
  d.tx = RecordTimeText(tx);
  d.ti = RecordTimeText(ti);
  d.av = Tenths(std::floor(sum / count + 0.5) / 10.0);
  d.sd = Tenths(std::trunc(sum / (172800.0 / period)) / 10.0);
  return d;
}

struct ReportDesktop : ::testing::Test {
  ReportDesktop() {
    ConnectDesktopCommands(window);
    window.load();
    ReportClock() = [] { return *ParseRecordTime("2026/11/22 10:00:05"); };
    record = home.path("SHEAT01.FDT");
    QFile::copy(kSample, record);
  }
  ~ReportDesktop() override { ReportClock() = ReportNow; }

  ReportSelectDialog *Select() {
    for (auto *dialog : window.findChildren<ReportSelectDialog *>("frmChohyoSelect"))
      if (dialog->isVisible()) return dialog;
    return nullptr;
  }
  ReportListWindow *List() {
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *list = qobject_cast<ReportListWindow *>(sub->widget())) return list;
    return nullptr;
  }
  QString Cell(int row, int column) {
    auto *grid = List()->findChild<QTableWidget *>("MSFlexGrid1");
    QTableWidgetItem *item = grid->item(row, column);
    return item ? item->text() : QString();
  }

  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
  QString record;
};

TEST_F(ReportDesktop, MonthlyReportFromTheMenuFillsTheSheetAndSavesTheCsv) {
  // The delivered templates stand in the home folder after the start.
  for (const char *name :
       {"DailyReportFormat.txt", "MonthlyReportFormat.txt", "AnnualReportFormat.txt"})
    EXPECT_TRUE(std::filesystem::exists(home.folder() + "/" + name)) << name;
  window.openFiles({record});
  ASSERT_EQ(Shared().MenuState, 1);
  ASSERT_TRUE(window.command("mnuWindowChohyo")->isEnabled());

  window.command("mnuWindowChohyo")->trigger();
  ReportSelectDialog *select = Select();
  ASSERT_NE(select, nullptr);
  EXPECT_EQ(select->windowTitle(), "帳票表示");
  EXPECT_EQ(select->findChild<QLabel *>("Label1")->text(), "帳票タイプを選択して下さい。");
  EXPECT_EQ(select->findChild<QPushButton *>("cmdDay")->text(), "日報");
  EXPECT_EQ(select->findChild<QPushButton *>("cmdMonth")->text(), "月報");
  EXPECT_EQ(select->findChild<QPushButton *>("cmdYear")->text(), "年報");
  select->findChild<QPushButton *>("cmdMonth")->click();
  EXPECT_EQ(Select(), nullptr);

  ReportListWindow *list = List();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->windowTitle(), "月報01[" + record + "]");
  auto *grid = list->findChild<QTableWidget *>("MSFlexGrid1");
  // Twelve channels in blocks of three: four blocks of a title block of three
  // rows, four heading rows, 31 days, the total and a blank row.
  ASSERT_EQ(grid->rowCount(), 160);
  ASSERT_EQ(grid->columnCount(), 22);
  EXPECT_EQ(Cell(0, 0), "月報");
  EXPECT_EQ(Cell(0, 2), "対象月");
  EXPECT_EQ(Cell(0, 3), "2024/");
  EXPECT_EQ(Cell(0, 4), "03");
  EXPECT_EQ(Cell(1, 2), "作成日時");
  EXPECT_EQ(Cell(1, 3), "2026/");
  EXPECT_EQ(Cell(1, 4), "11/22");
  EXPECT_EQ(Cell(1, 5), "10-00-05");
  EXPECT_EQ(Cell(3, 1), "チャネル01");
  EXPECT_EQ(Cell(3, 15), "チャネル03");
  EXPECT_EQ(Cell(43, 1), "チャネル04");
  EXPECT_EQ(Cell(123, 15), "チャネル12");
  EXPECT_EQ(Cell(4, 1), "炉内温度");
  EXPECT_EQ(Cell(6, 2), "最大値");
  // March 5, a whole day of the record, channel 1.
  const DayCells day = ChannelOneOfDay(home.folder(), *ParseRecordTime("2024/03/05 00:00:00"));
  ASSERT_EQ(Shared().Slot(1).Record.Channels[0].Decimals, 1);
  const int row5 = 6 + 5;
  EXPECT_EQ(Cell(row5, 0), "5");
  EXPECT_EQ(Cell(row5, 1).toStdString(), day.pv);
  EXPECT_EQ(Cell(row5, 2).toStdString(), day.mx);
  EXPECT_EQ(Cell(row5, 3).toStdString(), day.tx);
  EXPECT_EQ(Cell(row5, 4).toStdString(), day.mi);
  EXPECT_EQ(Cell(row5, 5).toStdString(), day.ti);
  EXPECT_EQ(Cell(row5, 6).toStdString(), day.av);
  EXPECT_EQ(Cell(row5, 7).toStdString(), day.sd);
  // Days without data hold the placeholder.
  EXPECT_EQ(Cell(6 + 1, 2), "       -   ");
  EXPECT_EQ(Cell(6 + 31, 6), "       -   ");

  list->findChild<QPushButton *>("cmdSave")->click();
  ASSERT_FALSE(messages.ids().empty());
  EXPECT_EQ(messages.ids().back(), 41204);
  const std::string csvPath = home.folder() + "/SHEAT01月報202403.csv";
  const std::string csv = Cp932ToUtf8(ReadAll(csvPath));
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < csv.size();) {
    const std::size_t end = csv.find("\r\n", at);
    ASSERT_NE(end, std::string::npos);
    lines.push_back(csv.substr(at, end - at));
    at = end + 2;
  }
  ASSERT_EQ(lines.size(), 160u);
  EXPECT_EQ(lines[0], "月報,,対象月,2024/03 ,");
  EXPECT_EQ(lines[1], ",,作成日時,2026/11/22 10:00:05,");
  EXPECT_EQ(lines[2], ",");
  const std::string day5 = "5," + day.pv + "," + day.mx + "," + day.tx + "," + day.mi + "," +
                           day.ti + "," + day.av + "," + day.sd + ",";
  EXPECT_EQ(lines[row5].substr(0, day5.size()), day5);

  // The menus after: the record's set stays; closing the trend closes the report.
  EXPECT_EQ(Shared().MenuState, 1);
  EXPECT_TRUE(window.command("mnuWindowChohyo")->isEnabled());
  for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
    if (qobject_cast<TrendWindow *>(sub->widget())) sub->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(List(), nullptr);
  EXPECT_FALSE(window.command("mnuWindowChohyo")->isEnabled());
}

TEST_F(ReportDesktop, CursorOneChoosesTheDayAndANewReportReplacesTheOld) {
  window.openFiles({record});
  auto *trend = qobject_cast<TrendWindow *>(window.mdiArea()->subWindowList().front()->widget());
  ASSERT_NE(trend, nullptr);
  trend->setCursorFromList(1, static_cast<std::int32_t>(*ParseRecordTime("2024/03/06 12:00:00")),
                           false);
  ASSERT_TRUE(trend->view().Cursor1Set);
  window.command("mnuWindowChohyo")->trigger();
  Select()->findChild<QPushButton *>("cmdDay")->click();
  EXPECT_EQ(List()->windowTitle(), "日報01[" + record + "]");
  EXPECT_EQ(Cell(0, 3), "2024/");
  EXPECT_EQ(Cell(0, 4), "03/06");
  EXPECT_EQ(Cell(7, 0), "0 - 1H");
  window.command("mnuWindowChohyo")->trigger();
  Select()->findChild<QPushButton *>("cmdYear")->click();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  int reports = 0;
  for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
    if (qobject_cast<ReportListWindow *>(sub->widget())) ++reports;
  EXPECT_EQ(reports, 1);
  EXPECT_EQ(List()->windowTitle(), "年報01[" + record + "]");
  EXPECT_EQ(Cell(0, 3), "2024");
}

TEST_F(ReportDesktop, MissingTemplateOrWorkingFileShows11107) {
  window.openFiles({record});
  std::filesystem::remove(home.folder() + "/AnnualReportFormat.txt");
  window.command("mnuWindowChohyo")->trigger();
  Select()->findChild<QPushButton *>("cmdYear")->click();
  ASSERT_FALSE(messages.ids().empty());
  EXPECT_EQ(messages.ids().back(), 11107);
  EXPECT_EQ(List()->findChild<QTableWidget *>("MSFlexGrid1")->rowCount(), 0);
  // The save finds no template either, and writes nothing.
  messages.clear();
  List()->findChild<QPushButton *>("cmdSave")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{11107});
  EXPECT_FALSE(std::filesystem::exists(home.folder() + "/SHEAT01年報2024.csv"));

  // A working file gone: the choice shows 11107 and stays.
  messages.clear();
  std::filesystem::remove(home.folder() + "/Operation_1_COM_2.OPL");
  window.command("mnuWindowChohyo")->trigger();
  ReportSelectDialog *select = Select();
  ASSERT_NE(select, nullptr);
  select->findChild<QPushButton *>("cmdMonth")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{11107});
  EXPECT_EQ(Select(), select);
  select->close();
}

}  // namespace
