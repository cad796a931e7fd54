#include "record/record_fields.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "platform/text_encoding.h"
#include "shell/rounding.h"

namespace recscope {

std::string Utf8ToCp932Cut(std::string_view utf8, std::size_t width) {
  std::string bytes = Utf8ToCp932(LeftCp932Bytes(utf8, width));
  if (bytes.size() > width) bytes.resize(width);
  return bytes;
}

std::string FixedCp932(std::string_view utf8, std::size_t width) {
  std::string bytes = Utf8ToCp932Cut(utf8, width);
  bytes.append(width - bytes.size(), ' ');
  return bytes;
}

std::string TextAt(std::string_view b, std::size_t at, std::size_t width) {
  return Cp932ToUtf8(b.substr(at, width));
}

std::string RightNumber(long long value, std::size_t width) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%*lld", static_cast<int>(width), value);
  return buffer;
}

std::string ZeroNumber(long long value, std::size_t width) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%0*lld", static_cast<int>(width), value);
  return buffer;
}

std::string NumberFieldText(std::int32_t raw, int decimals) {
  if (decimals <= 0) return RightNumber(raw, 7);
  long long magnitude = std::llabs(static_cast<long long>(raw));
  std::string digits = std::to_string(magnitude);
  if (digits.size() <= static_cast<std::size_t>(decimals))
    digits.insert(0, static_cast<std::size_t>(decimals) + 1 - digits.size(), '0');
  digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
  if (raw < 0) digits.insert(0, "-");
  if (digits.size() < 7) digits.insert(0, 7 - digits.size(), ' ');
  return digits;
}

std::int32_t RawOfValue(double value, int decimals) {
  return static_cast<std::int32_t>(RoundHalfEven(value * std::pow(10.0, decimals)));
}

}  // namespace recscope
