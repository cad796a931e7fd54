// recscope-cli realtime from the outside, against the simulated recorder over
// TCP on a port of its own and over a pseudo-terminal.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

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
