#include "link/monitor_trend.h"

#include <algorithm>
#include <cmath>

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
  const int rowValues = 2 * N;
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
  view.DispRows = rowValues;
  view.DispData.assign(static_cast<std::size_t>(view.DataColumnCount) * rowValues, 0);

  // One sample as a record's row: a unit value per channel, inputs behind.
  std::vector<double> factor(static_cast<std::size_t>(analogs));
  for (int c = 0; c < analogs; ++c)
    factor[static_cast<std::size_t>(c)] =
        std::pow(10.0, info.Channels[static_cast<std::size_t>(c)].Decimals);
  std::vector<std::int16_t> row(static_cast<std::size_t>(N), 0);
  auto readRow = [&](int index) {
    for (int c = 0; c < analogs; ++c)
      row[static_cast<std::size_t>(c)] =
          Units(ring.value(kFirstChannelRow + c, index), factor[static_cast<std::size_t>(c)]);
    for (int d = 0; d < inputs; ++d)
      row[static_cast<std::size_t>(analogs + d)] = Units(ring.value(kFirstInputRow + d, index), 1);
  };
  std::int64_t i = 0;
  std::int64_t prev = 0;
  for (std::int64_t j = 1; j <= view.DataColumnCount; ++j) {
    std::int64_t m = 1;
    if (S > P) {
      const std::int64_t upTo = (j * S) / P;
      m = upTo - prev;
      prev = upTo;
    }
    std::int16_t *column = &view.DispData[static_cast<std::size_t>(j - 1) * rowValues];
    for (std::int64_t k = 1; k <= m && i < S; ++k, ++i) {
      readRow(order[static_cast<std::size_t>(i)]);
      for (int c = 0; c < N; ++c) {
        const std::int16_t v = row[static_cast<std::size_t>(c)];
        column[2 * c] = k == 1 ? v : std::min(column[2 * c], v);
        column[2 * c + 1] = k == 1 ? v : std::max(column[2 * c + 1], v);
      }
    }
  }
}

}  // namespace recscope
