#include "record/record_file_info.h"

namespace recscope {

int OpenResultMessageId(int result) {
  if (result < 0 || result > 6) return 11190;
  return 11190 + result;
}

std::int32_t SamplePeriodOfCode(int samplingCode, std::int32_t previous) {
  static constexpr std::int32_t kPeriods[21] = {1,    2,    3,     5,     10,    20,    30,
                                                60,   120,  180,   300,   600,   1200,  1800,
                                                3600, 7200, 10800, 14400, 21600, 43200, 86400};
  if (samplingCode < 0 || samplingCode > 20) return previous;
  return kPeriods[samplingCode];
}

}  // namespace recscope
