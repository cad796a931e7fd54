// The instant value list without a window: cell texts of every value kind,
// the columns of a group, the paging of 1202-record pages, following a cursor,
// the copy texts, and the reads of the record file in both encodings.
#include "views/instant_values.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "../record/record_fixture.h"
#include "record/record_reader.h"
#include "record/record_writer.h"
#include "record/value_text.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"

namespace recscope {
namespace {

using testing_support::MakeInfo;
using testing_support::RecordBytes;

const std::int32_t kFirst = static_cast<std::int32_t>(FromCivil({2024, 3, 1, 8, 0, 0}));

// A record family in memory, read back as the open does, with a source that
// counts its openings.
struct MemoryRecord {
  std::string bytes;
  RecordFileInfo info;
  int opened = 0;
  bool gone = false;

  MemoryRecord(const RecordFileInfo &shape, int format, const std::vector<DataRecord> &records) {
    bytes = RecordBytes(shape, format, records);
    std::int32_t period = 1;
    EXPECT_EQ(ReadRecordBytes(bytes, info, period), -1);
  }
  RecordOpener opener() {
    return [this](const std::string &) -> std::unique_ptr<ByteSource> {
      ++opened;
      if (gone) return nullptr;
      return std::make_unique<MemorySource>(bytes);
    };
  }
};

// Records whose first unit counts the record (1-based) and whose other units
// are fixed, so that a row tells which record it shows.
std::vector<DataRecord> CountingRecords(const RecordFileInfo &info, int count) {
  std::vector<DataRecord> records;
  const int units = AnalogUnitCount(info);
  for (int r = 0; r < count; ++r) {
    DataRecord d;
    d.Time = kFirst + 10 * r;
    d.Units.assign(static_cast<size_t>(units), 0);
    d.Units[0] = static_cast<std::int16_t>((r + 1) % 30000);
    for (int u = 1; u < units; ++u)
      d.Units[static_cast<size_t>(u)] = static_cast<std::int16_t>(u * 10);
    records.push_back(d);
  }
  return records;
}

// A description as the reader leaves it: the counts match the tables.
RecordFileInfo Counted(RecordFileInfo info) {
  info.AnalogCount = static_cast<std::int16_t>(info.Channels.size());
  info.DiCount = static_cast<std::int16_t>(info.Dis.size());
  info.ChannelTotal = static_cast<std::int16_t>(info.AnalogCount + info.DiCount);
  return info;
}

RecordFileInfo OneChannelShape() {
  RecordFileInfo shape = MakeInfo(1, 0);
  shape.Channels[0].RecordType = 1;
  shape.Channels[0].Decimals = 0;
  return shape;
}

// ---- Cell texts -------------------------------------------------------------

TEST(InstantValueText, MinusMaxWithInputType30IsAbnormal) {
  EXPECT_EQ(ValueText(-32768, 1, 30), "ｲｼﾞｮｳ");
  EXPECT_EQ(ValueText(-32768, 1, 34), "ｲｼﾞｮｳ");
  EXPECT_EQ(GetMessageText(19309), "ｲｼﾞｮｳ");
}

TEST(InstantValueText, MinusMaxWithOtherInputTypeIsBurnout) {
  EXPECT_EQ(ValueText(-32768, 1, 29), "ﾊﾞｰﾝｱｳﾄ");
  EXPECT_EQ(ValueText(-32768, 2, 35), "ﾊﾞｰﾝｱｳﾄ");
  EXPECT_EQ(ValueText(-32768, 0, 1), "ﾊﾞｰﾝｱｳﾄ");
}

TEST(InstantValueText, OverAndUnderRange) {
  EXPECT_EQ(ValueText(32767, 1, 1), "ｵｰﾊﾞｰ");
  EXPECT_EQ(ValueText(-32767, 3, 30), "ｱﾝﾀﾞｰ");
}

TEST(InstantValueText, ChannelWithDecimalsZeroShowsTheNumberAsIs) {
  EXPECT_EQ(ValueText(1234, 0, 1), "1234");
  EXPECT_EQ(ValueText(-7, 0, 1), "-7");
  EXPECT_EQ(ValueText(0, 0, 1), "0");
}

TEST(InstantValueText, OneToFourDecimalsKeepTheirZeros) {
  EXPECT_EQ(ValueText(5, 1, 1), "0.5");  // ####0.0
  EXPECT_EQ(ValueText(-5, 1, 1), "-0.5");
  EXPECT_EQ(ValueText(12345, 2, 1), "123.45");  // ###0.00
  EXPECT_EQ(ValueText(7, 2, 1), "0.07");
  EXPECT_EQ(ValueText(-1, 3, 1), "-0.001");     // ##0.000
  EXPECT_EQ(ValueText(32766, 4, 1), "3.2766");  // #0.0000
  EXPECT_EQ(ValueText(150, 1, 1, ","), "15,0");
}

TEST(InstantValueText, OtherDecimalCountsGiveTheRawNumber) {
  EXPECT_EQ(ValueText(12345, 5, 1), "12345");
  EXPECT_EQ(ValueText(-12, 9, 1), "-12");
}

TEST(InstantValueText, TextFieldSpecialValuesComparedWithoutThePoint) {
  EXPECT_EQ(TextFieldValueText("-3276.8", 30, "."), "ｲｼﾞｮｳ");
  EXPECT_EQ(TextFieldValueText("-32.768", 1, "."), "ﾊﾞｰﾝｱｳﾄ");
  EXPECT_EQ(TextFieldValueText("  32767", 1, "."), "ｵｰﾊﾞｰ");
  EXPECT_EQ(TextFieldValueText("-327.67", 1, "."), "ｱﾝﾀﾞｰ");
}

TEST(InstantValueText, TextFieldStandsWithTheDecimalCharacter) {
  EXPECT_EQ(TextFieldValueText("  12.34", 1, "."), "12.34");
  EXPECT_EQ(TextFieldValueText("  12.34", 1, ","), "12,34");
  EXPECT_EQ(TextFieldValueText("   -0.5", 1, ","), "-0,5");
  EXPECT_EQ(TextFieldValueText("    120", 1, ","), "120");
}

TEST(InstantValueText, DiWordBitsFollowTheRecordType) {
  // DI 2: bits 2 and 3.
  EXPECT_EQ(DiStateOfWord(0b0100, 2, 0, 0), 1);
  EXPECT_EQ(DiStateOfWord(0b0100, 2, 0, 1), 0);
  EXPECT_EQ(DiStateOfWord(0b1000, 2, 0, 1), 1);
  // Any other type: bit 2n-2 alone gives the state.
  EXPECT_EQ(DiStateOfWord(0b1000, 2, 1, 0), 0);
  EXPECT_EQ(DiStateOfWord(0b0100, 2, 1, 0), 1);
  EXPECT_EQ(DiText(1), "1");
  EXPECT_EQ(DiText(0), "0");
}

// ---- Columns ----------------------------------------------------------------

TEST(InstantColumns, MinMaxChannelsAndDiOfTypeZeroHaveTwoColumns) {
  RecordFileInfo info =
      Counted(MakeInfo(3, 2));  // CH1 type 0, CH2, CH3 type 1; DI1 type 0, DI2 type 1
  info.Channels[2].RecordType = 2;
  info.Groups[0].Members = {1, 2, 3, 129, 130, 0, 0, 0, 0, 0};
  const std::vector<InstantColumn> columns = InstantColumnsOf(info, 1);
  ASSERT_EQ(columns.size(), 7u);
  std::vector<std::string> t1, t2;
  for (const InstantColumn &c : columns) {
    t1.push_back(InstantTitle1(info, c));
    t2.push_back(InstantTitle2(info, c));
  }
  EXPECT_EQ(t1, (std::vector<std::string>{"CH01", "CH01", "CH02", "CH03", "DI01", "DI01", "DI02"}));
  EXPECT_EQ(
      t2, (std::vector<std::string>{"最小", "最大", "瞬時値", "平均値", "最小", "最大", "瞬時値"}));
}

TEST(InstantColumns, GroupNineHoldsAllChannelsInTableOrder) {
  RecordFileInfo info = Counted(MakeInfo(2, 1));
  info.Groups[0].Members = {129, 2, 0, 0, 0, 0, 0, 0, 0, 0};
  const std::vector<InstantColumn> group1 = InstantColumnsOf(info, 1);
  ASSERT_EQ(group1.size(), 3u);
  EXPECT_EQ(group1[0].TableIndex, 2);  // the DI first, in the group's order
  const std::vector<InstantColumn> all = InstantColumnsOf(info, 9);
  ASSERT_EQ(all.size(), 5u);  // CH1 x2, CH2, DI1 x2
  EXPECT_EQ(all[0].TableIndex, 0);
  EXPECT_EQ(all[2].TableIndex, 1);
  EXPECT_EQ(all[4].TableIndex, 2);
}

TEST(InstantColumns, TabsSkipEmptyGroupsAndEndWithAllChannels) {
  RecordFileInfo info = Counted(MakeInfo(2, 0));
  info.Groups[0].Members = {};
  info.Groups[2].GroupName = "THIRD";
  info.Groups[2].Members[0] = 2;
  const std::vector<InstantTab> tabs = InstantTabs(info);
  ASSERT_EQ(tabs.size(), 2u);
  EXPECT_EQ(tabs[0].GroupNo, 3);
  EXPECT_EQ(tabs[0].Caption, "3:THIRD");
  EXPECT_EQ(tabs[1].GroupNo, 9);
  EXPECT_EQ(tabs[1].Caption, GetMessageText(10604));
  EXPECT_EQ(FirstGroupWithMembers(info), 3);
}

// ---- Paging -----------------------------------------------------------------

TEST(InstantPaging, FileOfExactly1202RecordsHasOnePageAndNextDoesNothing) {
  InstantPage page = InstantFirstPage(1202);
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 1202);
  EXPECT_FALSE(PageFillNext(page, 1202));
  EXPECT_FALSE(PageFillEnd(page, 1202));
  EXPECT_FALSE(PageFillBefore(page, 1202));
  EXPECT_FALSE(PageFillTop(page, 1202));
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 1202);
}

TEST(InstantPaging, ShortFileHasOnePageOfItsRecords) {
  InstantPage page = InstantFirstPage(37);
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 37);
  EXPECT_FALSE(PageFillNext(page, 37));
}

TEST(InstantPaging, NextAndBeforeStepBy1202AndStopAtTheEnds) {
  InstantPage page = InstantFirstPage(3000);
  ASSERT_TRUE(PageFillNext(page, 3000));
  EXPECT_EQ(page.PageFirst, 1203);
  EXPECT_EQ(page.PageLast, 2404);
  ASSERT_TRUE(PageFillNext(page, 3000));
  EXPECT_EQ(page.PageFirst, 2405);
  EXPECT_EQ(page.PageLast, 3000);  // cut at the file's end
  EXPECT_FALSE(PageFillNext(page, 3000));
  ASSERT_TRUE(PageFillBefore(page, 3000));
  EXPECT_EQ(page.PageFirst, 1203);
  ASSERT_TRUE(PageFillEnd(page, 3000));
  EXPECT_EQ(page.PageFirst, 1799);
  EXPECT_EQ(page.PageLast, 3000);
  ASSERT_TRUE(PageFillBefore(page, 3000));
  EXPECT_EQ(page.PageFirst, 597);
  EXPECT_EQ(page.PageLast, 1798);
  ASSERT_TRUE(PageFillBefore(page, 3000));
  EXPECT_EQ(page.PageFirst, 1);  // not below the file's top
  EXPECT_EQ(page.PageLast, 1202);
  EXPECT_FALSE(PageFillBefore(page, 3000));
  EXPECT_FALSE(PageFillTop(page, 3000));
}

TEST(InstantPaging, BeforeFromTheMiddleStopsAtTheTop) {
  InstantPage page = InstantFirstPage(3000);
  page.PageFirst = 500;
  page.PageLast = 1701;
  ASSERT_TRUE(PageFillBefore(page, 3000));
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 1202);
}

TEST(InstantPaging, EndOfAShortFileIsItsTop) {
  InstantPage page = InstantFirstPage(800);
  EXPECT_FALSE(PageFillEnd(page, 800));
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 800);
}

// ---- Following a cursor -------------------------------------------------------

TEST(InstantFollow, CursorOnTheLastRecordRunsThePageToTheEndAndKeepsIt1202Long) {
  InstantPage page = InstantFirstPage(5000);
  const FollowStep step = PageFollowCursor(page, 5000, 4999);
  EXPECT_TRUE(step.Inside);
  EXPECT_TRUE(step.Refill);
  EXPECT_EQ(page.PageLast, 5000);
  EXPECT_EQ(page.PageFirst, 5000 - 1201);
  EXPECT_EQ(page.PageLast - page.PageFirst + 1, 1202);
  EXPECT_EQ(step.Row, 1201);
  EXPECT_EQ(TopRowFor(step.Row), 1196);
}

TEST(InstantFollow, CursorOutsideThePageCentresIt) {
  InstantPage page = InstantFirstPage(10000);
  const FollowStep step = PageFollowCursor(page, 10000, 4999);  // record 5000
  EXPECT_TRUE(step.Refill);
  EXPECT_EQ(page.PageFirst, 5000 - 601);
  EXPECT_EQ(page.PageLast, 5000 - 601 + 1201);
  EXPECT_EQ(step.Row, 601);
}

TEST(InstantFollow, CursorNearTheTopStartsThePageAtTheTop) {
  InstantPage page = InstantFirstPage(10000);
  page.PageFirst = 5000;
  page.PageLast = 6201;
  const FollowStep step = PageFollowCursor(page, 10000, 3);
  EXPECT_TRUE(step.Refill);
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 1202);
  EXPECT_EQ(step.Row, 3);
  EXPECT_EQ(TopRowFor(3), 0);  // fewer than five rows above: the first row
}

TEST(InstantFollow, CursorInsideThePageOnlyMovesTheSelection) {
  InstantPage page = InstantFirstPage(10000);
  const FollowStep step = PageFollowCursor(page, 10000, 700);
  EXPECT_TRUE(step.Inside);
  EXPECT_FALSE(step.Refill);
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(step.Row, 700);
  EXPECT_EQ(TopRowFor(700), 695);
}

TEST(InstantFollow, CursorOutsideTheFileDoesNothing) {
  InstantPage page = InstantFirstPage(100);
  EXPECT_FALSE(PageFollowCursor(page, 100, 100).Inside);
  EXPECT_FALSE(PageFollowCursor(page, 100, -1).Inside);
  EXPECT_EQ(page.PageFirst, 1);
  EXPECT_EQ(page.PageLast, 100);
}

TEST(InstantFollow, RecordIndexOfACursorTime) {
  EXPECT_EQ(CursorRecordIndex(kFirst + 10 * 57, kFirst, 10), 57);
  EXPECT_EQ(CursorRecordIndex(kFirst, kFirst, 10), 0);
}

// ---- Pages read from the record file ----------------------------------------

TEST(InstantPages, PagesOf1202RecordsReadFromTheFile) {
  MemoryRecord record(OneChannelShape(), 2, CountingRecords(OneChannelShape(), 3000));
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  ASSERT_EQ(values.grid().Cells.size(), 1202u);
  EXPECT_EQ(values.grid().Cells[0][1], "1");
  EXPECT_EQ(values.grid().Cells[1201][1], "1202");
  EXPECT_EQ(values.grid().Cells[0][0], "2024/03/01 08:00:00");
  ASSERT_TRUE(values.FillNext());
  EXPECT_EQ(values.grid().Cells[0][1], "1203");
  EXPECT_EQ(values.grid().Cells.size(), 1202u);
  ASSERT_TRUE(values.FillNext());
  ASSERT_EQ(values.grid().Cells.size(), 3000u - 2404u);
  EXPECT_EQ(values.grid().Cells.back()[1], "3000");
  const int reads = values.readCount();
  EXPECT_FALSE(values.FillNext());
  EXPECT_EQ(values.readCount(), reads);  // nothing is redone
  ASSERT_TRUE(values.FillEnd());
  EXPECT_EQ(values.grid().Cells.size(), 1202u);
  EXPECT_EQ(values.grid().Cells[0][1], "1799");
  EXPECT_EQ(values.grid().Times.back(), kFirst + 10 * 2999);
  EXPECT_EQ(values.row(), 0);
  EXPECT_EQ(values.topRow(), 0);
}

TEST(InstantPages, SelectionMoveInsideThePageReadsNothing) {
  MemoryRecord record(OneChannelShape(), 2, CountingRecords(OneChannelShape(), 5000));
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  const int opened = record.opened;
  const int reads = values.readCount();
  record.gone = true;  // the file is gone: a selection move must not notice
  ASSERT_TRUE(values.FollowCursor(900));
  EXPECT_EQ(values.row(), 900);
  EXPECT_EQ(values.topRow(), 895);
  EXPECT_EQ(record.opened, opened);
  EXPECT_EQ(values.readCount(), reads);
  EXPECT_EQ(values.grid().Cells[900][1], "901");
  // Leaving the page reads it.
  record.gone = false;
  ASSERT_TRUE(values.FollowCursor(4999));
  EXPECT_EQ(values.readCount(), reads + 1);
  EXPECT_EQ(values.grid().Cells[static_cast<size_t>(values.row())][1], "5000");
}

TEST(InstantPages, SelectionMoveWithTheRecordFileRemovedFromDisk) {
  testing_support::TempFolder folder;
  const std::string path = folder.Path("SMOVE.FDT");
  MemoryRecord record(OneChannelShape(), 2, CountingRecords(OneChannelShape(), 3000));
  ASSERT_TRUE(WriteWholeFile(path, record.bytes));
  record.info.FilePath = path;
  InstantValues values(record.info, ".", 1);  // reads the file on disk
  values.SetGroup(1);
  ASSERT_TRUE(values.lastFillRead());
  std::filesystem::remove(path);
  ASSERT_TRUE(values.FollowCursor(1000));
  EXPECT_EQ(values.row(), 1000);
  EXPECT_EQ(values.grid().Cells[1000][1], "1001");
  // A page that has to be read now finds nothing, and says so.
  values.FollowCursor(2500);
  EXPECT_FALSE(values.lastFillRead());
  EXPECT_TRUE(values.grid().Cells.empty());
}

TEST(InstantPages, ShortFileGivesNoRowsInsteadOfReadingPastItsEnd) {
  MemoryRecord record(OneChannelShape(), 2, CountingRecords(OneChannelShape(), 100));
  record.bytes.resize(record.bytes.size() - 10);  // the last record cut
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  EXPECT_FALSE(values.lastFillRead());
  EXPECT_TRUE(values.grid().Cells.empty());
}

TEST(InstantPages, ReadRecordRangeChecksEveryLimit) {
  MemoryRecord record(OneChannelShape(), 2, CountingRecords(OneChannelShape(), 10));
  MemorySource source(record.bytes);
  std::string out;
  EXPECT_TRUE(ReadRecordRange(source, record.info, 1, 10, out));
  EXPECT_EQ(out.size(), 10u * static_cast<size_t>(record.info.RecordLength));
  EXPECT_FALSE(ReadRecordRange(source, record.info, 0, 10, out));
  EXPECT_FALSE(ReadRecordRange(source, record.info, 2, 11, out));
  EXPECT_FALSE(ReadRecordRange(source, record.info, 5, 4, out));
  EXPECT_TRUE(out.empty());
}

// A record of every kind of cell: a min/max channel, a log channel, a channel
// of 0 decimals with InputType 30, an average channel with 3 decimals, DI 1 of
// two states and DI 2 of one.
RecordFileInfo EveryKindShape() {
  RecordFileInfo shape = MakeInfo(4, 2);
  shape.Channels[0].RecordType = 0;
  shape.Channels[1].ScaleKind = 1;
  shape.Channels[1].RangeLow = 0;
  shape.Channels[1].RangeHigh = 100;
  shape.Channels[1].ExponentLow = -3;
  shape.Channels[1].ExponentHigh = -2;
  shape.Channels[1].ScaleLow = -3;
  shape.Channels[1].ScaleHigh = -2;
  shape.Channels[2].Decimals = 0;
  shape.Channels[2].InputType = 30;
  shape.Channels[3].RecordType = 2;
  shape.Channels[3].Decimals = 3;
  shape.Channels[3].RangeHigh = 30;  // ranges and alarms that 16 bits hold at 3 decimals
  shape.Channels[3].AlarmValue = {1.5, 2.5, 0, 0};
  shape.Groups[0].Members = {1, 2, 3, 4, 129, 130, 0, 0, 0, 0};
  return shape;
}

std::vector<DataRecord> EveryKindRecords() {
  std::vector<DataRecord> records(3);
  // units: CH1 min, CH1 max, CH2 (log), CH3, CH4
  records[0] = {kFirst, {-12, 345, 500, 17, 1234}, {1, 0, 1, 1}};
  records[1] = {kFirst + 10, {-32768, 32767, -32767, -32768, -5}, {0, 1, 0, 0}};
  records[2] = {kFirst + 20, {0, 1, 1000, 0, 32766}, {1, 1, 0, 0}};
  return records;
}

const std::vector<std::vector<std::string>> kEveryKindCells = {
    {"2024/03/01 08:00:00", "-1.2", "34.5", "3.16E-3", "17", "1.234", "1", "0", "1"},
    {"2024/03/01 08:00:10", "ﾊﾞｰﾝｱｳﾄ", "ｵｰﾊﾞｰ", "ｱﾝﾀﾞｰ", "ｲｼﾞｮｳ", "-0.005", "0", "1", "0"},
    {"2024/03/01 08:00:20", "0.0", "0.1", "1.00E-2", "0", "32.766", "1", "1", "0"},
};

TEST(InstantPages, FillCellsBinaryShowsEveryKindOfValue) {
  MemoryRecord record(EveryKindShape(), 2, EveryKindRecords());
  ASSERT_EQ(record.info.FileFormat, 2);
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  EXPECT_EQ(values.grid().Cells, kEveryKindCells);
  EXPECT_EQ(values.grid().Title1, (std::vector<std::string>{"時刻", "CH01", "CH01", "CH02", "CH03",
                                                            "CH04", "DI01", "DI01", "DI02"}));
  EXPECT_EQ(values.grid().Title2, (std::vector<std::string>{"", "最小", "最大", "瞬時値", "瞬時値",
                                                            "平均値", "最小", "最大", "瞬時値"}));
}

TEST(InstantPages, FillCellsTextShowsTheSameCellsInBothTextEncodings) {
  for (int format : {1, 0}) {
    RecordFileInfo shape = EveryKindShape();
    if (format == 0) {  // the older text encoding has no digital inputs
      shape.Dis.clear();
      shape.Groups[0].Members = {1, 2, 3, 4, 0, 0, 0, 0, 0, 0};
    }
    MemoryRecord record(shape, format, EveryKindRecords());
    ASSERT_EQ(record.info.FileFormat, format);
    InstantValues values(record.info, ".", 1, record.opener());
    values.SetGroup(1);
    std::vector<std::vector<std::string>> expected = kEveryKindCells;
    if (format == 0)
      for (auto &row : expected) row.resize(6);
    EXPECT_EQ(values.grid().Cells, expected) << "format " << format;
  }
}

TEST(InstantPages, DecimalCharacterAndDateFormatReachTheCells) {
  for (int format : {2, 1}) {
    MemoryRecord record(EveryKindShape(), format, EveryKindRecords());
    InstantValues values(record.info, ",", 2, record.opener());
    values.SetGroup(1);
    EXPECT_EQ(values.grid().Cells[0][0], "01/03/2024 08:00:00");
    EXPECT_EQ(values.grid().Cells[0][1], "-1,2");
    EXPECT_EQ(values.grid().Cells[0][3], "3,16E-3");
    EXPECT_EQ(values.grid().Cells[0][5], "1,234");
    values.SetFormat(".", 1);
    EXPECT_EQ(values.grid().Cells[0][1], "-1.2");
  }
}

TEST(InstantPages, GroupChangeBuildsColumnsAndRefills) {
  MemoryRecord record(EveryKindShape(), 2, EveryKindRecords());
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  record.info.Groups[1].Members = {4, 130, 0, 0, 0, 0, 0, 0, 0, 0};
  values.SetGroup(2);
  EXPECT_EQ(values.group(), 2);
  EXPECT_EQ(values.grid().Cells[1],
            (std::vector<std::string>{"2024/03/01 08:00:10", "-0.005", "0"}));
}

// ---- Copy -------------------------------------------------------------------

TEST(InstantCopy, SelectionWithoutTitles) {
  MemoryRecord record(EveryKindShape(), 2, EveryKindRecords());
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  const std::string text = InstantCopyText(values.grid(), 1, 2, 2, 4, false);
  EXPECT_EQ(text,
            "2024/03/01 08:00:10\tｵｰﾊﾞｰ\tｱﾝﾀﾞｰ\tｲｼﾞｮｳ\t\r"
            "2024/03/01 08:00:20\t0.1\t1.00E-2\t0\t\r");
}

TEST(InstantCopy, SelectionWithTitlesPutsTheTitleRowsFirst) {
  MemoryRecord record(EveryKindShape(), 2, EveryKindRecords());
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  const std::string text = InstantCopyText(values.grid(), 0, 0, 6, 8, true);
  EXPECT_EQ(text,
            "時刻\tDI01\tDI01\tDI02\t\r"
            "\t最小\t最大\t瞬時値\t\r"
            "2024/03/01 08:00:00\t1\t0\t1\t\r");
}

TEST(InstantCopy, ReversedSelectionIsTakenInOrder) {
  MemoryRecord record(EveryKindShape(), 2, EveryKindRecords());
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  EXPECT_EQ(InstantCopyText(values.grid(), 2, 1, 4, 2, false),
            InstantCopyText(values.grid(), 1, 2, 2, 4, false));
}

TEST(InstantCopy, WholeGridWithNewlines) {
  MemoryRecord record(OneChannelShape(), 2, CountingRecords(OneChannelShape(), 2));
  InstantValues values(record.info, ".", 1, record.opener());
  values.SetGroup(1);
  EXPECT_EQ(InstantWholeGridText(values.grid(), "\n"),
            "時刻\tCH01\t\n"
            "\t瞬時値\t\n"
            "2024/03/01 08:00:00\t1\t\n"
            "2024/03/01 08:00:10\t2\t\n");
}

}  // namespace
}  // namespace recscope
