#pragma once
// What the instant value window shows: pages of at most 1202 records read
// straight from the record file, one row a record, the columns of a group, the
// texts of every cell, the paging and cursor following arithmetic and the copy
// text. The window only shows this and routes the operator's actions to it.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "record/record_file_info.h"
#include "record/record_reader.h"

namespace recscope {

constexpr std::int32_t kInstantPageRecords = 1202;

// ---- Cell texts -------------------------------------------------------------

// A text record's seven-character value field: blanks trimmed; with the point
// taken out it is compared with "-32768", "32767" and "-32767" for the texts of
// the special values, otherwise it stands with `decimalChar` in place of the point.
std::string TextFieldValueText(std::string_view field, int inputType,
                               const std::string &decimalChar);

// A digital input's state: "1" when set, otherwise "0".
std::string DiText(int state);

// A raw value of an analog channel as the views show it: the special values as
// their texts, a logarithmic channel's value as mantissa and exponent, else with
// the channel's decimals.
std::string AnalogCell(const ChannelInfo &ch, std::int32_t raw, const std::string &decimalChar);

// The state of DI `diNumber` (1..8) in a binary record's DI word. With
// RecordType 0 the first value of the period is bit 2n-2 and the second bit
// 2n-1; with any other type bit 2n-2 gives both.
int DiStateOfWord(std::uint16_t word, int diNumber, int recordType, int unit);

// ---- Columns and tabs -------------------------------------------------------

// One value column of the grid: a channel (table index, analog first, then DI)
// and which of its values (0 the first or only one, 1 the second).
struct InstantColumn {
  int TableIndex = 0;
  int Unit = 0;
};

// The tabs of the window, as the trend window has them: groups 1 to 8 with
// members ("n:" and the group name) and group 9, "全体表示".
struct InstantTab {
  int GroupNo = 0;
  std::string Caption;
};
std::vector<InstantTab> InstantTabs(const RecordFileInfo &info);

// The first group with members (9 when none has).
int FirstGroupWithMembers(const RecordFileInfo &info);

// The columns of group `groupNo` (1..9, 9 all channels in table order): a
// channel or DI with RecordType 0 has two columns, minimum then maximum, any
// other one.
std::vector<InstantColumn> InstantColumnsOf(const RecordFileInfo &info, int groupNo);

// The two title rows of a column: "CH" or "DI" with the number in two digits,
// and the kind of value: "最小", "最大", "瞬時値" or "平均値".
std::string InstantTitle1(const RecordFileInfo &info, const InstantColumn &column);
std::string InstantTitle2(const RecordFileInfo &info, const InstantColumn &column);

// ---- Paging -----------------------------------------------------------------

// Record numbers of the page, 1-based in page coordinates: the file's first
// record is PageBase + 1.
struct InstantPage {
  std::int32_t PageBase = 0;
  std::int32_t PageFirst = 1;
  std::int32_t PageLast = 0;
};

// The page at the file's top, as the window opens.
InstantPage InstantFirstPage(std::int32_t recordCount);

// The buttons. Each returns true when it changed the page (PageLast is then
// PageFirst + 1201 cut at the file's end); false leaves the page as it was.
bool PageFillTop(InstantPage &page, std::int32_t recordCount);     // cmdFillTop
bool PageFillEnd(InstantPage &page, std::int32_t recordCount);     // cmdFillEnd
bool PageFillBefore(InstantPage &page, std::int32_t recordCount);  // cmdFillbefore
bool PageFillNext(InstantPage &page, std::int32_t recordCount);    // cmdFillnext

// Following a cursor on record index `index` (0-based).
struct FollowStep {
  bool Inside = false;   // false: the index is outside the file, nothing moves
  bool Refill = false;   // the page changed and has to be read again
  std::int32_t Row = 0;  // data row of the record in the page, 0-based
};
FollowStep PageFollowCursor(InstantPage &page, std::int32_t recordCount, std::int64_t index);

// The first data row shown when `row` is selected: five rows above it, or the first.
std::int32_t TopRowFor(std::int32_t row);

// The record index of a cursor time: (t - file start) \ period.
std::int64_t CursorRecordIndex(std::int64_t time, std::int64_t fileStart, std::int64_t period);

// ---- The page ---------------------------------------------------------------

// The formatted page (PageTable) with its titles. Column 0 is the time column;
// value columns are 1.. in the order of `Columns`.
struct InstantGrid {
  std::vector<InstantColumn> Columns;
  std::vector<std::string> Title1;              // "時刻", then one a value column
  std::vector<std::string> Title2;              // "", then one a value column
  std::vector<std::int32_t> Times;              // the record time of each row
  std::vector<std::vector<std::string>> Cells;  // rows x (1 + columns), time first
};

// The copy of rows `rowFrom`..`rowTo` and value columns `colFrom`..`colTo`
// (1-based, in grid columns): each row begins with its time; with `withTitles`
// the two title rows of the same columns come first. Each cell is followed by a
// tab and each row by `rowEnd`.
std::string InstantCopyText(const InstantGrid &grid, int rowFrom, int rowTo, int colFrom, int colTo,
                            bool withTitles, const std::string &rowEnd = "\r");

// The whole grid with its titles.
std::string InstantWholeGridText(const InstantGrid &grid, const std::string &rowEnd = "\r");

// Opens the record file for one read; the default opens `FilePath`.
using RecordOpener = std::function<std::unique_ptr<ByteSource>(const std::string &path)>;

// The state of one instant value window: its group, its page and the page read
// and formatted. The record info must outlive it.
class InstantValues {
 public:
  InstantValues(const RecordFileInfo &info, std::string decimalChar, int dateFormatNo,
                RecordOpener opener = {});

  const RecordFileInfo &info() const { return info_; }
  const InstantPage &page() const { return page_; }
  const InstantGrid &grid() const { return grid_; }
  int group() const { return group_; }
  // The selected data row (0-based) and the first row shown.
  std::int32_t row() const { return row_; }
  std::int32_t topRow() const { return topRow_; }
  // How many times the record file has been read.
  int readCount() const { return reads_; }
  // The last fill read its records (false: the file was short or gone).
  bool lastFillRead() const { return lastRead_; }

  // EGroupChange: the columns and titles of the group, and the page refilled.
  void SetGroup(int groupNo);
  // The four paging buttons; true when the page changed and was refilled.
  bool FillTop();
  bool FillEnd();
  bool FillBefore();
  bool FillNext();
  // The trend's cursor on record `index`: the selection moves to it, reading
  // the file only when the record is outside the page. False when outside the file.
  bool FollowCursor(std::int64_t index);
  // The date format or decimal character changed: the page is formatted again.
  void SetFormat(std::string decimalChar, int dateFormatNo);
  // FillCells: reads PageFirst..PageLast from the record file and formats them.
  bool FillCells();

 private:
  bool Refilled(bool changed);

  const RecordFileInfo &info_;
  std::string decimalChar_;
  int dateFormatNo_;
  RecordOpener opener_;
  InstantPage page_;
  InstantGrid grid_;
  int group_ = 1;
  std::int32_t row_ = 0;
  std::int32_t topRow_ = 0;
  int reads_ = 0;
  bool lastRead_ = false;
};

// The records `first`..`last` (1-based) of the file, one after the other, read
// with one read; false (and `out` empty) when any of them lies beyond the file.
bool ReadRecordRange(const ByteSource &source, const RecordFileInfo &info, std::int32_t first,
                     std::int32_t last, std::string &out);

// FillCellsBinary and FillCellsText: the rows of `count` records lying one after
// the other in `records`, formatted into `grid` (whose Columns are set).
void FillCellsBinary(const RecordFileInfo &info, std::string_view records, std::int32_t count,
                     const std::string &decimalChar, int dateFormatNo, InstantGrid &grid);
void FillCellsText(const RecordFileInfo &info, std::string_view records, std::int32_t count,
                   const std::string &decimalChar, int dateFormatNo, InstantGrid &grid);

}  // namespace recscope
