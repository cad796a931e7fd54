// Writes the demo record family: a heat-treatment furnace over three days at a
// 10-second period, twelve analog channels in three groups and three digital
// inputs, with alarms, messages and flags. Deterministic: the same bytes on
// every run. Usage: make_sample OUTDIR  (writes OUTDIR/SHEAT01.FDT, AHEAT01.FDT,
// FHEAT01.FDT and a text-format twin of the first twelve hours in OUTDIR/text/).
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "record/alarm_file.h"
#include "record/flag_file.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"

namespace recscope {
namespace {

constexpr std::int32_t kPeriod = 10;
constexpr int kCycleSeconds = 8 * 3600;  // load, heat, soak, cool

struct ChannelPlan {
  const char *tag;
  const char *unit;
  int recordType;
  int decimals;
  int scaleLow, scaleHigh;  // raw, or powers of ten for the vacuum channel
  int inputType;
};

const ChannelPlan kChannels[12] = {
    {"炉内温度 上", "ﾟC", 0, 1, 0, 12000, 1}, {"炉内温度 中", "ﾟC", 1, 1, 0, 12000, 1},
    {"炉内温度 下", "ﾟC", 1, 1, 0, 12000, 1}, {"ワーク温度", "ﾟC", 2, 1, 0, 12000, 1},
    {"真空度", "Pa", 1, 1, -5, 3, 17},        {"冷却水温度", "ﾟC", 1, 1, 0, 800, 2},
    {"排気温度", "ﾟC", 1, 1, 0, 6000, 1},     {"N2流量", "m3/h", 1, 2, 0, 5000, 3},
    {"炉圧", "kPa", 1, 1, 0, 2000, 3},        {"ヒータ電流", "A", 2, 1, 0, 3000, 3},
    {"O2濃度", "%", 1, 2, 0, 2500, 3},        {"外気温度", "ﾟC", 1, 1, -200, 500, 2},
};

RecordFileInfo FurnaceInfo(const std::string &fileName) {
  RecordFileInfo info;
  info.FileNameText = fileName;
  info.ModelText = "ZNQ72";
  info.SerialText = "SNo.R0701234";
  info.VersionText = "Ver.1.20.00";
  info.SamplingCode = 4;  // 10 s
  info.GroupCount = 4;
  for (int i = 0; i < 12; ++i) {
    const ChannelPlan &p = kChannels[i];
    ChannelInfo c;
    c.ChannelNo = static_cast<std::int16_t>(i + 1);
    c.Tag = p.tag;
    c.ColorNo = static_cast<std::int16_t>(i + 1);
    c.InputType = static_cast<std::int16_t>(p.inputType);
    c.Unit = p.unit;
    c.ScaleLow = static_cast<std::int16_t>(p.scaleLow);
    c.ScaleHigh = static_cast<std::int16_t>(p.scaleHigh);
    c.RecordType = static_cast<std::int16_t>(p.recordType);
    c.Decimals = static_cast<std::int16_t>(p.decimals);
    c.RangeLow = p.scaleLow * std::pow(10.0, -p.decimals);
    c.RangeHigh = p.scaleHigh * std::pow(10.0, -p.decimals);
    if (i == 4) {  // logarithmic: raw 0..8000 spans 10^-5 .. 10^3 Pa
      c.ScaleKind = 1;
      c.RangeLow = 0;
      c.RangeHigh = 800.0;
      c.ExponentLow = -5;
      c.ExponentHigh = 3;
    }
    info.Channels.push_back(c);
  }
  info.Channels[0].AlarmKind = {1, 2, 0, 0};
  info.Channels[0].AlarmOutput = {1, 2, 0, 0};
  info.Channels[0].AlarmValue = {880.0, 50.0, 0, 0};
  info.Channels[5].AlarmKind = {1, 0, 0, 0};
  info.Channels[5].AlarmOutput = {3, 0, 0, 0};
  info.Channels[5].AlarmValue = {45.0, 0, 0, 0};
  const char *diTags[3] = {"ヒータ ON", "扉 閉", "冷却ファン"};
  for (int n = 0; n < 3; ++n) {
    DiInfo d;
    d.DiNo = static_cast<std::int16_t>(129 + n);
    d.Tag = diTags[n];
    d.ColorNo = static_cast<std::int16_t>(12 + n);
    d.ScaleLow = 0;
    d.ScaleHigh = 1;
    d.RecordType = n == 0 ? 0 : 1;
    info.Dis.push_back(d);
  }
  info.Groups[0] = {"炉内温度", {1, 2, 3, 4, 0, 0, 0, 0, 0, 0}};
  info.Groups[1] = {"真空・ガス", {5, 9, 8, 11, 0, 0, 0, 0, 0, 0}};
  info.Groups[2] = {"設備", {6, 7, 10, 12, 129, 130, 131, 0, 0, 0}};
  return info;
}

// The furnace set point at a second of its cycle: load, ramp, soak, cool.
double SetPoint(int second) {
  const int s = second % kCycleSeconds;
  if (s < 1800) return 40.0;                                       // loading
  if (s < 1800 + 7200) return 40.0 + 810.0 * (s - 1800) / 7200.0;  // ramp to 850
  if (s < 1800 + 7200 + 10800) return 850.0;                       // soak
  const double t = (s - 19800) / 9000.0;                           // cool
  return 40.0 + 810.0 * std::exp(-3.0 * t);
}

struct Noise {
  std::mt19937 engine{20240304};
  double Next(double amplitude) {
    return amplitude * (static_cast<double>(engine()) / 4294967295.0 * 2.0 - 1.0);
  }
};

std::int16_t Raw(double value, int decimals) {
  const double raw = std::round(value * std::pow(10.0, decimals));
  return static_cast<std::int16_t>(std::max(-32000.0, std::min(32000.0, raw)));
}

struct Furnace {
  std::vector<DataRecord> records;
  AlarmFileInfo events;
  std::vector<FlagEvent> flags;
};

void Alarm(AlarmFileInfo &events, std::int32_t time, int channel, int number, int action,
           int state) {
  AlarmEvent a;
  a.Time = time;
  a.ChannelNo = static_cast<std::int16_t>(channel);
  a.AlarmNo = static_cast<std::int16_t>(number);
  a.AlarmAction = static_cast<std::int16_t>(action);
  a.AlarmState = static_cast<std::int16_t>(state);
  events.Alarms.push_back(a);
}

void Message(AlarmFileInfo &events, std::int32_t time, const char *text, int color) {
  MessageEvent m;
  m.Time = time;
  m.Text = text;
  m.MessageColor = static_cast<std::int16_t>(color);
  events.Messages.push_back(m);
}

Furnace Simulate(std::int32_t start, int records) {
  Furnace f;
  Noise noise;
  bool highAlarm = false, waterAlarm = false;
  double vacuumExponent = 2.0;
  for (int r = 0; r < records; ++r) {
    const int second = r * kPeriod;
    const std::int32_t time = start + second;
    const int phaseSecond = second % kCycleSeconds;
    const int cycle = second / kCycleSeconds;
    const double sp = SetPoint(second);
    // The second cycle overshoots during its soak: the high alarm fires.
    const double overshoot = (cycle == 1 && phaseSecond > 9500 && phaseSecond < 11000) ? 45.0 : 0.0;
    const double top = sp + overshoot + noise.Next(1.5);
    const bool heating = phaseSecond >= 1800 && phaseSecond < 19800;
    const bool doorClosed = phaseSecond >= 900;
    const bool fan = phaseSecond >= 19800;
    vacuumExponent += ((heating ? -4.0 : 2.0) - vacuumExponent) * 0.004;
    const double water = 22.0 + (fan ? 18.0 : 4.0) * (sp / 850.0) + noise.Next(0.3);

    DataRecord d;
    d.Time = time;
    d.Units.push_back(Raw(top - 0.8 - std::abs(noise.Next(1.0)), 1));  // minimum
    d.Units.push_back(Raw(top + 0.8 + std::abs(noise.Next(1.0)), 1));  // maximum
    d.Units.push_back(Raw(sp - 3.0 + noise.Next(1.5), 1));
    d.Units.push_back(Raw(sp - 6.0 + noise.Next(1.5), 1));
    d.Units.push_back(Raw(sp * 0.96 - 10.0 + noise.Next(0.5), 1));
    d.Units.push_back(static_cast<std::int16_t>(std::round((vacuumExponent + 5.0) * 1000.0)));
    // Cooling water: over range for a quarter of an hour on the first day.
    const bool overRange = r >= 4000 && r < 4090;
    d.Units.push_back(overRange ? std::int16_t{32767} : Raw(water, 1));
    // Exhaust thermocouple: burnout for half an hour on the second day.
    const bool burnout = r >= 12000 && r < 12180;
    d.Units.push_back(burnout ? std::int16_t{-32768} : Raw(sp * 0.45 + 25.0 + noise.Next(2.0), 1));
    d.Units.push_back(Raw((heating ? 12.0 : 30.0) + noise.Next(0.4), 2));
    d.Units.push_back(Raw(101.3 - (heating ? 90.0 : 0.0) + noise.Next(0.2), 1));
    d.Units.push_back(
        Raw(heating && sp > 60 ? 180.0 * (1.0 - sp / 1000.0) + 40.0 + noise.Next(3.0) : 0.0, 1));
    d.Units.push_back(Raw(heating ? 0.4 + noise.Next(0.05) : 20.9 + noise.Next(0.05), 2));
    d.Units.push_back(Raw(
        14.0 + 8.0 * std::sin(2.0 * M_PI * (second - 6 * 3600) / 86400.0) + noise.Next(0.2), 1));
    const bool heaterOn = heating && phaseSecond < 1800 + 7200 + 10800;
    const bool heaterPulse = heaterOn && (r % 7 != 0);
    d.DiStates = {static_cast<std::uint8_t>(heaterOn),   static_cast<std::uint8_t>(heaterPulse),
                  static_cast<std::uint8_t>(doorClosed), static_cast<std::uint8_t>(doorClosed),
                  static_cast<std::uint8_t>(fan),        static_cast<std::uint8_t>(fan)};
    f.records.push_back(d);

    if (!highAlarm && top > 880.0) Alarm(f.events, time, 1, 1, 1, 1), highAlarm = true;
    if (highAlarm && top < 875.0) Alarm(f.events, time, 1, 1, 1, 0), highAlarm = false;
    if (!waterAlarm && (overRange || water > 45.0))
      Alarm(f.events, time, 6, 1, 1, 1), waterAlarm = true;
    if (waterAlarm && !overRange && water < 44.0)
      Alarm(f.events, time, 6, 1, 1, 0), waterAlarm = false;
    if (phaseSecond == 900) Message(f.events, time, "扉閉 運転開始", 2);
    if (phaseSecond == 1800) Message(f.events, time, "昇温開始", 4);
    if (phaseSecond == 9000) Message(f.events, time, "保持開始 850℃", 5);
    if (phaseSecond == 19800) Message(f.events, time, "冷却開始", 3);
    if (phaseSecond == 1800 + 3600) {
      FlagEvent flag;
      flag.Time = time;
      flag.Text = "ロット " + std::to_string(101 + cycle) + " 昇温確認";
      flag.Shown = -1;
      flag.Position = static_cast<std::int16_t>(3 + cycle % 5);
      f.flags.push_back(flag);
    }
  }
  // The operator chose to show the first alarm and the first message.
  if (!f.events.Alarms.empty()) f.events.Alarms[0].Shown = -1;
  if (!f.events.Messages.empty()) f.events.Messages[0].Shown = -1;
  return f;
}

bool WriteFamily(const std::string &folder, int format, int records) {
  std::filesystem::create_directories(folder);
  const RecordFileInfo info = FurnaceInfo("SHEAT01.FDT");
  const std::int32_t start = static_cast<std::int32_t>(FromCivil({2024, 3, 4, 8, 0, 0}));
  Furnace f = Simulate(start, records);
  f.events.FileNameText = "AHEAT01.FDT";
  f.events.ModelText = info.ModelText;
  f.events.SerialText = info.SerialText;
  f.events.VersionText = info.VersionText;
  const bool binary = format == 2;
  return WriteRecordFile(folder + "/SHEAT01.FDT", info, format, f.records) &&
         WriteAlarmFile(folder + "/AHEAT01.FDT", f.events, binary) &&
         WriteFlagFile(folder + "/FHEAT01.FDT", info, f.events, f.flags);
}

}  // namespace
}  // namespace recscope

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_sample OUTDIR\n");
    return 1;
  }
  const std::string folder = argv[1];
  const int threeDays = 3 * 86400 / recscope::kPeriod;
  const int halfDay = 12 * 3600 / recscope::kPeriod;
  if (!recscope::WriteFamily(folder, 2, threeDays) ||
      !recscope::WriteFamily(folder + "/text", 1, halfDay)) {
    std::fprintf(stderr, "make_sample: cannot write into %s\n", folder.c_str());
    return 3;
  }
  return 0;
}
