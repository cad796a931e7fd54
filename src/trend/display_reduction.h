#pragma once
// Reduction of the time span in view to one minimum and one maximum per plot
// column, read from the level file that suits the plot's width.
#include <cstdint>
#include <string>

#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

// Path of the value rows of a power-of-ten level L (0: one row a record), which is
// working-file level L + 1 of the slot.
std::string LevelValueFilePath(const std::string &programFolder, int slot, int level);

// Reduces DisplayStart..DisplayEnd (moved onto samples, and onto level rows when
// a level is used) to DispData, and sets PlotSpan, ColumnCount, DataColumnCount
// and LevelInUse. `width` is the plot's extent along the time axis, in twips.
void ReduceDisplayData(TrendView &view, const RecordFileInfo &info, std::int32_t period,
                       std::int32_t width, const std::string &programFolder, int slot);

}  // namespace recscope
