#include "views/instant_values.h"

#include <algorithm>
#include <cstdio>

#include "record/number_field.h"
#include "record/record_fields.h"
#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

constexpr int kTimeTitle = 19302;
constexpr int kMaxTitle = 19303;
constexpr int kMinTitle = 19304;
constexpr int kChannelTitle = 19305;
constexpr int kDiTitle = 19306;
constexpr int kInstantTitle = 19307;
constexpr int kAverageTitle = 19308;
constexpr int kAllChannelsTab = 10604;

std::string Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const auto last = text.find_last_not_of(' ');
  return std::string(text.substr(first, last - first + 1));
}

std::string TwoDigits(int n) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d", n);
  return text;
}

int RecordTypeOf(const RecordFileInfo &info, int tableIndex) {
  if (tableIndex < info.AnalogCount)
    return info.Channels[static_cast<size_t>(tableIndex)].RecordType;
  return info.Dis[static_cast<size_t>(tableIndex - info.AnalogCount)].RecordType;
}

// Table index of a group member (channel number, or 128 + n for DI n); -1 when
// the file has no such channel.
int TableIndexOfMember(const RecordFileInfo &info, int member) {
  if (member > 128) {
    for (size_t d = 0; d < info.Dis.size(); ++d)
      if (info.Dis[d].DiNo == member) return info.AnalogCount + static_cast<int>(d);
    return -1;
  }
  for (size_t c = 0; c < info.Channels.size(); ++c)
    if (info.Channels[c].ChannelNo == member) return static_cast<int>(c);
  return -1;
}

bool GroupHasMembers(const RecordFileInfo &info, int g) {
  for (std::int16_t m : info.Groups[static_cast<size_t>(g)].Members)
    if (m != 0) return true;
  return false;
}

// Where each channel's values lie in a data record: the first unit of each
// analog channel (binary units, text fields) and of each DI (text fields only).
struct UnitLayout {
  std::vector<int> firstUnit;  // per table index
  int analogUnits = 0;
  int textUnits = 0;
};

UnitLayout LayoutOf(const RecordFileInfo &info) {
  UnitLayout layout;
  int unit = 0;
  for (const ChannelInfo &ch : info.Channels) {
    layout.firstUnit.push_back(unit);
    unit += ch.RecordType == 0 ? 2 : 1;
  }
  layout.analogUnits = unit;
  for (const DiInfo &di : info.Dis) {
    layout.firstUnit.push_back(unit);
    unit += di.RecordType == 0 ? 2 : 1;
  }
  layout.textUnits = unit;
  return layout;
}

void StartRows(InstantGrid &grid, std::int32_t count) {
  grid.Times.assign(static_cast<size_t>(count), 0);
  grid.Cells.assign(static_cast<size_t>(count), std::vector<std::string>(grid.Columns.size() + 1));
}

}  // namespace

std::string AnalogCell(const ChannelInfo &ch, std::int32_t raw, const std::string &decimalChar) {
  if (ch.ScaleKind == 1) {
    std::string special = SpecialValueText(raw, ch.InputType);
    if (!special.empty()) return special;
    return LogValueText(ch.RangeLow, ch.RangeHigh, ch.ExponentLow, ch.ExponentHigh, ch.Decimals,
                        raw, decimalChar);
  }
  return ValueText(raw, ch.Decimals, ch.InputType, decimalChar);
}

// ---- Cell texts -------------------------------------------------------------

std::string TextFieldValueText(std::string_view field, int inputType,
                               const std::string &decimalChar) {
  std::string text = Trimmed(field);
  std::string digits = text;
  digits.erase(std::remove(digits.begin(), digits.end(), '.'), digits.end());
  if (digits == "-32768") return SpecialValueText(-32768, inputType);
  if (digits == "32767") return SpecialValueText(32767, inputType);
  if (digits == "-32767") return SpecialValueText(-32767, inputType);
  const auto point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, decimalChar);
  return text;
}

std::string DiText(int state) { return state != 0 ? "1" : "0"; }

int DiStateOfWord(std::uint16_t word, int diNumber, int recordType, int unit) {
  int bit = 2 * diNumber - 2;
  if (recordType == 0 && unit == 1) bit += 1;
  if (bit < 0 || bit > 15) return 0;
  return (word >> bit) & 1;
}

// ---- Columns and tabs -------------------------------------------------------

std::vector<InstantTab> InstantTabs(const RecordFileInfo &info) {
  std::vector<InstantTab> tabs;
  for (int g = 0; g < 8; ++g)
    if (GroupHasMembers(info, g))
      tabs.push_back(
          {g + 1, std::to_string(g + 1) + ":" + info.Groups[static_cast<size_t>(g)].GroupName});
  tabs.push_back({9, GetMessageText(kAllChannelsTab)});
  return tabs;
}

int FirstGroupWithMembers(const RecordFileInfo &info) { return InstantTabs(info).front().GroupNo; }

std::vector<InstantColumn> InstantColumnsOf(const RecordFileInfo &info, int groupNo) {
  std::vector<int> channels;
  if (groupNo == 9) {
    for (int i = 0; i < info.AnalogCount + info.DiCount; ++i) channels.push_back(i);
  } else if (groupNo >= 1 && groupNo <= 8) {
    for (std::int16_t member : info.Groups[static_cast<size_t>(groupNo - 1)].Members) {
      if (member == 0) continue;
      const int index = TableIndexOfMember(info, member);
      if (index >= 0) channels.push_back(index);
    }
  }
  std::vector<InstantColumn> columns;
  for (int index : channels) {
    if (index >= static_cast<int>(info.Channels.size() + info.Dis.size())) continue;
    columns.push_back({index, 0});
    if (RecordTypeOf(info, index) == 0) columns.push_back({index, 1});
  }
  return columns;
}

std::string InstantTitle1(const RecordFileInfo &info, const InstantColumn &column) {
  if (column.TableIndex < info.AnalogCount)
    return GetMessageText(kChannelTitle) +
           TwoDigits(info.Channels[static_cast<size_t>(column.TableIndex)].ChannelNo);
  const DiInfo &di = info.Dis[static_cast<size_t>(column.TableIndex - info.AnalogCount)];
  return GetMessageText(kDiTitle) + TwoDigits(di.DiNo - 128);
}

std::string InstantTitle2(const RecordFileInfo &info, const InstantColumn &column) {
  const int type = RecordTypeOf(info, column.TableIndex);
  if (type == 0) return GetMessageText(column.Unit == 0 ? kMinTitle : kMaxTitle);
  return GetMessageText(type == 2 ? kAverageTitle : kInstantTitle);
}

// ---- Paging -----------------------------------------------------------------

namespace {

std::int32_t CutLast(const InstantPage &page, std::int32_t recordCount) {
  return std::min(page.PageFirst + kInstantPageRecords - 1, page.PageBase + recordCount);
}

bool MovedTo(InstantPage &page, std::int32_t first, std::int32_t recordCount) {
  if (first == page.PageFirst) return false;
  page.PageFirst = first;
  page.PageLast = CutLast(page, recordCount);
  return true;
}

}  // namespace

InstantPage InstantFirstPage(std::int32_t recordCount) {
  InstantPage page;
  page.PageFirst = page.PageBase + 1;
  page.PageLast = CutLast(page, recordCount);
  return page;
}

bool PageFillTop(InstantPage &page, std::int32_t recordCount) {
  return MovedTo(page, page.PageBase + 1, recordCount);
}

bool PageFillEnd(InstantPage &page, std::int32_t recordCount) {
  const std::int32_t last = page.PageBase + recordCount;
  const std::int32_t first = std::max(last - (kInstantPageRecords - 1), page.PageBase + 1);
  return MovedTo(page, first, recordCount);
}

bool PageFillBefore(InstantPage &page, std::int32_t recordCount) {
  const std::int32_t first = std::max(page.PageFirst - kInstantPageRecords, page.PageBase + 1);
  return MovedTo(page, first, recordCount);
}

bool PageFillNext(InstantPage &page, std::int32_t recordCount) {
  const std::int32_t first = page.PageFirst + kInstantPageRecords;
  // A page that would start past the file's end is no page: the button does nothing.
  if (first > page.PageBase + recordCount) return false;
  return MovedTo(page, first, recordCount);
}

FollowStep PageFollowCursor(InstantPage &page, std::int32_t recordCount, std::int64_t index) {
  FollowStep step;
  if (index < 0 || index >= recordCount) return step;
  step.Inside = true;
  const auto record = static_cast<std::int32_t>(page.PageBase + index + 1);
  if (record < page.PageFirst || record > page.PageLast) {
    std::int32_t first = std::max(record - 601, page.PageBase + 1);
    const std::int32_t last =
        std::min(first + kInstantPageRecords - 1, page.PageBase + recordCount);
    // Moved back by what the end cut off, so that the page stays whole.
    first = std::max(last - (kInstantPageRecords - 1), page.PageBase + 1);
    page.PageFirst = first;
    page.PageLast = last;
    step.Refill = true;
  }
  step.Row = record - page.PageFirst;
  return step;
}

std::int32_t TopRowFor(std::int32_t row) { return std::max(row - 5, 0); }

std::int64_t CursorRecordIndex(std::int64_t time, std::int64_t fileStart, std::int64_t period) {
  if (period <= 0) return -1;
  return (time - fileStart) / period;
}

// ---- Copy -------------------------------------------------------------------

std::string InstantCopyText(const InstantGrid &grid, int rowFrom, int rowTo, int colFrom, int colTo,
                            bool withTitles, const std::string &rowEnd) {
  const int rows = static_cast<int>(grid.Cells.size());
  const int lastCol = static_cast<int>(grid.Columns.size());
  if (rowFrom > rowTo) std::swap(rowFrom, rowTo);
  if (colFrom > colTo) std::swap(colFrom, colTo);
  rowFrom = std::max(rowFrom, 0);
  rowTo = std::min(rowTo, rows - 1);
  colFrom = std::max(colFrom, 1);
  colTo = std::min(colTo, lastCol);
  std::string text;
  auto line = [&](auto cell) {
    text += cell(0);
    text += '\t';
    for (int c = colFrom; c <= colTo; ++c) {
      text += cell(c);
      text += '\t';
    }
    text += rowEnd;
  };
  if (withTitles) {
    line([&](int c) -> const std::string & { return grid.Title1[static_cast<size_t>(c)]; });
    line([&](int c) -> const std::string & { return grid.Title2[static_cast<size_t>(c)]; });
  }
  for (int r = rowFrom; r <= rowTo; ++r)
    line([&](int c) -> const std::string & {
      return grid.Cells[static_cast<size_t>(r)][static_cast<size_t>(c)];
    });
  return text;
}

std::string InstantWholeGridText(const InstantGrid &grid, const std::string &rowEnd) {
  return InstantCopyText(grid, 0, static_cast<int>(grid.Cells.size()) - 1, 1,
                         static_cast<int>(grid.Columns.size()), true, rowEnd);
}

// ---- Reading and formatting -------------------------------------------------

bool ReadRecordRange(const ByteSource &source, const RecordFileInfo &info, std::int32_t first,
                     std::int32_t last, std::string &out) {
  out.clear();
  if (first < 1 || last < first || last > info.RecordCount || info.RecordLength <= 0 ||
      info.DataStart < 0)
    return false;
  const std::int64_t offset = static_cast<std::int64_t>(info.DataStart) +
                              static_cast<std::int64_t>(first - 1) * info.RecordLength;
  const std::int64_t size = static_cast<std::int64_t>(last - first + 1) * info.RecordLength;
  if (offset + size > source.Length()) return false;
  if (!source.Read(offset, static_cast<std::size_t>(size), out)) {
    out.clear();
    return false;
  }
  return true;
}

void FillCellsBinary(const RecordFileInfo &info, std::string_view records, std::int32_t count,
                     const std::string &decimalChar, int dateFormatNo, InstantGrid &grid) {
  const UnitLayout layout = LayoutOf(info);
  const std::size_t length = static_cast<std::size_t>(info.RecordLength);
  const std::size_t diWord = 4 + 2 * static_cast<std::size_t>(layout.analogUnits);
  const std::size_t needed = diWord + (info.DiCount > 0 ? 2 : 0);
  if (count < 0 || length < needed || records.size() < length * static_cast<size_t>(count)) {
    StartRows(grid, 0);
    return;
  }
  StartRows(grid, count);
  for (std::int32_t r = 0; r < count; ++r) {
    const std::string_view record = records.substr(static_cast<size_t>(r) * length, length);
    std::vector<std::string> &row = grid.Cells[static_cast<size_t>(r)];
    const std::int32_t time = I32At(record, 0);
    grid.Times[static_cast<size_t>(r)] = time;
    row[0] = FormatTime(time, dateFormatNo);
    const std::uint16_t word = info.DiCount > 0 ? U16At(record, diWord) : 0;
    for (size_t c = 0; c < grid.Columns.size(); ++c) {
      const InstantColumn &column = grid.Columns[c];
      if (column.TableIndex < info.AnalogCount) {
        const int unit = layout.firstUnit[static_cast<size_t>(column.TableIndex)] + column.Unit;
        const ChannelInfo &ch = info.Channels[static_cast<size_t>(column.TableIndex)];
        row[c + 1] = AnalogCell(ch, I16At(record, 4 + 2 * static_cast<size_t>(unit)), decimalChar);
      } else {
        const DiInfo &di = info.Dis[static_cast<size_t>(column.TableIndex - info.AnalogCount)];
        row[c + 1] = DiText(DiStateOfWord(word, di.DiNo - 128, di.RecordType, column.Unit));
      }
    }
  }
}

void FillCellsText(const RecordFileInfo &info, std::string_view records, std::int32_t count,
                   const std::string &decimalChar, int dateFormatNo, InstantGrid &grid) {
  const UnitLayout layout = LayoutOf(info);
  const std::size_t length = static_cast<std::size_t>(info.RecordLength);
  const std::size_t needed = 19 + 8 * static_cast<std::size_t>(layout.textUnits);
  if (count < 0 || length < needed || records.size() < length * static_cast<size_t>(count)) {
    StartRows(grid, 0);
    return;
  }
  StartRows(grid, count);
  for (std::int32_t r = 0; r < count; ++r) {
    const std::string_view record = records.substr(static_cast<size_t>(r) * length, length);
    std::vector<std::string> &row = grid.Cells[static_cast<size_t>(r)];
    const std::string_view timeText = record.substr(0, 19);
    if (auto time = ParseRecordTime(timeText)) {
      grid.Times[static_cast<size_t>(r)] = static_cast<std::int32_t>(*time);
      row[0] = FormatTime(*time, dateFormatNo);
    } else {
      row[0] = std::string(timeText);
    }
    for (size_t c = 0; c < grid.Columns.size(); ++c) {
      const InstantColumn &column = grid.Columns[c];
      const int unit = layout.firstUnit[static_cast<size_t>(column.TableIndex)] + column.Unit;
      const std::string_view field = record.substr(20 + 8 * static_cast<size_t>(unit), 7);
      if (column.TableIndex < info.AnalogCount) {
        const ChannelInfo &ch = info.Channels[static_cast<size_t>(column.TableIndex)];
        if (ch.ScaleKind == 1) {
          if (auto raw = ReadNumberField(field, ch.Decimals)) {
            row[c + 1] = AnalogCell(ch, *raw, decimalChar);
            continue;
          }
        }
        row[c + 1] = TextFieldValueText(field, ch.InputType, decimalChar);
      } else if (auto state = ReadIntegerField(field)) {
        row[c + 1] = DiText(*state);
      } else {
        row[c + 1] = Trimmed(field);
      }
    }
  }
}

// ---- The window's state -----------------------------------------------------

InstantValues::InstantValues(const RecordFileInfo &info, std::string decimalChar, int dateFormatNo,
                             RecordOpener opener)
    : info_(info),
      decimalChar_(std::move(decimalChar)),
      dateFormatNo_(dateFormatNo),
      opener_(std::move(opener)),
      page_(InstantFirstPage(info.RecordCount)),
      group_(FirstGroupWithMembers(info)) {
  if (!opener_)
    opener_ = [](const std::string &path) -> std::unique_ptr<ByteSource> {
      return std::make_unique<FileSource>(path);
    };
}

void InstantValues::SetGroup(int groupNo) {
  group_ = groupNo;
  grid_.Columns = InstantColumnsOf(info_, groupNo);
  grid_.Title1.assign(1, GetMessageText(kTimeTitle));
  grid_.Title2.assign(1, std::string());
  for (const InstantColumn &column : grid_.Columns) {
    grid_.Title1.push_back(InstantTitle1(info_, column));
    grid_.Title2.push_back(InstantTitle2(info_, column));
  }
  FillCells();
}

bool InstantValues::Refilled(bool changed) {
  if (!changed) return false;
  FillCells();
  row_ = 0;
  topRow_ = 0;
  return true;
}

bool InstantValues::FillTop() { return Refilled(PageFillTop(page_, info_.RecordCount)); }
bool InstantValues::FillEnd() { return Refilled(PageFillEnd(page_, info_.RecordCount)); }
bool InstantValues::FillBefore() { return Refilled(PageFillBefore(page_, info_.RecordCount)); }
bool InstantValues::FillNext() { return Refilled(PageFillNext(page_, info_.RecordCount)); }

bool InstantValues::FollowCursor(std::int64_t index) {
  const FollowStep step = PageFollowCursor(page_, info_.RecordCount, index);
  if (!step.Inside) return false;
  if (step.Refill) FillCells();
  row_ = step.Row;
  topRow_ = TopRowFor(step.Row);
  return true;
}

void InstantValues::SetFormat(std::string decimalChar, int dateFormatNo) {
  decimalChar_ = std::move(decimalChar);
  dateFormatNo_ = dateFormatNo;
  FillCells();
}

bool InstantValues::FillCells() {
  const std::int32_t first = page_.PageFirst - page_.PageBase;
  const std::int32_t last = page_.PageLast - page_.PageBase;
  std::string records;
  lastRead_ = false;
  if (last >= first) {
    ++reads_;
    std::unique_ptr<ByteSource> source = opener_(info_.FilePath);
    if (source) lastRead_ = ReadRecordRange(*source, info_, first, last, records);
  }
  const std::int32_t count = lastRead_ ? last - first + 1 : 0;
  if (info_.FileFormat == 2)
    FillCellsBinary(info_, records, count, decimalChar_, dateFormatNo_, grid_);
  else
    FillCellsText(info_, records, count, decimalChar_, dateFormatNo_, grid_);
  return lastRead_;
}

}  // namespace recscope
