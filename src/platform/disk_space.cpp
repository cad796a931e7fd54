#include "platform/disk_space.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace recscope {

std::int64_t FreeDiskBytes(const std::string &folder) {
  std::error_code ec;
  auto info = std::filesystem::space(folder.empty() ? "." : folder, ec);
  if (ec) return -1;
  return static_cast<std::int64_t>(info.available);
}

std::int64_t FreeMemoryBytes() {
  std::ifstream in("/proc/meminfo");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("MemAvailable:", 0) == 0) {
      std::istringstream fields(line.substr(13));
      std::int64_t kb = 0;
      fields >> kb;
      return kb * 1024;
    }
  }
  return -1;
}

}  // namespace recscope
