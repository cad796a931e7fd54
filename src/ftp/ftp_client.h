#pragma once
// The FTP client of the recorder's card: one passive session on a host, a user and
// a folder; listing, binary download and delete. Plain C++ over libcurl, no window
// code, so that the browser, the automatic fetch and the batch command share it.
//
// Every call is bounded in time: the connect, each server reply and a stalled
// transfer have their own limits, so a slow or dead server never holds a caller for
// longer than those. A session may be used from any one thread at a time.
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace recscope {

// One entry of the remote list. Plain files carry their name, size and time; a
// folder keeps its name with `IsFolder` set (the browser and the fetch skip it).
struct FtpEntry {
  std::string FileName;
  std::int64_t FileTime = 0;  // civil seconds from 1970/1/1, as the server's list has it
  double FileSize = 0;        // bytes (the low 32 bits of the size)
  bool IsFolder = false;
};

enum class FtpStatus {
  Ok,
  NoNetwork,   // the client library could not start (30002)
  NoConnect,   // no connection or login refused (30001)
  NoFolder,    // the folder does not exist (30000)
  NoList,      // neither way of listing gave an answer (30105)
  Failed,      // the transfer or delete failed
  BadName,     // a name that must never be written or asked for
  Incomplete,  // the transfer ended short of the file's length
  Cancelled,
};

struct FtpEndpoint {
  std::string Host;
  int Port = 21;
  std::string User;
  std::string Password;
  // Limits in seconds: connecting, waiting for one reply, a transfer without progress.
  long ConnectTimeout = 10;
  long ReplyTimeout = 15;
  long StallTimeout = 20;
};

struct FtpListing {
  FtpStatus Status = FtpStatus::NoList;
  std::vector<FtpEntry> Entries;
  bool ByFallback = false;  // the plain LIST was refused; the "*.FDT" listing answered
};

// A name from a server (or from an operator) that may become a local file name:
// not empty, not "." or "..", no "/" or "\", no "..", no drive or other ":", no
// control character. Any other name is never written anywhere.
bool IsSafeRemoteName(const std::string &name);

// The alarm twin of a record file: the first "S" of the name replaced by "A".
// Empty when the name has no "S".
std::string AlarmName(const std::string &name);

// A record file: starts with "S" and ends in ".FDT" or ".fdt".
bool IsRemoteRecordName(const std::string &name);

// Ends in ".FDT" or ".fdt".
bool HasRecordExtension(const std::string &name);

// Parses one line of a LIST answer (the usual Unix form, or the DOS form with
// "<DIR>"). `nowSeconds` fixes the year of entries that carry none: the year of
// `nowSeconds`, or the one before when that would put the entry more than a day
// ahead. False for lines that are no entry ("total 12", empty lines).
bool ParseListLine(const std::string &line, std::int64_t nowSeconds, FtpEntry &entry);

// Splits a LIST answer into entries (lines end in LF or CR LF).
std::vector<FtpEntry> ParseListText(const std::string &text, std::int64_t nowSeconds);

// The list times carry a kept peculiarity: an entry dated today comes out one year
// ahead. Applied to plain files only.
void ApplyTodayYear(std::vector<FtpEntry> &entries, std::int64_t todaySeconds);

// The folder "/" with "\" taken as "/" ("/S000000\T000000" is "/S000000/T000000").
std::string NormalFolder(const std::string &folder);

class FtpSession {
 public:
  explicit FtpSession(FtpEndpoint endpoint);
  ~FtpSession();
  FtpSession(const FtpSession &) = delete;
  FtpSession &operator=(const FtpSession &) = delete;

  const FtpEndpoint &Endpoint() const { return endpoint_; }

  // Logs in and changes to `folder`: Ok, NoNetwork, NoConnect or NoFolder.
  FtpStatus Open(const std::string &folder);
  const std::string &Folder() const { return folder_; }

  // Lists the session's folder: LIST first; when it is refused, "LIST *.FDT", and
  // when that is refused too, NLST "*.FDT" with each file's size and time asked
  // for on its own. Entries keep the server's raw times (no today-year step).
  FtpListing List(std::int64_t nowSeconds);

  // Downloads `name` of the session's folder into `localDir` in binary. The bytes
  // go to a temporary name in `localDir` first; only a transfer that ended well
  // with the file's full length is renamed to `name` (replacing an older file).
  // Anything short is deleted and gives Incomplete or Failed. `writtenPath` gets
  // the final path on Ok.
  FtpStatus Get(const std::string &name, const std::string &localDir,
                std::string *writtenPath = nullptr);

  // Deletes `name` in the session's folder.
  FtpStatus Delete(const std::string &name);

  // Counts the root's folders named "S000000" or "MEMORY" (at most 2). -1 when the
  // session cannot stand on "/" (the status then says why).
  int CountLayoutFolders(FtpStatus *status = nullptr);

  // A flag another thread may set to end the transfer under way (Cancelled).
  void SetCancelFlag(const std::atomic<bool> *flag) { cancel_ = flag; }

  // The last libcurl error text, for logs and the batch command.
  const std::string &LastError() const { return lastError_; }

 private:
  struct Impl;
  std::string FolderUrl(const std::string &folder) const;
  std::string FileUrl(const std::string &name) const;
  int Perform(const std::string &url);
  bool ListRequest(const std::string &command, bool namesOnly, std::string &text);

  FtpEndpoint endpoint_;
  std::string folder_ = "/";
  std::string lastError_;
  const std::atomic<bool> *cancel_ = nullptr;
  std::unique_ptr<Impl> impl_;
};

// Layout detection: a session on "/" counts the layout folders. -1 on failure
// (with the status), else the count; with 2 the record files lie in "/S000000".
int DetectLayout(const FtpEndpoint &endpoint, FtpStatus *status = nullptr);

// "/S000000" for a count of 2, "/" otherwise.
std::string RecordFolderForLayout(int count);

// The totalize folder below a record folder: "<folder>/T000000".
std::string TotalizeFolder(const std::string &recordFolder);

}  // namespace recscope
