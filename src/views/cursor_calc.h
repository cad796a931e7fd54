#pragma once
// The grid of the between-cursors window: seven rows, column 0 the row titles,
// column c the c-th member of the group with its four title rows and its
// maximum, minimum and average; and the text its copy puts on the clipboard.
#include <cstdint>
#include <string>
#include <vector>

#include "record/range_statistics.h"
#include "record/record_file_info.h"
#include "views/cursor_statistics.h"
#include "views/grid_copy.h"

namespace recscope {

constexpr int kCurDataRows = 7;

// Width of a channel column in twips (message 19314).
int CurDataColumnWidth();

// The group's members as table places (0-based, analog then DI), in member
// order; numbers not in the file and empty places are passed over.
std::vector<int> CurDataColumns(const RecordFileInfo &info,
                                const std::vector<std::int16_t> &memberNumbers);

// The title rows of a column (CGroupChange): "CH" and the number or "DI" and the
// DI's number, the first 8 bytes of the tag (code page 932, no character split),
// the tag from its ninth byte, the unit (none for a DI).
std::vector<std::string> CurDataTitles(const RecordFileInfo &info, int tableIndex);

// The whole grid for the columns: titles in rows 0 to 3, "最大値", "最小値",
// "平均値" in column 0 of rows 4 to 6, and the cells of CurCompute from `stats`
// (by table place). With `stats` empty the value rows stay empty.
GridRows CurDataGrid(const RecordFileInfo &info, const std::vector<int> &columns,
                     const std::vector<ChannelStatistics> &stats, const std::string &decimalChar);

// The line of the span: start "  to  " end, then the width and the data number,
// tab-separated, then "\r".
std::string SpanCopyLine(const ComputeSpan &span);

// MathMSFlexGrid1_copy with titles: the span line, then rows 0 to 6 from column 0
// to the last, each cell followed by a tab, each row by "\r".
std::string MathCopyText(const ComputeSpan &span, const GridRows &grid);

}  // namespace recscope
