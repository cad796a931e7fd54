#pragma once
// Samples in memory folded into the plot's columns as the level files' reduction
// folds rows: while the S samples fit in the P columns each is a column, else
// column j takes the samples up to j * S / P and holds their minimum and maximum
// per channel. The real-time ring and the monitor's ring are drawn this way.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "trend/trend_view.h"

namespace recscope {

// Fills DispData (DispRows 2N) for the view's DataColumnCount columns from S
// samples of N channels, the oldest first; `read(i, values)` writes the N
// values of sample i.
template <typename ReadSample>
void FoldSamplesIntoColumns(TrendView &view, std::int64_t S, std::int64_t P, int N,
                            ReadSample read) {
  const int rowValues = 2 * N;
  view.DispRows = rowValues;
  view.DispData.assign(static_cast<std::size_t>(std::max(view.DataColumnCount, 0)) *
                           static_cast<std::size_t>(rowValues),
                       0);
  std::vector<std::int16_t> sample(static_cast<std::size_t>(N), 0);
  std::int64_t i = 0;
  std::int64_t prev = 0;
  for (std::int64_t j = 1; j <= view.DataColumnCount; ++j) {
    std::int64_t m = 1;
    if (S > P) {
      const std::int64_t upTo = (j * S) / P;
      m = upTo - prev;
      prev = upTo;
    }
    std::int16_t *column = &view.DispData[static_cast<std::size_t>(j - 1) * rowValues];
    for (std::int64_t k = 1; k <= m && i < S; ++k, ++i) {
      read(i, sample.data());
      for (int c = 0; c < N; ++c) {
        const std::int16_t v = sample[static_cast<std::size_t>(c)];
        column[2 * c] = k == 1 ? v : std::min(column[2 * c], v);
        column[2 * c + 1] = k == 1 ? v : std::max(column[2 * c + 1], v);
      }
    }
  }
}

}  // namespace recscope
