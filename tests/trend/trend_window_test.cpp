#include "trend/trend_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>

#include "../gui/gui_test_support.h"
#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/frame/slot_windows.h"
#include "shell/shared_state.h"
#include "trend/colour_table.h"
#include "trend/trend_tooltips.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

using recscope::testing::App;

const QColor kRed(255, 0, 0);        // channel 1
const QColor kBlue(0, 0, 255);       // channel 2
const QColor kMagenta(255, 0, 255);  // channel 3

QColor Grey(int step) {
  Rgb rgb = GreyOfStep(step);
  return QColor(rgb.r, rgb.g, rgb.b);
}

// The window's layout, as it lays itself out for its size.
TrendLayout LayoutOf(TrendWindow &w) {
  return LayoutTrend(static_cast<std::int32_t>(w.width() * 15),
                     static_cast<std::int32_t>(w.height() * 15), w.view().Group().ShownScales,
                     w.horizontal());
}

QRect PxRect(const Box &b) { return QRect(b.Left / 15, b.Top / 15, b.Width / 15, b.Height / 15); }

// Pixels of a colour inside a rectangle of the drawn picture (Picture2).
int CountColour(const QImage &image, const QRect &area, const QColor &colour) {
  int n = 0;
  QRect r = area.intersected(image.rect());
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x)
      if (image.pixelColor(x, y) == colour) ++n;
  return n;
}

int ChannelPixels(TrendWindow &w) {
  QRect plot = PxRect(LayoutOf(w).Picture1);
  return CountColour(w.picture(), plot, kRed) + CountColour(w.picture(), plot, kBlue) +
         CountColour(w.picture(), plot, kMagenta);
}

struct WindowFixture : ::testing::Test {
  TempFolder home;
  MessageRecorder messages{QMessageBox::No};
  void SetUp() override {
    App();
    ResetSharedState(Shared());
    Shared().ProgramFolder = home.str();
    RecordFileInfo info = MakeRecord(7000, 3, 0, 0, 1);
    info.Groups[1].Members = {2};
    info.Groups[1].GroupName = "TWO";
    // Each record spans 100 raw units, so mode "M" paints an envelope; the
    // channels stand 150 apart, so none covers another.
    WriteLevels(info, home.str(), 1, [](std::int64_t r, int c) {
      std::int16_t v = static_cast<std::int16_t>(r % 500 + 150 * c);
      return std::make_pair(v, static_cast<std::int16_t>(v + 100));
    });
    Shared().Slot(1).Record = info;
    Shared().Slot(1).SamplePeriod = 1;
  }
};

TEST_F(WindowFixture, WindowIsMadeByTheOrientationWithCaptionAndTabs) {
  QMdiArea mdi;
  QWidget *w = OpenSlotWindow(&mdi, 1, SlotWindowKind::kTrend);
  EXPECT_EQ(w->objectName(), "frmTrend");
  EXPECT_EQ(w->property("slot").toInt(), 1);
  EXPECT_TRUE(w->windowTitle().startsWith(QString::fromUtf8("トレンド表示01[")));
  auto *tabs = w->findChild<QTabBar *>("TabStrip1");
  ASSERT_NE(tabs, nullptr);
  EXPECT_EQ(tabs->count(), 3);  // groups 1, 2 and all channels
  EXPECT_EQ(tabs->tabText(2), QString::fromUtf8("全体表示"));
  Shared().TrendOrientation = 0;
  QWidget *v = OpenSlotWindow(&mdi, 1, SlotWindowKind::kTrend);
  EXPECT_EQ(v->objectName(), "frmTrend2");
  EXPECT_NE(v->findChild<QScrollBar *>("VScroll1"), nullptr);
}

TEST_F(WindowFixture, EnlargeReduceAndTheScrollBarDriveTheRange) {
  TrendWindow w(1, true);
  w.resize(800, 400);
  w.show();
  w.onEnlarge();
  EXPECT_EQ(w.view().DisplayStart, 0);
  EXPECT_LT(w.view().DisplayEnd, 6999);
  auto *bar = w.findChild<QScrollBar *>("HScroll1");
  ASSERT_NE(bar, nullptr);
  EXPECT_GT(bar->maximum(), 0);
  std::int32_t span = w.view().DisplayEnd - w.view().DisplayStart;
  bar->setValue(bar->maximum());
  EXPECT_EQ(w.view().DisplayEnd, 6999 - (6999 - w.view().DisplayEnd) % 10);
  EXPECT_GE(w.view().DisplayStart, 6999 - span - 10);
  w.onTimeAll();
  EXPECT_EQ(w.view().DisplayStart, 0);
  EXPECT_EQ(bar->maximum(), 0);
  for (int i = 0; i < 20 && messages.ids().empty(); ++i) w.onEnlarge();
  ASSERT_FALSE(messages.ids().empty());
  EXPECT_EQ(messages.ids().back(), 11160);
  EXPECT_EQ(messages.messages().back().buttons, QMessageBox::Ok);
}

TEST_F(WindowFixture, WheelScrollsAndCtrlWheelZooms) {
  TrendWindow w(1, true);
  w.resize(800, 400);
  w.show();
  std::int32_t before = w.view().DisplayEnd;
  QWheelEvent zoom(QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, 120), Qt::NoButton,
                   Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&w, &zoom);
  EXPECT_LT(w.view().DisplayEnd, before);
  std::int32_t start = w.view().DisplayStart;
  QWheelEvent down(QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, -120), Qt::NoButton,
                   Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&w, &down);
  EXPECT_GT(w.view().DisplayStart, start);
}

TEST_F(WindowFixture, TabChangeMovesTheGroup) {
  TrendWindow w(1, true);
  w.resize(800, 400);
  w.show();
  auto *tabs = w.findChild<QTabBar *>("TabStrip1");
  tabs->setCurrentIndex(1);
  EXPECT_EQ(w.view().CurrentGroup, 2);
  tabs->setCurrentIndex(2);
  EXPECT_EQ(w.view().CurrentGroup, 9);
}

TEST_F(WindowFixture, CloseAsksWhenUnsavedAndCancelKeepsTheWindow) {
  int closed = 0;
  auto *w = new TrendWindow(1, true);
  QObject::connect(w, &TrendWindow::closed, [&closed](int slot) { closed = slot; });
  w->show();
  w->view().DisplaySaved = false;
  messages.setAnswer(QMessageBox::Cancel);
  EXPECT_FALSE(w->close());
  ASSERT_EQ(messages.ids(), std::vector<int>{19503});
  const MessageRequest &question = messages.messages()[0];
  EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  EXPECT_TRUE(question.text().contains(QString::fromStdString(Shared().Slot(1).Record.FilePath)));
  EXPECT_FALSE(question.text().contains("@FileName@"));
  EXPECT_EQ(closed, 0);
  messages.setAnswer(QMessageBox::No);
  EXPECT_TRUE(w->close());
  EXPECT_EQ(closed, 1);
  delete w;
}

TEST_F(WindowFixture, SizeBelowTheMinimumSnapsBackAndIsLaidOutAtTheMinimum) {
  TrendWindow w(1, true);
  w.show();
  w.resize(100, 100);
  QApplication::processEvents();
  EXPECT_EQ(w.width(), 6400 / 15);
  EXPECT_EQ(w.height(), 4100 / 15);
  // The resize laid the window out and redrew it at the size it snapped to.
  TrendLayout l = LayoutOf(w);
  auto *picture2 = w.findChild<QWidget *>("Picture2");
  ASSERT_NE(picture2, nullptr);
  EXPECT_EQ(picture2->geometry(), PxRect(l.Picture2));
  EXPECT_EQ(w.picture().width(), (l.Picture2.Width + 14) / 15);
  EXPECT_EQ(w.picture().height(), (l.Picture2.Height + 14) / 15);
}

TEST_F(WindowFixture, OrientationSwitchKeepsCursorsAndGroup) {
  QMdiArea mdi;
  auto *w = static_cast<TrendWindow *>(OpenSlotWindow(&mdi, 1, SlotWindowKind::kTrend));
  Shared().Slot(1).Record.InUse = -1;
  Shared().OpenFileCount = 1;
  w->view().Cursor1Set = true;
  w->view().Cursor1Time = 1234;
  w->view().DisplaySaved = false;
  w->selectGroup(2);
  SwitchTrendOrientation(&mdi, false);
  QApplication::processEvents();
  TrendWindow *fresh = nullptr;
  for (QMdiSubWindow *sub : mdi.subWindowList())
    if (auto *t = qobject_cast<TrendWindow *>(sub->widget()); t && !t->horizontal()) fresh = t;
  ASSERT_NE(fresh, nullptr);
  EXPECT_EQ(fresh->objectName(), "frmTrend2");
  EXPECT_TRUE(fresh->view().Cursor1Set);
  EXPECT_EQ(fresh->view().Cursor1Time, 1234);
  EXPECT_FALSE(fresh->view().DisplaySaved);
  EXPECT_EQ(fresh->view().CurrentGroup, 2);
  EXPECT_TRUE(messages.ids().empty());  // no save question on the switch
  // The slot goes on in the new window.
  EXPECT_EQ(Shared().Slot(1).Record.InUse, -1);
  EXPECT_EQ(Shared().OpenFileCount, 1);
  EXPECT_EQ(fresh->property("slot").toInt(), 1);
  EXPECT_EQ(fresh->windowTitle(), SlotWindowCaption(1));
  // Closing the new window frees the slot: it was made by the same route.
  fresh->view().DisplaySaved = true;
  EXPECT_TRUE(fresh->close());
  EXPECT_EQ(Shared().Slot(1).Record.InUse, 0);
  EXPECT_EQ(Shared().OpenFileCount, 0);
}

TEST_F(WindowFixture, BottomControlsSayWhatTheyDo) {
  TrendWindow w(1, true);
  for (const char *name : {"UpDown1", "UpDown2", "Command1", "chkAll", "chkSingle"}) {
    QWidget *control = w.findChild<QWidget *>(name);
    ASSERT_NE(control, nullptr) << name;
    EXPECT_FALSE(control->toolTip().isEmpty()) << name;
    EXPECT_EQ(control->toolTip(), TrendControlTip(name)) << name;
  }
  // Each says something of its own, in the operator's language.
  EXPECT_NE(TrendControlTip("UpDown1"), TrendControlTip("UpDown2"));
  EXPECT_NE(TrendControlTip("chkAll"), TrendControlTip("chkSingle"));
  EXPECT_TRUE(TrendControlTip("UpDown1").contains(QString::fromUtf8("マス目")));
  EXPECT_TRUE(TrendControlTip("UpDown2").contains(QString::fromUtf8("バック")));
  EXPECT_TRUE(TrendControlTip("TabStrip1").isEmpty());
}

// A window of the fixture's record at a size that shows all of its controls.
struct ShownWindow {
  TrendWindow w;
  explicit ShownWindow(bool horizontal = true) : w(1, horizontal) {
    w.resize(900, 500);
    w.show();
    QApplication::processEvents();
  }
  template <typename T>
  T *child(const char *name) {
    T *found = w.findChild<T *>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
};

// The label whose text is the catalogue's stands just left of its picker, with
// no other control between them.
void ExpectLabelBeside(ShownWindow &s, const char *label, int messageId, const char *picker) {
  auto *text = s.child<QLabel>(label);
  auto *box = s.child<QSpinBox>(picker);
  ASSERT_TRUE(text && box);
  EXPECT_EQ(text->text(), QString::fromStdString(GetMessageText(messageId)));
  EXPECT_TRUE(text->isVisible());
  QRect l = text->geometry(), b = box->geometry();
  EXPECT_LE(l.right(), b.left());
  EXPECT_LE(b.left() - l.right(), 10) << label << " stands apart from " << picker;
  EXPECT_TRUE(l.top() < b.bottom() && b.top() < l.bottom()) << "not on one row";
  EXPECT_GE(l.width(), text->sizeHint().width()) << "label cut off";
  for (QWidget *other : s.w.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
    if (other == text || other == box || !other->isVisible()) continue;
    QRect o = other->geometry();
    bool between = o.left() >= l.right() && o.right() <= b.left() && o.top() < b.bottom() &&
                   b.top() < o.bottom();
    EXPECT_FALSE(between) << other->objectName().toStdString();
  }
}

TEST_F(WindowFixture, GreyPickersHaveTheirLabels) {
  ShownWindow s;
  ExpectLabelBeside(s, "Label1", 10720, "UpDown2");  // background
  ExpectLabelBeside(s, "Label2", 10721, "UpDown1");  // grid
}

TEST_F(WindowFixture, ZoomCaptionShowsTheFactorSetInTheZoomDialog) {
  ShownWindow s;
  auto *caption = s.child<QLabel>("ZoomCaption");
  ASSERT_NE(caption, nullptr);
  EXPECT_TRUE(caption->isVisible());
  EXPECT_EQ(caption->text(), QStringLiteral("x1"));
  bool answered = false;
  QTimer::singleShot(0, [&answered] {
    QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog || dialog->objectName() != "frmZoomsetting") return;
    dialog->findChild<QLineEdit *>("Text1")->setText(QStringLiteral("4"));
    dialog->findChild<QPushButton *>("OKButton")->click();
    answered = true;
  });
  s.w.onTimeSet();
  ASSERT_TRUE(answered);
  EXPECT_EQ(s.w.view().ZoomCaption, "x4");
  EXPECT_EQ(caption->text(), QStringLiteral("x4"));
  EXPECT_GE(caption->width(), caption->sizeHint().width());
}

TEST_F(WindowFixture, GridPickerRecoloursTheGridLines) {
  ShownWindow s;
  QRect plot = PxRect(LayoutOf(s.w).Picture1);
  ASSERT_GT(CountColour(s.w.picture(), plot, Grey(10)), 100);
  ASSERT_EQ(CountColour(s.w.picture(), plot, Grey(5)), 0);
  s.child<QSpinBox>("UpDown1")->setValue(5);
  EXPECT_EQ(s.w.view().GridGrey, 5);
  EXPECT_EQ(s.w.view().GridColor, ColourText(GreyOfStep(5)));
  EXPECT_FALSE(s.w.view().DisplaySaved);
  EXPECT_GT(CountColour(s.w.picture(), plot, Grey(5)), 100);
  EXPECT_EQ(CountColour(s.w.picture(), plot, Grey(10)), 0);
}

TEST_F(WindowFixture, BackgroundPickerRecoloursThePlotAndThePanel) {
  ShownWindow s;
  TrendLayout l = LayoutOf(s.w);
  QRect plot = PxRect(l.Picture1);
  QRect panel = PxRect(l.Picture3[0]);
  s.child<QSpinBox>("UpDown2")->setValue(3);
  EXPECT_EQ(s.w.view().BackGrey, 3);
  EXPECT_EQ(s.w.view().BackColor, ColourText(GreyOfStep(3)));
  EXPECT_FALSE(s.w.view().DisplaySaved);
  const int area = plot.width() * plot.height();
  EXPECT_GT(CountColour(s.w.picture(), plot, Grey(3)), area / 3);
  EXPECT_EQ(CountColour(s.w.picture(), plot, Qt::white), 0);
  EXPECT_GT(CountColour(s.w.picture(), panel, Grey(3)), panel.width() * panel.height() / 2);
}

TEST_F(WindowFixture, Command1SwitchesBetweenEnvelopeAndMidLine) {
  ShownWindow s;
  auto *button = s.child<QPushButton>("Command1");
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->text(), QStringLiteral("M"));
  const int envelope = ChannelPixels(s.w);
  ASSERT_GT(envelope, 0);
  button->click();
  EXPECT_EQ(s.w.view().WaveMode, 2);
  EXPECT_EQ(button->text(), QStringLiteral("A"));
  const int mid = ChannelPixels(s.w);
  EXPECT_GT(mid, 0);
  EXPECT_LT(mid, envelope * 7 / 10) << "the envelope of each column is still drawn";
  button->click();
  EXPECT_EQ(s.w.view().WaveMode, 1);
  EXPECT_EQ(ChannelPixels(s.w), envelope);
}

TEST_F(WindowFixture, ChkAllSwitchesEveryChannelOffAndOn) {
  ShownWindow s;
  auto *all = s.child<QCheckBox>("chkAll");
  ASSERT_NE(all, nullptr);
  EXPECT_TRUE(all->isChecked());
  QRect plot = PxRect(LayoutOf(s.w).Picture1);
  ASSERT_GT(CountColour(s.w.picture(), plot, kBlue), 0);
  all->click();
  EXPECT_EQ(s.w.view().Group().AllOn, 0);
  for (int p = 0; p < 3; ++p) EXPECT_EQ(s.w.view().Group().ChannelOn[p], 0) << p;
  EXPECT_EQ(ChannelPixels(s.w), 0);
  all->click();
  EXPECT_EQ(s.w.view().Group().AllOn, -1);
  for (int p = 0; p < 3; ++p) EXPECT_EQ(s.w.view().Group().ChannelOn[p], -1) << p;
  EXPECT_GT(CountColour(s.w.picture(), plot, kRed), 0);
  EXPECT_GT(CountColour(s.w.picture(), plot, kBlue), 0);
  EXPECT_GT(CountColour(s.w.picture(), plot, kMagenta), 0);
}

TEST_F(WindowFixture, ChkSingleShowsTheSlotMemberAlone) {
  ShownWindow s;
  auto *all = s.child<QCheckBox>("chkAll");
  auto *single = s.child<QCheckBox>("chkSingle");
  ASSERT_TRUE(all && single);
  // While chkAll is set, chkSingle goes back to 0 at once.
  single->click();
  EXPECT_FALSE(single->isChecked());
  EXPECT_EQ(s.w.view().Group().AllOn, -1);
  all->click();
  single->click();
  EXPECT_TRUE(single->isChecked());
  EXPECT_EQ(s.w.view().Group().ChannelOn[0], -1);
  EXPECT_EQ(s.w.view().Group().ChannelOn[1], 0);
  QRect plot = PxRect(LayoutOf(s.w).Picture1);
  EXPECT_GT(CountColour(s.w.picture(), plot, kRed), 0);
  EXPECT_EQ(CountColour(s.w.picture(), plot, kBlue), 0);
  EXPECT_EQ(CountColour(s.w.picture(), plot, kMagenta), 0);
  single->click();
  EXPECT_EQ(s.w.view().Group().ChannelOn[0], 0);
  EXPECT_EQ(ChannelPixels(s.w), 0);
}

// Pixels of a colour on the axis of scale panel `panel`.
int AxisPixels(TrendWindow &w, int panel, const QColor &colour) {
  const Box p3 = LayoutOf(w).Picture3[panel];
  QRect axis((p3.Left + 985) / 15 - 1, p3.Top / 15, 3, p3.Height / 15);
  return CountColour(w.picture(), axis, colour);
}

TEST_F(WindowFixture, UpDown3PicksTheMemberOfItsPanel) {
  ShownWindow s;
  auto *slot = s.child<QSpinBox>("UpDown3_0");
  ASSERT_NE(slot, nullptr);
  EXPECT_EQ(slot->maximum(), 3);
  EXPECT_GT(AxisPixels(s.w, 0, kRed), 50);
  slot->setValue(2);
  EXPECT_EQ(s.w.view().SlotValue[0], 2);
  EXPECT_EQ(s.w.view().SlotChannelText[0], "02");
  EXPECT_EQ(s.w.view().SlotMemberText[0], "02");
  EXPECT_GT(AxisPixels(s.w, 0, kBlue), 50);
  EXPECT_EQ(AxisPixels(s.w, 0, kRed), 0);
}

// Group 1 has the three channels, group 2 channel 2 alone; three scales.
TEST_F(WindowFixture, TabChangeReselectsTheSlotsForTheNewGroup) {
  Shared().ScaleCount = 3;
  ShownWindow s;
  ASSERT_EQ(s.w.view().Group().ShownScales, 3);
  auto *slot0 = s.child<QSpinBox>("UpDown3_0");
  slot0->setValue(3);  // channel 3 in the first panel
  ASSERT_EQ(s.w.view().SlotValue[0], 3);
  s.child<QTabBar>("TabStrip1")->setCurrentIndex(1);
  ASSERT_EQ(s.w.view().CurrentGroup, 2);
  EXPECT_EQ(s.w.view().Group().ShownScales, 1);
  EXPECT_EQ(s.w.view().SlotValue[0], 1);
  EXPECT_EQ(slot0->value(), 1);
  EXPECT_EQ(slot0->maximum(), 1);
  EXPECT_EQ(s.w.view().SlotChannelText[0], "02");
  EXPECT_EQ(SlotChannelIndex(s.w.view(), 0), 2);
  EXPECT_GT(AxisPixels(s.w, 0, kBlue), 50);  // the scale of channel 2, not of "CH:00"
  EXPECT_FALSE(s.child<QSpinBox>("UpDown3_1")->isVisible());
  // Back in group 1 the three panels show three different members again.
  s.child<QTabBar>("TabStrip1")->setCurrentIndex(0);
  EXPECT_EQ(s.w.view().Group().ShownScales, 3);
  EXPECT_EQ(s.w.view().SlotValue[0], 1);
  EXPECT_EQ(s.w.view().SlotValue[1], 2);
  EXPECT_EQ(s.w.view().SlotValue[2], 3);
  EXPECT_TRUE(s.child<QSpinBox>("UpDown3_2")->isVisible());
  EXPECT_GT(AxisPixels(s.w, 2, kMagenta), 50);
}

// The slot number is printed on Picture2 beside its up-down; no dark pixel of
// it lies under the control.
void ExpectSlotNumberBesideItsUpDown(bool horizontal) {
  ShownWindow s(horizontal);
  auto *slot = s.child<QSpinBox>("UpDown3_0");
  ASSERT_NE(slot, nullptr);
  const QRect up = slot->geometry();  // in Picture2, as the picture is
  const QImage &image = s.w.picture();
  // Where the text stands: left of the control on its rows, or above it.
  QRect search = horizontal ? QRect(0, up.top(), up.right() + 1, up.height())
                            : QRect(up.left() - 5, up.top() - 25, up.width() + 5, 25 + up.height());
  int dark = 0, covered = 0;
  for (int y = search.top(); y <= search.bottom(); ++y)
    for (int x = search.left(); x <= search.right(); ++x) {
      if (!image.rect().contains(x, y) || qGray(image.pixel(x, y)) > 100) continue;
      ++dark;
      if (up.contains(x, y)) ++covered;
    }
  EXPECT_GT(dark, 20) << "no slot number drawn";
  EXPECT_EQ(covered, 0) << "the up-down hides part of the slot number";
  EXPECT_TRUE(QRect(QPoint(0, 0), s.w.findChild<QWidget *>("Picture2")->size()).contains(up))
      << "the up-down stands out of Picture2";
}

TEST_F(WindowFixture, SlotNumberIsNotHiddenByItsUpDownHorizontal) {
  ExpectSlotNumberBesideItsUpDown(true);
}

TEST_F(WindowFixture, SlotNumberIsNotHiddenByItsUpDownVertical) {
  ExpectSlotNumberBesideItsUpDown(false);
}

}  // namespace
}  // namespace recscope

namespace recscope {
namespace {

// Removes the slot's level files: a redraw that read them again would find
// nothing and fold zeros.
void RemoveLevelFiles(const std::string &home) {
  for (const auto &entry : std::filesystem::directory_iterator(home))
    if (entry.path().extension() == ".OPL") std::filesystem::remove(entry.path());
}

// What changes only the drawing repaints from the reduced data in hand: the
// colours, the wave mode, channels on and off and the scale slots.
TEST_F(WindowFixture, DrawingChangesRepaintWithoutReadingTheLevelFiles) {
  ShownWindow s;
  const std::vector<std::int16_t> reduced = s.w.view().DispData;
  ASSERT_FALSE(reduced.empty());
  ASSERT_NE(std::count(reduced.begin(), reduced.end(), 0), static_cast<long>(reduced.size()));
  RemoveLevelFiles(home.str());

  s.child<QSpinBox>("UpDown1")->setValue(4);
  s.child<QSpinBox>("UpDown2")->setValue(2);
  s.child<QPushButton>("Command1")->click();
  s.child<QCheckBox>("chkAll")->click();
  s.child<QCheckBox>("chkAll")->click();
  EXPECT_EQ(s.w.view().DispData, reduced);
  EXPECT_EQ(s.w.view().WaveMode, 2);
  EXPECT_GT(ChannelPixels(s.w), 0);

  // A new range does read them: here it finds none and folds zeros.
  s.w.onEnlarge();
  EXPECT_NE(s.w.view().DispData, reduced);
}

}  // namespace
}  // namespace recscope

namespace recscope {
namespace {

// A tab chosen by the operator is told to the slot's list windows.
TEST_F(WindowFixture, TabChangeTellsTheSlotsWindowsTheGroup) {
  ShownWindow s;
  std::vector<std::pair<int, int>> told;
  QObject::connect(&s.w, &TrendWindow::groupChanged,
                   [&told](int slot, int group) { told.emplace_back(slot, group); });
  s.child<QTabBar>("TabStrip1")->setCurrentIndex(1);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].first, 1);
  EXPECT_EQ(told[0].second, s.w.view().CurrentGroup);
  EXPECT_EQ(told[0].second, 2);
}

}  // namespace
}  // namespace recscope
