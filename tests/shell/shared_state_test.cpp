#include "shell/shared_state.h"

#include <gtest/gtest.h>

#include <fstream>

#include "shell/settings.h"
#include "temp_folder.h"

using namespace recscope;

TEST(SharedState, StartValues) {
  SharedState s;
  ResetSharedState(s);
  EXPECT_EQ(s.CurrentFile, 1);
  EXPECT_EQ(s.OpenFileCount, 0);
  EXPECT_EQ(s.MenuState, 5);
  EXPECT_EQ(s.LevelBase, 10);
  EXPECT_EQ(s.LevelRowLimit, 6000);
  for (const RecordSlot &slot : s.Slots) EXPECT_FALSE(slot.InUse());
}

TEST(SharedState, ProgramFolderAtTheRootGetsNoSecondSeparator) {
  EXPECT_EQ(ProgramFilePath("/", "COMWORK.DAT"), "/COMWORK.DAT");
  EXPECT_EQ(ProgramFilePath("/opt/recscope", "COMWORK.DAT"), "/opt/recscope/COMWORK.DAT");
  EXPECT_EQ(ProgramFilePath("/opt/recscope/", "end"), "/opt/recscope/end");
}

TEST(SharedState, CommaDecimalCharSeparatesListsWithSemicolon) {
  SharedState s;
  SetSeparators(s, ",");
  EXPECT_EQ(s.DecimalChar, ",");
  EXPECT_EQ(s.ListSeparator, ";");
  SetSeparators(s, ".");
  EXPECT_EQ(s.ListSeparator, ",");
}

TEST(SharedState, ProgramFolderAtTheRootGivesRootComWorkPath) {
  SharedState s;
  s.ProgramFolder = "/";
  ResetSharedState(s);
  EXPECT_EQ(s.ComWorkPath, "/COMWORK.DAT");
  EXPECT_EQ(s.EndMarkerPath, "/end");
  s.ProgramFolder = "/opt/rs";
  ResetSharedState(s);
  EXPECT_EQ(s.ComWorkPath, "/opt/rs/COMWORK.DAT");
  EXPECT_FALSE(s.AutoRunning);
}

TEST(SharedState, SlotPeriodIsNeverBelowOneSecond) {
  RecordSlot slot;
  EXPECT_EQ(slot.Period(), 1);
  slot.SamplePeriod = -5;
  EXPECT_EQ(slot.Period(), 1);
  slot.SamplePeriod = 10;
  EXPECT_EQ(slot.Period(), 10);
}

TEST(SharedState, SlotNumberReachesTheSameSlotAsTheArray) {
  SharedState s;
  s.Slot(3).Record.FilePath = "/data/S0001.FDT";
  EXPECT_EQ(s.Slots[3].Record.FilePath, "/data/S0001.FDT");
  EXPECT_THROW(s.Slot(18), std::out_of_range);
}

// Both programs start the shared state with this one routine, so the batch
// command draws in the direction and date format the operator chose.
TEST(SharedState, StartReadsDirectionAndDateFormatOfTheSettings) {
  recscope::testing::TempFolder folder;
  {
    std::ofstream ini(folder.file("VIEWERCOM.INI"));
    ini << "[DATETYPE]\r\nHYOUJINUM=3\r\n[TREND]\r\nDIRECTION=Ver\r\n";
  }
  SharedState s;
  s.ProgramFolder = folder.str();
  s.Slot(2).Record.InUse = -1;
  StartSharedState(s, ",");
  EXPECT_EQ(s.TrendOrientation, 0);
  EXPECT_EQ(s.DateFormatNo, 3);
  EXPECT_EQ(s.DecimalChar, ",");
  EXPECT_EQ(s.ListSeparator, ";");
  EXPECT_FALSE(s.Slot(2).InUse());
  EXPECT_EQ(s.ProgramFolder, folder.str());
}

TEST(SharedState, StartWithoutSettingsFileDeliversOneAndReadsHorizontal) {
  recscope::testing::TempFolder folder;
  SharedState s;
  s.ProgramFolder = folder.str();
  StartSharedState(s, ".");
  EXPECT_TRUE(std::ifstream(ViewerComIniPath(folder.str())).good());
  EXPECT_EQ(s.TrendOrientation, -1);
  EXPECT_EQ(s.DateFormatNo, 1);
}
