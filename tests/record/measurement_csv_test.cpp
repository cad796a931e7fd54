// The CSV conversion of a measurement record. Every expected file is composed
// here, line by line, from the numbers the test records were written with.
#include "record/measurement_csv.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "record/open_record.h"
#include "record/record_fields.h"
#include "record_fixture.h"

namespace recscope {
namespace {

using testing_support::FixedWidth;
using testing_support::MakeInfo;
using testing_support::MakeRecords;
using testing_support::ReadAll;
using testing_support::RecordBytes;
using testing_support::TempFolder;

const std::string kCrLf = "\r\n";

std::string Printf(const char *pattern, double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, pattern, decimals, value);
  return text;
}

// A value as the CSV writes it: 7 wide, `decimals` places, `dec` as the point.
std::string Value(std::int32_t raw, int decimals, const std::string &dec = ".") {
  std::string text = Printf("%7.*f", raw / std::pow(10.0, decimals), decimals);
  const auto point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, dec);
  return text;
}

std::string Two(int v) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d", v);
  return text;
}

// "yyyy/m/d hh:mm:ss" from the calendar of the standard library.
std::string BinaryTime(std::int64_t seconds) {
  using namespace std::chrono;
  const sys_seconds t{std::chrono::seconds(seconds)};
  const auto day = floor<days>(t);
  const year_month_day ymd(day);
  const hh_mm_ss hms(t - day);
  char text[48];
  std::snprintf(text, sizeof text, "%d/%u/%u %02ld:%02ld:%02ld", static_cast<int>(ymd.year()),
                static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                static_cast<long>(hms.hours().count()), static_cast<long>(hms.minutes().count()),
                static_cast<long>(hms.seconds().count()));
  return text;
}

// The lines in front of the data for a record of MakeInfo (3 analog channels of
// one decimal, the first of RecordType 0; `di` inputs; 4 groups).
std::string ExpectedHeader(const RecordFileInfo &info, const std::string &sep,
                           const std::string &dec) {
  std::string out = FixedWidth("STEST01.FDT", 32) + kCrLf + FixedWidth("ZNQ-TEST", 32) + kCrLf +
                    FixedWidth("SNo.12345678", 20) + FixedWidth("Ver.01.02", 12) + kCrLf;
  out += Two(static_cast<int>(info.Channels.size())) + sep + "04" + sep + "08" + sep +
         Two(static_cast<int>(info.Dis.size())) + sep + "04" + std::string(18, ' ') + kCrLf;
  for (std::size_t i = 0; i < info.Channels.size(); ++i) {
    const int no = static_cast<int>(i) + 1;
    out += "CH" + Two(no) + sep + FixedWidth("TAG" + std::to_string(no), 16) + sep + Two(no - 1) +
           sep + "01" + sep + FixedWidth("degC", 7) + sep + Value(0, 1, dec) + sep +
           Value(10000, 1, dec) + sep + std::to_string(info.Channels[i].RecordType) + sep + "0" +
           sep + Value(0, 1, dec) + sep + Value(10000, 1, dec) + sep + "000" + sep + "000" + sep +
           "1" + sep + "1" + sep + "01" + sep + Value(8000, 1, dec) + sep + "2" + sep + "02" + sep +
           Value(1005, 1, dec) + sep + "0" + sep + "00" + sep + Value(0, 1, dec) + sep + "0" + sep +
           "00" + sep + Value(0, 1, dec) + kCrLf;
  }
  for (std::size_t n = 0; n < info.Dis.size(); ++n) {
    out += "DI" + Two(static_cast<int>(n) + 1) + sep +
           FixedWidth("DI" + std::to_string(n + 1), 16) + sep + "03" + sep + "      0" + sep +
           "      1" + sep + (n == 0 ? "0" : "1") + kCrLf;
  }
  const int firstMember = info.Channels.empty() ? 129 : 1;
  for (int g = 1; g <= 4; ++g) {
    out += "G" + std::to_string(g) + sep + FixedWidth(g == 1 ? "GROUP1" : "", 16);
    for (int m = 0; m < 10; ++m) {
      const int member = g == 1 && m == 0 ? firstMember : 0;
      out += sep + (member > 128 ? "D" + std::to_string(member - 128) : Two(member));
    }
    out += kCrLf;
  }
  out += std::string(19, ' ');
  for (std::size_t i = 0; i < info.Channels.size(); ++i) {
    const std::string name = "CH" + Two(static_cast<int>(i) + 1);
    out += info.Channels[i].RecordType == 0 ? sep + name + "MIN" + sep + name + "MAX"
                                            : sep + name + "PV ";
  }
  for (std::size_t n = 0; n < info.Dis.size(); ++n) {
    const std::string name = "DI" + Two(static_cast<int>(n) + 1);
    out += n == 0 ? sep + name + "MIN" + sep + name + "MAX" : sep + name + "PV ";
  }
  return out + kCrLf;
}

// One data row of a binary record: the DI states are not written, and a row of
// a file with DI ends in a separator and no line end.
std::string ExpectedRow(const RecordFileInfo &info, const DataRecord &r, const std::string &sep,
                        const std::string &dec) {
  std::string out = BinaryTime(r.Time);
  for (std::int16_t u : r.Units) out += sep + Value(u, 1, dec);
  return out + (info.Dis.empty() ? kCrLf : sep);
}

// Byte equality of two files' contents that reports the first difference
// instead of a diff of megabytes.
::testing::AssertionResult SameBytes(const std::string &actual, const std::string &expected) {
  if (actual == expected) return ::testing::AssertionSuccess();
  std::size_t at = 0;
  while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) ++at;
  const std::size_t from = at < 40 ? 0 : at - 40;
  return ::testing::AssertionFailure()
         << "sizes " << actual.size() << " and " << expected.size() << ", first difference at "
         << at << ": actual \"" << actual.substr(from, 80) << "\" expected \""
         << expected.substr(from, 80) << "\"";
}

class MeasurementCsv : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetSharedState(state);
    state.ProgramFolder = folder.Folder();
  }

  // Writes the record family and reads it back as the open would.
  RecordSlot &Write(const RecordFileInfo &info, int format, const std::vector<DataRecord> &records,
                    const std::string &name = "STEST01.FDT") {
    path = folder.Path(name);
    EXPECT_TRUE(WriteWholeFile(path, RecordBytes(info, format, records)));
    return Read();
  }
  RecordSlot &Read() {
    EXPECT_EQ(ReadRecordFamily(state, path, slot), 0);
    return slot;
  }
  CsvOutcome Convert(const CsvFormat &format = {}, const ProgressFn &progress = {}) {
    return ConvertMeasurementCsv(slot.Record, slot.Alarms, format, progress);
  }
  std::string Csv(const std::string &ending = ".CSV") { return folder.Path("STEST01" + ending); }

  TempFolder folder;
  SharedState state;
  RecordSlot slot;
  std::string path;
};

TEST_F(MeasurementCsv, BinaryRecordWithDiGivesHeaderTitlesAndRowsWithoutLineEnds) {
  RecordFileInfo info = MakeInfo(3, 2);
  const auto records = MakeRecords(info, 25);
  Write(info, 2, records);
  const CsvOutcome out = Convert();
  ASSERT_EQ(out.MessageId, 11132);
  ASSERT_EQ(out.Files, std::vector<std::string>{Csv()});
  std::string expected = ExpectedHeader(info, ",", ".");
  for (const DataRecord &r : records) expected += ExpectedRow(info, r, ",", ".");
  EXPECT_TRUE(SameBytes(ReadAll(Csv()), expected));
  // The rows of a file with DI run on in one line: the file ends in a separator.
  EXPECT_EQ(ReadAll(Csv()).back(), ',');
}

TEST_F(MeasurementCsv, BinaryRecordWithoutDiEndsEachRowInCrLf) {
  RecordFileInfo info = MakeInfo(3, 0);
  const auto records = MakeRecords(info, 12);
  Write(info, 2, records);
  ASSERT_EQ(Convert().MessageId, 11132);
  std::string expected = ExpectedHeader(info, ",", ".");
  for (const DataRecord &r : records) expected += ExpectedRow(info, r, ",", ".");
  EXPECT_TRUE(SameBytes(ReadAll(Csv()), expected));
}

TEST_F(MeasurementCsv, MonthOneIsWrittenAsOneInABinaryRecordsCsv) {
  RecordFileInfo info = MakeInfo(1, 0);
  // 2024/01/05 09:03:07
  const auto records = MakeRecords(info, 2, 1704445387);
  Write(info, 2, records);
  ASSERT_EQ(Convert().MessageId, 11132);
  const std::string csv = ReadAll(Csv());
  EXPECT_NE(csv.find("\r\n2024/1/5 09:03:07,"), std::string::npos);
  EXPECT_NE(csv.find("\r\n2024/1/5 09:03:17,"), std::string::npos);
}

TEST_F(MeasurementCsv, MonthOneStaysZeroOneInATextRecordsCsv) {
  RecordFileInfo info = MakeInfo(3, 1);
  const auto records = MakeRecords(info, 3, 1704445387);
  Write(info, 1, records);
  ASSERT_EQ(Convert().MessageId, 11132);
  // The text record's own header region differs from the CSV's header only in
  // nothing that the rows depend on; the rows keep the file's 19 time characters.
  std::string expected = ExpectedHeader(info, ",", ".");
  for (const DataRecord &r : records) {
    expected += "2024/01/05 " + BinaryTime(r.Time).substr(9);
    for (std::int16_t u : r.Units) expected += "," + Value(u, 1);
    expected += ",";
  }
  EXPECT_TRUE(SameBytes(ReadAll(Csv()), expected));
}

TEST_F(MeasurementCsv, DecimalCommaGivesSemicolonsAndCommasInValues) {
  RecordFileInfo info = MakeInfo(3, 0);
  const auto records = MakeRecords(info, 5);
  Write(info, 2, records);
  ASSERT_EQ(Convert(CsvFormat{";", ","}).MessageId, 11132);
  std::string expected = ExpectedHeader(info, ";", ",");
  for (const DataRecord &r : records) expected += ExpectedRow(info, r, ";", ",");
  EXPECT_TRUE(SameBytes(ReadAll(Csv()), expected));
  EXPECT_NE(expected.find(";  -50,0;"), std::string::npos);
}

TEST_F(MeasurementCsv, SpecialValuesAreWrittenAsTheNumbersTheyMake) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::vector<DataRecord> records = MakeRecords(info, 1);
  records[0].Units = {-32768, 32767, -32767};
  Write(info, 2, records);
  ASSERT_EQ(Convert().MessageId, 11132);
  const std::string csv = ReadAll(Csv());
  EXPECT_EQ(csv.substr(csv.size() - 26), ",-3276.8, 3276.7,-3276.7\r\n");
}

TEST_F(MeasurementCsv, LogarithmicChannelGivesTheTextOfItsPowerOfTen) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.Channels[0].RecordType = 1;
  info.Channels[0].ScaleKind = 1;
  info.Channels[0].Decimals = 0;
  info.Channels[0].ScaleLow = -3;
  info.Channels[0].ScaleHigh = 3;
  info.Channels[0].ExponentLow = -3;
  info.Channels[0].ExponentHigh = 3;
  info.Channels[0].AlarmValue = {0, 0, 0, 0};
  std::vector<DataRecord> records = MakeRecords(info, 4);
  records[0].Units = {0};
  records[1].Units = {250};
  records[2].Units = {500};
  records[3].Units = {1000};
  Write(info, 2, records);
  ASSERT_EQ(Convert().MessageId, 11132);
  const std::string csv = ReadAll(Csv());
  // Whole numbers for the scale ends of a logarithmic channel.
  EXPECT_NE(csv.find(FixedWidth("degC", 7) + ",     -3,      3,1,1,      0,   1000,-003,003,0,"),
            std::string::npos);
  EXPECT_NE(csv.find("," + std::string("1.00E-3") + "\r\n"), std::string::npos);
  EXPECT_NE(csv.find(",3.16E-2\r\n"), std::string::npos);
  EXPECT_NE(csv.find(",1.00E+0\r\n"), std::string::npos);
  EXPECT_NE(csv.find(",1.00E+3\r\n"), std::string::npos);
}

TEST_F(MeasurementCsv, RecordWith65000RowsAnd600ChannelAndGroupLinesIsSplit) {
  // 600 lines of channels and groups, 5 more before the data: 65605 lines.
  const auto rows = CsvPartRows(592, 65000, 8);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], 65536 - (592 + 8 + 5));
  EXPECT_EQ(rows[1], 65000 - rows[0]);
  // One line fewer stays in one file, the limit itself splits.
  EXPECT_EQ(CsvPartRows(72, 65536 - 72 - 8 - 5, 8).size(), 1u);
  EXPECT_EQ(CsvPartRows(72, 65536 - 72 - 8 - 4, 8).size(), 2u);
}

TEST_F(MeasurementCsv, LongRecordGoesOverThreeFilesWithDataRowsOnlyAfterTheFirst) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.Channels[0].RecordType = 1;
  // 1 channel and 4 groups leave 65526 rows to the first file.
  const int count = 65526 + 65536 + 7;
  const auto records = MakeRecords(info, count);
  Write(info, 2, records);
  const CsvOutcome out = Convert();
  ASSERT_EQ(out.MessageId, 11132);
  ASSERT_EQ(out.Files, (std::vector<std::string>{Csv("_1.CSV"), Csv("_2.CSV"), Csv("_3.CSV")}));
  EXPECT_FALSE(std::filesystem::exists(Csv()));
  std::string parts[3];
  parts[0] = ExpectedHeader(info, ",", ".");
  for (int r = 0; r < count; ++r) {
    const int part = r < 65526 ? 0 : r < 65526 + 65536 ? 1 : 2;
    parts[part] += ExpectedRow(info, records[static_cast<std::size_t>(r)], ",", ".");
  }
  EXPECT_TRUE(SameBytes(ReadAll(Csv("_1.CSV")), parts[0]));
  EXPECT_TRUE(SameBytes(ReadAll(Csv("_2.CSV")), parts[1]));
  EXPECT_TRUE(SameBytes(ReadAll(Csv("_3.CSV")), parts[2]));
}

TEST_F(MeasurementCsv, RecordWithoutAlarmFileGivesOneCsv) {
  RecordFileInfo info = MakeInfo(2, 0);
  Write(info, 2, MakeRecords(info, 3));
  const CsvOutcome out = Convert();
  ASSERT_EQ(out.MessageId, 11132);
  EXPECT_EQ(out.Files.size(), 1u);
  EXPECT_EQ(folder.Files().size(), 2u);  // the record and its CSV
}

TEST_F(MeasurementCsv, TextAlarmFileIsCopiedWhole) {
  RecordFileInfo info = MakeInfo(2, 1);
  const std::string alarm = FixedWidth("ATEST01.FDT", 32) + kCrLf + FixedWidth("ZNQ-TEST", 32) +
                            kCrLf + FixedWidth("SNo.12345678", 20) + FixedWidth("Ver.01.02", 12) +
                            kCrLf + "2023/11/14 22:13:30,A,02,1,01,1" + std::string(26, ' ') +
                            kCrLf + "2023/11/14 22:13:20,M," + FixedWidth("START", 32) + ",03" +
                            kCrLf;
  ASSERT_TRUE(WriteWholeFile(folder.Path("ATEST01.FDT"), alarm));
  Write(info, 1, MakeRecords(info, 4));
  ASSERT_EQ(slot.Alarms.AlarmCount, 1);
  const CsvOutcome out = Convert(CsvFormat{";", ","});
  ASSERT_EQ(out.MessageId, 11132);
  ASSERT_EQ(out.Files, (std::vector<std::string>{Csv(), folder.Path("ATEST01.CSV")}));
  EXPECT_TRUE(SameBytes(ReadAll(folder.Path("ATEST01.CSV")), alarm));
}

std::string BinaryEvent(std::int32_t time, char kind, const std::string &body, int last) {
  std::string e;
  PutI32(e, time);
  e += kind;
  e += body;
  e.resize(37, '\0');
  PutU8(e, last);
  return e;
}

TEST_F(MeasurementCsv, BinaryAlarmFileIsWrittenAsLinesInFileOrder) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::string alarm = FixedWidth("ATEST01.FDT", 32) + kCrLf + FixedWidth("ZNQ-TEST", 32) + kCrLf +
                      FixedWidth("SNo.12345678", 20) + FixedWidth("Ver.01.02", 12) + kCrLf;
  PutI16(alarm, 0);
  // 2024/02/03 04:05:06, then an earlier message: the file's order is kept.
  alarm += BinaryEvent(1706933106, 'A', std::string("\x02\x01\x03\x01", 4), 0);
  alarm += BinaryEvent(1706933100, 'M', "BATCH 7", 12);
  ASSERT_TRUE(WriteWholeFile(folder.Path("ATEST01.FDT"), alarm));
  Write(info, 2, MakeRecords(info, 2));
  ASSERT_EQ(Convert().MessageId, 11132);
  const std::string expected = FixedWidth("ATEST01.FDT", 32) + kCrLf + FixedWidth("ZNQ-TEST", 32) +
                               kCrLf + FixedWidth("SNo.12345678", 20) +
                               FixedWidth("Ver.01.02", 12) + kCrLf +
                               "2024/2/3 04:05:06,A,02,1,03,1" + std::string(26, ' ') + kCrLf +
                               "2024/2/3 04:05:00,M,BATCH 7,12" + kCrLf;
  EXPECT_TRUE(SameBytes(ReadAll(folder.Path("ATEST01.CSV")), expected));
}

TEST_F(MeasurementCsv, AnExistingTargetRefusesWith11130AndTouchesNothing) {
  RecordFileInfo info = MakeInfo(2, 0);
  Write(info, 2, MakeRecords(info, 3));
  ASSERT_TRUE(WriteWholeFile(folder.Path("ATEST01.FDT"), std::string(104, '\0')));
  Read();
  for (const std::string name : {"STEST01.CSV", "ATEST01.CSV"}) {
    ASSERT_TRUE(WriteWholeFile(folder.Path(name), "mine"));
    EXPECT_EQ(Convert().MessageId, 11130) << name;
    EXPECT_EQ(ReadAll(folder.Path(name)), "mine");
    EXPECT_EQ(folder.Files().size(), 3u);
    std::filesystem::remove(folder.Path(name));
  }
}

TEST_F(MeasurementCsv, AnExistingSplitFileRefusesWith11130) {
  RecordFileInfo info = MakeInfo(1, 0);
  Write(info, 2, MakeRecords(info, 65600));
  ASSERT_TRUE(WriteWholeFile(Csv("_2.CSV"), "mine"));
  EXPECT_EQ(Convert().MessageId, 11130);
  EXPECT_FALSE(std::filesystem::exists(Csv("_1.CSV")));
  EXPECT_EQ(ReadAll(Csv("_2.CSV")), "mine");
}

TEST_F(MeasurementCsv, ABrokenValueInATextRecordFailsWith11131AndLeavesNoFile) {
  RecordFileInfo info = MakeInfo(2, 0);
  const auto records = MakeRecords(info, 300);
  std::string bytes = RecordBytes(info, 0, records);
  const std::size_t row = bytes.size() - 100 * static_cast<std::size_t>(21 + 8 * 3);
  bytes.replace(row + 20, 7, "  x1.0 ");  // a value field of record 201
  path = folder.Path("STEST01.FDT");
  ASSERT_TRUE(WriteWholeFile(path, bytes));
  ASSERT_TRUE(WriteWholeFile(folder.Path("ATEST01.FDT"),
                             FixedWidth("ATEST01.FDT", 32) + kCrLf + std::string(70, ' ')));
  Read();
  const CsvOutcome out = Convert();
  EXPECT_EQ(out.MessageId, 11131);
  EXPECT_TRUE(out.Files.empty());
  auto names = folder.Files();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"ATEST01.FDT", "STEST01.FDT"}));
}

TEST_F(MeasurementCsv, ARecordCutShortAfterItsOpenFailsWith11131AndLeavesNoFile) {
  RecordFileInfo info = MakeInfo(3, 1);
  Write(info, 2, MakeRecords(info, 500));
  std::filesystem::resize_file(path, std::filesystem::file_size(path) - 40);
  EXPECT_EQ(Convert().MessageId, 11131);
  EXPECT_EQ(folder.Files(), std::vector<std::string>{"STEST01.FDT"});
}

TEST_F(MeasurementCsv, AConversionKilledHalfWayLeavesNoTarget) {
  RecordFileInfo info = MakeInfo(3, 0);
  Write(info, 2, MakeRecords(info, 20000));
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    Convert({}, [](int value, int) {
      if (value == 50) ::kill(::getpid(), SIGKILL);
    });
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(std::filesystem::exists(Csv()));
  // A later conversion is not stopped by what the killed one left.
  EXPECT_EQ(Convert().MessageId, 11132);
  EXPECT_TRUE(std::filesystem::exists(Csv()));
}

TEST_F(MeasurementCsv, ProgressMovesOneStepEveryHundredthOfTheRows) {
  RecordFileInfo info = MakeInfo(1, 0);
  Write(info, 2, MakeRecords(info, 250));
  std::vector<std::pair<int, int>> steps;
  ASSERT_EQ(Convert({}, [&](int v, int m) { steps.emplace_back(v, m); }).MessageId, 11132);
  // 250 rows: one step every 3 rows, 83 steps, then the bar is set to its end.
  ASSERT_EQ(steps.size(), 1u + 83u + 1u);
  EXPECT_EQ(steps.front(), std::make_pair(0, 100));
  EXPECT_EQ(steps[1], std::make_pair(1, 100));
  EXPECT_EQ(steps[83], std::make_pair(83, 100));
  EXPECT_EQ(steps.back(), std::make_pair(100, 100));

  std::filesystem::remove(Csv());
  Write(info, 2, MakeRecords(info, 7));
  steps.clear();
  ASSERT_EQ(Convert({}, [&](int v, int m) { steps.emplace_back(v, m); }).MessageId, 11132);
  ASSERT_EQ(steps.size(), 1u + 7u + 1u);
  EXPECT_EQ(steps[3], std::make_pair(3, 7));
}

TEST(MeasurementCsvNames, LastFourCharactersGiveWayToTheEnding) {
  EXPECT_EQ(ReplaceLastFour("/d/SHEAT01.FDT", ".CSV"), "/d/SHEAT01.CSV");
  EXPECT_EQ(ReplaceLastFour("/d/sheat01.fdt", "_2.CSV"), "/d/sheat01_2.CSV");
  EXPECT_EQ(CsvTimeText(0), "1970/1/1 00:00:00");
  EXPECT_EQ(CsvTimeText(1733011199), "2024/11/30 23:59:59");
}

}  // namespace
}  // namespace recscope
