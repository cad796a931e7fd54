#pragma once
// A real FTP server for the tests: tests/ftp/ftp_test_server.py (Debian's
// python3-pyftpdlib) on 127.0.0.1 at a free port, serving a temporary folder.
// Started by fork and exec, ended by its process id; it also ends by itself after
// its lifetime, so a crashed test leaves nothing running for long.
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "ftp/ftp_client.h"

namespace recscope::testing_support {

struct FtpServerOptions {
  bool memoryLayout = false;  // the folders S000000 (with T000000) and MEMORY in the root
  bool hostileNames = false;
  bool cutTransfer = false;
  bool refuseLogin = false;
  bool listFallbackOnly = false;
  bool namesOnly = false;
  double slowSeconds = 0;
  int lifetimeSeconds = 90;
  // Where the server listens: any loopback address, and a fixed port (0: a free one).
  std::string host = "127.0.0.1";
  int port = 0;
};

inline std::filesystem::path MakeTempFolder(const std::string &stem) {
  std::string pattern = (std::filesystem::temp_directory_path() / (stem + "-XXXXXX")).string();
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  if (!mkdtemp(buffer.data())) return {};
  return std::filesystem::path(buffer.data());
}

inline void WriteBytes(const std::filesystem::path &path, std::size_t size, unsigned seed = 1) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary);
  unsigned value = seed;
  for (std::size_t i = 0; i < size; ++i) {
    value = value * 1103515245u + 12345u;
    out.put(static_cast<char>((value >> 16) & 0xFF));
  }
}

inline std::string ReadAll(const std::filesystem::path &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class FtpTestServer {
 public:
  // The served folder is Root(); in the memory layout the record files go into
  // RecordFolder() and the totalize files into TotalizeFolder().
  explicit FtpTestServer(FtpServerOptions options = {}) : options_(options) {
    work_ = MakeTempFolder("recscope-ftp-server");
    root_ = work_ / "root";
    std::filesystem::create_directories(root_);
    if (options_.memoryLayout) {
      std::filesystem::create_directories(root_ / "S000000" / "T000000");
      std::filesystem::create_directories(root_ / "MEMORY");
    } else {
      std::filesystem::create_directories(root_ / "T000000");
    }
  }

  ~FtpTestServer() {
    Stop();
    std::error_code ec;
    std::filesystem::remove_all(work_, ec);
  }

  // Starts the server and waits (at most 15 s) for its port. False when it did
  // not come up.
  bool Start() {
    std::filesystem::path portFile = work_ / "port";
    std::vector<std::string> args = {
        "/usr/bin/python3", std::string(RECSCOPE_SOURCE_DIR) + "/tests/ftp/ftp_test_server.py",
        "--root",           root_.string(),
        "--port-file",      portFile.string(),
        "--user",           "user",
        "--password",       "pass",
        "--layout",         options_.memoryLayout ? "memory" : "flat",
        "--lifetime",       std::to_string(options_.lifetimeSeconds),
        "--host",           options_.host,
        "--port",           std::to_string(options_.port),
        "--command-log",    (work_ / "commands.log").string()};
    if (options_.hostileNames) args.push_back("--hostile-names");
    if (options_.cutTransfer) args.push_back("--cut-transfer");
    if (options_.refuseLogin) args.push_back("--refuse-login");
    if (options_.listFallbackOnly) args.push_back("--list-fallback-only");
    if (options_.namesOnly) args.push_back("--names-only");
    if (options_.slowSeconds > 0) {
      args.push_back("--slow");
      args.push_back(std::to_string(options_.slowSeconds));
    }
    pid_ = fork();
    if (pid_ == 0) {
      std::vector<char *> argv;
      for (std::string &a : args) argv.push_back(a.data());
      argv.push_back(nullptr);
      execv(argv[0], argv.data());
      _exit(127);
    }
    if (pid_ < 0) return false;
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (std::chrono::steady_clock::now() < deadline) {
      std::ifstream in(portFile);
      if (in >> port_ && port_ > 0) return true;
      int status = 0;
      if (waitpid(pid_, &status, WNOHANG) == pid_) {
        pid_ = -1;
        return false;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }

  void Stop() {
    if (pid_ > 0) {
      kill(pid_, SIGTERM);
      int status = 0;
      for (int i = 0; i < 100 && waitpid(pid_, &status, WNOHANG) == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
      if (waitpid(pid_, &status, WNOHANG) == 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, &status, 0);
      }
      pid_ = -1;
    }
  }

  int Port() const { return port_; }
  const std::filesystem::path &Root() const { return root_; }
  std::filesystem::path RecordFolder() const {
    return options_.memoryLayout ? root_ / "S000000" : root_;
  }
  std::filesystem::path TotalizeFolder() const { return RecordFolder() / "T000000"; }
  const std::filesystem::path &Work() const { return work_; }
  // Every command the server received but PASS, one a line ("RETR S0001.FDT").
  std::string CommandLog() const { return ReadAll(work_ / "commands.log"); }

  FtpEndpoint Endpoint(const std::string &password = "pass") const {
    FtpEndpoint endpoint;
    endpoint.Host = options_.host;
    endpoint.Port = port_;
    endpoint.User = "user";
    endpoint.Password = password;
    endpoint.ConnectTimeout = 5;
    endpoint.ReplyTimeout = 5;
    endpoint.StallTimeout = 5;
    return endpoint;
  }

 private:
  FtpServerOptions options_;
  std::filesystem::path work_;
  std::filesystem::path root_;
  pid_t pid_ = -1;
  int port_ = 0;
};

}  // namespace recscope::testing_support
