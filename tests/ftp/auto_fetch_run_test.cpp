// One run of the automatic fetch against real FTP servers on loopback addresses.
#include "ftp/auto_fetch.h"

#include <gtest/gtest.h>

#include <vector>

#include "auto_fetch_test_support.h"
#include "ftp/operation_log.h"
#include "platform/text_encoding.h"
#include "shell/catalogue.h"

using namespace recscope;
using namespace recscope::testing_support;

namespace {

FetchRunOptions Options(const FetchHome &home, int port) {
  FetchRunOptions options;
  options.ProgramFolder = home.Str();
  options.Port = port;
  options.ConnectTimeout = 5;
  options.ReplyTimeout = 5;
  options.StallTimeout = 5;
  return options;
}

// The messages of the operation log, without their times.
std::vector<std::string> LogMessages(const FetchHome &home) {
  const std::string text = Cp932ToUtf8(ReadAll(LogFilePath(home.Str())));
  std::vector<std::string> messages;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find("\r\n", start);
    if (end == std::string::npos) end = text.size();
    const std::string line = text.substr(start, end - start);
    messages.push_back(line.size() > 20 ? line.substr(20) : line);
    start = end + 2;
  }
  return messages;
}

std::string Fetched(int n, const std::string &name) {
  return GetMessageText(10860, {{"@NUM@", std::to_string(n)}}) + name + GetMessageText(10853);
}

std::string FetchError(int n, const std::string &name) {
  return GetMessageText(10860, {{"@NUM@", std::to_string(n)}}) + name + GetMessageText(10854);
}

}  // namespace

TEST(AutoFetchRun, SeveralRecordersAreFetchedInOneCycleIntoTheirOwnFolders) {
  // Two recorders on two loopback addresses at one port: the first has the card
  // layout with S000000 and MEMORY, the second shows its files in the root.
  FtpServerOptions first;
  first.memoryLayout = true;
  FtpTestServer one(first);
  WriteBytes(one.RecordFolder() / "S0001.FDT", 3000, 1);
  WriteBytes(one.RecordFolder() / "A0001.FDT", 120, 2);
  WriteBytes(one.TotalizeFolder() / "T0001.FDT", 700, 3);
  ASSERT_TRUE(one.Start());
  FtpServerOptions second;
  second.host = "127.0.0.2";
  second.port = one.Port();
  FtpTestServer two(second);
  WriteBytes(two.RecordFolder() / "S0002.FDT", 5000, 4);
  WriteBytes(two.TotalizeFolder() / "D0002.FDT", 900, 5);
  ASSERT_TRUE(two.Start());

  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  home.SetRecorder(2, "127.0.0.3", "user", "pass", false);  // not taking part
  home.SetRecorder(3, "127.0.0.2", "user", "pass", true);

  std::vector<std::pair<int, std::string>> statuses;
  std::vector<std::string> progress;
  FetchRunHooks hooks;
  hooks.Status = [&](int n, const std::string &s) { statuses.emplace_back(n, s); };
  hooks.Progress = [&](const std::string &text) { progress.push_back(text); };
  const FetchRunResult result = RunFetchCycle(Options(home, one.Port()), hooks);

  EXPECT_FALSE(result.AnyFailed);
  EXPECT_FALSE(result.Stopped);
  EXPECT_EQ(result.Fetched, 5);
  EXPECT_EQ(result.RecorderStatus[0], "OK");
  EXPECT_EQ(result.RecorderStatus[1], " ");
  EXPECT_EQ(result.RecorderStatus[2], "OK");

  const std::filesystem::path a = home.Path() / "IP127000000001";
  const std::filesystem::path b = home.Path() / "IP127000000002";
  EXPECT_EQ(ReadAll(a / "S000000" / "S0001.FDT"), ReadAll(one.RecordFolder() / "S0001.FDT"));
  EXPECT_EQ(ReadAll(a / "S000000" / "A0001.FDT"), ReadAll(one.RecordFolder() / "A0001.FDT"));
  EXPECT_EQ(ReadAll(a / "S000000" / "T000000" / "T0001.FDT"),
            ReadAll(one.TotalizeFolder() / "T0001.FDT"));
  EXPECT_EQ(ReadAll(b / "S0002.FDT"), ReadAll(two.RecordFolder() / "S0002.FDT"));
  EXPECT_EQ(ReadAll(b / "T000000" / "D0002.FDT"), ReadAll(two.TotalizeFolder() / "D0002.FDT"));
  EXPECT_EQ(TreeOf(home.Path()),
            (std::set<std::string>{
                "IP127000000001/", "IP127000000001/S000000/", "IP127000000001/S000000/S0001.FDT",
                "IP127000000001/S000000/A0001.FDT", "IP127000000001/S000000/T000000/",
                "IP127000000001/S000000/T000000/T0001.FDT", "IP127000000002/",
                "IP127000000002/S0002.FDT", "IP127000000002/T000000/",
                "IP127000000002/T000000/D0002.FDT", "LogMsg.txt", "VIEWERCOM.INI"}));

  EXPECT_EQ(LogMessages(home),
            (std::vector<std::string>{GetMessageText(10850), Fetched(1, "S0001.FDT"),
                                      Fetched(1, "A0001.FDT"), Fetched(1, "T0001.FDT"),
                                      Fetched(3, "S0002.FDT"), Fetched(3, "D0002.FDT"),
                                      GetMessageText(10851)}));
  EXPECT_EQ(statuses,
            (std::vector<std::pair<int, std::string>>{{1, "OK"}, {1, "OK"}, {3, "OK"}, {3, "OK"}}));
  // The record folder of recorder 1 lists S0001, A0001, and the folder T000000.
  ASSERT_FALSE(progress.empty());
  EXPECT_EQ(progress.front(), GetMessageText(10804) + "No.1 1/3");
  EXPECT_NE(std::find(progress.begin(), progress.end(), GetMessageText(10805) + "No.3 1/1"),
            progress.end());
}

TEST(AutoFetchRun, FileAlreadyPresentWithTheSameLengthIsNotFetchedAgain) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 2048, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 64, 2);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  // Same lengths, other bytes: the length alone decides.
  WriteBytes(home.Path() / "IP127000000001" / "S0001.FDT", 2048, 9);
  WriteBytes(home.Path() / "IP127000000001" / "A0001.FDT", 64, 9);
  const std::string kept = ReadAll(home.Path() / "IP127000000001" / "S0001.FDT");

  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_FALSE(result.AnyFailed);
  EXPECT_EQ(result.Fetched, 0);
  EXPECT_EQ(ReadAll(home.Path() / "IP127000000001" / "S0001.FDT"), kept);
  EXPECT_EQ(CountLines(server.CommandLog(), "RETR S0001.FDT"), 0);
  EXPECT_EQ(LogMessages(home),
            (std::vector<std::string>{GetMessageText(10850), GetMessageText(10851)}));
}

TEST(AutoFetchRun, RecordFileWhoseAlarmTwinIsMissingLocallyIsFetchedWithIt) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 2048, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 64, 2);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  WriteBytes(home.Path() / "IP127000000001" / "S0001.FDT", 2048, 1);

  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_EQ(result.Fetched, 2);
  EXPECT_EQ(ReadAll(home.Path() / "IP127000000001" / "A0001.FDT"),
            ReadAll(server.RecordFolder() / "A0001.FDT"));
}

TEST(AutoFetchRun, DeletedLocalFileIsFetchedAgainNextTime) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 1500, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  const std::filesystem::path local = home.Path() / "IP127000000001" / "S0001.FDT";

  EXPECT_EQ(RunFetchCycle(Options(home, server.Port())).Fetched, 1);
  EXPECT_EQ(RunFetchCycle(Options(home, server.Port())).Fetched, 0);
  std::filesystem::remove(local);
  EXPECT_EQ(RunFetchCycle(Options(home, server.Port())).Fetched, 1);
  EXPECT_EQ(ReadAll(local), ReadAll(server.RecordFolder() / "S0001.FDT"));
  EXPECT_EQ(CountLines(server.CommandLog(), "RETR S0001.FDT"), 2);
}

TEST(AutoFetchRun, LocalFileWithAnotherLengthIsFetchedAnewOverTheOld) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 1500, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  const std::filesystem::path local = home.Path() / "IP127000000001" / "S0001.FDT";
  WriteBytes(local, 700, 5);

  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_EQ(result.Fetched, 1);
  EXPECT_EQ(ReadAll(local), ReadAll(server.RecordFolder() / "S0001.FDT"));
  EXPECT_EQ(TreeOf(home.Path() / "IP127000000001"),
            (std::set<std::string>{"S0001.FDT", "T000000/"}));
}

TEST(AutoFetchRun, RemoteAlarmFileWithoutItsRecordFileIsNeverFetched) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "A0007.FDT", 80, 1);
  WriteBytes(server.RecordFolder() / "a0008.fdt", 80, 2);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);

  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_FALSE(result.AnyFailed);
  EXPECT_EQ(result.Fetched, 0);
  EXPECT_EQ(result.RecorderStatus[0], "OK");
  EXPECT_FALSE(std::filesystem::exists(home.Path() / "IP127000000001" / "A0007.FDT"));
  EXPECT_EQ(server.CommandLog().find("RETR"), std::string::npos);
}

TEST(AutoFetchRun, RecordFileWithoutAlarmTwinOnTheServerIsStillASuccess) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0003.FDT", 999, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_FALSE(result.AnyFailed);
  EXPECT_EQ(result.Fetched, 1);
  EXPECT_EQ(result.RecorderStatus[0], "OK");
}

TEST(AutoFetchRun, CutTransferIsTriedThreeTimesAndNeverCountedFetched) {
  FtpServerOptions options;
  options.cutTransfer = true;
  FtpTestServer server(options);
  WriteBytes(server.RecordFolder() / "S0001.FDT", 40000, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);

  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_TRUE(result.AnyFailed);
  EXPECT_EQ(result.Fetched, 0);
  EXPECT_EQ(result.RecorderStatus[0], "NG");
  EXPECT_EQ(CountLines(server.CommandLog(), "RETR S0001.FDT"), 3);
  // Nothing of the cut file stands anywhere: not in the target folder, not beside
  // the program folder, not beside it in the parent.
  EXPECT_EQ(TreeOf(home.Path() / "IP127000000001"), (std::set<std::string>{}));
  EXPECT_EQ(TreeOf(home.Parent()),
            (std::set<std::string>{"home/", "home/IP127000000001/", "home/LogMsg.txt",
                                   "home/VIEWERCOM.INI"}));
  // A failed record folder leaves the totalize folder alone.
  EXPECT_EQ(LogMessages(home),
            (std::vector<std::string>{GetMessageText(10850), FetchError(1, "S0001.FDT"),
                                      GetMessageText(10851)}));
}

TEST(AutoFetchRun, HostileNamesAreRefusedAndNothingIsWrittenOutsideTheTargetFolders) {
  FtpServerOptions options;
  options.hostileNames = true;
  FtpTestServer server(options);
  WriteBytes(server.RecordFolder() / "S0001.FDT", 1000, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);

  const FetchRunResult result = RunFetchCycle(Options(home, server.Port()));
  EXPECT_TRUE(result.AnyFailed);
  EXPECT_EQ(result.RecorderStatus[0], "NG");
  EXPECT_EQ(result.Fetched, 1);  // the honest file still comes
  EXPECT_EQ(ReadAll(home.Path() / "IP127000000001" / "S0001.FDT"),
            ReadAll(server.RecordFolder() / "S0001.FDT"));
  // No hostile name was ever asked for, and each is logged as a failed name with
  // its control characters shown as "?".
  const std::string commands = server.CommandLog();
  EXPECT_EQ(CountLines(commands, "RETR S0001.FDT"), 1);
  EXPECT_EQ(commands.find("RETR ../"), std::string::npos);
  EXPECT_EQ(commands.find("RETR /etc"), std::string::npos);
  EXPECT_EQ(commands.find("RETR C:"), std::string::npos);
  const std::vector<std::string> log = LogMessages(home);
  for (const char *name : {"../x.FDT", "/etc/S1.FDT", "S?CTL.FDT", "S..\\evil.FDT", "C:S2.FDT"})
    EXPECT_NE(std::find(log.begin(), log.end(), FetchError(1, name)), log.end()) << name;
  EXPECT_EQ(TreeOf(home.Parent()),
            (std::set<std::string>{"home/", "home/IP127000000001/", "home/IP127000000001/S0001.FDT",
                                   "home/LogMsg.txt", "home/VIEWERCOM.INI"}));
  EXPECT_FALSE(std::filesystem::exists(home.Path() / "x.FDT"));
  EXPECT_FALSE(std::filesystem::exists(home.Parent() / "x.FDT"));
}

TEST(AutoFetchRun, RecorderThatRefusesTheLoginIsLoggedAndTheNextIsTried) {
  FtpServerOptions refusing;
  refusing.refuseLogin = true;
  FtpTestServer bad(refusing);
  ASSERT_TRUE(bad.Start());
  FtpServerOptions good;
  good.host = "127.0.0.2";
  good.port = bad.Port();
  FtpTestServer ok(good);
  WriteBytes(ok.RecordFolder() / "S0001.FDT", 100, 1);
  ASSERT_TRUE(ok.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  home.SetRecorder(2, "127.0.0.2", "user", "pass", true);

  const FetchRunResult result = RunFetchCycle(Options(home, bad.Port()));
  EXPECT_TRUE(result.AnyFailed);
  EXPECT_EQ(result.RecorderStatus[0], "NG");
  EXPECT_EQ(result.RecorderStatus[1], "OK");
  EXPECT_EQ(LogMessages(home), (std::vector<std::string>{
                                   GetMessageText(10850),
                                   GetMessageText(10860, {{"@NUM@", "1"}}) + GetMessageText(10855),
                                   Fetched(2, "S0001.FDT"), GetMessageText(10851)}));
}

TEST(AutoFetchRun, AddressThatIsNoDottedAddressIsACommunicationErrorWithNoFolder) {
  FetchHome home;
  home.SetRecorder(1, "../../tmp", "user", "pass", true);
  const FetchRunResult result = RunFetchCycle(Options(home, 21));
  EXPECT_EQ(result.RecorderStatus[0], "NG");
  EXPECT_EQ(TreeOf(home.Parent()),
            (std::set<std::string>{"home/", "home/LogMsg.txt", "home/VIEWERCOM.INI"}));
}

TEST(AutoFetchRun, StopEndsTheRunBeforeTheNextFile) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  ASSERT_TRUE(server.Start());
  FetchHome home;
  home.SetRecorder(1, "127.0.0.1", "user", "pass", true);
  std::atomic<bool> stop{false};
  FetchRunOptions options = Options(home, server.Port());
  options.Stop = &stop;
  FetchRunHooks hooks;
  // The stop comes while the folder's list is in hand, before its first file.
  hooks.Progress = [&stop](const std::string &) { stop = true; };
  const FetchRunResult result = RunFetchCycle(options, hooks);
  EXPECT_TRUE(result.Stopped);
  EXPECT_EQ(result.Fetched, 0);
  EXPECT_EQ(server.CommandLog().find("RETR"), std::string::npos);
  EXPECT_EQ(LogMessages(home),
            (std::vector<std::string>{GetMessageText(10850), GetMessageText(10851)}));
}
