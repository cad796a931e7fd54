#include "trend/display_reduction.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "record/level_files.h"
#include "shell/rounding.h"

namespace recscope {

void ReduceDisplayData(TrendView &view, const RecordFileInfo &info, std::int32_t period,
                       std::int32_t width, const std::string &programFolder, int slot) {
  if (period <= 0) period = 1;
  const std::int64_t f = info.FirstTime;
  const std::int64_t pitch = std::max<std::int32_t>(view.ColumnPitch, 1);

  // 1. Columns the plot has room for.
  std::int64_t P = std::max<std::int64_t>(width / pitch, 0);
  view.PlotSpan = static_cast<std::int32_t>((P - 1) * pitch);

  // 2. The view starts and ends on a sample.
  std::int64_t start = view.DisplayStart;
  std::int64_t end = view.DisplayEnd;
  if (start <= f)
    start = f;
  else
    start -= (start - f) % period;
  end -= (end - f) % period;

  // 3. Samples in view.
  std::int64_t S = RoundToInt(static_cast<double>(end - start) / period + 1.0);

  // 4. A level is used only while it still has at least P rows in view.
  int L = 0;
  if (S > P) {
    double ratio = P > 0 ? static_cast<double>(S) / P : HUGE_VAL;
    L = static_cast<int>(std::min<double>(std::floor(std::log(ratio) / std::log(10.0)), 64));
    L = std::clamp(L, 0, static_cast<int>(std::max<std::int16_t>(info.TopLevel, 0)));
  }

  // 5. On a level, the view starts and ends on a row of that level.
  double rowSpan = std::pow(10.0, L) * period;
  if (L != 0) {
    std::int64_t q = RoundToInt(rowSpan);
    start -= (start - f) % q;
    end -= (end - f) % q;
    S = RoundToInt(static_cast<double>(end - start) / rowSpan + 1.0);
  }
  view.DisplayStart = static_cast<std::int32_t>(start);
  view.DisplayEnd = static_cast<std::int32_t>(end);

  // 6, 7. First row, and the rows that exist before the end of the file.
  std::int64_t first = RoundToInt(static_cast<double>(start - f) / rowSpan);
  std::int64_t R = S;
  if (L < static_cast<int>(info.LevelRows.size())) {
    std::int64_t left = static_cast<std::int64_t>(info.LevelRows[L]) - first;
    if (left < S) R = std::max<std::int64_t>(left, 0);
  }

  // 8. Columns of a full range and columns with data.
  std::int64_t dataColumns;
  if (S <= P) {
    view.ColumnCount = static_cast<std::int32_t>(S);
    dataColumns = R;
  } else {
    view.ColumnCount = static_cast<std::int32_t>(P);
    dataColumns = (P * R) / S + ((P * R) % S != 0 ? 1 : 0);
  }
  view.DataColumnCount = static_cast<std::int32_t>(dataColumns);
  view.LevelInUse = L;

  // 9. One block read of the rows in view.
  const int N = static_cast<int>(info.Channels.size() + info.Dis.size());
  const int rowValues = 2 * N;
  // The reduction trusts the level files: rows they do not hold read as 0.
  std::vector<std::int16_t> rows(static_cast<std::size_t>(std::max<std::int64_t>(R, 0)) * rowValues,
                                 0);
  LevelFiles files(programFolder, slot, L, N, LevelFiles::kValuesOnly);
  if (files.ok() && !files.ReadValueRows(first, R, rows.data()))
    std::fill(rows.begin(), rows.end(), 0);

  // 10. Fold the rows into columns: each column is the true minimum and maximum of
  // the rows under it.
  view.DispRows = rowValues;
  view.DispData.assign(static_cast<std::size_t>(std::max<std::int64_t>(dataColumns, 0)) * rowValues,
                       0);
  std::int64_t i = 0;
  std::int64_t prev = 0;
  for (std::int64_t j = 1; j <= dataColumns && i < R; ++j) {
    std::int64_t m = 1;
    if (S > P) {
      std::int64_t upTo = (j * S) / P;
      m = upTo - prev;
      prev = upTo;
    }
    std::int16_t *column = &view.DispData[static_cast<std::size_t>(j - 1) * rowValues];
    for (std::int64_t k = 1; k <= m && i < R; ++k, ++i) {
      const std::int16_t *row = &rows[static_cast<std::size_t>(i) * rowValues];
      if (k == 1) {
        std::copy(row, row + rowValues, column);
        continue;
      }
      for (int c = 0; c < N; ++c) {
        column[2 * c] = std::min(column[2 * c], row[2 * c]);
        column[2 * c + 1] = std::max(column[2 * c + 1], row[2 * c + 1]);
      }
    }
  }
}

}  // namespace recscope
