#include "shell/fetch_schedule_check.h"

#include <gtest/gtest.h>

#include "shell/ini_file.h"
#include "shell/settings.h"
#include "temp_folder.h"

using namespace recscope;
using recscope::testing::TempFolder;
using recscope::testing::WriteBytes;

namespace {
const char *kRecorder = "[FTP_3]\r\nIP=192.168.0.5\r\nUSER=op\r\nPASS=pw\r\nON=1\r\n";
}

TEST(FetchScheduleCheck, AutoMissingIsWrittenAsZeroAndIsASettingsError) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, std::string(kRecorder) + "[FTP]\r\nCYCLE=00:01\r\n");
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "ERROR");
  FetchScheduleCheck check = StartupFetchCheck(ini);
  EXPECT_FALSE(check.Complete);
  EXPECT_EQ(check.ValidRecorders, 1);
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "0");
}

TEST(FetchScheduleCheck, CompleteSetIsLeftAlone) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, std::string(kRecorder) + "[FTP]\r\nCYCLE=01:00\r\nAUTO=1\r\n");
  FetchScheduleCheck check = StartupFetchCheck(ini);
  EXPECT_TRUE(check.Complete);
  EXPECT_TRUE(check.AutoOn);
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "1");
}

TEST(FetchScheduleCheck, NoRecorderOrNoCycleIsIncomplete) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini, "[FTP]\r\nCYCLE=01:00\r\nAUTO=1\r\n");
  EXPECT_FALSE(StartupFetchCheck(ini).Complete);
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "0");

  WriteBytes(ini, std::string(kRecorder) + "[FTP]\r\nAUTO=1\r\n");
  FetchScheduleCheck check = StartupFetchCheck(ini);
  EXPECT_FALSE(check.CycleSet);
  EXPECT_FALSE(check.Complete);
}

TEST(FetchScheduleCheck, RecorderWithoutAllKeysIsNotValid) {
  TempFolder folder;
  const std::string ini = ViewerComIniPath(folder.str());
  WriteBytes(ini,
             "[FTP_1]\r\nIP=10.0.0.1\r\nUSER=a\r\n[FTP_11]\r\nIP=1.1.1.1\r\nUSER=a\r\n"
             "PASS=b\r\nON=1\r\n[FTP]\r\nCYCLE=00:01\r\nAUTO=0\r\n");
  FetchScheduleCheck check = CheckFetchSchedule(ini);
  EXPECT_EQ(check.ValidRecorders, 0);  // FTP_1 lacks PASS and ON, FTP_11 is no recorder
  EXPECT_FALSE(check.Complete);
}

TEST(FetchScheduleCheck, DeliveredSettingsGiveTheSettingsError) {
  TempFolder folder;
  ASSERT_TRUE(EnsureViewerComIni(folder.str()));
  const std::string ini = ViewerComIniPath(folder.str());
  EXPECT_FALSE(StartupFetchCheck(ini).Complete);
  EXPECT_EQ(ReadIni("AUTO", "FTP", ini), "0");
}
