#include "shell/menu_state.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace recscope {

namespace {

constexpr MenuStateRow kRows[] = {
    {"mnuFileClose", {false, true, true}},       {"mnuFileChange", {false, true, true}},
    {"mnuFileSaveas", {false, true, false}},     {"mnuFileSaveDispSet", {false, true, false}},
    {"mnuFilePrint", {false, true, false}},      {"mnuFileV", {false, true, false}},
    {"mnuEdit", {false, true, false}},           {"mnuTime", {false, true, false}},
    {"mnuViewd", {false, true, false}},          {"mnuWindow", {false, true, true}},
    {"mnuWindowMoment", {false, true, false}},   {"mnuWindowAramu", {false, true, false}},
    {"mnuWindowBetweenC", {false, true, false}}, {"mnuWindowChohyo", {false, true, false}},
    {"mnuViewAlarm", {false, true, false}},      {"mnuViewMessage", {false, true, false}},
    {"mnuViewFlag", {false, true, false}},
};

constexpr int kState0Buttons[] = {1, 2, 25};
constexpr int kState1Buttons[] = {1,  2,  4,  5,  6,  7,  8,  9,  10, 13, 14, 15,
                                  16, 22, 23, 25, 27, 28, 29, 30, 39, 40, 41, 42};
constexpr int kState2Buttons[] = {1, 2, 22, 23, 25};

int Known(int state) { return (state == 1 || state == 2) ? state : 0; }

}  // namespace

int MenuStateOf(int openFileCount, int openAdditionCount) {
  if (openFileCount == 0 && openAdditionCount == 0) return 0;
  if (openAdditionCount > 0 && openFileCount == 0) return 2;
  return 1;
}

std::span<const MenuStateRow> MenuStateTable() { return kRows; }

bool MenuCommandOn(std::string_view control, int state) {
  for (const MenuStateRow &row : kRows)
    if (control == row.control) return row.on[Known(state)];
  return true;
}

bool ToolButtonOn(int index, int state) {
  std::span<const int> on;
  switch (Known(state)) {
    case 1:
      on = kState1Buttons;
      break;
    case 2:
      on = kState2Buttons;
      break;
    default:
      on = kState0Buttons;
      break;
  }
  return std::find(on.begin(), on.end(), index) != on.end();
}

}  // namespace recscope
