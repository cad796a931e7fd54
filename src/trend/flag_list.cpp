#include "trend/flag_list.h"

#include <algorithm>

namespace recscope {

bool FlagStandsAt(const std::vector<FlagEvent> &flags, std::int32_t t) {
  return std::any_of(flags.begin(), flags.end(), [t](const FlagEvent &f) { return f.Time == t; });
}

bool AddFlag(std::vector<FlagEvent> &flags, std::int32_t t) {
  if (FlagStandsAt(flags, t)) return false;
  FlagEvent flag;
  flag.Time = t;
  flag.Text = "";
  flag.Shown = 0;
  flag.Position = kNewFlagLevel;
  flags.push_back(flag);
  return true;
}

void RemoveAllFlags(std::vector<FlagEvent> &flags) { flags.clear(); }

}  // namespace recscope
