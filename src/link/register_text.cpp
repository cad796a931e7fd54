#include "link/register_text.h"

#include <algorithm>
#include <string_view>

#include "platform/text_encoding.h"

namespace recscope {
namespace {

std::string ByteText(std::uint8_t b) {
  if (b == 0) return " ";
  const char c = static_cast<char>(b);
  return Cp932ToUtf8(std::string_view(&c, 1));
}

}  // namespace

std::string RegisterToText(std::int32_t word) {
  return ByteText(static_cast<std::uint8_t>(word & 0xFF)) +
         ByteText(static_cast<std::uint8_t>((word >> 8) & 0xFF));
}

std::string GetStrToStr(std::span<const std::uint8_t> data, int length, int offset) {
  if (length <= 0 || offset < 0 || static_cast<std::size_t>(offset) >= data.size()) return {};
  const std::size_t from = static_cast<std::size_t>(offset);
  const std::size_t count = std::min(static_cast<std::size_t>(length), data.size() - from);
  std::string bytes(reinterpret_cast<const char *>(data.data() + from), count);
  // A zero byte ends the text; no character of code page 932 holds one, so
  // cutting before the conversion cuts at the same place as after it.
  const std::size_t zero = bytes.find('\0');
  if (zero != std::string::npos) bytes.resize(zero);
  std::string text = Cp932ToUtf8(bytes);
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

std::int16_t GetStrToWord(std::span<const std::uint8_t> data, int offset) {
  auto at = [&](int i) -> unsigned {
    return (i >= 0 && static_cast<std::size_t>(i) < data.size()) ? data[static_cast<std::size_t>(i)]
                                                                 : 0u;
  };
  return static_cast<std::int16_t>(at(offset) | (at(offset + 1) << 8));
}

}  // namespace recscope
