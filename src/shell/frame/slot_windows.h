#pragma once
// The windows of a record slot. One route makes each of them, by kind: the
// window itself, its caption, its place in the MDI area, the slot it carries in
// the Qt property "slot" and what its closing does to the slot. The opening of a
// record and the switch of the trend's orientation both come through here.
#include <QString>

class QMdiArea;
class QWidget;

namespace recscope {

// The kinds of window a slot has. The trend window owns the slot: closing it
// frees the slot and closes the slot's other windows. (The instant value list
// joins as it is built.)
enum class SlotWindowKind {
  kTrend,
  kEventList,   // frmEventlist: AlarmListOpen is -1 while it stands
  kCursorCalc,  // CurData: CursorCalcOpen is -1 while it stands
  kInstant,     // frmInstantvalue: follows the trend's cursor and tabs
  kReport,      // frmChohyoList: the sheet of the program's report table
  kAddition,    // frmAddition: a totalize slot's window (slot: the totalize slot)
  // The communication monitor's views of slot 17, redrawn by the monitor.
  kComInstantvalue,  // frmComInstantvalue
  kComBargraph,      // frmComBargraph
  kComWholedisplay,  // frmComWholedisplay
};

// Caption of a slot's window of `kind`: for the trend, message 19500 with the
// slot in two digits, then "[", the record's path, "]"; for the instant value
// list message 19300 the same way; for a totalize window its kind name, the
// totalize slot in two digits, then "[", the file's path, "]".
QString SlotWindowCaption(int slot, SlotWindowKind kind = SlotWindowKind::kTrend);

// Makes the window of `kind` for `slot` and shows it: in the MDI area at its own
// first size (when `mdi` is null, as a window of its own). The trend window is
// frmTrend or frmTrend2 by the shared orientation. When the operator closes the
// trend window the slot is freed (arrays, InUse, working files, open count) and
// the menu set is applied.
QWidget *OpenSlotWindow(QMdiArea *mdi, int slot, SlotWindowKind kind = SlotWindowKind::kTrend);

// The window of `kind` of `slot` in the MDI area, or nullptr.
QWidget *FindSlotWindow(QMdiArea *mdi, int slot, SlotWindowKind kind);

// Unloads the communication monitor's windows that stand: frmComBargraph,
// frmComInstantvalue, frmComWholedisplay and the trend of slot 17 (no save
// question; slot 17 is freed, no open count changes). A record or totalize file
// that opens does this before its own window comes; the monitor goes on polling
// and redraws only the windows it finds.
void UnloadMonitorViews(QMdiArea *mdi);

// Rebuilds every open trend window in the other form through OpenSlotWindow,
// keeping cursors, groups and the saved flag. The slot is not freed and no save
// question is asked.
void SwitchTrendOrientation(QMdiArea *mdi, bool horizontal);

// Applies the menu set after a change (or a failed change) of the open count:
// MenuState from the counts, and the commands of the main window that holds
// `widget`, when there is one.
void ApplyMenuSet(QWidget *widget);

}  // namespace recscope
