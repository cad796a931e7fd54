// recscope-cli realtime --analyze from the outside: a run against the simulated
// recorder over TCP, then the ring written as SR00000.FDT, whose last record is
// the last sample the run printed.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "simulated_realtime_recorder.h"

using recscope::testing::SimulatedRealtimeRecorder;

namespace {

std::string RunCli(const std::string &home, const std::string &args, int &status) {
  const std::string command = std::string("timeout 60 ") + RECSCOPE_BINARY_DIR +
                              "/bin/recscope-cli --home " + home + " " + args + " 2>&1";
  std::string out;
  FILE *pipe = ::popen(command.c_str(), "r");
  if (!pipe) return out;
  char buffer[4096];
  while (std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
  const int raw = ::pclose(pipe);
  status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return out;
}

std::string Line(const std::string &out, const std::string &key) {
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);)
    if (line.rfind(key + " ", 0) == 0) return line.substr(key.size() + 1);
  return {};
}

std::int32_t I32(const std::string &b, std::size_t at) {
  return static_cast<std::int32_t>(
      static_cast<std::uint8_t>(b[at]) | (static_cast<std::uint8_t>(b[at + 1]) << 8) |
      (static_cast<std::uint8_t>(b[at + 2]) << 16) |
      (static_cast<std::uint32_t>(static_cast<std::uint8_t>(b[at + 3])) << 24));
}
std::int16_t I16(const std::string &b, std::size_t at) {
  return static_cast<std::int16_t>(static_cast<std::uint8_t>(b[at]) |
                                   (static_cast<std::uint8_t>(b[at + 1]) << 8));
}

TEST(RealtimeAnalyzeCli, AnalyzeWritesTheRingAsSR00000AndPrintsItsPath) {
  char pattern[] = "/tmp/recscope-realanalyze-XXXXXX";
  const std::string home = ::mkdtemp(pattern);
  SimulatedRealtimeRecorder recorder({.tcp = true, .family = "ktx", .version = 14});
  ASSERT_TRUE(recorder.ready());
  // An old flag file goes with the analysis.
  std::ofstream(home + "/FR00000.FDT") << "old flags";
  int status = -1;
  const std::string out = RunCli(
      home,
      "realtime --tcp 127.0.0.1:" + std::to_string(recorder.port()) + " --seconds 8 --analyze",
      status);
  ASSERT_EQ(status, 0) << out;
  const std::string path = home + "/SR00000.FDT";
  std::istringstream lines(out);
  std::string lastLine;
  for (std::string line; std::getline(lines, line);)
    if (!line.empty()) lastLine = line;
  EXPECT_EQ(lastLine, path);
  EXPECT_FALSE(std::filesystem::exists(home + "/FR00000.FDT"));

  std::ifstream in(path, std::ios::binary);
  const std::string b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const std::size_t start = 108 + 30 * 56 + 4 * 26 + 2;
  ASSERT_EQ(b.size(), start + 86400u * 64);
  EXPECT_EQ(b.substr(0, 11), "SR00000.FDT");
  EXPECT_EQ(b[102], 0);
  EXPECT_EQ(b[103], 30);
  EXPECT_EQ(b[104], 0);  // cycle 1 s
  EXPECT_EQ(b[107], 4);
  // the last record is the last sample the run printed, its values cut to 16 bits
  const std::string last = Line(out, "last");
  ASSERT_FALSE(last.empty()) << out;
  const std::size_t at = start + 86399u * 64;
  const std::int32_t time = I32(b, at);
  EXPECT_EQ(I32(b, start), time - 86399);
  std::istringstream values(Line(out, "values"));
  for (int c = 0; c < 30; ++c) {
    long v = 0;
    ASSERT_TRUE(values >> v);
    EXPECT_EQ(I16(b, at + 4 + 2 * c), static_cast<std::int16_t>(v)) << "channel " << c + 1;
  }
  std::error_code error;
  std::filesystem::remove_all(home, error);
}

}  // namespace
