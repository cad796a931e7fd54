#include "shell/frame/slot_windows.h"

#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>

#include "link/monitor_windows.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "shell/frame/main_window.h"
#include "shell/menu_state.h"
#include "shell/shared_state.h"
#include "totalize/addition_window.h"
#include "totalize/report.h"
#include "totalize/report_list_window.h"
#include "totalize/totalize_view.h"
#include "trend/cursor_commands.h"
#include "trend/shift_key.h"
#include "trend/trend_window.h"
#include "views/cursor_calc_window.h"
#include "views/event_list.h"
#include "views/event_list_window.h"
#include "views/instant_value_window.h"

namespace recscope {

namespace {

constexpr int kTrendCaption = 19500;
constexpr int kInstantCaption = 19300;

// The windows of `slot` in the MDI area of `type`.
template <typename Window>
QList<Window *> SlotWindowsOf(QMdiArea *mdi, int slot) {
  QList<Window *> found;
  if (!mdi) return found;
  for (QMdiSubWindow *sub : mdi->subWindowList())
    if (auto *window = qobject_cast<Window *>(sub->widget()))
      if (window->property("slot").toInt() == slot) found.append(window);
  return found;
}

// The instant value list follows the trend's cursor and tabs; its row click
// sets the trend's cursor, and its tab change goes to the trend.
void ConnectInstant(InstantValueWindow *list, TrendWindow *trend) {
  QObject::connect(trend, &TrendWindow::cursorsChanged, list,
                   [list, trend](int, int cursorNo, bool follow) {
                     if (!follow) return;
                     const TrendView &view = trend->view();
                     if (cursorNo == 2 ? !view.Cursor2Set : !view.Cursor1Set) return;
                     list->followCursorTime(cursorNo == 2 ? view.Cursor2Time : view.Cursor1Time);
                   });
  QObject::connect(trend, &TrendWindow::groupChanged, list,
                   [list](int, int groupNo) { list->selectGroup(groupNo); });
  QObject::connect(list, &InstantValueWindow::groupChosen, trend, [trend](int, int groupNo) {
    if (trend->view().CurrentGroup != groupNo) trend->selectGroup(groupNo);
  });
  QObject::connect(list, &InstantValueWindow::rowChosen, trend, [trend](int, std::int32_t time) {
    // The cursor is chosen as a click on the plot chooses it; the list that chose
    // the record does not move again.
    const int cursorNo =
        CursorOfShift(ShiftKeyState::Instance().State(), trend->view().ShiftBaseline);
    trend->setCursorFromList(cursorNo, time, false);
  });
}

QWidget *MakeWindow(QMdiArea *mdi, int slot, SlotWindowKind kind) {
  switch (kind) {
    case SlotWindowKind::kTrend: {
      const bool horizontal = Shared().TrendOrientation != 0;
      auto *trend = new TrendWindow(slot, horizontal);
      trend->setProperty("tag", horizontal ? QStringLiteral("Hori") : QStringLiteral("Ver"));
      for (InstantValueWindow *list : SlotWindowsOf<InstantValueWindow>(mdi, slot))
        ConnectInstant(list, trend);
      return trend;
    }
    case SlotWindowKind::kEventList:
      Shared().Slot(slot).AlarmListOpen = -1;
      return new EventListWindow(slot);
    case SlotWindowKind::kCursorCalc:
      Shared().Slot(slot).CursorCalcOpen = -1;
      return new CursorCalcWindow(slot);
    case SlotWindowKind::kComInstantvalue:
      return new ComInstantValueWindow;
    case SlotWindowKind::kComBargraph:
      return new ComBargraphWindow;
    case SlotWindowKind::kComWholedisplay:
      return new ComWholeDisplayWindow;
    case SlotWindowKind::kInstant: {
      auto *list = new InstantValueWindow(slot);
      const QList<TrendWindow *> trends = SlotWindowsOf<TrendWindow>(mdi, slot);
      if (!trends.isEmpty()) {
        list->selectGroup(trends.front()->view().CurrentGroup);
        ConnectInstant(list, trends.front());
      }
      return list;
    }
    case SlotWindowKind::kReport:
      return new ReportListWindow(slot);
    case SlotWindowKind::kAddition: {
      auto *addition = new AdditionWindow(slot);
      // The main window's inner width less 500 twips, and 6000 twips high.
      if (mdi) addition->resize(mdi->viewport()->width() - 500 / 15, 6000 / 15);
      return addition;
    }
  }
  return nullptr;
}

bool IsKind(QWidget *window, SlotWindowKind kind) {
  switch (kind) {
    case SlotWindowKind::kTrend:
      return qobject_cast<TrendWindow *>(window) != nullptr;
    case SlotWindowKind::kEventList:
      return qobject_cast<EventListWindow *>(window) != nullptr;
    case SlotWindowKind::kCursorCalc:
      return qobject_cast<CursorCalcWindow *>(window) != nullptr;
    case SlotWindowKind::kInstant:
      return qobject_cast<InstantValueWindow *>(window) != nullptr;
    case SlotWindowKind::kReport:
      return qobject_cast<ReportListWindow *>(window) != nullptr;
    case SlotWindowKind::kAddition:
      return qobject_cast<AdditionWindow *>(window) != nullptr;
    case SlotWindowKind::kComInstantvalue:
      return qobject_cast<ComInstantValueWindow *>(window) != nullptr;
    case SlotWindowKind::kComBargraph:
      return qobject_cast<ComBargraphWindow *>(window) != nullptr;
    case SlotWindowKind::kComWholedisplay:
      return qobject_cast<ComWholeDisplayWindow *>(window) != nullptr;
  }
  return false;
}

// The slot's list windows follow its trend window (at their open, and after the
// trend is rebuilt in the other orientation).
void AttachSlotViews(QMdiArea *mdi, int slot) {
  auto *trend = static_cast<TrendWindow *>(FindSlotWindow(mdi, slot, SlotWindowKind::kTrend));
  if (auto *list =
          static_cast<EventListWindow *>(FindSlotWindow(mdi, slot, SlotWindowKind::kEventList)))
    list->attachTrend(trend);
  if (auto *calc =
          static_cast<CursorCalcWindow *>(FindSlotWindow(mdi, slot, SlotWindowKind::kCursorCalc)))
    calc->attachTrend(trend);
}

// What the operator's close of the window does to its slot.
void WireClose(QWidget *window, QMdiArea *mdi, int slot, SlotWindowKind kind) {
  switch (kind) {
    case SlotWindowKind::kTrend: {
      QPointer<QMdiArea> area(mdi);
      QObject::connect(static_cast<TrendWindow *>(window), &TrendWindow::closed, window,
                       [area, slot] {
                         // The trend owns the slot: its other windows close with it.
                         for (auto kind : {SlotWindowKind::kEventList, SlotWindowKind::kCursorCalc,
                                           SlotWindowKind::kInstant, SlotWindowKind::kReport})
                           while (QWidget *view = FindSlotWindow(area, slot, kind))
                             view->parentWidget()->close();
                         CloseRecordSlot(Shared(), slot);
                         ApplyMenuSet(area);
                       });
      return;
    }
    case SlotWindowKind::kEventList:
      QObject::connect(window, &QObject::destroyed,
                       [slot] { Shared().Slot(slot).AlarmListOpen = 0; });
      return;
    case SlotWindowKind::kCursorCalc:
      QObject::connect(window, &QObject::destroyed,
                       [slot] { Shared().Slot(slot).CursorCalcOpen = 0; });
      return;
    case SlotWindowKind::kInstant:
      return;  // InstantOpen goes back to 0 with the window
    case SlotWindowKind::kReport:
      return;  // the report table outlives the window
    case SlotWindowKind::kComInstantvalue:
    case SlotWindowKind::kComBargraph:
    case SlotWindowKind::kComWholedisplay:
      return;  // the monitor finds them open or not at each sample
    case SlotWindowKind::kAddition: {
      // The window frees its totalize slot as it goes; the menus follow the count.
      QPointer<QMdiArea> area(mdi);
      QObject::connect(window, &QObject::destroyed, [area] { ApplyMenuSet(area); });
      return;
    }
  }
}

}  // namespace

QWidget *FindSlotWindow(QMdiArea *mdi, int slot, SlotWindowKind kind) {
  if (!mdi) return nullptr;
  for (QMdiSubWindow *sub : mdi->subWindowList())
    if (sub->widget() && IsKind(sub->widget(), kind) &&
        sub->widget()->property("slot").toInt() == slot)
      return sub->widget();
  return nullptr;
}

QString SlotWindowCaption(int slot, SlotWindowKind kind) {
  switch (kind) {
    case SlotWindowKind::kInstant: {
      const QString number = QStringLiteral("%1").arg(slot, 2, 10, QLatin1Char('0'));
      return QString::fromStdString(
                 GetMessageText(kInstantCaption, "@strNumber@", number.toStdString())) +
             "[" + QString::fromStdString(Shared().Slot(slot).Record.FilePath) + "]";
    }
    case SlotWindowKind::kTrend: {
      if (slot == kLinkSlot) return QStringLiteral("Trend Viewer");
      const QString number = QStringLiteral("%1").arg(slot, 2, 10, QLatin1Char('0'));
      return QString::fromStdString(
                 GetMessageText(kTrendCaption, "@FileNumber@", number.toStdString())) +
             "[" + QString::fromStdString(Shared().Slot(slot).Record.FilePath) + "]";
    }
    case SlotWindowKind::kEventList:
      return QString::fromStdString(EventListCaption(slot, Shared().Slot(slot).Record.FilePath));
    case SlotWindowKind::kCursorCalc:
      return QStringLiteral("%1:").arg(slot, 2, 10, QLatin1Char('0')) +
             QString::fromStdString(Shared().Slot(slot).Record.FilePath);
    case SlotWindowKind::kReport:
      return QString::fromStdString(ReportTypeName(SharedChohyoTable().Type)) +
             QStringLiteral("%1").arg(slot, 2, 10, QLatin1Char('0')) + "[" +
             QString::fromStdString(Shared().Slot(slot).Record.FilePath) + "]";
    case SlotWindowKind::kComInstantvalue:
      return QStringLiteral("Instant value");
    case SlotWindowKind::kComBargraph:
      return QStringLiteral("Bar graph");
    case SlotWindowKind::kComWholedisplay:
      return QStringLiteral("Whole display");
    case SlotWindowKind::kAddition: {
      const TotalizeWindow &file = Shared().Totalize(slot);
      return QString::fromStdString(TotalizeCaption(file.Kind, slot, file.Path));
    }
  }
  return {};
}

QWidget *OpenSlotWindow(QMdiArea *mdi, int slot, SlotWindowKind kind) {
  QWidget *window = MakeWindow(mdi, slot, kind);
  window->setProperty("slot", slot);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowTitle(SlotWindowCaption(slot, kind));
  WireClose(window, mdi, slot, kind);
  if (mdi) {
    const QSize firstSize = window->size();
    QMdiSubWindow *sub = mdi->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->show();
    // The frame takes the window's own first size, plus its title and borders.
    sub->resize(firstSize + (sub->size() - window->size()));
  } else {
    window->show();
  }
  AttachSlotViews(mdi, slot);
  return window;
}

void UnloadMonitorViews(QMdiArea *mdi) {
  for (SlotWindowKind kind : {SlotWindowKind::kComBargraph, SlotWindowKind::kComInstantvalue,
                              SlotWindowKind::kComWholedisplay})
    while (QWidget *view = FindSlotWindow(mdi, kLinkSlot, kind)) view->parentWidget()->close();
  while (auto *trend =
             static_cast<TrendWindow *>(FindSlotWindow(mdi, kLinkSlot, SlotWindowKind::kTrend))) {
    trend->setAskOnClose(false);
    trend->parentWidget()->close();
  }
}

void SwitchTrendOrientation(QMdiArea *mdi, bool horizontal) {
  Shared().TrendOrientation = horizontal ? -1 : 0;
  if (!mdi) return;
  for (QMdiSubWindow *sub : mdi->subWindowList()) {
    auto *old = qobject_cast<TrendWindow *>(sub->widget());
    if (!old || old->horizontal() == horizontal) continue;
    const TrendView keep = old->view();
    const std::int32_t origin = old->zonePlotOrigin();
    const std::int32_t extent = old->zonePlotExtent();
    const int slot = old->slot();
    // The new window takes the old one's place in the frame.
    const QRect place = sub->geometry();
    const bool maximized = sub->isMaximized();
    // The slot goes on in the new window: this close neither asks nor frees it.
    QObject::disconnect(old, &TrendWindow::closed, nullptr, nullptr);
    old->setAskOnClose(false);
    sub->close();
    auto *fresh = static_cast<TrendWindow *>(OpenSlotWindow(mdi, slot, SlotWindowKind::kTrend));
    if (auto *freshSub = qobject_cast<QMdiSubWindow *>(fresh->parentWidget())) {
      if (maximized)
        freshSub->showMaximized();
      else
        freshSub->setGeometry(place);
    }
    fresh->keepFrom(keep, origin, extent);
  }
}

void ApplyMenuSet(QWidget *widget) {
  SharedState &state = Shared();
  state.MenuState =
      static_cast<std::int16_t>(MenuStateOf(state.OpenFileCount, state.OpenAdditionCount));
  if (auto *frame = qobject_cast<MainWindow *>(widget ? widget->window() : nullptr))
    frame->UpdateMainMenus();
}

}  // namespace recscope
