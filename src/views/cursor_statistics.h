#pragma once
// What the between-cursors window shows: the span between the two cursors with
// its four labels, and the maximum, minimum and average cells of each channel.
#include <cstdint>
#include <string>

#include "record/range_statistics.h"
#include "record/record_file_info.h"

namespace recscope {

struct ComputeSpan {
  std::int64_t Start = 0;
  std::int64_t End = 0;
  std::int64_t DataNum = 0;
  std::string StTimeText;     // lbl_StTime
  std::string EndTimeText;    // lbl_EndTime
  std::string TimeWidthText;  // lbl_TimeWid: days, " 日  ", "hh:mm:ss"
  std::string DataNumText;    // lbl_DataNum
};

// The span: each cursor snapped to a sample when set, else the file's start
// (cursor 1) or end (cursor 2); the earlier of the two is the start.
ComputeSpan get_ComputeTime(bool cursor1Set, std::int64_t cursor1Time, bool cursor2Set,
                            std::int64_t cursor2Time, std::int64_t fileStart, std::int64_t fileEnd,
                            std::int64_t period, int dateFormatNo);

struct CursorCells {
  std::string MaxText;  // row 4
  std::string MinText;  // row 5
  std::string AvgText;  // row 6; empty for a DI
};

// The three cells of the channel at `tableIndex` (analog first, then DI).
CursorCells CurComputeCells(const RecordFileInfo &info, int tableIndex,
                            const ChannelStatistics &stats, const std::string &decimalChar);

// `value` in the format "#0" or "#0." with `decimals` zeros: rounded to that many
// decimals, halves away from zero, on the value's 15 significant digits.
std::string FormatDecimals(double value, int decimals, const std::string &decimalChar);

}  // namespace recscope
