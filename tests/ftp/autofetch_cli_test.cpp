// recscope-cli autofetch --once from the outside, against a real FTP server.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "auto_fetch_test_support.h"
#include "ftp/operation_log.h"
#include "platform/text_encoding.h"
#include "shell/catalogue.h"

using namespace recscope;
using namespace recscope::testing_support;

namespace {

struct Outcome {
  int status = -1;
  std::string out;
};

// Runs the batch command with `arguments` (already quoted for the shell); stderr
// joins stdout.
Outcome RunCli(const std::string &arguments) {
  const std::string command =
      "LC_ALL=C.UTF-8 '" RECSCOPE_BINARY_DIR "/bin/recscope-cli' " + arguments + " 2>&1";
  Outcome outcome;
  FILE *pipe = popen(command.c_str(), "r");
  if (!pipe) return outcome;
  std::array<char, 4096> buffer{};
  std::size_t read = 0;
  while ((read = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
    outcome.out.append(buffer.data(), read);
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

std::string Fetched(int n, const std::string &name) {
  return GetMessageText(10860, {{"@NUM@", std::to_string(n)}}) + name + GetMessageText(10853);
}

}  // namespace

TEST(AutofetchCli, OnceFetchesTheConfiguredRecordersAndLogsIt) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 1234, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 56, 2);
  WriteBytes(server.TotalizeFolder() / "M0001.FDT", 300, 3);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(2, "127.0.0.1", "user", "pass", true);

  const Outcome first = RunCli("--home '" + home.Str() + "' autofetch --once --port " +
                               std::to_string(server.Port()));
  EXPECT_EQ(first.status, 0) << first.out;
  EXPECT_EQ(first.out, GetMessageText(10850) + "\n" + Fetched(2, "S0001.FDT") + "\n" +
                           Fetched(2, "A0001.FDT") + "\n" + Fetched(2, "M0001.FDT") + "\n" +
                           GetMessageText(10851) + "\nrecorder 2: OK\nfetched: 3\n");
  const std::filesystem::path folder = home.Path() / "IP127000000001";
  EXPECT_EQ(ReadAll(folder / "S0001.FDT"), ReadAll(server.RecordFolder() / "S0001.FDT"));
  EXPECT_EQ(ReadAll(folder / "A0001.FDT"), ReadAll(server.RecordFolder() / "A0001.FDT"));
  EXPECT_EQ(ReadAll(folder / "T000000" / "M0001.FDT"),
            ReadAll(server.TotalizeFolder() / "M0001.FDT"));
  const std::string log = Cp932ToUtf8(ReadAll(LogFilePath(home.Str())));
  EXPECT_NE(log.find(" " + Fetched(2, "S0001.FDT") + "\r\n"), std::string::npos);

  // A second run finds everything in place.
  const Outcome second = RunCli("--home '" + home.Str() + "' autofetch --once --port " +
                                std::to_string(server.Port()));
  EXPECT_EQ(second.status, 0);
  EXPECT_EQ(second.out, GetMessageText(10850) + "\n" + GetMessageText(10851) +
                            "\nrecorder 2: OK\nfetched: 0\n");
}

TEST(AutofetchCli, PortComesFromTheEnvironmentWhenNotGiven) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0009.FDT", 10, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  setenv("RECSCOPE_FTP_PORT", std::to_string(server.Port()).c_str(), 1);
  const Outcome run = RunCli("--home '" + home.Str() + "' autofetch --once");
  unsetenv("RECSCOPE_FTP_PORT");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(std::filesystem::exists(home.Path() / "IP127000000001" / "S0009.FDT"));
}

TEST(AutofetchCli, FailedRecorderExitsWith10801) {
  FtpServerOptions options;
  options.refuseLogin = true;
  FtpTestServer server(options);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  const Outcome run = RunCli("--home '" + home.Str() + "' autofetch --once --port " +
                             std::to_string(server.Port()));
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.out.find("recorder 1: NG\n"), std::string::npos);
  EXPECT_NE(run.out.find("error 10801: " + GetMessageText(10801) + "\n"), std::string::npos);
}

TEST(AutofetchCli, WithoutOnceOrWithABadPortIsAUsageError) {
  FetchHome home;
  EXPECT_EQ(RunCli("--home '" + home.Str() + "' autofetch").status, 1);
  EXPECT_EQ(RunCli("--home '" + home.Str() + "' autofetch --once --port 0").status, 1);
  EXPECT_EQ(RunCli("--home '" + home.Str() + "' autofetch --once --port x").status, 1);
  EXPECT_FALSE(std::filesystem::exists(LogFilePath(home.Str())));
  const Outcome help = RunCli("autofetch --help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("autofetch --once [--port N]"), std::string::npos);
}
