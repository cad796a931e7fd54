#include "record/record_reader.h"

#include <gtest/gtest.h>

#include <random>

#include "record/record_writer.h"
#include "record_fixture.h"

namespace recscope {
namespace {

using testing_support::FixedWidth;
using testing_support::MakeInfo;
using testing_support::MakeRecords;
using testing_support::RecordBytes;

struct ReadOutcome {
  int result;
  RecordFileInfo info;
  std::int32_t period = 0;
};

ReadOutcome Read(const std::string &bytes) {
  ReadOutcome out;
  out.result = ReadRecordBytes(bytes, out.info, out.period);
  return out;
}

class EveryEncoding : public ::testing::TestWithParam<int> {};

TEST_P(EveryEncoding, RoundTripOfHeaderTablesAndLimits) {
  const int format = GetParam();
  RecordFileInfo written = MakeInfo(3, format == 0 ? 0 : 2);
  written.Groups[1].GroupName = "ZWEI";
  written.Groups[1].Members = {3, 2, 0, 0, 0, 0, 0, 0, 0, 0};
  if (format != 0) written.Groups[1].Members[2] = 130;
  ReadOutcome r = Read(RecordBytes(written, format, MakeRecords(written, 25)));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.FileFormat, format);
  EXPECT_EQ(r.info.FileNameText, FixedWidth("STEST01.FDT", 32));
  EXPECT_EQ(r.info.SerialText, FixedWidth("SNo.12345678", 20));
  EXPECT_EQ(r.info.AnalogCount, 3);
  EXPECT_EQ(r.info.DiCount, format == 0 ? 0 : 2);
  EXPECT_EQ(r.info.GroupCount, 4);
  EXPECT_EQ(r.period, 10);
  ASSERT_EQ(r.info.Channels.size(), 3u);
  const ChannelInfo &c = r.info.Channels[1];
  EXPECT_EQ(c.ChannelNo, 2);
  EXPECT_EQ(c.Tag, FixedWidth("TAG2", 16));
  EXPECT_EQ(c.Unit, FixedWidth("degC", 7));
  EXPECT_EQ(c.ScaleHigh, 10000);
  EXPECT_DOUBLE_EQ(c.DisplayHigh, 1000.0);
  EXPECT_DOUBLE_EQ(c.RecordedHigh, 1000.0);
  EXPECT_DOUBLE_EQ(c.RangeHigh, 1000.0);
  EXPECT_DOUBLE_EQ(c.AlarmValue[1], 100.5);
  EXPECT_EQ(c.AlarmKind[1], 2);
  EXPECT_EQ(r.info.Groups[1].GroupName, FixedWidth("ZWEI", 16));
  EXPECT_EQ(r.info.Groups[1].Members[0], 3);
  if (format != 0) {
    ASSERT_EQ(r.info.Dis.size(), 2u);
    EXPECT_EQ(r.info.Dis[1].DiNo, 130);
    EXPECT_EQ(r.info.Groups[1].Members[2], 130);
  }
  EXPECT_EQ(r.info.RecordCount, 25);
  EXPECT_EQ(r.info.FirstTime, 1700000000);
  EXPECT_EQ(r.info.LastTime, 1700000000 + 240);
  EXPECT_EQ(r.info.LastRecord, 25);
  EXPECT_EQ(r.info.ChannelTotal, r.info.AnalogCount + r.info.DiCount);
  EXPECT_EQ(r.info.LevelRows.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryEncoding, ::testing::Values(0, 1, 2));

TEST(RecordReader, DataStartAndRecordLengthFollowTheHeader) {
  RecordFileInfo info = MakeInfo(2, 1);  // channel 1 RecordType 0, DI 1 RecordType 0
  ReadOutcome bin = Read(RecordBytes(info, 2, MakeRecords(info, 3)));
  ASSERT_EQ(bin.result, -1);
  EXPECT_EQ(bin.info.DataStart, 108 + 56 * 2 + 24 * 1 + 26 * 4 + 2);
  EXPECT_EQ(bin.info.RecordLength, 4 + 2 * 3 + 2);
  EXPECT_EQ(bin.info.ColumnCount, 2 + 1 + 1);
  ReadOutcome text = Read(RecordBytes(info, 1, MakeRecords(info, 3)));
  ASSERT_EQ(text.result, -1);
  EXPECT_EQ(text.info.RecordLength, 21 + 8 * (3 + 2));
  EXPECT_EQ(text.info.DataStart, 136 + 135 * 2 + 44 * 1 + 51 * 4 + text.info.RecordLength);
  EXPECT_EQ(text.info.ColumnCount, 3 + 1);
}

TEST(RecordReader, TwoUnitChannelMakesTheRecordLonger) {
  RecordFileInfo one = MakeInfo(2, 0);
  one.Channels[0].RecordType = 1;
  RecordFileInfo two = one;
  two.Channels[1].RecordType = 0;
  ReadOutcome b1 = Read(RecordBytes(one, 2, MakeRecords(one, 2)));
  ReadOutcome b2 = Read(RecordBytes(two, 2, MakeRecords(two, 2)));
  ASSERT_EQ(b1.result, -1);
  ASSERT_EQ(b2.result, -1);
  EXPECT_EQ(b2.info.RecordLength - b1.info.RecordLength, 2);
  ReadOutcome t1 = Read(RecordBytes(one, 1, MakeRecords(one, 2)));
  ReadOutcome t2 = Read(RecordBytes(two, 1, MakeRecords(two, 2)));
  ASSERT_EQ(t1.result, -1);
  ASSERT_EQ(t2.result, -1);
  EXPECT_EQ(t2.info.RecordLength - t1.info.RecordLength, 8);
}

TEST(RecordReader, BinaryGroupCountZeroIsReadAsFourGroups) {
  RecordFileInfo info = MakeInfo(2, 0, 0);
  ReadOutcome r = Read(RecordBytes(info, 2, MakeRecords(info, 2)));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.GroupCount, 4);
}

TEST(RecordReader, TextGroupCountNotANumberIsReadAsFourGroups) {
  RecordFileInfo info = MakeInfo(2, 1);
  std::string bytes = RecordBytes(info, 1, MakeRecords(info, 2));
  bytes.replace(114, 10, "x?        ");
  ReadOutcome r = Read(bytes);
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.GroupCount, 4);
}

TEST(RecordReader, FormatZeroTextHeaderHasNoDis) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::string bytes = RecordBytes(info, 0, MakeRecords(info, 2));
  EXPECT_NE(bytes[110], ',');
  ReadOutcome r = Read(bytes);
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.FileFormat, 0);
  EXPECT_EQ(r.info.DiCount, 0);
  EXPECT_TRUE(r.info.Dis.empty());
}

TEST(RecordReader, GroupCountSixReadsSixGroupsButDataStartCountsFourRecords) {
  RecordFileInfo info = MakeInfo(2, 0, 6);
  info.Channels[0].RecordType = 1;
  // Groups 5 and 6 are read from the bytes behind the four-record table, that
  // is from the data: records of time 1 and zero units read as members 1 and 0.
  std::vector<DataRecord> records(8);
  for (DataRecord &r : records) {
    r.Time = 1;
    r.Units = {0, 0};
  }
  ReadOutcome r = Read(RecordBytes(info, 2, records));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.GroupCount, 6);
  EXPECT_EQ(r.info.DataStart, 108 + 56 * 2 + 26 * 4 + 2);
  EXPECT_EQ(r.info.RecordCount, 8);
  // Group 5 starts at the CR, LF: its members are bytes 16..25 of that run,
  // where the time of the third record (offset 18) reads as member 1.
  EXPECT_EQ(r.info.Groups[4].Members[2], 1);
  EXPECT_EQ(r.info.Groups[4].Members[0], 0);
}

TEST(RecordReader, KtxModelWithGroupCountEightIsReadAsEightGroups) {
  RecordFileInfo info = MakeInfo(30, 0, 8);
  info.ModelText = "KTX";
  info.Groups[7].GroupName = "LAST";
  info.Groups[7].Members[0] = 30;
  ReadOutcome r = Read(RecordBytes(info, 2, MakeRecords(info, 2)));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.GroupCount, 8);
  EXPECT_EQ(r.info.DataStart, 108 + 56 * 30 + 26 * 8 + 2);
  EXPECT_EQ(r.info.Groups[7].Members[0], 30);
}

TEST(RecordReader, EqualScaleEndsAtMinus32768WidenUpwards) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.Channels[0].ScaleLow = info.Channels[0].ScaleHigh = -32768;
  ReadOutcome r = Read(RecordBytes(info, 2, MakeRecords(info, 1)));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.Channels[0].ScaleLow, -32768);
  EXPECT_EQ(r.info.Channels[0].ScaleHigh, -32767);
}

TEST(RecordReader, EqualScaleEndsElsewhereWidenDownwards) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.Channels[0].ScaleLow = info.Channels[0].ScaleHigh = 500;
  ReadOutcome r = Read(RecordBytes(info, 1, MakeRecords(info, 1)));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.Channels[0].ScaleLow, 499);
  EXPECT_EQ(r.info.Channels[0].ScaleHigh, 500);
  EXPECT_DOUBLE_EQ(r.info.Channels[0].DisplayLow, 49.9);
}

TEST(RecordReader, LogarithmicScaleTakesExponentsAndWidensBelowMinusEight) {
  RecordFileInfo info = MakeInfo(2, 0);
  for (ChannelInfo &c : info.Channels) {
    c.ScaleKind = 1;
    c.ExponentLow = 250;  // -6 on disk as 250
    c.ExponentHigh = 2;
  }
  info.Channels[0].ScaleLow = info.Channels[0].ScaleHigh = -9;
  info.Channels[1].ScaleLow = info.Channels[1].ScaleHigh = -3;
  for (int format : {1, 2}) {
    ReadOutcome r = Read(RecordBytes(info, format, MakeRecords(info, 1)));
    ASSERT_EQ(r.result, -1) << format;
    EXPECT_EQ(r.info.Channels[0].ExponentLow, -6);
    EXPECT_EQ(r.info.Channels[0].ExponentHigh, 2);
    EXPECT_EQ(r.info.Channels[0].ScaleLow, -9);
    EXPECT_EQ(r.info.Channels[0].ScaleHigh, -8);
    EXPECT_DOUBLE_EQ(r.info.Channels[0].DisplayLow, -9.0);
    EXPECT_EQ(r.info.Channels[1].ScaleLow, -4);
    EXPECT_EQ(r.info.Channels[1].ScaleHigh, -3);
  }
}

TEST(RecordReader, ExponentsOfALinearChannelStayAsTheyAre) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.Channels[0].ExponentLow = 250;
  ReadOutcome r = Read(RecordBytes(info, 2, MakeRecords(info, 1)));
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.Channels[0].ExponentLow, 250);
}

TEST(RecordReader, InputTypes15To18AreHeldAs30To33) {
  RecordFileInfo info = MakeInfo(6, 0);
  const int types[6] = {14, 15, 16, 17, 18, 19};
  for (int i = 0; i < 6; ++i) info.Channels[i].InputType = static_cast<std::int16_t>(types[i]);
  for (int format : {0, 2}) {
    ReadOutcome r = Read(RecordBytes(info, format, MakeRecords(info, 1)));
    ASSERT_EQ(r.result, -1);
    const int expected[6] = {14, 30, 31, 32, 33, 19};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(r.info.Channels[i].InputType, expected[i]);
  }
}

TEST(RecordReader, TextNumberFieldsKeepTheirDigits) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.Channels[0].Decimals = 2;
  info.Channels[0].RangeHigh = 100;
  info.Channels[0].AlarmValue = {10.25, -0.5, 0, 0};
  info.Channels[0].ScaleLow = -5;
  info.Channels[0].ScaleHigh = 1234;
  std::string bytes = RecordBytes(info, 1, MakeRecords(info, 1));
  EXPECT_EQ(bytes.substr(136 + 36, 7), "  -0.05");
  EXPECT_EQ(bytes.substr(136 + 44, 7), "  12.34");
  ReadOutcome r = Read(bytes);
  ASSERT_EQ(r.result, -1);
  EXPECT_EQ(r.info.Channels[0].ScaleLow, -5);
  EXPECT_EQ(r.info.Channels[0].ScaleHigh, 1234);
  EXPECT_DOUBLE_EQ(r.info.Channels[0].DisplayHigh, 12.34);
  EXPECT_DOUBLE_EQ(r.info.Channels[0].AlarmValue[0], 10.25);
  EXPECT_DOUBLE_EQ(r.info.Channels[0].AlarmValue[1], -0.5);
}

TEST(RecordReader, SamplingCodeOutsideTheTableLeavesThePeriod) {
  RecordFileInfo info = MakeInfo(1, 0);
  info.SamplingCode = 21;
  RecordFileInfo read;
  std::int32_t period = 77;
  ASSERT_EQ(ReadRecordBytes(RecordBytes(info, 2, MakeRecords(info, 2)), read, period), -1);
  EXPECT_EQ(period, 77);
}

// ---- refusals, each with a real malformed file ----

TEST(RecordReaderRefusal, TruncatedBinaryHeaderIsAWrongFile) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::string bytes = RecordBytes(info, 2, MakeRecords(info, 2)).substr(0, 107);
  EXPECT_EQ(Read(bytes).result, kWrongFile);
}

TEST(RecordReaderRefusal, TruncatedChannelTableIsAWrongFile) {
  RecordFileInfo info = MakeInfo(3, 0);
  std::string bytes = RecordBytes(info, 2, MakeRecords(info, 2)).substr(0, 108 + 56 * 2 + 10);
  EXPECT_EQ(Read(bytes).result, kWrongFile);
  std::string text = RecordBytes(info, 1, MakeRecords(info, 2)).substr(0, 136 + 135 * 2);
  EXPECT_EQ(Read(text).result, kWrongFile);
}

TEST(RecordReaderRefusal, TextHeaderWithoutLineFeedAt135IsAWrongFile) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::string bytes = RecordBytes(info, 1, MakeRecords(info, 2));
  bytes[135] = ' ';
  EXPECT_EQ(Read(bytes).result, kWrongFile);
}

TEST(RecordReaderRefusal, GarbledTextChannelFieldIsAWrongFile) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::string bytes = RecordBytes(info, 1, MakeRecords(info, 2));
  bytes.replace(136 + 22, 2, "x!");
  EXPECT_EQ(Read(bytes).result, kWrongFile);
}

TEST(RecordReaderRefusal, NoChannelsAtAll) {
  RecordFileInfo info = MakeInfo(0, 0);
  EXPECT_EQ(Read(RecordBytes(info, 2, {})).result, kNoChannels);
}

TEST(RecordReaderRefusal, SeventyTwoAnalogAndOneDiAreTooMany) {
  RecordFileInfo info = MakeInfo(72, 1, 8);
  EXPECT_EQ(Read(RecordBytes(info, 2, MakeRecords(info, 1))).result, kTooManyChannels);
  EXPECT_EQ(Read(RecordBytes(info, 1, MakeRecords(info, 1))).result, kTooManyChannels);
  RecordFileInfo fits = MakeInfo(72, 0, 8);
  EXPECT_EQ(Read(RecordBytes(fits, 2, MakeRecords(fits, 1))).result, -1);
}

TEST(RecordReaderRefusal, NoGroupHasAMember) {
  RecordFileInfo info = MakeInfo(2, 1);
  info.Groups[0].Members = {};
  EXPECT_EQ(Read(RecordBytes(info, 2, MakeRecords(info, 2))).result, kNoGroupMember);
  EXPECT_EQ(Read(RecordBytes(info, 1, MakeRecords(info, 2))).result, kNoGroupMember);
}

TEST(RecordReaderRefusal, MemberThatIsNoChannelOfTheFile) {
  RecordFileInfo info = MakeInfo(2, 1);
  info.Groups[2].Members[4] = 5;
  EXPECT_EQ(Read(RecordBytes(info, 2, MakeRecords(info, 2))).result, kWrongFile);
  RecordFileInfo di = MakeInfo(2, 1);
  di.Groups[0].Members[1] = 130;  // DI 2 of a file with one DI
  EXPECT_EQ(Read(RecordBytes(di, 1, MakeRecords(di, 2))).result, kWrongFile);
}

TEST(RecordReaderRefusal, HeaderWithoutDataHasNoRecords) {
  RecordFileInfo info = MakeInfo(2, 1);
  EXPECT_EQ(Read(RecordBytes(info, 2, {})).result, kNoRecords);
  EXPECT_EQ(Read(RecordBytes(info, 1, {})).result, kNoRecords);
}

TEST(RecordReaderRefusal, RemainderInTheDataIsBroken) {
  RecordFileInfo info = MakeInfo(2, 1);
  std::string bytes = RecordBytes(info, 2, MakeRecords(info, 5));
  EXPECT_EQ(Read(bytes + "x").result, kBrokenRecords);
  EXPECT_EQ(Read(bytes.substr(0, bytes.size() - 3)).result, kBrokenRecords);
}

TEST(RecordReaderRefusal, UnreadableTextTimeIsAWrongFile) {
  RecordFileInfo info = MakeInfo(1, 0);
  RecordFileInfo read;
  std::string bytes = RecordBytes(info, 1, MakeRecords(info, 3));
  std::int32_t period = 0;
  ASSERT_EQ(ReadRecordBytes(bytes, read, period), -1);
  bytes.replace(read.DataStart, 4, "20x4");
  EXPECT_EQ(Read(bytes).result, kWrongFile);
}

TEST(RecordReaderRefusal, GroupCountAboveEightIsAWrongFile) {
  RecordFileInfo info = MakeInfo(2, 0);
  std::string bytes = RecordBytes(info, 2, MakeRecords(info, 2));
  bytes[107] = 9;
  EXPECT_EQ(Read(bytes).result, kWrongFile);
}

TEST(RecordReaderRobustness, EveryTruncationOfAValidFileReadsWithoutCrash) {
  for (int format : {0, 1, 2}) {
    RecordFileInfo info = MakeInfo(3, format == 0 ? 0 : 2);
    std::string bytes = RecordBytes(info, format, MakeRecords(info, 4));
    ReadOutcome whole = Read(bytes);
    ASSERT_EQ(whole.result, -1);
    const std::size_t start = static_cast<std::size_t>(whole.info.DataStart);
    const std::size_t length = static_cast<std::size_t>(whole.info.RecordLength);
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
      ReadOutcome r = Read(bytes.substr(0, cut));
      // Only a cut at the end of a whole record leaves a valid (shorter) file.
      const bool wholeRecords = cut > start && (cut - start) % length == 0;
      EXPECT_EQ(r.result == -1, wholeRecords) << "format " << format << " cut " << cut;
      if (wholeRecords) {
        EXPECT_EQ(r.info.RecordCount, static_cast<int>((cut - start) / length));
      }
    }
  }
}

TEST(RecordReaderRobustness, RandomGarbageInTheHeaderRegionNeverCrashes) {
  RecordFileInfo info = MakeInfo(4, 2);
  std::mt19937 random(12345);
  int refused = 0;
  for (int format : {1, 2}) {
    const std::string clean = RecordBytes(info, format, MakeRecords(info, 3));
    for (int round = 0; round < 2000; ++round) {
      std::string bytes = clean;
      for (int k = 0; k < 8; ++k)
        bytes[random() % bytes.size()] = static_cast<char>(random() & 0xFF);
      ReadOutcome r = Read(bytes);
      if (r.result != -1) ++refused;
      EXPECT_TRUE(r.result >= -1 && r.result <= 6);
    }
  }
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace recscope
