#pragma once
// Texts and words taken from recorder registers. In every text path of the
// link the first character of a pair is in the low byte of its register.
#include <cstdint>
#include <span>
#include <string>

namespace recscope {

// Two characters from one register, as UTF-8: the low byte first, the high
// byte second; a zero byte becomes a blank. Each byte goes through code page
// 932 by itself.
std::string RegisterToText(std::int32_t word);

// `length` bytes at byte `offset` of the data buffer, from code page 932 to
// UTF-8, cut at the first zero byte, trailing blanks removed. Bytes past the
// end of the buffer are not there: the text ends with the buffer.
std::string GetStrToStr(std::span<const std::uint8_t> data, int length, int offset);

// The signed 16-bit word whose low byte is at `offset` and high byte at
// `offset` + 1 of the data buffer. A byte past the end of the buffer reads 0.
std::int16_t GetStrToWord(std::span<const std::uint8_t> data, int offset);

}  // namespace recscope
