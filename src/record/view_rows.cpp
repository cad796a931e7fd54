#include "record/view_rows.h"

#include <algorithm>
#include <cmath>

#include "record/level_files.h"
#include "shell/rounding.h"

namespace recscope {

int ViewRowStep(const RecordFileInfo &info, const ViewRowRequest &request) {
  if (request.zoomMode == 2) return 2 * info.LevelStep;
  if (request.zoomMode == 3) return 3 * info.LevelStep;
  if (request.manualZoom && request.zoomMode == 1 && request.zoomFactor != 0)
    return static_cast<int>(FixTowardsZero(1.0 / request.zoomFactor + 0.5));
  return request.windowStep;
}

namespace {

constexpr std::int32_t kMaxRowsRead = 18000;

bool LoadRows(const RecordFileInfo &info, const std::string &programFolder, int slot,
              const ViewRowRequest &request, bool withSums, ViewRows &rows) {
  rows = ViewRows{};
  const int ct = info.ChannelTotal;
  const int l = request.level;
  if (ct <= 0 || l < 0 || static_cast<size_t>(l) >= info.LevelRows.size()) return false;
  const int step = std::max(1, ViewRowStep(info, request));
  const std::int32_t rowsToRead = std::min(kMaxRowsRead, info.LevelRows[static_cast<size_t>(l)]);
  const std::int64_t firstRow = (info.FirstRecord - 1) / RecordsPerLevelRow(l);

  LevelFiles files(programFolder, slot, l, ct,
                   withSums ? LevelFiles::kValuesAndSums : LevelFiles::kValuesOnly);
  if (!files.ok()) return false;
  std::vector<std::int16_t> values(static_cast<size_t>(rowsToRead) * 2 * ct);
  if (!files.ReadValueRows(firstRow, rowsToRead, values.data())) return false;
  std::vector<std::int32_t> sums;
  if (withSums) {
    sums.resize(static_cast<size_t>(rowsToRead) * 2 * ct);
    if (!files.ReadSumRowsAtValueOffset(firstRow, rowsToRead, sums.data())) return false;
  }

  rows.channelTotal = ct;
  rows.rowCount = (rowsToRead + step - 1) / step;
  const size_t cells = static_cast<size_t>(rows.rowCount) * ct;
  rows.Min.resize(cells);
  rows.Max.resize(cells);
  if (withSums) {
    rows.Sum.resize(cells);
    rows.Count.resize(cells);
  }
  for (int v = 0; v < rows.rowCount; ++v) {
    const std::int32_t begin = v * step;
    const std::int32_t end = std::min(begin + step, rowsToRead);
    for (int c = 0; c < ct; ++c) {
      const size_t cell = static_cast<size_t>(v) * ct + c;
      std::int16_t lo = values[(static_cast<size_t>(begin) * ct + c) * 2];
      std::int16_t hi = values[(static_cast<size_t>(begin) * ct + c) * 2 + 1];
      double sum = 0;
      std::int32_t count = 0;
      for (std::int32_t r = begin; r < end; ++r) {
        const size_t at = (static_cast<size_t>(r) * ct + c) * 2;
        lo = std::min(lo, values[at]);
        hi = std::max(hi, values[at + 1]);
        if (withSums) {
          sum += sums[at];
          count += sums[at + 1];
        }
      }
      rows.Min[cell] = lo;
      rows.Max[cell] = hi;
      if (withSums) {
        rows.Sum[cell] = sum;
        rows.Count[cell] = count;
      }
    }
  }
  return true;
}

}  // namespace

bool LoadViewRows(const RecordFileInfo &info, const std::string &programFolder, int slot,
                  const ViewRowRequest &request, ViewRows &rows) {
  return LoadRows(info, programFolder, slot, request, true, rows);
}

bool LoadValueRows(const RecordFileInfo &info, const std::string &programFolder, int slot,
                   const ViewRowRequest &request, ViewRows &rows) {
  return LoadRows(info, programFolder, slot, request, false, rows);
}

}  // namespace recscope
