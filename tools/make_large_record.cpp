// Writes the large records of the benchmarks: 72 analog channels at a 1-second
// period, in the binary encoding (SBIG.FDT) and the text encoding with digital
// inputs (STXT.FDT). Records are made and written a block at a time, so any
// count fits in little memory. The files are for measuring only and are never
// kept in the repository.
//
//   make_large_record FOLDER [--records N] [--format 2|1|both]
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

bool WriteLarge(const std::string &path, RecordFileInfo info, int format, std::int64_t records) {
  info.FileNameText = path.substr(path.find_last_of('/') + 1);
  recscope::RecordWriter writer(info, format);
  std::FILE *out = std::fopen(path.c_str(), "wb");
  if (!out) return false;
  std::string block = writer.HeaderBytes();
  const std::int32_t start = static_cast<std::int32_t>(recscope::FromCivil({2024, 1, 1, 0, 0, 0}));
  std::vector<std::int16_t> units(72);
  std::vector<std::uint8_t> dis;
  bool ok = true;
  for (std::int64_t r = 0; r < records && ok; ++r) {
    for (int c = 0; c < 72; ++c) {
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
    std::fprintf(stderr, "usage: make_large_record FOLDER [--records N] [--format 2|1|both]\n");
    return 1;
  }
  const std::string folder = argv[1];
  std::int64_t records = 7000000;
  std::string format = "both";
  for (int i = 2; i + 1 < argc; i += 2) {
    const std::string option = argv[i];
    if (option == "--records")
      records = std::atoll(argv[i + 1]);
    else if (option == "--format")
      format = argv[i + 1];
  }
  RecordFileInfo info = LargeRecordInfo();
  if (format == "2" || format == "both") {
    if (!WriteLarge(folder + "/SBIG.FDT", info, 2, records)) return 3;
    std::printf("%s/SBIG.FDT\n", folder.c_str());
  }
  if (format == "1" || format == "both") {
    if (!WriteLarge(folder + "/STXT.FDT", info, 1, records)) return 3;
    std::printf("%s/STXT.FDT\n", folder.c_str());
  }
  return 0;
}
