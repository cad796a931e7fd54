#pragma once
// The helper programs a test starts (socat, a simulated recorder): started
// without a shell, ended by their pid, and a file they write waited for.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

extern char **environ;

namespace recscope::testing {

// Starts argv[0] found on PATH; 0 when it could not be started.
inline pid_t Spawn(const std::vector<std::string> &argv) {
  std::vector<char *> args;
  for (const std::string &a : argv) args.push_back(const_cast<char *>(a.c_str()));
  args.push_back(nullptr);
  pid_t pid = 0;
  if (::posix_spawnp(&pid, args[0], nullptr, nullptr, args.data(), environ) != 0) return 0;
  return pid;
}

// Asks the program to end, and ends it after two seconds when it has not.
inline void Stop(pid_t pid) {
  if (pid <= 0) return;
  ::kill(pid, SIGTERM);
  for (int i = 0; i < 100; ++i) {
    if (::waitpid(pid, nullptr, WNOHANG) == pid) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ::kill(pid, SIGKILL);
  ::waitpid(pid, nullptr, 0);
}

// Waits up to ten seconds for a file a started program writes.
inline bool WaitFor(const std::string &file) {
  for (int i = 0; i < 500; ++i) {
    if (std::filesystem::exists(file)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return false;
}

}  // namespace recscope::testing
