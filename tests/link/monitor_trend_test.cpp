// The trend of slot 17 drawn from the monitor's ring: the places in order, the
// values back in the record's units, and the columns of the plot.
#include "link/monitor_trend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace recscope;

namespace {

constexpr std::int32_t kT0 = 1700000000;

RecordFileInfo MonitorInfo(int decimals) {
  RecordFileInfo info;
  for (int c = 0; c < kMonitorChannels; ++c) {
    ChannelInfo ch;
    ch.ChannelNo = static_cast<std::int16_t>(c + 1);
    ch.Decimals = static_cast<std::int16_t>(decimals);
    info.Channels.push_back(ch);
  }
  for (int d = 0; d < kMonitorDis; ++d) {
    DiInfo di;
    di.DiNo = static_cast<std::int16_t>(129 + d);
    info.Dis.push_back(di);
  }
  return info;
}

MonitorSample Sample(std::int32_t time, std::int16_t first, std::uint8_t input1) {
  MonitorSample s;
  s.Time = time;
  for (int c = 0; c < kMonitorChannels; ++c)
    s.Raw[static_cast<std::size_t>(c)] = static_cast<std::int16_t>(first + c);
  s.Inputs[0] = input1;
  s.Inputs[4] = 1;
  return s;
}

void Poll(MonitorRing &ring, const MonitorSample &s, const RecordFileInfo &info) {
  ring.Advance();
  ring.Store(s, info.Channels);
}

// Value c (0-based, inputs behind the channels) of column j: minimum, maximum.
std::pair<int, int> Column(const TrendView &view, int j, int c) {
  const std::size_t at = static_cast<std::size_t>(j) * static_cast<std::size_t>(view.DispRows) +
                         2 * static_cast<std::size_t>(c);
  return {view.DispData[at], view.DispData[at + 1]};
}

TEST(MonitorTrendFill, AnEmptyRingGivesNoColumns) {
  const RecordFileInfo info = MonitorInfo(1);
  MonitorRing ring;
  TrendView view;
  MonitorTrendFill(view, ring, info, 15000);
  EXPECT_TRUE(MonitorRingOrder(ring).empty());
  EXPECT_EQ(view.ColumnCount, 0);
  EXPECT_EQ(view.DataColumnCount, 0);
  EXPECT_TRUE(view.DispData.empty());
  EXPECT_EQ(view.DispRows, 70);
}

TEST(MonitorTrendFill, FewSamplesAreAColumnEachInTheRecordsUnits) {
  const RecordFileInfo info = MonitorInfo(1);
  MonitorRing ring;
  Poll(ring, Sample(kT0, -5, 1), info);
  Poll(ring, Sample(kT0 + 1, 300, 0), info);
  Poll(ring, Sample(kT0 + 2, -32768 + 1, 1), info);
  TrendView view;
  view.ColumnPitch = 15;
  MonitorTrendFill(view, ring, info, 15000);
  EXPECT_EQ(view.DisplayStart, kT0);
  EXPECT_EQ(view.DisplayEnd, kT0 + 2);
  EXPECT_EQ(view.ColumnCount, 3);
  EXPECT_EQ(view.DataColumnCount, 3);
  EXPECT_EQ(view.PlotSpan, 999 * 15);
  EXPECT_EQ(view.LevelInUse, 0);
  ASSERT_EQ(view.DispData.size(), 3u * 70u);
  EXPECT_EQ(Column(view, 0, 0), std::make_pair(-5, -5));
  EXPECT_EQ(Column(view, 0, 29), std::make_pair(24, 24));
  EXPECT_EQ(Column(view, 1, 0), std::make_pair(300, 300));
  EXPECT_EQ(Column(view, 2, 0), std::make_pair(-32767, -32767));
  EXPECT_EQ(Column(view, 2, 29), std::make_pair(-32738, -32738));
  // Digital inputs 1 and 5 behind the 30 channels.
  EXPECT_EQ(Column(view, 0, 30), std::make_pair(1, 1));
  EXPECT_EQ(Column(view, 1, 30), std::make_pair(0, 0));
  EXPECT_EQ(Column(view, 1, 31), std::make_pair(0, 0));
  EXPECT_EQ(Column(view, 1, 34), std::make_pair(1, 1));
}

TEST(MonitorTrendFill, EveryDecimalsGivesTheRawValueBack) {
  for (int decimals = 0; decimals <= 5; ++decimals) {
    const RecordFileInfo info = MonitorInfo(decimals);
    for (std::int16_t raw : {std::int16_t{-32768}, std::int16_t{-1}, std::int16_t{0},
                             std::int16_t{7}, std::int16_t{12345}, std::int16_t{32767}}) {
      MonitorRing ring;
      MonitorSample s = Sample(kT0, 0, 0);
      s.Raw[3] = raw;
      Poll(ring, s, info);
      EXPECT_EQ(MonitorRingUnits(ring, 2 + 3, 1, decimals), raw) << decimals << " " << raw;
    }
  }
}

TEST(MonitorTrendFill, AFullRingRunsFromThePlaceAfterTheWriteIndexToIt) {
  const RecordFileInfo info = MonitorInfo(0);
  MonitorRing ring;
  for (int k = 1; k <= 1805; ++k)
    Poll(ring, Sample(kT0 + k, static_cast<std::int16_t>(k), 0), info);
  ASSERT_TRUE(ring.full());
  ASSERT_EQ(ring.writeIndex(), 5);
  const std::vector<int> order = MonitorRingOrder(ring);
  ASSERT_EQ(order.size(), 1800u);
  EXPECT_EQ(order.front(), 6);
  EXPECT_EQ(order[1794], 1800);
  EXPECT_EQ(order[1795], 1);
  EXPECT_EQ(order.back(), 5);
  TrendView view;
  MonitorTrendFill(view, ring, info, 1800 * 15 + 15);
  EXPECT_EQ(view.DisplayStart, kT0 + 6);
  EXPECT_EQ(view.DisplayEnd, kT0 + 1805);
  ASSERT_EQ(view.DataColumnCount, 1800);
  EXPECT_EQ(Column(view, 0, 0), std::make_pair(6, 6));
  EXPECT_EQ(Column(view, 1799, 0), std::make_pair(1805, 1805));
}

TEST(MonitorTrendFill, AFailedFirstPollLeavesTheEmptyPlacesOut) {
  const RecordFileInfo info = MonitorInfo(0);
  MonitorRing ring;
  ring.Advance();
  ring.StepBack();  // the failed first poll: 0 becomes 1800
  ASSERT_EQ(ring.writeIndex(), 1800);
  EXPECT_TRUE(MonitorRingOrder(ring).empty());
  Poll(ring, Sample(kT0, 42, 0), info);  // beyond 1800: place 1, and full
  ASSERT_TRUE(ring.full());
  EXPECT_EQ(MonitorRingOrder(ring), std::vector<int>{1});
  TrendView view;
  MonitorTrendFill(view, ring, info, 15000);
  EXPECT_EQ(view.DataColumnCount, 1);
  EXPECT_EQ(view.DisplayStart, kT0);
  EXPECT_EQ(Column(view, 0, 0), std::make_pair(42, 42));
}

TEST(MonitorTrendFill, MoreSamplesThanColumnsGiveEachColumnTheTrueMinimumAndMaximum) {
  const RecordFileInfo info = MonitorInfo(2);
  MonitorRing ring;
  std::mt19937 random(7);
  std::uniform_int_distribution<int> noise(-32768, 32767);
  std::vector<MonitorSample> polled;
  for (int k = 0; k < 2500; ++k) {
    MonitorSample s;
    s.Time = kT0 + k;
    for (auto &v : s.Raw) v = static_cast<std::int16_t>(noise(random));
    s.Inputs[2] = static_cast<std::uint8_t>(noise(random) & 1);
    polled.push_back(s);
    Poll(ring, s, info);
  }
  // The ring holds the newest 1800.
  const std::vector<MonitorSample> held(polled.end() - 1800, polled.end());
  TrendView view;
  view.ColumnPitch = 15;
  const int P = 701;
  MonitorTrendFill(view, ring, info, P * 15);
  ASSERT_EQ(view.ColumnCount, P);
  ASSERT_EQ(view.DataColumnCount, P);
  std::size_t next = 0;
  for (int j = 0; j < P; ++j) {
    // Column j holds the samples up to (j + 1) * 1800 / P.
    const std::size_t upTo = static_cast<std::size_t>((j + 1) * 1800 / P);
    ASSERT_LT(next, upTo);
    for (int c : {0, 17, 29}) {
      int lo = 32767, hi = -32768;
      for (std::size_t i = next; i < upTo; ++i) {
        lo = std::min<int>(lo, held[i].Raw[static_cast<std::size_t>(c)]);
        hi = std::max<int>(hi, held[i].Raw[static_cast<std::size_t>(c)]);
      }
      ASSERT_EQ(Column(view, j, c), std::make_pair(lo, hi)) << "column " << j << " channel " << c;
    }
    int lo = 1, hi = 0;
    for (std::size_t i = next; i < upTo; ++i) {
      lo = std::min<int>(lo, held[i].Inputs[2]);
      hi = std::max<int>(hi, held[i].Inputs[2]);
    }
    ASSERT_EQ(Column(view, j, 32), std::make_pair(lo, hi)) << "column " << j;
    next = upTo;
  }
  EXPECT_EQ(next, 1800u);
  EXPECT_EQ(view.DisplayStart, kT0 + 700);
  EXPECT_EQ(view.DisplayEnd, kT0 + 2499);
}

}  // namespace
