// Joining records: the selection list, the comparisons, the join with fillers
// and overlaps, the alarm part, the target names; outputs compared byte for byte
// with files composed here from the same records.
#include "record/file_coupling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "record/record_fields.h"
#include "record/record_writer.h"
#include "record_fixture.h"
#include "shell/civil_time.h"
#include "shell/shared_state.h"

namespace recscope {
namespace {

using testing_support::AlarmHeader;
using testing_support::BinaryAlarm;
using testing_support::FixedWidth;
using testing_support::MakeInfo;
using testing_support::MakeRecords;
using testing_support::ReadAll;
using testing_support::RecordBytes;
using testing_support::TempFolder;

const std::string kCrLf = "\r\n";
constexpr std::int32_t kHour = 1700002800;  // 2023/11/14 23:00:00

class FileCoupling : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetSharedState(state);
    state.ProgramFolder = folder.Folder();
  }
  std::string Write(const std::string &name, const RecordFileInfo &info, int format,
                    const std::vector<DataRecord> &records) {
    EXPECT_TRUE(WriteWholeFile(folder.Path(name), RecordBytes(info, format, records)));
    return folder.Path(name);
  }
  CouplingOutcome Couple(const std::vector<std::string> &paths, bool yes = false) {
    return CoupleFiles(state, paths, [&](const std::string &target) {
      asked.push_back(target);
      return yes;
    });
  }
  std::vector<std::string> Names() {
    auto names = folder.Files();
    std::sort(names.begin(), names.end());
    return names;
  }

  TempFolder folder;
  SharedState state;
  std::vector<std::string> asked;
};

// Binary records of MakeInfo(2, 1): 4 + 2 x 3 units + 2 DI bytes.
std::string BinaryData(const RecordFileInfo &info, const std::vector<DataRecord> &records) {
  RecordWriter writer(info, 2);
  std::string out;
  for (const DataRecord &r : records) writer.AppendRecord(out, r);
  return out;
}

std::string BinaryFiller(std::int32_t time, std::size_t length) {
  std::string out;
  PutI32(out, time);
  out.resize(length, '\0');
  return out;
}

TEST_F(FileCoupling, TwoFilesOneHourApartAtTenSecondsGet359FillerRecords) {
  const RecordFileInfo info = MakeInfo(2, 1);
  // The first ends one period before the hour, the second starts an hour later.
  const auto first = MakeRecords(info, 30, kHour - 300);
  const auto second = MakeRecords(info, 20, kHour - 10 + 3600);
  const std::string a = Write("SHEAT01.FDT", info, 2, first);
  const std::string b = Write("SHEAT02.FDT", info, 2, second);
  const CouplingOutcome out = Couple({a, b});
  ASSERT_EQ(out.MessageId, 19810);
  EXPECT_EQ(out.Files, std::vector<std::string>{folder.Path("SCEAT01.FDT")});
  RecordWriter writer(info, 2);
  std::string expected = writer.HeaderBytes() + BinaryData(info, first);
  for (int k = 0; k < 359; ++k)
    expected += BinaryFiller(kHour + 10 * k, static_cast<std::size_t>(writer.RecordLength()));
  expected += BinaryData(info, second);
  EXPECT_TRUE(ReadAll(folder.Path("SCEAT01.FDT")) == expected);
  EXPECT_EQ(Names(), (std::vector<std::string>{"SCEAT01.FDT", "SHEAT01.FDT", "SHEAT02.FDT"}));
}

TEST_F(FileCoupling, TextFilesGetZeroFieldsOfTheirDecimalsAndLoseTheTitleLine) {
  RecordFileInfo info = MakeInfo(3, 2);
  info.Channels[1].Decimals = 2;
  info.Channels[1].RangeHigh = 100;
  info.Channels[1].AlarmValue = {80.0, 10.5, 0, 0};
  info.Channels[2].Decimals = 0;
  const auto first = MakeRecords(info, 3, kHour - 30);
  const auto second = MakeRecords(info, 2, kHour + 20);
  // Selected later first: the join goes by first time.
  const std::string b = Write("SRUN02.FDT", info, 1, second);
  const std::string a = Write("SRUN01.FDT", info, 1, first);
  const CouplingOutcome out = Couple({b, a});
  ASSERT_EQ(out.MessageId, 19810);
  // The targets take their name from the first file chosen.
  const std::string joined = ReadAll(folder.Path("SCUN02.FDT"));
  RecordWriter writer(info, 1);
  const std::string header = writer.HeaderBytes();
  const std::string data = [&] {
    std::string d;
    for (const DataRecord &r : first) writer.AppendRecord(d, r);
    return d;
  }();
  std::string expected = header.substr(0, header.size() - writer.RecordLength()) + data;
  for (std::int32_t t : {kHour, kHour + 10})
    expected +=
        RecordTimeText(t) + ",    0.0,    0.0,   0.00,      0,      0,      0,      0" + kCrLf;
  for (const DataRecord &r : second) writer.AppendRecord(expected, r);
  EXPECT_TRUE(joined == expected) << joined.substr(header.size() - writer.RecordLength());
}

TEST_F(FileCoupling, AnOverlapIsPassedOver) {
  const RecordFileInfo info = MakeInfo(1, 0);
  const auto first = MakeRecords(info, 10, kHour);
  const auto second = MakeRecords(info, 10, kHour + 60);  // its first 4 lie in the first
  const std::string a = Write("SOVER1.FDT", info, 2, first);
  const std::string b = Write("SOVER2.FDT", info, 2, second);
  ASSERT_EQ(Couple({a, b}).MessageId, 19810);
  RecordWriter writer(info, 2);
  const std::vector<DataRecord> rest(second.begin() + 4, second.end());
  EXPECT_TRUE(ReadAll(folder.Path("SCVER1.FDT")) ==
              writer.HeaderBytes() + BinaryData(info, first) + BinaryData(info, rest));
}

TEST_F(FileCoupling, TheAlarmPartHasTheFirstHeaderAndEveryEventInFileOrder) {
  const RecordFileInfo info = MakeInfo(1, 0);
  const std::string a = Write("SALM1.FDT", info, 2, MakeRecords(info, 5, kHour));
  const std::string b = Write("SALM2.FDT", info, 2, MakeRecords(info, 5, kHour + 50));
  const std::string c = Write("SALM3.FDT", info, 2, MakeRecords(info, 5, kHour + 100));
  std::string first = AlarmHeader(), third = AlarmHeader();
  PutI16(first, 0);
  PutI16(third, 0);
  first += BinaryAlarm(kHour + 10, 1) + BinaryAlarm(kHour + 20, 2);
  third += BinaryAlarm(kHour + 110, 3);
  third[0] = 'X';  // a header that must not be taken
  ASSERT_TRUE(WriteWholeFile(folder.Path("AALM1.FDT"), first));
  ASSERT_TRUE(WriteWholeFile(folder.Path("AALM3.FDT"), third));
  const CouplingOutcome out = Couple({a, b, c});
  ASSERT_EQ(out.MessageId, 19810);
  EXPECT_EQ(out.Files,
            (std::vector<std::string>{folder.Path("SCLM1.FDT"), folder.Path("ACLM1.FDT")}));
  EXPECT_EQ(ReadAll(folder.Path("ACLM1.FDT")), first + third.substr(104));
}

TEST_F(FileCoupling, TwoFilesWithEqualChannelsButDifferentGroupCountsAreRefusedWith19813) {
  const RecordFileInfo four = MakeInfo(2, 0, 4);
  const RecordFileInfo eight = MakeInfo(2, 0, 8);
  const std::string a = Write("SGRP1.FDT", four, 2, MakeRecords(four, 5, kHour));
  const std::string b = Write("SGRP2.FDT", eight, 2, MakeRecords(eight, 5, kHour + 50));
  const CouplingOutcome out = Couple({a, b});
  EXPECT_EQ(out.MessageId, 0);
  EXPECT_EQ(out.Findings, std::vector<int>{19813});
  EXPECT_EQ(Names(), (std::vector<std::string>{"SGRP1.FDT", "SGRP2.FDT"}));
}

TEST_F(FileCoupling, EachFailedComparisonAddsItsTextInOrder) {
  RecordFileInfo base = MakeInfo(2, 0);
  RecordFileInfo other = base;
  other.SamplingCode = 5;
  other.Channels[1].ChannelNo = 7;
  other.Groups[0].Members[0] = 1;
  other.Channels[0].RecordType = 1;
  const std::string a = Write("SXMP1.FDT", base, 2, MakeRecords(base, 3, kHour));
  const std::string b = Write("SXMP2.FDT", other, 2, MakeRecords(other, 3, kHour + 100));
  const std::string c = Write("SXMP3.FDT", base, 1, MakeRecords(base, 3, kHour + 200));
  const RecordFileInfo wider = MakeInfo(3, 0);
  const std::string d = Write("SXMP4.FDT", wider, 2, MakeRecords(wider, 3, kHour + 300));
  const CouplingOutcome out = Couple({a, b, c, d});
  EXPECT_EQ(out.MessageId, 0);
  EXPECT_EQ(out.Findings, (std::vector<int>{19801, 19802, 19803, 19800, 19804}));
}

TEST_F(FileCoupling, AlarmFilesOfDifferentEncodingsAreFound) {
  std::vector<CouplingFile> files(3);
  files[0].AlarmEncoding = 3;
  files[1].AlarmEncoding = 2;
  files[2].AlarmEncoding = 0;
  EXPECT_EQ(CouplingFindings(files), std::vector<int>{19805});
}

TEST_F(FileCoupling, SelectingTheSameFileTwiceGives19812) {
  std::vector<std::string> list;
  EXPECT_EQ(AddCouplingSelection(list, "/d/SA.FDT"), 0);
  EXPECT_EQ(AddCouplingSelection(list, "/d/SB.FDT"), 0);
  EXPECT_EQ(AddCouplingSelection(list, "/d/SA.FDT"), 19812);
  EXPECT_EQ(list.size(), 2u);
  EXPECT_EQ(RemoveCouplingSelection(list, -1), 19808);
  EXPECT_EQ(RemoveCouplingSelection(list, 0), 0);
  EXPECT_EQ(list, std::vector<std::string>{"/d/SB.FDT"});
}

TEST_F(FileCoupling, FewerThanTwoFilesGive19809) {
  const RecordFileInfo info = MakeInfo(1, 0);
  EXPECT_EQ(Couple({Write("SONE.FDT", info, 2, MakeRecords(info, 3))}).MessageId, 19809);
  EXPECT_EQ(Couple({}).MessageId, 19809);
}

TEST_F(FileCoupling, TheTargetsKeepTheLengthOfTheFirstFilesName) {
  EXPECT_EQ(CouplingTargetNames("/d/SHEAT01.FDT").Measurement, "/d/SCEAT01.FDT");
  EXPECT_EQ(CouplingTargetNames("/d/SHEAT01.FDT").Alarm, "/d/ACEAT01.FDT");
  EXPECT_EQ(CouplingTargetNames("/d/SAB.FDT").Measurement, "/d/SCB.FDT");
  EXPECT_EQ(CouplingTargetNames("/d/sx1.fdt").Measurement, "/d/SC1.fdt");
}

TEST_F(FileCoupling, AnExistingTargetIsAskedForAndNoCancelsWith19806) {
  const RecordFileInfo info = MakeInfo(1, 0);
  const std::string a = Write("SASK1.FDT", info, 2, MakeRecords(info, 3, kHour));
  const std::string b = Write("SASK2.FDT", info, 2, MakeRecords(info, 3, kHour + 30));
  ASSERT_TRUE(WriteWholeFile(folder.Path("SCSK1.FDT"), "mine"));
  EXPECT_EQ(Couple({a, b}).MessageId, 19806);
  EXPECT_EQ(asked, std::vector<std::string>{folder.Path("SCSK1.FDT")});
  EXPECT_EQ(ReadAll(folder.Path("SCSK1.FDT")), "mine");
  EXPECT_EQ(Couple({a, b}, true).MessageId, 19810);
  RecordWriter writer(info, 2);
  EXPECT_EQ(ReadAll(folder.Path("SCSK1.FDT")).size(),
            writer.HeaderBytes().size() + 6u * static_cast<std::size_t>(writer.RecordLength()));
}

TEST_F(FileCoupling, ABrokenRecordLineFailsWith19811AndLeavesNoTarget) {
  const RecordFileInfo info = MakeInfo(1, 0);
  const std::string a = Write("SBRK1.FDT", info, 1, MakeRecords(info, 3, kHour));
  std::string bytes = RecordBytes(info, 1, MakeRecords(info, 3, kHour + 30));
  // A line of a record's shape whose time does not exist.
  bytes.replace(bytes.size() - 29, 19, "2023/19/44 23:00:50");
  ASSERT_TRUE(WriteWholeFile(folder.Path("SBRK2.FDT"), bytes));
  EXPECT_EQ(Couple({a, folder.Path("SBRK2.FDT")}).MessageId, 19811);
  EXPECT_EQ(Names(), (std::vector<std::string>{"SBRK1.FDT", "SBRK2.FDT"}));
}

TEST_F(FileCoupling, AFileThatIsNoRecordFailsWith19811) {
  const RecordFileInfo info = MakeInfo(1, 0);
  const std::string a = Write("SBAD1.FDT", info, 2, MakeRecords(info, 3, kHour));
  ASSERT_TRUE(WriteWholeFile(folder.Path("SBAD2.FDT"), "garbage"));
  EXPECT_EQ(Couple({a, folder.Path("SBAD2.FDT")}).MessageId, 19811);
  EXPECT_EQ(Names(), (std::vector<std::string>{"SBAD1.FDT", "SBAD2.FDT"}));
}

}  // namespace
}  // namespace recscope
