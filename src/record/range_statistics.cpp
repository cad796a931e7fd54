#include "record/range_statistics.h"

#include <algorithm>
#include <memory>

#include "record/level_files.h"
#include "record/level_fold.h"

namespace recscope {

namespace {

// Folds rows [from, to] of one level into the running values.
bool FoldRows(const LevelFiles &files, int ct, std::int64_t from, std::int64_t to,
              std::vector<ChannelStatistics> &result) {
  if (to < from) return true;
  const size_t n = static_cast<size_t>(to - from + 1);
  std::vector<std::int16_t> values(n * 2 * ct);
  std::vector<std::int32_t> sums(n * 2 * ct);
  if (!files.ReadValueRows(from, static_cast<std::int64_t>(n), values.data()) ||
      !files.ReadSumRows(from, static_cast<std::int64_t>(n), sums.data()))
    return false;
  for (size_t r = 0; r < n; ++r) {
    for (int c = 0; c < ct; ++c) {
      const size_t at = (r * ct + c) * 2;
      ChannelStatistics &s = result[static_cast<size_t>(c)];
      s.Min = FoldLevelMin(s.Min, values[at]);
      s.Max = FoldLevelMax(s.Max, values[at + 1]);
      s.Sum += sums[at];
      s.Count += sums[at + 1];
    }
  }
  return true;
}

}  // namespace

bool GetRangeStatistics(const RecordFileInfo &info, const std::string &programFolder, int slot,
                        std::int32_t period, std::int64_t firstTime, std::int64_t lastTime,
                        std::vector<ChannelStatistics> &result) {
  const int ct = info.ChannelTotal;
  result.assign(static_cast<size_t>(std::max(ct, 0)), ChannelStatistics{});
  if (ct <= 0 || period <= 0 || info.RecordCount <= 0 || info.LevelRows.empty()) return false;
  std::int64_t i0 = (firstTime - info.FirstTime) / period;
  std::int64_t i1 = (lastTime - info.FirstTime) / period;
  // Times come snapped to the file; keep a stray one inside it.
  i0 = std::clamp<std::int64_t>(i0, 0, info.RecordCount - 1);
  i1 = std::clamp<std::int64_t>(i1, i0, info.RecordCount - 1);

  const int top = static_cast<int>(info.LevelRows.size()) - 1;
  auto files = std::make_unique<LevelFiles>(programFolder, slot, 0, ct);
  if (!files->ok()) return false;

  // The first row of level 1 gives the start of minimum and maximum.
  std::vector<std::int16_t> first(2 * static_cast<size_t>(ct));
  if (!files->ReadValueRows(i0, 1, first.data())) return false;
  for (int c = 0; c < ct; ++c) {
    result[static_cast<size_t>(c)].Min = first[2 * c];
    result[static_cast<size_t>(c)].Max = first[2 * c + 1];
  }

  for (int level = 0;; ++level) {
    if (level == top || i1 - i0 < 100) return FoldRows(*files, ct, i0, i1, result);
    if (i0 % 10 != 0) {
      const std::int64_t next = (i0 / 10 + 1) * 10;
      if (!FoldRows(*files, ct, i0, next - 1, result)) return false;
      i0 = next;
    }
    if ((i1 + 1) % 10 != 0) {
      const std::int64_t last = (i1 + 1) / 10 * 10;
      if (!FoldRows(*files, ct, last, i1, result)) return false;
      i1 = last - 1;
    }
    i0 = i0 / 10;
    i1 = (i1 - 9) / 10;
    files = std::make_unique<LevelFiles>(programFolder, slot, level + 1, ct);
    if (!files->ok()) return false;
  }
}

}  // namespace recscope
