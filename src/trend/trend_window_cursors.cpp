// The trend window's cursors, event search, jumps, flags and the event text
// carried by the mouse. The arithmetic is in cursor_commands and flag_list; here
// it is only routed, shown and told to the slot's other windows.
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>

#include "shell/frame/message_service.h"
#include "shell/shared_state.h"
#include "trend/cursor_commands.h"
#include "trend/event_marks.h"
#include "trend/flag_list.h"
#include "trend/jump_dialog.h"
#include "trend/shift_key.h"
#include "trend/trend_window.h"

namespace recscope {

namespace {

// Height of picIvent's text band beyond the drawn text, so the frame fits.
constexpr int kEventFramePx = 2;

QString EventText(const RecordSlot &slot, int kind, int row) {
  switch (kind) {
    case 0:
      return QString::fromStdString(AlarmMarkText(slot.Alarms.Alarms.at(row)));
    case 1:
      return QString::fromStdString(slot.Alarms.Messages.at(row).Text).trimmed();
    default:
      return QString::fromStdString(slot.Flags.at(row).Text);
  }
}

std::int16_t *EventLevelOf(RecordSlot &slot, int kind, int row) {
  switch (kind) {
    case 0:
      return row < static_cast<int>(slot.Alarms.Alarms.size()) ? &slot.Alarms.Alarms[row].Position
                                                               : nullptr;
    case 1:
      return row < static_cast<int>(slot.Alarms.Messages.size())
                 ? &slot.Alarms.Messages[row].Position
                 : nullptr;
    default:
      return row < static_cast<int>(slot.Flags.size()) ? &slot.Flags[row].Position : nullptr;
  }
}

int KindNumber(MarkKind kind) {
  switch (kind) {
    case MarkKind::kAlarm:
      return 0;
    case MarkKind::kMessage:
      return 1;
    case MarkKind::kFlag:
    default:
      return 2;
  }
}

}  // namespace

QPointF TrendWindow::PlotPoint(const QPointF &picture2Pixels) const {
  return QPointF(picture2Pixels.x() * kTwipsPerPixel - layout_.Picture1.Left,
                 picture2Pixels.y() * kTwipsPerPixel - layout_.Picture1.Top);
}

bool TrendWindow::OnPlot(const QPointF &p) const {
  return p.x() >= 0 && p.y() >= 0 && p.x() < layout_.Picture1.Width &&
         p.y() < layout_.Picture1.Height;
}

void TrendWindow::CursorJump(std::int64_t t, int cursorNo, bool follow) {
  const RecordSlot &slot = Shared().Slot(slot_);
  if (JumpCursor(view_, slot.Record, slot.Period(), t, cursorNo))
    RedrawWholeView();
  else
    Repaint();
  emit cursorsChanged(slot_, cursorNo, follow);
}

void TrendWindow::Casol_Left_Click(int cursorNo) {
  const RecordSlot &slot = Shared().Slot(slot_);
  EventSearchResult found = SearchEarlierEvent(slot.Record, slot.Period(), slot.Alarms, slot.Flags,
                                               CursorTime(view_, cursorNo));
  if (found.found()) emit eventFound(slot_, found.kind, found.row);
  CursorJump(found.time, cursorNo, true);
}

void TrendWindow::Casol_Right_Click(int cursorNo) {
  const RecordSlot &slot = Shared().Slot(slot_);
  EventSearchResult found = SearchLaterEvent(slot.Record, slot.Period(), slot.Alarms, slot.Flags,
                                             CursorTime(view_, cursorNo));
  if (found.found()) emit eventFound(slot_, found.kind, found.row);
  CursorJump(found.time, cursorNo, true);
}

void TrendWindow::onSearchEarlier(int cursorNo) {
  if (view_.RealTime != 0) return;
  if (int refusal = CursorRefusal(view_, cursorNo)) return void(ShowMessage(this, refusal));
  Casol_Left_Click(cursorNo);
}

void TrendWindow::onSearchLater(int cursorNo) {
  if (view_.RealTime != 0) return;
  if (int refusal = CursorRefusal(view_, cursorNo)) return void(ShowMessage(this, refusal));
  Casol_Right_Click(cursorNo);
}

void TrendWindow::onJumpDialog(int cursorNo) {
  if (view_.RealTime != 0) return;
  if (int refusal = CursorRefusal(view_, cursorNo)) return void(ShowMessage(this, refusal));
  const RecordFileInfo &info = Shared().Slot(slot_).Record;
  JumpDialog dialog(cursorNo, info.FirstTime, info.LastTime, CursorTime(view_, cursorNo),
                    Shared().DateFormatNo, this);
  if (dialog.exec() != QDialog::Accepted) return;
  CursorJump(dialog.chosenTime(), cursorNo, true);
}

void TrendWindow::onShiftCursor1(std::int32_t seconds) {
  if (view_.RealTime != 0) return;
  if (int refusal = CursorRefusal(view_, 1)) return void(ShowMessage(this, refusal));
  CursorJump(static_cast<std::int64_t>(view_.Cursor1Time) + seconds, 1, true);
}

void TrendWindow::onRemoveCursors() {
  if (view_.RealTime != 0) return;
  RemoveCursors(view_);
  Repaint();
  emit cursorsChanged(slot_, 1, false);
  emit cursorsChanged(slot_, 2, false);
}

void TrendWindow::onCursorChange() {
  view_.ShiftBaseline = SwappedShiftBaseline(view_.ShiftBaseline);
}

void TrendWindow::onAddFlag() {
  if (view_.RealTime != 0) return;
  const int cursorNo = CursorOfShift(ShiftKeyState::Instance().State(), view_.ShiftBaseline);
  if (!CursorSet(view_, cursorNo)) return;
  if (!AddFlag(Shared().Slot(slot_).Flags, CursorTime(view_, cursorNo))) return;
  Repaint();
  emit flagsChanged(slot_);
}

void TrendWindow::onRemoveFlags() {
  if (view_.RealTime != 0) return;
  RemoveAllFlags(Shared().Slot(slot_).Flags);
  Repaint();
  emit flagsChanged(slot_);
}

void TrendWindow::plotPressed(QMouseEvent *event) {
  event->accept();
  if (view_.RealTime != 0 || event->button() != Qt::LeftButton) return;
  const QPointF p = PlotPoint(event->position());
  if (!OnPlot(p)) return;
  const RecordSlot &slot = Shared().Slot(slot_);
  const std::optional<std::int32_t> t =
      ClickTime(view_, slot.Record, slot.Period(), horizontal_ ? p.x() : p.y(), horizontal_);
  if (t) {
    const bool held = event->modifiers() & Qt::ShiftModifier;
    const int cursorNo = CursorOfShift(ShiftKeyState::Instance().State(held), view_.ShiftBaseline);
    PlaceCursor(view_, cursorNo, *t);
    Repaint();
    emit cursorsChanged(slot_, cursorNo, true);
  }
  // The event text under the press, alarms first, then messages, then flags:
  // the order in which the drawing placed them.
  for (const PlacedText &text : placed_.eventTexts) {
    if (!TextBoxContains(text.box, p.x(), p.y())) continue;
    eventKind_ = KindNumber(text.kind);
    eventRow_ = static_cast<int>(text.row);
    picIvent_->setText(EventText(slot, eventKind_, eventRow_));
    const Box &plot = layout_.Picture1;
    picIvent_->setGeometry(
        static_cast<int>((plot.Left + text.box.Left + 50) / kTwipsPerPixel),
        static_cast<int>((plot.Top + text.box.Top) / kTwipsPerPixel),
        static_cast<int>((text.box.Right - text.box.Left) / kTwipsPerPixel) + kEventFramePx,
        static_cast<int>((text.box.Bottom - text.box.Top) / kTwipsPerPixel) + kEventFramePx);
    picIvent_->show();
    picIvent_->raise();
    return;
  }
}

void TrendWindow::plotMoved(QMouseEvent *event) {
  if (!picIvent_->isVisible()) return;
  event->accept();
  const QPointF p = PlotPoint(event->position());
  const Zone zone = SlotZone(view_, view_.SelectedSlot);
  const Box &plot = layout_.Picture1;
  // The text follows the mouse across the time axis while it stays within the
  // zone of the selected channel.
  const double from = zone.top - layout_.PlotOrigin();
  const double along = horizontal_ ? p.y() : p.x();
  if (along < from || along > from + 0.9 * zone.height) return;
  if (horizontal_)
    picIvent_->move(picIvent_->x(), static_cast<int>((plot.Top + along) / kTwipsPerPixel));
  else
    picIvent_->move(static_cast<int>((plot.Left + along) / kTwipsPerPixel), picIvent_->y());
}

void TrendWindow::plotReleased(QMouseEvent *event) {
  event->accept();
  const QPointF p = PlotPoint(event->position());
  if (event->button() == Qt::RightButton) {
    if (view_.RealTime != 0 || !OnPlot(p)) return;
    if (auto *menu = window()->findChild<QMenu *>(QStringLiteral("mnuEdit")))
      menu->popup(event->globalPosition().toPoint());
    return;
  }
  if (event->button() != Qt::LeftButton || !picIvent_->isVisible()) return;
  picIvent_->hide();
  const Zone zone = SlotZone(view_, view_.SelectedSlot);
  std::int16_t *level = EventLevelOf(Shared().Slot(slot_), eventKind_, eventRow_);
  if (!level) return;
  *level = DroppedEventLevel(horizontal_ ? p.y() : p.x(), zone.height, horizontal_);
  view_.DisplaySaved = false;
  Repaint();
  emit eventLevelChanged(slot_, eventKind_, eventRow_);
}

}  // namespace recscope
