// recscope-cli param-read against the simulated recorder: the record pair and
// its path, a failure answered Yes with exit 2 and its message id, the six-byte
// wait bounded by --timeout with exit 3, and "NONE" that opens no port.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

#include "shell/civil_time.h"
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
CliRun Cli(const SimulatedRecorder &recorder, const std::string &arguments,
           const std::string &subcommand = "param-read") {
  const std::string home = recorder.path("home");
  std::filesystem::create_directories(home);
  const std::string command = "timeout 30 " RECSCOPE_BINARY_DIR "/bin/recscope-cli --home '" +
                              home + "' " + subcommand + " --port '" + recorder.device() + "' " +
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

// The requests of the setup read before the first poll.
constexpr std::size_t kSetupRequests = 82;
constexpr std::size_t kMonitorHead = 108 + 30 * 56 + 5 * 24 + 4 * 26 + 2;

TEST(MonitorCli, PollsForTheSecondsAndPrintsTheLastValuesAsTheInstantWindowListsThem) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const CliRun run = Cli(recorder, "--seconds 1", "monitor");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_GE(run.seconds, 1.0);
  EXPECT_LT(run.seconds, 10.0);
  const std::size_t polls = recorder.Requests().size() - kSetupRequests;
  ASSERT_GE(polls, 5u);
  EXPECT_EQ(recorder.Requests()[kSetupRequests], "4 86 44");
  // One sample a poll (the recorder's clock goes on a second a poll), the last
  // one shown.
  const std::string measurement = recorder.path("home/S100000.FDT");
  EXPECT_EQ(ReadAll(measurement).size(), kMonitorHead + polls * 66);
  std::string expected =
      measurement + "\n" +
      recscope::RecordTimeText(1700000000LL + static_cast<long long>(polls) - 1) + "\n";
  expected += "GROUP 1\n";
  for (int c = 1; c <= 10; ++c) {
    char line[64];
    std::snprintf(line, sizeof line, "CH%02d\tCH%02dTAG\t%d.0\tUSR%02dab\n", c, c, c, c);
    expected += line;
  }
  expected += "GROUP 2\n";
  const char *units2[] = {"USR11ab", "USR12ab", "kg/h",  "g/h",    "m3/h",
                          "l/h",     "",        "t/min", "kg/min", "g/min"};
  for (int c = 11; c <= 20; ++c) {
    char line[64];
    std::snprintf(line, sizeof line, "CH%02d\tCH%02dTAG\t%d.0\t%s\n", c, c, c, units2[c - 11]);
    expected += line;
  }
  expected += "GROUP 3\n";
  const char *units3[] = {"m3/min", "l/min", "", "t/s", "kg/s", "g/s", "m3/s", "l/s", "", "mbar"};
  for (int c = 21; c <= 30; ++c) {
    char line[64];
    std::snprintf(line, sizeof line, "CH%02d\tCH%02dTAG\t%d.0\t%s\n", c, c, c, units3[c - 21]);
    expected += line;
  }
  expected +=
      "GROUP 4\n"
      "DI01\tDI1TAG\t1\t\nDI02\tDI2TAG\t0\t\nDI03\tDI3TAG\t1\t\nDI04\tDI4TAG\t0\t\n"
      "DI05\tDI5TAG\t1\t\n";
  EXPECT_EQ(run.out, expected);
  // The alarms of channel 1 (alarm 1) and 2 (alarm 2) are raised at the first
  // sample and stay: two events behind the alarm file's head.
  EXPECT_EQ(ReadAll(recorder.path("home/A100000.FDT")).size(), 104u + 2u * 38u);
}

TEST(MonitorCli, AFailedPollIsAnsweredYesAndExits2WithItsMessage) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("none", static_cast<int>(kSetupRequests) + 1);
  recorder.Fault("noreply", 4);
  const CliRun run = Cli(recorder, "--seconds 20", "monitor");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err.rfind("error 11102: ", 0), 0u) << run.err;
  EXPECT_LT(run.seconds, 15.0);
  // The record keeps the sample that came.
  EXPECT_EQ(ReadAll(recorder.path("home/S100000.FDT")).size(), kMonitorHead + 66);
}

TEST(MonitorCli, TheCablePulledInTheMiddleEndsWithExit2And11102AndTheRecordKeepsWholeSamples) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  std::future<CliRun> running = std::async(
      std::launch::async, [&recorder] { return Cli(recorder, "--seconds 20", "monitor"); });
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(15);
  while (recorder.Requests().size() < kSetupRequests + 3 &&
         std::chrono::steady_clock::now() < limit)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  ASSERT_GE(recorder.Requests().size(), kSetupRequests + 3);
  recorder.Unplug();
  const CliRun run = running.get();
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err.rfind("error 11102: ", 0), 0u) << run.err;
  EXPECT_LT(run.seconds, 15.0);
  const std::size_t size = ReadAll(recorder.path("home/S100000.FDT")).size();
  ASSERT_GE(size, kMonitorHead + 3 * 66);
  EXPECT_EQ((size - kMonitorHead) % 66, 0u);
}

TEST(MonitorCli, AReplyStoppingAtSixBytesEndsAfterTimeoutWithExit3) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.Fault("none", static_cast<int>(kSetupRequests));
  recorder.Fault("six", 1, 0);
  const CliRun run = Cli(recorder, "--seconds 20 --timeout 1", "monitor");
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("six bytes"), std::string::npos) << run.err;
  EXPECT_LT(run.seconds, 10.0);
  EXPECT_EQ(recorder.Requests().size(), kSetupRequests + 1);
}

TEST(MonitorCli, SecondsMissingOrNotAboveZeroAreUsageErrors) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  EXPECT_EQ(Cli(recorder, "", "monitor").status, 1);
  EXPECT_EQ(Cli(recorder, "--seconds 0", "monitor").status, 1);
  EXPECT_EQ(Cli(recorder, "--seconds 1 --station 2", "monitor").status, 1);
  EXPECT_TRUE(recorder.Requests().empty());
}

}  // namespace
