// recscope-cli realtime from the outside, against the simulated recorder over
// TCP on a port of its own and over a pseudo-terminal, and a run killed with
// SIGKILL whose written samples the next run keeps.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "realtime/realtime_acquisition.h"
#include "realtime/realtime_state.h"
#include "simulated_realtime_recorder.h"

using recscope::testing::SimulatedRealtimeRecorder;

namespace {

struct Result {
  int status = -1;
  std::string out;
};

Result Cli(const std::string &home, const std::string &args) {
  const std::string command = std::string("timeout 60 ") + RECSCOPE_BINARY_DIR +
                              "/bin/recscope-cli --home " + home + " " + args + " 2>&1";
  Result r;
  FILE *pipe = ::popen(command.c_str(), "r");
  if (!pipe) return r;
  char buffer[4096];
  while (std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) r.out.append(buffer, n);
  const int status = ::pclose(pipe);
  r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return r;
}

std::string Line(const std::string &out, const std::string &key) {
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);)
    if (line.rfind(key + " ", 0) == 0) return line.substr(key.size() + 1);
  return {};
}

// The ring as it is on disk now, read by the monitor's own loader from a copy,
// so that the blanking of the load leaves the home's file as the run left it.
recscope::RealSampleRing RingOnDisk(const std::string &home, int channels) {
  const std::string copy = home + "/RealTimeFile.seen";
  std::error_code error;
  std::filesystem::copy_file(recscope::RealTimeFilePath(home), copy,
                             std::filesystem::copy_options::overwrite_existing, error);
  recscope::RealSampleRing ring;
  ring.Allocate(channels);
  if (!error)
    recscope::LoadRealTimeFile(ring, copy, static_cast<std::int32_t>(std::time(nullptr)) + 1, 1);
  std::filesystem::remove(copy, error);
  return ring;
}

std::vector<std::int32_t> ValidSlots(const recscope::RealSampleRing &ring) {
  std::vector<std::int32_t> slots;
  for (std::int32_t s = 1; s <= 86400; ++s)
    if (ring.Valid(s) == 1) slots.push_back(s);
  return slots;
}

// recscope-cli started in the background with its output in `out`, so the
// test holds its pid.
pid_t StartCli(const std::string &home, const std::vector<std::string> &args,
               const std::string &out) {
  std::vector<std::string> argv{std::string(RECSCOPE_BINARY_DIR) + "/bin/recscope-cli", "--home",
                                home};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<char *> raw;
  for (const std::string &a : argv) raw.push_back(const_cast<char *>(a.c_str()));
  raw.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0644);
  ::posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  pid_t pid = 0;
  if (::posix_spawn(&pid, raw[0], &actions, nullptr, raw.data(), environ) != 0) pid = 0;
  ::posix_spawn_file_actions_destroy(&actions);
  return pid;
}

class RealtimeCli : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/recscope-realcli-XXXXXX";
    home_ = ::mkdtemp(pattern);
  }
  void TearDown() override {
    std::error_code error;
    std::filesystem::remove_all(home_, error);
  }
  std::string home_;
};

TEST_F(RealtimeCli, TcpRunWritesSamplesAndTheRingFilesAndASecondRunKeepsThem) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  const std::string target = "--tcp 127.0.0.1:" + std::to_string(recorder.port());
  const Result first = Cli(home_, "realtime " + target + " --seconds 7");
  ASSERT_EQ(first.status, 0) << first.out;
  EXPECT_EQ(Line(first.out, "model"), "KTX-30 TEST");
  EXPECT_EQ(Line(first.out, "channels"), "30");
  EXPECT_EQ(Line(first.out, "cycle"), "1");
  EXPECT_EQ(Line(first.out, "state"), "OK");
  EXPECT_EQ(Line(first.out, "failures"), "0");
  EXPECT_GE(std::stoi(Line(first.out, "samples")), 1);
  const std::string last = Line(first.out, "last");
  const int slot = std::stoi(last.substr(last.rfind(' ') + 1));
  EXPECT_EQ(std::filesystem::file_size(home_ + "/RealSetFile"), 2264u);
  ASSERT_GE(std::filesystem::file_size(home_ + "/RealTimeFile"),
            static_cast<std::uintmax_t>(slot) * 126);

  // The same recorder and cycle: the slot of the first run is still a sample.
  const Result second = Cli(home_, "realtime " + target + " --seconds 7");
  ASSERT_EQ(second.status, 0) << second.out;
  std::ifstream file(home_ + "/RealTimeFile", std::ios::binary);
  file.seekg(static_cast<std::streamoff>(slot - 1) * 126 + 4);
  char valid = 0;
  file.read(&valid, 1);
  EXPECT_EQ(valid, 1);
}

TEST_F(RealtimeCli, KillNineInTheMiddleOfARunAndARestartKeepEveryWrittenSample) {
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  const std::string target = "127.0.0.1:" + std::to_string(recorder.port());
  const std::string out = home_ + "/killed-run.txt";
  const pid_t pid = StartCli(home_, {"realtime", "--tcp", target, "--seconds", "30"}, out);
  ASSERT_GT(pid, 0);
  // Until at least three samples are on disk, for 20 seconds at most.
  bool enough = false;
  for (int i = 0; i < 200 && !enough; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    enough = std::filesystem::exists(recscope::RealTimeFilePath(home_)) &&
             ValidSlots(RingOnDisk(home_, 30)).size() >= 3;
  }
  ASSERT_EQ(::kill(pid, SIGKILL), 0);
  int status = 0;
  ASSERT_EQ(::waitpid(pid, &status, 0), pid);
  ASSERT_TRUE(WIFSIGNALED(status)) << "the run ended by itself before the kill";
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
  ASSERT_TRUE(enough) << "fewer than three samples on disk after 20 seconds";

  // What the killed run left on disk: every slot a sample, channel c reading
  // 10 × c + the reads before.
  const recscope::RealSampleRing atKill = RingOnDisk(home_, 30);
  const std::vector<std::int32_t> slots = ValidSlots(atKill);
  ASSERT_GE(slots.size(), 3u);
  std::int32_t newestAtKill = 0;
  for (std::int32_t s : slots) {
    newestAtKill = std::max(newestAtKill, atKill.Time(s));
    for (int c = 1; c < 30; ++c)
      ASSERT_EQ(atKill.Value(s, c) - atKill.Value(s, 0), 10 * c) << "slot " << s;
  }

  // The restart with the same home and recorder goes on with the ring; the
  // setup takes some five seconds to read before the first sample.
  const Result restart = Cli(home_, "realtime --tcp " + target + " --seconds 8");
  ASSERT_EQ(restart.status, 0) << restart.out;
  EXPECT_EQ(Line(restart.out, "state"), "OK");
  EXPECT_GE(std::stoi(Line(restart.out, "samples")), 1);
  const recscope::RealSampleRing after = RingOnDisk(home_, 30);
  for (std::int32_t s : slots) {
    ASSERT_EQ(after.Valid(s), 1) << "slot " << s << " lost by the restart";
    EXPECT_EQ(after.Time(s), atKill.Time(s)) << "slot " << s;
    for (int c = 0; c < 30; ++c)
      ASSERT_EQ(after.Value(s, c), atKill.Value(s, c)) << "slot " << s << " channel " << c;
  }
  std::int32_t newestAfter = 0;
  for (std::int32_t s : ValidSlots(after)) newestAfter = std::max(newestAfter, after.Time(s));
  EXPECT_GT(newestAfter, newestAtKill);
  EXPECT_GT(ValidSlots(after).size(), slots.size());
}

TEST_F(RealtimeCli, RtuRunOnThePseudoTerminalWritesSamples) {
  SimulatedRealtimeRecorder recorder({.tcp = false, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  const Result run = Cli(home_, "realtime --port " + recorder.device() + " --seconds 7");
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(Line(run.out, "model"), "KTX-30 TEST");
  EXPECT_EQ(Line(run.out, "state"), "OK");
  // Channel c reads 10 × c + the reads before.
  std::istringstream values(Line(run.out, "values"));
  std::vector<int> v;
  for (int x = 0; values >> x;) v.push_back(x);
  ASSERT_EQ(v.size(), 30u);
  EXPECT_GE(v[0], 11);
  for (int c = 1; c < 30; ++c) EXPECT_EQ(v[c] - v[0], 10 * c);
}

TEST_F(RealtimeCli, NoRecorderEndsCalmlyWith19751AndUsageErrorsExit1) {
  // A port nobody listens on: refused at each try, counted, and the run ends on time.
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  const int port = recorder.port();
  recorder.Kill();
  const Result none =
      Cli(home_, "realtime --tcp 127.0.0.1:" + std::to_string(port) + " --seconds 2");
  EXPECT_EQ(none.status, 2) << none.out;
  EXPECT_NE(none.out.find("error 19751: 通信エラー"), std::string::npos) << none.out;
  EXPECT_GE(std::stoi(Line(none.out, "failures")), 1);
  EXPECT_EQ(Cli(home_, "realtime --seconds 2").status, 1);
  EXPECT_EQ(Cli(home_, "realtime --tcp 127.0.0.1 --cycle 4 --seconds 2").status, 1);
  EXPECT_EQ(Cli(home_, "realtime --tcp 127.0.0.1").status, 1);
}

}  // namespace
