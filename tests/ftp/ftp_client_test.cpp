// The FTP client against a real server on 127.0.0.1: listing in both layouts and
// by the fallback, downloads byte for byte, hostile names, cut transfers, refused
// logins and a slow server.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>

#include "ftp/ftp_client.h"
#include "ftp_server_fixture.h"
#include "shell/civil_time.h"

namespace recscope {
namespace {

namespace fs = std::filesystem;
using testing_support::FtpServerOptions;
using testing_support::FtpTestServer;
using testing_support::MakeTempFolder;
using testing_support::ReadAll;
using testing_support::WriteBytes;

std::int64_t Now() { return static_cast<std::int64_t>(std::time(nullptr)); }

std::set<std::string> FolderNames(const fs::path &folder) {
  std::set<std::string> names;
  for (const auto &item : fs::directory_iterator(folder))
    names.insert(item.path().filename().string());
  return names;
}

const FtpEntry *Find(const std::vector<FtpEntry> &entries, const std::string &name) {
  for (const FtpEntry &entry : entries)
    if (entry.FileName == name) return &entry;
  return nullptr;
}

TEST(FtpListLine, UnixLineWithTimeTakesTheYearOfTheClock) {
  CivilTime now{2026, 11, 22, 12, 0, 0};
  FtpEntry entry;
  ASSERT_TRUE(ParseListLine("-rw-r--r--   1 root     root         5000 Nov 20 21:33 S0001.FDT",
                            FromCivil(now), entry));
  EXPECT_EQ(entry.FileName, "S0001.FDT");
  EXPECT_EQ(entry.FileSize, 5000);
  EXPECT_FALSE(entry.IsFolder);
  EXPECT_EQ(RecordTimeText(entry.FileTime), "2026/11/20 21:33:00");
}

TEST(FtpListLine, UnixLineAheadOfTheClockIsLastYear) {
  CivilTime now{2026, 1, 3, 12, 0, 0};
  FtpEntry entry;
  ASSERT_TRUE(ParseListLine("-rw-r--r--   1 u g 12 Dec 30 08:00 S0002.FDT", FromCivil(now), entry));
  EXPECT_EQ(RecordTimeText(entry.FileTime), "2025/12/30 08:00:00");
}

TEST(FtpListLine, UnixLineWithYearAndBlankInName) {
  FtpEntry entry;
  ASSERT_TRUE(ParseListLine("-rw-r--r--   1 owner    group        2048 Jan 05  2024 my file.FDT", 0,
                            entry));
  EXPECT_EQ(entry.FileName, "my file.FDT");
  EXPECT_EQ(RecordTimeText(entry.FileTime), "2024/01/05 00:00:00");
}

TEST(FtpListLine, FolderAndDosForms) {
  FtpEntry entry;
  ASSERT_TRUE(ParseListLine("drwxr-xr-x   2 root root 4096 Nov 22 21:33 S000000",
                            FromCivil({2026, 11, 22, 22, 0, 0}), entry));
  EXPECT_TRUE(entry.IsFolder);
  EXPECT_EQ(entry.FileName, "S000000");
  ASSERT_TRUE(ParseListLine("11-22-26  09:30PM       <DIR>          MEMORY", 0, entry));
  EXPECT_TRUE(entry.IsFolder);
  EXPECT_EQ(entry.FileName, "MEMORY");
  ASSERT_TRUE(ParseListLine("11-22-26  09:30PM               1234 S0003.FDT", 0, entry));
  EXPECT_FALSE(entry.IsFolder);
  EXPECT_EQ(entry.FileSize, 1234);
  EXPECT_EQ(RecordTimeText(entry.FileTime), "2026/11/22 21:30:00");
  EXPECT_FALSE(ParseListLine("total 12", 0, entry));
}

TEST(FtpNames, SafeNamesAndTwins) {
  EXPECT_TRUE(IsSafeRemoteName("S0001.FDT"));
  EXPECT_TRUE(IsSafeRemoteName("S 01.FDT"));
  EXPECT_FALSE(IsSafeRemoteName(""));
  EXPECT_FALSE(IsSafeRemoteName("."));
  EXPECT_FALSE(IsSafeRemoteName(".."));
  EXPECT_FALSE(IsSafeRemoteName("../x.FDT"));
  EXPECT_FALSE(IsSafeRemoteName("/etc/S1.FDT"));
  EXPECT_FALSE(IsSafeRemoteName("S..\\evil.FDT"));
  EXPECT_FALSE(IsSafeRemoteName("a\\b.FDT"));
  EXPECT_FALSE(IsSafeRemoteName("C:S2.FDT"));
  EXPECT_FALSE(
      IsSafeRemoteName("S\x01"
                       "CTL.FDT"));
  EXPECT_FALSE(IsSafeRemoteName("S0001.FDT\n"));
  EXPECT_FALSE(IsSafeRemoteName("S\x7f.FDT"));
  EXPECT_EQ(AlarmName("S0001.FDT"), "A0001.FDT");
  EXPECT_EQ(AlarmName("XS01.FDT"), "XA01.FDT");
  EXPECT_EQ(AlarmName("T0001.FDT"), "");
  EXPECT_TRUE(IsRemoteRecordName("S0001.fdt"));
  EXPECT_FALSE(IsRemoteRecordName("s0001.FDT"));
  EXPECT_FALSE(IsRemoteRecordName("S0001.TXT"));
  EXPECT_EQ(NormalFolder("/S000000\\T000000"), "/S000000/T000000");
  EXPECT_EQ(TotalizeFolder("/"), "/T000000");
  EXPECT_EQ(TotalizeFolder("/S000000"), "/S000000/T000000");
}

TEST(FtpToday, OnlyTodaysEntriesGoOneYearAhead) {
  std::int64_t today = FromCivil({2026, 11, 22, 15, 0, 0});
  std::vector<FtpEntry> entries(3);
  entries[0].FileTime = FromCivil({2026, 11, 22, 9, 5, 0});
  entries[1].FileTime = FromCivil({2026, 11, 21, 23, 59, 0});
  entries[2].FileTime = FromCivil({2026, 11, 22, 1, 0, 0});
  entries[2].IsFolder = true;
  ApplyTodayYear(entries, today);
  EXPECT_EQ(RecordTimeText(entries[0].FileTime), "2027/11/22 09:05:00");
  EXPECT_EQ(RecordTimeText(entries[1].FileTime), "2026/11/21 23:59:00");
  EXPECT_EQ(RecordTimeText(entries[2].FileTime), "2026/11/22 01:00:00");
}

TEST(FtpClient, ListsPlainFilesWithSizesInTheFlatLayout) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 5000, 1);
  WriteBytes(server.RecordFolder() / "A0001.FDT", 300, 2);
  ASSERT_TRUE(server.Start());
  EXPECT_EQ(DetectLayout(server.Endpoint()), 0);
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open("/"), FtpStatus::Ok);
  FtpListing listing = session.List(Now());
  ASSERT_EQ(listing.Status, FtpStatus::Ok);
  EXPECT_FALSE(listing.ByFallback);
  const FtpEntry *record = Find(listing.Entries, "S0001.FDT");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->FileSize, 5000);
  ASSERT_NE(Find(listing.Entries, "A0001.FDT"), nullptr);
  EXPECT_EQ(Find(listing.Entries, "A0001.FDT")->FileSize, 300);
  const FtpEntry *folder = Find(listing.Entries, "T000000");
  ASSERT_NE(folder, nullptr);
  EXPECT_TRUE(folder->IsFolder);
}

TEST(FtpClient, MemoryLayoutCountsTwoFoldersAndListsTheRecordFolder) {
  FtpTestServer server({.memoryLayout = true});
  WriteBytes(server.RecordFolder() / "S0007.FDT", 1024, 3);
  WriteBytes(server.TotalizeFolder() / "T0001.FDT", 777, 4);
  ASSERT_TRUE(server.Start());
  int count = DetectLayout(server.Endpoint());
  EXPECT_EQ(count, 2);
  EXPECT_EQ(RecordFolderForLayout(count), "/S000000");
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open(RecordFolderForLayout(count)), FtpStatus::Ok);
  FtpListing listing = session.List(Now());
  ASSERT_EQ(listing.Status, FtpStatus::Ok);
  ASSERT_NE(Find(listing.Entries, "S0007.FDT"), nullptr);
  ASSERT_EQ(session.Open(TotalizeFolder(RecordFolderForLayout(count))), FtpStatus::Ok);
  listing = session.List(Now());
  ASSERT_NE(Find(listing.Entries, "T0001.FDT"), nullptr);
  EXPECT_EQ(Find(listing.Entries, "T0001.FDT")->FileSize, 777);
  EXPECT_EQ(Find(listing.Entries, "S0007.FDT"), nullptr);
}

TEST(FtpClient, MissingFolderIsNoFolder) {
  FtpTestServer server;
  ASSERT_TRUE(server.Start());
  FtpSession session(server.Endpoint());
  EXPECT_EQ(session.Open("/S000000"), FtpStatus::NoFolder);
}

TEST(FtpClient, ListingByTheFallbackAloneStillFills) {
  FtpTestServer server({.listFallbackOnly = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 5000, 1);
  WriteBytes(server.RecordFolder() / "notes.txt", 10, 2);
  ASSERT_TRUE(server.Start());
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open("/"), FtpStatus::Ok);
  FtpListing listing = session.List(Now());
  ASSERT_EQ(listing.Status, FtpStatus::Ok);
  EXPECT_TRUE(listing.ByFallback);
  ASSERT_NE(Find(listing.Entries, "S0001.FDT"), nullptr);
  EXPECT_EQ(Find(listing.Entries, "S0001.FDT")->FileSize, 5000);
  EXPECT_EQ(Find(listing.Entries, "notes.txt"), nullptr);
}

TEST(FtpClient, DownloadIsTheServersFileByteForByteAndReplacesAnOlderOne) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 70000, 9);
  ASSERT_TRUE(server.Start());
  fs::path target = MakeTempFolder("recscope-ftp-target");
  WriteBytes(target / "S0001.FDT", 10, 5);
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open("/"), FtpStatus::Ok);
  std::string written;
  ASSERT_EQ(session.Get("S0001.FDT", target.string(), &written), FtpStatus::Ok)
      << session.LastError();
  EXPECT_EQ(written, (target / "S0001.FDT").string());
  EXPECT_EQ(ReadAll(target / "S0001.FDT"), ReadAll(server.RecordFolder() / "S0001.FDT"));
  EXPECT_EQ(FolderNames(target), std::set<std::string>{"S0001.FDT"});
  EXPECT_EQ(session.Get("S9999.FDT", target.string()), FtpStatus::Failed);
  EXPECT_EQ(FolderNames(target), std::set<std::string>{"S0001.FDT"});
  fs::remove_all(target);
}

TEST(FtpClient, HostileNamesAreListedButNeverWrittenAnywhere) {
  FtpTestServer server({.hostileNames = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  ASSERT_TRUE(server.Start());
  fs::path parent = MakeTempFolder("recscope-ftp-parent");
  fs::path target = parent / "target";
  fs::create_directories(target);
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open("/"), FtpStatus::Ok);
  FtpListing listing = session.List(Now());
  ASSERT_EQ(listing.Status, FtpStatus::Ok);
  int hostile = 0;
  for (const FtpEntry &entry : listing.Entries) {
    if (IsSafeRemoteName(entry.FileName)) continue;
    ++hostile;
    EXPECT_EQ(session.Get(entry.FileName, target.string()), FtpStatus::BadName) << entry.FileName;
    EXPECT_EQ(session.Delete(entry.FileName), FtpStatus::BadName);
  }
  EXPECT_EQ(hostile, 5);
  EXPECT_TRUE(fs::is_empty(target));
  EXPECT_EQ(FolderNames(parent), std::set<std::string>{"target"});
  EXPECT_FALSE(fs::exists("/etc/S1.FDT"));
  EXPECT_FALSE(fs::exists(parent / "x.FDT"));
  // The good file beside them still comes.
  EXPECT_EQ(session.Get("S0001.FDT", target.string()), FtpStatus::Ok);
  EXPECT_EQ(FolderNames(target), std::set<std::string>{"S0001.FDT"});
  fs::remove_all(parent);
}

TEST(FtpClient, CutTransferLeavesNoFileAndIsNotFetched) {
  FtpTestServer server({.cutTransfer = true});
  WriteBytes(server.RecordFolder() / "S0001.FDT", 200000, 1);
  ASSERT_TRUE(server.Start());
  fs::path target = MakeTempFolder("recscope-ftp-target");
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open("/"), FtpStatus::Ok);
  std::string written = "untouched";
  FtpStatus status = session.Get("S0001.FDT", target.string(), &written);
  EXPECT_EQ(status, FtpStatus::Incomplete) << session.LastError();
  EXPECT_EQ(written, "untouched");
  EXPECT_TRUE(fs::is_empty(target));
  // An older copy of the file stays as it was.
  WriteBytes(target / "S0001.FDT", 10, 4);
  std::string before = ReadAll(target / "S0001.FDT");
  EXPECT_EQ(session.Get("S0001.FDT", target.string()), FtpStatus::Incomplete);
  EXPECT_EQ(ReadAll(target / "S0001.FDT"), before);
  EXPECT_EQ(FolderNames(target), std::set<std::string>{"S0001.FDT"});
  fs::remove_all(target);
}

TEST(FtpClient, RefusedLoginIsNoConnectWithinItsLimits) {
  FtpTestServer server({.refuseLogin = true});
  ASSERT_TRUE(server.Start());
  auto start = std::chrono::steady_clock::now();
  FtpStatus status = FtpStatus::Ok;
  EXPECT_EQ(DetectLayout(server.Endpoint(), &status), -1);
  EXPECT_EQ(status, FtpStatus::NoConnect);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(FtpClient, WrongPasswordIsNoConnect) {
  FtpTestServer server;
  ASSERT_TRUE(server.Start());
  FtpSession session(server.Endpoint("wrong"));
  EXPECT_EQ(session.Open("/"), FtpStatus::NoConnect);
}

TEST(FtpClient, SlowServerEndsWithinTheReplyLimit) {
  FtpTestServer server({.slowSeconds = 6});
  ASSERT_TRUE(server.Start());
  FtpEndpoint endpoint = server.Endpoint();
  endpoint.ReplyTimeout = 2;
  endpoint.ConnectTimeout = 2;
  auto start = std::chrono::steady_clock::now();
  FtpSession session(endpoint);
  EXPECT_EQ(session.Open("/"), FtpStatus::NoConnect);
  auto took = std::chrono::steady_clock::now() - start;
  EXPECT_LT(took, std::chrono::seconds(5));
}

TEST(FtpClient, NobodyListeningIsNoConnect) {
  FtpEndpoint endpoint;
  endpoint.Host = "127.0.0.1";
  endpoint.Port = 1;  // nothing listens on port 1
  endpoint.User = "user";
  endpoint.ConnectTimeout = 2;
  FtpSession session(endpoint);
  EXPECT_EQ(session.Open("/"), FtpStatus::NoConnect);
}

TEST(FtpClient, DeleteRemovesTheFileOnTheServer) {
  FtpTestServer server;
  WriteBytes(server.RecordFolder() / "S0001.FDT", 100, 1);
  WriteBytes(server.RecordFolder() / "S0002.FDT", 100, 2);
  ASSERT_TRUE(server.Start());
  FtpSession session(server.Endpoint());
  ASSERT_EQ(session.Open("/"), FtpStatus::Ok);
  EXPECT_EQ(session.Delete("S0001.FDT"), FtpStatus::Ok);
  EXPECT_EQ(session.Delete("S0001.FDT"), FtpStatus::Failed);
  EXPECT_FALSE(fs::exists(server.RecordFolder() / "S0001.FDT"));
  EXPECT_TRUE(fs::exists(server.RecordFolder() / "S0002.FDT"));
}

TEST(FtpClient, CancelFlagEndsTheRequest) {
  FtpTestServer server({.slowSeconds = 3});
  ASSERT_TRUE(server.Start());
  std::atomic<bool> cancel{true};
  FtpSession session(server.Endpoint());
  session.SetCancelFlag(&cancel);
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(session.Open("/"), FtpStatus::Cancelled);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

}  // namespace
}  // namespace recscope
