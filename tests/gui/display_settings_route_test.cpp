// The display settings through the real main window on a copy of the sample
// record: mnuFileSaveDispSet writes the flag file and says so, the saved file
// comes back at the next open, mnuViewd (and its tool key) opens the detail
// dialog whose applied edit redraws the trend, the dialog goes with its trend
// window, and the close question's Yes saves.
#include <gtest/gtest.h>

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTableWidget>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "platform/text_encoding.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/detail_dialog.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const std::string kSamples = RECSCOPE_SOURCE_DIR "/samples";

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string Pad(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

std::string TimeText(std::int32_t seconds) {
  const std::time_t t = seconds;
  std::tm civil{};
  ::gmtime_r(&t, &civil);  // plain civil time, no zone
  char text[32];
  std::strftime(text, sizeof text, "%Y/%m/%d %H:%M:%S", &civil);
  return text;
}

std::string Line(std::int32_t time, char kind, std::int16_t shown, std::int16_t position,
                 const std::string &text) {
  char number[8];
  std::snprintf(number, sizeof number, "%02d", position);
  const std::string bytes = Utf8ToCp932(text);
  EXPECT_LE(bytes.size(), 32u) << text;
  return TimeText(time) + "," + kind + "," + (shown == -1 ? "1" : "0") + "," + number + "," +
         Pad(bytes, 32) + "\r\n";
}

// The flag file of a slot as the format tells it, composed here.
std::string ComposedFlagFile(const RecordSlot &slot) {
  const RecordFileInfo &r = slot.Record;
  std::string out = "F" + Pad(Utf8ToCp932(r.FileNameText), 32).substr(1) + "\r\n";
  out += Pad(Utf8ToCp932(r.ModelText), 32) + "\r\n";
  out += Pad(Utf8ToCp932(r.SerialText), 20) + Pad(Utf8ToCp932(r.VersionText), 10).substr(0, 10) +
         "\r\n";
  out += std::string(32, ' ') + "\r\n" + std::string(32, ' ') + "\r\n";
  for (const AlarmEvent &a : slot.Alarms.Alarms) out += Line(a.Time, 'A', a.Shown, a.Position, "");
  for (const MessageEvent &m : slot.Alarms.Messages)
    out += Line(m.Time, 'M', m.Shown, m.Position, m.Text);
  for (const FlagEvent &f : slot.Flags) out += Line(f.Time, 'F', f.Shown, f.Position, f.Text);
  return out;
}

struct RouteFixture : ::testing::Test {
  RouteFixture() {
    // The record and its alarm file, without the flag file.
    for (const char *name : {"SHEAT01.FDT", "AHEAT01.FDT"})
      std::filesystem::copy_file(kSamples + "/" + name, home.folder() + "/" + name);
    record = home.folder() + "/SHEAT01.FDT";
    flagFile = home.folder() + "/FHEAT01.FDT";
    ConnectDesktopCommands(window);
    window.load();
    window.openFiles({QString::fromStdString(record)});
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
  std::string record;
  std::string flagFile;

  TrendWindow *Trend() {
    for (QMdiSubWindow *sub : window.mdiArea()->subWindowList())
      if (auto *t = qobject_cast<TrendWindow *>(sub->widget())) return t;
    return nullptr;
  }
  DetailDialog *Detail() {
    for (auto *d : window.findChildren<DetailDialog *>("dlgSyousai"))
      if (d->isVisible()) return d;
    return nullptr;
  }
  void CloseTrendThroughTheMenu() {
    QMdiArea *mdi = window.mdiArea();
    mdi->setActiveSubWindow(mdi->subWindowList().front());
    window.command("mnuFileClose")->trigger();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  // The operator's decisions: an alarm and a message shown at new positions, and
  // two flags of their own.
  void Decide() {
    RecordSlot &slot = Shared().Slot(1);
    ASSERT_GE(slot.Alarms.Alarms.size(), 2u);
    ASSERT_GE(slot.Alarms.Messages.size(), 1u);
    slot.Alarms.Alarms[1].Shown = -1;
    slot.Alarms.Alarms[1].Position = 8;
    slot.Alarms.Messages[0].Shown = -1;
    slot.Alarms.Messages[0].Position = 10;
    FlagEvent f;
    f.Time = slot.Record.FirstTime + 600;
    f.Text = "点検";
    f.Shown = -1;
    f.Position = 3;
    slot.Flags = {f};
    f.Time += 60;
    f.Text = "";
    f.Shown = 0;
    f.Position = 9;
    slot.Flags.push_back(f);
    Trend()->applyDisplayChange();
  }
};

TEST_F(RouteFixture, SaveDisplaySettingsWritesTheFlagFileAndSays19502) {
  ASSERT_NE(Trend(), nullptr);
  ASSERT_TRUE(Shared().Slot(1).FlagPath.empty());
  ASSERT_FALSE(std::filesystem::exists(flagFile));
  Decide();
  ASSERT_FALSE(Trend()->view().DisplaySaved);
  EXPECT_TRUE(window.command("mnuFileSaveDispSet")->isEnabled());
  window.command("mnuFileSaveDispSet")->trigger();
  ASSERT_EQ(messages.ids(), std::vector<int>{19502});
  EXPECT_EQ(messages.messages()[0].text(), QString::fromUtf8("設定を保存しました"));
  EXPECT_EQ(ReadAll(flagFile), ComposedFlagFile(Shared().Slot(1)));
  EXPECT_EQ(Shared().Slot(1).FlagPath, flagFile);
  EXPECT_TRUE(Trend()->view().DisplaySaved);
  EXPECT_TRUE(window.command("mnuFileSaveDispSet")->isEnabled());
  EXPECT_FALSE(std::filesystem::exists(flagFile + ".tmp"));
}

TEST_F(RouteFixture, SavedSettingsComeBackAtTheNextOpen) {
  Decide();
  window.command("mnuFileSaveDispSet")->trigger();
  const RecordSlot saved = Shared().Slot(1);
  CloseTrendThroughTheMenu();
  ASSERT_EQ(Trend(), nullptr);
  EXPECT_EQ(messages.ids(), std::vector<int>{19502});  // saved: no close question
  window.openFiles({QString::fromStdString(record)});
  ASSERT_NE(Trend(), nullptr);
  const RecordSlot &again = Shared().Slot(1);
  EXPECT_EQ(again.FlagPath, flagFile);
  ASSERT_EQ(again.Alarms.Alarms.size(), saved.Alarms.Alarms.size());
  for (std::size_t i = 0; i < saved.Alarms.Alarms.size(); ++i) {
    EXPECT_EQ(again.Alarms.Alarms[i].Shown, saved.Alarms.Alarms[i].Shown) << i;
    EXPECT_EQ(again.Alarms.Alarms[i].Position, saved.Alarms.Alarms[i].Position) << i;
  }
  ASSERT_EQ(again.Alarms.Messages.size(), saved.Alarms.Messages.size());
  for (std::size_t i = 0; i < saved.Alarms.Messages.size(); ++i) {
    EXPECT_EQ(again.Alarms.Messages[i].Shown, saved.Alarms.Messages[i].Shown) << i;
    EXPECT_EQ(again.Alarms.Messages[i].Position, saved.Alarms.Messages[i].Position) << i;
  }
  ASSERT_EQ(again.Flags.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(again.Flags[i].Time, saved.Flags[i].Time);
    EXPECT_EQ(again.Flags[i].Text, saved.Flags[i].Text);
    EXPECT_EQ(again.Flags[i].Shown, saved.Flags[i].Shown);
    EXPECT_EQ(again.Flags[i].Position, saved.Flags[i].Position);
  }
  // Saved again unchanged, the file is the same bytes.
  const std::string first = ReadAll(flagFile);
  window.command("mnuFileSaveDispSet")->trigger();
  EXPECT_EQ(ReadAll(flagFile), first);
}

TEST_F(RouteFixture, SaveIsRefusedInARealTimeWindow) {
  Trend()->view().RealTime = 1;
  window.command("mnuFileSaveDispSet")->trigger();
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_FALSE(std::filesystem::exists(flagFile));
  Trend()->view().RealTime = 0;
}

TEST_F(RouteFixture, CloseQuestionAnsweredYesSaves) {
  Decide();
  messages.setAnswer(QMessageBox::Yes);
  const RecordSlot decided = Shared().Slot(1);
  CloseTrendThroughTheMenu();
  ASSERT_EQ(messages.ids(), std::vector<int>{19503});
  EXPECT_EQ(messages.messages()[0].text(),
            QString::fromStdString(record) +
                QString::fromUtf8("の表示条件が保存されていません。保存しますか？"));
  EXPECT_EQ(Trend(), nullptr);
  EXPECT_EQ(ReadAll(flagFile), ComposedFlagFile(decided));
  EXPECT_FALSE(Shared().Slot(1).InUse());
  EXPECT_FALSE(window.command("mnuFileSaveDispSet")->isEnabled());
}

// The save cannot write its temporary file (a folder stands in its place): the
// command ends without its message and the display stays unsaved.
TEST_F(RouteFixture, AFailedSaveSaysNothingAndLeavesTheDisplayUnsaved) {
  Decide();
  std::filesystem::create_directory(flagFile + ".tmp");
  window.command("mnuFileSaveDispSet")->trigger();
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_FALSE(std::filesystem::exists(flagFile));
  EXPECT_TRUE(Shared().Slot(1).FlagPath.empty());
  EXPECT_FALSE(Trend()->view().DisplaySaved);
}

TEST_F(RouteFixture, CloseQuestionAnsweredYesWithAFailedSaveKeepsTheWindow) {
  Decide();
  std::filesystem::create_directory(flagFile + ".tmp");
  messages.setAnswer(QMessageBox::Yes);
  CloseTrendThroughTheMenu();
  EXPECT_EQ(messages.ids(), std::vector<int>{19503});
  ASSERT_NE(Trend(), nullptr);
  EXPECT_TRUE(Shared().Slot(1).InUse());
  EXPECT_FALSE(std::filesystem::exists(flagFile));
  // Once the way is clear, Yes saves and the window goes.
  std::filesystem::remove(flagFile + ".tmp");
  messages.clear();
  CloseTrendThroughTheMenu();
  EXPECT_EQ(messages.ids(), std::vector<int>{19503});
  EXPECT_EQ(Trend(), nullptr);
  EXPECT_TRUE(std::filesystem::exists(flagFile));
}

TEST_F(RouteFixture, CloseQuestionAnsweredNoDoesNotSave) {
  Decide();
  CloseTrendThroughTheMenu();
  EXPECT_EQ(messages.ids(), std::vector<int>{19503});
  EXPECT_EQ(Trend(), nullptr);
  EXPECT_FALSE(std::filesystem::exists(flagFile));
}

TEST_F(RouteFixture, ViewdOpensTheDetailDialogWithTheFirstGroup) {
  window.command("mnuViewd")->trigger();
  DetailDialog *d = Detail();
  ASSERT_NE(d, nullptr);
  EXPECT_TRUE(d->isModal());
  EXPECT_EQ(d->windowTitle(),
            QString::fromUtf8("詳細設定01[") + QString::fromStdString(record) + "]");
  auto *tabs = d->findChild<QTabBar *>("TabStrip1");
  ASSERT_EQ(tabs->count(), 3);  // group 4 of the sample has no member
  EXPECT_EQ(tabs->tabText(0), QString::fromUtf8("一"));
  EXPECT_EQ(tabs->tabText(2), QString::fromUtf8("三"));
  EXPECT_EQ(d->findChild<QLineEdit *>("Text1")->text(), QString::fromUtf8("炉内温度        "));
  auto *grid = d->findChild<QTableWidget *>("MSFlexGrid1");
  QStringList rows;
  for (int r = 0; r < 6; ++r) {
    QStringList cells;
    for (int c = 0; c < 4; ++c) cells << grid->item(r, c)->text();
    rows << cells.join('|');
  }
  EXPECT_EQ(rows, QStringList({QString::fromUtf8("WNo|ﾁｬﾈﾙ|最小|最大"), "1|1|0.0|1200.0",
                               "2|2|0.0|1200.0", "3|3|0.0|1200.0", "4|4|0.0|1200.0",
                               QString::fromUtf8("5|無し||")}));
  tabs->setCurrentIndex(2);
  EXPECT_EQ(grid->item(5, 1)->text(), "D1");
  EXPECT_EQ(grid->item(4, 3)->text(), "50.0");
  d->close();
}

TEST_F(RouteFixture, DetailsToolKeyOpensTheSameDialog) {
  window.dispatchToolKey("Details");
  ASSERT_NE(Detail(), nullptr);
  EXPECT_EQ(Detail()->slot(), 1);
  Detail()->close();
}

TEST_F(RouteFixture, AnEditAppliedInTheDetailDialogRedrawsTheTrend) {
  TrendWindow *trend = Trend();
  const QImage before = trend->picture();
  window.command("mnuViewd")->trigger();
  DetailDialog *d = Detail();
  ASSERT_NE(d, nullptr);
  auto *grid = d->findChild<QTableWidget *>("MSFlexGrid1");
  grid->item(1, 3)->setText("600");  // channel 1: 0 to 600 instead of 1200
  d->findChild<QLineEdit *>("Text1")->setText("FURNACE");
  d->findChild<QPushButton *>("Command3")->click();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Detail(), nullptr);
  EXPECT_TRUE(messages.ids().empty());
  const ChannelInfo &ch = Shared().Slot(1).Record.Channels[0];
  EXPECT_DOUBLE_EQ(ch.DisplayHigh, 600);
  EXPECT_EQ(ch.ScaleHigh, 6000);
  EXPECT_EQ(Shared().Slot(1).Record.Groups[0].GroupName, "FURNACE");
  EXPECT_EQ(trend->findChild<QTabBar *>("TabStrip1")->tabText(0), "1:FURNACE");
  EXPECT_FALSE(trend->view().DisplaySaved);
  EXPECT_NE(trend->picture(), before);
}

TEST_F(RouteFixture, ARefusedCellKeepsTheDialogOpenOnItsGroupAndCell) {
  window.command("mnuViewd")->trigger();
  DetailDialog *d = Detail();
  ASSERT_NE(d, nullptr);
  auto *tabs = d->findChild<QTabBar *>("TabStrip1");
  auto *grid = d->findChild<QTableWidget *>("MSFlexGrid1");
  tabs->setCurrentIndex(1);
  grid->item(2, 2)->setText("abc");  // group 2, place 2, minimum
  tabs->setCurrentIndex(0);          // the edit is kept across the change of tab
  d->findChild<QPushButton *>("Command3")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{18301});
  EXPECT_TRUE(d->isVisible());
  EXPECT_EQ(tabs->currentIndex(), 1);
  EXPECT_EQ(grid->currentRow(), 2);
  EXPECT_EQ(grid->currentColumn(), 2);
  EXPECT_EQ(grid->item(2, 2)->text(), "abc");
  EXPECT_TRUE(Trend()->view().DisplaySaved);
  d->findChild<QPushButton *>("Command4")->click();
  QCoreApplication::processEvents();
  EXPECT_EQ(Detail(), nullptr);
  EXPECT_TRUE(Trend()->view().DisplaySaved);
}

TEST_F(RouteFixture, CopyAndPasteCarryTheRangesToAnotherGroup) {
  window.command("mnuViewd")->trigger();
  DetailDialog *d = Detail();
  ASSERT_NE(d, nullptr);
  auto *tabs = d->findChild<QTabBar *>("TabStrip1");
  auto *grid = d->findChild<QTableWidget *>("MSFlexGrid1");
  grid->item(1, 2)->setText("100.0");
  d->findChild<QPushButton *>("Command1")->click();
  tabs->setCurrentIndex(1);  // channels 5 (log), 9, 8, 11
  d->findChild<QPushButton *>("Command2")->click();
  EXPECT_EQ(grid->item(1, 2)->text(), "100.0");
  EXPECT_EQ(grid->item(2, 3)->text(), "1200.0");
  EXPECT_EQ(grid->item(5, 1)->text(), QString::fromUtf8("無し"));
  EXPECT_EQ(grid->item(5, 2)->text(), "");
  // The log channel cannot take 100 as an exponent: the paste is refused at OK,
  // on the first place of group 2.
  d->findChild<QPushButton *>("Command3")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{20115});
  EXPECT_EQ(messages.messages()[0].text(), QString::fromUtf8("9から-9の値を入力してください"));
  EXPECT_EQ(grid->currentRow(), 1);
  grid->item(1, 2)->setText("-5");
  grid->item(1, 3)->setText("3");
  // Channels 8 and 11 have two decimals: 1200.00 lies beyond their raw range.
  messages.clear();
  d->findChild<QPushButton *>("Command3")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{20115});
  EXPECT_EQ(grid->currentRow(), 3);
  grid->item(3, 3)->setText("50.00");
  messages.clear();
  d->findChild<QPushButton *>("Command3")->click();
  EXPECT_EQ(messages.ids(), std::vector<int>{20115});
  EXPECT_EQ(grid->currentRow(), 4);  // channel 11, two decimals as well
  grid->item(4, 3)->setText("25.00");
  messages.clear();
  d->findChild<QPushButton *>("Command3")->click();
  EXPECT_TRUE(messages.ids().empty());
  QCoreApplication::processEvents();
  EXPECT_EQ(Detail(), nullptr);
  const RecordFileInfo &info = Shared().Slot(1).Record;
  EXPECT_DOUBLE_EQ(info.Channels[0].DisplayLow, 100);  // group 1's own edit
  // Channel 9 (place 2, 0 to 200 before) took channel 2's range from the copy.
  EXPECT_DOUBLE_EQ(info.Channels[8].DisplayLow, 0);
  EXPECT_DOUBLE_EQ(info.Channels[8].DisplayHigh, 1200);
  EXPECT_EQ(info.Channels[8].ScaleHigh, 12000);
  EXPECT_EQ(info.Channels[10].ScaleHigh, 2500);  // channel 11 as corrected
}

TEST_F(RouteFixture, TheDetailDialogGoesWithItsTrendWindow) {
  window.command("mnuViewd")->trigger();
  QPointer<DetailDialog> d = Detail();
  ASSERT_NE(d, nullptr);
  CloseTrendThroughTheMenu();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Trend(), nullptr);
  EXPECT_TRUE(d.isNull() || !d->isVisible());
  EXPECT_EQ(Detail(), nullptr);
}

}  // namespace
