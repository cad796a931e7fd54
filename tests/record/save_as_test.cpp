// Saving a range of a record: the name tests, the byte-for-byte copies of the
// header region, the records and the alarm events of the range.
#include "record/save_as.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "record/open_record.h"
#include "record/record_fields.h"
#include "record_fixture.h"

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
constexpr std::int32_t kFirst = 1700000000;  // records every 10 s from here

std::string TextAlarm(const std::string &time, int channel) {
  return time + ",A," + (channel < 10 ? "0" : "") + std::to_string(channel) + ",1,01,1" +
         std::string(26, ' ') + kCrLf;
}

class SaveAs : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetSharedState(state);
    state.ProgramFolder = folder.Folder();
  }
  void Write(const RecordFileInfo &info, int format, int count, const std::string &alarm = {}) {
    records = MakeRecords(info, count, kFirst);
    bytes = RecordBytes(info, format, records);
    recordLength = GetRecordLength(info, format);
    ASSERT_TRUE(WriteWholeFile(folder.Path("STEST01.FDT"), bytes));
    if (!alarm.empty()) {
      ASSERT_TRUE(WriteWholeFile(folder.Path("ATEST01.FDT"), alarm));
    }
    ASSERT_EQ(ReadRecordFamily(state, folder.Path("STEST01.FDT"), slot), 0);
  }
  // The source's header region and records first..first+count-1, as they stand.
  std::string Expected(std::int64_t first, std::int64_t count) {
    const std::size_t start =
        bytes.size() - records.size() * static_cast<std::size_t>(recordLength);
    return bytes.substr(0, start) +
           bytes.substr(start + static_cast<std::size_t>(first * recordLength),
                        static_cast<std::size_t>(count * recordLength));
  }
  SaveAsOutcome Save(std::int64_t t0, std::int64_t t1, const std::string &name = "SCOPY.FDT",
                     bool yes = false, const ProgressFn &progress = {}) {
    return SaveRecordRange(
        slot.Record, slot.Alarms, slot.Period(), t0, t1, folder.Path(name),
        [&](const std::string &alarm) {
          asked.push_back(alarm);
          return yes;
        },
        progress);
  }
  std::vector<std::string> Names() {
    auto names = folder.Files();
    std::sort(names.begin(), names.end());
    return names;
  }

  TempFolder folder;
  SharedState state;
  RecordSlot slot;
  std::vector<DataRecord> records;
  std::string bytes;
  std::int32_t recordLength = 0;
  std::vector<std::string> asked;
};

TEST_F(SaveAs, LowerCaseNamePassesTheNameTestWhateverTheMixOfCase) {
  EXPECT_TRUE(IsSaveAsName("/d/scopy.fdt"));
  EXPECT_TRUE(IsSaveAsName("/d/sCoPy.fDt"));
  EXPECT_TRUE(IsSaveAsName("/d/S1234567.FDT"));
  Write(MakeInfo(2, 0), 2, 10);
  const SaveAsOutcome out = Save(kFirst, kFirst + 90, "scopy.fdt");
  EXPECT_EQ(out.MessageId, 11184);
  EXPECT_EQ(ReadAll(folder.Path("scopy.fdt")), Expected(0, 10));
}

TEST_F(SaveAs, ANameThatFailsTheTestGives11180) {
  Write(MakeInfo(2, 0), 2, 10);
  for (const char *name : {"XCOPY.FDT", "S.FDT", "S12345678.FDT", "SCOPY.CSV"}) {
    EXPECT_FALSE(IsSaveAsName(folder.Path(name))) << name;
    EXPECT_EQ(Save(kFirst, kFirst + 90, name).MessageId, 11180) << name;
  }
  EXPECT_EQ(Names(), std::vector<std::string>{"STEST01.FDT"});
}

TEST_F(SaveAs, AnExistingRecordGives11181) {
  Write(MakeInfo(2, 0), 2, 10);
  ASSERT_TRUE(WriteWholeFile(folder.Path("SCOPY.FDT"), "mine"));
  EXPECT_EQ(Save(kFirst, kFirst + 90).MessageId, 11181);
  EXPECT_EQ(ReadAll(folder.Path("SCOPY.FDT")), "mine");
}

TEST_F(SaveAs, ARangeOfOneRecordCopiesTheHeaderAndOneRecord) {
  Write(MakeInfo(3, 2), 2, 40);
  const SaveAsOutcome out = Save(kFirst + 170, kFirst + 170);
  ASSERT_EQ(out.MessageId, 11184);
  EXPECT_EQ(out.Files, std::vector<std::string>{folder.Path("SCOPY.FDT")});
  EXPECT_EQ(ReadAll(folder.Path("SCOPY.FDT")), Expected(17, 1));
  // The saved record opens as a record of one sample.
  RecordSlot saved;
  ASSERT_EQ(ReadRecordFamily(state, folder.Path("SCOPY.FDT"), saved), 0);
  EXPECT_EQ(saved.Record.RecordCount, 1);
  EXPECT_EQ(saved.Record.FirstTime, kFirst + 170);
}

TEST_F(SaveAs, TheRangeEndIsHeldToTheLastRecord) {
  Write(MakeInfo(2, 1), 1, 30);
  ASSERT_EQ(Save(kFirst + 200, kFirst + 100000).MessageId, 11184);
  EXPECT_EQ(ReadAll(folder.Path("SCOPY.FDT")), Expected(20, 10));
}

TEST_F(SaveAs, AnAlarmEventExactlyAtTheRangeEndIsKept) {
  std::string alarm = AlarmHeader();
  PutI16(alarm, 0);
  const std::int32_t t0 = kFirst + 50, t1 = kFirst + 150;
  const std::string before = BinaryAlarm(t0 - 1, 1), atStart = BinaryAlarm(t0, 2),
                    inside = BinaryAlarm(t0 + 55, 3), atEnd = BinaryAlarm(t1, 4),
                    after = BinaryAlarm(t1 + 1, 5);
  alarm += before + atEnd + atStart + after + inside;
  Write(MakeInfo(2, 0), 2, 30, alarm);
  const SaveAsOutcome out = Save(t0, t1);
  ASSERT_EQ(out.MessageId, 11184);
  EXPECT_EQ(out.Files,
            (std::vector<std::string>{folder.Path("SCOPY.FDT"), folder.Path("ACOPY.FDT")}));
  EXPECT_EQ(ReadAll(folder.Path("ACOPY.FDT")), alarm.substr(0, 104) + atEnd + atStart + inside);
  EXPECT_EQ(ReadAll(folder.Path("SCOPY.FDT")), Expected(5, 11));
}

TEST_F(SaveAs, ATextAlarmFileKeepsTheLinesOfTheRange) {
  const std::string first = TextAlarm("2023/11/14 22:13:30", 1);   // kFirst + 10
  const std::string second = TextAlarm("2023/11/14 22:14:00", 2);  // kFirst + 40
  const std::string third = TextAlarm("2023/11/14 22:15:00", 3);   // kFirst + 100
  Write(MakeInfo(2, 1), 1, 30, AlarmHeader() + first + second + third);
  ASSERT_EQ(Save(kFirst + 20, kFirst + 100).MessageId, 11184);
  EXPECT_EQ(ReadAll(folder.Path("ACOPY.FDT")), AlarmHeader() + second + third);
  EXPECT_EQ(ReadAll(folder.Path("SCOPY.FDT")), Expected(2, 9));
}

TEST_F(SaveAs, AnExistingAlarmFileIsAskedForAndNoEndsTheSave) {
  std::string alarm = AlarmHeader();
  PutI16(alarm, 0);
  alarm += BinaryAlarm(kFirst + 10, 1);
  Write(MakeInfo(2, 0), 2, 30, alarm);
  ASSERT_TRUE(WriteWholeFile(folder.Path("ACOPY.FDT"), "old"));
  const SaveAsOutcome no = Save(kFirst, kFirst + 50);
  EXPECT_EQ(no.MessageId, 0);
  EXPECT_EQ(asked, std::vector<std::string>{folder.Path("ACOPY.FDT")});
  EXPECT_FALSE(std::filesystem::exists(folder.Path("SCOPY.FDT")));
  EXPECT_EQ(ReadAll(folder.Path("ACOPY.FDT")), "old");

  const SaveAsOutcome yes = Save(kFirst, kFirst + 50, "SCOPY.FDT", true);
  EXPECT_EQ(yes.MessageId, 11184);
  EXPECT_EQ(ReadAll(folder.Path("ACOPY.FDT")), alarm);
}

TEST_F(SaveAs, TheRecordsGoInBlocksOfAMillionBytes) {
  Write(MakeInfo(3, 1), 2, 200000);  // 14 bytes a record, 2.8 MB
  std::vector<std::pair<int, int>> steps;
  ASSERT_EQ(Save(kFirst, kFirst + 10 * 199999, "SCOPY.FDT", false,
                 [&](int v, int m) { steps.emplace_back(v, m); })
                .MessageId,
            11184);
  EXPECT_EQ(steps, (std::vector<std::pair<int, int>>{{0, 3}, {1, 3}, {2, 3}, {3, 3}}));
  EXPECT_TRUE(ReadAll(folder.Path("SCOPY.FDT")) == Expected(0, 200000));
}

TEST_F(SaveAs, ARecordCutShortGives11182AndLeavesNoFile) {
  Write(MakeInfo(2, 0), 2, 30);
  std::filesystem::resize_file(folder.Path("STEST01.FDT"), bytes.size() - 20);
  EXPECT_EQ(Save(kFirst, kFirst + 290).MessageId, 11182);
  EXPECT_EQ(Names(), std::vector<std::string>{"STEST01.FDT"});
}

TEST_F(SaveAs, ABrokenTextAlarmGives11183AndLeavesNoFile) {
  Write(MakeInfo(2, 1), 1, 30,
        AlarmHeader() + TextAlarm("2023/11/14 22:13:30", 1) + TextAlarm("2023/11/14 22:13:40", 2));
  // Broken after the open: the second event's time no longer reads.
  std::string alarm = ReadAll(folder.Path("ATEST01.FDT"));
  alarm.replace(102 + 59, 4, "20x3");
  ASSERT_TRUE(WriteWholeFile(folder.Path("ATEST01.FDT"), alarm));
  EXPECT_EQ(Save(kFirst, kFirst + 290).MessageId, 11183);
  EXPECT_EQ(Names(), (std::vector<std::string>{"ATEST01.FDT", "STEST01.FDT"}));
}

TEST_F(SaveAs, AFolderThatIsNotThereGives11182) {
  Write(MakeInfo(2, 0), 2, 30);
  EXPECT_EQ(Save(kFirst, kFirst + 290, "nowhere/SCOPY.FDT").MessageId, 11182);
  EXPECT_EQ(Names(), std::vector<std::string>{"STEST01.FDT"});
}

TEST_F(SaveAs, ASaveKilledHalfWayLeavesNoTarget) {
  Write(MakeInfo(3, 1), 2, 200000);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    Save(kFirst, kFirst + 10 * 199999, "SCOPY.FDT", false, [](int value, int) {
      if (value == 2) ::kill(::getpid(), SIGKILL);
    });
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("SCOPY.FDT")));
}

TEST_F(SaveAs, SaveFileNameTextIsOneToSixDigitsAndLettersNotInTheFolder) {
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), ""), 18502);
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), "ABCDEFG"), 18502);
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), "AB-1"), 18503);
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), "ＡＢ"), 18503);
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), "ＡＢＣＤＥＦＧ"), 18502);
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), "abc123"), 0);
  ASSERT_TRUE(WriteWholeFile(folder.Path("AABC123.FDT"), "x"));
  EXPECT_EQ(CheckSaveFileName(folder.Folder(), "ABC123"), 18501);
  ASSERT_TRUE(WriteWholeFile(folder.Path("SXY.FDT"), "x"));
  EXPECT_EQ(CheckSaveFileName(folder.Folder() + "/", "XY"), 18501);
}

}  // namespace
}  // namespace recscope
