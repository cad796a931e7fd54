#pragma once
// The rows a trend window works from: one level of the working files folded to
// the window's step. The window's state (level, step, zoom) is given by the caller.
#include <cstdint>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope {

// View rows, channel by channel within a row: index row x ChannelTotal + channel.
struct ViewRows {
  int rowCount = 0;
  int channelTotal = 0;
  std::vector<std::int16_t> Min;
  std::vector<std::int16_t> Max;
  std::vector<double> Sum;          // filled by LoadViewRows only
  std::vector<std::int32_t> Count;  // filled by LoadViewRows only
};

// What of the window's state decides the rows: `level` counts from 0 (level 0 is
// the file "Operation_<n>_1.OPL"), `windowStep` is the window's own step in rows.
struct ViewRowRequest {
  int level = 0;
  int windowStep = 1;
  int zoomMode = 0;
  bool manualZoom = false;
  double zoomFactor = 1.0;
};

// The step in rows of the level that a view row stands for.
int ViewRowStep(const RecordFileInfo &info, const ViewRowRequest &request);

// Min, Max, Sum and Count of each view row, from the window's first record on.
// The sums are read from the same byte position as the values, so they are only
// the sums of the shown rows when the view starts at the file's first row.
// False when a level file cannot be read.
bool LoadViewRows(const RecordFileInfo &info, const std::string &programFolder, int slot,
                  const ViewRowRequest &request, ViewRows &rows);

// The same without the sums, for redraw and print.
bool LoadValueRows(const RecordFileInfo &info, const std::string &programFolder, int slot,
                   const ViewRowRequest &request, ViewRows &rows);

}  // namespace recscope
