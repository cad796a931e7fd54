#pragma once
// What the real-time windows show, without a window: the trend's view of the
// ring (through the trend's own view record, so the trend's drawing draws it),
// the zoom table, the lamp, the tabs, and the texts of the instant list and of
// the digital grid.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "realtime/realtime_state.h"
#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

// The zoom table: the chart's sample count (one a plot column) is divided by the
// entry of the zoom index 1 to 6.
inline constexpr std::array<double, 6> kRealZoomTable{0.1, 0.5, 1, 2, 10, 60};
inline constexpr int kRealZoomFirst = 3;  // x1

// Samples that fit a chart of `columns` plot columns at a zoom index (1..6,
// clamped): Int(columns / zoom), at least 2.
std::int32_t RealChartSamples(std::int32_t columns, int zoomIndex);

// Whether a drawing redraws the whole chart: when nothing has been drawn yet
// (last drawn slot 0) or the zoom index is below 4.
bool RealFullRedraw(std::int32_t lastDrawnSlot, int zoomIndex);

// Whether the display tick draws: the last written slot differs from the last
// drawn one.
bool RealDisplayDue(const RealSampleRing &ring);

// The lamp's next colour while it blinks: grey and red in turn.
std::uint32_t RealLampBlink(std::uint32_t colour);

// The trend group a tab name stands for: "G9" the tab of all channels (9),
// "G<n>" group n; 0 for anything else.
int RealTabGroup(const std::string &tabName);

// The view record for the monitor's setup: groups from the record description,
// the tabs of the state's tab names, one scale panel, envelope waves.
void RealTrendInitView(TrendView &view, const RecordFileInfo &info, const RealtimeState &state);

// Fills the view from the ring for a plot `timeExtent` twips long: the samples
// of the zoom end with the newest one (RealNewestTime); each plot column holds
// the least and greatest raw value of the samples under it (cut to 16 bits). A
// slot that is blank, or holds another time than the one its place stands for,
// reads 0. Sets DisplayStart, DisplayEnd, PlotSpan, ColumnCount, DataColumnCount.
void RealTrendFill(TrendView &view, const RealtimeState &state, std::int32_t timeExtent,
                   int zoomIndex);

// A channel's present value as a text: nothing for InputType 0, the special
// values' texts, else by the channel's decimals.
std::string RealValueText(const RealtimeState &state, int channel0, std::int32_t raw);

// "CH" and the channel number (1-based) in two digits.
std::string RealChannelLabel(int channelNo);

// One row of frmRealInstant. With the tab of all channels only Ch and Value are
// used; with a group tab all of them (Alarms lit by the alarm flags).
struct RealInstantRow {
  std::string Ch;
  std::string Tag1;
  std::string Tag2;
  std::string Value;
  std::string Unit;
  std::array<bool, 4> Alarms{};
};

// The rows of a tab (RealTabGroup numbering): all channels for 9, the group's
// channels otherwise, with the values of the newest sample (blank texts when
// there is none).
std::vector<RealInstantRow> RealInstantRows(const RealtimeState &state, int group);

// The time of the newest sample as "yyyy/mm/dd hh:mm:ss"; empty when there is none.
std::string RealInstantTimeText(const RealtimeState &state);

// frmDigital's grid: 30 channels a page; the pages of the model (one for the
// 30-channel family, three for the 72-channel one), their tab captions, and the
// cells of a page: "CH" label, value, then "ON" or "OFF" for alarms 1 to 4.
inline constexpr int kRealDigitalRowsPerPage = 30;
int RealDigitalPages(const RealtimeState &state);
std::string RealDigitalPageCaption(const RealtimeState &state, int page0);
std::vector<std::array<std::string, 6>> RealDigitalRows(const RealtimeState &state, int page0);

}  // namespace recscope
