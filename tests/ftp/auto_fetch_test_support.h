#pragma once
// What the automatic fetch tests share: a program folder inside a parent folder of
// its own (so that a test can see that nothing lands beside it), the recorder
// sections of its VIEWERCOM.INI, and a look at every file below a folder.
#include <filesystem>
#include <set>
#include <string>

#include "ftp/auto_fetch_settings.h"
#include "ftp_server_fixture.h"
#include "shell/ini_file.h"
#include "shell/settings.h"

namespace recscope::testing_support {

class FetchHome {
 public:
  FetchHome() {
    parent_ = MakeTempFolder("recscope-fetch");
    home_ = parent_ / "home";
    std::filesystem::create_directories(home_);
  }
  ~FetchHome() {
    std::error_code ec;
    std::filesystem::remove_all(parent_, ec);
  }
  const std::filesystem::path &Parent() const { return parent_; }
  const std::filesystem::path &Path() const { return home_; }
  std::string Str() const { return home_.string(); }
  std::string Ini() const { return ViewerComIniPath(home_.string()); }

  void SetRecorder(int n, const std::string &ip, const std::string &user,
                   const std::string &password, bool on) {
    const std::string section = "FTP_" + std::to_string(n);
    WriteIni(ip, "IP", section, Ini());
    WriteIni(user, "USER", section, Ini());
    WriteIni(password, "PASS", section, Ini());
    WriteIni(on ? "1" : "0", "ON", section, Ini());
  }

 private:
  std::filesystem::path parent_;
  std::filesystem::path home_;
};

// Every file and folder below `folder`, as paths relative to it ("IP.../S0001.FDT").
inline std::set<std::string> TreeOf(const std::filesystem::path &folder) {
  std::set<std::string> names;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder))
    names.insert(std::filesystem::relative(entry.path(), folder).string() +
                 (entry.is_directory() ? "/" : ""));
  return names;
}

// How many lines of `text` are exactly `line`.
inline int CountLines(const std::string &text, const std::string &line) {
  int count = 0;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    if (text.compare(start, end - start, line) == 0) ++count;
    start = end + 1;
  }
  return count;
}

}  // namespace recscope::testing_support
