#include "views/grid_copy.h"

#include <algorithm>

namespace recscope {

namespace {

void AppendRow(std::string &out, const GridRows &grid, int row, int col1, int col2) {
  const bool inGrid = row >= 0 && row < static_cast<int>(grid.size());
  for (int c = col1; c <= col2; ++c) {
    if (inGrid && c >= 0 && c < static_cast<int>(grid[static_cast<size_t>(row)].size()))
      out += grid[static_cast<size_t>(row)][static_cast<size_t>(c)];
    out += '\t';
  }
  out += '\r';
}

}  // namespace

std::string GridCopyText(const GridRows &grid, int row1, int col1, int row2, int col2,
                         bool withTitle) {
  if (row1 > row2) std::swap(row1, row2);
  if (col1 > col2) std::swap(col1, col2);
  std::string out;
  if (withTitle) AppendRow(out, grid, 0, col1, col2);
  for (int r = row1; r <= row2; ++r) AppendRow(out, grid, r, col1, col2);
  return out;
}

std::string WholeGridText(const GridRows &grid) {
  size_t columns = 0;
  for (const auto &row : grid) columns = std::max(columns, row.size());
  if (grid.empty()) return {};
  const int lastColumn = static_cast<int>(columns) - 1;
  std::string out;
  for (int r = 0; r < static_cast<int>(grid.size()); ++r) AppendRow(out, grid, r, 0, lastColumn);
  return out;
}

std::string WithNewlines(std::string text) {
  std::replace(text.begin(), text.end(), '\r', '\n');
  return text;
}

}  // namespace recscope
