#include "shell/file_bytes.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace recscope {

std::optional<std::string> ReadFileBytes(const std::string &path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes;
  try {
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  } catch (const std::exception &) {
    return std::nullopt;
  }
  if (in.bad()) return std::nullopt;
  return bytes;
}

bool ReplaceFileBytes(const std::string &path, const std::string &bytes) {
  const std::string temporary = path + ".tmp";
  std::error_code error;
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (out) out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
      out.close();
      std::filesystem::remove(temporary, error);
      return false;
    }
  }
  std::filesystem::rename(temporary, path, error);
  if (error) {
    std::filesystem::remove(temporary, error);
    return false;
  }
  return true;
}

}  // namespace recscope
