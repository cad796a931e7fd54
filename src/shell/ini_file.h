#pragma once
// The settings file reader and writer. Every value is text. A read opens the file,
// finds the section and key (letters compared regardless of case), closes the file
// and hands back the value; a write rewrites the whole file. Nothing is kept open
// or cached between calls, so every part of the program sees the latest value.
#include <string>

namespace recscope {

// What a read gives back when the file, the section or the key is missing.
inline constexpr const char *kIniMissing = "ERROR";

// The value of `key` in `section` of `file`, decoded from code page 932. A value
// of up to 255 bytes comes back whole, a longer one is cut at 254 (never inside a
// double-byte character); the value ends at its first zero character. Blanks
// around the value and one pair of enclosing quotes are dropped.
std::string ReadIni(const std::string &key, const std::string &section, const std::string &file);

// Sets `key` in `section` to `value`: the line of the key is replaced, or the key
// is added at the end of its section, or the section is added at the end of the
// file. The file is created when missing. Other lines stay byte for byte. The new
// text goes to a temporary file in the same folder that is renamed over the old
// one. A failure is not reported: the settings simply stay as they were.
void WriteIni(const std::string &value, const std::string &key, const std::string &section,
              const std::string &file);

}  // namespace recscope
