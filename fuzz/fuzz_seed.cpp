// Seeds the fuzz corpus folders with record, alarm and flag files made by the
// writers: every encoding, a few shapes, and some refusals.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "record/alarm_file.h"
#include "record/flag_file.h"
#include "record/record_writer.h"

namespace recscope {
namespace {

RecordFileInfo Shape(int analog, int di, int groupCount, int recordTypeOfFirst) {
  RecordFileInfo info;
  info.FileNameText = "SSEED01.FDT";
  info.ModelText = "ZNQ";
  info.SerialText = "SNo.00000001";
  info.VersionText = "Ver.1.00";
  info.SamplingCode = 3;
  info.GroupCount = static_cast<std::int16_t>(groupCount);
  for (int i = 0; i < analog; ++i) {
    ChannelInfo c;
    c.ChannelNo = static_cast<std::int16_t>(i + 1);
    c.Tag = "CH";
    c.Unit = "V";
    c.ScaleHigh = 1000;
    c.Decimals = static_cast<std::int16_t>(i % 3);
    c.RecordType = static_cast<std::int16_t>(i == 0 ? recordTypeOfFirst : 1);
    c.ScaleKind = static_cast<std::int16_t>(i == 1 ? 1 : 0);
    c.ExponentLow = -3;
    c.ExponentHigh = 2;
    info.Channels.push_back(c);
  }
  for (int n = 1; n <= di; ++n) {
    DiInfo d;
    d.DiNo = static_cast<std::int16_t>(128 + n);
    d.Tag = "DI";
    d.RecordType = static_cast<std::int16_t>(n % 2);
    info.Dis.push_back(d);
  }
  info.Groups[0].Members[0] = analog > 0 ? 1 : 129;
  return info;
}

std::string Record(const RecordFileInfo &info, int format, int count) {
  RecordWriter writer(info, format);
  std::string bytes = writer.HeaderBytes();
  const int units = AnalogUnitCount(info);
  for (int r = 0; r < count; ++r) {
    DataRecord d;
    d.Time = 1700000000 + 5 * r;
    for (int u = 0; u < units; ++u) d.Units.push_back(static_cast<std::int16_t>(r * 31 - u * 7));
    d.DiStates.assign(2 * info.Dis.size(), static_cast<std::uint8_t>(r % 2));
    writer.AppendRecord(bytes, d);
  }
  return bytes;
}

AlarmFileInfo Events() {
  AlarmFileInfo alarms;
  alarms.FileNameText = "ASEED01.FDT";
  AlarmEvent a;
  a.Time = 1709577510;
  a.ChannelNo = 1;
  a.AlarmNo = 1;
  a.AlarmState = 1;
  alarms.Alarms = {a, a};
  MessageEvent m;
  m.Time = 1709540100;
  m.Text = "seed";
  alarms.Messages = {m};
  return alarms;
}

}  // namespace
}  // namespace recscope

int main(int argc, char **argv) {
  using namespace recscope;
  if (argc != 2) return 1;
  const std::filesystem::path root = argv[1];
  for (const char *kind : {"measurement", "alarm", "flag"})
    std::filesystem::create_directories(root / kind);
  int n = 0;
  auto put = [&](const char *kind, const std::string &bytes) {
    return WriteWholeFile((root / kind / ("seed" + std::to_string(n++))).string(), bytes);
  };
  bool ok = true;
  for (int format : {0, 1, 2}) {
    ok = ok && put("measurement", Record(Shape(2, format == 0 ? 0 : 2, 4, 0), format, 3));
    ok = ok && put("measurement", Record(Shape(3, format == 0 ? 0 : 1, 8, 1), format, 2));
    ok = ok && put("measurement", Record(Shape(1, 0, 6, 2), format, 1));
    ok = ok && put("measurement", Record(Shape(2, 0, 4, 0), format, 0));
  }
  AlarmFileInfo events = Events();
  ok = ok && put("alarm", AlarmFileBytes(events, true)) &&
       put("alarm", AlarmFileBytes(events, false));
  events.Alarms[1].Shown = -1;
  FlagEvent flag;
  flag.Time = 1709577600;
  flag.Text = "seed flag";
  ok = ok && put("flag", FlagFileBytes(Shape(1, 0, 4, 1), events, {flag}));
  ok = ok && put("flag", FlagFileBytes(Shape(1, 0, 4, 1), events, {}));
  if (!ok) std::fprintf(stderr, "fuzz_seed: cannot write into %s\n", argv[1]);
  return ok ? 0 : 1;
}
