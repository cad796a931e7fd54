#pragma once
// Code page 932 on disk, UTF-8 in memory. Conversion goes through iconv.
#include <string>
#include <string_view>

namespace recscope {

// Bytes of code page 932 to UTF-8. A byte that does not decode becomes U+FFFD,
// so a damaged text field never stops a read.
std::string Cp932ToUtf8(std::string_view cp932);

// UTF-8 to code page 932. A character that has no code page 932 form becomes "?".
std::string Utf8ToCp932(std::string_view utf8);

// Cuts a UTF-8 text to at most `bytes` bytes of its code page 932 form without
// splitting a double-byte character, and gives the result back in UTF-8.
std::string LeftCp932Bytes(std::string_view utf8, std::size_t bytes);

// The part of a UTF-8 text from its code page 932 byte `from` (0-based) on.
std::string MidCp932Bytes(std::string_view utf8, std::size_t from);

}  // namespace recscope
