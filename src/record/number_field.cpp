#include "record/number_field.h"

#include <string>

namespace recscope {

std::optional<std::int32_t> ReadIntegerField(std::string_view field) {
  size_t i = 0;
  while (i < field.size() && field[i] == ' ') ++i;
  size_t end = field.size();
  while (end > i && (field[end - 1] == ' ' || field[end - 1] == '\r' || field[end - 1] == '\n'))
    --end;
  if (i >= end) return std::nullopt;
  bool negative = false;
  if (field[i] == '-' || field[i] == '+') {
    negative = field[i] == '-';
    ++i;
  }
  if (i >= end) return std::nullopt;
  std::int64_t value = 0;
  for (; i < end; ++i) {
    char c = field[i];
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
    if (value > 2147483647LL) return std::nullopt;
  }
  return static_cast<std::int32_t>(negative ? -value : value);
}

std::optional<std::int32_t> ReadNumberField(std::string_view field, int decimals) {
  if (decimals <= 0 || field.size() < 7) return ReadIntegerField(field);
  // A point can stand no further left than the field's first character.
  if (decimals > 6) return std::nullopt;
  const size_t point = 7 - static_cast<size_t>(decimals) - 1;  // 0-based place of the point
  std::string joined(field.substr(0, point));
  joined += field.substr(point + 1, static_cast<size_t>(decimals));
  return ReadIntegerField(joined);
}

}  // namespace recscope
