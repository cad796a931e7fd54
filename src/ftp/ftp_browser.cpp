#include "ftp/ftp_browser.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "shell/catalogue.h"
#include "shell/civil_time.h"

namespace recscope {

namespace {

// Whole numbers, a tie to the even one.
double RoundEven(double value) { return std::nearbyint(value); }

std::string WholeText(double value) { return std::to_string(static_cast<long long>(value)); }

}  // namespace

std::string FormatFileSize(double bytes) {
  if (bytes <= 1024) return WholeText(bytes) + GetMessageText(30113);
  double size = RoundEven(bytes / 1024);
  if (size < 1000) return WholeText(size) + GetMessageText(30110);
  size = RoundEven(size / 1024);
  if (size < 1000) return WholeText(size) + GetMessageText(30111);
  size = RoundEven(size / 1024);
  if (size < 1000) return WholeText(size) + GetMessageText(30112);
  return {};
}

bool ShowsInRemoteList(const FtpEntry &entry, bool totalize) {
  if (entry.IsFolder || entry.FileName.empty()) return false;
  if (!IsSafeRemoteName(entry.FileName)) return false;
  if (!HasRecordExtension(entry.FileName)) return false;
  return totalize || entry.FileName[0] == 'S';
}

std::vector<RemoteRow> RemoteRows(const std::vector<FtpEntry> &entries, bool totalize,
                                  int dateFormatNo) {
  std::vector<RemoteRow> rows;
  for (const FtpEntry &entry : entries) {
    if (!ShowsInRemoteList(entry, totalize)) continue;
    RemoteRow row;
    row.Name = entry.FileName;
    row.Time = entry.FileTime;
    row.Size = entry.FileSize;
    row.TimeText = FormatTime(entry.FileTime, dateFormatNo);
    row.SizeText = FormatFileSize(entry.FileSize);
    rows.push_back(row);
  }
  return rows;
}

int MessageForStatus(FtpStatus status) {
  switch (status) {
    case FtpStatus::NoNetwork:
      return kFtpNoNetwork;
    case FtpStatus::NoFolder:
      return kFtpNoFolder;
    case FtpStatus::NoList:
      return kFtpNoFiles;
    default:
      return kFtpNoConnect;
  }
}

std::string OptionFolder(const std::string &recordFolder, bool totalize) {
  return totalize ? TotalizeFolder(recordFolder) : NormalFolder(recordFolder);
}

FtpListing ListFolder(const FtpEndpoint &endpoint, const std::string &folder,
                      std::int64_t todaySeconds, const std::atomic<bool> *cancel) {
  FtpSession session(endpoint);
  session.SetCancelFlag(cancel);
  FtpListing listing;
  listing.Status = session.Open(folder);
  if (listing.Status != FtpStatus::Ok) return listing;
  listing = session.List(todaySeconds);
  ApplyTodayYear(listing.Entries, todaySeconds);
  return listing;
}

DownloadOutcome DownloadFiles(const FtpEndpoint &endpoint, const std::string &folder,
                              const std::vector<std::string> &names, const std::string &localDir,
                              const std::atomic<bool> *cancel) {
  namespace fs = std::filesystem;
  DownloadOutcome outcome;
  FtpSession session(endpoint);
  session.SetCancelFlag(cancel);
  bool open = false;
  for (const std::string &name : names) {
    if (!IsSafeRemoteName(name)) {
      outcome.Failed.push_back(name);
      continue;
    }
    std::error_code ec;
    if (fs::exists(fs::path(localDir) / name, ec)) {
      outcome.Standing.push_back(name);
      continue;
    }
    if (!open) open = session.Open(folder) == FtpStatus::Ok;
    std::string written;
    if (!open || session.Get(name, localDir, &written) != FtpStatus::Ok) {
      outcome.Failed.push_back(name);
      continue;
    }
    outcome.Written.push_back(written);
    if (IsRemoteRecordName(name)) {
      std::string twin = AlarmName(name);
      if (!twin.empty() && session.Get(twin, localDir, &written) == FtpStatus::Ok)
        outcome.Written.push_back(written);
    }
  }
  return outcome;
}

std::vector<std::string> DeleteFiles(const FtpEndpoint &endpoint, const std::string &folder,
                                     const std::vector<std::string> &names) {
  std::vector<std::string> failed;
  FtpSession session(endpoint);
  if (session.Open(folder) != FtpStatus::Ok) return names;
  for (const std::string &name : names) {
    if (session.Delete(name) != FtpStatus::Ok) {
      failed.push_back(name);
      continue;
    }
    if (IsRemoteRecordName(name)) {
      std::string twin = AlarmName(name);
      if (!twin.empty()) session.Delete(twin);
    }
  }
  return failed;
}

void ApplyTimeoutFromEnvironment(FtpEndpoint &endpoint) {
  const char *text = std::getenv("RECSCOPE_FTP_TIMEOUT");
  long seconds = text ? std::atol(text) : 0;
  if (seconds > 0)
    endpoint.ConnectTimeout = endpoint.ReplyTimeout = endpoint.StallTimeout = seconds;
}

std::string NameLines(const std::vector<std::string> &names) {
  std::string text;
  for (const std::string &name : names) text += name + "\n";
  return text;
}

}  // namespace recscope
