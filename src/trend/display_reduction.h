#pragma once
// Reduction of the time span in view to one minimum and one maximum per plot
// column, read from the level file that suits the plot's width.
#include <cstdint>
#include <string>

#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

// Reduces DisplayStart..DisplayEnd (moved onto samples, and onto level rows when
// a level is used) to DispData, and sets PlotSpan, ColumnCount, DataColumnCount
// and LevelInUse. `width` is the plot's extent along the time axis, in twips.
void ReduceDisplayData(TrendView &view, const RecordFileInfo &info, std::int32_t period,
                       std::int32_t width, const std::string &programFolder, int slot);

}  // namespace recscope
