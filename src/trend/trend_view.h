#pragma once
// The state of one trend window and of its nine group tabs. The window's two
// forms, horizontal and vertical, share this record, so a switch of orientation
// keeps cursors, groups and the saved flag. Flags here follow the system: -1 is
// true and 0 false.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

constexpr int kGroupTabs = 9;  // groups 1..8 and the tab of all channels
constexpr int kAllChannelsGroup = 9;
constexpr int kGroupPlaces = 10;  // places of a group 1..8
constexpr std::int16_t kZoneHeightStart = 3250;
constexpr std::int16_t kZoneTopStart = 516;
constexpr int kDecimationBase = 10;

// One tab. Place p of the member arrays is index p - 1.
struct TrendGroup {
  std::vector<std::int16_t> ChannelNo;     // member: channel number, 128 + n for DI n, 0 empty
  std::vector<std::int16_t> ChannelIndex;  // 1-based in the file's table, DI behind analog
  std::int16_t MemberCount = 0;
  std::vector<std::int16_t> ZoneHeight;
  std::vector<std::int16_t> ZoneTop;
  std::vector<std::string> ChannelColor;
  std::vector<std::int16_t> ChannelOn;
  std::int16_t AllOn = -1;
  std::int16_t ShownScales = 1;
  bool HasTab = false;
  std::string TabCaption;
};

struct TrendView {
  std::string GridColor = "5263440";   // 0x505050
  std::string BackColor = "16777215";  // white
  int GridGrey = 10;                   // UpDown1
  int BackGrey = 0;                    // UpDown2
  double ZoomFactor = 1.0;
  std::string ZoomCaption = "x1";
  std::int16_t ZoomKind = 0;
  std::array<std::string, 3> SlotChannelText;
  std::array<std::string, 3> SlotMemberText;
  std::array<int, 3> SlotValue{1, 2, 3};  // UpDown3(i).Value: member shown in slot i
  int SelectedSlot = 0;                   // the slot whose member Picture4 stands for
  // Reduced data: column j (0-based) holds 2N values, minimum then maximum per
  // channel in table order.
  std::vector<std::int16_t> DispData;
  int DispRows = 0;  // 2N
  std::int16_t CurrentGroup = 1;
  std::int16_t WaveMode = 1;  // 1 envelope "M", 2 mid line "A"
  std::int32_t ColumnPitch = 15;
  std::int16_t ScrollValue = 0;
  std::int32_t PlotShift = 0;
  std::int16_t Busy = 0;
  std::int16_t ShiftBaseline = 0;
  bool Cursor1Set = false;
  bool Cursor2Set = false;
  std::array<TrendGroup, kGroupTabs> Groups;
  bool DisplaySaved = true;
  std::int32_t RealTime = 0;
  std::int32_t TimeScaleIndex = 0;
  std::int32_t DisplayStart = 0;
  std::int32_t DisplayEnd = 0;
  std::int32_t Cursor1Time = 0;
  std::int32_t Cursor2Time = 0;
  std::int32_t PlotSpan = 0;
  std::int32_t ColumnCount = 0;
  std::int32_t DataColumnCount = 0;
  std::int32_t LevelInUse = 0;
  // What the print takes from this view: the page title of dlgTitle, and the range
  // that dlgPrnSet's OK stored (the display's start and end, and the step of a
  // continuous print in seconds, 0 for the display only).
  std::string PrintTitle;
  std::int32_t PrintStart = 0;
  std::int32_t PrintEnd = 0;
  std::int64_t PrintStep = 0;

  // Raw value of row (0-based: 2c minimum, 2c + 1 maximum of channel c) in a column.
  std::int16_t Disp(int row, int column) const {
    return DispData[static_cast<std::size_t>(column) * DispRows + row];
  }
  TrendGroup &Group() { return Groups[CurrentGroup - 1]; }
  const TrendGroup &Group() const { return Groups[CurrentGroup - 1]; }
};

// 1-based index of a member number in the file's table (DI behind the analog
// channels), 0 when the number is not in the file.
std::int16_t ChannelNoToIndex(const RecordFileInfo &info, int channelNo);

// Builds the nine groups from the file's group table, removes the tabs of empty
// groups in a file view (viewMode 1) and moves CurrentGroup past them.
void BuildGroupLists(TrendView &view, const RecordFileInfo &info, int viewMode = 1);

// The window's settings on load: whole file in view, pitch, colours, zoom, wave
// mode and unset cursors.
void InitTrendView(TrendView &view, const RecordFileInfo &info, int scaleCount);

// Place (1-based) of the slot-th member that is not 0; in group 9 the slot number
// is the place; 0 when there is none.
int SlotToMember(const TrendGroup &group, int groupNo, int slot);

// Tab index (0-based, counting only tabs that exist) of a group, and back.
int TabIndexOfGroup(const TrendView &view, int groupNo);
int GroupOfTabIndex(const TrendView &view, int tabIndex);

// ShownScales of every group: the lesser of MemberCount and ScaleCount.
void SetShownScales(TrendView &view, int scaleCount);

// First assignment of the UpDown3 slots for the scale count: slot 0 keeps its
// member, slots 1 and 2 take members 2 and 3, or the next free one.
void AssignScaleSlots(TrendView &view, int scaleCount);

// The slots after a tab change: slot 0 keeps its member when the new group has
// it and takes member 1 otherwise; slots 1 and 2 are assigned as on load, for
// the scale panels the group shows. A slot the group cannot show takes member 1.
void ReselectScaleSlots(TrendView &view, int scaleCount);

// What a rebuilt window of the other orientation takes over from the old one:
// cursors, the saved flag and the group state (current group, each channel's on
// switch, zones and AllOn). Zones are taken as they stand; the caller scales
// them from the old plot to the new one.
void KeepAcrossOrientationSwitch(TrendView &fresh, const TrendView &old);

// SlotChannelText and SlotMemberText of the three slots: "0#" of the channel
// number (number - 128 for a DI) and of the member place.
void FillSlotTexts(TrendView &view);

// The zone of a slot's member in the current group: height and top.
struct Zone {
  std::int32_t top = kZoneTopStart;
  std::int32_t height = kZoneHeightStart;
};
Zone SlotZone(const TrendView &view, int slot);

// Channel index (1-based, DI behind analog) of a slot's member, 0 when none.
int SlotChannelIndex(const TrendView &view, int slot);

// chkAll and chkSingle as the tab change shows them.
int ChkAllValue(const TrendView &view);
int ChkSingleValue(const TrendView &view);

// The zones of every member of every group, scaled from plot height g to h, with
// the old and new top of the plot; each zone keeps at least 500 twips.
void ResizeZones(TrendView &view, std::int32_t oldPlotTop, std::int32_t g, std::int32_t newPlotTop,
                 std::int32_t h);
Zone ResizeZone(Zone zone, std::int32_t oldPlotTop, std::int32_t g, std::int32_t newPlotTop,
                std::int32_t h);

}  // namespace recscope
