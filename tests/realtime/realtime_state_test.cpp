// The sample ring: slot arithmetic over 86400 slots, the gaps that a late
// sample leaves, and the record of a slot as the ring file keeps it.
#include <gtest/gtest.h>

#include "realtime/realtime_state.h"

using namespace recscope;

TEST(RealRing, CycleOf1SecondCoversExactly24HoursAnd60SecondsCovers60Days) {
  // Two sample times one ring apart land in the same slot; one cycle less does not.
  EXPECT_EQ(RealSlotOfTime(1000, 1), RealSlotOfTime(1000 + 86400, 1));
  EXPECT_NE(RealSlotOfTime(1000, 1), RealSlotOfTime(1000 + 86399, 1));
  EXPECT_EQ(RealSlotOfTime(6000, 60), RealSlotOfTime(6000 + 60 * 86400, 60));
  EXPECT_NE(RealSlotOfTime(6000, 60), RealSlotOfTime(6000 + 60 * 86399, 60));
}

TEST(RealRing, SampleTime0ModCycleTimes86400GivesSlot1) {
  EXPECT_EQ(RealSlotOfTime(0, 1), 1);
  EXPECT_EQ(RealSlotOfTime(86400 * 20, 1), 1);
  EXPECT_EQ(RealSlotOfTime(10 * 86400 * 3, 10), 1);
  EXPECT_EQ(RealSlotOfTime(86399, 1), 86400);
  EXPECT_EQ(RealSlotOfTime(1700000000, 5), (1700000000 % (5 * 86400)) / 5 + 1);
}

TEST(RealRing, GapPassingSlot86400BlanksToTheEndAndFrom1) {
  const std::vector<std::int32_t> gap = RealGapSlots(86398, 3);
  EXPECT_EQ(gap, (std::vector<std::int32_t>{86399, 86400, 1, 2}));
  EXPECT_TRUE(RealGapSlots(86400, 1).empty());
  EXPECT_TRUE(RealGapSlots(5, 6).empty());
  EXPECT_TRUE(RealGapSlots(0, 77).empty());
  EXPECT_EQ(RealGapSlots(5, 7), (std::vector<std::int32_t>{6}));
}

TEST(RealRing, RecordBytesAreTimeValidReservedAndValuesLittleEndian) {
  RealSampleRing ring;
  ring.Allocate(2);
  ring.Write(3, 0x01020304, {-1, 258});
  const std::vector<std::uint8_t> bytes = ring.RecordBytes(3);
  EXPECT_EQ(bytes,
            (std::vector<std::uint8_t>{4, 3, 2, 1, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 2, 1, 0, 0}));
  EXPECT_EQ(RealRecordLength(30), 126);
  EXPECT_EQ(RealRecordLength(72), 294);
  RealSampleRing other;
  other.Allocate(2);
  other.SetFromRecordBytes(9, bytes.data(), bytes.size());
  EXPECT_EQ(other.Time(9), 0x01020304);
  EXPECT_EQ(other.Valid(9), 1);
  EXPECT_EQ(other.Value(9, 0), -1);
  EXPECT_EQ(other.Value(9, 1), 258);
  other.Blank(9);
  EXPECT_EQ(other.RecordBytes(9), std::vector<std::uint8_t>(14, 0));
}

TEST(RealRing, AllocatingAFamilySizesEveryArray) {
  RealtimeState state;
  state.AllocateFamily(kRealZnqChannels, kRealZnqGroups);
  EXPECT_EQ(state.Channels.size(), 72u);
  EXPECT_EQ(state.Groups.size(), 8u);
  EXPECT_EQ(state.AlarmFlags.size(), 72u);
  EXPECT_EQ(state.Ring.channels(), 72);
  EXPECT_EQ(state.Ring.Valid(86400), 0);
}
