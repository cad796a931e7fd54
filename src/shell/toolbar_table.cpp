#include "shell/toolbar_table.h"

#include <array>

namespace recscope {

namespace {

constexpr std::array<ToolButtonSpec, kToolButtonCount> MakeTable() {
  std::array<ToolButtonSpec, kToolButtonCount> table{};
  for (int i = 0; i < kToolButtonCount; ++i) table[i] = {i + 1, nullptr, 0};
  const ToolButtonSpec buttons[] = {
      {1, "Open", 41300},     {2, "Addition", 41301},
      {4, "Print", 41302},    {5, "Details", 41303},
      {6, "Nine", 41304},     {7, "DspAll", 41305},
      {8, "Zoom", 41306},     {9, "Reduction", 41307},
      {10, "Enlarge", 41323}, {12, "Torenndo", 41308},
      {13, "Moment", 41309},  {14, "Table", 41310},
      {15, "cursor", 41328},  {16, "Chohyo", 41311},
      {22, "UpDown", 41312},  {23, "Right and left", 41313},
      {25, "Version", 41314}, {27, "Aleft", 41315},
      {28, "Aright", 41316},  {29, "Bleft", 41317},
      {30, "Bright", 41318},  {39, "Hago", 41324},
      {40, "Hlate", 41325},   {41, "Dago", 41326},
      {42, "Dlate", 41327},
  };
  for (const ToolButtonSpec &b : buttons) table[b.index - 1] = b;
  return table;
}

constexpr std::array<ToolButtonSpec, kToolButtonCount> kTable = MakeTable();

struct KeyCommand {
  std::string_view key;
  const char *command;
};

constexpr KeyCommand kDispatch[] = {
    {"Open", "mnuFileOpen"},
    {"Addition", "mnuFileAdditionView"},
    {"Print", "mnuFilePrint"},
    {"Details", "mnuViewd"},
    {"Nine", "mnuEditMark"},
    {"DspAll", "mnuTimeAll"},
    {"Zoom", "mnuTimeI"},
    {"Reduction", "mnuTimeO"},
    {"Enlarge", "mnuBetweenC"},
    {"Torando", "mnuWindowTrando"},
    {"Moment", "mnuWindowMoment"},
    {"Table", "mnuWindowAramu"},
    {"cursor", "mnuWindowBetweenC"},
    {"Chohyo", "mnuWindowChohyo"},
    {"UpDown", "mnuWindowTileHorizontal"},
    {"Right and left", "mnuWindowTileVertical"},
    {"Version", "mnuHelpAbout"},
    {"Aleft", "mnuEditAcasolLeft"},
    {"Aright", "mnuEditAcasolRight"},
    {"Bleft", "mnuEditBcasolLeft"},
    {"Bright", "mnuEditBcasolRight"},
    {"Hago", "mnuEditCurJumpHago"},
    {"Hlate", "mnuEditCurJumpHlate"},
    {"Dago", "mnuEditCurJumpDago"},
    {"Dlate", "mnuEditCurJumpDlate"},
    {"ComSet", "mnuComunicationSetting"},
    {"ComStart", "mnuComunicationStart"},
    {"ComStop", "mnuComunicationEnd"},
    {"CurChange", "mnuCursorChange"},
};

}  // namespace

std::span<const ToolButtonSpec> ToolButtonTable() { return kTable; }

std::string DispatchToolKey(std::string_view key) {
  for (const KeyCommand &entry : kDispatch)
    if (entry.key == key) return entry.command;
  return {};
}

}  // namespace recscope
