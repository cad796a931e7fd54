#include "shell/menu_state.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace recscope;

TEST(MenuState, StateFromTheOpenCounts) {
  EXPECT_EQ(MenuStateOf(0, 0), 0);
  EXPECT_EQ(MenuStateOf(1, 0), 1);
  EXPECT_EQ(MenuStateOf(0, 1), 2);
  EXPECT_EQ(MenuStateOf(2, 3), 1);
}

TEST(MenuState, NothingOpenSwitchesEveryTableCommandOff) {
  for (const MenuStateRow &row : MenuStateTable()) EXPECT_FALSE(MenuCommandOn(row.control, 0));
}

TEST(MenuState, RecordOpenSwitchesEveryTableCommandOn) {
  for (const MenuStateRow &row : MenuStateTable()) EXPECT_TRUE(MenuCommandOn(row.control, 1));
}

TEST(MenuState, OneTotalizeWindowOnlyKeepsWindowMenuOnAndItsRecordEntriesOff) {
  const int state = MenuStateOf(0, 1);
  EXPECT_TRUE(MenuCommandOn("mnuWindow", state));
  for (const char *entry :
       {"mnuWindowMoment", "mnuWindowAramu", "mnuWindowBetweenC", "mnuWindowChohyo"})
    EXPECT_FALSE(MenuCommandOn(entry, state)) << entry;
  EXPECT_TRUE(MenuCommandOn("mnuFileClose", state));
  EXPECT_TRUE(MenuCommandOn("mnuFileChange", state));
  EXPECT_FALSE(MenuCommandOn("mnuFileSaveas", state));
  EXPECT_FALSE(MenuCommandOn("mnuEdit", state));
}

TEST(MenuState, CommandsOutsideTheTableStayOn) {
  EXPECT_TRUE(MenuCommandOn("mnuFileOpen", 0));
  EXPECT_TRUE(MenuCommandOn("mnuHelpAbout", 0));
}

namespace {
std::set<int> ButtonsOn(int state) {
  std::set<int> on;
  for (int i = 1; i <= 42; ++i)
    if (ToolButtonOn(i, state)) on.insert(i);
  return on;
}
}  // namespace

TEST(MenuState, ToolButtonsOfEachState) {
  EXPECT_EQ(ButtonsOn(0), (std::set<int>{1, 2, 25}));
  EXPECT_EQ(ButtonsOn(1), (std::set<int>{1,  2,  4,  5,  6,  7,  8,  9,  10, 13, 14, 15,
                                         16, 22, 23, 25, 27, 28, 29, 30, 39, 40, 41, 42}));
  EXPECT_EQ(ButtonsOn(2), (std::set<int>{1, 2, 22, 23, 25}));
}

TEST(MenuState, StartValueFiveIsTreatedAsNothingOpen) {
  EXPECT_EQ(ButtonsOn(5), ButtonsOn(0));
  EXPECT_FALSE(MenuCommandOn("mnuFileClose", 5));
}
