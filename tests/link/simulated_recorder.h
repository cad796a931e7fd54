#pragma once
// The simulated recorder of the link tests: socat makes a pseudo-terminal pair
// in a folder of its own, tests/link/sim_recorder.py answers on one end, and the
// program under test opens the other. Both processes are ended by their pids
// when the fixture goes.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

extern char **environ;

#include "../child_process.h"

namespace recscope::testing {

inline const std::string kShippedInitSet = RECSCOPE_SOURCE_DIR "/resources/InitSet.txt";

class SimulatedRecorder {
 public:
  explicit SimulatedRecorder(const std::string &initSet = kShippedInitSet) {
    char pattern[] = "/tmp/recscope-link-XXXXXX";
    folder_ = ::mkdtemp(pattern);
    const std::string ours = "pty,raw,echo=0,link=" + path("com");
    const std::string theirs = "pty,raw,echo=0,link=" + path("recorder");
    socat_ = Spawn({"socat", ours, theirs});
    if (!WaitFor(path("com")) || !WaitFor(path("recorder"))) return;
    sim_ = Spawn({RECSCOPE_SYSTEM_PYTHON, RECSCOPE_SOURCE_DIR "/tests/link/sim_recorder.py",
                  "--device", path("recorder"), "--initset", initSet, "--control", path("control"),
                  "--log", path("log"), "--ready", path("ready"), "--card", path("card"),
                  "--card-log", path("cardlog")});
    ready_ = WaitFor(path("ready"));
  }
  ~SimulatedRecorder() {
    Stop(sim_);
    Stop(socat_);
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }
  SimulatedRecorder(const SimulatedRecorder &) = delete;
  SimulatedRecorder &operator=(const SimulatedRecorder &) = delete;

  bool ready() const { return ready_; }
  // The program's end of the line.
  std::string device() const { return path("com"); }
  std::string path(const std::string &name) const { return folder_ + "/" + name; }

  // Queues a fault for the next `count` requests (see sim_recorder.py).
  void Fault(const std::string &kind, int count, int argument = 0) const {
    std::ofstream control(path("control"), std::ios::app);
    control << kind << ' ' << count << ' ' << argument << '\n';
  }

  // The requests the recorder has seen, one "FUNCTION ADDRESS COUNT" each.
  std::vector<std::string> Requests() const { return Lines(path("log")); }

  // Puts a file on the recorder's memory card (before the first card command):
  // the list shows `name`, `time` and `size`; the bytes of `measurement` are
  // served as `headBytes` of head and records of `recordBytes` each, those of
  // `events` ("" for none) as the event data. Without any call there is no card;
  // EmptyCard() makes one without files.
  void AddCardFile(const std::string &name, long long time, long long size,
                   const std::string &measurement, int headBytes, int recordBytes,
                   const std::string &events) const {
    std::ofstream card(path("card"), std::ios::app);
    card << name << ' ' << time << ' ' << size << ' ' << measurement << ' ' << headBytes << ' '
         << recordBytes << ' ' << (events.empty() ? "-" : events) << '\n';
  }
  void EmptyCard() const { std::ofstream card(path("card"), std::ios::app); }

  // The card commands the recorder has taken, one "CNTL INDEX FILE" each.
  std::vector<std::string> CardCommands() const { return Lines(path("cardlog")); }

  // The cable pulled: the recorder and the pseudo-terminal pair are gone, and
  // the program's end of the line with them.
  void Unplug() {
    Stop(sim_);
    Stop(socat_);
    sim_ = socat_ = 0;
  }

 private:
  static std::vector<std::string> Lines(const std::string &file) {
    std::vector<std::string> lines;
    std::ifstream log(file);
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    return lines;
  }

  std::string folder_;
  pid_t socat_ = 0;
  pid_t sim_ = 0;
  bool ready_ = false;
};

}  // namespace recscope::testing
