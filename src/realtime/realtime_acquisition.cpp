#include "realtime/realtime_acquisition.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "link/register_text.h"
#include "platform/text_encoding.h"
#include "shell/ini_file.h"
#include "shell/settings.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

// Word offsets inside the blocks.
constexpr int kHeaderSerial = 16;
constexpr int kHeaderVersion = 24;
constexpr int kChannelWords = 64;
constexpr int kGroupWords = 18;
constexpr int kCommonPointWord = 16;
constexpr int kUserUnitWords = 7;
constexpr int kAlarmWord = 6;
constexpr int kKtxValueWord = 14;
constexpr int kZnqValueWord = 24;

std::int16_t Word(std::span<const std::uint8_t> data, int word) {
  return GetStrToWord(data, 2 * word);
}

std::string Text(std::span<const std::uint8_t> data, int bytes, int word) {
  return GetStrToStr(data, bytes, 2 * word);
}

bool IsKtx(const std::string &model) { return model.compare(0, 3, "KTX") == 0; }

// A text as a field of `bytes` bytes of code page 932, blank padded.
void PutText(std::vector<std::uint8_t> &out, const std::string &utf8, std::size_t bytes) {
  std::string cp = Utf8ToCp932(LeftCp932Bytes(utf8, bytes));
  cp.resize(bytes, ' ');
  out.insert(out.end(), cp.begin(), cp.end());
}

void PutLe32(std::vector<std::uint8_t> &out, std::int32_t v) {
  const auto u = static_cast<std::uint32_t>(v);
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>((u >> (8 * i)) & 0xFF));
}

struct Reader {
  const std::vector<std::uint8_t> &bytes;
  std::size_t at = 0;
  bool ok = true;
  std::string TextField(std::size_t n) {
    if (at + n > bytes.size()) {
      ok = false;
      return {};
    }
    std::string raw(bytes.begin() + static_cast<long>(at),
                    bytes.begin() + static_cast<long>(at + n));
    at += n;
    if (const std::size_t zero = raw.find('\0'); zero != std::string::npos) raw.resize(zero);
    while (!raw.empty() && raw.back() == ' ') raw.pop_back();
    return Cp932ToUtf8(raw);
  }
  std::int32_t Le32() {
    if (at + 4 > bytes.size()) {
      ok = false;
      return 0;
    }
    std::uint32_t u = 0;
    for (int i = 0; i < 4; ++i)
      u |= static_cast<std::uint32_t>(bytes[at + static_cast<std::size_t>(i)]) << (8 * i);
    at += 4;
    return static_cast<std::int32_t>(u);
  }
  std::uint8_t Byte() {
    if (at + 1 > bytes.size()) {
      ok = false;
      return 0;
    }
    return bytes[at++];
  }
};

std::vector<std::uint8_t> ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

void AllocateByModel(RealtimeState &state, bool ktx) {
  const int channels = ktx ? kRealKtxChannels : kRealZnqChannels;
  if (state.ChannelCount != channels)
    state.AllocateFamily(channels, ktx ? kRealKtxGroups : kRealZnqGroups);
}

bool SameAsLastRun(const RealtimeState &state) {
  if (state.SerialText != state.LastSerialText) return false;
  if (state.Channels.size() != state.LastChannels.size()) return false;
  for (std::size_t c = 0; c < state.Channels.size(); ++c) {
    const RealChannelRecord &a = state.Channels[c];
    const RealChannelRecord &b = state.LastChannels[c];
    if (a.InputType != b.InputType || a.UnitCode != b.UnitCode || a.CommonPoint != b.CommonPoint ||
        a.ScaleKind != b.ScaleKind)
      return false;
  }
  return state.CommonPoint == state.LastCommonPoint && state.CycleSeconds == state.LastCycle;
}

void ReadHeader(RealtimeState &state, std::span<const std::uint8_t> data) {
  state.ModelText = Text(data, 16, 0);
  // Trim both ends.
  const std::size_t first = state.ModelText.find_first_not_of(' ');
  state.ModelText = first == std::string::npos ? std::string() : state.ModelText.substr(first);
  state.SerialText = Text(data, 8, kHeaderSerial);
  state.VersionText = Text(data, 8, kHeaderVersion);
}

void DecodeChannels(RealtimeState &state, std::span<const std::uint8_t> data) {
  const bool version14 = RealVersionNumber(state.VersionText) >= 14;
  for (std::size_t c = 0; c < state.Channels.size(); ++c) {
    const int base = kChannelWords * static_cast<int>(c);
    RealChannelRecord &r = state.Channels[c];
    r.Tag1 = Text(data, 8, base + 0);
    r.Tag2 = Text(data, 8, base + 4);
    r.ColorNo = Word(data, base + 8);
    r.InputType = Word(data, base + 9);
    r.UnitCode = Word(data, base + 11);
    r.Decimals = Word(data, base + 17);
    r.Further = Word(data, base + 25);
    r.ScaleLow = Word(data, base + 27);
    r.ScaleHigh = Word(data, base + 28);
    r.CommonPoint = version14 ? Word(data, base + 35) : 0;
    r.ScaleKind = Word(data, base + 19);
    const bool ranged = r.ScaleKind != 0;
    r.RangeLow = ranged ? Word(data, base + 13) : 0;
    r.RangeHigh = ranged ? Word(data, base + 14) : 0;
    r.ExponentLow = ranged ? Word(data, base + 15) : 0;
    r.ExponentHigh = ranged ? Word(data, base + 16) : 0;
  }
}

void DecodeGroups(RealtimeState &state, std::span<const std::uint8_t> data) {
  for (std::size_t g = 0; g < state.Groups.size(); ++g) {
    const int base = kGroupWords * static_cast<int>(g);
    RealGroupRecord &r = state.Groups[g];
    r.Name = Text(data, 16, base);
    for (int k = 0; k < 10; ++k)
      r.Channels[static_cast<std::size_t>(k)] =
          static_cast<std::uint8_t>(Word(data, base + 8 + k) & 0xFF);
  }
}

void BuildDisplay(RealtimeState &state, std::span<const std::uint8_t> data,
                  const std::string &folder) {
  for (std::size_t c = 0; c < state.Channels.size(); ++c) {
    const RealChannelRecord &r = state.Channels[c];
    RealDisplayChannel &d = state.Display[c];
    d.Tag1 = LeftCp932Bytes(r.Tag1, 8);
    d.Tag2 = LeftCp932Bytes(r.Tag2, 8);
    RealDisplayNumbers(r, state.CommonPoint, d);
  }
  for (int k = 0; k < kRealUserUnitCount; ++k) {
    std::string unit = LeftCp932Bytes(Text(data, 2 * kUserUnitWords, kUserUnitWords * k), 7);
    const std::size_t width = Utf8ToCp932(unit).size();
    if (width < 7) unit.append(7 - width, ' ');
    state.UserUnits[static_cast<std::size_t>(k)] = unit;
  }
  WriteIni(std::to_string(state.Settings.Cycle), "CYCLE", "REALTIME", ViewerComIniPath(folder));
  state.CycleSeconds = state.Settings.CycleSeconds();
  state.DisplayStep = 8;
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

void FirstValues(RealtimeState &state, std::int32_t now, const std::string &folder) {
  state.Ring.LastWritten = 0;
  state.Ring.LastDrawn = 0;
  state.SampleTime = RealAlignedTime(now, state.CycleSeconds);
  state.NextSampleTime = state.SampleTime + state.CycleSeconds;
  const std::string setPath = RealSetFilePath(folder);
  std::error_code error;
  std::filesystem::remove(setPath, error);
  WriteRealSetFile(state, setPath);
  const std::string timePath = RealTimeFilePath(folder);
  if (!SameAsLastRun(state)) {
    std::filesystem::remove(timePath, error);
    state.Ring.Allocate(state.ChannelCount);
    state.LastChannels = state.Channels;
    state.LastSerialText = state.SerialText;
    state.LastCommonPoint = state.CommonPoint;
    state.LastCycle = state.CycleSeconds;
  }
  if (std::filesystem::exists(timePath, error)) {
    // The 30-channel family loads twice in a row; the second pass finds what
    // the first left.
    const int passes = state.ChannelCount == kRealKtxChannels ? 2 : 1;
    for (int i = 0; i < passes; ++i)
      LoadRealTimeFile(state.Ring, timePath, now, state.CycleSeconds);
  }
  state.Ring.LastWritten = 0;
  state.Ring.LastDrawn = 0;
  state.AnalyzeEnabled = true;
  state.ButtonsEnabled = true;
  state.LampBlinking = false;
}

RealGroupOutcome Sample(RealtimeState &state, std::span<const std::uint8_t> data,
                        const std::string &folder) {
  RealGroupOutcome outcome;
  const bool ktx = IsKtx(state.ModelText);
  const int valueWord = ktx ? kKtxValueWord : kZnqValueWord;
  std::vector<std::int32_t> values(static_cast<std::size_t>(state.ChannelCount));
  for (int c = 0; c < state.ChannelCount; ++c)
    values[static_cast<std::size_t>(c)] = Word(data, valueWord + c);
  RealTakeAlarmBits(state, data);
  const std::int32_t slot = RealSlotOfTime(state.SampleTime, state.CycleSeconds);
  const std::string path = RealTimeFilePath(folder);
  for (std::int32_t gap : RealGapSlots(state.Ring.LastWritten, slot)) {
    state.Ring.Blank(gap);
    WriteRealTimeRecord(state.Ring, path, gap);
  }
  state.Ring.Write(slot, state.SampleTime, values);
  WriteRealTimeRecord(state.Ring, path, slot);
  state.Ring.LastWritten = slot;
  state.LampColour = kRealLampBlue;
  outcome.Sampled = true;
  outcome.Slot = slot;
  return outcome;
}

}  // namespace

std::int32_t RealBlockTable::BlockWords(int step) const {
  if (step < 0 || step > 7) return 0;
  return Words[static_cast<std::size_t>(step)] * Records[static_cast<std::size_t>(step)];
}

void SetRealHeaderSteps(RealBlockTable &table) {
  table.Start[0] = 44001;
  table.Words[0] = 30;
  table.Records[0] = 1;
  table.Start[1] = 47901;
  table.Words[1] = 30;
  table.Records[1] = 1;
}

void FillRealBlockTable(RealBlockTable &table, bool ktx) {
  table.Start[2] = 40001;
  table.Words[2] = 64;
  table.Records[2] = ktx ? 30 : 72;
  table.Start[3] = ktx ? 42425 : 45825;
  table.Words[3] = 18;
  table.Records[3] = ktx ? 4 : 8;
  table.Start[4] = ktx ? 43032 : 47482;
  table.Words[4] = 33;
  table.Records[4] = 1;
  table.Start[5] = ktx ? 43301 : 47751;
  table.Words[5] = 7;
  table.Records[5] = 12;
  for (std::size_t step : {6u, 7u}) {
    table.Start[step] = ktx ? 30087 : 30077;
    table.Words[step] = ktx ? 44 : 96;
    table.Records[step] = 1;
  }
}

int RealVersionNumber(const std::string &versionText) {
  if (versionText.size() < 3) return 0;
  const std::string two = versionText.substr(1, 2);
  int value = 0;
  bool any = false;
  for (char ch : two) {
    if (ch < '0' || ch > '9') break;
    value = value * 10 + (ch - '0');
    any = true;
  }
  return any ? value : 0;
}

void RealWidenScale(std::int16_t &scaleLow, std::int16_t &scaleHigh, std::int32_t scaleKind) {
  if (scaleLow != scaleHigh) return;
  const int limit = scaleKind != 0 ? -8 : -32767;
  if (scaleLow < limit)
    scaleHigh = static_cast<std::int16_t>(scaleHigh + 1);
  else
    scaleLow = static_cast<std::int16_t>(scaleLow - 1);
}

void RealDisplayNumbers(const RealChannelRecord &r, std::int32_t commonPoint,
                        RealDisplayChannel &d) {
  d.ColorNo = static_cast<std::int16_t>(r.ColorNo);
  d.InputType = static_cast<std::int16_t>(r.InputType);
  d.UnitCode = static_cast<std::int16_t>(r.UnitCode);
  d.Decimals = static_cast<std::int16_t>(r.CommonPoint != 0 ? commonPoint : r.Decimals);
  d.ScaleLow = static_cast<std::int16_t>(r.ScaleLow);
  d.ScaleHigh = static_cast<std::int16_t>(r.ScaleHigh);
  d.RangeLow = static_cast<std::int16_t>(r.RangeLow);
  d.RangeHigh = static_cast<std::int16_t>(r.RangeHigh);
  d.ExponentLow = static_cast<std::int16_t>(r.ExponentLow);
  d.ExponentHigh = static_cast<std::int16_t>(r.ExponentHigh);
  RealWidenScale(d.ScaleLow, d.ScaleHigh, r.ScaleKind);
}

void RealTakeAlarmBits(RealtimeState &state, std::span<const std::uint8_t> data) {
  const bool ktx = IsKtx(state.ModelText);
  const int lastWord = ktx ? 4 : 17;
  for (int i = 0; i <= lastWord; ++i) {
    const auto word = static_cast<std::uint16_t>(Word(data, kAlarmWord + i));
    const int nibbles = i == lastWord ? 2 : 4;  // of the last word only the low byte
    for (int n = 0; n < nibbles; ++n) {
      const std::size_t channel = static_cast<std::size_t>(4 * i + n);
      if (channel >= state.AlarmFlags.size()) continue;
      const int bits = (word >> (4 * n)) & 0xF;
      for (int level = 0; level < 4; ++level)
        state.AlarmFlags[channel][static_cast<std::size_t>(level)] = (bits >> level) & 1;
    }
  }
}

std::string RealSetFilePath(const std::string &folder) {
  return ProgramFilePath(folder, "RealSetFile");
}
std::string RealTimeFilePath(const std::string &folder) {
  return ProgramFilePath(folder, "RealTimeFile");
}

bool WriteRealSetFile(const RealtimeState &state, const std::string &path) {
  std::vector<std::uint8_t> out;
  PutText(out, state.ModelText, 16);
  PutText(out, state.SerialText, 8);
  PutText(out, state.VersionText, 8);
  for (const RealChannelRecord &r : state.Channels) {
    PutText(out, r.Tag1, 8);
    PutText(out, r.Tag2, 8);
    for (std::int32_t v :
         {r.ColorNo, r.InputType, r.UnitCode, r.Decimals, r.Further, r.ScaleLow, r.ScaleHigh,
          r.CommonPoint, r.ScaleKind, r.RangeLow, r.RangeHigh, r.ExponentLow, r.ExponentHigh})
      PutLe32(out, v);
  }
  for (const RealGroupRecord &g : state.Groups) {
    PutText(out, g.Name, 16);
    out.insert(out.end(), g.Channels.begin(), g.Channels.end());
  }
  PutLe32(out, state.CommonPoint);
  for (const std::string &unit : state.UserUnits) PutText(out, unit, 7);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char *>(out.data()), static_cast<std::streamsize>(out.size()));
  return static_cast<bool>(file);
}

bool ReadRealSetFile(RealtimeState &state, const std::string &path, std::int32_t lastCycleSeconds) {
  const std::vector<std::uint8_t> bytes = ReadAll(path);
  if (bytes.size() < 32) return false;
  Reader in{bytes};
  const std::string model = in.TextField(16);
  AllocateByModel(state, IsKtx(model));
  state.ModelText = model;
  state.SerialText = in.TextField(8);
  state.VersionText = in.TextField(8);
  for (RealChannelRecord &r : state.LastChannels) {
    r.Tag1 = in.TextField(8);
    r.Tag2 = in.TextField(8);
    for (std::int32_t *v :
         {&r.ColorNo, &r.InputType, &r.UnitCode, &r.Decimals, &r.Further, &r.ScaleLow, &r.ScaleHigh,
          &r.CommonPoint, &r.ScaleKind, &r.RangeLow, &r.RangeHigh, &r.ExponentLow, &r.ExponentHigh})
      *v = in.Le32();
  }
  for (RealGroupRecord &g : state.Groups) {
    g.Name = in.TextField(16);
    for (std::uint8_t &ch : g.Channels) ch = in.Byte();
  }
  state.LastCommonPoint = in.Le32();
  for (std::string &unit : state.UserUnits) unit = in.TextField(7);
  state.LastSerialText = state.SerialText;
  state.LastCycle = lastCycleSeconds;
  return in.ok;
}

bool WriteRealTimeRecord(const RealSampleRing &ring, const std::string &path, std::int32_t slot) {
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  if (!file.is_open()) {
    std::ofstream make(path, std::ios::binary);
    make.close();
    file.open(path, std::ios::binary | std::ios::in | std::ios::out);
    if (!file.is_open()) return false;
  }
  const std::vector<std::uint8_t> record = ring.RecordBytes(slot);
  file.seekp(static_cast<std::streamoff>(slot - 1) * static_cast<std::streamoff>(record.size()));
  file.write(reinterpret_cast<const char *>(record.data()),
             static_cast<std::streamsize>(record.size()));
  file.flush();
  return static_cast<bool>(file);
}

void LoadRealTimeFile(RealSampleRing &ring, const std::string &path, std::int32_t now,
                      std::int32_t cycle) {
  const std::vector<std::uint8_t> bytes = ReadAll(path);
  const std::size_t length = static_cast<std::size_t>(RealRecordLength(ring.channels()));
  for (std::int32_t slot = 1; slot <= kRealSlotCount; ++slot) {
    const std::size_t at = static_cast<std::size_t>(slot - 1) * length;
    if (at < bytes.size())
      ring.SetFromRecordBytes(slot, bytes.data() + at, std::min(length, bytes.size() - at));
    else
      ring.Blank(slot);
  }
  // Stale and invalid slots become blanks, in memory and in the file; runs of
  // them go out in one write each.
  const std::int64_t oldest =
      static_cast<std::int64_t>(now) - static_cast<std::int64_t>(cycle) * kRealSlotCount;
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  const std::vector<char> zeros(length * 4096, 0);
  std::int32_t runStart = 0;
  auto flush = [&](std::int32_t endSlot) {
    if (runStart == 0 || !file.is_open()) return;
    std::int64_t count = endSlot - runStart;
    file.seekp(static_cast<std::streamoff>(runStart - 1) * static_cast<std::streamoff>(length));
    while (count > 0) {
      const std::int64_t now = std::min<std::int64_t>(count, 4096);
      file.write(zeros.data(),
                 static_cast<std::streamsize>(now * static_cast<std::int64_t>(length)));
      count -= now;
    }
    runStart = 0;
  };
  for (std::int32_t slot = 1; slot <= kRealSlotCount; ++slot) {
    const bool stale = ring.Valid(slot) != 1 || ring.Time(slot) <= oldest;
    if (stale) {
      ring.Blank(slot);
      const std::size_t at = static_cast<std::size_t>(slot - 1) * length;
      bool alreadyZero = at + length <= bytes.size();
      for (std::size_t i = 0; alreadyZero && i < length; ++i) alreadyZero = bytes[at + i] == 0;
      if (!alreadyZero) {
        if (runStart == 0) runStart = slot;
        continue;
      }
    }
    flush(slot);
  }
  flush(kRealSlotCount + 1);
}

RealGroupOutcome subGroupDataGet(RealtimeState &state, RealBlockTable &table,
                                 std::span<const std::uint8_t> data, std::int32_t now,
                                 const std::string &folder) {
  RealGroupOutcome outcome;
  switch (state.Step) {
    case 0:
    case 1: {
      state.LampBlinking = true;
      ReadHeader(state, data);
      const char *family = state.Step == 0 ? "KTX" : "ZNQ";
      if (state.ModelText.compare(0, 3, family) == 0) {
        AllocateByModel(state, state.Step == 0);
        FillRealBlockTable(table, state.Step == 0);
        state.Step = 2;
      } else if (state.Step == 0) {
        state.Step = 1;
      } else {
        outcome.Fail = true;
      }
      break;
    }
    case 2:
      state.ButtonsEnabled = false;
      DecodeChannels(state, data);
      state.Step = 3;
      break;
    case 3:
      DecodeGroups(state, data);
      state.Step = 4;
      break;
    case 4:
      state.CommonPoint =
          RealVersionNumber(state.VersionText) >= 14 ? Word(data, kCommonPointWord) : 0;
      state.Step = 5;
      break;
    case 5:
      BuildDisplay(state, data, folder);
      outcome.TabsRebuilt = true;
      state.Step = 6;
      break;
    case 6:
      FirstValues(state, now, folder);
      state.Step = 7;
      break;
    case 7:
      outcome = Sample(state, data, folder);
      break;
    default:
      break;
  }
  return outcome;
}

}  // namespace recscope
