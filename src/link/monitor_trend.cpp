#include "link/monitor_trend.h"

#include <algorithm>
#include <cmath>

#include "trend/column_fold.h"

namespace recscope {

namespace {

constexpr int kTimeRow = 1;
constexpr int kFirstChannelRow = 2;
constexpr int kFirstInputRow = 2 + kMonitorChannels;

}  // namespace

std::vector<int> MonitorRingOrder(const MonitorRing &ring) {
  std::vector<int> order;
  const int last = kMonitorRingSamples - 1;
  order.reserve(static_cast<std::size_t>(last));
  auto take = [&](int from, int to) {
    for (int i = from; i <= to; ++i)
      if (ring.value(kTimeRow, i) != 0) order.push_back(i);
  };
  if (ring.full()) take(ring.writeIndex() + 1, last);
  take(1, ring.full() ? ring.writeIndex() : std::min(ring.writeIndex(), last));
  return order;
}

namespace {

std::int16_t Units(double value, double factor) {
  return static_cast<std::int16_t>(
      std::clamp<long long>(std::llround(value * factor), -32768, 32767));
}

}  // namespace

std::int16_t MonitorRingUnits(const MonitorRing &ring, int row, int index, int decimals) {
  return Units(ring.value(row, index), std::pow(10.0, decimals));
}

void MonitorTrendFill(TrendView &view, const MonitorRing &ring, const RecordFileInfo &info,
                      std::int32_t timeExtent) {
  const std::vector<int> order = MonitorRingOrder(ring);
  const int analogs = std::min<int>(static_cast<int>(info.Channels.size()), kMonitorChannels);
  const int inputs = std::min<int>(static_cast<int>(info.Dis.size()), kMonitorDis);
  const int N = static_cast<int>(info.Channels.size() + info.Dis.size());
  const std::int64_t pitch = std::max<std::int32_t>(view.ColumnPitch, 1);
  const std::int64_t P = std::max<std::int64_t>(timeExtent / pitch, 1);
  const auto S = static_cast<std::int64_t>(order.size());

  view.PlotSpan = static_cast<std::int32_t>((P - 1) * pitch);
  view.LevelInUse = 0;
  view.DisplayStart =
      order.empty() ? 0 : static_cast<std::int32_t>(ring.value(kTimeRow, order.front()));
  view.DisplayEnd =
      order.empty() ? 0 : static_cast<std::int32_t>(ring.value(kTimeRow, order.back()));
  view.ColumnCount = static_cast<std::int32_t>(std::min(S, P));
  view.DataColumnCount = view.ColumnCount;
  std::vector<double> factor(static_cast<std::size_t>(analogs));
  for (int c = 0; c < analogs; ++c)
    factor[static_cast<std::size_t>(c)] =
        std::pow(10.0, info.Channels[static_cast<std::size_t>(c)].Decimals);
  // A sample as a record's row: a unit value per channel, inputs behind.
  FoldSamplesIntoColumns(view, S, P, N, [&](std::int64_t i, std::int16_t *values) {
    const int index = order[static_cast<std::size_t>(i)];
    for (int c = 0; c < analogs; ++c)
      values[c] =
          Units(ring.value(kFirstChannelRow + c, index), factor[static_cast<std::size_t>(c)]);
    for (int d = 0; d < inputs; ++d)
      values[analogs + d] = Units(ring.value(kFirstInputRow + d, index), 1);
  });
}

}  // namespace recscope
