#pragma once
// A trend window that draws from memory instead of its slot's level files: the
// communication monitor's trend of slot 17 is fed from the monitor's ring. The
// feed belongs to the slot, not to a window, so a window made anew (the
// orientation switch, Trend display after a record's open) draws through it too.
#include <cstdint>
#include <functional>

#include "trend/trend_view.h"

namespace recscope {

struct TrendFeed {
  // Fills DispData and the range in view for a plot `timeExtent` twips long.
  std::function<void(TrendView &view, std::int32_t timeExtent)> Fill;
  // Reads the slot's record as far as it is written, for a list window of the
  // slot: 0, or the catalogue id of the refusal.
  std::function<int()> ReadRecord;
};

void SetTrendFeed(int slot, TrendFeed feed);
void ClearTrendFeed(int slot);
// The feed of a slot, or nullptr when its windows draw from the level files.
const TrendFeed *FindTrendFeed(int slot);

}  // namespace recscope
