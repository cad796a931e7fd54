#include "shell/home_folder.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace recscope {

namespace fs = std::filesystem;

namespace {
std::string Normalised(const std::string &folder) {
  fs::path p = fs::absolute(folder).lexically_normal();
  std::string text = p.string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}
}  // namespace

std::string DeliveredFilesFolder(const std::string &executableFolder) {
  return Normalised(
      (fs::path(Normalised(executableFolder)) / ".." / "share" / "recscope").string());
}

bool IsInstalledProgramFolder(const std::string &executableFolder) {
  const std::string folder = Normalised(executableFolder.empty() ? "." : executableFolder);
  if (::access(folder.c_str(), W_OK) != 0) return true;
  std::error_code error;
  return fs::is_directory(DeliveredFilesFolder(folder), error);
}

std::string ResolveHomeFolder(const std::string &option, const char *environment,
                              const std::string &executableFolder,
                              const std::string &userDataFolder) {
  if (!option.empty()) return Normalised(option);
  if (environment != nullptr && *environment != '\0') return Normalised(environment);
  const std::string folder = executableFolder.empty() ? "." : executableFolder;
  if (!userDataFolder.empty() && IsInstalledProgramFolder(folder))
    return Normalised(userDataFolder);
  return Normalised(folder);
}

bool FillHomeFolder(const std::string &home, const std::string &delivered) {
  std::error_code error;
  fs::create_directories(home, error);
  if (!fs::is_directory(home, error)) return false;
  if (!fs::is_directory(delivered, error)) return true;  // nothing delivered: nothing to copy
  bool ok = true;
  for (const fs::directory_entry &entry : fs::directory_iterator(delivered, error)) {
    if (!entry.is_regular_file(error)) continue;
    const fs::path target = fs::path(home) / entry.path().filename();
    if (fs::exists(target, error)) continue;
    // Copied under a temporary name and renamed, so a broken copy never stands as
    // a delivered file.
    const fs::path partial = target.string() + ".part";
    if (!fs::copy_file(entry.path(), partial, fs::copy_options::overwrite_existing, error)) {
      fs::remove(partial, error);
      ok = false;
      continue;
    }
    fs::rename(partial, target, error);
    if (error) {
      fs::remove(partial, error);
      ok = false;
    }
  }
  return ok;
}

std::string AbsolutePath(const std::string &path) {
  return fs::absolute(path).lexically_normal().string();
}

}  // namespace recscope
