#pragma once
// Steps of a value scale from its raw span R = |ScaleHigh - ScaleLow|: the minor
// step of the grid and of the short ticks, and the step of the labelled ticks.
#include <cstdint>

namespace recscope {

std::int32_t GridStepMinor(std::int32_t span);
std::int32_t GridStepLabel(std::int32_t span);

}  // namespace recscope
