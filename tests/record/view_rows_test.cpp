#include "record/view_rows.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "level_test_support.h"

namespace recscope {
namespace {

using testing::Channel;

class ViewRowsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder = testing::TempFolder(::testing::UnitTest::GetInstance()->current_test_info()->name());
    samples = testing::RandomSamples(chs, {{1, 0}}, 25000, 21, false);
    info = testing::WriteRecord(folder + "/SREC.FDT", chs, {{1, 0}}, samples, 2);
    ASSERT_EQ(BuildWorkingFiles(info, folder, 1), -1);
    levels = testing::ExpectedLevels(chs, {{1, 0}}, samples, info.TopLevel + 1);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::string folder;
  std::vector<Channel> chs = {{0, 1}, {1, 2}};
  std::vector<testing::Sample> samples;
  RecordFileInfo info;
  std::vector<testing::ExpectedLevel> levels;
};

TEST_F(ViewRowsTest, StepFollowsZoomModeAndManualZoom) {
  info.LevelStep = 4;
  ViewRowRequest r;
  r.windowStep = 7;
  EXPECT_EQ(ViewRowStep(info, r), 7);
  r.zoomMode = 2;
  EXPECT_EQ(ViewRowStep(info, r), 8);
  r.zoomMode = 3;
  EXPECT_EQ(ViewRowStep(info, r), 12);
  r.zoomMode = 1;
  EXPECT_EQ(ViewRowStep(info, r), 7);
  r.manualZoom = true;
  r.zoomFactor = 0.25;
  EXPECT_EQ(ViewRowStep(info, r), 4);
  r.zoomFactor = 0.4;  // 1 / 0.4 + 0.5 = 3
  EXPECT_EQ(ViewRowStep(info, r), 3);
}

TEST_F(ViewRowsTest, TrendFromTheFirstRowGetsTheRightAverages) {
  ViewRowRequest r;
  r.level = 1;
  r.windowStep = 3;
  ViewRows rows;
  ASSERT_TRUE(LoadViewRows(info, folder, 1, r, rows));
  const int ct = 3;
  const auto &l2 = levels[1];
  ASSERT_EQ(info.LevelRows[1], 2500);
  EXPECT_EQ(rows.rowCount, 834);  // 2500 rows in steps of 3, rounded up
  for (int v = 0; v < rows.rowCount; ++v) {
    for (int c = 0; c < ct; ++c) {
      int lo = 32767, hi = -32768;
      double sum = 0;
      int count = 0;
      for (int r2 = v * 3; r2 < std::min(v * 3 + 3, 2500); ++r2) {
        lo = std::min<int>(lo, l2.values[(r2 * ct + c) * 2]);
        hi = std::max<int>(hi, l2.values[(r2 * ct + c) * 2 + 1]);
        sum += l2.sums[(r2 * ct + c) * 2];
        count += l2.sums[(r2 * ct + c) * 2 + 1];
      }
      ASSERT_EQ(rows.Min[v * ct + c], lo) << v << " " << c;
      ASSERT_EQ(rows.Max[v * ct + c], hi);
      ASSERT_EQ(rows.Sum[v * ct + c], sum);
      ASSERT_EQ(rows.Count[v * ct + c], count);
    }
  }
}

TEST_F(ViewRowsTest, TrendStartingLaterTakesSumsFromTheWrongRows) {
  info.FirstRecord = 1001;  // level 1: row 100 of the level
  ViewRowRequest r;
  r.level = 1;
  r.windowStep = 1;
  ViewRows rows;
  ASSERT_TRUE(LoadViewRows(info, folder, 1, r, rows));
  const int ct = 3;
  const auto &l2 = levels[1];
  // Values come from row 100 on; the sums from the same byte position, which is row 50.
  EXPECT_EQ(rows.Min[0], l2.values[(100 * ct) * 2]);
  EXPECT_EQ(rows.Max[ct + 1], l2.values[(101 * ct + 1) * 2 + 1]);
  EXPECT_EQ(rows.Sum[0], l2.sums[(50 * ct) * 2]);
  EXPECT_EQ(rows.Count[ct + 1], l2.sums[(51 * ct + 1) * 2 + 1]);
  EXPECT_NE(rows.Sum[0], l2.sums[(100 * ct) * 2]);
}

TEST_F(ViewRowsTest, ValueRowsHaveNoSums) {
  ViewRowRequest r;
  r.level = 0;
  r.windowStep = 10;
  ViewRows rows;
  ASSERT_TRUE(LoadValueRows(info, folder, 1, r, rows));
  // 18000 rows at most are read from level 1.
  EXPECT_EQ(rows.rowCount, 1800);
  EXPECT_TRUE(rows.Sum.empty());
  for (int c = 0; c < 3; ++c) {
    int lo = 32767, hi = -32768;
    for (int r2 = 20; r2 < 30; ++r2) {
      lo = std::min<int>(lo, levels[0].values[(r2 * 3 + c) * 2]);
      hi = std::max<int>(hi, levels[0].values[(r2 * 3 + c) * 2 + 1]);
    }
    EXPECT_EQ(rows.Min[2 * 3 + c], lo);
    EXPECT_EQ(rows.Max[2 * 3 + c], hi);
  }
}

TEST_F(ViewRowsTest, MissingLevelFileIsAFailure) {
  ViewRowRequest r;
  r.level = 5;
  ViewRows rows;
  EXPECT_FALSE(LoadViewRows(info, folder, 1, r, rows));
  r.level = 0;
  EXPECT_FALSE(LoadViewRows(info, folder, 9, r, rows));
}

}  // namespace
}  // namespace recscope
