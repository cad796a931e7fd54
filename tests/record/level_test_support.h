#pragma once
// Record files for the level tests, composed byte by byte here: a header region
// of zeros and data records in the binary or the text encoding, with the
// expected level rows computed plainly from the same numbers.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "record/record_file_info.h"
#include "record/working_files.h"

namespace recscope::testing {

struct Channel {
  int recordType = 1;  // 0: two units a record
  int decimals = 1;
};
struct Di {
  int no = 1;
  int recordType = 1;
};

struct Sample {
  std::int32_t time = 0;
  std::vector<std::int16_t> units;  // analog units in table order
  std::vector<int> diStates;        // two a DI
};

inline std::string TempFolder(const std::string &name) {
  auto dir = std::filesystem::temp_directory_path() /
             ("recscope_" + name + "_" + std::to_string(::getpid()));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir.string();
}

inline int UnitCount(const std::vector<Channel> &chs) {
  int n = 0;
  for (auto &c : chs) n += c.recordType == 0 ? 2 : 1;
  return n;
}

// Random samples; specials appear now and then when asked.
inline std::vector<Sample> RandomSamples(const std::vector<Channel> &chs,
                                         const std::vector<Di> &dis, int count, unsigned seed,
                                         bool specials, bool noDataMark = true) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<int> value(-9999, 9999);
  std::uniform_int_distribution<int> pick(0, 199);
  std::vector<Sample> out;
  const int units = UnitCount(chs);
  for (int i = 0; i < count; ++i) {
    Sample s;
    s.time = 1700000000 + 10 * i;
    for (int u = 0; u < units; ++u) {
      int v = value(rng);
      if (specials) {
        int p = pick(rng);
        if (p == 0) v = 32767;
        if (p == 1) v = -32767;
        if (p == 2 && noDataMark) v = -32768;
      }
      s.units.push_back(static_cast<std::int16_t>(v));
    }
    for (size_t d = 0; d < dis.size(); ++d) {
      s.diStates.push_back(pick(rng) % 2);
      s.diStates.push_back(pick(rng) % 2);
    }
    out.push_back(s);
  }
  return out;
}

inline std::string Field7(std::int32_t raw, int decimals) {
  std::string digits = std::to_string(raw < 0 ? -static_cast<std::int64_t>(raw) : raw);
  std::string text;
  if (decimals > 0) {
    while (digits.size() < static_cast<size_t>(decimals) + 1) digits.insert(0, "0");
    text =
        digits.substr(0, digits.size() - decimals) + "." + digits.substr(digits.size() - decimals);
  } else {
    text = digits;
  }
  if (raw < 0) text.insert(0, "-");
  while (text.size() < 7) text.insert(0, " ");
  return text;
}

// Writes the file and fills the fields of `info` that the build reads.
inline RecordFileInfo WriteRecord(const std::string &path, const std::vector<Channel> &chs,
                                  const std::vector<Di> &dis, const std::vector<Sample> &samples,
                                  int format, int dataStart = 300) {
  RecordFileInfo info;
  info.FilePath = path;
  info.FileFormat = static_cast<std::int16_t>(format);
  info.AnalogCount = static_cast<std::int16_t>(chs.size());
  info.DiCount = static_cast<std::int16_t>(dis.size());
  info.ChannelTotal = static_cast<std::int16_t>(chs.size() + dis.size());
  info.SamplingCode = 4;
  for (size_t i = 0; i < chs.size(); ++i) {
    ChannelInfo c;
    c.ChannelNo = static_cast<std::int16_t>(i + 1);
    c.RecordType = static_cast<std::int16_t>(chs[i].recordType);
    c.Decimals = static_cast<std::int16_t>(chs[i].decimals);
    info.Channels.push_back(c);
  }
  int diUnits = 0;
  for (auto &d : dis) {
    DiInfo di;
    di.DiNo = static_cast<std::int16_t>(128 + d.no);
    di.RecordType = static_cast<std::int16_t>(d.recordType);
    info.Dis.push_back(di);
    diUnits += d.recordType == 0 ? 2 : 1;
  }
  const int units = UnitCount(chs);
  info.RecordLength =
      format == 2 ? 4 + 2 * units + (dis.empty() ? 0 : 2) : 21 + 8 * (units + diUnits);
  info.DataStart = dataStart;
  std::string bytes(static_cast<size_t>(dataStart), '\0');
  for (const auto &s : samples) {
    if (format == 2) {
      bytes.append(reinterpret_cast<const char *>(&s.time), 4);
      for (auto u : s.units) bytes.append(reinterpret_cast<const char *>(&u), 2);
      if (!dis.empty()) {
        std::uint16_t word = 0;
        for (size_t d = 0; d < dis.size(); ++d) {
          const int n = dis[d].no;
          if (s.diStates[2 * d]) word |= static_cast<std::uint16_t>(1u << (2 * n - 2));
          if (s.diStates[2 * d + 1]) word |= static_cast<std::uint16_t>(1u << (2 * n - 1));
        }
        bytes.append(reinterpret_cast<const char *>(&word), 2);
      }
    } else {
      bytes += "2023/11/14 22:13:20";
      size_t u = 0;
      for (auto &c : chs) {
        for (int k = 0; k < (c.recordType == 0 ? 2 : 1); ++k)
          bytes += "," + Field7(s.units[u++], c.decimals);
      }
      for (size_t d = 0; d < dis.size(); ++d) {
        bytes += "," + Field7(s.diStates[2 * d], 0);
        if (dis[d].recordType == 0) bytes += "," + Field7(s.diStates[2 * d + 1], 0);
      }
      bytes += "\r\n";
    }
  }
  std::ofstream(path, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  info.FileLength = static_cast<std::int32_t>(bytes.size());
  info.RecordCount = static_cast<std::int32_t>(samples.size());
  info.LastRecord = info.RecordCount;
  if (!samples.empty()) {
    info.FirstTime = samples.front().time;
    info.LastTime = samples.back().time;
  }
  PlanLevels(info);
  return info;
}

// Expected rows of every level, computed from the samples the plain way.
struct ExpectedLevel {
  std::vector<std::int16_t> values;
  std::vector<std::int32_t> sums;
};

inline bool Special(int v) { return v == 32767 || v == -32767 || v == -32768; }

inline std::vector<ExpectedLevel> ExpectedLevels(const std::vector<Channel> &chs,
                                                 const std::vector<Di> &dis,
                                                 const std::vector<Sample> &samples, int levels) {
  std::vector<ExpectedLevel> out(static_cast<size_t>(levels));
  const size_t ct = chs.size() + dis.size();
  for (const auto &s : samples) {
    size_t u = 0;
    for (auto &c : chs) {
      const int lo = s.units[u];
      const int hi = c.recordType == 0 ? s.units[u + 1] : lo;
      int sum = 0, count = 0;
      for (int v : c.recordType == 0 ? std::vector<int>{lo, hi} : std::vector<int>{lo})
        if (!Special(v)) sum += v, ++count;
      u += c.recordType == 0 ? 2 : 1;
      out[0].values.push_back(static_cast<std::int16_t>(lo));
      out[0].values.push_back(static_cast<std::int16_t>(hi));
      out[0].sums.push_back(sum);
      out[0].sums.push_back(count);
    }
    for (size_t d = 0; d < dis.size(); ++d) {
      const int first = s.diStates[2 * d];
      const int second = dis[d].recordType == 0 ? s.diStates[2 * d + 1] : first;
      out[0].values.push_back(static_cast<std::int16_t>(first));
      out[0].values.push_back(static_cast<std::int16_t>(second));
      out[0].sums.push_back(0);
      out[0].sums.push_back(0);
    }
  }
  for (int k = 1; k < levels; ++k) {
    const auto &below = out[static_cast<size_t>(k - 1)];
    const size_t rows = below.values.size() / (2 * ct);
    for (size_t g = 0; g < rows; g += 10) {
      for (size_t c = 0; c < ct; ++c) {
        int lo = below.values[(g * ct + c) * 2];
        int hi = below.values[(g * ct + c) * 2 + 1];
        long long sum = 0, count = 0;
        for (size_t r = g; r < std::min(rows, g + 10); ++r) {
          const int rlo = below.values[(r * ct + c) * 2];
          const int rhi = below.values[(r * ct + c) * 2 + 1];
          if (r > g) {
            if (rlo != -32768 && rlo < lo) lo = rlo;
            hi = (hi == -32768 || rhi == -32768) ? -32768 : std::max(hi, rhi);
          }
          sum += below.sums[(r * ct + c) * 2];
          count += below.sums[(r * ct + c) * 2 + 1];
        }
        out[static_cast<size_t>(k)].values.push_back(static_cast<std::int16_t>(lo));
        out[static_cast<size_t>(k)].values.push_back(static_cast<std::int16_t>(hi));
        out[static_cast<size_t>(k)].sums.push_back(static_cast<std::int32_t>(sum));
        out[static_cast<size_t>(k)].sums.push_back(static_cast<std::int32_t>(count));
      }
    }
  }
  return out;
}

template <typename T>
std::vector<T> ReadFileAs(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<T> out(bytes.size() / sizeof(T));
  std::memcpy(out.data(), bytes.data(), out.size() * sizeof(T));
  return out;
}

}  // namespace recscope::testing
