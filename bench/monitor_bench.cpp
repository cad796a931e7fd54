// The trend of slot 17 on each tick of Timer2 (every 100 ms while the monitor
// runs): the ring of 1800 samples reduced to the plot's columns, and the
// picture of all 35 channels drawn at 1920 x 1080, both with noise over the
// whole scale on every channel so that every column is a full envelope. Beside
// them, the route the ring replaced: the record being written read back into
// the slot, working files and all, which costs more the longer the monitor runs.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QGuiApplication>
#include <filesystem>
#include <random>

#include "link/monitor_trend.h"
#include "record/open_record.h"
#include "record/record_writer.h"
#include "shell/shared_state.h"
#include "trend/trend_draw.h"
#include "trend/trend_layout.h"

namespace recscope {
namespace {

constexpr std::int32_t kFirstTime = 1700000000;

QGuiApplication &App() {
  static int argc = 1;
  static char name[] = "monitor_bench";
  static char *argv[] = {name, nullptr};
  static QGuiApplication app(argc, argv);
  return app;
}

RecordFileInfo MonitorRecord() {
  RecordFileInfo info;
  info.ModelText = "KTX-30 BENCH";
  info.SamplingCode = 1;
  for (int c = 0; c < kMonitorChannels; ++c) {
    ChannelInfo ch;
    ch.ChannelNo = static_cast<std::int16_t>(c + 1);
    ch.ChannelLabel = "CH" + std::to_string(c + 1);
    ch.Tag = "TAG" + std::to_string(c + 1);
    ch.ColorNo = static_cast<std::int16_t>(c % 14 + 1);
    ch.InputType = 1;
    ch.RecordType = 1;
    ch.Unit = "degC";
    ch.Decimals = 1;
    ch.ScaleLow = 0;
    ch.ScaleHigh = 1000;
    ch.DisplayLow = 0;
    ch.DisplayHigh = 100;
    ch.RecordedLow = 0;
    ch.RecordedHigh = 100;
    info.Channels.push_back(ch);
  }
  for (int d = 0; d < kMonitorDis; ++d) {
    DiInfo di;
    di.DiNo = static_cast<std::int16_t>(129 + d);
    di.ColorNo = static_cast<std::int16_t>(d + 1);
    di.RecordType = 1;
    di.ScaleHigh = 1;
    info.Dis.push_back(di);
  }
  info.AnalogCount = kMonitorChannels;
  info.DiCount = kMonitorDis;
  // The monitor's four groups: ten channels each, then the inputs.
  info.GroupCount = 4;
  for (int g = 0; g < 4; ++g) {
    info.Groups[static_cast<std::size_t>(g)].GroupName = "GROUP " + std::to_string(g + 1);
    for (int p = 0; p < 10; ++p)
      info.Groups[static_cast<std::size_t>(g)].Members[static_cast<std::size_t>(p)] =
          static_cast<std::int16_t>(g < 3 ? 10 * g + p + 1 : (p < kMonitorDis ? 129 + p : 0));
  }
  return info;
}

MonitorSample Noise(std::mt19937 &random, std::int32_t time) {
  std::uniform_int_distribution<int> scale(0, 1000);
  MonitorSample s;
  s.Time = time;
  for (auto &v : s.Raw) v = static_cast<std::int16_t>(scale(random));
  for (auto &d : s.Inputs) d = static_cast<std::uint8_t>(scale(random) & 1);
  return s;
}

// A ring that has gone round: 1805 polls, the newest 1800 held.
MonitorRing FullNoisyRing(const RecordFileInfo &info) {
  std::mt19937 random(17);
  MonitorRing ring;
  for (int k = 0; k < 1805; ++k) {
    ring.Advance();
    ring.Store(Noise(random, kFirstTime + k), info.Channels);
  }
  return ring;
}

void BM_RingFill(benchmark::State &bench, int columns) {
  const RecordFileInfo info = MonitorRecord();
  const MonitorRing ring = FullNoisyRing(info);
  TrendView view;
  InitTrendView(view, info, 1);
  for (auto _ : bench) {
    MonitorTrendFill(view, ring, info, columns * view.ColumnPitch);
    benchmark::DoNotOptimize(view.DispData.data());
  }
}
BENCHMARK_CAPTURE(BM_RingFill, one_sample_a_column_1920, 1920)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_RingFill, three_samples_a_column_600, 600)->Unit(benchmark::kMicrosecond);

// Fill and picture together: what one tick costs the trend of slot 17.
void BM_RingTick(benchmark::State &bench) {
  App();
  const RecordFileInfo info = MonitorRecord();
  const MonitorRing ring = FullNoisyRing(info);
  TrendView view;
  InitTrendView(view, info, 1);
  view.RealTime = 1;
  view.CurrentGroup = kAllChannelsGroup;
  const TrendLayout layout = LayoutTrend(1920 * 15, 1080 * 15, 1, true);
  static const AlarmFileInfo kNoAlarms;
  static const std::vector<FlagEvent> kNoFlags;
  TrendScene scene;
  scene.info = &info;
  scene.alarms = &kNoAlarms;
  scene.flags = &kNoFlags;
  scene.view = &view;
  scene.layout = layout;
  for (auto _ : bench) {
    MonitorTrendFill(view, ring, info, layout.TimeExtent());
    QImage image = DrawTrendImage(scene);
    benchmark::DoNotOptimize(image.constBits());
  }
}
BENCHMARK(BM_RingTick)->Unit(benchmark::kMillisecond)->UseRealTime();

// The replaced route: the monitor's record of `samples` samples (10 a second:
// 36,000 is an hour of monitoring) read back into slot 17 with its working files.
void BM_RecordReadBack(benchmark::State &bench, int samples) {
  const RecordFileInfo info = MonitorRecord();
  const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                       ("recscope_monitor_bench_" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::string path = (folder / "S100000.FDT").string();
  const std::string alarms = (folder / "A100000.FDT").string();
  std::mt19937 random(5);
  std::vector<DataRecord> records;
  for (int k = 0; k < samples; ++k) {
    const MonitorSample s = Noise(random, kFirstTime + k / 10);
    DataRecord r;
    r.Time = s.Time;
    r.Units.assign(s.Raw.begin(), s.Raw.end());
    r.DiStates.assign(s.Inputs.begin(), s.Inputs.end());
    records.push_back(std::move(r));
  }
  if (!WriteRecordFile(path, info, 2, records)) bench.SkipWithError("record not written");
  SharedState state;
  state.ProgramFolder = folder.string();
  for (auto _ : bench) {
    const int id = ReadRecordIntoSlot(state, path, kLinkSlot);
    if (id != 0) bench.SkipWithError(("record not read: " + std::to_string(id)).c_str());
  }
  std::filesystem::remove_all(folder);
}
BENCHMARK_CAPTURE(BM_RecordReadBack, one_hour_36000, 36000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_RecordReadBack, ten_hours_360000, 360000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace recscope

BENCHMARK_MAIN();
