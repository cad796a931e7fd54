#pragma once
// What the FTP browser does, without its window: the size texts, the rows of the
// remote list, listing a folder, downloading with the alarm twin and deleting.
// The window (ftp_window) and the batch command both run these.
#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "ftp/ftp_client.h"

namespace recscope {

// Catalogue ids of the browser's messages.
inline constexpr int kFtpNoFolder = 30000;
inline constexpr int kFtpNoConnect = 30001;
inline constexpr int kFtpNoNetwork = 30002;
inline constexpr int kFtpAskEnd = 30100;
inline constexpr int kFtpColumnTime = 30102;
inline constexpr int kFtpColumnName = 30103;
inline constexpr int kFtpColumnSize = 30104;
inline constexpr int kFtpNoFiles = 30105;
inline constexpr int kFtpAskDelete = 30106;
inline constexpr int kFtpNotDeleted = 30107;
inline constexpr int kFtpAlreadyLocal = 30108;
inline constexpr int kFtpNotFetched = 30109;
inline constexpr int kFtpReading = 30114;

// The size column: up to 1024 bytes the count and "  B"; above, kilobytes rounded
// to a whole number while below 1000, then megabytes, then gigabytes in the same
// way; from 1000 GB upwards an empty text. Sizes never show decimals.
std::string FormatFileSize(double bytes);

// Whether a list entry shows in the remote list: plain files with a name that may
// be fetched at all; for record files (totalize false) only names starting with
// "S", and for totalize files every name, ending in ".FDT" or ".fdt".
bool ShowsInRemoteList(const FtpEntry &entry, bool totalize);

struct RemoteRow {
  std::string Name;
  std::string TimeText;
  std::string SizeText;
  std::int64_t Time = 0;
  double Size = 0;
};

// The rows of the remote list, in the server's order; times in the date display
// `dateFormatNo`.
std::vector<RemoteRow> RemoteRows(const std::vector<FtpEntry> &entries, bool totalize,
                                  int dateFormatNo);

// The message that stands for a failed session.
int MessageForStatus(FtpStatus status);

// The folder of the option: the record folder, or its T000000 for totalize files.
std::string OptionFolder(const std::string &recordFolder, bool totalize);

// A session on `folder` that lists it; list times carry the today-year step.
// `todaySeconds` is the local clock as civil seconds.
FtpListing ListFolder(const FtpEndpoint &endpoint, const std::string &folder,
                      std::int64_t todaySeconds, const std::atomic<bool> *cancel = nullptr);

struct DownloadOutcome {
  std::vector<std::string> Written;   // paths of the files written, twins included
  std::vector<std::string> Standing;  // names already in the target folder
  std::vector<std::string> Failed;    // names that could not be fetched
};

// Fetches each name of `folder` into `localDir`: a name already there stands and
// is not fetched; a record file brings its alarm twin when the server has one (a
// missing twin is no failure); any name that is unsafe, missing, refused or cut
// short is failed and leaves nothing behind.
DownloadOutcome DownloadFiles(const FtpEndpoint &endpoint, const std::string &folder,
                              const std::vector<std::string> &names, const std::string &localDir,
                              const std::atomic<bool> *cancel = nullptr);

// Deletes each name of `folder` on the server, with the alarm twin of a record
// file; the names that could not be deleted. When the session cannot stand, all.
std::vector<std::string> DeleteFiles(const FtpEndpoint &endpoint, const std::string &folder,
                                     const std::vector<std::string> &names);

// $RECSCOPE_FTP_TIMEOUT (seconds), when set, shortens every wait of `endpoint`:
// tests use it for a slow server.
void ApplyTimeoutFromEnvironment(FtpEndpoint &endpoint);

// The names one a line, each followed by a line end, for @DITEM@ and @FITEM@.
std::string NameLines(const std::vector<std::string> &names);

}  // namespace recscope
