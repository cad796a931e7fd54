#include "shell/recent_files.h"

#include <algorithm>

namespace recscope {

std::vector<std::string> WithRecentFile(std::vector<std::string> list, const std::string &path,
                                        std::size_t limit) {
  list = WithoutRecentFile(std::move(list), path);
  list.insert(list.begin(), path);
  if (list.size() > limit) list.resize(limit);
  return list;
}

std::vector<std::string> WithoutRecentFile(std::vector<std::string> list, const std::string &path) {
  list.erase(std::remove(list.begin(), list.end(), path), list.end());
  return list;
}

std::string RecentFileEntryText(std::size_t index, const std::string &path) {
  const std::string number = std::to_string(index + 1);
  // The key is the last digit, so that the tenth entry is reached by 0.
  return number.substr(0, number.size() - 1) + "&" + number.back() + " " + path;
}

}  // namespace recscope
