#include "ftp/operation_log.h"

#include <ctime>
#include <fstream>
#include <optional>

#include "platform/text_encoding.h"
#include "shell/civil_time.h"
#include "shell/file_bytes.h"

namespace recscope {

namespace {

std::size_t CountLineEnds(const std::string &text) {
  std::size_t count = 0;
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2))
    ++count;
  return count;
}

// The position just behind the n-th CR LF, scanning from the front; 0 for n 0.
std::size_t BehindLineEnd(const std::string &text, std::size_t n) {
  std::size_t position = 0;
  for (std::size_t i = 0; i < n; ++i) {
    std::size_t at = text.find("\r\n", position);
    if (at == std::string::npos) return text.size();
    position = at + 2;
  }
  return position;
}

}  // namespace

std::string LogFilePath(const std::string &folder) { return folder + "/LogMsg.txt"; }

std::string LogTimeText(std::int64_t localSeconds) {
  return RecordTimeText(localSeconds).substr(0, 20);
}

std::int64_t LocalNowSeconds() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return FromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                    local.tm_min, local.tm_sec});
}

void LogWrite(const std::string &folder, const std::string &message) {
  LogWriteAt(folder, message, LocalNowSeconds());
}

void LogWriteAt(const std::string &folder, const std::string &message, std::int64_t localSeconds) {
  const std::string path = LogFilePath(folder);
  const std::string line = Utf8ToCp932(LogTimeText(localSeconds) + " " + message) + "\r\n";
  std::string text = ReadFileBytes(path).value_or("");
  // The line number of the append position: one more than the complete lines.
  const std::size_t lineNumber = CountLineEnds(text) + 1;
  if (lineNumber <= static_cast<std::size_t>(kLogLineLimit)) {
    std::ofstream out(path, std::ios::binary | std::ios::app);
    out.write(line.data(), static_cast<std::streamsize>(line.size()));
    return;
  }
  // Over the limit: the oldest lines fall away in one step.
  text.erase(0, BehindLineEnd(text, lineNumber - kLogLineLimit));
  ReplaceFileBytes(path, text + line);
}

std::string LogShow(const std::string &folder) {
  std::optional<std::string> text = ReadFileBytes(LogFilePath(folder));
  if (!text) return {};
  const std::size_t count = CountLineEnds(*text);
  std::string shown = *text;
  if (count > static_cast<std::size_t>(kLogShowLimit))
    shown.erase(0, BehindLineEnd(shown, count - (kLogShowLimit + 1)));
  if (shown.size() >= 2 && shown.compare(shown.size() - 2, 2, "\r\n") == 0)
    shown.resize(shown.size() - 2);
  return Cp932ToUtf8(shown);
}

}  // namespace recscope
