// Reports: the statistics table gathered from the working files of small
// records made here, the keys and cells of the template, the sheet, the CSV and
// its failures. Expected values are worked out by hand from the records' units.
#include "totalize/report.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>

#include "../record/record_fixture.h"
#include "platform/text_encoding.h"
#include "record/open_record.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"
#include "shell/shared_state.h"
#include "totalize/report_templates.h"

namespace recscope {
namespace {

using testing_support::MakeInfo;
using testing_support::RecordBytes;
using testing_support::TempFolder;

const std::string kPlace = "       -   ";
const std::string kIjou = "ｲｼﾞｮｳ";

std::int64_t At(const char *text) { return *ParseRecordTime(text); }

// Unit u of record r (channel 1 has units 0 and 1, its minimum and maximum).
using Units = std::function<std::int16_t(int r, int u)>;

class ReportTest : public ::testing::Test {
 public:
  void SetUp() override {
    state = std::make_unique<SharedState>();
    ResetSharedState(*state);
    std::filesystem::create_directories(folder.Path("home"));
    state->ProgramFolder = folder.Path("home");
  }
  void TearDown() override {
    for (int s = 1; s <= 16; ++s)
      if (state->Slot(s).InUse()) CloseRecordSlot(*state, s);
  }

  // Opens a binary record of `analog` channels (channel 1 of two units, the
  // others of one) with `count` records from `first`, `samplingCode` apart.
  int Open(int analog, int samplingCode, std::int64_t first, int count, const Units &unit,
           const std::function<void(RecordFileInfo &)> &adjust = {}) {
    RecordFileInfo info = MakeInfo(analog, 0);
    info.SamplingCode = static_cast<std::int16_t>(samplingCode);
    if (adjust) adjust(info);
    const std::int32_t period = SamplePeriodOfCode(samplingCode, 10);
    std::vector<DataRecord> records;
    for (int r = 0; r < count; ++r) {
      DataRecord d;
      d.Time = static_cast<std::int32_t>(first + static_cast<std::int64_t>(r) * period);
      for (int u = 0; u < analog + 1; ++u) d.Units.push_back(unit(r, u));
      records.push_back(d);
    }
    const std::string path = folder.Path("STEST01.FDT");
    EXPECT_TRUE(WriteWholeFile(path, RecordBytes(info, 2, records)));
    const OpenOutcome outcome = OpenRecordFile(*state, path);
    EXPECT_TRUE(outcome.opened) << outcome.messageId;
    return outcome.slot;
  }

  int Gather(int slot, int type, std::int64_t base) {
    return GatherChohyoTable(state->Slot(slot).Record, state->ProgramFolder, slot,
                             state->Slot(slot).Period(), type, base, table);
  }

  ChohyoContext Context(int slot) const {
    ChohyoContext c;
    c.Info = &state->Slot(slot).Record;
    c.Table = &table;
    c.Cycle = state->Slot(slot).Period();
    c.DateFormatNo = 1;
    c.DecimalChar = ".";
    c.Now = At("2026/11/22 10:00:05");
    return c;
  }

  std::string Key(int slot, const std::string &key, int offset = 0) const {
    return EvaluateChohyoKey(key, offset, Context(slot));
  }

  std::string WriteTemplate(const std::string &name, const std::string &utf8) {
    const std::string path = folder.Path(name);
    EXPECT_TRUE(WriteWholeFile(path, Utf8ToCp932(utf8)));
    return path;
  }

  TempFolder folder;
  std::unique_ptr<SharedState> state;
  ChohyoTable table;
};

// A day of minute samples from 01:30 to 22:59 of 2024/03/04. Channel 1 has
// minimum m and maximum m + 1000 for the minute m of the day, with a peak of
// 5000 at 03:17 and a dip of -50 at 03:41; channel 2 holds 300, with 450 at
// 03:05, 120 at 03:50 and the over-range mark at 05:00.
int OpenMinuteDay(ReportTest &t) {
  return t.Open(2, 7, At("2024/03/04 01:30:00"), 1290, [](int r, int u) -> std::int16_t {
    const int m = 90 + r;
    if (u == 0) return static_cast<std::int16_t>(m == 221 ? -50 : m);
    if (u == 1) return static_cast<std::int16_t>(m == 197 ? 5000 : m + 1000);
    if (m == 185) return 450;
    if (m == 230) return 120;
    if (m == 300) return 32767;
    return 300;
  });
}

TEST_F(ReportTest, PeriodsAndBinsOfTheThreeTypes) {
  const std::int64_t t = At("2024/02/10 13:45:10");
  EXPECT_EQ(ReportPeriodStart(kDailyReport, t), At("2024/02/10 00:00:00"));
  EXPECT_EQ(ReportPeriodStart(kMonthlyReport, t), At("2024/02/01 00:00:00"));
  EXPECT_EQ(ReportPeriodStart(kAnnualReport, t), At("2024/01/01 00:00:00"));
  EXPECT_EQ(ReportBinCount(kDailyReport, t), 24);
  EXPECT_EQ(ReportBinCount(kMonthlyReport, t), 29);
  EXPECT_EQ(ReportBinCount(kMonthlyReport, At("2023/02/10 00:00:00")), 28);
  EXPECT_EQ(ReportBinCount(kMonthlyReport, At("2023/12/31 23:59:59")), 31);
  EXPECT_EQ(ReportBinCount(kAnnualReport, t), 12);
  EXPECT_EQ(ReportBinStart(kAnnualReport, At("2024/01/01 00:00:00"), 2), At("2024/03/01 00:00:00"));
  EXPECT_EQ(ReportBinStart(kAnnualReport, At("2024/01/01 00:00:00"), 12),
            At("2025/01/01 00:00:00"));
  EXPECT_EQ(ReportTypeName(kDailyReport), "日報");
  EXPECT_EQ(ReportTypeName(kMonthlyReport), "月報");
  EXPECT_EQ(ReportTypeName(kAnnualReport), "年報");
}

TEST_F(ReportTest, DailyTableHoldsEachHoursStatisticsAndTheDaysTotal) {
  const int slot = OpenMinuteDay(*this);
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 12:00:00")), 0);
  ASSERT_EQ(table.Bins, 24);
  ASSERT_EQ(table.Channels, 2);
  // Hour 0 lies before the first data, hour 23 after the last: empty.
  EXPECT_EQ(table.At(0, 1).MaxTime, 0);
  EXPECT_EQ(table.At(23, 1).MaxTime, 0);
  // Hour 1 is clipped to 01:30.
  const ChohyoCell &h1 = table.At(1, 1);
  EXPECT_EQ(h1.Pv, 590);
  EXPECT_EQ(h1.Max, 1119);
  EXPECT_EQ(h1.MaxTime, At("2024/03/04 01:59:00"));
  EXPECT_EQ(h1.Min, 90);
  EXPECT_EQ(h1.MinTime, At("2024/03/04 01:30:00"));
  EXPECT_EQ(h1.Sum, 36270);
  EXPECT_EQ(h1.Count, 60);
  const ChohyoCell &h3 = table.At(3, 1);
  EXPECT_EQ(h3.Pv, 680);
  EXPECT_EQ(h3.Max, 5000);
  EXPECT_EQ(h3.MaxTime, At("2024/03/04 03:17:00"));
  EXPECT_EQ(h3.Min, -50);
  EXPECT_EQ(h3.MinTime, At("2024/03/04 03:41:00"));
  EXPECT_EQ(h3.Sum, 88672);
  EXPECT_EQ(h3.Count, 120);
  const ChohyoCell &c2 = table.At(3, 2);
  EXPECT_EQ(c2.Max, 450);
  EXPECT_EQ(c2.MaxTime, At("2024/03/04 03:05:00"));
  EXPECT_EQ(c2.Min, 120);
  EXPECT_EQ(c2.MinTime, At("2024/03/04 03:50:00"));
  EXPECT_EQ(c2.Sum, 17970);
  EXPECT_EQ(c2.Count, 60);
  // The whole day.
  const ChohyoCell &day = table.At(24, 1);
  EXPECT_EQ(day.Pv, 590);
  EXPECT_EQ(day.Max, 5000);
  EXPECT_EQ(day.Min, -50);
  EXPECT_EQ(day.Sum, 3188542);
  EXPECT_EQ(day.Count, 2580);
  const ChohyoCell &day2 = table.At(24, 2);
  EXPECT_EQ(day2.Max, 32767);
  EXPECT_EQ(day2.MaxTime, At("2024/03/04 05:00:00"));
  EXPECT_EQ(day2.Sum, 386670);
  EXPECT_EQ(day2.Count, 1289);
}

TEST_F(ReportTest, ValueKeysGiveTheCellTexts) {
  const int slot = OpenMinuteDay(*this);
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 01:30:00")), 0);
  EXPECT_EQ(Key(slot, "D0304C01PV"), "68.0");
  EXPECT_EQ(Key(slot, "D0304C01MX"), "500.0");
  EXPECT_EQ(Key(slot, "D0304C01TX"), "2024/03/04 03:17:00");
  EXPECT_EQ(Key(slot, "D0304C01MI"), "-5.0");
  EXPECT_EQ(Key(slot, "D0304C01TI"), "2024/03/04 03:41:00");
  EXPECT_EQ(Key(slot, "D0304C01AV"), "73.9");    // 88672 / 120 / 10
  EXPECT_EQ(Key(slot, "D0304C01SM"), "4433.6");  // Fix(88672 / 2) / 10
  EXPECT_EQ(Key(slot, "D0304C01SH"), "73.8");    // Fix(88672 / 120) / 10
  EXPECT_EQ(Key(slot, "D0304C01SD"), "3.0");     // Fix(88672 / 2880) / 10
  EXPECT_EQ(Key(slot, "D0304C02AV"), "30.0");    // 17970 / 60 / 10 = 29.95
  EXPECT_EQ(Key(slot, "D0304C02SH"), "14.9");    // Fix(17970 / 120) / 10
  EXPECT_EQ(Key(slot, "D0102C01AV"), "60.5");    // 36270 / 60 / 10 = 60.45
  // a, b not adjacent: the whole day.
  EXPECT_EQ(Key(slot, "D0024C01AV"), "123.6");
  EXPECT_EQ(Key(slot, "D0024C01SD"), "110.7");
  EXPECT_EQ(Key(slot, "D0024C01SM"), "159427.1");
  EXPECT_EQ(Key(slot, "D0024C01SH"), "2657.1");
  EXPECT_EQ(Key(slot, "D0024C02MX"), "ｵｰﾊﾞｰ");
  EXPECT_EQ(Key(slot, "D0024C02TX"), "2024/03/04 05:00:00");
  // Empty hours, a channel past the record's and an item no table has.
  EXPECT_EQ(Key(slot, "D0001C01MX"), kPlace);
  EXPECT_EQ(Key(slot, "D2324C01AV"), kPlace);
  EXPECT_EQ(Key(slot, "D0304C03MX"), kPlace);
  EXPECT_EQ(Key(slot, "D0304C01XX"), kPlace);
  EXPECT_EQ(Key(slot, "D0304C01MX", 1), "45.0");  // channel 2 by the block's offset
  // Another date display setting for the times.
  ChohyoContext context = Context(slot);
  context.DateFormatNo = 2;
  EXPECT_EQ(EvaluateChohyoKey("D0304C01TX", 0, context), "04/03/2024 03:17:00");
  context.DecimalChar = ",";
  EXPECT_EQ(EvaluateChohyoKey("D0304C01AV", 0, context), "73,9");
}

TEST_F(ReportTest, ChannelKeysRowLabelsDatesAndLiterals) {
  const int slot = OpenMinuteDay(*this);
  state->Slot(slot).Record.Channels[0].Tag = "FURNACE-TOP-ZONE";
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 01:30:00")), 0);
  EXPECT_EQ(Key(slot, "C01CHNO"), "チャネル01");
  EXPECT_EQ(Key(slot, "C01CHNO", 1), "チャネル02");
  EXPECT_EQ(Key(slot, "C01TAG "), "FURNACE-");
  EXPECT_EQ(Key(slot, "C01TAG2"), "TOP-ZONE");
  EXPECT_EQ(Key(slot, "C02TAG "), "TAG2    ");
  EXPECT_EQ(Key(slot, "C02UNIT"), "degC   ");
  EXPECT_EQ(Key(slot, "C03CHNO"), kPlace);
  EXPECT_EQ(Key(slot, "D0304DSP"), "3 - 4H");
  EXPECT_EQ(Key(slot, "M0910DSP"), "10");
  EXPECT_EQ(Key(slot, "A1112DSP"), "12");
  EXPECT_EQ(Key(slot, "X0304C01MX"), "\"X0304C01MX\"");
  EXPECT_EQ(Key(slot, "WORKTIME"), "2026/11/22 10:00:05");
  EXPECT_EQ(Key(slot, "D_DAILY"), "2024/03/04 01:30:00");
}

TEST_F(ReportTest, BinWithOnlyAnInvalidSampleHasCountZeroAndGivesIjou) {
  // Hourly samples: hour 5 of channel 2 holds only the over-range mark.
  const int slot = Open(2, 14, At("2024/03/04 00:00:00"), 24, [](int r, int u) -> std::int16_t {
    if (u == 2 && r == 5) return 32767;
    return static_cast<std::int16_t>(100 + r);
  });
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 00:00:00")), 0);
  EXPECT_EQ(table.At(5, 2).Count, 0);
  EXPECT_EQ(table.At(5, 2).MaxTime, At("2024/03/04 05:00:00"));
  for (const char *item : {"AV", "SM", "SH", "SD"})
    EXPECT_EQ(Key(slot, std::string("D0506C02") + item), kIjou) << item;
  EXPECT_EQ(Key(slot, "D0506C02MX"), "ｵｰﾊﾞｰ");
  EXPECT_EQ(Key(slot, "D0506C02PV"), "ｵｰﾊﾞｰ");
  // The hour beside it has its one sample: 106 over one value, cycle 3600.
  EXPECT_EQ(table.At(6, 2).Count, 1);
  EXPECT_EQ(Key(slot, "D0607C02AV"), "10.6");
  EXPECT_EQ(Key(slot, "D0607C02SH"), "5.3");  // Fix(106 / (7200 / 3600)) / 10
}

TEST_F(ReportTest, LogarithmicChannelHasNoAverageOrIntegral) {
  const int slot = Open(
      2, 14, At("2024/03/04 00:00:00"), 24,
      [](int r, int) -> std::int16_t { return static_cast<std::int16_t>(r == 2 ? 1000 : 0); },
      [](RecordFileInfo &info) {
        ChannelInfo &ch = info.Channels[1];
        ch.ScaleKind = 1;
        ch.RangeLow = 0;
        ch.RangeHigh = 100;
        ch.ExponentLow = -3;
        ch.ExponentHigh = 1;
      });
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 00:00:00")), 0);
  // 1000 of 0..1000 raw is the top of -3..1: 10^1.
  EXPECT_EQ(Key(slot, "D0203C02MX"), "1.00E+1");
  EXPECT_EQ(Key(slot, "D0102C02MX"), "1.00E-3");
  for (const char *item : {"AV", "SM", "SH", "SD"})
    EXPECT_EQ(Key(slot, std::string("D0203C02") + item), kPlace) << item;
}

TEST_F(ReportTest, FebruaryOf28DaysGivesThePlaceholderForThe29thDayAndTheTotalRowWorks) {
  // Hourly samples from 2023/02/01 to the end of 2023/03/01. Channel 2 holds the
  // day of the month times 10, a peak of 900 on February 20 at 07:00 and 2000 on
  // March 1, which no February bin may see.
  const std::int64_t first = At("2023/02/01 00:00:00");
  const int slot = Open(2, 14, first, 29 * 24, [first](int r, int u) -> std::int16_t {
    const CivilTime t = ToCivil(first + 3600LL * r);
    if (u < 2) return static_cast<std::int16_t>(t.day);
    if (t.month == 3) return 2000;
    if (t.day == 20 && t.hour == 7) return 900;
    return static_cast<std::int16_t>(t.day * 10);
  });
  ASSERT_EQ(Gather(slot, kMonthlyReport, At("2023/02/14 00:00:00")), 0);
  ASSERT_EQ(table.Bins, 28);
  EXPECT_EQ(Key(slot, "M2829C01MX"), kPlace);
  EXPECT_EQ(Key(slot, "M2829C02AV"), kPlace);
  EXPECT_EQ(Key(slot, "M2728C02MX"), "28.0");  // February 28: 280
  EXPECT_EQ(Key(slot, "M2728C02TX"), "2023/02/28 00:00:00");
  EXPECT_EQ(Key(slot, "M1920C02MX"), "90.0");
  EXPECT_EQ(Key(slot, "M1920C02TX"), "2023/02/20 07:00:00");
  // The month's total row: the peak of the 20th, the minimum of the 1st, and the
  // sum of 10 x (1 + ... + 28) x 24 with the 900 in place of one 200.
  EXPECT_EQ(Key(slot, "M0028C02MX"), "90.0");
  EXPECT_EQ(Key(slot, "M0028C02MI"), "1.0");
  EXPECT_EQ(Key(slot, "M0028C02TI"), "2023/02/01 00:00:00");
  EXPECT_EQ(table.At(28, 2).Count, 28 * 24);
  EXPECT_EQ(table.At(28, 2).Sum, 10.0 * 406 * 24 + 700);
  EXPECT_EQ(Key(slot, "M0028C02AV"), "14.6");  // 98140 / 672 / 10 = 14.604...
  EXPECT_EQ(Key(slot, "M0131C02MX"), "90.0");  // any pair not adjacent is the total
}

TEST_F(ReportTest, EightChannelsWithKFourMakeTwoBlocksNotThree) {
  const int slot = Open(8, 14, At("2024/03/04 00:00:00"), 3,
                        [](int r, int u) { return static_cast<std::int16_t>(10 * u + r); });
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 00:00:00")), 0);
  EXPECT_EQ(ReportBlockCount(8, 4), 2);
  ReportTemplate tpl;
  ASSERT_TRUE(
      ParseReportTemplate("a\r\nb\r\nc\r\n4\r\n\"C01CHNO\",\"C04CHNO\",\"D0001C04MX\"\r\n", tpl));
  const auto sheet = MakeChohyoSheet(tpl, Context(slot));
  ASSERT_EQ(sheet.size(), 2u);
  EXPECT_EQ(sheet[0], (std::vector<std::string>{"チャネル01", "チャネル04", "4.0"}));
  // Channel 8 is unit 8 of a record (channel 1 has two units): 80 at hour 0.
  EXPECT_EQ(sheet[1], (std::vector<std::string>{"チャネル05", "チャネル08", "8.0"}));
}

TEST_F(ReportTest, FewerChannelsThanKMakeOneBlockWithPlaceholders) {
  const int slot = Open(2, 14, At("2024/03/04 00:00:00"), 3,
                        [](int r, int u) { return static_cast<std::int16_t>(10 * u + r); });
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 00:00:00")), 0);
  EXPECT_EQ(ReportBlockCount(2, 3), 1);
  ReportTemplate tpl;
  ASSERT_TRUE(ParseReportTemplate(
      "a\r\nb\r\nc\r\n3\r\n\"C01CHNO\",\"C03CHNO\",\"C03UNIT\",\"D0001C03MX\",\"D0001C02MX\"\r\n",
      tpl));
  const auto sheet = MakeChohyoSheet(tpl, Context(slot));
  ASSERT_EQ(sheet.size(), 1u);
  EXPECT_EQ(sheet[0], (std::vector<std::string>{"チャネル01", kPlace, kPlace, kPlace, "2.0"}));
}

TEST_F(ReportTest, DateCellsSpillInTheSheetAndTheNextTemplateCellOverwrites) {
  const int slot = OpenMinuteDay(*this);
  ASSERT_EQ(Gather(slot, kMonthlyReport, At("2024/03/04 01:30:00")), 0);
  ReportTemplate tpl;
  ASSERT_TRUE(
      ParseReportTemplate("1\n2\n3\n2\n\"WORKTIME\"\nx,\"WORKTIME\",y\n\"D_DAILY\"\n"
                          "\"M_MONTHLY\"\n\"A_ANNUAL\"\n",
                          tpl));
  const auto sheet = MakeChohyoSheet(tpl, Context(slot));
  ASSERT_EQ(sheet.size(), 5u);
  EXPECT_EQ(sheet[0], (std::vector<std::string>{"2026/", "11/22", "10-00-05", ""}));
  EXPECT_EQ(sheet[1], (std::vector<std::string>{"x", "2026/", "y", "10-00-05"}));
  EXPECT_EQ(sheet[2], (std::vector<std::string>{"2024/", "03/04", "", ""}));
  EXPECT_EQ(sheet[3], (std::vector<std::string>{"2024/", "03", "", ""}));
  EXPECT_EQ(sheet[4], (std::vector<std::string>{"2024", "", "", ""}));
  const auto csv = ChohyoCsvLines(tpl, Context(slot), ",");
  EXPECT_EQ(csv, (std::vector<std::string>{"2026/11/22 10:00:05,", "x,2026/11/22 10:00:05,y,",
                                           "2024/03/04 ,", "2024/03 ,", "2024/,"}));
}

TEST_F(ReportTest, TemplateLineEndingInACommaGivesOneMoreEmptyCell) {
  ReportTemplate tpl;
  ASSERT_TRUE(ParseReportTemplate("a\r\nb\r\nc\r\n1\r\nx,y,\r\nx,y\r\n", tpl));
  ASSERT_EQ(tpl.Lines.size(), 2u);
  EXPECT_EQ(tpl.Lines[0], (std::vector<std::string>{"x", "y", ""}));
  EXPECT_EQ(tpl.Lines[1], (std::vector<std::string>{"x", "y"}));
  const int slot = OpenMinuteDay(*this);
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 01:30:00")), 0);
  EXPECT_EQ(ChohyoCsvLines(tpl, Context(slot), ";"),
            (std::vector<std::string>{"x;y;;", "x;y;", "x;y;;", "x;y;"}));  // two blocks of K 1
}

TEST_F(ReportTest, LastLineOfASingleByteIsNotRead) {
  ReportTemplate tpl;
  ASSERT_TRUE(ParseReportTemplate("a\r\nb\r\nc\r\n1\r\nx,y\r\nZ", tpl));
  ASSERT_EQ(tpl.Lines.size(), 1u);
  EXPECT_EQ(tpl.Lines[0], (std::vector<std::string>{"x", "y"}));
  ASSERT_TRUE(ParseReportTemplate("a\r\nb\r\nc\r\n1\r\nx,y\r\nZW", tpl));
  ASSERT_EQ(tpl.Lines.size(), 2u);
  EXPECT_EQ(tpl.Lines[1], (std::vector<std::string>{"ZW"}));
}

TEST_F(ReportTest, BadTemplatesAreRefused) {
  ReportTemplate tpl;
  EXPECT_FALSE(ParseReportTemplate("a\r\nb\r\nc\r\n0\r\nx\r\n", tpl));     // K = 0
  EXPECT_FALSE(ParseReportTemplate("a\r\nb\r\nc\r\nfour\r\nx\r\n", tpl));  // no number
  EXPECT_FALSE(ParseReportTemplate("a\r\nb\r\nc\r\n", tpl));               // no line 4
  std::string longer = "a\r\nb\r\nc\r\n1\r\n";
  longer += std::string(32768 - longer.size(), 'x');
  EXPECT_FALSE(ParseReportTemplate(longer, tpl));
  longer.pop_back();
  EXPECT_TRUE(ParseReportTemplate(longer, tpl));
  EXPECT_FALSE(ReadReportTemplate(folder.Path("missing.txt"), tpl));
}

TEST_F(ReportTest, CsvIsWrittenByteForByteUnderItsName) {
  const int slot = OpenMinuteDay(*this);
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 01:30:00")), 0);
  const std::string tplPath =
      WriteTemplate("t.txt",
                    "自由欄\r\n\r\n\r\n2\r\n"
                    "日報,\"D_DAILY\",作成,\"WORKTIME\"\r\n"
                    "\"C01CHNO\",\"C01TAG \",\"C01UNIT\",\"C02CHNO\"\r\n"
                    "\"D0304DSP\",\"D0304C01MX\",\"D0304C01TX\",\"D0304C02AV\",\r\n"
                    "\"D0024C01SD\",\"X0001C01MX\",\"D2425C01PV\"\r\n");
  const std::string target =
      ReportCsvPath(state->Slot(slot).Record.FilePath, kDailyReport, table.BaseTime);
  EXPECT_EQ(target, folder.Path("STEST01日報20240304.csv"));
  ASSERT_EQ(SaveChohyoCsv(tplPath, Context(slot), ",", target), 0);
  const std::string expected = Utf8ToCp932(
      "日報,2024/03/04 ,作成,2026/11/22 10:00:05,\r\n"
      "チャネル01,TAG1    ,degC   ,チャネル02,\r\n"
      "3 - 4H,500.0,2024/03/04 03:17:00,30.0,,\r\n"
      "110.7,\"X0001C01MX\",       -   ,\r\n");
  EXPECT_EQ(testing_support::ReadAll(target), expected);
  EXPECT_EQ(ReportCsvPath("/d/SHEAT01.FDT", kMonthlyReport, At("2024/03/07 00:00:00")),
            "/d/SHEAT01月報202403.csv");
  EXPECT_EQ(ReportCsvPath("/d/SHEAT01.FDT", kAnnualReport, At("2024/03/07 00:00:00")),
            "/d/SHEAT01年報2024.csv");
}

TEST_F(ReportTest, FailedSaveGives11107AndLeavesNothingHalfWritten) {
  const int slot = OpenMinuteDay(*this);
  ASSERT_EQ(Gather(slot, kDailyReport, At("2024/03/04 01:30:00")), 0);
  const std::string target = folder.Path("out.csv");
  ASSERT_TRUE(WriteWholeFile(target, "old"));
  // A missing template and a template with K = 0: the old CSV stays as it was.
  EXPECT_EQ(SaveChohyoCsv(folder.Path("none.txt"), Context(slot), ",", target), 11107);
  const std::string bad = WriteTemplate("bad.txt", "a\r\nb\r\nc\r\n0\r\nx,y\r\n");
  EXPECT_EQ(SaveChohyoCsv(bad, Context(slot), ",", target), 11107);
  EXPECT_EQ(testing_support::ReadAll(target), "old");
  // A target that cannot be written (a folder stands there): nothing is left.
  const std::string good = WriteTemplate("good.txt", "a\r\nb\r\nc\r\n1\r\nx,y\r\n");
  std::filesystem::create_directories(folder.Path("sub/blocked.csv"));
  const auto before = folder.Files();
  EXPECT_EQ(SaveChohyoCsv(good, Context(slot), ",", folder.Path("sub/blocked.csv")), 11107);
  EXPECT_EQ(folder.Files(), before);
  std::vector<std::string> inSub;
  for (const auto &e : std::filesystem::directory_iterator(folder.Path("sub")))
    inSub.push_back(e.path().filename().string());
  EXPECT_EQ(inSub, std::vector<std::string>{"blocked.csv"});
  EXPECT_EQ(SaveChohyoCsv(good, Context(slot), ",", folder.Path("nofolder/x.csv")), 11107);
  EXPECT_FALSE(std::filesystem::exists(folder.Path("nofolder")));
}

TEST_F(ReportTest, MissingWorkingFileGives11107AndAnEmptyTable) {
  const int slot = OpenMinuteDay(*this);
  std::filesystem::remove(state->ProgramFolder + "/Operation_" + std::to_string(slot) +
                          "_COM_1.OPL");
  EXPECT_EQ(Gather(slot, kDailyReport, At("2024/03/04 01:30:00")), 11107);
  for (const ChohyoCell &cell : table.Cells) EXPECT_EQ(cell.MaxTime, 0);
  EXPECT_EQ(Key(slot, "D0304C01MX"), kPlace);
}

TEST_F(ReportTest, DeliveredTemplatesAreWrittenWhenMissingAndNeverReplaced) {
  const std::string home = folder.Path("fresh");
  std::filesystem::create_directories(home);
  ASSERT_TRUE(WriteWholeFile(home + "/DailyReportFormat.txt", "site's own"));
  ASSERT_TRUE(EnsureReportTemplates(home));
  EXPECT_EQ(testing_support::ReadAll(home + "/DailyReportFormat.txt"), "site's own");
  EXPECT_EQ(testing_support::ReadAll(home + "/MonthlyReportFormat.txt"),
            testing_support::ReadAll(RECSCOPE_SOURCE_DIR "/resources/MonthlyReportFormat.txt"));
  EXPECT_EQ(testing_support::ReadAll(home + "/AnnualReportFormat.txt"),
            testing_support::ReadAll(RECSCOPE_SOURCE_DIR "/resources/AnnualReportFormat.txt"));
  // Each delivered template: K = 3, a title block of seven lines, one line a bin,
  // a total line and a blank one; rows of PV, MX, TX, MI, TI, AV and an integral.
  const struct {
    int type;
    int rows;
    const char *first;
    const char *total;
  } kinds[] = {{kDailyReport, 24, "\"D0001DSP\"", "\"D0024C01SH\""},
               {kMonthlyReport, 31, "\"M0001DSP\"", "\"M0031C01SD\""},
               {kAnnualReport, 12, "\"A0001DSP\"", "\"A0012C01SD\""}};
  for (const auto &kind : kinds) {
    ReportTemplate tpl;
    ASSERT_TRUE(ParseReportTemplate(DeliveredReportTemplate(kind.type), tpl)) << kind.type;
    EXPECT_EQ(tpl.K, 3);
    ASSERT_EQ(tpl.Lines.size(), static_cast<size_t>(7 + kind.rows + 2)) << kind.type;
    EXPECT_EQ(tpl.Lines[7][0], kind.first);
    EXPECT_EQ(tpl.Lines[7].size(), 22u);
    EXPECT_EQ(tpl.Lines[7 + kind.rows][7], kind.total);
  }
}

}  // namespace
}  // namespace recscope
