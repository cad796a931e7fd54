// The cursor and flag commands the whole way through the real main window on the
// demo record: a click on the plot, the menu entries and tool buttons, frmJump,
// what the window shows after, and the menu set left as it was.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <cmath>

#include "app/desktop_commands.h"
#include "gui_test_support.h"
#include "shell/civil_time.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/menu_state.h"
#include "shell/shared_state.h"
#include "shell/toolbar_table.h"
#include "trend/jump_dialog.h"
#include "trend/trend_layout.h"
#include "trend/trend_window.h"

using namespace recscope;
using recscope::testing::GuiHome;

namespace {

const QString kSample = QStringLiteral(RECSCOPE_SOURCE_DIR "/samples/SHEAT01.FDT");
const QColor kCyan(0, 255, 255);
const QColor kMagenta(255, 0, 255);

std::int32_t At(const char *text) { return static_cast<std::int32_t>(*ParseRecordTime(text)); }

struct CursorDesktop : ::testing::Test {
  CursorDesktop() {
    ConnectDesktopCommands(window);
    window.load();
    window.show();
    window.openFiles({kSample});
    window.mdiArea()->setActiveSubWindow(window.mdiArea()->subWindowList().front());
    trend = qobject_cast<TrendWindow *>(window.mdiArea()->subWindowList().front()->widget());
    QObject::connect(trend, &TrendWindow::eventFound, [this](int slot, int kind, int row) {
      found.push_back({slot, kind, row});
    });
    QObject::connect(trend, &TrendWindow::flagsChanged,
                     [this](int slot) { flags.push_back(slot); });
    QApplication::processEvents();
  }
  MessageRecorder messages{QMessageBox::No};
  GuiHome home;
  MainWindow window;
  TrendWindow *trend = nullptr;
  std::vector<std::array<int, 3>> found;
  std::vector<int> flags;

  const RecordSlot &Slot() { return Shared().Slot(1); }
  TrendLayout Layout() {
    return LayoutTrend(static_cast<std::int32_t>(trend->width() * 15),
                       static_cast<std::int32_t>(trend->height() * 15),
                       trend->view().Group().ShownScales, trend->horizontal());
  }
  QWidget *Picture2() { return trend->findChild<QWidget *>(QStringLiteral("Picture2")); }
  QPoint PlotPixel(double along) {
    const Box &plot = Layout().Picture1;
    return QPoint(static_cast<int>(std::ceil((plot.Left + along) / 15.0)),
                  (plot.Top + plot.Height / 2) / 15);
  }
  void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button) {
    QMouseEvent event(type, QPointF(at), QPointF(Picture2()->mapToGlobal(at)), button,
                      type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(Picture2(), &event);
  }
  void Click(QPoint at) {
    Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton);
  }
  // The tool button of a key, triggered as the operator's click does.
  void Tool(const char *key) {
    for (const ToolButtonSpec &place : ToolButtonTable())
      if (place.key && std::string(place.key) == key) {
        QAction *button =
            window.findChild<QAction *>(QStringLiteral("tbButton%1").arg(place.index));
        ASSERT_NE(button, nullptr) << key;
        ASSERT_TRUE(button->isEnabled()) << key;
        button->trigger();
        return;
      }
    FAIL() << "no tool button " << key;
  }
  // Cyan pixels in the plot column of a time.
  int CursorLine(std::int32_t t) {
    const Box &plot = Layout().Picture1;
    const TrendView &v = trend->view();
    const double pos = std::nearbyint(v.PlotSpan * double(t - v.DisplayStart) /
                                      double(v.DisplayEnd - v.DisplayStart));
    const int x = static_cast<int>((plot.Left + pos) / 15);
    int n = 0;
    for (int px = x - 1; px <= x + 1; ++px)
      for (int y = plot.Top / 15 + 5; y < plot.Bottom() / 15 - 5; ++y)
        if (trend->picture().pixelColor(px, y) == kCyan) ++n;
    return n;
  }
  // The menu set of one open record, after the command.
  void ExpectMenuSetOne() {
    EXPECT_EQ(Shared().MenuState, 1);
    for (const MenuStateRow &row : MenuStateTable())
      EXPECT_EQ(window.command(row.control)->isEnabled(), row.on[1]) << row.control;
    for (const ToolButtonSpec &place : ToolButtonTable()) {
      if (place.key == nullptr) continue;
      EXPECT_EQ(
          window.findChild<QAction *>(QStringLiteral("tbButton%1").arg(place.index))->isEnabled(),
          ToolButtonOn(place.index, 1))
          << place.key;
    }
  }
  // Cursor 1 set by a click near the start of the plot.
  void ClickNearTheStart() {
    Click(PlotPixel(10));
    ASSERT_TRUE(trend->view().Cursor1Set);
    ASSERT_LT(trend->view().Cursor1Time, At("2024/03/04 08:15:00"));
  }
};

TEST_F(CursorDesktop, ClickThenSearchesByMenuAndToolButtonsFollowTheEvents) {
  ClickNearTheStart();
  EXPECT_GT(CursorLine(trend->view().Cursor1Time), 100);
  // The first event of the record is the message "扉閉 運転開始" at 08:15:00.
  window.command("mnuEditAcasolRight")->trigger();
  EXPECT_EQ(trend->view().Cursor1Time, At("2024/03/04 08:15:00"));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0], (std::array<int, 3>{1, 1, 0}));
  EXPECT_GT(CursorLine(At("2024/03/04 08:15:00")), 100);

  Tool("Aright");  // on to the next event, whatever kind it is
  const std::int32_t next = trend->view().Cursor1Time;
  EXPECT_GT(next, At("2024/03/04 08:15:00"));
  ASSERT_EQ(found.size(), 2u);
  const auto &[slot, kind, row] = found[1];
  const std::int32_t eventTime = kind == 0   ? Slot().Alarms.Alarms.at(row).Time
                                 : kind == 1 ? Slot().Alarms.Messages.at(row).Time
                                             : Slot().Flags.at(row).Time;
  EXPECT_LE(eventTime, next);
  EXPECT_GT(eventTime, next - 10);  // the first sample at or after it

  Tool("Aleft");  // back to the first
  EXPECT_EQ(trend->view().Cursor1Time, At("2024/03/04 08:15:00"));
  Tool("Aleft");  // nothing before it: the file start
  EXPECT_EQ(trend->view().Cursor1Time, Slot().Record.FirstTime);
  EXPECT_EQ(found.size(), 3u);
  EXPECT_TRUE(messages.ids().empty());
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, SearchesOfCursorsThatAreNotSetAskForThem) {
  window.command("mnuEditAcasolLeft")->trigger();
  Tool("Bleft");
  Tool("Bright");
  window.runCommand("mnuEditBcasolRight");
  window.runCommand("mnuEditCurJump2");
  Tool("Hlate");
  EXPECT_EQ(messages.ids(), (std::vector<int>{11140, 11141, 11141, 11141, 11141, 11140}));
  EXPECT_EQ(messages.messages()[0].text(), QString::fromUtf8("カーソル１をセットして下さい。"));
  EXPECT_EQ(messages.messages()[1].text(), QString::fromUtf8("カーソル２をセットして下さい。"));
  EXPECT_FALSE(trend->view().Cursor1Set || trend->view().Cursor2Set);
  EXPECT_TRUE(found.empty());
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, JumpDialogThroughTheMenuMovesTheCursorAndTheView) {
  ClickNearTheStart();
  window.runCommand("mnuTimeI");
  window.runCommand("mnuTimeI");  // a quarter of the record in view
  const std::int32_t span = trend->view().DisplayEnd - trend->view().DisplayStart;
  QTimer::singleShot(0, [] {
    auto *d = qobject_cast<JumpDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->windowTitle(), QString::fromUtf8("1カーソル 時間ジャンプ設定"));
    EXPECT_EQ(d->findChild<QComboBox *>("cboYear")->count(), 1);
    d->findChild<QComboBox *>("cboDay")->setCurrentText("06");
    d->findChild<QComboBox *>("cboHour")->setCurrentText("20");
    d->findChild<QComboBox *>("cboMin")->setCurrentText("30");
    d->findChild<QPushButton *>("cmdJump")->click();
  });
  window.command("mnuEditCurJump1")->trigger();
  const std::int32_t t = At("2024/03/06 20:30:00");
  EXPECT_EQ(trend->view().Cursor1Time, t);
  EXPECT_LE(trend->view().DisplayStart, t);
  EXPECT_GE(trend->view().DisplayEnd, t);
  EXPECT_EQ(trend->view().DisplayEnd - trend->view().DisplayStart, span);
  EXPECT_GT(CursorLine(t), 100);
  EXPECT_TRUE(messages.ids().empty());
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, HourAndDayJumpsThroughTheToolButtons) {
  ClickNearTheStart();
  const std::int32_t t = trend->view().Cursor1Time;
  Tool("Hlate");
  EXPECT_EQ(trend->view().Cursor1Time, t + 3600);
  Tool("Dlate");
  EXPECT_EQ(trend->view().Cursor1Time, t + 3600 + 86400);
  Tool("Hago");
  EXPECT_EQ(trend->view().Cursor1Time, t + 86400);
  Tool("Dago");
  EXPECT_EQ(trend->view().Cursor1Time, t);
  Tool("Hago");  // before the file: its start
  EXPECT_EQ(trend->view().Cursor1Time, Slot().Record.FirstTime);
  EXPECT_GT(CursorLine(Slot().Record.FirstTime), 100);
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, RemovingCursorsThroughTheMenuTakesTheLinesAway) {
  ClickNearTheStart();
  const std::int32_t t = trend->view().Cursor1Time;
  window.command("mnuEditKaxsoruDel")->trigger();
  EXPECT_FALSE(trend->view().Cursor1Set);
  EXPECT_EQ(trend->view().Cursor1Time, t);
  EXPECT_EQ(CursorLine(t), 0);
  window.runCommand("mnuEditAcasolRight");  // and the search asks for it again
  EXPECT_EQ(messages.ids(), std::vector<int>{11140});
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, FlagThroughTheToolButtonAndRemoveThroughTheMenu) {
  const std::size_t before = Slot().Flags.size();
  ASSERT_GT(before, 0u);  // the demo record comes with flags
  Tool("Nine");           // no cursor: nothing
  EXPECT_EQ(Slot().Flags.size(), before);
  ClickNearTheStart();
  const std::int32_t t = trend->view().Cursor1Time;
  Tool("Nine");
  ASSERT_EQ(Slot().Flags.size(), before + 1);
  EXPECT_EQ(Slot().Flags.back().Time, t);
  EXPECT_EQ(Slot().Flags.back().Position, 9);
  window.command("mnuEditMark")->trigger();  // the same time again: ignored
  EXPECT_EQ(Slot().Flags.size(), before + 1);
  EXPECT_EQ(flags, std::vector<int>{1});
  // The flag marks stand in the strip above the plot.
  auto marks = [this] {
    const Box &plot = Layout().Picture1;
    int magenta = 0;
    for (int y = (plot.Top - 250) / 15; y < plot.Top / 15; ++y)
      for (int x = plot.Left / 15 - 3; x < plot.Right() / 15 + 3; ++x)
        if (trend->picture().pixelColor(x, y) == kMagenta) ++magenta;
    return magenta;
  };
  EXPECT_GT(marks(), 0);
  window.command("mnuEditMarkDel")->trigger();
  EXPECT_TRUE(Slot().Flags.empty());
  EXPECT_EQ(flags, (std::vector<int>{1, 1}));
  EXPECT_EQ(marks(), 0);
  EXPECT_TRUE(messages.ids().empty());
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, CursorChangeKeyMakesTheNextClickSetCursorTwo) {
  window.dispatchToolKey("CurChange");  // the key of the cursor popup's entry
  Click(PlotPixel(3000));
  EXPECT_TRUE(trend->view().Cursor2Set);
  EXPECT_FALSE(trend->view().Cursor1Set);
  Tool("Bleft");  // cursor 2 searches from where it stands
  EXPECT_TRUE(messages.ids().empty());
  EXPECT_EQ(found.size(), 1u);
  window.runCommand("mnuCursorChange");
  Click(PlotPixel(6000));
  EXPECT_TRUE(trend->view().Cursor1Set);
  ExpectMenuSetOne();
}

TEST_F(CursorDesktop, RightReleaseOnThePlotOpensTheEditMenu) {
  auto *edit = window.findChild<QMenu *>("mnuEdit");
  ASSERT_NE(edit, nullptr);
  Mouse(QEvent::MouseButtonPress, PlotPixel(3000), Qt::RightButton);
  EXPECT_FALSE(edit->isVisible());  // the press does nothing
  Mouse(QEvent::MouseButtonRelease, PlotPixel(3000), Qt::RightButton);
  EXPECT_TRUE(edit->isVisible());
  EXPECT_FALSE(trend->view().Cursor1Set);
  edit->hide();
}

}  // namespace
