#include "ftp/auto_fetch_settings.h"

#include <gtest/gtest.h>

#include "../shell/temp_folder.h"
#include "shell/civil_time.h"
#include "shell/ini_file.h"

using namespace recscope;
using recscope::testing::ReadBytes;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

namespace {
const std::int64_t kMorning = FromCivil({2025, 6, 30, 9, 15, 0});
}  // namespace

TEST(AutoFetchFolders, AddressPartOf5Gives005) {
  EXPECT_EQ(RecorderFolderName("192.168.0.5"), "IP192168000005");
}

TEST(AutoFetchFolders, AddressPartOf10Gives010) {
  EXPECT_EQ(RecorderFolderName("10.10.10.10"), "IP010010010010");
}

TEST(AutoFetchFolders, AddressPartOf100Gives100) {
  EXPECT_EQ(RecorderFolderName("100.1.100.0"), "IP100001100000");
}

TEST(AutoFetchFolders, TextThatIsNoDottedAddressGivesNoFolder) {
  for (const char *bad : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.2.3.4/..", "../1.2.3.4",
                          "1..2.3", "1.2.3.0004", "a.b.c.d", " 1.2.3.4", "1.2.3.4 "})
    EXPECT_EQ(RecorderFolderName(bad), "") << bad;
}

TEST(AutoFetchCycle, CycleMissingMakesTheNextTimeOneHourOn) {
  TempFolder folder;
  const std::string ini = folder.file("VIEWERCOM.INI");
  WriteBytes(ini, "[FTP]\r\nAUTO=1\r\n");
  const std::string cycle = ReadIni("CYCLE", "FTP", ini);
  ASSERT_EQ(cycle, kIniMissing);
  EXPECT_EQ(AddCycle(kMorning, ParseCycle(cycle)), kMorning + 3600);

  FetchTimer timer([] { return kMorning; });
  timer.Start(cycle);
  EXPECT_FALSE(timer.Tick(
      cycle, [] { return false; }, false));
  EXPECT_EQ(timer.NextFetchTime(), FromCivil({2025, 6, 30, 10, 15, 0}));
}

TEST(AutoFetchCycle, DaysAreAddedAsDatesThenHours) {
  const FetchCycle cycle = ParseCycle("02:05");
  EXPECT_EQ(cycle.Days, 2);
  EXPECT_EQ(cycle.Hours, 5);
  // Across the end of a month.
  EXPECT_EQ(AddCycle(kMorning, cycle), FromCivil({2025, 7, 2, 14, 15, 0}));
}

TEST(AutoFetchCycle, OneDigitDaysAndHoursArePaddedWithAZero) {
  EXPECT_EQ(CycleText({1, 5}), "01:05");
  EXPECT_EQ(CycleText({12, 23}), "12:23");
  EXPECT_EQ(CycleText({0, 0}), "00:00");
}

TEST(AutoFetchCycle, PartsThatAreNoNumberCountAsZero) {
  const FetchCycle cycle = ParseCycle("x:3");
  EXPECT_EQ(cycle.Days, 0);
  EXPECT_EQ(cycle.Hours, 3);
  EXPECT_EQ(ParseCycle("7").Days, 7);
  EXPECT_EQ(ParseCycle("7").Hours, 0);
}

TEST(AutoFetchStart, CheckedRowWithoutUserNameIsRefusedWith10858) {
  FetchRecorders rows;
  rows[3] = {"1.2.3.4", "", "pw", true};
  EXPECT_EQ(CheckFetchStart(rows, {0, 1}), 10858);
  rows[3].ON = false;  // an unchecked row is not looked at
  EXPECT_EQ(CheckFetchStart(rows, {0, 1}), 0);
}

TEST(AutoFetchStart, NoCycleIsRefusedWith10859) {
  FetchRecorders rows;
  rows[0] = {"1.2.3.4", "user", "pw", true};
  EXPECT_EQ(CheckFetchStart(rows, {0, 0}), 10859);
  EXPECT_EQ(CheckFetchStart(rows, {1, 0}), 0);
  EXPECT_EQ(CheckFetchStart(rows, {0, 1}), 0);
}

TEST(AutoFetchSettings, StartWritesAllTenRecordersTheCycleAndTheAutoState) {
  TempFolder folder;
  const std::string ini = folder.file("VIEWERCOM.INI");
  FetchRecorders rows;
  rows[0] = {"192.168.0.5", "rec1", "se cret", true};
  rows[9] = {"10.0.0.10", "rec10", "p=w", false};
  WriteFetchSettings(ini, rows, {1, 5}, true);

  EXPECT_EQ(ReadIni("CYCLE", "FTP", ini), "01:05");
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "1");
  EXPECT_EQ(ReadIni("IP", "FTP_1", ini), "192.168.0.5");
  EXPECT_EQ(ReadIni("PASS", "FTP_1", ini), "se cret");
  EXPECT_EQ(ReadIni("ON", "FTP_1", ini), "1");
  EXPECT_EQ(ReadIni("ON", "FTP_10", ini), "0");
  EXPECT_EQ(ReadIni("IP", "FTP_5", ini), "");
  // The password stands in the file as entered, in plain text.
  EXPECT_NE(ReadBytes(ini).find("PASS=se cret\r\n"), std::string::npos);

  const FetchRecorders back = ReadFetchRecorders(ini);
  for (int i = 0; i < kFetchRecorders; ++i) {
    EXPECT_EQ(back[i].IP, rows[i].IP) << i;
    EXPECT_EQ(back[i].USER, rows[i].USER) << i;
    EXPECT_EQ(back[i].PASS, rows[i].PASS) << i;
    EXPECT_EQ(back[i].ON, rows[i].ON) << i;
  }
}

TEST(AutoFetchSettings, MissingRecorderSectionReadsAsEmptyAndOff) {
  TempFolder folder;
  const FetchRecorder recorder = ReadFetchRecorder(folder.file("VIEWERCOM.INI"), 4);
  EXPECT_EQ(recorder.IP, "");
  EXPECT_EQ(recorder.USER, "");
  EXPECT_FALSE(recorder.ON);
}

TEST(AutoFetchTimer, FirstTickAnsweredYesRunsAtOnce) {
  std::int64_t now = kMorning;
  FetchTimer timer([&now] { return now; });
  timer.Start("00:02");
  int asked = 0;
  EXPECT_TRUE(timer.Tick(
      "00:02", [&asked] { return ++asked, true; }, false));
  EXPECT_EQ(asked, 1);
  EXPECT_FALSE(timer.FirstTick());
  EXPECT_EQ(timer.NextFetchTime(), kMorning);
}

TEST(AutoFetchTimer, FirstTickAnsweredNoWaitsOneCycle) {
  std::int64_t now = kMorning;
  FetchTimer timer([&now] { return now; });
  timer.Start("00:02");
  EXPECT_EQ(timer.NextFetchTime(), kMorning + 2 * 3600);
  int asked = 0;
  EXPECT_FALSE(timer.Tick(
      "00:02", [&asked] { return ++asked, false; }, false));
  now += 2 * 3600 - 1;
  EXPECT_FALSE(timer.Tick(
      "00:02", [&asked] { return ++asked, false; }, false));
  now += 1;
  EXPECT_TRUE(timer.Tick(
      "00:02", [&asked] { return ++asked, false; }, false));
  EXPECT_EQ(asked, 1);  // only the first tick after a start asks
}

TEST(AutoFetchTimer, TickDuringARunDoesNothing) {
  std::int64_t now = kMorning;
  FetchTimer timer([&now] { return now; });
  timer.Start("00:01");
  int asked = 0;
  EXPECT_FALSE(timer.Tick(
      "00:01", [&asked] { return ++asked, true; }, true));
  EXPECT_EQ(asked, 0);
  EXPECT_TRUE(timer.FirstTick());
}

TEST(AutoFetchTimer, EndOfARunSetsTheNextTimeOneCycleFromThen) {
  std::int64_t now = kMorning;
  FetchTimer timer([&now] { return now; });
  timer.Start("01:00");
  ASSERT_TRUE(timer.Tick(
      "01:00", [] { return true; }, false));
  now += 125;  // the run took a while
  timer.RunEnded("01:00");
  EXPECT_EQ(timer.NextFetchTime(), kMorning + 125 + 86400);
  EXPECT_FALSE(timer.Tick(
      "01:00", [] { return true; }, false));
}
