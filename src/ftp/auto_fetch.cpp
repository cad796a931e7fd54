#include "ftp/auto_fetch.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "ftp/operation_log.h"
#include "shell/catalogue.h"
#include "shell/settings.h"

namespace recscope {

namespace {

namespace fs = std::filesystem;

constexpr int kTries = 3;

bool StopAsked(const FetchRunOptions &options) { return options.Stop && options.Stop->load(); }

bool MakeFolder(const std::string &folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  return fs::is_directory(folder, error);
}

// A name for the log: every control character shows as "?", so that no name from
// a server can break a line of the log.
std::string LoggableName(const std::string &name) {
  std::string shown = name;
  for (char &c : shown)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
  return shown;
}

// A measurement file: "S" and ".FDT" (in either case); only these have alarm twins.
bool IsMeasurementFileName(const std::string &name) {
  if (name.size() < 5 || (name[0] != 'S' && name[0] != 's')) return false;
  const std::string tail = name.substr(name.size() - 4);
  return tail == ".FDT" || tail == ".fdt";
}

bool StartsWithAlarmLetter(const std::string &name) {
  return !name.empty() && (name[0] == 'A' || name[0] == 'a');
}

// One run: its options, its hooks and what it has found so far.
class FetchRun {
 public:
  FetchRun(const FetchRunOptions &options, const FetchRunHooks &hooks)
      : options_(options), hooks_(hooks) {}

  FetchRunResult Run() {
    for (std::string &status : result_.RecorderStatus) status = " ";
    Log(GetMessageText(10850));
    const std::string ini = ViewerComIniPath(options_.ProgramFolder);
    for (int n = 1; n <= kFetchRecorders; ++n) {
      if (StopAsked(options_)) {
        result_.Stopped = true;
        break;
      }
      const FetchRecorder recorder = ReadFetchRecorder(ini, n);
      if (recorder.ON) ProcessRecorder(n, recorder);
      if (result_.Stopped) break;
    }
    Log(GetMessageText(10851));
    return result_;
  }

 private:
  std::string RecorderText(int n) const {
    return GetMessageText(10860, {{"@NUM@", std::to_string(n)}});
  }

  void Log(const std::string &message) {
    LogWrite(options_.ProgramFolder, message);
    if (hooks_.Logged) hooks_.Logged(message);
  }

  void SetStatus(int n, const std::string &status) {
    result_.RecorderStatus[static_cast<std::size_t>(n - 1)] = status;
    if (hooks_.Status) hooks_.Status(n, status);
  }

  void Fail(int n) {
    result_.AnyFailed = true;
    SetStatus(n, GetMessageText(10864));
  }

  void ConnectionFailed(int n) {
    Log(RecorderText(n) + GetMessageText(10855));
    Fail(n);
  }

  FtpEndpoint Endpoint(const FetchRecorder &recorder) const {
    FtpEndpoint endpoint;
    endpoint.Host = recorder.IP;
    endpoint.Port = options_.Port;
    endpoint.User = recorder.USER;
    endpoint.Password = recorder.PASS;
    endpoint.ConnectTimeout = options_.ConnectTimeout;
    endpoint.ReplyTimeout = options_.ReplyTimeout;
    endpoint.StallTimeout = options_.StallTimeout;
    return endpoint;
  }

  std::int64_t Now() const { return options_.Clock ? options_.Clock() : LocalNowSeconds(); }

  void ProcessRecorder(int n, const FetchRecorder &recorder) {
    const std::string base = RecorderFolder(options_.ProgramFolder, recorder.IP);
    if (base.empty() || !MakeFolder(base)) return ConnectionFailed(n);
    const FtpEndpoint endpoint = Endpoint(recorder);
    const int layout = DetectLayout(endpoint);
    if (layout < 0) return ConnectionFailed(n);
    const std::string remote = RecordFolderForLayout(layout);
    const std::string local = layout == 2 ? base + "/S000000" : base;
    if (!MakeFolder(local)) return ConnectionFailed(n);
    if (StopAsked(options_)) {
      result_.Stopped = true;
      return;
    }
    if (!FetchFolder(n, endpoint, remote, local, false)) return;
    if (StopAsked(options_)) {
      result_.Stopped = true;
      return;
    }
    const std::string localTotalize = local + "/T000000";
    if (!MakeFolder(localTotalize)) return ConnectionFailed(n);
    FetchFolder(n, endpoint, TotalizeFolder(remote), localTotalize, true);
  }

  std::unique_ptr<FtpSession> OpenSession(const FtpEndpoint &endpoint, const std::string &folder) {
    auto session = std::make_unique<FtpSession>(endpoint);
    session->SetCancelFlag(options_.Stop);
    if (session->Open(folder) != FtpStatus::Ok) return nullptr;
    return session;
  }

  // Downloads `name` with up to three tries, a new session after each failure.
  FtpStatus Download(std::unique_ptr<FtpSession> &session, const FtpEndpoint &endpoint,
                     const std::string &folder, const std::string &name, const std::string &local) {
    if (!IsSafeRemoteName(name)) return FtpStatus::BadName;
    FtpStatus status = FtpStatus::Failed;
    for (int attempt = 0; attempt < kTries; ++attempt) {
      if (!session) session = OpenSession(endpoint, folder);
      if (session) status = session->Get(name, local);
      if (status == FtpStatus::Ok) {
        ++result_.Fetched;
        return status;
      }
      if (StopAsked(options_)) return FtpStatus::Cancelled;
      session.reset();
    }
    return status;
  }

  // Fetches one folder; false when the folder could not be reached or a file failed.
  bool FetchFolder(int n, const FtpEndpoint &endpoint, const std::string &remote,
                   const std::string &local, bool totalize) {
    std::unique_ptr<FtpSession> session = OpenSession(endpoint, remote);
    if (!session) {
      ConnectionFailed(n);
      return false;
    }
    const FtpListing listing = session->List(Now());
    if (listing.Status != FtpStatus::Ok) {
      ConnectionFailed(n);
      return false;
    }
    const std::vector<FtpEntry> &list = listing.Entries;
    const int count = static_cast<int>(list.size());
    bool failed = false;
    for (int i = 0; i < count; ++i) {
      if (hooks_.Progress) hooks_.Progress(FetchProgressText(totalize, n, i + 1, count));
      if (StopAsked(options_)) {
        result_.Stopped = true;
        return false;
      }
      const FtpEntry &entry = list[static_cast<std::size_t>(i)];
      const std::string &name = entry.FileName;
      if (entry.IsFolder || name.empty()) continue;
      if (StartsWithAlarmLetter(name)) continue;  // an alarm file comes with its record file

      const FtpEntry *twin = nullptr;
      if (!totalize && IsMeasurementFileName(name)) {
        const std::string twinName = AlarmName(name);
        for (const FtpEntry &other : list)
          if (!other.IsFolder && other.FileName == twinName) {
            twin = &other;
            break;
          }
      }
      const bool safe = IsSafeRemoteName(name);
      if (safe && LocalFilePresent(local, name, entry.FileSize) &&
          (!twin || LocalFilePresent(local, twin->FileName, twin->FileSize)))
        continue;

      std::string failedName = name;
      FtpStatus status = Download(session, endpoint, remote, name, local);
      if (status == FtpStatus::Ok) Log(RecorderText(n) + name + GetMessageText(10853));
      if (status == FtpStatus::Ok && twin) {
        failedName = twin->FileName;
        status = Download(session, endpoint, remote, twin->FileName, local);
        if (status == FtpStatus::Ok) Log(RecorderText(n) + twin->FileName + GetMessageText(10853));
      }
      if (status == FtpStatus::Cancelled) {
        result_.Stopped = true;
        return false;
      }
      if (status != FtpStatus::Ok) {
        Log(RecorderText(n) + LoggableName(failedName) + GetMessageText(10854));
        Fail(n);
        failed = true;
      }
    }
    if (!failed) SetStatus(n, GetMessageText(10863));
    return !failed;
  }

  const FetchRunOptions &options_;
  const FetchRunHooks &hooks_;
  FetchRunResult result_;
};

}  // namespace

std::string RecorderFolder(const std::string &programFolder, const std::string &ip) {
  const std::string name = RecorderFolderName(ip);
  return name.empty() ? std::string() : programFolder + "/" + name;
}

bool LocalFilePresent(const std::string &folder, const std::string &name, double size) {
  std::error_code error;
  const fs::path path = fs::path(folder) / name;
  if (!fs::is_regular_file(path, error)) return false;
  const std::uintmax_t length = fs::file_size(path, error);
  return !error && static_cast<double>(length) == size;
}

std::string FetchProgressText(bool totalize, int recorderNo, int position, int count) {
  return GetMessageText(totalize ? 10805 : 10804) + "No." + std::to_string(recorderNo) + " " +
         std::to_string(position) + "/" + std::to_string(count);
}

int FtpPortFromEnvironment() {
  const char *text = std::getenv("RECSCOPE_FTP_PORT");
  if (!text || !*text) return 21;
  char *end = nullptr;
  const long port = std::strtol(text, &end, 10);
  return (*end == '\0' && port > 0 && port < 65536) ? static_cast<int>(port) : 21;
}

FetchRunResult RunFetchCycle(const FetchRunOptions &options, const FetchRunHooks &hooks) {
  return FetchRun(options, hooks).Run();
}

}  // namespace recscope
