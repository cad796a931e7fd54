// Speed of the working files on the large records made by make_large_record:
// the build against plain sequential reading and writing of the same bytes,
// the text encoding's read rate, and range statistics over random ranges.
// The record folder is $RECSCOPE_BENCH_DIR (default /tmp/recscope_bench).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "large_record_layout.h"
#include "record/range_statistics.h"
#include "record/record_writer.h"
#include "record/working_files.h"

namespace {

using namespace recscope;

std::string BenchFolder() {
  const char *dir = std::getenv("RECSCOPE_BENCH_DIR");
  return dir ? dir : "/tmp/recscope_bench";
}

std::string HomeFolder() {
  std::string home = BenchFolder() + "/home";
  std::filesystem::create_directories(home);
  return home;
}

// The in-memory record of a large file, as the open would fill it.
bool LargeInfo(int format, RecordFileInfo &info) {
  info = LargeRecordInfo();
  info.FileFormat = static_cast<std::int16_t>(format);
  info.FilePath = BenchFolder() + (format == 2 ? "/SBIG.FDT" : "/STXT.FDT");
  std::error_code ec;
  const auto length = std::filesystem::file_size(info.FilePath, ec);
  if (ec) return false;
  info.DataStart = static_cast<std::int32_t>(RecordWriter(info, format).HeaderBytes().size());
  info.RecordLength = GetRecordLength(info, format);
  info.RecordCount = static_cast<std::int32_t>(
      (static_cast<std::int64_t>(length) - info.DataStart) / info.RecordLength);
  info.FirstTime = 0;
  info.LastTime = info.RecordCount - 1;
  PlanLevels(info);
  return true;
}

std::int64_t WorkingBytes(const RecordFileInfo &info) {
  std::int64_t bytes = 0;
  for (auto rows : info.LevelRows)
    bytes += static_cast<std::int64_t>(rows) * 12 * info.ChannelTotal;
  return bytes;
}

double PeakRssMb() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024.0;
}

void ReadWhole(const std::string &path, std::vector<char> &buffer) {
  const int fd = ::open(path.c_str(), O_RDONLY);
  while (fd >= 0 && ::read(fd, buffer.data(), buffer.size()) > 0) {
  }
  if (fd >= 0) ::close(fd);
}

// Reading the record file from the page cache with large reads.
void BM_ReadBaseline(benchmark::State &state) {
  RecordFileInfo info;
  if (!LargeInfo(static_cast<int>(state.range(0)), info)) return state.SkipWithError("no file");
  std::vector<char> buffer(4 << 20);
  ReadWhole(info.FilePath, buffer);  // into the page cache
  for (auto _ : state) ReadWhole(info.FilePath, buffer);
  state.SetBytesProcessed(state.iterations() * std::filesystem::file_size(info.FilePath));
}

// Writing as many bytes as the working files take, sequentially with large writes.
void BM_WriteBaseline(benchmark::State &state) {
  RecordFileInfo info;
  if (!LargeInfo(static_cast<int>(state.range(0)), info)) return state.SkipWithError("no file");
  const std::int64_t total = WorkingBytes(info);
  const std::string path = HomeFolder() + "/baseline.bin";
  std::vector<char> buffer(1 << 20, 'x');
  for (auto _ : state) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    for (std::int64_t left = total; left > 0;) {
      const auto n = static_cast<size_t>(std::min<std::int64_t>(left, buffer.size()));
      if (::write(fd, buffer.data(), n) != static_cast<ssize_t>(n)) break;
      left -= static_cast<std::int64_t>(n);
    }
    ::close(fd);
    state.PauseTiming();
    std::filesystem::remove(path);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * total);
}

// The whole build of the working files.
void BM_BuildWorkingFiles(benchmark::State &state) {
  RecordFileInfo info;
  if (!LargeInfo(static_cast<int>(state.range(0)), info)) return state.SkipWithError("no file");
  const std::string home = HomeFolder();
  std::vector<char> buffer(4 << 20);
  ReadWhole(info.FilePath, buffer);
  for (auto _ : state) {
    if (BuildWorkingFiles(info, home, 1) != -1) return state.SkipWithError("build failed");
    state.PauseTiming();
    DeleteWorkingFiles(info, home, 1);
    state.ResumeTiming();
  }
  const auto inputBytes = static_cast<std::int64_t>(info.RecordLength) * info.RecordCount;
  state.SetBytesProcessed(state.iterations() * inputBytes);
  state.counters["records"] = info.RecordCount;
  state.counters["working_MB"] = static_cast<double>(WorkingBytes(info)) / 1e6;
  state.counters["peak_rss_MB"] = PeakRssMb();
}

// Range statistics over random ranges of the binary record: median and worst call.
void BM_RangeStatistics(benchmark::State &state) {
  RecordFileInfo info;
  if (!LargeInfo(2, info)) return state.SkipWithError("no file");
  const std::string home = HomeFolder();
  if (BuildWorkingFiles(info, home, 1) != -1) return state.SkipWithError("build failed");
  std::mt19937 rng(1);
  std::uniform_int_distribution<std::int32_t> row(0, info.RecordCount - 1);
  std::vector<ChannelStatistics> result;
  std::vector<double> micros;
  for (auto _ : state) {
    std::int32_t a = row(rng), b = row(rng);
    if (a > b) std::swap(a, b);
    const auto t0 = std::chrono::steady_clock::now();
    GetRangeStatistics(info, home, 1, 1, a, b, result);
    const auto t1 = std::chrono::steady_clock::now();
    micros.push_back(std::chrono::duration<double, std::micro>(t1 - t0).count());
    benchmark::DoNotOptimize(result.data());
  }
  DeleteWorkingFiles(info, home, 1);
  std::sort(micros.begin(), micros.end());
  state.counters["median_us"] = micros[micros.size() / 2];
  state.counters["p99_us"] = micros[micros.size() * 99 / 100];
  state.counters["max_us"] = micros.back();
}

BENCHMARK(BM_ReadBaseline)
    ->Arg(2)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();
BENCHMARK(BM_WriteBaseline)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(BM_BuildWorkingFiles)
    ->Arg(2)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();
BENCHMARK(BM_RangeStatistics)->Unit(benchmark::kMicrosecond)->Iterations(2000);

}  // namespace

BENCHMARK_MAIN();
