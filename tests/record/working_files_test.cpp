#include "record/working_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>

#include "level_test_support.h"
#include "record/level_rows.h"
#include "record/number_field.h"

namespace recscope {
namespace {

using testing::Channel;
using testing::Di;

RecordFileInfo Planned(std::int32_t records) {
  RecordFileInfo info;
  info.RecordCount = records;
  PlanLevels(info);
  return info;
}

TEST(PlanLevels, FiveThousandNineHundredNinetyNineRecordsHaveOneLevel) {
  RecordFileInfo info = Planned(5999);
  EXPECT_EQ(info.TopLevel, 0);
  ASSERT_EQ(info.LevelRows.size(), 1u);
  EXPECT_EQ(info.LevelRows[0], 5999);
  // 5999 / 10 rounds to 600, so LevelStep goes on to 11 and no level is added.
  EXPECT_EQ(info.LevelStep, 11);
  EXPECT_EQ(info.OverviewStep, 11);
}

TEST(PlanLevels, SixThousandRecordsHaveTwoLevels) {
  RecordFileInfo info = Planned(6000);
  EXPECT_EQ(info.TopLevel, 1);
  ASSERT_EQ(info.LevelRows.size(), 2u);
  EXPECT_EQ(info.LevelRows[0], 6000);
  EXPECT_EQ(info.LevelRows[1], 600);
  EXPECT_EQ(info.LevelStep, 2);
  EXPECT_EQ(info.OverviewStep, 20);
  EXPECT_EQ(info.CursorStep, 60);
  EXPECT_EQ(info.Thinned, 1);
}

TEST(PlanLevels, LevelStepEndingAtTenBecomesOneMoreLevel) {
  RecordFileInfo info = Planned(5990);
  EXPECT_EQ(info.TopLevel, 1);
  EXPECT_EQ(info.LevelStep, 1);
  EXPECT_EQ(info.OverviewStep, 10);
  EXPECT_EQ(info.Thinned, 1);
  ASSERT_EQ(info.LevelRows.size(), 2u);
  EXPECT_EQ(info.LevelRows[1], 599);
}

TEST(PlanLevels, SmallRecordsAreNotThinnedAndCursorStepFollowsTheCount) {
  EXPECT_EQ(Planned(599).OverviewStep, 1);
  EXPECT_EQ(Planned(599).Thinned, 0);
  EXPECT_EQ(Planned(599).CursorStep, 3);
  EXPECT_EQ(Planned(300).CursorStep, 3);
  EXPECT_EQ(Planned(299).CursorStep, 2);
  EXPECT_EQ(Planned(200).CursorStep, 2);
  EXPECT_EQ(Planned(199).CursorStep, 1);
  EXPECT_EQ(Planned(1).CursorStep, 1);
  EXPECT_EQ(Planned(600).OverviewStep, 2);
}

TEST(PlanLevels, SevenMillionRecords) {
  RecordFileInfo info = Planned(7000000);
  EXPECT_EQ(info.TopLevel, 4);
  EXPECT_EQ(info.LevelStep, 2);
  EXPECT_EQ(info.OverviewStep, 20000);
  EXPECT_EQ(info.LevelRows, (std::vector<std::int32_t>{7000000, 700000, 70000, 7000, 700}));
}

TEST(WorkingFilePath, NamesWithoutLeadingZeros) {
  EXPECT_EQ(WorkingFilePath("/home/x", 3, 12, false), "/home/x/Operation_3_12.OPL");
  EXPECT_EQ(WorkingFilePath("/home/x/", 16, 1, true), "/home/x/Operation_16_COM_1.OPL");
}

class BuildTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder = testing::TempFolder(::testing::UnitTest::GetInstance()->current_test_info()->name());
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  // Builds and compares every byte of every level with the plain computation.
  void BuildAndCompare(const std::vector<Channel> &chs, const std::vector<Di> &dis,
                       const std::vector<testing::Sample> &samples, int format) {
    RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", chs, dis, samples, format);
    ASSERT_EQ(BuildWorkingFiles(info, folder, 2), -1);
    const int levels = info.TopLevel + 1;
    auto expected = testing::ExpectedLevels(chs, dis, samples, levels);
    for (int k = 1; k <= levels; ++k) {
      SCOPED_TRACE("level " + std::to_string(k));
      auto values = testing::ReadFileAs<std::int16_t>(WorkingFilePath(folder, 2, k, false));
      auto sums = testing::ReadFileAs<std::int32_t>(WorkingFilePath(folder, 2, k, true));
      EXPECT_EQ(values, expected[static_cast<size_t>(k - 1)].values);
      EXPECT_EQ(sums, expected[static_cast<size_t>(k - 1)].sums);
      EXPECT_EQ(values.size(), static_cast<size_t>(info.LevelRows[static_cast<size_t>(k - 1)]) * 2 *
                                   info.ChannelTotal);
    }
    EXPECT_FALSE(std::filesystem::exists(WorkingFilePath(folder, 2, levels + 1, false)));
  }

  std::string folder;
};

const std::vector<Channel> kChannels = {{0, 1}, {1, 2}, {2, 0}, {0, 3}};
const std::vector<Di> kDis = {{1, 0}, {2, 1}, {3, 0}};

TEST_F(BuildTest, BinaryLevelsAreByteExact) {
  auto samples = testing::RandomSamples(kChannels, kDis, 23456, 7, true);
  BuildAndCompare(kChannels, kDis, samples, 2);
}

TEST_F(BuildTest, TextFormatOneLevelsAreByteExact) {
  auto samples = testing::RandomSamples(kChannels, kDis, 12345, 8, true);
  BuildAndCompare(kChannels, kDis, samples, 1);
}

TEST_F(BuildTest, OlderTextWithoutDigitalInputs) {
  auto samples = testing::RandomSamples(kChannels, {}, 6001, 9, true);
  BuildAndCompare(kChannels, {}, samples, 0);
}

TEST_F(BuildTest, FiveThousandNineHundredNinetyNineRecordsMakeOneLevel) {
  auto samples = testing::RandomSamples(kChannels, kDis, 5999, 10, true);
  BuildAndCompare(kChannels, kDis, samples, 2);
  EXPECT_TRUE(std::filesystem::exists(WorkingFilePath(folder, 2, 1, true)));
  EXPECT_FALSE(std::filesystem::exists(WorkingFilePath(folder, 2, 2, false)));
}

TEST_F(BuildTest, SixThousandRecordsMakeTwoLevels) {
  auto samples = testing::RandomSamples(kChannels, kDis, 6000, 11, true);
  BuildAndCompare(kChannels, kDis, samples, 2);
  EXPECT_TRUE(std::filesystem::exists(WorkingFilePath(folder, 2, 2, true)));
}

TEST_F(BuildTest, SevenRecordsLeftOverMakeOneShortRowOnTheLastLevel) {
  std::vector<Channel> chs = {{1, 0}};
  std::vector<testing::Sample> samples;
  for (int i = 0; i < 6007; ++i) {
    testing::Sample s;
    s.time = i;
    s.units = {static_cast<std::int16_t>(i < 6000 ? 1 : 100 + i - 6000)};
    samples.push_back(s);
  }
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", chs, {}, samples, 2);
  ASSERT_EQ(info.TopLevel, 1);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 1), -1);
  auto values = testing::ReadFileAs<std::int16_t>(WorkingFilePath(folder, 1, 2, false));
  auto sums = testing::ReadFileAs<std::int32_t>(WorkingFilePath(folder, 1, 2, true));
  ASSERT_EQ(values.size(), 601u * 2);
  EXPECT_EQ(values[1200], 100);  // minimum of the 7 records 100..106
  EXPECT_EQ(values[1201], 106);
  EXPECT_EQ(sums[1200], 100 + 101 + 102 + 103 + 104 + 105 + 106);
  EXPECT_EQ(sums[1201], 7);
}

TEST_F(BuildTest, OverRangeUnitStandsInValuesButNotInSums) {
  std::vector<Channel> chs = {{0, 1}};
  std::vector<testing::Sample> samples(3);
  samples[0].units = {10, 20};
  samples[1].units = {15, 32767};
  samples[2].units = {-32767, -32768};
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", chs, {}, samples, 2);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 1), -1);
  auto values = testing::ReadFileAs<std::int16_t>(WorkingFilePath(folder, 1, 1, false));
  auto sums = testing::ReadFileAs<std::int32_t>(WorkingFilePath(folder, 1, 1, true));
  EXPECT_EQ(values, (std::vector<std::int16_t>{10, 20, 15, 32767, -32767, -32768}));
  EXPECT_EQ(sums, (std::vector<std::int32_t>{30, 2, 15, 1, 0, 0}));
}

TEST_F(BuildTest, NoDataMaximumPoisonsAllLevelsAboveButMinimumDoesNot) {
  std::vector<Channel> chs = {{0, 0}};
  std::vector<testing::Sample> samples;
  for (int i = 0; i < 60000; ++i) {
    testing::Sample s;
    s.units = {static_cast<std::int16_t>(50 + i % 7), static_cast<std::int16_t>(100 + i % 5)};
    if (i == 1234) s.units = {-32768, -32768};
    samples.push_back(s);
  }
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", chs, {}, samples, 2);
  ASSERT_EQ(info.TopLevel, 2);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 1), -1);
  auto level2 = testing::ReadFileAs<std::int16_t>(WorkingFilePath(folder, 1, 2, false));
  auto level3 = testing::ReadFileAs<std::int16_t>(WorkingFilePath(folder, 1, 3, false));
  // Row 123 of level 2 holds record 1234, which is not its first record.
  EXPECT_EQ(level2[123 * 2], 50);
  EXPECT_EQ(level2[123 * 2 + 1], -32768);
  EXPECT_EQ(level3[12 * 2], 50);
  EXPECT_EQ(level3[12 * 2 + 1], -32768);
  EXPECT_EQ(level3[13 * 2 + 1], 104);
  EXPECT_EQ(level2[122 * 2 + 1], 104);
}

TEST_F(BuildTest, NotEnoughDiskSpaceGivesResultFiveAndMakesNothing) {
  RecordFileInfo info;
  info.FilePath = folder + "/SNONE.FDT";
  info.FileFormat = 2;
  info.AnalogCount = 72;
  info.ChannelTotal = 72;
  info.Channels.resize(72);
  info.RecordLength = 4 + 2 * 72 * 2;
  info.RecordCount = 2000000000;
  PlanLevels(info);
  EXPECT_EQ(BuildWorkingFiles(info, folder, 1), 5);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_EQ(BuildWorkingFiles(info, folder + "/missing", 1), 5);
}

TEST_F(BuildTest, TruncatedDataFailsAndLeavesNothing) {
  auto samples = testing::RandomSamples(kChannels, kDis, 7000, 12, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", kChannels, kDis, samples, 2);
  std::filesystem::resize_file(info.FilePath, info.DataStart + info.RecordLength * 6999);
  EXPECT_EQ(BuildWorkingFiles(info, folder, 1), 0);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder),
                          std::filesystem::directory_iterator()),
            1);
}

TEST_F(BuildTest, GarbageInTextNumberFieldFailsAndLeavesNothing) {
  auto samples = testing::RandomSamples(kChannels, kDis, 100, 13, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", kChannels, kDis, samples, 1);
  std::fstream f(info.FilePath, std::ios::in | std::ios::out | std::ios::binary);
  f.seekp(info.DataStart + info.RecordLength * 50 + 20);
  f.write("  ab.cd", 7);
  f.close();
  EXPECT_EQ(BuildWorkingFiles(info, folder, 1), 0);
  EXPECT_FALSE(std::filesystem::exists(WorkingFilePath(folder, 1, 1, false)));
  EXPECT_FALSE(std::filesystem::exists(WorkingFilePath(folder, 1, 1, true)));
}

TEST_F(BuildTest, OlderFilesOfTheSameNameAreReplaced) {
  std::ofstream(WorkingFilePath(folder, 1, 1, false)) << std::string(100000, 'x');
  auto samples = testing::RandomSamples(kChannels, kDis, 50, 14, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", kChannels, kDis, samples, 2);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 1), -1);
  EXPECT_EQ(std::filesystem::file_size(WorkingFilePath(folder, 1, 1, false)), 50u * 7 * 4);
}

TEST_F(BuildTest, DeleteWorkingFilesRemovesEveryLevel) {
  auto samples = testing::RandomSamples(kChannels, kDis, 61000, 15, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", kChannels, kDis, samples, 2);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 4), -1);
  ASSERT_EQ(info.TopLevel, 2);
  EXPECT_TRUE(std::filesystem::exists(WorkingFilePath(folder, 4, 3, true)));
  DeleteWorkingFiles(info, folder, 4);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder),
                          std::filesystem::directory_iterator()),
            1);
}

TEST(IsWorkingFileName, KnowsBothKindsOfLevelFileAndNothingElse) {
  EXPECT_TRUE(IsWorkingFileName("Operation_1_1.OPL"));
  EXPECT_TRUE(IsWorkingFileName("Operation_16_COM_12.OPL"));
  EXPECT_FALSE(IsWorkingFileName("Operation_1_1.opl"));
  EXPECT_FALSE(IsWorkingFileName("Operation_1.OPL"));
  EXPECT_FALSE(IsWorkingFileName("Operation__1.OPL"));
  EXPECT_FALSE(IsWorkingFileName("Operation_1_COM_.OPL"));
  EXPECT_FALSE(IsWorkingFileName("Operation_1_1.OPL.bak"));
  EXPECT_FALSE(IsWorkingFileName("MyOperation_1_1.OPL"));
  EXPECT_FALSE(IsWorkingFileName("Operation_x_1.OPL"));
  EXPECT_FALSE(IsWorkingFileName("SHEAT01.FDT"));
}

TEST_F(BuildTest, StaleWorkingFilesOfAnySlotAreDeletedAndNothingElse) {
  auto samples = testing::RandomSamples(kChannels, kDis, 6500, 17, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", kChannels, kDis, samples, 2);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 3), -1);
  ASSERT_EQ(BuildWorkingFiles(info, folder, 16), -1);
  for (const char *keep : {"VIEWERCOM.INI", "Operation_notes.txt", "Operation_1_1.OPL.bak"}) {
    std::FILE *f = std::fopen((folder + "/" + keep).c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fclose(f);
  }
  const int levels = info.TopLevel + 1;
  EXPECT_EQ(DeleteStaleWorkingFiles(folder), 2 * 2 * levels);
  std::vector<std::string> left;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    left.push_back(entry.path().filename().string());
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (std::vector<std::string>{"Operation_1_1.OPL.bak", "Operation_notes.txt",
                                            "SREC.FDT", "VIEWERCOM.INI"}));
  EXPECT_EQ(DeleteStaleWorkingFiles(folder), 0);
  EXPECT_EQ(DeleteStaleWorkingFiles(folder + "/missing"), 0);
}

TEST_F(BuildTest, ProgressScaleMovesEachChunkUpToOneHundred) {
  auto samples = testing::RandomSamples({{1, 0}}, {}, 5999, 16, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", {{1, 0}}, {}, samples, 2);
  std::vector<std::pair<int, int>> calls;
  ASSERT_EQ(BuildWorkingFiles(info, folder, 1, [&](int v, int m) { calls.emplace_back(v, m); }),
            -1);
  // T 0: m = 5999 + 1 chunks; d = 60 is the first with Fix(6000 / d) below 101.
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front(), std::make_pair(0, 103));
  EXPECT_EQ(calls.back(), std::make_pair(99, 103));
  EXPECT_EQ(calls.size(), 100u);
}

TEST_F(BuildTest, ProgressScaleOfFewChunks) {
  auto samples = testing::RandomSamples({{1, 0}}, {}, 75, 17, false);
  RecordFileInfo info = testing::WriteRecord(folder + "/SREC.FDT", {{1, 0}}, {}, samples, 2);
  std::vector<std::pair<int, int>> calls;
  ASSERT_EQ(BuildWorkingFiles(info, folder, 1, [&](int v, int m) { calls.emplace_back(v, m); }),
            -1);
  ASSERT_EQ(calls.size(), 76u);
  EXPECT_EQ(calls.back(), std::make_pair(75, 79));
}

// Many channels make the level-1 rows fill the output buffers and the input
// blocks several times over, so rows are made across both kinds of boundary.
std::vector<Channel> ManyChannels() {
  std::vector<Channel> chs;
  for (int c = 0; c < 60; ++c) chs.push_back({c % 3 == 0 ? 0 : 1, c % 4});
  return chs;
}

TEST_F(BuildTest, BinaryRowsAcrossBlockBoundariesAreByteExact) {
  const auto chs = ManyChannels();
  auto samples = testing::RandomSamples(chs, kDis, 40007, 21, true);
  BuildAndCompare(chs, kDis, samples, 2);
}

TEST_F(BuildTest, TextRowsAcrossBlockBoundariesAreByteExact) {
  const auto chs = ManyChannels();
  auto samples = testing::RandomSamples(chs, kDis, 12011, 22, true);
  BuildAndCompare(chs, kDis, samples, 1);
}

TEST_F(BuildTest, AllSingleUnitChannelsWithoutDigitalInputs) {
  std::vector<Channel> chs(72, Channel{1, 1});
  auto samples = testing::RandomSamples(chs, {}, 9993, 23, true);
  BuildAndCompare(chs, {}, samples, 2);
}

TEST_F(BuildTest, AllTwoUnitChannelsWithBothDigitalInputKinds) {
  std::vector<Channel> chs(9, Channel{0, 2});
  const std::vector<Di> dis = {{1, 0}, {2, 1}, {5, 0}, {8, 1}};
  auto samples = testing::RandomSamples(chs, dis, 6007, 24, true);
  BuildAndCompare(chs, dis, samples, 2);
  BuildAndCompare(chs, dis, samples, 1);
}

// Random fields of every shape, common and odd: the quick reader must give
// exactly what the general field reader gives, and refuse where it refuses.
TEST(ReadTextUnit, AgreesWithTheGeneralFieldReader) {
  std::mt19937 rng(5);
  const std::string alphabet = "     0123456789-.+x";
  std::uniform_int_distribution<int> pick(0, static_cast<int>(alphabet.size()) - 1);
  std::uniform_int_distribution<int> decimalsOf(0, 6);
  std::uniform_int_distribution<int> number(-99999, 999999);
  int numbers = 0;
  for (int i = 0; i < 400000; ++i) {
    const int decimals = decimalsOf(rng);
    char field[8];
    if (i % 2 == 0) {
      // A well-formed field as the recorder writes it.
      const int value = number(rng);
      std::string digits = std::to_string(value < 0 ? -value : value);
      if (decimals > 0) {
        while (static_cast<int>(digits.size()) <= decimals) digits.insert(0, "0");
        digits.insert(digits.size() - static_cast<size_t>(decimals), ".");
      }
      if (value < 0) digits.insert(0, "-");
      if (digits.size() > 7) continue;
      const std::string text = std::string(7 - digits.size(), ' ') + digits;
      std::memcpy(field, text.data(), 7);
    } else {
      for (char &ch : field) ch = alphabet[static_cast<size_t>(pick(rng))];
    }
    field[7] = ',';
    const auto expected = ReadNumberField(std::string_view(field, 7), decimals);
    SCOPED_TRACE(std::string(field, 7) + " decimals " + std::to_string(decimals));
    if (expected) {
      ++numbers;
      ASSERT_EQ(ReadTextUnit(field, decimals), *expected);
    } else {
      ASSERT_THROW(ReadTextUnit(field, decimals), LevelRowFailure);
    }
  }
  EXPECT_GT(numbers, 150000);
}

TEST(ReadTextUnit, CommonShapes) {
  EXPECT_EQ(ReadTextUnit("  577.5,", 1), 5775);
  EXPECT_EQ(ReadTextUnit("   -0.5,", 1), -5);
  EXPECT_EQ(ReadTextUnit("-9999.9,", 1), -99999);
  EXPECT_EQ(ReadTextUnit("      1,", 0), 1);
  EXPECT_EQ(ReadTextUnit("1234567,", 0), 1234567);
  EXPECT_EQ(ReadTextUnit(" 1.2345,", 4), 12345);
  EXPECT_THROW(ReadTextUnit("  12 34,", 0), LevelRowFailure);
  EXPECT_THROW(ReadTextUnit("  ab.cd,", 2), LevelRowFailure);
}

TEST(FoldLevelRow, SumLeavingThirtyTwoBitsIsAFailure) {
  std::int16_t values[2] = {1, 2};
  std::int32_t running[2] = {2147483000, 1};
  const std::int16_t later[2] = {0, 3};
  const std::int32_t more[2] = {1000, 1};
  EXPECT_THROW(FoldLevelRow(2, values, running, later, more), LevelRowFailure);
  std::int32_t low[2] = {-2147483000, 1};
  const std::int32_t less[2] = {-1000, 1};
  EXPECT_THROW(FoldLevelRow(2, values, low, later, less), LevelRowFailure);
  std::int32_t fine[2] = {2147483000, 1};
  const std::int32_t some[2] = {647, 1};
  FoldLevelRow(2, values, fine, later, some);
  EXPECT_EQ(fine[0], 2147483647);
  EXPECT_EQ(values[0], 0);
  EXPECT_EQ(values[1], 3);
}

}  // namespace
}  // namespace recscope
