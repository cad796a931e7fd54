#pragma once
// Whole-file reads and replacing writes of the program's own small text files.
#include <optional>
#include <string>

namespace recscope {

// The bytes of a regular file, or nothing when it is missing or cannot be read
// (a folder in its place, no permission, a read error).
std::optional<std::string> ReadFileBytes(const std::string &path);

// Writes `bytes` to a temporary file beside `path` and renames it over `path`.
// On failure nothing is left behind and false is returned.
bool ReplaceFileBytes(const std::string &path, const std::string &bytes);

}  // namespace recscope
