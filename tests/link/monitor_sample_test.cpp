// The monitor's present values: the block of "V  ", a sample out of a reply,
// missing seconds stepped in, the data record, and the ring of 1801 samples.
#include "link/monitor_sample.h"

#include <gtest/gtest.h>

#include <string>

using namespace recscope;

namespace {

RegisterMap PresentMap() {
  return ParseInitSet(
      "1,\"V  \",30087,44,1\r\n0,\"GTIM\",0,1,\"time\",4\r\n0,\"DIB \",2,0,0,0,0\r\n"
      "0,\"ALMB\",6,1,\"alarm bits\",16\r\n0,\"PV  \",14,1,\"values\",60\r\n");
}

TEST(PresentValueMap, TheInputBlockOfVWithItsOffsets) {
  const PresentValueMap map = FillPresentValueMap(PresentMap());
  EXPECT_EQ(map.Address, 86);
  EXPECT_EQ(map.Words, 44);
  EXPECT_EQ(map.ReplyLength, 93);
  EXPECT_EQ(map.Time, 0);
  EXPECT_EQ(map.Inputs, 2);
  EXPECT_EQ(map.Alarms, 6);
  EXPECT_EQ(map.Values, 14);
}

TEST(TakeSample, TimeLowWordFirstWithNegativeWordsMadeUnsignedInputsValuesAndAlarmNibbles) {
  const PresentValueMap map = FillPresentValueMap(PresentMap());
  RegisterTable table{};
  // 0x6553F100 = 1700000000: the low word 0xF100 is held sign-extended.
  table[0] = static_cast<std::int16_t>(0xF100);
  table[1] = 0x6553;
  table[2] = 0b10110;
  table[6] = 0x0021;  // channel 1 alarm 1, channel 2 alarm 2
  table[7] = 0x8000;  // channel 8 alarm 4
  table[14] = -5;
  table[43] = 300;
  const MonitorSample s = TakeSample(table, map);
  EXPECT_EQ(s.Time, 1700000000);
  EXPECT_EQ(s.Inputs, (std::array<std::uint8_t, 5>{0, 1, 1, 0, 1}));
  EXPECT_EQ(s.Raw[0], -5);
  EXPECT_EQ(s.Raw[29], 300);
  EXPECT_EQ(s.Alarms[0][0], 1);
  EXPECT_EQ(s.Alarms[1][1], 1);
  EXPECT_EQ(s.Alarms[0][1], 0);
  EXPECT_EQ(s.Alarms[3][7], 1);
}

TEST(SamplesToWrite, ASecondOrLessIsTheNextSampleAndMissingSecondsAreSteppedIn) {
  MonitorSample first;
  first.Time = 100;
  first.Raw[0] = 7;
  MonitorSample next;
  next.Time = 101;
  next.Raw[0] = 9;
  EXPECT_EQ(SamplesToWrite(nullptr, next).size(), 1u);
  EXPECT_EQ(SamplesToWrite(&first, next).size(), 1u);
  next.Time = 100;
  EXPECT_EQ(SamplesToWrite(&first, next).size(), 1u);
  next.Time = 104;
  const std::vector<MonitorSample> out = SamplesToWrite(&first, next);
  ASSERT_EQ(out.size(), 4u);
  EXPECT_EQ(out[0].Time, 101);
  EXPECT_EQ(out[2].Time, 103);
  EXPECT_EQ(out[2].Raw[0], 7);
  EXPECT_EQ(out[3].Time, 104);
  EXPECT_EQ(out[3].Raw[0], 9);
}

TEST(SampleRecordBytes, TimeThirtyValuesAndTheInputWordWithDiNInBit2NMinus2) {
  MonitorSample s;
  s.Time = 0x01020304;
  s.Raw[0] = -2;
  s.Raw[29] = 0x0102;
  s.Inputs = {1, 0, 1, 0, 1};
  const std::string bytes = SampleRecordBytes(s);
  ASSERT_EQ(bytes.size(), 66u);
  EXPECT_EQ(bytes.substr(0, 6), std::string("\x04\x03\x02\x01\xfe\xff", 6));
  EXPECT_EQ(bytes.substr(62, 2), std::string("\x02\x01", 2));
  EXPECT_EQ(bytes.substr(64, 2), std::string("\x11\x01", 2));
}

TEST(MonitorRing, Sample1801OverwritesSample1AndSetsTheFullFlag) {
  MonitorRing ring;
  std::vector<ChannelInfo> channels(30);
  channels[0].Decimals = 1;
  MonitorSample s;
  for (int n = 1; n <= 1800; ++n) {
    ring.Advance();
    s.Time = n;
    s.Raw[0] = static_cast<std::int16_t>(n);
    ring.Store(s, channels);
  }
  EXPECT_EQ(ring.writeIndex(), 1800);
  EXPECT_FALSE(ring.full());
  EXPECT_DOUBLE_EQ(ring.value(1, 1), 1);
  ring.Advance();
  s.Time = 1801;
  s.Raw[0] = 18010;
  ring.Store(s, channels);
  EXPECT_EQ(ring.writeIndex(), 1);
  EXPECT_TRUE(ring.full());
  EXPECT_DOUBLE_EQ(ring.value(1, 1), 1801);
  EXPECT_DOUBLE_EQ(ring.value(2, 1), 1801.0);
}

TEST(MonitorRing, AFailedPollAtWriteIndex1PutsItBackTo1800) {
  MonitorRing ring;
  ring.Advance();
  EXPECT_EQ(ring.writeIndex(), 1);
  ring.StepBack();
  EXPECT_EQ(ring.writeIndex(), 1800);
  ring.StepBack();
  EXPECT_EQ(ring.writeIndex(), 1799);
}

}  // namespace
