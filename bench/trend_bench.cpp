// Redraw cost of the trend: ReduceDisplayData and TrendDraw into a 1920 x 1080
// image, for a 10-channel group and the 72-channel tab, on the whole file and on
// a zoomed span, for a record of 30,000,000 samples and one of 3,000; and the
// heaviest picture there is: a record of 30,000,000 samples of noise over the
// whole scale, where every column of every channel is a full-height envelope.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QGuiApplication>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "shell/shared_state.h"
#include "trend/render_request.h"
#include "trend/wave_render.h"

namespace recscope {
namespace {

constexpr int kChannels = 72;

QGuiApplication &App() {
  static int argc = 1;
  static char name[] = "trend_bench";
  static char *argv[] = {name, nullptr};
  static QGuiApplication app(argc, argv);
  return app;
}

// Level files of a record whose channel c is a few slow waves across the whole
// record, so that a picture of the whole file looks alike at any record length.
// A row holds the minimum and maximum of its records (sampled at its first, middle
// and last record). Levels below `firstReal` are left sparse (zeros): none of the
// views measured here reads them.
double Signal(double t, double records, int c) {
  return 500 + 400 * std::sin(2 * M_PI * (c % 5 + 2) * t / records + c);
}

// Noise: every record an independent value spread evenly over 0 to 1000, the
// scale's ends. A row of level k holds the minimum and maximum of 10^(k-1) such
// records, drawn straight from their distributions: the minimum of n even values
// on [0, 1] is 1 - u^(1/n) for an even u, the maximum u^(1/n).
struct NoiseRows {
  std::mt19937_64 engine{20240101};
  std::uniform_real_distribution<double> even{0.0, 1.0};
  std::int16_t Min(double n) {
    return static_cast<std::int16_t>(std::floor(1001 * (1 - std::pow(even(engine), 1 / n))));
  }
  std::int16_t Max(double n) {
    return static_cast<std::int16_t>(
        std::min(1000.0, std::floor(1001 * std::pow(even(engine), 1 / n))));
  }
};

void WriteLevels(const RecordFileInfo &info, const std::string &folder, int slot, int firstReal,
                 bool noise = false) {
  NoiseRows noiseRows;
  const int rowValues = 2 * kChannels;
  const double records = info.RecordCount;
  for (int k = 1; k <= info.TopLevel + 1; ++k) {
    std::string path =
        folder + "/Operation_" + std::to_string(slot) + "_" + std::to_string(k) + ".OPL";
    std::int64_t rows = info.LevelRows[k - 1];
    if (k < firstReal) {
      std::ofstream(path, std::ios::binary).close();
      std::filesystem::resize_file(path, static_cast<std::uintmax_t>(rows) * rowValues * 2);
      continue;
    }
    std::ofstream out(path, std::ios::binary);
    std::int64_t per = static_cast<std::int64_t>(std::pow(10.0, k - 1));
    std::vector<std::int16_t> row(rowValues);
    for (std::int64_t r = 0; r < rows; ++r) {
      if (noise) {
        double n = static_cast<double>(std::min<std::int64_t>(per, info.RecordCount - r * per));
        for (int c = 0; c < kChannels; ++c) {
          std::int16_t lo = noiseRows.Min(n), hi = noiseRows.Max(n);
          row[2 * c] = std::min(lo, hi);
          row[2 * c + 1] = std::max(lo, hi);
        }
        out.write(reinterpret_cast<const char *>(row.data()), rowValues * 2);
        continue;
      }
      double t0 = static_cast<double>(r * per);
      double t1 = std::min(t0 + per - 1, records - 1);
      for (int c = 0; c < kChannels; ++c) {
        double a = Signal(t0, records, c), b = Signal((t0 + t1) / 2, records, c),
               e = Signal(t1, records, c);
        row[2 * c] = static_cast<std::int16_t>(std::min({a, b, e}));
        row[2 * c + 1] = static_cast<std::int16_t>(std::max({a, b, e}));
      }
      out.write(reinterpret_cast<const char *>(row.data()), rowValues * 2);
    }
  }
}

RecordFileInfo MakeRecord(std::int32_t records) {
  RecordFileInfo info;
  info.AnalogCount = kChannels;
  for (int c = 0; c < kChannels; ++c) {
    ChannelInfo ch;
    ch.ChannelNo = static_cast<std::int16_t>(c + 1);
    ch.Tag = "CH" + std::to_string(c + 1);
    ch.ColorNo = static_cast<std::int16_t>(c % 14 + 1);
    ch.Unit = "degC";
    ch.ScaleHigh = 1000;
    ch.DisplayHigh = 100;
    ch.Decimals = 1;
    info.Channels.push_back(ch);
  }
  info.ChannelTotal = kChannels;
  for (int p = 0; p < 10; ++p) info.Groups[0].Members[p] = static_cast<std::int16_t>(p + 1);
  info.Groups[0].GroupName = "TEN";
  info.RecordCount = records;
  info.FirstTime = 1700000000;
  info.LastTime = info.FirstTime + records - 1;
  int top = 0;
  while (records / std::pow(10.0, top) >= 6000) ++top;
  info.TopLevel = static_cast<std::int16_t>(top);
  std::int64_t rows = records;
  for (int k = 0; k <= top; ++k) {
    info.LevelRows.push_back(static_cast<std::int32_t>(rows));
    rows = (rows + 9) / 10;
  }
  return info;
}

struct Records {
  std::filesystem::path folder;
  SharedState state;
  Records() {
    folder = std::filesystem::temp_directory_path() /
             ("recscope_trend_bench_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    state.ProgramFolder = folder.string();
    state.Slot(1).Record = MakeRecord(30000000);
    state.Slot(2).Record = MakeRecord(3000);
    state.Slot(3).Record = MakeRecord(30000000);
    state.Slot(1).SamplePeriod = state.Slot(2).SamplePeriod = state.Slot(3).SamplePeriod = 1;
    WriteLevels(state.Slot(1).Record, folder.string(), 1, 3);
    WriteLevels(state.Slot(2).Record, folder.string(), 2, 1);
    WriteLevels(state.Slot(3).Record, folder.string(), 3, 3, true);
  }
  ~Records() { std::filesystem::remove_all(folder); }
};

Records &Data() {
  static Records records;
  return records;
}

// slot 1: 30M samples, slot 2: 3000. group 1: ten channels, 9: all 72.
// zoomed: 2,400 samples of the short record and 500,000 of the long one, both
// more samples than the plot has columns, so both pictures have a full set.
// `painter`: the channel lines all drawn by the painter, for comparison.
void BM_TrendRedraw(benchmark::State &bench, int slot, int group, bool zoomed,
                    bool painter = false) {
  App();
  SetWaveDrawPath(painter ? WaveDrawPath::Painter : WaveDrawPath::Fastest);
  Records &data = Data();
  RenderRequest request;
  request.state = &data.state;
  request.slot = slot;
  request.widthPx = 1920;
  request.heightPx = 1080;
  request.group = group;
  const RecordFileInfo &info = data.state.Slot(slot).Record;
  if (zoomed) {
    std::int32_t span = slot == 1 ? 500000 : 2400;
    request.from = info.FirstTime + (slot == 1 ? (info.LastTime - info.FirstTime) / 3 : 300);
    request.to = *request.from + span;
  }
  TrendView base;
  TrendLayout layout;
  PrepareRenderView(request, base, layout);
  for (auto _ : bench) {
    TrendView view = base;
    ReduceForLayout(request, view, layout);
    QImage image = DrawTrendWindowImage(request, view, layout);
    benchmark::DoNotOptimize(image.constBits());
  }
  SetWaveDrawPath(WaveDrawPath::Fastest);
}

// slot 3: 30M samples of noise. The whole file, and the last 500,000 samples
// (the far end, read from level 3).
//
// `painter`: the channel lines all drawn by the painter, as before they were
// written into the image (the figures to compare with).
void BM_NoiseRedraw(benchmark::State &bench, int group, bool farEnd, bool painter) {
  App();
  SetWaveDrawPath(painter ? WaveDrawPath::Painter : WaveDrawPath::Fastest);
  Records &data = Data();
  RenderRequest request;
  request.state = &data.state;
  request.slot = 3;
  request.widthPx = 1920;
  request.heightPx = 1080;
  request.group = group;
  const RecordFileInfo &info = data.state.Slot(3).Record;
  if (farEnd) {
    request.from = info.LastTime - 500000;
    request.to = info.LastTime;
  }
  TrendView base;
  TrendLayout layout;
  PrepareRenderView(request, base, layout);
  double reduceMs = 0, drawMs = 0;
  for (auto _ : bench) {
    TrendView view = base;
    auto t0 = std::chrono::steady_clock::now();
    ReduceForLayout(request, view, layout);
    auto t1 = std::chrono::steady_clock::now();
    QImage image = DrawTrendWindowImage(request, view, layout);
    auto t2 = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(image.constBits());
    reduceMs += std::chrono::duration<double, std::milli>(t1 - t0).count();
    drawMs += std::chrono::duration<double, std::milli>(t2 - t1).count();
  }
  bench.counters["reduce_ms"] = benchmark::Counter(reduceMs / bench.iterations());
  bench.counters["draw_ms"] = benchmark::Counter(drawMs / bench.iterations());
  SetWaveDrawPath(WaveDrawPath::Fastest);
}

BENCHMARK_CAPTURE(BM_NoiseRedraw, noise_10ch_whole, 1, false, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, noise_10ch_far_end, 1, true, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, noise_72ch_whole, 9, false, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, noise_72ch_far_end, 9, true, false)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, painter_noise_10ch_whole, 1, false, true)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, painter_noise_10ch_far_end, 1, true, true)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, painter_noise_72ch_whole, 9, false, true)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_NoiseRedraw, painter_noise_72ch_far_end, 9, true, true)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

BENCHMARK_CAPTURE(BM_TrendRedraw, long_10ch_whole, 1, 1, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, short_10ch_whole, 2, 1, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, long_10ch_zoomed, 1, 1, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, short_10ch_zoomed, 2, 1, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, long_72ch_whole, 1, 9, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, short_72ch_whole, 2, 9, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, long_72ch_zoomed, 1, 9, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, short_72ch_zoomed, 2, 9, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, painter_long_10ch_whole, 1, 1, false, true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, painter_long_72ch_whole, 1, 9, false, true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TrendRedraw, painter_short_72ch_zoomed, 2, 9, true, true)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace recscope

BENCHMARK_MAIN();
