#include "shell/home_folder.h"

#include <filesystem>

namespace recscope {

namespace {
std::string Normalised(const std::string &folder) {
  std::filesystem::path p = std::filesystem::absolute(folder).lexically_normal();
  std::string text = p.string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}
}  // namespace

std::string ResolveHomeFolder(const std::string &option, const char *environment,
                              const std::string &executableFolder) {
  if (!option.empty()) return Normalised(option);
  if (environment != nullptr && *environment != '\0') return Normalised(environment);
  return Normalised(executableFolder.empty() ? "." : executableFolder);
}

std::string AbsolutePath(const std::string &path) {
  return std::filesystem::absolute(path).lexically_normal().string();
}

}  // namespace recscope
