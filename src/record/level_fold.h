#pragma once
// How rows of the level files are taken together.
// A row holds, per channel, a minimum and a maximum (i16) and a sum and a count
// (i32). The no-data mark -32768 is treated differently on the two sides: it is
// passed over by the minimum but poisons the maximum for good, which is what the
// views expect of the higher levels.
#include <cstdint>

namespace recscope {

constexpr std::int16_t kNoDataRaw = -32768;

// Minimum of a higher level: a later -32768 never replaces the running value.
inline std::int16_t FoldLevelMin(std::int16_t running, std::int16_t later) {
  return (later != kNoDataRaw && later < running) ? later : running;
}

// Maximum of a higher level: once either side is -32768 the result is -32768.
inline std::int16_t FoldLevelMax(std::int16_t running, std::int16_t later) {
  if (running == kNoDataRaw || later == kNoDataRaw) return kNoDataRaw;
  return later > running ? later : running;
}

}  // namespace recscope
