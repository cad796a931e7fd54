#include "views/cursor_calc.h"

#include <cstdlib>

#include "platform/text_encoding.h"
#include "shell/catalogue.h"
#include "trend/trend_view.h"

namespace recscope {

namespace {

constexpr int kColumnWidth = 19314;
constexpr int kChannelTitle = 19305;
constexpr int kDiTitle = 19306;
constexpr int kMaxTitle = 18100;
constexpr int kTagBytes = 8;

}  // namespace

int CurDataColumnWidth() { return std::atoi(GetMessageText(kColumnWidth).c_str()); }

std::vector<int> CurDataColumns(const RecordFileInfo &info,
                                const std::vector<std::int16_t> &memberNumbers) {
  std::vector<int> columns;
  for (std::int16_t number : memberNumbers) {
    if (number == 0) continue;
    const int index = ChannelNoToIndex(info, number);
    if (index > 0) columns.push_back(index - 1);
  }
  return columns;
}

std::vector<std::string> CurDataTitles(const RecordFileInfo &info, int tableIndex) {
  const int analog = static_cast<int>(info.Channels.size());
  if (tableIndex >= analog) {
    const DiInfo &di = info.Dis[static_cast<size_t>(tableIndex - analog)];
    const int number = di.DiNo > 128 ? di.DiNo - 128 : tableIndex - analog + 1;
    return {GetMessageText(kDiTitle) + std::to_string(number), LeftCp932Bytes(di.Tag, kTagBytes),
            MidCp932Bytes(di.Tag, kTagBytes), ""};
  }
  const ChannelInfo &ch = info.Channels[static_cast<size_t>(tableIndex)];
  return {GetMessageText(kChannelTitle) + std::to_string(ch.ChannelNo),
          LeftCp932Bytes(ch.Tag, kTagBytes), MidCp932Bytes(ch.Tag, kTagBytes), ch.Unit};
}

GridRows CurDataGrid(const RecordFileInfo &info, const std::vector<int> &columns,
                     const std::vector<ChannelStatistics> &stats, const std::string &decimalChar) {
  GridRows grid(kCurDataRows, std::vector<std::string>(columns.size() + 1));
  for (int r = 0; r < 3; ++r) grid[static_cast<size_t>(4 + r)][0] = GetMessageText(kMaxTitle + r);
  for (size_t c = 0; c < columns.size(); ++c) {
    const std::vector<std::string> titles = CurDataTitles(info, columns[c]);
    for (size_t r = 0; r < titles.size(); ++r) grid[r][c + 1] = titles[r];
    if (static_cast<size_t>(columns[c]) >= stats.size()) continue;
    const CursorCells cells =
        CurComputeCells(info, columns[c], stats[static_cast<size_t>(columns[c])], decimalChar);
    grid[4][c + 1] = cells.MaxText;
    grid[5][c + 1] = cells.MinText;
    grid[6][c + 1] = cells.AvgText;
  }
  return grid;
}

std::string SpanCopyLine(const ComputeSpan &span) {
  return span.StTimeText + "  to  " + span.EndTimeText + "\t" + span.TimeWidthText + "\t" +
         span.DataNumText + "\r";
}

std::string MathCopyText(const ComputeSpan &span, const GridRows &grid) {
  return SpanCopyLine(span) + WholeGridText(grid);
}

}  // namespace recscope
