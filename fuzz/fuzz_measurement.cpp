// Any bytes as a measurement file: the reader must refuse or accept, never
// read outside the bytes or crash.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "record/record_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  recscope::RecordFileInfo info;
  std::int32_t period = 0;
  const int result = recscope::ReadRecordBytes(
      std::string_view(reinterpret_cast<const char *>(data), size), info, period);
  if (result < -1 || result > 6) __builtin_trap();
  return 0;
}
