#include "trend/display_settings.h"

#include <cstdio>

#include "record/flag_file.h"
#include "record/open_record.h"
#include "shell/catalogue.h"
#include "trend/trend_view.h"

namespace recscope {

namespace {

constexpr int kTitlePlace = 18606;
constexpr int kTitleChannel = 18603;
constexpr int kTitleLow = 18604;
constexpr int kTitleHigh = 18605;
constexpr int kEmptyPlace = 18607;
constexpr int kCaption = 18608;

const char *const kNumerals[kDetailGroups] = {"一", "二", "三", "四", "五", "六", "七", "八"};

std::string FixedText(double value, int decimals) {
  if (decimals < 0) decimals = 0;
  if (value == 0) value = 0;  // no "-0"
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

int GroupLimit(const RecordFileInfo &info) {
  return info.GroupCount < kDetailGroups ? info.GroupCount : kDetailGroups;
}

bool IsDi(const RecordFileInfo &info, int index) {
  return index > static_cast<int>(info.Channels.size());
}

}  // namespace

std::string DisplaySettingsPath(const RecordSlot &slot) {
  if (!slot.FlagPath.empty()) return slot.FlagPath;
  std::string path = slot.Record.FilePath;
  const int start = NameStartIndex(path);
  if (start < 0 || static_cast<std::size_t>(start) >= path.size()) return {};
  path[static_cast<std::size_t>(start)] = 'F';
  return path;
}

bool SaveDisplaySettings(RecordSlot &slot) {
  const std::string path = DisplaySettingsPath(slot);
  if (path.empty()) return false;
  if (!WriteFlagFile(path, slot.Record, slot.Alarms, slot.Flags)) return false;
  slot.FlagPath = path;
  return true;
}

std::string DetailCaption(int slot, const RecordFileInfo &info) {
  char number[16];
  std::snprintf(number, sizeof number, "%02d", slot);
  return GetMessageText(kCaption, "@Number@", number) + "[" + info.FilePath + "]";
}

int DetailMemberIndex(const RecordFileInfo &info, int group, int place) {
  if (group < 1 || group > kDetailGroups || place < 1 || place > 10) return 0;
  const int member =
      info.Groups[static_cast<std::size_t>(group - 1)].Members[static_cast<std::size_t>(place - 1)];
  if (member == 0) return 0;
  return ChannelNoToIndex(info, member);
}

std::vector<int> DetailTabGroups(const RecordFileInfo &info) {
  std::vector<int> groups;
  for (int g = 1; g <= GroupLimit(info); ++g) {
    for (int place = 1; place <= 10; ++place) {
      if (DetailMemberIndex(info, g, place) > 0) {
        groups.push_back(g);
        break;
      }
    }
  }
  return groups;
}

std::string DetailTabCaption(int group) {
  if (group < 1 || group > kDetailGroups) return {};
  return kNumerals[group - 1];
}

DetailCells DetailGroupCells(const RecordFileInfo &info, int group) {
  DetailCells cells;  // every text empty
  cells[0] = {GetMessageText(kTitlePlace), GetMessageText(kTitleChannel), GetMessageText(kTitleLow),
              GetMessageText(kTitleHigh)};
  for (int place = 1; place <= 10; ++place) {
    auto &row = cells[static_cast<std::size_t>(place)];
    row[0] = std::to_string(place);
    const int index = DetailMemberIndex(info, group, place);
    if (index == 0) {
      row[1] = GetMessageText(kEmptyPlace);
      continue;
    }
    if (IsDi(info, index)) {
      const DiInfo &di = info.Dis[static_cast<std::size_t>(index) - info.Channels.size() - 1];
      row[1] = "D" + std::to_string(di.DiNo - 128);
      row[kDetailMinColumn] = std::to_string(di.ScaleLow);
      row[kDetailMaxColumn] = std::to_string(di.ScaleHigh);
      continue;
    }
    const ChannelInfo &ch = info.Channels[static_cast<std::size_t>(index - 1)];
    row[1] = std::to_string(ch.ChannelNo);
    if (ch.ScaleKind == 1) {
      row[kDetailMinColumn] = std::to_string(ch.ScaleLow);
      row[kDetailMaxColumn] = std::to_string(ch.ScaleHigh);
    } else {
      row[kDetailMinColumn] = FixedText(ch.DisplayLow, ch.Decimals);
      row[kDetailMaxColumn] = FixedText(ch.DisplayHigh, ch.Decimals);
    }
  }
  return cells;
}

DetailEdits DetailStartEdits(const RecordFileInfo &info) {
  DetailEdits edits;
  for (int g = 1; g <= kDetailGroups; ++g) {
    edits.cells[static_cast<std::size_t>(g - 1)] = DetailGroupCells(info, g);
    edits.names[static_cast<std::size_t>(g - 1)] =
        info.Groups[static_cast<std::size_t>(g - 1)].GroupName;
  }
  return edits;
}

void PasteDetailCells(DetailCells &target, const DetailCells &copied) {
  const std::string empty = GetMessageText(kEmptyPlace);
  for (std::size_t place = 1; place < kDetailRows; ++place) {
    if (target[place][1] == empty || copied[place][1] == empty) continue;
    target[place][kDetailMinColumn] = copied[place][kDetailMinColumn];
    target[place][kDetailMaxColumn] = copied[place][kDetailMaxColumn];
  }
}

DetailRefusal CheckDetailEdits(const RecordFileInfo &info, const DetailEdits &edits) {
  for (int g : DetailTabGroups(info)) {
    const DetailCells &cells = edits.cells[static_cast<std::size_t>(g - 1)];
    for (int place = 1; place <= 10; ++place) {
      const int index = DetailMemberIndex(info, g, place);
      if (index == 0) continue;
      const std::string &maxText = cells[static_cast<std::size_t>(place)][kDetailMaxColumn];
      const std::string &minText = cells[static_cast<std::size_t>(place)][kDetailMinColumn];
      ScaleEditCheck check = CheckScaleEdit(info, index, maxText, minText);
      if (check.messageId == 0) continue;
      DetailRefusal refusal;
      refusal.group = g;
      refusal.place = place;
      // A check of one value alone: a refusal of that value itself points at the
      // maximum only when the maximum is the wrong one; comparisons point there.
      const int id = check.messageId;
      if (id == 18300 || id == 18301 || id == 20115)
        refusal.atMaximum = CheckScaleEdit(info, index, maxText, maxText).messageId == id;
      refusal.check = std::move(check);
      return refusal;
    }
  }
  return {};
}

void ApplyDetailEdits(RecordFileInfo &info, const DetailEdits &edits) {
  // A channel may stand in several groups: only the places whose texts were
  // changed are written, so an untouched place never undoes an edit elsewhere.
  const DetailEdits start = DetailStartEdits(info);
  for (int g : DetailTabGroups(info)) {
    const DetailCells &cells = edits.cells[static_cast<std::size_t>(g - 1)];
    const DetailCells &before = start.cells[static_cast<std::size_t>(g - 1)];
    for (int place = 1; place <= 10; ++place) {
      const int index = DetailMemberIndex(info, g, place);
      const auto p = static_cast<std::size_t>(place);
      if (index == 0 || (cells[p][kDetailMaxColumn] == before[p][kDetailMaxColumn] &&
                         cells[p][kDetailMinColumn] == before[p][kDetailMinColumn]))
        continue;
      ApplyScaleEdit(info, index, cells[static_cast<std::size_t>(place)][kDetailMaxColumn],
                     cells[static_cast<std::size_t>(place)][kDetailMinColumn]);
    }
    info.Groups[static_cast<std::size_t>(g - 1)].GroupName =
        edits.names[static_cast<std::size_t>(g - 1)];
  }
}

}  // namespace recscope
