#include "record/open_record.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "record/alarm_file.h"
#include "record/flag_file.h"
#include "record_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeInfo;
using testing_support::MakeRecords;
using testing_support::RecordBytes;
using testing_support::TempFolder;

class OpenRecord : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetSharedState(state);
    std::filesystem::create_directories(home.Path("home"));
    state.ProgramFolder = home.Path("home");
  }

  // Writes a record family under the records folder and returns its path.
  std::string WriteRecord(const std::string &name, int format = 2, int records = 30) {
    std::filesystem::create_directories(home.Path("records"));
    const std::string path = home.Path("records/" + name);
    RecordFileInfo info = MakeInfo(3, format == 0 ? 0 : 1);
    EXPECT_TRUE(WriteWholeFile(path, RecordBytes(info, format, MakeRecords(info, records))));
    return path;
  }

  std::string Companion(const std::string &path, char letter) {
    std::filesystem::path p(path);
    std::string name = p.filename().string();
    name[0] = letter;
    return (p.parent_path() / name).string();
  }

  bool HomeIsEmpty() { return std::filesystem::is_empty(state.ProgramFolder); }

  TempFolder home;
  SharedState state;
};

TEST_F(OpenRecord, OpensIntoTheFirstFreeSlotAndBuildsTheWorkingFiles) {
  const std::string path = WriteRecord("SHEAT01.FDT");
  int lastValue = -1, lastMaximum = -1;
  OpenOutcome out = OpenRecordFile(state, path, [&](int v, int m) {
    lastValue = v;
    lastMaximum = m;
  });
  ASSERT_TRUE(out.opened);
  EXPECT_EQ(out.slot, 1);
  EXPECT_EQ(out.messageId, 0);
  EXPECT_EQ(state.CurrentFile, 1);
  EXPECT_EQ(state.OpenFileCount, 1);
  EXPECT_EQ(state.Slot(1).Record.InUse, -1);
  EXPECT_EQ(state.Slot(1).Record.RecordCount, 30);
  EXPECT_EQ(state.Slot(1).SamplePeriod, 10);
  EXPECT_EQ(lastValue, lastMaximum);
  EXPECT_GT(lastMaximum, 0);
  EXPECT_TRUE(std::filesystem::exists(WorkingFilePath(state.ProgramFolder, 1, 1, false)));
  EXPECT_TRUE(std::filesystem::exists(WorkingFilePath(state.ProgramFolder, 1, 1, true)));

  CloseRecordSlot(state, 1);
  EXPECT_EQ(state.Slot(1).Record.InUse, 0);
  EXPECT_EQ(state.OpenFileCount, 0);
  EXPECT_TRUE(HomeIsEmpty());
}

TEST_F(OpenRecord, EveryEncodingOpens) {
  for (int format : {0, 1, 2}) {
    const std::string path = WriteRecord("SENC0" + std::to_string(format) + ".FDT", format);
    OpenOutcome out = OpenRecordFile(state, path);
    ASSERT_TRUE(out.opened) << format;
    EXPECT_EQ(state.Slot(out.slot).Record.FileFormat, format);
  }
}

TEST_F(OpenRecord, NameOfTheLetterSAloneIsDecidedByTheCharacterAtLMinus4) {
  std::filesystem::create_directories(home.Path("records/longfolder"));
  const std::string longFolder = home.Path("records/longfolder/S.FDT");
  RecordFileInfo info = MakeInfo(1, 0);
  ASSERT_TRUE(WriteWholeFile(longFolder, RecordBytes(info, 2, MakeRecords(info, 3))));
  EXPECT_EQ(NameStartIndex(longFolder), static_cast<int>(longFolder.size()) - 5);
  EXPECT_TRUE(OpenRecordFile(state, longFolder).opened);
  // A short folder name puts its own "/" among the seven places: the folder's
  // first letter is taken as the name's.
  EXPECT_FALSE(IsRecordFileName("/x/ab/S.FDT"));
  EXPECT_TRUE(IsRecordFileName("/x/sb/S.FDT"));
}

TEST_F(OpenRecord, NameWithEightCharactersBehindTheSIsRefused) {
  const std::string path = WriteRecord("SABCDEFGH.FDT");
  OpenOutcome out = OpenRecordFile(state, path);
  EXPECT_FALSE(out.opened);
  EXPECT_EQ(out.messageId, 11112);
  EXPECT_TRUE(out.showChoiceAgain);
  EXPECT_TRUE(IsRecordFileName("/records/SABCDEFG.FDT"));
}

TEST_F(OpenRecord, ExtensionFdtIsAcceptedAndfDtRefused) {
  EXPECT_TRUE(OpenRecordFile(state, WriteRecord("SMIXED1.Fdt")).opened);
  EXPECT_TRUE(OpenRecordFile(state, WriteRecord("smixed2.fdt")).opened);
  OpenOutcome refused = OpenRecordFile(state, WriteRecord("SMIXED3.fDt"));
  EXPECT_EQ(refused.messageId, 11112);
  EXPECT_EQ(OpenRecordFile(state, WriteRecord("AMIXED4.FDT")).messageId, 11112);
}

TEST_F(OpenRecord, SeventeenthFileIsRefusedAndTheCurrentSlotStays) {
  const std::string path = WriteRecord("SMANY01.FDT", 2, 3);
  for (int i = 1; i <= 16; ++i) ASSERT_TRUE(OpenRecordFile(state, path).opened) << i;
  state.CurrentFile = 5;
  OpenOutcome out = OpenRecordFile(state, path);
  EXPECT_FALSE(out.opened);
  EXPECT_EQ(out.messageId, 11113);
  EXPECT_TRUE(out.showChoiceAgain);
  EXPECT_EQ(state.CurrentFile, 5);
  EXPECT_EQ(state.OpenFileCount, 16);
  for (int i = 1; i <= 16; ++i) CloseRecordSlot(state, i);
  EXPECT_TRUE(HomeIsEmpty());
}

TEST_F(OpenRecord, SameFileOpenedTwiceTakesTwoSlots) {
  const std::string path = WriteRecord("STWICE1.FDT");
  OpenOutcome first = OpenRecordFile(state, path);
  OpenOutcome second = OpenRecordFile(state, path);
  ASSERT_TRUE(first.opened);
  ASSERT_TRUE(second.opened);
  EXPECT_EQ(first.slot, 1);
  EXPECT_EQ(second.slot, 2);
  EXPECT_EQ(state.Slot(2).Record.FilePath, path);
}

TEST_F(OpenRecord, IsFileOpenAnswersForExactlyThePathOfASlotInUse) {
  const std::string path = WriteRecord("SOPEN01.FDT");
  const std::string other = WriteRecord("SOPEN02.FDT");
  EXPECT_FALSE(IsFileOpen(state, path));
  ASSERT_TRUE(OpenRecordFile(state, path).opened);
  EXPECT_TRUE(IsFileOpen(state, path));
  EXPECT_FALSE(IsFileOpen(state, other));
  // Only the very same text counts: another spelling of the path does not.
  std::string upper = path;
  upper.replace(upper.size() - 3, 3, "fdt");
  EXPECT_FALSE(IsFileOpen(state, upper));
  const std::string dotted = home.Path("records/./SOPEN01.FDT");
  EXPECT_FALSE(IsFileOpen(state, dotted));
  EXPECT_FALSE(IsFileOpen(state, ""));

  // Opening does not ask it: the same file again takes a second slot.
  OpenOutcome again = OpenRecordFile(state, path);
  ASSERT_TRUE(again.opened);
  EXPECT_EQ(again.slot, 2);
  CloseRecordSlot(state, 1);
  EXPECT_TRUE(IsFileOpen(state, path));  // slot 2 still holds it
  CloseRecordSlot(state, 2);
  EXPECT_FALSE(IsFileOpen(state, path));
}

TEST_F(OpenRecord, IsFileOpenIgnoresASlotNotInUse) {
  const std::string path = WriteRecord("SOPEN03.FDT");
  state.Slot(3).Record.FilePath = path;  // a path left in a free slot
  EXPECT_FALSE(IsFileOpen(state, path));
  state.Slot(3).Record.InUse = -1;
  EXPECT_TRUE(IsFileOpen(state, path));
}

TEST_F(OpenRecord, DeleteOpenWorkingFilesEmptiesTheHomeOfEverySlotInUse) {
  ASSERT_TRUE(OpenRecordFile(state, WriteRecord("SEND01.FDT")).opened);
  ASSERT_TRUE(OpenRecordFile(state, WriteRecord("SEND02.FDT")).opened);
  ASSERT_FALSE(HomeIsEmpty());
  DeleteOpenWorkingFiles(state);
  EXPECT_TRUE(HomeIsEmpty());
  // The slots themselves are left as they were.
  EXPECT_EQ(state.OpenFileCount, 2);
  EXPECT_EQ(state.Slot(2).Record.InUse, -1);
}

TEST_F(OpenRecord, ZeroByteAlarmFileSetsTheAlarmPathAndFailsTheOpen) {
  const std::string path = WriteRecord("SALARM1.FDT");
  ASSERT_TRUE(WriteWholeFile(Companion(path, 'A'), ""));
  state.CurrentFile = 3;
  OpenOutcome out = OpenRecordFile(state, path);
  EXPECT_FALSE(out.opened);
  EXPECT_EQ(out.messageId, 11190);
  EXPECT_FALSE(out.showChoiceAgain);
  EXPECT_EQ(state.CurrentFile, 3);
  EXPECT_EQ(state.Slot(1).Record.InUse, 0);
  EXPECT_TRUE(HomeIsEmpty());
}

TEST_F(OpenRecord, AlarmAndFlagCompanionsAreTakenIn) {
  const std::string path = WriteRecord("SCOMP01.FDT");
  AlarmFileInfo alarms;
  AlarmEvent a;
  a.Time = 1700000010;
  a.ChannelNo = 1;
  a.AlarmNo = 1;
  alarms.Alarms.push_back(a);
  ASSERT_TRUE(WriteAlarmFile(Companion(path, 'A'), alarms, true));
  AlarmFileInfo decided = alarms;
  decided.Alarms[0].Shown = -1;
  decided.Alarms[0].Position = 4;
  FlagEvent f;
  f.Time = 1700000020;
  f.Text = "check";
  ASSERT_TRUE(WriteFlagFile(Companion(path, 'F'), MakeInfo(3, 1), decided, {f}));
  OpenOutcome out = OpenRecordFile(state, path);
  ASSERT_TRUE(out.opened);
  EXPECT_EQ(state.Slot(1).Alarms.AlarmPath, Companion(path, 'A'));
  EXPECT_EQ(state.Slot(1).Alarms.AlarmCount, 1);
  EXPECT_EQ(state.Slot(1).Alarms.Alarms[0].Position, 4);
  EXPECT_EQ(state.Slot(1).FlagPath, Companion(path, 'F'));
  ASSERT_EQ(state.Slot(1).Flags.size(), 1u);
  EXPECT_EQ(state.Slot(1).Flags[0].Text, "check");
}

TEST_F(OpenRecord, FlagFileOf170BytesIsNotUsedAndAlarmEventsKeepTheirDefaults) {
  const std::string path = WriteRecord("SFLAG01.FDT");
  AlarmFileInfo alarms;
  AlarmEvent a;
  a.Time = 1700000010;
  alarms.Alarms.push_back(a);
  ASSERT_TRUE(WriteAlarmFile(Companion(path, 'A'), alarms, true));
  ASSERT_TRUE(WriteWholeFile(Companion(path, 'F'), std::string(170, ' ')));
  OpenOutcome out = OpenRecordFile(state, path);
  ASSERT_TRUE(out.opened);
  EXPECT_TRUE(state.Slot(1).FlagPath.empty());
  EXPECT_EQ(state.Slot(1).Alarms.Alarms[0].Shown, 0);
  EXPECT_EQ(state.Slot(1).Alarms.Alarms[0].Position, 2);
}

struct Refusal {
  const char *name;
  int messageId;
  std::string (*bytes)();
};

std::string TruncatedHeader() {
  RecordFileInfo info = MakeInfo(2, 0);
  return RecordBytes(info, 2, MakeRecords(info, 3)).substr(0, 100);
}
std::string NoChannels() { return RecordBytes(MakeInfo(0, 0), 2, {}); }
std::string EmptyGroups() {
  RecordFileInfo info = MakeInfo(2, 0);
  info.Groups[0].Members = {};
  return RecordBytes(info, 2, MakeRecords(info, 3));
}
std::string NoRecords() { return RecordBytes(MakeInfo(2, 0), 1, {}); }
std::string Remainder() {
  RecordFileInfo info = MakeInfo(2, 0);
  return RecordBytes(info, 2, MakeRecords(info, 3)) + "zz";
}
std::string TooMany() {
  RecordFileInfo info = MakeInfo(72, 1, 8);
  return RecordBytes(info, 2, MakeRecords(info, 1));
}
std::string BadMember() {
  RecordFileInfo info = MakeInfo(2, 0);
  info.Groups[1].Members[3] = 9;
  return RecordBytes(info, 1, MakeRecords(info, 3));
}

class OpenRefusal : public OpenRecord, public ::testing::WithParamInterface<Refusal> {};

TEST_P(OpenRefusal, GivesItsMessageAndLeavesNothingBehind) {
  const Refusal &refusal = GetParam();
  std::filesystem::create_directories(home.Path("records"));
  const std::string path = home.Path("records/SBAD001.FDT");
  ASSERT_TRUE(WriteWholeFile(path, refusal.bytes()));
  state.CurrentFile = 7;
  OpenOutcome out = OpenRecordFile(state, path);
  EXPECT_FALSE(out.opened);
  EXPECT_EQ(out.messageId, refusal.messageId);
  EXPECT_EQ(state.CurrentFile, 7);
  EXPECT_EQ(state.OpenFileCount, 0);
  EXPECT_EQ(state.Slot(1).Record.InUse, 0);
  EXPECT_TRUE(state.Slot(1).Record.FilePath.empty());
  EXPECT_TRUE(HomeIsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Files, OpenRefusal,
                         ::testing::Values(Refusal{"TruncatedHeader", 11190, TruncatedHeader},
                                           Refusal{"NoChannels", 11191, NoChannels},
                                           Refusal{"EmptyGroups", 11192, EmptyGroups},
                                           Refusal{"NoRecords", 11193, NoRecords},
                                           Refusal{"Remainder", 11194, Remainder},
                                           Refusal{"TooManyChannels", 11196, TooMany},
                                           Refusal{"BadMember", 11190, BadMember}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(OpenRecord, BinaryAlarmFileWithPositiveWordIsRefusedWith11190) {
  const std::string path = WriteRecord("SPOS001.FDT");
  AlarmFileInfo alarms;
  std::string bytes = AlarmFileBytes(alarms, true);
  bytes[102] = 5;
  ASSERT_TRUE(WriteWholeFile(Companion(path, 'A'), bytes));
  EXPECT_EQ(OpenRecordFile(state, path).messageId, 11190);
  EXPECT_TRUE(HomeIsEmpty());
}

TEST_F(OpenRecord, CommittedSampleFamiliesOpenWithTheirCompanions) {
  const std::string samples = std::string(RECSCOPE_SOURCE_DIR) + "/samples";
  for (const std::string &path : {samples + "/SHEAT01.FDT", samples + "/text/SHEAT01.FDT"}) {
    OpenOutcome out = OpenRecordFile(state, path);
    ASSERT_TRUE(out.opened) << path;
    const RecordFileInfo &info = state.Slot(out.slot).Record;
    const bool binary = info.FileFormat == 2;
    EXPECT_EQ(info.FileFormat, binary ? 2 : 1);
    // Three days (binary) or twelve hours (text) at a 10-second period.
    EXPECT_EQ(info.RecordCount, binary ? 3 * 8640 : 12 * 360);
    EXPECT_EQ(info.LastTime - info.FirstTime, 10 * (info.RecordCount - 1));
    EXPECT_EQ(info.AnalogCount, 12);
    EXPECT_EQ(info.DiCount, 3);
    EXPECT_EQ(info.Channels[4].ScaleKind, 1);
    EXPECT_FALSE(state.Slot(out.slot).Alarms.AlarmPath.empty());
    EXPECT_GT(state.Slot(out.slot).Alarms.AlarmCount, 0);
    EXPECT_GT(state.Slot(out.slot).Alarms.MessageCount, 0);
    EXPECT_FALSE(state.Slot(out.slot).FlagPath.empty());
    EXPECT_FALSE(state.Slot(out.slot).Flags.empty());
    CloseRecordSlot(state, out.slot);
  }
  EXPECT_TRUE(HomeIsEmpty());
}

TEST_F(OpenRecord, MissingFileIsAWrongFile) {
  EXPECT_EQ(OpenRecordFile(state, home.Path("records/SNONE01.FDT")).messageId, 11190);
  EXPECT_TRUE(HomeIsEmpty());
}

}  // namespace
}  // namespace recscope
