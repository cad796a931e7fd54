// recscope-cli param-read against the simulated recorder: the record pair and
// its path, a failure answered Yes with exit 2 and its message id, the six-byte
// wait bounded by --timeout with exit 3, and "NONE" that opens no port.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "simulated_recorder.h"

using recscope::testing::SimulatedRecorder;

namespace {

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

struct CliRun {
  int status = -1;
  std::string out;
  std::string err;
  double seconds = 0;
};

// Runs the batch command with a home of its own, bounded to 30 seconds.
CliRun Cli(const SimulatedRecorder &recorder, const std::string &arguments) {
  const std::string home = recorder.path("home");
  std::filesystem::create_directories(home);
  const std::string command = "timeout 30 " RECSCOPE_BINARY_DIR "/bin/recscope-cli --home '" +
                              home + "' param-read --port '" + recorder.device() + "' " +
                              arguments + " >'" + recorder.path("out") + "' 2>'" +
                              recorder.path("err") + "'";
  const auto begin = std::chrono::steady_clock::now();
  const int raw = std::system(command.c_str());
  CliRun run;
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = ReadAll(recorder.path("out"));
  run.err = ReadAll(recorder.path("err"));
  return run;
}

TEST(ParamReadCli, WritesTheRecordPairIntoTheHomeAndPrintsItsPath) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const CliRun run = Cli(recorder, "");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, recorder.path("home") + "/S100000.FDT\n");
  EXPECT_TRUE(std::filesystem::exists(recorder.path("home/A100000.FDT")));
  // The map was put into the home where it was missing.
  EXPECT_EQ(ReadAll(recorder.path("home/InitSet.txt")),
            ReadAll(recscope::testing::kShippedInitSet));
  EXPECT_EQ(recorder.Requests().size(), 82u);
  EXPECT_EQ(ReadAll(recorder.path("home/S100000.FDT")).size(),
            108u + 56u * 30u + 24u * 5u + 26u * 4u + 2u);
}

TEST(ParamReadCli, AFailedRequestIsAnsweredYesAndExits2WithItsMessage) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("noreply", 4);
  const CliRun run = Cli(recorder, "");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 11102: タイムアウト\n");
  EXPECT_EQ(run.out, "");
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/S100000.FDT")));
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/A100000.FDT")));
  EXPECT_EQ(recorder.Requests().size(), 4u);
}

TEST(ParamReadCli, ExceptionRepliesAndTooLongRepliesNeverMatchTheLengthAndEndIn11102) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("exception", 2);
  recorder.Fault("long", 2);
  const CliRun run = Cli(recorder, "");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 11102: タイムアウト\n");
  EXPECT_EQ(recorder.Requests().size(), 4u);
}

TEST(ParamReadCli, WrongCrcsOfTheRightLengthAreTakenAndTheReadSucceeds) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("badcrc", 82);
  const CliRun run = Cli(recorder, "");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(recorder.Requests().size(), 82u);
}

TEST(ParamReadCli, AReplyStoppingAtSixBytesEndsAfterTimeoutWithExit3) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("six", 1, 0);
  const CliRun run = Cli(recorder, "--timeout 2");
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("six bytes"), std::string::npos) << run.err;
  EXPECT_GE(run.seconds, 2.0);
  EXPECT_LT(run.seconds, 15.0);
  EXPECT_EQ(recorder.Requests().size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/S100000.FDT")));
}

TEST(ParamReadCli, ParityNoneLeavesThePortClosedAndExits2With11105) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const CliRun run = Cli(recorder, "--parity NONE");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 11105: 通信ポートエラー\n");
  EXPECT_TRUE(recorder.Requests().empty());
}

TEST(ParamReadCli, StationOtherThan1AndATimeoutOf0AreUsageErrors) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  EXPECT_EQ(Cli(recorder, "--station 2").status, 1);
  EXPECT_EQ(Cli(recorder, "--timeout 0").status, 1);
  EXPECT_TRUE(recorder.Requests().empty());
}

}  // namespace
