#include "realtime/real_logging.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

#include "realtime/realtime_acquisition.h"
#include "realtime/realtime_settings.h"
#include "record/record_fields.h"
#include "record/record_writer.h"
#include "shell/settings.h"

namespace recscope {

namespace {

constexpr std::size_t kTagBytes = 8;
constexpr std::size_t kUnitBytes = 7;

std::int32_t SlotBefore(std::int32_t slot, std::int32_t back) {
  std::int64_t s = (static_cast<std::int64_t>(slot) - 1 - back) % kRealSlotCount;
  if (s < 0) s += kRealSlotCount;
  return static_cast<std::int32_t>(s + 1);
}

}  // namespace

std::int32_t RealNewestSlot(const RealtimeState &state) {
  const RealSampleRing &ring = state.Ring;
  if (!ring.allocated()) return 0;
  if (ring.LastWritten > 0) return ring.LastWritten;
  std::int32_t best = 0;
  for (std::int32_t slot = 1; slot <= kRealSlotCount; ++slot)
    if (ring.Valid(slot) == 1 && (best == 0 || ring.Time(slot) > ring.Time(best))) best = slot;
  return best;
}

std::int32_t RealNewestTime(const RealtimeState &state) {
  const std::int32_t slot = RealNewestSlot(state);
  if (slot > 0 && state.Ring.Valid(slot) == 1) return state.Ring.Time(slot);
  return state.SampleTime;
}

void RealDisplayFromSetup(RealtimeState &state) {
  state.Display.assign(state.Channels.size(), RealDisplayChannel{});
  for (std::size_t c = 0; c < state.Channels.size(); ++c) {
    const RealChannelRecord &r = state.Channels[c];
    RealDisplayChannel &d = state.Display[c];
    d.Tag1 = TextAt(FixedCp932(r.Tag1, kTagBytes), 0, kTagBytes);
    d.Tag2 = TextAt(FixedCp932(r.Tag2, kTagBytes), 0, kTagBytes);
    RealDisplayNumbers(r, state.CommonPoint, d);
  }
  state.GroupSizes.assign(state.Groups.size(), 0);
  state.TabNames = {"G9"};
  state.TabGroups = {0};
  for (std::size_t g = 0; g < state.Groups.size(); ++g) {
    std::int32_t size = 0;
    for (std::uint8_t ch : state.Groups[g].Channels)
      if (ch != 0) ++size;
    state.GroupSizes[g] = size;
    if (size > 0) {
      state.TabNames.push_back("G" + std::to_string(g + 1));
      state.TabGroups.push_back(static_cast<std::int32_t>(g + 1));
    }
  }
}

bool LoadLastRealRun(const std::string &folder, RealtimeState &state, std::int32_t now) {
  RealSettings last;
  ReadRealSettings(last, ViewerComIniPath(folder));
  const std::int16_t cycle = last.CycleSeconds();
  if (!ReadRealSetFile(state, RealSetFilePath(folder), cycle)) return false;
  // Until the recorder is read again the last run's setup is what the windows show.
  state.Channels = state.LastChannels;
  state.CommonPoint = state.LastCommonPoint;
  state.CycleSeconds = cycle;
  RealDisplayFromSetup(state);
  LoadRealTimeFile(state.Ring, RealTimeFilePath(folder), now, cycle);
  return true;
}

std::int16_t RealSamplingCode(int cycleSeconds) {
  for (std::size_t i = 0; i < kRealCycleSeconds.size(); ++i)
    if (kRealCycleSeconds[i] == cycleSeconds) return static_cast<std::int16_t>(i);
  return 0;
}

RecordFileInfo RealRecordInfo(const RealtimeState &state) {
  RecordFileInfo info;
  info.FileNameText = kRealRecordFileName;
  info.ModelText = state.ModelText;
  info.SerialText = "SNo." + state.SerialText;
  info.VersionText = "Ver." + state.VersionText;
  info.SamplingCode = RealSamplingCode(state.CycleSeconds);
  info.GroupCount = static_cast<std::int16_t>(state.Groups.size());
  info.DiCount = 0;
  for (std::size_t c = 0; c < state.Display.size(); ++c) {
    const RealDisplayChannel &d = state.Display[c];
    const bool commonPoint = c < state.Channels.size() && state.Channels[c].CommonPoint != 0;
    ChannelInfo ch;
    ch.ChannelNo = static_cast<std::int16_t>(c + 1);
    ch.Tag =
        TextAt(FixedCp932(d.Tag1, kTagBytes) + FixedCp932(d.Tag2, kTagBytes), 0, 2 * kTagBytes);
    ch.ChannelLabel = "CH" + ZeroNumber(static_cast<long long>(c + 1), 2);
    ch.ColorNo = d.ColorNo;
    ch.InputType = d.InputType;
    ch.Unit = commonPoint ? std::string(kUnitBytes, ' ') : state.UnitTextOf(d.UnitCode);
    ch.ScaleLow = d.ScaleLow;
    ch.ScaleHigh = d.ScaleHigh;
    ch.RecordType = 1;
    ch.ScaleKind =
        static_cast<std::int16_t>(c < state.Channels.size() ? state.Channels[c].ScaleKind : 0);
    ch.Decimals = d.Decimals;
    const double unit = std::pow(10.0, -d.Decimals);
    ch.RangeLow = d.RangeLow * unit;
    ch.RangeHigh = d.RangeHigh * unit;
    if (ch.ScaleKind != 0) {
      ch.ExponentLow = d.ExponentLow;
      ch.ExponentHigh = d.ExponentHigh;
      ch.DisplayLow = ch.ScaleLow;
      ch.DisplayHigh = ch.ScaleHigh;
    } else {
      ch.DisplayLow = ch.ScaleLow * unit;
      ch.DisplayHigh = ch.ScaleHigh * unit;
    }
    ch.RecordedLow = ch.DisplayLow;
    ch.RecordedHigh = ch.DisplayHigh;
    info.Channels.push_back(ch);
  }
  for (std::size_t g = 0; g < state.Groups.size() && g < info.Groups.size(); ++g) {
    info.Groups[g].GroupName = state.Groups[g].Name;
    for (std::size_t i = 0; i < 10; ++i) info.Groups[g].Members[i] = state.Groups[g].Channels[i];
  }
  info.AnalogCount = static_cast<std::int16_t>(info.Channels.size());
  info.ChannelTotal = info.AnalogCount;
  return info;
}

std::string RealRecordWrite(const std::string &folder, const RealtimeState &state) {
  const std::filesystem::path dir(folder);
  const std::string path = (dir / kRealRecordFileName).string();
  std::error_code ec;
  // The flag file belongs to the record: a fresh analysis shows no old flags.
  if (std::filesystem::exists(path, ec) && !std::filesystem::remove(path, ec)) return {};
  const std::string flagPath = (dir / kRealFlagFileName).string();
  if (std::filesystem::exists(flagPath, ec) && !std::filesystem::remove(flagPath, ec)) return {};

  const RecordFileInfo info = RealRecordInfo(state);
  const RecordWriter writer(info, 2);
  const RealSampleRing &ring = state.Ring;
  const int channels = static_cast<int>(info.Channels.size());
  std::string bytes = writer.HeaderBytes();
  bytes.reserve(bytes.size() + static_cast<std::size_t>(kRealSlotCount) *
                                   static_cast<std::size_t>(writer.RecordLength()));
  const std::int32_t newest = RealNewestSlot(state);
  const std::int64_t lastTime = RealNewestTime(state);
  const std::int64_t cycle = state.CycleSeconds;
  std::vector<std::int16_t> units(static_cast<std::size_t>(channels), 0);
  for (std::int32_t i = 0; i < kRealSlotCount; ++i) {
    // Record i is the slot i + 1 places after the newest one, round over the ring.
    const std::int32_t slot = SlotBefore(newest, -(i + 1));
    for (int c = 0; c < channels; ++c)
      units[static_cast<std::size_t>(c)] = static_cast<std::int16_t>(
          ring.allocated() && c < ring.channels() ? ring.Value(slot, c) : 0);
    const auto time = static_cast<std::int32_t>(lastTime - cycle * (kRealSlotCount - 1 - i));
    writer.AppendRecord(bytes, time, units, {});
  }
  if (!WriteWholeFile(path, bytes)) return {};
  return path;
}

}  // namespace recscope
