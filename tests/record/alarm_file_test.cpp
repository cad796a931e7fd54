#include "record/alarm_file.h"

#include <gtest/gtest.h>

#include "record/record_fields.h"

namespace recscope {
namespace {

AlarmFileInfo SampleAlarms() {
  AlarmFileInfo a;
  a.FileNameText = "ATEST01.FDT";
  a.ModelText = "ZNQ-TEST";
  a.SerialText = "SNo.12345678";
  a.VersionText = "Ver.01.02";
  for (int i = 0; i < 3; ++i) {
    AlarmEvent e;
    e.Time = 1700000000 + 100 * i;
    e.ChannelNo = static_cast<std::int16_t>(i + 1);
    e.AlarmNo = static_cast<std::int16_t>(i % 4 + 1);
    e.AlarmAction = static_cast<std::int16_t>(i + 1);
    e.AlarmState = static_cast<std::int16_t>(i % 2);
    a.Alarms.push_back(e);
  }
  MessageEvent m;
  m.Time = 1700000150;
  m.Text = "炉扉開";
  m.MessageColor = 12;
  a.Messages.push_back(m);
  return a;
}

TEST(AlarmFile, BinaryRoundTrip) {
  AlarmFileInfo written = SampleAlarms();
  std::string bytes = AlarmFileBytes(written, true);
  EXPECT_EQ(bytes.size(), 104u + 38u * 4u);
  AlarmFileInfo read;
  ASSERT_TRUE(ReadAlarmBytes(bytes, true, read));
  EXPECT_EQ(read.AlarmCount, 3);
  EXPECT_EQ(read.MessageCount, 1);
  EXPECT_EQ(read.Alarms[2].Time, 1700000200);
  EXPECT_EQ(read.Alarms[2].ChannelNo, 3);
  EXPECT_EQ(read.Alarms[2].AlarmNo, 3);
  EXPECT_EQ(read.Alarms[2].AlarmAction, 3);
  EXPECT_EQ(read.Alarms[1].AlarmState, 1);
  EXPECT_EQ(read.Alarms[0].Shown, 0);
  EXPECT_EQ(read.Alarms[0].Position, 2);
  EXPECT_EQ(read.Messages[0].Text, "炉扉開");  // cut at the first zero byte
  EXPECT_EQ(read.Messages[0].MessageColor, 12);
  EXPECT_EQ(read.Messages[0].Position, 5);
  EXPECT_EQ(read.ModelText.substr(0, 8), "ZNQ-TEST");
}

TEST(AlarmFile, TextRoundTripSeesOnlyTheOnesDigitOfTheColour) {
  AlarmFileInfo written = SampleAlarms();
  std::string bytes = AlarmFileBytes(written, false);
  EXPECT_EQ(bytes.size(), 102u + 59u * 4u);
  AlarmFileInfo read;
  ASSERT_TRUE(ReadAlarmBytes(bytes, false, read));
  EXPECT_EQ(read.AlarmCount, 3);
  EXPECT_EQ(read.Alarms[1].AlarmAction, 2);
  EXPECT_EQ(read.Messages[0].Time, 1700000150);
  EXPECT_EQ(read.Messages[0].Text, TextAt(FixedCp932("炉扉開", 32), 0, 32));
  EXPECT_EQ(read.Messages[0].MessageColor, 2);  // "12": the tens digit is not seen
}

TEST(AlarmFile, AlarmFileOfABinaryRecordIsReadAsBinaryEvenWith59ByteLines) {
  std::string text = AlarmFileBytes(SampleAlarms(), false);
  AlarmFileInfo read;
  // Read as binary: the word at 102 is "20" of the first time (positive), so
  // the file is refused rather than read as text.
  EXPECT_FALSE(ReadAlarmBytes(text, true, read));
  AlarmFileInfo asText;
  EXPECT_TRUE(ReadAlarmBytes(text, false, asText));
}

TEST(AlarmFile, ZeroByteFileFailsItsHeader) {
  AlarmFileInfo read;
  EXPECT_FALSE(ReadAlarmBytes("", true, read));
  EXPECT_FALSE(ReadAlarmBytes("", false, read));
  EXPECT_FALSE(ReadAlarmBytes(std::string(101, ' '), false, read));
}

TEST(AlarmFile, PositiveWordAtOffset102IsRefused) {
  std::string bytes = AlarmFileBytes(SampleAlarms(), true);
  bytes[102] = 1;
  AlarmFileInfo read;
  EXPECT_FALSE(ReadAlarmBytes(bytes, true, read));
  bytes[102] = '\xFF';
  bytes[103] = '\xFF';  // -1 is accepted
  EXPECT_TRUE(ReadAlarmBytes(bytes, true, read));
}

TEST(AlarmFile, EventOfAnotherKindIsRefused) {
  std::string bytes = AlarmFileBytes(SampleAlarms(), true);
  bytes[104 + 38 + 4] = 'X';
  AlarmFileInfo read;
  EXPECT_FALSE(ReadAlarmBytes(bytes, true, read));
  std::string text = AlarmFileBytes(SampleAlarms(), false);
  text[102 + 20] = 'Q';
  EXPECT_FALSE(ReadAlarmBytes(text, false, read));
}

TEST(AlarmFile, TrailingPartialEventIsNotCounted) {
  std::string bytes = AlarmFileBytes(SampleAlarms(), true) + std::string(37, '\0');
  AlarmFileInfo read;
  ASSERT_TRUE(ReadAlarmBytes(bytes, true, read));
  EXPECT_EQ(read.AlarmCount + read.MessageCount, 4);
}

TEST(AlarmFile, EventsAbove32767OfAKindArePassedOver) {
  AlarmFileInfo many;
  many.FileNameText = "A";
  AlarmEvent e;
  e.AlarmNo = 1;
  for (int i = 0; i < kMaxEventsOfKind + 5; ++i) {
    e.Time = i;
    many.Alarms.push_back(e);
  }
  MessageEvent m;
  m.Time = 5;
  many.Messages.push_back(m);
  AlarmFileInfo read;
  ASSERT_TRUE(ReadAlarmBytes(AlarmFileBytes(many, true), true, read));
  EXPECT_EQ(read.AlarmCount, kMaxEventsOfKind);
  EXPECT_EQ(read.Alarms.back().Time, kMaxEventsOfKind - 1);
  EXPECT_EQ(read.MessageCount, 1);
}

}  // namespace
}  // namespace recscope
