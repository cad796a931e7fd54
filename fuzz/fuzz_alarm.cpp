// Any bytes as an alarm file, in both encodings.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "record/alarm_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  for (bool binary : {true, false}) {
    recscope::AlarmFileInfo alarms;
    recscope::ReadAlarmBytes(bytes, binary, alarms);
    if (alarms.AlarmCount > recscope::kMaxEventsOfKind ||
        alarms.MessageCount > recscope::kMaxEventsOfKind)
      __builtin_trap();
  }
  return 0;
}
