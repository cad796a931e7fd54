#pragma once
// Which commands of the main window are available: the menu set of each state.
#include <span>
#include <string_view>

namespace recscope {

// The state from the open counts: 0 when nothing is open, 2 when only totalize
// windows are open, 1 otherwise.
int MenuStateOf(int openFileCount, int openAdditionCount);

// A command whose availability the menu set decides.
struct MenuStateRow {
  const char *control;
  bool on[3];  // in state 0, 1 and 2
};

// Every command the menu set switches, in menu order.
std::span<const MenuStateRow> MenuStateTable();

// Whether `control` is on in `state`. A control the table does not switch is
// always on; a state outside 0 to 2 is taken as 0.
bool MenuCommandOn(std::string_view control, int state);

// Whether tool button `index` (1 to 42) is on in `state`; every button that the
// state does not list is off.
bool ToolButtonOn(int index, int state);

}  // namespace recscope
