#include "link/monitor_session.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>

#include "link/link_commands.h"
#include "link/monitor_trend.h"
#include "link/monitor_windows.h"
#include "shell/frame/main_window.h"
#include "shell/frame/message_service.h"
#include "shell/init_set.h"
#include "trend/trend_feed.h"
#include "trend/trend_window.h"

namespace recscope {

namespace {

constexpr int kTimer2Interval = 100;
// The tool bar buttons the monitor turns on.
constexpr int kMonitorButtons[] = {11, 12, 14, 20, 21};
constexpr SlotWindowKind kMonitorViews[] = {SlotWindowKind::kComBargraph,
                                            SlotWindowKind::kComInstantvalue,
                                            SlotWindowKind::kComWholedisplay};

}  // namespace

MonitorSession::MonitorSession(MainWindow &frame, CommandDriver &driver)
    : QObject(&frame), frame_(frame), driver_(driver) {
  timer2_.setObjectName(QStringLiteral("Timer2"));
  timer2_.setInterval(kTimer2Interval);
  connect(&timer2_, &QTimer::timeout, this, [this] { Timer2_Timer(); });
}

MonitorSession::~MonitorSession() {
  timer2_.stop();
  ClearTrendFeed(kLinkSlot);
  run_.Stop();
}

void MonitorSession::FeedTrend() {
  TrendFeed feed;
  feed.Fill = [this](TrendView &view, std::int32_t timeExtent) {
    MonitorTrendFill(view, run_.ring(), Shared().Slot(kLinkSlot).Record, timeExtent);
  };
  // A list window reads the record as far as written; when that fails the
  // slot goes back to what the setup read gave, so the trend keeps drawing.
  feed.ReadRecord = [this] {
    const int id = run_.RefreshSlot(Shared());
    if (id != 0) run_.FillSlot(Shared());
    return id;
  };
  SetTrendFeed(kLinkSlot, std::move(feed));
}

bool MonitorSession::ComMonitorStart() {
  // Every open record and viewer is closed first.
  QMdiArea *mdi = frame_.mdiArea();
  for (QMdiSubWindow *sub : mdi->subWindowList()) sub->close();
  MonitorHooks hooks;
  hooks.ComErrorDialog = [this](int code) { return ComErrorDialog(&frame_, code); };
  hooks.NoFileName = [this] {
    ShowComposedMessage(&frame_, 0, QString::fromLatin1(kNoFileNameText));
  };
  if (!run_.Start(driver_, ComSettings(), Registers(), Shared().ProgramFolder, hooks, Shared())) {
    ComMonitorStop();
    return false;
  }
  // Views left from an earlier run go; a new trend of slot 17 comes, drawn
  // from the ring.
  CloseMonitorWindows();
  run_.FillSlot(Shared());
  FeedTrend();
  OpenSlotWindow(mdi, kLinkSlot, SlotWindowKind::kTrend);
  for (SlotWindowKind kind : kMonitorViews) OpenSlotWindow(mdi, kLinkSlot, kind);
  // The four windows side by side, so that none starts outside the frame.
  mdi->tileSubWindows();
  for (int index : kMonitorButtons)
    if (auto *button = frame_.findChild<QAction *>(QStringLiteral("tbButton%1").arg(index)))
      button->setEnabled(true);
  driver_.Timer2Enabled = true;
  timer2_.start();
  return true;
}

void MonitorSession::openView(SlotWindowKind kind) {
  QMdiArea *mdi = frame_.mdiArea();
  QWidget *view = FindSlotWindow(mdi, kLinkSlot, kind);
  if (!view) {
    if (!run_.running()) return;
    // A record's open unloads the monitor's windows and frees slot 17: the
    // slot takes the setup read's records again before a view comes.
    if (!Shared().Slot(kLinkSlot).InUse()) run_.FillSlot(Shared());
    view = OpenSlotWindow(mdi, kLinkSlot, kind);
  }
  if (auto *sub = qobject_cast<QMdiSubWindow *>(view->parentWidget())) {
    if (sub->isMinimized()) sub->showNormal();
    mdi->setActiveSubWindow(sub);
  }
  if (run_.running()) Redraw();
}

void MonitorSession::Timer2_Timer() {
  // The tick waits inside the transaction while events run: a tick that comes
  // meanwhile has nothing to do.
  if (busy_ || !driver_.Timer2Enabled || !run_.running()) return;
  busy_ = true;
  const MonitorTickResult result = run_.Tick();
  busy_ = false;
  if (result == MonitorTickResult::kEnd) {
    ComMonitorStop();
    return;
  }
  if (result == MonitorTickResult::kSampled) Redraw();
}

void MonitorSession::Redraw() {
  QMdiArea *mdi = frame_.mdiArea();
  const MonitorRing &ring = run_.ring();
  if (!run_.last()) return;
  const int index = ring.writeIndex();
  if (auto *bars = static_cast<ComBargraphWindow *>(
          FindSlotWindow(mdi, kLinkSlot, SlotWindowKind::kComBargraph)))
    bars->redraw(ring, index);
  if (auto *list = static_cast<ComInstantValueWindow *>(
          FindSlotWindow(mdi, kLinkSlot, SlotWindowKind::kComInstantvalue)))
    list->redraw(ring, index);
  if (auto *whole = static_cast<ComWholeDisplayWindow *>(
          FindSlotWindow(mdi, kLinkSlot, SlotWindowKind::kComWholedisplay)))
    whole->redraw(ring, index);
  // The trend draws the whole ring again through its feed.
  if (auto *trend =
          static_cast<TrendWindow *>(FindSlotWindow(mdi, kLinkSlot, SlotWindowKind::kTrend)))
    trend->RedrawWholeView();
}

void MonitorSession::CloseMonitorWindows() { UnloadMonitorViews(frame_.mdiArea()); }

void MonitorSession::ComMonitorStop() {
  timer2_.stop();
  run_.Stop();
  CloseMonitorWindows();
  ClearTrendFeed(kLinkSlot);
  frame_.UpdateMainMenus();
  if (Stopped) Stopped();
}

}  // namespace recscope
