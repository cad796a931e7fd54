// Speed of the instant value list on the large binary record made by
// make_large_record: a page fill (1202 records read from the record file and
// formatted) at the top, the middle and the end, a jump of the cursor to
// another page, and a cursor move inside the page, which reads nothing.
// The record folder is $RECSCOPE_BENCH_DIR (default /tmp/recscope_bench).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>

#include "record/record_reader.h"
#include "views/instant_values.h"

namespace {

using namespace recscope;

std::string RecordPath() {
  const char *dir = std::getenv("RECSCOPE_BENCH_DIR");
  return std::string(dir ? dir : "/tmp/recscope_bench") + "/SBIG.FDT";
}

// The record's tables as the open reads them from the file itself.
bool OpenInfo(RecordFileInfo &info) {
  FileSource source(RecordPath());
  if (!source.IsOpen()) return false;
  info = RecordFileInfo();
  info.FilePath = RecordPath();
  info.FileFormat = static_cast<std::int16_t>(DetectFileFormat(source));
  info.FileLength = static_cast<std::int32_t>(source.Length());
  std::int32_t period = 1;
  return ReadRecordTables(source, info, period) == -1;
}

// One page fill at a place of the file: 0 top, 1 middle, 2 end; on group 1
// (9 channels) or group 9 (all 72).
void BM_InstantPageFill(benchmark::State &state) {
  RecordFileInfo info;
  if (!OpenInfo(info)) return state.SkipWithError("no record: run make_large_record");
  InstantValues values(info, ".", 1);
  values.SetGroup(static_cast<int>(state.range(1)));
  const std::int64_t place = state.range(0);
  const std::int64_t index = place == 0   ? 0
                             : place == 1 ? info.RecordCount / 2
                                          : info.RecordCount - 1;
  values.FollowCursor(index);
  for (auto _ : state) {
    if (!values.FillCells()) return state.SkipWithError("read failed");
    benchmark::DoNotOptimize(values.grid().Cells.data());
  }
  state.counters["rows"] = static_cast<double>(values.grid().Cells.size());
  state.counters["records"] = info.RecordCount;
}
BENCHMARK(BM_InstantPageFill)
    ->ArgsProduct({{0, 1, 2}, {1, 9}})
    ->ArgNames({"place", "group"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The trend's cursor jumps to a random record outside the page: the page is
// moved around it, read and formatted.
void BM_InstantCursorJump(benchmark::State &state) {
  RecordFileInfo info;
  if (!OpenInfo(info)) return state.SkipWithError("no record: run make_large_record");
  InstantValues values(info, ".", 1);
  values.SetGroup(static_cast<int>(state.range(0)));
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> pick(0, info.RecordCount - 1);
  for (auto _ : state) {
    std::int64_t index = pick(random);
    while (index + 1 >= values.page().PageFirst && index + 1 <= values.page().PageLast)
      index = pick(random);
    values.FollowCursor(index);
    if (!values.lastFillRead()) return state.SkipWithError("read failed");
  }
  state.counters["reads"] = values.readCount();
}
BENCHMARK(BM_InstantCursorJump)
    ->Arg(1)
    ->Arg(9)
    ->ArgName("group")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The cursor moves inside the page: only the selection moves, no read.
void BM_InstantSelectionMove(benchmark::State &state) {
  RecordFileInfo info;
  if (!OpenInfo(info)) return state.SkipWithError("no record: run make_large_record");
  InstantValues values(info, ".", 1);
  values.SetGroup(9);
  values.FollowCursor(info.RecordCount / 2);
  const int readsBefore = values.readCount();
  const std::int64_t first = values.page().PageFirst - 1;
  std::int64_t step = 0;
  for (auto _ : state) {
    values.FollowCursor(first + (step++ % kInstantPageRecords));
    benchmark::DoNotOptimize(values.row());
  }
  state.counters["reads"] = values.readCount() - readsBefore;
}
BENCHMARK(BM_InstantSelectionMove)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
