// Writes the demo totalize file of the sample furnace: hourly totals over the
// three days of the sample record (N2 used, heater energy, cooling water, the
// furnace's cycles and the running hours of heater and vacuum pump) in two
// groups. Deterministic: the same bytes on every run.
// Usage: make_totalize_sample OUTDIR  (writes OUTDIR/THEAT01.FDT, binary, and
// its text-encoded twin OUTDIR/text/THEAT01.FDT)
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "shell/civil_time.h"
#include "totalize/totalize_writer.h"

namespace recscope {
namespace {

constexpr int kHours = 72;
constexpr int kCycleHours = 8;  // load, heat, soak, cool

TotalizeChannelContent Channel(int no, const char *tag, int action, const char *unit,
                               std::int16_t scale, int decimals) {
  TotalizeChannelContent c;
  c.ChannelNo = no;
  c.Tag = tag;
  c.Setting1 = 1;
  c.ActionType = action;
  c.Unit = unit;
  c.Scale = scale;
  c.Decimals = decimals;
  return c;
}

TotalizeFileContent FurnaceTotals() {
  TotalizeFileContent content;
  content.HeaderText1 = "THEAT01.FDT";
  content.HeaderText2 = "HEAT TREATMENT FURNACE 1";
  content.HeaderText3 = "SNo.20240304";
  content.VersionText = "VER.0220";
  content.GroupCount = 4;
  content.Channels = {
      Channel(1, "N2積算", 0, "m3", 1000, 2),  Channel(2, "電力量", 0, "kWh", 5000, 1),
      Channel(3, "冷却水量", 0, "m3", 500, 1), Channel(4, "ｻｲｸﾙ数", 1, "回", 1, 0),
      Channel(5, "ﾋｰﾀ運転", 2, "h", 100, 2),   Channel(6, "VP運転", 2, "h", 100, 2),
  };
  TotalizeGroupContent furnace;
  furnace.GroupName = "炉体";
  furnace.Members = {1, 2, 3, 0, 0, 0, 0, 0, 0, 0};
  TotalizeGroupContent equipment;
  equipment.GroupName = "設備稼働";
  equipment.Members = {4, 5, 6, 0, 0, 0, 0, 0, 0, 0};
  content.Groups = {furnace, equipment};
  return content;
}

// One hour's totals by the hour of the furnace's eight-hour cycle.
std::vector<TotalizeRecordContent> HourlyTotals() {
  std::vector<TotalizeRecordContent> records;
  const auto start = static_cast<std::int32_t>(FromCivil({2024, 3, 4, 8, 0, 0}));
  for (int h = 0; h < kHours; ++h) {
    const int phase = h % kCycleHours;
    const bool heating = phase >= 1 && phase <= 4;
    const bool cooling = phase >= 5;
    TotalizeRecordContent r;
    r.StartTime = start + h * 3600;
    r.EndTime = r.StartTime + 3600;
    r.Values = {
        (cooling ? 4200 : 1800) + (h * 37) % 250,               // N2 m3, 2 decimals
        heating ? 3650 + (h * 53) % 400 : 420 + (h * 29) % 90,  // kWh, 1 decimal
        (cooling ? 185 : 62) + (h * 17) % 25,                   // m3, 1 decimal
        phase == 0 ? 1 : 0,                                     // cycles begun
        heating ? 100 : (phase == 5 ? 25 : 0),                  // heater hours, 2 decimals
        phase == 0 ? 50 : 100,                                  // vacuum pump hours, 2 decimals
    };
    records.push_back(r);
  }
  return records;
}

}  // namespace
}  // namespace recscope

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_totalize_sample OUTDIR\n");
    return 1;
  }
  const std::string folder = argv[1];
  std::filesystem::create_directories(folder + "/text");
  const recscope::TotalizeFileContent content = recscope::FurnaceTotals();
  const auto records = recscope::HourlyTotals();
  const bool ok =
      recscope::WriteTotalizeFile(folder + "/THEAT01.FDT", content, true, records) &&
      recscope::WriteTotalizeFile(folder + "/text/THEAT01.FDT", content, false, records);
  if (!ok) std::fprintf(stderr, "make_totalize_sample: the files could not be written\n");
  return ok ? 0 : 1;
}
