#pragma once
// What the text blocks of a printed page say: the file information of the header
// and the rows of the list block, with the values at the two cursors or at the
// first two flags of the page. Times and values come as the views show them.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "trend/trend_view.h"

namespace recscope {

// The header's file information rows: label (15001..15011) and value.
struct InfoRow {
  std::string Label;
  std::string Value;
};
std::vector<InfoRow> HeaderInfoRows(const RecordFileInfo &info, const TrendView &view,
                                    std::int32_t period, int dateFormatNo);

// The times the list block's two value columns stand for.
struct ListMark {
  bool Set = false;
  std::int32_t Time = 0;
  std::string Label;  // "ｶｰｿﾙ1:" or "ﾌﾗｸﾞ1:"
};

// Cursor mode (CURSOR 1): the two cursors when set. Flag mode: the first two
// flags inside the page's range, labelled by their number in the flag list.
std::array<ListMark, 2> ListMarks(const TrendView &view, const std::vector<FlagEvent> &flags,
                                  int cursorMode, std::int32_t pageStart, std::int32_t pageEnd);

struct ListRow {
  std::string Number;  // "CH01", "DI01"
  std::string Tag;
  std::array<std::string, 2> Values;
};

// One row for each member of the view's group, in place order. A value is read
// from the record at the sample of the mark's time; a mark that is not set, or a
// time outside the file, leaves it empty.
std::vector<ListRow> ListRows(const RecordFileInfo &info, const TrendView &view,
                              const std::array<ListMark, 2> &marks, std::int32_t period,
                              const std::string &programFolder, int slot,
                              const std::string &decimalChar);

// Channel indexes (1-based, DI behind analog) of the members of the view's group.
std::vector<int> ListedChannels(const TrendView &view);

}  // namespace recscope
