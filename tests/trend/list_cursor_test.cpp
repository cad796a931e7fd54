// A cursor sent from a list: put on a sample, set, and the view moved only when
// the time lies outside it, centred and kept inside the file.
#include "trend/list_cursor.h"

#include <gtest/gtest.h>

namespace recscope {
namespace {

constexpr std::int64_t kStart = 1000000;
constexpr std::int64_t kEnd = kStart + 10 * 9999;

TrendView ViewOf(std::int64_t start, std::int64_t end) {
  TrendView view;
  view.DisplayStart = static_cast<std::int32_t>(start);
  view.DisplayEnd = static_cast<std::int32_t>(end);
  return view;
}

TEST(ListCursorJump, InsideTheViewOnlyTheCursorMoves) {
  TrendView view = ViewOf(kStart, kEnd);
  EXPECT_FALSE(ListCursorJump(view, kStart + 506, 1, kStart, kEnd, 10));
  EXPECT_TRUE(view.Cursor1Set);
  EXPECT_EQ(view.Cursor1Time, kStart + 510);  // 6 of 10 goes up
  EXPECT_FALSE(view.Cursor2Set);
  EXPECT_EQ(view.DisplayStart, kStart);
  EXPECT_EQ(view.DisplayEnd, kEnd);
}

TEST(ListCursorJump, SecondCursorTakesTheTimeOnTheEarlierSampleAtHalf) {
  TrendView view = ViewOf(kStart, kEnd);
  ListCursorJump(view, kStart + 505, 2, kStart, kEnd, 10);
  EXPECT_TRUE(view.Cursor2Set);
  EXPECT_EQ(view.Cursor2Time, kStart + 500);
}

TEST(ListCursorJump, OutsideTheViewCentresTheSameSpan) {
  TrendView view = ViewOf(kStart, kStart + 1000);
  EXPECT_TRUE(ListCursorJump(view, kStart + 50000, 1, kStart, kEnd, 10));
  EXPECT_EQ(view.DisplayStart, kStart + 50000 - 500);
  EXPECT_EQ(view.DisplayEnd - view.DisplayStart, 1000);
}

TEST(ListCursorJump, NearTheEndTheViewStopsAtTheFileEnd) {
  TrendView view = ViewOf(kStart, kStart + 1000);
  EXPECT_TRUE(ListCursorJump(view, kEnd - 20, 1, kStart, kEnd, 10));
  EXPECT_EQ(view.DisplayEnd, kEnd);
  EXPECT_EQ(view.DisplayStart, kEnd - 1000);
}

TEST(ListCursorJump, NearTheStartTheViewStartsAtTheFileStart) {
  TrendView view = ViewOf(kEnd - 1000, kEnd);
  EXPECT_TRUE(ListCursorJump(view, kStart + 30, 1, kStart, kEnd, 10));
  EXPECT_EQ(view.DisplayStart, kStart);
  EXPECT_EQ(view.DisplayEnd, kStart + 1000);
}

}  // namespace
}  // namespace recscope
