#pragma once
// A real-time state as the driver leaves it after reading a recorder's setup,
// filled directly so that logging and views can be tested without a link.
#include <string>
#include <vector>

#include "realtime/realtime_state.h"

namespace recscope::testing_support {

// A recorder of the 30-channel family ("KTX...") or the 72-channel one, with
// every channel on, tags "T<n>" and "U<n>", one decimal, scale 0 to 1000.0,
// group 1 holding channels 1 to 3, group 2 holding 4 and 5; the ring allocated
// and the cycle given.
inline void FillRealSetup(RealtimeState &state, bool ktx, int cycleSeconds) {
  const int channels = ktx ? kRealKtxChannels : kRealZnqChannels;
  const int groups = ktx ? kRealKtxGroups : kRealZnqGroups;
  state.AllocateFamily(channels, groups);
  state.ModelText = ktx ? "KTX1030" : "ZNQ2072";
  state.SerialText = "A1234567";
  state.VersionText = "01.14.00";
  state.CycleSeconds = static_cast<std::int16_t>(cycleSeconds);
  for (int c = 0; c < channels; ++c) {
    RealChannelRecord &r = state.Channels[static_cast<std::size_t>(c)];
    r.Tag1 = "T" + std::to_string(c + 1);
    r.Tag2 = "U" + std::to_string(c + 1);
    r.ColorNo = 1 + c % 14;
    r.InputType = 1;
    r.UnitCode = 1 + c % 3;
    r.Decimals = 1;
    r.Further = 7;
    r.ScaleLow = 0;
    r.ScaleHigh = 10000;
    RealDisplayChannel &d = state.Display[static_cast<std::size_t>(c)];
    d.Tag1 = r.Tag1;
    d.Tag2 = r.Tag2;
    d.ColorNo = static_cast<std::int16_t>(r.ColorNo);
    d.InputType = static_cast<std::int16_t>(r.InputType);
    d.UnitCode = static_cast<std::int16_t>(r.UnitCode);
    d.Decimals = static_cast<std::int16_t>(r.Decimals);
    d.ScaleLow = static_cast<std::int16_t>(r.ScaleLow);
    d.ScaleHigh = static_cast<std::int16_t>(r.ScaleHigh);
  }
  state.Groups[0].Name = "BOILER";
  state.Groups[0].Channels = {1, 2, 3, 0, 0, 0, 0, 0, 0, 0};
  state.Groups[1].Name = "STACK";
  state.Groups[1].Channels = {4, 5, 0, 0, 0, 0, 0, 0, 0, 0};
  state.GroupSizes.assign(static_cast<std::size_t>(groups), 0);
  state.GroupSizes[0] = 3;
  state.GroupSizes[1] = 2;
  state.TabNames = {"G9", "G1", "G2"};
  state.TabGroups = {0, 1, 2};
  state.UserUnits[0] = "kgf";
  state.CommonPoint = 0;
  state.Step = 7;
}

// The values of a sample at `time`: channel c reads 10 x c + (time mod 100).
inline std::vector<std::int32_t> SampleValues(const RealtimeState &state, std::int32_t time) {
  std::vector<std::int32_t> v;
  for (int c = 0; c < state.Ring.channels(); ++c) v.push_back(10 * c + time % 100);
  return v;
}

// Writes a sample into the ring at the slot of `time`, as the driver does in its
// cycle: blanks the gap behind the last written slot, writes, counts.
inline std::int32_t PutSample(RealtimeState &state, std::int32_t time) {
  const std::int32_t slot = RealSlotOfTime(time, state.CycleSeconds);
  for (std::int32_t s : RealGapSlots(state.Ring.LastWritten, slot)) state.Ring.Blank(s);
  state.Ring.Write(slot, time, SampleValues(state, time));
  state.Ring.LastWritten = slot;
  state.SampleTime = time;
  return slot;
}

}  // namespace recscope::testing_support
