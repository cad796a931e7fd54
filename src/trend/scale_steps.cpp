#include "trend/scale_steps.h"

#include <array>

namespace recscope {

namespace {

struct StepRow {
  std::int32_t upTo;  // last span of the row
  std::int32_t minor;
  std::int32_t label;
};

constexpr std::array<StepRow, 13> kSteps = {{{3, 1, 1},
                                             {7, 1, 2},
                                             {19, 1, 5},
                                             {39, 2, 10},
                                             {79, 4, 20},
                                             {199, 10, 50},
                                             {399, 20, 100},
                                             {799, 40, 200},
                                             {1999, 100, 500},
                                             {3999, 200, 1000},
                                             {7999, 400, 2000},
                                             {19999, 1000, 5000},
                                             {39999, 2000, 10000}}};

const StepRow *RowOf(std::int32_t span) {
  if (span < 0) return nullptr;  // a negative span takes the widest steps
  for (const auto &row : kSteps)
    if (span <= row.upTo) return &row;
  return nullptr;
}

}  // namespace

std::int32_t GridStepMinor(std::int32_t span) {
  const StepRow *row = RowOf(span);
  return row ? row->minor : 4000;
}

std::int32_t GridStepLabel(std::int32_t span) {
  const StepRow *row = RowOf(span);
  return row ? row->label : 20000;
}

}  // namespace recscope
