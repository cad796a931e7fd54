#include "shell/civil_time.h"

#include <gtest/gtest.h>

using namespace recscope;

TEST(CivilTime, EpochAndKnownDate) {
  EXPECT_EQ(RecordTimeText(0), "1970/01/01 00:00:00");
  EXPECT_EQ(*ParseRecordTime("2010/11/22 13:45:07"), 1290433507);
  EXPECT_EQ(RecordTimeText(1290433507), "2010/11/22 13:45:07");
}

TEST(CivilTime, NegativeSecondsAreBefore1970) {
  EXPECT_EQ(RecordTimeText(-1), "1969/12/31 23:59:59");
}

TEST(CivilTime, LeapDayRoundTrips) {
  auto t = ParseRecordTime("2024/02/29 23:59:59");
  ASSERT_TRUE(t);
  EXPECT_EQ(RecordTimeText(*t + 1), "2024/03/01 00:00:00");
}

TEST(CivilTime, ParseRefusesWhatIsNoTime) {
  EXPECT_FALSE(ParseRecordTime("2010/13/01 00:00:00"));
  EXPECT_FALSE(ParseRecordTime("2010-11-22 00:00:00"));
  EXPECT_FALSE(ParseRecordTime("garbage"));
  EXPECT_FALSE(ParseRecordTime(""));
}

TEST(CivilTime, FiveDateFormats) {
  std::int64_t t = 1290433507;  // 2010/11/22 13:45:07
  EXPECT_EQ(FormatTime(t, 1), "2010/11/22 13:45:07");
  EXPECT_EQ(FormatTime(t, 2), "22/11/2010 13:45:07");
  EXPECT_EQ(FormatTime(t, 3), "22-Nov-10 13:45:07");
  EXPECT_EQ(FormatTime(t, 4), "11/22/2010 13:45:07");
  EXPECT_EQ(FormatTime(t, 5), "Nov-22-10 13:45:07");
  EXPECT_EQ(FormatTime(t, 9), "2010/11/22 13:45:07");
}
