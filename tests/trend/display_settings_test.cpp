// The display settings in core: the flag file the save writes, byte for byte and
// in place of the old one; the detail dialog's tabs, grid texts, checks, apply
// and paste.
#include "trend/display_settings.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/text_encoding.h"
#include "record/flag_file.h"
#include "shell/catalogue.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteAll(const std::string &path, const std::string &bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
}

std::string Pad(const std::string &text, std::size_t width) {
  std::string out = text;
  out.resize(width, ' ');
  return out;
}

std::vector<std::string> FolderNames(const std::string &folder) {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// A slot whose record is S0000001.FDT in `folder`, with two alarms, a message
// and two flags, the operator's decisions on them made.
RecordSlot MakeSlot(const std::string &folder) {
  RecordSlot slot;
  slot.Record = MakeRecord(100, 3, 1, 0);
  slot.Record.FileNameText = "S0000001.FDT";
  slot.Record.ModelText = "ZNQ-TEST";
  slot.Record.SerialText = "SNo.12345678";
  slot.Record.VersionText = "Ver.01.02.03.04";
  slot.Record.FilePath = folder + "/S0000001.FDT";
  AlarmEvent a1;
  a1.Time = 86400;  // 1970/01/02 00:00:00
  a1.Shown = -1;
  a1.Position = 7;
  AlarmEvent a2;
  a2.Time = 86401;
  slot.Alarms.Alarms = {a1, a2};
  MessageEvent m;
  m.Time = 90000;  // 1970/01/02 01:00:00
  m.Text = "炉温";
  m.Shown = -1;
  m.Position = 10;
  slot.Alarms.Messages = {m};
  FlagEvent f1;
  f1.Time = 3600;
  f1.Text = "start, up";
  f1.Shown = -1;
  f1.Position = 9;
  FlagEvent f2;
  f2.Time = 7200;
  f2.Position = 1;
  slot.Flags = {f1, f2};
  return slot;
}

// The file as the format tells it, composed here field by field.
std::string ComposedFlagFile() {
  const std::string crlf = "\r\n";
  std::string out;
  out += Pad("F0000001.FDT", 32) + crlf;
  out += Pad("ZNQ-TEST", 32) + crlf;
  out += Pad("SNo.12345678", 20) + "Ver.01.02." + crlf;
  out += std::string(32, ' ') + crlf;
  out += std::string(32, ' ') + crlf;
  out += "1970/01/02 00:00:00,A,1,07," + std::string(32, ' ') + crlf;
  out += "1970/01/02 00:00:01,A,0,02," + std::string(32, ' ') + crlf;
  out += "1970/01/02 01:00:00,M,1,10," + Utf8ToCp932("炉温") + std::string(28, ' ') + crlf;
  out += "1970/01/01 01:00:00,F,1,09," + Pad("start, up", 32) + crlf;
  out += "1970/01/01 02:00:00,F,0,01," + std::string(32, ' ') + crlf;
  return out;
}

TEST(DisplaySettingsSave, WritesTheFlagFileByteForByte) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  ASSERT_TRUE(SaveDisplaySettings(slot));
  const std::string path = folder.str() + "/F0000001.FDT";
  EXPECT_EQ(ReadAll(path), ComposedFlagFile());
  EXPECT_EQ(FolderNames(folder.str()), std::vector<std::string>{"F0000001.FDT"});
}

TEST(DisplaySettingsSave, FlagPathIsSetWhenThereWasNone) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  ASSERT_TRUE(slot.FlagPath.empty());
  ASSERT_TRUE(SaveDisplaySettings(slot));
  EXPECT_EQ(slot.FlagPath, folder.str() + "/F0000001.FDT");
}

TEST(DisplaySettingsSave, AnExistingFlagPathIsWrittenOver) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  slot.FlagPath = folder.str() + "/f0000001.FDT";
  WriteAll(slot.FlagPath, std::string(400, 'x'));
  ASSERT_TRUE(SaveDisplaySettings(slot));
  EXPECT_EQ(ReadAll(slot.FlagPath), ComposedFlagFile());
  EXPECT_FALSE(std::filesystem::exists(folder.str() + "/F0000001.FDT"));
}

TEST(DisplaySettingsSave, ReplacesALongerOldFileWhole) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  const std::string path = folder.str() + "/F0000001.FDT";
  WriteAll(path, ComposedFlagFile() + std::string(5000, 'z'));
  ASSERT_TRUE(SaveDisplaySettings(slot));
  EXPECT_EQ(ReadAll(path), ComposedFlagFile());
}

TEST(DisplaySettingsSave, NoEventsAndNoFlagsGiveAHeaderOnlyFileOf168BytesNotReadBack) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  slot.Alarms = AlarmFileInfo{};
  slot.Flags.clear();
  ASSERT_TRUE(SaveDisplaySettings(slot));
  const std::string bytes = ReadAll(folder.str() + "/F0000001.FDT");
  EXPECT_EQ(bytes.size(), 168u);
  EXPECT_EQ(bytes, ComposedFlagFile().substr(0, 168));
  AlarmFileInfo fresh;
  std::vector<FlagEvent> flags{FlagEvent{}};
  EXPECT_FALSE(ApplyFlagFile(folder.str() + "/F0000001.FDT", fresh, flags));
  EXPECT_EQ(flags.size(), 1u);  // untouched: the file is not taken in
}

TEST(DisplaySettingsSave, SavedFileReadBackGivesTheSameDecisionsAndFlags) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  ASSERT_TRUE(SaveDisplaySettings(slot));
  RecordSlot fresh = MakeSlot(folder.str());
  for (AlarmEvent &a : fresh.Alarms.Alarms) a = AlarmEvent{a.Time};
  fresh.Alarms.Messages[0].Shown = 0;
  fresh.Alarms.Messages[0].Position = 5;
  fresh.Flags.clear();
  ASSERT_TRUE(ApplyFlagFile(slot.FlagPath, fresh.Alarms, fresh.Flags));
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(fresh.Alarms.Alarms[i].Shown, slot.Alarms.Alarms[i].Shown) << i;
    EXPECT_EQ(fresh.Alarms.Alarms[i].Position, slot.Alarms.Alarms[i].Position) << i;
  }
  EXPECT_EQ(fresh.Alarms.Messages[0].Shown, -1);
  EXPECT_EQ(fresh.Alarms.Messages[0].Position, 10);
  ASSERT_EQ(fresh.Flags.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(fresh.Flags[i].Time, slot.Flags[i].Time);
    EXPECT_EQ(fresh.Flags[i].Text, slot.Flags[i].Text);
    EXPECT_EQ(fresh.Flags[i].Shown, slot.Flags[i].Shown);
    EXPECT_EQ(fresh.Flags[i].Position, slot.Flags[i].Position);
  }
}

// Makes a folder refuse new files, root included (the immutable attribute),
// and undoes it on the way out.
class ReadOnlyFolder {
 public:
  explicit ReadOnlyFolder(const std::string &folder) : folder_(folder) {
    std::filesystem::permissions(
        folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    if (::geteuid() == 0) SetImmutable(true);
  }
  ~ReadOnlyFolder() {
    if (immutable_) SetImmutable(false);
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);
  }
  // Whether a new file really cannot be made in the folder.
  bool holds() const {
    const std::string probe = folder_ + "/probe";
    std::FILE *file = std::fopen(probe.c_str(), "wb");
    if (!file) return true;
    std::fclose(file);
    std::filesystem::remove(probe);
    return false;
  }

 private:
  void SetImmutable(bool on) {
    const int fd = ::open(folder_.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    int flags = 0;
    if (::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0) {
      flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
      if (::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0) immutable_ = on;
    }
    ::close(fd);
  }
  std::string folder_;
  bool immutable_ = false;
};

TEST(DisplaySettingsSave, FailedWriteInAReadOnlyFolderLeavesTheOldFileAndNoTemporary) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  const std::string path = folder.str() + "/F0000001.FDT";
  const std::string old = "old settings\r\n" + std::string(300, 'o');
  WriteAll(path, old);
  {
    ReadOnlyFolder readOnly(folder.str());
    if (!readOnly.holds()) GTEST_SKIP() << "the folder cannot be made read-only here";
    EXPECT_FALSE(SaveDisplaySettings(slot));
    EXPECT_TRUE(slot.FlagPath.empty());
  }
  EXPECT_EQ(ReadAll(path), old);
  EXPECT_EQ(FolderNames(folder.str()), std::vector<std::string>{"F0000001.FDT"});
}

TEST(DisplaySettingsSave, WriteCutShortLeavesTheOldFileAndNothingHalfWritten) {
  TempFolder folder;
  RecordSlot slot = MakeSlot(folder.str());
  const std::string path = folder.str() + "/F0000001.FDT";
  const std::string old = "old settings";
  WriteAll(path, old);
  // The process may write no file beyond 100 bytes: the new file stops halfway.
  struct sigaction ignore {};
  struct sigaction before {};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGXFSZ, &ignore, &before);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit saved = limit;
  limit.rlim_cur = 100;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  const bool written = SaveDisplaySettings(slot);
  ::setrlimit(RLIMIT_FSIZE, &saved);
  ::sigaction(SIGXFSZ, &before, nullptr);
  EXPECT_FALSE(written);
  EXPECT_EQ(ReadAll(path), old);
  EXPECT_EQ(FolderNames(folder.str()), std::vector<std::string>{"F0000001.FDT"});
  EXPECT_TRUE(slot.FlagPath.empty());
}

// --- Detail dialog ----------------------------------------------------------

// Four analog channels (one decimal, 0.0 to 100.0; the third logarithmic from
// 10^-2 to 10^3; the fourth with three decimals) and two DI, in 6 groups of
// which GroupCount says 4.
RecordFileInfo DetailRecord() {
  RecordFileInfo info = MakeRecord(100, 4, 2, 0);
  info.FilePath = "/data/S0000001.FDT";
  ChannelInfo &log = info.Channels[2];
  log.ScaleKind = 1;
  log.ScaleLow = -2;
  log.ScaleHigh = 3;
  log.DisplayLow = -2;
  log.DisplayHigh = 3;
  ChannelInfo &fine = info.Channels[3];
  fine.Decimals = 3;
  fine.ScaleLow = -500;
  fine.ScaleHigh = 32000;
  fine.DisplayLow = -0.5;
  fine.DisplayHigh = 32;
  info.GroupCount = 4;
  info.Groups = {};
  info.Groups[0].GroupName = "HEAT";
  info.Groups[0].Members = {1, 129, 3, 0, 4};
  info.Groups[1].GroupName = "ONE";
  info.Groups[1].Members = {2};
  info.Groups[3].GroupName = "FOUR";
  info.Groups[3].Members = {1, 130};
  info.Groups[4].Members = {1};  // beyond GroupCount
  info.Groups[5].Members = {2};
  return info;
}

using Row = std::array<std::string, 4>;

TEST(DetailDialogCore, CaptionHasTheSlotInTwoDigitsAndThePath) {
  EXPECT_EQ(DetailCaption(3, DetailRecord()), "詳細設定03[/data/S0000001.FDT]");
}

TEST(DetailDialogCore, AFileWithFourGroupsShowsAtMostFourTabs) {
  // Group 3 has no member and groups 5 and 6 lie beyond the group count.
  EXPECT_EQ(DetailTabGroups(DetailRecord()), (std::vector<int>{1, 2, 4}));
  RecordFileInfo all = DetailRecord();
  all.Groups[2].Members = {3};
  EXPECT_EQ(DetailTabGroups(all), (std::vector<int>{1, 2, 3, 4}));
}

TEST(DetailDialogCore, TabsAreCaptionedWithKanjiNumerals) {
  const char *expected[] = {"一", "二", "三", "四", "五", "六", "七", "八"};
  for (int g = 1; g <= 8; ++g) EXPECT_EQ(DetailTabCaption(g), expected[g - 1]);
}

TEST(DetailDialogCore, GridShowsChannelsDisAndLogChannelsInTheirDecimals) {
  const DetailCells cells = DetailGroupCells(DetailRecord(), 1);
  EXPECT_EQ(cells[0], (Row{"WNo", "ﾁｬﾈﾙ", "最小", "最大"}));
  EXPECT_EQ(cells[1], (Row{"1", "1", "0.0", "100.0"}));
  EXPECT_EQ(cells[2], (Row{"2", "D1", "0", "1"}));
  EXPECT_EQ(cells[3], (Row{"3", "3", "-2", "3"}));
  EXPECT_EQ(cells[4], (Row{"4", "無し", "", ""}));
  EXPECT_EQ(cells[5], (Row{"5", "4", "-0.500", "32.000"}));
  for (std::size_t row = 6; row <= 10; ++row)
    EXPECT_EQ(cells[row], (Row{std::to_string(row), "無し", "", ""}));
}

TEST(DetailDialogCore, AGroupWithOneMemberShowsNothingOnRowsTwoToTen) {
  const DetailCells cells = DetailGroupCells(DetailRecord(), 2);
  EXPECT_EQ(cells[1], (Row{"1", "2", "0.0", "100.0"}));
  for (std::size_t row = 2; row <= 10; ++row)
    EXPECT_EQ(cells[row], (Row{std::to_string(row), "無し", "", ""})) << row;
}

TEST(DetailDialogCore, AcceptedEditsSetDisplayAndScaleEndsAndGroupNames) {
  RecordFileInfo info = DetailRecord();
  DetailEdits edits = DetailStartEdits(info);
  edits.cells[0][1][2] = "-10.5";
  edits.cells[0][1][3] = "250";
  edits.cells[0][2][2] = "1";  // DI upside down
  edits.cells[0][2][3] = "0";
  edits.cells[0][3][2] = "-1";  // log: exponents
  edits.cells[0][3][3] = "2";
  edits.names[0] = "OVEN";
  edits.names[3] = "";
  ASSERT_EQ(CheckDetailEdits(info, edits).check.messageId, 0);
  ApplyDetailEdits(info, edits);
  EXPECT_DOUBLE_EQ(info.Channels[0].DisplayLow, -10.5);
  EXPECT_DOUBLE_EQ(info.Channels[0].DisplayHigh, 250);
  EXPECT_EQ(info.Channels[0].ScaleLow, -105);
  EXPECT_EQ(info.Channels[0].ScaleHigh, 2500);
  EXPECT_EQ(info.Dis[0].ScaleLow, 1);
  EXPECT_EQ(info.Dis[0].ScaleHigh, 0);
  EXPECT_EQ(info.Channels[2].ScaleLow, -1);
  EXPECT_EQ(info.Channels[2].ScaleHigh, 2);
  EXPECT_EQ(info.Groups[0].GroupName, "OVEN");
  EXPECT_EQ(info.Groups[1].GroupName, "ONE");
  EXPECT_EQ(info.Groups[3].GroupName, "");
  // The grid shows the new ranges.
  const DetailCells after = DetailGroupCells(info, 1);
  EXPECT_EQ(after[1], (Row{"1", "1", "-10.5", "250.0"}));
  EXPECT_EQ(after[2], (Row{"2", "D1", "1", "0"}));
}

TEST(DetailDialogCore, AChannelInTwoGroupsKeepsTheEditOfTheGroupWhereItChanged) {
  RecordFileInfo info = DetailRecord();
  DetailEdits edits = DetailStartEdits(info);
  edits.cells[0][1][3] = "80";  // channel 1 in group 1; group 4 holds it too, untouched
  ASSERT_EQ(CheckDetailEdits(info, edits).check.messageId, 0);
  ApplyDetailEdits(info, edits);
  EXPECT_DOUBLE_EQ(info.Channels[0].DisplayHigh, 80);
  EXPECT_EQ(info.Channels[0].ScaleHigh, 800);
}

TEST(DetailDialogCore, RefusalsFollowTheScaleEditMessagesWithTheirPlace) {
  RecordFileInfo info = DetailRecord();
  struct Case {
    int group, place;
    std::string min, max;
    int id;
    bool atMaximum;
  };
  const Case cases[] = {
      {1, 1, "0", "12345678", 18300, true},  // eight characters
      {1, 1, "abc", "100", 18301, false},    // not a number, the minimum
      {2, 1, "100", "100.0", 18303, true},   // equal as numbers
      {1, 5, "0", "32.768", 20115, true},    // three decimals: out of range
      {1, 1, "0.01", "0.04", 18304, true},   // nearly equal in one decimal
      {1, 3, "-10", "2", 20115, false},      // log exponent below -9
  };
  for (const Case &c : cases) {
    DetailEdits edits = DetailStartEdits(info);
    edits.cells[c.group - 1][c.place][2] = c.min;
    edits.cells[c.group - 1][c.place][3] = c.max;
    const DetailRefusal refusal = CheckDetailEdits(info, edits);
    EXPECT_EQ(refusal.check.messageId, c.id) << c.min << " " << c.max;
    EXPECT_EQ(refusal.group, c.group);
    EXPECT_EQ(refusal.place, c.place);
    EXPECT_EQ(refusal.atMaximum, c.atMaximum) << c.min << " " << c.max;
  }
  DetailEdits accepted = DetailStartEdits(info);
  accepted.cells[0][5][3] = "32.767";
  EXPECT_EQ(CheckDetailEdits(info, accepted).check.messageId, 0);
}

TEST(DetailDialogCore, RangeRefusalFillsItsTextUpperEndFirst) {
  RecordFileInfo info = DetailRecord();
  DetailEdits edits = DetailStartEdits(info);
  edits.cells[0][5][3] = "40";
  const DetailRefusal refusal = CheckDetailEdits(info, edits);
  EXPECT_EQ(refusal.check.messageText, "32.767から-32.767の値を入力してください");
}

TEST(DetailDialogCore, FirstRefusalIsTakenGroupByGroupThenPlaceByPlace) {
  RecordFileInfo info = DetailRecord();
  DetailEdits edits = DetailStartEdits(info);
  edits.cells[3][2][3] = "x";  // group 4, place 2
  edits.cells[1][1][2] = "y";  // group 2, place 1
  const DetailRefusal refusal = CheckDetailEdits(info, edits);
  EXPECT_EQ(refusal.group, 2);
  EXPECT_EQ(refusal.place, 1);
}

TEST(DetailDialogCore, RefusedEditsChangeNothingWhenNotApplied) {
  RecordFileInfo info = DetailRecord();
  DetailEdits edits = DetailStartEdits(info);
  edits.cells[0][1][3] = "abc";
  EXPECT_NE(CheckDetailEdits(info, edits).check.messageId, 0);
  EXPECT_EQ(DetailGroupCells(info, 1), DetailStartEdits(DetailRecord()).cells[0]);
}

TEST(DetailDialogCore, PasteSetsTheCopiedRangesOnPlacesWithMembersOnBothSides) {
  RecordFileInfo info = DetailRecord();
  DetailEdits edits = DetailStartEdits(info);
  DetailCells copied = edits.cells[0];  // group 1: places 1, 2, 3, 5
  copied[1][2] = "5.0";
  copied[1][3] = "95.0";
  copied[2][2] = "1";
  copied[2][3] = "0";
  DetailCells target = edits.cells[3];  // group 4: places 1, 2
  PasteDetailCells(target, copied);
  EXPECT_EQ(target[1], (Row{"1", "1", "5.0", "95.0"}));
  EXPECT_EQ(target[2], (Row{"2", "D2", "1", "0"}));
  // Places 3 and 5 have members in the copy only: the target keeps them empty.
  EXPECT_EQ(target[3], (Row{"3", "無し", "", ""}));
  EXPECT_EQ(target[5], (Row{"5", "無し", "", ""}));
  // A target place with a member whose copied place was empty keeps its texts.
  DetailCells one = edits.cells[1];  // group 2: place 1
  DetailCells none = edits.cells[1];
  none[1] = {"1", GetMessageText(18607), "", ""};
  PasteDetailCells(one, none);
  EXPECT_EQ(one[1], (Row{"1", "2", "0.0", "100.0"}));
}

}  // namespace
}  // namespace recscope
