#pragma once
// The operator's display settings of one open record: the save into its flag
// file, and the texts and rules of the detail dialog (dlgSyousai), where the
// recording ranges of all channels and the group names are edited group by group.
#include <array>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "shell/shared_state.h"
#include "trend/scale_edit.h"

namespace recscope {

// --- Save -------------------------------------------------------------------

// Where the save writes: the slot's flag path when it has one, otherwise the
// measurement file's path with the first letter of its name changed to "F".
std::string DisplaySettingsPath(const RecordSlot &slot);

// Writes the flag file of the slot (header, alarm rows, message rows, flags)
// to a temporary name in the same folder and renames it over the old file. On
// success the slot's flag path is the file written. On failure the old file
// stays as it was, no temporary file is left and the flag path is unchanged.
bool SaveDisplaySettings(RecordSlot &slot);

// --- Detail dialog ----------------------------------------------------------

constexpr int kDetailGroups = 8;
constexpr int kDetailRows = 11;  // row 0 titles, rows 1..10 the places
constexpr int kDetailColumns = 4;
constexpr int kDetailMinColumn = 2;
constexpr int kDetailMaxColumn = 3;

using DetailCells = std::array<std::array<std::string, kDetailColumns>, kDetailRows>;

// What the dialog holds for every group: the grid texts and the group name.
struct DetailEdits {
  std::array<DetailCells, kDetailGroups> cells;
  std::array<std::string, kDetailGroups> names;
};

// "詳細設定" & the slot in two digits, then "[", the record's path, "]".
std::string DetailCaption(int slot, const RecordFileInfo &info);

// The groups that get a tab: 1 to GroupCount (at most 8), with at least one
// member in the file.
std::vector<int> DetailTabGroups(const RecordFileInfo &info);

// The tab caption of a group: its kanji numeral "一" to "八".
std::string DetailTabCaption(int group);

// 1-based index (DI behind analog) of the member at `place` (1..10) of `group`,
// 0 when the place is empty or names no channel of the file.
int DetailMemberIndex(const RecordFileInfo &info, int group, int place);

// The grid of a group as the record stands: titles in row 0; each place its
// number, the channel number (or "D" & n for a DI) and its low and high end in
// the channel's decimals (DI ScaleLow, ScaleHigh; the exponents of a log
// channel). An empty place shows "無し" and no values.
DetailCells DetailGroupCells(const RecordFileInfo &info, int group);

// The grids and names of all eight groups as the record stands.
DetailEdits DetailStartEdits(const RecordFileInfo &info);

// Paste of a copied grid onto a group: place by place, the low and high texts
// of a copied place that has a member go to the same place of the target when
// it has a member too. Places empty on either side keep what they show.
void PasteDetailCells(DetailCells &target, const DetailCells &copied);

// The first refusal of the scale-edit checks, taken group by group (1..8, only
// groups with a tab) and place by place: where it is, and whether it points at
// the maximum or the minimum. `check.messageId` 0 when all are accepted.
struct DetailRefusal {
  int group = 0;
  int place = 0;
  bool atMaximum = true;
  ScaleEditCheck check;
};
DetailRefusal CheckDetailEdits(const RecordFileInfo &info, const DetailEdits &edits);

// Writes accepted edits into the record: the range of every place whose texts
// differ from what the record shows, as the scale edit does (a channel standing
// in several groups keeps the edit of the group where it was changed), and the
// group names of the groups with a tab.
void ApplyDetailEdits(RecordFileInfo &info, const DetailEdits &edits);

}  // namespace recscope
