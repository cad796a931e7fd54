#pragma once
// Hand-made records for the trend tests: a RecordFileInfo and the value rows of
// its levels written into a temporary program folder.
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "record/record_file_info.h"

namespace recscope::testing_support {

// Minimum and maximum of channel c (0-based) in record r (0-based).
using RecordValues = std::function<std::pair<std::int16_t, std::int16_t>(std::int64_t r, int c)>;

inline RecordFileInfo MakeRecord(std::int32_t records, int analog, int di, std::int32_t first,
                                 std::int32_t period = 1) {
  RecordFileInfo info;
  info.AnalogCount = static_cast<std::int16_t>(analog);
  info.DiCount = static_cast<std::int16_t>(di);
  for (int c = 0; c < analog; ++c) {
    ChannelInfo ch;
    ch.ChannelNo = static_cast<std::int16_t>(c + 1);
    ch.Tag = "TAG" + std::to_string(c + 1);
    ch.ColorNo = static_cast<std::int16_t>(c % 14 + 1);
    ch.Unit = "degC";
    ch.ScaleLow = 0;
    ch.ScaleHigh = 1000;
    ch.DisplayLow = 0;
    ch.DisplayHigh = 100;
    ch.Decimals = 1;
    info.Channels.push_back(ch);
  }
  for (int d = 0; d < di; ++d) {
    DiInfo dinfo;
    dinfo.DiNo = static_cast<std::int16_t>(129 + d);
    dinfo.Tag = "DI" + std::to_string(d + 1);
    dinfo.ColorNo = 3;
    dinfo.ScaleLow = 0;
    dinfo.ScaleHigh = 1;
    info.Dis.push_back(dinfo);
  }
  info.ChannelTotal = static_cast<std::int16_t>(analog + di);
  info.GroupCount = 1;
  for (int p = 0; p < 10 && p < analog + di; ++p)
    info.Groups[0].Members[p] = p < analog ? info.Channels[p].ChannelNo : info.Dis[p - analog].DiNo;
  info.Groups[0].GroupName = "GROUP1";
  info.RecordCount = records;
  info.FirstTime = first;
  info.LastTime = first + (records - 1) * period;
  info.InUse = -1;
  info.FilePath = "/data/S0000001.FDT";
  std::int64_t top = 0;
  double power = 1;
  while (records / power >= 6000) {
    ++top;
    power *= 10;
  }
  info.TopLevel = static_cast<std::int16_t>(top);
  std::int64_t rows = records;
  for (std::int64_t k = 0; k <= top; ++k) {
    info.LevelRows.push_back(static_cast<std::int32_t>(rows));
    rows = (rows + 9) / 10;
  }
  info.OverviewStep = static_cast<std::int32_t>(power);
  return info;
}

// A fresh temporary folder, removed with the object.
struct TempFolder {
  std::filesystem::path path;
  TempFolder() {
    path = std::filesystem::temp_directory_path() /
           ("recscope_trend_" + std::to_string(::getpid()) + "_" + std::to_string(counter()++));
    std::filesystem::create_directories(path);
  }
  ~TempFolder() { std::filesystem::remove_all(path); }
  std::string str() const { return path.string(); }
  static int &counter() {
    static int n = 0;
    return n;
  }
};

inline void WriteRows(const std::string &file, const std::vector<std::int16_t> &rows) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  for (std::int16_t v : rows) {
    char bytes[2] = {static_cast<char>(v & 0xFF), static_cast<char>((v >> 8) & 0xFF)};
    out.write(bytes, 2);
  }
}

// Writes level 1 from `values` and every higher level as the fold of ten rows.
inline void WriteLevels(const RecordFileInfo &info, const std::string &folder, int slot,
                        const RecordValues &values) {
  const int n = info.ChannelTotal;
  std::vector<std::int16_t> rows(static_cast<std::size_t>(info.RecordCount) * 2 * n);
  for (std::int64_t r = 0; r < info.RecordCount; ++r)
    for (int c = 0; c < n; ++c) {
      auto [lo, hi] = values(r, c);
      rows[r * 2 * n + 2 * c] = lo;
      rows[r * 2 * n + 2 * c + 1] = hi;
    }
  for (int k = 1; k <= info.TopLevel + 1; ++k) {
    WriteRows(folder + "/Operation_" + std::to_string(slot) + "_" + std::to_string(k) + ".OPL",
              rows);
    std::size_t count = rows.size() / (2 * n);
    std::vector<std::int16_t> up(((count + 9) / 10) * 2 * n);
    for (std::size_t r = 0; r < count; ++r)
      for (int c = 0; c < n; ++c) {
        std::size_t u = (r / 10) * 2 * n;
        std::int16_t lo = rows[r * 2 * n + 2 * c];
        std::int16_t hi = rows[r * 2 * n + 2 * c + 1];
        if (r % 10 == 0) {
          up[u + 2 * c] = lo;
          up[u + 2 * c + 1] = hi;
        } else {
          up[u + 2 * c] = std::min(up[u + 2 * c], lo);
          up[u + 2 * c + 1] = std::max(up[u + 2 * c + 1], hi);
        }
      }
    rows = std::move(up);
  }
}

}  // namespace recscope::testing_support
