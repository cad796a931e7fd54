#include "realtime/realtime_state.h"

#include <algorithm>
#include <cstring>

#include "trend/unit_table.h"

namespace recscope {

namespace {

void PutLe32(std::uint8_t *at, std::int32_t v) {
  const auto u = static_cast<std::uint32_t>(v);
  at[0] = static_cast<std::uint8_t>(u & 0xFF);
  at[1] = static_cast<std::uint8_t>((u >> 8) & 0xFF);
  at[2] = static_cast<std::uint8_t>((u >> 16) & 0xFF);
  at[3] = static_cast<std::uint8_t>((u >> 24) & 0xFF);
}

std::int32_t GetLe32(const std::uint8_t *at) {
  const std::uint32_t u =
      static_cast<std::uint32_t>(at[0]) | (static_cast<std::uint32_t>(at[1]) << 8) |
      (static_cast<std::uint32_t>(at[2]) << 16) | (static_cast<std::uint32_t>(at[3]) << 24);
  return static_cast<std::int32_t>(u);
}

}  // namespace

std::int16_t RealSettings::CycleSeconds() const {
  if (Cycle < 0 || Cycle >= static_cast<std::int32_t>(kRealCycleSeconds.size()))
    return kRealCycleSeconds[0];
  return kRealCycleSeconds[static_cast<std::size_t>(Cycle)];
}

void RealSampleRing::Allocate(int channels) {
  channels_ = channels < 0 ? 0 : channels;
  times_.assign(kRealSlotCount, 0);
  valid_.assign(kRealSlotCount, 0);
  reserved_.assign(kRealSlotCount, 0);
  values_.assign(static_cast<std::size_t>(kRealSlotCount) * static_cast<std::size_t>(channels_), 0);
  LastWritten = 0;
  LastDrawn = 0;
}

std::int32_t RealSampleRing::Value(std::int32_t slot, int channel0) const {
  if (channel0 < 0 || channel0 >= channels_) return 0;
  return values_.at(Index(slot) * static_cast<std::size_t>(channels_) +
                    static_cast<std::size_t>(channel0));
}

void RealSampleRing::Write(std::int32_t slot, std::int32_t time,
                           const std::vector<std::int32_t> &values) {
  const std::size_t i = Index(slot);
  times_.at(i) = time;
  valid_.at(i) = 1;
  reserved_.at(i) = 0;
  for (int c = 0; c < channels_; ++c)
    values_[i * static_cast<std::size_t>(channels_) + static_cast<std::size_t>(c)] =
        c < static_cast<int>(values.size()) ? values[static_cast<std::size_t>(c)] : 0;
}

void RealSampleRing::Blank(std::int32_t slot) {
  const std::size_t i = Index(slot);
  times_.at(i) = 0;
  valid_.at(i) = 0;
  reserved_.at(i) = 0;
  std::fill_n(values_.begin() + static_cast<long>(i * static_cast<std::size_t>(channels_)),
              channels_, 0);
}

std::vector<std::uint8_t> RealSampleRing::RecordBytes(std::int32_t slot) const {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(RealRecordLength(channels_)), 0);
  PutLe32(bytes.data(), Time(slot));
  bytes[4] = Valid(slot);
  bytes[5] = Reserved(slot);
  for (int c = 0; c < channels_; ++c) PutLe32(bytes.data() + 6 + 4 * c, Value(slot, c));
  return bytes;
}

void RealSampleRing::SetFromRecordBytes(std::int32_t slot, const std::uint8_t *bytes,
                                        std::size_t size) {
  std::vector<std::uint8_t> record(static_cast<std::size_t>(RealRecordLength(channels_)), 0);
  std::memcpy(record.data(), bytes, std::min(size, record.size()));
  const std::size_t i = Index(slot);
  times_.at(i) = GetLe32(record.data());
  valid_.at(i) = record[4];
  reserved_.at(i) = record[5];
  for (int c = 0; c < channels_; ++c)
    values_[i * static_cast<std::size_t>(channels_) + static_cast<std::size_t>(c)] =
        GetLe32(record.data() + 6 + 4 * c);
}

std::int32_t RealSlotOfTime(std::int32_t sampleTime, std::int32_t cycle) {
  if (cycle <= 0) cycle = 1;
  const std::int64_t span = static_cast<std::int64_t>(cycle) * kRealSlotCount;
  const std::int64_t within = static_cast<std::int64_t>(sampleTime) % span;  // sign of the time
  return static_cast<std::int32_t>(within / cycle) + 1;
}

std::vector<std::int32_t> RealGapSlots(std::int32_t oldSlot, std::int32_t newSlot) {
  std::vector<std::int32_t> gap;
  if (oldSlot <= 0) return gap;
  std::int32_t s = oldSlot + 1;
  if (s > kRealSlotCount) s = 1;
  while (s != newSlot && static_cast<std::int32_t>(gap.size()) < kRealSlotCount) {
    gap.push_back(s);
    s = s == kRealSlotCount ? 1 : s + 1;
  }
  return gap;
}

std::int32_t RealAlignedTime(std::int32_t now, std::int32_t cycle) {
  if (cycle <= 0) cycle = 1;
  return now - now % cycle;
}

void RealtimeState::AllocateFamily(int channels, int groups) {
  ChannelCount = channels;
  GroupCount = groups;
  Channels.assign(static_cast<std::size_t>(channels), RealChannelRecord{});
  LastChannels.assign(static_cast<std::size_t>(channels), RealChannelRecord{});
  Groups.assign(static_cast<std::size_t>(groups), RealGroupRecord{});
  GroupSizes.assign(static_cast<std::size_t>(groups), 0);
  Display.assign(static_cast<std::size_t>(channels), RealDisplayChannel{});
  AlarmFlags.assign(static_cast<std::size_t>(channels), std::array<std::uint8_t, 4>{});
  Ring.Allocate(channels);
}

std::string RealtimeState::UnitTextOf(int unitCode) const {
  if (unitCode >= kRealUserUnitFirstCode && unitCode < kRealUserUnitFirstCode + kRealUserUnitCount)
    return UserUnits[static_cast<std::size_t>(unitCode - kRealUserUnitFirstCode)];
  return UnitText(unitCode);
}

}  // namespace recscope
