#include "shell/child_layout.h"

#include <gtest/gtest.h>

using namespace recscope;

TEST(ChildLayout, SideBySideFillsTheFrame) {
  auto places = TileSlotWindows(3, 1000, 600, TileDirection::kSideBySide);
  ASSERT_EQ(places.size(), 3u);
  EXPECT_EQ(places[0].left, 0);
  EXPECT_EQ(places[0].width, 333);
  EXPECT_EQ(places[1].left, 333);
  EXPECT_EQ(places[2].left, 666);
  EXPECT_EQ(places[2].width, 334);
  for (const ChildRect &r : places) {
    EXPECT_EQ(r.top, 0);
    EXPECT_EQ(r.height, 600);
  }
}

TEST(ChildLayout, OneAboveTheOtherFillsTheFrame) {
  auto places = TileSlotWindows(2, 800, 601, TileDirection::kOneAboveTheOther);
  ASSERT_EQ(places.size(), 2u);
  EXPECT_EQ(places[0].top, 0);
  EXPECT_EQ(places[0].height, 300);
  EXPECT_EQ(places[1].top, 300);
  EXPECT_EQ(places[1].height, 301);
  EXPECT_EQ(places[1].width, 800);
}

TEST(ChildLayout, NoWindowsGiveNoPlaces) {
  EXPECT_TRUE(TileSlotWindows(0, 800, 600, TileDirection::kSideBySide).empty());
}
