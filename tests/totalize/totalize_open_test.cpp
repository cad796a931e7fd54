#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "record/record_writer.h"
#include "shell/civil_time.h"
#include "shell/shared_state.h"
#include "totalize/addition.h"
#include "totalize/totalize_writer.h"
#include "totalize_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeTotalizeContent;
using testing_support::MakeTotalizeRecord;
using testing_support::MakeTotalizeRecords;
using testing_support::TotalizeFolder;

class TotalizeOpen : public ::testing::Test {
 protected:
  void SetUp() override { ResetSharedState(state); }

  std::string Write(const std::string &name, const std::string &bytes) {
    const std::string path = folder.Path(name);
    EXPECT_TRUE(WriteWholeFile(path, bytes));
    return path;
  }
  std::string WriteFile(const std::string &name, bool binary, int records,
                        const TotalizeFileContent &content = MakeTotalizeContent()) {
    return Write(name, TotalizeFileBytes(content, binary, MakeTotalizeRecords(records)));
  }

  // Opens and expects a refusal with `messageId`; the slot taken stays free.
  void ExpectRefused(const std::string &path, int messageId) {
    const TotalizeOpenResult r = OpenTotalizeFile(state, path);
    EXPECT_EQ(r.MessageId, messageId);
    EXPECT_FALSE(r.Ok());
    EXPECT_EQ(r.Slot, 0);
    for (int n = 1; n <= kTotalizeSlotCount; ++n) EXPECT_EQ(state.Totalize(n).InUse, 0);
    EXPECT_EQ(state.OpenAdditionCount, 0);
  }

  SharedState state;
  TotalizeFolder folder;
};

TEST_F(TotalizeOpen, BinaryFileFillsHeaderTablesAndFirstPage) {
  const std::string path = WriteFile("T0001.FDT", true, 3);
  const TotalizeOpenResult r = OpenTotalizeFile(state, path);
  ASSERT_TRUE(r.Ok()) << r.MessageId;
  EXPECT_EQ(r.ErrorCode, kTotalizeValid);
  EXPECT_EQ(r.Slot, 1);
  EXPECT_EQ(state.CurrentAddition, 1);
  EXPECT_EQ(state.OpenAdditionCount, 1);
  const TotalizeWindow &t = state.Totalize(1);
  EXPECT_EQ(t.InUse, 1);
  EXPECT_EQ(t.IsBinary, 1);
  EXPECT_EQ(t.Kind, 1);
  EXPECT_EQ(t.Path, path);
  EXPECT_EQ(t.HeaderText1, "TTEST01.FDT" + std::string(23, ' '));
  EXPECT_EQ(t.HeaderText2, "ZNQ-TEST" + std::string(26, ' '));
  EXPECT_EQ(t.HeaderText3, "SNo.12345678        ");
  EXPECT_EQ(t.VersionText, "Ver.01.02     ");
  EXPECT_EQ(t.ChannelCount, 3);
  EXPECT_EQ(t.GroupCount, 4);
  ASSERT_EQ(t.Channels.size(), 3u);
  EXPECT_EQ(t.Channels[0].ChannelNo, 1);
  EXPECT_EQ(t.Channels[0].Tag, "FLOW1   ");
  EXPECT_EQ(t.Channels[0].Setting1, 3);
  EXPECT_EQ(t.Channels[0].ActionType, 0);
  EXPECT_EQ(t.Channels[0].Unit, "m3     ");
  EXPECT_EQ(t.Channels[0].ScaleText, "100.0");
  EXPECT_EQ(t.Channels[0].Decimals, 1);
  EXPECT_EQ(t.Channels[1].ChannelNo, 5);
  EXPECT_EQ(t.Channels[1].ActionType, 1);
  EXPECT_EQ(t.Channels[1].ScaleText, "1");
  EXPECT_EQ(t.Channels[2].ChannelNo, 9);
  EXPECT_EQ(t.Channels[2].Setting1, 12);
  EXPECT_EQ(t.Channels[2].ScaleText, "-1.234");
  EXPECT_EQ(t.Groups[0].GroupName, "LINE A          ");
  EXPECT_EQ(t.Groups[0].MemberCount, 2);
  EXPECT_EQ(t.Groups[1].MemberCount, 2);
  EXPECT_EQ(t.Groups[2].MemberCount, 0);
  EXPECT_EQ(t.RecordLength, 20);
  EXPECT_EQ(t.DataStart, 110 + 66 + 104);
  EXPECT_EQ(t.FileLength, t.DataStart + 3 * 20);
  EXPECT_EQ(t.RecordCount, 3);
  EXPECT_EQ(t.CurrentPage, 1);
  EXPECT_EQ(t.PageCount, 1);
  EXPECT_EQ(t.PageRows, 3);
  ASSERT_EQ(t.Rows.size(), 3u);
  EXPECT_EQ(t.Rows[0].StartText, "2026/01/02 00:00:00");
  EXPECT_EQ(t.Rows[0].EndText, "2026/01/02 01:00:00");
  EXPECT_EQ(t.Rows[0].Values, (std::vector<std::string>{"1.1", "-1", "123.457"}));
  EXPECT_EQ(t.Rows[2].StartText, "2026/01/02 02:00:00");
  EXPECT_EQ(t.Rows[2].Values, (std::vector<std::string>{"3.1", "-3", "123.459"}));
}

TEST_F(TotalizeOpen, TextFileReplacesThePointByTheMachinesDecimalChar) {
  state.DecimalChar = ",";
  const std::string path = WriteFile("D0001.FDT", false, 2);
  const TotalizeOpenResult r = OpenTotalizeFile(state, path);
  ASSERT_TRUE(r.Ok()) << r.MessageId;
  const TotalizeWindow &t = state.Totalize(1);
  EXPECT_EQ(t.IsBinary, 0);
  EXPECT_EQ(t.Kind, 2);
  EXPECT_EQ(t.ChannelCount, 3);
  EXPECT_EQ(t.GroupCount, 4);
  EXPECT_EQ(t.Channels[0].ChannelNo, 1);
  EXPECT_EQ(t.Channels[0].Tag, "FLOW1   ");
  EXPECT_EQ(t.Channels[0].Unit, "m3     ");
  EXPECT_EQ(t.Channels[0].ScaleText, "100.0");  // as written, trimmed
  EXPECT_EQ(t.Channels[2].ScaleText, "-1.234");
  EXPECT_EQ(t.Channels[2].Setting1, 12);
  EXPECT_EQ(t.Channels[2].ActionType, 2);
  EXPECT_EQ(t.Channels[2].Decimals, 3);
  EXPECT_EQ(t.Groups[1].GroupName, "LINE B          ");
  EXPECT_EQ(t.Groups[1].Members[1], 9);
  EXPECT_EQ(t.RecordLength, 41 + 36);
  EXPECT_EQ(t.DataStart, 136 + 120 + 204);
  EXPECT_EQ(t.RecordCount, 2);
  ASSERT_EQ(t.Rows.size(), 2u);
  EXPECT_EQ(t.Rows[1].StartText, "2026/01/02 01:00:00");
  EXPECT_EQ(t.Rows[1].EndText, "2026/01/02 02:00:00");
  // Eleven characters, the point replaced; no trimming.
  EXPECT_EQ(t.Rows[1].Values,
            (std::vector<std::string>{"        2,1", "         -2", "    123,458"}));
}

TEST_F(TotalizeOpen, BinaryGroupCountZeroHasFourGroups) {
  const std::string path = WriteFile("M0001.FDT", true, 2, MakeTotalizeContent(0));
  ASSERT_TRUE(OpenTotalizeFile(state, path).Ok());
  const TotalizeWindow &t = state.Totalize(1);
  EXPECT_EQ(t.GroupCount, 4);
  EXPECT_EQ(t.DataStart, 110 + 22 * 3 + 4 * 26);
  EXPECT_EQ(t.RecordCount, 2);
  EXPECT_EQ(t.Rows[1].Values[0], "2.1");
}

TEST_F(TotalizeOpen, GroupCountEightHasEightEntries) {
  for (bool binary : {true, false}) {
    SCOPED_TRACE(binary);
    ResetSharedState(state);
    TotalizeFileContent content = MakeTotalizeContent(8);
    content.Groups.resize(8);
    content.Groups[7].GroupName = "LAST";
    content.Groups[7].Members = {9, 0, 0, 0, 0, 0, 0, 0, 0, 5};
    const std::string path = WriteFile("Y0001.FDT", binary, 4, content);
    ASSERT_TRUE(OpenTotalizeFile(state, path).Ok());
    const TotalizeWindow &t = state.Totalize(1);
    EXPECT_EQ(t.GroupCount, 8);
    EXPECT_EQ(t.DataStart, binary ? 110 + 66 + 8 * 26 : 136 + 120 + 8 * 51);
    EXPECT_EQ(t.Groups[7].GroupName, "LAST            ");
    EXPECT_EQ(t.Groups[7].MemberCount, 2);
    EXPECT_EQ(t.RecordCount, 4);
  }
}

// One channel numbered 1 and g 5: the fifth entry is read from the end mark and
// the data, while the data start is reckoned with four entries.
TEST_F(TotalizeOpen, GroupCountFiveReadsFiveEntriesButDataStartWithFour) {
  TotalizeFileContent content = MakeTotalizeContent(5);
  content.Channels.resize(1);
  content.Groups = {content.Groups[0]};
  content.Groups[0].Members = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  TotalizeRecordContent first{
      testing_support::kTotalizeBase, testing_support::kTotalizeBase + 60, {77}};
  // Bytes 14 to 23 behind the end mark (the fifth entry's members) are bytes 2
  // to 11 of this record: 0, 0, 1, 0, 0, 0, 1, 0, 0, 0.
  TotalizeRecordContent second{0, 1, {1}};
  const std::string path = Write("R0001.FDT", TotalizeFileBytes(content, true, {first, second}));
  const TotalizeOpenResult r = OpenTotalizeFile(state, path);
  ASSERT_TRUE(r.Ok()) << r.MessageId;
  const TotalizeWindow &t = state.Totalize(1);
  EXPECT_EQ(t.Kind, 6);
  EXPECT_EQ(t.GroupCount, 5);
  EXPECT_EQ(t.DataStart, 110 + 22 + 4 * 26);
  EXPECT_EQ(t.RecordCount, 2);
  EXPECT_EQ(t.Groups[4].Members, (std::array<std::int16_t, 10>{0, 0, 1, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(t.Groups[4].MemberCount, 2);
  EXPECT_EQ(t.Rows[0].Values[0], "7.7");  // channel 1 has one decimal
  EXPECT_EQ(t.Rows[1].StartText, "1970/01/01 00:00:00");

  // With a value whose bytes are no channel number, the same reading refuses
  // the file for its group table.
  ResetSharedState(state);
  TotalizeRecordContent other{0, 1, {7}};
  const std::string bad = Write("R0002.FDT", TotalizeFileBytes(content, true, {first, other}));
  ExpectRefused(bad, 11122);
}

TEST_F(TotalizeOpen, ExactlyTwelveHundredTwoRecordsMakeOnePage) {
  for (bool binary : {true, false}) {
    SCOPED_TRACE(binary);
    ResetSharedState(state);
    const std::string path = WriteFile("T1202.FDT", binary, 1202);
    ASSERT_TRUE(OpenTotalizeFile(state, path).Ok());
    const TotalizeWindow &t = state.Totalize(1);
    EXPECT_EQ(t.RecordCount, 1202);
    EXPECT_EQ(t.PageCount, 1);
    EXPECT_EQ(t.PageRows, 1202);
    ASSERT_EQ(t.Rows.size(), 1202u);
    EXPECT_EQ(t.Rows[1201].Values[1], binary ? "-1202" : "      -1202");
  }
}

TEST_F(TotalizeOpen, TwelveHundredThreeRecordsMakeTwoPagesTheSecondOfOneRow) {
  for (bool binary : {true, false}) {
    SCOPED_TRACE(binary);
    ResetSharedState(state);
    const std::string path = WriteFile("T1203.FDT", binary, 1203);
    ASSERT_TRUE(OpenTotalizeFile(state, path).Ok());
    TotalizeWindow &t = state.Totalize(1);
    EXPECT_EQ(t.RecordCount, 1203);
    EXPECT_EQ(t.PageCount, 2);
    EXPECT_EQ(t.PageRows, 1202);
    t.CurrentPage = 2;
    ASSERT_TRUE(ReadTotalizePage(t, state.DecimalChar));
    EXPECT_EQ(t.PageRows, 1);
    ASSERT_EQ(t.Rows.size(), 1u);
    const TotalizeRecordContent last = MakeTotalizeRecord(1203);
    EXPECT_EQ(t.Rows[0].StartText, RecordTimeText(last.StartTime));
    EXPECT_EQ(t.Rows[0].Values[0], binary ? "1203.1" : "     1203.1");
    t.CurrentPage = 1;
    ASSERT_TRUE(ReadTotalizePage(t, state.DecimalChar));
    EXPECT_EQ(t.PageRows, 1202);
    EXPECT_EQ(t.Rows[0].StartText, "2026/01/02 00:00:00");
  }
}

TEST_F(TotalizeOpen, PagesStartAtTheirOffsetsAndLastPageHoldsTheRest) {
  const std::string path = WriteFile("E2500.FDT", true, 2500);
  ASSERT_TRUE(OpenTotalizeFile(state, path).Ok());
  TotalizeWindow &t = state.Totalize(1);
  EXPECT_EQ(t.PageCount, 3);
  t.CurrentPage = 2;
  ASSERT_TRUE(ReadTotalizePage(t, "."));
  EXPECT_EQ(t.PageRows, 1202);
  EXPECT_EQ(t.Rows[0].Values[1], "-1203");
  EXPECT_EQ(t.Rows[1201].Values[1], "-2404");
  t.CurrentPage = 3;
  ASSERT_TRUE(ReadTotalizePage(t, "."));
  EXPECT_EQ(t.PageRows, 2500 - 2 * 1202);
  EXPECT_EQ(t.Rows.front().Values[1], "-2405");
  EXPECT_EQ(t.Rows.back().Values[1], "-2500");
  t.CurrentPage = 4;
  EXPECT_FALSE(ReadTotalizePage(t, "."));
}

TEST_F(TotalizeOpen, EachPageReadOpensTheFileAgain) {
  const std::string path = WriteFile("T0002.FDT", true, 5);
  ASSERT_TRUE(OpenTotalizeFile(state, path).Ok());
  TotalizeWindow &t = state.Totalize(1);
  EXPECT_EQ(t.Rows[0].Values[1], "-1");
  // The same length with other values: the next read shows them.
  std::vector<TotalizeRecordContent> records = MakeTotalizeRecords(5);
  records[0].Values[1] = 4321;
  ASSERT_TRUE(WriteWholeFile(path, TotalizeFileBytes(MakeTotalizeContent(), true, records)));
  ASSERT_TRUE(ReadTotalizePage(t, "."));
  EXPECT_EQ(t.Rows[0].Values[1], "4321");
  // A file that has gone away is found at the next read.
  std::filesystem::remove(path);
  EXPECT_FALSE(ReadTotalizePage(t, "."));
}

TEST_F(TotalizeOpen, ProgressRunsOverThePagesRecords) {
  const std::string path = WriteFile("T0003.FDT", true, 7);
  std::vector<std::pair<int, int>> steps;
  ASSERT_TRUE(OpenTotalizeFile(state, path, [&](int done, int total) {
                steps.emplace_back(done, total);
              }).Ok());
  ASSERT_EQ(steps.size(), 8u);
  EXPECT_EQ(steps.front(), std::make_pair(0, 7));
  EXPECT_EQ(steps.back(), std::make_pair(7, 7));
}

TEST_F(TotalizeOpen, EndMarkFFFEIsRefusedEvenAtTheRightLength) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.EndMark = 0xFFFE;
  const std::string path = WriteFile("T0004.FDT", true, 3, content);
  EXPECT_EQ(std::filesystem::file_size(path), 110u + 66 + 104 + 3 * 20);
  ExpectRefused(path, 11120);
}

TEST_F(TotalizeOpen, FileEndingRightAfterTheTablesHasNoData) {
  ExpectRefused(WriteFile("T0005.FDT", true, 0), 11124);
  ExpectRefused(WriteFile("T0006.FDT", false, 0), 11124);
}

TEST_F(TotalizeOpen, HalfARecordIsAWrongDataLength) {
  for (bool binary : {true, false}) {
    SCOPED_TRACE(binary);
    const TotalizeFileContent content = MakeTotalizeContent();
    std::string bytes = TotalizeFileBytes(content, binary, MakeTotalizeRecords(2));
    const std::size_t half = static_cast<std::size_t>(TotalizeRecordLength(3, binary)) / 2;
    // The tables alone with half a record, and two records with half a third.
    const std::size_t tables = TotalizeHeaderBytes(content, binary).size();
    ExpectRefused(Write(binary ? "T0007.FDT" : "T0008.FDT", bytes.substr(0, tables + half)), 11123);
    std::string third;
    AppendTotalizeRecord(third, content, binary, MakeTotalizeRecord(3));
    ExpectRefused(Write(binary ? "T0009.FDT" : "T0010.FDT", bytes + third.substr(0, half)), 11123);
  }
}

TEST_F(TotalizeOpen, NoChannelsIsRefused) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Channels.clear();
  content.Groups.clear();
  ExpectRefused(WriteFile("T0011.FDT", true, 2, content), 11121);
  ExpectRefused(WriteFile("T0012.FDT", false, 2, content), 11121);
}

TEST_F(TotalizeOpen, GroupMemberZeroIsNeitherCheckedNorCounted) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Groups[0].Members = {0, 9, 0, 0, 5, 0, 0, 0, 0, 1};
  for (bool binary : {true, false}) {
    SCOPED_TRACE(binary);
    ResetSharedState(state);
    ASSERT_TRUE(OpenTotalizeFile(state, WriteFile("W0001.FDT", binary, 1, content)).Ok());
    const TotalizeGroup &g = state.Totalize(1).Groups[0];
    EXPECT_EQ(g.MemberCount, 3);
    EXPECT_EQ(g.Members, (std::array<std::int16_t, 10>{0, 9, 0, 0, 5, 0, 0, 0, 0, 1}));
  }
}

TEST_F(TotalizeOpen, MemberWhoseChannelIsMissingRefusesTheWholeFile) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.Groups.resize(3);
  content.Groups[2].Members = {1, 5, 9, 2, 0, 0, 0, 0, 0, 0};  // there is no channel 2
  ExpectRefused(WriteFile("T0013.FDT", true, 2, content), 11122);
  ExpectRefused(WriteFile("T0014.FDT", false, 2, content), 11122);
}

TEST_F(TotalizeOpen, TruncatedFilesAreRefusedAsWrongFiles) {
  for (bool binary : {true, false}) {
    SCOPED_TRACE(binary);
    const TotalizeFileContent content = MakeTotalizeContent();
    const std::string tables = TotalizeHeaderBytes(content, binary);
    const std::size_t header = binary ? 108 : 136;
    const std::size_t channels = header + (binary ? 22 : 40) * 3;
    // Within the header, within the channel table, within the group table.
    for (std::size_t cut :
         {std::size_t{103}, header - 1, header + 10, channels - 1, channels + 30}) {
      SCOPED_TRACE(cut);
      ExpectRefused(Write("T0015.FDT", tables.substr(0, cut)), 11120);
    }
  }
  // A binary file that stops inside the end mark.
  const std::string binaryTables = TotalizeHeaderBytes(MakeTotalizeContent(), true);
  ExpectRefused(Write("T0016.FDT", binaryTables.substr(0, binaryTables.size() - 1)), 11120);
}

TEST_F(TotalizeOpen, WrongKindLetterOrExtensionIsRefusedBeforeAnySlotIsTaken) {
  const std::string bytes = TotalizeFileBytes(MakeTotalizeContent(), true, MakeTotalizeRecords(2));
  state.CurrentAddition = 5;
  ExpectRefused(Write("S0001.FDT", bytes), 11112);
  ExpectRefused(Write("A0001.FDT", bytes), 11112);
  ExpectRefused(Write("T0001.DAT", bytes), 11112);
  EXPECT_EQ(state.CurrentAddition, 5);
  // The same bytes under a totalize name open, whatever the case.
  EXPECT_TRUE(OpenTotalizeFile(state, Write("e0001.fdt", bytes)).Ok());
  EXPECT_EQ(state.Totalize(1).Kind, 7);
}

TEST_F(TotalizeOpen, MissingFileIsAWrongFile) { ExpectRefused(folder.Path("T9999.FDT"), 11120); }

TEST_F(TotalizeOpen, TextHeaderWithoutLineFeedAtItsEndIsRefused) {
  std::string bytes = TotalizeFileBytes(MakeTotalizeContent(), false, MakeTotalizeRecords(2));
  ASSERT_EQ(bytes[135], '\n');
  bytes[135] = ' ';
  ExpectRefused(Write("T0017.FDT", bytes), 11120);
}

TEST_F(TotalizeOpen, TextGroupCountThatIsNoNumberMeansFour) {
  TotalizeFileContent content = MakeTotalizeContent();
  content.TextGroupCount = "xx";
  ASSERT_TRUE(OpenTotalizeFile(state, WriteFile("T0018.FDT", false, 2, content)).Ok());
  EXPECT_EQ(state.Totalize(1).GroupCount, 4);
  EXPECT_EQ(state.Totalize(1).Groups[1].MemberCount, 2);
}

TEST_F(TotalizeOpen, GroupCountAboveEightIsRefused) {
  TotalizeFileContent content = MakeTotalizeContent(9);
  ExpectRefused(WriteFile("T0019.FDT", true, 40, content), 11120);
  ExpectRefused(WriteFile("T0020.FDT", false, 40, content), 11120);
}

TEST_F(TotalizeOpen, TextNumberFieldsThatDoNotParseAreRefused) {
  const std::string good = TotalizeFileBytes(MakeTotalizeContent(), false, MakeTotalizeRecords(2));
  const std::size_t channel2 = 136 + 40;
  const std::size_t groups = 136 + 120;
  const std::size_t data = groups + 4 * 51;
  struct Patch {
    const char *what;
    std::size_t at;
    std::string text;
  };
  const Patch patches[] = {
      {"channel count", 102, "x3"},     {"channel number", channel2 + 2, "0?"},
      {"setting", channel2 + 14, "ab"}, {"action type", channel2 + 17, "--"},
      {"decimals", channel2 + 36, "x"}, {"group member", groups + 20 + 3 * 2, "z1"},
      {"start time", data, "20x6"},     {"end time of the second record", data + 77 + 20 + 5, "ab"},
  };
  for (const Patch &p : patches) {
    SCOPED_TRACE(p.what);
    std::string bytes = good;
    bytes.replace(p.at, p.text.size(), p.text);
    ASSERT_EQ(bytes.size(), good.size());
    ExpectRefused(Write("T0021.FDT", bytes), 11120);
  }
  // The unpatched file opens.
  EXPECT_TRUE(OpenTotalizeFile(state, Write("T0022.FDT", good)).Ok());
}

TEST_F(TotalizeOpen, FindFreeSlotTakesTheFirstFreeAndMakesItCurrent) {
  state.Totalize(1).InUse = 1;
  state.Totalize(2).InUse = 1;
  state.Totalize(4).InUse = 1;
  EXPECT_EQ(FindFreeTotalizeSlot(state), 3);
  EXPECT_EQ(state.CurrentAddition, 3);
  for (int n = 1; n <= kTotalizeSlotCount; ++n) state.Totalize(n).InUse = 1;
  state.CurrentAddition = 7;
  EXPECT_EQ(FindFreeTotalizeSlot(state), 0);
  EXPECT_EQ(state.CurrentAddition, 7);
}

TEST_F(TotalizeOpen, SameFileOpensAgainUntilAllSixteenSlotsAreTaken) {
  const std::string path = WriteFile("T0023.FDT", true, 2);
  for (int n = 1; n <= kTotalizeSlotCount; ++n) {
    const TotalizeOpenResult r = OpenTotalizeFile(state, path);
    ASSERT_TRUE(r.Ok());
    EXPECT_EQ(r.Slot, n);
    EXPECT_EQ(state.Totalize(n).Path, path);
  }
  EXPECT_EQ(state.OpenAdditionCount, 16);
  const TotalizeOpenResult r = OpenTotalizeFile(state, path);
  EXPECT_EQ(r.MessageId, 11113);
  EXPECT_EQ(r.Slot, 0);
  EXPECT_EQ(state.OpenAdditionCount, 16);
  // A freed slot is taken again.
  state.Totalize(9).InUse = 0;
  EXPECT_EQ(OpenTotalizeFile(state, path).Slot, 9);
}

TEST_F(TotalizeOpen, RefusedFileLeavesItsSlotForTheNextFile) {
  ExpectRefused(WriteFile("T0024.FDT", true, 0), 11124);
  EXPECT_EQ(state.CurrentAddition, 1);
  const TotalizeOpenResult r = OpenTotalizeFile(state, WriteFile("T0025.FDT", false, 1));
  ASSERT_TRUE(r.Ok());
  EXPECT_EQ(r.Slot, 1);
  EXPECT_EQ(state.Totalize(1).IsBinary, 0);
  EXPECT_EQ(state.Totalize(1).RecordCount, 1);
}

TEST_F(TotalizeOpen, SequencesOfBothEncodingsRunOnTheCurrentSlot) {
  const std::string path = WriteFile("T0026.FDT", true, 2);
  state.CurrentAddition = 4;
  TotalizeWindow &t = state.Totalize(4);
  t.Path = path;
  t.FileLength = static_cast<std::int32_t>(std::filesystem::file_size(path));
  EXPECT_EQ(OpenTotalizeBinary(state), kTotalizeValid);
  EXPECT_EQ(t.InUse, 1);
  EXPECT_EQ(t.RecordCount, 2);
  // The same bytes read as text: the header's line end is missing.
  TotalizeWindow &u = state.Totalize(5);
  state.CurrentAddition = 5;
  u.Path = path;
  u.FileLength = t.FileLength;
  EXPECT_EQ(OpenTotalizeText(state), kTotalizeBadFile);
  EXPECT_EQ(u.InUse, 0);
  EXPECT_EQ(state.OpenAdditionCount, 1);
}

}  // namespace
}  // namespace recscope
