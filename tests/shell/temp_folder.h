#pragma once
// A fresh folder under the system's temporary folder, removed with its contents
// when the test ends.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace recscope::testing {

class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("recscope_shell_" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::string str() const { return path_.string(); }
  std::string file(const std::string &name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline void WriteBytes(const std::string &path, const std::string &bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string ReadBytes(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace recscope::testing
