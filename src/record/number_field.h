#pragma once
// Number fields of the text encoding: a 7-character value with its decimal point
// in place, read as the raw integer of the unit.
#include <cstdint>
#include <optional>
#include <string_view>

namespace recscope {

// With `decimals` d above 0 the point stands at character 7-d: the digits left
// of it and the d digits right of it are joined and read as one integer
// ("  12.34" with 2 decimals is 1234). With d 0 the whole field is one integer.
// Nothing when the field holds no number.
std::optional<std::int32_t> ReadNumberField(std::string_view field, int decimals);

// A plain integer field (leading and trailing blanks allowed).
std::optional<std::int32_t> ReadIntegerField(std::string_view field);

}  // namespace recscope
