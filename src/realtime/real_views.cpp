#include "realtime/real_views.h"

#include <algorithm>
#include <cmath>

#include "realtime/real_logging.h"
#include "record/record_fields.h"
#include "record/value_text.h"
#include "shell/civil_time.h"
#include "trend/column_fold.h"

namespace recscope {

namespace {

std::int32_t SlotOffset(std::int32_t slot, std::int64_t by) {
  std::int64_t s = (static_cast<std::int64_t>(slot) - 1 + by) % kRealSlotCount;
  if (s < 0) s += kRealSlotCount;
  return static_cast<std::int32_t>(s + 1);
}

}  // namespace

std::int32_t RealChartSamples(std::int32_t columns, int zoomIndex) {
  const int z = std::clamp(zoomIndex, 1, static_cast<int>(kRealZoomTable.size()));
  const auto samples = static_cast<std::int64_t>(
      std::floor(static_cast<double>(columns) / kRealZoomTable[static_cast<std::size_t>(z - 1)]));
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(samples, 2, kRealSlotCount));
}

bool RealFullRedraw(std::int32_t lastDrawnSlot, int zoomIndex) {
  return lastDrawnSlot == 0 || zoomIndex < 4;
}

bool RealDisplayDue(const RealSampleRing &ring) { return ring.LastWritten != ring.LastDrawn; }

std::uint32_t RealLampBlink(std::uint32_t colour) {
  return colour == kRealLampGrey ? kRealLampRed : kRealLampGrey;
}

int RealTabGroup(const std::string &tabName) {
  if (tabName.size() != 2 || tabName[0] != 'G' || tabName[1] < '1' || tabName[1] > '9') return 0;
  return tabName[1] - '0';
}

void RealTrendInitView(TrendView &view, const RecordFileInfo &info, const RealtimeState &state) {
  InitTrendView(view, info, 1);
  for (TrendGroup &g : view.Groups) g.HasTab = false;
  for (const std::string &name : state.TabNames) {
    const int group = RealTabGroup(name);
    if (group == 0) continue;
    view.Groups[static_cast<std::size_t>(group - 1)].HasTab = true;
    view.Groups[static_cast<std::size_t>(group - 1)].TabCaption = name;
  }
  view.CurrentGroup = kAllChannelsGroup;
  if (!state.TabNames.empty() && RealTabGroup(state.TabNames.front()) != 0)
    view.CurrentGroup = static_cast<std::int16_t>(RealTabGroup(state.TabNames.front()));
  FillSlotTexts(view);
}

void RealTrendFill(TrendView &view, const RealtimeState &state, std::int32_t timeExtent,
                   int zoomIndex) {
  const RealSampleRing &ring = state.Ring;
  const std::int64_t cycle = std::max<std::int16_t>(state.CycleSeconds, 1);
  const std::int64_t pitch = std::max<std::int32_t>(view.ColumnPitch, 1);
  const std::int64_t P = std::max<std::int64_t>(timeExtent / pitch, 1);
  const std::int64_t S = RealChartSamples(static_cast<std::int32_t>(P), zoomIndex);
  view.PlotSpan = static_cast<std::int32_t>((P - 1) * pitch);
  const std::int64_t newestTime = RealNewestTime(state);
  const std::int32_t newestSlot =
      ring.allocated()
          ? RealSlotOfTime(static_cast<std::int32_t>(newestTime), static_cast<std::int32_t>(cycle))
          : 0;
  view.DisplayEnd = static_cast<std::int32_t>(newestTime);
  view.DisplayStart = static_cast<std::int32_t>(newestTime - (S - 1) * cycle);
  view.ColumnCount = static_cast<std::int32_t>(std::min(S, P));
  view.DataColumnCount = view.ColumnCount;
  view.LevelInUse = 0;

  const int N = ring.allocated() ? ring.channels() : 0;
  FoldSamplesIntoColumns(view, S, P, N, [&](std::int64_t i, std::int16_t *values) {
    // sample i of S, the oldest first, stands for this time and this slot
    const std::int64_t time = view.DisplayStart + i * cycle;
    const std::int32_t slot = SlotOffset(newestSlot, i - (S - 1));
    const bool held = N > 0 && ring.Valid(slot) == 1 && ring.Time(slot) == time;
    for (int c = 0; c < N; ++c)
      values[c] = held ? static_cast<std::int16_t>(ring.Value(slot, c)) : std::int16_t{0};
  });
}

std::string RealValueText(const RealtimeState &state, int channel0, std::int32_t raw) {
  if (channel0 < 0 || channel0 >= static_cast<int>(state.Display.size())) return {};
  const RealDisplayChannel &d = state.Display[static_cast<std::size_t>(channel0)];
  if (d.InputType == 0) return {};
  return ValueText(static_cast<std::int16_t>(raw), d.Decimals, d.InputType);
}

std::string RealChannelLabel(int channelNo) { return "CH" + ZeroNumber(channelNo, 2); }

std::vector<RealInstantRow> RealInstantRows(const RealtimeState &state, int group) {
  std::vector<int> channels;  // 0-based
  const int count = static_cast<int>(state.Display.size());
  if (group == kAllChannelsGroup) {
    for (int c = 0; c < count; ++c) channels.push_back(c);
  } else if (group >= 1 && group <= static_cast<int>(state.Groups.size())) {
    for (std::uint8_t n : state.Groups[static_cast<std::size_t>(group - 1)].Channels)
      if (n >= 1 && n <= count) channels.push_back(n - 1);
  }
  const std::int32_t slot = RealNewestSlot(state);
  const bool held = slot > 0 && state.Ring.Valid(slot) == 1;
  std::vector<RealInstantRow> rows;
  for (int c : channels) {
    const RealDisplayChannel &d = state.Display[static_cast<std::size_t>(c)];
    RealInstantRow row;
    row.Ch = RealChannelLabel(c + 1);
    row.Tag1 = d.Tag1;
    row.Tag2 = d.Tag2;
    if (held) row.Value = RealValueText(state, c, state.Ring.Value(slot, c));
    const bool commonPoint = c < static_cast<int>(state.Channels.size()) &&
                             state.Channels[static_cast<std::size_t>(c)].CommonPoint != 0;
    row.Unit = commonPoint ? std::string() : state.UnitTextOf(d.UnitCode);
    if (c < static_cast<int>(state.AlarmFlags.size()))
      for (int a = 0; a < 4; ++a)
        row.Alarms[static_cast<std::size_t>(a)] =
            state.AlarmFlags[static_cast<std::size_t>(c)][static_cast<std::size_t>(a)] != 0;
    rows.push_back(row);
  }
  return rows;
}

std::string RealInstantTimeText(const RealtimeState &state) {
  const std::int32_t slot = RealNewestSlot(state);
  if (slot <= 0 || state.Ring.Valid(slot) != 1) return {};
  return RecordTimeText(state.Ring.Time(slot));
}

int RealDigitalPages(const RealtimeState &state) {
  const bool ktx = state.ModelText.rfind("KTX", 0) == 0;
  const int channels = ktx ? kRealKtxChannels : kRealZnqChannels;
  return (channels + kRealDigitalRowsPerPage - 1) / kRealDigitalRowsPerPage;
}

std::string RealDigitalPageCaption(const RealtimeState &state, int page0) {
  const bool ktx = state.ModelText.rfind("KTX", 0) == 0;
  const int channels = ktx ? kRealKtxChannels : kRealZnqChannels;
  const int first = page0 * kRealDigitalRowsPerPage + 1;
  const int last = std::min(channels, first + kRealDigitalRowsPerPage - 1);
  return RealChannelLabel(first) + "-" + RealChannelLabel(last);
}

std::vector<std::array<std::string, 6>> RealDigitalRows(const RealtimeState &state, int page0) {
  std::vector<std::array<std::string, 6>> rows;
  const int count = static_cast<int>(state.Display.size());
  const std::int32_t slot = RealNewestSlot(state);
  const bool held = slot > 0 && state.Ring.Valid(slot) == 1;
  const int first = page0 * kRealDigitalRowsPerPage;
  for (int c = first; c < count && c < first + kRealDigitalRowsPerPage; ++c) {
    std::array<std::string, 6> row;
    row[0] = RealChannelLabel(c + 1);
    if (held) row[1] = RealValueText(state, c, state.Ring.Value(slot, c));
    for (int a = 0; a < 4; ++a) {
      const bool on =
          c < static_cast<int>(state.AlarmFlags.size()) &&
          state.AlarmFlags[static_cast<std::size_t>(c)][static_cast<std::size_t>(a)] != 0;
      row[static_cast<std::size_t>(2 + a)] = on ? "ON" : "OFF";
    }
    rows.push_back(row);
  }
  return rows;
}

}  // namespace recscope
