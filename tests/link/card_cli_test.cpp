// recscope-cli card-list and card-read against the simulated recorder: every
// page of the list, a file fetched byte for byte with its alarm file, the
// statuses 254 and 255 and a failed request as exit 2 with their messages, the
// head's question answered Yes, and the six-byte wait bounded by --timeout.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "record/record_writer.h"
#include "record_fixture.h"
#include "simulated_recorder.h"

using namespace recscope;
using recscope::testing::SimulatedRecorder;
using recscope::testing_support::MakeInfo;
using recscope::testing_support::MakeRecords;
using recscope::testing_support::ReadAll;
using recscope::testing_support::RecordBytes;

namespace {

struct CliRun {
  int status = -1;
  std::string out;
  std::string err;
};

CliRun Cli(const SimulatedRecorder &recorder, const std::string &subcommand,
           const std::string &arguments = "") {
  const std::string home = recorder.path("home");
  std::filesystem::create_directories(home);
  const std::string command = "timeout 30 " RECSCOPE_BINARY_DIR "/bin/recscope-cli --home '" +
                              home + "' " + subcommand + " --port '" + recorder.device() + "' " +
                              arguments + " >'" + recorder.path("out") + "' 2>'" +
                              recorder.path("err") + "'";
  const int raw = std::system(command.c_str());
  CliRun run;
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = ReadAll(recorder.path("out"));
  run.err = ReadAll(recorder.path("err"));
  return run;
}

// File 1: a record of 120 samples with a binary alarm file; then `others`
// files that are only listed. Returns the two files' bytes.
std::pair<std::string, std::string> PutCard(const SimulatedRecorder &recorder, int others) {
  const RecordFileInfo info = MakeInfo(3, 2);
  const RecordWriter writer(info, 2);
  const std::string measurement = RecordBytes(info, 2, MakeRecords(info, 120));
  std::string events = recscope::testing_support::AlarmHeader() + std::string(2, '\0');
  for (int i = 0; i < 5; ++i) events += recscope::testing_support::BinaryAlarm(1700000000 + i, 2);
  std::ofstream(recorder.path("SCARD01.FDT"), std::ios::binary) << measurement;
  std::ofstream(recorder.path("ACARD01.FDT"), std::ios::binary) << events;
  recorder.AddCardFile("SCARD01", 1700000000, static_cast<long long>(measurement.size()),
                       recorder.path("SCARD01.FDT"), static_cast<int>(writer.HeaderBytes().size()),
                       writer.RecordLength(), recorder.path("ACARD01.FDT"));
  std::ofstream(recorder.path("blank"), std::ios::binary) << std::string(200, '\0');
  for (int i = 1; i <= others; ++i)
    recorder.AddCardFile("S" + std::to_string(100000 + i), 1700000000 + 86400 * i, 999999 + i,
                         recorder.path("blank"), 100, 10, "");
  return {measurement, events};
}

}  // namespace

TEST(CardListCli, PrintsEveryFileOfEveryPageWithNumberNameTimeAndSize) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutCard(recorder, 11);
  const CliRun run = Cli(recorder, "card-list");
  EXPECT_EQ(run.status, 0) << run.err;
  std::string expected = "1\tSCARD01\t2023/11/14 22:13:20\t2KB\n";
  for (int i = 1; i <= 11; ++i) {
    char line[80];
    std::snprintf(line, sizeof line, "%d\tS%d\t2023/11/%02d 22:13:20\t%s\n", i + 1, 100000 + i,
                  14 + i, "1MB");
    expected += line;
  }
  EXPECT_EQ(run.out, expected);
  // Two pages: the list from file 0, then from file 10.
  EXPECT_EQ(recorder.CardCommands(), (std::vector<std::string>{"1 0 0", "1 10 0"}));
}

TEST(CardListCli, NoCardExits2With18901) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const CliRun run = Cli(recorder, "card-list");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 18901: CFカードがありません\n");
  EXPECT_EQ(run.out, "");
}

TEST(CardListCli, CardWithoutFilesExits2With18905) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  recorder.EmptyCard();
  const CliRun run = Cli(recorder, "card-list");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 18905: ファイルがありません\n");
}

TEST(CardReadCli, FetchesTheFileAndItsAlarmFileByteForByteAndPrintsThePaths) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  const auto [measurement, events] = PutCard(recorder, 2);
  std::filesystem::create_directories(recorder.path("fetched"));
  const CliRun run =
      Cli(recorder, "card-read", "--file 1 --out '" + recorder.path("fetched") + "'");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, recorder.path("fetched/SCARD01.FDT") + "\n" +
                         recorder.path("fetched/ACARD01.FDT") + "\n");
  EXPECT_EQ(ReadAll(recorder.path("fetched/SCARD01.FDT")), measurement);
  EXPECT_EQ(ReadAll(recorder.path("fetched/ACARD01.FDT")), events);
  // A second fetch does not overwrite them.
  const CliRun again =
      Cli(recorder, "card-read", "--file 1 --out '" + recorder.path("fetched") + "'");
  EXPECT_EQ(again.status, 2);
  EXPECT_EQ(ReadAll(recorder.path("fetched/SCARD01.FDT")), measurement);
}

TEST(CardReadCli, FileNotOnTheCardExits2With18905) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutCard(recorder, 0);
  const CliRun run = Cli(recorder, "card-read", "--file 2");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 18905: ファイルがありません\n");
}

TEST(CardReadCli, FailedRequestInTheDataExits2With18900AndLeavesNoFile) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutCard(recorder, 0);
  // The list takes 5 requests (write, two polls, count, one entry) and the head
  // 12; the first data block's command goes out and its first read gets no
  // answer.
  recorder.Fault("none", 20);
  recorder.Fault("noreply", 4);
  const CliRun run = Cli(recorder, "card-read", "--file 1");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 18900: 通信エラー\n");
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/SCARD01.FDT")));
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/ACARD01.FDT")));
}

TEST(CardReadCli, FailedPollOfTheHeadIsAnsweredYesAndExits2WithItsMessage) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutCard(recorder, 0);
  recorder.Fault("none", 6);  // the list and the head's command
  recorder.Fault("noreply", 4);
  const CliRun run = Cli(recorder, "card-read", "--file 1");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "error 11102: タイムアウト\n");
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/SCARD01.FDT")));
}

TEST(CardReadCli, SixByteReplyEndsAfterTheTimeoutWithExit3) {
  SimulatedRecorder recorder;
  ASSERT_TRUE(recorder.ready());
  PutCard(recorder, 0);
  recorder.Fault("none", 8);
  recorder.Fault("six", 1, 0);
  const CliRun run = Cli(recorder, "card-read", "--file 1 --timeout 1");
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("six bytes"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(recorder.path("home/SCARD01.FDT")));
}
