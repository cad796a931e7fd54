#include "trend/scale_edit_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

#include "../gui/gui_test_support.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/trend_layout.h"
#include "trend/trend_window.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

using recscope::testing::App;

struct Shown {
  int id;
  QString text;
};

// Three analog channels with one decimal (0.0 to 100.0), the third logarithmic
// from 10^-2 to 10^3, and one DI, all in group 1, in slot 1.
struct DialogFixture : ::testing::Test {
  TempFolder home;
  std::vector<Shown> messages;
  void SetUp() override {
    App();
    ResetSharedState(Shared());
    Shared().ProgramFolder = home.str();
    RecordFileInfo info = MakeRecord(7000, 3, 1, 0, 1);
    ChannelInfo &log = info.Channels[2];
    log.ScaleKind = 1;
    log.ScaleLow = -2;
    log.ScaleHigh = 3;
    log.DisplayLow = -2;
    log.DisplayHigh = 3;
    WriteLevels(info, home.str(), 1, [](std::int64_t r, int) {
      std::int16_t v = static_cast<std::int16_t>(r % 1000);
      return std::make_pair(v, v);
    });
    Shared().Slot(1).Record = info;
    Shared().Slot(1).SamplePeriod = 1;
    SetMessageService([this](QWidget *, const MessageRequest &request) {
      messages.push_back({request.messageId, request.text()});
      return static_cast<int>(QMessageBox::Ok);
    });
  }
  void TearDown() override { SetMessageService({}); }
  RecordFileInfo &Info() { return Shared().Slot(1).Record; }
};

QLineEdit *Field(QDialog &d, const char *name) { return d.findChild<QLineEdit *>(name); }

// Fills the two fields and presses OK.
void Press(QDialog &d, const QString &max, const QString &min) {
  Field(d, "txtMax")->setText(max);
  Field(d, "txtMin")->setText(min);
  d.findChild<QPushButton *>("OKButton")->click();
}

bool ChannelsEqual(const ChannelInfo &a, const ChannelInfo &b) {
  return a.ScaleLow == b.ScaleLow && a.ScaleHigh == b.ScaleHigh && a.DisplayLow == b.DisplayLow &&
         a.DisplayHigh == b.DisplayHigh;
}

TEST_F(DialogFixture, DialogHasItsTitleLabelsFieldsAndButtons) {
  ScaleEditDialog d(Info(), 1);
  EXPECT_EQ(d.objectName(), "dlglenge");
  EXPECT_EQ(d.windowTitle(), QString::fromUtf8("記録範囲設定"));
  ASSERT_NE(Field(d, "txtMax"), nullptr);
  ASSERT_NE(Field(d, "txtMin"), nullptr);
  ASSERT_NE(d.findChild<QPushButton *>("OKButton"), nullptr);
  auto *cancel = d.findChild<QPushButton *>("CancelButton");
  ASSERT_NE(cancel, nullptr);
  EXPECT_EQ(cancel->text(), QString::fromUtf8("キャンセル"));
  QStringList labels;
  for (auto *label : d.findChildren<QLabel *>()) labels << label->text();
  EXPECT_TRUE(labels.contains(QString::fromUtf8("最大値")));
  EXPECT_TRUE(labels.contains(QString::fromUtf8("最小値")));
}

TEST_F(DialogFixture, StartValuesAreDisplayEndsExponentsOrDiEnds) {
  ScaleEditDialog analog(Info(), 1);
  EXPECT_EQ(Field(analog, "txtMax")->text(), "100");
  EXPECT_EQ(Field(analog, "txtMin")->text(), "0");
  ScaleEditDialog log(Info(), 3);
  EXPECT_EQ(Field(log, "txtMax")->text(), "3");
  EXPECT_EQ(Field(log, "txtMin")->text(), "-2");
  ScaleEditDialog di(Info(), 4);
  EXPECT_EQ(Field(di, "txtMax")->text(), "1");
  EXPECT_EQ(Field(di, "txtMin")->text(), "0");
}

TEST_F(DialogFixture, MessagesComeInOrderAndKeepTheDialogOpenOnTheWrongField) {
  const ChannelInfo before = Info().Channels[0];
  ScaleEditDialog d(Info(), 1);
  d.show();
  struct Case {
    const char *max;
    const char *min;
    int id;
    const char *field;
  };
  const Case cases[] = {
      {"12345678", "abc", 18300, "txtMax"},  // length before the numeric check
      {"1", "1234567.", 18300, "txtMin"},   {"abc", "99999", 18301, "txtMax"},
      {"5", "1e", 18301, "txtMin"},         {"3276.8", "abc", 18301, "txtMin"},
      {"3276.8", "0", 20115, "txtMax"},     {"0", "-3276.8", 20115, "txtMin"},
      {"100", "100.0", 18303, "txtMax"},    {"10.01", "10.02", 18304, "txtMax"},
  };
  for (const Case &c : cases) {
    messages.clear();
    Press(d, QString::fromUtf8(c.max), QString::fromUtf8(c.min));
    ASSERT_EQ(messages.size(), 1u) << c.max << " / " << c.min;
    EXPECT_EQ(messages[0].id, c.id) << c.max << " / " << c.min;
    if (c.id != 20115) {  // the range text has its ends filled in, checked below
      EXPECT_EQ(messages[0].text, QString::fromStdString(GetMessageText(c.id)));
    }
    EXPECT_TRUE(d.isVisible());
    EXPECT_NE(d.result(), QDialog::Accepted);
    QLineEdit *wrong = Field(d, c.field);
    EXPECT_EQ(wrong->selectedText(), wrong->text()) << c.max << " / " << c.min;
    EXPECT_TRUE(ChannelsEqual(Info().Channels[0], before));
  }
  messages.clear();
  Press(d, "12345678", "0");
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].text, QString::fromUtf8("最大値、最小値は8桁以上は入力できません"));
  messages.clear();
  Press(d, "x", "0");
  EXPECT_EQ(messages[0].text, QString::fromUtf8("数字を入力してください"));
  messages.clear();
  Press(d, "3276.8", "0");
  EXPECT_EQ(messages[0].text, QString::fromUtf8("3276.7から-3276.7の値を入力してください"));
  messages.clear();
  Press(d, "100", "100.0");
  EXPECT_EQ(messages[0].text, QString::fromUtf8("最大値と最小値は異なる値を入力してください"));
  messages.clear();
  Press(d, "10.01", "10.02");
  EXPECT_EQ(messages[0].text, QString::fromUtf8("最大値と最小値がほぼ一緒の値です"));
}

TEST_F(DialogFixture, LogRangeMessageNamesNineThenMinusNine) {
  ScaleEditDialog d(Info(), 3);
  d.show();
  Press(d, "3", "-10");
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].id, 20115);
  EXPECT_EQ(messages[0].text, QString::fromUtf8("9から-9の値を入力してください"));
  EXPECT_EQ(Field(d, "txtMin")->selectedText(), "-10");
  EXPECT_EQ(Info().Channels[2].ScaleLow, -2);
  messages.clear();
  Press(d, "9", "-9");
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(d.result(), QDialog::Accepted);
  EXPECT_EQ(Info().Channels[2].ScaleHigh, 9);
  EXPECT_EQ(Info().Channels[2].ScaleLow, -9);
}

TEST_F(DialogFixture, ThreeDecimalsAccept32767AndRefuse32768) {
  Info().Channels[0].Decimals = 3;
  {
    ScaleEditDialog d(Info(), 1);
    Press(d, "32.768", "0");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].id, 20115);
    EXPECT_EQ(messages[0].text, QString::fromUtf8("32.767から-32.767の値を入力してください"));
  }
  messages.clear();
  ScaleEditDialog d(Info(), 1);
  Press(d, "32.767", "0");
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(d.result(), QDialog::Accepted);
  EXPECT_EQ(Info().Channels[0].ScaleHigh, 32767);
}

TEST_F(DialogFixture, MaximumBelowMinimumIsAcceptedUpsideDown) {
  ScaleEditDialog d(Info(), 1);
  d.show();
  Press(d, "-20", "80.5");
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(d.result(), QDialog::Accepted);
  const ChannelInfo &ch = Info().Channels[0];
  EXPECT_DOUBLE_EQ(ch.DisplayHigh, -20);
  EXPECT_DOUBLE_EQ(ch.DisplayLow, 80.5);
  EXPECT_EQ(ch.ScaleHigh, -200);
  EXPECT_EQ(ch.ScaleLow, 805);
}

TEST_F(DialogFixture, DiTakesWholeNumbers) {
  ScaleEditDialog d(Info(), 4);
  Press(d, "0", "5");
  EXPECT_EQ(d.result(), QDialog::Accepted);
  EXPECT_EQ(Info().Dis[0].ScaleHigh, 0);
  EXPECT_EQ(Info().Dis[0].ScaleLow, 5);
}

TEST_F(DialogFixture, CancelLeavesEverythingAsItWas) {
  const RecordFileInfo before = Info();
  ScaleEditDialog d(Info(), 1);
  d.show();
  Field(d, "txtMax")->setText("50");
  Field(d, "txtMin")->setText("10");
  d.findChild<QPushButton *>("CancelButton")->click();
  EXPECT_EQ(d.result(), QDialog::Rejected);
  EXPECT_FALSE(d.isVisible());
  EXPECT_TRUE(messages.empty());
  for (std::size_t c = 0; c < before.Channels.size(); ++c)
    EXPECT_TRUE(ChannelsEqual(Info().Channels[c], before.Channels[c]));
  EXPECT_EQ(Info().Dis[0].ScaleHigh, before.Dis[0].ScaleHigh);
}

// Double-clicks the middle of scale panel `panel` of the window's Picture2, with
// `answer` run on the dialog that opens.
void DoubleClickPanel(TrendWindow &w, int panel, std::function<void(ScaleEditDialog *)> answer) {
  TrendLayout layout = LayoutTrend(static_cast<std::int32_t>(w.width() * kTwipsPerPixel),
                                   static_cast<std::int32_t>(w.height() * kTwipsPerPixel),
                                   w.view().Group().ShownScales, w.horizontal());
  const Box &b = layout.Picture3[panel];
  QPointF at((b.Left + b.Width / 2.0) / kTwipsPerPixel, (b.Top + b.Height / 2.0) / kTwipsPerPixel);
  QWidget *picture2 = w.findChild<QWidget *>("Picture2");
  ASSERT_NE(picture2, nullptr);
  bool seen = false;
  QTimer::singleShot(0, [&] {
    auto *d = qobject_cast<ScaleEditDialog *>(QApplication::activeModalWidget());
    if (!d) return;
    seen = true;
    answer(d);
  });
  QMouseEvent click(QEvent::MouseButtonDblClick, at, picture2->mapToGlobal(at), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(picture2, &click);
  EXPECT_TRUE(seen) << "no dialog opened for panel " << panel;
}

TEST_F(DialogFixture, DoubleClickOnAPanelEditsThatSlotsChannel) {
  for (bool horizontal : {true, false}) {
    SetUp();
    TrendWindow w(1, horizontal);
    w.resize(900, 500);
    w.show();
    w.setScaleCount(2);
    ASSERT_EQ(SlotChannelIndex(w.view(), 1), 2);
    const QImage before = w.picture();
    int opened = 0;
    DoubleClickPanel(w, 1, [&](ScaleEditDialog *d) {
      opened = d->channelIndex();
      EXPECT_EQ(d->findChild<QLineEdit *>("txtMax")->text(), "100");
      Press(*d, "40", "20");
    });
    EXPECT_EQ(opened, 2) << "horizontal " << horizontal;
    EXPECT_EQ(Info().Channels[1].ScaleHigh, 400);
    EXPECT_EQ(Info().Channels[1].ScaleLow, 200);
    EXPECT_EQ(Info().Channels[0].ScaleHigh, 1000);  // the other panel's channel stays
    EXPECT_FALSE(w.view().DisplaySaved);
    EXPECT_NE(w.picture(), before);  // plot and panels drawn again
  }
}

TEST_F(DialogFixture, CancelFromTheWindowKeepsTheDisplaySaved) {
  TrendWindow w(1, true);
  w.resize(900, 500);
  w.show();
  ASSERT_TRUE(w.view().DisplaySaved);
  int opened = 0;
  DoubleClickPanel(w, 0, [&](ScaleEditDialog *d) {
    opened = d->channelIndex();
    d->findChild<QLineEdit *>("txtMax")->setText("5");
    d->findChild<QPushButton *>("CancelButton")->click();
  });
  EXPECT_EQ(opened, 1);
  EXPECT_TRUE(w.view().DisplaySaved);
  EXPECT_EQ(Info().Channels[0].ScaleHigh, 1000);
}

TEST_F(DialogFixture, DoubleClickOutsideThePanelsOpensNothing) {
  TrendWindow w(1, true);
  w.resize(900, 500);
  w.show();
  QWidget *picture2 = w.findChild<QWidget *>("Picture2");
  QPointF at(picture2->width() - 5, picture2->height() / 2.0);
  EXPECT_EQ(w.scalePanelAt(at), -1);
  bool opened = false;
  QTimer::singleShot(0, [&] {
    if (QWidget *m = QApplication::activeModalWidget()) {
      opened = true;
      m->close();
    }
  });
  QMouseEvent click(QEvent::MouseButtonDblClick, at, picture2->mapToGlobal(at), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(picture2, &click);
  QApplication::processEvents();
  EXPECT_FALSE(opened);
}

}  // namespace
}  // namespace recscope
