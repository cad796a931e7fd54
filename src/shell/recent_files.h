#pragma once
// The list of records opened last, newest first, as the file menu shows it.
#include <string>
#include <vector>

namespace recscope {

constexpr std::size_t kRecentFileLimit = 10;

// The list with `path` at its head: an earlier place of the same path is dropped,
// and the list keeps at most `limit` paths.
std::vector<std::string> WithRecentFile(std::vector<std::string> list, const std::string &path,
                                        std::size_t limit = kRecentFileLimit);

// The list without `path`.
std::vector<std::string> WithoutRecentFile(std::vector<std::string> list, const std::string &path);

// The menu text of the entry at `index` (0-based): "&1 path" .. "1&0 path", so that
// each entry has its own key.
std::string RecentFileEntryText(std::size_t index, const std::string &path);

}  // namespace recscope
