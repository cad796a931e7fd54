// Any bytes as a flag file, taken in against a small set of alarm events.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "record/flag_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  recscope::AlarmFileInfo alarms;
  recscope::AlarmEvent alarm;
  alarm.Time = 1709577510;
  alarms.Alarms = {alarm, alarm};
  recscope::MessageEvent message;
  message.Time = 1709540100;
  alarms.Messages = {message};
  std::vector<recscope::FlagEvent> flags;
  const bool taken = recscope::ApplyFlagBytes(
      std::string_view(reinterpret_cast<const char *>(data), size), alarms, flags);
  if (!taken && !flags.empty()) __builtin_trap();
  return 0;
}
