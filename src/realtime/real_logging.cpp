#include "realtime/real_logging.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "realtime/real_time_file.h"
#include "record/record_fields.h"
#include "record/record_writer.h"

namespace recscope {

namespace {

constexpr std::size_t kModelBytes = 16;
constexpr std::size_t kSerialBytes = 8;
constexpr std::size_t kVersionBytes = 8;
constexpr std::size_t kTagBytes = 8;
constexpr std::size_t kChannelBytes = 2 * kTagBytes + 13 * 4;
constexpr std::size_t kGroupNameBytes = 16;
constexpr std::size_t kGroupBytes = kGroupNameBytes + 10;
constexpr std::size_t kUnitBytes = 7;

std::string TrimRight(std::string text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.pop_back();
  return text;
}

std::array<std::int32_t, 13> ChannelValues(const RealChannelRecord &c) {
  return {c.ColorNo,   c.InputType,   c.UnitCode,    c.Decimals,  c.Further,
          c.ScaleLow,  c.ScaleHigh,   c.CommonPoint, c.ScaleKind, c.RangeLow,
          c.RangeHigh, c.ExponentLow, c.ExponentHigh};
}

void SetChannelValues(RealChannelRecord &c, const std::array<std::int32_t, 13> &v) {
  c.ColorNo = v[0];
  c.InputType = v[1];
  c.UnitCode = v[2];
  c.Decimals = v[3];
  c.Further = v[4];
  c.ScaleLow = v[5];
  c.ScaleHigh = v[6];
  c.CommonPoint = v[7];
  c.ScaleKind = v[8];
  c.RangeLow = v[9];
  c.RangeHigh = v[10];
  c.ExponentLow = v[11];
  c.ExponentHigh = v[12];
}

bool IsKtxModel(const std::string &model) { return model.rfind("KTX", 0) == 0; }

std::int32_t SlotBefore(std::int32_t slot, std::int32_t back) {
  std::int64_t s = (static_cast<std::int64_t>(slot) - 1 - back) % kRealSlotCount;
  if (s < 0) s += kRealSlotCount;
  return static_cast<std::int32_t>(s + 1);
}

// A scale of zero span is pulled apart: the low end goes down by one, unless it
// is already at the bottom (below -8 for a logarithmic scale, below -32767 for a
// linear one), when the high end goes up.
void WidenZeroSpan(std::int16_t &low, std::int16_t &high, std::int32_t scaleKind) {
  if (low != high) return;
  const int limit = scaleKind != 0 ? -8 : -32767;
  if (low < limit)
    ++high;
  else
    --low;
}

}  // namespace

std::string RealSetFileBytes(const RealtimeState &state) {
  std::string out;
  out += FixedCp932(state.ModelText, kModelBytes);
  out += FixedCp932(state.SerialText, kSerialBytes);
  out += FixedCp932(state.VersionText, kVersionBytes);
  for (const RealChannelRecord &c : state.Channels) {
    out += FixedCp932(c.Tag1, kTagBytes);
    out += FixedCp932(c.Tag2, kTagBytes);
    for (std::int32_t v : ChannelValues(c)) PutI32(out, v);
  }
  for (const RealGroupRecord &g : state.Groups) {
    out += FixedCp932(g.Name, kGroupNameBytes);
    for (std::uint8_t n : g.Channels) PutU8(out, n);
  }
  PutI32(out, state.CommonPoint);
  for (const std::string &unit : state.UserUnits) out += FixedCp932(unit, kUnitBytes);
  return out;
}

bool WriteRealSetFile(const std::string &path, const RealtimeState &state) {
  std::error_code ec;
  std::filesystem::remove(path, ec);
  const std::string bytes = RealSetFileBytes(state);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  return static_cast<bool>(out);
}

bool ReadRealSetFile(const std::string &path, RealtimeState &state) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  const std::string b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (b.size() < kModelBytes) return false;
  const std::string model = TrimRight(TextAt(b, 0, kModelBytes));
  const bool ktx = IsKtxModel(model);
  const int channels = ktx ? kRealKtxChannels : kRealZnqChannels;
  const int groups = ktx ? kRealKtxGroups : kRealZnqGroups;
  const std::size_t need = kModelBytes + kSerialBytes + kVersionBytes +
                           kChannelBytes * static_cast<std::size_t>(channels) +
                           kGroupBytes * static_cast<std::size_t>(groups) + 4 +
                           kUnitBytes * kRealUserUnitCount;
  if (b.size() < need) return false;

  state.AllocateFamily(channels, groups);
  state.ModelText = model;
  std::size_t at = kModelBytes;
  state.SerialText = TextAt(b, at, kSerialBytes);
  at += kSerialBytes;
  state.VersionText = TextAt(b, at, kVersionBytes);
  at += kVersionBytes;
  for (RealChannelRecord &c : state.Channels) {
    c.Tag1 = TextAt(b, at, kTagBytes);
    c.Tag2 = TextAt(b, at + kTagBytes, kTagBytes);
    std::array<std::int32_t, 13> v{};
    for (std::size_t i = 0; i < v.size(); ++i) v[i] = I32At(b, at + 2 * kTagBytes + 4 * i);
    SetChannelValues(c, v);
    at += kChannelBytes;
  }
  for (RealGroupRecord &g : state.Groups) {
    g.Name = TextAt(b, at, kGroupNameBytes);
    for (std::size_t i = 0; i < g.Channels.size(); ++i)
      g.Channels[i] = U8At(b, at + kGroupNameBytes + i);
    at += kGroupBytes;
  }
  state.CommonPoint = I32At(b, at);
  at += 4;
  for (std::string &unit : state.UserUnits) {
    unit = TextAt(b, at, kUnitBytes);
    at += kUnitBytes;
  }
  state.LastChannels = state.Channels;
  state.LastSerialText = state.SerialText;
  state.LastCommonPoint = state.CommonPoint;
  return true;
}

bool LoadRealTimeFile(const std::string &path, RealtimeState &state, std::int32_t now) {
  RealSampleRing &ring = state.Ring;
  if (!ring.allocated()) return false;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  const std::string b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  in.close();
  const std::size_t length = static_cast<std::size_t>(RealRecordLength(ring.channels()));
  const std::vector<std::uint8_t> blank(length, 0);
  for (std::int32_t slot = 1; slot <= kRealSlotCount; ++slot) {
    const std::size_t at = static_cast<std::size_t>(slot - 1) * length;
    if (at + length <= b.size())
      ring.SetFromRecordBytes(slot, reinterpret_cast<const std::uint8_t *>(b.data()) + at, length);
    else
      ring.SetFromRecordBytes(slot, blank.data(), length);
  }

  const std::int64_t oldest = static_cast<std::int64_t>(now) -
                              static_cast<std::int64_t>(state.CycleSeconds) * kRealSlotCount;
  RealTimeFileWriter file;
  bool fileOpen = false;
  for (std::int32_t slot = 1; slot <= kRealSlotCount; ++slot) {
    if (ring.Time(slot) > oldest && ring.Valid(slot) == 1) continue;
    const std::size_t at = static_cast<std::size_t>(slot - 1) * length;
    const bool onDisk = at + length <= b.size();
    const bool zeros = !onDisk || std::all_of(b.begin() + static_cast<std::ptrdiff_t>(at),
                                              b.begin() + static_cast<std::ptrdiff_t>(at + length),
                                              [](char c) { return c == 0; });
    ring.Blank(slot);
    if (zeros) continue;
    if (!fileOpen) fileOpen = file.Open(path, ring.channels());
    if (fileOpen) file.WriteBlank(slot);
  }
  return true;
}

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
    d.ColorNo = static_cast<std::int16_t>(r.ColorNo);
    d.InputType = static_cast<std::int16_t>(r.InputType);
    d.UnitCode = static_cast<std::int16_t>(r.UnitCode);
    d.Decimals = static_cast<std::int16_t>(r.CommonPoint != 0 ? state.CommonPoint : r.Decimals);
    d.ScaleLow = static_cast<std::int16_t>(r.ScaleLow);
    d.ScaleHigh = static_cast<std::int16_t>(r.ScaleHigh);
    d.RangeLow = static_cast<std::int16_t>(r.RangeLow);
    d.RangeHigh = static_cast<std::int16_t>(r.RangeHigh);
    d.ExponentLow = static_cast<std::int16_t>(r.ExponentLow);
    d.ExponentHigh = static_cast<std::int16_t>(r.ExponentHigh);
    WidenZeroSpan(d.ScaleLow, d.ScaleHigh, r.ScaleKind);
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
  const std::filesystem::path dir(folder);
  if (!ReadRealSetFile((dir / kRealSetFileName).string(), state)) return false;
  RealDisplayFromSetup(state);
  state.CycleSeconds = state.Settings.CycleSeconds();
  LoadRealTimeFile((dir / kRealTimeFileName).string(), state, now);
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
