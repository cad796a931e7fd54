#pragma once
// The trend of slot 17 drawn from the monitor's ring instead of the record
// being written: each redraw costs the ring's 1800 samples at most, however
// long the monitor has run.
#include <cstdint>
#include <vector>

#include "link/monitor_sample.h"
#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

// The ring's places that hold a sample, oldest first: 1 to the write index, and
// once the ring is full the places after the write index before them. A place
// whose time is 0 holds no sample (a failed first poll steps back onto 1800).
std::vector<int> MonitorRingOrder(const MonitorRing &ring);

// The value a record gives a channel for a ring entry: the scaled value back in
// units of the channel's decimals, a digital input as 0 or 1.
std::int16_t MonitorRingUnits(const MonitorRing &ring, int row, int index, int decimals);

// The whole ring in view, as a record's whole-file view: DisplayStart and
// DisplayEnd are the times of the oldest and newest sample, each sample is a
// column while they fit in the plot `timeExtent` twips long, otherwise the
// samples under a column give its minimum and maximum. Channels are those of
// `info` (analog, then digital inputs), as in the record's DispData.
void MonitorTrendFill(TrendView &view, const MonitorRing &ring, const RecordFileInfo &info,
                      std::int32_t timeExtent);

}  // namespace recscope
