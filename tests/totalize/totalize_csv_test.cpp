// The totalize CSV: every line byte for byte, the times of a binary source, the
// raw values rebuilt from a text source, the line budget and its split, and the
// messages 11130, 11131 and 11132 with what they leave on disk.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "record/record_writer.h"
#include "shell/shared_state.h"
#include "totalize/addition.h"
#include "totalize/addition_csv.h"
#include "totalize_fixture.h"

namespace recscope {
namespace {

using testing_support::kTotalizeBase;
using testing_support::MakeTotalizeContent;
using testing_support::MakeTotalizeRecords;
using testing_support::TotalizeFolder;

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

std::vector<std::string> FilesIn(const std::string &folder) {
  std::vector<std::string> names;
  for (const auto &e : std::filesystem::directory_iterator(folder))
    names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::size_t LineCount(const std::string &text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// The lines of the fixture's file in front of the data, with separator `s` and
// its scale text `scale1`, `scale3` (channels 1 and 3), written out by hand.
std::string FixtureHead(const std::string &s, const std::string &scale1,
                        const std::string &scale3) {
  std::string h;
  h += "TTEST01.FDT" + std::string(23, ' ') + "\r\n";
  h += "ZNQ-TEST" + std::string(26, ' ') + "\r\n";
  h += "SNo.12345678" + std::string(8, ' ') + "Ver.01.02" + std::string(5, ' ') + "\r\n";
  h += "03" + s + "00" + s + "00" + s + "00" + s + "04" + std::string(19, ' ') + "\r\n";
  h += "CH01" + s + "FLOW1   " + s + "03" + s + "00" + s + "m3     " + s + scale1 + s + "1 \r\n";
  h += "CH05" + s + "PUMP    " + s + "00" + s + "01" + s + "count  " + s + "      1" + s + "0 \r\n";
  h += "CH09" + s + "RUN     " + s + "12" + s + "02" + s + "h      " + s + scale3 + s + "3 \r\n";
  h += "G1" + s + "LINE A          " + s + "01" + s + "05";
  for (int i = 0; i < 8; ++i) h += s + "00";
  h += "\r\n";
  h += "G2" + s + "LINE B          " + s + "00" + s + "09" + s + "00" + s + "01";
  for (int i = 0; i < 6; ++i) h += s + "00";
  h += "\r\n";
  for (int g = 3; g <= 4; ++g) {
    h += "G" + std::to_string(g) + s + std::string(16, ' ');
    for (int i = 0; i < 10; ++i) h += s + "00";
    h += "\r\n";
  }
  h += std::string(19, ' ') + s + std::string(19, ' ') + s + "CH01       " + s + "CH05       " + s +
       "CH09       \r\n";
  return h;
}

class TotalizeCsv : public ::testing::Test {
 protected:
  void SetUp() override { ResetSharedState(state); }

  TotalizeWindow &Open(const std::string &name, const std::string &bytes) {
    path = folder.Path(name);
    EXPECT_TRUE(WriteWholeFile(path, bytes));
    const TotalizeOpenResult r = OpenTotalizeFile(state, path);
    EXPECT_TRUE(r.Ok()) << r.MessageId;
    return state.Totalize(r.Slot == 0 ? 1 : r.Slot);
  }
  TotalizeWindow &OpenFixture(const std::string &name, bool binary, int records) {
    return Open(name,
                TotalizeFileBytes(MakeTotalizeContent(), binary, MakeTotalizeRecords(records)));
  }
  CsvFormat Format() const { return CsvFormat{state.ListSeparator, state.DecimalChar}; }

  SharedState state;
  TotalizeFolder folder;
  std::string path;
};

TEST_F(TotalizeCsv, BinarySourceGivesEveryLineByteForByte) {
  const TotalizeWindow &t = OpenFixture("T0001.FDT", true, 2);
  const TotalizeCsvOutcome outcome = TotalizeToCsv(t, Format());
  EXPECT_EQ(outcome.MessageId, 11132);
  ASSERT_EQ(outcome.Files, std::vector<std::string>{folder.Path("T0001.CSV")});
  const std::string expected =
      FixtureHead(",", "  100.0", " -1.234") +
      "2026/ 1/ 2 00:00:00,2026/ 1/ 2 01:00:00,        1.1,         -1,    123.457\r\n"
      "2026/ 1/ 2 01:00:00,2026/ 1/ 2 02:00:00,        2.1,         -2,    123.458\r\n";
  EXPECT_EQ(ReadAll(folder.Path("T0001.CSV")), expected);
}

TEST_F(TotalizeCsv, TextSourceKeepsItsTimesAndRebuildsItsValues) {
  const TotalizeWindow &t = OpenFixture("D0001.FDT", false, 2);
  ASSERT_EQ(TotalizeToCsv(t, Format()).MessageId, 11132);
  const std::string expected =
      FixtureHead(",", "  100.0", " -1.234") +
      "2026/01/02 00:00:00,2026/01/02 01:00:00,        1.1,         -1,    123.457\r\n"
      "2026/01/02 01:00:00,2026/01/02 02:00:00,        2.1,         -2,    123.458\r\n";
  EXPECT_EQ(ReadAll(folder.Path("D0001.CSV")), expected);
}

TEST_F(TotalizeCsv, DecimalCommaGivesSemicolonsWhileValuesKeepTheirComma) {
  state.DecimalChar = ",";
  state.ListSeparator = ";";
  const TotalizeWindow &t = OpenFixture("T0001.FDT", true, 1);
  ASSERT_EQ(TotalizeToCsv(t, Format()).MessageId, 11132);
  const std::string expected =
      FixtureHead(";", "  100,0", " -1,234") +
      "2026/ 1/ 2 00:00:00;2026/ 1/ 2 01:00:00;        1,1;         -1;    123,457\r\n";
  EXPECT_EQ(ReadAll(folder.Path("T0001.CSV")), expected);
}

TEST_F(TotalizeCsv, TextSourceWithACommaLocaleRebuildsTheRawFromThePointsPlace) {
  state.DecimalChar = ",";
  state.ListSeparator = ";";
  const TotalizeWindow &t = OpenFixture("T0002.FDT", false, 1);
  ASSERT_EQ(TotalizeToCsv(t, Format()).MessageId, 11132);
  const std::string csv = ReadAll(folder.Path("T0002.CSV"));
  EXPECT_NE(
      csv.find("2026/01/02 00:00:00;2026/01/02 01:00:00;        1,1;         -1;    123,457\r\n"),
      std::string::npos);
}

TEST_F(TotalizeCsv, TextSourceWithTwoDecimalsRebuildsTheRawAndWritesTheSameText) {
  EXPECT_EQ(TotalizeTextRaw("  123456.78", 2), 12345678);
  EXPECT_EQ(TotalizeTextRaw("   -1234.56", 2), -123456);
  EXPECT_EQ(TotalizeTextRaw("      12345", 0), 12345);
  EXPECT_EQ(TotalizeTextRaw("     1.2345", 4), 12345);
  EXPECT_EQ(TotalizeTextRaw("  12x456.78", 2), std::nullopt);

  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels.resize(1);
  content.Channels[0].Decimals = 2;
  content.Groups = {content.Groups[0]};
  content.Groups[0].Members = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  TotalizeRecordContent record{kTotalizeBase, kTotalizeBase + 60, {12345678}};
  const std::string bytes = TotalizeFileBytes(content, false, {record});
  ASSERT_NE(bytes.find("  123456.78"), std::string::npos);
  const TotalizeWindow &t = Open("M0001.FDT", bytes);
  ASSERT_EQ(TotalizeToCsv(t, Format()).MessageId, 11132);
  const std::string csv = ReadAll(folder.Path("M0001.CSV"));
  const std::string last = "2026/01/02 00:00:00,2026/01/02 00:01:00,  123456.78\r\n";
  ASSERT_GE(csv.size(), last.size());
  EXPECT_EQ(csv.substr(csv.size() - last.size()), last);
}

TEST(TotalizeCsvTimes, BinaryTimesBlankTheTensZeroOfMonthAndDay) {
  EXPECT_EQ(TotalizeCsvTime(kTotalizeBase), "2026/ 1/ 2 00:00:00");
  // 2024/10/05 13:04:09: the month's zero is in the units place and stays.
  EXPECT_EQ(TotalizeCsvTime(1728133449), "2024/10/ 5 13:04:09");
  // 2024/01/20 and 2024/12/31: the day's tens place is no zero.
  EXPECT_EQ(TotalizeCsvTime(1705708800), "2024/ 1/20 00:00:00");
  EXPECT_EQ(TotalizeCsvTime(1735603200), "2024/12/31 00:00:00");
}

TEST_F(TotalizeCsv, GroupMembersAbove128AreWrittenWithD) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels[0].ChannelNo = 128;
  content.Channels[1].ChannelNo = 129;
  content.Channels[2].ChannelNo = 200;
  content.Groups[0].Members = {128, 129, 200, 0, 0, 0, 0, 0, 0, 0};
  content.Groups[1].Members = {};
  const TotalizeWindow &t =
      Open("E0001.FDT", TotalizeFileBytes(content, true, MakeTotalizeRecords(1)));
  ASSERT_EQ(TotalizeToCsv(t, Format()).MessageId, 11132);
  const std::string csv = ReadAll(folder.Path("E0001.CSV"));
  EXPECT_NE(csv.find("\r\nG1,LINE A          ,128,D1,D72,00,00,00,00,00,00,00\r\n"),
            std::string::npos);
  EXPECT_NE(csv.find("\r\nCH128,FLOW1   ,03,00,m3     ,"), std::string::npos);
  EXPECT_NE(csv.find(",CH128       ,CH129       ,CH200       \r\n"), std::string::npos);
}

TEST(TotalizeCsvPlanning, LineBudgetSplitsAbove65536Lines) {
  const TotalizeCsvPlan one = PlanTotalizeCsv("/d/T0001.FDT", 30, 65497);
  EXPECT_EQ(one.Files, std::vector<std::string>{"/d/T0001.CSV"});
  EXPECT_EQ(one.DataLines, std::vector<std::int64_t>{65497});
  const TotalizeCsvPlan two = PlanTotalizeCsv("/d/T0001.FDT", 30, 65498);
  EXPECT_EQ(two.Files, (std::vector<std::string>{"/d/T0001_1.CSV", "/d/T0001_2.CSV"}));
  EXPECT_EQ(two.DataLines, (std::vector<std::int64_t>{65497, 1}));
  const TotalizeCsvPlan three = PlanTotalizeCsv("/d/T0001.FDT", 1, 65526 + 65536 + 5);
  EXPECT_EQ(three.Files.size(), 3u);
  EXPECT_EQ(three.DataLines, (std::vector<std::int64_t>{65526, 65536, 5}));
}

// n = 30 channels, r records, every value the record number.
std::string ThirtyChannelFile(int records) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels.clear();
  for (int i = 1; i <= 30; ++i) {
    TotalizeChannelContent c;
    c.ChannelNo = i;
    c.Tag = "T" + std::to_string(i);
    c.Unit = "u";
    content.Channels.push_back(c);
  }
  content.Groups.clear();
  std::string bytes = TotalizeHeaderBytes(content, true);
  for (int i = 1; i <= records; ++i) {
    TotalizeRecordContent r{kTotalizeBase + i, kTotalizeBase + i + 1,
                            std::vector<std::int32_t>(30, i)};
    AppendTotalizeRecord(bytes, content, true, r);
  }
  return bytes;
}

TEST_F(TotalizeCsv, SixtyFiveThousandFourHundredNinetySevenRecordsOfThirtyChannelsFitOneFile) {
  const TotalizeWindow &t = Open("T0030.FDT", ThirtyChannelFile(65497));
  const TotalizeCsvOutcome outcome = TotalizeToCsv(t, Format());
  ASSERT_EQ(outcome.MessageId, 11132);
  EXPECT_EQ(outcome.Files, std::vector<std::string>{folder.Path("T0030.CSV")});
  EXPECT_EQ(LineCount(ReadAll(folder.Path("T0030.CSV"))), 65536u);
}

TEST_F(TotalizeCsv, OneRecordMoreSplitsIntoTwoFilesTheFirstWith65497DataLines) {
  const TotalizeWindow &t = Open("T0031.FDT", ThirtyChannelFile(65498));
  const TotalizeCsvOutcome outcome = TotalizeToCsv(t, Format());
  ASSERT_EQ(outcome.MessageId, 11132);
  EXPECT_EQ(outcome.Files,
            (std::vector<std::string>{folder.Path("T0031_1.CSV"), folder.Path("T0031_2.CSV")}));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("T0031.CSV")));
  const std::string first = ReadAll(folder.Path("T0031_1.CSV"));
  EXPECT_EQ(LineCount(first), 65536u);  // 39 lines in front and 65497 data lines
  // The last record: its times are base + 65498 s = 2026/01/02 18:11:38 and 18:11:39.
  std::string expected = "2026/ 1/ 2 18:11:38,2026/ 1/ 2 18:11:39";
  for (int i = 0; i < 30; ++i) expected += ",      65498";
  expected += "\r\n";
  EXPECT_EQ(ReadAll(folder.Path("T0031_2.CSV")), expected);
  // The first file ends with record 65497.
  const std::string tail = "2026/ 1/ 2 18:11:37,2026/ 1/ 2 18:11:38";
  EXPECT_NE(first.rfind(tail), std::string::npos);
  EXPECT_EQ(first.rfind("\r\n2026/"), first.rfind(tail) - 2);
}

TEST_F(TotalizeCsv, ExistingOutputGives11130AndWritesNothing) {
  const TotalizeWindow &t = OpenFixture("T0001.FDT", true, 2);
  ASSERT_TRUE(WriteWholeFile(folder.Path("T0001.CSV"), "keep"));
  const std::vector<std::string> before = FilesIn(folder.Path(""));
  const TotalizeCsvOutcome outcome = TotalizeToCsv(t, Format());
  EXPECT_EQ(outcome.MessageId, 11130);
  EXPECT_TRUE(outcome.Files.empty());
  EXPECT_EQ(ReadAll(folder.Path("T0001.CSV")), "keep");
  EXPECT_EQ(FilesIn(folder.Path("")), before);
}

TEST_F(TotalizeCsv, AnyExistingPartOfASplitGives11130) {
  const TotalizeWindow &t = Open("T0031.FDT", ThirtyChannelFile(65498));
  ASSERT_TRUE(WriteWholeFile(folder.Path("T0031_2.CSV"), "keep"));
  EXPECT_EQ(TotalizeToCsv(t, Format()).MessageId, 11130);
  EXPECT_FALSE(std::filesystem::exists(folder.Path("T0031_1.CSV")));
  EXPECT_EQ(ReadAll(folder.Path("T0031_2.CSV")), "keep");
}

TEST_F(TotalizeCsv, ValueWiderThanElevenCharactersFailsWith11131AndLeavesNothing) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels[2].Decimals = 4;  // -2147483648 x 10^-4 is "-214748.3648": twelve characters
  std::vector<TotalizeRecordContent> records = MakeTotalizeRecords(3);
  records[2].Values[2] = std::numeric_limits<std::int32_t>::min();
  const TotalizeWindow &t = Open("T0001.FDT", TotalizeFileBytes(content, true, records));
  const std::vector<std::string> before = FilesIn(folder.Path(""));
  EXPECT_EQ(TotalizeToCsv(t, Format()).MessageId, 11131);
  EXPECT_EQ(FilesIn(folder.Path("")), before);
}

TEST_F(TotalizeCsv, FailureInTheSecondFileDeletesTheFirstToo) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels.resize(1);
  content.Channels[0].Decimals = 4;
  content.Groups = {};
  std::string bytes = TotalizeHeaderBytes(content, true);
  const int records = 65526 + 10;
  for (int i = 1; i <= records; ++i) {
    TotalizeRecordContent r{kTotalizeBase + i,
                            kTotalizeBase + i,
                            {i == records ? std::numeric_limits<std::int32_t>::min() : i}};
    AppendTotalizeRecord(bytes, content, true, r);
  }
  const TotalizeWindow &t = Open("T0040.FDT", bytes);
  ASSERT_EQ(PlanTotalizeCsv(t.Path, 1, records).Files.size(), 2u);
  const std::vector<std::string> before = FilesIn(folder.Path(""));
  EXPECT_EQ(TotalizeToCsv(t, Format()).MessageId, 11131);
  EXPECT_EQ(FilesIn(folder.Path("")), before);
}

TEST_F(TotalizeCsv, SourceGoneAfterTheOpenFailsWith11131) {
  const TotalizeWindow &t = OpenFixture("T0001.FDT", true, 2);
  std::filesystem::remove(path);
  EXPECT_EQ(TotalizeToCsv(t, Format()).MessageId, 11131);
  EXPECT_TRUE(FilesIn(folder.Path("")).empty());
}

TEST_F(TotalizeCsv, RecordsAreReadFromTheFileNotFromThePageInMemory) {
  TotalizeWindow &t = OpenFixture("T0001.FDT", true, 1203);
  ASSERT_EQ(t.PageRows, 1202);
  ASSERT_EQ(TotalizeToCsv(t, Format()).MessageId, 11132);
  const std::string csv = ReadAll(folder.Path("T0001.CSV"));
  EXPECT_EQ(LineCount(csv), 3u + 9u + 1203u);
  // Record 1203 lies on page 2, which was never read into memory.
  EXPECT_NE(csv.find(",     1203.1,      -1203,    124.659\r\n"), std::string::npos);
}

TEST_F(TotalizeCsv, BarRunsToOneHundredInStepsOfAHundredthOrARecordAtATime) {
  {
    const TotalizeWindow &t = OpenFixture("T0001.FDT", true, 250);
    std::vector<std::pair<int, int>> calls;
    ASSERT_EQ(TotalizeToCsv(t, Format(), [&](int v, int m) { calls.emplace_back(v, m); }).MessageId,
              11132);
    // 250 / 100 is 2 with a remainder: a step each 3 records, 83 steps, then the end.
    ASSERT_EQ(calls.size(), 1u + 83u + 1u);
    EXPECT_EQ(calls.front(), std::make_pair(0, 100));
    EXPECT_EQ(calls[1], std::make_pair(1, 100));
    EXPECT_EQ(calls[83], std::make_pair(83, 100));
    EXPECT_EQ(calls.back(), std::make_pair(100, 100));
  }
  ResetSharedState(state);
  {
    const TotalizeWindow &t = OpenFixture("T0002.FDT", true, 40);
    std::vector<std::pair<int, int>> calls;
    ASSERT_EQ(TotalizeToCsv(t, Format(), [&](int v, int m) { calls.emplace_back(v, m); }).MessageId,
              11132);
    ASSERT_EQ(calls.size(), 1u + 40u + 1u);
    EXPECT_EQ(calls[40], std::make_pair(40, 40));
  }
}

}  // namespace
}  // namespace recscope
