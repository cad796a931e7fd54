#include "ftp/ftp_client.h"

#include <curl/curl.h>

#include <unistd.h>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <system_error>

#include "shell/civil_time.h"

namespace recscope {

namespace {

void GlobalInit() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

bool EndsWithFdt(const std::string &name) {
  if (name.size() < 4) return false;
  std::string tail = name.substr(name.size() - 4);
  return tail == ".FDT" || tail == ".fdt";
}

struct Token {
  std::size_t begin;
  std::size_t end;
  std::string text;
};

std::vector<Token> Tokens(const std::string &line, std::size_t limit) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while (at < line.size() && tokens.size() < limit) {
    while (at < line.size() && (line[at] == ' ' || line[at] == '\t')) ++at;
    if (at >= line.size()) break;
    std::size_t begin = at;
    while (at < line.size() && line[at] != ' ' && line[at] != '\t') ++at;
    tokens.push_back({begin, at, line.substr(begin, at - begin)});
  }
  return tokens;
}

bool AllDigits(const std::string &text) {
  if (text.empty()) return false;
  for (unsigned char c : text)
    if (!std::isdigit(c)) return false;
  return true;
}

int MonthNumber(const std::string &text) {
  static const char *names[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                "jul", "aug", "sep", "oct", "nov", "dec"};
  if (text.size() != 3) return 0;
  std::string lower;
  for (unsigned char c : text) lower += static_cast<char>(std::tolower(c));
  for (int i = 0; i < 12; ++i)
    if (lower == names[i]) return i + 1;
  return 0;
}

// The name behind a field: the rest of the line after the one blank that ends the
// field. A name may hold blanks of its own.
std::string NameBehind(const std::string &line, const Token &field) {
  std::size_t at = field.end;
  if (at < line.size()) ++at;
  return line.substr(at);
}

bool ParseUnixLine(const std::string &line, std::int64_t nowSeconds, FtpEntry &entry) {
  std::vector<Token> tokens = Tokens(line, 12);
  // perms [links] owner [group] size month day time-or-year name
  for (std::size_t i = 2; i + 2 < tokens.size(); ++i) {
    int month = MonthNumber(tokens[i].text);
    if (month == 0 || !AllDigits(tokens[i - 1].text) || !AllDigits(tokens[i + 1].text)) continue;
    const std::string &when = tokens[i + 2].text;
    CivilTime civil;
    civil.month = month;
    civil.day = std::atoi(tokens[i + 1].text.c_str());
    if (civil.day < 1 || civil.day > 31) continue;
    std::size_t colon = when.find(':');
    if (colon != std::string::npos) {
      civil.hour = std::atoi(when.substr(0, colon).c_str());
      civil.minute = std::atoi(when.substr(colon + 1).c_str());
      civil.year = ToCivil(nowSeconds).year;
      if (FromCivil(civil) > nowSeconds + 86400) civil.year -= 1;
    } else if (AllDigits(when)) {
      civil.year = std::atoi(when.c_str());
    } else {
      continue;
    }
    entry = FtpEntry{};
    entry.FileName = NameBehind(line, tokens[i + 2]);
    entry.FileSize = static_cast<double>(
        static_cast<std::uint32_t>(std::strtoull(tokens[i - 1].text.c_str(), nullptr, 10)));
    entry.FileTime = FromCivil(civil);
    entry.IsFolder = !tokens[0].text.empty() && (tokens[0].text[0] == 'd');
    return !entry.FileName.empty();
  }
  return false;
}

// "mm-dd-yy  hh:mmAM  <DIR>|size  name"
bool ParseDosLine(const std::string &line, FtpEntry &entry) {
  std::vector<Token> tokens = Tokens(line, 4);
  if (tokens.size() < 4) return false;
  const std::string &date = tokens[0].text;
  const std::string &time = tokens[1].text;
  if (date.size() < 8 || date[2] != '-' || date[5] != '-') return false;
  CivilTime civil;
  civil.month = std::atoi(date.substr(0, 2).c_str());
  civil.day = std::atoi(date.substr(3, 2).c_str());
  int year = std::atoi(date.substr(6).c_str());
  civil.year = date.size() >= 10 ? year : (year < 70 ? 2000 + year : 1900 + year);
  std::size_t colon = time.find(':');
  if (colon == std::string::npos) return false;
  civil.hour = std::atoi(time.substr(0, colon).c_str());
  civil.minute = std::atoi(time.substr(colon + 1, 2).c_str());
  if (time.size() >= 7) {
    bool pm = time[time.size() - 2] == 'P' || time[time.size() - 2] == 'p';
    if (civil.hour == 12) civil.hour = 0;
    if (pm) civil.hour += 12;
  }
  entry = FtpEntry{};
  if (tokens[2].text == "<DIR>") {
    entry.IsFolder = true;
  } else if (AllDigits(tokens[2].text)) {
    entry.FileSize = static_cast<double>(
        static_cast<std::uint32_t>(std::strtoull(tokens[2].text.c_str(), nullptr, 10)));
  } else {
    return false;
  }
  entry.FileName = line.substr(tokens[3].begin);
  entry.FileTime = FromCivil(civil);
  return !entry.FileName.empty();
}

std::vector<std::string> SplitLines(const std::string &text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(at, end - at);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    at = end + 1;
  }
  return lines;
}

std::string Escape(CURL *curl, const std::string &segment) {
  char *escaped = curl_easy_escape(curl, segment.c_str(), static_cast<int>(segment.size()));
  std::string result = escaped ? escaped : "";
  curl_free(escaped);
  return result;
}

size_t Discard(char *, size_t size, size_t count, void *) { return size * count; }

size_t AppendText(char *data, size_t size, size_t count, void *user) {
  static_cast<std::string *>(user)->append(data, size * count);
  return size * count;
}

struct FileSink {
  std::FILE *file = nullptr;
  std::int64_t written = 0;
};

size_t AppendFile(char *data, size_t size, size_t count, void *user) {
  auto *sink = static_cast<FileSink *>(user);
  size_t done = std::fwrite(data, size, count, sink->file);
  sink->written += static_cast<std::int64_t>(done * size);
  return done * size;
}

int Progress(void *user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  auto *flag = static_cast<const std::atomic<bool> *>(user);
  return (flag && flag->load()) ? 1 : 0;
}

}  // namespace

bool IsSafeRemoteName(const std::string &name) {
  if (name.empty() || name == "." || name == "..") return false;
  if (name.find("..") != std::string::npos) return false;
  for (unsigned char c : name) {
    if (c < 0x20 || c == 0x7F) return false;
    if (c == '/' || c == '\\' || c == ':') return false;
  }
  return true;
}

std::string AlarmName(const std::string &name) {
  std::size_t at = name.find('S');
  if (at == std::string::npos) return {};
  std::string twin = name;
  twin[at] = 'A';
  return twin;
}

bool IsRemoteRecordName(const std::string &name) {
  return !name.empty() && name[0] == 'S' && EndsWithFdt(name);
}

bool HasRecordExtension(const std::string &name) { return EndsWithFdt(name); }

bool ParseListLine(const std::string &line, std::int64_t nowSeconds, FtpEntry &entry) {
  if (line.empty()) return false;
  if (std::isdigit(static_cast<unsigned char>(line[0]))) return ParseDosLine(line, entry);
  return ParseUnixLine(line, nowSeconds, entry);
}

std::vector<FtpEntry> ParseListText(const std::string &text, std::int64_t nowSeconds) {
  std::vector<FtpEntry> entries;
  for (const std::string &line : SplitLines(text)) {
    FtpEntry entry;
    if (ParseListLine(line, nowSeconds, entry)) entries.push_back(entry);
  }
  return entries;
}

void ApplyTodayYear(std::vector<FtpEntry> &entries, std::int64_t todaySeconds) {
  CivilTime today = ToCivil(todaySeconds);
  for (FtpEntry &entry : entries) {
    if (entry.IsFolder) continue;
    CivilTime civil = ToCivil(entry.FileTime);
    if (civil.year == today.year && civil.month == today.month && civil.day == today.day) {
      civil.year += 1;
      entry.FileTime = FromCivil(civil);
    }
  }
}

std::string NormalFolder(const std::string &folder) {
  std::string result = folder;
  for (char &c : result)
    if (c == '\\') c = '/';
  if (result.empty() || result[0] != '/') result.insert(result.begin(), '/');
  return result;
}

std::string RecordFolderForLayout(int count) { return count == 2 ? "/S000000" : "/"; }

std::string TotalizeFolder(const std::string &recordFolder) {
  std::string folder = NormalFolder(recordFolder);
  if (folder.back() != '/') folder += '/';
  return folder + "T000000";
}

struct FtpSession::Impl {
  CURL *curl = nullptr;
  char error[CURL_ERROR_SIZE] = {};
};

FtpSession::FtpSession(FtpEndpoint endpoint)
    : endpoint_(std::move(endpoint)), impl_(std::make_unique<Impl>()) {
  GlobalInit();
  impl_->curl = curl_easy_init();
}

FtpSession::~FtpSession() {
  if (impl_->curl) curl_easy_cleanup(impl_->curl);
}

std::string FtpSession::FolderUrl(const std::string &folder) const {
  std::string url = "ftp://" + endpoint_.Host + ":" + std::to_string(endpoint_.Port) + "/";
  std::string path = NormalFolder(folder);
  std::size_t at = 1;
  while (at < path.size()) {
    std::size_t end = path.find('/', at);
    if (end == std::string::npos) end = path.size();
    if (end > at) url += Escape(impl_->curl, path.substr(at, end - at)) + "/";
    at = end + 1;
  }
  return url;
}

std::string FtpSession::FileUrl(const std::string &name) const {
  return FolderUrl(folder_) + Escape(impl_->curl, name);
}

// Sets what every request shares and runs it; the caller has set the rest after
// curl_easy_reset, which keeps the control connection for the next request.
int FtpSession::Perform(const std::string &url) {
  CURL *curl = impl_->curl;
  impl_->error[0] = 0;
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_USERNAME, endpoint_.User.c_str());
  curl_easy_setopt(curl, CURLOPT_PASSWORD, endpoint_.Password.c_str());
  curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, impl_->error);
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl, CURLOPT_FTP_USE_EPSV, 0L);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, endpoint_.ConnectTimeout);
  curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, endpoint_.ReplyTimeout);
  curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, endpoint_.StallTimeout);
  curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, Progress);
  curl_easy_setopt(curl, CURLOPT_XFERINFODATA, cancel_);
  CURLcode code = curl_easy_perform(curl);
  lastError_ = impl_->error[0] ? impl_->error : curl_easy_strerror(code);
  if (code == CURLE_OK) lastError_.clear();
  return static_cast<int>(code);
}

FtpStatus FtpSession::Open(const std::string &folder) {
  if (!impl_->curl) return FtpStatus::NoNetwork;
  folder_ = NormalFolder(folder);
  curl_easy_reset(impl_->curl);
  curl_easy_setopt(impl_->curl, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEFUNCTION, Discard);
  curl_easy_setopt(impl_->curl, CURLOPT_HEADERFUNCTION, Discard);
  int code = Perform(FolderUrl(folder_));
  switch (code) {
    case CURLE_OK:
      return FtpStatus::Ok;
    case CURLE_REMOTE_ACCESS_DENIED:
    case CURLE_REMOTE_FILE_NOT_FOUND:
      return FtpStatus::NoFolder;
    case CURLE_ABORTED_BY_CALLBACK:
      return FtpStatus::Cancelled;
    case CURLE_FAILED_INIT:
    case CURLE_OUT_OF_MEMORY:
      return FtpStatus::NoNetwork;
    default:
      return FtpStatus::NoConnect;
  }
}

bool FtpSession::ListRequest(const std::string &command, bool namesOnly, std::string &text) {
  text.clear();
  curl_easy_reset(impl_->curl);
  if (!command.empty()) curl_easy_setopt(impl_->curl, CURLOPT_CUSTOMREQUEST, command.c_str());
  if (namesOnly) curl_easy_setopt(impl_->curl, CURLOPT_DIRLISTONLY, 1L);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEFUNCTION, AppendText);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEDATA, &text);
  return Perform(FolderUrl(folder_)) == CURLE_OK;
}

FtpListing FtpSession::List(std::int64_t nowSeconds) {
  FtpListing listing;
  if (!impl_->curl) {
    listing.Status = FtpStatus::NoNetwork;
    return listing;
  }
  std::string text;
  if (ListRequest("", false, text)) {
    listing.Status = FtpStatus::Ok;
    listing.Entries = ParseListText(text, nowSeconds);
    return listing;
  }
  if (cancel_ && cancel_->load()) {
    listing.Status = FtpStatus::Cancelled;
    return listing;
  }
  listing.ByFallback = true;
  if (ListRequest("LIST *.FDT", false, text)) {
    listing.Status = FtpStatus::Ok;
    listing.Entries = ParseListText(text, nowSeconds);
    return listing;
  }
  if (!ListRequest("NLST *.FDT", true, text)) return listing;
  listing.Status = FtpStatus::Ok;
  for (const std::string &line : SplitLines(text)) {
    if (line.empty()) continue;
    FtpEntry entry;
    entry.FileName = line;
    // Size and time of each name on its own (SIZE and MDTM), for names that may
    // be asked for at all.
    if (IsSafeRemoteName(line)) {
      curl_easy_reset(impl_->curl);
      curl_easy_setopt(impl_->curl, CURLOPT_NOBODY, 1L);
      curl_easy_setopt(impl_->curl, CURLOPT_FILETIME, 1L);
      curl_easy_setopt(impl_->curl, CURLOPT_WRITEFUNCTION, Discard);
      curl_easy_setopt(impl_->curl, CURLOPT_HEADERFUNCTION, Discard);
      if (Perform(FileUrl(line)) == CURLE_OK) {
        curl_off_t size = -1;
        long fileTime = -1;
        curl_easy_getinfo(impl_->curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size);
        curl_easy_getinfo(impl_->curl, CURLINFO_FILETIME, &fileTime);
        if (size >= 0) entry.FileSize = static_cast<double>(static_cast<std::uint32_t>(size));
        if (fileTime >= 0) entry.FileTime = fileTime;
      }
    }
    listing.Entries.push_back(entry);
  }
  return listing;
}

FtpStatus FtpSession::Get(const std::string &name, const std::string &localDir,
                          std::string *writtenPath) {
  if (!IsSafeRemoteName(name)) return FtpStatus::BadName;
  if (!impl_->curl) return FtpStatus::NoNetwork;
  namespace fs = std::filesystem;
  std::error_code ec;
  if (!fs::is_directory(localDir, ec)) return FtpStatus::Failed;

  // The length the server gives for the file (SIZE), to hold the transfer against.
  curl_easy_reset(impl_->curl);
  curl_easy_setopt(impl_->curl, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEFUNCTION, Discard);
  curl_easy_setopt(impl_->curl, CURLOPT_HEADERFUNCTION, Discard);
  int code = Perform(FileUrl(name));
  if (code == CURLE_ABORTED_BY_CALLBACK) return FtpStatus::Cancelled;
  if (code != CURLE_OK) return FtpStatus::Failed;
  curl_off_t expected = -1;
  curl_easy_getinfo(impl_->curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &expected);

  std::string pattern = (fs::path(localDir) / ".recscope-part-XXXXXX").string();
  std::vector<char> temp(pattern.begin(), pattern.end());
  temp.push_back('\0');
  int fd = mkstemp(temp.data());
  if (fd < 0) return FtpStatus::Failed;
  std::string tempPath(temp.data());
  FileSink sink;
  sink.file = fdopen(fd, "wb");
  if (!sink.file) {
    ::close(fd);
    std::remove(tempPath.c_str());
    return FtpStatus::Failed;
  }

  curl_easy_reset(impl_->curl);
  curl_easy_setopt(impl_->curl, CURLOPT_TRANSFERTEXT, 0L);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEFUNCTION, AppendFile);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEDATA, &sink);
  code = Perform(FileUrl(name));
  bool flushed = std::fflush(sink.file) == 0;
  bool closed = std::fclose(sink.file) == 0;
  curl_off_t received = -1;
  curl_easy_getinfo(impl_->curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &received);
  if (expected < 0) expected = received;

  FtpStatus status = FtpStatus::Ok;
  if (code == CURLE_ABORTED_BY_CALLBACK)
    status = FtpStatus::Cancelled;
  else if (code == CURLE_PARTIAL_FILE)
    status = FtpStatus::Incomplete;
  else if (code != CURLE_OK || !flushed || !closed)
    status = FtpStatus::Failed;
  else if (expected >= 0 && sink.written != expected)
    status = FtpStatus::Incomplete;
  else if (static_cast<std::int64_t>(fs::file_size(tempPath, ec)) != sink.written || ec)
    status = FtpStatus::Incomplete;
  if (status == FtpStatus::Incomplete && lastError_.empty())
    lastError_ = "transfer ended after " + std::to_string(sink.written) + " of " +
                 std::to_string(expected) + " bytes";

  if (status != FtpStatus::Ok) {
    fs::remove(tempPath, ec);
    return status;
  }
  fs::path target = fs::path(localDir) / name;
  fs::rename(tempPath, target, ec);
  if (ec) {
    lastError_ = ec.message();
    fs::remove(tempPath, ec);
    return FtpStatus::Failed;
  }
  if (writtenPath) *writtenPath = target.string();
  return FtpStatus::Ok;
}

FtpStatus FtpSession::Delete(const std::string &name) {
  if (!IsSafeRemoteName(name)) return FtpStatus::BadName;
  if (!impl_->curl) return FtpStatus::NoNetwork;
  curl_easy_reset(impl_->curl);
  std::string command = "DELE " + name;
  curl_slist *quote = curl_slist_append(nullptr, command.c_str());
  curl_easy_setopt(impl_->curl, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(impl_->curl, CURLOPT_QUOTE, quote);
  curl_easy_setopt(impl_->curl, CURLOPT_WRITEFUNCTION, Discard);
  curl_easy_setopt(impl_->curl, CURLOPT_HEADERFUNCTION, Discard);
  int code = Perform(FolderUrl(folder_));
  curl_slist_free_all(quote);
  if (code == CURLE_ABORTED_BY_CALLBACK) return FtpStatus::Cancelled;
  return code == CURLE_OK ? FtpStatus::Ok : FtpStatus::Failed;
}

int FtpSession::CountLayoutFolders(FtpStatus *status) {
  FtpStatus opened = Open("/");
  if (status) *status = opened;
  if (opened != FtpStatus::Ok) return -1;
  int count = 0;
  std::string text;
  if (ListRequest("", false, text)) {
    for (const FtpEntry &entry : ParseListText(text, 0)) {
      if (entry.IsFolder && (entry.FileName == "S000000" || entry.FileName == "MEMORY")) ++count;
      if (count == 2) break;
    }
    return count;
  }
  // Without a list, a text search in the lines of the names.
  if (ListRequest("", true, text)) {
    for (const std::string &line : SplitLines(text)) {
      if (line.find("S000000") != std::string::npos || line.find("MEMORY") != std::string::npos)
        ++count;
      if (count == 2) break;
    }
  }
  return count;
}

int DetectLayout(const FtpEndpoint &endpoint, FtpStatus *status) {
  FtpSession session(endpoint);
  return session.CountLayoutFolders(status);
}

}  // namespace recscope
