#include "record/range_statistics.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "level_test_support.h"

namespace recscope {
namespace {

using testing::Channel;

// The plain fold over level 1 from row i0 to i1 with the rules of the levels.
std::vector<ChannelStatistics> PlainFold(const testing::ExpectedLevel &level1, int ct, int i0,
                                         int i1) {
  std::vector<ChannelStatistics> out(static_cast<size_t>(ct));
  for (int c = 0; c < ct; ++c) {
    auto &s = out[static_cast<size_t>(c)];
    s.Min = level1.values[(i0 * ct + c) * 2];
    s.Max = level1.values[(i0 * ct + c) * 2 + 1];
    for (int r = i0; r <= i1; ++r) {
      const std::int16_t lo = level1.values[(r * ct + c) * 2];
      const std::int16_t hi = level1.values[(r * ct + c) * 2 + 1];
      if (r > i0) {
        if (lo != -32768 && lo < s.Min) s.Min = lo;
        s.Max = (s.Max == -32768 || hi == -32768) ? -32768 : std::max(s.Max, hi);
      }
      s.Sum += level1.sums[(r * ct + c) * 2];
      s.Count += level1.sums[(r * ct + c) * 2 + 1];
    }
  }
  return out;
}

class RangeStatisticsTest : public ::testing::Test {
 protected:
  void Make(int records, bool noDataMark) {
    folder = testing::TempFolder(::testing::UnitTest::GetInstance()->current_test_info()->name());
    samples = testing::RandomSamples(chs, {{1, 0}, {2, 1}}, records, 31, true, noDataMark);
    info = testing::WriteRecord(folder + "/SREC.FDT", chs, {{1, 0}, {2, 1}}, samples, 2);
    ASSERT_EQ(BuildWorkingFiles(info, folder, 1), -1);
    levels = testing::ExpectedLevels(chs, {{1, 0}, {2, 1}}, samples, info.TopLevel + 1);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::vector<ChannelStatistics> Stats(int i0, int i1) {
    std::vector<ChannelStatistics> out;
    EXPECT_TRUE(GetRangeStatistics(info, folder, 1, 10, info.FirstTime + 10LL * i0,
                                   info.FirstTime + 10LL * i1, out));
    return out;
  }

  void ExpectSame(const std::vector<ChannelStatistics> &a, const std::vector<ChannelStatistics> &b,
                  const std::string &what) {
    ASSERT_EQ(a.size(), b.size());
    for (size_t c = 0; c < a.size(); ++c) {
      EXPECT_EQ(a[c].Min, b[c].Min) << what << " channel " << c;
      EXPECT_EQ(a[c].Max, b[c].Max) << what << " channel " << c;
      EXPECT_EQ(a[c].Sum, b[c].Sum) << what << " channel " << c;
      EXPECT_EQ(a[c].Count, b[c].Count) << what << " channel " << c;
    }
  }

  std::string folder;
  std::vector<Channel> chs = {{0, 1}, {1, 2}, {2, 0}};
  std::vector<testing::Sample> samples;
  RecordFileInfo info;
  std::vector<testing::ExpectedLevel> levels;
};

// Without the no-data mark in the minimums every walk over the levels must give
// exactly the plain fold over level 1.
TEST_F(RangeStatisticsTest, WalkOverLevelsAgreesWithPlainFoldOnRandomRanges) {
  Make(654321, false);
  ASSERT_EQ(info.TopLevel, 3);
  const int ct = info.ChannelTotal;
  std::mt19937 rng(5);
  std::uniform_int_distribution<int> row(0, info.RecordCount - 1);
  for (int k = 0; k < 300; ++k) {
    int a = row(rng), b = row(rng);
    if (k % 3 == 0) b = std::min(info.RecordCount - 1, a + k);  // short ranges too
    if (a > b) std::swap(a, b);
    ExpectSame(Stats(a, b), PlainFold(levels[0], ct, a, b),
               std::to_string(a) + ".." + std::to_string(b));
  }
  ExpectSame(Stats(0, info.RecordCount - 1), PlainFold(levels[0], ct, 0, info.RecordCount - 1),
             "whole file");
}

TEST_F(RangeStatisticsTest, RangeBelowOneHundredRowsIsReadAtLevelOneWhateverItsPosition) {
  Make(20000, true);
  const int ct = info.ChannelTotal;
  // Spoil level 2: a range of fewer than 100 rows must not notice.
  std::filesystem::resize_file(WorkingFilePath(folder, 1, 2, false), 0);
  std::filesystem::resize_file(WorkingFilePath(folder, 1, 2, true), 0);
  for (int start : {0, 5, 990, 12345, 19900}) {
    ExpectSame(Stats(start, start + 99), PlainFold(levels[0], ct, start, start + 99),
               std::to_string(start));
  }
  // A range of 100 rows climbs, and then sees the spoilt level.
  auto climbed = Stats(1000, 1200);
  auto plain = PlainFold(levels[0], ct, 1000, 1200);
  EXPECT_NE(climbed[0].Count, plain[0].Count);
}

TEST_F(RangeStatisticsTest, NoDataMaximumPoisonsTheRange) {
  Make(30000, true);
  std::vector<ChannelStatistics> out = Stats(0, info.RecordCount - 1);
  // Random data with a mark now and then: the two-unit channel's maximum is poisoned.
  EXPECT_EQ(out[0].Max, -32768);
  EXPECT_NE(out[0].Min, -32768);
}

TEST_F(RangeStatisticsTest, SingleRecordRange) {
  Make(7000, false);
  const int ct = info.ChannelTotal;
  ExpectSame(Stats(4321, 4321), PlainFold(levels[0], ct, 4321, 4321), "one");
}

TEST_F(RangeStatisticsTest, MissingLevelFilesAreAFailure) {
  Make(7000, false);
  std::vector<ChannelStatistics> out;
  EXPECT_FALSE(GetRangeStatistics(info, folder, 2, 10, info.FirstTime, info.LastTime, out));
}

}  // namespace
}  // namespace recscope
