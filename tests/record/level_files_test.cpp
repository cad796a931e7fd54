// The one reader of the working files: rows by number, zeros past the end, and
// the sum addressing of the views.
#include "record/level_files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "level_test_support.h"
#include "record/working_files.h"

namespace recscope {
namespace {

class LevelFilesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = testing::TempFolder("level_files");
    // Two channels: value rows of 4 i16, sum rows of 4 i32. Row r holds r*10+k.
    std::vector<std::int16_t> values;
    std::vector<std::int32_t> sums;
    for (int r = 0; r < 5; ++r)
      for (int k = 0; k < 4; ++k) {
        values.push_back(static_cast<std::int16_t>(r * 10 + k));
        sums.push_back(1000 + r * 10 + k);
      }
    Write(WorkingFilePath(folder_, 3, 2, false), values.data(), values.size() * 2);
    Write(WorkingFilePath(folder_, 3, 2, true), sums.data(), sums.size() * 4);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  static void Write(const std::string &path, const void *data, std::size_t bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(static_cast<const char *>(data), static_cast<std::streamsize>(bytes));
  }
  std::string folder_;
};

TEST_F(LevelFilesTest, RowLayoutOfValuesAndSums) {
  EXPECT_EQ(ValueRowBytes(72), 288);
  EXPECT_EQ(SumRowBytes(72), 576);
  EXPECT_EQ(RecordsPerLevelRow(0), 1);
  EXPECT_EQ(RecordsPerLevelRow(3), 1000);
}

TEST_F(LevelFilesTest, ReadsRowsOfTheLevelCountedFromZero) {
  LevelFiles files(folder_, 3, 1, 2);  // level 1 is the file "_2"
  ASSERT_TRUE(files.ok());
  std::vector<std::int16_t> values(8);
  ASSERT_TRUE(files.ReadValueRows(2, 2, values.data()));
  EXPECT_EQ(values, (std::vector<std::int16_t>{20, 21, 22, 23, 30, 31, 32, 33}));
  std::vector<std::int32_t> sums(4);
  ASSERT_TRUE(files.ReadSumRows(4, 1, sums.data()));
  EXPECT_EQ(sums, (std::vector<std::int32_t>{1040, 1041, 1042, 1043}));
}

TEST_F(LevelFilesTest, RowsPastTheEndReadAsZeros) {
  LevelFiles files(folder_, 3, 1, 2);
  std::vector<std::int16_t> values(12, -1);
  ASSERT_TRUE(files.ReadValueRows(4, 3, values.data()));
  EXPECT_EQ(values, (std::vector<std::int16_t>{40, 41, 42, 43, 0, 0, 0, 0, 0, 0, 0, 0}));
}

// The views address the sum file with the width of a value row: row 2 of the
// values is byte 16, which is sum row 1.
TEST_F(LevelFilesTest, ViewSumsComeFromTheValueRowPosition) {
  LevelFiles files(folder_, 3, 1, 2);
  std::vector<std::int32_t> sums(4);
  ASSERT_TRUE(files.ReadSumRowsAtValueOffset(2, 1, sums.data()));
  EXPECT_EQ(sums, (std::vector<std::int32_t>{1010, 1011, 1012, 1013}));
}

TEST_F(LevelFilesTest, MissingFilesAreNotOk) {
  EXPECT_FALSE(LevelFiles(folder_, 4, 1, 2).ok());
  std::filesystem::remove(WorkingFilePath(folder_, 3, 2, true));
  EXPECT_FALSE(LevelFiles(folder_, 3, 1, 2).ok());
  EXPECT_TRUE(LevelFiles(folder_, 3, 1, 2, LevelFiles::kValuesOnly).ok());
}

}  // namespace
}  // namespace recscope
