// The browser's work without its window: size texts, the rows of the remote
// list, the today-year step on a real listing, downloads with the alarm twin and
// deletes against a real server.
#include <gtest/gtest.h>
#include <sys/time.h>

#include <filesystem>
#include <map>
#include <set>

#include "ftp/ftp_browser.h"
#include "ftp/operation_log.h"
#include "ftp_server_fixture.h"
#include "shell/catalogue.h"
#include "shell/civil_time.h"

namespace recscope {
namespace {

namespace fs = std::filesystem;
using testing_support::FtpServerOptions;
using testing_support::FtpTestServer;
using testing_support::MakeTempFolder;
using testing_support::ReadAll;
using testing_support::WriteBytes;

std::set<std::string> FolderNames(const fs::path &folder) {
  std::set<std::string> names;
  for (const auto &item : fs::directory_iterator(folder))
    names.insert(item.path().filename().string());
  return names;
}

// Sets a file's modification time to the local civil time `civil`.
void SetLocalTime(const fs::path &path, std::int64_t civilSeconds) {
  CivilTime civil = ToCivil(civilSeconds);
  std::tm local{};
  local.tm_year = civil.year - 1900;
  local.tm_mon = civil.month - 1;
  local.tm_mday = civil.day;
  local.tm_hour = civil.hour;
  local.tm_min = civil.minute;
  local.tm_sec = civil.second;
  local.tm_isdst = -1;
  std::time_t when = std::mktime(&local);
  timeval times[2] = {{when, 0}, {when, 0}};
  ASSERT_EQ(utimes(path.c_str(), times), 0);
}

TEST(FtpFileSize, AFileOfExactly1024BytesShowsBytesAnd1025ShowsOneKilobyte) {
  EXPECT_EQ(FormatFileSize(1024), "1024" + GetMessageText(30113));
  EXPECT_EQ(FormatFileSize(1025), "1" + GetMessageText(30110));
  EXPECT_EQ(FormatFileSize(1024), "1024  B");
  EXPECT_EQ(FormatFileSize(1025), "1 KB");
  EXPECT_EQ(FormatFileSize(0), "0  B");
}

TEST(FtpFileSize, AFileOf1000To1024KilobytesShowsOneMegabyte) {
  EXPECT_EQ(FormatFileSize(1000.0 * 1024), "1" + GetMessageText(30111));
  EXPECT_EQ(FormatFileSize(1024.0 * 1024), "1 MB");
  // 999.4 KB rounds to 999 and stays in kilobytes.
  EXPECT_EQ(FormatFileSize(999.4 * 1024), "999 KB");
  // 999.5 KB rounds to 1000 (a tie goes to the even number): a megabyte.
  EXPECT_EQ(FormatFileSize(999.5 * 1024), "1 MB");
}

TEST(FtpFileSize, GigabytesAndTheEmptyTextFrom1000Gigabytes) {
  EXPECT_EQ(FormatFileSize(1536.0 * 1024 * 1024), "2" + GetMessageText(30112));
  EXPECT_EQ(FormatFileSize(2.5 * 1024), "2 KB");
  EXPECT_EQ(FormatFileSize(3.5 * 1024), "4 KB");
  EXPECT_EQ(FormatFileSize(999.0 * 1024 * 1024 * 1024), "999 GB");
  EXPECT_EQ(FormatFileSize(1000.0 * 1024 * 1024 * 1024), "");
}

TEST(FtpRemoteRows, RecordOptionShowsSFilesAndTotalizeOptionEveryFdt) {
  std::vector<FtpEntry> entries;
  for (const char *name :
       {"S0001.FDT", "A0001.FDT", "S0002.fdt", "T0001.FDT", "notes.txt", "../x.FDT", "S\x01.FDT"}) {
    FtpEntry entry;
    entry.FileName = name;
    entry.FileSize = 2048;
    entry.FileTime = FromCivil({2025, 3, 4, 5, 6, 7});
    entries.push_back(entry);
  }
  FtpEntry folder;
  folder.FileName = "S000000.FDT";
  folder.IsFolder = true;
  entries.push_back(folder);
  std::vector<RemoteRow> rows = RemoteRows(entries, false, 1);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].Name, "S0001.FDT");
  EXPECT_EQ(rows[0].TimeText, "2025/03/04 05:06:07");
  EXPECT_EQ(rows[0].SizeText, "2 KB");
  EXPECT_EQ(rows[1].Name, "S0002.fdt");
  rows = RemoteRows(entries, true, 1);
  std::vector<std::string> names;
  for (const RemoteRow &row : rows) names.push_back(row.Name);
  EXPECT_EQ(names, (std::vector<std::string>{"S0001.FDT", "A0001.FDT", "S0002.fdt", "T0001.FDT"}));
}

TEST(FtpBrowser, AFileOfTodayShowsOneYearAheadOfTheServersList) {
  FtpTestServer server;
  std::int64_t now = LocalNowSeconds();
  CivilTime today = ToCivil(now);
  // Half past midnight today, and a file of two days before.
  std::int64_t todayTime = FromCivil({today.year, today.month, today.day, 0, 30, 0});
  std::int64_t olderTime = todayTime - 2 * 86400;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 100, 2);
  SetLocalTime(server.RecordFolder() / "S0001.FDT", todayTime);
  SetLocalTime(server.RecordFolder() / "S0002.FDT", olderTime);
  ASSERT_TRUE(server.Start());

  FtpSession raw(server.Endpoint());
  ASSERT_EQ(raw.Open("/"), FtpStatus::Ok);
  FtpListing rawListing = raw.List(now);
  FtpListing shown = ListFolder(server.Endpoint(), "/", now);
  ASSERT_EQ(shown.Status, FtpStatus::Ok);
  std::map<std::string, std::int64_t> rawTimes, shownTimes;
  for (const FtpEntry &e : rawListing.Entries) rawTimes[e.FileName] = e.FileTime;
  for (const FtpEntry &e : shown.Entries) shownTimes[e.FileName] = e.FileTime;
  EXPECT_EQ(rawTimes["S0001.FDT"], todayTime);
  CivilTime ahead = ToCivil(todayTime);
  ahead.year += 1;
  EXPECT_EQ(shownTimes["S0001.FDT"], FromCivil(ahead));
  EXPECT_EQ(shownTimes["S0002.FDT"], rawTimes["S0002.FDT"]);
  EXPECT_EQ(shownTimes["S0002.FDT"], olderTime);
}

TEST(FtpBrowser, DownloadOfARecordFileWithoutAlarmTwinIsStillASuccess) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 3000, 1);
  ASSERT_TRUE(server.Start());
  fs::path target = MakeTempFolder("recscope-ftp-target");
  DownloadOutcome outcome = DownloadFiles(server.Endpoint(), "/", {"S0001.FDT"}, target.string());
  EXPECT_TRUE(outcome.Failed.empty());
  EXPECT_TRUE(outcome.Standing.empty());
  EXPECT_EQ(outcome.Written, std::vector<std::string>{(target / "S0001.FDT").string()});
  EXPECT_EQ(FolderNames(target), std::set<std::string>{"S0001.FDT"});
  EXPECT_EQ(ReadAll(target / "S0001.FDT"), ReadAll(server.RecordFolder() / "S0001.FDT"));
  fs::remove_all(target);
}

TEST(FtpBrowser, DownloadBringsTheAlarmTwinAndNamesStandingAndFailedFiles) {
  FtpTestServer server({.memoryLayout = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 3000, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 400, 2);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 500, 3);
  ASSERT_TRUE(server.Start());
  fs::path target = MakeTempFolder("recscope-ftp-target");
  WriteBytes(target / "S0002.FDT", 7, 9);
  DownloadOutcome outcome =
      DownloadFiles(server.Endpoint(), "/S000000",
                    {"S0001.FDT", "S0002.FDT", "S0404.FDT", "../x.FDT"}, target.string());
  EXPECT_EQ(outcome.Standing, std::vector<std::string>{"S0002.FDT"});
  EXPECT_EQ(outcome.Failed, (std::vector<std::string>{"S0404.FDT", "../x.FDT"}));
  EXPECT_EQ(FolderNames(target), (std::set<std::string>{"S0001.FDT", "A0001.FDT", "S0002.FDT"}));
  EXPECT_EQ(ReadAll(target / "A0001.FDT"), ReadAll(server.RecordFolder() / "A0001.FDT"));
  EXPECT_EQ(ReadAll(target / "S0002.FDT").size(), 7u);
  EXPECT_EQ(NameLines(outcome.Failed), "S0404.FDT\n../x.FDT\n");
  fs::remove_all(target);
}

TEST(FtpBrowser, CutTransferIsAFailedNameAndLeavesNothing) {
  FtpTestServer server({.cutTransfer = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 50000, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 4000, 2);
  ASSERT_TRUE(server.Start());
  fs::path target = MakeTempFolder("recscope-ftp-target");
  DownloadOutcome outcome = DownloadFiles(server.Endpoint(), "/", {"S0001.FDT"}, target.string());
  EXPECT_EQ(outcome.Failed, std::vector<std::string>{"S0001.FDT"});
  EXPECT_TRUE(outcome.Written.empty());
  EXPECT_TRUE(fs::is_empty(target));
  fs::remove_all(target);
}

TEST(FtpBrowser, TotalizeFilesComeFromT000000InBothLayouts) {
  for (bool memory : {false, true}) {
    FtpTestServer server({.memoryLayout = memory});
    WriteBytes(server.TotalizeFolder() / "T0001.FDT", 900, 1);
    ASSERT_TRUE(server.Start());
    int count = DetectLayout(server.Endpoint());
    EXPECT_EQ(count, memory ? 2 : 0);
    std::string folder = OptionFolder(RecordFolderForLayout(count), true);
    EXPECT_EQ(folder, memory ? "/S000000/T000000" : "/T000000");
    FtpListing listing = ListFolder(server.Endpoint(), folder, LocalNowSeconds());
    ASSERT_EQ(listing.Status, FtpStatus::Ok);
    std::vector<RemoteRow> rows = RemoteRows(listing.Entries, true, 1);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].Name, "T0001.FDT");
    EXPECT_EQ(rows[0].SizeText, "900  B");
  }
}

TEST(FtpBrowser, DeleteTakesTheAlarmTwinAndNamesWhatFailed) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 100, 2);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 100, 3);
  ASSERT_TRUE(server.Start());
  std::vector<std::string> failed =
      DeleteFiles(server.Endpoint(), "/", {"S0001.FDT", "S0404.FDT", "/etc/S1.FDT"});
  EXPECT_EQ(failed, (std::vector<std::string>{"S0404.FDT", "/etc/S1.FDT"}));
  EXPECT_EQ(FolderNames(server.RecordFolder()), (std::set<std::string>{"S0002.FDT", "T000000"}));
}

TEST(FtpBrowser, MessagesForFailedSessions) {
  EXPECT_EQ(MessageForStatus(FtpStatus::NoNetwork), 30002);
  EXPECT_EQ(MessageForStatus(FtpStatus::NoConnect), 30001);
  EXPECT_EQ(MessageForStatus(FtpStatus::NoFolder), 30000);
  EXPECT_EQ(MessageForStatus(FtpStatus::NoList), 30105);
  FtpTestServer server({.refuseLogin = true});
  ASSERT_TRUE(server.Start());
  FtpListing listing = ListFolder(server.Endpoint(), "/", LocalNowSeconds());
  EXPECT_EQ(MessageForStatus(listing.Status), 30001);
}

}  // namespace
}  // namespace recscope
