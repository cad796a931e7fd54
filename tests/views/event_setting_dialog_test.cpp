// frmEventSet itself: its captions and fields by kind, back and next storing the
// row and stopping at the ends, close storing, the 32-byte flag text test, the
// trend left unsaved and redrawn, and the route the event list calls.
#include "views/event_setting_dialog.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "../gui/gui_test_support.h"
#include "../trend/trend_fixture.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_window.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

struct EventSetFixture : ::testing::Test {
  TempFolder home;
  MessageRecorder messages;
  std::unique_ptr<TrendWindow> trend;

  void SetUp() override {
    recscope::testing::App();
    ResetSharedState(Shared());
    Shared().ProgramFolder = home.str();
    RecordFileInfo info = MakeRecord(600, 2, 0, 0, 1);
    WriteLevels(info, home.str(), 1, [](std::int64_t r, int) {
      auto v = static_cast<std::int16_t>(r % 1000);
      return std::make_pair(v, v);
    });
    RecordSlot &slot = Shared().Slot(1);
    slot.Record = info;
    slot.SamplePeriod = 1;
    for (int i = 0; i < 3; ++i) {
      AlarmEvent a;
      a.Time = 100 * (i + 1);
      a.ChannelNo = static_cast<std::int16_t>(i + 1);
      a.AlarmNo = 1;
      a.AlarmAction = static_cast<std::int16_t>(i == 2 ? 9 : i + 1);
      a.AlarmState = static_cast<std::int16_t>(i % 2);
      slot.Alarms.Alarms.push_back(a);
    }
    MessageEvent m;
    m.Time = 250;
    m.Text = "BURNER ON";
    slot.Alarms.Messages = {m};
    for (int i = 0; i < 2; ++i) {
      FlagEvent f;
      f.Time = 300 + 60 * i;
      f.Text = "flag " + std::to_string(i + 1);
      f.Position = 9;
      slot.Flags.push_back(f);
    }
    trend = std::make_unique<TrendWindow>(1, true);
    trend->show();
    trend->view().DisplaySaved = true;
  }
  void TearDown() override { trend.reset(); }

  template <typename T>
  static T *Child(QDialog &d, const char *name) {
    T *child = d.findChild<T *>(name);
    EXPECT_NE(child, nullptr) << name;
    return child;
  }
  static QString LabelText(QDialog &d, const char *name) { return Child<QLabel>(d, name)->text(); }
};

TEST_F(EventSetFixture, AlarmRowShowsItsTitlesAndValues) {
  EventSettingDialog d(1, 0, 2);
  EXPECT_EQ(d.objectName(), "frmEventSet");
  EXPECT_EQ(d.windowTitle(), QString::fromUtf8("アラーム表示"));
  const char *titles[] = {"発生/解除時刻", "チャネル No.", "アラーム No.", "警報動作",
                          "発生 / 解除"};
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(LabelText(d, QStringLiteral("lblIventN%1").arg(i + 1).toLatin1()),
              QString::fromUtf8(titles[i]));
  EXPECT_EQ(LabelText(d, "lblIvent1"), "1970/01/01 00:03:20");
  EXPECT_EQ(LabelText(d, "lblIvent2"), "2");
  EXPECT_EQ(LabelText(d, "lblIvent3"), "1");
  EXPECT_EQ(LabelText(d, "lblIvent4"), "L");
  EXPECT_EQ(LabelText(d, "lblIvent5"), QString::fromUtf8("発生"));
  EXPECT_EQ(Child<QComboBox>(d, "cboDisplay")->currentText(), "OFF");
  EXPECT_EQ(Child<QComboBox>(d, "cboDisplayH")->currentText(), "2");
  EXPECT_EQ(Child<QComboBox>(d, "cboDisplay")->count(), 2);
  EXPECT_EQ(Child<QComboBox>(d, "cboDisplayH")->count(), 10);
  EXPECT_EQ(Child<QPushButton>(d, "cmdBack")->text(), QString::fromUtf8("前"));
  EXPECT_EQ(Child<QPushButton>(d, "cmdNext")->text(), QString::fromUtf8("次"));
  EXPECT_EQ(Child<QPushButton>(d, "cmdExit")->text(), QString::fromUtf8("閉じる"));
  EXPECT_EQ(LabelText(d, "lblDisplay"), QString::fromUtf8("表示"));
  EXPECT_EQ(LabelText(d, "lblDisplayH"), QString::fromUtf8("表示位置"));
}

TEST_F(EventSetFixture, AlarmRowWithAnUnknownActionCodeShowsAnEmptyAction) {
  EventSettingDialog d(1, 0, 3);
  EXPECT_EQ(LabelText(d, "lblIvent4"), "");
  EXPECT_EQ(LabelText(d, "lblIvent5"), QString::fromUtf8("解除"));
}

TEST_F(EventSetFixture, MessageAndFlagRowsShowTheirFields) {
  EventSettingDialog message(1, 1, 1);
  message.show();
  EXPECT_EQ(message.windowTitle(), QString::fromUtf8("メッセージ表示"));
  EXPECT_EQ(LabelText(message, "lblIventN1"), QString::fromUtf8("発生時間"));
  EXPECT_EQ(LabelText(message, "lblMessage"), QString::fromUtf8("メッセージ"));
  EXPECT_EQ(LabelText(message, "lblMessageText"), "BURNER ON");
  EXPECT_FALSE(Child<QLineEdit>(message, "txtMessage")->isVisible());
  EXPECT_FALSE(Child<QLabel>(message, "lblIventN2")->isVisible());

  EventSettingDialog flag(1, 2, 2);
  flag.show();
  EXPECT_EQ(flag.windowTitle(), QString::fromUtf8("フラグ表示"));
  EXPECT_EQ(LabelText(flag, "lblIventN1"), QString::fromUtf8("設定時刻"));
  EXPECT_EQ(LabelText(flag, "lblIvent1"), "1970/01/01 00:06:00");
  EXPECT_TRUE(Child<QLineEdit>(flag, "txtMessage")->isVisible());
  EXPECT_EQ(Child<QLineEdit>(flag, "txtMessage")->text(), "flag 2");
  EXPECT_EQ(Child<QComboBox>(flag, "cboDisplayH")->currentText(), "9");
}

TEST_F(EventSetFixture, SetEventTakesTheKindFromTheListTabCaption) {
  EventSettingDialog d(1, 0, 1);
  d.setEvent(QString::fromUtf8("ﾌﾗｸﾞ"), 1);
  EXPECT_EQ(d.kind(), 2);
  EXPECT_EQ(d.row(), 1);
  EXPECT_EQ(Child<QLineEdit>(d, "txtMessage")->text(), "flag 1");
  d.setEvent(QString::fromUtf8("ﾒｯｾｰｼﾞ"), 1);
  EXPECT_EQ(d.kind(), 1);
}

TEST_F(EventSetFixture, BackOnTheFirstRowStoresAndTheRowStays) {
  EventSettingDialog d(1, 0, 1);
  Child<QComboBox>(d, "cboDisplay")->setCurrentIndex(1);
  Child<QComboBox>(d, "cboDisplayH")->setCurrentIndex(6);
  Child<QPushButton>(d, "cmdBack")->click();
  EXPECT_EQ(d.row(), 1);
  EXPECT_EQ(Shared().Slot(1).Alarms.Alarms[0].Shown, -1);
  EXPECT_EQ(Shared().Slot(1).Alarms.Alarms[0].Position, 7);
  EXPECT_FALSE(trend->view().DisplaySaved);
  EXPECT_EQ(LabelText(d, "lblIvent1"), "1970/01/01 00:01:40");
}

TEST_F(EventSetFixture, NextOnTheLastRowStoresAndTheRowStays) {
  EventSettingDialog d(1, 2, 2);
  Child<QLineEdit>(d, "txtMessage")->setText(QString::fromUtf8("最後"));
  Child<QComboBox>(d, "cboDisplay")->setCurrentIndex(1);
  Child<QPushButton>(d, "cmdNext")->click();
  EXPECT_EQ(d.row(), 2);
  EXPECT_EQ(Shared().Slot(1).Flags[1].Text, "最後");
  EXPECT_EQ(Shared().Slot(1).Flags[1].Shown, -1);
  EXPECT_FALSE(trend->view().DisplaySaved);
}

TEST_F(EventSetFixture, BackAndNextWalkTheRowsStoringEachOne) {
  EventSettingDialog d(1, 0, 2);
  std::vector<int> stored;
  QObject::connect(&d, &EventSettingDialog::rowStored,
                   [&stored](int, int, int row) { stored.push_back(row); });
  Child<QComboBox>(d, "cboDisplayH")->setCurrentIndex(3);
  Child<QPushButton>(d, "cmdNext")->click();
  EXPECT_EQ(d.row(), 3);
  EXPECT_EQ(Shared().Slot(1).Alarms.Alarms[1].Position, 4);
  EXPECT_EQ(Child<QComboBox>(d, "cboDisplayH")->currentText(), "2");  // row 3's own
  Child<QPushButton>(d, "cmdBack")->click();
  Child<QPushButton>(d, "cmdBack")->click();
  EXPECT_EQ(d.row(), 1);
  EXPECT_EQ(stored, (std::vector<int>{2, 3, 2}));
  EXPECT_EQ(Shared().Slot(1).Alarms.Alarms[2].Position, 2);
}

TEST_F(EventSetFixture, StoringRedrawsTheTrendWithTheNewSwitch) {
  trend->Repaint();
  const QImage before = trend->picture();
  EventSettingDialog d(1, 2, 1);
  Child<QComboBox>(d, "cboDisplay")->setCurrentIndex(1);  // flag 1's text drawn
  Child<QPushButton>(d, "cmdExit")->click();
  EXPECT_EQ(d.result(), QDialog::Accepted);
  EXPECT_EQ(Shared().Slot(1).Flags[0].Shown, -1);
  EXPECT_NE(trend->picture(), before);
}

TEST_F(EventSetFixture, FlagTextOf32CharactersIsAcceptedAnd33IsNot) {
  EventSettingDialog d(1, 2, 1);
  d.show();
  Child<QLineEdit>(d, "txtMessage")->setText(QString(33, 'x'));
  Child<QPushButton>(d, "cmdExit")->click();
  ASSERT_EQ(messages.ids(), std::vector<int>{20117});
  EXPECT_EQ(messages.messages()[0].text(), QString::fromUtf8("半角32文字以下で入力してください"));
  EXPECT_NE(d.result(), QDialog::Accepted);
  EXPECT_EQ(Shared().Slot(1).Flags[0].Text, "flag 1");
  EXPECT_TRUE(trend->view().DisplaySaved);
  messages.clear();
  Child<QLineEdit>(d, "txtMessage")->setText(QString(32, 'x'));
  Child<QPushButton>(d, "cmdExit")->click();
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(d.result(), QDialog::Accepted);
  EXPECT_EQ(Shared().Slot(1).Flags[0].Text, std::string(32, 'x'));
}

TEST_F(EventSetFixture, LeavingATooLongFlagTextBringsTheFocusBack) {
  EventSettingDialog d(1, 2, 1);
  d.show();
  QApplication::setActiveWindow(&d);
  QLineEdit *text = Child<QLineEdit>(d, "txtMessage");
  text->setFocus();
  ASSERT_TRUE(text->hasFocus());
  text->setText(QString::fromUtf8("温度温度温度温度温度温度温度温度a"));  // 33 bytes
  Child<QComboBox>(d, "cboDisplay")->setFocus();
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  ASSERT_EQ(messages.ids(), std::vector<int>{20117});
  EXPECT_TRUE(text->hasFocus());
}

TEST_F(EventSetFixture, ShowEventSettingOpensModallyAndRefreshesTheList) {
  int refills = 0;
  bool modal = false;
  QTimer::singleShot(0, [&modal] {
    for (QWidget *w : QApplication::topLevelWidgets())
      if (auto *d = qobject_cast<EventSettingDialog *>(w); d && d->isVisible()) {
        modal = d->isModal();
        d->findChild<QPushButton *>("cmdExit")->click();
      }
  });
  EXPECT_TRUE(ShowEventSetting(nullptr, 1, 1, 1, [&refills] { ++refills; }));
  EXPECT_TRUE(modal);
  EXPECT_EQ(refills, 1);
  EXPECT_FALSE(trend->view().DisplaySaved);
}

TEST_F(EventSetFixture, ShowEventSettingDoesNotOpenWithoutRows) {
  Shared().Slot(1).Flags.clear();
  EXPECT_FALSE(ShowEventSetting(nullptr, 1, 2, 1));
  EXPECT_FALSE(ShowEventSetting(nullptr, 1, 0, 4));
  EXPECT_FALSE(ShowEventSetting(nullptr, 2, 0, 1));  // a free slot
  EXPECT_TRUE(trend->view().DisplaySaved);
}

}  // namespace
}  // namespace recscope
