#pragma once
// The operator's flags of a record: added at a cursor's time, never twice on one
// time, and removed all together.
#include <cstdint>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

// The display position of a new flag.
constexpr std::int16_t kNewFlagLevel = 9;

// Whether a flag stands on this time already.
bool FlagStandsAt(const std::vector<FlagEvent> &flags, std::int32_t t);

// Adds a flag at `t` behind the others: no text, its text not shown, position 9.
// Returns false, and adds nothing, when a flag stands on that time already.
bool AddFlag(std::vector<FlagEvent> &flags, std::int32_t t);

// Removes every flag.
void RemoveAllFlags(std::vector<FlagEvent> &flags);

}  // namespace recscope
