#pragma once
// Little helpers for the fixed fields of the record files: little-endian numbers
// at an offset, and fixed-width texts in code page 932 padded with spaces.
#include <cstdint>
#include <string>
#include <string_view>

namespace recscope {

inline std::uint8_t U8At(std::string_view b, std::size_t at) {
  return static_cast<std::uint8_t>(b[at]);
}
inline std::int16_t I16At(std::string_view b, std::size_t at) {
  return static_cast<std::int16_t>(U8At(b, at) | (U8At(b, at + 1) << 8));
}
inline std::uint16_t U16At(std::string_view b, std::size_t at) {
  return static_cast<std::uint16_t>(U8At(b, at) | (U8At(b, at + 1) << 8));
}
inline std::int32_t I32At(std::string_view b, std::size_t at) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(U8At(b, at)) |
                                   (static_cast<std::uint32_t>(U8At(b, at + 1)) << 8) |
                                   (static_cast<std::uint32_t>(U8At(b, at + 2)) << 16) |
                                   (static_cast<std::uint32_t>(U8At(b, at + 3)) << 24));
}

inline void PutU8(std::string &out, int value) { out.push_back(static_cast<char>(value & 0xFF)); }
inline void PutI16(std::string &out, int value) {
  PutU8(out, value);
  PutU8(out, value >> 8);
}
inline void PutI32(std::string &out, std::int32_t value) {
  auto v = static_cast<std::uint32_t>(value);
  for (int i = 0; i < 4; ++i) PutU8(out, static_cast<int>(v >> (8 * i)));
}

// A UTF-8 text as at most `width` bytes of code page 932, cut without splitting
// a double-byte character, not padded.
std::string Utf8ToCp932Cut(std::string_view utf8, std::size_t width);

// A UTF-8 text as exactly `width` bytes of code page 932: cut without splitting
// a double-byte character, then padded with spaces.
std::string FixedCp932(std::string_view utf8, std::size_t width);

// `width` bytes of code page 932 at `at`, decoded; padding is kept.
std::string TextAt(std::string_view b, std::size_t at, std::size_t width);

// A whole number right-aligned in `width` characters ("%*d"), or zero-padded.
std::string RightNumber(long long value, std::size_t width);
std::string ZeroNumber(long long value, std::size_t width);

// A raw value as a 7-character number field with its point in place.
std::string NumberFieldText(std::int32_t raw, int decimals);

// A double given in units of 10^-decimals, rounded to the raw integer.
std::int32_t RawOfValue(double value, int decimals);

}  // namespace recscope
