// Writes the large records of the benchmarks: 72 analog channels at a 1-second
// period, in the binary encoding (SBIG.FDT) and the text encoding with digital
// inputs (STXT.FDT). Records are made and written a block at a time, so any
// count fits in little memory. The files are for measuring only and are never
// kept in the repository.
//
//   make_large_record FOLDER [--records N] [--format 2|1|both] [--channels N]
//                     [--noise]
//
// --channels keeps the first N channels (1 to 72); with fewer than ten, or
// exactly ten, group 1 holds them all. --noise fills every channel with values
// spread evenly over the whole scale, so that any stretch of more than a few
// records covers the full height of its zone: the heaviest picture a trend can
// draw.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "large_record_layout.h"
#include "record/record_file_info.h"
#include "record/record_writer.h"
#include "shell/civil_time.h"

namespace {

using recscope::LargeRecordInfo;
using recscope::RecordFileInfo;

// A small, fast generator (xorshift64*) for the noise records: the same file on
// every run.
struct NoiseSource {
  std::uint64_t state = 0x9E3779B97F4A7C15ULL;
  std::uint32_t Next() {
    state ^= state >> 12;
    state ^= state << 25;
    state ^= state >> 27;
    return static_cast<std::uint32_t>((state * 0x2545F4914F6CDD1DULL) >> 32);
  }
};

bool WriteLarge(const std::string &path, RecordFileInfo info, int format, std::int64_t records,
                bool noise) {
  info.FileNameText = path.substr(path.find_last_of('/') + 1);
  recscope::RecordWriter writer(info, format);
  std::FILE *out = std::fopen(path.c_str(), "wb");
  if (!out) return false;
  std::string block = writer.HeaderBytes();
  const std::int32_t start = static_cast<std::int32_t>(recscope::FromCivil({2024, 1, 1, 0, 0, 0}));
  const int channels = static_cast<int>(info.Channels.size());
  std::vector<std::int16_t> units(static_cast<size_t>(channels));
  std::vector<std::uint8_t> dis;
  NoiseSource source;
  bool ok = true;
  for (std::int64_t r = 0; r < records && ok; ++r) {
    if (noise) {
      // 0 to 10000: the scale's ends (0.0 to 1000.0 with one decimal).
      for (int c = 0; c < channels; ++c)
        units[static_cast<size_t>(c)] = static_cast<std::int16_t>(source.Next() % 10001);
      writer.AppendRecord(block, start + static_cast<std::int32_t>(r), units, dis);
      if (block.size() >= (8u << 20)) {
        ok = std::fwrite(block.data(), 1, block.size(), out) == block.size();
        block.clear();
      }
      continue;
    }
    for (int c = 0; c < channels; ++c) {
      // A slow wave per channel with a little ripple; now and then a special value.
      double v = 5000 + 4000 * std::sin((r + 977.0 * c) / (600.0 + 37 * c)) + (r * 7 + c) % 13;
      units[static_cast<size_t>(c)] = static_cast<std::int16_t>(v);
      if ((r + c) % 100003 == 0) units[static_cast<size_t>(c)] = 32767;
    }
    writer.AppendRecord(block, start + static_cast<std::int32_t>(r), units, dis);
    if (block.size() >= (8u << 20)) {
      ok = std::fwrite(block.data(), 1, block.size(), out) == block.size();
      block.clear();
    }
  }
  if (ok && !block.empty()) ok = std::fwrite(block.data(), 1, block.size(), out) == block.size();
  ok = std::fclose(out) == 0 && ok;
  if (!ok) std::remove(path.c_str());
  return ok;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) {
    std::fprintf(stderr,
                 "usage: make_large_record FOLDER [--records N] [--format 2|1|both] "
                 "[--channels N] [--noise]\n");
    return 1;
  }
  const std::string folder = argv[1];
  std::int64_t records = 7000000;
  std::string format = "both";
  int channels = 72;
  bool noise = false;
  for (int i = 2; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--noise") {
      noise = true;
      continue;
    }
    if (i + 1 >= argc) break;
    if (option == "--records")
      records = std::atoll(argv[i + 1]);
    else if (option == "--format")
      format = argv[i + 1];
    else if (option == "--channels")
      channels = std::atoi(argv[i + 1]);
    ++i;
  }
  if (channels < 1 || channels > 72) {
    std::fprintf(stderr, "--channels is 1 to 72\n");
    return 1;
  }
  RecordFileInfo info = LargeRecordInfo();
  if (channels < 72) {
    info.Channels.resize(static_cast<size_t>(channels));
    info.AnalogCount = static_cast<std::int16_t>(channels);
    info.ChannelTotal = static_cast<std::int16_t>(channels);
    for (auto &group : info.Groups) group.Members.fill(0);
    if (channels <= 10) {
      info.GroupCount = 1;
      for (int m = 0; m < channels; ++m)
        info.Groups[0].Members[static_cast<size_t>(m)] = static_cast<std::int16_t>(m + 1);
    } else {
      int groups = (channels + 8) / 9;
      info.GroupCount = static_cast<std::int16_t>(groups);
      for (int c = 0; c < channels; ++c)
        info.Groups[static_cast<size_t>(c / 9)].Members[static_cast<size_t>(c % 9)] =
            static_cast<std::int16_t>(c + 1);
    }
  }
  if (format == "2" || format == "both") {
    if (!WriteLarge(folder + "/SBIG.FDT", info, 2, records, noise)) return 3;
    std::printf("%s/SBIG.FDT\n", folder.c_str());
  }
  if (format == "1" || format == "both") {
    if (!WriteLarge(folder + "/STXT.FDT", info, 1, records, noise)) return 3;
    std::printf("%s/STXT.FDT\n", folder.c_str());
  }
  return 0;
}
