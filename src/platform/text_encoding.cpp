#include "platform/text_encoding.h"

#include <iconv.h>

#include <cerrno>
#include <stdexcept>

namespace recscope {
namespace {

// One conversion, with a replacement for what the target cannot hold or the
// source does not decode.
std::string Convert(std::string_view in, const char *to, const char *from,
                    std::string_view replacement) {
  iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv_open failed");
  std::string out;
  out.reserve(in.size() * 3 / 2 + 8);
  char *src = const_cast<char *>(in.data());
  size_t srcLeft = in.size();
  char buffer[1024];
  while (srcLeft > 0) {
    char *dst = buffer;
    size_t dstLeft = sizeof buffer;
    size_t r = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
    out.append(buffer, static_cast<size_t>(dst - buffer));
    if (r == static_cast<size_t>(-1)) {
      if (errno == E2BIG) continue;
      // EILSEQ or EINVAL: skip one source byte (or one UTF-8 character).
      size_t skip = 1;
      if (std::string_view(from) == "UTF-8") {
        unsigned char c = static_cast<unsigned char>(*src);
        skip = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        if (skip > srcLeft) skip = srcLeft;
      }
      src += skip;
      srcLeft -= skip;
      out.append(replacement);
    }
  }
  iconv_close(cd);
  return out;
}

}  // namespace

std::string Cp932ToUtf8(std::string_view cp932) {
  bool ascii = true;
  for (char c : cp932)
    if (static_cast<unsigned char>(c) >= 0x80) {
      ascii = false;
      break;
    }
  if (ascii) return std::string(cp932);
  return Convert(cp932, "UTF-8", "CP932", "\xEF\xBF\xBD");
}

std::string Utf8ToCp932(std::string_view utf8) {
  bool ascii = true;
  for (char c : utf8)
    if (static_cast<unsigned char>(c) >= 0x80) {
      ascii = false;
      break;
    }
  if (ascii) return std::string(utf8);
  return Convert(utf8, "CP932", "UTF-8", "?");
}

namespace {
// Length of the code page 932 character that starts with this lead byte.
size_t Cp932CharLength(unsigned char lead) {
  return ((lead >= 0x81 && lead <= 0x9F) || (lead >= 0xE0 && lead <= 0xFC)) ? 2 : 1;
}
}  // namespace

std::string LeftCp932Bytes(std::string_view utf8, std::size_t bytes) {
  std::string raw = Utf8ToCp932(utf8);
  size_t i = 0;
  while (i < raw.size()) {
    size_t n = Cp932CharLength(static_cast<unsigned char>(raw[i]));
    if (i + n > bytes) break;
    i += n;
  }
  return Cp932ToUtf8(std::string_view(raw).substr(0, i));
}

std::string MidCp932Bytes(std::string_view utf8, std::size_t from) {
  std::string raw = Utf8ToCp932(utf8);
  if (from >= raw.size()) return {};
  return Cp932ToUtf8(std::string_view(raw).substr(from));
}

}  // namespace recscope
