// The monitor's files: RealSetFile and RealTimeFile byte by byte, the load that
// blanks stale and empty slots, the last run read back for the windows, and the
// analyzed record SR00000.FDT.
#include "realtime/real_logging.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "real_state_fixture.h"
#include "realtime/realtime_acquisition.h"
#include "record/open_record.h"
#include "record/record_fields.h"
#include "record/record_writer.h"
#include "record_fixture.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {
namespace {

using testing_support::FillRealSetup;
using testing_support::PutSample;
using testing_support::ReadAll;
using testing_support::SampleValues;
using testing_support::TempFolder;

constexpr std::int32_t kBase = 1700000000 - 1700000000 % 86400;  // a slot-1 time at cycle 1

std::size_t HeaderBytes(int channels, int groups) {
  return 108 + 56 * static_cast<std::size_t>(channels) + 26 * static_cast<std::size_t>(groups) + 2;
}

// ---- RealSetFile and RealTimeFile, as the driver writes and reads them ----

TEST(RealSetFile, LayoutIsModelSerialVersionChannelsGroupsPointAndUnits) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 1);
  state.Channels[0].ScaleLow = -5;
  state.CommonPoint = 2;
  const std::string path = RealSetFilePath(folder.Folder());
  ASSERT_EQ(path, folder.Path("RealSetFile"));
  ASSERT_TRUE(WriteRealSetFile(state, path));
  const std::string b = ReadAll(path);
  ASSERT_EQ(b.size(), 16u + 8 + 8 + 30 * (16 + 52) + 4 * 26 + 4 + 12 * 7);
  EXPECT_EQ(b.substr(0, 16), "KTX1030         ");
  EXPECT_EQ(b.substr(16, 8), "A1234567");
  EXPECT_EQ(b.substr(24, 8), "01.14.00");
  EXPECT_EQ(b.substr(32, 16), "T1      U1      ");
  // thirteen values in the order of the block offsets 8, 9, 11, 17, 25, 27, 28, ...
  EXPECT_EQ(I32At(b, 48), 1);      // ColorNo
  EXPECT_EQ(I32At(b, 52), 1);      // InputType
  EXPECT_EQ(I32At(b, 56), 1);      // unit code
  EXPECT_EQ(I32At(b, 60), 1);      // Decimals
  EXPECT_EQ(I32At(b, 64), 7);      // the further word
  EXPECT_EQ(I32At(b, 68), -5);     // ScaleLow
  EXPECT_EQ(I32At(b, 72), 10000);  // ScaleHigh
  const std::size_t groups = 32 + 30 * 68;
  EXPECT_EQ(b.substr(groups, 16), "BOILER          ");
  EXPECT_EQ(b.substr(groups + 16, 10), std::string("\x01\x02\x03\0\0\0\0\0\0\0", 10));
  EXPECT_EQ(I32At(b, groups + 4 * 26), 2);
  EXPECT_EQ(b.substr(groups + 4 * 26 + 4, 7), "kgf    ");
}

TEST(RealSetFile, ReadBackAsTheLastRunsSetupAndShownByTheWindowsLoad) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, false, 5);
  state.Channels[71].UnitCode = 160;
  state.Channels[3].CommonPoint = 1;
  state.Channels[3].ScaleLow = 200;
  state.Channels[3].ScaleHigh = 200;
  state.CommonPoint = 3;
  ASSERT_TRUE(WriteRealSetFile(state, RealSetFilePath(folder.Folder())));
  WriteIni("3", "CYCLE", "REALTIME", ViewerComIniPath(folder.Folder()));  // 5 s
  WriteIni("127.0.0.1", "IP", "REALTIME", ViewerComIniPath(folder.Folder()));

  RealtimeState next;
  ASSERT_TRUE(LoadLastRealRun(folder.Folder(), next, kBase));
  EXPECT_EQ(next.ChannelCount, 72);
  EXPECT_EQ(next.GroupCount, 8);
  EXPECT_EQ(next.CycleSeconds, 5);
  EXPECT_EQ(next.LastCycle, 5);
  EXPECT_EQ(next.LastSerialText, "A1234567");
  EXPECT_EQ(next.LastCommonPoint, 3);
  EXPECT_EQ(next.LastChannels[71].UnitCode, 160);
  EXPECT_EQ(next.Channels[71].UnitCode, 160);
  // the display channels: the common point's decimals, a zero span widened
  EXPECT_EQ(next.Display[3].Decimals, 3);
  EXPECT_EQ(next.Display[3].ScaleLow, 199);
  EXPECT_EQ(next.Display[3].ScaleHigh, 200);
  EXPECT_EQ(next.Display[4].Decimals, 1);
  EXPECT_EQ(next.TabNames, (std::vector<std::string>{"G9", "G1", "G2"}));
  EXPECT_EQ(next.GroupSizes[0], 3);
  EXPECT_EQ(next.Ring.channels(), 72);
  EXPECT_FALSE(LoadLastRealRun(folder.Path("nowhere"), next, kBase));
}

TEST(RealTimeFile, SlotIsWrittenAtItsPlaceRecordByRecord) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 1);
  const std::string path = RealTimeFilePath(folder.Folder());
  const std::int32_t slot = PutSample(state, kBase + 2);
  ASSERT_EQ(slot, 3);
  ASSERT_TRUE(WriteRealTimeRecord(state.Ring, path, slot));
  std::string b = ReadAll(path);
  ASSERT_EQ(b.size(), 3u * 126);
  EXPECT_EQ(b.substr(0, 252), std::string(252, '\0'));
  EXPECT_EQ(I32At(b, 252), kBase + 2);
  EXPECT_EQ(U8At(b, 256), 1);
  EXPECT_EQ(U8At(b, 257), 0);
  EXPECT_EQ(I32At(b, 258 + 4 * 29), 290 + (kBase + 2) % 100);
  state.Ring.Blank(3);
  ASSERT_TRUE(WriteRealTimeRecord(state.Ring, path, 3));
  EXPECT_EQ(ReadAll(path), std::string(3 * 126, '\0'));
}

TEST(RealTimeFile, LoadBlanksStaleAndInvalidSlotsInMemoryAndFile) {
  TempFolder folder;
  const std::string path = RealTimeFilePath(folder.Folder());
  RealtimeState state;
  FillRealSetup(state, true, 10);
  const std::int32_t now = kBase + 10 * 86400 * 3 + 5000;
  // a fresh sample, one exactly a ring old (stale), and one marked not valid
  const std::int32_t fresh = now - now % 10 - 100;
  const std::int32_t stale = now - 10 * 86400;
  const std::int32_t s1 = PutSample(state, fresh);
  ASSERT_TRUE(WriteRealTimeRecord(state.Ring, path, s1));
  state.Ring.LastWritten = 0;
  const std::int32_t s2 = PutSample(state, stale - stale % 10);
  ASSERT_TRUE(WriteRealTimeRecord(state.Ring, path, s2));
  std::vector<std::uint8_t> invalid = state.Ring.RecordBytes(s1);
  invalid[4] = 0;
  const std::int32_t s3 = s1 - 1;
  state.Ring.SetFromRecordBytes(s3, invalid.data(), invalid.size());
  ASSERT_TRUE(WriteRealTimeRecord(state.Ring, path, s3));
  const std::string before = ReadAll(path);

  RealtimeState next;
  FillRealSetup(next, true, 10);
  LoadRealTimeFile(next.Ring, path, now, 10);
  EXPECT_EQ(next.Ring.Valid(s1), 1);
  EXPECT_EQ(next.Ring.Time(s1), fresh);
  EXPECT_EQ(next.Ring.Value(s1, 5), 50 + fresh % 100);
  EXPECT_EQ(next.Ring.Valid(s2), 0);
  EXPECT_EQ(next.Ring.Time(s2), 0);
  EXPECT_EQ(next.Ring.Value(s2, 5), 0);
  EXPECT_EQ(next.Ring.Time(s3), 0);
  EXPECT_EQ(next.Ring.Value(s3, 1), 0);
  const std::string after = ReadAll(path);
  ASSERT_GE(after.size(), before.size());
  EXPECT_EQ(after.substr(static_cast<std::size_t>(s1 - 1) * 126, 126),
            before.substr(static_cast<std::size_t>(s1 - 1) * 126, 126));
  EXPECT_EQ(after.substr(static_cast<std::size_t>(s2 - 1) * 126, 126), std::string(126, '\0'));
  EXPECT_EQ(after.substr(static_cast<std::size_t>(s3 - 1) * 126, 126), std::string(126, '\0'));
}

TEST(RealTimeFile, ShorterFileReadsBlanksForTheSlotsItLacks) {
  TempFolder folder;
  const std::string path = RealTimeFilePath(folder.Folder());
  RealtimeState state;
  FillRealSetup(state, true, 1);
  state.Ring.Write(86400, 5, std::vector<std::int32_t>(30, 9));  // something to overwrite
  ASSERT_TRUE(WriteWholeFile(path, std::string(126, '\0')));
  LoadRealTimeFile(state.Ring, path, kBase, 1);
  EXPECT_EQ(state.Ring.Valid(86400), 0);
  EXPECT_EQ(state.Ring.Value(86400, 0), 0);
}

TEST(RealTimeFile, TwoRunsWithTheSameRecorderTheSecondFindsTheEarlierSamples) {
  TempFolder folder;
  std::vector<std::int32_t> slots;
  {
    RealtimeState first;
    FillRealSetup(first, false, 2);
    ASSERT_TRUE(WriteRealSetFile(first, RealSetFilePath(folder.Folder())));
    for (int i = 0; i < 20; ++i) {
      slots.push_back(PutSample(first, kBase + 2 * i));
      ASSERT_TRUE(WriteRealTimeRecord(first.Ring, RealTimeFilePath(folder.Folder()), slots.back()));
    }
    WriteIni("1", "CYCLE", "REALTIME", ViewerComIniPath(folder.Folder()));  // 2 s
    WriteIni("127.0.0.1", "IP", "REALTIME", ViewerComIniPath(folder.Folder()));
  }
  RealtimeState second;
  ASSERT_TRUE(LoadLastRealRun(folder.Folder(), second, kBase + 100));
  for (int i = 0; i < 20; ++i) {
    const std::int32_t t = kBase + 2 * i;
    ASSERT_EQ(second.Ring.Valid(slots[i]), 1);
    EXPECT_EQ(second.Ring.Time(slots[i]), t);
    for (int c = 0; c < 72; ++c) EXPECT_EQ(second.Ring.Value(slots[i], c), 10 * c + t % 100);
  }
  EXPECT_EQ(RealNewestSlot(second), slots.back());
  EXPECT_EQ(RealNewestTime(second), kBase + 38);
}

// ---- SR00000.FDT ----

TEST(RealRecordWrite, SamplingCodeIsTheIndexInTheCycleList) {
  EXPECT_EQ(RealSamplingCode(1), 0);
  EXPECT_EQ(RealSamplingCode(5), 3);
  EXPECT_EQ(RealSamplingCode(60), 7);
  EXPECT_EQ(RealSamplingCode(7), 0);
}

TEST(RealRecordWrite, HeaderAndChannelRecordsByteByByte) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 10);
  state.Channels[1].CommonPoint = 1;  // no unit text in the record
  state.Channels[2].ScaleKind = 1;
  state.Display[2].ExponentLow = -3;
  state.Display[2].ExponentHigh = 2;
  state.Display[2].RangeLow = -100;
  state.Display[2].RangeHigh = 900;
  state.Display[2].ScaleLow = -3;
  state.Display[2].ScaleHigh = 2;
  state.Display[0].Decimals = 2;
  PutSample(state, kBase + 50);
  const std::string path = RealRecordWrite(folder.Folder(), state);
  ASSERT_EQ(path, folder.Path("SR00000.FDT"));
  const std::string b = ReadAll(path);
  ASSERT_EQ(b.size(), HeaderBytes(30, 4) + 86400u * (4 + 2 * 30));
  EXPECT_EQ(b.substr(0, 34), "SR00000.FDT                     \r\n");
  EXPECT_EQ(b.substr(34, 34), "KTX1030                         \r\n");
  EXPECT_EQ(b.substr(68, 20), "SNo.A1234567        ");
  EXPECT_EQ(b.substr(88, 14), "Ver.01.14.00\r\n");
  EXPECT_EQ(b.substr(102, 6), std::string("\x00\x1e\x04\x00\x00\x04", 6));
  // channel 1
  const std::size_t c1 = 108;
  EXPECT_EQ(U8At(b, c1), 1);
  EXPECT_EQ(b.substr(c1 + 1, 16), "T1      U1      ");
  EXPECT_EQ(U8At(b, c1 + 17), 1);   // ColorNo
  EXPECT_EQ(U8At(b, c1 + 18), 1);   // InputType
  EXPECT_EQ(I16At(b, c1 + 26), 0);  // ScaleLow
  EXPECT_EQ(I16At(b, c1 + 28), 10000);
  EXPECT_EQ(U8At(b, c1 + 30), 1);                           // RecordType
  EXPECT_EQ(U8At(b, c1 + 31), 0);                           // ScaleKind
  EXPECT_EQ(U8At(b, c1 + 38), 2);                           // Decimals
  EXPECT_EQ(b.substr(c1 + 39, 17), std::string(17, '\0'));  // no alarm settings
  // channel 2: on the common point, seven blanks for its unit
  EXPECT_EQ(b.substr(c1 + 56 + 19, 7), "       ");
  EXPECT_NE(b.substr(c1 + 19, 7), "       ");
  // channel 3: logarithmic, exponents as bytes
  const std::size_t c3 = c1 + 2 * 56;
  EXPECT_EQ(U8At(b, c3 + 31), 1);
  EXPECT_EQ(I16At(b, c3 + 32), -100);
  EXPECT_EQ(I16At(b, c3 + 34), 900);
  EXPECT_EQ(U8At(b, c3 + 36), 253);
  EXPECT_EQ(U8At(b, c3 + 37), 2);
  // groups, then CR LF
  const std::size_t g = 108 + 30 * 56;
  EXPECT_EQ(b.substr(g, 16), "BOILER          ");
  EXPECT_EQ(b.substr(g + 16, 10), std::string("\x01\x02\x03\0\0\0\0\0\0\0", 10));
  EXPECT_EQ(b.substr(g + 4 * 26, 2), "\r\n");
}

TEST(RealRecordWrite, SingleCycleGivesAFullDayOfRecordsAllButOneHoldingZero) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 1);
  const std::int32_t t = kBase + 1234;
  PutSample(state, t);
  const std::string b = ReadAll(RealRecordWrite(folder.Folder(), state));
  const std::size_t start = HeaderBytes(30, 4);
  const std::size_t len = 64;
  ASSERT_EQ(b.size(), start + 86400u * len);
  int nonZero = 0;
  for (std::size_t r = 0; r < 86400; ++r) {
    const std::string values = b.substr(start + r * len + 4, len - 4);
    if (values != std::string(len - 4, '\0')) ++nonZero;
  }
  EXPECT_EQ(nonZero, 1);
  // the only sample is the last record, with its own time and values
  const std::size_t last = start + 86399 * len;
  EXPECT_EQ(I32At(b, last), t);
  EXPECT_EQ(I16At(b, last + 4 + 2 * 7), 70 + t % 100);
  EXPECT_EQ(I32At(b, start), t - 86399);
}

TEST(RealRecordWrite, CycleOf60PutsTheFirstStamp86399TimesSixtyBeforeTheLast) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 60);
  const std::int32_t t = kBase + 60 * 777;
  PutSample(state, t);
  const std::string b = ReadAll(RealRecordWrite(folder.Folder(), state));
  const std::size_t start = HeaderBytes(30, 4);
  EXPECT_EQ(U8At(b, 104), 7);
  EXPECT_EQ(I32At(b, start), t - 86399 * 60);
  EXPECT_EQ(I32At(b, start + 86399 * 64), t);
  EXPECT_EQ(I32At(b, start + 64) - I32At(b, start), 60);
}

TEST(RealRecordWrite, SlotsWrapTheOldestRecordIsTheOneAfterTheLastWritten) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 1);
  // samples at slots 86398, 86399, 86400, 1, 2: the ring has wrapped
  const std::int32_t first = kBase + 86400 * 2 - 3;
  for (int i = 0; i < 5; ++i) PutSample(state, first + i);
  ASSERT_EQ(state.Ring.LastWritten, 2);
  const std::string b = ReadAll(RealRecordWrite(folder.Folder(), state));
  const std::size_t start = HeaderBytes(30, 4);
  // record 0 is slot 3 (blank), the last five records are the five samples in order
  EXPECT_EQ(I16At(b, start + 4), 0);
  for (int i = 0; i < 5; ++i) {
    const std::size_t at = start + static_cast<std::size_t>(86395 + i) * 64;
    EXPECT_EQ(I32At(b, at), first + i);
    EXPECT_EQ(I16At(b, at + 4 + 2 * 3), 30 + (first + i) % 100);
  }
}

TEST(RealRecordWrite, TenCyclesUnpluggedLeaveTenBlanksWithTimesButZeroValues) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 5);
  const std::int32_t t0 = kBase + 5 * 1000;
  PutSample(state, t0);
  PutSample(state, t0 + 5);
  PutSample(state, t0 + 5 * 12);  // ten cycles read nothing
  const std::string b = ReadAll(RealRecordWrite(folder.Folder(), state));
  const std::size_t start = HeaderBytes(30, 4);
  const std::size_t last = 86399;
  for (std::size_t k = 0; k <= 12; ++k) {
    const std::size_t at = start + (last - 12 + k) * 64;
    EXPECT_EQ(I32At(b, at), t0 + 5 * static_cast<std::int32_t>(k));
    const bool blank = k >= 2 && k <= 11;
    EXPECT_EQ(b.substr(at + 4, 60) == std::string(60, '\0'), blank) << k;
  }
}

TEST(RealRecordWrite, ValuesAreCutTo16Bits) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 1);
  std::vector<std::int32_t> v(30, 0);
  v[0] = 0x12345;
  v[1] = -40000;
  state.Ring.Write(9, kBase + 8, v);
  state.Ring.LastWritten = 9;
  const std::string b = ReadAll(RealRecordWrite(folder.Folder(), state));
  const std::size_t at = HeaderBytes(30, 4) + 86399 * 64;
  EXPECT_EQ(I16At(b, at + 4), 0x2345);
  EXPECT_EQ(I16At(b, at + 6), static_cast<std::int16_t>(-40000));
}

TEST(RealRecordWrite, OldRecordAndFlagFileAreDeletedAndTheFlagFileIsNotWritten) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, true, 1);
  PutSample(state, kBase + 3);
  ASSERT_TRUE(WriteWholeFile(folder.Path("SR00000.FDT"), "old"));
  ASSERT_TRUE(WriteWholeFile(folder.Path("FR00000.FDT"), "old flags"));
  ASSERT_FALSE(RealRecordWrite(folder.Folder(), state).empty());
  EXPECT_FALSE(std::filesystem::exists(folder.Path("FR00000.FDT")));
  EXPECT_GT(ReadAll(folder.Path("SR00000.FDT")).size(), 3u);
}

TEST(RealRecordWrite, AnalyzedRecordReadsAsABinaryMeasurementRecord) {
  TempFolder folder;
  RealtimeState state;
  FillRealSetup(state, false, 10);
  const std::int32_t t = kBase + 10 * 500;
  PutSample(state, t - 10);
  PutSample(state, t);
  const std::string path = RealRecordWrite(folder.Folder(), state);
  SharedState shared;
  RecordSlot slot;
  ASSERT_EQ(ReadRecordFamily(shared, path, slot), 0);
  const RecordFileInfo &info = slot.Record;
  EXPECT_EQ(info.FileFormat, 2);
  EXPECT_EQ(info.AnalogCount, 72);
  EXPECT_EQ(info.GroupCount, 8);
  EXPECT_EQ(info.SamplingCode, 4);
  EXPECT_EQ(info.RecordCount, 86400);
  EXPECT_EQ(info.DataStart, static_cast<std::int32_t>(HeaderBytes(72, 8)));
  EXPECT_EQ(info.RecordLength, 4 + 2 * 72);
  EXPECT_EQ(info.FirstTime, t - 10 * 86399);
  EXPECT_EQ(info.LastTime, t);
  EXPECT_EQ(info.Channels[4].Tag, "T5      U5      ");
  EXPECT_EQ(info.Groups[1].GroupName, "STACK           ");
  EXPECT_EQ(info.Groups[1].Members[1], 5);
  EXPECT_EQ(slot.Period(), 10);
}

}  // namespace
}  // namespace recscope
