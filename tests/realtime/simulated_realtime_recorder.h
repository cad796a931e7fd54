#pragma once
// The simulated recorder of the real-time tests (sim_realtime_recorder.py):
// over TCP on a free port of its own, or over RTU on one end of a socat
// pseudo-terminal pair. Every process is ended by its pid when the fixture
// goes, and the recorder ends by itself after two minutes in any case.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

extern char **environ;

#include "../child_process.h"

namespace recscope::testing {

class SimulatedRealtimeRecorder {
 public:
  struct Options {
    bool tcp = true;
    std::string family = "ktx";
    int version = 14;
  };
  explicit SimulatedRealtimeRecorder(const Options &options) : options_(options) {
    char pattern[] = "/tmp/recscope-realtime-XXXXXX";
    folder_ = ::mkdtemp(pattern);
    std::vector<std::string> argv{RECSCOPE_SYSTEM_PYTHON,
                                  RECSCOPE_SOURCE_DIR "/tests/realtime/sim_realtime_recorder.py",
                                  "--family",
                                  options.family,
                                  "--version",
                                  std::to_string(options.version),
                                  "--port-file",
                                  path("port"),
                                  "--control",
                                  path("control"),
                                  "--log",
                                  path("log")};
    if (options.tcp) {
      argv.push_back("--tcp");
    } else {
      socat_ = Spawn({"socat", "pty,raw,echo=0,link=" + path("com"),
                      "pty,raw,echo=0,link=" + path("recorder")});
      if (!WaitFor(path("com")) || !WaitFor(path("recorder"))) return;
      argv.push_back("--device");
      argv.push_back(path("recorder"));
    }
    sim_ = Spawn(argv);
    ready_ = WaitFor(path("port"));
    if (ready_ && options.tcp) {
      std::ifstream in(path("port"));
      in >> port_;
    }
  }
  ~SimulatedRealtimeRecorder() {
    Kill();
    Stop(socat_);
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }
  SimulatedRealtimeRecorder(const SimulatedRealtimeRecorder &) = delete;
  SimulatedRealtimeRecorder &operator=(const SimulatedRealtimeRecorder &) = delete;

  bool ready() const { return ready_; }
  int port() const { return port_; }                  // TCP
  std::string device() const { return path("com"); }  // RTU: the program's end
  std::string path(const std::string &name) const { return folder_ + "/" + name; }

  // The recorder goes away: its process ends (the pty pair stays).
  void Kill() {
    Stop(sim_);
    sim_ = 0;
  }
  void Fault(const std::string &kind, int count) const {
    std::ofstream control(path("control"), std::ios::app);
    control << kind << ' ' << count << '\n';
  }
  std::vector<std::string> Log() const {
    std::vector<std::string> lines;
    std::ifstream log(path("log"));
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    return lines;
  }

 private:
  Options options_;
  std::string folder_;
  pid_t socat_ = 0;
  pid_t sim_ = 0;
  int port_ = 0;
  bool ready_ = false;
};

}  // namespace recscope::testing
