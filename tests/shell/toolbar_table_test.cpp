#include "shell/toolbar_table.h"

#include <gtest/gtest.h>

#include <string>

#include "shell/catalogue.h"

using namespace recscope;

TEST(ToolbarTable, FortyTwoPlacesInOrder) {
  auto table = ToolButtonTable();
  ASSERT_EQ(table.size(), 42u);
  int buttons = 0;
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(table[i].index, static_cast<int>(i) + 1);
    if (table[i].key != nullptr) {
      ++buttons;
      EXPECT_FALSE(GetMessageText(table[i].tipId).empty()) << table[i].index;
    }
  }
  EXPECT_EQ(buttons, 25);
  EXPECT_EQ(table[2].key, nullptr);   // 3: separator
  EXPECT_EQ(table[10].key, nullptr);  // 11: separator
  EXPECT_STREQ(table[22].key, "Right and left");
  EXPECT_EQ(table[22].tipId, 41313);
}

TEST(ToolbarTable, EveryButtonButTheTrendOneReachesItsCommand) {
  for (const ToolButtonSpec &b : ToolButtonTable()) {
    if (b.key == nullptr || std::string(b.key) == "Torenndo") continue;
    EXPECT_FALSE(DispatchToolKey(b.key).empty()) << b.key;
  }
  EXPECT_EQ(DispatchToolKey("Open"), "mnuFileOpen");
  EXPECT_EQ(DispatchToolKey("Enlarge"), "mnuBetweenC");
  EXPECT_EQ(DispatchToolKey("UpDown"), "mnuWindowTileHorizontal");
  EXPECT_EQ(DispatchToolKey("Right and left"), "mnuWindowTileVertical");
  EXPECT_EQ(DispatchToolKey("cursor"), "mnuWindowBetweenC");
  EXPECT_EQ(DispatchToolKey("Dlate"), "mnuEditCurJumpDlate");
}

TEST(ToolbarTable, TrendButtonKeyMatchesNothing) {
  EXPECT_STREQ(ToolButtonTable()[11].key, "Torenndo");
  EXPECT_EQ(DispatchToolKey("Torenndo"), "");
  EXPECT_EQ(DispatchToolKey("Torando"), "mnuWindowTrando");
}

TEST(ToolbarTable, KeysCompareExactly) {
  EXPECT_EQ(DispatchToolKey("open"), "");
  EXPECT_EQ(DispatchToolKey("Cursor"), "");
  EXPECT_EQ(DispatchToolKey("Open "), "");
  EXPECT_EQ(DispatchToolKey("ComSet"), "mnuComunicationSetting");
  EXPECT_EQ(DispatchToolKey("CurChange"), "mnuCursorChange");
}
