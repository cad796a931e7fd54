#include "shell/shared_state.h"

#include <gtest/gtest.h>

using namespace recscope;

TEST(SharedState, StartValues) {
  SharedState s;
  ResetSharedState(s);
  EXPECT_EQ(s.CurrentFile, 1);
  EXPECT_EQ(s.OpenFileCount, 0);
  EXPECT_EQ(s.MenuState, 5);
  EXPECT_EQ(s.LevelBase, 10);
  EXPECT_EQ(s.LevelRowLimit, 6000);
  EXPECT_EQ(IntervalTable.size(), 33u);
  EXPECT_EQ(IntervalTable.front(), 1);
  EXPECT_EQ(IntervalTable.back(), 63072000);
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
